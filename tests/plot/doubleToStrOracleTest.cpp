#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "../base/testSupport.h"
#include "plot/wxSinglePlotWidgetXAxis.h"

using vx3::wxSinglePlotWidgetXAxis;

namespace {

struct cCase {
    int precision;
    double value;
};

std::vector<cCase> makeCases()
{
    std::vector<cCase> cases;
    std::mt19937_64 random(4242);
    std::uniform_real_distribution<double> mantissa(1.0, 10.0);
    std::uniform_int_distribution<int> exponent(-30, 30), precision(0, 12), sign(0, 1);
    for (int i = 0; i < 10000; ++i) {
        const double value = mantissa(random) * std::pow(10.0, exponent(random));
        cases.push_back({precision(random), sign(random) ? -value : value});
    }
    // Short decimals, where rounding meets a half or carries into the next power.
    for (double value : {2.5, 0.25, 0.125, 1234567.0, 999.9995, 9.9996e-5, 0.002, 4.5e7, 1000.0, 0.001,
                         1e-4, 123.456, 3162.0, 3163.0, 0.000316, 99999.5, 1e300, 5e-300})
        for (int p = 0; p <= 12; ++p)
            cases.push_back({p, value});
    return cases;
}

}  // namespace

TEST(doubleToStrOracle, TextsAgreeWithExactDecimalArithmetic)
{
    zwtest::cTempDir folder("zw_plot_test_");
    ASSERT_FALSE(folder.path().empty());
    const std::vector<cCase> cases = makeCases();
    {
        std::ofstream input(folder.file("cases.txt"));
        char line[64];
        for (const auto& c : cases) {
            std::snprintf(line, sizeof line, "%d %a\n", c.precision, c.value);
            input << line;
        }
    }
    const std::string command = "/usr/bin/python3 '" + std::string(ZW_SOURCE_DIR) +
                                "/tests/plot/oracles/double_to_str.py' '" + folder.file("cases.txt") + "' '" +
                                folder.file("expected.txt") + "'";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    std::ifstream expected(folder.file("expected.txt"));
    wxSinglePlotWidgetXAxis axis;
    size_t compared = 0, skipped = 0;
    std::string line;
    for (const auto& c : cases) {
        ASSERT_TRUE(std::getline(expected, line));
        if (line == "skip") {
            ++skipped;
            continue;
        }
        std::istringstream fields(line);
        std::string text;
        double error = 0.0;
        fields >> text >> error;
        double gotError = -1.0;
        const std::string got = axis.doubleToStr(c.precision, c.value, gotError);
        ASSERT_EQ(got, text) << c.precision << " " << c.value;
        EXPECT_NEAR(gotError, error, 1e-12 * std::fabs(c.value) + 1e-300) << c.precision << " " << c.value;
        ++compared;
    }
    EXPECT_GT(compared, cases.size() * 99 / 100) << skipped << " skipped";
}

TEST(doubleToStrOracle, TextsReadBackWithinTheirError)
{
    wxSinglePlotWidgetXAxis axis;
    for (const auto& c : makeCases()) {
        double error = -1.0;
        const std::string text = axis.doubleToStr(c.precision, c.value, error);
        ASSERT_GE(error, 0.0);
        char* end = nullptr;
        const double back = std::strtod(text.c_str(), &end);
        ASSERT_EQ(*end, '\0') << text;
        // The text's own rounding plus the rounding of reading it into a double.
        const double slack = std::fabs(back) * 2e-16 + std::fabs(c.value) * 1e-18;
        EXPECT_LE(std::fabs(back - c.value), error + slack) << c.precision << " " << c.value << " " << text;
        if (text != "0.0") {
            EXPECT_EQ(back < 0, c.value < 0) << text;
        }
    }
}
