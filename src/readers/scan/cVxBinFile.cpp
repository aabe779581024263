#include "readers/scan/cVxBinFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

#include "readers/scan/fileAccessCheck.h"
#include "readers/scan/stridedCopy.h"

namespace vx3 {

namespace {
// Rows are fetched in blocks of this size when a column is extracted.
constexpr uint64_t kStridedBlock = 1u << 20;
}  // namespace

void cVxBinFile::setError(const std::string& text)
{
    std::lock_guard<std::mutex> lock(mErrorMutex);
    mError = text;
}

bool cVxBinFile::openFile(const std::string& name)
{
    closeFile();
    mFileName = name;
    int fd = -1;
    uint64_t size = 0;
    if (fileAccess::openRegularFile(name, fd, size, mError) != fileAccess::file_ok)
        return false;
    mFile = ::fdopen(fd, "rb");
    if (!mFile) {
        ::close(fd);
        mError = "The file \"" + name + "\" cannot be opened.";
        return false;
    }
    mSize = size;
    mError.clear();
    return true;
}

void cVxBinFile::closeFile()
{
    if (mFile)
        std::fclose(mFile);
    mFile = nullptr;
    mSize = 0;
}

bool cVxBinFile::readBytes(uint64_t position, void* target, uint64_t count)
{
    if (!mFile) {
        setError("The file \"" + mFileName + "\" is not open.");
        return false;
    }
    char* out = static_cast<char*>(target);
    const int fd = fileno(mFile);
    while (count) {
        const ssize_t got = ::pread(fd, out, std::min<uint64_t>(count, 1u << 30), static_cast<off_t>(position));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) {
            setError("Unexpected end of the file \"" + mFileName + "\" at byte " + std::to_string(position) + ".");
            return false;
        }
        out += got;
        position += static_cast<uint64_t>(got);
        count -= static_cast<uint64_t>(got);
    }
    return true;
}

bool cVxBinFile::readStrided(uint64_t position, uint64_t stride, unsigned width, uint64_t count, void* target)
{
    if (count == 0)
        return true;
    if (stride <= width)
        return readBytes(position, target, count * width);
    char* out = static_cast<char*>(target);
    // Whole rows per block; a stride larger than the block reads value by value.
    const uint64_t rowsPerBlock = std::max<uint64_t>(1, kStridedBlock / stride);
    char* block = mBlock.getTmpBuffer(rowsPerBlock > 1 ? rowsPerBlock * stride : width);
    if (!block) {
        setError("Out of memory while reading \"" + mFileName + "\".");
        return false;
    }
    while (count) {
        const uint64_t rows = std::min(rowsPerBlock, count);
        if (rows == 1) {
            if (!readBytes(position, out, width))
                return false;
        } else {
            if (!readBytes(position, block, (rows - 1) * stride + width))
                return false;
            stridedCopy::copy(block, stride, width, rows, out);
        }
        out += rows * width;
        position += rows * stride;
        count -= rows;
    }
    return true;
}

}  // namespace vx3
