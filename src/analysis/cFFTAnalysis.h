// The spectrum of a time curve and the time curve of a spectrum, added as new curves to a
// section. One object per run, on the caller's thread; a run that fails leaves no curve behind
// and its reason in getErrorString.
#pragma once

#include <complex>
#include <cstdint>
#include <string>
#include <vector>

#include "analysis/cFFTAnalysisArguments.h"
#include "analysis/cFFTAnalysisCommon.h"
#include "analysis/cFFTAnalysisOptions.h"
#include "analysis/cFFTInterface.h"
#include "model/cCurvePlotDataFile.h"

namespace vx3 {

class cFFTAnalysis {
public:
    using tComplex = std::complex<double>;
    // The kind of run of createCurve.
    enum analysis_kind : int { convolution_kind = 0, cross_correlation_kind = 1, auto_correlation_kind = 2, fft_kind = 3 };
    // More points than a transform of this library takes make no sensible spectrum.
    static constexpr uint64_t kMaxNumberOfPoints = uint64_t(1) << 30;

    cFFTAnalysis(cFFTAnalysisOptions& options, cCurvePlotDataSection& section, cCurvePlotDataFile& store);
    virtual ~cFFTAnalysis() = default;

    // The entry: the spectrum of the first argument, or with the option "frequency to time" the
    // time curve of a spectrum, as a new curve of the section (unless the arguments name a
    // result curve). The options afterwards hold the interval, N and fs that the run used.
    bool computeFFTAndAddCurve(cFFTAnalysisArguments& arguments);
    bool computeFFTAndAddCurveTimeToFreq(cFFTAnalysisArguments& arguments);
    bool computeFFTAndAddCurveFreqToTime(cFFTAnalysisArguments& arguments);

    const std::string& getErrorString() const { return mError; }
    // The windowed time samples of the last spectrum (real or complex input).
    const std::vector<double>& getTimeVector() const { return mTimeVector; }
    const std::vector<tComplex>& getComplexTimeVector() const { return mComplexTimeVector; }
    // The transform bins of the last inverse run, in transform order.
    const std::vector<tComplex>& getFrequencyVector() const { return mFrequencyVector; }
    bool getFrequencyInputIsReal() const { return mFrequencyInputIsReal; }

    // The window of the options' type over values (both parts of complex ones).
    static void applyWindowFunctionReal(int windowType, std::vector<double>& values);
    static void applyWindowFunctionComplex(int windowType, std::vector<tComplex>& values);
    static std::vector<double> computeWindow(int windowType, uint64_t n);

protected:
    bool createCurve(cFFTAnalysisArguments& arguments, int kind);
    // Room for count pairs of double x and double (or complex) y in the result's storage.
    bool prepareResultStorage(cPostProcessCurveDescription& result, uint64_t count, bool complex, double*& x,
                              void*& y);
    // The property "Full name" and fresh extremes on a finished result.
    void finishResultCurve(const cPostProcessCurveDescription& result, const std::string& fullName);
    // The name of the result: the options' one when given, else prefix(name).
    std::string resultName(const std::string& generated) const;
    // Adds "Resampled(name)" with the values at x0 + i * dt.
    bool generateResampledCurve(cFFTAnalysisArguments& arguments, bool first, const std::string& name, double x0,
                                double dt, const cFFTAnalysisCommon::cResampled& values);
    bool fail(cFFTAnalysisArguments& arguments, const std::string& message);

    // ---- Time to frequency
    bool createFrequencyVariableRealFFT(cFFTAnalysisArguments& arguments, uint64_t n, double fs);
    bool createFrequencyVariableComplexFFT(cFFTAnalysisArguments& arguments, uint64_t n, double fs);
    // The spectrum's result curve with room for `bins` complex values; false with the failure told.
    bool startSpectrumCurve(cFFTAnalysisArguments& arguments, uint64_t bins, cPostProcessCurveDescription& result,
                            double*& x, tComplex*& spectrum);

    // ---- Frequency to time
    bool computeFFTFrequencyVector(cFFTAnalysisArguments& arguments, bool& twoSided, uint64_t& points, double& fs);
    bool computeRealFFTFrequencyVector(const cPostProcessCurveDescription& curve, uint64_t& points, double& fs);
    bool computeComplexFFTFrequencyVector(const cPostProcessCurveDescription& curve, uint64_t& points, double& fs);
    // N, oversampling, df and fs from the spectrum's frequency range; false with the message.
    bool computeRealFFTFrequencyVectorDefineInterval(double fmin, double fmax, uint64_t count, bool twoSided,
                                                     uint64_t& points, double& df, double& fs);
    // The time curve of the inverse transform: complex values from a two-sided spectrum, else real ones.
    // The same from the frequency range of the spectrum curve.
    bool defineFrequencyGrid(const cPostProcessCurveDescription& curve, bool twoSided, uint64_t& points, double& df,
                             double& fs);
    bool createTimeVariable(cFFTAnalysisArguments& arguments, uint64_t points, double fs, bool twoSided);

    cFFTAnalysisOptions& mOptions;
    cCurvePlotDataSection& mSection;
    cCurvePlotDataFile& mStore;
    cFFTInterface mFFT;
    std::string mError;
    std::vector<double> mTimeVector;
    std::vector<tComplex> mComplexTimeVector;
    std::vector<tComplex> mFrequencyVector;
    bool mFrequencyInputIsReal = false;
    const double mRelativeTolerance = cFFTAnalysisCommon::kRelativeTolerance;
};

}  // namespace vx3
