// Complex curves shown through a conversion (magnitude, dB, angle, a part): the converted value
// is computed per point while drawing, so no converted copy of the curve is ever made.
#pragma once

#include <complex>
#include <cstdint>

#include "model/derivedCurveFunction.h"

namespace vx3::plotDrawer {

template <typename X, typename C>
struct cDerivedSource {
    const X* xs = nullptr;
    const std::complex<C>* ys = nullptr;
    uint64_t count = 0;
    uint64_t xStride = 1;
    uint64_t yStride = 1;
    unsigned conversion = derivedCurveFunction::magnitude;
    bool secondValue = false;  // the imaginary part or the angle of a conversion with two values

    uint64_t size() const { return count; }
    double x(uint64_t i) const { return double(xs[i * xStride]); }
    double y(uint64_t i) const
    {
        const std::complex<C> value = ys[i * yStride];
        // The parts need no call; the rest goes through the shared conversion.
        if (conversion == derivedCurveFunction::real_part ||
            (conversion == derivedCurveFunction::real_and_imaginary_part && !secondValue))
            return double(value.real());
        if (conversion == derivedCurveFunction::imaginary_part ||
            (conversion == derivedCurveFunction::real_and_imaginary_part && secondValue))
            return double(value.imag());
        return cDerivedCurveFunction::convertComplexValue(
            std::complex<double>(double(value.real()), double(value.imag())), conversion, secondValue);
    }
};

}  // namespace vx3::plotDrawer
