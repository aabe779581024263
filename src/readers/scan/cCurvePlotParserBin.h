// Base of all binary reading: fixed-size values from a stream or a memory cursor, in file order
// or byte-reversed ("Reverse": big-endian data on this little-endian machine), self-describing
// variable-length fields, and the matching writers.
#pragma once

#include <cstdint>
#include <istream>
#include <ostream>
#include <string>

#include "readers/scan/cVxTmpBuffer.h"

namespace vx3 {

namespace curvePlotParserBin {
template <typename T>
inline T byteSwap(T value)
{
    static_assert(sizeof(T) == 1 || sizeof(T) == 2 || sizeof(T) == 4 || sizeof(T) == 8);
    if constexpr (sizeof(T) == 1) {
        return value;
    } else if constexpr (sizeof(T) == 2) {
        uint16_t bits;
        __builtin_memcpy(&bits, &value, 2);
        bits = __builtin_bswap16(bits);
        __builtin_memcpy(&value, &bits, 2);
        return value;
    } else if constexpr (sizeof(T) == 4) {
        uint32_t bits;
        __builtin_memcpy(&bits, &value, 4);
        bits = __builtin_bswap32(bits);
        __builtin_memcpy(&value, &bits, 4);
        return value;
    } else {
        uint64_t bits;
        __builtin_memcpy(&bits, &value, 8);
        bits = __builtin_bswap64(bits);
        __builtin_memcpy(&value, &bits, 8);
        return value;
    }
}
}  // namespace curvePlotParserBin

class cCurvePlotParserBin : public cVxTmpBuffer {
public:
    bool getFlagDataIsBigEndian() const { return mBigEndian; }
    void setFlagDataIsBigEndian(bool flag) { mBigEndian = flag; }
    uint64_t getBytesRead() const { return mBytesRead; }
    void resetBytesRead() { mBytesRead = 0; }

    // ---- From a stream, in file order. False at the end of the stream.
    bool getUnsigned(std::istream& stream, unsigned& value) { return getRaw(stream, value, false); }
    bool getUnsignedReverse(std::istream& stream, unsigned& value) { return getRaw(stream, value, true); }
    bool getUnsignedShort(std::istream& stream, uint16_t& value) { return getRaw(stream, value, false); }
    bool getUnsignedShortReverse(std::istream& stream, uint16_t& value) { return getRaw(stream, value, true); }
    bool getUnsigned3Bit(std::istream& stream, unsigned& value);  // 3 bytes, least significant first
    bool getUnsigned3BitReverse(std::istream& stream, unsigned& value);
    bool getInt(std::istream& stream, int& value) { return getRaw(stream, value, false); }
    bool getIntReverse(std::istream& stream, int& value) { return getRaw(stream, value, true); }
    bool getFloat(std::istream& stream, float& value) { return getRaw(stream, value, false); }
    bool getFloatReverse(std::istream& stream, float& value) { return getRaw(stream, value, true); }
    bool getDouble(std::istream& stream, double& value) { return getRaw(stream, value, false); }
    bool getDoubleReverse(std::istream& stream, double& value) { return getRaw(stream, value, true); }
    bool getFloats(std::istream& stream, float* values, uint64_t count) { return getArray(stream, values, count, false); }
    bool getFloatsReverse(std::istream& stream, float* values, uint64_t count) { return getArray(stream, values, count, true); }
    bool getDoubles(std::istream& stream, double* values, uint64_t count) { return getArray(stream, values, count, false); }
    bool getDoublesReverse(std::istream& stream, double* values, uint64_t count) { return getArray(stream, values, count, true); }
    bool getCharacters(std::istream& stream, std::string& text, uint64_t count);
    // Up to (not including) stop, which is consumed.
    bool parseStringUntil(std::istream& stream, char stop, std::string& text);
    bool parseNullTerminatedString(std::istream& stream, std::string& text) { return parseStringUntil(stream, '\0', text); }

    // Honour the big-endian flag; isDouble chooses 8 or 4 bytes.
    bool getDoubleOrFloat(std::istream& stream, double& value, bool isDouble);
    bool getDoubleOrFloatEventuallyReverse(std::istream& stream, double& value, bool isDouble);
    bool getPairOfUnsignedEventuallyReverse(std::istream& stream, unsigned& first, unsigned& second);

