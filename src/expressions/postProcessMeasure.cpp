#include "expressions/postProcessMeasure.h"

namespace vx3::postProcess {

cStateLevelHistogram::cStateLevelHistogram(double minimum, double maximum)
    : mMinimum(minimum), mMaximum(maximum), mWeights(kBins, 0.0L), mCandidates(kBins, NAN), mVotes(kBins, 0.0L)
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

bool cStateLevelHistogram::findDwell(int first, int step, int& mode, int& windowLo, int& windowHi) const
{
    constexpr int kHalf = kBins / 2;
    const int lo = std::min(first, first + step * (kHalf - 1)), hi = std::max(first, first + step * (kHalf - 1));
    long double total = 0, best = 0;
    mode = -1;
    // From the half's outer end, so that a tie goes outwards.
    for (int k = 0, bin = first; k < kHalf; ++k, bin += step) {
        total += mWeights[bin];
        if (mWeights[bin] > best) {
            best = mWeights[bin];
            mode = bin;
        }
    }
    if (mode < 0)
        return false;
    // A dwell rather than a bin that a ramp's samples happen to fill twice: the window holds a
    // good part of the half, also when noise spreads the level over a few bins.
    windowLo = std::max(lo, mode - kDwellWindow);
    windowHi = std::min(hi, mode + kDwellWindow);
    long double around = 0;
    for (int bin = windowLo; bin <= windowHi; ++bin)
        around += mWeights[bin];
    if (around < total * kDwellShare)
        mode = -1;
    return mode >= 0;
}

void cStateLevelHistogram::finishFirstPass()
{
    for (int k = 0; k < 2; ++k) {
        cDwell& dwell = mDwells[k];
        dwell = cDwell();
        if (findDwell(k == 0 ? 0 : kBins - 1, k == 0 ? 1 : -1, dwell.mode, dwell.windowLo, dwell.windowHi)) {
            dwell.fineWeights.assign(kFineBins, 0.0L);
            dwell.fineSums.assign(kFineBins, 0.0L);
        }
    }
}

void cStateLevelHistogram::confirm(double y, double weight)
{
    if (!(weight > 0) || std::isnan(y))
        return;
    const int bin = binOf(y);
    for (cDwell& dwell : mDwells) {
        if (dwell.mode < 0 || bin < dwell.windowLo || bin > dwell.windowHi)
            continue;
        if (bin == dwell.mode && y == mCandidates[bin])
            dwell.candidateWeight += weight;
        const double binWidth = (mMaximum - mMinimum) / kBins;
        const double start = mMinimum + dwell.windowLo * binWidth;
        const double position = (y - start) / (binWidth * (dwell.windowHi - dwell.windowLo + 1)) * kFineBins;
        const auto fine = static_cast<int>(std::clamp(position, 0.0, static_cast<double>(kFineBins - 1)));
        dwell.fineWeights[fine] += weight;
        dwell.fineSums[fine] += static_cast<long double>(weight) * y;
    }
}

double cStateLevelHistogram::levelOf(int k, double fallback) const
{
    const cDwell& dwell = mDwells[k];
    if (dwell.mode < 0)
        return fallback;
    long double total = 0;
    for (const long double w : dwell.fineWeights)
        total += w;
    if (dwell.candidateWeight > 0.5L * total)
        return mCandidates[dwell.mode];
    // The fine bin that holds the median, and the mean of its samples.
    long double below = 0;
    for (int fine = 0; fine < kFineBins; ++fine) {
        below += dwell.fineWeights[fine];
        if (below >= 0.5L * total && dwell.fineWeights[fine] > 0)
            return static_cast<double>(dwell.fineSums[fine] / dwell.fineWeights[fine]);
    }
    return fallback;
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
