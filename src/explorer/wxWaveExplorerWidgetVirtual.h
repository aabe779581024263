// Call-backs from the explorer to the object that owns it (the top object of the program or
// of a host's widget).
#pragma once

#include <string>

namespace vx3 {

class wxWaveExplorerAction;

namespace explorerCallBack {
// Actions that the explorer asks its owner to perform.
enum action_type : int {
    close_requested = 1,        // the close command or the close button
    show_file_open_dialog = 2,
    file_opened = 3,            // string argument 0: the file
    file_closed = 4,
    all_files_closed = 5,
    show_control_panel = 6,
    show_command_logger = 7,
    clear_command_logger = 8,   // double argument 0: the flag of the command
    enable_command_logger = 9,
    record_user_command = 10,  // string argument 0: the command text of a user action on a plot
    application_busy = 315,    // a launcher task started: the owner may disable its own controls
    application_not_busy = 316,
    file_open_allowed = 323    // string argument 0: the file; an answer other than 0 refuses it
};
}  // namespace explorerCallBack

class wxWaveExplorerWidgetVirtualMinimum {
public:
    virtual ~wxWaveExplorerWidgetVirtualMinimum() = default;
    virtual int waveExplorerVirtualCallBackAction(wxWaveExplorerAction& action) = 0;
    virtual void waveExplorerVirtualStatusBarMessage(unsigned severity, const std::string& text) {}
    virtual void waveExplorerVirtualLogProgress(const std::string& text, int percent) {}
};

class wxWaveExplorerWidgetVirtual : public wxWaveExplorerWidgetVirtualMinimum {
public:
    virtual void waveExplorerVirtualShowAnalogPlotProperties(const std::string& plotName) {}
    virtual void* waveExplorerVirtualCallBackGetWaveformParserCallbackFunctions() { return nullptr; }
    // The notification timer fired on the main thread.
    virtual void waveExplorerVirtualHandleNotifications() {}
};

}  // namespace vx3
