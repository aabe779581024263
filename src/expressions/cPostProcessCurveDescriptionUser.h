// The curve engine: combines whole curves with unlike x-grids.
//
// Two curves combine on a grid built from both x-axes: the union of their x-values for an
// addition (a curve adds nothing where it has no samples), the part of that union where both
// curves have samples for every other operation. Each curve is read at each grid point by linear
// interpolation between its neighbouring samples; equal grids pair their samples directly.
//
// Curves reach tens of millions of samples: the walks use raw strided pointers, with no
// allocation or virtual call per sample, and the result is allocated once at the grid's size.
#pragma once

#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "expressions/cPostProcessCurveDescription.h"
#include "expressions/postProcessOperators.h"
#include "model/cCurvePlotDataFile.h"

namespace vx3 {

namespace postProcess {

// An array read with a stride; a negative stride walks it backwards.
template <class T>
struct cStrided {
    const T* data = nullptr;
    std::ptrdiff_t stride = 1;
    T operator[](uint64_t i) const { return data[static_cast<std::ptrdiff_t>(i) * stride]; }
};

// A curve's samples in walking order: rising x, or the stored order of a non-monotone x-axis.
template <class X, class Y>
struct cCurveSamples {
    cStrided<X> x;
    cStrided<Y> y;
    uint64_t count = 0;
    bool monotone = true;  // x never falls in walking order (and holds no NaN)
};

// The samples of count values at x and y (read with strides): a falling x-axis is walked from
// its end, so that it rises.
template <class X, class Y>
cCurveSamples<X, Y> makeCurveSamples(const X* x, const Y* y, uint64_t count, std::ptrdiff_t xStride = 1,
                                     std::ptrdiff_t yStride = 1)
{
    cCurveSamples<X, Y> samples{{x, xStride}, {y, yStride}, count, true};
    bool rising = true, falling = true;
    for (uint64_t i = 0; i + 1 < count && (rising || falling); ++i) {
        const double a = static_cast<double>(samples.x[i]), b = static_cast<double>(samples.x[i + 1]);
        if (!(b >= a))
            rising = false;
        if (!(b <= a))
            falling = false;
    }
    if (count && std::isnan(static_cast<double>(samples.x[0])))
        rising = falling = false;
    if (!rising && falling) {
        const auto last = static_cast<std::ptrdiff_t>(count - 1);
        samples.x = {x + last * xStride, -xStride};
        samples.y = {y + last * yStride, -yStride};
    }
    samples.monotone = rising || falling;
    return samples;
}

// The result's x-grid: values of its own, or one input's x-axis used as it is, not copied.
struct cGrid {
    std::vector<double> values;
    int sharedInput = -1;  // 0 or 1: the grid is that input's x-axis in walking order
    uint64_t size = 0;
};

template <class Op>
constexpr bool kOperatorPropagatesNaN = requires { Op::kPropagatesNaN; };

// fn(samples) for a curve's loaded vectors, when the engine walks their types (x double or float,
// y double or float, real or complex); false for others.
template <class Fn>
bool visitSamples(const curvePlotFunctionArgs::cDataVectors& v, Fn&& fn)
{
    const auto xStride = static_cast<std::ptrdiff_t>(v.xStride), yStride = static_cast<std::ptrdiff_t>(v.yStride);
    auto withX = [&](auto xs) {
        if (v.yDouble)
            fn(makeCurveSamples(xs, v.yDouble, v.count, xStride, yStride));
        else if (v.yFloat)
            fn(makeCurveSamples(xs, v.yFloat, v.count, xStride, yStride));
        else if (v.yDoubleComplex)
            fn(makeCurveSamples(xs, v.yDoubleComplex, v.count, xStride, yStride));
        else if (v.yFloatComplex)
            fn(makeCurveSamples(xs, v.yFloatComplex, v.count, xStride, yStride));
        else
            return false;
        return true;
    };
    if (v.xDouble)
        return withX(v.xDouble);
    if (v.xFloat)
        return withX(v.xFloat);
    return false;
}

// Adds the curve name of dataType to resultSection and has fill(curve) give it its values; a
// curve that fill refuses is taken out again, so that no half-made curve reaches the section.
template <class Fill>
bool storeResultCurve(cCurvePlotDataFile& store, cCurvePlotDataSection& resultSection, const std::string& name,
                      curvePlotProperties::data_type dataType, curvePlotDataType::dataUnit unit, Fill&& fill,
                      uint64_t& resultIndex, std::string& error)
{
    const cCurvePlotDataType* type = store.addType(name, dataType, unit);
    const uint64_t index = resultSection.addVariable(type, name);
    cCurvePlotVariable* result = resultSection.getVariablePtr(index);
    if (!result || !fill(*result)) {
        if (result)
            resultSection.removeVariable(index);
        error = "Unsupported curve type.";
        return false;
    }
    resultIndex = index;
    return true;
}

}  // namespace postProcess

class cPostProcessCurveDescriptionUser {
public:
    static constexpr const char* kNonMonotoneMessage = "Can't post process curves with non-monotone x-axis data.";
    static constexpr const char* kComplexMessage = "Incompatible data type.";

