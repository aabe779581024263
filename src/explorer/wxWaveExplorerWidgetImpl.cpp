#include "wxWaveExplorerWidgetImpl.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/core/cStoreCommands.h"
#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/sanitizerHandOver.h"
#include "model/cCurvePlotDataFile.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "wxWaveExplorerNotebook.h"
#include "wxLogSink.h"
#include "wxWaveExplorerBrowserWidget.h"
#include "wxWaveExplorerConfigurationDialog.h"
#include "wxWaveExplorerWidgetVirtual.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {
constexpr int kBridgePending = 18;  // the result field's "not yet performed"

class cExecuteCommandEvent : public QEvent {
public:
    cExecuteCommandEvent() : QEvent(static_cast<QEvent::Type>(waveExplorerEvent::execute_command)) {}
};
}  // namespace

wxWaveExplorerWidgetImpl::wxWaveExplorerWidgetImpl(QWidget* parent, wxWaveExplorerConfiguration& configuration,
                                                   wxWaveExplorerWidgetVirtual* owner, int x, int y, int width,
                                                   int height)
    : QWidget(parent),
      mConfiguration(configuration),
      mOwner(owner),
      mStore(std::make_unique<cCurvePlotDataFile>()),
      mLogSink(std::make_unique<wxLogSink>()),
      mLogger(vxLogger::debug),
      mBridgeMutex("explorer bridge")
{
    setObjectName("wave_explorer");
    mLogger.setLoggerCallBack(mLogSink.get());
    buildWidgets();
    if (width > 0 && height > 0)
        setGeometry(x, y, width, height);
    connect(mLogSink.get(), &wxLogSink::messageLogged, this, &wxWaveExplorerWidgetImpl::appendLogLine,
            Qt::QueuedConnection);
    connect(mLogSink.get(), &wxLogSink::progressLogged, this,
            [this](const QString& text, int percent) {
                mProgress->setVisible(percent < 100);
                mProgress->setValue(percent);
                mProgress->setFormat(text + " %p%");
            },
            Qt::QueuedConnection);
    mNotificationTimer = new QTimer(this);
    mNotificationTimer->setSingleShot(true);
    mNotificationTimer->setInterval(0);
    connect(mNotificationTimer, &QTimer::timeout, this, [this] {
        if (mOwner)
            mOwner->waveExplorerVirtualHandleNotifications();
    });
    mWaitTimer = new QTimer(this);
    mWaitTimer->setSingleShot(true);
    connect(mWaitTimer, &QTimer::timeout, this, [this] {
        mHold = false;
        emptyCommandQueue();
    });
    mSaveConfigTimer = new QTimer(this);
    mSaveConfigTimer->setObjectName(QString::number(waveExplorerEvent::TIMER_ID_SAVE_CONFIG));
    mSaveConfigTimer->setSingleShot(true);
    connect(mSaveConfigTimer, &QTimer::timeout, this, &wxWaveExplorerWidgetImpl::saveConfigurationAfterQuiet);
    mLoadConfigTimer = new QTimer(this);
    mLoadConfigTimer->setObjectName(QString::number(waveExplorerEvent::TIMER_ID_LOAD_CONFIG));
    connect(mLoadConfigTimer, &QTimer::timeout, this, &wxWaveExplorerWidgetImpl::retryLoadingConfiguration);
    mConfiguration.setChangeListener([this] { startSaveToConfigurationTimer(); });
    mLauncher = std::make_unique<wxWaveExplorerLauncher>(*mStore, *mLogSink, this);
    takeBrowserRulesFromConfiguration();
    mBrowser->setRulesChangedHandler([this] { storeBrowserRules(); });
    mBrowser->setStatusTextHandler([this](const std::string& text) {
        if (text.empty())
            mStatusBar->clearMessage();
        else
            mStatusBar->showMessage(QString::fromStdString(text), 10000);
    });
    mReloadTimer = new QTimer(this);
    mReloadTimer->setObjectName(QString::number(waveExplorerEvent::TIMER_ID_AUTO_RELOAD));
    mReloadTimer->setSingleShot(true);
    connect(mReloadTimer, &QTimer::timeout, this, &wxWaveExplorerWidgetImpl::timerNotification);
    setAcceptDrops(true);
}

