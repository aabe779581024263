#include "readers/scan/cCurvePlotParserBin.h"

#include <cstring>

namespace vx3 {

using curvePlotParserBin::byteSwap;

namespace {
// Bytes that follow a variable-length tag, or -1 for the constants, -2 for nothing at all.
int bytesOfTag(unsigned tag)
{
    if (tag >= 17 && tag <= 20)
        return static_cast<int>(tag - 16);
    if (tag >= 25 && tag <= 30)
        return -1;
    return -2;
}

uint64_t bigEndianBytes(const unsigned char* bytes, int count)
{
    uint64_t value = 0;
    for (int i = 0; i < count; ++i)
        value = (value << 8) | bytes[i];
    return value;
}

double doubleFromBigEndianHalf(const char* bytes, unsigned count, bool firstHalf)
{
    unsigned char image[8] = {0, 0, 0, 0, 0, 0, 0, 0};  // most significant byte first
    std::memcpy(image + (firstHalf ? 0 : 8 - count), bytes, count);
    uint64_t bits = bigEndianBytes(image, 8);
    double value;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}
}  // namespace

bool cCurvePlotParserBin::getUnsigned3Bit(std::istream& stream, unsigned& value)
{
    unsigned char bytes[3];
    if (!stream.read(reinterpret_cast<char*>(bytes), 3))
        return false;
    mBytesRead += 3;
    value = bytes[0] | (bytes[1] << 8) | (bytes[2] << 16);
    return true;
}

bool cCurvePlotParserBin::getUnsigned3BitReverse(std::istream& stream, unsigned& value)
{
    unsigned char bytes[3];
    if (!stream.read(reinterpret_cast<char*>(bytes), 3))
        return false;
    mBytesRead += 3;
    value = (bytes[0] << 16) | (bytes[1] << 8) | bytes[2];
    return true;
}

bool cCurvePlotParserBin::getCharacters(std::istream& stream, std::string& text, uint64_t count)
{
    text.resize(count);
    if (!stream.read(text.data(), static_cast<std::streamsize>(count))) {
        text.resize(static_cast<size_t>(stream.gcount()));
        return false;
    }
    mBytesRead += count;
    return true;
}

bool cCurvePlotParserBin::parseStringUntil(std::istream& stream, char stop, std::string& text)
{
    text.clear();
    char c;
    while (stream.get(c)) {
        ++mBytesRead;
        if (c == stop)
            return true;
        text.push_back(c);
    }
    return false;
}

bool cCurvePlotParserBin::getDoubleOrFloat(std::istream& stream, double& value, bool isDouble)
{
    if (isDouble)
        return getDouble(stream, value);
    float f;
    if (!getFloat(stream, f))
        return false;
    value = f;
    return true;
}

bool cCurvePlotParserBin::getDoubleOrFloatEventuallyReverse(std::istream& stream, double& value, bool isDouble)
{
    if (isDouble)
        return getRaw(stream, value, mBigEndian);
    float f;
    if (!getRaw(stream, f, mBigEndian))
        return false;
    value = f;
    return true;
}

bool cCurvePlotParserBin::getPairOfUnsignedEventuallyReverse(std::istream& stream, unsigned& first, unsigned& second)
{
    return getRaw(stream, first, mBigEndian) && getRaw(stream, second, mBigEndian);
}

unsigned cCurvePlotParserBin::readUnsigned3BitReverse(const char** cursor)
{
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(*cursor);
    *cursor += 3;
    return (bytes[0] << 16) | (bytes[1] << 8) | bytes[2];
}

void cCurvePlotParserBin::getDoublesAndReverse(const char** cursor, double* values, uint64_t count)
{
    std::memcpy(values, *cursor, count * sizeof(double));
    *cursor += count * sizeof(double);
    for (uint64_t i = 0; i < count; ++i)
        values[i] = byteSwap(values[i]);
}

double cCurvePlotParserBin::readReverseFirst4BytesDouble(const char** cursor)
{
    return readCompressedReverseVariableSizeFirst4BytesDouble(cursor, 4);
}

double cCurvePlotParserBin::readReverseSecond4BytesDouble(const char** cursor)
{
    return readCompressedReverseVariableSizeSecond4BytesDouble(cursor, 4);
}

double cCurvePlotParserBin::readCompressedReverseVariableSizeFirst4BytesDouble(const char** cursor, unsigned bytes)
{
    bytes = bytes > 8 ? 8 : bytes;
    const double value = doubleFromBigEndianHalf(*cursor, bytes, true);
    *cursor += bytes;
    return value;
}

double cCurvePlotParserBin::readCompressedReverseVariableSizeSecond4BytesDouble(const char** cursor, unsigned bytes)
{
    bytes = bytes > 8 ? 8 : bytes;
    const double value = doubleFromBigEndianHalf(*cursor, bytes, false);
    *cursor += bytes;
    return value;
}

bool cCurvePlotParserBin::getVariableLengthUnsigned(std::istream& stream, unsigned tag, uint64_t& value)
{
    const int bytes = bytesOfTag(tag);
    value = 0;
    if (bytes == -1)
        value = tag - 24;
    if (bytes <= 0)
        return true;
    unsigned char buffer[4];
    if (!stream.read(reinterpret_cast<char*>(buffer), bytes))
        return false;
    mBytesRead += static_cast<uint64_t>(bytes);
    value = bigEndianBytes(buffer, bytes);
    return true;
}

bool cCurvePlotParserBin::getVariableLengthInt(std::istream& stream, unsigned tag, int64_t& value)
{
    uint64_t raw = 0;
    if (!getVariableLengthUnsigned(stream, tag, raw))
        return false;
    const int bytes = bytesOfTag(tag);
    if (bytes > 0 && bytes < 8 && (raw >> (8 * bytes - 1)) & 1u)
        raw |= ~uint64_t(0) << (8 * bytes);
    value = static_cast<int64_t>(raw);
    return true;
}

bool cCurvePlotParserBin::getVariableLengthDouble(std::istream& stream, unsigned tag, double& value)
{
    if (tag == 24) {
        char buffer[8];
        if (!stream.read(buffer, 8))
            return false;
        mBytesRead += 8;
        value = doubleFromBigEndianHalf(buffer, 8, true);
        return true;
    }
    uint64_t raw = 0;
    if (!getVariableLengthUnsigned(stream, tag, raw))
        return false;
    value = static_cast<double>(raw);
    return true;
}

uint64_t cCurvePlotParserBin::readVariableLengthUnsigned(const char** cursor, unsigned tag)
{
    const int bytes = bytesOfTag(tag);
    if (bytes == -1)
        return tag - 24;
    if (bytes <= 0)
        return 0;
    const uint64_t value = bigEndianBytes(reinterpret_cast<const unsigned char*>(*cursor), bytes);
    *cursor += bytes;
    return value;
}

double cCurvePlotParserBin::readVariableLengthDouble(const char** cursor, unsigned tag)
{
    if (tag == 24) {
        const double value = doubleFromBigEndianHalf(*cursor, 8, true);
        *cursor += 8;
        return value;
    }
    return static_cast<double>(readVariableLengthUnsigned(cursor, tag));
}

std::string cCurvePlotParserBin::readVariableLengthString(const char** cursor, unsigned tag)
{
    const uint64_t length = readVariableLengthUnsigned(cursor, tag);
    std::string text(*cursor, length);
    *cursor += length;
    return text;
}

uint64_t cCurvePlotParserBin::readVariableLengthData(const char** cursor, unsigned tag, void* target, uint64_t capacity)
{
    const uint64_t length = readVariableLengthUnsigned(cursor, tag);
    std::memcpy(target, *cursor, length < capacity ? length : capacity);
    *cursor += length;
    return length;
}

namespace {
template <typename T>
bool putAt(std::ostream& stream, uint64_t position, T value, bool reverse)
{
    if (reverse)
        value = byteSwap(value);
    stream.seekp(static_cast<std::streamoff>(position));
    return static_cast<bool>(stream.write(reinterpret_cast<const char*>(&value), sizeof(T)));
}
}  // namespace

bool cCurvePlotParserBin::putUnsignedReverseAtStreamPosition(std::ostream& stream, uint64_t position, unsigned value)
{
    return putAt(stream, position, value, true);
}

bool cCurvePlotParserBin::putDoubleReverseAtStreamPosition(std::ostream& stream, uint64_t position, double value)
{
    return putAt(stream, position, value, true);
}

bool cCurvePlotParserBin::putDoubleCastedIntegerAtStreamPosition(std::ostream& stream, uint64_t position, double value)
{
    return putAt(stream, position, static_cast<int32_t>(value), false);
}

bool cCurvePlotParserBin::putDoubleCastedUnsignedAtStreamPosition(std::ostream& stream, uint64_t position, double value)
{
    return putAt(stream, position, static_cast<uint32_t>(value), false);
}

bool cCurvePlotParserBin::putDoubleAtStreamPosition(std::ostream& stream, uint64_t position, double value)
{
    return putAt(stream, position, value, false);
}

bool cCurvePlotParserBin::putString(std::ostream& stream, const std::string& text, bool reverse)
{
    uint32_t length = static_cast<uint32_t>(text.size());
    if (reverse)
        length = byteSwap(length);
    stream.write(reinterpret_cast<const char*>(&length), 4);
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    static const char zeros[4] = {0, 0, 0, 0};
    stream.write(zeros, static_cast<std::streamsize>((4 - text.size() % 4) % 4));
    return static_cast<bool>(stream);
}

bool cCurvePlotParserBin::putPairOfUnsigned(std::ostream& stream, unsigned first, unsigned second, bool reverse)
{
    if (reverse) {
        first = byteSwap(first);
        second = byteSwap(second);
    }
    stream.write(reinterpret_cast<const char*>(&first), 4);
    stream.write(reinterpret_cast<const char*>(&second), 4);
    return static_cast<bool>(stream);
}

}  // namespace vx3
