#include "qtZelWaveMainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QMenuBar>
#include <QTimer>

#include "cWidgetRegistry.h"
#include "explorer/wxWaveExplorerWidgetImpl.h"
#include "widgets/qtVxMainWindow.h"
#include "widgets/qtVxWidget.h"

namespace vx3 {

using namespace zelWaveWidgetWrapper;

namespace {
// Closing waits for the background task; retry a little later instead of spinning.
void postCloseRetry(QObject* target)
{
    QTimer::singleShot(20, target, [target] {
        QCoreApplication::postEvent(target, new QEvent(static_cast<QEvent::Type>(zelWaveWindow::retry_close_event)));
    });
}
// A running command file or socket session holds the command lock: the close is refused and
// tried again until the task has ended.
void closeWhenCommandLockIsFree(wxZelWaveWidgetWrapper& wrapper, QWidget* widget, QCloseEvent* event)
{
    if (!wrapper.checkIsClosing()) {
        wrapper.shutDownSocket();
        wrapper.setClosing();
    }
    zelWaveRegistry().remove(widget);
    cVxScopedTryLock lock(wrapper.commandMutex());
    if (lock.checkIsLocked()) {
        wrapper.applicationCloses();
        event->accept();
    } else {
        event->ignore();
        postCloseRetry(widget);
    }
}
}  // namespace

void triggerWidgetDestroyedCallBack(wxZelWaveWidgetWrapper* wrapper, void* handle)
{
    zelWaveRegistry().remove(handle);
    zelWaveWidgetWrapper::cUserNotification closed{vx_notification_window_closed, std::string(), std::string(), 0};
    wrapper->appendNotification(closed);
    wrapper->handleNotifications();
}

// ---------------------------------------------------------------------------------------------
qtZelWaveMainWindow::qtZelWaveMainWindow(QWidget* parent, int x, int y, int width, int height, int style)
    : wxZelWaveWidgetWrapper(0, 0, width, height)
{
    mWindow = new qtVxMainWindow(parent);
    mWindow->setAttribute(Qt::WA_DeleteOnClose);
    qtVxMainWindow::cHandlers handlers;
    handlers.close = [this](QCloseEvent* event) { handleCloseEvent(event); };
    handlers.resize = [this](int w, int h) {
        if (!checkIsClosing())
            saveTopLevelWindowDimensions(w, h);
    };
    handlers.custom = [this](QEvent* event) { handleCustomEvent(event); };
    handlers.destroyed = [this] {
        triggerWidgetDestroyedCallBack(this, mWindow);
        delete this;
    };
    mWindow->registerEventHandlerFunctions(handlers);
    defineStyle(style);
    create(mWindow);
    if (explorer())
        mWindow->setCentralWidget(explorer());
    checkTopWindowWH(width, height);
    mWindow->setGeometry(x, y, width, height);
    mWindow->setObjectName("qt_zelwave_main_window");
    zelWaveRegistry().windows.add(mWindow, this);
    zelWaveRegistry().widgets.printErrors = false;
    mWindow->setWindowTitle(QString("%1 - %2").arg(getVendorName(), getToolName()));
    if (style & style_menu_bar)
        buildMenuBar();
}

qtZelWaveMainWindow::~qtZelWaveMainWindow() = default;

void qtZelWaveMainWindow::buildMenuBar()
{
    QMenu* file = mWindow->menuBar()->addMenu("&File");
    file->addAction("&Open File...", [this] {
        QString name = QFileDialog::getOpenFileName(mWindow, "Open Waveform File");
        if (!name.isEmpty())
            lockAndExecuteCommand("open_file \"" + name.toStdString() + "\"");
    });
    file->addAction("Execute &Command File...", [this] {
        QString name = QFileDialog::getOpenFileName(mWindow, "Open Command File");
        if (!name.isEmpty())
            tryLockAndExecuteCommandFile(name.toStdString());
    });
    // Filled when opened, so that it shows files opened by commands as well, and none that has gone.
    QMenu* recent = file->addMenu("&Recent Files");
    QObject::connect(recent, &QMenu::aboutToShow, recent, [this, recent] {
        recent->clear();
        configuration().removeNonExistingLastOpened();
        for (size_t i = 0; i < configuration().getNbLastOpenedFiles(); ++i) {
            QString name = QString::fromStdString(configuration().getLastOpenedFiles(i));
            recent->addAction(name, [this, name] { lockAndExecuteCommand("open_file \"" + name.toStdString() + "\""); });
        }
        if (recent->isEmpty())
            recent->addAction("(none)")->setEnabled(false);
    });
    file->addSeparator();
    file->addAction("E&xit", QKeySequence::Quit, [this] { mWindow->close(); });
    QMenu* edit = mWindow->menuBar()->addMenu("&Edit");
    edit->addAction("&Configuration...", [this] {
        if (explorer())
            explorer()->showConfigurationDialog();
    });
    // Through commands, so that a recording repeats them and the logger shows them.
    QMenu* tools = mWindow->menuBar()->addMenu("&Tools");
    tools->addAction("Command &Logger", [this] { lockAndExecuteCommand("show_command_logger 1"); });
    tools->addAction("Control &Panel", [this] { lockAndExecuteCommand("show_control_panel 1"); });
}

int qtZelWaveMainWindow::controlPanelVirtualExecuteCommand(const std::string& command)
{
    if (command.empty())
        return vx_code_bad_name;
    return lockAndExecuteCommand(command);
}

int qtZelWaveMainWindow::closeRequested(bool)
{
    // Not now: the command that asks holds the command lock; close once it is done.
    QMetaObject::invokeMethod(mWindow, &QWidget::close, Qt::QueuedConnection);
    return 0;
}

void qtZelWaveMainWindow::showTopLevel(bool show)
{
    mWindow->setVisible(show);
}

void qtZelWaveMainWindow::handleCloseEvent(QCloseEvent* event)
{
    if (!checkIsClosing() && !checkIfApplicationCanExit()) {
        event->ignore();  // the user kept unsaved work
        return;
    }
    closeWhenCommandLockIsFree(*this, mWindow, event);
}

void qtZelWaveMainWindow::handleCustomEvent(QEvent* event)
{
    if (event->type() == static_cast<QEvent::Type>(zelWaveWindow::retry_close_event))
        mWindow->close();
}

// ---------------------------------------------------------------------------------------------
qtZelWaveWidget::qtZelWaveWidget(QWidget* parent, int x, int y, int width, int height, int style)
    : wxZelWaveWidgetWrapper(0, 0, width, height)
{
    mWidget = new qtVxWidget(parent);
    qtVxMainWindow::cHandlers handlers;
    handlers.close = [this](QCloseEvent* event) { handleCloseEvent(event); };
    handlers.resize = [this](int w, int h) {
        if (explorer())
            explorer()->resize(w, h);
    };
    handlers.custom = [this](QEvent* event) {
        if (event->type() == static_cast<QEvent::Type>(zelWaveWindow::retry_close_event))
            mWidget->close();
    };
    handlers.destroyed = [this] {
        triggerWidgetDestroyedCallBack(this, mWidget);
        delete this;
    };
    mWidget->registerEventHandlerFunctions(handlers);
    defineStyle(style & ~style_menu_bar);
    create(mWidget);
    if (width > 0 && height > 0)
        mWidget->setGeometry(x, y, width, height);
    if (explorer())
        explorer()->setGeometry(0, 0, mWidget->width(), mWidget->height());
    mWidget->setObjectName("qt_zelwave_widget");
    zelWaveRegistry().widgets.add(mWidget, this);
    zelWaveRegistry().windows.printErrors = false;
}

qtZelWaveWidget::~qtZelWaveWidget() = default;

int qtZelWaveWidget::controlPanelVirtualExecuteCommand(const std::string& command)
{
    if (command.empty())
        return vx_code_bad_name;
    return lockAndExecuteCommand(command);
}

int qtZelWaveWidget::closeRequested(bool)
{
    // The host decides what a close request means for its widget.
    pushNotification({vx_notification_close_button_activated, std::string(), std::string(), 0});
    return 0;
}

void qtZelWaveWidget::showTopLevel(bool show)
{
    mWidget->setVisible(show);
}

void qtZelWaveWidget::handleCloseEvent(QCloseEvent* event)
{
    closeWhenCommandLockIsFree(*this, mWidget, event);
}

}  // namespace vx3
