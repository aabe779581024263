#include "wxWaveExplorerCommandFileGeneration.h"

#include "base/cVxFilePath.h"
#include "base/cVxLogger.h"

namespace vx3 {

using waveExplorerCommandFileGeneration::cCommandFile;

bool cCommandFile::open()
{
    mStream.open(mName, std::ios::out | std::ios::trunc);
    if (!mStream.is_open())
        return false;
    mStream << wxWaveExplorerCommandFileGeneration::headerLine() << std::endl;
    return true;
}

void cCommandFile::print(const std::string& line)
{
    if (mStream.is_open())
        mStream << line << std::endl;
}

namespace {
std::string normalised(const std::string& name)
{
    cVxFilePath path(name);
    path.convertToAbsolutePath();
    path.simplifyPath();
    return path.name();
}
}  // namespace

int wxWaveExplorerCommandFileGeneration::openExportCommandFile(const std::string& name, const cVxLogger& logger)
{
    std::lock_guard<std::mutex> lock(mMutex);
    const std::string key = normalised(name);
    for (const auto& file : mFiles) {
        if (file->name() == key) {
            bool open = file->checkFileIsOpen();
            logger.infoMsg("The command file \"" + key + "\" is " + (open ? "already" : "not") + " open.");
            return open ? 0 : 3;
        }
    }
    if (mFiles.size() >= kMaximumFiles) {
        logger.errorMsg("Not more than 10 command files can be generated at the same time.");
        return 3;
    }
    auto file = std::make_unique<cCommandFile>(key);
    if (!file->open()) {
        logger.errorMsg("Failed to open file \"" + name + "\".");
        return 3;
    }
    mFiles.push_back(std::move(file));
    return 0;
}

int wxWaveExplorerCommandFileGeneration::closeExportCommandFile(const std::string& name, const cVxLogger& logger)
{
    std::lock_guard<std::mutex> lock(mMutex);
    const std::string key = normalised(name);
    for (auto it = mFiles.begin(); it != mFiles.end(); ++it) {
        if ((*it)->name() == key) {
            mFiles.erase(it);
            return 0;
        }
    }
    logger.errorMsg("The command file \"" + name + "\" is not registered.");
    return 3;
}

void wxWaveExplorerCommandFileGeneration::printCommand(const std::string& text)
{
    std::lock_guard<std::mutex> lock(mMutex);
    if (!mRecording || mFiles.empty())
        return;
    for (auto& file : mFiles)
        file->print(text);
}

void wxWaveExplorerCommandFileGeneration::printComment(const std::string& text)
{
    std::lock_guard<std::mutex> lock(mMutex);
    if (!mRecording || mFiles.empty())
        return;
    for (auto& file : mFiles)
        file->print("# " + text);
}

}  // namespace vx3
