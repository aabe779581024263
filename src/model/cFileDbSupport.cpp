#include "model/cFileDbSupport.h"

#include "base/cVxLogger.h"
#include "readers/scan/fileAccessCheck.h"

namespace vx3 {

cFileDbSupport::cFileDbSupport(const std::string& fileName, unsigned type, uint64_t id) : mType(type), mId(id)
{
    defineFileNames(fileName);
}

void cFileDbSupport::defineFileNames(const std::string& fileName)
{
    mFileName = fileName;
    std::string name = fileName;
    while (name.size() > 1 && name.back() == '/')
        name.pop_back();
    const size_t slash = name.rfind('/');
    mBaseName = slash == std::string::npos ? name : name.substr(slash + 1);
    updateShortName();
}

void cFileDbSupport::setFileIndex(unsigned index)
{
    mFileIndex = index;
    updateShortName();
}

void cFileDbSupport::updateShortName()
{
    mShortUniqueName = mBaseName;
    if (mFileIndex)
        mShortUniqueName += " (" + std::to_string(mFileIndex) + ")";
}

}  // namespace vx3

// ---------------------------------------------------------------- file handles

namespace vx3 {

namespace {
bool endsWith(const std::string& text, const std::string& suffix)
{
    return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

bool isPsfFamily(unsigned type) { return type >= fileDbSupport::psf_ascii && type <= fileDbSupport::psfxl_53; }
}  // namespace

std::string cFileDbSupport::getDataFileName() const
{
    if (isPsfFamily(mType)) {
        for (const char* partner : {".dat", ".psfxl"})
            if (fileAccess::checkFileExists(mFileName + partner))
                return mFileName + partner;
    }
    if (endsWith(mFileName, ".dsn")) {
        const std::string partner = mFileName.substr(0, mFileName.size() - 4) + ".trn";
        if (fileAccess::checkFileExists(partner))
            return partner;
    }
    return mFileName;
}

bool cFileDbSupport::checkFileIsOpen() const
{
    std::lock_guard<std::mutex> lock(mOpenMutex);
    return mMemoryFile || mBinaryFile || mDbHandle;
}

bool cFileDbSupport::openFile(const cVxLogger* logger)
{
    {
        std::lock_guard<std::mutex> lock(mOpenMutex);
        if (mMemoryFile || mBinaryFile || mDbHandle)
            return true;
    }
    if (mFileName.empty()) {
        mOpenError = "A file without name cannot be opened.";
    } else if (fileDbHandles::checkUsesDbHandle(mType)) {
        if (openDbHandle())
            return true;
    } else if (openFileImpl(getDataFileName())) {
        return true;
    }
    if (logger)
        logger->errorMsg(mOpenError);
    return false;
}

bool cFileDbSupport::openFileImpl(const std::string& name)
{
    std::lock_guard<std::mutex> lock(mOpenMutex);
    if (mMemoryFile || mBinaryFile)
        return true;
    auto mapped = std::make_unique<cVxMemoryFile>();
    if (mapped->openFile(name)) {
        mMemoryFile = std::move(mapped);
        return true;
    }
    // Some files can't be mapped (special file systems); reading them still works.
    auto binary = std::make_unique<cVxBinFile>();
    if (binary->openFile(name)) {
        mBinaryFile = std::move(binary);
        return true;
    }
    mOpenError = binary->getErrorMessage();
    if (!fileAccess::checkFileExists(name))
        mOpenError = "The file \"" + name + "\" does no longer exist.";
    return false;
}

bool cFileDbSupport::openDbHandle()
{
    std::lock_guard<std::mutex> lock(mOpenMutex);
    if (mDbHandle)
        return true;
    std::unique_ptr<cFileDbHandle> handle = fileDbHandles::create(mType);
    if (!handle) {
        mOpenError = "The file \"" + mFileName + "\" of type \"" + getDbTypeAsSting() +
                     "\" can't be opened: its data base access isn't available.";
        return false;
    }
    if (!handle->open(mFileName, mOpenError))
        return false;
    mDbHandle = std::move(handle);
    return true;
}

void cFileDbSupport::closeFile()
{
    std::lock_guard<std::mutex> lock(mOpenMutex);
    mMemoryFile.reset();
    mBinaryFile.reset();
    if (mDbHandle)
        mDbHandle->close();
    mDbHandle.reset();
}

void cFileDbSupport::clearFile()
{
    closeFile();
    mPartialFiles.clear();
    mFileSize = 0;
    mLastWriteTime = 0;
}

bool cFileDbSupport::checkPartialFilesChanged()
{
    bool changed = false;
    for (fileDbSupport::cPartialFile& part : mPartialFiles) {
        uint64_t size = 0;
        time_t time = 0;
        if (!fileAccess::getFileSizeAndTime(part.fileName, size, time)) {
            changed = true;
            continue;
        }
        if (size != part.size || time != part.lastWriteTime) {
            changed = true;
            part.size = size;
            part.lastWriteTime = time;
        }
    }
    return changed;
}

bool cFileDbSupport::checkFileChanged()
{
    if (mFileName.empty() || checkIsToolbox())
        return false;
    if (fileDbHandles::checkUsesDbHandle(mType)) {
        std::lock_guard<std::mutex> lock(mOpenMutex);
        if (mDbHandle)
            return mDbHandle->checkIfReloadMakesSense();
    }
    if (mType == fileDbSupport::plugin_db_access && mPluginChangeCheck)
        return mPluginChangeCheck();
    if (!mPartialFiles.empty())
        return checkPartialFilesChanged();
    uint64_t size = 0;
    time_t time = 0;
    if (!fileAccess::getFileSizeAndTime(mFileName, size, time))
        return mFileSize != 0 || mLastWriteTime != 0;  // it was there at parsing and is gone now
    const bool changed = size != mFileSize || time != mLastWriteTime;
    mFileSize = size;
    mLastWriteTime = time;
    return changed;
}

bool cFileDbSupport::checkCanBeReloaded() const
{
    if (mFileName.empty() || checkIsToolbox() || mType == fileDbSupport::drop)
        return false;
    uint64_t size = 0;
    time_t time = 0;
    if (!fileAccess::getFileSizeAndTime(mFileName, size, time))
        return mType == fileDbSupport::plugin_71 || mType == fileDbSupport::plugin_db_access;
    return size >= mFileSize;
}

bool cFileDbSupport::checkIncrementalReloadPossible() const
{
    uint64_t size = 0;
    time_t time = 0;
    return !mFileName.empty() && fileAccess::getFileSizeAndTime(mFileName, size, time) && size > mFileSize &&
           mFileSize > 0;
}

}  // namespace vx3
