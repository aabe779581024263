// The column buffer, the symbol passes, sparse records, converted complex values and polar arcs,
// on the counting raster of the drawer tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <set>
#include <vector>

#include "plot/wxPlotCurveDrawingImpl.h"
#include "plotDrawerTestSupport.h"

namespace {

using namespace vx3;
using namespace vx3::plotDrawer;
using zwplot::cRasterContext;
using vx3::vxDrawContext::cVxPen;

constexpr int W = 500, H = 300;

TEST(wxPlotDrawerColBuffer, PaintsEachSetRowOnceInRisingOrder)
{
    wxPlotDrawerColBuffer buffer;
    buffer.resize(250, 10);  // either order
    buffer.setColumn(7);
    for (int row : {40, 12, 40, 200, 12, 349, -89, 1000, -91})  // the last two lie beyond the room
        buffer.insert(row);
    std::vector<int> rows;
    buffer.drawEach([&](int column, int row) {
        EXPECT_EQ(column, 7);
        rows.push_back(row);
    });
    EXPECT_EQ(rows, (std::vector<int>{-89, 12, 40, 200, 349}));
    EXPECT_TRUE(buffer.checkIsEmpty());
    int more = 0;
    buffer.drawEach([&](int, int) { ++more; });  // cleared: nothing twice
    EXPECT_EQ(more, 0);
}

TEST(wxPlotDrawer, SymbolsArePaintedOncePerPixel)
{
    // A million points in one column over ten rows: ten symbols.
    std::vector<double> x(1000000), y(1000000);
    for (size_t i = 0; i < x.size(); ++i) {
        x[i] = 50.0 + i * 1e-9;
        y[i] = double(i % 10) * 10.0;
    }
    const cAxisMap xa = zwplot::linearMap(0, 100, W), ya = zwplot::linearMap(0, 100, H);
    cRealSource<double, double> source{x.data(), y.data(), x.size()};
    cCurveLimits limits{x.front(), x.back(), 0.0, 90.0, derivedCurveFunction::monotony_strictly_rising};
    wxPlotDrawerColBuffer buffer;
    const cDrawWindow window = zwplot::windowOf(xa, 0, 100, ya, 0, 100);
    struct cExpect {
        int symbol;
        int ellipses, polygons, lines, vertices;
    };
    using namespace curvePlotProperties;
    for (cExpect e : {cExpect{circles, 10, 0, 0, 0}, cExpect{crosses, 0, 0, 20, 0}, cExpect{rectangles, 0, 10, 0, 4},
                      cExpect{diamonds, 0, 10, 0, 4}, cExpect{up_triangles, 0, 10, 0, 3},
                      cExpect{left_triangles, 0, 10, 0, 3}}) {
        SCOPED_TRACE(e.symbol);
        cRasterContext raster(W, H);
        cCurvePart part{cVxPen{0xff0000, 1, vxDrawContext::solid_pen}, no_line, e.symbol};
        drawReal(raster, source, 0, x.size(), limits, xa, ya, window, part, buffer);
        EXPECT_EQ(raster.ellipses, e.ellipses);
        EXPECT_EQ(raster.polygons, e.polygons);
        EXPECT_EQ(raster.lines, e.lines);
        EXPECT_EQ(raster.strokes, 0);
        for (int v : raster.polygonVertices)
            EXPECT_EQ(v, e.vertices);
        // Every symmetric symbol sits on a point's pixel, and each pixel has one (a triangle's
        // centroid lies off its pixel by design).
        if (e.vertices == 3)
            continue;
        std::set<int> rows;
        for (auto c : raster.centres) {
            EXPECT_EQ(c.x, roundToPixel(xa.toPixel(50.0)));
            rows.insert(c.y);
        }
        if (!raster.centres.empty()) {
            EXPECT_EQ(rows.size(), 10u);
        }
    }
    // An up triangle points up: its tip is above its centre. Data points with a wide pen are
    // filled circles of the pen's colour.
    cRasterContext raster(W, H);
    std::vector<double> one{50.0}, level{50.0};
    cRealSource<double, double> single{one.data(), level.data(), 1};
    cCurvePart wide{cVxPen{0x00ff00, 3, vxDrawContext::solid_pen}, data_points, no_symbol};
    drawReal(raster, single, 0, 1, cCurveLimits{50, 50, 50, 50, 3}, xa, ya, window, wide, buffer);
    EXPECT_EQ(raster.ellipses, 1);
    EXPECT_EQ(raster.getBrush(), -1);  // the brush is transparent again afterwards
}

TEST(wxPlotDrawer, SparseRecordsBreakOnBadIndexAndNaN)
{
    // Records of a 32-bit index and a value, 12 bytes each: misaligned every other one.
    std::vector<double> xs{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    struct cRecord {
        uint32_t index;
        double value;
    };
    const std::vector<cRecord> records{{0, 1.0}, {2, 3.0}, {4, 1.0}, {99, 2.0}, {6, 3.0}, {7, NAN}, {8, 1.0}, {9, 2.0}};
    std::vector<char> bytes(records.size() * 12);
    for (size_t i = 0; i < records.size(); ++i) {
        std::memcpy(bytes.data() + i * 12, &records[i].index, 4);
        std::memcpy(bytes.data() + i * 12 + 4, &records[i].value, 8);
    }
    plotCurveDrawing::cCurveInput in;
    in.vectors.yType = curvePlotProperties::interleaved_sparse_double_32b_index;
    in.records = bytes.data();
    in.recordCount = records.size();
    in.recordSize = 12;
    in.recordXs = xs.data();
    in.recordXCount = xs.size();
    in.limits.monotony = derivedCurveFunction::monotony_rising;
    in.style.realColour = 0x123456;
    plotCurveDrawing::cAxesInput axes;
    axes.x = zwplot::linearMap(0, 9, W);
    axes.y = zwplot::linearMap(0, 4, H);
    axes.window = zwplot::windowOf(axes.x, 0, 9, axes.y, 0, 4);
    cRasterContext raster(W, H), reference(W, H);
    wxPlotDrawerColBuffer buffer;
    const auto result = plotCurveDrawing::drawCurveInput(raster, in, axes, buffer, 0, UINT64_MAX, {});
    EXPECT_TRUE(result.drawn);
    reference.setPen(cVxPen{0x123456, 1, vxDrawContext::solid_pen});
    // The same as plain points with a NaN where the record breaks the line.
    const std::vector<double> px{0, 2, 4, NAN, 6, NAN, 8, 9}, py{1, 3, 1, 2, 3, NAN, 1, 2};
    zwplot::drawEverySegment(reference, axes.x, axes.y, px.size(), [&](uint64_t i) { return px[i]; },
                             [&](uint64_t i) { return py[i]; });
    EXPECT_EQ(raster.pixels(), reference.pixels());
    EXPECT_EQ(raster.at(roundToPixel(axes.x.toPixel(6)), roundToPixel(axes.y.toPixel(3))), 0x123456u);  // lone
}

TEST(wxPlotDrawer, ComplexValuesAreConvertedPerPoint)
{
    std::vector<double> x;
    std::vector<std::complex<double>> values;
    for (int i = 0; i < 300; ++i) {
        x.push_back(i);
        values.push_back(std::polar(1.0 + i / 100.0, i * 0.05));
    }
    plotCurveDrawing::cCurveInput in;
    in.vectors.yType = curvePlotProperties::double_complex;
    in.vectors.xDouble = x.data();
    in.vectors.yDoubleComplex = values.data();
    in.vectors.count = x.size();
    in.limits.monotony = derivedCurveFunction::monotony_strictly_rising;
    in.conversion = derivedCurveFunction::magnitude_and_angle;
    in.style.realColour = 0xaa0000;
    in.style.imagColour = 0x0000aa;
    plotCurveDrawing::cAxesInput axes;
    axes.x = zwplot::linearMap(0, 299, W);
    axes.y = zwplot::linearMap(0, 4, H);
    axes.imagY = zwplot::linearMap(-180, 180, H);
    axes.window = zwplot::windowOf(axes.x, 0, 299, axes.y, 0, 4);
    axes.imagWindow = zwplot::windowOf(axes.x, 0, 299, axes.imagY, -180, 180);
    cRasterContext raster(W, H), magnitude(W, H), angle(W, H);
    wxPlotDrawerColBuffer buffer;
    plotCurveDrawing::drawCurveInput(raster, in, axes, buffer, 0, UINT64_MAX, {});
    magnitude.setPen(cVxPen{0xaa0000, 1, vxDrawContext::solid_pen});
    zwplot::drawEverySegment(magnitude, axes.x, axes.y, x.size(), [&](uint64_t i) { return x[i]; },
                             [&](uint64_t i) { return std::abs(values[i]); });
    angle.setPen(cVxPen{0x0000aa, 1, vxDrawContext::solid_pen});
    zwplot::drawEverySegment(angle, axes.x, axes.imagY, x.size(), [&](uint64_t i) { return x[i]; },
                             [&](uint64_t i) { return std::arg(values[i]) * 180.0 / M_PI; });
    // Where the two curves don't cross, each pixel is the one of its own curve.
    int checked = 0;
    for (int px = 0; px < W; ++px)
        for (int py = 0; py < H; ++py) {
            const unsigned m = magnitude.at(px, py), a = angle.at(px, py);
            if (m && a)
                continue;
            ASSERT_EQ(raster.at(px, py), m ? m : a) << px << " " << py;
            checked += (m || a);
        }
    EXPECT_GT(checked, W);
}

TEST(wxPlotDrawerDerivedPolar, ArcsFollowTheCircleAndStayClipped)
{
    // Four points on the unit circle, a quarter turn apart: joined by arcs, not by a square.
    std::vector<std::complex<double>> values{{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {1, 0}};
    const cAxisMap xa = zwplot::linearMap(-1.2, 1.2, H), ya = zwplot::linearMap(-1.2, 1.2, H);
    wxPlotDrawerColBuffer buffer;
    cComplexPlaneSource<double> source{values.data(), values.size()};
    auto draw = [&](bool arcs, cDrawWindow window) {
        cRasterContext raster(H, H);
        raster.setPen(cVxPen{0x0000ff, 1, vxDrawContext::solid_pen});
        wxPlotDrawerDerivedPolar<cRasterContext> drawer(raster, xa, ya, window, &buffer, arcs);
        drawer.drawPolar(source, 0, values.size());
        return raster;
    };
    const cDrawWindow whole{-1.3, 1.3, -1.3, 1.3};
    const cRasterContext arcs = draw(true, whole), chords = draw(false, whole);
    ASSERT_GT(std::count(arcs.pixels().begin(), arcs.pixels().end(), 0x0000ffu), 500);
    EXPECT_EQ(chords.lines, 4);
    EXPECT_GT(arcs.lines, 20);
    // Every painted pixel of the arcs lies within a pixel of the circle; the chords' middles
    // lie far inside it.
    const double cx = xa.toPixel(0), radius = xa.toPixel(1) - cx;
    for (int px = 0; px < H; ++px)
        for (int py = 0; py < H; ++py)
            if (arcs.at(px, py)) {
                ASSERT_NEAR(std::hypot(px - cx, py - cx), radius, 1.5) << px << " " << py;
            }
    const int mid = roundToPixel(cx + radius * std::sqrt(0.5));
    bool near = false;
    for (int dx = -1; dx <= 1; ++dx)
        for (int dy = -1; dy <= 1; ++dy)
            near = near || arcs.at(mid + dx, mid + dy) != 0u;
    EXPECT_TRUE(near) << mid << " " << cx << " " << radius;
    EXPECT_EQ(chords.at(mid, mid), 0u);
    // Half the view: nothing painted outside the window.
    const cRasterContext half = draw(true, cDrawWindow{0.0, 1.3, -1.3, 1.3});
    for (int px = 0; px < roundToPixel(xa.toPixel(0)) - 1; ++px)
        for (int py = 0; py < H; ++py)
            ASSERT_EQ(half.at(px, py), 0u);
    EXPECT_GT(std::count(half.pixels().begin(), half.pixels().end(), 0x0000ffu), 250);
}

}  // namespace
