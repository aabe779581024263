#include "analysis/cFFTAnalysis.h"

#include <algorithm>
#include <cmath>

namespace vx3 {

using namespace FFTAnalysisOptions;

namespace {

const char* const kFullNameProperty = "Full name";

}  // namespace

cFFTAnalysis::cFFTAnalysis(cFFTAnalysisOptions& options, cCurvePlotDataSection& section, cCurvePlotDataFile& store)
    : mOptions(options), mSection(section), mStore(store)
{
}

bool cFFTAnalysis::fail(cFFTAnalysisArguments& arguments, const std::string& message)
{
    mError = message;
    arguments.removeCreatedVariables();
    return false;
}

std::string cFFTAnalysis::resultName(const std::string& generated) const
{
    return mOptions.getResultCurveName().empty() ? generated : mOptions.getResultCurveName();
}

bool cFFTAnalysis::computeFFTAndAddCurve(cFFTAnalysisArguments& arguments)
{
    mError.clear();
    mOptions.completeWithDefaults();
    if (!arguments.getResultCurve().getSection())
        arguments.setResultCurve(cPostProcessCurveDescription(&mSection, cCurvePlotVariable::npos));
    std::string message;
    if (!arguments.checkFirstArgument(message) || !arguments.loadFirstArgument(message)) {
        mError = "Could not retrieve data.";
        return false;
    }
    mOptions.handleRedundantEntries();
    if (!createCurve(arguments, fft_kind))
        return false;
    // fs and N are what the run used; the period and f0 follow them.
    mOptions.handleRedundantEntries(sampling_frequency);
    return true;
}

bool cFFTAnalysis::createCurve(cFFTAnalysisArguments& arguments, int kind)
{
    if (kind != fft_kind) {
        mError = "Unsupported curve type.";
        return false;
    }
    return mOptions.getFrequencyToTime() ? computeFFTAndAddCurveFreqToTime(arguments)
                                         : computeFFTAndAddCurveTimeToFreq(arguments);
}

// ---- Windows

std::vector<double> cFFTAnalysis::computeWindow(int windowType, uint64_t n)
{
    switch (windowType) {
    case triangular:
        return cFFTInterface::triang(n);
    case kaiser_beta_0_5:
        return cFFTInterface::kaiser(n, 0.5);
    case bartlett:
        return cFFTInterface::bartlett(n);
    case blackman_periodic:
        // The label has always said periodic; the symmetric window is what has been computed.
        return cFFTInterface::blackman(n);
    case hamming_periodic:
        return cFFTInterface::hammingPeriodic(n);
    case hann_periodic:
        return cFFTInterface::hannPeriodic(n);
    default:
        return {};
    }
}

void cFFTAnalysis::applyWindowFunctionReal(int windowType, std::vector<double>& values)
{
    const std::vector<double> window = computeWindow(windowType, values.size());
    if (window.size() == values.size())
        for (size_t i = 0; i < values.size(); ++i)
            values[i] *= window[i];
}

void cFFTAnalysis::applyWindowFunctionComplex(int windowType, std::vector<tComplex>& values)
{
    const std::vector<double> window = computeWindow(windowType, values.size());
    if (window.size() == values.size())
        for (size_t i = 0; i < values.size(); ++i)
            values[i] *= window[i];
}

// ---- Result curves

bool cFFTAnalysis::prepareResultStorage(cPostProcessCurveDescription& result, uint64_t count, bool complex,
                                        double*& x, void*& y)
{
    cCurvePlotVariable* curve = result.getCurvePtr();
    if (!curve)
        return false;
    // A result curve named by the caller takes the kind of values the run makes.
    const unsigned wanted = complex ? curvePlotProperties::parameterized_double_complex
                                    : curvePlotProperties::parameterized_double;
    if (curve->getDataType() != wanted)
        curve->setType(mStore.addType(curve->name(), static_cast<curvePlotProperties::data_type>(wanted),
                                      cFFTAnalysisCommon::unitOf(result)));
    if (!curve->setParameterizedSize(count, sizeof(double), complex ? sizeof(tComplex) : sizeof(double)))
        return false;
    curve->setUsedValueCount(count);
    curve->setNeedsLoading(false);
    curve->resetMinMaxInitialized();
    x = reinterpret_cast<double*>(curve->parameterizedXData());
    y = curve->parameterizedYData();
    return x && y;
}

void cFFTAnalysis::finishResultCurve(const cPostProcessCurveDescription& result, const std::string& fullName)
{
    cCurvePlotVariable* curve = result.getCurvePtr();
    if (!curve)
        return;
    curve->computeMinMaxValues();
    cCurvePlotProperties properties;
    properties.setProperty(curvePlotProperties::cProperty::makeText(curvePlotProperties::user_defined, fullName,
                                                                    kFullNameProperty));
    result.getSection()->addCurveProperties(result.getCurveIndex(), properties);
}

bool cFFTAnalysis::generateResampledCurve(cFFTAnalysisArguments& arguments, bool first, const std::string& name,
                                          double x0, double dt, const cFFTAnalysisCommon::cResampled& values)
{
    const std::string curveName = "Resampled(" + name + ")";
    const bool made = first ? arguments.createFirstResampledVariableIfNecessary(mStore, curveName, curvePlotDataType::volt)
                            : arguments.createSecondResampledVariableIfNecessary(mStore, curveName, curvePlotDataType::volt);
    cPostProcessCurveDescription target = first ? arguments.getFirstResampledCurve() : arguments.getSecondResampledCurve();
    cCurvePlotVariable* curve = target.getCurvePtr();
    if (!made || !curve)
        return false;
    const uint64_t n = values.isComplex ? values.complex.size() : values.real.size();
    double* x = nullptr;
    void* y = nullptr;
    if (!prepareResultStorage(target, n, values.isComplex, x, y))
        return false;
    for (uint64_t i = 0; i < n; ++i)
        x[i] = x0 + static_cast<double>(i) * dt;
    if (values.isComplex)
        std::copy(values.complex.begin(), values.complex.end(), static_cast<tComplex*>(y));
    else
        std::copy(values.real.begin(), values.real.end(), static_cast<double*>(y));
    finishResultCurve(target, curveName);
    return true;
}

// ---- Time to frequency

bool cFFTAnalysis::computeFFTAndAddCurveTimeToFreq(cFFTAnalysisArguments& arguments)
{
    const cPostProcessCurveDescription& input = arguments.getFirstArgumentCurve();
    std::string message;
    curvePlotFunctionArgs::cDataVectors vectors;
    if (!input.getCurvePtr() || !input.getCurvePtr()->checkHasStorage()) {
        mError = "Could not retrieve data.";
        return false;
    }
    double first = 0, last = 0;
    uint64_t count = 0;
    if (!input.computeDataVectors(vectors, message) ||
        !cFFTAnalysisCommon::findXRange(input, first, last, count, message) || !count) {
        mError = "The curve data could not be processed by the FFT.";
        return false;
    }
    // The interval: the options' own, or the whole curve.
    if (!mOptions.getRestrictToInterval())
        mOptions.setInterval(first, last);
    const double start = mOptions.getIntervalStart(), length = mOptions.getIntervalEnd() - start;
    int64_t n = mOptions.getNumberOfPoints();
    double fs = mOptions.getSamplingFrequency(), dt = 0;
    if (n != 0) {
        if (!(length > 0) || !std::isfinite(length) || n < 0) {
            mError = "The FFT Window Size is 0.0.";
            return false;
        }
        if (fs == 0) {
            dt = length / static_cast<double>(n);
            fs = 1.0 / dt;
            mOptions.setSamplingFrequency(fs);
        } else {
            dt = 1.0 / fs;
        }
    } else {
        if (fs == 0) {
            mError = "The FFT number of points and FFT sampling frequency are 0.0.";
            return false;
        }
        dt = 1.0 / fs;
        const double points = std::trunc(length / dt);
        if (!(points >= 1)) {
            mError = "The FFT Window Size is 0.0.";
            return false;
        }
        if (points > static_cast<double>(kMaxNumberOfPoints)) {
            mError = "The FFT number of points is too large.";
            return false;
        }
        n = static_cast<int64_t>(points);
        mOptions.setNumberOfPoints(n);
    }
    if (static_cast<uint64_t>(n) > kMaxNumberOfPoints) {
        mError = "The FFT number of points is too large.";
        return false;
    }
    if (!(dt > 0) || !std::isfinite(dt) || !(fs > 0) || !std::isfinite(fs)) {
        // An interval so short (or a rate so high) that the step or the rate leaves the doubles.
        mError = "The curve data could not be processed by the FFT.";
        return false;
    }
    const uint64_t points = static_cast<uint64_t>(n);
    cFFTAnalysisCommon::cResampled resampled;
    if (!cFFTAnalysisCommon::resampleVariable(input, start, dt, points, resampled, message)) {
        mError = "Failed to resample time domain data.";
        return false;
    }
    mTimeVector = std::move(resampled.real);
    mComplexTimeVector = std::move(resampled.complex);
    if (mOptions.getGenerateResampledCurves()) {
        cFFTAnalysisCommon::cResampled copy;
        copy.isComplex = resampled.isComplex;
        copy.real = mTimeVector;
        copy.complex = mComplexTimeVector;
        if (!generateResampledCurve(arguments, true, input.getName(), 0.0, 1.0 / fs, copy))
            return fail(arguments, "Failed to resample time domain data.");
    }
    if (resampled.isComplex) {
        applyWindowFunctionComplex(mOptions.getWindowFunctionType(), mComplexTimeVector);
        return createFrequencyVariableComplexFFT(arguments, points, fs);
    }
    applyWindowFunctionReal(mOptions.getWindowFunctionType(), mTimeVector);
    return createFrequencyVariableRealFFT(arguments, points, fs);
}

namespace {

// The factor of the forward normalisation: 1/N, or 1/sqrt(N) when the inverse is normalised too.
unsigned forwardNormalization(const cFFTAnalysisOptions& options)
{
    if (!options.getNormalize())
        return FFTInterface::no_normalization;
    return options.getNormalizeInverse() ? FFTInterface::normalize_by_sqrt_n : FFTInterface::normalize_by_n;
}

}  // namespace

bool cFFTAnalysis::createFrequencyVariableRealFFT(cFFTAnalysisArguments& arguments, uint64_t n, double fs)
{
    if (n % 2 != 0) {
        mError = "The FFT on real time values can only be computed on an even number of points.";
        return fail(arguments, mError);
    }
    const uint64_t bins = n / 2 + 1;
    cPostProcessCurveDescription result;
    double* x = nullptr;
    tComplex* spectrum = nullptr;
    if (!startSpectrumCurve(arguments, bins, result, x, spectrum))
        return false;
    const double df = fs / static_cast<double>(n);
    for (uint64_t i = 0; i < bins; ++i)
        x[i] = static_cast<double>(i) * df;
    // The transform writes the bins straight into the curve's storage.
    if (!mFFT.realFFT(mTimeVector.data(), n, spectrum))
        return fail(arguments, "FFT failed.");
    cFFTInterface::normalize(spectrum, bins, n, forwardNormalization(mOptions));
    finishResultCurve(result, "FFT(" + arguments.getCompleteFirstArgumentName() + ")");
    return true;
}

bool cFFTAnalysis::startSpectrumCurve(cFFTAnalysisArguments& arguments, uint64_t bins,
                                      cPostProcessCurveDescription& result, double*& x, tComplex*& spectrum)
{
    const cPostProcessCurveDescription& input = arguments.getFirstArgumentCurve();
    if (!arguments.createResultVariableIfNecessary(mStore, resultName("FFT(" + input.getName() + ")"),
                                                   curvePlotProperties::parameterized_double_complex,
                                                   curvePlotDataType::hertz, cFFTAnalysisCommon::unitOf(input)))
        return fail(arguments, "FFT failed.");
    result = arguments.getResultCurve();
    void* y = nullptr;
    if (!prepareResultStorage(result, bins, true, x, y))
        return fail(arguments, "FFT failed.");
    spectrum = static_cast<tComplex*>(y);
    return true;
}

bool cFFTAnalysis::createFrequencyVariableComplexFFT(cFFTAnalysisArguments& arguments, uint64_t n, double fs)
{
    cPostProcessCurveDescription result;
    double* x = nullptr;
    tComplex* spectrum = nullptr;
    if (!startSpectrumCurve(arguments, n, result, x, spectrum))
        return false;
    std::copy(mComplexTimeVector.begin(), mComplexTimeVector.end(), spectrum);
    if (!mFFT.FFT(spectrum, n, forwardNormalization(mOptions)))
        return fail(arguments, "FFT failed.");
    // Two-sided, in rising frequency: the negative half first, so that x rises.
    const uint64_t negative = n / 2;
    std::rotate(spectrum, spectrum + (n - negative), spectrum + n);
    const double df = fs / static_cast<double>(n);
    for (uint64_t i = 0; i < n; ++i)
        x[i] = (static_cast<double>(i) - static_cast<double>(negative)) * df;
    finishResultCurve(result, "FFT(" + arguments.getCompleteFirstArgumentName() + ")");
    return true;
}

}  // namespace vx3
