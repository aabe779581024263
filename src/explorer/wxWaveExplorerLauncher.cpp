#include "wxWaveExplorerLauncher.h"

#include <QCoreApplication>
#include <QEvent>

#include <filesystem>

#include "model/cCurvePlotDataFile.h"
#include "readers/cCurvePlotParser.h"

namespace vx3 {

using namespace waveExplorerLauncher;

wxWaveExplorerLauncher::wxWaveExplorerLauncher(cCurvePlotDataFile& store, cVxLoggerCallBack& messages,
                                               QObject* target)
    : cVxThread("waveExplorerLauncher"), mStore(store), mMessages(messages), mTarget(target),
      mTaskMutex("explorer launcher")
{
}

wxWaveExplorerLauncher::~wxWaveExplorerLauncher()
{
    interrupt();
    joinThread();
}

bool wxWaveExplorerLauncher::start(int task)
{
    if (mRunning.load())
        return false;
    joinThread();
    mTask = task;
    mResult = cResult();
    mResult.task = task;
    mInterrupted.store(false);
    mRunning.store(true);
    if (!createThread()) {
        mRunning.store(false);
        return false;
    }
    return true;
}

bool wxWaveExplorerLauncher::startParse(const cOpenFileWithOptionsConfiguration& options)
{
    if (mRunning.load())
        return false;
    mOptions = options;
    return start(parse_file);
}

bool wxWaveExplorerLauncher::startReload(const std::vector<std::string>& fileNames)
{
    if (mRunning.load())
        return false;
    mReloadFiles = fileNames;
    return start(reload_marked_in_thread);
}

wxWaveExplorerLauncher::cResult wxWaveExplorerLauncher::takeResult()
{
    joinThread();
    return mResult;
}

void wxWaveExplorerLauncher::loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text)
{
    mMessages.loggerCallBackVirtualLogMessage(severity, text);
}

void wxWaveExplorerLauncher::executeThread()
{
    int event = parse_done;
    {
        cVxScopedLock lock(mTaskMutex);
        try {
            if (mTask == parse_file) {
                parseFileInThreadImpl();
            } else {
                event = auto_reload_done_in_thread;
                reloadFilesInThreadImpl();
            }
        } catch (const std::exception& exception) {
            // A reader that gives up with an exception fails the task, never the program.
            mResult.code = failed;
            mMessages.loggerCallBackVirtualLogMessage(vxLogger::error, exception.what());
        }
    }
    mRunning.store(false);
    if (mTarget)
        QCoreApplication::postEvent(mTarget, new QEvent(static_cast<QEvent::Type>(event)));
}

void wxWaveExplorerLauncher::parseFileInThreadImpl()
{
    const std::string& name = mOptions.fileName;
    mResult.fileName = name;
    std::error_code error;
    if (!std::filesystem::exists(name, error)) {
        mResult.code = file_not_found;
        return;
    }
    // The reader changes the store's lists and the new sections under this lock; the window only
    // try-locks it while a task runs.
    cVxScopedLock lock(mStore.getMutex());
    if (mStore.checkIfFileHasAlreadyBeenOpened(name, std::string())) {
        mResult.alreadyOpened = true;
        mResult.code = ok;
        mMessages.loggerCallBackVirtualLogMessage(vxLogger::warning,
                                                  "The file " + name + " has already been opened !");
        return;
    }
    const uint64_t before = mStore.getNbOfDataSections();
    cCurvePlotParser parser;
    parser.logger().setLoggerCallBack(this);
    mResult.code = parser.parse(mStore, name, static_cast<unsigned>(mOptions.readerType));
    parser.logger().setLoggerCallBack(nullptr);
    const uint64_t after = mStore.getNbOfDataSections();
    mResult.sectionsAdded = after > before ? after - before : 0;
    // A read that failed or stopped before any section leaves no file entry behind, so that the
    // file can be opened again once it is whole.
    if (mResult.sectionsAdded == 0 && mResult.code != ok && mResult.code != partly_parsed) {
        if (mStore.findDbSupportPtr(name))
            mStore.removeDbSupport(name);
    }
}

void wxWaveExplorerLauncher::reloadFilesInThreadImpl()
{
    cVxScopedLock lock(mStore.getMutex());
    mResult.code = ok;
    for (const std::string& name : mReloadFiles) {
        if (mInterrupted.load()) {
            mResult.code = action_interrupted;
            break;
        }
        cCurvePlotParser parser;
        parser.logger().setLoggerCallBack(this);
        const returnCode code = parser.reloadFile(mStore, name, std::string());
        parser.logger().setLoggerCallBack(nullptr);
        if (code == ok)
            mResult.reloaded.push_back(name);
        else if (code == partly_parsed || code == action_interrupted)
            mResult.partlyReloaded.push_back(name);
        else
            mResult.failed.push_back(name);
    }
}

}  // namespace vx3
