#include "expressions/postProcessMeasure.h"

namespace vx3::postProcess {

cStateLevelHistogram::cStateLevelHistogram(double minimum, double maximum)
    : mMinimum(minimum),
      mMaximum(maximum),
      mWeights(kBins, 0.0L),
      mWeightedSums(kBins, 0.0L),
      mCandidates(kBins, NAN),
      mVotes(kBins, 0.0L)
{
}

int cStateLevelHistogram::binOf(double y) const
{
    const double position = (y - mMinimum) / (mMaximum - mMinimum) * kBins;
    return static_cast<int>(std::clamp(position, 0.0, static_cast<double>(kBins - 1)));
}

void cStateLevelHistogram::add(double y, double weight)
{
    if (!(weight > 0) || std::isnan(y))
        return;
    const int bin = binOf(y);
    mWeights[bin] += weight;
    mWeightedSums[bin] += static_cast<long double>(weight) * y;
    // A weighted majority vote: a value that holds more than half of the bin's weight wins.
    if (y == mCandidates[bin]) {
        mVotes[bin] += weight;
    } else if (mVotes[bin] >= weight) {
        mVotes[bin] -= weight;
    } else {
        mCandidates[bin] = y;
        mVotes[bin] = weight - mVotes[bin];
    }
}

int cStateLevelHistogram::modeOfHalf(int first, int step) const
{
    constexpr int kHalf = kBins / 2;
    const int lo = std::min(first, first + step * (kHalf - 1)), hi = std::max(first, first + step * (kHalf - 1));
    long double total = 0, best = 0;
    int mode = -1;
    // From the half's outer end, so that a tie goes outwards.
    for (int k = 0, bin = first; k < kHalf; ++k, bin += step) {
        total += mWeights[bin];
        if (mWeights[bin] > best) {
            best = mWeights[bin];
            mode = bin;
        }
    }
    if (mode < 0)
        return -1;
    // A dwell rather than a bin that a ramp's samples happen to fill twice: the neighbourhood
    // holds a good part of the half, also when noise spreads the level over a few bins.
    long double around = 0;
    for (int bin = std::max(lo, mode - kDwellWindow); bin <= std::min(hi, mode + kDwellWindow); ++bin)
        around += mWeights[bin];
    return around >= total * kDwellShare ? mode : -1;
}

void cStateLevelHistogram::finishFirstPass()
{
    mModes[0] = modeOfHalf(0, 1);
    mModes[1] = modeOfHalf(kBins - 1, -1);
    for (int k = 0; k < 2; ++k) {
        mFineWeights[k].assign(kFineBins, 0.0L);
        mFineSums[k].assign(kFineBins, 0.0L);
    }
}

void cStateLevelHistogram::confirm(double y, double weight)
{
    if (!(weight > 0) || std::isnan(y))
        return;
    const int bin = binOf(y);
    for (int k = 0; k < 2; ++k) {
        if (bin != mModes[k])
            continue;
        if (y == mCandidates[bin])
            mCandidateWeights[k] += weight;
        const double width = (mMaximum - mMinimum) / kBins;
        const double position = ((y - mMinimum) - bin * width) / width * kFineBins;
        const auto fine = static_cast<int>(std::clamp(position, 0.0, static_cast<double>(kFineBins - 1)));
        mFineWeights[k][fine] += weight;
        mFineSums[k][fine] += static_cast<long double>(weight) * y;
    }
}

double cStateLevelHistogram::levelOf(int k, double fallback) const
{
    const int bin = mModes[k];
    if (bin < 0)
        return fallback;
    if (mCandidateWeights[k] > 0.5L * mWeights[bin])
        return mCandidates[bin];
    // The fine bin that holds the median, and the mean of its samples.
    long double total = 0;
    for (const long double w : mFineWeights[k])
        total += w;
    long double below = 0;
    for (int fine = 0; fine < kFineBins; ++fine) {
        below += mFineWeights[k][fine];
        if (below >= 0.5L * total && mFineWeights[k][fine] > 0)
            return static_cast<double>(mFineSums[k][fine] / mFineWeights[k][fine]);
    }
    return static_cast<double>(mWeightedSums[bin] / mWeights[bin]);
}

void cStateLevelHistogram::levels(double& low, double& high) const
{
    low = levelOf(0, mMinimum);
    high = levelOf(1, mMaximum);
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
