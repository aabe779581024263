// The top object: ties one explorer to its configuration, the command lock, the background
// thread for command files and the socket, and the user's call-backs.
#pragma once

#include <atomic>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/core/wxWaveExplorerCommand.h"
#include "app/core/wxWaveExplorerCommandFileGeneration.h"
#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/cCommandLineParser.h"
#include "base/cDataBaseSockets.h"
#include "base/cVxLogger.h"
#include "base/cVxThread.h"
#include "explorer/wxWaveExplorerWidgetVirtual.h"
#include "zelwave.h"

class QWidget;

namespace vx3 {

class wxWaveExplorerWidgetImpl;
class wxZelWaveCommandLogger;
class wxZelWaveControlPanel;

namespace zelWaveWidgetWrapper {
struct cUserNotification {
    int type = 0;
    std::string string1;
    std::string string2;
    long integer = 0;
};
struct cCursorValue {
    double x = 0.0;
    double y = 0.0;
};
enum task_type : int { task_command_file_locked = 0, task_command_file = 1, task_socket = 2 };
enum style_bits : int {
    style_nocli = 1,
    style_tool_bar_permanent = 2,
    style_gui_flag = 4,
    style_side_bar = 8,
    style_menu_bar = 16,
    style_further_flag = 32,
    style_load_save_config = 64
};
}  // namespace zelWaveWidgetWrapper

namespace zelWaveControlPanel {
// The narrow command interface offered to the control panel and to plug-ins.
class cControlPanelVirtual {
public:
    virtual ~cControlPanelVirtual() = default;
    virtual int controlPanelVirtualExecuteCommand(const std::string& command) = 0;
    virtual int controlPanelVirtualExecuteCommandInt(const std::string& command, long& result);
    virtual int controlPanelVirtualExecuteCommandStr(const std::string& command, std::string& result);
    virtual void controlPanelVirtualRegisterCallback(const _vx_zelwave_callback_type* callbacks) = 0;
    virtual const std::vector<std::string>& controlPanelVirtualGetCommandResults() = 0;
    virtual void controlPanelVirtualNewPlotCreated(const std::string& plotName) {}
    virtual void controlPanelVirtualSetDropFormat(const std::string& format) {}
};
}  // namespace zelWaveControlPanel

class wxZelWaveWidgetWrapper : public wxWaveExplorerWidgetVirtual, public zelWaveControlPanel::cControlPanelVirtual {
public:
    wxZelWaveWidgetWrapper(int x, int y, int width, int height);
    ~wxZelWaveWidgetWrapper() override;

    bool create(QWidget* parent);
    void defineStyle(int style);
    wxWaveExplorerWidgetImpl* explorer() const { return mExplorer; }
    wxWaveExplorerConfiguration& configuration() { return mConfiguration; }
    cVxLogger& logger() { return mLogger; }

    void processCommandLineArguments(const cCommandLineParser& parser);
    void processCommandLineArguments(const std::string& text);
    void processCommandLineArguments(int argc, const char* const* argv);

    // The one public door for a command from outside.
    int lockAndExecuteCommand(const std::string& command);
    int executeCommand(const std::string& text, bool useThread);
    int executeCommandImpl(bool useThread);
    int executeCommandFileImpl(const std::string& file);
    // Commands carried by an XML text (a drop or the clipboard), for the given plot.
    int executeXmlCommand(const std::string& xml, const std::string& plotName);
    wxWaveExplorerCommandFileGeneration& recorder() { return mRecorder; }
    int listenToSocketImpl(const std::string& address, unsigned port);

    int executeCommandFileStartThread(const std::string& file, bool useThread);
    int executeSocketStartThread(const std::string& address, unsigned port, bool useThread);
    int lockAndExecuteCommandFile(const std::string& file);
    int tryLockAndExecuteCommandFile(const std::string& file);
    int lockAndListenToSocket(const std::string& address, unsigned port);
    void executeTaskInThread(int task);
    void shutDownSocket();
    bool checkIfWeAreInTheMainThread() const;
    bool checkTaskRunning() const { return mTaskRunning; }

    const std::vector<std::string>& getCommandResults() const { return mResults; }
    std::string getCommandResultsAsString() const;
    long getCommandResultsAsInteger() const;
    const char** getCommandResultsAsCStrings();

    void pushNotification(const zelWaveWidgetWrapper::cUserNotification& notification);
    void appendNotification(const zelWaveWidgetWrapper::cUserNotification& notification);
    void handleNotifications();

