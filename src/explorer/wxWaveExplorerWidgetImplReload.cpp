// Watching open files: a timer looks for files that changed on disk and reloads them on the
// launcher thread; plots let go of their curves before and find them again after.
#include <QStatusBar>
#include <QTimer>

#include <cmath>

#include "app/core/wxWaveExplorerConfiguration.h"
#include "model/cCurvePlotDataFile.h"
#include "wxWaveExplorerWidgetImpl.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {
// With automatic reload off, the setting is looked at again this often.
constexpr int kIdleLookMs = 1000;

wxWaveExplorerCommand reloadCommandFor(const std::string& fileName)
{
    wxWaveExplorerCommand command;
    command.actionType = cmd_reload_file;
    command.setStringArgument(0, fileName);
    return command;
}

std::string countText(const char* verb, size_t count, const std::vector<std::string>& names)
{
    if (count == 1)
        return std::string(verb) + " file \"" + names.front() + "\".";
    return std::string(verb) + " " + std::to_string(count) + " files.";
}
}  // namespace

void wxWaveExplorerWidgetImpl::startReloadTimer()
{
    const double seconds = mConfiguration.getAutoReloadInterval();
    const bool on = std::isfinite(seconds) && seconds > 0;
    mReloadTimer->start(on ? std::max(50, static_cast<int>(std::lround(seconds * 1000.0))) : kIdleLookMs);
}

void wxWaveExplorerWidgetImpl::timerNotification()
{
    const double seconds = mConfiguration.getAutoReloadInterval();
    if (!(std::isfinite(seconds) && seconds > 0) || !mReloadEnabled || mHold || checkLauncherIsWorking()) {
        startReloadTimer();
        return;
    }
    std::vector<std::string> marked;
    bool someCannot = false;
    {
        cVxScopedLock lock(mStore->getMutex());
        for (uint64_t i = 0; i < mStore->getNbOfDbFiles(); ++i) {
            cFileDbSupport* file = mStore->dbFile(i);
            if (!file || file->checkIsToolbox() || file->fileName().empty())
                continue;
            const std::string name = file->fileName();
            // Asked before checkFileChanged, which takes the new size as the file's own.
            const bool canReload = file->checkCanBeReloaded();
            if (!file->checkFileChanged())
                continue;
            if (canReload) {
                mToldUnreloadable.erase(name);
                marked.push_back(name);
            } else if (mToldUnreloadable.insert(name).second) {
                someCannot = true;
            }
        }
    }
    if (someCannot) {
        mLogger.warnMsg("Some files can't be reloaded.");
        mStatusBar->showMessage("Some files can't be reloaded.");
    }
    if (marked.empty()) {
        startReloadTimer();
        return;
    }
    for (const std::string& name : marked)
        preparePlotsForStoreCommand(reloadCommandFor(name));
    setApplicationBusy(true);
    setFlagEnableReload(false);
    if (!mLauncher->startReload(marked)) {
        setApplicationBusy(false);
        setFlagEnableReload(true);
        for (const std::string& name : marked)
            updatePlotsAfterStoreCommand(reloadCommandFor(name));
    }
    startReloadTimer();
}

void wxWaveExplorerWidgetImpl::reloadDone()
{
    const wxWaveExplorerLauncher::cResult result = mLauncher->takeResult();
    for (const auto* list : {&result.reloaded, &result.partlyReloaded, &result.failed})
        for (const std::string& name : *list)
            updatePlotsAfterStoreCommand(reloadCommandFor(name));
    if (!result.failed.empty()) {
        mLogger.errorMsg("Failed to reload file.");
        mStatusBar->showMessage("Failed to reload file.");
    } else if (!result.partlyReloaded.empty()) {
        showStatusText(countText("Partially reloaded", result.partlyReloaded.size(), result.partlyReloaded));
    } else if (!result.reloaded.empty()) {
        showStatusText(countText("Reloaded", result.reloaded.size(), result.reloaded));
    }
    mStoreChanged = true;
    setApplicationBusy(false);
    refreshBrowser();
    setFlagEnableReload(true);
}

}  // namespace vx3
