#include "colourList.h"

#include <cstdio>

#include "base/cVxString.h"

namespace vx3 {
namespace colourList {

cColour get_colour_from_list(uint64_t index, unsigned alpha, unsigned lowest)
{
    if (lowest > 255)
        lowest = 255;
    const unsigned u = static_cast<unsigned>(index % 18);
    const unsigned v = u / 3 + (u % 3) * 6;
    // f = v / 6 minus the edge; kept as sixths so that the halves (42.5, 127.5, ...) round up
    // exactly: in doubles 255 * (1 - 5/6.0) falls just below 42.5.
    const unsigned sixths = v % 6, span = 255 - lowest;
    auto channel = [&](unsigned numerator) {
        return static_cast<unsigned char>((6 * lowest + span * numerator + 3) / 6);
    };
    const unsigned char low = static_cast<unsigned char>(lowest), rise = channel(sixths), fall = channel(6 - sixths);
    const unsigned char a = static_cast<unsigned char>(alpha > 255 ? 255 : alpha);
    if (v < 6)
        return cColour{rise, low, fall, a};  // blue turns into red
    if (v < 12)
        return cColour{fall, rise, low, a};  // red turns into green
    return cColour{low, fall, rise, a};      // green turns into blue
}

}  // namespace colourList

namespace {
// Lower-case hex digits only; the caller limits the length to 24 bits.
bool parseHex(std::string_view digits, unsigned& colour)
{
    unsigned value = 0;
    for (char c : digits) {
        const int digit = c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
        if (digit < 0)
            return false;
        value = value * 16 + static_cast<unsigned>(digit);
    }
    colour = value;
    return true;
}
}  // namespace

bool parseColourString(const std::string& text, unsigned& colour)
{
    const std::string token = vxString::to_lower(vxString::trim(text));
    if (token.empty())
        return false;
    cVxString word(token);
    uint64_t number = 0;
    if (token.front() != '#' && token.rfind("0x", 0) != 0) {
        if (word.toUint64(number) && number <= 0xffffffULL) {
            colour = static_cast<unsigned>(number);
            return true;
        }
        cVxString named = word.convertNamedColorString();
        if (named == word)
            return false;
        word = named;
    }
    if (word.front() == '#' && word.size() == 7)
        return parseHex(std::string_view(word).substr(1), colour);
    if (word.rfind("0x", 0) == 0 && word.size() > 2 && word.size() <= 8)
        return parseHex(std::string_view(word).substr(2), colour);
    return false;
}

std::string colourToString(unsigned colour)
{
    char text[8];
    std::snprintf(text, sizeof text, "#%06x", colour & 0xffffffu);
    return text;
}

}  // namespace vx3
