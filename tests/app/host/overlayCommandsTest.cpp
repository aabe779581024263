// Rulers, legend, annotations, highlighting and grid lines of a plot, driven by commands through
// the C interface the way a host or a command file drives them; pictures grabbed offscreen.
#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QLabel>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QWidget>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "../../base/testSupport.h"
#include "../../widgets/digitalDumpOracle.h"
#include "model/cCurvePlotDataSection.h"
#include "model/derivedCurveFunction.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "../pumpUntil.h"
#include "zelwave.h"

namespace {

using zwtest::pumpUntil;

std::string readText(const std::string& path)
{
    std::ifstream stream(path);
    std::stringstream text;
    text << stream.rdbuf();
    return text.str();
}

// Two curves on different X grids, so that rulers fall between samples of each.
const char* const kCurveV = "0 0 1 1 2 0.5 3 -1 4 0 5 0.8 6 -0.3 7 0.1 8 1 9 -1 10 0";
const char* const kCurveW = "0 1 2 -1 4 0.5 6 0.2 8 -0.7 10 0.4";

// One window with plot p holding both curves and an empty plot q.
class cViewer {
public:
    cViewer()
    {
        mHandle = qt_zelwave_create_main_window(nullptr, 10, 10, 800, 560, 0);
        for (const std::string command :
             {std::string("show"), std::string("add_section d"), "add_curve d v 0 V s " + std::string(kCurveV),
              "add_curve d w 0 V s " + std::string(kCurveW), std::string("add_plot q analog"),
              std::string("add_plot p analog 1 1"), std::string("add_curve_to_plot_by_name p d v 0"),
              std::string("add_curve_to_plot_by_name p d w 0")})
            EXPECT_EQ(run(command), vx_code_ok) << command;
        pumpUntil([&] { return (mPlot = findPlot("p")) != nullptr; });
    }
    ~cViewer()
    {
        QPointer<QWidget> window(static_cast<QWidget*>(mHandle));
        window->close();
        pumpUntil([&] { return window.isNull(); });
    }
    int run(const std::string& command) { return qt_zelwave_execute_command(mHandle, command.c_str()); }
    void* handle() const { return mHandle; }
    vx3::wxSinglePlotWidgetImpl* plot() const { return mPlot; }
    QImage picture()
    {
        QApplication::processEvents();
        return mPlot->grab().toImage();
    }
    // Waits for a line of the log pane that holds text.
    bool logged(const std::string& text)
    {
        return pumpUntil([&] {
            for (QPlainTextEdit* pane : static_cast<QWidget*>(mHandle)->findChildren<QPlainTextEdit*>("log_pane"))
                if (pane->toPlainText().contains(QString::fromStdString(text)))
                    return true;
            return false;
        });
    }

private:
    vx3::wxSinglePlotWidgetImpl* findPlot(const std::string& name) const
    {
        for (QWidget* widget : QApplication::allWidgets())
            if (widget->objectName() == QString::fromStdString("plot_" + name) &&
                widget->window() == static_cast<QWidget*>(mHandle) && widget->width() > 300 && widget->height() > 200)
                return dynamic_cast<vx3::wxSinglePlotWidgetImpl*>(widget);
        return nullptr;
    }
    void* mHandle = nullptr;
    vx3::wxSinglePlotWidgetImpl* mPlot = nullptr;
};

// numpy's linear interpolation of a curve "x y x y ..." at the given X values.
std::vector<double> numpyInterp(const char* curve, const std::vector<double>& at)
{
    std::string xs;
    for (double x : at)
        xs += std::to_string(x) + ",";
    const std::string script = "import numpy as np; d=np.array([float(t) for t in '" + std::string(curve) +
                               "'.split()]); print(' '.join(repr(float(v)) for v in np.interp([" + xs +
                               "], d[0::2], d[1::2])))";
    FILE* pipe = popen(("/usr/bin/python3 -c \"" + script + "\"").c_str(), "r");
    std::vector<double> values;
    if (!pipe)
        return values;
    double value = 0.0;
    while (fscanf(pipe, "%lf", &value) == 1)
        values.push_back(value);
    pclose(pipe);
    return values;
}

// Which columns of two pictures of one size differ anywhere.
std::vector<bool> changedColumns(const QImage& a, const QImage& b)
{
    std::vector<bool> changed(static_cast<size_t>(a.width()), false);
    for (int x = 0; x < a.width(); ++x)
        for (int y = 0; y < a.height() && !changed[x]; ++y)
            changed[x] = a.pixel(x, y) != b.pixel(x, y);
    return changed;
}

// The first and last changed column, (-1, -1) when none changed.
std::pair<int, int> changedSpan(const QImage& a, const QImage& b)
{
    const std::vector<bool> changed = changedColumns(a, b);
    int first = -1, last = -1;
    for (int x = 0; x < static_cast<int>(changed.size()); ++x)
        if (changed[x]) {
            first = first < 0 ? x : first;
            last = x;
        }
    return {first, last};
}

}  // namespace

