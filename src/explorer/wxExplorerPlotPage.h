// What the plots of the explorer's plot area ask of their page: status messages, how many plots
// there are, and the command log for what the user does on them by hand. Stands in for the plot
// pages until they exist.
#pragma once

#include <functional>
#include <string>

#include "plot/wxAnalogPlotVirtual.h"

namespace vx3 {

class wxExplorerPlotPage : public wxAnalogPlotVirtual {
public:
    struct cHandlers {
        std::function<void(unsigned severity, const std::string& text)> statusBarMessage;
        std::function<void(const std::string& text)> recordUserCommand;
        std::function<unsigned()> numberOfPlots;
    };
    explicit wxExplorerPlotPage(cHandlers handlers) : mHandlers(std::move(handlers)) {}

    void analogPlotVirtualStatusBarMessage(unsigned severity, const std::string& text) override;
    unsigned analogPlotVirtualGetNumberOfPlotWindows() override;
    void analogPlotVirtualRecordUserCommand(cPlotWidgetCommon*, const std::string& text) override;
    void analogPlotVirtualSetCursorPositionText(cPlotWidgetCommon*, const std::string& text) override;
    // Where the mouse's position over a plot is shown.
    void setCursorPositionHandler(std::function<void(const std::string&)> handler)
    {
        mCursorPosition = std::move(handler);
    }

private:
    cHandlers mHandlers;
    std::function<void(const std::string&)> mCursorPosition;
};

}  // namespace vx3
