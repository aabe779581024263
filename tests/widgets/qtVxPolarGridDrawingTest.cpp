#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdlib>
#include <map>

#include "plot/plotWindowType.h"
#include "plot/qt/qtVxPolarGridDrawing.h"
#include "plot/wxSinglePlotWidgetXAxis.h"
#include "widgets/qtVxBitmap.h"
#include "widgets/qtVxBufferedDrawContext.h"

namespace {

using namespace vx3;
using namespace vx3::qtVxPolarGridDrawing;
using vxDrawContext::cVxPen;

constexpr unsigned background = 0xffffff;
constexpr unsigned fine_colour = 0x70c070;
constexpr unsigned coarse_colour = 0x5070e0;
constexpr unsigned zero_colour = 0xe05050;
constexpr unsigned axis_colour = 0x000000;
constexpr double pi = 3.14159265358979323846;

struct cDrawnGrid {
    cPolarFrame frame;
    std::vector<QRectF> labels;
};

// Fine, coarse and zero lines, then the axis with its labels, as a plot draws them.
cDrawnGrid drawGrid(qtVxBitmap& bitmap, wxSinglePlotWidgetXAxis& axis)
{
    bitmap.fill(background);
    qtVxBufferedDrawContextInverted context(bitmap);
    const qtVxAxisDrawing::cAxisFrame area{0.0, 0.0, double(context.getWidth()), double(context.getHeight())};
    cDrawnGrid drawn;
    drawn.frame = fitPolarFrame(area, context);
    computeTicks(axis, context, drawn.frame);
    const bool smith = waveExplorerWidgetVirtual::checkIsSmithGrid(axis.getGridType());
    if (smith) {
        drawSmithGridFine(axis, context, drawn.frame, cVxPen{fine_colour, 1, vxDrawContext::solid_pen});
        drawSmithGridCoarse(axis, context, drawn.frame, cVxPen{coarse_colour, 1, vxDrawContext::solid_pen});
        drawSmithGridZero(axis, context, drawn.frame, cVxPen{zero_colour, 1, vxDrawContext::solid_pen});
    } else {
        drawPolarGridFine(axis, context, drawn.frame, cVxPen{fine_colour, 1, vxDrawContext::solid_pen});
        drawPolarGridCoarse(axis, context, drawn.frame, cVxPen{coarse_colour, 1, vxDrawContext::solid_pen});
        drawPolarGridZero(axis, context, drawn.frame, cVxPen{zero_colour, 1, vxDrawContext::solid_pen});
    }
    context.setPen(cVxPen{axis_colour, 1, vxDrawContext::solid_pen});
    drawn.labels = smith ? drawSmithAxis(axis, context, drawn.frame) : drawPolarAxis(axis, context, drawn.frame);
    return drawn;
}

// The colour at (x, y) of the context's coordinates (y upwards).
unsigned rgbAt(const qtVxBitmap& bitmap, int x, int y)
{
    const QImage& image = bitmap.getImage();
    const int row = image.height() - 1 - y;
    if (x < 0 || row < 0 || x >= image.width() || row >= image.height())
        return background;
    return image.pixel(x, row) & 0xffffffu;
}

// Lines are aliased one-pixel polylines: the pixel of a computed point is within one of it.
bool colourNear(const qtVxBitmap& bitmap, double x, double y, unsigned colour)
{
    const int px = int(std::lround(x)), py = int(std::lround(y));
    for (int dx = -1; dx <= 1; ++dx)
        for (int dy = -1; dy <= 1; ++dy)
            if (rgbAt(bitmap, px + dx, py + dy) == colour)
                return true;
    return false;
}

bool checkUnderLabel(const std::vector<QRectF>& labels, double x, double y)
{
    for (const QRectF& box : labels)
        if (box.adjusted(-2.0, -2.0, 2.0, 2.0).contains(x, y))
            return true;
    return false;
}

void checkLabelsApart(const std::vector<QRectF>& labels, int width, int height)
{
    for (size_t i = 0; i < labels.size(); ++i) {
        EXPECT_GE(labels[i].left(), 0.0);
        EXPECT_GE(labels[i].top(), 0.0);
        EXPECT_LE(labels[i].right(), width);
        EXPECT_LE(labels[i].bottom(), height);
        for (size_t j = i + 1; j < labels.size(); ++j)
            EXPECT_FALSE(labels[i].intersects(labels[j])) << i << " " << j;
    }
}

// Per column, how many pixels of each line colour. Texts are left out (black, anti-aliased), so
// the comparison does not depend on the font.
std::vector<std::map<unsigned, int>> columnColours(const QImage& image)
{
    std::vector<std::map<unsigned, int>> columns(image.width());
    for (int x = 0; x < image.width(); ++x)
        for (int y = 0; y < image.height(); ++y) {
            const unsigned c = image.pixel(x, y) & 0xffffffu;
            if (c == fine_colour || c == coarse_colour || c == zero_colour)
                ++columns[x][c];
        }
    return columns;
}

// Compares with the reference image kept in the sources; ZW_UPDATE_REFERENCE_IMAGES=1 rewrites it.
void compareWithReference(const QImage& image, const QString& name)
{
    const QString path = QString(ZW_SOURCE_DIR) + "/tests/widgets/reference/" + name;
    if (qEnvironmentVariableIsSet("ZW_UPDATE_REFERENCE_IMAGES")) {
        QDir().mkpath(QFileInfo(path).path());
        ASSERT_TRUE(image.save(path));
    }
    const QImage reference(path);
    ASSERT_FALSE(reference.isNull()) << "missing reference image " << path.toStdString();
    ASSERT_EQ(reference.size(), image.size());
    const auto expected = columnColours(reference.convertToFormat(image.format()));
    const auto actual = columnColours(image);
    int differingColumns = 0;
    for (int x = 0; x < image.width(); ++x)
        for (unsigned c : {fine_colour, coarse_colour, zero_colour}) {
            const int want = expected[x].count(c) ? expected[x].at(c) : 0;
            const int got = actual[x].count(c) ? actual[x].at(c) : 0;
            // A label of another font may cover a pixel or two of a line.
            if (std::abs(want - got) > 2 + want / 50) {
                ++differingColumns;
                ADD_FAILURE() << name.toStdString() << " column " << x << " colour " << std::hex << c << std::dec
                              << ": " << got << " pixels, reference " << want;
            }
        }
    EXPECT_EQ(differingColumns, 0);
}

}  // namespace

