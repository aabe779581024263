// The one door through which a plot draws a curve: it picks the drawer by the storage types of
// the curve's X and Y values, reads the windows from the axes and walks only the visible points.
// Analog curves (real, complex, sweep matrices, sparse records, polar and Smith, enumerated
// table columns over the numbers of their states) are drawn here; logic values, buses, discrete
// values and texts go to the digital drawers.
#pragma once

#include <cmath>
#include <cstdint>

class QFont;

namespace vx3 {

class wxCurveDescription;
class wxSinglePlotWidgetAxis;
class wxPlotDrawerColBuffer;
class qtVxBufferedDrawContextInverted;

namespace plotCurveDrawing {

// What the plot knows about a curve beyond its description and axes.
struct cDrawOptions {
    // The axis of the imaginary part of a complex curve (the second value of a conversion that
    // shows two); null: the same Y axis as the real part.
    const wxSinglePlotWidgetAxis* imagYAxis = nullptr;
    // The colouring interval of the curve: only this X range is drawn. NaN: none.
    double colorizationMin = NAN;
    double colorizationMax = NAN;
    // The plot's grid (waveExplorerWidgetVirtual::window_type); polar and Smith grids draw the
    // complex value as a point of the plane, the arc between points as a polygon.
    int gridType = 2;
    // How the values of buses read (derivedCurveFunction::digital_data_type, 0: hexadecimal):
    // the radix the plot's axis shows them in.
    unsigned digitalType = 0;
    // The font of the values inside bus and enumeration boxes; null: the context's font as set.
    const QFont* digitalFont = nullptr;
};

// What a draw did, for the plot's status and for tests.
struct cDrawResult {
    bool drawn = false;          // some drawer ran (the curve had values of a kind drawn here)
    uint64_t pointsWalked = 0;   // points the drawers visited (digital: the records handed to them)
};

}  // namespace plotCurveDrawing

// Draws points [first, last) of the curve (last beyond the curve's size: to its end) into the
// context on the given axes. colBuffer is reused between curves so that no drawing allocates.
// The axes must have their update range set (computeMinMaxUpdate) for the strip being drawn.
// A description that names no curve, or values not loaded, draw nothing. Digital curves start
// at the record in force at the view's left edge whatever first is; last caps their records.
plotCurveDrawing::cDrawResult drawCurveDescription(qtVxBufferedDrawContextInverted& context,
                                                   const wxCurveDescription& curve,
                                                   const wxSinglePlotWidgetAxis& xAxis,
                                                   const wxSinglePlotWidgetAxis& yAxis,
                                                   wxPlotDrawerColBuffer& colBuffer, uint64_t first = 0,
                                                   uint64_t last = UINT64_MAX,
                                                   const plotCurveDrawing::cDrawOptions& options = {});

}  // namespace vx3