wxWaveExplorerWidgetImpl::~wxWaveExplorerWidgetImpl()
{
    mConfiguration.setChangeListener(nullptr);
    mLauncher.reset();  // interrupts and joins a running reader before the store goes
    // Plots refer to curves of the store, which goes before Qt deletes the pages with their parent.
    mNotebook->releaseCurvesBeforeStoreCloses();
    mLogger.setLoggerCallBack(nullptr);
}

void wxWaveExplorerWidgetImpl::buildWidgets()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    auto* vertical = new QSplitter(Qt::Vertical, this);
    auto* horizontal = new QSplitter(Qt::Horizontal, vertical);

    mBrowser = new wxWaveExplorerBrowserWidget(horizontal, this, *mStore, mLogger);

    mNotebook = new wxWaveExplorerNotebook(horizontal, mStore->getMutex(), mLogger,
                                           [this](const std::string& text) { recordUserCommand(text); });
    mNotebook->setStore(mStore.get());
    horizontal->addWidget(mBrowser);
    horizontal->addWidget(mNotebook);
    horizontal->setStretchFactor(0, 1);
    horizontal->setStretchFactor(1, 3);
    // Two fifths for the browser at the start: its level columns and the curve names side by
    // side; the splitter scales these to the window's width.
    horizontal->setSizes({400, 600});

    mLogPane = new QPlainTextEdit(vertical);
    mLogPane->setObjectName("log_pane");
    mLogPane->setReadOnly(true);
    mLogPane->setMaximumBlockCount(10000);
    vertical->addWidget(horizontal);
    vertical->addWidget(mLogPane);
    vertical->setStretchFactor(0, 4);
    vertical->setStretchFactor(1, 1);

    mStatusBar = new QStatusBar(this);
    mProgress = new QProgressBar(mStatusBar);
    mProgress->setMaximumWidth(240);
    mProgress->setVisible(false);
    mStatusBar->addPermanentWidget(mProgress);
    mStopButton = new QToolButton(mStatusBar);
    mStopButton->setObjectName("stop_button");
    mStopButton->setText("Stop");
    mStopButton->setToolTip("Interrupt the reading of the file");
    mStopButton->setVisible(false);
    connect(mStopButton, &QToolButton::clicked, this, &wxWaveExplorerWidgetImpl::interruptLauncher);
    mStatusBar->addPermanentWidget(mStopButton);
    // The mouse's position over a plot stays in the status bar beside the messages.
    auto* cursorPosition = new QLabel(mStatusBar);
    cursorPosition->setObjectName("cursor_position");
    mStatusBar->addPermanentWidget(cursorPosition);
    mNotebook->setCursorPositionTextHandler(
        [cursorPosition](const std::string& text) { cursorPosition->setText(QString::fromStdString(text)); });
    layout->addWidget(vertical, 1);
    layout->addWidget(mStatusBar);
}

void wxWaveExplorerWidgetImpl::startup()
{
    mMainThread.reset();
    refreshBrowser();
    // A file locked by another instance at the start is tried again until it can be read.
    if (mConfiguration.loadAndSaveConfigFile && mConfiguration.checkLoadIsWorthRetrying())
        mLoadConfigTimer->start(100);
    startReloadTimer();
    if (!mFilesToOpen.empty())
        checkForToFilesToOpen(true);
}

void wxWaveExplorerWidgetImpl::applicationCloses()
{
    mConfiguration.setChangeListener(nullptr);
    mSaveConfigTimer->stop();
    mLoadConfigTimer->stop();
    mLogger.setLoggerCallBack(nullptr);
    mNotificationTimer->stop();
    mReloadTimer->stop();
    mFilesToOpen.clear();
    if (mLauncher) {
        mLauncher->interrupt();
        mLauncher->joinThread();
    }
}

