// zelwave-cli fft and convolve: the spectrum of a curve (or the time curve of a spectrum), and
// the convolution or correlation of two curves, as CSV on standard output.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <iostream>
#include <numbers>

#include "analysis/cConvolutionAnalysis.h"
#include "analysis/cFFTAnalysis.h"
#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "cCliTool.h"
#include "cliFileSupport.h"

namespace vx3 {

namespace {

using namespace cliFiles;

const char* kAnalysisOptions =
    "Options:\n"
    "  --reader R   read with one reader only: csv (fast, then slow), fast, slow, html, tecplot,\n"
    "               vcd, nutmeg\n"
    "  --section N  the section, counting from 0 (default 0)\n"
    "  --verbose    also print the readers' informations (to standard error)\n";

// Options with a value, taken out of arguments before the common ones are read.
struct cValueOptions {
    std::vector<std::pair<std::string, std::string>> values;
    const std::string* find(const std::string& name) const
    {
        for (const auto& [key, value] : values)
            if (key == name)
                return &value;
        return nullptr;
    }
};

bool takeValueOptions(const std::vector<std::string>& arguments, const std::vector<std::string>& names,
                      const std::string& subcommand, std::vector<std::string>& rest, cValueOptions& options,
                      std::ostream& err)
{
    for (size_t i = 0; i < arguments.size(); ++i) {
        if (std::find(names.begin(), names.end(), arguments[i]) == names.end()) {
            rest.push_back(arguments[i]);
            continue;
        }
        if (i + 1 >= arguments.size()) {
            err << "zelwave-cli " << subcommand << ": " << arguments[i] << " wants a value\n";
            return false;
        }
        options.values.emplace_back(arguments[i], arguments[i + 1]);
        ++i;
    }
    return true;
}

bool readNumber(const cValueOptions& options, const std::string& name, const std::string& subcommand, double& value,
                std::ostream& err)
{
    const std::string* text = options.find(name);
    if (!text)
        return true;
    if (!cliFiles::readNumber(*text, value) || !std::isfinite(value)) {
        err << "zelwave-cli " << subcommand << ": " << name << " wants a number, not \"" << *text << "\"\n";
        return false;
    }
    return true;
}

// A window by its index, its display name or a short name (the first word, any case).
bool findWindow(const std::string& text, int& type)
{
    uint64_t index = 0;
    if (cVxString(text).toUint64(index)) {
        type = static_cast<int>(index);
        return index < FFTAnalysisOptions::kNbOfWindowFunctions;
    }
    auto lower = [](std::string s) {
        for (char& c : s)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return s;
    };
    const std::string wanted = lower(text);
    const std::vector<std::string> names = FFTAnalysisOptions::get_fft_window_function_types_as_string();
    for (size_t i = 0; i < names.size(); ++i) {
        const std::string name = lower(names[i]);
        if (wanted == name || wanted == name.substr(0, name.find(' '))) {
            type = static_cast<int>(i);
            return true;
        }
    }
    return false;
}

// The curve named by name in the chosen section, loaded; false with a message.
bool chooseCurve(cCurvePlotDataFile& store, const cFileOptions& options, const std::string& name,
                 const std::string& subcommand, std::ostream& err, cPostProcessCurveDescription& curve)
{
    cCurveChoice choice;
    if (!findCurve(store, options, name, subcommand, err, choice))
        return false;
    if (choice.isSweep) {
        err << "zelwave-cli " << subcommand << ": \"" << name << "\" is the x-axis of its section\n";
        return false;
    }
    if (!loadValues(*choice.section, *choice.curve, choice.index, false, subcommand, err))
        return false;
    curve = cPostProcessCurveDescription(choice.section, choice.index);
    return true;
}

// The result curve as CSV: x, then the value (or real and imaginary part), or for a spectrum the
// magnitude in dB and the phase in degrees.
void printCurve(const cPostProcessCurveDescription& result, const std::string& xName, bool spectrum, bool reim,
                std::ostream& out)
{
    curvePlotFunctionArgs::cDataVectors vectors;
    std::string message;
    if (!result.computeDataVectors(vectors, message) || !vectors.xDouble)
        return;
    const bool complex = vectors.yDoubleComplex != nullptr;
    if (!complex)
        out << xName << ",value\n";
    else if (spectrum && !reim)
        out << xName << ",magnitude_db,phase_deg\n";
    else
        out << xName << ",re,im\n";
    for (uint64_t i = 0; i < vectors.count; ++i) {
        out << number(vectors.xDouble[i]) << ',';
        if (!complex) {
            out << number(vectors.yDouble[i]) << '\n';
            continue;
        }
        const std::complex<double> value = vectors.yDoubleComplex[i];
        if (spectrum && !reim)
            out << number(20.0 * std::log10(std::abs(value))) << ','
                << number(std::arg(value) * 180.0 / std::numbers::pi) << '\n';
        else
            out << number(value.real()) << ',' << number(value.imag()) << '\n';
    }
}

int runFft(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    std::vector<std::string> rest;
    cValueOptions values;
    if (!takeValueOptions(arguments, {"--points", "--from", "--to", "--fs", "--window", "--oversampling"}, "fft", rest,
                          values, err))
        return 2;
    cFileOptions options;
    options.allowedFlags = {"--normalize", "--normalize-inverse", "--inverse", "--reim", "--close",
                            "--resampling-linear"};
    if (!readOptions(rest, options, err, true))
        return 2;
    if (options.positional.size() != 2) {
        err << "zelwave-cli fft: name one file and one curve\n";
        return 2;
    }
    cFFTAnalysisOptions fft;
    double from = NAN, to = NAN, fs = 0, points = NAN, oversampling = 1;
    if (!readNumber(values, "--from", "fft", from, err) || !readNumber(values, "--to", "fft", to, err) ||
        !readNumber(values, "--fs", "fft", fs, err) || !readNumber(values, "--points", "fft", points, err) ||
        !readNumber(values, "--oversampling", "fft", oversampling, err))
        return 2;
    if (std::isnan(from) != std::isnan(to)) {
        err << "zelwave-cli fft: give --from and --to together\n";
        return 2;
    }
    if ((!std::isnan(points) && (points < 0 || points != std::trunc(points))) || fs < 0 || oversampling < 1 ||
        oversampling != std::trunc(oversampling)) {
        err << "zelwave-cli fft: --points and --oversampling want whole numbers, --fs a positive one\n";
        return 2;
    }
    if (!std::isnan(from) && fs > 0 && !std::isnan(points)) {
        // Interval, N and fs depend on each other: two of them fix the third.
        err << "zelwave-cli fft: give at most two of --points, --fs and --from/--to\n";
        return 2;
    }
    int window = 0;
    if (const std::string* name = values.find("--window"); name && !findWindow(*name, window)) {
        err << "zelwave-cli fft: unknown window \"" << *name << "\" (0-6, rectangular, triangular, kaiser, "
            << "bartlett, blackman, hamming, hann)\n";
        return 2;
    }
    // Without --points a sampling frequency decides the number of points.
    fft.setNumberOfPoints(!std::isnan(points) ? static_cast<int64_t>(points)
                          : fs > 0            ? 0
                                              : FFTAnalysisOptions::kDefaultNumberOfPoints);
    fft.setSamplingFrequency(fs);
    fft.setOversamplingFactor(static_cast<int64_t>(oversampling));
    fft.setWindowFunctionType(window);
    fft.setNormalize(options.hasFlag("--normalize"));
    fft.setNormalizeInverse(options.hasFlag("--normalize-inverse"));
    fft.setFrequencyToTime(options.hasFlag("--inverse"));
    fft.setCompleteTimeDomainCurve(options.hasFlag("--close"));
    if (options.hasFlag("--resampling-linear"))
        fft.setFrequencyResamplingType(FFTAnalysisOptions::resampling_none);
    if (!std::isnan(from))
        fft.restrictToInterval(from, to);

    cCurvePlotDataFile store;
    if (!openFile(store, options, err))
        return 1;
    cPostProcessCurveDescription curve;
    if (!chooseCurve(store, options, options.positional[1], "fft", err, curve))
        return 1;
    cCurvePlotDataSection* results = store.addDataSection("fft");
    cFFTAnalysis analysis(fft, *results, store);
    cFFTAnalysisArguments run;
    run.setFirstArgumentCurve(curve);
    if (!analysis.computeFFTAndAddCurve(run)) {
        err << "zelwave-cli fft: " << analysis.getErrorString() << '\n';
        return 1;
    }
    printCurve(run.getResultCurve(), fft.getFrequencyToTime() ? "time" : "frequency", !fft.getFrequencyToTime(),
               options.hasFlag("--reim"), out);
    return 0;
}

int runConvolve(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    std::vector<std::string> rest;
    cValueOptions values;
    if (!takeValueOptions(arguments, {"--fs"}, "convolve", rest, values, err))
        return 2;
    cFileOptions options;
    options.allowedFlags = {"--xcorr", "--autocorr", "--periodic", "--direct"};
    if (!readOptions(rest, options, err, true))
        return 2;
    const bool autocorr = options.hasFlag("--autocorr"), xcorr = options.hasFlag("--xcorr");
    if (autocorr && xcorr) {
        err << "zelwave-cli convolve: choose --xcorr or --autocorr\n";
        return 2;
    }
    if (options.positional.size() != (autocorr ? 2u : 3u)) {
        err << "zelwave-cli convolve: name one file and " << (autocorr ? "one curve" : "two curves") << '\n';
        return 2;
    }
    double fs = 0;
    if (!readNumber(values, "--fs", "convolve", fs, err))
        return 2;
    cCurvePlotDataFile store;
    if (!openFile(store, options, err))
        return 1;
    cPostProcessCurveDescription a, b;
    if (!chooseCurve(store, options, options.positional[1], "convolve", err, a) ||
        (!autocorr && !chooseCurve(store, options, options.positional[2], "convolve", err, b)))
        return 1;
    if (!values.find("--fs")) {
        // The finer of both curves' mean sampling rates keeps their detail.
        fs = a.getCurvePtr()->estimateSamplingFrequency(*a.getSection());
        if (!autocorr)
            fs = std::max(fs, b.getCurvePtr()->estimateSamplingFrequency(*b.getSection()));
    }
    cFFTAnalysisOptions convolution;
    convolution.setSamplingFrequency(fs);
    convolution.setPeriodicConvolution(options.hasFlag("--periodic"));
    convolution.setUseFFT(!options.hasFlag("--direct"));
    cCurvePlotDataSection* results = store.addDataSection("convolution");
    cConvolutionAnalysis analysis(convolution, *results, store);
    cFFTAnalysisArguments run;
    run.setFirstArgumentCurve(a);
    run.setSecondArgumentCurve(b);
    const bool done = autocorr ? analysis.computeAutoCorrelationAndAddCurve(run)
                      : xcorr  ? analysis.computeCrossCorrelationAndAddCurve(run)
                               : analysis.computeConvolutionAndAddCurve(run);
    if (!done) {
        err << "zelwave-cli convolve: " << analysis.getErrorString() << '\n';
        return 1;
    }
    printCurve(run.getResultCurve(), xcorr || autocorr ? "lag" : "time", false, true, out);
    return 0;
}

}  // namespace

void addFftSubcommands(cCliTool& tool)
{
    tool.add({"fft", "the spectrum of a curve (or the time curve of a spectrum) as CSV",
              "usage: zelwave-cli fft [options] FILE CURVE\n"
              "        [--points N] [--from X1 --to X2] [--fs F] [--window NAME|INDEX]\n"
              "        [--normalize] [--normalize-inverse] [--inverse] [--reim]\n"
              "        [--oversampling K] [--close] [--resampling-linear]\n\n"
              "Resamples the curve on N points (default 1024) over [X1, X2] (default: the whole\n"
              "curve), or with --fs and no --points at F over the interval, applies the window and\n"
              "prints \"frequency,magnitude_db,phase_deg\" for the bins 0 to N/2 (\"frequency,re,im\"\n"
              "with --reim). A complex curve gives the two-sided spectrum of N bins. N must be even\n"
              "for a real curve. --normalize divides by N (by sqrt(N) with --normalize-inverse).\n"
              "Windows: 0 rectangular, 1 triangular, 2 kaiser (beta 0.5), 3 bartlett, 4 blackman,\n"
              "5 hamming (periodic), 6 hann (periodic).\n"
              "With --inverse CURVE is a spectrum (x in Hz; below 0 Hz it is two-sided) and the\n"
              "time curve is printed as \"time,value\" (\"time,re,im\" when complex); N times K points\n"
              "(K the oversampling), at F or twice the highest frequency; lines are spread on the\n"
              "bins by triangles, or interpolated with --resampling-linear. --normalize-inverse\n"
              "divides by the number of points (by its square root with --normalize); --close\n"
              "repeats the first sample after the last.\n\n" +
                  std::string(kAnalysisOptions),
              runFft});
    tool.add({"convolve", "the convolution or correlation of two curves as CSV",
              "usage: zelwave-cli convolve [options] FILE A B [--fs F] [--xcorr] [--periodic]\n"
              "       zelwave-cli convolve [options] FILE A --autocorr [--fs F] [--periodic]\n\n"
              "Resamples both curves at F (default: the finer of their mean sampling rates) from\n"
              "their own starts and prints \"time,value\" of the convolution (integral of\n"
              "a(s) b(t - s) ds), or \"lag,value\" of the cross-correlation (integral of a(t) b(t + lag)\n"
              "dt) or of the auto-correlation of A; complex curves give \"re,im\". Without --periodic\n"
              "the whole linear result is given; with it the curves repeat and the result, of their\n"
              "length, is centred on lag 0 (real curves need an even number of samples then).\n"
              "--direct sums the products instead of going through transforms.\n\n" +
                  std::string(kAnalysisOptions),
              runConvolve});
}

}  // namespace vx3
