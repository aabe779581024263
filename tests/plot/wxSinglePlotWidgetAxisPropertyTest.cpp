// Properties of the ticks of many random views, from 1e-30 to 1e30 and down to widths of 1e-15
// of their value, where only the double-double arithmetic keeps ticks apart.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>

#include "axisTestSupport.h"
#include "base/cVxString.h"
#include "plot/wxSinglePlotWidgetXAxis.h"
#include "plot/wxSinglePlotWidgetYAxis.h"

using namespace vx3;
using namespace vx3::singlePlotWidgetAxis;
using zwplot::cFixedWidthMetrics;

namespace {

bool startsWithDelta(const std::string& text) { return text.rfind(cVxString::deltaUtf8(), 0) == 0; }

double deltaValue(const std::string& text)
{
    return std::strtod(text.c_str() + std::strlen(cVxString::deltaUtf8()) + 1, nullptr);
}

}  // namespace

TEST(wxSinglePlotWidgetAxisProperties, LinearTicksOfRandomViews)
{
    cFixedWidthMetrics metrics;
    std::mt19937_64 random(20261124);
    std::uniform_int_distribution<int> magnitude(-30, 30), relativeWidth(-3, 15), kind(0, 3);
    std::uniform_real_distribution<double> mantissa(-9.99, 9.99), unit(0.0, 1.0);
    int views = 0, deepViews = 0, deltaViews = 0;
    for (int trial = 0; trial < 20000; ++trial) {
        const double scale = std::pow(10.0, magnitude(random));
        const double centre = kind(random) == 0 ? mantissa(random) * scale * 1e-3 : mantissa(random) * scale;
        const double width = std::fabs(centre == 0.0 ? scale : centre) * std::pow(10.0, -relativeWidth(random)) *
                             (0.5 + unit(random));
        const double min = centre - 0.5 * width, max = centre + 0.5 * width;
        const double pixelLow = std::floor(unit(random) * 100.0);
        const double pixelHigh = pixelLow + std::floor(50.0 + unit(random) * 1950.0);
        const bool vertical = kind(random) == 1;
        std::unique_ptr<wxSinglePlotWidgetAxis> axis;
        if (vertical)
            axis = std::make_unique<wxSinglePlotWidgetYAxis>();
        else
            axis = std::make_unique<wxSinglePlotWidgetXAxis>();
        if (!axis->setView(min, max, pixelLow, pixelHigh))
            continue;  // narrower than the doubles there can tell apart
        axis->computeAxesTicks(metrics, pixelHigh);
        ++views;
        deepViews += (max - min) < 1e-12 * std::fabs(centre);
        const auto& ticks = axis->getTicks();
        ASSERT_FALSE(ticks.empty()) << min << " " << max;
        const double halfPixel = 0.5 * axis->getInverseScale();
        const double distance = axis->getTickDistance();
        const double major = distance * axis->getTickSubdivisions();
        const int reference = axis->getDeltaReferenceIndex();
        deltaViews += reference >= 0;
        int labels = 0;
        int labelCount = 0;
        for (const auto& tick : ticks)
            labelCount += !tick.text.empty();
        const std::string* previousText = nullptr;
        for (size_t i = 0; i < ticks.size(); ++i) {
            const cTickLabel& tick = ticks[i];
            SCOPED_TRACE(testing::Message() << "view " << min << " .. " << max << " tick " << i << " '"
                                            << tick.text << "'");
            if (i > 0) {
                ASSERT_GT(tick.position, ticks[i - 1].position);
            }
            // The tick's value is the data value of its pixel, to half a pixel.
            const cDoubleDouble atPixel = axis->toDoubleExact(tick.position);
            ASSERT_LE(std::fabs((tick.exactValue() - atPixel).toDouble()), halfPixel * (1.0 + 1e-9));
            ASSERT_TRUE(tick.exactValue() >= cDoubleDouble(min) - 1e-6 * distance);
            ASSERT_TRUE(tick.exactValue() <= cDoubleDouble(max) + 1e-6 * distance);
            if (tick.text.empty())
                continue;
            ++labels;
            ASSERT_NE(tick.kind, tick_subdivision);
            if (previousText) {
                ASSERT_NE(tick.text, *previousText);
            }
            previousText = &tick.text;
            if (startsWithDelta(tick.text)) {
                // An offset from the reference tick, exact to the digits shown.
                ASSERT_GE(reference, 0);
                const double exact = (tick.exactValue() - ticks[static_cast<size_t>(reference)].exactValue()).toDouble();
                ASSERT_NEAR(deltaValue(tick.text), exact, 1e-6 * std::fabs(exact));
            } else if (reference < 0 && labelCount > 1) {
                // A full value names its tick: it lies nearer to it than to the next labelled one.
                const double shown = std::strtod(tick.text.c_str(), nullptr);
                ASSERT_LE(std::fabs(shown - tick.exactValue().toDouble()),
                          0.5 * major * (1.0 + 1e-6) + 1e-15 * std::fabs(shown));
            } else if (reference >= 0) {
                ASSERT_EQ(static_cast<int>(i), reference);
            }
        }
        // No more labels than the room for them allows.
        const double room = std::max(1.0, std::round((pixelHigh - pixelLow) / axis->getLabelSpace()));
        EXPECT_LE(labels, room + 1.0) << min << " .. " << max;
    }
    // Most views are usable, and deep ones with offset labels are among them.
    EXPECT_GT(views, 15000);
    EXPECT_GT(deepViews, 1000);
    EXPECT_GT(deltaViews, 1000);
}

