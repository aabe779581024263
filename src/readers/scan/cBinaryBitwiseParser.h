// A bit-level reader on a stream, most significant bit first, with the prefix codes of the
// size corrections of bit-packed value blocks.
#pragma once

#include <cstdint>
#include <istream>

#include "readers/scan/cCurvePlotParserBin.h"

namespace vx3 {

class cBinaryBitwiseParser : public cCurvePlotParserBin {
public:
    // bits (at most 8 / 64) of the stream into value; false at the end of the stream.
    bool parseUnsignedChar(std::istream& stream, unsigned char& value, unsigned bits);
    bool parseUnsignedInteger(std::istream& stream, uint64_t& value, unsigned bits);
    // The bits read, taken as whole bytes in reverse order (a little-endian field that was
    // written most significant bit first); bits must be a multiple of 8.
    bool parseUnsignedIntegerReverse(std::istream& stream, uint64_t& value, unsigned bits);
    // Moves the stream and forgets a partly read byte.
    void setStreamPosition(std::istream& stream, uint64_t position);
    void clear();

    // The prefix code of a size correction: a 0 bit is the code 0; a 1 bit is followed by three
    // more bits, and while all bits read are 1 and fewer than maximum + 1 bits were read, by one
    // more. The answer is the code itself (for instance 0b11110 = 30).
    bool parseBitSizeCorrectionCommon(std::istream& stream, unsigned maximum, unsigned& code);
    // The versions map the codes of their maximum to a change of the bit size.
    bool parseBitSizeCorrectionV1(std::istream& stream, int& correction);
    bool parseBitSizeCorrectionV2(std::istream& stream, int& correction);
    bool parseBitSizeCorrectionV3(std::istream& stream, int& correction);
    bool parseBitSizeCorrectionV4(std::istream& stream, int& correction);
    bool parseBitSizeCorrectionV5(std::istream& stream, int& correction);
    bool parseBitSizeCorrectionV6(std::istream& stream, int& correction);

private:
    bool readBit(std::istream& stream, unsigned& bit);
    bool parseVersion(std::istream& stream, unsigned maximum, int& correction);

    unsigned char mByte = 0;
    unsigned mBitsLeft = 0;
};

}  // namespace vx3
