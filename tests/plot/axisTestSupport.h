// Helpers of the axis tests: a fixed-width font and views set up in one call.
#pragma once

#include <string>

#include "plot/wxAxisTextMetricsVirtual.h"

namespace zwplot {

// Every character (code point, so the delta sign counts once) is 7 pixels wide, every line 12 high.
class cFixedWidthMetrics : public vx3::wxAxisTextMetricsVirtual {
public:
    static constexpr double char_width = 7.0;
    static constexpr double line_height = 12.0;
    double getTextWidth(const std::string& text) const override
    {
        double characters = 0.0;
        for (unsigned char c : text)
            if ((c & 0xC0) != 0x80)
                characters += 1.0;
        return characters * char_width;
    }
    double getTextHeight(const std::string&) const override { return line_height; }
};

}  // namespace zwplot
