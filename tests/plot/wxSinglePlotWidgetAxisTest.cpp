#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "axisTestSupport.h"
#include "base/cVxString.h"
#include "plot/plotWindowType.h"
#include "plot/wxSinglePlotWidgetXAxis.h"
#include "plot/wxSinglePlotWidgetYAxis.h"

using namespace vx3;
using namespace vx3::singlePlotWidgetAxis;
using zwplot::cFixedWidthMetrics;

namespace {

std::vector<const cTickLabel*> labelled(const wxSinglePlotWidgetAxis& axis)
{
    std::vector<const cTickLabel*> result;
    for (const auto& tick : axis.getTicks())
        if (!tick.text.empty())
            result.push_back(&tick);
    return result;
}

bool startsWithDelta(const std::string& text) { return text.rfind(cVxString::deltaUtf8(), 0) == 0; }

}  // namespace

TEST(wxSinglePlotWidgetAxis, ExponentAndTickDistance)
{
    EXPECT_EQ(wxSinglePlotWidgetAxis::computeExponent(0.0), 1);
    EXPECT_EQ(wxSinglePlotWidgetAxis::computeExponent(5.0), 1);  // rounded, not floored, above 1
    EXPECT_EQ(wxSinglePlotWidgetAxis::computeExponent(-1234567.0), 6);
    EXPECT_EQ(wxSinglePlotWidgetAxis::computeExponent(0.5), -1);
    EXPECT_EQ(wxSinglePlotWidgetAxis::computeExponent(0.0007), -4);
    EXPECT_EQ(wxSinglePlotWidgetAxis::computeExponent(0.0002), -4);
    EXPECT_EQ(wxSinglePlotWidgetAxis::computeExponent(1e-12), -12);
    EXPECT_EQ(wxSinglePlotWidgetAxis::computeExponent(0.002), -3);

    struct { double range, distance; } cases[] = {
        {10.0, 1.0}, {4.0, 1.0}, {3.0, 1.0}, {2.9, 0.1}, {29.0, 1.0}, {30.0, 10.0}, {0.004, 0.001},
        {1e-12, 1e-13}, {1.5e6, 1e5}, {-10.0, 1.0}, {0.0, 0.0},
    };
    for (const auto& c : cases) {
        double distance = -1.0;
        wxSinglePlotWidgetAxis::computeTickDistance(c.range, distance);
        EXPECT_DOUBLE_EQ(distance, c.distance) << c.range;
    }
}

TEST(wxSinglePlotWidgetAxis, LinearTicksOfSmallRanges)
{
    cFixedWidthMetrics metrics;
    wxSinglePlotWidgetXAxis axis;
    // 0 to 10: distance 1, and since the range is not below ten distances, two subdivisions.
    ASSERT_TRUE(axis.setView(0.0, 10.0, 0.0, 1000.0));
    double distance = 0, width = 0, height = 0;
    int precision = -1;
    unsigned subdivisions = 0;
    axis.computeTicksLinear(metrics, 1000.0, 0.0, 10.0, distance, precision, subdivisions, width, height);
    EXPECT_DOUBLE_EQ(distance, 1.0);
    EXPECT_EQ(subdivisions, 2u);
    EXPECT_EQ(precision, 0);
    axis.computeAxesTicks(metrics, 1000.0);
    ASSERT_EQ(axis.getTicks().size(), 11u);
    EXPECT_EQ(axis.getTicks()[0].kind, tick_on_zero);
    EXPECT_EQ(axis.getTicks()[0].text, "0.0");
    EXPECT_EQ(axis.getTicks()[1].kind, tick_subdivision);
    EXPECT_EQ(axis.getTicks()[2].text, "2.0");
    EXPECT_EQ(axis.getTicks()[2].position, 200.0);
    EXPECT_EQ(axis.getTicks()[8].text, "8.0");
    EXPECT_TRUE(axis.getTicks()[10].text.empty());  // half of "10.0" would stick out on the right
    EXPECT_EQ(axis.getDeltaReferenceIndex(), -1);

    // 0 to 4: the distance 1 fits fewer than five times: fifths, labels on the whole numbers.
    wxSinglePlotWidgetXAxis small;
    ASSERT_TRUE(small.setView(0.0, 4.0, 50.0, 1050.0));
    small.computeTicksLinear(metrics, 1050.0, 0.0, 4.0, distance, precision, subdivisions, width, height);
    EXPECT_DOUBLE_EQ(distance, 0.2);
    EXPECT_EQ(subdivisions, 5u);
    small.computeAxesTicks(metrics, 1050.0);
    ASSERT_EQ(small.getTicks().size(), 21u);
    std::vector<std::string> texts;
    for (const auto* tick : labelled(small))
        texts.push_back(tick->text);
    EXPECT_EQ(texts, (std::vector<std::string>{"0.0", "1.0", "2.0", "3.0"}));
    EXPECT_EQ(small.getTicks()[5].position, 300.0);

    // Labels keep the digits the distance needs and no trailing zeros: 2.5 and not 2.500.
    wxSinglePlotWidgetXAxis fine;
    ASSERT_TRUE(fine.setView(2.4, 2.9, 0.0, 600.0));
    fine.computeAxesTicks(metrics, 600.0);
    texts.clear();
    for (const auto* tick : labelled(fine))
        texts.push_back(tick->text);
    EXPECT_EQ(texts, (std::vector<std::string>{"2.4", "2.5", "2.6", "2.7", "2.8"}));

    // Too little room: the subdivisions double until the labels fit.
    wxSinglePlotWidgetXAxis narrow;
    ASSERT_TRUE(narrow.setView(0.0, 10.0, 0.0, 100.0));
    narrow.computeTicksLinear(metrics, 100.0, 0.0, 10.0, distance, precision, subdivisions, width, height);
    EXPECT_EQ(subdivisions, 8u);  // 10 ticks, room for round(100 / 52) = 2 labels
    EXPECT_DOUBLE_EQ(narrow.getLabelSpace(), 28.0 + 24.0);
}

