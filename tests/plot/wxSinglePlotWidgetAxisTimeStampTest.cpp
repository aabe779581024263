#include <gtest/gtest.h>

#include <cmath>
#include <ctime>

#include "axisTestSupport.h"
#include "model/derivedCurveFunction.h"
#include "plot/wxSinglePlotWidgetXAxis.h"

using namespace vx3;
using namespace vx3::singlePlotWidgetAxis;
using zwplot::cFixedWidthMetrics;

namespace {

cAxisSettings utc()
{
    cAxisSettings settings;
    settings.timeStampLocalTime = false;
    return settings;
}

}  // namespace

TEST(wxSinglePlotWidgetAxisTimeStamp, ClassesAndDistances)
{
    struct {
        double range;
        int timeStampClass;
        double distance;
        unsigned subdivisions;
    } cases[] = {
        {0.5, time_stamp_plain, 0.1, 5},         {3.0, time_stamp_plain, 0.5, 5},
        {50.0, time_stamp_seconds, 10.0, 2},     {3000.0, time_stamp_minutes, 600.0, 2},
        {80000.0, time_stamp_hours, 21600.0, 6}, {500000.0, time_stamp_days, 86400.0, 4},
        {4e6, time_stamp_weeks, 1209600.0, 2},   {2e7, time_stamp_months, 7776000.0, 3},
        {1e9, time_stamp_months + 1, 315360000.0, 5},
    };
    for (const auto& c : cases) {
        double distance = 0.0;
        unsigned subdivisions = 0;
        const int timeStampClass =
            wxSinglePlotWidgetAxis::computeTickDistanceTimeStamp(1.7e9, 1.7e9 + c.range, distance, subdivisions);
        EXPECT_EQ(timeStampClass, c.timeStampClass) << c.range;
        EXPECT_DOUBLE_EQ(distance, c.distance) << c.range;
        EXPECT_EQ(subdivisions, c.subdivisions) << c.range;
        EXPECT_LE(c.range / distance, 6.0);
    }
    double distance = 1.0;
    unsigned subdivisions = 0;
    EXPECT_EQ(wxSinglePlotWidgetAxis::computeTickDistanceTimeStamp(5.0, 5.0, distance, subdivisions), time_stamp_plain);
    EXPECT_EQ(distance, 0.0);
    EXPECT_EQ(wxSinglePlotWidgetAxis::computeTimeStampPrecision(time_stamp_plain, 0.05), 2);
    EXPECT_EQ(wxSinglePlotWidgetAxis::computeTimeStampPrecision(time_stamp_plain, 0.5), 1);
    EXPECT_EQ(wxSinglePlotWidgetAxis::computeTimeStampPrecision(time_stamp_minutes, 600.0), 0);
}

TEST(wxSinglePlotWidgetAxisTimeStamp, Texts)
{
    wxSinglePlotWidgetXAxis axis(utc());
    const double stamp = 1700000000.0;  // 2023-11-14 22:13:20 UTC
    EXPECT_EQ(axis.convertTimeStampToStringForAxes(stamp, time_stamp_seconds, 0), "22:13:20");
    EXPECT_EQ(axis.convertTimeStampToStringForAxes(stamp + 0.125, time_stamp_plain, 3), "22:13:20.125");
    EXPECT_EQ(axis.convertTimeStampToStringForAxes(stamp + 0.9996, time_stamp_plain, 3), "22:13:21.000");
    EXPECT_EQ(axis.convertTimeStampToStringForAxes(stamp, time_stamp_minutes, 0), "22:13");
    EXPECT_EQ(axis.convertTimeStampToStringForAxes(stamp, time_stamp_days, 0), "14.11.2023");
    EXPECT_EQ(axis.convertTimeStampToStringForAxes(1699920000.0, time_stamp_hours, 0), "14.11.2023");  // midnight
    axis.setTimeStampConversion(derivedCurveFunction::year_month_day);
    EXPECT_EQ(axis.convertTimeStampToStringForAxes(stamp, time_stamp_weeks, 0), "2023-11-14");
    axis.setTimeStampConversion(derivedCurveFunction::month_slash_day_slash_year);
    EXPECT_EQ(axis.convertTimeStampToStringForAxes(stamp, time_stamp_months, 0), "11/14/2023");
    EXPECT_EQ(axis.convertTimeStampToStringForAxes(NAN, time_stamp_days, 0), "nan");
}

