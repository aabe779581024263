// Byte-order marks, UTF-16/32 detection by zero-byte statistics, end-of-line detection, and
// transcoding to and from UTF-8.
#pragma once

#include <cstddef>
#include <string>

namespace vx3 {

namespace vxTextEncoding {
enum encoding : int {
    unknown = 0,
    plain_8bit = 1,  // no mark, no zero pattern
    utf8_bom = 2,
    utf16_be = 3,
    utf16_le = 4,
    utf32_be = 5,
    utf32_le = 6
};
enum eol_mode : int { eol_unknown = 0, eol_lf = 1, eol_crlf = 2, eol_cr = 3 };
}  // namespace vxTextEncoding

class cVxTextEncoding {
public:
    int detectEncoding(const void* data, size_t size);
    int detectEolMode(const void* data, size_t size);
    // Drops the mark; 8-bit text passes unchanged.
    std::string convertToUtf8(const void* data, size_t size);
    // Writes the mark of the detected (or set) encoding.
    std::string convertFromUtf8(const void* data, size_t size) const;

    int getEncoding() const { return mEncoding; }
    void setEncoding(int encoding) { mEncoding = encoding; }
    int getEolMode() const { return mEolMode; }
    size_t getBomSize() const { return mBomSize; }

private:
    int mEncoding = vxTextEncoding::unknown;
    int mEolMode = vxTextEncoding::eol_unknown;
    size_t mBomSize = 0;
};

}  // namespace vx3
