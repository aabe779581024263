// Convolution and correlation of curves: against np.convolve and np.correlate (linear, periodic,
// complex), through the transforms and by direct sums, and the failures.
#include <gtest/gtest.h>

#include "analysis/cConvolutionAnalysis.h"

#include "analysisTestSupport.h"

using namespace vx3;
using zwanalysis::addCurve;
using zwanalysis::cCurveValues;
using zwanalysis::expectClose;
using zwanalysis::readCurve;

using tComplex = std::complex<double>;

TEST(ConvolutionAnalysis, AgainstNumpy)
{
    const zwanalysis::cOracle oracle;
    ASSERT_TRUE(oracle.made());
    cCurvePlotDataFile store;
    cCurvePlotDataSection& section = *store.addDataSection("tran");
    const std::vector<double> a = oracle.read("conv_a"), b = oracle.read("conv_b");
    const std::vector<double> ax = oracle.read("conv_a_x"), bx = oracle.read("conv_b_x");
    const uint64_t ia = addCurve(store, section, "a", ax, a);
    const uint64_t ib = addCurve(store, section, "b", bx, b);
    const uint64_t iac = addCurve(store, section, "ac", ax, oracle.readComplex("conv_a", "conv_ac_im"));
    const double dt = 1e-3, a0 = ax.front(), b0 = bx.front();
    const int64_t na = static_cast<int64_t>(a.size());
    const int64_t half = std::max<int64_t>(na, static_cast<int64_t>(b.size())) / 2;

    struct cCase {
        int kind;
        uint64_t first;
        bool periodic;
        const char* re;
        const char* im;
        double firstX;
        const char* name;
    };
    const cCase cases[] = {
        {cFFTAnalysis::convolution_kind, ia, false, "conv_full", nullptr, a0 + b0, "convolution(a*b)"},
        {cFFTAnalysis::cross_correlation_kind, ia, false, "conv_xcorr", nullptr, b0 - a0 - (na - 1) * dt, "xcorr(a,b)"},
        {cFFTAnalysis::auto_correlation_kind, ia, false, "conv_autocorr", nullptr, -(na - 1) * dt, "autocorr(a)"},
        {cFFTAnalysis::convolution_kind, ia, true, "conv_periodic", nullptr, a0 + b0 - half * dt, "convolution(a*b)"},
        {cFFTAnalysis::cross_correlation_kind, ia, true, "conv_periodic_xcorr", nullptr, b0 - a0 - half * dt,
         "xcorr(a,b)"},
        {cFFTAnalysis::convolution_kind, iac, false, "conv_complex_re", "conv_complex_im", a0 + b0,
         "convolution(ac*b)"},
        {cFFTAnalysis::cross_correlation_kind, iac, false, "conv_complex_xcorr_re", "conv_complex_xcorr_im",
         b0 - a0 - (na - 1) * dt, "xcorr(ac,b)"},
    };
    for (const bool useFFT : {true, false}) {
        for (const cCase& c : cases) {
            const std::string what = std::string(c.re) + (useFFT ? " by transforms" : " by sums");
            cFFTAnalysisOptions options;
            options.setSamplingFrequency(1000.0);
            options.setPeriodicConvolution(c.periodic);
            options.setUseFFT(useFFT);
            cConvolutionAnalysis analysis(options, section, store);
            cFFTAnalysisArguments arguments;
            arguments.setFirstArgumentCurve(cPostProcessCurveDescription(&section, c.first));
            arguments.setSecondArgumentCurve(cPostProcessCurveDescription(&section, ib));
            const bool done = c.kind == cFFTAnalysis::convolution_kind ? analysis.computeConvolutionAndAddCurve(arguments)
                              : c.kind == cFFTAnalysis::cross_correlation_kind
                                  ? analysis.computeCrossCorrelationAndAddCurve(arguments)
                                  : analysis.computeAutoCorrelationAndAddCurve(arguments);
            ASSERT_TRUE(done) << what << ": " << analysis.getErrorString();
            const cCurveValues result = readCurve(arguments.getResultCurve());
            const std::vector<double> re = oracle.read(c.re);
            std::vector<tComplex> expected(re.begin(), re.end());
            if (c.im)
                expected = oracle.readComplex(c.re, c.im);
            expectClose(result.y, expected, 1e-13, what);
            ASSERT_FALSE(result.x.empty());
            EXPECT_NEAR(result.x.front(), c.firstX, 1e-12) << what;
            EXPECT_NEAR(result.x[1] - result.x[0], dt, 1e-12) << what;
            EXPECT_EQ(arguments.getResultCurve().getName(), c.name);
            EXPECT_EQ(arguments.getResultCurve().checkCurveIsComplex(), c.im != nullptr) << what;
        }
    }
}