TEST(wxSinglePlotWidgetAxisProperties, LogTicksOfRandomViews)
{
    cFixedWidthMetrics metrics;
    std::mt19937_64 random(99);
    std::uniform_real_distribution<double> start(-38.0, 55.0), decades(-2.0, 1.5), unit(0.0, 1.0);
    int views = 0, coarse = 0;
    for (int trial = 0; trial < 5000; ++trial) {
        const double low = std::pow(10.0, start(random));
        const double span = std::pow(10.0, decades(random));
        const double high = low * std::pow(10.0, span);
        const double pixelHigh = std::floor(100.0 + unit(random) * 1900.0);
        wxSinglePlotWidgetXAxis axis;
        axis.setLog(true);
        if (!axis.setView(low, high, 0.0, pixelHigh))
            continue;
        axis.computeAxesTicks(metrics, pixelHigh);
        ++views;
        const bool decadesOnly = static_cast<float>(std::log10(high / low)) > 2.0f;
        coarse += decadesOnly;
        const cTickLabel* previous = nullptr;
        double previousPosition = -1e300;
        for (const auto& tick : axis.getTicks()) {
            SCOPED_TRACE(testing::Message() << low << " .. " << high << " '" << tick.text << "' " << tick.value);
            ASSERT_GT(tick.position, previousPosition);
            previousPosition = tick.position;
            ASSERT_GE(tick.value, low * (1 - 1e-12));
            ASSERT_LE(tick.value, high * (1 + 1e-12));
            ASSERT_NEAR(tick.position, axis.toInt(tick.value), 0.5 + 1e-6);
            if (tick.text.empty())
                continue;
            if (decadesOnly) {
                const double exponent = std::log10(tick.value);
                ASSERT_NEAR(exponent, std::round(exponent), 1e-9);
            }
            if (previous) {
                const double room = 0.5 * (metrics.getTextWidth(tick.text) + metrics.getTextWidth(previous->text));
                ASSERT_GE(tick.position - previous->position, room);
                ASSERT_NE(tick.text, previous->text);
            }
            previous = &tick;
        }
    }
    EXPECT_GT(views, 4500);
    EXPECT_GT(coarse, 500);
}

TEST(wxSinglePlotWidgetAxisProperties, ZoomAndScrollKeepTheViewInsideItsLimits)
{
    // Random zooms and scrolls with the limit on: the view stays inside the box and its margin,
    // and a refused step leaves every value as it was.
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    wxSinglePlotWidgetXAxis axis;
    axis.setBoundingBox(-3.0, 7.0);
    ASSERT_TRUE(axis.setView(-3.0, 7.0, 0.0, 1000.0));
    int refused = 0;
    for (int step = 0; step < 20000; ++step) {
        const double min = axis.getMin(), max = axis.getMax(), scale = axis.getScale();
        bool changed = false;
        if (unit(random) < 0.5) {
            const double factor = std::pow(10.0, 4.0 * unit(random) - 1.5);
            changed = axis.zoomFactor(factor, axis.toDouble(unit(random) * 1000.0), 0.0, 1000.0);
        } else {
            changed = axis.scroll((unit(random) - 0.5) * 3000.0);
        }
        if (!changed) {
            ++refused;
            ASSERT_EQ(axis.getMin(), min);
            ASSERT_EQ(axis.getMax(), max);
            ASSERT_EQ(axis.getScale(), scale);
        }
        double allowedMin = 0.0, allowedMax = 0.0;
        axis.getZoomRangeMinMax(allowedMin, allowedMax, 10.0);  // the widest the margin gets
        ASSERT_GE(axis.getMin(), allowedMin - 1e-9);
        ASSERT_LE(axis.getMax(), allowedMax + 1e-9);
        ASSERT_GE(axis.getMax() - axis.getMin(), smallest_range);
        // The right end stays on its pixel, up to what a double at max can hold, and a small
        // drift from rounding both ends of many scrolls.
        const double representable = 4.0 * std::nextafter(std::fabs(axis.getMax()), INFINITY) * 1.2e-16 *
                                     axis.getScale();
        ASSERT_NEAR(axis.toInt(axis.getMax()), 1000.0, 0.05 + representable);
    }
    EXPECT_GT(refused, 100);
}