TEST(wxSinglePlotWidgetAxis, ScrollKeepsTheTickRhythm)
{
    cFixedWidthMetrics metrics;
    wxSinglePlotWidgetXAxis axis;
    axis.setBoundingBox(0.0, 10.0);
    ASSERT_TRUE(axis.setView(0.0, 4.9, 0.0, 1000.0));
    axis.computeAxesTicks(metrics, 1000.0);
    EXPECT_DOUBLE_EQ(axis.getTickDistance(), 0.2);
    EXPECT_EQ(axis.getTickSubdivisions(), 5u);
    // Scrolled by a tick: the same steps, the labels still on the whole numbers.
    ASSERT_TRUE(axis.scrollLinear(0.2));
    axis.computeAxesTicks(metrics, 1000.0);
    EXPECT_DOUBLE_EQ(axis.getTickDistance(), 0.2);
    EXPECT_EQ(axis.getTickSubdivisions(), 5u);
    EXPECT_NEAR(axis.getTicks().front().value, 0.2, 1e-15);
    EXPECT_EQ(axis.getTicks().front().kind, tick_subdivision);
    EXPECT_EQ(axis.getTicks()[4].text, "1.0");
    // A zoom changes the scale, and the steps are chosen anew.
    ASSERT_TRUE(axis.zoomFactor(0.5, 2.65, 0.0, 1000.0));
    axis.computeAxesTicks(metrics, 1000.0);
    EXPECT_DOUBLE_EQ(axis.getTickDistance(), 0.5);
    // So does less room for the labels at the same scale.
    wxSinglePlotWidgetXAxis other;
    ASSERT_TRUE(other.setView(0.0, 4.9, 0.0, 1000.0));
    other.computeAxesTicks(metrics, 1000.0);
    other.computeAxesTicks(metrics, 100.0);
    EXPECT_EQ(other.getTickSubdivisions(), 20u);  // 25 ticks, room for round(100 / 42) = 2 labels: 5, 10, 20
}

