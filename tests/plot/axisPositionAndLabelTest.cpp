// Positions typed into the axis fields, and the axis's unit, label and scale factor taken from
// the curves it shows.
#include <gtest/gtest.h>

#include <cmath>
#include <ctime>

#include "axisTestSupport.h"
#include "model/cCurvePlotDataFile.h"
#include "model/derivedCurveFunction.h"
#include "plot/plotWindowType.h"
#include "plot/wxCurveDescription.h"
#include "plot/wxSinglePlotWidgetXAxis.h"
#include "plot/wxSinglePlotWidgetYAxis.h"

using namespace vx3;
using namespace vx3::curvePlotProperties;

namespace {

// One section over an x axis of xUnit with a curve of yUnit, values 0 .. points-1 scaled.
cCurvePlotDataSection& addSection(cCurvePlotDataFile& store, const std::string& name, curvePlotDataType::dataUnit xUnit,
                                  const cCurvePlotDataType* yType, double xScale)
{
    cFileDbSupport& file = store.findDbSupport(name + ".raw");
    cCurvePlotDataSection& section = *store.addDataSection(name, &file);
    const cCurvePlotDataType* x = store.addType("x", data_double, xUnit);
    std::vector<double> xs(4), ys(4);
    for (size_t i = 0; i < 4; ++i) {
        xs[i] = static_cast<double>(i) * xScale;
        ys[i] = static_cast<double>(i);
    }
    section.getSweepVariable(section.addSweepVariable(x, "time", 0)).setDoubleValues(xs.data(), 4);
    section.getVariable(section.addVariable(yType, "v(out)")).setDoubleValues(ys.data(), 4);
    return section;
}

}  // namespace

TEST(axisPosition, NumbersSuffixesAndExpressions)
{
    wxSinglePlotWidgetXAxis axis;
    struct cCase {
        const char* text;
        double value;
    };
    const cCase cases[] = {
        {"2.5", 2.5},           {"  -3e-9 ", -3e-9},     {"2.5u", 2.5e-6},        {"1.5meg", 1.5e6},
        {"10k", 1e4},           {"1u+250n", 1.25e-6},    {"2*pi", 2 * M_PI},      {"1e3/4", 250.0},
        {"(3k - 500)/2", 1250.0}, {"sqrt(16)*1n", 4e-9}, {"max(1m, 2m)", 2e-3},   {"-.5u", -5e-7},
        {"2026-11-24", 1991.0},  // not a time stamp axis: plain arithmetic
    };
    for (const cCase& c : cases) {
        double value = NAN;
        std::string message = "stale";
        EXPECT_TRUE(axis.evaluatePosition(c.text, value, message)) << c.text << ": " << message;
        EXPECT_NEAR(value, c.value, std::fabs(c.value) * 1e-14) << c.text;
        EXPECT_EQ(message, "") << c.text;
    }
}

TEST(axisPosition, BadPositionsGiveTheReasonAndKeepTheValue)
{
    wxSinglePlotWidgetXAxis axis;
    struct cCase {
        const char* text;
        const char* reason;  // a part of the message
    };
    const cCase cases[] = {
        {"", "No position given."},
        {"   ", "No position given."},
        {"1+", "Failed to entirely parse expression."},
        {"foo+1", "\"foo\" is neither a curve nor a parameter nor a constant."},
        {"\"abc\"", "gives no real number"},
        {"[1,2]", "gives no real number"},
        {"1/0", "not finite"},
        {"sqrt(16)n", "Failed to entirely parse expression."},
    };
    for (const cCase& c : cases) {
        double value = 42.0;
        std::string message;
        EXPECT_FALSE(axis.evaluatePosition(c.text, value, message)) << c.text;
        EXPECT_EQ(value, 42.0) << c.text;
        EXPECT_NE(message.find(c.reason), std::string::npos) << c.text << " gave: " << message;
    }
}

