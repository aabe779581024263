// The page Callbacks of the control panel: it registers its own call-backs, as a host would, and
// prints what they are told.
#include <QCheckBox>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "wxZelWaveControlPanel.h"

namespace vx3 {

namespace zelWaveControlPanel {

namespace {
constexpr const char* kIndent = "           ";

wxZelWaveControlPanel* panelOf(void* userData)
{
    return static_cast<wxZelWaveControlPanel*>(userData);
}

void curveHighlighted(void* userData, const char* section, const char* curve)
{
    panelOf(userData)->appendCallbackLog(describeCurveCallback(section ? section : "", curve ? curve : "", "highlighted"));
}

void curveUnhighlighted(void* userData, const char* section, const char* curve)
{
    panelOf(userData)->appendCallbackLog(
        describeCurveCallback(section ? section : "", curve ? curve : "", "unhighlighted"));
}

void curveActivated(void* userData, const char* section, const char* curve)
{
    panelOf(userData)->appendCallbackLog(describeCurveCallback(section ? section : "", curve ? curve : "", "activated"));
}

int notified(void* userData, const _vx_zelwave_callback_notification_type* notification)
{
    if (notification) {
        for (const auto& line : describeNotification(*notification))
            panelOf(userData)->appendCallbackLog(line);
    }
    // Zero: what the viewer does by itself (the file dialog of the open button) still happens.
    return 0;
}
}  // namespace

const char* getNotificationWord(long type)
{
    switch (type) {
    case vx_notification_undefined: return "undefined";
    case vx_notification_window_closed: return "window_closed";
    case vx_notification_close_button_activated: return "close_button_activated";
    case vx_notification_attach_button_activated: return "attach_button_activated";
    case vx_notification_detach_button_activated: return "detach_button_activated";
    case vx_notification_open_file_button_activated: return "open_file_button_activated";
    case vx_notification_logger_message: return "logger_message";
    case vx_notification_status_bar_message: return "status_bar_message";
    case vx_notification_progress_message: return "progress_message";
    case vx_notification_file_opened: return "file_opened";
    case vx_notification_file_closed: return "file_closed";
    case vx_notification_all_files_closed: return "all_files_closed";
    case vx_notification_section_used_for_link_changed: return "section_used_for_link_changed";
    default: return "-";
    }
}

std::string describeCurveCallback(const std::string& section, const std::string& curve, const std::string& what)
{
    return "The curve \"" + curve + "\" in section \"" + section + "\" was " + what + ".";
}

std::vector<std::string> describeNotification(const _vx_zelwave_callback_notification_type& notification)
{
    auto text = [](const char* value) { return std::string(value ? value : ""); };
    std::vector<std::string> lines{std::string("Notification : ") + getNotificationWord(notification.type)};
    switch (notification.type) {
    case vx_notification_logger_message:
        lines.push_back("Log message with severity " + std::to_string(notification.integer));
        lines.push_back(kIndent + text(notification.string2));
        break;
    case vx_notification_status_bar_message:
        lines.push_back("Status message with severity " + std::to_string(notification.integer));
        lines.push_back(kIndent + text(notification.string2));
        break;
    case vx_notification_progress_message:
        lines.push_back(kIndent + std::string("Progress : ") + text(notification.string1) + " (" +
                        std::to_string(notification.integer) + " %)");
        break;
    case vx_notification_file_opened:
    case vx_notification_file_closed:
        lines.push_back(kIndent + text(notification.string1));
        break;
    default:
        break;
    }
    return lines;
}

}  // namespace zelWaveControlPanel

using namespace zelWaveControlPanel;

QWidget* wxZelWaveControlPanel::buildCallbacksPage()
{
    auto* page = new QWidget;
    mRegisterNotifications = new QCheckBox("Register notifications callback.");
    mRegisterHighlighted = new QCheckBox("Register curve highlighted callback.");
    mRegisterUnhighlighted = new QCheckBox("Register curve un-highlighted callback.");
    mRegisterActivated = new QCheckBox("Register curve activated callback.");
    mCallbackLog = new QPlainTextEdit;
    mCallbackLog->setReadOnly(true);
    mCallbackLog->setLineWrapMode(QPlainTextEdit::NoWrap);
    mCallbackLog->setMaximumBlockCount(100000);
    mCallbackLog->setObjectName("control_panel_callback_log");

    auto* layout = new QVBoxLayout(page);
    for (QCheckBox* box : {mRegisterNotifications, mRegisterHighlighted, mRegisterUnhighlighted, mRegisterActivated}) {
        connect(box, &QCheckBox::toggled, this, [this] { updateCallbackRegistration(); });
        layout->addWidget(box);
    }
    layout->addWidget(mCallbackLog, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(addButton("Clear", [this] { mCallbackLog->clear(); }));
    layout->addLayout(buttons);
    return page;
}

void wxZelWaveControlPanel::updateCallbackRegistration()
{
    // The table replaces whatever a host registered: this window is for trying the interface.
    _vx_zelwave_callback_type table{};
    table.user_data = this;
    if (mRegisterNotifications->isChecked())
        table.notification = &notified;
    if (mRegisterHighlighted->isChecked())
        table.curve_highlighted = &curveHighlighted;
    if (mRegisterUnhighlighted->isChecked())
        table.curve_unhighlighted = &curveUnhighlighted;
    if (mRegisterActivated->isChecked())
        table.curve_activated = &curveActivated;
    const bool any = table.notification || table.curve_highlighted || table.curve_unhighlighted || table.curve_activated;
    controlPanelVirtualRegisterCallback(any ? &table : nullptr);
    mCallbacksRegistered = any;
}

void wxZelWaveControlPanel::appendCallbackLog(const std::string& line)
{
    QMetaObject::invokeMethod(
        mCallbackLog, [log = mCallbackLog, text = QString::fromStdString(line)] { log->appendPlainText(text); },
        Qt::AutoConnection);
}

QString wxZelWaveControlPanel::getCallbackLogText() const
{
    return mCallbackLog->toPlainText();
}

}  // namespace vx3
