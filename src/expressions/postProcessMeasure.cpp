#include "expressions/postProcessMeasure.h"

namespace vx3::postProcess {

cStateLevelHistogram::cStateLevelHistogram(double minimum, double maximum)
    : mMinimum(minimum), mMaximum(maximum), mWeights(kBins, 0.0L), mWeightedSums(kBins, 0.0L)
{
}

void cStateLevelHistogram::add(double y, double weight)
{
    if (!(weight > 0) || std::isnan(y))
        return;
    const double position = (y - mMinimum) / (mMaximum - mMinimum) * kBins;
    const auto bin = static_cast<unsigned>(std::clamp(position, 0.0, static_cast<double>(kBins - 1)));
    mWeights[bin] += weight;
    mWeightedSums[bin] += static_cast<long double>(weight) * y;
}

void cStateLevelHistogram::levels(double& low, double& high) const
{
    // A level is where the curve dwells: the window of kLevelWindow bins on each side of a
    // centre that holds the most weight of its half. Windows rather than single bins, so that
    // noise spread over neighbouring bins, or samples of a ramp that alias with the bins, don't
    // decide. The centres are tried from the half's outer end, so that a tie goes outwards.
    auto levelOfHalf = [&](int first, int step, double fallback) {
        constexpr int kHalf = static_cast<int>(kBins / 2);
        const int lo = std::min(first, first + step * (kHalf - 1)), hi = std::max(first, first + step * (kHalf - 1));
        long double total = 0;
        for (int bin = lo; bin <= hi; ++bin)
            total += mWeights[bin];
        long double best = 0, bestSum = 0;
        for (int k = 0, centre = first; k < kHalf; ++k, centre += step) {
            long double weight = 0, sum = 0;
            for (int bin = std::max(lo, centre - kLevelWindow); bin <= std::min(hi, centre + kLevelWindow); ++bin) {
                weight += mWeights[bin];
                sum += mWeightedSums[bin];
            }
            if (weight > best) {
                best = weight;
                bestSum = sum;
            }
        }
        // A half that spreads its weight (a ramp, a triangle, a sine) has no level: its
        // extreme stands for it.
        if (!(best > 0) || best < total * kLevelShare)
            return fallback;
        return static_cast<double>(bestSum / best);
    };
    low = levelOfHalf(0, 1, mMinimum);
    high = levelOfHalf(static_cast<int>(kBins) - 1, -1, mMaximum);
}

void cPeriodAccumulator::addPoint(double x, double y)
{
    if (std::isnan(y)) {
        // A gap: the period under way can't be measured across it.
        mKnown = false;
        mRising = mFalling = NAN;
        return;
    }
    const bool above = y >= mThreshold;
    if (mKnown && above != mAbove) {
        // y differs from the previous value here, which lies on the other side of the threshold.
        const long double crossing = mPreviousX + (static_cast<long double>(mThreshold) - mPreviousY) *
                                                      (static_cast<long double>(x) - mPreviousX) /
                                                      (static_cast<long double>(y) - mPreviousY);
        const double at = static_cast<double>(crossing);
        if (above) {
            ++mRisingCrossings;
            if (!std::isnan(mRising) && !std::isnan(mFalling) && at > mRising) {
                const long double period = static_cast<long double>(at) - mRising;
                mPeriodSum += period;
                mDutySum += (static_cast<long double>(mFalling) - mRising) / period;
                ++mPeriods;
            }
            mRising = at;
            mFalling = NAN;
        } else {
            mFalling = at;
        }
    }
    mKnown = true;
    mAbove = above;
    mPreviousX = x;
    mPreviousY = y;
}

double cPeriodAccumulator::meanPeriod() const
{
    return mPeriods ? static_cast<double>(mPeriodSum / mPeriods) : NAN;
}

double cPeriodAccumulator::meanDutyCycle() const
{
    return mPeriods ? static_cast<double>(mDutySum / mPeriods) : NAN;
}

cEdgeDetector::cEdgeDetector(double lowReference, double highReference, edgeMeasure::edge_kind kind)
    : mLow(lowReference), mHigh(highReference), mKind(kind)
{
}

void cEdgeDetector::addPoint(double x, double y)
{
    if (std::isnan(y)) {
        mKnown = false;
        mRiseStart = mFallStart = NAN;
        return;
    }
    if (mKnown) {
        auto crossingOf = [&](double level) {
            return static_cast<double>(mPreviousX + (static_cast<long double>(level) - mPreviousY) *
                                                        (static_cast<long double>(x) - mPreviousX) /
                                                        (static_cast<long double>(y) - mPreviousY));
        };
        // The references in the order in which the segment meets them.
        const bool lowUp = mPreviousY < mLow && y >= mLow, lowDown = mPreviousY >= mLow && y < mLow;
        const bool highUp = mPreviousY < mHigh && y >= mHigh, highDown = mPreviousY >= mHigh && y < mHigh;
        if (y > mPreviousY) {
            if (lowUp)
                crossed(false, true, crossingOf(mLow));
            if (highUp)
                crossed(true, true, crossingOf(mHigh));
        } else {
            if (highDown)
                crossed(true, false, crossingOf(mHigh));
            if (lowDown)
                crossed(false, false, crossingOf(mLow));
        }
    }
    mKnown = true;
    mPreviousX = x;
    mPreviousY = y;
}

void cEdgeDetector::crossed(bool highReference, bool rising, double x)
{
    if (!highReference && rising) {
        mRiseStart = x;
    } else if (highReference && !rising) {
        mFallStart = x;
    } else if (highReference && rising) {
        if (!std::isnan(mRiseStart) && mKind != edgeMeasure::falling_edge)
            addEdge(x - mRiseStart);
        mRiseStart = mFallStart = NAN;
    } else {
        if (!std::isnan(mFallStart) && mKind != edgeMeasure::rising_edge)
            addEdge(x - mFallStart);
        mRiseStart = mFallStart = NAN;
    }
}

void cEdgeDetector::addEdge(double duration)
{
    // A jump (equal x on both references) takes no time and has an infinite slew rate.
    const double value = mKind == edgeMeasure::slew_edge ? (mHigh - mLow) / duration : duration;
    ++mCount;
    mSum += value;
    mMinimum = std::min(mMinimum, value);
    mMaximum = std::max(mMaximum, value);
}

cEdgeStatistics cEdgeDetector::result() const
{
    cEdgeStatistics statistics;
    statistics.lowReference = mLow;
    statistics.highReference = mHigh;
    statistics.count = mCount;
    if (mCount) {
        statistics.minimum = mMinimum;
        statistics.maximum = mMaximum;
        statistics.average = static_cast<double>(mSum / mCount);
    }
    return statistics;
}

}  // namespace vx3::postProcess
