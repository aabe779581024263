#include "curveStyleTypes.h"

#include "base/cVxString.h"

namespace vx3 {
namespace curvePlotProperties {

namespace {
const char* const kLineStyles[] = {"solid line", "no line",           "data points", "dotted line", "dashed line",
                                   "short dashed line", "histogram", "automatic",   "default"};
const char* const kSymbols[] = {"no symbol",      "crosses",         "circles",        "rectangles",
                                "diamonds",       "up triangles",    "down triangles", "left triangles",
                                "right triangles", "histogram",      "automatic",      "default"};

template <size_t N>
int find(const char* const (&table)[N], const std::string& text)
{
    std::string word = vxString::replace_string_all(vxString::to_lower(vxString::trim(text)), "_", " ");
    for (size_t i = 0; i < N; ++i)
        if (word == table[i])
            return static_cast<int>(i);
    return -1;
}
}  // namespace

std::string line_style_type_to_string(int style)
{
    return style >= 0 && style <= default_line ? kLineStyles[style] : "";
}

std::string symbol_type_to_string(int symbol)
{
    return symbol >= 0 && symbol <= default_symbol ? kSymbols[symbol] : "";
}

int get_line_style_from_string(const std::string& text) { return find(kLineStyles, text); }
int get_symbol_from_string(const std::string& text) { return find(kSymbols, text); }

}  // namespace curvePlotProperties
}  // namespace vx3
