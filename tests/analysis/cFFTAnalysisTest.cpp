// Spectrum runs on curves of a store: against np.fft of the np.interp-resampled, windowed vector
// for every window and normalisation, the two-sided spectrum of a complex curve, inverse runs
// against np.fft.irfft and ifft, and the runs that must fail with their message and no curve.
#include <gtest/gtest.h>

#include "analysis/cFFTAnalysis.h"
#include "base/cVxLogger.h"

#include "analysisTestSupport.h"

using namespace vx3;
using zwanalysis::addCurve;
using zwanalysis::expectClose;
using zwanalysis::readCurve;

namespace {

using tComplex = std::complex<double>;

std::string fullNameOf(const cPostProcessCurveDescription& curve)
{
    const cCurvePlotProperties* properties = curve.getSection()->getCurveProperties(curve.getCurveIndex());
    if (!properties)
        return {};
    const size_t at = properties->findProperty(curvePlotProperties::user_defined, "Full name");
    return at < properties->getNbOfProperties() ? properties->getProperty(at).getText() : std::string();
}

// Collects what a logger is told.
class cCollector : public cVxLoggerCallBack {
public:
    void loggerCallBackVirtualLogMessage(unsigned, const std::string& text) override { lines.push_back(text); }
    std::vector<std::string> lines;
};

}  // namespace

TEST(FFTAnalysis, SpectraAgainstNumpy)
{
    const zwanalysis::cOracle oracle;
    ASSERT_TRUE(oracle.made());
    cCurvePlotDataFile store;
    cCurvePlotDataSection& section = *store.addDataSection("tran");
    cCurvePlotDataSection& results = *store.addDataSection("spectra");
    const std::vector<double> x = oracle.read("curve_x"), y = oracle.read("curve_y");
    const uint64_t index = addCurve(store, section, "v(out)", x, y);
    const std::vector<double> cases = oracle.read("spectrum_cases");
    ASSERT_EQ(cases.size() % 8, 0u);
    for (size_t c = 0; c < cases.size() / 8; ++c) {
        const double* row = &cases[c * 8];
        cFFTAnalysisOptions options;
        options.setNumberOfPoints(static_cast<int64_t>(row[0]));
        if (row[1] != 0)
            options.restrictToInterval(row[2], row[3]);
        options.setSamplingFrequency(row[4]);
        options.setWindowFunctionType(static_cast<int>(row[5]));
        options.setNormalize(row[6] != 0);
        options.setNormalizeInverse(row[7] != 0);
        cFFTAnalysis analysis(options, results, store);
        cFFTAnalysisArguments arguments;
        arguments.setFirstArgumentCurve(cPostProcessCurveDescription(&section, index));
        ASSERT_TRUE(analysis.computeFFTAndAddCurve(arguments)) << "case " << c << ": " << analysis.getErrorString();
        auto [fx, fy] = readCurve(arguments.getResultCurve());
        const std::string name = "spectrum_" + std::to_string(c);
        const std::vector<tComplex> expected = oracle.readComplex(name + "_re", name + "_im");
        // Rounding grows with the sum over N samples of values near 1.
        double scale = 0;
        for (const tComplex& v : expected)
            scale = std::max(scale, std::abs(v));
        expectClose(fx, oracle.read(name + "_x"), 1e-12, name + " frequencies");
        ASSERT_EQ(fy.size(), expected.size()) << name;
        for (size_t k = 0; k < fy.size(); ++k)
            ASSERT_LE(std::abs(fy[k] - expected[k]), 1e-11 * scale) << name << " bin " << k;
        EXPECT_EQ(arguments.getResultCurve().getName(), "FFT(v(out))");
        EXPECT_EQ(fullNameOf(arguments.getResultCurve()), "FFT(tran : v(out))");
        EXPECT_TRUE(arguments.getResultCurve().checkCurveIsComplex());
    }
    // One curve per run, none left over.
    EXPECT_EQ(results.getNbOfVariables(), cases.size() / 8);

    // A complex curve: the two-sided spectrum in rising frequency, and with resampled curves.
    const uint64_t complexIndex =
        addCurve(store, section, "iq", x, oracle.readComplex("complex_y_re", "complex_y_im"));
    cFFTAnalysisOptions options;
    options.setNumberOfPoints(64);
    options.setWindowFunctionType(FFTAnalysisOptions::hann_periodic);
    options.setGenerateResampledCurves(true);
    cFFTAnalysis analysis(options, results, store);
    cFFTAnalysisArguments arguments;
    arguments.setFirstArgumentCurve(cPostProcessCurveDescription(&section, complexIndex));
    ASSERT_TRUE(analysis.computeFFTAndAddCurve(arguments)) << analysis.getErrorString();
    auto [fx, fy] = readCurve(arguments.getResultCurve());
    expectClose(fx, oracle.read("complex_spectrum_x"), 1e-12, "two-sided frequencies");
    expectClose(fy, oracle.readComplex("complex_spectrum_re", "complex_spectrum_im"), 1e-11, "two-sided spectrum");
    ASSERT_EQ(arguments.getFirstResampledCurve().getName(), "Resampled(iq)");
    auto [rx, ry] = readCurve(arguments.getFirstResampledCurve());
    ASSERT_EQ(rx.size(), 64u);
    EXPECT_NEAR(rx[1], 1.0 / options.getSamplingFrequency(), 1e-20);
}

