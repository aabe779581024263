#include "analysis/cFFTInterface.h"

#include <fftw3.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <mutex>
#include <numbers>

#include <boost/math/special_functions/bessel.hpp>

namespace vx3 {

namespace {

// The library's planner (plan creation and destruction) keeps process-wide tables and isn't
// reentrant; execution of a finished plan is. Every planning step in the process goes through
// this one lock.
std::mutex& plannerMutex()
{
    static std::mutex mutex;
    return mutex;
}

// Scratch arrays for planning, with the given offset from the library's alignment, so that the
// plan fits the caller's buffers (planning may write into its arrays, never into the caller's).
class cScratch {
public:
    cScratch(uint64_t bytes, int offset)
        : mBase(static_cast<char*>(fftw_malloc(bytes + 64))), mOffset(mBase ? offset : 0)
    {
    }
    ~cScratch() { fftw_free(mBase); }
    cScratch(const cScratch&) = delete;
    cScratch& operator=(const cScratch&) = delete;
    template <class T>
    T* as() const
    {
        return mBase ? reinterpret_cast<T*>(mBase + mOffset) : nullptr;
    }

private:
    char* mBase;
    int mOffset;
};

}  // namespace

struct cFFTInterface::cPlan {
    fftw_plan plan = nullptr;
};

cFFTInterface::cFFTInterface() = default;

cFFTInterface::~cFFTInterface()
{
    const std::lock_guard<std::mutex> lock(plannerMutex());
    for (auto& [key, plan] : mPlans)
        if (plan->plan)
            fftw_destroy_plan(plan->plan);
}

cFFTInterface::cPlan* cFFTInterface::findPlan(plan_kind kind, uint64_t n, const void* input, const void* output)
{
    if (!n || n > static_cast<uint64_t>(INT_MAX) || !input || !output)
        return nullptr;
    const int inAlignment = fftw_alignment_of(const_cast<double*>(static_cast<const double*>(input)));
    const int outAlignment = fftw_alignment_of(const_cast<double*>(static_cast<const double*>(output)));
    const bool inPlace = input == output;
    const tPlanKey key{kind, n, inAlignment, outAlignment, inPlace};
    if (auto found = mPlans.find(key); found != mPlans.end())
        return found->second->plan ? found->second.get() : nullptr;
    auto made = std::make_unique<cPlan>();
    const int size = static_cast<int>(n);
    const uint64_t complexBytes = n * sizeof(fftw_complex);
    {
        const std::lock_guard<std::mutex> lock(plannerMutex());
        cScratch in(complexBytes, inAlignment);
        cScratch out(inPlace ? 0 : complexBytes, outAlignment);
        if (in.as<char>() && out.as<char>()) {
            const unsigned flags = FFTW_ESTIMATE;
            auto* cin = in.as<fftw_complex>();
            auto* cout = inPlace ? cin : out.as<fftw_complex>();
            switch (kind) {
            case complex_forward:
                made->plan = fftw_plan_dft_1d(size, cin, cout, FFTW_FORWARD, flags);
                break;
            case complex_inverse:
                made->plan = fftw_plan_dft_1d(size, cin, cout, FFTW_BACKWARD, flags);
                break;
            case real_forward:
                made->plan = fftw_plan_dft_r2c_1d(size, in.as<double>(), out.as<fftw_complex>(), flags);
                break;
            case real_inverse:
                made->plan = fftw_plan_dft_c2r_1d(size, in.as<fftw_complex>(), out.as<double>(), flags);
                break;
            }
        }
    }
    cPlan* plan = made->plan ? made.get() : nullptr;
    mPlans.emplace(key, std::move(made));
    return plan;
}

double cFFTInterface::normalizationFactor(uint64_t n, unsigned type)
{
    if (!n)
        return 1.0;
    switch (type) {
    case FFTInterface::normalize_by_n:
        return 1.0 / static_cast<double>(n);
    case FFTInterface::normalize_by_sqrt_n:
        return 1.0 / std::sqrt(static_cast<double>(n));
    default:
        return 1.0;
    }
}

// ---- Input preparation

namespace {

// The first n values of the input, zeros after its end.
template <class In, class Out>
void cutOrPad(const In* input, uint64_t count, uint64_t n, std::vector<Out>& output)
{
    output.assign(n, Out(0.0));
    if (input)
        std::copy(input, input + std::min(count, n), output.begin());
}

}  // namespace

void cFFTInterface::copyToInputVector(const double* input, uint64_t count, uint64_t n, std::vector<double>& output)
{
    cutOrPad(input, count, n, output);
}

void cFFTInterface::copyToComplexInputVector(const tComplex* input, uint64_t count, uint64_t n,
                                             std::vector<tComplex>& output)
{
    cutOrPad(input, count, n, output);
}

void cFFTInterface::copyToComplexInputVector(const double* input, uint64_t count, uint64_t n,
                                             std::vector<tComplex>& output)
{
    cutOrPad(input, count, n, output);
}

// ---- Transforms

bool cFFTInterface::complexInPlace(plan_kind kind, tComplex* data, uint64_t n, unsigned normalize)
{
    cPlan* plan = findPlan(kind, n, data, data);
    if (!plan)
        return false;
    auto* buffer = reinterpret_cast<fftw_complex*>(data);
    fftw_execute_dft(plan->plan, buffer, buffer);
    cFFTInterface::normalize(data, n, n, normalize);
    return true;
}

bool cFFTInterface::FFT(tComplex* data, uint64_t n, unsigned normalize)
{
    return complexInPlace(complex_forward, data, n, normalize);
}

bool cFFTInterface::iFFT(tComplex* data, uint64_t n, unsigned normalize)
{
    return complexInPlace(complex_inverse, data, n, normalize);
}

bool cFFTInterface::realFFT(const double* input, uint64_t n, tComplex* output)
{
    cPlan* plan = findPlan(real_forward, n, input, output);
    if (!plan)
        return false;
    // The forward real transform leaves its input alone.
    fftw_execute_dft_r2c(plan->plan, const_cast<double*>(input), reinterpret_cast<fftw_complex*>(output));
    return true;
}

bool cFFTInterface::FFT(const double* input, uint64_t n, bool complete, unsigned normalize, tComplex* output)
{
    if (!realFFT(input, n, output))
        return false;
    const uint64_t half = n / 2 + 1;
    if (complete)
        for (uint64_t k = half; k < n; ++k)
            output[k] = std::conj(output[n - k]);
    cFFTInterface::normalize(output, complete ? n : half, n, normalize);
    return true;
}

bool cFFTInterface::realInverseFFT(const tComplex* input, uint64_t n, double* output)
{
    if (!n || !input || !output)
        return false;
    // The inverse real transform overwrites its input: it works on a copy.
    std::vector<tComplex> bins(input, input + n / 2 + 1);
    cPlan* plan = findPlan(real_inverse, n, bins.data(), output);
    if (!plan)
        return false;
    fftw_execute_dft_c2r(plan->plan, reinterpret_cast<fftw_complex*>(bins.data()), output);
    return true;
}

bool cFFTInterface::inverseFFT(const tComplex* input, tComplex* output, uint64_t n)
{
    cPlan* plan = findPlan(complex_inverse, n, input, output);
    if (!plan)
        return false;
    fftw_execute_dft(plan->plan, reinterpret_cast<fftw_complex*>(const_cast<tComplex*>(input)),
                     reinterpret_cast<fftw_complex*>(output));
    return true;
}

// ---- Vector forms

std::vector<cFFTInterface::tComplex> cFFTInterface::complexCopy(plan_kind kind, const std::vector<tComplex>& input,
                                                                uint64_t n, unsigned normalize)
{
    std::vector<tComplex> data;
    copyToComplexInputVector(input.data(), input.size(), n ? n : input.size(), data);
    if (!complexInPlace(kind, data.data(), data.size(), normalize))
        data.clear();
    return data;
}

std::vector<cFFTInterface::tComplex> cFFTInterface::FFT(const std::vector<tComplex>& input, uint64_t n,
                                                        unsigned normalize)
{
    return complexCopy(complex_forward, input, n, normalize);
}

std::vector<cFFTInterface::tComplex> cFFTInterface::iFFT(const std::vector<tComplex>& input, uint64_t n,
                                                         unsigned normalize)
{
    return complexCopy(complex_inverse, input, n, normalize);
}

std::vector<cFFTInterface::tComplex> cFFTInterface::FFT(const std::vector<double>& input, uint64_t n, bool complete,
                                                        unsigned normalize)
{
    std::vector<double> data;
    copyToInputVector(input, n ? n : input.size(), data);
    std::vector<tComplex> output(complete ? data.size() : data.size() / 2 + 1);
    if (!FFT(data.data(), data.size(), complete, normalize, output.data()))
        output.clear();
    return output;
}

std::vector<double> cFFTInterface::realInverseFFT(const std::vector<tComplex>& input, uint64_t n, unsigned normalize)
{
    std::vector<tComplex> bins;
    copyToComplexInputVector(input.data(), input.size(), n / 2 + 1, bins);
    std::vector<double> output(n);
    if (!realInverseFFT(bins.data(), n, output.data()))
        return {};
    cFFTInterface::normalize(output.data(), n, n, normalize);
    return output;
}

// ---- Windows

namespace {

// a0 - a1 cos x + a2 cos 2x with x = i * 2 pi / (n - 1).
std::vector<double> cosineWindow(uint64_t n, double a0, double a1, double a2)
{
    if (n < 2)
        return std::vector<double>(1, 1.0);
    std::vector<double> window(n);
    const double step = 2.0 * std::numbers::pi / static_cast<double>(n - 1);
    for (uint64_t i = 0; i < n; ++i) {
        const double x = static_cast<double>(i) * step;
        window[i] = a0 - a1 * std::cos(x) + a2 * std::cos(2.0 * x);
    }
    return window;
}

// The periodic form: the symmetric window of n + 1 values without its last one.
std::vector<double> periodic(uint64_t n, std::vector<double> (*symmetric)(uint64_t))
{
    if (n < 2)
        return std::vector<double>(1, 1.0);
    std::vector<double> window = symmetric(n + 1);
    window.pop_back();
    return window;
}

}  // namespace

std::vector<double> cFFTInterface::hann(uint64_t n)
{
    if (n < 2)
        return std::vector<double>(1, 1.0);
    // (1 - cos x) / 2 written as such, not through the general form, for the exact zero ends.
    std::vector<double> window(n);
    const double step = 2.0 * std::numbers::pi / static_cast<double>(n - 1);
    for (uint64_t i = 0; i < n; ++i)
        window[i] = (1.0 - std::cos(static_cast<double>(i) * step)) * 0.5;
    return window;
}

std::vector<double> cFFTInterface::hannPeriodic(uint64_t n) { return periodic(n, &cFFTInterface::hann); }
std::vector<double> cFFTInterface::hamming(uint64_t n) { return cosineWindow(n, 0.54, 0.46, 0.0); }
std::vector<double> cFFTInterface::hammingPeriodic(uint64_t n) { return periodic(n, &cFFTInterface::hamming); }
std::vector<double> cFFTInterface::blackman(uint64_t n) { return cosineWindow(n, 0.42, 0.5, 0.08); }
std::vector<double> cFFTInterface::blackmanPeriodic(uint64_t n) { return periodic(n, &cFFTInterface::blackman); }

std::vector<double> cFFTInterface::bartlett(uint64_t n)
{
    if (n < 2)
        return std::vector<double>(1, 1.0);
    std::vector<double> window(n);
    const double d = 1.0 / static_cast<double>(n - 1);
    for (uint64_t i = 0; i < n; ++i) {
        const double v = 2.0 * static_cast<double>(i) * d;
        window[i] = i < n / 2 ? v : 2.0 - v;
    }
    return window;
}

std::vector<double> cFFTInterface::triang(uint64_t n)
{
    if (n == 0)
        return {};
    if (n == 1)
        return std::vector<double>(1, 1.0);
    std::vector<double> window(n);
    if (n % 2 == 0) {
        const double nn = static_cast<double>(n);
        for (uint64_t i = 1; i <= n / 2; ++i)
            window[i - 1] = (2.0 * static_cast<double>(i) - 1.0) / nn;
        for (uint64_t i = n / 2 + 1; i <= n; ++i)
            window[i - 1] = 2.0 - (2.0 * static_cast<double>(i) - 1.0) / nn;
    } else {
        const uint64_t m = n + 1;
        const double mm = static_cast<double>(m);
        for (uint64_t i = 1; i <= m / 2; ++i)
            window[i - 1] = 2.0 * static_cast<double>(i) / mm;
        for (uint64_t i = m / 2 + 1; i <= n; ++i)
            window[i - 1] = 2.0 - 2.0 * static_cast<double>(i) / mm;
    }
    return window;
}

std::vector<double> cFFTInterface::kaiser(uint64_t n, double beta)
{
    if (n < 2)
        return std::vector<double>(1, 1.0);
    std::vector<double> window(n);
    const double a = 2.0 / static_cast<double>(n - 1);
    const double norm = boost::math::cyl_bessel_i(0, beta);
    for (uint64_t i = 0; i < n; ++i) {
        const double t = static_cast<double>(i) * a - 1.0;
        window[i] = boost::math::cyl_bessel_i(0, beta * std::sqrt(std::max(0.0, 1.0 - t * t))) / norm;
    }
    return window;
}

// ---- Shifts

namespace {

template <class T>
std::vector<T> rotated(const std::vector<T>& values, uint64_t by)
{
    std::vector<T> result(values.size());
    if (!values.empty())
        std::rotate_copy(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(by % values.size()),
                         values.end(), result.begin());
    return result;
}

}  // namespace

// The forward shift moves element n/2 ... to the front: a left rotation by n - n/2 is a right
// rotation by n/2, which puts bin 0 at index n/2.
std::vector<double> cFFTInterface::computeRealFFTShift(const std::vector<double>& values)
{
    return rotated(values, values.size() - values.size() / 2);
}

std::vector<double> cFFTInterface::computeRealInverseFFTShift(const std::vector<double>& values)
{
    return rotated(values, values.size() / 2);
}

std::vector<cFFTInterface::tComplex> cFFTInterface::computeComplexFFTShift(const std::vector<tComplex>& values)
{
    return rotated(values, values.size() - values.size() / 2);
}

std::vector<cFFTInterface::tComplex> cFFTInterface::computeComplexInverseFFTShift(const std::vector<tComplex>& values)
{
    return rotated(values, values.size() / 2);
}

}  // namespace vx3
