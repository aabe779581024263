// How an axis measures its label texts: the draw context implements it for the real font,
// tests with a fixed-width fake.
#pragma once

#include <string>

namespace vx3 {

class wxAxisTextMetricsVirtual {
public:
    virtual ~wxAxisTextMetricsVirtual() = default;
    // Width and height of one line of text in pixels.
    virtual double getTextWidth(const std::string& text) const = 0;
    virtual double getTextHeight(const std::string& text) const = 0;
};

}  // namespace vx3
