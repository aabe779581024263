#include "cVxTextEncoding.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace vx3 {

namespace {

using namespace vxTextEncoding;

constexpr uint32_t replacementCharacter = 0xFFFD;

bool isSurrogate(uint32_t code) { return code >= 0xD800 && code <= 0xDFFF; }

// Reads fixed-size code units (2 or 4 bytes) of either byte order from raw bytes.
class cCodeUnitReader {
public:
    cCodeUnitReader(const unsigned char* data, size_t size, size_t unitSize, bool bigEndian)
        : mData(data), mSize(size), mUnitSize(unitSize), mBigEndian(bigEndian) {}

    bool atEnd() const { return mPosition >= mSize; }
    // A last unit cut short by the end of the data.
    bool atIncompleteUnit() const { return !atEnd() && mSize - mPosition < mUnitSize; }
    uint32_t peek() const
    {
        uint32_t value = 0;
        for (size_t i = 0; i < mUnitSize; ++i) {
            size_t index = mBigEndian ? i : mUnitSize - 1 - i;
            value = (value << 8) | mData[mPosition + index];
        }
        return value;
    }
    void advance() { mPosition += mUnitSize; }
    void skipRest() { mPosition = mSize; }

private:
    const unsigned char* mData;
    size_t mSize;
    size_t mUnitSize;
    bool mBigEndian;
    size_t mPosition = 0;
};

// Code points from UTF-16 units; a surrogate pair is joined, a lone surrogate becomes U+FFFD.
class cUtf16CodePointReader {
public:
    explicit cUtf16CodePointReader(cCodeUnitReader units) : mUnits(units) {}
    bool next(uint32_t& code)
    {
        if (mUnits.atEnd())
            return false;
        if (mUnits.atIncompleteUnit()) {
            mUnits.skipRest();
            code = replacementCharacter;
            return true;
        }
        uint32_t first = mUnits.peek();
        mUnits.advance();
        if (first < 0xD800 || first > 0xDFFF) {
            code = first;
            return true;
        }
        code = replacementCharacter;
        if (first <= 0xDBFF && !mUnits.atEnd() && !mUnits.atIncompleteUnit()) {
            uint32_t second = mUnits.peek();
            if (second >= 0xDC00 && second <= 0xDFFF) {
                mUnits.advance();
                code = 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
            }
        }
        return true;
    }

private:
    cCodeUnitReader mUnits;
};

// Code points from UTF-32 units; values outside Unicode become U+FFFD.
class cUtf32CodePointReader {
public:
    explicit cUtf32CodePointReader(cCodeUnitReader units) : mUnits(units) {}
    bool next(uint32_t& code)
    {
        if (mUnits.atEnd())
            return false;
        if (mUnits.atIncompleteUnit()) {
            mUnits.skipRest();
            code = replacementCharacter;
            return true;
        }
        code = mUnits.peek();
        mUnits.advance();
        if (code > 0x10FFFF || isSurrogate(code))
            code = replacementCharacter;
        return true;
    }

private:
    cCodeUnitReader mUnits;
};

// Code points from UTF-8 bytes; a malformed sequence gives U+FFFD and resumes at the next byte.
class cUtf8CodePointReader {
public:
    cUtf8CodePointReader(const unsigned char* data, size_t size) : mData(data), mSize(size) {}
    bool next(uint32_t& code)
    {
        if (mPosition >= mSize)
            return false;
        unsigned char lead = mData[mPosition];
        size_t length;
        uint32_t minimum;
        if (lead < 0x80) {
            code = lead;
            ++mPosition;
            return true;
        } else if ((lead & 0xE0) == 0xC0) {
            length = 2, code = lead & 0x1F, minimum = 0x80;
        } else if ((lead & 0xF0) == 0xE0) {
            length = 3, code = lead & 0x0F, minimum = 0x800;
        } else if ((lead & 0xF8) == 0xF0) {
            length = 4, code = lead & 0x07, minimum = 0x10000;
        } else {
            return invalid(code);
        }
        if (mPosition + length > mSize)
            return invalid(code);
        for (size_t i = 1; i < length; ++i) {
            unsigned char byte = mData[mPosition + i];
            if ((byte & 0xC0) != 0x80)
                return invalid(code);
            code = (code << 6) | (byte & 0x3F);
        }
        if (code < minimum || code > 0x10FFFF || isSurrogate(code))
            return invalid(code);
        mPosition += length;
        return true;
    }

private:
    bool invalid(uint32_t& code)
    {
        code = replacementCharacter;
        ++mPosition;
        return true;
    }