TEST(wxSinglePlotWidgetAxis, DeepZoomShowsOneValueAndOffsets)
{
    cFixedWidthMetrics metrics;
    wxSinglePlotWidgetXAxis axis;
    // A view of 1e-12 at 1000: the doubles there are 1.1e-13 apart, so only the double-double
    // tick values tell the ticks apart.
    const double min = 1000.0, max = 1000.0 + 1e-12;
    ASSERT_TRUE(axis.setView(min, max, 0.0, 1000.0));
    axis.computeAxesTicks(metrics, 1000.0);
    const auto labels = labelled(axis);
    ASSERT_GE(labels.size(), 4u);
    const int reference = axis.getDeltaReferenceIndex();
    ASSERT_GE(reference, 0);
    const cTickLabel& full = axis.getTicks()[static_cast<size_t>(reference)];
    EXPECT_EQ(full.text, "1000.0");
    int fullCount = 0;
    for (const auto* tick : labels) {
        if (!startsWithDelta(tick->text)) {
            ++fullCount;
            continue;
        }
        // The offset printed is the exact difference of the tick values, to the digits shown.
        const double shown = std::strtod(tick->text.c_str() + std::strlen(cVxString::deltaUtf8()) + 1, nullptr);
        const double exact = (tick->exactValue() - full.exactValue()).toDouble();
        EXPECT_NEAR(shown, exact, 1e-3 * std::fabs(exact)) << tick->text;
        EXPECT_NE(exact, 0.0);
    }
    EXPECT_EQ(fullCount, 1);
    // Ticks every 1e-13 on decimal values, 1000 itself among them, labels every 2e-13.
    EXPECT_DOUBLE_EQ(axis.getTickDistance(), 1e-13);
    EXPECT_EQ(axis.getTickSubdivisions(), 2u);
    EXPECT_NEAR((axis.getTicks()[0].exactValue() - 1000.0).toDouble(), 0.0, 1e-27);
    EXPECT_EQ(axis.getTicks()[0].position, 0.0);
    EXPECT_EQ(labels[1]->text, std::string(cVxString::deltaUtf8()) + " 2.0e-13");
    EXPECT_EQ(labels[2]->text, std::string(cVxString::deltaUtf8()) + " 4.0e-13");
    const cDoubleDouble seventh = axis.getTicks()[7].exactValue() - 1000.0;
    EXPECT_NEAR(seventh.high(), 7e-13, 1e-28);
    // Each tick sits on its pixel: 1e-15 per pixel.
    for (const auto& tick : axis.getTicks()) {
        const double offset = (tick.exactValue() - cDoubleDouble(min)).toDouble();
        EXPECT_NEAR(offset * axis.getScale(), tick.position, 0.5 + 1e-9);
    }
}

TEST(wxSinglePlotWidgetAxis, RepeatedLabelsAroundZeroAreBlanked)
{
    cFixedWidthMetrics metrics;
    wxSinglePlotWidgetXAxis axis;
    ASSERT_TRUE(axis.setView(-1e-3, 1e-3, 0.0, 1000.0));
    axis.setFixedPrecision(2);  // too few digits: 0.0005 and 0.001 both read "0.0"
    axis.computeAxesTicks(metrics, 1000.0);
    const auto labels = labelled(axis);
    ASSERT_FALSE(labels.empty());
    for (size_t i = 1; i < labels.size(); ++i)
        EXPECT_NE(labels[i]->text, labels[i - 1]->text);
    EXPECT_EQ(axis.getDeltaReferenceIndex(), -1);
}

