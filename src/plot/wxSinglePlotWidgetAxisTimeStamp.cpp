// Ticks of an axis of seconds since the epoch shown as clock times and dates.
#include <algorithm>
#include <cmath>
#include <ctime>
#include <iterator>
#include <limits>

#include "model/derivedCurveFunction.h"
#include "plot/wxSinglePlotWidgetAxis.h"

namespace vx3 {

using namespace singlePlotWidgetAxis;

namespace {

struct cTimeStep {
    double seconds;
    unsigned subdivisions;
    int timeStampClass;
};

constexpr double minute = 60.0, hour = 3600.0, day = 86400.0, week = 604800.0, month = 2592000.0;
constexpr double year = 31536000.0;

// Steps that read well on a clock and a calendar: 1, 2, 5, 10, 15, 30 of a second or a minute,
// 1, 2, 3, 6, 12 hours, 1, 2, 5 days, 1, 2 weeks, 1, 3, 6 months of 30 days.
constexpr cTimeStep time_steps[] = {
    {1.0, 5, time_stamp_seconds},          {2.0, 2, time_stamp_seconds},
    {5.0, 5, time_stamp_seconds},          {10.0, 2, time_stamp_seconds},
    {15.0, 3, time_stamp_seconds},         {30.0, 3, time_stamp_seconds},
    {minute, 6, time_stamp_minutes},       {2 * minute, 2, time_stamp_minutes},
    {5 * minute, 5, time_stamp_minutes},   {10 * minute, 2, time_stamp_minutes},
    {15 * minute, 3, time_stamp_minutes},  {30 * minute, 3, time_stamp_minutes},
    {hour, 4, time_stamp_hours},           {2 * hour, 2, time_stamp_hours},
    {3 * hour, 3, time_stamp_hours},       {6 * hour, 6, time_stamp_hours},
    {12 * hour, 2, time_stamp_hours},      {day, 4, time_stamp_days},
    {2 * day, 2, time_stamp_days},         {5 * day, 5, time_stamp_days},
    {week, 7, time_stamp_weeks},           {2 * week, 2, time_stamp_weeks},
    {month, 3, time_stamp_months},         {3 * month, 3, time_stamp_months},
    {6 * month, 6, time_stamp_months},
};

const char* dateFormat(unsigned conversion)
{
    switch (conversion) {
    case derivedCurveFunction::year_month_day: return "%Y-%m-%d";
    case derivedCurveFunction::day_slash_month_slash_year: return "%d/%m/%Y";
    case derivedCurveFunction::month_slash_day_slash_year: return "%m/%d/%Y";
    default: return "%d.%m.%Y";
    }
}

}  // namespace

int wxSinglePlotWidgetAxis::computeTickDistanceTimeStamp(double min, double max, double& distance,
                                                         unsigned& subdivisions, double maxTicks)
{
    const double range = std::fabs(max - min);
    maxTicks = std::max(1.0, maxTicks);
    distance = 0.0;
    subdivisions = 1;
    if (!std::isfinite(range) || range == 0.0)
        return time_stamp_plain;
    if (range / maxTicks < 1.0) {
        // Below a second: steps of 1, 2 and 5 times a power of ten.
        double power = 0.0;
        computeTickDistance(range / maxTicks, power);
        for (double multiple : {1.0, 2.0, 5.0, 10.0}) {
            if (range / (multiple * power) <= maxTicks) {
                distance = multiple * power;
                subdivisions = multiple == 2.0 ? 2 : 5;
                break;
            }
        }
        if (distance >= 1.0)
            return time_stamp_seconds;
        return time_stamp_plain;
    }
    for (const cTimeStep& step : time_steps) {
        if (range / step.seconds <= maxTicks) {
            distance = step.seconds;
            subdivisions = step.subdivisions;
            return step.timeStampClass;
        }
    }
    // Years: 1, 2, 5 times a power of ten of them; the class counts the power.
    for (int exponent = 0; exponent < 400; ++exponent) {
        for (double multiple : {1.0, 2.0, 5.0}) {
            const double candidate = multiple * std::pow(10.0, exponent) * year;
            if (range / candidate <= maxTicks) {
                distance = candidate;
                subdivisions = multiple == 2.0 ? 2 : 5;
                return time_stamp_months + exponent;
            }
        }
    }
    distance = range;
    return time_stamp_months;
}

int wxSinglePlotWidgetAxis::computeTimeStampPrecision(int timeStampClass, double distance)
{
    if (timeStampClass != time_stamp_plain || !(distance > 0.0))
        return 0;
    return std::clamp(-computeExponent(distance), 0, 9);
}

std::string wxSinglePlotWidgetAxis::convertTimeStampToStringForAxes(double seconds, int timeStampClass,
                                                                    int precision) const
{
    if (!std::isfinite(seconds) || std::fabs(seconds) > 1e15)
        return doubleToStr(6, seconds);
    precision = std::clamp(precision, 0, 9);
    double whole = std::floor(seconds);
    long long fraction = 0;
    if (precision > 0) {
        const double power = std::pow(10.0, precision);
        fraction = std::llround((seconds - whole) * power);
        if (fraction >= static_cast<long long>(power)) {
            fraction = 0;
            whole += 1.0;
        }
    }
    const time_t time = static_cast<time_t>(whole);
    struct tm parts {};
    if (mSettings.timeStampLocalTime)
        localtime_r(&time, &parts);
    else
        gmtime_r(&time, &parts);
    const char* format = "%H:%M:%S";
    switch (timeStampClass) {
    case time_stamp_plain:
    case time_stamp_seconds: format = "%H:%M:%S"; break;
    case time_stamp_minutes: format = "%H:%M"; break;
    case time_stamp_hours:
        // Midnight starts a new day: it shows which.
        format = parts.tm_hour == 0 && parts.tm_min == 0 ? dateFormat(mTimeStampConversion) : "%H:%M";
        break;
    default: format = dateFormat(mTimeStampConversion); break;
    }
    char buffer[64];
    const size_t length = std::strftime(buffer, sizeof buffer, format, &parts);
    std::string text(buffer, length);
    if (precision > 0 && timeStampClass == time_stamp_plain) {
        std::string digits = std::to_string(fraction);
        digits.insert(0, static_cast<size_t>(precision) - std::min<size_t>(digits.size(), precision), '0');
        text += "." + digits;
    }
    return text;
}

void wxSinglePlotWidgetAxis::computeAxesTicksTimeStamp(const wxAxisTextMetricsVirtual& metrics, double pixelHigh)
{
    if (!std::isfinite(mMin) || !std::isfinite(mMax) || !(mMax > mMin))
        return;
    // As many ticks as the widest clock or date texts allow, with room between them.
    const double charHeight = metrics.getTextHeight("0");
    const double textWidth =
        std::max(metrics.getTextWidth("00:00:00.000"), metrics.getTextWidth("00.00.0000"));
    mLabelSpace = std::max(1.0, computeLabelSpace(textWidth, charHeight, charHeight));
    const double maxTicks = std::clamp(std::floor((pixelHigh - mPixelOfMin) / mLabelSpace), 1.0, 10.0);
    double distance = 0.0;
    unsigned subdivisions = 1;
    const int timeStampClass = computeTickDistanceTimeStamp(mMin, mMax, distance, subdivisions, maxTicks);
    if (!(distance > 0.0))
        return;
    if (timeStampClass >= time_stamp_months && computeAxesTicksCalendar(metrics, pixelHigh, maxTicks))
        return;
    const int precision = computeTimeStampPrecision(timeStampClass, distance);
    double alignment = 0.0;
    if (mSettings.timeStampLocalTime) {
        const time_t time = static_cast<time_t>(std::floor(mMin));
        struct tm parts {};
        localtime_r(&time, &parts);
        alignment = static_cast<double>(parts.tm_gmtoff);
    }
    if (timeStampClass == time_stamp_weeks)
        alignment += 3.0 * day;  // the epoch began on a Thursday; weeks begin on Mondays
    mCacheTickDistance = distance / subdivisions;
    mCacheSubdivisions = subdivisions;
    computeAxesTicksLinear(metrics, pixelHigh, distance / subdivisions, subdivisions, precision,
                           timeStampClass, alignment);
}

namespace {

struct cCalendarStep {
    int64_t months;       // between labelled ticks
    int64_t subdivision;  // months between all ticks
};

// Months and quarters, then 1, 2, 5 times a power of ten of years, each with ticks that read as
// whole months or years between the labels.
cCalendarStep chooseCalendarStep(double range, double maxTicks)
{
    constexpr double average_month = 365.2425 * day / 12.0;
    for (const cCalendarStep step : {cCalendarStep{1, 1}, cCalendarStep{2, 1}, cCalendarStep{3, 1},
                                     cCalendarStep{6, 1}, cCalendarStep{12, 3}})
        if (range / (static_cast<double>(step.months) * average_month) <= maxTicks)
            return step;
    for (int64_t power = 1; power <= 100000; power *= 10)
        for (int64_t leading : {1, 2, 5}) {
            const int64_t years = leading * power;
            const int64_t sub = leading == 2 ? years / 2 : std::max<int64_t>(1, years / 5);
            if (range / (static_cast<double>(years) * 12.0 * average_month) <= maxTicks)
                return {years * 12, sub * 12};
        }
    return {0, 0};
}

}  // namespace

double wxSinglePlotWidgetAxis::convertCalendarMonthToTimeStamp(int64_t monthIndex) const
{
    struct tm parts {};
    const int64_t year = monthIndex >= 0 ? monthIndex / 12 : -((-monthIndex + 11) / 12);
    parts.tm_year = static_cast<int>(year - 1900);
    parts.tm_mon = static_cast<int>(monthIndex - year * 12);
    parts.tm_mday = 1;
    parts.tm_isdst = -1;
    return static_cast<double>(mSettings.timeStampLocalTime ? std::mktime(&parts) : timegm(&parts));
}

bool wxSinglePlotWidgetAxis::computeAxesTicksCalendar(const wxAxisTextMetricsVirtual& metrics, double pixelHigh,
                                                      double maxTicks)
{
    // The calendar of the C library covers the years 1 to 9999 without surprises.
    constexpr double first_year = -62135596800.0, last_year = 253402300799.0;
    if (!(mMin > first_year) || !(mMax < last_year) || mIsLog)
        return false;
    const cCalendarStep step = chooseCalendarStep(mMax - mMin, maxTicks);
    if (step.months <= 0)
        return false;
    const time_t start = static_cast<time_t>(std::floor(mMin));
    struct tm parts {};
    if (mSettings.timeStampLocalTime)
        localtime_r(&start, &parts);
    else
        gmtime_r(&start, &parts);
    const int64_t firstMonth = (static_cast<int64_t>(parts.tm_year) + 1900) * 12 + parts.tm_mon;
    // Ticks on multiples of the subdivision counted from year 0: quarters start in January,
    // decades in years ending in 0.
    int64_t month = firstMonth - ((firstMonth % step.subdivision) + step.subdivision) % step.subdivision;
    mTicks.clear();
    mDeltaReferenceIndex = -1;
    int64_t previousPixel = std::numeric_limits<int64_t>::min();
    for (; mTicks.size() < 100000; month += step.subdivision) {
        const double stamp = convertCalendarMonthToTimeStamp(month);
        if (stamp > mMax)
            break;
        if (stamp < mMin)
            continue;
        cDoubleDouble exact;
        toInt(stamp, exact);
        const int64_t pixel = exact.roundToInt64();
        if (pixel == previousPixel)
            continue;
        previousPixel = pixel;
        cTickLabel tick;
        tick.value = stamp;
        tick.position = static_cast<double>(pixel);
        tick.exactPosition = exact.toDouble();
        tick.kind = month % step.months == 0 ? tick_labelled : tick_subdivision;
        if (tick.kind == tick_labelled) {
            // Whole years read as the year alone; months as the date of their first day.
            std::string text = step.months % 12 == 0 ? std::to_string(month / 12)
                                                     : convertTimeStampToStringForAxes(stamp, time_stamp_months, 0);
            if (static_cast<double>(pixel) + 0.5 * computeLabelExtent(metrics, text) <= pixelHigh)
                tick.text = std::move(text);
        }
        mTicks.push_back(std::move(tick));
    }
    mCacheTickDistance = static_cast<double>(step.subdivision) * 365.2425 * day / 12.0;
    mCacheSubdivisions = static_cast<unsigned>(step.months / step.subdivision);
    return true;
}

}  // namespace vx3
