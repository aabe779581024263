// User call-backs and notifications of the top object.
#include "explorer/wxWaveExplorerWidgetImpl.h"
#include "wxZelWaveWidgetWrapper.h"

namespace vx3 {

using namespace zelWaveWidgetWrapper;

void wxZelWaveWidgetWrapper::registerCallback(const _vx_zelwave_callback_type* callbacks)
{
    cVxScopedLock lock(mCallbackMutex);
    if (callbacks)
        mCallbacks = *callbacks;
    else
        mCallbacks = _vx_zelwave_callback_type{};
}

void wxZelWaveWidgetWrapper::registerCallback(const vx_zelwave_qt_callback_type* callbacks)
{
    cVxScopedLock lock(mCallbackMutex);
    if (callbacks)
        mQtCallbacks = *callbacks;
    else
        mQtCallbacks = vx_zelwave_qt_callback_type{};
}

void wxZelWaveWidgetWrapper::appendNotification(const cUserNotification& notification)
{
    cVxScopedLock lock(mNotificationMutex);
    mNotifications.push_back(notification);
}

void wxZelWaveWidgetWrapper::pushNotification(const cUserNotification& notification)
{
    appendNotification(notification);
    if (mExplorer)
        mExplorer->startNotificationTimer();
}

void wxZelWaveWidgetWrapper::handleNotifications()
{
    if (!mExplorer)
        return;
    if (!checkIfWeAreInTheMainThread()) {
        mExplorer->startNotificationTimer();
        return;
    }
    cVxScopedTryLock callbackLock(mCallbackMutex);
    if (!callbackLock.checkIsLocked()) {
        mExplorer->startNotificationTimer();
        return;
    }
    std::list<cUserNotification> notifications;
    {
        cVxScopedLock lock(mNotificationMutex);
        notifications.swap(mNotifications);
    }
    if (!mNotificationsEnabled || !mCallbacks.notification)
        return;
    bool showFileDialog = false;
    for (const auto& entry : notifications) {
        _vx_zelwave_callback_notification_type notification{entry.type, entry.string1.c_str(),
                                                            entry.string2.c_str(), entry.integer};
        int answer = mCallbacks.notification(mCallbacks.user_data, &notification);
        if (entry.type == vx_notification_open_file_button_activated && answer == 0)
            showFileDialog = true;
    }
    if (showFileDialog) {
        wxWaveExplorerAction action;
        action.actionType = explorerCallBack::show_file_open_dialog;
        waveExplorerVirtualCallBackAction(action);
    }
}

void wxZelWaveWidgetWrapper::waveExplorerVirtualStatusBarMessage(unsigned severity, const std::string& text)
{
    // Runs on the main thread, for every line of the log.
    vx_zelwave_message_function logger = nullptr;
    void* userData = nullptr;
    bool wantsNotification = false;
    {
        cVxScopedTryLock lock(mCallbackMutex);
        if (!lock.checkIsLocked())
            return;
        logger = mCallbacks.logger_message;
        userData = mCallbacks.user_data;
        wantsNotification = mCallbacks.notification != nullptr;
    }
    if (logger)
        logger(userData, static_cast<int>(severity), text.c_str());
    if (wantsNotification)
        pushNotification({vx_notification_logger_message, std::to_string(severity), text, static_cast<long>(severity)});
}

void wxZelWaveWidgetWrapper::waveExplorerVirtualLogProgress(const std::string& text, int percent)
{
    if (mCallbacks.notification)
        pushNotification({vx_notification_progress_message, text, std::string(), percent});
}

}  // namespace vx3