TEST(overlayCommands, RulersSetByCommandReadWhatNumpyInterpolatesAndBadRulersAreRefused)
{
    cViewer viewer;
    ASSERT_NE(viewer.plot(), nullptr);
    vx3::wxSinglePlotOverlay& overlay = viewer.plot()->overlay();
    EXPECT_EQ(viewer.run("set_cursor p 2.5 M1"), vx_code_ok);
    EXPECT_EQ(viewer.run("set_cursor \"p\" 7.3"), vx_code_ok) << "C1 without a name";
    const std::vector<double> at{2.5, 7.3};
    const std::vector<double> v = numpyInterp(kCurveV, at), w = numpyInterp(kCurveW, at);
    ASSERT_EQ(v.size(), 2u);
    ASSERT_EQ(w.size(), 2u);
    const vx3::wxSinglePlotWidgetRuler* rulers[] = {&overlay.marker(), &overlay.cursor()};
    for (int r = 0; r < 2; ++r) {
        EXPECT_TRUE(rulers[r]->checkIsEnabled());
        EXPECT_DOUBLE_EQ(rulers[r]->getX(), at[r]);
        ASSERT_EQ(rulers[r]->getValues().size(), 2u);
        for (const auto& value : rulers[r]->getValues()) {
            ASSERT_TRUE(value.valid);
            EXPECT_NEAR(value.y, (value.curveIndex == 0 ? v : w)[r], 1e-12) << "ruler " << r << " curve " << value.curveIndex;
        }
    }

    // Refusals leave both rulers where they were and the picture as it was.
    const QImage before = viewer.picture();
    EXPECT_EQ(viewer.run("set_cursor q 3 C1"), vx_code_error);
    EXPECT_TRUE(viewer.logged("Cannot set cursor C1: the plot holds no curve."));
    EXPECT_EQ(viewer.run("set_cursor p 3 X7"), vx_code_error);
    EXPECT_TRUE(viewer.logged("Unknown cursor name \"X7\" (M1 or C1)."));
    EXPECT_EQ(viewer.run("set_cursor p 1e300 C1"), vx_code_error);
    EXPECT_EQ(viewer.run("set_cursor nowhere 3 C1"), vx_code_error);
    EXPECT_TRUE(viewer.logged("The plot window \"nowhere\" was not found."));
    EXPECT_DOUBLE_EQ(overlay.cursor().getX(), 7.3);
    EXPECT_EQ(viewer.picture(), before);

    // Resetting one ruler keeps the other; clearing takes both.
    EXPECT_EQ(viewer.run("reset_cursor p M1"), vx_code_ok);
    EXPECT_FALSE(overlay.marker().checkIsEnabled());
    EXPECT_TRUE(overlay.cursor().checkIsEnabled());
    EXPECT_NE(viewer.picture(), before);
    EXPECT_EQ(viewer.run("clear_cursors p"), vx_code_ok);
    EXPECT_FALSE(overlay.cursor().checkIsEnabled());
}