TEST(wxSinglePlotWidgetAxis, DoubleToStr)
{
    wxSinglePlotWidgetXAxis axis;
    double error = -1.0;
    EXPECT_EQ(axis.doubleToStr(3, 1234567.0, error), "1.235e6");
    EXPECT_NEAR(error, 433.0, 1e-6);
    EXPECT_EQ(axis.doubleToStr(2, 0.002, error), "0.0");
    EXPECT_DOUBLE_EQ(error, 0.002);
    EXPECT_EQ(axis.doubleToStr(3, 0.0, error), "0.0");
    EXPECT_EQ(error, 0.0);
    EXPECT_EQ(axis.doubleToStr(3, 2.5, error), "2.5");
    EXPECT_EQ(error, 0.0);
    EXPECT_EQ(axis.doubleToStr(3, 2.0), "2.0");
    EXPECT_EQ(axis.doubleToStr(0, 7.0), "7.0");
    EXPECT_EQ(axis.doubleToStr(2, -3.25), "-3.25");
    EXPECT_EQ(axis.doubleToStr(1, -0.25), "-0.3");
    EXPECT_EQ(axis.doubleToStr(10, 1e-5), "1.0e-5");
    EXPECT_EQ(axis.doubleToStr(2, 0.00123), "0.0");  // plain form down to 1e-3: too few digits
    EXPECT_EQ(axis.doubleToStr(2, 0.000123), "1.23e-4");
    EXPECT_EQ(axis.doubleToStr(1, 9.96e-5), "1.0e-4");  // rounding carries into the exponent
    EXPECT_EQ(axis.doubleToStr(4, 999.99999), "1000.0");
    EXPECT_EQ(axis.doubleToStr(10, 1000.0 + 1e-12), "1000.0");
    EXPECT_EQ(axis.doubleToStr(6, 1e-9), "1.0e-9");
    EXPECT_EQ(axis.doubleToStr(2, 4.5e7), "0.45e8");  // the exponent is rounded, so is the mantissa's size
    EXPECT_EQ(axis.doubleToStr(18, 3000.123), axis.doubleToStr(15, 3000.123));  // digits bounded by 64 bits
    EXPECT_EQ(axis.doubleToStr(3, std::nan("")), "nan");
    EXPECT_EQ(axis.doubleToStr(3, -INFINITY), "-inf");
    axis.setGridType(waveExplorerWidgetVirtual::polar_grid);  // magnitudes: no sign
    EXPECT_EQ(axis.doubleToStr(2, -3.25), "3.25");
}

TEST(wxSinglePlotWidgetAxis, LabelPrecision)
{
    cFixedWidthMetrics metrics;
    wxSinglePlotWidgetYAxis axis;
    int precision = -1;
    axis.computeLabelPrecision(0.0, 10.0, 1.0, precision);
    EXPECT_EQ(precision, 0);
    axis.computeLabelPrecision(0.0, 1.0, 0.01, precision);
    EXPECT_EQ(precision, 2);
    axis.computeLabelPrecision(1e6, 1e6 + 1.0, 0.1, precision);  // a mantissa: its digits cover the ratio
    EXPECT_EQ(precision, 7);
    axis.computeLabelPrecision(1000.0, 1000.0, 1e-13, precision);
    EXPECT_EQ(precision, 10);  // clamped
    EXPECT_EQ(axis.computeRequiredPrecision(1000.0, 1000.0, 1e-13), 13);
    axis.computeLabelPrecision(0.0, 1e9, 1e10, precision);
    EXPECT_EQ(precision, 0);
    axis.setLabelScaleFactor(1e-9, "n");  // nanoseconds: 2e-9 reads 2.0
    EXPECT_DOUBLE_EQ(axis.getLabelScaleFactor(), 1e9);
    axis.computeLabelPrecision(0.0, 2e-9, 5e-10, precision);
    EXPECT_EQ(precision, 1);

    // A bound on the width lowers the digits, but not below 2.
    wxSinglePlotWidgetYAxis bounded;
    double width = 0, height = 0;
    bounded.computeLabelPrecision(metrics, 0.0, 1.0, 1e-6, precision, width, height);
    EXPECT_EQ(precision, 6);
    EXPECT_EQ(width, 7.0 * 6);  // "1.0e-6"
    bounded.computeLabelPrecision(metrics, 0.0, 1.0, 1e-6, precision, width, height, 30.0);
    EXPECT_EQ(precision, 2);
    EXPECT_EQ(height, 12.0);
}

TEST(wxSinglePlotWidgetAxis, FirstTick)
{
    cDoubleDouble first;
    int64_t index = -1;
    bool overflow = true;
    wxSinglePlotWidgetAxis::computeFirstTick(0.95, 0.1, 5, first, index, overflow);
    EXPECT_FALSE(overflow);
    EXPECT_NEAR(first.toDouble(), 1.0, 1e-15);
    EXPECT_EQ(index, 0);
    wxSinglePlotWidgetAxis::computeFirstTick(-0.35, 0.1, 2, first, index, overflow);
    EXPECT_NEAR(first.toDouble(), -0.3, 1e-15);
    EXPECT_EQ(index, 1);
    wxSinglePlotWidgetAxis::computeFirstTick(-0.4, 0.1, 2, first, index, overflow);
    EXPECT_EQ(index, 0);
    // Beyond 2^53 distances: still a whole multiple of the distance, at or just above min.
    wxSinglePlotWidgetAxis::computeFirstTick(1000.0 + 2.5e-14, 5e-14, 2, first, index, overflow);
    EXPECT_FALSE(overflow);
    EXPECT_TRUE(first >= cDoubleDouble(1000.0 + 2.5e-14));
    EXPECT_TRUE(first - 5e-14 < cDoubleDouble(1000.0 + 2.5e-14));
    // Decimal distances: the tick at 0.3 is 0.3 to 32 digits, not 3 * 0.1 in doubles.
    wxSinglePlotWidgetAxis::computeFirstTick(0.25, cDoubleDouble::decimalOf(0.1), 2, first, index, overflow);
    EXPECT_NEAR((first - cDoubleDouble(0.3, 1.1102230246251566e-17)).toDouble(), 0.0, 1e-31);
}

