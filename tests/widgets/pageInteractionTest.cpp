// Pages under the mouse and keys, offscreen with real Qt events: a ruler set on one plot, dragged
// with the mouse or moved by the arrow keys shows in every plot of the group, a plot that joins
// later shows the rulers in force, and each user move is one recorded set_cursor; the edge
// between stacked plots follows a drag.
#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <gtest/gtest.h>

#include <cmath>

#include "../plot/singlePlotTestSupport.h"
#include "base/cVxThread.h"
#include "plot/qt/cStackedPlotPage.h"
#include "plot/qt/wxMultiPlotWidget.h"
#include "waitFor.h"

using namespace vx3;
using namespace zwplot;

namespace {

void sendMouse(QWidget& widget, QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, QPointF(at), QPointF(widget.mapToGlobal(at)), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

// y = x over 0 .. 10 in samples 0.01 apart, in both plots of a page split in two, shown.
struct cShownPage {
    cShownPage()
    {
        std::vector<double> x(1001);
        for (size_t i = 0; i < x.size(); ++i)
            x[i] = 0.01 * double(i);
        cTestSection tran(store, "tran", x);
        ramp = tran.describe(tran.addReal("ramp", x));
        EXPECT_TRUE(page.splitPlot("1", true));
        EXPECT_TRUE(page.addCurves(0, {ramp}));
        EXPECT_TRUE(page.addCurves(1, {ramp}));
        page.plot(0).setPlotName("up");
        page.plot(1).setPlotName("low");
        page.setCommandRecorder([this](const std::string& text) { recorded.push_back(text); });
        page.resize(800, 600);
        page.show();
        EXPECT_TRUE(zwwidgets::waitFor([&] { return page.plot(0).getPaintCount() > 0 && page.plot(1).getPaintCount() > 0; }));
    }
    ~cShownPage()
    {
        for (size_t i = 0; i < page.getNbOfPlots(); ++i)
            page.plot(i).clearSectionPtrsForDestructor();
    }
    cCapturingLogger capture;
    cVxMutex mutex;
    cCurvePlotDataFile store;
    wxCurveDescription ramp;
    std::vector<std::string> recorded;
    wxMultiPlotWidget page{nullptr, mutex, capture.logger};
};

bool onSample(double x) { return std::fabs(x * 100.0 - std::round(x * 100.0)) < 1e-6; }

}  // namespace

TEST(PageInteraction, SetDraggedAndKeyedRulersShowInEveryConnectedPlot)
{
    cShownPage t;
    wxSinglePlotWidgetImpl& upper = t.page.plot(0);
    wxSinglePlotWidgetImpl& lower = t.page.plot(1);

    // Set on the upper plot as a command sets them: the lower plot reads its own curve there.
    ASSERT_TRUE(upper.overlay().setCursor(3.0, "C1"));
    ASSERT_TRUE(upper.overlay().setCursor(7.0, "M1"));
    ASSERT_TRUE(lower.overlay().cursor().checkIsEnabled());
    ASSERT_TRUE(lower.overlay().marker().checkIsEnabled());
    EXPECT_EQ(lower.overlay().cursor().getX(), 3.0);
    EXPECT_EQ(lower.overlay().marker().getX(), 7.0);
    ASSERT_EQ(lower.overlay().cursor().getValues().size(), 1u);
    EXPECT_NEAR(lower.overlay().cursor().getValues()[0].y, 3.0, 1e-12);
    EXPECT_TRUE(t.recorded.empty()) << "a ruler set by command is not recorded again";

    // Drag the lower plot's cursor line 80 pixels right: it lands on a sample, the upper plot
    // follows, and the move is one set_cursor of the plot it was made in.
    const int h = lower.height();
    const int from = static_cast<int>(std::lround(lower.overlay().cursor().getPixelX()));
    sendMouse(lower, QEvent::MouseButtonPress, QPoint(from + 2, h / 2), Qt::LeftButton, Qt::LeftButton);
    sendMouse(lower, QEvent::MouseMove, QPoint(from + 40, h / 2), Qt::NoButton, Qt::LeftButton);
    sendMouse(lower, QEvent::MouseMove, QPoint(from + 80, h / 2), Qt::NoButton, Qt::LeftButton);
    sendMouse(lower, QEvent::MouseButtonRelease, QPoint(from + 80, h / 2), Qt::LeftButton, Qt::NoButton);
    const double dragged = lower.overlay().cursor().getX();
    EXPECT_GT(dragged, 3.5);
    EXPECT_TRUE(onSample(dragged)) << dragged;
    EXPECT_NEAR(lower.overlay().cursor().getPixelX(), from + 80, 1.0);
    EXPECT_EQ(upper.overlay().cursor().getX(), dragged);
    EXPECT_FALSE(lower.getZoomBox().checkIsShown()) << "a press on a ruler starts no zoom box";
    EXPECT_EQ(lower.getCurrentView(), upper.getCurrentView());
    ASSERT_EQ(t.recorded.size(), 1u);
    EXPECT_EQ(t.recorded[0].rfind("set_cursor \"low\" ", 0), 0u) << t.recorded[0];
    EXPECT_EQ(t.recorded[0].substr(t.recorded[0].size() - 3), " C1");
    EXPECT_NEAR(std::stod(t.recorded[0].substr(17)), dragged, 1e-12);

    // Arrow keys step one sample: Right moves the cursor, Shift+Left the marker; both plots follow.
    QTest::keyClick(&lower, Qt::Key_Right);
    EXPECT_NEAR(lower.overlay().cursor().getX(), dragged + 0.01, 1e-9);
    EXPECT_EQ(upper.overlay().cursor().getX(), lower.overlay().cursor().getX());
    QTest::keyClick(&upper, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_NEAR(upper.overlay().marker().getX(), 6.99, 1e-9);
    EXPECT_EQ(lower.overlay().marker().getX(), upper.overlay().marker().getX());
    ASSERT_EQ(t.recorded.size(), 3u);
    EXPECT_EQ(t.recorded[2].rfind("set_cursor \"up\" 6.99", 0), 0u) << t.recorded[2];
    EXPECT_EQ(t.recorded[2].substr(t.recorded[2].size() - 3), " M1");

    // A plot connected later shows the rulers in force as soon as it has a curve.
    ASSERT_TRUE(t.page.splitPlot("2", true));
    wxSinglePlotWidgetImpl& third = t.page.plot(2);
    EXPECT_FALSE(third.overlay().cursor().checkIsEnabled());
    ASSERT_TRUE(t.page.addCurves(2, {t.ramp}));
    EXPECT_EQ(third.overlay().cursor().getX(), lower.overlay().cursor().getX());
    EXPECT_EQ(third.overlay().marker().getX(), upper.overlay().marker().getX());

    // Clearing a ruler on one plot clears it on all; a plot emptied of curves loses only its own.
    ASSERT_TRUE(third.overlay().clearRuler("C1"));
    EXPECT_FALSE(upper.overlay().cursor().checkIsEnabled());
    EXPECT_FALSE(lower.overlay().cursor().checkIsEnabled());
    EXPECT_TRUE(upper.overlay().marker().checkIsEnabled());
    ASSERT_TRUE(third.clearCurves());
    EXPECT_FALSE(third.overlay().marker().checkIsEnabled());
    EXPECT_TRUE(upper.overlay().marker().checkIsEnabled());
    EXPECT_TRUE(lower.overlay().marker().checkIsEnabled());
}

TEST(PageInteraction, DraggingTheEdgeBetweenStackedPlotsMovesTheirShares)
{
    cCapturingLogger capture;
    cVxMutex mutex;
    cCurvePlotDataFile store;
    std::vector<double> x(101);
    for (size_t i = 0; i < x.size(); ++i)
        x[i] = double(i);
    cTestSection tran(store, "tran", x);
    cStackedPlotPage page(nullptr, mutex, capture.logger);
    ASSERT_TRUE(page.addTrace({tran.describe(tran.addReal("a", x))}));
    ASSERT_TRUE(page.addTrace({tran.describe(tran.addReal("b", x))}));
    page.resize(600, 600);
    page.show();
    ASSERT_TRUE(zwwidgets::waitFor([&] { return page.plot(1).getPaintCount() > 0; }));
    wxSinglePlotWidgetImpl& upper = page.plot(0);
    const int upperHeight = upper.height(), lowerHeight = page.plot(1).height();
    ASSERT_NEAR(upperHeight, 300, 2);
    const wxSinglePlotViewPort view = upper.getCurrentView();

    // Press just above the edge, drag 90 pixels down: the upper plot grows by them, the lower
    // shrinks, and the plot itself saw no press (no zoom box, no zoom).
    EXPECT_EQ(page.edgeAt(0, upperHeight - 2), 0);
    EXPECT_EQ(page.edgeAt(1, 1), 0);
    EXPECT_EQ(page.edgeAt(0, upperHeight / 2), -1);
    EXPECT_EQ(page.edgeAt(1, page.plot(1).height() - 1), -1) << "the last plot has no edge below";
    sendMouse(upper, QEvent::MouseButtonPress, QPoint(300, upperHeight - 2), Qt::LeftButton, Qt::LeftButton);
    sendMouse(upper, QEvent::MouseMove, QPoint(300, upperHeight + 40), Qt::NoButton, Qt::LeftButton);
    EXPECT_EQ(upper.height(), upperHeight) << "the plots keep their size until the release";
    sendMouse(upper, QEvent::MouseButtonRelease, QPoint(300, upperHeight + 88), Qt::LeftButton, Qt::NoButton);
    EXPECT_NEAR(upper.height(), upperHeight + 90, 2);
    EXPECT_NEAR(page.plot(1).height(), lowerHeight - 90, 2);
    EXPECT_FALSE(upper.getZoomBox().checkIsShown());
    EXPECT_EQ(upper.getCurrentView(), view);

    // Dragged far up, the edge stops where the upper plot keeps its smallest share.
    sendMouse(page.plot(1), QEvent::MouseButtonPress, QPoint(300, 1), Qt::LeftButton, Qt::LeftButton);
    sendMouse(page.plot(1), QEvent::MouseButtonRelease, QPoint(300, -1000), Qt::LeftButton, Qt::NoButton);
    EXPECT_NEAR(upper.height(), 600 * stackedPlotPage::smallest_share, 2);
    for (size_t i = 0; i < page.getNbOfPlots(); ++i)
        page.plot(i).clearSectionPtrsForDestructor();
}

TEST(PageInteraction, AddAnnotationByMouseMarksTheCurvesSampleOrWritesOnTheCanvas)
{
    cShownPage t;
    wxSinglePlotWidgetImpl& lower = t.page.plot(1);
    const int h = lower.height();
    auto moveTo = [&](double x, double y) {
        sendMouse(lower, QEvent::MouseMove, QPoint(int(std::lround(lower.xAxis().toInt(x))),
                                                   h - int(std::lround(lower.yAxis(0).toInt(y)))),
                  Qt::NoButton, Qt::NoButton);
    };
    // Over the ramp near x = 5: a point on the closest sample that reads the curve's value there.
    moveTo(5.003, 5.003);
    ASSERT_TRUE(lower.addAnnotationAtMouse(std::string()));
    const auto* points = lower.overlay().getCurveAnnotations(0, false);
    ASSERT_TRUE(points && points->size() == 1u);
    const double x = points->front().getX(0);
    EXPECT_TRUE(onSample(x)) << x;
    EXPECT_NEAR(x, 5.0, 0.03);
    ASSERT_EQ(t.recorded.size(), 1u);
    EXPECT_EQ(t.recorded[0].rfind("add_curve_annotation_to_plot_by_id_and_index \"low\" ", 0), 0u) << t.recorded[0];
    EXPECT_NE(t.recorded[0].find(" Point \"<Y Value>\" "), std::string::npos) << t.recorded[0];

    // Far from the curve: no point; a text given goes where the mouse is.
    moveTo(8.0, 2.0);
    EXPECT_FALSE(lower.addAnnotationAtMouse(std::string()));
    ASSERT_TRUE(lower.addAnnotationAtMouse("note"));
    ASSERT_EQ(lower.overlay().getGlobalAnnotations().size(), 1u);
    EXPECT_NEAR(lower.overlay().getGlobalAnnotations()[0].getX(0), 8.0, 0.05);
    ASSERT_EQ(t.recorded.size(), 2u);
    EXPECT_EQ(t.recorded[1], "add_text_annotation_to_plot \"low\" \"note\"");
    EXPECT_EQ(t.page.plot(0).overlay().getNbAnnotations(), 0u) << "annotations stay in their plot";
}
