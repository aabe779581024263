#include "colourList.h"

#include <cmath>
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
    double f = v / 6.0;
    const double low = lowest, span = 255.0 - lowest;
    double red = 0, green = 0, blue = 0;
    if (v < 6) {
        red = low + span * f;
        green = low;
        blue = low + span * (1.0 - f);
    } else if (v < 12) {
        f -= 1.0;
        green = low + span * f;
        red = low + span * (1.0 - f);
        blue = low;
    } else {
        f -= 2.0;
        blue = low + span * f;
        green = low + span * (1.0 - f);
        red = low;
    }
    auto byte = [](double value) { return static_cast<unsigned char>(std::lround(value)); };
    return cColour{byte(red), byte(green), byte(blue), static_cast<unsigned char>(alpha > 255 ? 255 : alpha)};
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
