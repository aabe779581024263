// The one door to the discrete Fourier transform: complex forward and inverse, real forward and
// real inverse, all unscaled unless a normalisation is asked for, and the window functions and
// spectrum rotations that go with them. The calculator's fft, ifft, fftshift and window functions
// call the vector forms; the analyses call the pointer forms on their own buffers.
//
// A plan is made once per kind, size and buffer alignment and kept for the life of the object;
// planning (the library's planner is one per process) is serialised, execution is not. One
// object serves one thread at a time: each thread (each analysis run) has its own.
#pragma once

#include <complex>
#include <cstdint>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

namespace vx3 {

namespace FFTInterface {
enum normalize_type : unsigned { normalize_by_n = 1, no_normalization = 2, normalize_by_sqrt_n = 3 };
}

class cFFTInterface {
public:
    using tComplex = std::complex<double>;

    cFFTInterface();
    ~cFFTInterface();
    cFFTInterface(const cFFTInterface&) = delete;
    cFFTInterface& operator=(const cFFTInterface&) = delete;

    // ---- Input preparation: the input cut or zero-padded to n values.
    static void copyToInputVector(const double* input, uint64_t count, uint64_t n, std::vector<double>& output);
    static void copyToInputVector(const std::vector<double>& input, uint64_t n, std::vector<double>& output)
    {
        copyToInputVector(input.data(), input.size(), n, output);
    }
    static void copyToComplexInputVector(const tComplex* input, uint64_t count, uint64_t n,
                                         std::vector<tComplex>& output);
    static void copyToComplexInputVector(const double* input, uint64_t count, uint64_t n,
                                         std::vector<tComplex>& output);

    // ---- Transforms on caller buffers. False when n is 0 or no plan could be made.
    // Complex forward and inverse, in place.
    bool FFT(tComplex* data, uint64_t n, unsigned normalize = FFTInterface::no_normalization);
    bool iFFT(tComplex* data, uint64_t n, unsigned normalize = FFTInterface::no_normalization);
    // Real forward of n values into output: n/2+1 bins, or all n (the upper half mirrored as the
    // conjugates) with complete.
    bool FFT(const double* input, uint64_t n, bool complete, unsigned normalize, tComplex* output);
    // Unscaled: real forward (n values to n/2+1 bins), real inverse (n/2+1 bins to n values, the
    // input is left as it was), complex inverse out of place.
    bool realFFT(const double* input, uint64_t n, tComplex* output);
    bool realInverseFFT(const tComplex* input, uint64_t n, double* output);
    bool inverseFFT(const tComplex* input, tComplex* output, uint64_t n);

    // ---- The same, vectors in and vectors out (n = 0: the input's size). Empty on failure.
    std::vector<tComplex> FFT(const std::vector<tComplex>& input, uint64_t n = 0,
                              unsigned normalize = FFTInterface::no_normalization);
    std::vector<tComplex> iFFT(const std::vector<tComplex>& input, uint64_t n = 0,
                               unsigned normalize = FFTInterface::no_normalization);
    std::vector<tComplex> FFT(const std::vector<double>& input, uint64_t n = 0, bool complete = true,
                              unsigned normalize = FFTInterface::no_normalization);
    // n real values from the n/2+1 bins of a real spectrum.
    std::vector<double> realInverseFFT(const std::vector<tComplex>& input, uint64_t n,
                                       unsigned normalize = FFTInterface::no_normalization);

    // Multiplies count values by 1/n or 1/sqrt(n) as the type asks.
    template <class T>
    static void normalize(T* values, uint64_t count, uint64_t n, unsigned type)
    {
        const double factor = normalizationFactor(n, type);
        if (factor != 1.0)
            for (uint64_t i = 0; i < count; ++i)
                values[i] *= factor;
    }
    static double normalizationFactor(uint64_t n, unsigned type);

    // ---- Windows of n values; n below 2 gives the single value 1 (triang(0) is empty).
    static std::vector<double> hann(uint64_t n);
    static std::vector<double> hannPeriodic(uint64_t n);
    static std::vector<double> hamming(uint64_t n);
    static std::vector<double> hammingPeriodic(uint64_t n);
    static std::vector<double> blackman(uint64_t n);
    static std::vector<double> blackmanPeriodic(uint64_t n);
    static std::vector<double> bartlett(uint64_t n);
    static std::vector<double> triang(uint64_t n);
    static std::vector<double> kaiser(uint64_t n, double beta = 0.5);

    // ---- Rotations between transform order and centred order: the forward shift rotates by
    // n - n/2 (zero frequency to the middle), the inverse by n/2.
    static std::vector<double> computeRealFFTShift(const std::vector<double>& values);
    static std::vector<double> computeRealInverseFFTShift(const std::vector<double>& values);
    static std::vector<tComplex> computeComplexFFTShift(const std::vector<tComplex>& values);
    static std::vector<tComplex> computeComplexInverseFFTShift(const std::vector<tComplex>& values);

private:
    enum plan_kind : int { complex_forward, complex_inverse, real_forward, real_inverse };
    struct cPlan;
    // kind, size, alignment of input and output, in place
    using tPlanKey = std::tuple<int, uint64_t, int, int, bool>;

    // The plan for these buffers, made on first use; null when the library refuses.
    cPlan* findPlan(plan_kind kind, uint64_t n, const void* input, const void* output);
    // A complex transform of either direction, in place or on a copy cut or padded to n values.
    bool complexInPlace(plan_kind kind, tComplex* data, uint64_t n, unsigned normalize);
    std::vector<tComplex> complexCopy(plan_kind kind, const std::vector<tComplex>& input, uint64_t n,
                                      unsigned normalize);

    std::map<tPlanKey, std::unique_ptr<cPlan>> mPlans;
};

}  // namespace vx3
