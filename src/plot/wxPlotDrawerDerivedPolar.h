// Complex curves on polar and Smith grids: each value is a point of the plane (real part right,
// imaginary part up). On a polar grid the connection of two points follows the arc between them
// (radius and angle change evenly), drawn as a polygon of short lines wherever a straight chord
// would stray from the arc by half a pixel or more; each piece is clipped like any segment, so
// an arc that leaves the view is drawn as far as it is visible.
#pragma once

#include <cmath>
#include <complex>
#include <cstdint>

#include "plot/wxPlotDrawer.h"

namespace vx3 {
namespace plotDrawer {

template <typename C>
struct cComplexPlaneSource {
    const std::complex<C>* values = nullptr;
    uint64_t count = 0;
    uint64_t stride = 1;
    uint64_t size() const { return count; }
    double x(uint64_t i) const { return double(values[i * stride].real()); }
    double y(uint64_t i) const { return double(values[i * stride].imag()); }
};

}  // namespace plotDrawer

template <class Context>
class wxPlotDrawerDerivedPolar : public wxPlotDrawer<Context> {
public:
    static constexpr int kMaxPolygonPoints = 512;

    wxPlotDrawerDerivedPolar(Context& context, const plotDrawer::cAxisMap& xAxis, const plotDrawer::cAxisMap& yAxis,
                             const plotDrawer::cDrawWindow& window, wxPlotDrawerColBuffer* colBuffer, bool arcs)
        : wxPlotDrawer<Context>(context, xAxis, yAxis, window, colBuffer), mArcs(arcs)
    {
    }

    // Pieces the arc from (x0, y0) to (x1, y1) needs; 1 when the chord is close enough.
    int checkDrawingRequiresPolygon(double x0, double y0, double x1, double y1) const
    {
        if (!mArcs)
            return 1;
        const double r0 = std::hypot(x0, y0), r1 = std::hypot(x1, y1);
        const double turn = std::fabs(angleBetween(x0, y0, x1, y1));
        // The chord of an arc of radius r over angle t strays r (1 - cos(t / 2)) from it.
        const double radiusPixels = (r0 > r1 ? r0 : r1) * pixelsPerUnit();
        if (!(radiusPixels * (1.0 - std::cos(turn * 0.5)) >= 0.5))
            return 1;
        // Pieces of an eighth of a pixel's stray each: n grows with the square root of the stray.
        const double pieces = std::ceil(turn / (2.0 * std::acos(1.0 - 0.5 / radiusPixels)));
        return pieces > kMaxPolygonPoints ? kMaxPolygonPoints : int(pieces);
    }

    // Walks all points of a complex source; returns the points walked.
    template <class Source>
    uint64_t drawPolar(const Source& source, uint64_t first, uint64_t last)
    {
        uint64_t i = first;
        bool running = false;
        double px = 0.0, py = 0.0;
        for (; i < last; ++i) {
            const double x = source.x(i), y = source.y(i);
            if (!(x == x && y == y) || std::isinf(x) || std::isinf(y)) {
                if (running)
                    this->endRun();
                running = false;
                continue;
            }
            if (!running) {
                this->startRun(x, y);
                running = true;
            } else {
                computePolygon(px, py, x, y);
            }
            px = x;
            py = y;
        }
        if (running)
            this->endRun();
        return i - first;
    }

    // The arc (or chord) from the previous point to (x1, y1), piece by piece through the clip.
    void computePolygon(double x0, double y0, double x1, double y1)
    {
        const int pieces = checkDrawingRequiresPolygon(x0, y0, x1, y1);
        if (pieces <= 1) {
            this->safeDrawLineImpl(x1, y1);
            return;
        }
        const double r0 = std::hypot(x0, y0), r1 = std::hypot(x1, y1);
        const double a0 = std::atan2(y0, x0);
        const double turn = angleBetween(x0, y0, x1, y1);
        for (int k = 1; k < pieces; ++k) {
            const double f = double(k) / pieces;
            const double r = r0 + (r1 - r0) * f, a = a0 + turn * f;
            this->safeDrawLineImpl(r * std::cos(a), r * std::sin(a));
        }
        this->safeDrawLineImpl(x1, y1);  // the end exactly, not as rounded by the turn
    }

private:
    // The signed turn from one direction to the other, the short way round.
    static double angleBetween(double x0, double y0, double x1, double y1)
    {
        return std::atan2(x0 * y1 - y0 * x1, x0 * x1 + y0 * y1);
    }
    double pixelsPerUnit() const
    {
        const double sx = std::fabs(this->xAxis().scale), sy = std::fabs(this->yAxis().scale);
        return sx > sy ? sx : sy;
    }
    bool mArcs;
};

}  // namespace vx3
