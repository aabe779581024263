#include "analysis/cFFTAnalysisOptions.h"

#include <cmath>

#include "base/cVxLogger.h"

namespace vx3 {

namespace FFTAnalysisOptions {

namespace {
constexpr const char* kWindowNames[kNbOfWindowFunctions] = {
    "Rectangular", "Triangular", "Kaiser (beta = 0.5)", "Bartlett", "Blackman (periodic)", "Hamming (periodic)",
    "Hann (periodic)"};
}  // namespace

const char* get_fft_window_function_type_as_string(int type)
{
    return type >= 0 && type < kNbOfWindowFunctions ? kWindowNames[type] : "";
}

std::vector<std::string> get_fft_window_function_types_as_string()
{
    return std::vector<std::string>(std::begin(kWindowNames), std::end(kWindowNames));
}

const char* get_fft_frequency_resampling_type_as_string(int type)
{
    switch (type) {
    case resampling_none:
        return "None";
    case resampling_triangles:
        return "Triangles";
    case resampling_box:
        return "Box";
    case resampling_gaussian:
        return "Gaussian";
    default:
        return "";
    }
}

}  // namespace FFTAnalysisOptions

using namespace FFTAnalysisOptions;

namespace {

// What the convolution check falls back to: a nanosecond grid suits most simulated signals.
constexpr double kDefaultConvolutionSamplingFrequency = 1e9;

void setDefault(cAnalysisOptions& options, unsigned kind, unsigned index)
{
    switch (kind) {
    case 0:
        options.setDouble(index, 0.0);
        break;
    case 1:
        options.setInt64(index, index == number_of_points_entry ? kDefaultNumberOfPoints : 1);
        break;
    case 2:
        options.setInt(index, index == frequency_resampling_entry ? int(resampling_triangles) : int(rectangular));
        break;
    default:
        options.setFlag(index, index == normalize_inverse_flag || index == use_fft_flag);
        break;
    }
}

}  // namespace

void cFFTAnalysisOptions::completeWithDefaults()
{
    for (unsigned i = static_cast<unsigned>(doubles().size()); i < kNbOfDoubleEntries; ++i)
        setDefault(*this, 0, i);
    for (unsigned i = static_cast<unsigned>(int64s().size()); i < kNbOfInt64Entries; ++i)
        setDefault(*this, 1, i);
    for (unsigned i = static_cast<unsigned>(ints().size()); i < kNbOfIntEntries; ++i)
        setDefault(*this, 2, i);
    for (unsigned i = static_cast<unsigned>(flags().size()); i < kNbOfFlags; ++i)
        setDefault(*this, 3, i);
}

void cFFTAnalysisOptions::setDefaults()
{
    static_cast<cAnalysisOptions&>(*this) = cAnalysisOptions();
    completeWithDefaults();
}

bool cFFTAnalysisOptions::verifyEntries()
{
    completeWithDefaults();
    bool usable = true;
    for (unsigned i = 0; i < kNbOfDoubleEntries; ++i)
        if (!std::isfinite(getDouble(i))) {
            setDefault(*this, 0, i);
            usable = false;
        }
    for (unsigned i : {fundamental_frequency_entry, sampling_frequency_entry, sampling_rate_entry})
        if (getDouble(i) < 0) {
            setDefault(*this, 0, i);
            usable = false;
        }
    if (getNumberOfPoints() < 0) {
        setDefault(*this, 1, number_of_points_entry);
        usable = false;
    }
    if (getOversamplingFactor() < 1) {
        setDefault(*this, 1, oversampling_factor_entry);
        usable = false;
    }
    if (getWindowFunctionType() < 0 || getWindowFunctionType() >= kNbOfWindowFunctions) {
        setDefault(*this, 2, window_function_entry);
        usable = false;
    }
    if (*get_fft_frequency_resampling_type_as_string(getFrequencyResamplingType()) == '\0') {
        setDefault(*this, 2, frequency_resampling_entry);
        usable = false;
    }
    return usable;
}

void cFFTAnalysisOptions::handleRedundantEntries(fft_parameter_type parameter)
{
    const double start = getIntervalStart(), end = getIntervalEnd();
    const double n = static_cast<double>(getNumberOfPoints());
    double f0 = getFundamentalFrequency(), fs = getSamplingFrequency();
    // f0 from a new period, fs from f0.
    auto fromInterval = [&] {
        const double period = end - start;
        if (!(period > 0))
            return false;
        f0 = 1.0 / period;
        setFundamentalFrequency(f0);
        if (n > 0)
            setSamplingFrequency(f0 * n);
        return true;
    };
    // The end of the interval from f0.
    auto endFromFundamental = [&] {
        if (f0 > 0)
            setDouble(interval_end_entry, start + 1.0 / f0);
    };
    auto fromSamplingFrequency = [&] {
        if (!(fs > 0) || !(n > 0))
            return;
        f0 = fs / n;
        setFundamentalFrequency(f0);
        endFromFundamental();
    };
    switch (parameter) {
    case interval_start:
    case interval_end:
        fromInterval();
        break;
    case fundamental_frequency:
        if (f0 > 0) {
            endFromFundamental();
            if (n > 0)
                setSamplingFrequency(f0 * n);
        }
        break;
    case sampling_frequency:
        fromSamplingFrequency();
        break;
    case number_of_points:
    case oversampling_factor:
        if (f0 > 0) {
            if (n > 0)
                setSamplingFrequency(f0 * n);
        } else {
            fromSamplingFrequency();
        }
        break;
    default:
        if (!fromInterval() && fs > 0 && n > 0) {
            f0 = fs / n;
            setFundamentalFrequency(f0);
        }
        break;
    }
}

void cFFTAnalysisOptions::restrictToInterval(double start, double end)
{
    setRestrictToIntervalFlag(true);
    setInterval(start, end);
}

namespace fftConfiguration {

bool verifyFFTPlotParameters(cFFTAnalysisOptions& options, const cVxLogger& logger)
{
    bool usable = true;
    if (options.getNumberOfPoints() % 2 != 0) {
        logger.errorMsg("fft configuration : nb of time samples must be multiple of 2 ");
        options.setNumberOfPoints(kDefaultNumberOfPoints);
        usable = false;
    }
    if (options.getOversamplingFactor() <= 0) {
        logger.errorMsg("fft configuration : oversampling factor <= 0 ");
        options.setOversamplingFactor(1);
        usable = false;
    }
    if (!usable)
        logger.warnMsg("One or several parameters for FFT computations was changed due to a configuration error.");
    return usable;
}

bool verifyConvolutionPlotParameters(cFFTAnalysisOptions& options, const cVxLogger& logger)
{
    if (options.getSamplingFrequency() > 0)
        return true;
    logger.errorMsg("convolution configuration : sampling frequency <= 0.0 ");
    options.setSamplingFrequency(kDefaultConvolutionSamplingFrequency);
    logger.warnMsg("One or several parameters for Convolution computations was changed due to a configuration error.");
    return false;
}

}  // namespace fftConfiguration

}  // namespace vx3
