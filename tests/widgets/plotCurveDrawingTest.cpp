// Curve drawing on a real bitmap: the reduced drawing equals Qt's drawing of every segment, and
// each drawer kind, reached through the entry a plot calls, draws what its reference image in
// tests/widgets/reference holds (compared by the colours of each pixel column, not by fonts).
// ZW_UPDATE_REFERENCE_IMAGES=1 rewrites the references after a deliberate change.
#include <QImage>
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <vector>

#include "model/cCurvePlotDataFile.h"
#include "model/curveStyleTypes.h"
#include "model/curveValueLookup.h"
#include "plot/plotWindowType.h"
#include "plot/wxCurveDescription.h"
#include "plot/wxPlotCurveDrawing.h"
#include "plot/wxPlotDrawer.h"
#include "plot/wxSinglePlotWidgetXAxis.h"
#include "plot/wxSinglePlotWidgetYAxis.h"
#include "widgets/qtVxBitmap.h"
#include "widgets/qtVxBufferedDrawContext.h"

namespace {

using namespace vx3;
using namespace vx3::curvePlotProperties;
using vx3::vxDrawContext::cVxPen;

constexpr unsigned white = 0xffffff;

unsigned rgbAt(const QImage& image, int x, int y)
{
    return image.pixel(x, y) & 0xffffffu;
}

int differingPixels(const QImage& a, const QImage& b)
{
    int n = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            n += rgbAt(a, x, y) != rgbAt(b, x, y);
    return n;
}

TEST(plotCurveDrawing, BitmapOfTheReductionEqualsQtDrawingEverySegment)
{
    constexpr int W = 800, H = 300;
    std::mt19937_64 random(11);
    std::normal_distribution<double> normal(0.0, 1.0);
    for (size_t n : {size_t(200000), size_t(300), size_t(25)}) {
        SCOPED_TRACE(n);
        std::vector<double> x(n), y(n);
        double v = 0;
        for (size_t i = 0; i < n; ++i) {
            x[i] = double(i);
            v += normal(random) * (n < 1000 ? 20.0 : 1.0);
            y[i] = v;
        }
        y[n / 3] = NAN;  // a break as well
        plotDrawer::cCurveLimits limits;
        limits.minX = 0;
        limits.maxX = double(n - 1);
        limits.minY = INFINITY;
        limits.maxY = -INFINITY;
        for (double value : y)
            if (!std::isnan(value)) {
                limits.minY = std::min(limits.minY, value);
                limits.maxY = std::max(limits.maxY, value);
            }
        limits.monotony = derivedCurveFunction::monotony_strictly_rising;
        plotDrawer::cAxisMap xa, ya;
        xa.scale = (W - 1) / limits.maxX;
        ya.min = limits.minY;
        ya.scale = (H - 1) / (limits.maxY - limits.minY);
        const plotDrawer::cDrawWindow window{-5 / xa.scale, limits.maxX + 5 / xa.scale, limits.minY - 5 / ya.scale,
                                             limits.maxY + 5 / ya.scale};
        const cVxPen pen{0x1060d0, 1, vxDrawContext::solid_pen};

        qtVxBitmap reduced(W, H), reference(W, H);
        reduced.fill(white);
        reference.fill(white);
        int calls = 0;
        {
            qtVxBufferedDrawContextInverted context(reduced);
            wxPlotDrawerColBuffer buffer;
            plotDrawer::cRealSource<double, double> source{x.data(), y.data(), n};
            plotDrawer::cCurvePart part;
            part.pen = pen;
            plotDrawer::drawReal(context, source, 0, n, limits, xa, ya, window, part, buffer);
            calls = context.getPenCreations();
        }
        {
            // Every segment by itself: across columns as a line, inside one column as the
            // context's exact stroke of those pixels (Qt's drawLine of a vertical segment covers
            // other pixels than the stroke does); each run's last point as a dot.
            qtVxBufferedDrawContextInverted context(reference);
            context.setPen(pen);
            bool have = false;
            int px = 0, py = 0;
            for (size_t i = 0; i <= n; ++i) {
                if (i == n || std::isnan(y[i])) {
                    if (have)
                        context.drawPoint(px, py);
                    have = false;
                    continue;
                }
                const int cx = plotDrawer::roundToPixel(xa.toPixel(x[i]));
                const int cy = plotDrawer::roundToPixel(ya.toPixel(y[i]));
                if (have && cx == px)
                    context.drawVerticalStroke(cx, py, cy);
                else if (have)
                    context.drawLine(px, py, cx, cy);
                px = cx;
                py = cy;
                have = true;
            }
        }
        EXPECT_EQ(differingPixels(reduced.getImage(), reference.getImage()), 0);
        EXPECT_EQ(calls, 1);  // one pen for the whole curve
    }
}

// --- drawer kinds through the entry, against reference images -------------------------------

constexpr int PW = 400, PH = 200;

struct cPlotFixture {
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = nullptr;
    wxSinglePlotWidgetXAxis xAxis;
    wxSinglePlotWidgetYAxis yAxis;
    wxSinglePlotWidgetYAxis imagAxis;

