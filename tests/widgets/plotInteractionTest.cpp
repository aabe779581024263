// The plot under the mouse, the wheel and the keyboard, offscreen: real Qt events go through the
// widget's own doors, and each user action must leave exactly one command that repeats it.
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "../plot/singlePlotTestSupport.h"
#include "base/cVxThread.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "plot/wxListOfCurveDescriptions.h"
#include "plot/wxPlotMousePosition.h"
#include "waitFor.h"

using namespace vx3;
using namespace zwplot;
using namespace singlePlotWidgetImpl;

namespace {

constexpr int width = 640;
constexpr int height = 400;

// A page that keeps the commands the plot recorded.
class cCommandPage : public cRecordingPage {
public:
    void analogPlotVirtualRecordUserCommand(cPlotWidgetCommon*, const std::string& text) override
    {
        commands.push_back(text);
    }
    size_t count(const std::string& start) const
    {
        size_t n = 0;
        for (const std::string& command : commands)
            n += command.rfind(start, 0) == 0 ? 1 : 0;
        return n;
    }
    std::vector<std::string> commands;
};

// A plot of two curves, shown offscreen at a fixed size, its layout settled by a first paint.
struct cShownPlot {
    cShownPlot()
    {
        std::vector<double> y(500), z(500);
        for (size_t i = 0; i < y.size(); ++i) {
            y[i] = std::sin(2.0 * M_PI * double(i) / 125.0);
            z[i] = 0.5 * std::cos(2.0 * M_PI * double(i) / 250.0);
        }
        sine = tran.addReal("v(out)", y);
        cosine = tran.addReal("v(in)", z);
        text = tran.addText("label");
        plot.setPlotName("p");
        plot.resize(width, height);
        plot.show();
        EXPECT_TRUE(plot.addToPlot(tran.describe(sine)));
        EXPECT_TRUE(zwwidgets::waitFor([&] { return plot.getPaintCount() > 0; }));
    }
    ~cShownPlot() { plot.clearSectionPtrsForDestructor(); }
    double xWidth() const { return plot.xAxis().getMax() - plot.xAxis().getMin(); }
    double yWidth() const { return plot.yAxis(0).getMax() - plot.yAxis(0).getMin(); }
    // Widget pixels of a point of the canvas given in the plot's own pixels (y upwards).
    QPoint widgetPoint(double x, double y) const { return QPoint(int(x), int(height - y)); }

