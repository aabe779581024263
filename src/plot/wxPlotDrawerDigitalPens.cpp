#include "plot/wxPlotDrawerDigitalPens.h"

namespace vx3::plotDrawerDigital {

namespace {
constexpr unsigned kAmber = 0xe0a000;
constexpr unsigned kRed = 0xe00000;
constexpr unsigned kLightRed = 0xffa8a8;
}  // namespace

unsigned mixColours(unsigned a, unsigned b, unsigned weight)
{
    if (weight > 256)
        weight = 256;
    unsigned result = 0;
    for (unsigned shift : {0u, 8u, 16u}) {
        const unsigned ca = (a >> shift) & 0xff, cb = (b >> shift) & 0xff;
        result |= ((ca * (256 - weight) + cb * weight + 128) >> 8) << shift;
    }
    return result;
}

vxDrawContext::cVxPen convertToDigitalZPen(const vxDrawContext::cVxPen& main)
{
    // Solid: a dashed mid line at a pixel's width would break up into dots when zoomed out.
    return {mixColours(main.colour, kAmber, 160), main.width, vxDrawContext::solid_pen};
}

vxDrawContext::cVxPen convertToDigitalXPen(const vxDrawContext::cVxPen& main)
{
    return {kRed, main.width, vxDrawContext::solid_pen};
}

unsigned getDigitalXBoxColor(const vxDrawContext::cVxPen& main)
{
    return mixColours(kLightRed, main.colour, 48);
}

}  // namespace vx3::plotDrawerDigital