void wxWaveExplorerWidgetImpl::startSaveToConfigurationTimer()
{
    if (!mConfiguration.loadAndSaveConfigFile)
        return;
    if (mMainThread.compareThreadId())
        mSaveConfigTimer->start(1000);
    else
        QMetaObject::invokeMethod(mSaveConfigTimer, [this] { mSaveConfigTimer->start(1000); }, Qt::QueuedConnection);
}

wxWaveExplorerConfigurationDialog* wxWaveExplorerWidgetImpl::showConfigurationDialog()
{
    if (!mConfigurationDialog)
        mConfigurationDialog = new wxWaveExplorerConfigurationDialog(this, mConfiguration, mLogger);
    mConfigurationDialog->updateConfigurationGrid();
    mConfigurationDialog->show();
    mConfigurationDialog->raise();
    return mConfigurationDialog;
}

void wxWaveExplorerWidgetImpl::updateConfigurationGrid()
{
    if (mConfigurationDialog && mConfigurationDialog->isVisible())
        mConfigurationDialog->updateConfigurationGrid();
}

void wxWaveExplorerWidgetImpl::saveConfigurationAfterQuiet()
{
    if (!mConfiguration.getFlagConfigChanged())
        return;
    if (mConfiguration.checkAutomaticSaveAllowed()) {
        mConfiguration.saveToConfig(mLogger);
        return;
    }
    if (!mToldSaveRefused) {
        mToldSaveRefused = true;
        mLogger.warnMsg("The configuration file was not loaded at startup: it is not overwritten. "
                        "save_configuration_file writes it nevertheless.");
    }
}

void wxWaveExplorerWidgetImpl::retryLoadingConfiguration()
{
    // Short waits for the lock here: the main thread must not hang on another instance.
    constexpr int kAttempts = 600;  // a minute at 100 milliseconds
    mConfiguration.setBusyTimeout(20);
    // The lines of an attempt are kept back: only the attempt that ends the retries is told.
    cVxLogger attempt(vxLogger::debug, true);
    bool loaded = mConfiguration.loadFromConfig(attempt);
    mConfiguration.setBusyTimeout(2000);
    bool done = loaded || mConfiguration.checkConfigLoadedOrDefinitelyFailed() || ++mLoadConfigAttempts >= kAttempts;
    if (!done)
        return;
    mLoadConfigTimer->stop();
    attempt.setLoggerCallBack(mLogSink.get());
    attempt.setLoggerCallBack(nullptr);
    if (loaded) {
        mLogger.infoMsg("Loaded configuration from " + mConfiguration.getConfigFileName() + ".");
        takeBrowserRulesFromConfiguration();
    }
}

void wxWaveExplorerWidgetImpl::takeBrowserRulesFromConfiguration()
{
    wxBrowserConfiguration& rules = mBrowser->configuration();
    const std::string& record = mConfiguration.getBrowserRules();
    if (!record.empty() && !rules.deserialize(record))
        mLogger.warnMsg("The saved rules of the curve browser could not be read: the browser keeps its present rules.");
    rules.setUseFullHierarchicalNames(mConfiguration.getOptionFlag("browser_use_full_hierarchical_names"));
    mBrowserRulesRecord = rules.serialize();
    mStoreChanged = true;  // the tree is rebuilt under the rules at the next chance
    refreshBrowser();
}

void wxWaveExplorerWidgetImpl::storeBrowserRules()
{
    std::string record = mBrowser->configuration().serialize();
    if (record == mBrowserRulesRecord)
        return;
    mBrowserRulesRecord = std::move(record);
    mConfiguration.setBrowserRules(mBrowserRulesRecord);
}

void wxWaveExplorerWidgetImpl::startNotificationTimer()
{
    QMetaObject::invokeMethod(mNotificationTimer, qOverload<>(&QTimer::start), Qt::QueuedConnection);
}

