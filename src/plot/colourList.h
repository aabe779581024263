// Curve colours dealt by a rule instead of a stored table, and colour texts of files and commands.
#pragma once

#include <cstdint>
#include <string>

namespace vx3 {
namespace colourList {

struct cColour {
    unsigned char red = 0, green = 0, blue = 0, alpha = 255;
    // 0xrrggbb, the form that styles keep.
    unsigned rgb() const { return (unsigned(red) << 16) | (unsigned(green) << 8) | unsigned(blue); }
    bool operator==(const cColour& other) const = default;
};

// Eighteen colours that walk the hue circle in steps of a third, so that neighbours in the
// sequence differ strongly; lowest lifts the darkest channel (0 strong, 100 pale).
cColour get_colour_from_list(uint64_t index, unsigned alpha, unsigned lowest);

// The counting form, owned by whoever deals the colours: every call takes the next colour,
// the first one being index 1, with alpha 255 and lowest 0.
class cColourCounter {
public:
    cColour get_colour_from_list() { return colourList::get_colour_from_list(++mCounter, 255, 0); }
    uint64_t counter() const { return mCounter; }
    void reset() { mCounter = 0; }

private:
    uint64_t mCounter = 0;
};

}  // namespace colourList

// "#rrggbb", "0xrrggbb", a decimal number or a colour name (any case); false for anything else,
// colour untouched.
bool parseColourString(const std::string& text, unsigned& colour);
// "#rrggbb" of the low 24 bits.
std::string colourToString(unsigned colour);

}  // namespace vx3
