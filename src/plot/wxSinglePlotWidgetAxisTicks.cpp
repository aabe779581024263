// Numbers as label texts, tick distances and the tick loops of linear and log axes.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "base/cVxString.h"
#include "plot/plotWindowType.h"
#include "plot/wxSinglePlotWidgetAxis.h"

namespace vx3 {

using namespace singlePlotWidgetAxis;

namespace {

// A guard far above any sensible number of ticks on a screen, against views that would step for ever.
constexpr size_t most_ticks = 100000;

int precisionRule(double a, double b)
{
    const int ea = wxSinglePlotWidgetAxis::computeExponent(a);
    const int eb = wxSinglePlotWidgetAxis::computeExponent(b);
    // Near 1 a label reads as a plain number, so the digits follow the distance alone; far from 1
    // it reads as a mantissa, whose digits cover the ratio of value and distance.
    if (static_cast<unsigned>(ea + 3) < 7u)
        return -eb;
    return ea - eb;
}

// Powers of ten as labels need them, computed once: the general power function would take half
// the time of a tick computation.
long double powerOfTen(int exponent)
{
    constexpr int largest = 400;
    static const std::array<long double, 2 * largest + 1> powers = [] {
        std::array<long double, 2 * largest + 1> table{};
        for (int e = -largest; e <= largest; ++e)
            table[static_cast<size_t>(e + largest)] = std::pow(10.0L, static_cast<long double>(e));
        return table;
    }();
    if (exponent < -largest || exponent > largest)
        return std::pow(10.0L, static_cast<long double>(exponent));
    return powers[static_cast<size_t>(exponent + largest)];
}

}  // namespace

int wxSinglePlotWidgetAxis::computeExponent(double value)
{
    const double magnitude = std::fabs(value);
    if (magnitude == 0.0 || !std::isfinite(magnitude))
        return magnitude == 0.0 ? 1 : 0;
    int exponent = static_cast<int>(std::lround(std::log10(magnitude)));
    if (magnitude < 1.0 && magnitude < std::pow(10.0, exponent))
        exponent -= 1;
    return exponent;
}

void wxSinglePlotWidgetAxis::computeLabelPrecision(double min, double max, double distance, int& precision) const
{
    const double a = std::max(std::fabs(min), std::fabs(max)) * mLabelScaleFactor;
    const double b = std::fabs(distance) * mLabelScaleFactor;
    precision = std::clamp(precisionRule(a, b), 0, 10);
}

int wxSinglePlotWidgetAxis::computeRequiredPrecision(double min, double max, double distance) const
{
    const double a = std::max(std::fabs(min), std::fabs(max)) * mLabelScaleFactor;
    const double b = std::fabs(distance) * mLabelScaleFactor;
    return std::max(0, precisionRule(a, b));
}

void wxSinglePlotWidgetAxis::computeLabelPrecision(const wxAxisTextMetricsVirtual& metrics, double min,
                                                   double max, double distance, int& precision,
                                                   double& textWidth, double& textHeight,
                                                   double maxTextWidth) const
{
    if (mFixedPrecision >= 0)
        precision = mFixedPrecision;
    else
        computeLabelPrecision(min, max, distance, precision);
    auto measure = [&]() {
        textWidth = 0.0;
        textHeight = 0.0;
        for (double value : {min, max, distance}) {
            const std::string text = doubleToStr(precision, value * mLabelScaleFactor);
            textWidth = std::max(textWidth, metrics.getTextWidth(text));
            textHeight = std::max(textHeight, metrics.getTextHeight(text));
        }
    };
    measure();
    while (maxTextWidth > 0.0 && textWidth > maxTextWidth && precision > 2) {
        --precision;
        measure();
    }
}

std::string wxSinglePlotWidgetAxis::doubleToStr(int precision, double value) const
{
    double error = 0.0;
    return doubleToStr(precision, value, error);
}

std::string wxSinglePlotWidgetAxis::doubleToStr(int precision, double value, double& error) const
{
    error = 0.0;
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value < 0 ? "-inf" : "inf";
    if (value == 0.0)
        return "0.0";
    const bool negative = value < 0.0 && !waveExplorerWidgetVirtual::checkIsPolarOrSmithGrid(mGridType);
    const double magnitude = std::fabs(value);
    int exponent = computeExponent(magnitude);
    const bool scaled = exponent < -3 || exponent > 3;
    long double mantissa = scaled ? magnitude / powerOfTen(exponent) : magnitude;
    precision = std::clamp(precision, 0, 18);
    // The scaled mantissa and its fraction digits must fit a 64-bit integer.
    while (precision > 0 && mantissa * powerOfTen(precision) >= 9.0e18L)
        --precision;
    uint64_t power = 1;
    for (int i = 0; i < precision; ++i)
        power *= 10;
    uint64_t digits = static_cast<uint64_t>(std::llround(mantissa * static_cast<long double>(power)));
    if (digits == 0) {
        error = magnitude;
        return "0.0";
    }
    if (mantissa * static_cast<long double>(power) - static_cast<long double>(digits) > 0.5L)
        ++digits;
    if (scaled && digits / power > 9) {
        ++exponent;
        mantissa = magnitude / powerOfTen(exponent);
        digits = static_cast<uint64_t>(std::llround(mantissa * static_cast<long double>(power)));
    }
    std::string text = negative ? "-" : "";
    text += std::to_string(digits / power);
    text += '.';
    uint64_t fraction = digits % power;
    if (fraction == 0) {
        text += '0';
    } else {
        std::string fractionText = std::to_string(fraction);
        fractionText.insert(0, static_cast<size_t>(precision) - fractionText.size(), '0');
        while (!fractionText.empty() && fractionText.back() == '0')
            fractionText.pop_back();
        text += fractionText;
    }
    if (scaled)
        text += "e" + std::to_string(exponent);
    long double written = static_cast<long double>(digits) / static_cast<long double>(power);
    if (scaled)
        written *= powerOfTen(exponent);
    error = static_cast<double>(std::fabs(static_cast<long double>(magnitude) - written));
    return text;
}

void wxSinglePlotWidgetAxis::computeTickDistance(double range, double& distance)
{
    range = std::fabs(range);
    if (!std::isfinite(range)) {
        distance = 0.0;
        return;
    }
    int exponent = range == 0.0 ? 1 : computeExponent(range);
    // The largest power of ten that fits three times into the range.
    while (range < 3.0 * std::pow(10.0, exponent) && exponent > -400)
        --exponent;
    distance = std::pow(10.0, exponent);
}

void wxSinglePlotWidgetAxis::computeFirstTick(double min, double distance, unsigned subdivisions,
                                              cDoubleDouble& firstValue, int64_t& index, bool& overflow)
{
    computeFirstTick(min, cDoubleDouble(distance), subdivisions, firstValue, index, overflow);
}

void wxSinglePlotWidgetAxis::computeFirstTick(double min, const cDoubleDouble& distance, unsigned subdivisions,
                                              cDoubleDouble& firstValue, int64_t& index, bool& overflow)
{
    overflow = false;
    subdivisions = std::max(1u, subdivisions);
    // A whole multiple of the distance a little below min; the product is kept exactly, so that
    // every tick is a whole multiple of the distance even where min / distance passes 2^53.
    const double base = std::round(min / distance.high()) - 5.0;
    const cDoubleDouble baseValue = distance * base;
    const cDoubleDouble steps = ((cDoubleDouble(min) - baseValue) * (1.0 / distance.high())).roundToWhole();
    cDoubleDouble value = distance * steps.high() + baseValue;
    // Which tick of the rhythm this is: (base + steps) mod subdivisions, in integers.
    const int64_t baseIndex = static_cast<int64_t>(std::fmod(base, static_cast<double>(subdivisions)));
    index = (baseIndex + steps.roundToInt64() % subdivisions) % static_cast<int64_t>(subdivisions);
    if (index < 0)
        index += subdivisions;
    while (value < cDoubleDouble(min)) {
        const cDoubleDouble next = value + distance;
        if (next == value) {
            overflow = true;
            break;
        }
        value = next;
        index = (index + 1) % subdivisions;
    }
    firstValue = value;
}

void wxSinglePlotWidgetAxis::clearTicks()
{
    mTicks.clear();
    mDeltaReferenceIndex = -1;
}

void wxSinglePlotWidgetAxis::computeTicksLinear(const wxAxisTextMetricsVirtual& metrics, double pixelHigh, double min,
                                                double max, double& distance, int& precision,
                                                unsigned& subdivisions, double& textWidth, double& textHeight)
{
    double decade = 0.0;
    computeTickDistance(max - min, decade);
    // The labels stand on multiples of this power of ten, so it sets the digits.
    computeLabelPrecision(metrics, min, max, decade, precision, textWidth, textHeight, getMaxLabelTextWidth());
    // A scroll keeps the scale, and with it the rhythm of the ticks: only the digits may change.
    const double pixels = pixelHigh - mPixelOfMin;
    if (mCacheValid && mCacheScale == mScale && mCachePixels == pixels && mCacheLabelScaleFactor == mLabelScaleFactor) {
        distance = mCacheTickDistance;
        subdivisions = mCacheSubdivisions;
        return;
    }
    const double charHeight = metrics.getTextHeight("0");
    mLabelSpace = std::max(1.0, computeLabelSpace(textWidth, textHeight, charHeight));
    distance = decade;
    subdivisions = 1;
    if (distance > 0.0) {
        const double range = max - min;
        subdivisions = 2;
        if (range < 10.0 * distance) {
            if (range < 5.0 * distance) {
                distance *= 0.2;
                subdivisions = 5;
            } else {
                distance *= 0.5;
                subdivisions = 2;
            }
        }
        const double ticks = std::max(1.0, std::round(range / distance));
        const double labels = std::max(1.0, std::round((pixelHigh - mPixelOfMin) / mLabelSpace));
        while (labels * subdivisions < ticks && subdivisions < (1u << 30))
            subdivisions *= 2;
    }
    mCacheScale = mScale;
    mCachePixels = pixels;
    mCacheLabelScaleFactor = mLabelScaleFactor;
    mCacheTickDistance = distance;
    mCacheSubdivisions = subdivisions;
    mCacheValid = true;
}

void wxSinglePlotWidgetAxis::computeAxesTicksLinearView(const wxAxisTextMetricsVirtual& metrics, double pixelHigh)
{
    double distance = 0.0, textWidth = 0.0, textHeight = 0.0;
    int precision = 0;
    unsigned subdivisions = 1;
    computeTicksLinear(metrics, pixelHigh, mMin, mMax, distance, precision, subdivisions, textWidth, textHeight);
    computeAxesTicksLinear(metrics, pixelHigh, distance, subdivisions, precision);
}

void wxSinglePlotWidgetAxis::computeAxesTicksLinear(const wxAxisTextMetricsVirtual& metrics, double pixelHigh,
                                                    double distance, unsigned subdivisions, int precision,
                                                    int timeStampClass, double alignment)
{
    if (!(distance > 0.0) || !std::isfinite(distance) || !std::isfinite(mMin) || !std::isfinite(mMax) ||
        !(mMax > mMin))
        return;
    subdivisions = std::max(1u, subdivisions);
    cDoubleDouble value;
    int64_t index = 0;
    bool overflow = false;
    // Ticks stand on decimal multiples of the distance counted from the alignment (local
    // midnight, a Monday). A tick a hair beyond either end, from the decimal's last digits, counts
    // as on the end.
    const cDoubleDouble step = cDoubleDouble::decimalOf(distance);
    const double tolerance = 1e-9 * distance;
    computeFirstTick(mMin + alignment - tolerance, step, subdivisions, value, index, overflow);
    value -= alignment;
    const cDoubleDouble max = cDoubleDouble(mMax) + tolerance;
    int64_t previousPixel = std::numeric_limits<int64_t>::min();
    int reference = -1;
    double smallestError = std::numeric_limits<double>::infinity();
    bool equalNeighbours = false;
    bool zeroLabel = false;
    std::string lastLabel;
    double largestError = 0.0;
    while (!overflow && value <= max && mTicks.size() < most_ticks) {
        const cDoubleDouble exactPixel = mIsLog ? toIntLog(value) : toIntLin(value);
        const int64_t pixel = exactPixel.roundToInt64();
        if (pixel == previousPixel)
            break;  // the scale is exhausted: the next tick would fall on the same pixel
        cTickLabel tick;
        tick.position = static_cast<double>(pixel);
        tick.exactPosition = exactPixel.toDouble();
        tick.value = value.high();
        tick.valueLow = value.low();
        if (index % subdivisions == 0) {
            const bool onZero = std::fabs(value.toDouble()) < 0.01 * distance && timeStampClass < 0;
            tick.kind = onZero ? tick_on_zero : tick_labelled;
            double error = 0.0;
            std::string text;
            if (onZero)
                text = "0.0";
            else if (timeStampClass >= 0)
                text = convertTimeStampToStringForAxes(value.toDouble(), timeStampClass, precision);
            else
                text = doubleToStr(precision, value.toDouble() * mLabelScaleFactor, error);
            if (static_cast<double>(pixel) + 0.5 * computeLabelExtent(metrics, text) <= pixelHigh) {
                tick.text = std::move(text);
                largestError = std::max(largestError, error);
                if (error < smallestError) {
                    smallestError = error;
                    reference = static_cast<int>(mTicks.size());
                }
                if (!lastLabel.empty() && lastLabel == tick.text)
                    equalNeighbours = true;
                lastLabel = tick.text;
                zeroLabel = zeroLabel || tick.text == "0.0";
            }
        } else {
            tick.kind = tick_subdivision;
        }
        mTicks.push_back(std::move(tick));
        previousPixel = pixel;
        const cDoubleDouble next = value + step;
        if (next == value)
            break;
        value = next;
        index = (index + 1) % subdivisions;
    }
    // A label that is further from its tick than half the way to the next labelled tick names
    // the wrong tick just as two equal labels do (neighbours can straddle a rounding boundary).
    const size_t labelled = static_cast<size_t>(
        std::count_if(mTicks.begin(), mTicks.end(), [](const cTickLabel& tick) { return !tick.text.empty(); }));
    const double labelledDistance = std::fabs(distance * subdivisions * mLabelScaleFactor);
    if (labelled > 1 && largestError > 0.5 * labelledDistance && timeStampClass < 0)
        equalNeighbours = true;
    if (!equalNeighbours)
        return;
    // Labels too short to tell neighbours apart: around zero the repeated texts go, elsewhere the
    // axis shows one absolute value and the offsets from it.
    if (zeroLabel || timeStampClass >= 0)
        removeDuplicatedLabels();
    else
        computeDeltaLabels(metrics, reference, distance * mLabelScaleFactor, pixelHigh);
}

void wxSinglePlotWidgetAxis::removeDuplicatedLabels()
{
    const std::string* previous = nullptr;
    for (auto& tick : mTicks) {
        if (tick.text.empty())
            continue;
        if (previous && *previous == tick.text) {
            tick.text.clear();
            continue;  // the run goes on: compare with its first text
        }
        previous = &tick.text;
    }
}

void wxSinglePlotWidgetAxis::computeDeltaLabels(const wxAxisTextMetricsVirtual& metrics, int reference,
                                                double step, double pixelHigh)
{
    if (reference < 0 || reference >= static_cast<int>(mTicks.size()) || !(std::fabs(step) > 0.0))
        return;
    const double count = static_cast<double>(mTicks.size());
    const int precision = std::clamp(precisionRule(count * std::fabs(step), std::fabs(step)), 0, 10);
    for (int i = 0; i < static_cast<int>(mTicks.size()); ++i) {
        cTickLabel& tick = mTicks[static_cast<size_t>(i)];
        if (i == reference || tick.text.empty())
            continue;
        std::string text = std::string(cVxString::deltaUtf8()) + " " +
                           doubleToStr(precision, static_cast<double>(i - reference) * step);
        if (tick.position + 0.5 * computeLabelExtent(metrics, text) <= pixelHigh)
            tick.text = std::move(text);
        else
            tick.text.clear();
    }
    mDeltaReferenceIndex = reference;
}

void wxSinglePlotWidgetAxis::computeAxesTicksLog(const wxAxisTextMetricsVirtual& metrics, double pixelHigh)
{
    const double low = mMin, high = mMax;
    if (!(low > 0.0) || !(high > low) || !std::isfinite(high))
        return;
    int firstExponent = computeExponent(low);
    if (std::pow(10.0, firstExponent) > low)
        --firstExponent;  // the decade that holds low, so that its steps inside the view are kept
    const int lastExponent = computeExponent(high);
    const double decades = std::log10(high / low);
    const bool fine = !(static_cast<float>(decades) > 2.0f);
    const int n = fine ? computeExponent(decades) : 0;
    // Steps of a decade: m * 10^(e + n) for m from 10^-n to 10^(1-n); subdivision ticks are left
    // out where a decade is too narrow on the screen to show them apart.
    const double stepsPerDecade = 9.0 * std::pow(10.0, -n);
    const bool subdivide = mScale / stepsPerDecade >= 2.0;
    const long double firstM = std::pow(10.0L, static_cast<long double>(-n));
    int64_t previousPixel = std::numeric_limits<int64_t>::min();
    bool firstInView = true;
    for (int exponent = firstExponent; exponent <= lastExponent && mTicks.size() < most_ticks; ++exponent) {
        const double decade = std::pow(10.0, exponent);
        if (decade > high)
            break;
        const long double step = std::pow(10.0L, static_cast<long double>(exponent + n));
        long double m = firstM;
        if (decade < low)
            m = std::max(firstM, std::ceil(static_cast<long double>(low) / step));
        const long double lastM = 10.0L * firstM;
        for (; m < lastM && mTicks.size() < most_ticks; m += 1.0L) {
            const double value = m == firstM ? decade : static_cast<double>(m * step);
            if (value > high)
                break;
            if (value < low)
                continue;
            const bool isDecade = m == firstM;
            if (!isDecade && !subdivide && !(fine && firstInView))
                continue;
            const cDoubleDouble exactPixel = toIntLog(cDoubleDouble(value));
            const int64_t pixel = exactPixel.roundToInt64();
            if (pixel == previousPixel)
                continue;
            cTickLabel tick;
            tick.position = static_cast<double>(pixel);
            tick.exactPosition = exactPixel.toDouble();
            tick.value = value;
            const bool labelled = isDecade || fine;
            tick.kind = labelled ? tick_labelled : tick_subdivision;
            if (labelled) {
                std::string text = mTimeStampAsDate && checkIsTimeStampAxis()
                                       ? convertTimeStampToStringForAxes(value, time_stamp_seconds, 0)
                                       : doubleToStr(10, value * mLabelScaleFactor);
                if (tick.position + 0.5 * computeLabelExtent(metrics, text) <= pixelHigh)
                    tick.text = std::move(text);
            }
            firstInView = false;
            previousPixel = pixel;
            mTicks.push_back(std::move(tick));
        }
    }
    simplifyTickLabelsLog(metrics);
}

void wxSinglePlotWidgetAxis::simplifyTickLabelsLog(const wxAxisTextMetricsVirtual& metrics)
{
    std::vector<size_t> labelled;
    for (size_t i = 0; i < mTicks.size(); ++i)
        if (!mTicks[i].text.empty())
            labelled.push_back(i);
    if (labelled.size() < 2)
        return;
    const double gap = metrics.getTextHeight("0") * 0.5;
    std::vector<double> widths;
    for (size_t i : labelled)
        widths.push_back(metrics.getTextWidth(mTicks[i].text));
    // Keep every k-th label, the smallest k with which no two kept texts touch.
    size_t keepEvery = 1;
    for (; keepEvery < labelled.size(); ++keepEvery) {
        bool overlap = false;
        for (size_t j = keepEvery; j < labelled.size() && !overlap; j += keepEvery) {
            const double distance = mTicks[labelled[j]].position - mTicks[labelled[j - keepEvery]].position;
            overlap = distance < 0.5 * (widths[j] + widths[j - keepEvery]) + gap;
        }
        if (!overlap)
            break;
    }
    for (size_t j = 0; j < labelled.size(); ++j) {
        if (j % keepEvery == 0)
            continue;
        mTicks[labelled[j]].text.clear();
        mTicks[labelled[j]].kind = tick_subdivision;
    }
}

}  // namespace vx3
