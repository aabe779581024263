// The transform adapter: windows against scipy, the transforms against each other and against a
// plain sum, unaligned buffers, plans made from several threads at once, and the rotations.
#include <gtest/gtest.h>

#include <numbers>
#include <thread>

#include "analysis/cFFTInterface.h"

#include "analysisTestSupport.h"

using namespace vx3;
using zwanalysis::expectClose;

namespace {

using tComplex = std::complex<double>;

// The transform as a sum, in long double: the oracle for sizes that numpy's tests don't reach.
std::vector<tComplex> plainDFT(const std::vector<tComplex>& x, int sign)
{
    const size_t n = x.size();
    std::vector<tComplex> out(n);
    for (size_t k = 0; k < n; ++k) {
        std::complex<long double> sum = 0;
        for (size_t j = 0; j < n; ++j) {
            const long double angle = sign * 2.0L * std::numbers::pi_v<long double> * static_cast<long double>((j * k) % n) /
                                      static_cast<long double>(n);
            sum += std::complex<long double>(x[j].real(), x[j].imag()) *
                   std::complex<long double>(std::cos(angle), std::sin(angle));
        }
        out[k] = {static_cast<double>(sum.real()), static_cast<double>(sum.imag())};
    }
    return out;
}

std::vector<tComplex> randomComplex(size_t n, unsigned seed)
{
    std::vector<tComplex> values(n);
    unsigned state = seed;
    auto next = [&] {
        state = state * 1103515245u + 12345u;
        return static_cast<double>((state >> 8) & 0xffff) / 32768.0 - 1.0;
    };
    for (auto& v : values)
        v = {next(), next()};
    return values;
}

}  // namespace

TEST(FFTInterface, WindowsAgainstScipy)
{
    const zwanalysis::cOracle oracle;
    ASSERT_TRUE(oracle.made());
    for (uint64_t n : {1, 2, 3, 4, 7, 8, 33, 64}) {
        const std::string size = "_" + std::to_string(n);
        const std::vector<std::pair<std::string, std::vector<double>>> cases = {
            {"hann", cFFTInterface::hann(n)},
            {"hann_periodic", cFFTInterface::hannPeriodic(n)},
            {"hamming", cFFTInterface::hamming(n)},
            {"hamming_periodic", cFFTInterface::hammingPeriodic(n)},
            {"blackman", cFFTInterface::blackman(n)},
            {"blackman_periodic", cFFTInterface::blackmanPeriodic(n)},
            {"bartlett", cFFTInterface::bartlett(n)},
            {"triang", cFFTInterface::triang(n)},
            {"kaiser05", cFFTInterface::kaiser(n, 0.5)},
            {"kaiser86", cFFTInterface::kaiser(n, 8.6)},
        };
        for (const auto& [name, window] : cases) {
            const std::vector<double> expected = oracle.read("window_" + name + size);
            ASSERT_EQ(window.size(), expected.size()) << name << size;
            for (size_t i = 0; i < window.size(); ++i)
                EXPECT_NEAR(window[i], expected[i], 1e-14) << name << size << " at " << i;
        }
    }
    // The periodic form is the symmetric one of one more point, cut.
    const std::vector<double> hann5 = cFFTInterface::hann(5);
    EXPECT_EQ(cFFTInterface::hannPeriodic(4), std::vector<double>(hann5.begin(), hann5.begin() + 4));
    EXPECT_EQ(cFFTInterface::hann(1), std::vector<double>{1.0});
    EXPECT_TRUE(cFFTInterface::triang(0).empty());
    EXPECT_EQ(cFFTInterface::kaiser(1, 3.0), std::vector<double>{1.0});
}