TEST(FFTAnalysis, InverseAgainstNumpy)
{
    const zwanalysis::cOracle oracle;
    ASSERT_TRUE(oracle.made());
    cCurvePlotDataFile store;
    cCurvePlotDataSection& section = *store.addDataSection("ac");
    const uint64_t oneSided =
        addCurve(store, section, "H", oracle.read("inverse_f"), oracle.readComplex("inverse_re", "inverse_im"));
    const uint64_t fine = addCurve(store, section, "Hfine", oracle.read("inverse_fine_f"),
                                   oracle.readComplex("inverse_fine_re", "inverse_fine_im"));
    const uint64_t twoSided = addCurve(store, section, "Htwo", oracle.read("inverse_two_f"),
                                       oracle.readComplex("inverse_two_re", "inverse_two_im"));
    struct cCase {
        uint64_t curve;
        int64_t oversampling;
        int resampling;
        const char* expectedRe;
        const char* expectedIm;
    };
    const cCase cases[] = {
        {oneSided, 1, FFTAnalysisOptions::resampling_triangles, "inverse_time", nullptr},
        {oneSided, 2, FFTAnalysisOptions::resampling_triangles, "inverse_time_oversampled", nullptr},
        {fine, 1, FFTAnalysisOptions::resampling_none, "inverse_time_linear", nullptr},
        {twoSided, 1, FFTAnalysisOptions::resampling_triangles, "inverse_two_time_re", "inverse_two_time_im"},
    };
    for (const cCase& c : cases) {
        cFFTAnalysisOptions options;
        options.setFrequencyToTime(true);
        options.setNumberOfPoints(256);
        options.setOversamplingFactor(c.oversampling);
        options.setFrequencyResamplingType(c.resampling);
        // No sampling frequency: twice the highest frequency, 2560 Hz for the bins of 10 Hz.
        cFFTAnalysis analysis(options, section, store);
        cFFTAnalysisArguments arguments;
        arguments.setFirstArgumentCurve(cPostProcessCurveDescription(&section, c.curve));
        ASSERT_TRUE(analysis.computeFFTAndAddCurve(arguments)) << c.expectedRe << ": " << analysis.getErrorString();
        // Oversampling refines the bins; the time step stays.
        EXPECT_DOUBLE_EQ(options.getSamplingFrequency(), 2560.0) << c.expectedRe;
        auto [tx, ty] = readCurve(arguments.getResultCurve());
        const std::vector<double> re = oracle.read(c.expectedRe);
        std::vector<tComplex> expected(re.begin(), re.end());
        if (c.expectedIm)
            expected = oracle.readComplex(c.expectedRe, c.expectedIm);
        expectClose(ty, expected, 1e-12, c.expectedRe);
        EXPECT_NEAR(tx[1], 1.0 / options.getSamplingFrequency(), 1e-18);
        EXPECT_EQ(arguments.getResultCurve().getName(), "iFFT(" + section.getVariable(c.curve).name() + ")");
    }

    // Forward then back, with the same N: the resampled samples again, the curve closed.
    cFFTAnalysisOptions forward;
    forward.setNumberOfPoints(128);
    std::vector<double> x(300), y(300);
    for (size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<double>(i) * 1e-3;
        y[i] = std::cos(0.05 * static_cast<double>(i * i) / 300.0);
    }
    const uint64_t time = addCurve(store, section, "v", x, y);
    cFFTAnalysis there(forward, section, store);
    cFFTAnalysisArguments first;
    first.setFirstArgumentCurve(cPostProcessCurveDescription(&section, time));
    ASSERT_TRUE(there.computeFFTAndAddCurve(first)) << there.getErrorString();
    const std::vector<double> samples = there.getTimeVector();
    cFFTAnalysisOptions backward;
    backward.setFrequencyToTime(true);
    backward.setNumberOfPoints(128);
    backward.setSamplingFrequency(forward.getSamplingFrequency());
    backward.setCompleteTimeDomainCurve(true);
    cFFTAnalysis back(backward, section, store);
    cFFTAnalysisArguments second;
    second.setFirstArgumentCurve(first.getResultCurve());
    ASSERT_TRUE(back.computeFFTAndAddCurve(second)) << back.getErrorString();
    auto [bx, by] = readCurve(second.getResultCurve());
    ASSERT_EQ(by.size(), 129u);
    for (size_t i = 0; i < 128; ++i)
        ASSERT_NEAR(by[i].real(), samples[i], 1e-12) << i;
    EXPECT_EQ(by[128], by[0]);
    EXPECT_NEAR(bx[128], 128 / forward.getSamplingFrequency(), 1e-15);
}

