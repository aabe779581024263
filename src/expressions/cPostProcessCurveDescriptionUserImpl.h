// The templates of cPostProcessCurveDescriptionUser (included by its header).
#pragma once

#include <algorithm>

namespace vx3 {

namespace postProcess {

// Reads one curve at rising x positions, remembering where it stands. Complex values are
// interpolated part by part, which linear interpolation of the complex number does.
template <class X, class Y>
class cCurveWalker {
public:
    using tValue = tWide<Y>;

    explicit cCurveWalker(const cCurveSamples<X, Y>& samples) : mSamples(samples) {}

    // The value at x, not below the x of the previous call: interpolated between the neighbours,
    // the mean of both sides at a jump (two samples at one x), 0 outside the curve, NaN when the
    // sample reached is undefined.
    tValue valueAt(double x)
    {
        const uint64_t count = mSamples.count;
        if (!count)
            return undefinedValue<tValue>();
        while (mCurrent + 1 < count && x > static_cast<double>(mSamples.x[mCurrent]))
            ++mCurrent;
        const double xCurrent = static_cast<double>(mSamples.x[mCurrent]);
        const tValue yCurrent = widen<tValue>(mSamples.y[mCurrent]);
        if (checkIsUndefined(yCurrent))
            return undefinedValue<tValue>();
        if (x == xCurrent) {
            if (mCurrent + 1 < count && static_cast<double>(mSamples.x[mCurrent + 1]) == xCurrent)
                return (yCurrent + widen<tValue>(mSamples.y[mCurrent + 1])) * 0.5L;
            if (mCurrent > 0 && static_cast<double>(mSamples.x[mCurrent - 1]) == xCurrent)
                return (widen<tValue>(mSamples.y[mCurrent - 1]) + yCurrent) * 0.5L;
            return yCurrent;
        }
        if (x > xCurrent || mCurrent == 0)
            return tValue(0);  // outside the curve: it adds nothing
        const long double xPrevious = static_cast<double>(mSamples.x[mCurrent - 1]);
        const tValue yPrevious = widen<tValue>(mSamples.y[mCurrent - 1]);
        return yPrevious + (yCurrent - yPrevious) * ((static_cast<long double>(x) - xPrevious) /
                                                     (static_cast<long double>(xCurrent) - xPrevious));
    }

private:
    const cCurveSamples<X, Y>& mSamples;
    uint64_t mCurrent = 0;
};

}  // namespace postProcess

template <class XA, class YA, class XB, class YB>
bool cPostProcessCurveDescriptionUser::checkXVectorsForExactMatch(const postProcess::cCurveSamples<XA, YA>& a,
                                                                  const postProcess::cCurveSamples<XB, YB>& b)
{
    if (a.count != b.count)
        return false;
    if constexpr (std::is_same_v<XA, XB>) {
        if (a.x.data == b.x.data && a.x.stride == b.x.stride)
            return true;
    }
    for (uint64_t i = 0; i < a.count; ++i)
        if (static_cast<double>(a.x[i]) != static_cast<double>(b.x[i]))
            return false;
    return true;
}

template <class XA, class YA, class XB, class YB>
bool cPostProcessCurveDescriptionUser::buildX(const postProcess::cCurveSamples<XA, YA>& a,
                                              const postProcess::cCurveSamples<XB, YB>& b, bool unionMode,
                                              bool requireMonotone, postProcess::cGrid& grid)
{
    grid = postProcess::cGrid();
    const bool monotone = a.monotone && b.monotone;
    if (!monotone && requireMonotone) {
        mError = kNonMonotoneMessage;
        return false;
    }
    if (checkXVectorsForExactMatch(a, b)) {
        grid.sharedInput = 0;
        grid.size = a.count;
        return true;
    }
    if (!monotone) {
        mError = kNonMonotoneMessage;
        return false;
    }
    // A merge of both rising axes; equal values give one grid point.
    constexpr double kNone = 1e300;
    grid.values.reserve(a.count + b.count);
    uint64_t i = 0, j = 0;
    bool startedA = false, startedB = false;
    while (true) {
        double candidate = kNone;
        bool someEnded = false;
        if (i < a.count)
            candidate = std::min(candidate, static_cast<double>(a.x[i]));
        else
            someEnded = true;
        if (j < b.count)
            candidate = std::min(candidate, static_cast<double>(b.x[j]));
        else
            someEnded = true;
        if (candidate == kNone)
            break;
        if (i < a.count && static_cast<double>(a.x[i]) == candidate) {
            ++i;
            startedA = true;
        }
        if (j < b.count && static_cast<double>(b.x[j]) == candidate) {
            ++j;
            startedB = true;
        }
        if (unionMode) {
            grid.values.push_back(candidate);
        } else {
            if (someEnded)
                break;
            if (startedA && startedB)
                grid.values.push_back(candidate);
        }
    }
    grid.size = grid.values.size();
    return true;
}

template <class Op, class XA, class YA, class XB, class YB, class R>
void cPostProcessCurveDescriptionUser::applyOperatorToTwoCurvesImpl(const postProcess::cCurveSamples<XA, YA>& a,
                                                                    const postProcess::cCurveSamples<XB, YB>& b,
                                                                    const postProcess::cGrid& grid, Op op, R* result)
{
    using namespace postProcess;
    // A real curve with a complex one: the real one widens with zero imaginary part.
    using tValue = std::conditional_t<kIsComplex<YA> || kIsComplex<YB>, std::complex<long double>, long double>;
    using tPair = std::conditional_t<kIsComplex<tValue>, std::complex<double>, double>;
    static_assert(kIsComplex<R> || !kIsComplex<tValue>, "a complex combination needs a complex result");
    const uint64_t n = grid.size;
    if (n == a.count && n == b.count) {
        // One grid: the samples pair without interpolation.
        if constexpr (!kIsComplex<tValue> && !kIsComplex<R> && kOperatorPropagatesNaN<Op>) {
            if (a.y.stride == 1 && b.y.stride == 1) {
                const YA* __restrict ya = a.y.data;
                const YB* __restrict yb = b.y.data;
                for (uint64_t k = 0; k < n; ++k)
                    result[k] = op(static_cast<double>(ya[k]), static_cast<double>(yb[k]));
                return;
            }
        }
        for (uint64_t k = 0; k < n; ++k) {
            const tPair va = widen<tPair>(a.y[k]), vb = widen<tPair>(b.y[k]);
            result[k] = checkIsUndefined(va) || checkIsUndefined(vb) ? undefinedValue<R>() : narrow<R>(op(va, vb));
        }
        return;
    }
    cCurveWalker<XA, YA> walkA(a);
    cCurveWalker<XB, YB> walkB(b);
    for (uint64_t k = 0; k < n; ++k) {
        const double x = grid.sharedInput == 0 ? static_cast<double>(a.x[k])
                         : grid.sharedInput == 1 ? static_cast<double>(b.x[k])
                                                 : grid.values[k];
        const tValue va = widen<tValue>(walkA.valueAt(x)), vb = widen<tValue>(walkB.valueAt(x));
        result[k] = checkIsUndefined(va) || checkIsUndefined(vb) ? undefinedValue<R>() : narrow<R>(op(va, vb));
    }
}

template <class Op>
bool cPostProcessCurveDescriptionUser::applyOperatorToTwoCurves(cCurvePlotDataFile& store,
                                                                cCurvePlotDataSection& resultSection,
                                                                const std::string& name,
                                                                const cPostProcessCurveDescription& a,
                                                                const cPostProcessCurveDescription& b, bool unionMode,
                                                                Op op, uint64_t& resultIndex)
{
    curvePlotFunctionArgs::cDataVectors va, vb;
    if (!a.load(false, mError) || !b.load(false, mError) || !a.computeDataVectors(va, mError) ||
        !b.computeDataVectors(vb, mError))
        return false;
    std::vector<double> x;
    std::unique_ptr<double[]> y;
    std::unique_ptr<std::complex<double>[]> yComplex;
    bool combined = false, typesWalked = false;
    typesWalked = postProcess::visitSamples(va, [&](const auto& samplesA) {
        typesWalked = postProcess::visitSamples(vb, [&](const auto& samplesB) {
            using tA = std::remove_cvref_t<decltype(samplesA.y[0])>;
            using tB = std::remove_cvref_t<decltype(samplesB.y[0])>;
            postProcess::cGrid grid;
            if constexpr (postProcess::kIsComplex<tA> || postProcess::kIsComplex<tB>) {
                if (!applyOperatorToTwoCurves(samplesA, samplesB, unionMode, op, grid, yComplex))
                    return;
            } else {
                if (!applyOperatorToTwoCurves(samplesA, samplesB, unionMode, op, grid, y))
                    return;
            }
            if (grid.sharedInput == 0) {
                x.resize(grid.size);
                for (uint64_t i = 0; i < grid.size; ++i)
                    x[i] = static_cast<double>(samplesA.x[i]);
            } else {
                x = std::move(grid.values);
            }
            combined = true;
        });
    }) && typesWalked;
    if (!typesWalked) {
        mError = "Incompatible data type.";
        return false;
    }
    if (!combined)
        return false;
    const cCurvePlotVariable* first = a.getCurvePtr();
    const auto unit = static_cast<curvePlotDataType::dataUnit>(first->getUnitIdentifier());
    const curvePlotProperties::data_type dataType =
        yComplex ? curvePlotProperties::parameterized_double_complex : curvePlotProperties::parameterized_double;
    return postProcess::storeResultCurve(
        store, resultSection, name, dataType, unit,
        [&](cCurvePlotVariable& result) {
            return yComplex ? result.setParameterizedDoubleComplexValues(x.data(), yComplex.get(), x.size())
                            : result.setParameterizedDoubleValues(x.data(), y.get(), x.size());
        },
        resultIndex, mError);
}

}  // namespace vx3
