#include "expressions/cPseudoRandomNumbers64.h"

#include <chrono>
#include <cmath>
#include <utility>

#include "expressions/vxBasicOperators.h"

namespace vx3 {

namespace {
constexpr uint64_t kStartV = 4101842887655102017ULL;
constexpr uint64_t kMultiplier = 2862933555777941757ULL;
constexpr uint64_t kIncrement = 7046029254386353087ULL;
constexpr uint64_t kCarryMultiplier = 4294957665ULL;
constexpr double kTwoToMinus64 = 5.42101086242752217e-20;

uint64_t clockSeed()
{
    return static_cast<uint64_t>(std::chrono::system_clock::now().time_since_epoch().count()) ^
           static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
}
}  // namespace

cPseudoRandomNumbers64::cPseudoRandomNumbers64() { random_seed(); }

cPseudoRandomNumbers64::cPseudoRandomNumbers64(uint64_t seed) { random_seed(seed); }

void cPseudoRandomNumbers64::random_seed(uint64_t seed)
{
    if (seed == 0)
        seed = 11;
    else if (seed == kStartV)
        seed = 12;
    mV = kStartV;
    mW = 1;
    mU = seed ^ mV;
    randomInt64();
    mV = mU;
    randomInt64();
    mW = mV;
    randomInt64();
}

void cPseudoRandomNumbers64::random_seed() { random_seed(clockSeed()); }

uint64_t cPseudoRandomNumbers64::randomInt64()
{
    mU = mU * kMultiplier + kIncrement;
    mV ^= mV >> 17;
    mV ^= mV << 31;
    mV ^= mV >> 8;
    mW = kCarryMultiplier * (mW & 0xffffffffULL) + (mW >> 32);
    uint64_t x = mU ^ (mU << 21);
    x ^= x >> 35;
    x ^= x << 4;
    return (x + mV) ^ mW;
}

double cPseudoRandomNumbers64::randomDouble() { return kTwoToMinus64 * static_cast<double>(randomInt64()); }

double cPseudoRandomNumbers64::randomUniform(double a, double b)
{
    if (a > b)
        std::swap(a, b);
    return a + randomDouble() * (b - a);
}

double cPseudoRandomNumbers64::randomNormal(double mean, double sigma)
{
    // Only the draw is repeated: a sigma that overflows the product must not loop for ever.
    double deviate;
    do {
        deviate = vxBasicOperators::inverse_error_function(2 * randomDouble() - 1);
    } while (!std::isfinite(deviate));
    return deviate * sigma * 1.4142135623730951 + mean;
}

}  // namespace vx3
