// The three character sources of the text scanners. A scanner is written once over an iterator
// type; two iterators stand for a range (begin moves, end stays), and copying an iterator
// remembers a position. All three answer the same characters, positions and line numbers.
//
// window(end, want, available, complete) offers the bytes from the iterator on as one contiguous
// block (at least want bytes when the source has them; complete when it reaches end), so that a
// scanner can hand a whole token to a block routine; skip(n) then moves over n characters of
// that block, none of them a newline.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "readers/scan/cVxMemoryFile.h"

namespace vx3 {

class cVxLogger;

// ---- Contiguous sources: a memory map or a string.
template <class Handler>
class cParserBaseContiguousIterator {
public:
    cParserBaseContiguousIterator() = default;
    cParserBaseContiguousIterator(const char* pointer, uint64_t line, Handler* handler)
        : mPointer(pointer), mLine(line), mHandler(handler) {}

    char operator*() const { return *mPointer; }
    cParserBaseContiguousIterator& operator++()
    {
        if (*mPointer == '\n')
            ++mLine;
        ++mPointer;
        return *this;
    }
    bool operator==(const cParserBaseContiguousIterator& other) const { return mPointer == other.mPointer; }
    bool operator!=(const cParserBaseContiguousIterator& other) const { return mPointer != other.mPointer; }
    bool operator<(const cParserBaseContiguousIterator& other) const { return mPointer < other.mPointer; }

    uint64_t position() const { return static_cast<uint64_t>(mPointer - mHandler->data()); }
    uint64_t line() const { return mLine; }
    Handler* handler() const { return mHandler; }

    const char* window(const cParserBaseContiguousIterator& end, size_t, size_t& available, bool& complete) const
    {
        available = static_cast<size_t>(end.mPointer - mPointer);
        complete = true;
        return mPointer;
    }
    void skip(size_t count) { mPointer += count; }
    // Everything before this position may be forgotten: nothing to do in memory.
    void advanceBuffer() const {}

private:
    const char* mPointer = nullptr;
    uint64_t mLine = 1;
    Handler* mHandler = nullptr;
};

class cParserBaseMappedIteratorHandler;
class cParserBaseStringIteratorHandler;
using cParserBaseMappedIterator = cParserBaseContiguousIterator<cParserBaseMappedIteratorHandler>;
using cParserBaseStringIterator = cParserBaseContiguousIterator<cParserBaseStringIteratorHandler>;

// A file mapped into memory, or a cVxMemoryFile that holds text.
class cParserBaseMappedIteratorHandler {
public:
    // Maps the file; false (see getErrorMessage) for a missing, empty or non-regular file.
    bool openFile(const std::string& name) { return mFile.openFile(name); }
    void closeFile() { mFile.closeFile(); }
    void useMemoryFile(cVxMemoryFile* file) { mExternal = file; }
    const std::string& getErrorMessage() const { return memoryFile().getErrorMessage(); }

    const char* data() const { return memoryFile().data(); }
    uint64_t size() const { return memoryFile().size(); }
    cParserBaseMappedIterator begin() { return cParserBaseMappedIterator(data(), 1, this); }
    cParserBaseMappedIterator end() { return cParserBaseMappedIterator(data() + size(), 0, this); }
    cParserBaseMappedIterator iteratorAt(uint64_t position, uint64_t line)
    {
        return cParserBaseMappedIterator(data() + position, line, this);
    }

private:
    const cVxMemoryFile& memoryFile() const { return mExternal ? *mExternal : mFile; }
    cVxMemoryFile mFile;
    cVxMemoryFile* mExternal = nullptr;
};

// Text in memory: useStringData refers to the caller's text, copyStringData keeps its own copy,
// openImpl reads a whole file.
class cParserBaseStringIteratorHandler {
public:
    void useStringData(std::string_view text) { mView = text; }
    void copyStringData(std::string_view text)
    {
        mCopy.assign(text);
        mView = mCopy;
    }
    // 0 on success.
    int openImpl(const std::string& name);
    const std::string& getErrorMessage() const { return mError; }

    const char* data() const { return mView.data(); }
    uint64_t size() const { return mView.size(); }
    cParserBaseStringIterator begin() { return cParserBaseStringIterator(data(), 1, this); }
    cParserBaseStringIterator end() { return cParserBaseStringIterator(data() + size(), 0, this); }
    cParserBaseStringIterator iteratorAt(uint64_t position, uint64_t line)
    {
        return cParserBaseStringIterator(data() + position, line, this);
    }

private:
    std::string mCopy;
    std::string_view mView;
    std::string mError;
};

// ---- An fopen'ed file read through a sliding buffer.
class cParserBaseFileIteratorHandler;

class cParserBaseFileIterator {
public:
    cParserBaseFileIterator() = default;
    cParserBaseFileIterator(uint64_t position, uint64_t line, cParserBaseFileIteratorHandler* handler)
        : mPosition(position), mLine(line), mHandler(handler) {}