    void registerCallback(const _vx_zelwave_callback_type* callbacks);
    void registerCallback(const vx_zelwave_qt_callback_type* callbacks);
    static const char* getToolName() { return "Zelkora Wave"; }
    static const char* getVendorName() { return "Harlan Tessel"; }
    // The two tool windows, made on first show as windows of their own over parent.
    void showControlPanel(QWidget* parent, bool show);
    void showCommandLogger(QWidget* parent, bool show);
    wxZelWaveControlPanel* controlPanel() const { return mControlPanel; }
    wxZelWaveCommandLogger* commandLogger() const { return mCommandLogger; }
    void saveTopLevelWindowDimensions(int width, int height);
    bool checkTopWindowWH(int& width, int& height) const;
    void applicationCloses();
    bool checkIfApplicationCanExit();
    bool checkIsClosing() const { return mClosing; }
    void setClosing() { mClosing = true; }
    cVxMutex& commandMutex() { return mCommandMutex; }
    int getStyle() const { return mStyle; }

    // wxWaveExplorerWidgetVirtual
    int waveExplorerVirtualCallBackAction(wxWaveExplorerAction& action) override;
    void waveExplorerVirtualShowAnalogPlotProperties(const std::string& plotName) override {}
    void waveExplorerVirtualStatusBarMessage(unsigned severity, const std::string& text) override;
    void waveExplorerVirtualLogProgress(const std::string& text, int percent) override;
    void waveExplorerVirtualHandleNotifications() override { handleNotifications(); }

    // cControlPanelVirtual
    void controlPanelVirtualRegisterCallback(const _vx_zelwave_callback_type* callbacks) override
    {
        registerCallback(callbacks);
    }
    const std::vector<std::string>& controlPanelVirtualGetCommandResults() override { return mResults; }

protected:
    // What the concrete window or widget does when the explorer asks to close.
    virtual int closeRequested(bool force) = 0;
    virtual void showTopLevel(bool show) = 0;

    int mStyle = 0;

private:
    bool handleWrapperCommand(wxWaveExplorerCommand& command, bool useThread, int& result);
    int performCommand(bool useThread);
    void logAndRecordError(const std::string& text);
    int translateExplorerResult(int code);
    bool checkExitInteractiveMode();
    std::string formatSocketReply(int result) const;
    void storeTaskResult(int result);
    void attachLogFile(const cCommandLineParser& parser);
    int performToolWindowAction(const wxWaveExplorerAction& action);
    void detachToolWindows();
    wxZelWaveCommandLogger* commandLoggerForCommand(const wxWaveExplorerCommand& command) const;
    void logCommandResult(wxZelWaveCommandLogger* logger, int result) const;

    // (declaration order follows the object's life: logger before the explorer that feeds it)
    cVxLogger mLogger;
    wxWaveExplorerConfiguration mConfiguration;
    wxWaveExplorerWidgetImpl* mExplorer = nullptr;
    wxZelWaveControlPanel* mControlPanel = nullptr;
    // Set once on the main thread, read by the background task for every command.
    std::atomic<wxZelWaveCommandLogger*> mCommandLogger{nullptr};
    std::atomic<bool> mCommandLoggerEnabled{true};
    wxWaveExplorerCommand mCommand;
    cVxMutex mCommandMutex;
    std::string mPluginContext;
    cVxThreadLauncher<wxZelWaveWidgetWrapper> mThread;
    cVxThreadLauncher<wxZelWaveWidgetWrapper> mSecondThread;
    cVxMutex mSecondThreadMutex;
    std::string mTaskFile;
    wxWaveExplorerCommandFileGeneration mRecorder;
    cDataBaseSockets mSocket;
    std::string mSocketAddress;
    unsigned mSocketPort = 0;
    cVxMutex mExitMutex;
    bool mExitInteractiveMode = false;
    bool mInComment = false;
    bool mDebugMode = false;
    std::vector<std::string> mFilesBeingRead;
    volatile bool mTaskRunning = false;
    volatile bool mResultPending = false;
    int mTaskResult = 0;
    std::vector<std::string> mResults;
    std::vector<const char*> mResultPointers;
    int mX, mY, mWidth, mHeight;
    std::string mToolKitName = "qt";
    cVxMutex mCallbackMutex;
    cVxMutex mNotificationMutex;
    std::list<zelWaveWidgetWrapper::cUserNotification> mNotifications;
    _vx_zelwave_callback_type mCallbacks{};
    vx_zelwave_qt_callback_type mQtCallbacks{};
    std::map<std::string, zelWaveWidgetWrapper::cCursorValue> mCursors;
    bool mNotificationsEnabled = true;
    // Set on the main thread, read by the background task between commands.
    std::atomic<bool> mClosing{false};
    bool mIsTopWindow = false;
    std::string mExecutablePath;
    bool mCreated = false;
};

}  // namespace vx3