    explicit cPlotFixture(uint64_t points)
    {
        cFileDbSupport& file = store.findDbSupport("drawing.raw");
        section = store.addDataSection("tran", &file);
        const cCurvePlotDataType* x = store.addType("time", data_double, curvePlotDataType::second);
        std::vector<double> xs(points);
        for (uint64_t i = 0; i < points; ++i)
            xs[i] = double(i) / double(points - 1);
        cCurvePlotSweepVariable& sweep = section->getSweepVariable(section->addSweepVariable(x, "time", 0));
        sweep.setDoubleValues(xs.data(), points);
        sweep.setMonotony(curvePlotVariable::computeMonotonyType(xs.data(), points));
    }
    uint64_t addReal(const std::vector<double>& values)
    {
        const cCurvePlotDataType* y = store.addType("v", data_double, curvePlotDataType::volt);
        const uint64_t index = section->addVariable(y, "v" + std::to_string(section->getNbOfVariables()));
        section->getVariable(index).setDoubleValues(values.data(), values.size());
        section->getVariable(index).computeMinMaxValues();
        return index;
    }
    uint64_t addComplex(const std::vector<std::complex<double>>& values)
    {
        const cCurvePlotDataType* y = store.addType("c", double_complex, curvePlotDataType::volt);
        const uint64_t index = section->addVariable(y, "c" + std::to_string(section->getNbOfVariables()));
        section->getVariable(index).setDoubleComplexValues(values.data(), values.size());
        section->getVariable(index).computeMinMaxValues();
        return index;
    }
    void setViews(double x0, double x1, double y0, double y1, double i0 = -180, double i1 = 180)
    {
        xAxis.setView(x0, x1, 0, PW - 1);
        xAxis.computeMinMaxUpdate(0, PW - 1);
        yAxis.setView(y0, y1, 0, PH - 1);
        yAxis.computeMinMaxUpdate(0, PH - 1);
        imagAxis.setView(i0, i1, 0, PH - 1);
        imagAxis.computeMinMaxUpdate(0, PH - 1);
    }
    QImage draw(uint64_t index, const wxCurveStyle& style, unsigned conversion = derivedCurveFunction::magnitude,
                int gridType = 2)
    {
        wxCurveDescription description;
        description.init(section, index, style);
        description.postProcessState().realConversion = conversion;
        qtVxBitmap bitmap(PW, PH);
        bitmap.fill(white);
        {
            qtVxBufferedDrawContextInverted context(bitmap);
            wxPlotDrawerColBuffer buffer;
            plotCurveDrawing::cDrawOptions options;
            options.imagYAxis = &imagAxis;
            options.gridType = gridType;
            const plotCurveDrawing::cDrawResult result =
                drawCurveDescription(context, description, xAxis, yAxis, buffer, 0, UINT64_MAX, options);
            EXPECT_TRUE(result.drawn);
        }
        return bitmap.getImage().copy();
    }
};

wxCurveStyle styleOf(int lineStyle, int symbol, int width = 1)
{
    wxCurveStyle style;
    style.realColour = 0xd02020;
    style.imagColour = 0x2080d0;
    style.realLineWidth = style.imagLineWidth = width;
    style.realLineStyle = style.imagLineStyle = lineStyle;
    style.realSymbol = style.imagSymbol = symbol;
    return style;
}

// Per column, how many pixels of each colour; columns whose counts differ by more than one
// pixel for some colour are counted.
int columnsDifferingByColour(const QImage& a, const QImage& b)
{
    int differing = 0;
    for (int x = 0; x < a.width(); ++x) {
        std::map<unsigned, int> ca, cb;
        for (int y = 0; y < a.height(); ++y) {
            ++ca[rgbAt(a, x, y)];
            ++cb[rgbAt(b, x, y)];
        }
        bool same = true;
        for (const auto& [colour, count] : ca)
            same = same && std::abs(count - cb[colour]) <= 1;
        for (const auto& [colour, count] : cb)
            same = same && std::abs(count - ca[colour]) <= 1;
        differing += !same;
    }
    return differing;
}

void checkAgainstReference(const QImage& image, const std::string& name)
{
    const std::filesystem::path path = std::filesystem::path(ZW_SOURCE_DIR) / "tests/widgets/reference" / (name + ".png");
    if (std::getenv("ZW_UPDATE_REFERENCE_IMAGES")) {
        std::filesystem::create_directories(path.parent_path());
        ASSERT_TRUE(image.save(QString::fromStdString(path.string())));
        return;
    }
    QImage reference(QString::fromStdString(path.string()));
    ASSERT_FALSE(reference.isNull()) << path;
    reference = reference.convertToFormat(image.format());
    ASSERT_EQ(reference.size(), image.size());
    EXPECT_LE(columnsDifferingByColour(image, reference), 2) << name;
}

int pixelsOf(const QImage& image, unsigned colour)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            n += rgbAt(image, x, y) == colour;
    return n;
}