TEST(overlayCommands, LegendAndAnnotationsChangeThePictureWhereTheyStandAndRefusalsChangeNothing)
{
    cViewer viewer;
    ASSERT_NE(viewer.plot(), nullptr);
    ASSERT_EQ(viewer.run("set_option legend_position none"), vx_code_ok);
    const QImage bare = viewer.picture();
    const int middle = bare.width() / 2;

    // A legend inside the plot stands at its top right; a side legend narrows the whole canvas.
    ASSERT_EQ(viewer.run("set_option legend_position top"), vx_code_ok);
    const QImage inside = viewer.picture();
    auto [first, last] = changedSpan(bare, inside);
    EXPECT_GT(first, middle) << "only the right half changes";
    ASSERT_EQ(viewer.run("set_gui_option legend_position \"On the Left\""), vx_code_ok);
    std::tie(first, last) = changedSpan(bare, viewer.picture());
    EXPECT_LT(first, 40) << "the curves moved right of a legend on the left";
    EXPECT_EQ(viewer.run("set_option legend_position sideways"), vx_code_error);
    EXPECT_TRUE(viewer.logged("Unknown legend position \"sideways\""));
    ASSERT_EQ(viewer.run("set_option legend_position none"), vx_code_ok);
    EXPECT_EQ(viewer.picture(), bare) << "no legend again, the same picture";

    // A text goes to the top left of the view, a point annotation to its point.
    ASSERT_EQ(viewer.run("add_text_annotation_to_plot p \"Run 7\""), vx_code_ok);
    const QImage text = viewer.picture();
    std::tie(first, last) = changedSpan(bare, text);
    EXPECT_GE(first, 0);
    EXPECT_LT(last, middle) << "only the left half changes";
    ASSERT_EQ(viewer.run("add_curve_annotation_to_plot p d v Point \"\" 9 -1"), vx_code_ok);
    const QImage point = viewer.picture();
    std::tie(first, last) = changedSpan(text, point);
    EXPECT_GT(last, middle) << "the point at x = 9 lies in the right half";

    // Refusals: an empty or huge text, an unknown type, a curve not in the plot, an unknown plot.
    const std::string huge(5000, 'x');
    for (const std::string command :
         {std::string("add_text_annotation_to_plot p \"\""), "add_text_annotation_to_plot p \"" + huge + "\"",
          std::string("add_curve_annotation_to_plot p d v Sparkle \"\" 1 1"),
          std::string("add_curve_annotation_to_plot p d v Delta \"\" nan nan"),
          std::string("add_curve_annotation_to_plot q d v Point \"\" 1 1"),
          std::string("add_text_annotation_to_plot nowhere \"hello\"")}) {
        EXPECT_EQ(viewer.run(command), vx_code_error) << command.substr(0, 60);
        EXPECT_EQ(viewer.picture(), point) << command.substr(0, 60);
    }
    EXPECT_TRUE(viewer.logged("Failed to create annotation."));
    EXPECT_TRUE(viewer.logged("The text is too long"));
    EXPECT_EQ(viewer.plot()->overlay().getNbAnnotations(), 2u);

    // By id and index, with the part named; cleared per curve and all at once.
    const std::string id = std::to_string(viewer.plot()->getCurves()[1].description().getSection()->getSectionId());
    ASSERT_EQ(viewer.run("add_curve_annotation_to_plot_by_id_and_index p " + id + " 1 Delta_real \"\" 2 -1 6 0.2"),
              vx_code_ok);
    EXPECT_EQ(viewer.plot()->overlay().getNbAnnotations(), 3u);
    ASSERT_EQ(viewer.run("clear_curve_annotations_in_plot p d v"), vx_code_ok);
    EXPECT_EQ(viewer.plot()->overlay().getNbAnnotations(), 2u);
    ASSERT_EQ(viewer.run("clear_annotations_in_plot p"), vx_code_ok);
    EXPECT_EQ(viewer.picture(), bare);
}

TEST(overlayCommands, GridLinesByCommandAndHighlightingRedrawTheCurvesAndComeBack)
{
    cViewer viewer;
    ASSERT_NE(viewer.plot(), nullptr);
    const QImage standard = viewer.picture();
    ASSERT_EQ(viewer.run("set_grid_type p none"), vx_code_ok);
    const QImage none = viewer.picture();
    EXPECT_NE(none, standard);
    EXPECT_EQ(viewer.plot()->getGridFlagsAsString(), "000000000");
    EXPECT_EQ(viewer.run("set_grid_type p plaid"), vx_code_error);
    EXPECT_EQ(viewer.run("set_grid_type p 0101"), vx_code_error);
    EXPECT_EQ(viewer.picture(), none);
    // Only the vertical coarse lines.
    ASSERT_EQ(viewer.run("set_grid_type p 000100000"), vx_code_ok);
    EXPECT_TRUE(viewer.plot()->xCoarseGrid());
    EXPECT_NE(viewer.picture(), none);
    ASSERT_EQ(viewer.run("set_grid_type p default"), vx_code_ok);
    EXPECT_EQ(viewer.picture(), standard);

    const std::string id = std::to_string(viewer.plot()->getCurves()[1].description().getSection()->getSectionId());
    ASSERT_EQ(viewer.run("highlight_curve_in_plot_by_id_and_index p " + id + " 1"), vx_code_ok);
    EXPECT_TRUE(viewer.plot()->getCurves()[1].realHighlighted);
    EXPECT_NE(viewer.picture(), standard) << "a highlighted curve is drawn wider";
    ASSERT_EQ(viewer.run("highlight_curve_in_plot_by_index p d 0 1 0"), vx_code_ok);
    EXPECT_FALSE(viewer.plot()->getCurves()[1].realHighlighted) << "the clear flag drops the other";
    EXPECT_EQ(viewer.run("highlight_curve_in_plot_by_id_and_index p " + id + " 7"), vx_code_error);
    ASSERT_EQ(viewer.run("unhighlight_curve_in_plot_by_index p d 0"), vx_code_ok);
    EXPECT_EQ(viewer.picture(), standard);
}

