#include "cDataBaseSerializer.h"

#include <bit>
#include <cstring>

namespace vx3 {

using namespace dataBaseSerializer;

static_assert(std::endian::native == std::endian::little, "the blob encoding is little endian, as is the host");

namespace {
const char* const kWrongType = "type does not correspond !";
const char* const kTruncated = "unexpected end of data !";
}  // namespace

void cDataBaseSerializer::putRaw(const void* data, size_t size)
{
    const auto* bytes = static_cast<const uint8_t*>(data);
    mBuffer.insert(mBuffer.end(), bytes, bytes + size);
}

void cDataBaseSerializer::getRaw(void* data, size_t size)
{
    if (size > remaining())
        throw cSerializerException(kTruncated);
    std::memcpy(data, mData + mPosition, size);
    mPosition += size;
}

uint32_t cDataBaseSerializer::peekTag() const
{
    if (remaining() < sizeof(uint32_t))
        throw cSerializerException(kTruncated);
    uint32_t tag = 0;
    std::memcpy(&tag, mData + mPosition, sizeof(tag));
    return tag;
}

void cDataBaseSerializer::expectTag(uint32_t tag, const char* message)
{
    if (peekTag() != tag)
        throw cSerializerException(message);
    mPosition += sizeof(uint32_t);
}

uint64_t cDataBaseSerializer::length()
{
    uint64_t count = 0;
    number(count, tag_uint64, kWrongType);
    return count;
}

template <typename T>
void cDataBaseSerializer::number(T& value, uint32_t tag, const char* message)
{
    if (mSerialize) {
        putRaw(&tag, sizeof(tag));
        putRaw(&value, sizeof(value));
        return;
    }
    size_t start = mPosition;
    expectTag(tag, message);
    if (remaining() < sizeof(T)) {
        mPosition = start;
        throw cSerializerException(kTruncated);
    }
    getRaw(&value, sizeof(T));
}

void cDataBaseSerializer::serializedeserialize(int32_t& value) { number(value, tag_int32, "not an int type !"); }
void cDataBaseSerializer::serializedeserialize(int64_t& value) { number(value, tag_int64, kWrongType); }
void cDataBaseSerializer::serializedeserialize(uint32_t& value) { number(value, tag_uint32, kWrongType); }
void cDataBaseSerializer::serializedeserialize(uint64_t& value) { number(value, tag_uint64, kWrongType); }
void cDataBaseSerializer::serializedeserialize(double& value) { number(value, tag_double, kWrongType); }
void cDataBaseSerializer::serializedeserialize(float& value) { number(value, tag_float, kWrongType); }

void cDataBaseSerializer::serializedeserialize(bool& value)
{
    if (mSerialize) {
        uint32_t tag = value ? tag_true : tag_false;
        putRaw(&tag, sizeof(tag));
        return;
    }
    uint32_t tag = peekTag();
    if (tag != tag_true && tag != tag_false)
        throw cSerializerException("not an bool type !");
    mPosition += sizeof(uint32_t);
    value = tag == tag_true;
}

void cDataBaseSerializer::serializedeserialize(std::string& value)
{
    if (mSerialize) {
        uint32_t tag = tag_string;
        putRaw(&tag, sizeof(tag));
        uint64_t size = value.size();
        number(size, tag_uint64, kWrongType);
        putRaw(value.data(), value.size());
        return;
    }
    size_t start = mPosition;
    try {
        expectTag(tag_string, kWrongType);
        uint64_t size = length();
        if (size > remaining())
            throw cSerializerException(kTruncated);
        value.assign(reinterpret_cast<const char*>(mData + mPosition), size);
        mPosition += size;
    } catch (...) {
        mPosition = start;
        throw;
    }
}

uint64_t cDataBaseSerializer::vectorHead(uint64_t count, uint32_t elementTag)
{
    if (mSerialize) {
        uint32_t tag = tag_vector;
        putRaw(&tag, sizeof(tag));
        number(count, tag_uint64, kWrongType);
        putRaw(&elementTag, sizeof(elementTag));
        return count;
    }
    expectTag(tag_vector, kWrongType);
    uint64_t read = length();
    expectTag(elementTag, elementTag == tag_true ? "no std::vector<bool> type !" : kWrongType);
    return read;
}

template <typename T>
void cDataBaseSerializer::numberVector(std::vector<T>& value, uint32_t elementTag)
{
    if (mSerialize) {
        vectorHead(value.size(), elementTag);
        putRaw(value.data(), value.size() * sizeof(T));
        return;
    }
    size_t start = mPosition;
    try {
        uint64_t count = vectorHead(0, elementTag);
        if (count > remaining() / sizeof(T))
            throw cSerializerException(kTruncated);
        std::vector<T> read(count);
        getRaw(read.data(), count * sizeof(T));
        value = std::move(read);
    } catch (...) {
        mPosition = start;
        throw;
    }
}

void cDataBaseSerializer::serializedeserialize(std::vector<std::string>& value)
{
    if (mSerialize) {
        vectorHead(value.size(), tag_string);
        for (const std::string& text : value) {
            uint64_t size = text.size();
            number(size, tag_uint64, kWrongType);
            putRaw(text.data(), text.size());
        }
        return;
    }
    size_t start = mPosition;
    try {
        uint64_t count = vectorHead(0, tag_string);
        // Every string needs at least its length word: a larger count is a damaged blob, not a reason to
        // reserve memory for it.
        if (count > remaining() / 12)
            throw cSerializerException(kTruncated);
        std::vector<std::string> read;
        read.reserve(count);
        for (uint64_t i = 0; i < count; ++i) {
            uint64_t size = length();
            if (size > remaining())
                throw cSerializerException(kTruncated);
            read.emplace_back(reinterpret_cast<const char*>(mData + mPosition), size);
            mPosition += size;
        }
        value = std::move(read);
    } catch (...) {
        mPosition = start;
        throw;
    }
}

// One byte per element behind the element tag of true: the bool tags carry no payload of their own.
void cDataBaseSerializer::serializedeserialize(std::vector<bool>& value)
{
    if (mSerialize) {
        vectorHead(value.size(), tag_true);
        for (bool flag : value) {
            uint8_t byte = flag ? 1 : 0;
            putRaw(&byte, 1);
        }
        return;
    }
    size_t start = mPosition;
    try {
        uint64_t count = vectorHead(0, tag_true);
        if (count > remaining())
            throw cSerializerException(kTruncated);
        std::vector<bool> read(count);
        for (uint64_t i = 0; i < count; ++i)
            read[i] = mData[mPosition + i] != 0;
        mPosition += count;
        value = std::move(read);
    } catch (...) {
        mPosition = start;
        throw;
    }
}

}  // namespace vx3

namespace vx3 {
// The element types that the header offers.
template void cDataBaseSerializer::numberVector(std::vector<int32_t>&, uint32_t);
template void cDataBaseSerializer::numberVector(std::vector<int64_t>&, uint32_t);
template void cDataBaseSerializer::numberVector(std::vector<uint32_t>&, uint32_t);
template void cDataBaseSerializer::numberVector(std::vector<uint64_t>&, uint32_t);
template void cDataBaseSerializer::numberVector(std::vector<double>&, uint32_t);
template void cDataBaseSerializer::numberVector(std::vector<float>&, uint32_t);
}  // namespace vx3
