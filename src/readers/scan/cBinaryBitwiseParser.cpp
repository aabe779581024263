#include "readers/scan/cBinaryBitwiseParser.h"

namespace vx3 {

bool cBinaryBitwiseParser::readBit(std::istream& stream, unsigned& bit)
{
    if (mBitsLeft == 0) {
        char c;
        if (!stream.get(c))
            return false;
        mByte = static_cast<unsigned char>(c);
        mBitsLeft = 8;
    }
    --mBitsLeft;
    bit = (mByte >> mBitsLeft) & 1u;
    return true;
}

bool cBinaryBitwiseParser::parseUnsignedInteger(std::istream& stream, uint64_t& value, unsigned bits)
{
    value = 0;
    if (bits > 64)
        return false;
    for (unsigned i = 0; i < bits; ++i) {
        unsigned bit;
        if (!readBit(stream, bit))
            return false;
        value = (value << 1) | bit;
    }
    return true;
}

bool cBinaryBitwiseParser::parseUnsignedChar(std::istream& stream, unsigned char& value, unsigned bits)
{
    uint64_t wide = 0;
    if (bits > 8 || !parseUnsignedInteger(stream, wide, bits))
        return false;
    value = static_cast<unsigned char>(wide);
    return true;
}

bool cBinaryBitwiseParser::parseUnsignedIntegerReverse(std::istream& stream, uint64_t& value, unsigned bits)
{
    uint64_t raw = 0;
    if (bits % 8 || !parseUnsignedInteger(stream, raw, bits))
        return false;
    value = 0;
    for (unsigned byte = 0; byte < bits / 8; ++byte)
        value |= ((raw >> (8 * byte)) & 0xFFu) << (bits - 8 - 8 * byte);
    return true;
}

void cBinaryBitwiseParser::setStreamPosition(std::istream& stream, uint64_t position)
{
    stream.clear();
    stream.seekg(static_cast<std::streamoff>(position));
    clear();
}

void cBinaryBitwiseParser::clear()
{
    mByte = 0;
    mBitsLeft = 0;
}

bool cBinaryBitwiseParser::parseBitSizeCorrectionCommon(std::istream& stream, unsigned maximum, unsigned& code)
{
    unsigned bit;
    code = 0;
    if (!readBit(stream, bit))
        return false;
    if (!bit)
        return true;
    code = 1;
    unsigned length = 1;
    for (; length < 4; ++length) {
        if (!readBit(stream, bit))
            return false;
        code = (code << 1) | bit;
    }
    while (code == (1u << length) - 1u && length <= maximum) {
        if (!readBit(stream, bit))
            return false;
        code = (code << 1) | bit;
        ++length;
    }
    return true;
}

bool cBinaryBitwiseParser::parseBitSizeCorrectionV1(std::istream& stream, int& correction)
{
    unsigned code = 0;
    correction = 0;
    if (!parseBitSizeCorrectionCommon(stream, 5, code))
        return false;
    switch (code) {
    case 10: correction = -3; break;
    case 11: correction = -2; break;
    case 12: correction = -1; break;
    case 13: correction = 1; break;
    case 14: correction = 2; break;
    case 30: correction = -4; break;
    case 62: correction = -6; break;
    case 63: correction = -5; break;
    default: correction = 0;
    }
    return true;
}

// The later versions reach further with longer codes: each extension level adds the next two
// corrections, the code ending in 0 the larger decrease and the all-ones code the smaller one, as
// V1 does for -6 and -5; the four-bit codes keep V1's meaning.
bool cBinaryBitwiseParser::parseVersion(std::istream& stream, unsigned maximum, int& correction)
{
    unsigned code = 0;
    correction = 0;
    if (!parseBitSizeCorrectionCommon(stream, maximum, code))
        return false;
    if (code >= 10 && code <= 14) {
        static const int four[] = {-3, -2, -1, 1, 2};
        correction = four[code - 10];
        return true;
    }
    if (code == 30) {
        correction = -4;
        return true;
    }
    unsigned length = 5;
    for (int level = 0; length <= maximum; ++level, ++length) {
        const unsigned ones = (1u << (length + 1)) - 1u;
        if (code == ones - 1u) {
            correction = -6 - 2 * level;
            return true;
        }
        if (code == ones && length == maximum) {
            correction = -5 - 2 * level;
            return true;
        }
    }
    return true;
}

bool cBinaryBitwiseParser::parseBitSizeCorrectionV2(std::istream& s, int& c) { return parseVersion(s, 6, c); }
bool cBinaryBitwiseParser::parseBitSizeCorrectionV3(std::istream& s, int& c) { return parseVersion(s, 7, c); }
bool cBinaryBitwiseParser::parseBitSizeCorrectionV4(std::istream& s, int& c) { return parseVersion(s, 8, c); }
bool cBinaryBitwiseParser::parseBitSizeCorrectionV5(std::istream& s, int& c) { return parseVersion(s, 9, c); }
bool cBinaryBitwiseParser::parseBitSizeCorrectionV6(std::istream& s, int& c) { return parseVersion(s, 10, c); }

}  // namespace vx3
