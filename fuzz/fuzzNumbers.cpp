// The number scanner of all text readers over the input as it is (no terminating zero after
// it, so a read past the end is caught). Each scanning function starts at every position; one
// that answers false must leave the iterator where it was, and one that answers true must move.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "readers/scan/cParserBase.h"

namespace {

using It = vx3::cParserBaseStringIterator;
using scanner = vx3::cParserBase<It>;

template <class Fn>
void check(const char* name, It begin, const It& end, Fn&& scan)
{
    const It start = begin;
    const bool found = scan(begin, end);
    if (!found && begin != start) {
        std::fprintf(stderr, "%s failed but moved the iterator\n", name);
        std::abort();
    }
    if (begin < start || end < begin) {
        std::fprintf(stderr, "%s left the range\n", name);
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    vx3::cParserBaseStringIteratorHandler handler;
    handler.useStringData(std::string_view(reinterpret_cast<const char*>(data), size));
    const It end = handler.end();
    // Every start position would make long inputs quadratic; the first 64 and then every 7th.
    for (It at = handler.begin(); at != end;) {
        double value = 0;
        bool comma = false;
        int64_t integer = 0;
        uint64_t unsignedInteger = 0;
        check("parseDoubleNoUnits", at, end, [&](It& b, const It& e) { return scanner::parseDoubleNoUnits(b, e, value); });
        check("parseDoubleNoUnits comma", at, end,
              [&](It& b, const It& e) { return scanner::parseDoubleNoUnits(b, e, value, true, true, &comma); });
        check("parseDoubleWithUnits", at, end,
              [&](It& b, const It& e) { return scanner::parseDoubleWithUnits(b, e, value, true, true, &comma, true); });
        check("parseDoubleWithUnits plain", at, end,
              [&](It& b, const It& e) { return scanner::parseDoubleWithUnits(b, e, value); });
        check("parseDoubleInfNan", at, end, [&](It& b, const It& e) { return scanner::parseDoubleInfNan(b, e, value); });
        check("parseDoubleOtherInfNan", at, end,
              [&](It& b, const It& e) { return scanner::parseDoubleOtherInfNan(b, e, value, true); });
        check("parseInteger", at, end, [&](It& b, const It& e) { return scanner::parseInteger(b, e, integer); });
        check("parseUnsignedInteger", at, end,
              [&](It& b, const It& e) { return scanner::parseUnsignedInteger(b, e, unsignedInteger); });
        check("parseUnsignedHexadecimalInteger", at, end,
              [&](It& b, const It& e) { return scanner::parseUnsignedHexadecimalInteger(b, e, unsignedInteger); });
        check("parseUnsignedHexadecimalIntegerBigEndian", at, end, [&](It& b, const It& e) {
            return scanner::parseUnsignedHexadecimalIntegerBigEndian(b, e, unsignedInteger);
        });
        check("parseFixedSizeUInt", at, end,
              [&](It& b, const It& e) { return scanner::parseFixedSizeUInt(b, e, 4, unsignedInteger); });
        {
            It b = at;
            scanner::guessFileTypeFromBom(b, end);
        }
        const uint64_t offset = at.position();
        for (unsigned step = offset < 64 ? 1 : 7; step-- && at != end;)
            ++at;
    }
    return 0;
}
