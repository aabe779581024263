// The flat C interface: every call finds its top object by handle under the interface mutex.
#include <cstdio>
#include <exception>

#include "cWidgetRegistry.h"
#include "explorer/wxWaveExplorerWidgetImpl.h"
#include "qtZelWaveMainWindow.h"
#include "zelwave.h"

namespace vx3 {
cZelWaveRegistry& zelWaveRegistry()
{
    static cZelWaveRegistry registry;
    return registry;
}
}  // namespace vx3

using namespace vx3;

namespace {

// The try-lock of the interface mutex and the lookup that every entry starts with.
class cInterfaceCall {
public:
    explicit cInterfaceCall(void* handle) : mLock(zelWaveRegistry().interfaceMutex)
    {
        if (!mLock.checkIsLocked()) {
            mCode = vx_code_thread_error;
            return;
        }
        mWrapper = zelWaveRegistry().find(handle);
        mCode = mWrapper ? vx_code_ok : vx_code_bad_pointer;
    }
    int code() const { return mCode; }
    wxZelWaveWidgetWrapper* wrapper() const { return mWrapper; }

private:
    cVxScopedTryLock mLock;
    wxZelWaveWidgetWrapper* mWrapper = nullptr;
    int mCode = vx_code_error;
};

}  // namespace

extern "C" {

const char* convert_vx_return_code_to_string(int code)
{
    static const char* const texts[] = {"OK",
                                        "ERROR",
                                        "FILE NOT FOUND",
                                        "PARSE FAILED",
                                        "-",
                                        "BAD PARSER INDEX",
                                        "BAD NAME",
                                        "BAD SELECTION",
                                        "BAD INDEX",
                                        "BAD FUNCTION ARGUMENTS",
                                        "TIMEOUT",
                                        "QUEUED",
                                        "BAD POINTER",
                                        "THREAD ERROR",
                                        "INTERRUPTED"};
    if (code < 0 || code > 14)
        return "-";
    return texts[code];
}

vx_zelwave_handle qt_zelwave_create_main_window(void* parent, int x, int y, int width, int height, int style)
{
    try {
        auto* window = new qtZelWaveMainWindow(static_cast<QWidget*>(parent), x, y, width, height, style);
        return window->handle();
    } catch (...) {
        return nullptr;
    }
}

vx_zelwave_handle qt_zelwave_create_widget(void* parent, int x, int y, int width, int height, int style)
{
    try {
        auto* widget = new qtZelWaveWidget(static_cast<QWidget*>(parent), x, y, width, height, style);
        return widget->handle();
    } catch (...) {
        return nullptr;
    }
}

int qt_zelwave_execute_command(vx_zelwave_handle handle, const char* command)
{
    cInterfaceCall call(handle);
    if (call.code() != vx_code_ok)
        return call.code();
    bool print = zelWaveRegistry().printErrors();
    if (!command) {
        if (print)
            std::printf("0 was passed as command string\n");
        return vx_code_bad_name;
    }
    if (!*command) {
        if (print)
            std::printf("The command string is an empty string.\n");
        return vx_code_bad_name;
    }
    return call.wrapper()->lockAndExecuteCommand(command);
}

int qt_zelwave_execute_xml_command(vx_zelwave_handle handle, const char* xml, const char* plotName)
{
    cInterfaceCall call(handle);
    if (call.code() != vx_code_ok)
        return call.code();
    if (!xml)
        return vx_code_bad_name;
    return call.wrapper()->executeXmlCommand(xml, plotName ? plotName : "");
}

const char** qt_zelwave_get_command_result(vx_zelwave_handle handle)
{
    cInterfaceCall call(handle);
    if (call.code() != vx_code_ok)
        return nullptr;
    return call.wrapper()->getCommandResultsAsCStrings();
}

int qt_zelwave_process_command_line(vx_zelwave_handle handle, const char* text)
{
    cInterfaceCall call(handle);
    if (call.code() != vx_code_ok)
        return call.code();
    call.wrapper()->processCommandLineArguments(std::string(text ? text : ""));
    return vx_code_ok;
}

int qt_zelwave_register_callback(vx_zelwave_handle handle, const _vx_zelwave_callback_type* callbacks)
{
    cInterfaceCall call(handle);
    if (call.code() != vx_code_ok)
        return call.code();
    call.wrapper()->registerCallback(callbacks);
    return vx_code_ok;
}

int qt_zelwave_register_qt_callback(vx_zelwave_handle handle, const vx_zelwave_qt_callback_type* callbacks)
{
    cInterfaceCall call(handle);
    if (call.code() != vx_code_ok)
        return call.code();
    call.wrapper()->registerCallback(callbacks);
    return vx_code_ok;
}

int qt_zelwave_get_widget_info(vx_zelwave_handle handle, vx_zelwave_qt_widget_info_type* info)
{
    cInterfaceCall call(handle);
    if (call.code() != vx_code_ok)
        return call.code();
    wxWaveExplorerWidgetImpl* explorer = call.wrapper()->explorer();
    if (!info || !explorer || info->request >= 11)
        return vx_code_bad_function_arguments;
    return explorer->getWidgetInfo(info->request, info->argument, info->result, info->result1, info->result2)
               ? vx_code_ok
               : vx_code_bad_function_arguments;
}

}  // extern "C"
