#include "model/cCurveDbSupport.h"

#include <cmath>
#include <cstring>

#include "base/cLoggedException.h"
#include "model/cFileDbSupport.h"

namespace vx3 {

const std::string& cCurveDbSupport::fileName() const
{
    if (!mFile)
        throw cLoggedException("cCurveDbSupport::fileName");
    return mFile->fileName();
}

unsigned cCurveDbSupport::getLocalOrGlobalDbType() const
{
    if (mLocalDbType)
        return mLocalDbType;
    return mFile ? mFile->getDbType() : 0u;
}

bool cCurveDbSupport::checkLocalDbSupportActive() const
{
    return fileDbSupport::checkLocalDbSupportActive(mLocalDbType);
}

bool cCurveDbSupport::checkDbSupportActive() const
{
    return mFile && checkLocalDbSupportActive() && fileDbSupport::checkDbSupportActive(getLocalOrGlobalDbType());
}

bool cCurveDbSupport::checkOrAdjustDbSizeFromFileSize(uint64_t start, uint64_t stride, uint64_t width,
                                                      uint64_t fileSize)
{
    if (start > fileSize || fileSize - start < width) {
        mDbSize = 0;
        return false;
    }
    // The last value that fits starts at most at fileSize - width.
    const uint64_t fitting = stride ? (fileSize - width - start) / stride + 1 : mDbSize;
    if (mDbSize > fitting)
        mDbSize = fitting;
    return mDbSize > 0;
}

bool cCurveDbSupport::openFile(const cVxLogger* logger) const { return mFile && mFile->openFile(logger); }

void cCurveDbSupport::addDbEntry(uint64_t position, uint64_t size)
{
    mEntryPositions.push_back(position);
    mEntrySizes.push_back(size);
}

bool cCurveDbSupport::getDbEntry(uint64_t index, uint64_t& position, uint64_t& size) const
{
    if (index >= mEntryPositions.size())
        return false;
    position = mEntryPositions[index];
    size = mEntrySizes[index];
    return true;
}

void cCurveDbSupport::addDoubleValuesToDbEntry(double first, double second)
{
    uint64_t a = 0, b = 0;
    std::memcpy(&a, &first, sizeof(a));
    std::memcpy(&b, &second, sizeof(b));
    addDbEntry(a, b);
}

bool cCurveDbSupport::getDoubleValuesFromDbEntry(uint64_t index, double& first, double& second) const
{
    if (index >= mEntryPositions.size()) {
        first = second = NAN;
        return false;
    }
    std::memcpy(&first, &mEntryPositions[index], sizeof(first));
    std::memcpy(&second, &mEntrySizes[index], sizeof(second));
    return true;
}

void cCurveDbSupport::clearDbEntries()
{
    mEntryPositions.clear();
    mEntrySizes.clear();
}

}  // namespace vx3