TEST(qtVxPolarGridDrawing, CirclesAndArcsAsPolylines)
{
    const auto circle = circlePoints(100.0, 50.0, 40.0);
    ASSERT_GE(circle.size(), 100u);  // segments of about two pixels on a circumference of 251
    EXPECT_EQ(circle.front(), circle.back());
    for (const QPointF& p : circle)
        EXPECT_NEAR(std::hypot(p.x() - 100.0, p.y() - 50.0), 40.0, 1e-9);
    // A quarter clockwise: from the top to the right, every point in that quadrant.
    const auto arc = arcPoints(0.0, 0.0, 10.0, pi / 2, 0.0);
    ASSERT_GE(arc.size(), 5u);
    EXPECT_NEAR(arc.front().y(), 10.0, 1e-9);
    EXPECT_NEAR(arc.back().x(), 10.0, 1e-9);
    for (const QPointF& p : arc) {
        EXPECT_GE(p.x(), -1e-9);
        EXPECT_GE(p.y(), -1e-9);
    }
    // Nothing for degenerate circles, a bounded count for huge ones.
    EXPECT_TRUE(circlePoints(0.0, 0.0, 0.0).empty());
    EXPECT_TRUE(circlePoints(0.0, 0.0, std::nan("")).empty());
    EXPECT_TRUE(arcPoints(0.0, 0.0, 5.0, 0.0, INFINITY).empty());
    EXPECT_LE(circlePoints(0.0, 0.0, 1e9).size(), 4097u);
}

