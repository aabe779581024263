// What the digital drawers share: the view in pixels (window columns, the rows of low, high and
// middle level), the column of an x value clamped to the window, the sources that hand out the
// records of the different storage layouts, and the few painter helpers. Templates over the draw
// context, so that the walks run headless against a recording context in the tests.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

#include "plot/wxPlotDrawerDigitalPens.h"
#include "plot/wxPlotDrawerSearch.h"
#include "plot/wxSinglePlotWidgetAxis.h"

namespace vx3::plotDrawerDigital {

// The processor's round-to-nearest, on a value bounded first so that the conversion is defined.
inline int toPixel(double value)
{
    constexpr double kLimit = 1e7;
    if (!(value > -kLimit))
        value = -kLimit;
    else if (value > kLimit)
        value = kLimit;
    return static_cast<int>(std::lrint(value));
}

// The point type a context's drawPolyline takes, so that the walks need no toolkit type.
template <class C, class P>
P polylinePointOf(void (C::*)(const std::vector<P>&));
template <class Context>
using cPolylinePoint = decltype(polylinePointOf(&Context::drawPolyline));

// One view of one digital curve, in pixels.
class cDigitalFrame {
    const wxSinglePlotWidgetAxis& mXAxis;

public:
    cDigitalFrame(const wxSinglePlotWidgetAxis& xAxis, const wxSinglePlotWidgetAxis& yAxis)
        : mXAxis(xAxis), xmin(xAxis.getMin()), xmax(xAxis.getMax())
    {
        if (xmin > xmax)
            std::swap(xmin, xmax);
        columnLeft = toPixel(xAxis.toInt(xmin));
        columnRight = toPixel(xAxis.toInt(xmax));
        if (columnLeft > columnRight)
            std::swap(columnLeft, columnRight);
        rowLow = toPixel(yAxis.toInt(0.0));
        rowHigh = toPixel(yAxis.toInt(1.0));
        rowMiddle = toPixel(yAxis.toInt(0.5));
        busPlot = yAxis.getGridType() == kBusGridType;
        mLinear = !xAxis.checkIsLog();
        mAxisMin = xAxis.getMin();
        mScale = xAxis.getScale();
        mPixelOfMin = xAxis.getPixelOfMin();
    }

    // A view of no width, or of undefined limits, shows nothing.
    bool checkIsDrawable() const { return xmax > xmin && std::isfinite(xmin) && std::isfinite(xmax); }

    // The x value clamped to the window; NaN goes to the left edge.
    double clampX(double x) const
    {
        if (x > xmin)
            return x < xmax ? x : xmax;
        return xmin;
    }
    // Linear axes map inline: this runs once per record in a crowded column.
    int column(double x) const
    {
        x = clampX(x);
        return toPixel(mLinear ? (x - mAxisMin) * mScale + mPixelOfMin : mXAxis.toInt(x));
    }

    // An x up to which every later x of rising data falls into column, and into the view: the
    // walks over a crowded column compare x with it instead of computing each pixel. Minus
    // infinity when no such bound is known.
    double computeColumnLimit(int column) const
    {
        constexpr double kNone = -std::numeric_limits<double>::infinity();
        if (!mLinear || !(mScale > 0))
            return kNone;
        const double edge = column + 0.5;
        double limit = (edge - mPixelOfMin) / mScale + mAxisMin;
        // The inverse mapping may land a rounding past the edge: step back a thousandth of a pixel.
        if (!((limit - mAxisMin) * mScale + mPixelOfMin < edge))
            limit -= 1e-3 / mScale;
        if (!((limit - mAxisMin) * mScale + mPixelOfMin < edge))
            return kNone;
        return limit < xmax ? limit : xmax;
    }

    // Grid type of the plots that show buses: their weak levels are all one state.
    static constexpr int kBusGridType = 0x16;

    double xmin, xmax;
    int columnLeft = 0, columnRight = 0;
    int rowLow = 0, rowHigh = 0, rowMiddle = 0;
    bool busPlot = false;

private:
    bool mLinear = true;
    double mAxisMin = 0.0, mScale = 1.0, mPixelOfMin = 0.0;
};

// Records that carry their own x: a dense curve (one state per x value, scale 1) or a sparse one
// whose records hold positions in ticks of scale.
template <class X>
struct cPositionSource {
    const X* x = nullptr;
    const char* states = nullptr;
    uint64_t width = 1;  // state bytes per record
    uint64_t n = 0;
    double scale = 1.0;

