#include "treegrid/wxTreeGridVirtual.h"

#include <cmath>
#include <cstdlib>

namespace vx3 {

// A model that gives only texts still sorts and filters numbers: the text is read as a number,
// and a text that is not one is undefined.
double wxTreeGridVirtual::treeGridVirtualGetDoubleValue(unsigned row, unsigned col)
{
    const std::string text = treeGridVirtualGetValue(row, col);
    const char* begin = text.c_str();
    char* end = nullptr;
    const double value = std::strtod(begin, &end);
    if (end == begin)
        return std::nan("");
    while (*end == ' ' || *end == '\t')
        ++end;
    return *end ? std::nan("") : value;
}

}  // namespace vx3