TEST(qtVxPolarGridDrawing, PolarGridAtTheComputedRadiiAndAngles)
{
    qtVxBitmap bitmap(420, 380);
    wxSinglePlotWidgetXAxis axis;
    axis.setGridType(waveExplorerWidgetVirtual::polar_grid);
    ASSERT_TRUE(axis.setView(-2.5, 1.0, 0.0, 400.0));  // magnitudes up to 2.5
    const cDrawnGrid drawn = drawGrid(bitmap, axis);
    const cPolarFrame& f = drawn.frame;
    // Room for the angle labels: the circle stays clear of the image's edges.
    EXPECT_GT(f.radius, 120.0);
    EXPECT_LT(f.centreY + f.radius, 380.0 - 12.0);

    int coarse = 0, fine = 0;
    for (const auto& tick : axis.getTicks()) {
        if (tick.position <= 2.0 || tick.position >= f.radius - 1.0)
            continue;
        // On the diagonals no radial line passes: only the circle of this tick.
        for (double degrees : {45.0, 135.0, 225.0, 315.0}) {
            const double a = degrees * pi / 180.0;
            const double x = f.centreX + tick.position * std::cos(a), y = f.centreY + tick.position * std::sin(a);
            const unsigned want = tick.kind == singlePlotWidgetAxis::tick_subdivision ? fine_colour : coarse_colour;
            EXPECT_TRUE(colourNear(bitmap, x, y, want)) << "radius " << tick.position << " at " << degrees;
        }
        (tick.kind == singlePlotWidgetAxis::tick_subdivision ? fine : coarse) += 1;
    }
    EXPECT_GE(coarse, 2);
    EXPECT_GE(fine, 2);
    // Radial lines every 30 degrees, except on the axes, which are zero lines over everything.
    for (int degrees = 30; degrees < 360; degrees += 30) {
        const double a = degrees * pi / 180.0;
        for (double share : {0.33, 0.77}) {
            const double x = f.centreX + share * f.radius * std::cos(a), y = f.centreY + share * f.radius * std::sin(a);
            EXPECT_TRUE(colourNear(bitmap, x, y, degrees % 90 == 0 ? zero_colour : coarse_colour))
                << degrees << " degrees";
        }
    }
    for (int d = int(-f.radius) + 2; d <= int(f.radius) - 2; ++d) {
        ASSERT_EQ(rgbAt(bitmap, int(f.centreX) + d, int(f.centreY)), zero_colour) << d;
        if (!checkUnderLabel(drawn.labels, f.centreX, f.centreY + d)) {
            ASSERT_EQ(rgbAt(bitmap, int(f.centreX), int(f.centreY) + d), zero_colour) << d;
        }
    }
    // The rim in the axis colour; outside it, away from the labels, nothing.
    for (int degrees = 5; degrees < 360; degrees += 10) {
        const double a = degrees * pi / 180.0;
        EXPECT_TRUE(colourNear(bitmap, f.centreX + f.radius * std::cos(a), f.centreY + f.radius * std::sin(a),
                               axis_colour))
            << degrees;
    }
    EXPECT_EQ(rgbAt(bitmap, 2, 2), background);
    EXPECT_EQ(rgbAt(bitmap, 417, 377), background);

    // Every angle label kept by the axis is drawn, with the radius labels, none touching.
    EXPECT_GE(drawn.labels.size(), axis.getAngleTicks().size() + 2);
    EXPECT_EQ(axis.getAngleTicks().size(), 9u);
    checkLabelsApart(drawn.labels, 420, 380);
    compareWithReference(bitmap.getImage(), "polar_grid.png");
}

