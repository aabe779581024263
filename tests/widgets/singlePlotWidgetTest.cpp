// The single plot widget offscreen: paints that never wait for a reader, incremental bitmaps for
// new curves and scrolls, and views taken back from the history that draw exactly as before.
#include <QImage>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <thread>

#include "../plot/singlePlotTestSupport.h"
#include "base/cVxThread.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "waitFor.h"

using namespace vx3;
using namespace zwplot;

namespace {

constexpr unsigned curve_colour = 0xd02020;
constexpr unsigned second_colour = 0x2040c0;
constexpr int width = 640;
constexpr int height = 400;

size_t countColour(const QImage& image, unsigned colour)
{
    size_t count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += (image.pixel(x, y) & 0xffffffu) == colour ? 1 : 0;
    return count;
}

size_t countDifferences(const QImage& a, const QImage& b)
{
    if (a.size() != b.size())
        return size_t(a.width()) * a.height();
    size_t count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            count += a.pixel(x, y) != b.pixel(x, y) ? 1 : 0;
    return count;
}

// Pictures are kept for a look by hand when ZW_PLOT_PNG_DIR names a folder.
void keepPicture(const QImage& image, const std::string& name)
{
    if (const char* folder = std::getenv("ZW_PLOT_PNG_DIR"))
        image.save(QString::fromStdString(std::string(folder) + "/" + name + ".png"));
}

// A damped sine over 2000 points and a slower cosine, in volts over seconds.
struct cCurves {
    cCurves()
    {
        std::vector<double> x = ramp(2000, 0.0, 1e-6), y(2000), z(2000);
        for (size_t i = 0; i < x.size(); ++i) {
            y[i] = std::exp(-x[i] / 8e-4) * std::sin(2.0 * M_PI * x[i] / 2e-4);
            z[i] = 0.5 * std::cos(2.0 * M_PI * x[i] / 1e-3);
        }
        sine = tran.addReal("v(out)", y);
        cosine = tran.addReal("v(in)", z);
    }
    wxCurveDescription describe(uint64_t index, unsigned colour) const
    {
        wxCurveDescription description = tran.describe(index);
        description.style().realColour = colour;
        return description;
    }
    cCurvePlotDataFile store;
    cTestSection tran{store, "tran", ramp(2000, 0.0, 1e-6)};
    uint64_t sine = 0, cosine = 0;
};

}  // namespace

TEST(SinglePlotWidget, PaintWhileAReaderHoldsTheDataShowsAxesAndTheCurveFollows)
{
    cCurves curves;
    cCapturingLogger logger;
    cVxMutex dataMutex("data");
    wxSinglePlotWidgetImpl plot(nullptr, dataMutex, logger.logger);
    plot.resize(width, height);
    ASSERT_TRUE(plot.addToPlot(curves.describe(curves.sine, curve_colour)));

    std::atomic<bool> held{false}, release{false}, released{false};
    std::thread reader([&] {
        cVxScopedLock lock(dataMutex);
        held = true;
        QDeadlineTimer deadline(30000);
        while (!release && !deadline.hasExpired())
            std::this_thread::yield();
        released = true;
    });
    while (!held)
        std::this_thread::yield();
    const bool complete = plot.paint(width, height);
    const bool returnedWhileHeld = !released;
    const QImage locked = plot.getPicture().copy();
    release = true;
    reader.join();
    EXPECT_TRUE(returnedWhileHeld) << "the paint waited for the reader";
    EXPECT_FALSE(complete);
    EXPECT_EQ(countColour(locked, curve_colour), 0u);
    // The frame is there: the X axis line runs along the bottom of the canvas.
    const int axisRow = height - 1 - 44;
    int axisPixels = 0;
    for (int x = 80; x < width - 30; ++x)
        axisPixels += (locked.pixel(x, axisRow) & 0xffffffu) == 0x202020u ? 1 : 0;
    EXPECT_GT(axisPixels, width - 120);
    keepPicture(locked, "plot_locked");

    // The retry timer asks for the next paint by itself, and that one shows the curve.
    const uint64_t paints = plot.getPaintCount();
    plot.show();
    ASSERT_TRUE(zwwidgets::waitFor([&] {
        return plot.getPaintCount() > paints && countColour(plot.getPicture(), curve_colour) > 0;
    }));
    EXPECT_EQ(plot.getPlotBuffer().getStatus(), plotBuffer::status_complete);
    EXPECT_GT(countColour(plot.getPicture(), curve_colour), 500u);
    keepPicture(plot.getPicture(), "plot_one_curve");
}