TEST(wxSinglePlotWidgetAxis, LogTicks)
{
    cFixedWidthMetrics metrics;
    wxSinglePlotWidgetXAxis axis;
    axis.setLog(true);
    ASSERT_TRUE(axis.setView(0.5, 2e5, 0.0, 1000.0));
    EXPECT_NEAR(axis.toInt(0.5), 0.0, 1e-9);
    EXPECT_NEAR(axis.toInt(2e5), 1000.0, 1e-9);
    EXPECT_NEAR(axis.toDouble(axis.toInt(1234.0)), 1234.0, 1e-9);
    axis.computeAxesTicks(metrics, 1000.0);
    std::vector<std::string> texts;
    for (const auto* tick : labelled(axis))
        texts.push_back(tick->text);
    // Over more than two decades only decades are labelled.
    EXPECT_EQ(texts, (std::vector<std::string>{"1.0", "10.0", "100.0", "1000.0", "1.0e4", "1.0e5"}));
    int subdivisionTicks = 0;
    double previous = -1.0;
    for (const auto& tick : axis.getTicks()) {
        EXPECT_GT(tick.position, previous);
        previous = tick.position;
        if (tick.kind == tick_subdivision) {
            ++subdivisionTicks;
            const double leading = tick.value / std::pow(10.0, std::floor(std::log10(tick.value) + 1e-12));
            EXPECT_NEAR(leading, std::round(leading), 1e-9) << tick.value;
        }
    }
    EXPECT_EQ(subdivisionTicks, 5 + 5 * 8 + 1);  // 0.5..0.9, eight per full decade, 2e5

    // Within a decade and a half the steps between decades carry labels, thinned where they touch.
    wxSinglePlotWidgetXAxis fine;
    fine.setLog(true);
    ASSERT_TRUE(fine.setView(2.0, 50.0, 0.0, 300.0));
    fine.computeAxesTicks(metrics, 300.0);
    const auto labels = labelled(fine);
    ASSERT_GE(labels.size(), 3u);
    bool nonDecade = false;
    for (size_t i = 0; i < labels.size(); ++i) {
        const double exponent = std::log10(labels[i]->value);
        nonDecade = nonDecade || std::fabs(exponent - std::round(exponent)) > 1e-9;
        if (i > 0) {
            const double room = 0.5 * (metrics.getTextWidth(labels[i]->text) + metrics.getTextWidth(labels[i - 1]->text));
            EXPECT_GE(labels[i]->position - labels[i - 1]->position, room);
        }
    }
    EXPECT_TRUE(nonDecade);

    // The Y axis has no log ticks.
    wxSinglePlotWidgetYAxis yAxis;
    yAxis.computeAxesTicksLog(metrics, 1000.0);
    EXPECT_TRUE(yAxis.getTicks().empty());
}

