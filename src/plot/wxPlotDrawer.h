// Drawing of a real curve: the walks over its points (the fast one for rising X with all values
// inside the view, the safe one for everything else), the symbol passes, and drawReal, which
// picks them. The points come from a source, so that plain vectors, sweep matrix rows (by
// stride), sparse records and converted complex values share one walk:
//   uint64_t size() const; double x(uint64_t i) const; double y(uint64_t i) const;
// where a NaN in x or y breaks the line.
#pragma once

#include <cmath>
#include <cstdint>

#include "model/curveStyleTypes.h"
#include "model/derivedCurveFunction.h"
#include "plot/wxPlotDrawerBase.h"
#include "plot/wxPlotDrawerSearch.h"

namespace vx3 {
namespace plotDrawer {

// Plain values of a real curve, or one row of a sweep matrix: X and Y by their strides.
template <typename X, typename Y>
struct cRealSource {
    const X* xs = nullptr;
    const Y* ys = nullptr;
    uint64_t count = 0;
    uint64_t xStride = 1;
    uint64_t yStride = 1;
    uint64_t size() const { return count; }
    double x(uint64_t i) const { return double(xs[i * xStride]); }
    double y(uint64_t i) const { return double(ys[i * yStride]); }
};

// How one part of a curve looks.
struct cCurvePart {
    vxDrawContext::cVxPen pen;
    int lineStyle = curvePlotProperties::solid_line;
    int symbol = curvePlotProperties::no_symbol;
};

// What drawReal knows of the curve without walking it. NaN limits: unknown (the safe walk is
// taken and the early outs are skipped).
struct cCurveLimits {
    double minX = NAN, maxX = NAN, minY = NAN, maxY = NAN;
    unsigned monotony = derivedCurveFunction::monotony_unknown;
};

// The line of a part is drawn unless it has none, or the points or bars replace it.
inline bool checkLineIsShown(int lineStyle)
{
    using namespace curvePlotProperties;
    return lineStyle != no_line && lineStyle != data_points && lineStyle != histogram_line;
}
inline bool checkIsHistogram(const cCurvePart& part)
{
    return part.lineStyle == curvePlotProperties::histogram_line ||
           part.symbol == curvePlotProperties::histogram_symbol;
}
// Half the size of a symbol in pixels, from the pen's width.
inline int symbolRadius(int penWidth)
{
    return 3 + (penWidth > 1 ? penWidth - 1 : 0);
}

}  // namespace plotDrawer

// The drawer of a real curve over a point source.
template <class Context>
class wxPlotDrawer : public wxPlotDrawerBase<Context> {
public:
    using wxPlotDrawerBase<Context>::wxPlotDrawerBase;

    // Rising X with every value inside the Y window: no Y clipping inside the view. Points
    // [first, last) of the source; returns the points walked.
    template <class Source>
    uint64_t drawRealMatrixMonotoneIncreasingImpl(const Source& source, uint64_t first, uint64_t last)
    {
        const auto& xa = this->xAxis();
        const auto& ya = this->yAxis();
        const double xmin = this->getXminU(), xmax = this->getXmaxU();
        uint64_t i = first;
        while (i < last) {
            // A run: skip NaN, take the first good point.
            double ux = 0.0, uy = 0.0;
            while (i < last) {
                ux = xa.toU(source.x(i));
                uy = ya.toU(source.y(i));
                ++i;
                if (ux == ux && uy == uy)
                    break;
                ux = NAN;
            }
            if (!(ux == ux))
                break;
            this->startRun(ux, uy);
            bool broken = false;
            // Before the view.
            while (i < last && this->getPrevX() < xmin) {
                ux = xa.toU(source.x(i));
                uy = ya.toU(source.y(i));
                ++i;
                if (!(ux == ux && uy == uy)) {
                    broken = true;
                    break;
                }
                this->safeDrawLineImpl(ux, uy);
            }
            if (broken) {
                this->endRun();
                continue;
            }
            // Inside: the fast path.
            bool pending = false;
            while (i < last) {
                ux = xa.toU(source.x(i));
                uy = ya.toU(source.y(i));
                ++i;
                if (!(uy == uy) || !(ux <= xmax)) {
                    pending = true;
                    break;
                }
                this->drawLineImpl(ux, uy);
            }
            if (pending && ux == ux && uy == uy) {
                // After the view: the segment that leaves it, then the walk ends.
                this->safeDrawLineImpl(ux, uy);
                this->endRun();
                return i - first;
            }
            this->endRun();
        }
        return i - first;
    }