TEST(SinglePlotWidget, ZoomThenPreviousViewGivesTheSamePictureAndNewCurvesDrawAlone)
{
    cCurves curves;
    cCapturingLogger logger;
    cVxMutex dataMutex("data");
    wxSinglePlotWidgetImpl plot(nullptr, dataMutex, logger.logger);
    ASSERT_TRUE(plot.addToPlot(curves.describe(curves.sine, curve_colour)));
    ASSERT_TRUE(plot.paint(width, height));
    const QImage unzoomed = plot.getPicture().copy();

    plot.setMousePosition(1, 200.0, 150.0);
    ASSERT_TRUE(plot.zoomIn(4));
    ASSERT_TRUE(plot.paint(width, height));
    const QImage zoomed = plot.getPicture().copy();
    EXPECT_GT(countDifferences(unzoomed, zoomed), 1000u);
    keepPicture(zoomed, "plot_zoomed");
    ASSERT_TRUE(plot.switchViewPorts(-1));
    ASSERT_TRUE(plot.paint(width, height));
    EXPECT_EQ(countDifferences(plot.getPicture(), unzoomed), 0u);
    ASSERT_TRUE(plot.switchViewPorts(+1));
    ASSERT_TRUE(plot.paint(width, height));
    EXPECT_EQ(countDifferences(plot.getPicture(), zoomed), 0u);

    // A second curve on an unchanged view is painted onto the bitmap alone.
    const uint64_t draws = plot.getCurveDrawCount();
    ASSERT_TRUE(plot.addToPlot(curves.describe(curves.cosine, second_colour)));
    ASSERT_TRUE(plot.paint(width, height));
    EXPECT_EQ(plot.getCurveDrawCount(), draws + 1);
    EXPECT_GT(countColour(plot.getPicture(), second_colour), 200u);
    EXPECT_GT(countColour(plot.getPicture(), curve_colour), 200u);
    // A paint with nothing changed draws no curve at all.
    ASSERT_TRUE(plot.paint(width, height));
    EXPECT_EQ(plot.getCurveDrawCount(), draws + 1);
    // Undo takes the new curve away again: a full redraw of the one that stays.
    ASSERT_TRUE(plot.performUndoAction());
    ASSERT_TRUE(plot.paint(width, height));
    EXPECT_EQ(countColour(plot.getPicture(), second_colour), 0u);
    EXPECT_EQ(countDifferences(plot.getPicture(), zoomed), 0u);
    keepPicture(plot.getPicture(), "plot_after_undo");
}

TEST(SinglePlotWidget, AScrollShiftsTheBitmapAndDrawsOnlyTheStrip)
{
    cCurves curves;
    cCapturingLogger logger;
    cVxMutex dataMutex("data");
    wxSinglePlotWidgetImpl plot(nullptr, dataMutex, logger.logger);
    ASSERT_TRUE(plot.addToPlot({curves.describe(curves.sine, curve_colour), curves.describe(curves.cosine, second_colour)}));
    ASSERT_TRUE(plot.zoomX(8));
    ASSERT_TRUE(plot.paint(width, height));
    ASSERT_TRUE(plot.scrollXPixels(37));
    EXPECT_EQ(plot.getPlotBuffer().getStatus(), plotBuffer::status_add_curve);
    double x0, x1, y0, y1;
    plot.getPlotBuffer().adjustForScrolledBuffer(x0, x1, y0, y1);
    EXPECT_EQ(x1 - x0, 38.0) << "the 37 uncovered columns and one more";
    EXPECT_EQ(x0, width - 72 - 20 - 38);
    ASSERT_TRUE(plot.paint(width, height));
    const QImage scrolled = plot.getPicture().copy();
    keepPicture(scrolled, "plot_scrolled");

    // The same view drawn from nothing looks the same, but for a rare pixel where rounding of
    // the shifted scale lands a line end one pixel over.
    wxSinglePlotWidgetImpl fresh(nullptr, dataMutex, logger.logger);
    ASSERT_TRUE(fresh.addToPlot({curves.describe(curves.sine, curve_colour), curves.describe(curves.cosine, second_colour)}));
    const wxSinglePlotViewPort view = plot.getCurrentView();
    ASSERT_TRUE(fresh.paint(width, height));
    ASSERT_TRUE(fresh.fitPrintMessage(view[0], view[1], view[2], view[3], 0.0, 1.0, true, false));
    ASSERT_TRUE(fresh.paint(width, height));
    EXPECT_LT(countDifferences(scrolled, fresh.getPicture()), 40u);
    EXPECT_GT(countColour(scrolled, curve_colour), 200u);
}