TEST(FFTInterface, TransformsAgainstSumsAndEachOther)
{
    cFFTInterface fft;
    // Powers of two, an odd prime, twice a prime and 1.
    for (size_t n : {size_t(1), size_t(2), size_t(16), size_t(97), size_t(2 * 101), size_t(360)}) {
        const std::vector<tComplex> x = randomComplex(n, static_cast<unsigned>(n));
        const std::vector<tComplex> forward = fft.FFT(x);
        expectClose(forward, plainDFT(x, -1), 1e-12 * static_cast<double>(n), "forward " + std::to_string(n));
        expectClose(fft.iFFT(x), plainDFT(x, 1), 1e-12 * static_cast<double>(n), "inverse " + std::to_string(n));
        // Normalised by 1/N the inverse undoes the forward transform; 1/sqrt(N) on both ways too.
        expectClose(fft.iFFT(forward, 0, FFTInterface::normalize_by_n), x, 1e-13, "round trip");
        expectClose(fft.iFFT(fft.FFT(x, 0, FFTInterface::normalize_by_sqrt_n), 0, FFTInterface::normalize_by_sqrt_n), x,
                    1e-13, "unitary round trip");

        // A real input: the real transform's half and its mirrored completion equal the complex one.
        std::vector<double> real(n);
        std::vector<tComplex> widened(n);
        for (size_t i = 0; i < n; ++i)
            widened[i] = real[i] = x[i].real();
        const std::vector<tComplex> complete = fft.FFT(real, 0, true), half = fft.FFT(real, 0, false);
        const std::vector<tComplex> expected = plainDFT(widened, -1);
        expectClose(complete, expected, 1e-12 * static_cast<double>(n), "complete real " + std::to_string(n));
        ASSERT_EQ(half.size(), n / 2 + 1);
        if (n % 2 == 0 && n > 1)
            expectClose(fft.realInverseFFT(half, n, FFTInterface::normalize_by_n), real, 1e-13, "real round trip");
    }
    // Cut and zero-padding of the input.
    const std::vector<tComplex> padded = fft.FFT(std::vector<tComplex>{1.0, 2.0}, 4);
    expectClose(padded, std::vector<tComplex>{3.0, {1.0, -2.0}, -1.0, {1.0, 2.0}}, 1e-15, "padded");
    const std::vector<tComplex> cut = fft.FFT(std::vector<double>{1, 2, 3, 4}, 2, true);
    expectClose(cut, std::vector<tComplex>{3.0, -1.0}, 1e-15, "cut");
    EXPECT_TRUE(fft.FFT(std::vector<tComplex>{}).empty());
}

TEST(FFTInterface, UnalignedBuffersAndConcurrentPlanning)
{
    // Buffers one double off the allocator's alignment get a plan of their own.
    const size_t n = 256;
    std::vector<double> storage(n + 1);
    for (size_t i = 0; i < n; ++i)
        storage[i] = storage[i + 1] = 0;
    for (size_t i = 0; i < n; ++i)
        storage[i + 1] = std::sin(0.1 * static_cast<double>(i * i));
    std::vector<double> aligned(storage.begin() + 1, storage.end());
    std::vector<tComplex> out1(n / 2 + 2), out2(n / 2 + 1);
    cFFTInterface fft;
    ASSERT_TRUE(fft.realFFT(storage.data() + 1, n, reinterpret_cast<tComplex*>(reinterpret_cast<double*>(out1.data()) + 1)));
    ASSERT_TRUE(fft.realFFT(aligned.data(), n, out2.data()));
    const double* shifted = reinterpret_cast<const double*>(out1.data()) + 1;
    for (size_t k = 0; k < n / 2 + 1; ++k) {
        // Plans for other alignments may order their sums otherwise: equal to rounding.
        EXPECT_NEAR(shifted[2 * k], out2[k].real(), 1e-12);
        EXPECT_NEAR(shifted[2 * k + 1], out2[k].imag(), 1e-12);
    }

    // Four threads plan and transform sizes at once; each result equals the one made alone.
    const std::vector<size_t> sizes = {48, 250, 1000, 4096, 6006, 81};
    std::vector<std::vector<tComplex>> alone;
    for (size_t size : sizes)
        alone.push_back(fft.FFT(randomComplex(size, 3)));
    std::vector<int> failures(4, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int round = 0; round < 20; ++round) {
                cFFTInterface own;
                for (size_t s = 0; s < sizes.size(); ++s) {
                    const std::vector<tComplex> result = own.FFT(randomComplex(sizes[s], 3));
                    bool same = result.size() == alone[s].size();
                    for (size_t k = 0; same && k < result.size(); ++k)
                        same = std::abs(result[k] - alone[s][k]) <= 1e-9;
                    failures[t] += same ? 0 : 1;
                }
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(failures, std::vector<int>(4, 0));
}

TEST(FFTInterface, Shifts)
{
    // As numpy's fftshift and ifftshift: zero frequency to the middle and back.
    EXPECT_EQ(cFFTInterface::computeRealFFTShift({0, 1, 2, 3, 4}), (std::vector<double>{3, 4, 0, 1, 2}));
    EXPECT_EQ(cFFTInterface::computeRealFFTShift({0, 1, 2, 3, 4, 5}), (std::vector<double>{3, 4, 5, 0, 1, 2}));
    EXPECT_EQ(cFFTInterface::computeRealInverseFFTShift({3, 4, 0, 1, 2}), (std::vector<double>{0, 1, 2, 3, 4}));
    EXPECT_EQ(cFFTInterface::computeRealInverseFFTShift({3, 4, 5, 0, 1, 2}), (std::vector<double>{0, 1, 2, 3, 4, 5}));
    const std::vector<tComplex> values = {{0, 1}, {1, 2}, {2, 3}};
    EXPECT_EQ(cFFTInterface::computeComplexFFTShift(values), (std::vector<tComplex>{{2, 3}, {0, 1}, {1, 2}}));
    EXPECT_EQ(cFFTInterface::computeComplexInverseFFTShift(cFFTInterface::computeComplexFFTShift(values)), values);
    EXPECT_TRUE(cFFTInterface::computeRealFFTShift({}).empty());
}