TEST(ConvolutionAnalysis, ResamplingAndFailures)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection& section = *store.addDataSection("tran");
    // A pulse of 1 V for 1 ms, sampled unevenly, convolved with itself: a triangle of 1 ms * 1 V
    // at its top, at 1 ms.
    const uint64_t pulse = addCurve(store, section, "p", std::vector<double>{0, 0.3e-3, 1e-3},
                                    std::vector<double>{1, 1, 1});
    cFFTAnalysisOptions options;
    options.setSamplingFrequency(1e6);
    options.setGenerateResampledCurves(true);
    cConvolutionAnalysis analysis(options, section, store);
    cFFTAnalysisArguments arguments;
    arguments.setFirstArgumentCurve(cPostProcessCurveDescription(&section, pulse));
    arguments.setSecondArgumentCurve(cPostProcessCurveDescription(&section, pulse));
    ASSERT_TRUE(analysis.computeConvolutionAndAddCurve(arguments)) << analysis.getErrorString();
    const cCurveValues triangle = readCurve(arguments.getResultCurve());
    ASSERT_EQ(triangle.y.size(), 2001u);
    EXPECT_NEAR(triangle.x[1000], 1e-3, 1e-15);
    EXPECT_NEAR(triangle.y[1000].real(), 1001 * 1e-6, 1e-15);
    EXPECT_NEAR(triangle.y[500].real(), 501 * 1e-6, 1e-15);
    EXPECT_EQ(arguments.getFirstResampledCurve().getName(), "Resampled(p)");
    EXPECT_EQ(readCurve(arguments.getFirstResampledCurve()).y.size(), 1001u);
    EXPECT_EQ(section.getVariable(arguments.getResultCurve().getCurveIndex()).getUnitIdentifier(),
              static_cast<unsigned>(curvePlotDataType::volt));

    auto fails = [&](cFFTAnalysisOptions& settings, uint64_t first, uint64_t second, const std::string& message) {
        const uint64_t before = section.getNbOfVariables();
        cConvolutionAnalysis failing(settings, section, store);
        cFFTAnalysisArguments run;
        run.setFirstArgumentCurve(cPostProcessCurveDescription(&section, first));
        run.setSecondArgumentCurve(cPostProcessCurveDescription(&section, second));
        EXPECT_FALSE(failing.computeCrossCorrelationAndAddCurve(run));
        EXPECT_EQ(failing.getErrorString(), message);
        EXPECT_EQ(section.getNbOfVariables(), before) << message;
    };
    cFFTAnalysisOptions zero;
    fails(zero, pulse, pulse, "Bad sampling Frequency.");
    // 1001 samples each, periodic: an odd length for the real transform.
    cFFTAnalysisOptions periodic;
    periodic.setSamplingFrequency(1e6);
    periodic.setPeriodicConvolution(true);
    periodic.setGenerateResampledCurves(true);
    fails(periodic, pulse, pulse, "The FFT on real time values can only be computed on an even number of points.");
    const uint64_t zigzag = addCurve(store, section, "z", std::vector<double>{0, 2, 1}, std::vector<double>{0, 1, 2});
    cFFTAnalysisOptions plain;
    plain.setSamplingFrequency(10);
    fails(plain, pulse, zigzag, "Failed to re-sample curve.");
    // The transform sizes: even, of factors 2, 3, 5 and 7 only.
    EXPECT_EQ(cConvolutionAnalysis::computeFastSize(1999999), 2000000u);
    EXPECT_EQ(cConvolutionAnalysis::computeFastSize(11), 12u);
    EXPECT_EQ(cConvolutionAnalysis::computeFastSize(1), 2u);
    EXPECT_EQ(cConvolutionAnalysis::computeFastSize(2 * 524309), 1049760u);
}
