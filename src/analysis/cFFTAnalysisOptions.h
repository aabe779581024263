// The settings of a spectrum, inverse spectrum or convolution run, as named entries of
// cAnalysisOptions, and the rules that keep interval, fundamental frequency, sampling frequency
// and number of points coherent when one of them is edited.
#pragma once

#include <string>
#include <vector>

#include "analysis/cAnalysisOptions.h"

namespace vx3 {

class cVxLogger;

namespace FFTAnalysisOptions {

// Entries of the double store.
enum double_entry : unsigned {
    interval_start_entry = 0,
    interval_end_entry = 1,
    fundamental_frequency_entry = 2,
    sampling_frequency_entry = 3,
    sampling_rate_entry = 4,
    estimated_fundamental_frequency_entry = 5,
    kNbOfDoubleEntries
};
enum int64_entry : unsigned { number_of_points_entry = 0, oversampling_factor_entry = 1, kNbOfInt64Entries };
enum int_entry : unsigned { window_function_entry = 0, frequency_resampling_entry = 1, kNbOfIntEntries };
enum flag_entry : unsigned {
    restrict_to_interval_flag = 0,
    frequency_to_time_flag = 1,
    normalize_flag = 2,
    normalize_inverse_flag = 3,
    complete_time_domain_curve_flag = 4,
    use_fft_flag = 5,
    periodic_convolution_flag = 6,
    generate_resampled_curves_flag = 7,
    kNbOfFlags
};

// The parameter that was edited, for handleRedundantEntries.
enum fft_parameter_type : unsigned {
    default_parameter = 0,
    interval_start,
    interval_end,
    fundamental_frequency,
    sampling_frequency,
    number_of_points,
    oversampling_factor,
};

// Numbers are stored in sessions: never renumber.
enum fft_window_function_type : int {
    rectangular = 0,
    triangular = 1,
    kaiser_beta_0_5 = 2,
    bartlett = 3,
    blackman_periodic = 4,  // the label says periodic; the symmetric window is computed
    hamming_periodic = 5,
    hann_periodic = 6,
    kNbOfWindowFunctions
};
enum fft_frequency_resampling_type : int { resampling_none = 0, resampling_triangles = 1, resampling_box = 3, resampling_gaussian = 4 };

const char* get_fft_window_function_type_as_string(int type);
std::vector<std::string> get_fft_window_function_types_as_string();
// "" for a type without a name (2 and unknown ones).
const char* get_fft_frequency_resampling_type_as_string(int type);

constexpr int64_t kDefaultNumberOfPoints = 1024;

}  // namespace FFTAnalysisOptions

class cFFTAnalysisOptions : public cAnalysisOptions {
public:
    // All entries present, with their defaults.
    cFFTAnalysisOptions() { setDefaults(); }
    // The stored vectors of a session; missing entries get their defaults.
    explicit cFFTAnalysisOptions(const cAnalysisOptions& options) : cAnalysisOptions(options) { completeWithDefaults(); }

    // Entries that the stored vectors lack get their defaults; present ones stay.
    void completeWithDefaults();
    // Every entry to its default.
    void setDefaults();
    // Values a load may have brought that no run can use go back to their defaults; false if any did.
    bool verifyEntries();

    // Keeps the dependent parameters coherent after parameter was edited: period 1/f0 = interval
    // length, fs = f0 * N, end = start + period. After N or the oversampling factor, fs follows
    // f0 when f0 is known, f0 follows fs otherwise. The default case derives f0 (and fs) from the
    // interval when it has a length, f0 from fs otherwise.
    void handleRedundantEntries(FFTAnalysisOptions::fft_parameter_type parameter);
    void handleRedundantEntries() { handleRedundantEntries(FFTAnalysisOptions::default_parameter); }
    // Restricts runs to [start, end].
    void restrictToInterval(double start, double end);