TEST(wxSinglePlotWidgetAxisTimeStamp, TicksOnClockAndCalendar)
{
    cFixedWidthMetrics metrics;
    struct {
        double min, max;
        double major;  // labelled ticks are whole multiples of this (UTC)
        double offset; // ... plus this
    } views[] = {
        {1700000000.0, 1700000000.0 + 2 * 86400.0, 43200.0, 0.0},
        {1700000000.0, 1700000000.0 + 600.0, 120.0, 0.0},
        {1700000000.0, 1700000000.0 + 0.3, 0.05, 0.0},
        {1700000000.0, 1700000000.0 + 40 * 86400.0, 604800.0, 4 * 86400.0},  // Mondays
    };
    for (const auto& view : views) {
        wxSinglePlotWidgetXAxis axis(utc());
        axis.setDataUnitIdentifier(time_stamp_unit_identifier);
        axis.setBoundingBox(view.min, view.max);
        ASSERT_TRUE(axis.setView(view.min, view.max, 0.0, 800.0));
        axis.computeAxesTicks(metrics, 800.0);
        std::string lastText;
        int labels = 0;
        double previous = -1.0;
        for (const auto& tick : axis.getTicks()) {
            EXPECT_GT(tick.position, previous);
            previous = tick.position;
            if (tick.text.empty())
                continue;
            ++labels;
            EXPECT_NE(tick.text, lastText);  // "12:00" comes back each day, but not next to itself
            lastText = tick.text;
            const cDoubleDouble shifted = tick.exactValue() - view.offset;
            const double multiple = std::round(shifted.toDouble() / view.major);
            const double rest = (shifted - cDoubleDouble::decimalOf(view.major) * multiple).toDouble();
            EXPECT_LT(std::fabs(rest), 1e-9 * view.major) << tick.text;
        }
        EXPECT_GE(labels, 2) << view.max - view.min;
        EXPECT_LE(labels, 10);
    }
}

TEST(wxSinglePlotWidgetAxisTimeStamp, LocalMidnight)
{
    // Days start at local midnight: with the zone of this machine, whatever it is.
    cFixedWidthMetrics metrics;
    wxSinglePlotWidgetXAxis axis;  // local time
    axis.setDataUnitIdentifier(time_stamp_unit_identifier);
    axis.setBoundingBox(1.7e9, 1.7e9 + 5 * 86400.0);
    ASSERT_TRUE(axis.setView(1.7e9, 1.7e9 + 5 * 86400.0, 0.0, 800.0));
    axis.computeAxesTicks(metrics, 800.0);
    int labels = 0;
    for (const auto& tick : axis.getTicks()) {
        if (tick.text.empty())
            continue;
        ++labels;
        const time_t time = static_cast<time_t>(tick.value);
        struct tm parts {};
        localtime_r(&time, &parts);
        EXPECT_EQ(parts.tm_hour * 60 + parts.tm_min, 0) << tick.text;
    }
    EXPECT_GE(labels, 3);
}

TEST(wxSinglePlotWidgetAxisTimeStamp, MonthsAndYearsFollowTheCalendar)
{
    // Months of 28 to 31 days and leap years: labelled ticks stand on the first instant of a
    // month (or of a year), as the C library's calendar says, whatever the view.
    cFixedWidthMetrics metrics;
    struct {
        const char* name;
        double min, max;
        bool yearsOnly;
    } views[] = {
        {"a year", 1767225600.0 - 20 * 86400.0, 1767225600.0 + 345 * 86400.0, false},  // around 2026-01-01
        {"five months over a leap February", 1706745600.0, 1706745600.0 + 150 * 86400.0, false},  // 2024-02-01
        {"thirty years", 946684800.0 - 1e6, 946684800.0 + 30 * 365.25 * 86400.0, true},
        {"three centuries", -2208988800.0, -2208988800.0 + 300 * 365.25 * 86400.0, true},  // from 1900
    };
    for (bool local : {false, true}) {
        for (const auto& view : views) {
            SCOPED_TRACE(std::string(view.name) + (local ? " local" : " utc"));
            cAxisSettings settings;
            settings.timeStampLocalTime = local;
            wxSinglePlotWidgetXAxis axis(settings);
            axis.setDataUnitIdentifier(time_stamp_unit_identifier);
            axis.setBoundingBox(view.min, view.max);
            ASSERT_TRUE(axis.setView(view.min, view.max, 0.0, 900.0));
            axis.computeAxesTicks(metrics, 900.0);
            int labels = 0;
            double previous = -1.0;
            std::string lastText;
            for (const auto& tick : axis.getTicks()) {
                EXPECT_GT(tick.position, previous);
                previous = tick.position;
                EXPECT_GE(tick.value, view.min);
                EXPECT_LE(tick.value, view.max);
                const time_t time = static_cast<time_t>(tick.value);
                EXPECT_EQ(static_cast<double>(time), tick.value);  // whole seconds
                struct tm parts {};
                if (local)
                    localtime_r(&time, &parts);
                else
                    gmtime_r(&time, &parts);
                EXPECT_EQ(parts.tm_mday, 1) << tick.text;
                EXPECT_EQ(parts.tm_hour * 3600 + parts.tm_min * 60 + parts.tm_sec, 0) << tick.text;
                if (tick.text.empty())
                    continue;
                ++labels;
                EXPECT_NE(tick.text, lastText);
                lastText = tick.text;
                if (view.yearsOnly) {
                    EXPECT_EQ(parts.tm_mon, 0) << tick.text;
                    EXPECT_EQ(tick.text, std::to_string(parts.tm_year + 1900));
                } else {
                    char expected[16];
                    std::strftime(expected, sizeof expected, "%d.%m.%Y", &parts);
                    EXPECT_EQ(tick.text, expected);
                }
            }
            EXPECT_GE(labels, 2);
            EXPECT_LE(labels, 12);
        }
    }
}
