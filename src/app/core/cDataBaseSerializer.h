// The blob encoding of the configuration file: a stream of typed values, little endian, each with a
// 32-bit type word in front. One function per record runs in both directions, so that the order of
// fields is stated once.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace vx3 {

namespace dataBaseSerializer {
enum tag_type : uint32_t {
    tag_string = 11,
    tag_vector = 12,
    tag_int32 = 16,
    tag_int64 = 17,
    tag_uint32 = 18,
    tag_uint64 = 19,
    tag_double = 21,
    tag_float = 22,
    tag_true = 34,
    tag_false = 35
};
}

class cSerializerException : public std::runtime_error {
public:
    explicit cSerializerException(const std::string& text) : std::runtime_error(text) {}
};

class cDataBaseSerializer {
public:
    // A writer that appends to its own buffer.
    cDataBaseSerializer() : mSerialize(true) {}
    // A reader over bytes that must outlive it.
    cDataBaseSerializer(const uint8_t* data, size_t size) : mSerialize(false), mData(data), mSize(size) {}
    explicit cDataBaseSerializer(const std::vector<uint8_t>& data) : cDataBaseSerializer(data.data(), data.size()) {}

    bool checkIsSerializing() const { return mSerialize; }
    const std::vector<uint8_t>& buffer() const { return mBuffer; }
    std::vector<uint8_t>& buffer() { return mBuffer; }
    size_t remaining() const { return mSize - mPosition; }
    bool checkAtEnd() const { return mPosition == mSize; }

    // Write the value when serialising, read into it otherwise. A read that does not fit throws
    // cSerializerException and leaves the value as it was.
    void serializedeserialize(int32_t& value);
    void serializedeserialize(int64_t& value);
    void serializedeserialize(uint32_t& value);
    void serializedeserialize(uint64_t& value);
    void serializedeserialize(double& value);
    void serializedeserialize(float& value);
    void serializedeserialize(bool& value);
    void serializedeserialize(std::string& value);
    void serializedeserialize(std::vector<std::string>& value);
    void serializedeserialize(std::vector<bool>& value);
    void serializedeserialize(std::vector<int32_t>& value) { numberVector(value, dataBaseSerializer::tag_int32); }
    void serializedeserialize(std::vector<int64_t>& value) { numberVector(value, dataBaseSerializer::tag_int64); }
    void serializedeserialize(std::vector<uint32_t>& value) { numberVector(value, dataBaseSerializer::tag_uint32); }
    void serializedeserialize(std::vector<uint64_t>& value) { numberVector(value, dataBaseSerializer::tag_uint64); }
    void serializedeserialize(std::vector<double>& value) { numberVector(value, dataBaseSerializer::tag_double); }
    void serializedeserialize(std::vector<float>& value) { numberVector(value, dataBaseSerializer::tag_float); }

    // The vector's head: its tag, its count and the tag of its elements. Records with a vector of
    // records use these and then their own fields element by element.
    uint64_t vectorHead(uint64_t count, uint32_t elementTag);

private:
    template <typename T>
    void numberVector(std::vector<T>& value, uint32_t elementTag);
    template <typename T>
    void number(T& value, uint32_t tag, const char* message);
    void putRaw(const void* data, size_t size);
    void getRaw(void* data, size_t size);
    uint32_t peekTag() const;
    void expectTag(uint32_t tag, const char* message);
    uint64_t length();  // tag 19 and an 8-byte count, checked against what is left

    bool mSerialize;
    std::vector<uint8_t> mBuffer;
    const uint8_t* mData = nullptr;
    size_t mSize = 0;
    size_t mPosition = 0;
};

}  // namespace vx3
