// Measurements over a curve's samples: the state levels of a two-level signal, its frequency and
// duty cycle, the times and slew rates of its edges, and its extremes.
//
// Every measurement reads the real samples of an interval [x1, x2] in rising x, NaN standing for
// the curve's end on its side; where a bound falls between two samples the curve is read there
// by linear interpolation, so that the interval ends count as points of the curve. Undefined
// samples split the curve: no crossing, edge or period reaches over them. A measurement that
// finds nothing to measure answers NaN. Complex curves have no levels or edges: NaN (or false).
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "expressions/cPostProcessCurveDescriptionUser.h"
#include "expressions/postProcessCalculus.h"
#include "expressions/postProcessOperators.h"

namespace vx3::postProcess {

// ---- State levels

// The histogram behind the state levels: samples weighted by the length of x they stand for,
// in kBins bins between the minimum and the maximum. Two passes over the same samples: add, then
// (after finishFirstPass) confirm, which looks closer at the window around each level.
class cStateLevelHistogram {
public:
    static constexpr int kBins = 100;
    // A level's window: its bin and this many on each side, which must hold this share of the
    // weight of its half of the range.
    static constexpr int kDwellWindow = 2;
    static constexpr long double kDwellShare = 1.0L / 3;
    // The window cut finer in the second pass, for its weighted median.
    static constexpr int kFineBins = 5000;

    cStateLevelHistogram(double minimum, double maximum);
    void add(double y, double weight);
    void finishFirstPass();
    void confirm(double y, double weight);
    // The levels of the lower and the upper half; see computeStateLevels.
    void levels(double& low, double& high) const;

private:
    int binOf(double y) const;
    // The most populated bin of the half that starts at first and runs in direction step, and
    // its window; false when the half has no dwell.
    bool findDwell(int first, int step, int& mode, int& windowLo, int& windowHi) const;
    // The level of half k (0 low, 1 high), or fallback when it has no dwell.
    double levelOf(int k, double fallback) const;

    double mMinimum, mMaximum;
    std::vector<long double> mWeights;
    // Per bin, the weighted majority vote among its values.
    std::vector<double> mCandidates;
    std::vector<long double> mVotes;
    // Per half, from finishFirstPass: the dwell's bin and window (no dwell: mode -1), and from
    // confirm: the weight of the mode bin's winning value and the window's fine bins.
    struct cDwell {
        int mode = -1, windowLo = 0, windowHi = -1;
        long double candidateWeight = 0;
        std::vector<long double> fineWeights, fineSums;
    };
    cDwell mDwells[2];
};

// Calls take(y, weight) for each defined sample of [x1, x2], weight being half the x-length of
// the defined segments on its sides.
template <class X, class Y, class Take>
void walkWeightedSamples(const cCurveSamples<X, Y>& s, double x1, double x2, Take&& take)
{
    double previousX = NAN, previousY = NAN, pending = 0;
    bool started = false;
    walkSamplesInInterval(s, x1, x2, [&](double x, double y) {
        double carried = 0;
        if (started && !std::isnan(previousY) && !std::isnan(y)) {
            const double half = 0.5 * (x - previousX);
            pending += half;
            carried = half;
        }
        if (started && !std::isnan(previousY))
            take(previousY, pending);
        started = true;
        previousX = x;
        previousY = y;
        pending = carried;
    });
    if (started && !std::isnan(previousY))
        take(previousY, pending);
}

// The low and high state levels of the curve over [x1, x2]. The range between minimum and
// maximum is cut into 100 bins, and in two halves. In each half the most populated bin marks the
// level, if the curve dwells there: that bin and two on each side (its window) hold at least a
// third of the half's weight. The level is the value that holds more than half of the window's
// weight, as the flat top of a simulated pulse does, else the window's weighted median (to a
// 5000th of the window), which noise leaves in its middle and an edge's tail doesn't pull the way
// it pulls a mean. A half without a dwell (a ramp, a triangle, a sine) takes the minimum or the
// maximum. A sample weighs half the x-length of the defined segments on its sides, so that dense
// sampling on the edges doesn't pull the levels. False when the interval holds no defined sample.
template <class X, class Y>
bool computeStateLevels(const cCurveSamples<X, Y>& s, double x1, double x2, double& low, double& high)
{
    low = high = NAN;
    if constexpr (kIsComplex<Y>) {
        return false;
    } else {
        double minimum = INFINITY, maximum = -INFINITY;
        walkSamplesInInterval(s, x1, x2, [&](double, double y) {
            if (!std::isnan(y)) {
                minimum = std::min(minimum, y);
                maximum = std::max(maximum, y);
            }
        });
        if (!(minimum <= maximum))
            return false;
        if (!std::isfinite(minimum) || !std::isfinite(maximum) || minimum == maximum) {
            low = minimum;
            high = maximum;
            return true;
        }
        cStateLevelHistogram histogram(minimum, maximum);
        walkWeightedSamples(s, x1, x2, [&](double y, double weight) { histogram.add(y, weight); });
        histogram.finishFirstPass();
        walkWeightedSamples(s, x1, x2, [&](double y, double weight) { histogram.confirm(y, weight); });
        histogram.levels(low, high);
        return true;
    }
}

// ---- Crossings, frequency and duty cycle

// Collects the crossings of one threshold and makes periods of them: from a rising crossing to
// the next one, with the falling crossing between them. A break (an undefined sample) ends the
// period under way.
class cPeriodAccumulator {
public:
    explicit cPeriodAccumulator(double threshold) : mThreshold(threshold) {}
    void addPoint(double x, double y);

