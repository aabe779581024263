// The pens of a digital curve, all made from the curve's own pen: the main pen for driven levels
// and bus boxes, the Z pen for floating and weak states, the X pen and the fill of the box that
// stands for an unknown state.
#pragma once

#include "plot/wxCurveStyle.h"

namespace vx3::plotDrawerDigital {

// Floating and weak levels: the curve's colour pulled towards amber, so that a bus at high
// impedance reads at a glance without losing which curve it belongs to.
vxDrawContext::cVxPen convertToDigitalZPen(const vxDrawContext::cVxPen& main);
// The outline of an unknown state: red at the curve's width, whatever the curve's colour.
vxDrawContext::cVxPen convertToDigitalXPen(const vxDrawContext::cVxPen& main);
// The fill of an unknown state: a light red that the curve's colour tints.
unsigned getDigitalXBoxColor(const vxDrawContext::cVxPen& main);

// Channel-wise mix of two 0xrrggbb colours, weight of b in 0..256.
unsigned mixColours(unsigned a, unsigned b, unsigned weight);

struct cDigitalPens {
    vxDrawContext::cVxPen main;
    vxDrawContext::cVxPen z;
    vxDrawContext::cVxPen x;
    unsigned xBoxColour = 0xffb0b0;

    static cDigitalPens fromMainPen(const vxDrawContext::cVxPen& main)
    {
        return {main, convertToDigitalZPen(main), convertToDigitalXPen(main), getDigitalXBoxColor(main)};
    }
};

}  // namespace vx3::plotDrawerDigital
