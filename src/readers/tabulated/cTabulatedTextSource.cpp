#include "readers/tabulated/cTabulatedTextSource.h"

#include <algorithm>
#include <cstring>
#include <unistd.h>
#include <memory>
#include <vector>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "base/cVxLogger.h"
#include "readers/scan/fileAccessCheck.h"

namespace vx3 {

namespace {
constexpr uint64_t kBlock = 1u << 20;

// Line feeds in [p, p + n): sixteen bytes at a time.
uint64_t countFeeds(const char* p, uint64_t n)
{
    uint64_t count = 0, i = 0;
#if defined(__SSE2__)
    // Byte counters that are summed before they can overflow.
    const __m128i feed = _mm_set1_epi8('\n');
    const __m128i zero = _mm_setzero_si128();
    auto sum = [&zero](__m128i counters) {
        const __m128i sums = _mm_sad_epu8(counters, zero);
        return static_cast<uint64_t>(_mm_cvtsi128_si64(sums)) +
               static_cast<uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(sums, sums)));
    };
    __m128i counters = zero;
    unsigned rounds = 0;
    for (; i + 16 <= n; i += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
        counters = _mm_sub_epi8(counters, _mm_cmpeq_epi8(block, feed));
        if (++rounds == 255) {
            count += sum(counters);
            counters = zero;
            rounds = 0;
        }
    }
    count += sum(counters);
#endif
    for (; i < n; ++i)
        count += p[i] == '\n' ? 1 : 0;
    return count;
}
}  // namespace

bool cTabulatedTextSource::openFile(const std::string& name)
{
    close();
    uint64_t size = 0;
    if (fileAccess::openRegularFile(name, mFd, size, mError) != fileAccess::file_ok)
        return false;
    mIsFile = true;
    mSize = size;
    return true;
}

void cTabulatedTextSource::useString(std::string_view text)
{
    close();
    mText = text;
    mSize = text.size();
}

void cTabulatedTextSource::close()
{
    if (mFd >= 0)
        ::close(mFd);
    mFd = -1;
    mIsFile = false;
    mText = std::string_view();
    mSize = 0;
}

uint64_t cTabulatedTextSource::read(uint64_t position, char* target, uint64_t count)
{
    if (!mIsFile) {
        if (position >= mText.size())
            return 0;
        const uint64_t n = std::min<uint64_t>(count, mText.size() - position);
        std::memcpy(target, mText.data() + position, n);
        return n;
    }
    uint64_t done = 0;
    while (done < count) {
        const ssize_t n = ::pread(mFd, target + done, std::min<uint64_t>(count - done, 1u << 30),
                                  static_cast<off_t>(position + done));
        if (n <= 0)
            break;
        done += static_cast<uint64_t>(n);
    }
    return done;
}

bool cTabulatedTextSource::readAll(uint64_t position, std::string& text, uint64_t limit)
{
    text.clear();
    if (position >= mSize)
        return true;
    if (mSize - position > limit)
        return false;
    text.resize(mSize - position);
    text.resize(read(position, text.data(), text.size()));
    return true;
}

bool cTabulatedTextSource::countLineFeeds(uint64_t position, uint64_t& count, const cVxLogger& logger)
{
    count = 0;
    if (!mIsFile) {
        if (position < mText.size())
            count = countFeeds(mText.data() + position, mText.size() - position);
        return true;
    }
    const uint64_t size = std::min<uint64_t>(kBlock, std::max<uint64_t>(mSize, 1));
    const std::unique_ptr<char[]> buffer(new char[size]);
    while (position < mSize) {
        const uint64_t n = read(position, buffer.get(), size);
        if (n == 0)
            break;
        count += countFeeds(buffer.get(), n);
        position += n;
        if (logger.checkActionIsInterrupted())
            return false;
    }
    return true;
}

uint64_t cTabulatedTextSource::getTextStart()
{
    char head[3] = {0, 0, 0};
    return read(0, head, 3) == 3 && head[0] == '\xEF' && head[1] == '\xBB' && head[2] == '\xBF' ? 3 : 0;
}

bool cTabulatedTextSource::checkLooksBinary()
{
    char head[4096];
    const uint64_t n = read(0, head, sizeof(head));
    uint64_t odd = 0;
    for (uint64_t i = 0; i < n; ++i) {
        const unsigned char c = static_cast<unsigned char>(head[i]);
        if (c == 0)
            return true;
        if (c < 32 && c != '\n' && c != '\r' && c != '\t' && c != '\f' && c != '\v')
            ++odd;
    }
    // A stray control code happens in text; many of them don't.
    return n > 0 && odd * 100 > n;
}

}  // namespace vx3
