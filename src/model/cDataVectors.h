// Pointers to a curve's loaded vectors, as handed to every reader of values.
#pragma once

#include <complex>
#include <cstdint>

#include "model/dataType.h"
#include "model/derivedCurveFunction.h"

namespace vx3::curvePlotFunctionArgs {

struct cDataVectors {
    unsigned yType = curvePlotProperties::unclear;
    unsigned xType = curvePlotProperties::unclear;

    const double* xDouble = nullptr;
    const float* xFloat = nullptr;
    const uint64_t* xUint64 = nullptr;
    const uint32_t* xUint32 = nullptr;

    const double* yDouble = nullptr;
    const float* yFloat = nullptr;
    const std::complex<double>* yDoubleComplex = nullptr;
    const std::complex<float>* yFloatComplex = nullptr;

    uint64_t count = 0;
    uint64_t xStride = 1;  // 1 for plain data, the cut stride for a sweep matrix
    uint64_t yStride = 1;
    uint64_t firstIndex = 0;
    unsigned monotony = derivedCurveFunction::monotony_unknown;
    long double timeScaleFactor = 1.0L;

    bool checkHasX() const { return xDouble || xFloat || xUint64 || xUint32; }
    bool checkHasY() const { return yDouble || yFloat || yDoubleComplex || yFloatComplex; }
};

// fn(xs, ys) with the typed pointers that vectors holds (x must be set).
template <class Fn>
auto visitDataVectors(const cDataVectors& v, Fn&& fn)
{
    auto withY = [&](auto xs) {
        if (v.yDouble)
            return fn(xs, v.yDouble);
        if (v.yFloat)
            return fn(xs, v.yFloat);
        if (v.yDoubleComplex)
            return fn(xs, v.yDoubleComplex);
        return fn(xs, v.yFloatComplex);
    };
    if (v.xDouble)
        return withY(v.xDouble);
    if (v.xFloat)
        return withY(v.xFloat);
    return withY(v.xUint64);
}

}  // namespace vx3::curvePlotFunctionArgs