    // Every segment clipped. The walk ends once a point lies beyond endX (axis space); a curve
    // whose X is not rising passes +infinity and is walked whole.
    template <class Source>
    uint64_t drawRealMatrixNonMonotoneImpl(const Source& source, uint64_t first, uint64_t last, double endX)
    {
        const auto& xa = this->xAxis();
        const auto& ya = this->yAxis();
        uint64_t i = first;
        bool running = false;
        for (; i < last; ++i) {
            const double ux = xa.toU(source.x(i));
            const double uy = ya.toU(source.y(i));
            if (!(ux == ux && uy == uy)) {
                if (running)
                    this->endRun();
                running = false;
                continue;
            }
            if (!running) {
                this->startRun(ux, uy);
                running = true;
            } else {
                this->safeDrawLineImpl(ux, uy);
            }
            if (ux > endX) {
                ++i;
                break;
            }
        }
        if (running)
            this->endRun();
        return i - first;
    }

    // Bars from the axis's base row, one stroke per column.
    template <class Source>
    void safeDrawHistogramLine(const Source& source, uint64_t first, uint64_t last, double endX)
    {
        const auto& xa = this->xAxis();
        const auto& ya = this->yAxis();
        const int base = this->computeBaseRow();
        for (uint64_t i = first; i < last; ++i) {
            const double ux = xa.toU(source.x(i));
            this->safeDrawHistogramImpl(ux, ya.toU(source.y(i)), base);
            if (ux > endX)
                break;
        }
        this->flushStroke();
    }