TEST(axisPosition, DatesOnTimeStampAxes)
{
    singlePlotWidgetAxis::cAxisSettings utc;
    utc.timeStampLocalTime = false;
    wxSinglePlotWidgetXAxis axis(utc);
    axis.setDataUnitIdentifier(singlePlotWidgetAxis::time_stamp_unit_identifier);
    // 2026-11-24 08:30:00 UTC, counted independently of the code under test.
    const double base = 20781.0 * 86400.0 + 8.5 * 3600.0;
    struct cCase {
        const char* text;
        double value;
    };
    const cCase cases[] = {
        {"2026-11-24 08:30:00", base},   {"2026-11-24T08:30:00.25", base + 0.25},
        {"2026-11-24 08:30", base},      {"2026-11-24", base - 8.5 * 3600.0},
        {"24.11.2026 08:30:01", base + 1.0}, {"1767225600", 1767225600.0},  // plain seconds still work
        {"2026-02-28 00:00 ", 1772236800.0},
    };
    for (const cCase& c : cases) {
        double value = NAN;
        std::string message;
        EXPECT_TRUE(axis.evaluatePosition(c.text, value, message)) << c.text << ": " << message;
        EXPECT_DOUBLE_EQ(value, c.value) << c.text;
    }
    // The American order when the axis writes dates so.
    axis.setTimeStampConversion(derivedCurveFunction::month_slash_day_slash_year);
    double value = 0.0;
    std::string message;
    ASSERT_TRUE(axis.evaluatePosition("11/24/2026 08:30:00", value, message)) << message;
    EXPECT_DOUBLE_EQ(value, base);
    for (const char* bad : {"2026-02-31", "2026-13-01", "2026-11-24 25:00", "2026-11-24 08:30:00x"}) {
        value = 42.0;
        EXPECT_FALSE(axis.evaluatePosition(bad, value, message)) << bad;
        EXPECT_EQ(message, "Bad date \"" + std::string(bad) + "\": dates read as 2026-11-24 08:30:00.");
        EXPECT_EQ(value, 42.0);
    }
    // Mixed separators are no date: arithmetic that fails as such.
    EXPECT_FALSE(axis.evaluatePosition("2026-11/24x", value, message));
    // The readout of a date axis shows date and time in the axis's format.
    axis.setTimeStampConversion(derivedCurveFunction::year_month_day);
    EXPECT_EQ(axis.convertTimeStampToString(base + 0.25, 2), "2026-11-24 08:30:00.25");
}

TEST(axisLabel, UnitsLabelsAndScaleFactorsFromCurves)
{
    cCurvePlotDataFile store;
    const cCurvePlotDataType* volt = store.addType("v", data_double, curvePlotDataType::volt);
    cCurvePlotDataSection& tran = addSection(store, "tran", curvePlotDataType::second, volt, 1e-9);
    wxCurveDescriptionBase description;
    description.init(&tran, 0);

    wxSinglePlotWidgetXAxis x;
    ASSERT_TRUE(x.setView(0.0, 3e-9, 0.0, 600.0));
    x.initSweep(description, true);
    EXPECT_EQ(x.getDataUnitIdentifier(), unsigned(curvePlotDataType::second));
    EXPECT_EQ(x.getLabel(), "time [ns]");
    EXPECT_EQ(x.getScaleFactorPrefix(), "n");
    EXPECT_DOUBLE_EQ(x.getLabelScaleFactor(), 1e9);
    // Zoomed out to seconds: no kiloseconds, the plain unit.
    ASSERT_TRUE(x.setView(0.0, 2500.0, 0.0, 600.0));
    x.adjustScaleFactor(description, 0);
    EXPECT_EQ(x.getLabel(), "time [s]");
    EXPECT_EQ(x.getLabelScaleFactor(), 1.0);

    wxSinglePlotWidgetYAxis y;
    ASSERT_TRUE(y.setView(-0.002, 0.003, 0.0, 400.0));
    y.init(description, derivedCurveFunction::magnitude);
    EXPECT_EQ(y.getLabel(), "mV");
    EXPECT_DOUBLE_EQ(y.getLabelScaleFactor(), 1e3);
    // The label's scale reaches the tick labels: 0.002 V reads 2.0 on a millivolt axis.
    const zwplot::cFixedWidthMetrics metrics;
    y.computeAxesTicks(metrics, 400.0);
    int labels = 0;
    for (const auto& tick : y.getTicks())
        if (!tick.text.empty() && tick.kind == singlePlotWidgetAxis::tick_labelled) {
            EXPECT_NEAR(std::stod(tick.text), tick.value * 1e3, 1e-9) << tick.text;
            ++labels;
        }
    EXPECT_GE(labels, 2);

    // The user's label and scale stay until reset.
    y.resetLabel("output");
    y.setScaleFactorByUser(1.0, "");
    y.adjustScaleFactor(description, derivedCurveFunction::magnitude);
    EXPECT_EQ(y.getLabel(), "output");
    EXPECT_EQ(y.getLabelScaleFactor(), 1.0);
    y.resetLabel("");
    EXPECT_EQ(y.getLabel(), "V");
    y.resetLabelAndScaleFactor();
    y.adjustScaleFactor(description, derivedCurveFunction::magnitude);
    EXPECT_EQ(y.getLabel(), "mV");

    // Polar and Smith grids carry no unit, and their own labels.
    y.setGridType(waveExplorerWidgetVirtual::smith_impedance_grid);
    y.adjustScaleFactor(description, derivedCurveFunction::magnitude);
    EXPECT_EQ(y.getLabel(), "Im(Z) [50.0]");
    EXPECT_EQ(y.getDataUnitIdentifier(), 2u);
    x.setGridType(waveExplorerWidgetVirtual::smith_impedance_grid);
    x.adjustScaleFactor(description, 0);
    EXPECT_EQ(x.getLabel(), "Re(Z) [50.0]");
}