TEST(wxSinglePlotWidgetAxis, ZoomAndItsRefusals)
{
    wxSinglePlotWidgetXAxis axis;
    axis.setBoundingBox(0.0, 10.0);
    ASSERT_TRUE(axis.setView(0.0, 10.0, 0.0, 1000.0));
    ASSERT_TRUE(axis.zoomFactor(2.0, 5.0, 0.0, 1000.0));
    EXPECT_DOUBLE_EQ(axis.getMin(), 2.5);
    EXPECT_DOUBLE_EQ(axis.getMax(), 7.5);
    EXPECT_DOUBLE_EQ(axis.getScale(), 200.0);
    EXPECT_DOUBLE_EQ(axis.toInt(5.0), 500.0);  // the centre keeps its pixel
    // Zooming out is cut at the box plus its margin (1 % of the smaller of view and box).
    ASSERT_TRUE(axis.zoomFactor(0.1, 5.0, 0.0, 1000.0));
    EXPECT_DOUBLE_EQ(axis.getMin(), -0.1);
    EXPECT_DOUBLE_EQ(axis.getMax(), 10.1);
    EXPECT_DOUBLE_EQ(axis.getScale(), 1000.0 / 10.2);
    // A further zoom out changes nothing, and is refused.
    EXPECT_FALSE(axis.zoomFactor(0.5, 5.0, 0.0, 1000.0));
    EXPECT_DOUBLE_EQ(axis.getMin(), -0.1);
    EXPECT_TRUE(axis.checkAxisMaxZoomExceeded(0.5, 5.0, 0.0, 1000.0));
    EXPECT_FALSE(axis.checkAxisMaxZoomExceeded(2.0, 5.0, 0.0, 1000.0));
    EXPECT_DOUBLE_EQ(axis.getMin(), -0.1);  // trying changed nothing
    EXPECT_DOUBLE_EQ(axis.getScale(), 1000.0 / 10.2);

    // Without the limit: the smallest range and the largest value refuse.
    cAxisSettings settings;
    settings.zoomLimit = false;
    wxSinglePlotWidgetXAxis free(settings);
    ASSERT_TRUE(free.setView(1000.0, 1000.0 + 1e-12, 0.0, 1000.0));
    EXPECT_TRUE(free.checkAxisMaxZoomExceeded(1e30));
    EXPECT_FALSE(free.zoomFactor(1e30, 1000.0, 0.0, 1000.0));
    EXPECT_EQ(free.getMin(), 1000.0);
    EXPECT_FALSE(free.checkAxisMaxZoomExceeded(10.0));
    ASSERT_TRUE(free.setView(-1.0, 1.0, 0.0, 1000.0));
    EXPECT_TRUE(free.checkAxisMaxZoomExceeded(1e-100));
    EXPECT_FALSE(free.zoomFactor(1e-100, 0.0, 0.0, 1000.0));
    EXPECT_EQ(free.getMax(), 1.0);
    EXPECT_FALSE(free.zoomFactor(-2.0, 0.0, 0.0, 1000.0));
    EXPECT_FALSE(free.zoomFactor(1.0, 0.0, 0.0, 1000.0));  // no change is no zoom
    ASSERT_TRUE(free.zoomFactor(4.0, 0.5, 0.0, 1000.0));
    EXPECT_DOUBLE_EQ(free.toInt(0.5), 750.0);

    // Log: the centre's pixel stays; values at 1e-100 refuse.
    wxSinglePlotWidgetXAxis log(settings);
    log.setLog(true);
    ASSERT_TRUE(log.setView(1.0, 1e4, 0.0, 1000.0));
    ASSERT_TRUE(log.zoomFactor(2.0, 100.0, 0.0, 1000.0));
    EXPECT_NEAR(log.toInt(100.0), 500.0, 1e-9);
    EXPECT_NEAR(log.getMin(), 10.0, 1e-9);
    EXPECT_NEAR(log.getMax(), 1000.0, 1e-9);
    EXPECT_FALSE(log.zoomFactor(1e-3, 100.0, 0.0, 1000.0));  // would reach 1e-1000
    EXPECT_NEAR(log.getMin(), 10.0, 1e-9);
    EXPECT_FALSE(log.zoomFactor(2.0, -1.0, 0.0, 1000.0));
}