TEST(plotCurveDrawing, EachDrawerKindDrawsItsReferenceImage)
{
    const uint64_t n = 2001;
    cPlotFixture plot(n);
    std::vector<double> sine(n), sparse(41);
    std::vector<std::complex<double>> response(n);
    for (uint64_t i = 0; i < n; ++i) {
        const double t = double(i) / (n - 1);
        sine[i] = std::sin(2 * M_PI * 3 * t) * std::exp(-t) + 0.05 * std::sin(2 * M_PI * 180 * t);
        // A resonance: a second-order low pass swept in frequency.
        const std::complex<double> s(0.0, 0.2 + 3.0 * t);
        response[i] = 1.0 / (s * s + 0.3 * s + 1.0);
    }
    const uint64_t real = plot.addReal(sine);
    const uint64_t complex = plot.addComplex(response);
    plot.setViews(0.0, 1.0, -1.2, 1.2);

    const QImage line = plot.draw(real, styleOf(solid_line, no_symbol));
    EXPECT_GT(pixelsOf(line, 0xd02020), PW);
    checkAgainstReference(line, "line_real");
    checkAgainstReference(plot.draw(real, styleOf(dashed_line, no_symbol, 2)), "line_dashed_wide");
    checkAgainstReference(plot.draw(real, styleOf(data_points, no_symbol, 1)), "data_points");
    checkAgainstReference(plot.draw(real, styleOf(histogram_line, no_symbol)), "histogram_line");

    // Symbols on a sparse view: zoom in so that they stand apart.
    plot.setViews(0.0, 0.05, -0.2, 1.2);
    const char* symbolNames[] = {"", "crosses", "circles", "boxes", "diamonds", "up_triangles", "down_triangles",
                                 "left_triangles", "right_triangles", "histogram_symbol"};
    for (int symbol = crosses; symbol <= histogram_symbol; ++symbol) {
        SCOPED_TRACE(symbolNames[symbol]);
        const QImage image = plot.draw(real, styleOf(no_line, symbol));
        EXPECT_GT(pixelsOf(image, 0xd02020), 0);
        checkAgainstReference(image, std::string("symbol_") + symbolNames[symbol]);
    }

    // Complex: magnitude and angle, each on its own axis and in its own colour.
    plot.setViews(0.0, 1.0, 0.0, 4.0, -180, 0);
    const QImage both = plot.draw(complex, styleOf(solid_line, no_symbol), derivedCurveFunction::magnitude_and_angle);
    EXPECT_GT(pixelsOf(both, 0xd02020), PW / 2);
    EXPECT_GT(pixelsOf(both, 0x2080d0), PW / 2);
    checkAgainstReference(both, "complex_magnitude_and_angle");
    plot.setViews(0.0, 1.0, -20.0, 15.0);
    checkAgainstReference(plot.draw(complex, styleOf(solid_line, no_symbol), derivedCurveFunction::magnitude_in_db),
                          "complex_magnitude_db");

    // The same values on a polar grid and on a Smith chart: the plane of the complex values.
    plot.setViews(-2.0, 2.0, -3.5, 0.5);
    checkAgainstReference(plot.draw(complex, styleOf(solid_line, no_symbol), derivedCurveFunction::magnitude,
                                    waveExplorerWidgetVirtual::polar_grid),
                          "polar");
    checkAgainstReference(plot.draw(complex, styleOf(solid_line, no_symbol), derivedCurveFunction::magnitude,
                                    waveExplorerWidgetVirtual::smith_impedance_grid),
                          "smith");
}

}  // namespace