    // NaN without a whole period.
    double meanPeriod() const;
    double meanDutyCycle() const;

private:
    double mThreshold;
    bool mKnown = false, mAbove = false;
    double mPreviousX = 0, mPreviousY = 0;
    double mRising = NAN, mFalling = NAN;  // of the period under way
    uint64_t mPeriods = 0;
    long double mPeriodSum = 0, mDutySum = 0;
};

template <class X, class Y>
bool accumulatePeriods(const cCurveSamples<X, Y>& s, double x1, double x2, cPeriodAccumulator& periods)
{
    if constexpr (kIsComplex<Y>)
        return false;
    else
        return walkSamplesInInterval(s, x1, x2, [&](double x, double y) { periods.addPoint(x, y); });
}

// 1 / the mean period between successive rising crossings of threshold (interpolated between
// samples); NaN with fewer than two rising crossings in a row.
template <class X, class Y>
double computeFrequency(const cCurveSamples<X, Y>& s, double threshold, double x1 = NAN, double x2 = NAN)
{
    cPeriodAccumulator periods(threshold);
    if (!accumulatePeriods(s, x1, x2, periods))
        return NAN;
    const double period = periods.meanPeriod();
    return period > 0 ? 1.0 / period : NAN;
}

// The part of each whole period (rising crossing to the next rising crossing) spent at or above
// threshold, averaged over the periods: a ratio from 0 to 1. NaN without a whole period.
template <class X, class Y>
double computeCurveDutyCycle(const cCurveSamples<X, Y>& s, double threshold, double x1 = NAN, double x2 = NAN)
{
    cPeriodAccumulator periods(threshold);
    if (!accumulatePeriods(s, x1, x2, periods))
        return NAN;
    return periods.meanDutyCycle();
}

// ---- Edges

namespace edgeMeasure {
enum edge_kind { rising_edge = 0, falling_edge = 1, slew_edge = 2 };
}

// min, average and max over the edges found; NaN without edges. lowReference and highReference
// are the crossing levels used.
struct cEdgeStatistics {
    double minimum = NAN, average = NAN, maximum = NAN;
    uint64_t count = 0;
    double lowReference = NAN, highReference = NAN;
};

// Finds edges between two reference levels: a rising edge runs from the last rising crossing of
// the low reference to the next rising crossing of the high one, a falling edge from the last
// falling crossing of the high reference to the next falling crossing of the low one. An edge
// that turns back before reaching the far reference, or that was under way when the interval
// began, doesn't count.
class cEdgeDetector {
public:
    cEdgeDetector(double lowReference, double highReference, edgeMeasure::edge_kind kind);
    void addPoint(double x, double y);
    cEdgeStatistics result() const;

private:
    void crossed(bool highReference, bool rising, double x);
    void addEdge(double duration);

