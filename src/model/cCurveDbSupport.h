// Where a curve's values lie in its file, and who is using them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vx3 {

class cFileDbSupport;
class cVxLogger;

class cCurveDbSupport {
public:
    cFileDbSupport* getFile() const { return mFile; }
    void setFile(cFileDbSupport* file) { mFile = file; }
    // Throws when the curve has no file.
    const std::string& fileName() const;

    unsigned getLocalDbType() const { return mLocalDbType; }
    void setLocalDbType(unsigned type) { mLocalDbType = type; }
    // The curve's own type when set, else the file's.
    unsigned getLocalOrGlobalDbType() const;
    bool checkLocalDbSupportActive() const;
    // Values can be loaded from and released to the file.
    bool checkDbSupportActive() const;

    uint64_t getDbSize() const { return mDbSize; }
    void setDbSize(uint64_t size) { mDbSize = size; }
    // Bytes from one value to the next in the file, for formats that store a row of all curves
    // per point; 0 for packed values.
    uint64_t getDbStride() const { return mDbStride; }
    void setDbStride(uint64_t stride) { mDbStride = stride; }
    // For a file that a simulator may still be writing: the db size is cut to the values of
    // width bytes, the first at start and each stride after the previous, that lie inside a file
    // of fileSize bytes. False (and size 0) when not even one fits.
    bool checkOrAdjustDbSizeFromFileSize(uint64_t start, uint64_t stride, uint64_t width, uint64_t fileSize);
    // Opens the owning file's handles; false (logged) when there is no file or it can't be opened.
    bool openFile(const cVxLogger* logger = nullptr) const;

    void addDbEntry(uint64_t position, uint64_t size);
    uint64_t getNbOfDbEntries() const { return mEntryPositions.size(); }
    bool getDbEntry(uint64_t index, uint64_t& position, uint64_t& size) const;
    // The entry vectors can carry a pair of doubles instead of a position and a size.
    void addDoubleValuesToDbEntry(double first, double second);
    // NaN for both and false for a bad index.
    bool getDoubleValuesFromDbEntry(uint64_t index, double& first, double& second) const;
    void clearDbEntries();

    int getReferenceCount() const { return mReferenceCount; }
    void incrementReferenceCount() { ++mReferenceCount; }
    void decrementReferenceCount()
    {
        if (mReferenceCount > 0)
            --mReferenceCount;
    }
    bool checkNeedsLoading() const { return mNeedsLoading; }
    void setNeedsLoading(bool flag) { mNeedsLoading = flag; }

private:
    cFileDbSupport* mFile = nullptr;
    unsigned mLocalDbType = 0;
    uint64_t mDbSize = 0;
    uint64_t mDbStride = 0;
    std::vector<uint64_t> mEntryPositions;
    std::vector<uint64_t> mEntrySizes;
    int mReferenceCount = 0;
    bool mNeedsLoading = true;
};

}  // namespace vx3