    // The reason of the last failure.
    const std::string& getErrorString() const { return mError; }

    // Whether both x-axes hold the same values in walking order.
    template <class XA, class YA, class XB, class YB>
    static bool checkXVectorsForExactMatch(const postProcess::cCurveSamples<XA, YA>& a,
                                           const postProcess::cCurveSamples<XB, YB>& b);

    // The grid of a and b: their union, or (overlap) the part of it where both have samples.
    // Non-monotone x-axes combine only when they are identical, and not at all with
    // requireMonotone.
    template <class XA, class YA, class XB, class YB>
    bool buildX(const postProcess::cCurveSamples<XA, YA>& a, const postProcess::cCurveSamples<XB, YB>& b,
                bool unionMode, bool requireMonotone, postProcess::cGrid& grid);

    // op(a, b) at each point of grid (from buildX) into result, which holds grid.size values:
    // double, or complex when a or b is complex (the real one widened with zero imaginary part).
    template <class Op, class XA, class YA, class XB, class YB, class R>
    static void applyOperatorToTwoCurvesImpl(const postProcess::cCurveSamples<XA, YA>& a,
                                             const postProcess::cCurveSamples<XB, YB>& b,
                                             const postProcess::cGrid& grid, Op op, R* result);

    // buildX, then the combination into y (allocated here at the grid's size). R is double or
    // std::complex<double>; a complex input needs the complex R, and a real-only operator (order,
    // logic) refuses complex inputs.
    template <class Op, class XA, class YA, class XB, class YB, class R>
    bool applyOperatorToTwoCurves(const postProcess::cCurveSamples<XA, YA>& a,
                                  const postProcess::cCurveSamples<XB, YB>& b, bool unionMode, Op op,
                                  postProcess::cGrid& grid, std::unique_ptr<R[]>& y)
    {
        constexpr bool complexIn = postProcess::kIsComplex<YA> || postProcess::kIsComplex<YB>;
        if constexpr (complexIn && (!postProcess::kIsComplex<R> || postProcess::kOperatorIsRealOnly<Op>)) {
            mError = kComplexMessage;
            return false;
        } else {
            if (!buildX(a, b, unionMode, false, grid))
                return false;
            y.reset(new R[grid.size ? grid.size : 1]);
            applyOperatorToTwoCurvesImpl(a, b, grid, op, y.get());
            return true;
        }
    }

    // op(y, scalar) for each sample of a, in walking order, into result (a.count values); a Comm
    // operator gives scalar op y. Undefined samples stay undefined. A complex curve needs a
    // complex R.
    template <class Op, class X, class Y, class S, class R>
    static void applyOperatorToSingleCurve(const postProcess::cCurveSamples<X, Y>& a, S scalar, Op op, R* result)
    {
        using namespace postProcess;
        using tValue = std::conditional_t<kIsComplex<Y> || kIsComplex<S>, std::complex<double>, double>;
        const tValue s = widen<tValue>(scalar);
        for (uint64_t k = 0; k < a.count; ++k) {
            const tValue value = widen<tValue>(a.y[k]);
            result[k] = checkIsUndefined(value) || checkIsUndefined(s) ? undefinedValue<R>() : narrow<R>(op(value, s));
        }
    }

    // a op b as a new double-valued curve name in resultSection (its index in resultIndex).
    template <class Op>
    bool applyOperatorToTwoCurves(cCurvePlotDataFile& store, cCurvePlotDataSection& resultSection,
                                  const std::string& name, const cPostProcessCurveDescription& a,
                                  const cPostProcessCurveDescription& b, bool unionMode, Op op, uint64_t& resultIndex);

private:
    std::string mError;
};

}  // namespace vx3

#include "expressions/cPostProcessCurveDescriptionUserImpl.h"
