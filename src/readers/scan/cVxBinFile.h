// The FILE* alternative to the memory map: positioned reads of an open file.
#pragma once

#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string>

#include "readers/scan/cVxTmpBuffer.h"

namespace vx3 {

class cVxBinFile {
public:
    cVxBinFile() = default;
    ~cVxBinFile() { closeFile(); }
    cVxBinFile(const cVxBinFile&) = delete;
    cVxBinFile& operator=(const cVxBinFile&) = delete;

    // fopen with "rb"; the size is taken from the path. False for a missing, empty, unreadable or
    // non-regular file.
    bool openFile(const std::string& name);
    void closeFile();
    bool checkIsOpen() const { return mFile != nullptr; }
    FILE* handle() const { return mFile; }
    uint64_t size() const { return mSize; }
    const std::string& fileName() const { return mFileName; }
    std::string getErrorMessage() const
    {
        std::lock_guard<std::mutex> lock(mErrorMutex);
        return mError;
    }

    // Positioned reads (pread): readBytes may be called from several threads at once. A short read, as from a
    // file that shrank since it was opened, answers false with a message.
    bool readBytes(uint64_t position, void* target, uint64_t count);
    bool readStrided(uint64_t position, uint64_t stride, unsigned width, uint64_t count, void* target);

private:
    FILE* mFile = nullptr;
    uint64_t mSize = 0;
    std::string mFileName;
    void setError(const std::string& text);

    mutable std::mutex mErrorMutex;  // readers on several threads may fail at once
    std::string mError;
    cVxTmpBuffer mBlock;
};

}  // namespace vx3