    inline char operator*() const;
    inline cParserBaseFileIterator& operator++();
    bool operator==(const cParserBaseFileIterator& other) const { return mPosition == other.mPosition; }
    bool operator!=(const cParserBaseFileIterator& other) const { return mPosition != other.mPosition; }
    bool operator<(const cParserBaseFileIterator& other) const { return mPosition < other.mPosition; }

    uint64_t position() const { return mPosition; }
    uint64_t line() const { return mLine; }
    cParserBaseFileIteratorHandler* handler() const { return mHandler; }

    inline const char* window(const cParserBaseFileIterator& end, size_t want, size_t& available,
                              bool& complete) const;
    void skip(size_t count) { mPosition += count; }
    inline void advanceBuffer() const;

private:
    uint64_t mPosition = 0;
    uint64_t mLine = 1;
    cParserBaseFileIteratorHandler* mHandler = nullptr;
};

class cParserBaseFileIteratorHandler {
public:
    static constexpr size_t kInitialBufferSize = 1024;

    cParserBaseFileIteratorHandler() = default;
    ~cParserBaseFileIteratorHandler() { closeFile(); }
    cParserBaseFileIteratorHandler(const cParserBaseFileIteratorHandler&) = delete;
    cParserBaseFileIteratorHandler& operator=(const cParserBaseFileIteratorHandler&) = delete;

    // 0 on success; start is the file position of the first character. The two differ only in
    // the file mode, which makes no difference on this system.
    int openTextFile(const std::string& name, uint64_t start);
    int openBinaryFile(const std::string& name, uint64_t start);
    void closeFile();
    const std::string& getErrorMessage() const { return mError; }

    uint64_t size() const { return mFileSize; }
    cParserBaseFileIterator begin() { return cParserBaseFileIterator(mStart, 1, this); }
    cParserBaseFileIterator end() { return cParserBaseFileIterator(mFileSize, 0, this); }
    cParserBaseFileIterator iteratorAt(uint64_t position, uint64_t line)
    {
        return cParserBaseFileIterator(position, line, this);
    }

    // 0 past the end of the file.
    char getCharAtPosition(uint64_t position)
    {
        const uint64_t offset = position - mBufferStart;
        if (offset < mBufferFill)
            return mBuffer[offset];
        return readCharSlow(position);
    }
    // The bytes from position on, at least want of them unless the file ends first.
    const char* getWindow(uint64_t position, size_t want, size_t& available)
    {
        const uint64_t offset = position - mBufferStart;
        if (offset < mBufferFill && (mBufferFill - offset >= want || mBufferStart + mBufferFill == mFileSize)) {
            available = static_cast<size_t>(mBufferFill - offset);
            return mBuffer.data() + offset;
        }
        return getWindowSlow(position, want, available);
    }
    // The scanner's promise that nothing before position is needed again.
    void advanceBuffer(uint64_t position) { mKeepFrom = position; }
    // The same, and true when the user asked to stop.
    bool advanceBuffer(uint64_t position, const cVxLogger& logger);
    // A jump backwards: the buffer is refilled from position.
    bool repositionBuffer(uint64_t position);
    // Block reads at a position; false at the end of the file.
    bool readNBytes(uint64_t position, char* target, uint64_t count);
    uint64_t skipNBytes(uint64_t position, uint64_t count) const
    {
        return position + count > mFileSize ? mFileSize : position + count;
    }
    uint64_t getBufferSize() const { return mBuffer.size(); }

private:
    int open(const std::string& name, uint64_t start);
    char readCharSlow(uint64_t position);
    const char* getWindowSlow(uint64_t position, size_t want, size_t& available);
    // Makes [position, position + want) present as far as the file has it.
    bool readToBuffer(uint64_t position, size_t want);
    void shiftBuffer(uint64_t keepFrom);

    FILE* mFile = nullptr;
    std::vector<char> mBuffer;
    uint64_t mBufferStart = 0;  // file position of mBuffer[0]
    uint64_t mBufferFill = 0;   // valid bytes in mBuffer
    uint64_t mKeepFrom = 0;
    uint64_t mFileSize = 0;
    uint64_t mStart = 0;
    uint64_t mFilePosition = 0;  // where the next fread starts
    std::string mError;
};

char cParserBaseFileIterator::operator*() const { return mHandler->getCharAtPosition(mPosition); }

cParserBaseFileIterator& cParserBaseFileIterator::operator++()
{
    if (mHandler->getCharAtPosition(mPosition) == '\n')
        ++mLine;
    ++mPosition;
    return *this;
}

const char* cParserBaseFileIterator::window(const cParserBaseFileIterator& end, size_t want, size_t& available,
                                            bool& complete) const
{
    const char* pointer = mHandler->getWindow(mPosition, want, available);
    if (mPosition + available >= end.mPosition)
        available = end.mPosition > mPosition ? static_cast<size_t>(end.mPosition - mPosition) : 0;
    complete = mPosition + available == end.mPosition;
    return pointer;
}

void cParserBaseFileIterator::advanceBuffer() const { mHandler->advanceBuffer(mPosition); }

}  // namespace vx3
