// Reading and writing "conf.db". No failure here stops the program: the defaults stand in for what
// could not be read, and the log says why.
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <ctime>

#include "base/cVxFilePath.h"
#include "base/cVxLogger.h"
#include "cDataBaseInterface.h"
#include "wxWaveExplorerConfiguration.h"

namespace vx3 {

using namespace waveExplorerConfiguration;

namespace {
struct cTopicTexts {
    topic_type topic;
    const char* loaded;
    const char* failed;
    const char* saved;
    const char* description;
};
const cTopicTexts kTopics[] = {
    {topic_main, "Loaded configuration from ", "Failed to load configuration from ", "Saved configuration to ",
     "configuration"},
    {topic_post_process, "Loaded post process configuration from ", "Failed to load post process configuration from ",
     "Saved post process configuration to ", "post process configuration"},
    {topic_browser, "Loaded browser from ", "Failed to load browser configuration from ",
     "Saved browser configuration to ", "browser configuration"},
};

bool fileExists(const std::string& name)
{
    struct stat info {};
    return ::stat(name.c_str(), &info) == 0;
}

std::string parentFolder(const std::string& name)
{
    size_t slash = name.find_last_of('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : name.substr(0, slash);
}

// The file's own folder is made when missing; the folder above it must exist already, so that a HOME that
// is not there is never made by this program.
bool makeFolderOf(const std::string& fileName, const cVxLogger& logger)
{
    std::string folder = parentFolder(fileName);
    if (fileExists(folder))
        return true;
    std::string above = parentFolder(folder);
    if (!fileExists(above)) {
        logger.warnMsg("The folder \"" + above + "\" does not exist.");
        return false;
    }
    if (::mkdir(folder.c_str(), 0755) != 0 && errno != EEXIST) {
        logger.warnMsg("Could not create the folder \"" + folder + "\": " + std::strerror(errno) + ".");
        return false;
    }
    return true;
}
}  // namespace

void wxWaveExplorerConfiguration::resetFlagsForLoadingConfig()
{
    mLoaded = false;
    mLoadFailedDefinitely = false;
    mFileWasMissing = false;
}

bool wxWaveExplorerConfiguration::loadTopics(cDataBaseInterface& db, const std::string& fileName, cConfigData& target,
                                             bool log, const cVxLogger& logger)
{
    bool allRead = true;
    for (const auto& texts : kTopics) {
        const cDataBaseContentsEntry* entry = db.contents().findEntryOfType(texts.topic);
        if (!entry)
            continue;
        std::vector<uint8_t> data;
        bool fetched = false;
        try {
            fetched = db.getFromDb(entry->primaryKey, data);
        } catch (const cSqliteDataBaseException& exception) {
            if (log)
                logger.debugMsg(exception.what());
        }
        if (!fetched) {
            if (log) {
                logger.errorMsg("Failed to access database for reading.");
                logger.errorMsg(texts.failed + fileName + ".");
            }
            target.setDefaults(texts.topic);
            allRead = false;
            continue;
        }
        if (log)
            mFileState[texts.topic] = data;
        switch (target.deserializeTopic(data, texts.topic)) {
        case load_ok:
            if (log)
                logger.sendMsg(texts.topic == topic_main ? vxLogger::nocl : vxLogger::info, texts.loaded + fileName + ".");
            break;
        case load_partial:
            if (log)
                logger.warnMsg("Loaded PARTIAL configuration from " + fileName + ".");
            target.setIncompatibleValuesToDefault();
            allRead = false;
            break;
        case load_failed:
            if (log)
                logger.errorMsg(texts.failed + fileName + ".");
            target.setDefaults(texts.topic);
            allRead = false;
            break;
        }
    }
    return allRead;
}

bool wxWaveExplorerConfiguration::loadFromConfig(const cVxLogger& logger)
{
    if (mConfigFileName.empty())
        mConfigFileName = getConfigFileName();
    const std::string& fileName = mConfigFileName;
    cDataBaseInterface db;
    cConfigData loaded;
    try {
        db.open(fileName, sqliteDataBaseInterface::mode_read_only, mBusyMilliseconds);
        db.readDbContents();
        mFileState.clear();
        loadTopics(db, fileName, loaded, true, logger);
    } catch (const std::exception& exception) {
        // Not there, not a data base, locked by another instance, or a damaged directory.
        logger.warnMsg("Could not load configuration at " + fileName + ".");
        logger.debugMsg(exception.what());
        const auto* sqlite = dynamic_cast<const cSqliteDataBaseException*>(&exception);
        mFileWasMissing = !fileExists(fileName);
        mLoadFailedDefinitely = !(sqlite && sqlite->checkIsBusy());
        mFileState.clear();
        mFileStateName.clear();
        return false;
    }
    // What this session has changed already (before a retried load) stays as the session set it.
    loaded.copyFields(*this, changedFields());
    takeKeptValues(loaded);
    mFileStateName = fileName;
    mLoaded = true;
    mLoadFailedDefinitely = false;
    mFileWasMissing = false;
    if (changedFields().empty())
        setFlagConfigChanged(false);
    return true;
}

bool wxWaveExplorerConfiguration::readConfigurationFile(const std::string& fileName, const cVxLogger& logger)
{
    wxWaveExplorerConfiguration probe;
    probe.setConfigFileName(fileName);
    probe.setBusyTimeout(mBusyMilliseconds);
    if (!probe.loadFromConfig(logger))
        return false;
    takeKeptValues(probe);
    mConfigFileName = fileName;
    mFileState = std::move(probe.mFileState);
    mFileStateName = fileName;
    mLoaded = true;
    mLoadFailedDefinitely = false;
    mFileWasMissing = false;
    clearChangedFields();
    setFlagConfigChanged(false);
    return true;
}

bool wxWaveExplorerConfiguration::checkFileChangedSince(cDataBaseInterface& db)
{
    for (const auto& texts : kTopics) {
        const cDataBaseContentsEntry* entry = db.contents().findEntryOfType(texts.topic);
        auto known = mFileState.find(texts.topic);
        if (!entry) {
            if (known != mFileState.end())
                return true;
            continue;
        }
        std::vector<uint8_t> data;
        if (!db.getFromDb(entry->primaryKey, data))
            continue;
        if (known == mFileState.end() || known->second != data)
            return true;
    }
    return false;
}

bool wxWaveExplorerConfiguration::saveToConfig(const cVxLogger& logger)
{
    if (mConfigFileName.empty())
        mConfigFileName = getConfigFileName();
    return saveToConfig(mConfigFileName, logger);
}

bool wxWaveExplorerConfiguration::saveToConfig(const std::string& fileName, const cVxLogger& logger)
{
    const bool ownFile = fileName == mConfigFileName;
    if (!makeFolderOf(fileName, logger)) {
        logger.warnMsg("Could not save configuration to " + fileName + ".");
        return false;
    }
    cDataBaseInterface db;
    try {
        db.open(fileName, sqliteDataBaseInterface::mode_read_write_create, mBusyMilliseconds);
        db.sqlite().beginWrite();
        bool directoryRead = false;
        try {
            directoryRead = db.readDbContents();
        } catch (const cSerializerException&) {
            // A damaged directory is written anew; the rows it listed are overwritten by type.
            db.contents() = cDataBaseContents();
        }
        // Another instance wrote the file since this one read or wrote it: its settings stay for
        // everything that this session did not change.
        if (ownFile && directoryRead && db.contents().findEntryOfType(topic_main) &&
            (mFileStateName != fileName || checkFileChangedSince(db))) {
            cConfigData theirs;
            loadTopics(db, fileName, theirs, false, logger);
            theirs.copyFields(*this, changedFields());
            takeKeptValues(theirs);
            logger.infoMsg("The configuration file " + fileName +
                           " was changed by another instance: its settings are kept where this one made no change.");
        }
        std::map<uint32_t, std::vector<uint8_t>> written;
        for (const auto& texts : kTopics) {
            uint64_t key = db.getOrAddKeyForType(texts.topic, texts.description);
            written[texts.topic] = serializeTopic(texts.topic);
            db.putToDb(key, written[texts.topic]);
        }
        if (db.contents().versioned)
            db.contents().addVersion(static_cast<int64_t>(std::time(nullptr)));
        db.writeDbContents();
        db.sqlite().commit();
        if (ownFile) {
            mFileState = std::move(written);
            mFileStateName = fileName;
            clearChangedFields();
            setFlagConfigChanged(false);
        }
    } catch (const std::exception& exception) {
        db.sqlite().rollback();
        logger.warnMsg("Could not save configuration to " + fileName + ".");
        logger.debugMsg(exception.what());
        return false;
    }
    for (const auto& texts : kTopics)
        logger.infoMsg(texts.saved + fileName + ".");
    return true;
}

}  // namespace vx3