    cCurvePlotDataFile store;
    cTestSection tran{store, "tran", ramp(500, 0.0, 1e-6)};
    uint64_t sine = 0, cosine = 0, text = 0;
    cCapturingLogger logger;
    cVxMutex dataMutex{"data"};
    cCommandPage page;
    wxSinglePlotWidgetImpl plot{nullptr, dataMutex, logger.logger, &page};
};

void sendWheel(QWidget& widget, QPoint at, int notches)
{
    QWheelEvent event(QPointF(at), QPointF(widget.mapToGlobal(at)), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

void sendMouse(QWidget& widget, QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, QPointF(at), QPointF(widget.mapToGlobal(at)), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void keepPicture(const QImage& image, const std::string& name)
{
    if (const char* folder = std::getenv("ZW_PLOT_PNG_DIR"))
        image.save(QString::fromStdString(std::string(folder) + "/" + name + ".png"));
}

bool near(double a, double b) { return std::fabs(a - b) <= 1e-9 * std::max(std::fabs(a), std::fabs(b)); }

}  // namespace

TEST(PlotInteraction, MousePositionsAndTheWheelOperationTheyChoose)
{
    plotWidgetCommon::cCanvasLayout layout{72.0, 600.0, 44.0, 380.0};
    using plotMousePosition::classify;
    EXPECT_EQ(classify(layout, 640, 400, false, {300.0, 200.0}), canvas);
    EXPECT_EQ(classify(layout, 640, 400, false, {300.0, 20.0}), x_axis);
    EXPECT_EQ(classify(layout, 640, 400, false, {30.0, 200.0}), y0_axis);
    EXPECT_EQ(classify(layout, 640, 400, false, {620.0, 200.0}), outside) << "no second axis shown";
    EXPECT_EQ(classify(layout, 640, 400, true, {620.0, 200.0}), y1_axis);
    EXPECT_EQ(classify(layout, 640, 400, true, {30.0, 20.0}), outside) << "the corner below both axes";
    EXPECT_EQ(classify(layout, 640, 400, true, {-1.0, 200.0}), outside);
    EXPECT_EQ(plotMousePosition::wheelOperation(canvas, true), plotWidgetCommon::zoom_in);
    EXPECT_EQ(plotMousePosition::wheelOperation(y1_axis, false), plotWidgetCommon::zoom_y1_out);
    EXPECT_EQ(plotMousePosition::wheelOperation(outside, true), plotWidgetCommon::no_operation);
}

TEST(PlotInteraction, WheelStepsGatherIntoOneZoomAndOneRecordedCommand)
{
    cShownPlot shown;
    wxSinglePlotWidgetImpl& plot = shown.plot;
    const double x0 = shown.xWidth(), y0 = shown.yWidth();
    const size_t views = plot.getNbOfViewPorts();
    const QPoint at = shown.widgetPoint(250.0, 200.0);
    const double valueUnderMouse = plot.xAxis().toDouble(250.0);

    // Three notches reach the widget before the timer can run: one operation of three steps.
    for (int i = 0; i < 3; ++i)
        sendWheel(plot, at, 1);
    EXPECT_EQ(plot.getScheduledOperation(), plotWidgetCommon::zoom_in);
    EXPECT_EQ(plot.getScheduledSteps(), 3);
    ASSERT_TRUE(zwwidgets::waitFor([&] { return !shown.page.commands.empty(); }));
    ASSERT_TRUE(zwwidgets::waitFor(
        [&] { return !plot.checkEventTimerIsActive(plotWidgetCommon::timer_scheduled_operation); }));
    EXPECT_TRUE(near(shown.xWidth(), x0 * std::pow(0.9, 3))) << shown.xWidth() / x0;
    EXPECT_TRUE(near(shown.yWidth(), y0 * std::pow(0.9, 3))) << shown.yWidth() / y0;
    EXPECT_NEAR(plot.xAxis().toDouble(250.0), valueUnderMouse, 1e-9 * x0) << "the point under the mouse stays";
    EXPECT_EQ(plot.getNbOfViewPorts(), views + 1);
    ASSERT_EQ(shown.page.commands.size(), 1u);
    EXPECT_EQ(shown.page.commands[0], plot.makeZoomCommandText());
    EXPECT_EQ(shown.page.commands[0].rfind("zoom \"p\" ", 0), 0u);

    // A new position drops the count of the earlier operation: two notches on the canvas, then
    // one on the X axis give one X zoom by a single step.
    const double x1 = shown.xWidth(), y1 = shown.yWidth();
    sendWheel(plot, at, 1);
    sendWheel(plot, at, 1);
    sendWheel(plot, shown.widgetPoint(250.0, 20.0), -1);
    EXPECT_EQ(plot.getScheduledOperation(), plotWidgetCommon::zoom_x_out);
    EXPECT_EQ(plot.getScheduledSteps(), 1);
    ASSERT_TRUE(zwwidgets::waitFor([&] { return shown.page.commands.size() == 2; }));
    EXPECT_TRUE(near(shown.xWidth(), x1 / 0.9)) << shown.xWidth() / x1;
    EXPECT_EQ(shown.yWidth(), y1);

    // The wheel outside the canvas and its axes does nothing and records nothing.
    sendWheel(plot, QPoint(width - 2, 2), 1);
    EXPECT_EQ(plot.getScheduledOperation(), plotWidgetCommon::no_operation);
}

TEST(PlotInteraction, ABoxDraggedOnTheCanvasZoomsToTheBox)
{
    cShownPlot shown;
    wxSinglePlotWidgetImpl& plot = shown.plot;
    const wxSinglePlotViewPort start = plot.getCurrentView();

    // A press on an axis does nothing of its own.
    sendMouse(plot, QEvent::MouseButtonPress, shown.widgetPoint(30.0, 200.0), Qt::LeftButton, Qt::LeftButton);
    sendMouse(plot, QEvent::MouseButtonRelease, shown.widgetPoint(30.0, 200.0), Qt::LeftButton, Qt::NoButton);
    EXPECT_FALSE(plot.getZoomBox().checkIsShown());
    EXPECT_EQ(plot.getCurrentView(), start);
    // A click without a drag neither zooms nor records.
    sendMouse(plot, QEvent::MouseButtonPress, shown.widgetPoint(200.0, 200.0), Qt::LeftButton, Qt::LeftButton);
    sendMouse(plot, QEvent::MouseButtonRelease, shown.widgetPoint(201.0, 200.0), Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(plot.getCurrentView(), start);
    EXPECT_TRUE(shown.page.commands.empty());

    const double wantX0 = plot.xAxis().toDouble(150.0), wantX1 = plot.xAxis().toDouble(420.0);
    const double wantY0 = plot.yAxis(0).toDouble(120.0), wantY1 = plot.yAxis(0).toDouble(300.0);
    sendMouse(plot, QEvent::MouseButtonPress, shown.widgetPoint(150.0, 300.0), Qt::LeftButton, Qt::LeftButton);
    sendMouse(plot, QEvent::MouseMove, shown.widgetPoint(420.0, 120.0), Qt::NoButton, Qt::LeftButton);
    ASSERT_TRUE(plot.getZoomBox().checkIsShown());
    EXPECT_EQ(plot.getZoomBoxStyle(), drag_box);
    // The box is drawn over the plot while the button is held.
    const QImage midBox = plot.grab().toImage();
    keepPicture(midBox, "plot_mid_zoom_box");
    const QRgb edge = midBox.pixel(shown.widgetPoint(280.0, 300.0));
    EXPECT_EQ(edge & 0xffffffu, 0x1e46aau) << std::hex << edge;
    sendMouse(plot, QEvent::MouseButtonRelease, shown.widgetPoint(420.0, 120.0), Qt::LeftButton, Qt::NoButton);
    EXPECT_FALSE(plot.getZoomBox().checkIsShown());
    EXPECT_TRUE(near(plot.xAxis().getMin(), wantX0) && near(plot.xAxis().getMax(), wantX1))
        << plot.xAxis().getMin() << " " << plot.xAxis().getMax();
    EXPECT_TRUE(near(plot.yAxis(0).getMin(), wantY0) && near(plot.yAxis(0).getMax(), wantY1));
    ASSERT_EQ(shown.page.commands.size(), 1u);
    EXPECT_EQ(shown.page.commands[0], plot.makeZoomCommandText());

    // "Rectangular Zoom X Direction" from the menu: a box of that form follows the mouse, labelled,
    // and the next click applies it to X alone.
    const wxSinglePlotViewPort boxed = plot.getCurrentView();
    sendMouse(plot, QEvent::MouseMove, shown.widgetPoint(200.0, 200.0), Qt::NoButton, Qt::NoButton);
    std::unique_ptr<QMenu> menu(plot.createMainContextMenu(nullptr));
    ASSERT_TRUE(menu);
    QAction* zoomX = nullptr;
    for (QAction* action : menu->actions())
        if (action->text() == "Rectangular Zoom X Direction")
            zoomX = action;
    ASSERT_TRUE(zoomX && zoomX->isEnabled());
    zoomX->trigger();
    EXPECT_EQ(plot.getZoomBoxStyle(), zoom_x_box);
    const double wantXa = plot.xAxis().toDouble(200.0), wantXb = plot.xAxis().toDouble(300.0);
    sendMouse(plot, QEvent::MouseMove, shown.widgetPoint(300.0, 150.0), Qt::NoButton, Qt::NoButton);
    keepPicture(plot.grab().toImage(), "plot_zoom_x_box");
    sendMouse(plot, QEvent::MouseButtonPress, shown.widgetPoint(300.0, 150.0), Qt::LeftButton, Qt::LeftButton);
    sendMouse(plot, QEvent::MouseButtonRelease, shown.widgetPoint(300.0, 150.0), Qt::LeftButton, Qt::NoButton);
    EXPECT_TRUE(near(plot.xAxis().getMin(), wantXa) && near(plot.xAxis().getMax(), wantXb));
    EXPECT_EQ(plot.yAxis(0).getMin(), boxed[2]);
    EXPECT_EQ(plot.yAxis(0).getMax(), boxed[3]);
    EXPECT_EQ(shown.page.commands.size(), 2u);

    // An unzoom box puts the present view where the box was: the X range grows by view / box.
    const double before = shown.xWidth(), boxLeft = plot.xAxis().toDouble(250.0);
    sendMouse(plot, QEvent::MouseMove, shown.widgetPoint(250.0, 200.0), Qt::NoButton, Qt::NoButton);
    plot.setZoomBoxStyle(zoom_out_x_box);
    const double boxWidth = plot.xAxis().toDouble(450.0) - boxLeft;
    sendMouse(plot, QEvent::MouseMove, shown.widgetPoint(450.0, 200.0), Qt::NoButton, Qt::NoButton);
    sendMouse(plot, QEvent::MouseButtonPress, shown.widgetPoint(450.0, 200.0), Qt::LeftButton, Qt::LeftButton);
    EXPECT_TRUE(near(shown.xWidth(), before * before / boxWidth)) << shown.xWidth();

    // Escape leaves a box without zooming.
    plot.setZoomBoxStyle(zoom_in_box);
    const wxSinglePlotViewPort last = plot.getCurrentView();
    QTest::keyClick(&plot, Qt::Key_Escape);
    EXPECT_FALSE(plot.getZoomBox().checkIsShown());
    EXPECT_EQ(plot.getCurrentView(), last);
}

TEST(PlotInteraction, MiddleButtonAutoScrollRunsAlongOneAxisAndStops)
{
    cShownPlot shown;
    wxSinglePlotWidgetImpl& plot = shown.plot;
    plot.setMousePosition(1, 300.0, 200.0);
    ASSERT_TRUE(plot.zoomIn(10));
    const double xMin = plot.xAxis().getMin(), yMin = plot.yAxis(0).getMin();
    const size_t views = plot.getNbOfViewPorts();
    const double pixel = 1.0 / plot.xAxis().getScale();

    sendMouse(plot, QEvent::MouseButtonPress, shown.widgetPoint(300.0, 200.0), Qt::MiddleButton, Qt::MiddleButton);
    sendMouse(plot, QEvent::MouseButtonRelease, shown.widgetPoint(300.0, 200.0), Qt::MiddleButton, Qt::NoButton);
    ASSERT_TRUE(plot.checkMouseAutoScrollEnabled());
    // Diagonal, mostly to the right: 10 pixels a tick along X, none along Y.
    sendMouse(plot, QEvent::MouseMove, shown.widgetPoint(400.0, 240.0), Qt::NoButton, Qt::NoButton);
    ASSERT_TRUE(zwwidgets::waitFor([&] { return plot.xAxis().getMin() > xMin + 25.0 * pixel; }));
    EXPECT_EQ(plot.yAxis(0).getMin(), yMin);
    EXPECT_EQ(plot.getNbOfViewPorts(), views + 1) << "one run in one direction is one view";
    EXPECT_TRUE(shown.page.commands.empty()) << "recorded when the run ends";

    // A turn to the left records a second view.
    sendMouse(plot, QEvent::MouseMove, shown.widgetPoint(200.0, 200.0), Qt::NoButton, Qt::NoButton);
    const double turned = plot.xAxis().getMin();
    ASSERT_TRUE(zwwidgets::waitFor([&] { return plot.xAxis().getMin() < turned - 25.0 * pixel; }));
    EXPECT_EQ(plot.getNbOfViewPorts(), views + 2);

    // A press ends the run: the timer stops and the view where it ended is recorded once.
    sendMouse(plot, QEvent::MouseButtonPress, shown.widgetPoint(200.0, 200.0), Qt::MiddleButton, Qt::MiddleButton);
    EXPECT_FALSE(plot.checkMouseAutoScrollEnabled());
    EXPECT_FALSE(plot.checkEventTimerIsActive(timer_auto_scroll));
    const double stopped = plot.xAxis().getMin();
    QCoreApplication::processEvents();
    EXPECT_EQ(plot.xAxis().getMin(), stopped);
    ASSERT_EQ(shown.page.commands.size(), 1u);
    EXPECT_EQ(shown.page.commands[0], plot.makeZoomCommandText());
}

TEST(PlotInteraction, DroppedCurveListsAreOneUndoStepAndRefusalsChangeNothing)
{
    cShownPlot shown;
    wxSinglePlotWidgetImpl& plot = shown.plot;
    plot.setStoreForDrops(&shown.store);
    ASSERT_TRUE(plot.performUndoAction()) << "the plot starts empty";
    ASSERT_EQ(plot.getNbOfCurves(), 0u);

    auto curveList = [&](std::vector<uint64_t> indices) {
        wxListOfCurveDescriptions list;
        for (uint64_t index : indices)
            list.addCurve(shown.tran.section, index, shown.logger.logger);
        std::string text;
        EXPECT_TRUE(list.createDndCurveListString(listOfCurveDescriptions::curve_list_xml, text, "", shown.logger.logger));
        auto* data = new QMimeData;
        data->setData("harlanTessel/zelWaveXml", QByteArray::fromStdString(text));
        return data;
    };
    // As a real drag does: entering first, then the drop.
    auto drop = [&](QMimeData* data) {
        QDragEnterEvent enter(QPoint(300, 200), Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&plot, &enter);
        QDropEvent event(QPointF(300, 200), Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&plot, &event);
        delete data;
    };

    drop(curveList({shown.sine, shown.cosine}));
    ASSERT_EQ(plot.getNbOfCurves(), 2u);
    EXPECT_EQ(shown.page.count("add_curve_to_plot_by_id_and_index \"p\" "), 2u);
    EXPECT_EQ(shown.page.commands[1], "add_curve_to_plot_by_id_and_index \"p\" " +
                                          std::to_string(shown.tran.section->getSectionId()) + " " +
                                          std::to_string(shown.cosine) + " 0");

    // Refused entirely: a curve of text, and a text that is no curve list. Nothing changes, no
    // undo step appears, and the status bar names the plot.
    drop(curveList({shown.text}));
    auto* notAList = new QMimeData;
    notAList->setText("hello");
    drop(notAList);
    EXPECT_EQ(plot.getNbOfCurves(), 2u);
    size_t failures = 0;
    for (const std::string& message : shown.page.statusMessages)
        failures += message.rfind("Drag-and-drop operation to \"p\" failed ", 0) == 0 ? 1 : 0;
    EXPECT_EQ(failures, 2u);
    ASSERT_TRUE(plot.performUndoAction());
    EXPECT_EQ(plot.getNbOfCurves(), 0u) << "one undo takes both dropped curves";
    ASSERT_TRUE(plot.performRedoAction());
    EXPECT_EQ(plot.getNbOfCurves(), 2u);

    // Copy from this plot and paste into another: the same curves, one undo step there too.
    plot.copySelectedCurvesToClipboard();
    cCommandPage otherPage;
    wxSinglePlotWidgetImpl other(nullptr, shown.dataMutex, shown.logger.logger, &otherPage);
    other.setPlotName("q");
    other.setStoreForDrops(&shown.store);
    ASSERT_TRUE(other.copySelectedCurvesFromClipboard());
    ASSERT_EQ(other.getNbOfCurves(), 2u);
    EXPECT_EQ(other.getCurves()[1].description().getCurveIndex(), shown.cosine);
    ASSERT_TRUE(other.performUndoAction());
    EXPECT_EQ(other.getNbOfCurves(), 0u);
    other.clearSectionPtrsForDestructor();
}

TEST(PlotInteraction, ZoomBoxFormsWalkThroughXAndYAndActOnTheirAxesOnly)
{
    // With a second axis, from "zoom in" the walk visits x, y, y1, y2 and turns to the unzoom forms.
    std::vector<int> walk{zoom_in_box};
    for (int i = 0; i < 5; ++i)
        walk.push_back(wxPlotZoomBox::nextStyle(walk.back(), true, false, false, false));
    EXPECT_EQ(walk, (std::vector<int>{zoom_in_box, zoom_x_box, zoom_y_box, zoom_y1_box, zoom_y2_box, zoom_out_y2_box}));
    // Without one it skips y2; a corner below the canvas flips x between zoom and unzoom.
    EXPECT_EQ(wxPlotZoomBox::nextStyle(zoom_x_box, false, false, false, false), zoom_y1_box);
    EXPECT_EQ(wxPlotZoomBox::nextStyle(zoom_y1_box, false, false, false, false), zoom_out_box);
    EXPECT_EQ(wxPlotZoomBox::nextStyle(zoom_x_box, true, true, false, false), zoom_out_x_box);
    EXPECT_EQ(wxPlotZoomBox::nextStyle(zoom_out_y2_box, true, false, false, true), zoom_in_box);
    EXPECT_EQ(wxPlotZoomBox::nextStyle(drag_box, true, false, false, false), drag_box) << "only the menu forms walk";

    EXPECT_TRUE(wxPlotZoomBox::checkActsOnX(zoom_out_x_box) && !wxPlotZoomBox::checkActsOnY0(zoom_out_x_box));
    EXPECT_TRUE(!wxPlotZoomBox::checkActsOnX(zoom_y_box) && wxPlotZoomBox::checkActsOnY0(zoom_y_box) &&
                wxPlotZoomBox::checkActsOnY1(zoom_y_box));
    EXPECT_TRUE(wxPlotZoomBox::checkActsOnY0(zoom_y1_box) && !wxPlotZoomBox::checkActsOnY1(zoom_y1_box));
    EXPECT_TRUE(!wxPlotZoomBox::checkActsOnY0(zoom_out_y2_box) && wxPlotZoomBox::checkActsOnY1(zoom_out_y2_box));
    EXPECT_TRUE(wxPlotZoomBox::checkIsZoomOut(zoom_out_y1_box) && !wxPlotZoomBox::checkIsZoomOut(zoom_y2_box));
    EXPECT_STREQ(wxPlotZoomBox::label(zoom_out_y_box), "zoom out y");
    EXPECT_STREQ(wxPlotZoomBox::label(drag_box), "");
}
