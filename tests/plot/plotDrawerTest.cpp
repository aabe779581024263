// The stream reduction against the drawing of every segment by itself, the painter call bound,
// and the edges: NaN, single points, decreasing x, histograms above the view, log axes.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "model/curveValueLookup.h"
#include "plot/wxPlotDrawer.h"
#include "plotDrawerTestSupport.h"

namespace {

using namespace vx3;
using namespace vx3::plotDrawer;
using zwplot::cRasterContext;
using vx3::vxDrawContext::cVxPen;

constexpr int W = 1000, H = 400;
constexpr unsigned colour = 0x2040c0;

struct cCurve {
    std::vector<double> x, y;
};

cCurveLimits limitsOf(const cCurve& c)
{
    cCurveLimits l;
    l.minX = l.minY = INFINITY;
    l.maxX = l.maxY = -INFINITY;
    for (size_t i = 0; i < c.x.size(); ++i) {
        if (std::isnan(c.y[i]))
            continue;
        l.minX = std::min(l.minX, c.x[i]);
        l.maxX = std::max(l.maxX, c.x[i]);
        l.minY = std::min(l.minY, c.y[i]);
        l.maxY = std::max(l.maxY, c.y[i]);
    }
    l.monotony = curvePlotVariable::computeMonotonyType(c.x.data(), c.x.size());
    return l;
}

cCurvePart solidPart(int lineStyle = curvePlotProperties::solid_line, int symbol = curvePlotProperties::no_symbol)
{
    cCurvePart part;
    part.pen = cVxPen{colour, 1, vxDrawContext::solid_pen};
    part.lineStyle = lineStyle;
    part.symbol = symbol;
    return part;
}

struct cDrawn {
    cRasterContext reduced{W, H};
    cRasterContext reference{W, H};
    uint64_t walked = 0;
};

// Draws the curve by the drawer and by the reference, for the view [xmin, xmax] x [ymin, ymax].
cDrawn drawBoth(const cCurve& c, const cAxisMap& xa, const cAxisMap& ya, double xmin, double xmax, double ymin,
                double ymax, const cCurveLimits* limits = nullptr)
{
    cDrawn d;
    cRealSource<double, double> source{c.x.data(), c.y.data(), c.x.size()};
    wxPlotDrawerColBuffer buffer;
    const cCurveLimits l = limits ? *limits : limitsOf(c);
    d.walked = drawReal(d.reduced, source, 0, c.x.size(), l, xa, ya, zwplot::windowOf(xa, xmin, xmax, ya, ymin, ymax),
                        solidPart(), buffer);
    d.reference.setPen(cVxPen{colour, 1, vxDrawContext::solid_pen});
    zwplot::drawEverySegment(d.reference, xa, ya, c.x.size(), [&](uint64_t i) { return c.x[i]; },
                             [&](uint64_t i) { return c.y[i]; });
    return d;
}

// Columns [from, to] where the two images differ.
int differingColumns(const cRasterContext& a, const cRasterContext& b, int from = 0, int to = W - 1)
{
    int differing = 0;
    for (int x = std::max(from, 0); x <= std::min(to, W - 1); ++x)
        for (int y = 0; y < H; ++y)
            if (a.at(x, y) != b.at(x, y)) {
                ++differing;
                break;
            }
    return differing;
}

int setPixels(const cRasterContext& r)
{
    int n = 0;
    for (unsigned p : r.pixels())
        n += p != 0;
    return n;
}

cCurve randomWalk(size_t n, unsigned seed, double step = 1.0)
{
    std::mt19937_64 random(seed);
    std::normal_distribution<double> normal(0.0, step);
    cCurve c;
    c.x.resize(n);
    c.y.resize(n);
    double y = 0.0;
    for (size_t i = 0; i < n; ++i) {
        c.x[i] = double(i);
        y += normal(random);
        c.y[i] = y;
    }
    return c;
}

void fullView(const cCurve& c, double& x0, double& x1, double& y0, double& y1)
{
    const cCurveLimits l = limitsOf(c);
    x0 = l.minX;
    x1 = l.maxX;
    y0 = l.minY;
    y1 = l.maxY;
}

TEST(wxPlotDrawer, StreamReductionEqualsEverySegmentAtFullView)
{
    struct cCase {
        const char* name;
        cCurve curve;
    };
    std::vector<cCase> cases;
    cases.push_back({"random walk 2e5", randomWalk(200000, 1)});
    cases.push_back({"random walk 700 (segments over columns)", randomWalk(700, 2, 10.0)});
    cases.push_back({"random walk 37", randomWalk(37, 3, 10.0)});
    {
        cCurve steep;  // a fast sine: every segment steep, a few points per column
        for (int i = 0; i < 3001; ++i) {
            steep.x.push_back(i * 1e-3);
            steep.y.push_back(std::sin(i * 1.3));
        }
        cases.push_back({"steep sine", steep});
    }
    {
        cCurve decreasing = randomWalk(5000, 4);
        std::reverse(decreasing.x.begin(), decreasing.x.end());
        cases.push_back({"decreasing x", decreasing});
    }
    {
        cCurve zigzag;  // x going back and forth: not monotone
        std::mt19937 random(5);
        std::uniform_real_distribution<double> u(0.0, 1.0);
        for (int i = 0; i < 3000; ++i) {
            zigzag.x.push_back(u(random));
            zigzag.y.push_back(u(random));
        }
        cases.push_back({"zigzag", zigzag});
    }
    for (const cCase& c : cases) {
        SCOPED_TRACE(c.name);
        double x0, x1, y0, y1;
        fullView(c.curve, x0, x1, y0, y1);
        const cDrawn d = drawBoth(c.curve, zwplot::linearMap(x0, x1, W), zwplot::linearMap(y0, y1, H), x0, x1, y0, y1);
        EXPECT_EQ(differingColumns(d.reduced, d.reference), 0);
        EXPECT_GT(setPixels(d.reduced), 0);
        EXPECT_EQ(d.walked, c.curve.x.size());
        // A curve that walks forward pays about two painter calls per column at most.
        if (derivedCurveFunction::check_monotony_increasing(limitsOf(c.curve).monotony)) {
            EXPECT_LE(d.reduced.calls(), 2 * W + 2);
        }
    }
}

TEST(wxPlotDrawer, StreamReductionEqualsEverySegmentOnLogAxes)
{
    cCurve c;  // decades of x, positive y over decades
    for (int i = 0; i < 20000; ++i) {
        c.x.push_back(std::pow(10.0, -3.0 + 9.0 * i / 19999.0));
        c.y.push_back(std::pow(10.0, 2.0 * std::sin(i * 0.01) + 0.3 * std::sin(i * 0.7)));
    }
    const cCurveLimits l = limitsOf(c);
    const cAxisMap xa = zwplot::logMap(l.minX, l.maxX, W), ya = zwplot::logMap(l.minY, l.maxY, H);
    const cDrawn d = drawBoth(c, xa, ya, l.minX, l.maxX, l.minY, l.maxY);
    EXPECT_EQ(differingColumns(d.reduced, d.reference), 0);
    EXPECT_LE(d.reduced.calls(), 2 * W + 2);
    // Linear Y over log X.
    const cAxisMap yl = zwplot::linearMap(l.minY, l.maxY, H);
    const cDrawn e = drawBoth(c, xa, yl, l.minX, l.maxX, l.minY, l.maxY);
    EXPECT_EQ(differingColumns(e.reduced, e.reference), 0);
}

TEST(wxPlotDrawer, ZoomedViewsWalkOnlyTheVisiblePointsAndMatchInside)
{
    const cCurve c = randomWalk(1000000, 7);
    const cCurveLimits l = limitsOf(c);
    struct cView {
        double x0, x1;
    };
    for (cView v : {cView{500000.0, 501000.0}, cView{123456.5, 124456.5}, cView{0.0, 1000.0},
                    cView{999000.0, 999999.0}, cView{400000.0, 410000.0}}) {
        SCOPED_TRACE(v.x0);
        // The Y range of the zoom, so that points outside it exist around it.
        double y0 = INFINITY, y1 = -INFINITY;
        for (size_t i = size_t(v.x0); i <= size_t(v.x1); ++i) {
            y0 = std::min(y0, c.y[i]);
            y1 = std::max(y1, c.y[i]);
        }
        const cAxisMap xa = zwplot::linearMap(v.x0, v.x1, W), ya = zwplot::linearMap(y0, y1, H);
        const cDrawn d = drawBoth(c, xa, ya, v.x0, v.x1, y0, y1, &l);
        // Columns reached only by clipped segments may differ by the rounding of the crossing;
        // all others are the same pixels.
        const int first = roundToPixel(xa.toPixel(std::ceil(v.x0))), last = roundToPixel(xa.toPixel(std::floor(v.x1)));
        EXPECT_EQ(differingColumns(d.reduced, d.reference, first + 1, last - 1), 0);
        // The window reaches 5 pixels beyond each edge of the view.
        const double pointsPerPixel = (v.x1 - v.x0) / (W - 1);
        EXPECT_LE(d.walked, uint64_t(v.x1 - v.x0 + 10 * pointsPerPixel) + 4);
        EXPECT_LE(d.reduced.calls(), 2 * (W + 10) + 4);
    }
    // Zoomed into Y: the safe walk clips, the inner columns still agree.
    const double yMid = c.y[300000];
    const cAxisMap xa = zwplot::linearMap(299000, 301000, W), ya = zwplot::linearMap(yMid - 5, yMid + 5, H);
    const cDrawn d = drawBoth(c, xa, ya, 299000, 301000, yMid - 5, yMid + 5, &l);
    EXPECT_GT(setPixels(d.reduced), 0);
    // Pixels only differ where a segment leaves the window; compare the pixels well inside it.
    int differing = 0;
    for (int x = 1; x < W - 1; ++x)
        for (int y = 10; y < H - 10; ++y)
            differing += d.reduced.at(x, y) != d.reference.at(x, y);
    EXPECT_LE(differing, setPixels(d.reference) / 50);
}

TEST(wxPlotDrawer, OneSampleSpikeAmongTenMillionSurvives)
{
    const size_t n = 10000000, spike = 6543210;
    cCurve c;
    c.x.resize(n);
    c.y.assign(n, 0.0);
    for (size_t i = 0; i < n; ++i)
        c.x[i] = double(i) * 1e-9;
    c.y[spike] = 1.0;
    cCurveLimits l;
    l.minX = 0.0;
    l.maxX = c.x.back();
    l.minY = 0.0;
    l.maxY = 1.0;
    l.monotony = derivedCurveFunction::monotony_strictly_rising;
    const cAxisMap xa = zwplot::linearMap(0.0, c.x.back(), W), ya = zwplot::linearMap(-0.1, 1.1, H);
    cRasterContext raster(W, H);
    wxPlotDrawerColBuffer buffer;
    cRealSource<double, double> source{c.x.data(), c.y.data(), n};
    const uint64_t walked = drawReal(raster, source, 0, n, l, xa, ya,
                                     zwplot::windowOf(xa, 0.0, c.x.back(), ya, -0.1, 1.1), solidPart(), buffer);
    EXPECT_EQ(walked, n);
    const int column = roundToPixel(xa.toPixel(c.x[spike]));
    const int top = roundToPixel(ya.toPixel(1.0)), bottom = roundToPixel(ya.toPixel(0.0));
    EXPECT_EQ(raster.at(column, top), colour);
    for (int y = bottom; y <= top; ++y)
        ASSERT_EQ(raster.at(column, y), colour) << y;
    EXPECT_EQ(raster.at(column - 2, top), 0u);
    EXPECT_LE(raster.calls(), 2 * W + 2);
}

TEST(wxPlotDrawer, NaNBreaksTheLineAndALoneValueShows)
{
    cCurve c;
    for (int i = 0; i < 100; ++i) {
        c.x.push_back(i);
        c.y.push_back(i % 10);
    }
    c.y[40] = NAN;   // a gap
    c.y[60] = NAN;   // a lone value at 61 between NaN
    c.y[62] = NAN;
    c.y[0] = NAN;    // leading and trailing NaN
    c.y[99] = NAN;
    const cAxisMap xa = zwplot::linearMap(0, 99, W), ya = zwplot::linearMap(0, 9, H);
    for (bool rising : {true, false}) {
        SCOPED_TRACE(rising);
        cCurveLimits l = limitsOf(c);
        if (!rising)
            l.monotony = derivedCurveFunction::monotony_rising_and_falling;  // the safe walk
        const cDrawn d = drawBoth(c, xa, ya, 0, 99, 0, 9, &l);
        EXPECT_EQ(differingColumns(d.reduced, d.reference), 0);
        // Nothing between points 39 and 41, nor around the lone value 61.
        for (int x = roundToPixel(xa.toPixel(39)) + 1; x < roundToPixel(xa.toPixel(41)); ++x)
            for (int y = 0; y < H; ++y)
                ASSERT_EQ(d.reduced.at(x, y), 0u) << x;
        const int lone = roundToPixel(xa.toPixel(61));
        EXPECT_EQ(d.reduced.at(lone, roundToPixel(ya.toPixel(1))), colour);
        EXPECT_EQ(d.reduced.at(lone - 1, roundToPixel(ya.toPixel(1))), 0u);
        EXPECT_EQ(d.reduced.at(lone + 1, roundToPixel(ya.toPixel(1))), 0u);
    }
}

TEST(wxPlotDrawer, DegenerateCurvesAndViewsNeitherCrashNorHang)
{
    const cAxisMap xa = zwplot::linearMap(0, 10, W), ya = zwplot::linearMap(0, 10, H);
    wxPlotDrawerColBuffer buffer;
    // One point: one dot.
    {
        cCurve c{{5.0}, {5.0}};
        cRasterContext raster(W, H);
        cRealSource<double, double> s{c.x.data(), c.y.data(), 1};
        drawReal(raster, s, 0, 1, limitsOf(c), xa, ya, zwplot::windowOf(xa, 0, 10, ya, 0, 10), solidPart(), buffer);
        EXPECT_EQ(setPixels(raster), 1);
        EXPECT_EQ(raster.at(roundToPixel(xa.toPixel(5)), roundToPixel(ya.toPixel(5))), colour);
    }
    // Empty, null-sized, first beyond last, zero pen.
    {
        cRasterContext raster(W, H);
        cRealSource<double, double> s{nullptr, nullptr, 0};
        drawReal(raster, s, 0, 0, cCurveLimits{}, xa, ya, zwplot::windowOf(xa, 0, 10, ya, 0, 10), solidPart(), buffer);
        cCurve c = randomWalk(10, 1);
        cRealSource<double, double> t{c.x.data(), c.y.data(), 10};
        drawReal(raster, t, 7, 3, limitsOf(c), xa, ya, zwplot::windowOf(xa, 0, 10, ya, 0, 10), solidPart(), buffer);
        cCurvePart none = solidPart();
        none.pen.width = 0;
        drawReal(raster, t, 0, 10, limitsOf(c), xa, ya, zwplot::windowOf(xa, 0, 10, ya, 0, 10), none, buffer);
        EXPECT_EQ(raster.calls(), 0);
    }
    // A view of zero width, a NaN view, infinite and NaN values: whatever is drawn, it ends.
    {
        cCurve c = randomWalk(1000, 3);
        c.y[10] = INFINITY;
        c.y[11] = -INFINITY;
        c.y[12] = std::numeric_limits<double>::max();
        c.x[500] = NAN;
        c.y[700] = -std::numeric_limits<double>::max();
        for (int rising : {0, 1}) {
            cCurveLimits l = limitsOf(c);
            l.monotony = rising ? derivedCurveFunction::monotony_strictly_rising
                                : derivedCurveFunction::monotony_rising_and_falling;
            cRealSource<double, double> s{c.x.data(), c.y.data(), c.x.size()};
            cRasterContext raster(W, H);
            cDrawWindow zero{5.0, 5.0, -10, 10};
            drawReal(raster, s, 0, c.x.size(), l, xa, ya, zero, solidPart(), buffer);
            cDrawWindow nan{NAN, 5.0, -10, 10};
            drawReal(raster, s, 0, c.x.size(), l, xa, ya, nan, solidPart(), buffer);
            cDrawWindow normal = zwplot::windowOf(xa, 0, 10, ya, -10, 10);
            drawReal(raster, s, 0, c.x.size(), l, xa, ya, normal, solidPart(curvePlotProperties::solid_line,
                                                                            curvePlotProperties::crosses),
                     buffer);
            EXPECT_LE(raster.calls(), 4 * W);
        }
    }
}

TEST(wxPlotDrawer, AllPointsInOneColumnGiveOneStroke)
{
    cCurve c;
    for (int i = 0; i < 100000; ++i) {
        c.x.push_back(5.0 + i * 1e-9);
        c.y.push_back(std::sin(i * 0.37) * 4 + 5);
    }
    const cAxisMap xa = zwplot::linearMap(0, 10, W), ya = zwplot::linearMap(0, 10, H);
    const cDrawn d = drawBoth(c, xa, ya, 0, 10, 0, 10);
    EXPECT_EQ(d.reduced.strokes, 1);
    EXPECT_EQ(d.reduced.lines, 0);
    EXPECT_LE(d.reduced.points, 1);
    EXPECT_EQ(differingColumns(d.reduced, d.reference), 0);
}

TEST(wxPlotDrawer, CurveOneStepOutsideTakesTheSafeWalkAndLooksTheSame)
{
    cCurve c = randomWalk(50000, 9);
    cCurveLimits l = limitsOf(c);
    const double y0 = l.minY, y1 = l.maxY;
    const cAxisMap xa = zwplot::linearMap(0, 49999, W), ya = zwplot::linearMap(y0, y1, H);
    // The window exactly the view: the highest value lies one ulp above it.
    cDrawWindow window = zwplot::windowOf(xa, 0, 49999, ya, y0, y1);
    window.ymin = y0;
    window.ymax = std::nextafter(y1, -INFINITY);
    cRealSource<double, double> s{c.x.data(), c.y.data(), c.x.size()};
    wxPlotDrawerColBuffer buffer;
    cRasterContext safe(W, H), fast(W, H);
    drawReal(safe, s, 0, c.x.size(), l, xa, ya, window, solidPart(), buffer);
    window.ymax = y1;
    drawReal(fast, s, 0, c.x.size(), l, xa, ya, window, solidPart(), buffer);
    EXPECT_EQ(differingColumns(safe, fast), 0);
    EXPECT_LE(safe.calls(), 2 * W + 4);
}

TEST(wxPlotDrawer, LogAxisWithValuesCrossingZeroEndsAtTheLowerBound)
{
    cCurve c;
    for (int i = 0; i < 5000; ++i) {
        c.x.push_back(i);
        c.y.push_back(std::sin(i * 0.005) * 100.0);  // half of it zero or negative
    }
    c.y[0] = 0.0;
    const cAxisMap xa = zwplot::linearMap(0, 4999, W), ya = zwplot::logMap(1e-2, 100, H);
    cDrawWindow window{0, 4999, 1e-2, 100};
    cRasterContext raster(W, H);
    wxPlotDrawerColBuffer buffer;
    cRealSource<double, double> s{c.x.data(), c.y.data(), c.x.size()};
    drawReal(raster, s, 0, c.x.size(), limitsOf(c), xa, ya, window, solidPart(), buffer);
    // Where the sine falls through zero (i = 628) the line reaches row 0 and stops there.
    const int crossing = roundToPixel(xa.toPixel(628.3));
    bool bottom = false;
    for (int x = crossing - 3; x <= crossing + 1; ++x)
        bottom = bottom || raster.at(x, 0) == colour;
    EXPECT_TRUE(bottom);
    // Nothing is drawn while the values are negative (i from 629 to 1256).
    for (int x = roundToPixel(xa.toPixel(640)); x < roundToPixel(xa.toPixel(1250)); ++x)
        for (int y = 0; y < H; ++y)
            ASSERT_EQ(raster.at(x, y), 0u) << x << " " << y;
    // The part that is positive is there, up to the top.
    EXPECT_EQ(raster.at(roundToPixel(xa.toPixel(314.159)), H - 1), colour);
}

TEST(wxPlotDrawer, HistogramAboveTheViewStillDrawsItsBars)
{
    cCurve c;
    for (int i = 0; i < 20; ++i) {
        c.x.push_back(i);
        c.y.push_back(50.0 + i);
    }
    const cAxisMap xa = zwplot::linearMap(0, 19, W), ya = zwplot::linearMap(0, 10, H);
    wxPlotDrawerColBuffer buffer;
    cRealSource<double, double> s{c.x.data(), c.y.data(), c.x.size()};
    for (bool asSymbol : {false, true}) {
        SCOPED_TRACE(asSymbol);
        cRasterContext raster(W, H);
        const cCurvePart part = asSymbol ? solidPart(curvePlotProperties::solid_line, curvePlotProperties::histogram_symbol)
                                         : solidPart(curvePlotProperties::histogram_line);
        drawReal(raster, s, 0, c.x.size(), limitsOf(c), xa, ya, zwplot::windowOf(xa, 0, 19, ya, 0, 10), part, buffer);
        EXPECT_EQ(raster.strokes, 20);
        EXPECT_EQ(raster.lines, 0);  // the line pass is off for a curve above the view
        for (int i = 0; i < 20; ++i) {
            const int x = roundToPixel(xa.toPixel(i));
            EXPECT_EQ(raster.at(x, 0), colour);
            EXPECT_EQ(raster.at(x, H - 1), colour);
            EXPECT_EQ(raster.at(x + 1, H / 2), 0u);
        }
    }
    // A plain line above the view draws nothing.
    cRasterContext raster(W, H);
    drawReal(raster, s, 0, c.x.size(), limitsOf(c), xa, ya, zwplot::windowOf(xa, 0, 19, ya, 0, 10), solidPart(), buffer);
    EXPECT_EQ(raster.calls(), 0);
}

}  // namespace
