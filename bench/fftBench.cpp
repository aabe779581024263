// Spectra and convolution: the real transform of 2^20 points and of 2 x 524287 (a prime) points,
// the resampling of 10^7 uneven samples onto 2^20 points, and the convolution of two curves of
// 10^6 points through the analysis. Each against numpy or scipy on the same data in the same run
// (bench/fft_baseline.py); medians of the repeats.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <unistd.h>

#include "analysis/cConvolutionAnalysis.h"
#include "analysis/cFFTAnalysisCommon.h"
#include "analysis/cFFTInterface.h"

using namespace vx3;

namespace {

constexpr int kRepeats = 15;

template <class Work>
double medianSeconds(Work&& work, int repeats = kRepeats)
{
    std::vector<double> times;
    for (int i = 0; i < repeats; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        times.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void save(const std::string& path, const std::vector<double>& values)
{
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(values.data()), static_cast<std::streamsize>(values.size() * 8));
}

void report(const char* name, double ours, const std::map<std::string, double>& baseline, const char* key)
{
    const auto found = baseline.find(key);
    if (found == baseline.end()) {
        std::printf("%s: %.3f ms\n", name, ours * 1e3);
        return;
    }
    std::printf("%s: %.3f ms; baseline: %.3f ms; ratio: %.2f\n", name, ours * 1e3, found->second * 1e3,
                ours / found->second);
}

}  // namespace

int main(int argc, char** argv)
{
    std::string pattern = "/tmp/zw_bench_fft_XXXXXX";
    if (!::mkdtemp(pattern.data()))
        return 1;
    const std::string folder = pattern;
    std::mt19937_64 random(7);
    std::normal_distribution<double> normal;
    auto noise = [&](size_t n) {
        std::vector<double> values(n);
        for (double& v : values)
            v = normal(random);
        return values;
    };

    // ---- Data, written for the baseline first.
    const std::vector<double> pow2 = noise(size_t(1) << 20), twoPrime = noise(2 * 524287);
    save(folder + "/real_2e20", pow2);
    save(folder + "/real_2p", twoPrime);
    const size_t samples = 10000000;
    std::vector<double> cx(samples), cy(samples);
    std::uniform_real_distribution<double> step(0.5e-9, 1.5e-9);
    double t = 0;
    for (size_t i = 0; i < samples; ++i) {
        cx[i] = t;
        cy[i] = std::sin(t * 3e7) + 0.01 * normal(random);
        t += step(random);
    }
    save(folder + "/curve_x", cx);
    save(folder + "/curve_y", cy);
    const size_t convolutionPoints = 1000000;
    const std::vector<double> ca = noise(convolutionPoints), cb = noise(convolutionPoints);
    save(folder + "/conv_a", ca);
    save(folder + "/conv_b", cb);

    std::map<std::string, double> baseline;
    const std::string script = std::string(ZW_SOURCE_DIR) + "/bench/fft_baseline.py";
    const std::string command = "/usr/bin/python3 '" + script + "' '" + folder + "' " + std::to_string(kRepeats);
    if (FILE* pipe = ::popen(command.c_str(), "r")) {
        std::array<char, 256> line{};
        while (std::fgets(line.data(), line.size(), pipe)) {
            char name[64];
            double seconds = 0;
            if (std::sscanf(line.data(), "%63s %lf", name, &seconds) == 2)
                baseline[name] = seconds;
        }
        ::pclose(pipe);
    }

    // ---- Real transforms; the plan is made before the timing, as a long-lived interface has it.
    cFFTInterface fft;
    std::vector<std::complex<double>> out(pow2.size() / 2 + 1);
    fft.realFFT(pow2.data(), pow2.size(), out.data());
    report("real FFT 2^20", medianSeconds([&] { fft.realFFT(pow2.data(), pow2.size(), out.data()); }), baseline,
           "real_2e20");
    out.resize(twoPrime.size() / 2 + 1);
    fft.realFFT(twoPrime.data(), twoPrime.size(), out.data());
    report("real FFT 2 x 524287",
           medianSeconds([&] { fft.realFFT(twoPrime.data(), twoPrime.size(), out.data()); }), baseline, "real_2p");
    // The first transform of a size in a fresh interface: planning included.
    report("real FFT 2^20 with planning", medianSeconds([&] {
               cFFTInterface fresh;
               fresh.realFFT(pow2.data(), pow2.size(), out.data());
           }, 5), {}, "");

    // ---- Resampling 10^7 uneven samples onto 2^20 points.
    const auto curve = postProcess::makeCurveSamples(cx.data(), cy.data(), samples);
    std::vector<double> grid(size_t(1) << 20);
    const double gridStep = (cx.back() - cx.front()) / static_cast<double>(grid.size());
    report("resampling 10^7 samples to 2^20", medianSeconds([&] {
               cFFTAnalysisCommon::resampleVectorOnInterval(curve, cx.front(), gridStep, grid.size(), grid.data());
           }), baseline, "resample");

    // ---- Convolution of two curves of 10^6 points through the analysis (resampling included).
    cCurvePlotDataFile store;
    cCurvePlotDataSection& section = *store.addDataSection("bench");
    std::vector<double> x(convolutionPoints);
    for (size_t i = 0; i < convolutionPoints; ++i)
        x[i] = static_cast<double>(i) * 1e-6;
    auto add = [&](const char* name, const std::vector<double>& y) {
        const uint64_t index = section.addVariable(
            store.addType(name, curvePlotProperties::parameterized_double, curvePlotDataType::volt), name);
        section.getVariable(index).setParameterizedDoubleValues(x.data(), y.data(), y.size());
        return index;
    };
    const uint64_t ia = add("a", ca), ib = add("b", cb);
    cFFTAnalysisOptions options;
    options.setSamplingFrequency(1e6);
    bool failed = false;
    const double convolution = medianSeconds([&] {
        cConvolutionAnalysis analysis(options, section, store);
        cFFTAnalysisArguments arguments;
        arguments.setFirstArgumentCurve(cPostProcessCurveDescription(&section, ia));
        arguments.setSecondArgumentCurve(cPostProcessCurveDescription(&section, ib));
        failed |= !analysis.computeConvolutionAndAddCurve(arguments);
        section.removeVariable(arguments.getResultCurve().getCurveIndex());
    }, 7);
    if (failed)
        std::fprintf(stderr, "convolution failed\n");
    report("convolution of two curves of 10^6 points", convolution, baseline, "convolution");

    std::error_code error;
    std::filesystem::remove_all(folder, error);
    (void)argc;
    (void)argv;
    return failed ? 1 : 0;
}
