// Two curves combined by the curve engine: a + b on one shared grid against a plain loop over the
// same arrays, a + b and a - b on unlike grids in samples per second, and the memory a
// combination takes beyond its inputs (measured in a child process each).
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <random>
#include <vector>

#include "expressions/cPostProcessCurveDescriptionUser.h"
#include "expressions/postProcessOperators.h"

using namespace vx3;
using namespace vx3::postProcess;

namespace {

constexpr uint64_t kSamples = 10000000;

double seconds(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

long maxRssKb()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

struct cInputs {
    std::vector<double> ax, ay, bx, by;
};

// Both on [0, 1]; b's grid shifted by half a step unless shared.
cInputs makeInputs(bool shared)
{
    cInputs in;
    std::mt19937_64 random(1);
    std::normal_distribution<double> normal;
    in.ax.resize(kSamples);
    in.ay.resize(kSamples);
    in.by.resize(kSamples);
    for (uint64_t i = 0; i < kSamples; ++i) {
        in.ax[i] = static_cast<double>(i) / kSamples;
        in.ay[i] = normal(random);
        in.by[i] = normal(random);
    }
    if (!shared) {
        in.bx.resize(kSamples);
        for (uint64_t i = 0; i < kSamples; ++i)
            in.bx[i] = (static_cast<double>(i) + 0.5) / kSamples;
    }
    return in;
}

template <class Op>
double combineSeconds(const cInputs& in, bool shared, bool unionMode, Op op, uint64_t& resultSize)
{
    const auto start = std::chrono::steady_clock::now();
    const auto a = makeCurveSamples(in.ax.data(), in.ay.data(), kSamples);
    const auto b = makeCurveSamples(shared ? in.ax.data() : in.bx.data(), in.by.data(), kSamples);
    cPostProcessCurveDescriptionUser engine;
    cGrid grid;
    std::unique_ptr<double[]> y;
    if (!engine.applyOperatorToTwoCurves(a, b, unionMode, op, grid, y)) {
        std::fprintf(stderr, "combination failed: %s\n", engine.getErrorString().c_str());
        std::exit(1);
    }
    const double elapsed = seconds(start);
    resultSize = grid.size;
    // Keep the result alive until here, and touched, so no part of the work can be dropped.
    volatile double sink = y[grid.size / 2];
    (void)sink;
    return elapsed;
}

double plainLoopSeconds(const cInputs& in)
{
    const auto start = std::chrono::steady_clock::now();
    std::unique_ptr<double[]> c(new double[kSamples]);
    const double* a = in.ay.data();
    const double* b = in.by.data();
    for (uint64_t i = 0; i < kSamples; ++i)
        c[i] = a[i] + b[i];
    const double elapsed = seconds(start);
    volatile double sink = c[kSamples / 2];
    (void)sink;
    return elapsed;
}

// The growth of the peak resident size while combining, in a child process of its own.
void reportMemory(const char* name, bool shared, bool unionMode)
{
    const pid_t child = fork();
    if (child == 0) {
        const cInputs in = makeInputs(shared);
        const long before = maxRssKb();
        uint64_t size = 0;
        if (unionMode)
            combineSeconds(in, shared, true, cAdd(), size);
        else
            combineSeconds(in, shared, false, cSubtract(), size);
        const long grown = maxRssKb() - before;
        const double resultMb = static_cast<double>(size) * (shared ? 8 : 16) / 1e6;
        std::printf("memory %s: inputs %.0f MB, peak grew by %.0f MB; one result (%s) is %.0f MB\n", name,
                    static_cast<double>((shared ? 3 : 4) * kSamples * 8) / 1e6, grown / 1000.0,
                    shared ? "y only, x shared" : "x and y", resultMb);
        std::fflush(stdout);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
}

}  // namespace

int main()
{
    reportMemory("shared grid a+b", true, true);
    reportMemory("unlike grids a+b", false, true);

    uint64_t size = 0;
    const cInputs shared = makeInputs(true);
    double best = 1e9, baseline = 1e9;
    for (int run = 0; run < 5; ++run) {
        baseline = std::min(baseline, plainLoopSeconds(shared));
        best = std::min(best, combineSeconds(shared, true, true, cAdd(), size));
    }
    std::printf("shared grid a+b: %.1f ms; baseline: %.1f ms (plain loop c[i]=a[i]+b[i]); ratio: %.2f\n", best * 1e3,
                baseline * 1e3, best / baseline);

    const cInputs unlike = makeInputs(false);
    double add = 1e9, subtract = 1e9;
    uint64_t addSize = 0, subtractSize = 0;
    for (int run = 0; run < 3; ++run) {
        add = std::min(add, combineSeconds(unlike, false, true, cAdd(), addSize));
        subtract = std::min(subtract, combineSeconds(unlike, false, false, cSubtract(), subtractSize));
    }
    std::printf("unlike grids a+b: %.1f ms for %llu result samples: %.0f million samples/s\n", add * 1e3,
                static_cast<unsigned long long>(addSize), addSize / add / 1e6);
    std::printf("unlike grids a-b: %.1f ms for %llu result samples: %.0f million samples/s\n", subtract * 1e3,
                static_cast<unsigned long long>(subtractSize), subtractSize / subtract / 1e6);
    return 0;
}