    uint64_t count() const { return x && states ? n : 0; }
    double xAt(uint64_t i) const { return static_cast<double>(x[i]) * scale; }
    const char* stateAt(uint64_t i) const { return states + i * width; }
};

// Interleaved records: an index of type B, then the state bytes, recordSize bytes in all. The
// index points into xValues; without xValues it is a position in ticks of scale. An index past
// the x values gives NaN, which ends the curve there.
template <class X, class B>
struct cIndexedSource {
    const X* xValues = nullptr;
    uint64_t xCount = 0;
    const char* records = nullptr;
    uint64_t recordSize = 0;
    uint64_t n = 0;
    double scale = 1.0;

    uint64_t count() const { return records && recordSize > sizeof(B) ? n : 0; }
    B indexAt(uint64_t i) const
    {
        B index;
        std::memcpy(&index, records + i * recordSize, sizeof(B));
        return index;
    }
    double xAt(uint64_t i) const
    {
        const B index = indexAt(i);
        if (!xValues)
            return static_cast<double>(index) * scale;
        if (static_cast<uint64_t>(index) >= xCount)
            return std::numeric_limits<double>::quiet_NaN();
        return static_cast<double>(xValues[index]);
    }
    const char* stateAt(uint64_t i) const { return records + i * recordSize + sizeof(B); }
};

// Enumeration values with their own x (dense, or sparse positions in ticks of scale).
template <class X, class V>
struct cEnumPositionSource {
    const X* x = nullptr;
    const V* values = nullptr;
    uint64_t n = 0;
    double scale = 1.0;

    uint64_t count() const { return x && values ? n : 0; }
    double xAt(uint64_t i) const { return static_cast<double>(x[i]) * scale; }
    V valueAt(uint64_t i) const { return values[i]; }
};

// Enumeration records: an index of type B into the x values, then the value of type V.
template <class X, class B, class V>
struct cEnumIndexedSource {
    const X* xValues = nullptr;
    uint64_t xCount = 0;
    const char* records = nullptr;
    uint64_t recordSize = 0;
    uint64_t n = 0;
    double scale = 1.0;

    uint64_t count() const { return records && recordSize >= sizeof(B) + sizeof(V) ? n : 0; }
    double xAt(uint64_t i) const
    {
        B index;
        std::memcpy(&index, records + i * recordSize, sizeof(B));
        if (!xValues)
            return static_cast<double>(index) * scale;
        if (static_cast<uint64_t>(index) >= xCount)
            return std::numeric_limits<double>::quiet_NaN();
        return static_cast<double>(xValues[index]);
    }
    V valueAt(uint64_t i) const
    {
        V value;
        std::memcpy(&value, records + i * recordSize + sizeof(B), sizeof(V));
        return value;
    }
};

// A horizontal run of pixels x0..x1 (inclusive) in row y with pen. Solid pens fill, which puts
// exactly these pixels at any device pixel ratio; other pens draw a line.
template <class Context>
void drawHorizontalRun(Context& context, const vxDrawContext::cVxPen& pen, int x0, int x1, int y)
{
    if (x1 < x0)
        std::swap(x0, x1);
    const int width = pen.width > 1 ? pen.width : 1;
    if (pen.kind == vxDrawContext::solid_pen) {
        const int bottom = y - (width - 1) / 2;
        context.fillRectangle(x0, bottom, x1 + 1, bottom + width, pen.colour);
        return;
    }
    context.setPen(pen);
    context.drawLine(x0, y, x1, y);
}

// Where drawing starts: the record in force at the left edge of the view.
template <class Source>
uint64_t findFirstRecord(const Source& source, const cDigitalFrame& frame, unsigned monotony)
{
    const uint64_t n = source.count();
    if (n == 0)
        return 0;
    const double first = source.xAt(0), last = source.xAt(n - 1);
    return plotDrawer::findFirstDrawnPoint([&source](uint64_t i) { return source.xAt(i); }, n, frame.xmin, first,
                                           std::isnan(last) ? first : last, monotony);
}

}  // namespace vx3::plotDrawerDigital
