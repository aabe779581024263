// One open file (or the calculator's tool box): names, format and the state shared by its curves.
#pragma once

#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "model/cCurvePlotProperties.h"
#include "model/cFileDbHandle.h"
#include "model/fileDbType.h"
#include "readers/scan/cVxBinFile.h"
#include "readers/scan/cVxMemoryFile.h"
#include "readers/scan/cVxTmpBuffer.h"

namespace vx3 {

namespace fileDbSupport {
// A piece of a result that is spread over several files.
struct cPartialFile {
    std::string fileName;
    time_t lastWriteTime = 0;
    uint64_t size = 0;
};
}  // namespace fileDbSupport

class cVxLogger;

// Its properties hold what a reload must know of the first parse (kinds 40 to 45).
class cFileDbSupport : public cCurvePlotProperties {
public:
    cFileDbSupport() = default;
    cFileDbSupport(const std::string& fileName, unsigned type, uint64_t id);
    cFileDbSupport(const cFileDbSupport&) = delete;
    cFileDbSupport& operator=(const cFileDbSupport&) = delete;

    // ---- The open file behind the curves' values. Opened on the first load, memory map first
    // and FILE* when mapping fails; closeFile frees the handles, the next load opens again.
    // The messages go to logger when given.
    bool openFile(const cVxLogger* logger = nullptr);
    bool openFileImpl(const std::string& name);
    void closeFile();
    // Closes and forgets the state recorded at parsing (partial files, size and time).
    void clearFile();
    void deleteFileHandles() { closeFile(); }
    bool checkFileIsOpen() const;
    // The handle a loader reads through: exactly one of the three is set while the file is open.
    // A PWF file is served by its data base handle.
    cVxMemoryFile* memoryFileHandle() const { return mMemoryFile.get(); }
    cVxBinFile* binaryFileHandle() const { return mBinaryFile.get(); }
    cFileDbHandle* dbHandle() const { return mDbHandle.get(); }
    // Plug-in files (type 72) ask the plug-in whether the file changed.
    void setChangeCheck(std::function<bool()> check) { mPluginChangeCheck = std::move(check); }
    // The file that holds the values: a PSF file's ".dat" or ".psfxl" partner, a ".dsn" file's
    // ".trn" partner when it exists, else the file itself.
    std::string getDataFileName() const;
    const std::string& getOpenErrorMessage() const { return mOpenError; }
    // Scratch memory shared by the loads of this file.
    char* getFileDataBuffer(uint64_t size) { return mDataBuffer.getTmpBuffer(size); }

    // Compares the last write time and size with the stored ones, and stores the new ones.
    // For a result spread over several files each part is asked.
    bool checkFileChanged();
    // A named file of a file-based format that still exists with at least its size at parsing.
    bool checkCanBeReloaded() const;
    // The file grew and kept its old content's size: a reader may add only what is new.
    bool checkIncrementalReloadPossible() const;
    // Values that stay in memory can be kept when the file goes away.
    bool checkCanBeMadePersistentInMemory() const { return !checkDbSupportActive(); }
    bool checkPersistentFileCopyIsPossible() const { return !mFileName.empty() && !checkIsToolbox(); }

    uint64_t getId() const { return mId; }
    unsigned getDbType() const { return mType; }
    void initDbSupport(unsigned type) { mType = type; }
    const char* getDbTypeAsSting() const { return fileDbSupport::getDbTypeAsSting(mType); }

    // Names: the whole path, its last component, and the unique short name of the browser.
    void defineFileNames(const std::string& fileName);
    void setFileName(const std::string& fileName) { defineFileNames(fileName); }
    const std::string& fileName() const { return mFileName; }
    const std::string& baseName() const { return mBaseName; }
    const std::string& shortUniqueName() const { return mShortUniqueName; }
    // Distinguishes files of the same base name by " (n)"; 0 removes it.
    void setFileIndex(unsigned index);
    unsigned getFileIndex() const { return mFileIndex; }

    // File state at parsing time, compared on reload.
    uint64_t getFileSize() const { return mFileSize; }
    time_t getLastWriteTime() const { return mLastWriteTime; }
    void setFileSizeAndTime(uint64_t size, time_t time)
    {
        mFileSize = size;
        mLastWriteTime = time;
    }
    void addPartialFile(const fileDbSupport::cPartialFile& file) { mPartialFiles.push_back(file); }
    const std::vector<fileDbSupport::cPartialFile>& getPartialFiles() const { return mPartialFiles; }

    unsigned getMaxStepIndex() const { return mMaxStepIndex; }
    // Only raises the stored value.
    void setMaxStepIndex(unsigned index)
    {
        if (index > mMaxStepIndex)
            mMaxStepIndex = index;
    }

    void setFlagMustClose(bool flag) { mMustClose = flag; }
    bool checkMustClose() const { return mMustClose; }
    void setPersistent(bool flag) { mPersistent = flag; }
    bool checkIsPersistentFile() const { return mPersistent; }

    bool checkIsToolbox() const { return fileDbSupport::checkIsToolbox(mType); }
    bool checkDbSupportActive() const { return fileDbSupport::checkDbSupportActive(mType); }
    bool checkIsBigEndian() const { return fileDbSupport::checkIsBigEndian(mType); }
    bool checkSectionNamesAreUniqueByConstruction() const
    {
        return fileDbSupport::checkSectionNamesAreUniqueByConstruction(mType);
    }
    bool checkSupportsParallelCurveDataAccess() const
    {
        return fileDbSupport::checkSupportsParallelCurveDataAccess(mType);
    }
    bool checkHandlesFailSaveReload() const
    {
        return fileDbSupport::checkHandlesFailSaveReload(mType, !mFileName.empty());
    }

    // The first property of that kind; null when there is none.
    const cProperty* getFileProperty(unsigned kind) const
    {
        const size_t index = findProperty(kind);
        return index < getNbOfProperties() ? &getProperty(index) : nullptr;
    }

    // Spice netlist whose equivalent nets belong to this file; "" when none.
    const std::string& getEquivalentNetsSpiceFile() const { return mEquivalentNetsSpiceFile; }
    void setEquivalentNetsSpiceFile(const std::string& name) { mEquivalentNetsSpiceFile = name; }

private:
    bool openDbHandle();
    void updateShortName();
    bool checkPartialFilesChanged();

    unsigned mType = fileDbSupport::undefined_db;
    uint64_t mId = 0;
    std::string mFileName;
    std::string mBaseName;
    std::string mShortUniqueName;
    unsigned mFileIndex = 0;
    uint64_t mFileSize = 0;
    time_t mLastWriteTime = 0;
    std::vector<fileDbSupport::cPartialFile> mPartialFiles;
    unsigned mMaxStepIndex = 0;
    bool mMustClose = false;
    bool mPersistent = true;
    std::string mEquivalentNetsSpiceFile;

    // Loads from several threads open the file once.
    mutable std::mutex mOpenMutex;
    std::unique_ptr<cVxMemoryFile> mMemoryFile;
    std::unique_ptr<cVxBinFile> mBinaryFile;
    std::unique_ptr<cFileDbHandle> mDbHandle;
    std::function<bool()> mPluginChangeCheck;
    std::string mOpenError;
    cVxTmpBuffer mDataBuffer;
};

}  // namespace vx3
