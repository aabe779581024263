// Filters of one curve: each sample is replaced by a function of its neighbours in walking
// order, and the x-axis stays as it is.
#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "expressions/cPostProcessCurveDescriptionUser.h"
#include "expressions/postProcessOperators.h"
#include "expressions/postProcessShaping.h"

namespace vx3::postProcess {

// Both parts finite for a complex value.
template <class V>
bool checkIsFiniteValue(const V& value)
{
    if constexpr (kIsComplex<V>)
        return std::isfinite(value.real()) && std::isfinite(value.imag());
    else
        return std::isfinite(value);
}

// Each sample becomes the mean of the samples from i - w to i + w, read from the input, so that
// no result feeds a later window. The window stays centred: near an end, or near an undefined
// sample, it shrinks on both sides to what fits, so that the ends keep their values and an
// undefined sample ends a piece of curve as the curve's end does. Undefined samples stay so.
// Any x-axis order: the window counts samples in walking order.
template <class X, class Y>
void smoothAverage(const cCurveSamples<X, Y>& s, uint64_t halfWidth, std::vector<tStored<Y>>& ys)
{
    using tValue = tWide<Y>;
    const uint64_t n = s.count;
    ys.assign(n, undefinedValue<tStored<Y>>());
    uint64_t start = 0;
    while (start < n) {
        // One piece [start, end) of defined samples.
        if (checkIsUndefined(s.y[start])) {
            ++start;
            continue;
        }
        uint64_t end = start + 1;
        while (end < n && !checkIsUndefined(s.y[end]))
            ++end;
        // Both window bounds only rise along the piece: one running sum serves it.
        tValue sum = tValue(0);
        uint64_t windowLo = start, windowHi = start;  // [windowLo, windowHi)
        for (uint64_t i = start; i < end; ++i) {
            const uint64_t h = std::min({halfWidth, i - start, end - 1 - i});
            const uint64_t lo = i - h, hi = i + h + 1;
            for (; windowHi < hi; ++windowHi)
                sum += widen<tValue>(s.y[windowHi]);
            // Taking an infinite value back out would leave NaN (inf - inf): then the window is
            // summed anew.
            bool resum = false;
            for (; windowLo < lo; ++windowLo) {
                const tValue leaving = widen<tValue>(s.y[windowLo]);
                if (checkIsFiniteValue(leaving))
                    sum -= leaving;
                else
                    resum = true;
            }
            if (resum) {
                sum = tValue(0);
                for (uint64_t k = lo; k < hi; ++k)
                    sum += widen<tValue>(s.y[k]);
            }
            ys[i] = narrow<tStored<Y>>(sum / static_cast<long double>(hi - lo));
        }
        start = end;
    }
}

// The moving average as a filter operator of the engine.
struct cOpSmoothAverage {
    static constexpr uint64_t kDefaultHalfWidth = 2;
    uint64_t halfWidth = kDefaultHalfWidth;

    template <class X, class Y>
    bool operator()(const cCurveSamples<X, Y>& s, std::vector<double>& xs, std::vector<tStored<Y>>& ys,
                    std::string&) const
    {
        xs.resize(s.count);
        for (uint64_t i = 0; i < s.count; ++i)
            xs[i] = static_cast<double>(s.x[i]);
        smoothAverage(s, halfWidth, ys);
        return true;
    }
};

// op(samples) on the curve's samples: new x and y (the filters keep the x-axis).
template <class Op, class X, class Y>
bool applyFilterOperatorToSingleCurve(const cCurveSamples<X, Y>& a, const Op& op, std::vector<double>& xs,
                                      std::vector<tStored<Y>>& ys, std::string& error)
{
    return op(a, xs, ys, error);
}

// The curve a filtered by op, as the new curve name of resultSection (its index in resultIndex);
// false with the reason in error.
template <class Op>
bool applyFilterOperatorToSingleCurve(cCurvePlotDataFile& store, cCurvePlotDataSection& resultSection,
                                      const std::string& name, const cPostProcessCurveDescription& a, const Op& op,
                                      uint64_t& resultIndex, std::string& error)
{
    return shapeStoreCurve(
        store, resultSection, name, a,
        [&](const auto& samples, std::vector<double>& xs, auto& ys, std::string& message) {
            return applyFilterOperatorToSingleCurve(samples, op, xs, ys, message);
        },
        resultIndex, error);
}

}  // namespace vx3::postProcess