TEST(SinglePlotWidget, ACurveOfAnotherUnitOpensTheSecondAxisOnTheRight)
{
    cCurves curves;
    std::vector<double> current(2000);
    for (size_t i = 0; i < current.size(); ++i)
        current[i] = 2e-3 * std::sin(2.0 * M_PI * double(i) / 700.0);
    const uint64_t amps = curves.tran.addReal("i(r1)", current, curvePlotDataType::ampere);
    cCapturingLogger logger;
    cVxMutex dataMutex("data");
    wxSinglePlotWidgetImpl plot(nullptr, dataMutex, logger.logger);
    ASSERT_TRUE(plot.addToPlot(curves.describe(curves.sine, curve_colour)));
    ASSERT_TRUE(plot.paint(width, height));
    auto inkRightOfCanvas = [&plot](int from) {
        size_t ink = 0;
        const QImage& picture = plot.getPicture();
        for (int y = 0; y < picture.height(); ++y)
            for (int x = from; x < picture.width(); ++x)
                ink += (picture.pixel(x, y) & 0xffffffu) != 0xffffffu ? 1 : 0;
        return ink;
    };
    EXPECT_EQ(inkRightOfCanvas(width - 19), 0u) << "one axis: nothing right of the frame";
    ASSERT_TRUE(plot.addToPlot(curves.describe(amps, second_colour)));
    ASSERT_TRUE(plot.checkY1Active());
    ASSERT_TRUE(plot.paint(width, height));
    // The canvas gave room on the right to the labels and title of the amperes.
    EXPECT_GT(inkRightOfCanvas(width - 70), 200u);
    EXPECT_GT(countColour(plot.getPicture(), second_colour), 500u);
    EXPECT_TRUE(logger.log.messages.empty());
    keepPicture(plot.getPicture(), "plot_two_axes");
}

TEST(SinglePlotWidget, PartsOfAComplexCurveAreDrawnAndRemovedOneByOne)
{
    cCurvePlotDataFile store;
    std::vector<double> frequency(400);
    std::vector<std::complex<double>> response(400);
    for (size_t i = 0; i < frequency.size(); ++i) {
        frequency[i] = std::pow(10.0, 1.0 + 5.0 * double(i) / 399.0);
        response[i] = 1.0 / std::complex<double>(1.0, frequency[i] / 1e3);  // a first-order low pass
    }
    cTestSection ac(store, "ac", frequency, curvePlotDataType::hertz);
    const uint64_t out = ac.addComplex("v(out)", response);
    wxCurveDescription description = ac.describe(out, derivedCurveFunction::magnitude_in_db_and_angle);
    description.style().realColour = curve_colour;
    description.style().imagColour = second_colour;
    cCapturingLogger logger;
    cVxMutex dataMutex("data");
    wxSinglePlotWidgetImpl plot(nullptr, dataMutex, logger.logger);
    ASSERT_TRUE(plot.addToPlot(description));
    ASSERT_TRUE(plot.checkY1Active());
    ASSERT_TRUE(plot.paint(width, height));
    keepPicture(plot.getPicture(), "plot_bode");
    EXPECT_GT(countColour(plot.getPicture(), curve_colour), 300u);
    EXPECT_GT(countColour(plot.getPicture(), second_colour), 300u);
    // Without the angle, the magnitude alone, in its own colour.
    ASSERT_TRUE(plot.removeFromPlot(0, true));
    ASSERT_TRUE(plot.paint(width, height));
    EXPECT_GT(countColour(plot.getPicture(), curve_colour), 300u);
    EXPECT_EQ(countColour(plot.getPicture(), second_colour), 0u);
    // Without the magnitude, the angle alone, in the angle's colour on the left axis now.
    ASSERT_TRUE(plot.performUndoAction());
    ASSERT_TRUE(plot.removeFromPlot(0, false));
    ASSERT_TRUE(plot.paint(width, height));
    EXPECT_EQ(countColour(plot.getPicture(), curve_colour), 0u);
    EXPECT_GT(countColour(plot.getPicture(), second_colour), 300u);
    keepPicture(plot.getPicture(), "plot_angle_only");
}