TEST(wxSinglePlotWidgetAxis, ZoomRangeLimitsAndScrolling)
{
    wxSinglePlotWidgetXAxis axis;
    axis.setBoundingBox(0.0, 10.0);
    ASSERT_TRUE(axis.setView(0.0, 10.0, 0.0, 1000.0));
    double min = 20.0, max = 25.0;
    axis.limitZoomRange(min, max);  // right of the box: shifted left, width kept
    EXPECT_DOUBLE_EQ(min, 5.0);
    EXPECT_DOUBLE_EQ(max, 10.0);
    min = -100.0, max = 100.0;
    axis.limitZoomRange(min, max);  // wider than the box: cut
    EXPECT_DOUBLE_EQ(min, -0.1);
    EXPECT_DOUBLE_EQ(max, 10.1);
    min = -3.0, max = -1.0;
    axis.limitZoomRange(min, max);  // left: shifted right onto the box, whose margin was 0 then
    EXPECT_DOUBLE_EQ(min, 0.0);
    EXPECT_DOUBLE_EQ(max, 2.0);
    axis.getZoomRangeMinMax(min, max);
    EXPECT_DOUBLE_EQ(min, -0.1);
    axis.getZoomRangeMinMax(min, max, 2.0);
    EXPECT_DOUBLE_EQ(max, 10.02);

    ASSERT_TRUE(axis.setView(8.0, 10.0, 0.0, 1000.0));
    ASSERT_TRUE(axis.scrollLinear(5.0));  // clipped at the box plus 1 % of the view
    EXPECT_DOUBLE_EQ(axis.getMax(), 10.02);
    EXPECT_FALSE(axis.scrollLinear(1.0));
    ASSERT_TRUE(axis.scroll(-500.0));  // half the view to the left
    EXPECT_DOUBLE_EQ(axis.getMin(), 7.02);
    EXPECT_NEAR(axis.getMax() - axis.getMin(), 2.0, 1e-12);

    cAxisSettings settings;
    settings.zoomLimit = false;
    wxSinglePlotWidgetXAxis free(settings);
    free.setBoundingBox(0.0, 10.0);
    min = 20.0, max = 25.0;
    free.limitZoomRange(min, max);
    EXPECT_EQ(min, 20.0);
    ASSERT_TRUE(free.setView(8.0, 10.0, 0.0, 1000.0));
    ASSERT_TRUE(free.scrollLinear(5.0));
    EXPECT_DOUBLE_EQ(free.getMin(), 13.0);

    // Log: a scroll multiplies both limits by the same factor; below 1e-100 it refuses.
    wxSinglePlotWidgetXAxis log(settings);
    log.setLog(true);
    ASSERT_TRUE(log.setView(10.0, 1000.0, 0.0, 1000.0));
    ASSERT_TRUE(log.scroll(500.0));
    EXPECT_NEAR(log.getMin(), 100.0, 1e-9);
    EXPECT_NEAR(log.getMax(), 10000.0, 1e-7);
    EXPECT_NEAR(log.toInt(100.0), 0.0, 1e-9);
    EXPECT_FALSE(log.scroll(-1e6));
    EXPECT_NEAR(log.getMin(), 100.0, 1e-9);
    EXPECT_NEAR(log.toDoubleDistanceLog(500.0), 10.0, 1e-12);

    // A log axis over non-positive values starts at 1e-15.
    EXPECT_TRUE(log.updateScaleForLogAxis(-5.0, 1.0, 0.0, 1500.0));
    EXPECT_EQ(log.getMin(), 1e-15);
    EXPECT_NEAR(log.getScale(), 100.0, 1e-9);
    EXPECT_EQ(log.getBoundingBoxMin(), 1e-15);
    EXPECT_FALSE(log.updateScaleForLogAxis(5.0, 1.0, 0.0, 1500.0));
    EXPECT_EQ(log.getMin(), 1e-15);
}

TEST(wxSinglePlotWidgetAxis, ReadoutRangeAndPrecision)
{
    wxSinglePlotWidgetXAxis axis;
    ASSERT_TRUE(axis.setView(0.0, 10.0, 100.0, 1100.0));
    axis.computeMinMaxUpdate(100.0, 1100.0);
    EXPECT_DOUBLE_EQ(axis.getUpdateMin(), -0.05);
    EXPECT_DOUBLE_EQ(axis.getUpdateMax(), 10.05);
    EXPECT_EQ(axis.getLabelPrecision(), 6);
    ASSERT_TRUE(axis.setView(1.0, 1.0 + 1e-9, 100.0, 1100.0));
    axis.computeMinMaxUpdate(100.0, 1100.0);
    EXPECT_EQ(axis.getLabelPrecision(), 11);
    EXPECT_EQ(axis.getTickCrossSize(), 6);
}

