#include "readers/scan/cVxMemoryFile.h"

#include <algorithm>
#include <cstring>
#include <cerrno>
#include <sys/mman.h>
#include <vector>
#include <unistd.h>

#include "readers/scan/cBusErrorGuard.h"
#include "readers/scan/fileAccessCheck.h"
#include "readers/scan/stridedCopy.h"


namespace vx3 {

namespace {
// Strided reads through pread take whole rows in blocks of about this size (L2-sized, so that
// the extraction pass reads from cache).
constexpr uint64_t kStridedBlock = 256u << 10;
}  // namespace

cVxMemoryFile& cVxMemoryFile::operator=(cVxMemoryFile&& other) noexcept
{
    if (this == &other)
        return *this;
    closeFile();
    const bool ownText = other.mData && !other.mMapped && other.mData == other.mOwnedText.data();
    mOwnedText = std::move(other.mOwnedText);
    mData = ownText ? mOwnedText.data() : other.mData;
    mSize = other.mSize;
    mMapped = other.mMapped;
    mDescriptor = other.mDescriptor;
    other.mDescriptor = -1;
    mFileName = std::move(other.mFileName);
    mError = std::move(other.mError);
    other.mData = nullptr;
    other.mSize = 0;
    other.mMapped = false;
    return *this;
}

bool cVxMemoryFile::openFile(const std::string& name)
{
    closeFile();
    mFileName = name;
    int fd = -1;
    uint64_t size = 0;
    if (fileAccess::openRegularFile(name, fd, size, mError) != fileAccess::file_ok)
        return false;
    void* map = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, fd, 0);
    if (map == MAP_FAILED) {
        ::close(fd);
        mError = "The file \"" + name + "\" cannot be mapped into memory.";
        return false;
    }
    mData = static_cast<const char*>(map);
    mSize = size;
    mMapped = true;
    mDescriptor = fd;
    mError.clear();
    return true;
}

void cVxMemoryFile::closeFile()
{
    if (mMapped && mData)
        ::munmap(const_cast<char*>(mData), mSize);
    if (mDescriptor >= 0)
        ::close(mDescriptor);
    mDescriptor = -1;
    mData = nullptr;
    mSize = 0;
    mMapped = false;
    mOwnedText.clear();
}

void cVxMemoryFile::useStringData(const char* data, uint64_t size)
{
    closeFile();
    mData = data;
    mSize = size;
}

void cVxMemoryFile::copyStringData(std::string_view text)
{
    closeFile();
    mOwnedText.assign(text);
    mData = mOwnedText.data();
    mSize = mOwnedText.size();
}

bool cVxMemoryFile::checkRange(uint64_t position, uint64_t span)
{
    if (!mData) {
        mError = "The file \"" + mFileName + "\" is not open.";
        return false;
    }
    if (position > mSize || span > mSize - position) {
        mError = "Read past the end of the file \"" + mFileName + "\" at byte " + std::to_string(position) + ".";
        return false;
    }
    return true;
}

void cVxMemoryFile::setBusError(uint64_t position)
{
    mError = "The file \"" + mFileName + "\" was truncated while it was read (at byte " + std::to_string(position) +
             ").";
}

bool cVxMemoryFile::readBytesUnmapped(uint64_t position, void* target, uint64_t count)
{
    if (mDescriptor < 0 || position > mSize || count > mSize - position)
        return false;
    char* out = static_cast<char*>(target);
    while (count) {
        const ssize_t got = ::pread(mDescriptor, out, std::min<uint64_t>(count, 1u << 30), static_cast<off_t>(position));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) {
            setBusError(position);
            return false;
        }
        out += got;
        position += static_cast<uint64_t>(got);
        count -= static_cast<uint64_t>(got);
    }
    return true;
}

bool cVxMemoryFile::readBytes(uint64_t position, void* target, uint64_t count)
{
    if (!checkRange(position, count))
        return false;
    const char* source = mData + position;
    char* out = static_cast<char*>(target);
    if (!mMapped) {
        std::memcpy(out, source, count);
        return true;
    }
    if (count >= kUnmappedReadSize && mDescriptor >= 0)
        return readBytesUnmapped(position, target, count);
    if (!busErrorGuard::runGuarded([source, out, count] { std::memcpy(out, source, count); })) {
        setBusError(position);
        return false;
    }
    return true;
}

bool cVxMemoryFile::readStrided(uint64_t position, uint64_t stride, unsigned width, uint64_t count, void* target)
{
    if (!mData || !stridedCopy::spanFits(position, stride, width, count, mSize)) {
        if (checkRange(position, width))
            mError = "Read past the end of the file \"" + mFileName + "\" at byte " + std::to_string(position) + ".";
        return false;
    }
    if (count == 0)
        return true;
    const char* source = mData + position;
    char* out = static_cast<char*>(target);
    if (!mMapped) {
        stridedCopy::copy(source, stride, width, count, out);
        return true;
    }
    const uint64_t span = (count - 1) * stride + width;
    if (span >= kUnmappedReadSize && mDescriptor >= 0) {
        if (stride <= width)
            return readBytesUnmapped(position, target, count * width);
        const uint64_t rowsPerBlock = std::max<uint64_t>(1, kStridedBlock / stride);
        std::vector<char> block(rowsPerBlock * stride);
        for (uint64_t done = 0; done < count; done += rowsPerBlock) {
            const uint64_t rows = std::min(rowsPerBlock, count - done);
            if (!readBytesUnmapped(position + done * stride, block.data(), (rows - 1) * stride + width))
                return false;
            stridedCopy::copy(block.data(), stride, width, rows, out + done * width);
        }
        return true;
    }
    if (!busErrorGuard::runGuarded(
            [source, stride, width, count, out] { stridedCopy::copy(source, stride, width, count, out); })) {
        setBusError(position);
        return false;
    }
    return true;
}

}  // namespace vx3