TEST(qtVxPolarGridDrawing, SmithChartCirclesStayInsideAndCarryTheirValues)
{
    for (int type : {waveExplorerWidgetVirtual::smith_impedance_grid, waveExplorerWidgetVirtual::smith_admittance_grid,
                     waveExplorerWidgetVirtual::smith_impedance_and_admittance_grid}) {
        SCOPED_TRACE(type);
        qtVxBitmap bitmap(440, 400);
        wxSinglePlotWidgetXAxis axis;
        axis.setGridType(type);
        const cDrawnGrid drawn = drawGrid(bitmap, axis);
        const cPolarFrame& f = drawn.frame;
        const bool admittanceFirst = type == waveExplorerWidgetVirtual::smith_admittance_grid;
        int checked = 0;
        for (const auto& circle : axis.getSmithCircles()) {
            if (!circle.reactance && circle.value == 0.0)
                continue;  // the rim
            double cx = 0, cy = 0, r = 0, a0 = 0, a1 = 0;
            smithCircleInPixels(circle, f, cx, cy, r, a0, a1);
            const bool first = circle.admittance == admittanceFirst;
            for (int k = 1; k < 40; ++k) {
                const double a = a0 + (a1 - a0) * k / 40.0;
                const double x = cx + r * std::cos(a), y = cy + r * std::sin(a);
                // Drawn arcs lie inside the chart and hold their own value there.
                const std::complex<double> g((x - f.centreX) / f.radius, (y - f.centreY) / f.radius);
                ASSERT_LE(std::abs(g), 1.0 + 1e-9) << circle.value;
                const std::complex<double> z =
                    circle.admittance ? (1.0 - g) / (1.0 + g) : (1.0 + g) / (1.0 - g);
                if (std::abs(g) < 0.98) {
                    EXPECT_NEAR(circle.reactance ? z.imag() : z.real(), circle.value, 1e-6);
                }
                if (std::fabs(y - f.centreY) < 3.0 || std::abs(g) > 1.0 - 3.0 / f.radius ||
                    checkUnderLabel(drawn.labels, x, y))
                    continue;  // under the real axis, the rim or a value
                // The first chart on top; the second may be covered where the charts cross.
                if (first) {
                    EXPECT_TRUE(colourNear(bitmap, x, y, coarse_colour)) << circle.value << " at " << a;
                    ++checked;
                } else {
                    EXPECT_TRUE(colourNear(bitmap, x, y, fine_colour) || colourNear(bitmap, x, y, coarse_colour));
                }
            }
        }
        EXPECT_GT(checked, 300);
        // Only the mixed grid shows the second chart.
        const bool mixed = type == waveExplorerWidgetVirtual::smith_impedance_and_admittance_grid;
        int finePixels = 0;
        for (int x = 0; x < 440; ++x)
            for (int y = 0; y < 400; ++y)
                finePixels += rgbAt(bitmap, x, y) == fine_colour ? 1 : 0;
        EXPECT_EQ(finePixels > 500, mixed) << finePixels;
        // Real axis and rim.
        for (int d = int(-f.radius) + 2; d <= int(f.radius) - 2; ++d)
            ASSERT_EQ(rgbAt(bitmap, int(f.centreX) + d, int(f.centreY)), zero_colour) << d;
        for (int degrees = 5; degrees < 360; degrees += 10) {
            const double a = degrees * pi / 180.0;
            EXPECT_TRUE(colourNear(bitmap, f.centreX + f.radius * std::cos(a), f.centreY + f.radius * std::sin(a),
                                   axis_colour));
        }
        // The values of five resistance circles and some reactance arcs, and angle labels.
        EXPECT_GE(drawn.labels.size(), axis.getAngleTicks().size() + 8);
        checkLabelsApart(drawn.labels, 440, 400);
        if (mixed)
            compareWithReference(bitmap.getImage(), "smith_chart.png");
    }
}

TEST(qtVxPolarGridDrawing, TinyAndEmptyAreasDrawNothingAndDontCrash)
{
    for (int type : {waveExplorerWidgetVirtual::polar_grid, waveExplorerWidgetVirtual::smith_impedance_grid}) {
        qtVxBitmap bitmap(30, 20);
        wxSinglePlotWidgetXAxis axis;
        axis.setGridType(type);
        const cDrawnGrid drawn = drawGrid(bitmap, axis);
        EXPECT_EQ(drawn.frame.radius, 0.0);
        int lines = 0;
        for (int x = 0; x < 30; ++x)
            for (int y = 0; y < 20; ++y)
                lines += rgbAt(bitmap, x, y) == coarse_colour || rgbAt(bitmap, x, y) == fine_colour ? 1 : 0;
        EXPECT_EQ(lines, 0);
        checkLabelsApart(drawn.labels, 30, 20);
    }
}
