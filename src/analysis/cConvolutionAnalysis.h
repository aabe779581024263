// Convolution, cross-correlation and auto-correlation of curves, through the transforms of
// both curves resampled on one grid (or, without the option "use FFT", by direct sums).
//
// Without the option "periodic" the vectors are padded with zeros, so that the result is the
// whole linear one: a convolution starts at the sum of both starts, a correlation holds every
// lag at which the curves overlap, from -(length of a - 1) samples up. A periodic result has
// the curves' length and is rotated by half of it, so that time zero lies in the middle.
#pragma once

#include "analysis/cFFTAnalysis.h"

namespace vx3 {

class cConvolutionAnalysis : public cFFTAnalysis {
public:
    using cFFTAnalysis::cFFTAnalysis;

    // "convolution(a*b)", "xcorr(a,b)" and "autocorr(a)" as new curves of the section; the
    // sampling frequency of the grid comes from the options.
    bool computeConvolutionAndAddCurve(cFFTAnalysisArguments& arguments);
    bool computeCrossCorrelationAndAddCurve(cFFTAnalysisArguments& arguments);
    bool computeAutoCorrelationAndAddCurve(cFFTAnalysisArguments& arguments);

    // The convolution of a and b (kind), scaled by dt, on the layout described above; real
    // values unless one input is complex. Exposed for the calculator and the tests.
    template <class T>
    bool computeConvolutionFFT(const std::vector<T>& a, const std::vector<T>& b, int kind, bool periodic, double dt,
                               std::vector<T>& result, int64_t& firstLag);
    template <class T>
    static void computeConvolutionDirect(const std::vector<T>& a, const std::vector<T>& b, int kind, bool periodic,
                                         double dt, std::vector<T>& result, int64_t& firstLag);

    // The smallest length of at least n, even, whose only factors are 2, 3, 5 and 7: the
    // transforms are fastest there.
    static uint64_t computeFastSize(uint64_t n);

private:
    bool computeConvolutionAndAddCurveImpl(cFFTAnalysisArguments& arguments, int kind);
    bool computeConvolutionRealFFT(const std::vector<double>& a, const std::vector<double>& b, int kind, uint64_t size,
                                   std::vector<double>& circular);
    bool computeConvolutionComplexFFT(const std::vector<tComplex>& a, const std::vector<tComplex>& b, int kind,
                                      uint64_t size, std::vector<tComplex>& circular);
    bool computeAutoCorrelationRealFFT(const std::vector<double>& a, uint64_t size, std::vector<double>& circular);
    bool computeAutoCorrelationComplexFFT(const std::vector<tComplex>& a, uint64_t size,
                                          std::vector<tComplex>& circular);

    // The second vectors and their transforms.
    std::vector<double> mSecondTimeVector;
    std::vector<tComplex> mSecondComplexTimeVector;
    std::vector<tComplex> mFirstTransform, mSecondTransform;
};

}  // namespace vx3