    // ---- From a cursor into memory; the cursor moves past what was read. The caller checks the size.
    static unsigned readUnsignedReverse(const char** cursor) { return readRaw<unsigned>(cursor, true); }
    static uint16_t readUnsignedShortReverse(const char** cursor) { return readRaw<uint16_t>(cursor, true); }
    static unsigned readUnsigned3BitReverse(const char** cursor);  // 3 bytes, most significant first
    static void getDoublesAndReverse(const char** cursor, double* values, uint64_t count);
    // A double of which only the first (most significant) or the second 4 bytes are stored,
    // big-endian; the missing half is zero.
    static double readReverseFirst4BytesDouble(const char** cursor);
    static double readReverseSecond4BytesDouble(const char** cursor);
    // The same with the stored byte count given by the format (0 to 8; 0 stores nothing: 0.0).
    static double readCompressedReverseVariableSizeFirst4BytesDouble(const char** cursor, unsigned bytes);
    static double readCompressedReverseVariableSizeSecond4BytesDouble(const char** cursor, unsigned bytes);
    static void convertEndianType(double& value) { value = curvePlotParserBin::byteSwap(value); }
    static void convertEndianType(float& value) { value = curvePlotParserBin::byteSwap(value); }

    // ---- Self-describing fields. A tag says how the value follows: 17 one byte, 18 two, 19
    // three, 20 four, most significant first; 25 to 30 are the constants 1 to 6 and read
    // nothing; any other tag is 0. getVariableLengthDouble also takes tag 24 for an IEEE double
    // of 8 bytes, most significant first; getVariableLengthInt sign-extends the bytes read.
    bool getVariableLengthUnsigned(std::istream& stream, unsigned tag, uint64_t& value);
    bool getVariableLengthInt(std::istream& stream, unsigned tag, int64_t& value);
    bool getVariableLengthDouble(std::istream& stream, unsigned tag, double& value);
    static uint64_t readVariableLengthUnsigned(const char** cursor, unsigned tag);
    static double readVariableLengthDouble(const char** cursor, unsigned tag);
    // A length by the unsigned rule with the given tag, then that many bytes.
    static std::string readVariableLengthString(const char** cursor, unsigned tag);
    static uint64_t readVariableLengthData(const char** cursor, unsigned tag, void* target, uint64_t capacity);

    // ---- Writers, used by the exporters.
    static bool putUnsignedReverseAtStreamPosition(std::ostream& stream, uint64_t position, unsigned value);
    static bool putDoubleReverseAtStreamPosition(std::ostream& stream, uint64_t position, double value);
    static bool putDoubleCastedIntegerAtStreamPosition(std::ostream& stream, uint64_t position, double value);
    static bool putDoubleCastedUnsignedAtStreamPosition(std::ostream& stream, uint64_t position, double value);
    static bool putDoubleAtStreamPosition(std::ostream& stream, uint64_t position, double value);
    // A length word, the bytes, zeros up to a multiple of 4; big-endian when reverse.
    static bool putString(std::ostream& stream, const std::string& text, bool reverse);
    static bool putPairOfUnsigned(std::ostream& stream, unsigned first, unsigned second, bool reverse);

private:
    template <typename T>
    bool getRaw(std::istream& stream, T& value, bool reverse)
    {
        if (!stream.read(reinterpret_cast<char*>(&value), sizeof(T)))
            return false;
        mBytesRead += sizeof(T);
        if (reverse)
            value = curvePlotParserBin::byteSwap(value);
        return true;
    }
    template <typename T>
    bool getArray(std::istream& stream, T* values, uint64_t count, bool reverse)
    {
        if (!stream.read(reinterpret_cast<char*>(values), static_cast<std::streamsize>(count * sizeof(T))))
            return false;
        mBytesRead += count * sizeof(T);
        if (reverse)
            for (uint64_t i = 0; i < count; ++i)
                values[i] = curvePlotParserBin::byteSwap(values[i]);
        return true;
    }
    template <typename T>
    static T readRaw(const char** cursor, bool reverse)
    {
        T value;
        __builtin_memcpy(&value, *cursor, sizeof(T));
        *cursor += sizeof(T);
        return reverse ? curvePlotParserBin::byteSwap(value) : value;
    }

    bool mBigEndian = false;
    uint64_t mBytesRead = 0;
};

}  // namespace vx3
