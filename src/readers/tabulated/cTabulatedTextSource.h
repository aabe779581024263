// The text of a table file or of text in memory, read with pread in blocks: the readers hold one
// block at a time, the file's pages don't count in our memory, and a file that shrinks while it
// is read gives a short read (the end of the data) instead of a bus error.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vx3 {

class cVxLogger;

class cTabulatedTextSource {
public:
    cTabulatedTextSource() = default;
    ~cTabulatedTextSource() { close(); }
    cTabulatedTextSource(const cTabulatedTextSource&) = delete;
    cTabulatedTextSource& operator=(const cTabulatedTextSource&) = delete;

    // False with the reason in getErrorMessage for a missing, empty or unreadable file.
    bool openFile(const std::string& name);
    // Text in memory; the caller keeps it alive.
    void useString(std::string_view text);
    void close();
    const std::string& getErrorMessage() const { return mError; }

    uint64_t size() const { return mSize; }
    // 3 when the text starts with the UTF-8 byte order mark (as spreadsheets write), else 0.
    uint64_t getTextStart();
    // Up to count bytes from position; fewer at the end of the text or when the file shrank.
    uint64_t read(uint64_t position, char* target, uint64_t count);
    // The bytes from position on, at most limit of them; false when the text is longer than
    // limit (then nothing is read).
    bool readAll(uint64_t position, std::string& text, uint64_t limit);
    // Line feeds from position to the end; false when the user interrupted.
    bool countLineFeeds(uint64_t position, uint64_t& count, const cVxLogger& logger);
    // True when the first block holds bytes that text never holds (NUL and most control codes).
    bool checkLooksBinary();

private:
    int mFd = -1;
    std::string_view mText;
    bool mIsFile = false;
    uint64_t mSize = 0;
    std::string mError;
};

}  // namespace vx3