    const unsigned char* mData;
    size_t mSize;
    size_t mPosition = 0;
};

void appendUtf8(std::string& out, uint32_t code)
{
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

void appendUnit(std::string& out, uint32_t unit, size_t unitSize, bool bigEndian)
{
    for (size_t i = 0; i < unitSize; ++i) {
        size_t shift = 8 * (bigEndian ? unitSize - 1 - i : i);
        out += static_cast<char>((unit >> shift) & 0xFF);
    }
}

void appendUtf16(std::string& out, uint32_t code, bool bigEndian)
{
    if (code >= 0x10000) {
        code -= 0x10000;
        appendUnit(out, 0xD800 + (code >> 10), 2, bigEndian);
        appendUnit(out, 0xDC00 + (code & 0x3FF), 2, bigEndian);
    } else {
        appendUnit(out, code, 2, bigEndian);
    }
}

struct cMark {
    const char* bytes;
    size_t size;
};

cMark markOf(int encoding)
{
    switch (encoding) {
    case utf8_bom: return {"\xEF\xBB\xBF", 3};
    case utf16_be: return {"\xFE\xFF", 2};
    case utf16_le: return {"\xFF\xFE", 2};
    case utf32_be: return {"\x00\x00\xFE\xFF", 4};
    case utf32_le: return {"\xFF\xFE\x00\x00", 4};
    default: return {"", 0};
    }
}

bool startsWithMark(const unsigned char* bytes, size_t size, int encoding)
{
    cMark mark = markOf(encoding);
    return mark.size > 0 && size >= mark.size && std::memcmp(bytes, mark.bytes, mark.size) == 0;
}

// Looks for byte positions (within groups of four) that were zero every time: ASCII text in
// 16-bit units leaves every other byte zero, in 32-bit units three of four.
int checkCounter(const size_t counter[4])
{
    auto zero = [&](int i) { return counter[i] == 0; };
    auto seen = [&](int i) { return counter[i] > 0; };
    if (zero(1) && zero(2) && zero(3) && seen(0))
        return utf32_le;
    if (zero(0) && zero(1) && zero(2) && seen(3))
        return utf32_be;
    if (zero(1) && zero(3) && seen(0) && seen(2))
        return utf16_le;
    if (zero(0) && zero(2) && seen(1) && seen(3))
        return utf16_be;
    return unknown;
}

bool isWide(int encoding) { return encoding >= utf16_be && encoding <= utf32_le; }
size_t unitSizeOf(int encoding) { return (encoding == utf32_be || encoding == utf32_le) ? 4 : 2; }
bool isBigEndian(int encoding) { return encoding == utf16_be || encoding == utf32_be; }

}  // namespace

int cVxTextEncoding::detectEncoding(const void* data, size_t size)
{
    const auto* bytes = static_cast<const unsigned char*>(data);
    mEncoding = unknown;
    mBomSize = 0;
    if (!bytes)
        size = 0;

    if (size > 3) {
        if (bytes[0] == 0xFE && bytes[1] == 0xFF) {
            mEncoding = utf16_be, mBomSize = 2;
        } else if (bytes[0] == 0xFF && bytes[1] == 0xFE) {
            if (bytes[2] == 0 && bytes[3] == 0)
                mEncoding = utf32_le, mBomSize = 4;
            else
                mEncoding = utf16_le, mBomSize = 2;
        } else if (bytes[0] == 0 && bytes[1] == 0 && bytes[2] == 0xFE && bytes[3] == 0xFF) {
            mEncoding = utf32_be, mBomSize = 4;
        } else if (bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF) {
            mEncoding = utf8_bom, mBomSize = 3;
        }
        if (mEncoding != unknown)
            return mEncoding;
    }

    size_t counter[4] = {0, 0, 0, 0};
    const size_t groups = std::min<size_t>(size, 1000) / 4;
    for (size_t group = 0; group < groups; ++group) {
        for (int position = 0; position < 4; ++position)
            if (bytes[group * 4 + position] != 0)
                ++counter[position];
        // Ten groups before concluding: a few zeros at the start prove nothing.
        if (group + 1 >= 10) {
            int wide = checkCounter(counter);
            if (wide != unknown)
                return mEncoding = wide;
        }
    }
    return mEncoding = plain_8bit;
}

int cVxTextEncoding::detectEolMode(const void* data, size_t size)
{
    const auto* bytes = static_cast<const unsigned char*>(data);
    if (!bytes)
        size = 0;
    int encoding = mEncoding == unknown ? detectEncoding(data, size) : mEncoding;
    size_t skip = startsWithMark(bytes, size, encoding) ? markOf(encoding).size : 0;

    size_t cr = 0, crlf = 0, lf = 0;
    auto count = [&](auto&& nextUnit) {
        uint32_t unit = 0;
        bool pendingCr = false;
        while (nextUnit(unit)) {
            if (pendingCr) {
                pendingCr = false;
                if (unit == '\n') {
                    ++crlf;
                    continue;
                }
                ++cr;
            }
            if (unit == '\r')
                pendingCr = true;
            else if (unit == '\n')
                ++lf;
        }
        if (pendingCr)
            ++cr;
    };

    if (isWide(encoding)) {
        // Line ends are single code units in both widths; no need to decode whole characters.
        cCodeUnitReader units(bytes + skip, size - skip, unitSizeOf(encoding), isBigEndian(encoding));
        count([&](uint32_t& unit) {
            if (units.atEnd() || units.atIncompleteUnit())
                return false;
            unit = units.peek();
            units.advance();
            return true;
        });
    } else {
        size_t position = skip;
        count([&](uint32_t& unit) {
            if (position >= size)
                return false;
            unit = bytes[position++];
            return true;
        });
    }

    if (lf == 0 && crlf == 0 && cr == 0)
        mEolMode = eol_unknown;
    else if (lf >= crlf && lf >= cr)
        mEolMode = eol_lf;
    else if (crlf >= cr)
        mEolMode = eol_crlf;
    else
        mEolMode = eol_cr;
    return mEolMode;
}

std::string cVxTextEncoding::convertToUtf8(const void* data, size_t size)
{
    const auto* bytes = static_cast<const unsigned char*>(data);
    if (!bytes || size == 0)
        return std::string();
    if (mEncoding == unknown)
        detectEncoding(data, size);

    // The mark is looked for again: the encoding may have been set rather than detected.
    size_t skip = startsWithMark(bytes, size, mEncoding) ? markOf(mEncoding).size : 0;
    const unsigned char* text = bytes + skip;
    size_t textSize = size - skip;

    if (!isWide(mEncoding))
        return std::string(reinterpret_cast<const char*>(text), textSize);

    std::string result;
    result.reserve(textSize);
    cCodeUnitReader units(text, textSize, unitSizeOf(mEncoding), isBigEndian(mEncoding));
    uint32_t code = 0;
    if (unitSizeOf(mEncoding) == 2) {
        cUtf16CodePointReader reader(units);
        while (reader.next(code))
            appendUtf8(result, code);
    } else {
        cUtf32CodePointReader reader(units);
        while (reader.next(code))
            appendUtf8(result, code);
    }
    return result;
}

std::string cVxTextEncoding::convertFromUtf8(const void* data, size_t size) const
{
    const auto* bytes = static_cast<const unsigned char*>(data);
    if (!bytes)
        size = 0;
    // Text that still carries its UTF-8 mark must not get a second one.
    if (startsWithMark(bytes, size, utf8_bom)) {
        bytes += 3;
        size -= 3;
    }
    cMark mark = markOf(mEncoding);
    std::string result(mark.bytes, mark.size);
    if (!isWide(mEncoding)) {
        result.append(reinterpret_cast<const char*>(bytes), size);
        return result;
    }
    result.reserve(mark.size + size * unitSizeOf(mEncoding));
    cUtf8CodePointReader reader(bytes, size);
    uint32_t code = 0;
    const bool bigEndian = isBigEndian(mEncoding);
    while (reader.next(code)) {
        if (unitSizeOf(mEncoding) == 2)
            appendUtf16(result, code, bigEndian);
        else
            appendUnit(result, code, 4, bigEndian);
    }
    return result;
}

}  // namespace vx3