TEST(axisLabel, EnumeratedCurvesAndDateAxes)
{
    cCurvePlotDataFile store;
    const cCurvePlotDataType* state =
        store.addType("state", data_enum, curvePlotDataType::undefined_unit, {"idle", "busy", "done"});
    cCurvePlotDataSection& section = addSection(store, "fsm", curvePlotDataType::date, state, 3600.0);
    wxCurveDescriptionBase description;
    description.init(&section, 0);
    wxSinglePlotWidgetYAxis y;
    y.init(description, derivedCurveFunction::magnitude);
    std::string text;
    EXPECT_TRUE(y.replaceByEnumStringValue(1.0, text));
    EXPECT_EQ(text, "busy");
    EXPECT_FALSE(y.replaceByEnumStringValue(1.5, text));
    EXPECT_FALSE(y.replaceByEnumStringValue(3.0, text));
    EXPECT_FALSE(y.replaceByEnumStringValue(-1.0, text));
    EXPECT_FALSE(y.replaceByEnumStringValue(NAN, text));

    singlePlotWidgetAxis::cAxisSettings settings;
    settings.timeZoneText = "CET";
    wxSinglePlotWidgetXAxis x(settings);
    ASSERT_TRUE(x.setView(1.7e9, 1.7e9 + 7200.0, 0.0, 600.0));
    x.initSweep(description, true);
    EXPECT_TRUE(x.checkIsTimeStampAxis());
    EXPECT_EQ(x.getLabel(), "time [CET]");
    EXPECT_EQ(x.getLabelScaleFactor(), 1.0);  // seconds since the epoch are never scaled
    settings.timeZoneText.clear();
    settings.timeStampLocalTime = false;
    x.setSettings(settings);
    x.adjustScaleFactor(description, 0);
    EXPECT_EQ(x.getLabel(), "time [UTC]");
}