    // The symbol pass of a part: points for the line style "data points", bars for
    // "histogram", else the part's symbol. Each symbol is painted once per pixel.
    template <class Source>
    void safeDrawAllSymbols(const Source& source, uint64_t first, uint64_t last, const plotDrawer::cCurvePart& part,
                            double endX)
    {
        using namespace curvePlotProperties;
        Context& context = this->context();
        vxDrawContext::cVxPen solid = part.pen;
        solid.kind = vxDrawContext::solid_pen;
        if (part.lineStyle == histogram_line) {
            context.setPen(solid);
            safeDrawHistogramLine(source, first, last, endX);
            return;
        }
        const int width = part.pen.width;
        const int radius = plotDrawer::symbolRadius(width);
        auto walk = [&](bool clampY, double margin, auto&& paint) {
            this->beginSymbols(margin);
            const auto& xa = this->xAxis();
            const auto& ya = this->yAxis();
            for (uint64_t i = first; i < last; ++i) {
                const double ux = xa.toU(source.x(i));
                this->safeDrawSymbol(ux, ya.toU(source.y(i)), clampY, paint);
                if (ux > endX)
                    break;
            }
            if (wxPlotDrawerColBuffer* buffer = this->colBuffer())
                paint(*buffer);
        };
        context.setPen(solid);
        if (part.lineStyle == data_points) {
            if (width < 2) {
                walk(false, 1.0, [&](wxPlotDrawerColBuffer& b) { b.drawPoints(context); });
            } else {
                context.setBrush(part.pen.colour);
                walk(false, width, [&](wxPlotDrawerColBuffer& b) { b.drawCircles(context, width); });
                context.setTransparentBrush();
            }
            return;
        }
        switch (part.symbol) {
        case crosses: walk(false, radius, [&](wxPlotDrawerColBuffer& b) { b.drawCrosses(context, radius); }); break;
        case circles: walk(false, radius, [&](wxPlotDrawerColBuffer& b) { b.drawCircles(context, radius); }); break;
        case rectangles: walk(false, radius, [&](wxPlotDrawerColBuffer& b) { b.drawBoxes(context, radius); }); break;
        case diamonds: walk(false, radius, [&](wxPlotDrawerColBuffer& b) { b.drawDiamonds(context, radius); }); break;
        case up_triangles:
            walk(false, radius, [&](wxPlotDrawerColBuffer& b) { b.drawUpTriangles(context, radius); });
            break;
        case down_triangles:
            walk(false, radius, [&](wxPlotDrawerColBuffer& b) { b.drawDownTriangles(context, radius); });
            break;
        case left_triangles:
            walk(false, radius, [&](wxPlotDrawerColBuffer& b) { b.drawLeftTriangles(context, radius); });
            break;
        case right_triangles:
            walk(false, radius, [&](wxPlotDrawerColBuffer& b) { b.drawRightTriangles(context, radius); });
            break;
        case histogram_symbol: {
            const int base = this->computeBaseRow();
            walk(true, 0.0, [&](wxPlotDrawerColBuffer& b) { b.drawHistograms(context, base); });
            break;
        }
        default: break;
        }
    }

};

namespace plotDrawer {

// Draws points [first, last) of a source as one part of a curve: early outs, pen, the first
// point, the line pass by the fast or the safe walk, the symbol pass. Returns the points walked.
template <class Context, class Source>
uint64_t drawReal(Context& context, const Source& source, uint64_t first, uint64_t last, const cCurveLimits& limits,
                  const cAxisMap& xAxis, const cAxisMap& yAxis, cDrawWindow window, const cCurvePart& part,
                  wxPlotDrawerColBuffer& colBuffer, double colorizationMin = NAN, double colorizationMax = NAN)
{
    using namespace derivedCurveFunction;
    if (last > source.size())
        last = source.size();
    if (first >= last || part.pen.width <= 0)
        return 0;
    // A colouring interval narrows the X window.
    if (colorizationMin == colorizationMin && colorizationMin > window.xmin)
        window.xmin = colorizationMin;
    if (colorizationMax == colorizationMax && colorizationMax < window.xmax)
        window.xmax = colorizationMax;
    if (!(window.xmin <= window.xmax) || !(window.ymin <= window.ymax))
        return 0;  // a view of no width (or of NaN) shows nothing
    if (window.xmax < limits.minX || window.xmin > limits.maxX || window.ymin > limits.maxY)
        return 0;
    bool histogramOnly = false;
    if (window.ymax < limits.minY) {
        if (!checkIsHistogram(part))
            return 0;
        histogramOnly = true;
    }
    context.setPen(part.pen);

    const bool rising = check_monotony_increasing(limits.monotony) || limits.monotony == monotony_constant;
    const uint64_t count = last - first;
    const auto xAt = [&](uint64_t i) { return source.x(first + i); };
    // Only the search of a rising curve is trusted to skip; any other curve is scanned.
    const uint64_t start =
        first + (rising ? plotDrawer::findFirstDrawnPoint(xAt, count, window.xmin, limits.minX, limits.maxX,
                                                         limits.monotony)
                        : 0);

    wxPlotDrawer<Context> drawer(context, xAxis, yAxis, window, &colBuffer);
    const double endX = rising ? drawer.getXmaxU() : INFINITY;
    uint64_t walked = 0;
    if (checkLineIsShown(part.lineStyle) && !histogramOnly) {
        const double yminU = yAxis.toU(window.ymin), ymaxU = yAxis.toU(window.ymax);
        const bool inside = yAxis.toU(limits.minY) >= yminU && yAxis.toU(limits.maxY) <= ymaxU;
        if (rising && inside && limits.monotony != monotony_constant)
            walked = drawer.drawRealMatrixMonotoneIncreasingImpl(source, start, last);
        else
            walked = drawer.drawRealMatrixNonMonotoneImpl(source, start, last, endX);
    }
    const bool symbols = part.lineStyle == curvePlotProperties::data_points ||
                         part.lineStyle == curvePlotProperties::histogram_line ||
                         (part.symbol > curvePlotProperties::no_symbol &&
                          part.symbol <= curvePlotProperties::histogram_symbol);
    if (symbols) {
        context.setPen(part.pen);
        drawer.safeDrawAllSymbols(source, start, last, part, endX);
        context.setPen(part.pen);
    }
    return walked;
}

}  // namespace plotDrawer
}  // namespace vx3
