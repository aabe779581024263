// The table of named colours ("black blue" -> "#040720").
#pragma once

#include <string_view>

namespace vx3 {

// "#rrggbb" for a lower-case colour name, or null for an unknown one. Exact comparison.
const char* findNamedColor(std::string_view name);
size_t getNumberOfNamedColors();

}  // namespace vx3