TEST(axisLabel, SynchronizedAxesShareRangeUnitAndLabel)
{
    wxSinglePlotWidgetXAxis master;
    ASSERT_TRUE(master.setView(1e-6, 5e-6, 40.0, 640.0));
    master.setDataUnitIdentifier(curvePlotDataType::second);
    master.setLabelScaleFactor(1e-6, "u");
    master.resetLabel("time [us]");
    master.setBoundingBox(0.0, 1e-5);

    wxSinglePlotWidgetXAxis copy;
    copy.synchronizeAxis(master);
    for (double pixel : {40.0, 333.0, 640.0})
        EXPECT_DOUBLE_EQ(copy.toDouble(pixel), master.toDouble(pixel));
    EXPECT_EQ(copy.getLabel(), "time [us]");
    EXPECT_EQ(copy.getDataUnitIdentifier(), master.getDataUnitIdentifier());
    EXPECT_EQ(copy.getBoundingBoxMax(), 1e-5);

    // The same range on a plot of another width.
    wxSinglePlotWidgetXAxis narrow;
    ASSERT_TRUE(narrow.synchronizeAxis(master, 10.0, 210.0));
    EXPECT_DOUBLE_EQ(narrow.toDouble(10.0), 1e-6);
    EXPECT_DOUBLE_EQ(narrow.toDouble(210.0), 5e-6);
    EXPECT_DOUBLE_EQ(narrow.getLabelScaleFactor(), 1e6);
    // A range that no axis may show is refused, the view stays.
    EXPECT_FALSE(narrow.synchronizeAxis(5.0, 5.0, 10.0, 210.0));
    EXPECT_FALSE(narrow.synchronizeAxis(0.0, 1e200, 10.0, 210.0));
    EXPECT_DOUBLE_EQ(narrow.toDouble(210.0), 5e-6);
    EXPECT_TRUE(narrow.synchronizeAxis(2.0, 4.0, 10.0, 210.0));
    EXPECT_DOUBLE_EQ(narrow.toDouble(110.0), 3.0);
    // Log axes travel with their flag.
    wxSinglePlotWidgetXAxis logMaster;
    logMaster.setLog(true);
    ASSERT_TRUE(logMaster.setView(10.0, 1e5, 0.0, 400.0));
    ASSERT_TRUE(narrow.synchronizeAxis(logMaster, 0.0, 800.0));
    EXPECT_TRUE(narrow.checkIsLog());
    EXPECT_NEAR(narrow.toDouble(400.0), std::sqrt(10.0 * 1e5), 1e-6);
}

TEST(axisLabel, EnumeratedAxisLabelsItsStates)
{
    const zwplot::cFixedWidthMetrics metrics;
    wxSinglePlotWidgetYAxis y;
    y.setEnumerationTexts({"idle", "busy", "done", "error"});
    ASSERT_TRUE(y.setView(-0.25, 3.25, 0.0, 300.0));
    y.computeAxesTicks(metrics, 300.0);
    std::vector<std::string> labels;
    for (const auto& tick : y.getTicks())
        if (!tick.text.empty()) {
            EXPECT_NEAR(tick.value, std::round(tick.value), 1e-9) << tick.text;
            labels.push_back(tick.text);
        }
    EXPECT_EQ(labels, (std::vector<std::string>{"idle", "busy", "done", "error"}));
    // Without texts the same view shows numbers.
    y.setEnumerationTexts({});
    y.computeAxesTicks(metrics, 300.0);
    int numbers = 0;
    for (const auto& tick : y.getTicks())
        numbers += tick.text.empty() ? 0 : 1;
    EXPECT_GE(numbers, 4);
}

TEST(axisLabel, DeltaAxesAndDisabledAxesHaveTheirColours)
{
    const zwplot::cFixedWidthMetrics metrics;
    singlePlotWidgetAxis::cAxisSettings settings;
    settings.axisColour = 0x010101;
    settings.disabledAxisColour = 0x020202;
    settings.deltaAxisColour = 0x030303;
    settings.disabledDeltaAxisColour = 0x040404;
    wxSinglePlotWidgetYAxis y(settings);
    ASSERT_TRUE(y.setView(-1.0, 3.0, 0.0, 400.0));
    y.computeAxesTicks(metrics, 400.0);
    ASSERT_EQ(y.getDeltaReferenceIndex(), -1);
    EXPECT_EQ(y.getCorrespondingColor(true), 0x010101u);
    EXPECT_EQ(y.getCorrespondingColor(false), 0x020202u);
    // 1e-12 wide around 1000: one value and offsets, and the colour says so.
    ASSERT_TRUE(y.setView(1000.0 - 5e-13, 1000.0 + 5e-13, 0.0, 400.0));
    y.computeAxesTicks(metrics, 400.0);
    ASSERT_GE(y.getDeltaReferenceIndex(), 0);
    EXPECT_EQ(y.getCorrespondingColor(true), 0x030303u);
    EXPECT_EQ(y.getCorrespondingColor(false), 0x040404u);
}