void wxWaveExplorerWidgetImpl::showStatusBarMessage(unsigned severity, const std::string& text)
{
    mLogger.sendMsg(severity, text);
}

bool wxWaveExplorerWidgetImpl::getWidgetInfo(unsigned request, void*, void*& result, int& result1, int& result2)
{
    switch (request) {
    case 1: result = mBrowser; return true;
    case 2: result = nullptr; return true;  // the tool bar joins with the plot pages
    case 3: result1 = 0; result2 = 0; return true;
    case 6: return true;
    case 7: result = mStatusBar; return true;
    case 8: result = mBrowser; return true;
    case 9: result = mNotebook; return true;
    case 10: result = mLogPane; return true;
    default: return false;
    }
}

void wxWaveExplorerWidgetImpl::appendLogLine(unsigned severity, const QString& text)
{
    QString line = QString::fromLatin1(vxLogger::severityTag(severity)).trimmed() + " " + text;
    mLogPane->appendPlainText(line);
    mStatusBar->showMessage(text, 10000);
    if (mOwner)
        mOwner->waveExplorerVirtualStatusBarMessage(severity, text.toStdString());
}

int wxWaveExplorerWidgetImpl::executeCommandFromThread(wxWaveExplorerCommand& command, bool useThread)
{
    if (mMainThread.compareThreadId())
        return executeCommandFromThreadImpl(command, useThread);

    cVxScopedLock lock(mBridgeMutex);
    mBridgeCommand = command;
    mBridgeResult.store(kBridgePending);
    mBridgeUseThread = useThread;
    mBridgeRequest.store(true, std::memory_order_release);
    auto* event = new cExecuteCommandEvent();
    sanitizerHandOver::announce(event);
    QCoreApplication::postEvent(this, event, Qt::HighEventPriority);
    // Most commands take microseconds: look at the result a little before sleeping, which
    // saves a wake-up per command, then wait on the condition (which releases the lock).
    {
        mBridgeMutex.unlock();
        for (int spin = 0; spin < 4000 && mBridgeResult.load(std::memory_order_acquire) == kBridgePending; ++spin)
            __builtin_ia32_pause();
        mBridgeMutex.lock();
    }
    while (mBridgeResult.load() == kBridgePending)
        mBridgeCondition.waitForCondition(lock);
    command = mBridgeCommand;
    return mBridgeResult.load();
}

bool wxWaveExplorerWidgetImpl::event(QEvent* event)
{
    sanitizerHandOver::accept(event);
    if (event->type() == static_cast<QEvent::Type>(waveExplorerEvent::execute_command)) {
        serveBridge();
        return true;
    }
    if (handleLauncherEvent(event))
        return true;
    return QWidget::event(event);
}

void wxWaveExplorerWidgetImpl::serveBridge()
{
    // A session sends its next command right after our reply: wait a moment for it here rather
    // than go back to sleep in the event loop and be woken again. The posted event of a request
    // served this way finds nothing left to do.
    while (true) {
        {
            cVxScopedLock lock(mBridgeMutex);
            if (!mBridgeRequest.load(std::memory_order_acquire))
                return;
            mBridgeRequest.store(false);
            int result = executeCommandFromThreadImpl(mBridgeCommand, mBridgeUseThread);
            if (result == kBridgePending)
                result = 3;  // the waiter must not take a real 18 for "still pending"
            mBridgeResult.store(result, std::memory_order_release);
            mBridgeCondition.notifyOne();
        }
        int spin = 0;
        while (spin < 2000 && !mBridgeRequest.load(std::memory_order_acquire)) {
            __builtin_ia32_pause();
            ++spin;
        }
        if (spin == 2000)
            return;
    }
}

void wxWaveExplorerWidgetImpl::refreshBrowser()
{
    if (checkLauncherIsWorking())
        return;  // the reader holds the store; the end of its task refreshes
    mStoreChanged = false;
    mBrowser->refresh(*mStore);
}

}  // namespace vx3
