// The calculator's random numbers: a combined generator of 64-bit words (a linear congruential
// part, a xorshift part and a multiply-with-carry part), fast and with a period far beyond any
// waveform. The same seed gives the same numbers on every machine, so a random curve can be made
// again from its seed.
#pragma once

#include <cstdint>

namespace vx3 {

class cPseudoRandomNumbers64 {
public:
    // Seeded from the clock.
    cPseudoRandomNumbers64();
    explicit cPseudoRandomNumbers64(uint64_t seed);

    // Restarts the sequence. Seed 0 is taken as 11 and a seed equal to the starting value of the
    // xorshift state as 12: both would otherwise start a part of the state at zero.
    void random_seed(uint64_t seed);
    // Restarts the sequence from the clock.
    void random_seed();

    uint64_t randomInt64();
    // In [0, 1]: the word times 2^-64 (rounded, so 1 itself can come out).
    double randomDouble();
    // In [min(a, b), max(a, b)].
    double randomUniform(double a, double b);
    // Normally distributed, through the inverse error function; a draw that lands on an end of
    // the unit interval is repeated, so that the result is finite whenever mean and sigma are.
    double randomNormal(double mean, double sigma);

private:
    uint64_t mU = 0;
    uint64_t mV = 0;
    uint64_t mW = 0;
};

}  // namespace vx3