TEST(axisScrollBar, ThumbAndPositionFollowTheView)
{
    wxSinglePlotWidgetXAxis axis;
    axis.setBoundingBox(0.0, 100.0);
    ASSERT_TRUE(axis.setView(0.0, 100.0, 0.0, 500.0));
    EXPECT_TRUE(axis.checkIsUnzoomed());
    EXPECT_FALSE(axis.checkNeedsScrollBar());
    int position = -1, thumb = -1;
    axis.getScrollBarSize(position, thumb);
    EXPECT_EQ(position, 0);
    EXPECT_EQ(thumb, wxSinglePlotWidgetAxis::scroll_bar_range);

    ASSERT_TRUE(axis.setView(25.0, 50.0, 0.0, 500.0));
    EXPECT_FALSE(axis.checkIsUnzoomed());
    EXPECT_TRUE(axis.checkNeedsScrollBar());
    axis.getScrollBarSize(position, thumb);
    EXPECT_EQ(position, 2500);
    EXPECT_EQ(thumb, 2500);
    // A click on the bar centres the view there, keeping its width; the zoom limit holds it in.
    EXPECT_TRUE(axis.clickScrollToPosition(80.0));
    EXPECT_DOUBLE_EQ(axis.getMin(), 67.5);
    EXPECT_DOUBLE_EQ(axis.getMax(), 92.5);
    EXPECT_TRUE(axis.clickScrollToPosition(1000.0));
    EXPECT_DOUBLE_EQ(axis.getMax() - axis.getMin(), 25.0);
    EXPECT_LE(axis.getMax(), 100.0 + 0.01 * 25.0 + 1e-9);
    axis.getScrollBarSize(position, thumb);
    EXPECT_EQ(position + thumb, wxSinglePlotWidgetAxis::scroll_bar_range);
    EXPECT_FALSE(axis.clickScrollToPosition(NAN));
    // A deep zoom keeps a thumb to grab.
    ASSERT_TRUE(axis.setView(50.0, 50.0 + 1e-9, 0.0, 500.0));
    axis.getScrollBarSize(position, thumb);
    EXPECT_EQ(thumb, 1);
    EXPECT_EQ(position, 5000);
    // A view beyond the box: the bar spans both.
    singlePlotWidgetAxis::cAxisSettings free;
    free.zoomLimit = false;
    wxSinglePlotWidgetXAxis wide(free);
    wide.setBoundingBox(0.0, 100.0);
    ASSERT_TRUE(wide.setView(50.0, 200.0, 0.0, 500.0));
    wide.getScrollBarSize(position, thumb);
    EXPECT_EQ(position, 2500);
    EXPECT_EQ(thumb, 7500);

    // Log axes scroll by decades.
    wxSinglePlotWidgetXAxis log;
    log.setLog(true);
    log.setBoundingBox(1.0, 1e6);
    ASSERT_TRUE(log.setView(10.0, 1000.0, 0.0, 600.0));
    log.getScrollBarSize(position, thumb);
    EXPECT_EQ(position, 1667);
    EXPECT_EQ(thumb, 3333);
    EXPECT_TRUE(log.clickScrollToPosition(1e4));
    EXPECT_NEAR(std::log10(log.getMin()), 3.0, 1e-9);
    EXPECT_NEAR(std::log10(log.getMax()), 5.0, 1e-9);
    EXPECT_FALSE(log.clickScrollToPosition(-1.0));
    ASSERT_TRUE(log.setView(1.0, 1e6, 0.0, 600.0));
    EXPECT_TRUE(log.checkIsUnzoomed());
}