    double getIntervalStart() const { return getDouble(FFTAnalysisOptions::interval_start_entry); }
    double getIntervalEnd() const { return getDouble(FFTAnalysisOptions::interval_end_entry); }
    double getFundamentalFrequency() const { return getDouble(FFTAnalysisOptions::fundamental_frequency_entry); }
    double getSamplingFrequency() const { return getDouble(FFTAnalysisOptions::sampling_frequency_entry); }
    double getSamplingRate() const { return getDouble(FFTAnalysisOptions::sampling_rate_entry); }
    double getEstimatedFundamentalFrequency() const
    {
        return getDouble(FFTAnalysisOptions::estimated_fundamental_frequency_entry);
    }
    int64_t getNumberOfPoints() const { return getInt64(FFTAnalysisOptions::number_of_points_entry); }
    int64_t getOversamplingFactor() const { return getInt64(FFTAnalysisOptions::oversampling_factor_entry); }
    int getWindowFunctionType() const { return getInt(FFTAnalysisOptions::window_function_entry); }
    int getFrequencyResamplingType() const { return getInt(FFTAnalysisOptions::frequency_resampling_entry); }
    bool getRestrictToInterval() const { return getFlag(FFTAnalysisOptions::restrict_to_interval_flag); }
    bool getFrequencyToTime() const { return getFlag(FFTAnalysisOptions::frequency_to_time_flag); }
    bool getNormalize() const { return getFlag(FFTAnalysisOptions::normalize_flag); }
    bool getNormalizeInverse() const { return getFlag(FFTAnalysisOptions::normalize_inverse_flag); }
    bool getCompleteTimeDomainCurve() const { return getFlag(FFTAnalysisOptions::complete_time_domain_curve_flag); }
    bool getUseFFT() const { return getFlag(FFTAnalysisOptions::use_fft_flag); }
    bool getPeriodicConvolution() const { return getFlag(FFTAnalysisOptions::periodic_convolution_flag); }
    bool getGenerateResampledCurves() const { return getFlag(FFTAnalysisOptions::generate_resampled_curves_flag); }

    void setInterval(double start, double end)
    {
        setDouble(FFTAnalysisOptions::interval_start_entry, start);
        setDouble(FFTAnalysisOptions::interval_end_entry, end);
    }
    void setFundamentalFrequency(double f) { setDouble(FFTAnalysisOptions::fundamental_frequency_entry, f); }
    void setSamplingFrequency(double f) { setDouble(FFTAnalysisOptions::sampling_frequency_entry, f); }
    void setSamplingRate(double f) { setDouble(FFTAnalysisOptions::sampling_rate_entry, f); }
    void setEstimatedFundamentalFrequency(double f)
    {
        setDouble(FFTAnalysisOptions::estimated_fundamental_frequency_entry, f);
    }
    void setNumberOfPoints(int64_t n) { setInt64(FFTAnalysisOptions::number_of_points_entry, n); }
    void setOversamplingFactor(int64_t n) { setInt64(FFTAnalysisOptions::oversampling_factor_entry, n); }
    void setWindowFunctionType(int type) { setInt(FFTAnalysisOptions::window_function_entry, type); }
    void setFrequencyResamplingType(int type) { setInt(FFTAnalysisOptions::frequency_resampling_entry, type); }
    void setRestrictToIntervalFlag(bool flag) { setFlag(FFTAnalysisOptions::restrict_to_interval_flag, flag); }
    void setFrequencyToTime(bool flag) { setFlag(FFTAnalysisOptions::frequency_to_time_flag, flag); }
    void setNormalize(bool flag) { setFlag(FFTAnalysisOptions::normalize_flag, flag); }
    void setNormalizeInverse(bool flag) { setFlag(FFTAnalysisOptions::normalize_inverse_flag, flag); }
    void setCompleteTimeDomainCurve(bool flag) { setFlag(FFTAnalysisOptions::complete_time_domain_curve_flag, flag); }
    void setUseFFT(bool flag) { setFlag(FFTAnalysisOptions::use_fft_flag, flag); }
    void setPeriodicConvolution(bool flag) { setFlag(FFTAnalysisOptions::periodic_convolution_flag, flag); }
    void setGenerateResampledCurves(bool flag) { setFlag(FFTAnalysisOptions::generate_resampled_curves_flag, flag); }
};

// The checks of the configuration dialog, without the dialog: values no run can use are reset
// to their defaults, each with its message and a summary after them on logger. True if all were
// usable.
namespace fftConfiguration {
bool verifyFFTPlotParameters(cFFTAnalysisOptions& options, const cVxLogger& logger);
bool verifyConvolutionPlotParameters(cFFTAnalysisOptions& options, const cVxLogger& logger);
}  // namespace fftConfiguration

}  // namespace vx3