TEST(overlayCommands, RulerAndCurveClicksAreRecordedAndTheRecordingReplaysThem)
{
    zwtest::cTempDir scratch("zelwave-overlay-");
    const std::string recording = scratch.path() + "/actions.cmd";
    double marker = 0.0, cursor = 0.0;
    std::string id;
    {
        cViewer viewer;
        ASSERT_NE(viewer.plot(), nullptr);
        ASSERT_EQ(viewer.run("register_command_file \"" + recording + "\""), vx_code_ok);
        QWidget* plot = viewer.plot();
        auto click = [&](QPoint at) {
            QMouseEvent press(QEvent::MouseButtonPress, QPointF(at), QPointF(plot->mapToGlobal(at)), Qt::LeftButton,
                              Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(plot, &press);
            QMouseEvent release(QEvent::MouseButtonRelease, QPointF(at), QPointF(plot->mapToGlobal(at)),
                                Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(plot, &release);
        };
        id = std::to_string(viewer.plot()->getCurves()[0].description().getSection()->getSectionId());
        viewer.picture();  // the canvas is laid out by a paint, as before any real click
        ASSERT_EQ(viewer.run("enable_cursor_mode"), vx_code_ok);
        click(QPoint(plot->width() / 3, plot->height() / 2));
        click(QPoint(plot->width() * 2 / 3, plot->height() / 2));
        vx3::wxSinglePlotOverlay& overlay = viewer.plot()->overlay();
        ASSERT_TRUE(overlay.marker().checkIsEnabled() && overlay.cursor().checkIsEnabled());
        marker = overlay.marker().getX();
        cursor = overlay.cursor().getX();
        EXPECT_LT(marker, cursor);

        // A click on curve v at x = 5 (value 0.8) highlights it.
        const vx3::wxSinglePlotWidgetXAxis& x = viewer.plot()->xAxis();
        const vx3::wxSinglePlotWidgetYAxis& y = viewer.plot()->yAxis(0);
        const QPoint onCurve(static_cast<int>(std::lround(x.toInt(5.0))),
                             plot->height() - static_cast<int>(std::lround(y.toInt(0.8))));
        // The status bar tells where the mouse is, to about a pixel.
        QMouseEvent move(QEvent::MouseMove, QPointF(onCurve), QPointF(plot->mapToGlobal(onCurve)), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(plot, &move);
        QLabel* position = static_cast<QWidget*>(viewer.handle())->findChild<QLabel*>("cursor_position");
        ASSERT_NE(position, nullptr);
        double readX = NAN, readY = NAN;
        ASSERT_EQ(std::sscanf(position->text().toStdString().c_str(), "x = %lf y = %lf", &readX, &readY), 2)
            << position->text().toStdString();
        EXPECT_NEAR(readX, 5.0, 1.5 * std::fabs(x.getInverseScale()));
        EXPECT_NEAR(readY, 0.8, 1.5 * std::fabs(y.getInverseScale()));
        click(onCurve);
        EXPECT_TRUE(viewer.plot()->getCurves()[0].realHighlighted);
        ASSERT_EQ(viewer.run("unregister_command_file \"" + recording + "\""), vx_code_ok);
    }
    const std::string text = readText(recording);
    EXPECT_NE(text.find("set_cursor \"p\" "), std::string::npos) << text;
    EXPECT_NE(text.find(" M1\n"), std::string::npos) << text;
    EXPECT_NE(text.find(" C1\n"), std::string::npos) << text;
    EXPECT_NE(text.find("highlight_curve_in_plot_by_id_and_index \"p\" " + id + " 0 1 0"), std::string::npos) << text;

    cViewer replay;
    ASSERT_NE(replay.plot(), nullptr);
    EXPECT_EQ(replay.run("execute_command_file \"" + recording + "\""), vx_code_queued);
    EXPECT_TRUE(pumpUntil([&] { return replay.run("get_status") != vx_code_queued; }));
    EXPECT_DOUBLE_EQ(replay.plot()->overlay().marker().getX(), marker);
    EXPECT_DOUBLE_EQ(replay.plot()->overlay().cursor().getX(), cursor);
    EXPECT_TRUE(replay.plot()->getCurves()[0].realHighlighted);
}

// A bus of a dump written by iverilog, drawn on the plot: its values read in the plot's radix.
TEST(overlayCommands, BusValuesFollowThePlotsRadix)
{
    zwtest::cTempDir scratch("zelwave-overlay-");
    zwtest::cDigitalDumpOracle oracle;
    ASSERT_TRUE(oracle.write(scratch.path())) << "the oracle needs iverilog and vvp";
    cViewer viewer;
    ASSERT_NE(viewer.plot(), nullptr);
    // Read at once or by a task, depending on the file's size.
    const int opened = viewer.run("open_file \"" + scratch.path() + "/design.vcd\"");
    ASSERT_TRUE(opened == vx_code_ok || opened == vx_code_queued);
    ASSERT_TRUE(pumpUntil([&] { return viewer.run("get_status") != vx_code_queued; }));
    ASSERT_EQ(viewer.run("get_section_name 1"), vx_code_ok);
    const char** result = qt_zelwave_get_command_result(viewer.handle());
    ASSERT_TRUE(result && *result);
    const std::string section = *result;
    ASSERT_EQ(viewer.run("clear_plot p"), vx_code_ok);
    ASSERT_EQ(viewer.run("add_curve_to_plot_by_name p \"" + section + "\" \"top.count[7:0]\" 0"), vx_code_ok);
    const QImage hexadecimal = viewer.picture();
    viewer.plot()->setDigitalRadix(vx3::derivedCurveFunction::binary);
    const QImage binary = viewer.picture();
    EXPECT_NE(binary, hexadecimal) << "eight binary digits in place of two hexadecimal ones";
    viewer.plot()->setDigitalRadix(vx3::derivedCurveFunction::binary_with_strength);
    EXPECT_EQ(viewer.plot()->getDigitalRadix(), vx3::derivedCurveFunction::binary) << "not a radix of buses";
    viewer.plot()->setDigitalRadix(vx3::derivedCurveFunction::hexadecimal);
    EXPECT_EQ(viewer.picture(), hexadecimal);
}

// Legend, both rulers with readouts and annotations, all by commands: the picture is kept where
// ZW_OVERLAY_PICTURE says, for people to look at.
TEST(overlayCommands, PictureWithLegendRulersAndAnnotations)
{
    cViewer viewer;
    ASSERT_NE(viewer.plot(), nullptr);
    for (const char* command :
         {"set_option legend_position top", "set_cursor p 2.5 M1", "set_cursor p 7.3 C1",
          "add_text_annotation_to_plot p \"Run 7: nominal corner\"", "add_curve_annotation_to_plot p d v Point \"\" 9 -1",
          "add_curve_annotation_to_plot p d w Delta \"\" 2 -1 6 0.2"})
        EXPECT_EQ(viewer.run(command), vx_code_ok) << command;
    const QImage picture = viewer.picture();
    // Every text box shown (legend rows aside) lies apart from every other and inside the widget.
    const auto& boxes = viewer.plot()->overlay().getBoxes();
    size_t shown = 0;
    for (size_t i = 0; i < boxes.size(); ++i) {
        if (!boxes[i].item.shown)
            continue;
        ++shown;
        EXPECT_TRUE(boxes[i].item.placed.inside({0.0, 0.0, double(picture.width()), double(picture.height())}));
        for (size_t j = i + 1; j < boxes.size(); ++j)
            EXPECT_FALSE(boxes[j].item.shown && boxes[i].item.placed.intersects(boxes[j].item.placed))
                << "boxes " << i << " and " << j;
    }
    // Two ruler heads, two values per ruler, the text, the point and the delta.
    EXPECT_GE(shown, 9u);
    zwtest::cTempDir scratch("zelwave-overlay-");
    const std::string path = qEnvironmentVariableIsSet("ZW_OVERLAY_PICTURE")
                                 ? qEnvironmentVariable("ZW_OVERLAY_PICTURE").toStdString()
                                 : scratch.path() + "/overlay.png";
    EXPECT_TRUE(picture.save(QString::fromStdString(path)));
}

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