TEST(FFTAnalysis, FailuresLeaveNoCurve)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection& section = *store.addDataSection("tran");
    std::vector<double> x(2001), y(2001);
    for (size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<double>(i) * 1e-3 / 2000.0;
        y[i] = std::sin(2e4 * x[i]);
    }
    const uint64_t index = addCurve(store, section, "v", x, y);
    auto run = [&](cFFTAnalysisOptions& options, uint64_t curve, std::string& error) {
        const uint64_t before = section.getNbOfVariables();
        cFFTAnalysis analysis(options, section, store);
        cFFTAnalysisArguments arguments;
        arguments.setFirstArgumentCurve(cPostProcessCurveDescription(&section, curve));
        const bool done = analysis.computeFFTAndAddCurve(arguments);
        error = analysis.getErrorString();
        if (!done) {
            EXPECT_EQ(section.getNbOfVariables(), before) << error;
        }
        return done;
    };
    std::string error;

    // N = 1024 on [0, 1e-3]: fs = 1024000, bins 0 to fs/2.
    cFFTAnalysisOptions options;
    ASSERT_TRUE(run(options, index, error)) << error;
    EXPECT_DOUBLE_EQ(options.getSamplingFrequency(), 1024000.0);
    EXPECT_DOUBLE_EQ(options.getFundamentalFrequency(), 1000.0);
    const cCurvePlotVariable& spectrum = section.getVariable(section.getNbOfVariables() - 1);
    double last = 0, first = -1;
    spectrum.getMinXAxisValue(section, first);
    spectrum.getMaxXAxisValue(section, last);
    EXPECT_EQ(first, 0.0);
    EXPECT_DOUBLE_EQ(last, 512000.0);
    EXPECT_EQ(spectrum.getVectorSize(), 513u);

    // A result named by the options; a result curve named by the caller is filled in place and
    // takes complex values.
    cFFTAnalysisOptions named;
    named.setResultCurveName("S");
    cFFTAnalysis namedRun(named, section, store);
    cFFTAnalysisArguments namedArguments;
    namedArguments.setFirstArgumentCurve(cPostProcessCurveDescription(&section, index));
    ASSERT_TRUE(namedRun.computeFFTAndAddCurve(namedArguments)) << namedRun.getErrorString();
    EXPECT_EQ(namedArguments.getResultCurve().getName(), "S");
    const uint64_t target = addCurve(store, section, "target", std::vector<double>{0, 1}, std::vector<double>{0, 1});
    const uint64_t count = section.getNbOfVariables();
    cFFTAnalysis intoRun(named, section, store);
    cFFTAnalysisArguments into;
    into.setFirstArgumentCurve(cPostProcessCurveDescription(&section, index));
    into.setResultCurve(cPostProcessCurveDescription(&section, target));
    ASSERT_TRUE(intoRun.computeFFTAndAddCurve(into)) << intoRun.getErrorString();
    EXPECT_EQ(section.getNbOfVariables(), count);
    EXPECT_TRUE(cPostProcessCurveDescription(&section, target).checkCurveIsComplex());
    EXPECT_EQ(section.getVariable(target).getVectorSize(), 513u);

    // Odd N on a real curve.
    options.setDefaults();
    options.setNumberOfPoints(1023);
    EXPECT_FALSE(run(options, index, error));
    EXPECT_EQ(error, "The FFT on real time values can only be computed on an even number of points.");
    // The resampled curve asked for goes again as well.
    options.setGenerateResampledCurves(true);
    EXPECT_FALSE(run(options, index, error));

    // An interval of length 0, in both directions; both spellings.
    options.setDefaults();
    options.restrictToInterval(5e-4, 5e-4);
    EXPECT_FALSE(run(options, index, error));
    EXPECT_EQ(error, "The FFT Window Size is 0.0.");
    options.setDefaults();
    options.setNumberOfPoints(0);
    EXPECT_FALSE(run(options, index, error));
    EXPECT_EQ(error, "The FFT number of points and FFT sampling frequency are 0.0.");
    // An interval so short that its sampling frequency overflows fails with a message.
    const uint64_t brief = addCurve(store, section, "brief", std::vector<double>{0.0, 5e-311, 1e-310},
                                    std::vector<double>{1.0, 0.5, 0.25});
    options.setDefaults();
    options.setNumberOfPoints(4);
    EXPECT_FALSE(run(options, brief, error));
    EXPECT_EQ(error, "The curve data could not be processed by the FFT.");

    const std::vector<double> dc = {0.0};
    const std::vector<tComplex> dcValue = {tComplex(1.0, 0.0)};
    const uint64_t flat = addCurve(store, section, "dc", dc, dcValue);
    options.setDefaults();
    options.setFrequencyToTime(true);
    EXPECT_FALSE(run(options, flat, error));
    EXPECT_EQ(error, "The FFT window size is 0.0.");
    options.setNumberOfPoints(0);
    EXPECT_FALSE(run(options, flat, error));
    EXPECT_EQ(error, "The number of Points and the FFT sampling frequency are 0.0.");
    options.setSamplingFrequency(100.0);
    EXPECT_FALSE(run(options, flat, error));
    EXPECT_EQ(error, "The number of FFT points is 0.");
    // A spectrum so wide that its frequency step overflows fails with a message.
    const uint64_t wide = addCurve(store, section, "wide", std::vector<double>{0.0, 1e307, 1.7e308},
                                   std::vector<tComplex>{tComplex(1.0), tComplex(0.5), tComplex(0.25)});
    options.setDefaults();
    options.setFrequencyToTime(true);
    options.setNumberOfPoints(4);
    EXPECT_FALSE(run(options, wide, error));
    EXPECT_EQ(error, "The curve data could not be processed by the FFT.");

    // A gap in the curve reads as 0: the spectrum stays defined.
    std::vector<double> gapped = y;
    gapped[700] = NAN;
    const uint64_t gap = addCurve(store, section, "gap", x, gapped);
    options.setDefaults();
    ASSERT_TRUE(run(options, gap, error)) << error;
    auto [gx, gy] = readCurve(cPostProcessCurveDescription(&section, section.getNbOfVariables() - 1));
    EXPECT_TRUE(std::all_of(gy.begin(), gy.end(), [](tComplex v) { return std::isfinite(std::abs(v)); }));

    // A curve that isn't there, and one whose x-axis goes back and forth.
    options.setDefaults();
    EXPECT_FALSE(run(options, 999, error));
    EXPECT_EQ(error, "Could not retrieve data.");
    const uint64_t zigzag = addCurve(store, section, "zigzag", std::vector<double>{0, 2, 1, 3}, std::vector<double>{0, 1, 2, 3});
    EXPECT_FALSE(run(options, zigzag, error));
    EXPECT_EQ(error, "Failed to resample time domain data.");
    options.setFrequencyToTime(true);
    EXPECT_FALSE(run(options, zigzag, error));
    EXPECT_EQ(error, "Failed to resample frequency data.");

    // The resampling types without a computation give a silent curve.
    options.setDefaults();
    options.setFrequencyToTime(true);
    options.setFrequencyResamplingType(FFTAnalysisOptions::resampling_gaussian);
    const uint64_t ac = addCurve(store, section, "ac", std::vector<double>{0, 10, 20},
                                 std::vector<tComplex>{1.0, 2.0, 3.0});
    ASSERT_TRUE(run(options, ac, error)) << error;
    auto [tx, ty] = readCurve(cPostProcessCurveDescription(&section, section.getNbOfVariables() - 1));
    ASSERT_EQ(ty.size(), 1024u);
    EXPECT_EQ(*std::max_element(ty.begin(), ty.end(), [](auto a, auto b) { return std::abs(a) < std::abs(b); }), 0.0);
}

