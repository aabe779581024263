// The frequency-to-time half of cFFTAnalysis: the spectrum's lines onto the bins of an inverse
// transform, and the time curve.
#include <algorithm>
#include <cmath>

#include "analysis/cFFTAnalysis.h"

namespace vx3 {

using namespace FFTAnalysisOptions;

namespace {

// The factor of the inverse normalisation: 1/N, or 1/sqrt(N) when the forward one is normalised too.
unsigned inverseNormalization(const cFFTAnalysisOptions& options)
{
    if (!options.getNormalizeInverse())
        return FFTInterface::no_normalization;
    return options.getNormalize() ? FFTInterface::normalize_by_sqrt_n : FFTInterface::normalize_by_n;
}

}  // namespace

bool cFFTAnalysis::computeFFTAndAddCurveFreqToTime(cFFTAnalysisArguments& arguments)
{
    const cPostProcessCurveDescription& input = arguments.getFirstArgumentCurve();
    if (!input.getCurvePtr() || !input.getCurvePtr()->checkHasStorage()) {
        mError = "Could not retrieve data.";
        return false;
    }
    bool twoSided = false;
    uint64_t points = 0;
    double fs = 0;
    if (!computeFFTFrequencyVector(arguments, twoSided, points, fs))
        return false;
    return createTimeVariable(arguments, points, fs, twoSided);
}

bool cFFTAnalysis::computeFFTFrequencyVector(cFFTAnalysisArguments& arguments, bool& twoSided, uint64_t& points,
                                             double& fs)
{
    const cPostProcessCurveDescription& input = arguments.getFirstArgumentCurve();
    double fmin = 0, fmax = 0;
    uint64_t count = 0;
    std::string message;
    if (!cFFTAnalysisCommon::findXRange(input, fmin, fmax, count, message)) {
        mError = "The curve data could not be processed by the FFT.";
        return false;
    }
    mFrequencyInputIsReal = !input.checkCurveIsComplex();
    twoSided = fmin < 0;
    return twoSided ? computeComplexFFTFrequencyVector(input, points, fs)
                    : computeRealFFTFrequencyVector(input, points, fs);
}

bool cFFTAnalysis::computeRealFFTFrequencyVectorDefineInterval(double fmin, double fmax, uint64_t count, bool twoSided,
                                                               uint64_t& points, double& df, double& fs)
{
    const int64_t oversampling = std::max<int64_t>(1, mOptions.getOversamplingFactor());
    int64_t n = mOptions.getNumberOfPoints();
    fs = mOptions.getSamplingFrequency();
    // The highest frequency that the bins must reach.
    const double reach = twoSided ? std::max(std::fabs(fmin), std::fabs(fmax)) : fmax;
    if (n > 0) {
        if (fs > 0) {
            df = fs / static_cast<double>(n * oversampling);
        } else {
            if (reach == 0) {
                mError = "The FFT window size is 0.0.";
                return false;
            }
            df = 2 * reach / static_cast<double>(n * oversampling);
            fs = static_cast<double>(n * oversampling) * df;
            mOptions.setSamplingFrequency(fs);
        }
    } else {
        if (!(fs > 0)) {
            mError = "The number of Points and the FFT sampling frequency are 0.0.";
            return false;
        }
        // Without N the bins keep the spectrum's own frequency step.
        const double step = count > 1 ? (fmax - fmin) / static_cast<double>(count - 1) : 0.0;
        const double estimate = step > 0 ? std::trunc(fs / step) : 0.0;
        if (!(estimate >= 1)) {
            mError = "The number of FFT points is 0.";
            return false;
        }
        if (estimate * static_cast<double>(oversampling) > static_cast<double>(kMaxNumberOfPoints)) {
            mError = "The FFT number of points is too large.";
            return false;
        }
        n = static_cast<int64_t>(estimate);
        if (n % 2 != 0)
            ++n;
        mOptions.setNumberOfPoints(n);
        df = fs / static_cast<double>(n * oversampling);
    }
    if (static_cast<uint64_t>(n * oversampling) > kMaxNumberOfPoints) {
        mError = "The FFT number of points is too large.";
        return false;
    }
    points = static_cast<uint64_t>(n * oversampling);
    if (!(df > 0) || !std::isfinite(df)) {
        // A frequency range so wide that its step overflows.
        mError = "The curve data could not be processed by the FFT.";
        return false;
    }
    return true;
}

namespace {

// Spreads each spectral line onto its two neighbouring bins, by 1 - distance / df; bins counts
// positions from base in steps of df.
template <class X, class Y>
void distributeOnTriangles(const postProcess::cCurveSamples<X, Y>& s, double base, double df,
                           std::vector<std::complex<double>>& bins)
{
    const auto size = static_cast<int64_t>(bins.size());
    for (uint64_t j = 0; j < s.count; ++j) {
        const std::complex<double> value = postProcess::narrow<std::complex<double>>(
            postProcess::widen<std::complex<long double>>(s.y[j]));
        if (postProcess::checkIsUndefined(value))
            continue;
        const double position = (static_cast<double>(s.x[j]) - base) / df;
        const double lower = std::floor(position);
        const double weight = 1.0 - (position - lower);
        const auto k = static_cast<int64_t>(lower);
        if (k >= 0 && k < size)
            bins[static_cast<size_t>(k)] += weight * value;
        if (k + 1 >= 0 && k + 1 < size && weight < 1.0)
            bins[static_cast<size_t>(k + 1)] += (1.0 - weight) * value;
    }
}

// The spectrum on count bins at base + k * df: linear or triangles; other types leave zeros.
bool resampleSpectrum(const cPostProcessCurveDescription& curve, int type, double base, double df,
                      std::vector<std::complex<double>>& bins)
{
    curvePlotFunctionArgs::cDataVectors vectors;
    std::string message;
    if (!curve.computeDataVectors(vectors, message))
        return false;
    bool resampled = false;
    const bool walked = postProcess::visitSamples(vectors, [&](const auto& samples) {
        if (!samples.monotone)
            return;
        if (type == resampling_none) {
            resampled = cFFTAnalysisCommon::resampleVectorOnInterval(samples, base, df, bins.size(), bins.data());
        } else if (type == resampling_triangles) {
            distributeOnTriangles(samples, base, df, bins);
            resampled = true;
        } else {
            resampled = true;
        }
    });
    return walked && resampled;
}

}  // namespace

bool cFFTAnalysis::defineFrequencyGrid(const cPostProcessCurveDescription& curve, bool twoSided, uint64_t& points,
                                       double& df, double& fs)
{
    double fmin = 0, fmax = 0;
    uint64_t count = 0;
    std::string message;
    cFFTAnalysisCommon::findXRange(curve, fmin, fmax, count, message);
    return computeRealFFTFrequencyVectorDefineInterval(fmin, fmax, count, twoSided, points, df, fs);
}

bool cFFTAnalysis::computeRealFFTFrequencyVector(const cPostProcessCurveDescription& curve, uint64_t& points,
                                                 double& fs)
{
    double df = 0;
    if (!defineFrequencyGrid(curve, false, points, df, fs))
        return false;
    mFrequencyVector.assign(points / 2 + 1, tComplex(0.0));
    if (!resampleSpectrum(curve, mOptions.getFrequencyResamplingType(), 0.0, df, mFrequencyVector)) {
        mError = "Failed to resample frequency data.";
        return false;
    }
    return true;
}

bool cFFTAnalysis::computeComplexFFTFrequencyVector(const cPostProcessCurveDescription& curve, uint64_t& points,
                                                    double& fs)
{
    double df = 0;
    if (!defineFrequencyGrid(curve, true, points, df, fs))
        return false;
    // Rising frequencies from -(points/2) * df, then back into transform order.
    std::vector<tComplex> rising(points, tComplex(0.0));
    const double base = -static_cast<double>(points / 2) * df;
    if (!resampleSpectrum(curve, mOptions.getFrequencyResamplingType(), base, df, rising)) {
        mError = "Failed to resample frequency data.";
        return false;
    }
    mFrequencyVector = cFFTInterface::computeComplexInverseFFTShift(rising);
    return true;
}

bool cFFTAnalysis::createTimeVariable(cFFTAnalysisArguments& arguments, uint64_t points, double fs, bool twoSided)
{
    const cPostProcessCurveDescription& input = arguments.getFirstArgumentCurve();
    const std::string name = input.getName(), fullName = "iFFT(" + arguments.getCompleteFirstArgumentName() + ")";
    const bool close = mOptions.getCompleteTimeDomainCurve();
    const uint64_t count = points + (close ? 1 : 0);
    const auto properties =
        twoSided ? curvePlotProperties::parameterized_double_complex : curvePlotProperties::parameterized_double;
    if (!arguments.createResultVariableIfNecessary(mStore, resultName("iFFT(" + name + ")"), properties,
                                                   curvePlotDataType::second, cFFTAnalysisCommon::unitOf(input)))
        return fail(arguments, "Inverse FFT failed.");
    cPostProcessCurveDescription result = arguments.getResultCurve();
    double* x = nullptr;
    void* y = nullptr;
    if (!prepareResultStorage(result, count, twoSided, x, y))
        return fail(arguments, "Inverse FFT failed.");
    // The same scaling and closing point for real and complex values once the transform has run.
    auto scaleAndClose = [&](auto* values, bool transformed) {
        if (!transformed)
            return false;
        cFFTInterface::normalize(values, points, points, inverseNormalization(mOptions));
        if (close)
            values[points] = values[0];
        return true;
    };
    const bool done =
        twoSided ? scaleAndClose(static_cast<tComplex*>(y),
                                 mFFT.inverseFFT(mFrequencyVector.data(), static_cast<tComplex*>(y), points))
                 : scaleAndClose(static_cast<double*>(y),
                                 mFFT.realInverseFFT(mFrequencyVector.data(), points, static_cast<double*>(y)));
    if (!done)
        return fail(arguments, "Inverse FFT failed.");
    for (uint64_t i = 0; i < count; ++i)
        x[i] = static_cast<double>(i) / fs;
    finishResultCurve(result, fullName);
    return true;
}

}  // namespace vx3
