#include "analysis/cConvolutionAnalysis.h"

#include <algorithm>
#include <cmath>

namespace vx3 {

using namespace FFTAnalysisOptions;

namespace {

constexpr const char* kOddPointsMessage =
    "The FFT on real time values can only be computed on an even number of points.";

template <class T>
T conjugate(const T& value)
{
    if constexpr (postProcess::kIsComplex<T>)
        return std::conj(value);
    else
        return value;
}

// The linear or periodic result out of the circular one, in the layout of the class comment.
template <class T>
void arrangeResult(const std::vector<T>& circular, uint64_t na, uint64_t nb, int kind, bool periodic, double scale,
                   std::vector<T>& result, int64_t& firstLag)
{
    const auto size = static_cast<int64_t>(circular.size());
    if (periodic) {
        firstLag = -(size / 2);
        result.resize(circular.size());
    } else {
        firstLag = kind == cFFTAnalysis::convolution_kind ? 0 : -static_cast<int64_t>(na - 1);
        result.resize(na + nb - 1);
    }
    for (size_t i = 0; i < result.size(); ++i) {
        const int64_t lag = firstLag + static_cast<int64_t>(i);
        result[i] = circular[static_cast<size_t>(((lag % size) + size) % size)] * scale;
    }
}

// A cut through a sweep: its values can't be walked as one curve on one grid.
bool hasSweepSelection(cPostProcessCurveDescription curve) { return !curve.sweepIndices().empty(); }

}  // namespace

uint64_t cConvolutionAnalysis::computeFastSize(uint64_t n)
{
    if (n < 2)
        return 2;
    for (uint64_t size = n + (n % 2);; size += 2) {
        uint64_t rest = size;
        for (uint64_t factor : {2u, 3u, 5u, 7u})
            while (rest % factor == 0)
                rest /= factor;
        if (rest == 1)
            return size;
    }
}

bool cConvolutionAnalysis::computeConvolutionRealFFT(const std::vector<double>& a, const std::vector<double>& b,
                                                     int kind, uint64_t size, std::vector<double>& circular)
{
    std::vector<double> padded;
    const uint64_t bins = size / 2 + 1;
    mFirstTransform.resize(bins);
    mSecondTransform.resize(bins);
    cFFTInterface::copyToInputVector(a, size, padded);
    if (!mFFT.realFFT(padded.data(), size, mFirstTransform.data()))
        return false;
    cFFTInterface::copyToInputVector(b, size, padded);
    if (!mFFT.realFFT(padded.data(), size, mSecondTransform.data()))
        return false;
    // Correlation takes the first transform conjugated.
    for (uint64_t k = 0; k < bins; ++k)
        mSecondTransform[k] *= kind == convolution_kind ? mFirstTransform[k] : std::conj(mFirstTransform[k]);
    circular.resize(size);
    return mFFT.realInverseFFT(mSecondTransform.data(), size, circular.data());
}

bool cConvolutionAnalysis::computeConvolutionComplexFFT(const std::vector<tComplex>& a,
                                                        const std::vector<tComplex>& b, int kind, uint64_t size,
                                                        std::vector<tComplex>& circular)
{
    cFFTInterface::copyToComplexInputVector(a.data(), a.size(), size, mFirstTransform);
    cFFTInterface::copyToComplexInputVector(b.data(), b.size(), size, mSecondTransform);
    if (!mFFT.FFT(mFirstTransform.data(), size) || !mFFT.FFT(mSecondTransform.data(), size))
        return false;
    for (uint64_t k = 0; k < size; ++k)
        mSecondTransform[k] *= kind == convolution_kind ? mFirstTransform[k] : std::conj(mFirstTransform[k]);
    circular.resize(size);
    return mFFT.inverseFFT(mSecondTransform.data(), circular.data(), size);
}

bool cConvolutionAnalysis::computeAutoCorrelationRealFFT(const std::vector<double>& a, uint64_t size,
                                                         std::vector<double>& circular)
{
    std::vector<double> padded;
    const uint64_t bins = size / 2 + 1;
    mFirstTransform.resize(bins);
    cFFTInterface::copyToInputVector(a, size, padded);
    if (!mFFT.realFFT(padded.data(), size, mFirstTransform.data()))
        return false;
    for (tComplex& bin : mFirstTransform)
        bin = std::norm(bin);
    circular.resize(size);
    return mFFT.realInverseFFT(mFirstTransform.data(), size, circular.data());
}

bool cConvolutionAnalysis::computeAutoCorrelationComplexFFT(const std::vector<tComplex>& a, uint64_t size,
                                                            std::vector<tComplex>& circular)
{
    cFFTInterface::copyToComplexInputVector(a.data(), a.size(), size, mFirstTransform);
    if (!mFFT.FFT(mFirstTransform.data(), size))
        return false;
    for (tComplex& bin : mFirstTransform)
        bin = std::norm(bin);
    circular.resize(size);
    return mFFT.inverseFFT(mFirstTransform.data(), circular.data(), size);
}

template <class T>
bool cConvolutionAnalysis::computeConvolutionFFT(const std::vector<T>& a, const std::vector<T>& b, int kind,
                                                 bool periodic, double dt, std::vector<T>& result, int64_t& firstLag)
{
    constexpr bool complex = postProcess::kIsComplex<T>;
    const std::vector<T>& second = kind == auto_correlation_kind ? a : b;
    const uint64_t na = a.size(), nb = second.size();
    if (!na || !nb) {
        mError = "Failed to re-sample curve.";
        return false;
    }
    uint64_t size = periodic ? std::max(na, nb) : computeFastSize(na + nb - 1);
    if (!complex && size % 2 != 0) {
        mError = kOddPointsMessage;
        return false;
    }
    std::vector<T> circular;
    bool transformed = false;
    if constexpr (complex)
        transformed = kind == auto_correlation_kind ? computeAutoCorrelationComplexFFT(a, size, circular)
                                                    : computeConvolutionComplexFFT(a, b, kind, size, circular);
    else
        transformed = kind == auto_correlation_kind ? computeAutoCorrelationRealFFT(a, size, circular)
                                                    : computeConvolutionRealFFT(a, b, kind, size, circular);
    if (!transformed) {
        mError = "FFT failed.";
        return false;
    }
    arrangeResult(circular, na, nb, kind, periodic, dt / static_cast<double>(size), result, firstLag);
    return true;
}

template <class T>
void cConvolutionAnalysis::computeConvolutionDirect(const std::vector<T>& a, const std::vector<T>& b, int kind,
                                                    bool periodic, double dt, std::vector<T>& result,
                                                    int64_t& firstLag)
{
    const std::vector<T>& second = kind == auto_correlation_kind ? a : b;
    const uint64_t na = a.size(), nb = second.size();
    const uint64_t size = periodic ? std::max(na, nb) : na + nb - 1;
    // The circular result of length size; without periodicity size is long enough for no wrap.
    std::vector<T> circular(size, T(0));
    for (uint64_t k = 0; k < na; ++k) {
        const T left = kind == convolution_kind ? a[k] : conjugate(a[k]);
        for (uint64_t j = 0; j < nb; ++j) {
            // Convolution: a[k] b[j] lands at k + j; correlation: at j - k.
            const uint64_t at = kind == convolution_kind ? (k + j) % size : (j + size - k % size) % size;
            circular[at] += left * second[j];
        }
    }
    arrangeResult(circular, na, nb, kind, periodic, dt, result, firstLag);
}

template bool cConvolutionAnalysis::computeConvolutionFFT(const std::vector<double>&, const std::vector<double>&, int,
                                                          bool, double, std::vector<double>&, int64_t&);
template bool cConvolutionAnalysis::computeConvolutionFFT(const std::vector<tComplex>&, const std::vector<tComplex>&,
                                                          int, bool, double, std::vector<tComplex>&, int64_t&);
template void cConvolutionAnalysis::computeConvolutionDirect(const std::vector<double>&, const std::vector<double>&,
                                                             int, bool, double, std::vector<double>&, int64_t&);
template void cConvolutionAnalysis::computeConvolutionDirect(const std::vector<tComplex>&,
                                                             const std::vector<tComplex>&, int, bool, double,
                                                             std::vector<tComplex>&, int64_t&);

bool cConvolutionAnalysis::computeConvolutionAndAddCurve(cFFTAnalysisArguments& arguments)
{
    return computeConvolutionAndAddCurveImpl(arguments, convolution_kind);
}

bool cConvolutionAnalysis::computeCrossCorrelationAndAddCurve(cFFTAnalysisArguments& arguments)
{
    return computeConvolutionAndAddCurveImpl(arguments, cross_correlation_kind);
}

bool cConvolutionAnalysis::computeAutoCorrelationAndAddCurve(cFFTAnalysisArguments& arguments)
{
    return computeConvolutionAndAddCurveImpl(arguments, auto_correlation_kind);
}

bool cConvolutionAnalysis::computeConvolutionAndAddCurveImpl(cFFTAnalysisArguments& arguments, int kind)
{
    mError.clear();
    mOptions.completeWithDefaults();
    const double fs = mOptions.getSamplingFrequency();
    if (!(fs > 0) || !std::isfinite(fs)) {
        mError = "Bad sampling Frequency.";
        return false;
    }
    if (!arguments.getResultCurve().getSection())
        arguments.setResultCurve(cPostProcessCurveDescription(&mSection, cCurvePlotVariable::npos));
    const bool two = kind != auto_correlation_kind;
    std::string message;
    if (!arguments.checkFirstArgument(message) || !arguments.loadFirstArgument(message) ||
        (two && (!arguments.checkSecondArgument(message) || !arguments.loadSecondArgument(message)))) {
        mError = "Could not retrieve data.";
        return false;
    }
    const cPostProcessCurveDescription& first = arguments.getFirstArgumentCurve();
    const cPostProcessCurveDescription& second = two ? arguments.getSecondArgumentCurve() : first;
    if (hasSweepSelection(first) || hasSweepSelection(second)) {
        mError = "No associated sweep variable found.";
        return false;
    }
    // Each curve on the grid of step dt from its own start.
    const double dt = 1.0 / fs;
    double starts[2] = {0, 0};
    cFFTAnalysisCommon::cResampled values[2];
    for (int i = 0; i < (two ? 2 : 1); ++i) {
        const cPostProcessCurveDescription& curve = i == 0 ? first : second;
        double from = 0, to = 0;
        uint64_t count = 0;
        if (!cFFTAnalysisCommon::findXRange(curve, from, to, count, message) || !(to >= from)) {
            mError = "Failed to re-sample curve.";
            return false;
        }
        const double steps = std::floor(cFFTAnalysisCommon::raiseThreshold((to - from) * fs));
        if (!(steps >= 0) || steps + 1 > static_cast<double>(kMaxNumberOfPoints)) {
            mError = "Failed to re-sample curve.";
            return false;
        }
        starts[i] = from;
        if (!cFFTAnalysisCommon::resampleVariable(curve, from, dt, static_cast<uint64_t>(steps) + 1, values[i],
                                                  message)) {
            mError = "Failed to re-sample curve.";
            return false;
        }
    }
    if (!two) {
        starts[1] = starts[0];
    }
    // A real curve with a complex one: the real one widens.
    const bool complex = values[0].isComplex || (two && values[1].isComplex);
    if (complex)
        for (auto& v : values)
            if (!v.isComplex) {
                v.complex.assign(v.real.begin(), v.real.end());
                v.real.clear();
                v.isComplex = true;
            }
    if (mOptions.getGenerateResampledCurves()) {
        if (!generateResampledCurve(arguments, true, first.getName(), starts[0], dt, values[0]) ||
            (two && !generateResampledCurve(arguments, false, second.getName(), starts[1], dt, values[1])))
            return fail(arguments, "Failed to re-sample curve.");
    }
    const bool periodic = mOptions.getPeriodicConvolution(), useFFT = mOptions.getUseFFT();
    std::vector<double> real;
    std::vector<tComplex> complexValues;
    int64_t firstLag = 0;
    bool computed = true;
    if (complex) {
        if (useFFT)
            computed = computeConvolutionFFT(values[0].complex, values[1].complex, kind, periodic, dt, complexValues,
                                             firstLag);
        else
            computeConvolutionDirect(values[0].complex, values[1].complex, kind, periodic, dt, complexValues, firstLag);
    } else {
        if (useFFT)
            computed = computeConvolutionFFT(values[0].real, values[1].real, kind, periodic, dt, real, firstLag);
        else
            computeConvolutionDirect(values[0].real, values[1].real, kind, periodic, dt, real, firstLag);
    }
    if (!computed)
        return fail(arguments, mError);
    mTimeVector = std::move(values[0].real);
    mComplexTimeVector = std::move(values[0].complex);
    mSecondTimeVector = std::move(values[1].real);
    mSecondComplexTimeVector = std::move(values[1].complex);

    // Where lag 0 lies: the sum of the starts for a convolution, their difference for a correlation.
    const double offset = kind == convolution_kind ? starts[0] + starts[1] : starts[1] - starts[0];
    std::string name, fullName;
    const std::string a = first.getName(), b = second.getName();
    const std::string fullA = arguments.getCompleteFirstArgumentName();
    const std::string fullB = two ? arguments.getCompleteSecondArgumentName() : fullA;
    if (kind == convolution_kind) {
        name = "convolution(" + a + "*" + b + ")";
        fullName = "convolution(" + fullA + "*" + fullB + ")";
    } else if (kind == cross_correlation_kind) {
        name = "xcorr(" + a + "," + b + ")";
        fullName = "xcorr(" + fullA + "," + fullB + ")";
    } else {
        name = "autocorr(" + a + ")";
        fullName = "autocorr(" + fullA + ")";
    }
    if (!arguments.createResultVariableIfNecessary(
            mStore, resultName(name),
            complex ? curvePlotProperties::parameterized_double_complex : curvePlotProperties::parameterized_double,
            curvePlotDataType::second, curvePlotDataType::volt))
        return fail(arguments, "Unsupported curve type.");
    cPostProcessCurveDescription result = arguments.getResultCurve();
    const uint64_t count = complex ? complexValues.size() : real.size();
    double* x = nullptr;
    void* y = nullptr;
    if (!prepareResultStorage(result, count, complex, x, y))
        return fail(arguments, "Unsupported curve type.");
    for (uint64_t i = 0; i < count; ++i)
        x[i] = offset + static_cast<double>(firstLag + static_cast<int64_t>(i)) * dt;
    if (complex)
        std::copy(complexValues.begin(), complexValues.end(), static_cast<tComplex*>(y));
    else
        std::copy(real.begin(), real.end(), static_cast<double*>(y));
    finishResultCurve(result, fullName);
    return true;
}

}  // namespace vx3
