// A read-only memory map of a file, or text in memory posing as one.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vx3 {

class cVxMemoryFile {
public:
    cVxMemoryFile() = default;
    ~cVxMemoryFile() { closeFile(); }
    cVxMemoryFile(const cVxMemoryFile&) = delete;
    cVxMemoryFile& operator=(const cVxMemoryFile&) = delete;
    cVxMemoryFile(cVxMemoryFile&& other) noexcept { *this = std::move(other); }
    cVxMemoryFile& operator=(cVxMemoryFile&& other) noexcept;

    // Maps the whole file. False for a missing, empty, unreadable or non-regular file.
    bool openFile(const std::string& name);
    void closeFile();
    bool checkIsOpen() const { return mData != nullptr; }
    bool checkIsMapped() const { return mMapped; }
    // Text in memory: useStringData refers to the caller's bytes, copyStringData keeps a copy.
    void useStringData(const char* data, uint64_t size);
    void copyStringData(std::string_view text);

    const char* data() const { return mData; }
    uint64_t size() const { return mSize; }
    const std::string& fileName() const { return mFileName; }
    const std::string& getErrorMessage() const { return mError; }

    // Copies under the bus-error guard. False, with a message, past the end or when the file
    // shrank under the mapping. Large ranges are read with pread from the mapped file instead:
    // one copy out of the page cache, without a page fault per page of the mapping and without
    // the copied pages counting in our resident memory; a short read there is the same failure.
    bool readBytes(uint64_t position, void* target, uint64_t count);
    // count values of width bytes, the first at position, each stride bytes after the previous.
    bool readStrided(uint64_t position, uint64_t stride, unsigned width, uint64_t count, void* target);
    // pread of the mapped file (any size, thread-safe); false without a file or on a short read.
    bool readBytesUnmapped(uint64_t position, void* target, uint64_t count);
    // Ranges from this size on go through pread.
    static constexpr uint64_t kUnmappedReadSize = 4u << 20;

private:
    bool checkRange(uint64_t position, uint64_t span);
    void setBusError(uint64_t position);

    const char* mData = nullptr;
    uint64_t mSize = 0;
    bool mMapped = false;
    int mDescriptor = -1;  // kept open with the mapping for pread
    std::string mOwnedText;
    std::string mFileName;
    std::string mError;
};

}  // namespace vx3
