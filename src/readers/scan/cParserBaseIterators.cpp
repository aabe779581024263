#include "readers/scan/cParserBaseIterators.h"

#include <algorithm>
#include <cstring>
#include <unistd.h>

#include "base/cVxLogger.h"
#include "readers/scan/fileAccessCheck.h"

namespace vx3 {

namespace {
// Sequential reading grows the buffer up to this size: fewer, larger reads.
constexpr size_t kWorkingBufferSize = 1u << 20;
// Kept behind the read position even without a promise, so that short look-backs stay in memory.
constexpr uint64_t kLookBehind = 4096;
}  // namespace

int cParserBaseStringIteratorHandler::openImpl(const std::string& name)
{
    int fd = -1;
    uint64_t size = 0;
    if (fileAccess::openRegularFile(name, fd, size, mError) != fileAccess::file_ok)
        return 1;
    mCopy.resize(size);
    uint64_t done = 0;
    while (done < size) {
        const ssize_t got = ::pread(fd, mCopy.data() + done, size - done, static_cast<off_t>(done));
        if (got <= 0)
            break;
        done += static_cast<uint64_t>(got);
    }
    ::close(fd);
    mCopy.resize(done);  // a file that shrank meanwhile ends where the read ended
    mView = mCopy;
    return 0;
}

int cParserBaseFileIteratorHandler::openTextFile(const std::string& name, uint64_t start) { return open(name, start); }

int cParserBaseFileIteratorHandler::openBinaryFile(const std::string& name, uint64_t start) { return open(name, start); }

int cParserBaseFileIteratorHandler::open(const std::string& name, uint64_t start)
{
    closeFile();
    int fd = -1;
    uint64_t size = 0;
    if (fileAccess::openRegularFile(name, fd, size, mError) != fileAccess::file_ok)
        return 1;
    mFile = ::fdopen(fd, "rb");
    if (!mFile) {
        ::close(fd);
        mError = "The file \"" + name + "\" cannot be opened.";
        return 1;
    }
    // The sliding buffer is the only buffer: no second copy through the stream's own.
    std::setvbuf(mFile, nullptr, _IONBF, 0);
    mFileSize = size;
    mStart = std::min(start, size);
    mBuffer.assign(kInitialBufferSize, 0);
    mBufferStart = mKeepFrom = mFilePosition = mStart;
    mBufferFill = 0;
    if (mStart && fseeko(mFile, static_cast<off_t>(mStart), SEEK_SET) != 0)
        return 1;
    return 0;
}

void cParserBaseFileIteratorHandler::closeFile()
{
    if (mFile)
        std::fclose(mFile);
    mFile = nullptr;
    mFileSize = mBufferStart = mBufferFill = mKeepFrom = mFilePosition = mStart = 0;
}

char cParserBaseFileIteratorHandler::readCharSlow(uint64_t position)
{
    if (position >= mFileSize || !readToBuffer(position, 1))
        return 0;
    const uint64_t offset = position - mBufferStart;
    return offset < mBufferFill ? mBuffer[offset] : 0;
}

const char* cParserBaseFileIteratorHandler::getWindowSlow(uint64_t position, size_t want, size_t& available)
{
    const uint64_t bufferEnd = mBufferStart + mBufferFill;
    const bool inside = position >= mBufferStart && position <= bufferEnd;
    if (!inside || (bufferEnd - position < want && bufferEnd < mFileSize))
        readToBuffer(position, want);
    if (position < mBufferStart || position > mBufferStart + mBufferFill) {
        available = 0;
        return nullptr;
    }
    available = static_cast<size_t>(mBufferStart + mBufferFill - position);
    return mBuffer.data() + (position - mBufferStart);
}

void cParserBaseFileIteratorHandler::shiftBuffer(uint64_t keepFrom)
{
    if (keepFrom <= mBufferStart)
        return;
    const uint64_t drop = std::min<uint64_t>(keepFrom - mBufferStart, mBufferFill);
    std::memmove(mBuffer.data(), mBuffer.data() + drop, mBufferFill - drop);
    mBufferFill -= drop;
    mBufferStart += drop;
}

bool cParserBaseFileIteratorHandler::repositionBuffer(uint64_t position)
{
    if (!mFile || position > mFileSize)
        return false;
    if (fseeko(mFile, static_cast<off_t>(position), SEEK_SET) != 0)
        return false;
    mBufferStart = mFilePosition = position;
    mBufferFill = 0;
    if (mKeepFrom > position)
        mKeepFrom = position;
    return true;
}

bool cParserBaseFileIteratorHandler::readToBuffer(uint64_t position, size_t want)
{
    if (!mFile)
        return false;
    const uint64_t bufferEnd = mBufferStart + mBufferFill;
    if (position < mBufferStart || position > bufferEnd) {
        if (!repositionBuffer(position))
            return false;
    } else {
        // Forget what the scanner promised not to need, but keep a little look-behind.
        uint64_t keepFrom = std::max(mKeepFrom, position > kLookBehind ? position - kLookBehind : 0);
        shiftBuffer(std::min(keepFrom, position));
    }
    const uint64_t wanted = std::min<uint64_t>(position + want, mFileSize);
    if (wanted <= mBufferStart + mBufferFill)
        return true;
    size_t capacity = mBuffer.size();
    // The live range must fit; sequential reading also earns a larger block.
    while (capacity < wanted - mBufferStart || capacity < kWorkingBufferSize)
        capacity *= 2;
    if (capacity != mBuffer.size())
        mBuffer.resize(capacity);
    if (mFilePosition != mBufferStart + mBufferFill) {
        mFilePosition = mBufferStart + mBufferFill;
        if (fseeko(mFile, static_cast<off_t>(mFilePosition), SEEK_SET) != 0)
            return false;
    }
    const size_t room = std::min<uint64_t>(mBuffer.size() - mBufferFill, mFileSize - mFilePosition);
    const size_t got = std::fread(mBuffer.data() + mBufferFill, 1, room, mFile);
    mBufferFill += got;
    mFilePosition += got;
    return got > 0;
}

bool cParserBaseFileIteratorHandler::advanceBuffer(uint64_t position, const cVxLogger& logger)
{
    advanceBuffer(position);
    return logger.checkActionIsInterrupted();
}

bool cParserBaseFileIteratorHandler::readNBytes(uint64_t position, char* target, uint64_t count)
{
    while (count) {
        size_t available = 0;
        const char* block = getWindow(position, static_cast<size_t>(std::min<uint64_t>(count, kWorkingBufferSize)),
                                      available);
        if (!block || available == 0)
            return false;
        const uint64_t take = std::min<uint64_t>(available, count);
        std::memcpy(target, block, take);
        target += take;
        position += take;
        count -= take;
    }
    return true;
}

}  // namespace vx3
