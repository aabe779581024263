// Draw contexts of the drawer tests: a raster that counts its painter calls and sets pixels by a
// plain aliased one-pixel line, and the reference drawing of a curve as every segment by itself.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "plot/wxPlotDrawerBase.h"

namespace zwplot {

using vx3::vxDrawContext::cVxPen;

// Pixels hold the colour of the pen that set them (0 = background); y runs upwards.
class cRasterContext {
public:
    cRasterContext(int width, int height) : mWidth(width), mHeight(height), mPixels(size_t(width) * height, 0u) {}

    int width() const { return mWidth; }
    int height() const { return mHeight; }
    unsigned at(int x, int y) const { return inside(x, y) ? mPixels[size_t(y) * mWidth + x] : 0u; }
    const std::vector<unsigned>& pixels() const { return mPixels; }
    int calls() const { return lines + strokes + points + ellipses + rectangles + polygons; }

    void setPen(const cVxPen& pen) { mPen = pen; }
    const cVxPen& getPen() const { return mPen; }
    void setBrush(unsigned colour) { mBrush = int(colour); }
    void setTransparentBrush() { mBrush = -1; }
    int getBrush() const { return mBrush; }

    // Bresenham, both end points included: the classic aliased one-pixel line.
    void drawLine(double x1, double y1, double x2, double y2)
    {
        ++lines;
        line(int(x1), int(y1), int(x2), int(y2));
    }
    void drawVerticalStroke(double x, double y1, double y2)
    {
        ++strokes;
        const int low = int(std::min(y1, y2)), high = int(std::max(y1, y2));
        for (int y = low; y <= high; ++y)
            set(int(x), y);
    }
    void drawPoint(double x, double y)
    {
        ++points;
        set(int(x), int(y));
    }
    // Shapes mark their centre pixel, their outline corners and are counted: the tests look at
    // how many are drawn and where, not at their outline's pixels.
    void drawEllipse(double x, double y, double radius)
    {
        ++ellipses;
        centres.push_back({int(x), int(y)});
        set(int(x), int(y));
    }
    void drawRectangle(double x1, double y1, double x2, double y2)
    {
        ++rectangles;
        centres.push_back({int((x1 + x2) / 2), int((y1 + y2) / 2)});
        set(int(x1), int(y1));
        set(int(x2), int(y2));
    }
    void drawPolygon(const double* xs, const double* ys, int count)
    {
        ++polygons;
        double cx = 0, cy = 0;
        for (int i = 0; i < count; ++i) {
            cx += xs[i];
            cy += ys[i];
            set(int(xs[i]), int(ys[i]));
        }
        polygonVertices.push_back(count);
        centres.push_back({int(std::lround(cx / count)), int(std::lround(cy / count))});
    }

    void line(int x0, int y0, int x1, int y1)
    {
        const int dx = std::abs(x1 - x0), dy = -std::abs(y1 - y0);
        const int sx = x0 < x1 ? 1 : -1, sy = y0 < y1 ? 1 : -1;
        int error = dx + dy;
        for (;;) {
            set(x0, y0);
            if (x0 == x1 && y0 == y1)
                break;
            const int e2 = 2 * error;
            if (e2 >= dy) {
                error += dy;
                x0 += sx;
            }
            if (e2 <= dx) {
                error += dx;
                y0 += sy;
            }
        }
    }

    int lines = 0, strokes = 0, points = 0, ellipses = 0, rectangles = 0, polygons = 0;
    struct cPixel {
        int x, y;
    };
    std::vector<cPixel> centres;
    std::vector<int> polygonVertices;

private:
    bool inside(int x, int y) const { return x >= 0 && y >= 0 && x < mWidth && y < mHeight; }
    void set(int x, int y)
    {
        if (inside(x, y))
            mPixels[size_t(y) * mWidth + x] = mPen.colour;
    }
    int mWidth, mHeight;
    std::vector<unsigned> mPixels;
    cVxPen mPen;
    int mBrush = -1;
};

// The reference: every segment between two good points as its own line, a run of one point as
// a dot, pixels rounded the way the axes map values. No clipping: the raster drops what is off.
template <class XAt, class YAt>
void drawEverySegment(cRasterContext& raster, const vx3::plotDrawer::cAxisMap& xa, const vx3::plotDrawer::cAxisMap& ya,
                      uint64_t count, const XAt& xAt, const YAt& yAt)
{
    bool havePrevious = false;
    int px = 0, py = 0;
    uint64_t runLength = 0;
    for (uint64_t i = 0; i <= count; ++i) {
        const bool good = i < count && !std::isnan(xAt(i)) && !std::isnan(yAt(i));
        if (!good) {
            if (havePrevious && runLength == 1)
                raster.line(px, py, px, py);
            havePrevious = false;
            runLength = 0;
            continue;
        }
        const int x = vx3::plotDrawer::roundToPixel(xa.toPixel(xa.toU(xAt(i))));
        const int y = vx3::plotDrawer::roundToPixel(ya.toPixel(ya.toU(yAt(i))));
        if (havePrevious)
            raster.line(px, py, x, y);
        px = x;
        py = y;
        havePrevious = true;
        ++runLength;
    }
}

// A 1-pixel-per-unit axis map for a plot of pixels [0, pixels), showing [min, max].
inline vx3::plotDrawer::cAxisMap linearMap(double min, double max, int pixels)
{
    vx3::plotDrawer::cAxisMap map;
    map.log = false;
    map.min = min;
    map.scale = (pixels - 1) / (max - min);
    map.offset = 0.0;
    return map;
}
inline vx3::plotDrawer::cAxisMap logMap(double min, double max, int pixels)
{
    vx3::plotDrawer::cAxisMap map;
    map.log = true;
    map.min = min;
    map.scale = (pixels - 1) / (std::log10(max) - std::log10(min));
    map.offset = -std::log10(min) * map.scale;
    return map;
}
// The drawers' window: the view plus 5 pixels on each side, as the axes' update range gives it.
inline vx3::plotDrawer::cDrawWindow windowOf(const vx3::plotDrawer::cAxisMap& xa, double xmin, double xmax,
                                             const vx3::plotDrawer::cAxisMap& ya, double ymin, double ymax)
{
    auto widen = [](const vx3::plotDrawer::cAxisMap& a, double lo, double hi, double& outLo, double& outHi) {
        const double u = 5.0 / a.scale;
        if (a.log) {
            outLo = std::pow(10.0, std::log10(lo) - u);
            outHi = std::pow(10.0, std::log10(hi) + u);
        } else {
            outLo = lo - u;
            outHi = hi + u;
        }
    };
    vx3::plotDrawer::cDrawWindow w;
    widen(xa, xmin, xmax, w.xmin, w.xmax);
    widen(ya, ymin, ymax, w.ymin, w.ymax);
    return w;
}

}  // namespace zwplot