    double mLow, mHigh;
    edgeMeasure::edge_kind mKind;
    bool mKnown = false;
    double mPreviousX = 0, mPreviousY = 0;
    double mRiseStart = NAN, mFallStart = NAN;
    uint64_t mCount = 0;
    long double mSum = 0;
    double mMinimum = INFINITY, mMaximum = -INFINITY;
};

// The edges of the curve over [x1, x2] between lowPercent and highPercent (0 to 100) of the span
// from state level low to high: their times for rising or falling edges; for slew, the span
// between the references over the time, for rising and falling edges alike (a positive rate). No
// edges when lowPercent isn't below highPercent or the levels aren't in order.
template <class X, class Y>
cEdgeStatistics computeEdgeTimesBetweenLevels(const cCurveSamples<X, Y>& s, double low, double high,
                                              double lowPercent, double highPercent, double x1, double x2,
                                              edgeMeasure::edge_kind kind)
{
    if constexpr (kIsComplex<Y>) {
        return cEdgeStatistics();
    } else {
        if (!(lowPercent < highPercent) || !(high > low))
            return cEdgeStatistics();
        const double span = high - low;
        cEdgeDetector detector(low + span * lowPercent / 100.0, low + span * highPercent / 100.0, kind);
        walkSamplesInInterval(s, x1, x2, [&](double x, double y) { detector.addPoint(x, y); });
        return detector.result();
    }
}

// The same between the state levels of the curve over the interval (computeStateLevels).
template <class X, class Y>
cEdgeStatistics computeEdgeTimes(const cCurveSamples<X, Y>& s, double lowPercent, double highPercent, double x1,
                                 double x2, edgeMeasure::edge_kind kind)
{
    double low = NAN, high = NAN;
    if (!computeStateLevels(s, x1, x2, low, high))
        return cEdgeStatistics();
    return computeEdgeTimesBetweenLevels(s, low, high, lowPercent, highPercent, x1, x2, kind);
}

// The single values of computeEdgeTimes, with the usual references of 10 and 90 percent.
template <class X, class Y>
double computeCurveAverageSlewRate(const cCurveSamples<X, Y>& s, double lowPercent = 10, double highPercent = 90,
                                   double x1 = NAN, double x2 = NAN)
{
    return computeEdgeTimes(s, lowPercent, highPercent, x1, x2, edgeMeasure::slew_edge).average;
}
template <class X, class Y>
double computeCurveMinSlewRate(const cCurveSamples<X, Y>& s, double lowPercent = 10, double highPercent = 90,
                               double x1 = NAN, double x2 = NAN)
{
    return computeEdgeTimes(s, lowPercent, highPercent, x1, x2, edgeMeasure::slew_edge).minimum;
}
template <class X, class Y>
double computeCurveMaxSlewRate(const cCurveSamples<X, Y>& s, double lowPercent = 10, double highPercent = 90,
                               double x1 = NAN, double x2 = NAN)
{
    return computeEdgeTimes(s, lowPercent, highPercent, x1, x2, edgeMeasure::slew_edge).maximum;
}
template <class X, class Y>
double computeCurveAverageRiseTime(const cCurveSamples<X, Y>& s, double lowPercent = 10, double highPercent = 90,
                                   double x1 = NAN, double x2 = NAN)
{
    return computeEdgeTimes(s, lowPercent, highPercent, x1, x2, edgeMeasure::rising_edge).average;
}
template <class X, class Y>
double computeCurveMinRiseTime(const cCurveSamples<X, Y>& s, double lowPercent = 10, double highPercent = 90,
                               double x1 = NAN, double x2 = NAN)
{
    return computeEdgeTimes(s, lowPercent, highPercent, x1, x2, edgeMeasure::rising_edge).minimum;
}
template <class X, class Y>
double computeCurveMaxRiseTime(const cCurveSamples<X, Y>& s, double lowPercent = 10, double highPercent = 90,
                               double x1 = NAN, double x2 = NAN)
{
    return computeEdgeTimes(s, lowPercent, highPercent, x1, x2, edgeMeasure::rising_edge).maximum;
}
template <class X, class Y>
double computeCurveAverageFallTime(const cCurveSamples<X, Y>& s, double lowPercent = 10, double highPercent = 90,
                                   double x1 = NAN, double x2 = NAN)
{
    return computeEdgeTimes(s, lowPercent, highPercent, x1, x2, edgeMeasure::falling_edge).average;
}
template <class X, class Y>
double computeCurveMinFallTime(const cCurveSamples<X, Y>& s, double lowPercent = 10, double highPercent = 90,
                               double x1 = NAN, double x2 = NAN)
{
    return computeEdgeTimes(s, lowPercent, highPercent, x1, x2, edgeMeasure::falling_edge).minimum;
}
template <class X, class Y>
double computeCurveMaxFallTime(const cCurveSamples<X, Y>& s, double lowPercent = 10, double highPercent = 90,
                               double x1 = NAN, double x2 = NAN)
{
    return computeEdgeTimes(s, lowPercent, highPercent, x1, x2, edgeMeasure::falling_edge).maximum;
}

// ---- Extremes

// The smallest and largest defined value over [x1, x2] and the x where each occurs first; the
// interpolated points at the bounds count. False (all NaN) when there is none.
template <class X, class Y>
bool computeMinMaxXValues(const cCurveSamples<X, Y>& s, double x1, double x2, double& minY, double& xAtMin,
                          double& maxY, double& xAtMax)
{
    minY = xAtMin = maxY = xAtMax = NAN;
    if constexpr (kIsComplex<Y>) {
        return false;
    } else {
        bool found = false;
        walkSamplesInInterval(s, x1, x2, [&](double x, double y) {
            if (std::isnan(y))
                return;
            if (!found || y < minY) {
                minY = y;
                xAtMin = x;
            }
            if (!found || y > maxY) {
                maxY = y;
                xAtMax = x;
            }
            found = true;
        });
        return found;
    }
}

// measure(samples) on the real samples of the curve of the store a; false with the reason in
// error for a curve that doesn't load or isn't real.
template <class Measure>
bool measureStoreCurve(const cPostProcessCurveDescription& a, Measure&& measure, std::string& error)
{
    curvePlotFunctionArgs::cDataVectors vectors;
    if (!a.load(false, error) || !a.computeDataVectors(vectors, error))
        return false;
    bool real = false;
    const bool walked = visitSamples(vectors, [&](const auto& samples) {
        if constexpr (!kIsComplex<std::remove_cvref_t<decltype(samples.y[0])>>) {
            real = true;
            measure(samples);
        }
    });
    if (!walked || !real) {
        error = cPostProcessCurveDescriptionUser::kComplexMessage;
        return false;
    }
    return true;
}

}  // namespace vx3::postProcess
