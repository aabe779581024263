// The random number generator against an independent implementation of its recurrence in Python
// integers: every word and double bit for bit, uniform draws with bounds given either way round,
// normal draws through scipy's inverse error function.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

#include "../base/testSupport.h"
#include "expressions/cPseudoRandomNumbers64.h"

#include "expressionTestSupport.h"

using namespace vx3;
using zwexpressions::readDoubles;
using zwexpressions::runOracle;

TEST(PseudoRandomNumbers, BitExactAgainstPython)
{
    const std::vector<uint64_t> seeds = {0, 1, 11, 42, 12, 4101842887655102017ULL, 18446744073709551615ULL,
                                         1234567890123456789ULL};
    const size_t count = 3000;
    zwtest::cTempDir folder("zw_random_test_");
    std::vector<std::string> arguments = {folder.path(), std::to_string(count)};
    for (uint64_t seed : seeds)
        arguments.push_back(std::to_string(seed));
    ASSERT_EQ(runOracle("random_numbers.py", arguments), 0);
    std::ifstream file(folder.file("words"), std::ios::binary);
    std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::vector<uint64_t> words(bytes.size() / 8);
    std::memcpy(words.data(), bytes.data(), words.size() * 8);
    const auto doubles = readDoubles(folder.file("doubles")), uniform = readDoubles(folder.file("uniform"));
    const auto normal = readDoubles(folder.file("normal"));
    ASSERT_EQ(words.size(), seeds.size() * count);
    ASSERT_EQ(normal.size(), seeds.size() * count);

    cPseudoRandomNumbers64 generator;  // from the clock, then reseeded
    for (size_t s = 0; s < seeds.size(); ++s) {
        generator.random_seed(seeds[s]);
        for (size_t i = 0; i < count; ++i)
            ASSERT_EQ(generator.randomInt64(), words[s * count + i]) << "seed " << seeds[s] << " word " << i;
        for (size_t i = 0; i < count; ++i)
            ASSERT_EQ(generator.randomDouble(), doubles[s * count + i]) << "seed " << seeds[s] << " double " << i;
        for (size_t i = 0; i < count; ++i)
            ASSERT_EQ(generator.randomUniform(5.0, -3.0), uniform[s * count + i]) << "seed " << seeds[s];
        for (size_t i = 0; i < count; ++i)
            ASSERT_NEAR(generator.randomNormal(10.0, 0.25), normal[s * count + i], 1e-13) << "seed " << seeds[s];
    }
}

TEST(PseudoRandomNumbers, SeedsAndDistributions)
{
    // 0 and the xorshift start value are replaced by 11 and 12.
    cPseudoRandomNumbers64 a(0), b(11), c(4101842887655102017ULL), d(12), e(13);
    for (int i = 0; i < 5; ++i) {
        const uint64_t fromC = c.randomInt64();
        EXPECT_EQ(a.randomInt64(), b.randomInt64());
        EXPECT_EQ(fromC, d.randomInt64());
        EXPECT_NE(fromC, e.randomInt64());
    }
    // Reseeding restarts the sequence.
    a.random_seed(99);
    const double first = a.randomDouble();
    a.randomDouble();
    a.random_seed(99);
    EXPECT_EQ(a.randomDouble(), first);

    // Moments of large samples, within five standard errors.
    cPseudoRandomNumbers64 g(2024);
    const int n = 200000;
    double sum = 0, squares = 0, low = 1e300, high = -1e300;
    for (int i = 0; i < n; ++i) {
        const double v = g.randomNormal(-1.5, 3.0);
        ASSERT_TRUE(std::isfinite(v));
        sum += v;
        squares += v * v;
    }
    const double mean = sum / n, variance = squares / n - mean * mean;
    EXPECT_NEAR(mean, -1.5, 5 * 3.0 / std::sqrt(n));
    EXPECT_NEAR(variance, 9.0, 5 * 9.0 * std::sqrt(2.0 / n));
    for (int i = 0; i < n; ++i) {
        const double v = g.randomUniform(2.0, 2.5);
        low = std::min(low, v);
        high = std::max(high, v);
    }
    EXPECT_GE(low, 2.0);
    EXPECT_LE(high, 2.5);
    EXPECT_LT(low, 2.001);
    EXPECT_GT(high, 2.499);
    // A sigma that overflows the product returns (an infinity or a huge number); it doesn't draw for ever.
    EXPECT_FALSE(std::isnan(g.randomNormal(0, 1e308)));
}