TEST(wxSinglePlotWidgetAxis, BoundingBoxAndNames)
{
    wxSinglePlotWidgetXAxis axis;
    EXPECT_TRUE(axis.setBoundingBox(3.0, 1.0));
    EXPECT_EQ(axis.getBoundingBoxMin(), 1.0);
    EXPECT_FALSE(axis.setBoundingBox(1.0, 3.0));
    EXPECT_FALSE(axis.setBoundingBox(std::nan(""), 3.0));
    EXPECT_FALSE(axis.checkTimeStampAsDate());
    axis.setDataUnitIdentifier(time_stamp_unit_identifier);
    EXPECT_TRUE(axis.setBoundingBox(1.7e9, 1.8e9));
    EXPECT_TRUE(axis.checkTimeStampAsDate());
    double min = 5.0, max = 5.0;
    wxSinglePlotWidgetAxis::fixBBoxValues(min, max);
    EXPECT_EQ(min, 2.5);
    EXPECT_EQ(max, 7.5);
    min = 0.0, max = 0.0;
    wxSinglePlotWidgetAxis::fixBBoxValues(min, max);
    EXPECT_EQ(max - min, 1.0);

    EXPECT_EQ(gridTypeToFullName(15), "Polar Grid");
    EXPECT_EQ(gridTypeToFullName(16), "Smith Impedance Grid");
    EXPECT_EQ(gridTypeToFullName(17), "Smith Admittance Grid");
    EXPECT_EQ(gridTypeToFullName(18), "Smith Impedance and Admittance Grid");
    EXPECT_EQ(gridTypeToFullName(19), "Smith Admittance and Impedance Grid");
    EXPECT_EQ(gridTypeToFullName(2), "");
    EXPECT_EQ(plotTypeToFullName(waveExplorerWidgetVirtual::analog_plot), "Analog Plot");
    EXPECT_EQ(plotTypeToFullName(waveExplorerWidgetVirtual::polar_coordinates_plot), "Polar Coordiantes Plot");
    EXPECT_EQ(plotTypeToFullName(99), "");
}

TEST(wxSinglePlotWidgetAxis, BadViewsGiveNoTicksAndNoHang)
{
    cFixedWidthMetrics metrics;
    wxSinglePlotWidgetXAxis axis;
    EXPECT_FALSE(axis.setView(5.0, 5.0, 0.0, 1000.0));
    EXPECT_FALSE(axis.setView(std::nan(""), 1.0, 0.0, 1000.0));
    EXPECT_FALSE(axis.setView(0.0, INFINITY, 0.0, 1000.0));
    EXPECT_FALSE(axis.setView(0.0, 1.0, 1000.0, 1000.0));
    EXPECT_FALSE(axis.setView(-1e100, 1.0, 0.0, 1000.0));
    EXPECT_EQ(axis.getMin(), 0.0);  // still the default view
    EXPECT_FALSE(axis.zoomFactor(std::nan(""), 0.5, 0.0, 1000.0));
    EXPECT_FALSE(axis.zoomFactor(2.0, INFINITY, 0.0, 1000.0));
    EXPECT_FALSE(axis.scrollLinear(std::nan("")));
    EXPECT_TRUE(axis.checkAxisMaxZoomExceeded(0.0));
    // A screen of a billion pixels: the ticks stop at a bound instead of filling memory.
    ASSERT_TRUE(axis.setView(0.0, 1e9, 0.0, 1e9));
    axis.computeAxesTicks(metrics, 1e9);
    EXPECT_LE(axis.getTicks().size(), 100000u);
    EXPECT_GT(axis.getTicks().size(), 10u);
    // A log view over non-positive values is refused; one over a single value too.
    wxSinglePlotWidgetXAxis log;
    log.setLog(true);
    EXPECT_FALSE(log.setView(-1.0, -0.5, 0.0, 1000.0));
    EXPECT_FALSE(log.setView(2.0, 2.0, 0.0, 1000.0));
    log.computeAxesTicks(metrics, 1000.0);  // the default view 0..1 has no log ticks
    EXPECT_TRUE(log.getTicks().empty());
    // The precision of a label never exceeds what 64 bits of digits hold.
    double error = 0.0;
    EXPECT_EQ(axis.doubleToStr(100, 1.5, error), "1.5");
    EXPECT_EQ(axis.doubleToStr(-5, 1.5, error), "2.0");
}
