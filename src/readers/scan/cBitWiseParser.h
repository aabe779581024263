// Reads bytes and bit streams from either file access class (cVxBinFile or cVxMemoryFile): the
// file access object of every block loader. Sequential reads go through a block buffer, so
// that a mapped file is touched, under the bus-error guard, once per block and not per value.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace vx3 {

template <class File>
class cBitWiseParser {
public:
    static constexpr uint64_t kBlockSize = 1u << 16;

    explicit cBitWiseParser(File& file) : mFile(file) {}

    File& file() { return mFile; }
    uint64_t fileSize() const { return mFile.size(); }
    std::string getErrorMessage() const { return mFile.getErrorMessage(); }

    // Byte position of the next read; a pending bit offset is dropped.
    void setStreamPosition(uint64_t position)
    {
        mPosition = position;
        clearBitBuffer();
    }
    // Resumes inside a byte: byte is the content of the byte before position, of which
    // bitOffset bits were consumed already.
    void setStreamPosition(uint64_t position, unsigned char byte, unsigned bitOffset)
    {
        mPosition = position;
        setBitBuffer(byte, bitOffset);
    }
    uint64_t getStreamPosition() const { return mPosition; }

    void clearBitBuffer()
    {
        mByte = 0;
        mBitOffset = 8;
    }
    void setBitBuffer(unsigned char byte, unsigned bitOffset)
    {
        mByte = byte;
        mBitOffset = std::min(bitOffset, 8u);
    }
    unsigned char byteBuffer() const { return mByte; }
    unsigned byteBufferOffset() const { return mBitOffset; }

    // count bits (at most 64), most significant first. False at the end of the file.
    bool readBitwise(unsigned count, uint64_t& value)
    {
        value = 0;
        if (count > 64)
            return false;
        while (count) {
            if (mBitOffset == 8) {
                unsigned char next;
                if (!readSequential(&next, 1))
                    return false;
                mByte = next;
                mBitOffset = 0;
            }
            const unsigned available = 8 - mBitOffset;
            const unsigned take = std::min(available, count);
            const unsigned shift = available - take;
            const uint64_t bits = (static_cast<unsigned>(mByte) >> shift) & ((1u << take) - 1u);
            value = (value << take) | bits;
            mBitOffset += take;
            count -= take;
        }
        return true;
    }

    // Byte-aligned sequential read at the stream position.
    bool readBytes(void* target, uint64_t count)
    {
        clearBitBuffer();
        return readSequential(static_cast<unsigned char*>(target), count);
    }
    template <typename T>
    bool readValue(T& value)
    {
        return readBytes(&value, sizeof(T));
    }

    // Positioned reads straight from the file, bypassing the block buffer.
    bool readBytes(uint64_t position, void* target, uint64_t count) { return mFile.readBytes(position, target, count); }
    bool readStrided(uint64_t position, uint64_t stride, unsigned width, uint64_t count, void* target)
    {
        return mFile.readStrided(position, stride, width, count, target);
    }

private:
    bool readSequential(unsigned char* target, uint64_t count)
    {
        while (count) {
            if (mPosition < mBlockStart || mPosition >= mBlockStart + mBlock.size()) {
                if (count >= kBlockSize) {  // large reads go straight to the target
                    if (!mFile.readBytes(mPosition, target, count))
                        return false;
                    mPosition += count;
                    return true;
                }
                if (!fillBlock())
                    return false;
            }
            const uint64_t offset = mPosition - mBlockStart;
            const uint64_t take = std::min<uint64_t>(count, mBlock.size() - offset);
            std::memcpy(target, mBlock.data() + offset, take);
            target += take;
            mPosition += take;
            count -= take;
        }
        return true;
    }

    bool fillBlock()
    {
        const uint64_t size = mFile.size();
        if (mPosition >= size)
            return false;
        const uint64_t length = std::min<uint64_t>(kBlockSize, size - mPosition);
        mBlock.resize(length);
        if (!mFile.readBytes(mPosition, mBlock.data(), length)) {
            mBlock.clear();
            return false;
        }
        mBlockStart = mPosition;
        return true;
    }

    File& mFile;
    uint64_t mPosition = 0;
    std::vector<unsigned char> mBlock;
    uint64_t mBlockStart = 0;
    unsigned char mByte = 0;
    unsigned mBitOffset = 8;  // bits of mByte consumed; 8 = empty
};

}  // namespace vx3