TEST(FFTAnalysis, OptionsAndConfiguration)
{
    cFFTAnalysisOptions options;
    EXPECT_EQ(options.getNumberOfPoints(), 1024);
    EXPECT_EQ(options.getOversamplingFactor(), 1);
    EXPECT_EQ(options.getFrequencyResamplingType(), 1);
    EXPECT_TRUE(options.getNormalizeInverse());
    EXPECT_TRUE(options.getUseFFT());
    EXPECT_FALSE(options.getNormalize());
    EXPECT_EQ(options.flags().size(), 8u);
    options.setZero();
    EXPECT_EQ(options.getNumberOfPoints(), 0);
    EXPECT_FALSE(options.getUseFFT());

    // Settings stored by a version that knew fewer entries are completed, the known ones kept.
    cAnalysisOptions stored;
    stored.setInt64(0, 256);
    stored.setFlag(2, true);
    const cFFTAnalysisOptions loaded(stored);
    EXPECT_EQ(loaded.getNumberOfPoints(), 256);
    EXPECT_EQ(loaded.getOversamplingFactor(), 1);
    EXPECT_TRUE(loaded.getNormalize());
    EXPECT_TRUE(loaded.getNormalizeInverse());

    // The coupling: period and interval, fs = f0 * N.
    cFFTAnalysisOptions coupled;
    coupled.setInterval(1e-3, 3e-3);
    coupled.handleRedundantEntries(FFTAnalysisOptions::interval_end);
    EXPECT_DOUBLE_EQ(coupled.getFundamentalFrequency(), 500.0);
    EXPECT_DOUBLE_EQ(coupled.getSamplingFrequency(), 512000.0);
    coupled.setFundamentalFrequency(1000.0);
    coupled.handleRedundantEntries(FFTAnalysisOptions::fundamental_frequency);
    EXPECT_DOUBLE_EQ(coupled.getIntervalEnd(), 2e-3);
    EXPECT_DOUBLE_EQ(coupled.getSamplingFrequency(), 1024000.0);
    coupled.setNumberOfPoints(2048);
    coupled.handleRedundantEntries(FFTAnalysisOptions::number_of_points);
    EXPECT_DOUBLE_EQ(coupled.getSamplingFrequency(), 2048000.0);
    coupled.setSamplingFrequency(4096.0);
    coupled.handleRedundantEntries(FFTAnalysisOptions::sampling_frequency);
    EXPECT_DOUBLE_EQ(coupled.getFundamentalFrequency(), 2.0);
    EXPECT_DOUBLE_EQ(coupled.getIntervalEnd(), 1e-3 + 0.5);
    cFFTAnalysisOptions unknown;
    unknown.setSamplingFrequency(8192.0);
    unknown.setNumberOfPoints(1024);
    unknown.handleRedundantEntries();
    EXPECT_DOUBLE_EQ(unknown.getFundamentalFrequency(), 8.0);

    // Entries a load may bring that no run can use.
    cAnalysisOptions broken = cFFTAnalysisOptions();
    broken.setInt(0, 9);
    broken.setInt(1, 2);
    broken.setInt64(1, 0);
    broken.setDouble(3, -5);
    cFFTAnalysisOptions repaired(broken);
    EXPECT_FALSE(repaired.verifyEntries());
    EXPECT_EQ(repaired.getWindowFunctionType(), 0);
    EXPECT_EQ(repaired.getFrequencyResamplingType(), 1);
    EXPECT_EQ(repaired.getOversamplingFactor(), 1);
    EXPECT_EQ(repaired.getSamplingFrequency(), 0.0);
    EXPECT_TRUE(repaired.verifyEntries());

    // Names.
    EXPECT_STREQ(FFTAnalysisOptions::get_fft_window_function_type_as_string(4), "Blackman (periodic)");
    EXPECT_EQ(FFTAnalysisOptions::get_fft_window_function_types_as_string().size(), 7u);
    EXPECT_STREQ(FFTAnalysisOptions::get_fft_frequency_resampling_type_as_string(2), "");
    EXPECT_STREQ(FFTAnalysisOptions::get_fft_frequency_resampling_type_as_string(4), "Gaussian");
    // The window behind the label "Blackman (periodic)" is the symmetric one.
    EXPECT_EQ(cFFTAnalysis::computeWindow(FFTAnalysisOptions::blackman_periodic, 9), cFFTInterface::blackman(9));

    // The configuration checks: message, reset, summary.
    cCollector collector;
    cVxLogger logger;
    logger.setLoggerCallBack(&collector);
    cFFTAnalysisOptions fft;
    fft.setNumberOfPoints(1001);
    fft.setOversamplingFactor(0);
    EXPECT_FALSE(fftConfiguration::verifyFFTPlotParameters(fft, logger));
    EXPECT_EQ(fft.getNumberOfPoints(), 1024);
    EXPECT_EQ(fft.getOversamplingFactor(), 1);
    cFFTAnalysisOptions convolution;
    EXPECT_FALSE(fftConfiguration::verifyConvolutionPlotParameters(convolution, logger));
    EXPECT_GT(convolution.getSamplingFrequency(), 0.0);
    EXPECT_TRUE(fftConfiguration::verifyFFTPlotParameters(fft, logger));
    EXPECT_TRUE(fftConfiguration::verifyConvolutionPlotParameters(convolution, logger));
    logger.setLoggerCallBack(nullptr);
    // The logger trims the line ends of its messages.
    EXPECT_EQ(collector.lines,
              (std::vector<std::string>{
                  "fft configuration : nb of time samples must be multiple of 2",
                  "fft configuration : oversampling factor <= 0",
                  "One or several parameters for FFT computations was changed due to a configuration error.",
                  "convolution configuration : sampling frequency <= 0.0",
                  "One or several parameters for Convolution computations was changed due to a configuration error."}));
}
