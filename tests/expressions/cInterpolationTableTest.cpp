// Interpolation tables against scipy and numpy: natural cubic spline (CubicSpline), straight lines
// (np.interp), polynomial coefficients (np.polyval), the polynomial through all points (np.polyfit
// of degree n-1) and piecewise polynomials (PPoly), on a grid reaching beyond the points; then the
// checks of bad input.
#include <gtest/gtest.h>

#include <cmath>

#include "../base/testSupport.h"
#include "expressions/cInterpolationTable.h"

#include "expressionTestSupport.h"

using namespace vx3;
using kind = interpolationTable::kind;
using zwexpressions::readDoubles;
using zwexpressions::runOracle;

namespace {
cInterpolationTable prepared(kind type, const std::vector<double>& a, const std::vector<double>& b)
{
    cInterpolationTable table;
    std::string error;
    EXPECT_TRUE(table.prepare(type, a, b, error)) << error;
    return table;
}
}  // namespace

TEST(InterpolationTable, AgainstScipyAndNumpy)
{
    zwtest::cTempDir folder("zw_interpolation_test_");
    ASSERT_EQ(runOracle("interpolation.py", {folder.path()}), 0);
    auto file = [&](const char* name) { return readDoubles(folder.file(name)); };
    const auto x = file("x"), y = file("y"), grid = file("grid");
    ASSERT_EQ(x.size(), 40u);
    ASSERT_EQ(grid.size(), 3040u);

    struct cCase {
        kind type;
        const char* oracle;
        bool extrapolates;
    };
    for (const cCase& c : {cCase{kind::interpolate_spline, "spline", false}, cCase{kind::extrapolate_spline, "spline", true},
                           cCase{kind::interpolate_linear, "linear", false}, cCase{kind::extrapolate_linear, "linear", true}}) {
        const auto expected = file(c.oracle);
        const auto table = prepared(c.type, x, y);
        std::vector<double> got;
        table.evaluate(grid, got);
        ASSERT_EQ(got.size(), grid.size());
        for (size_t i = 0; i < grid.size(); ++i) {
            if (!c.extrapolates && (grid[i] < x.front() || grid[i] > x.back())) {
                EXPECT_TRUE(std::isnan(got[i])) << c.oracle << " at " << grid[i];
                continue;
            }
            ASSERT_NEAR(got[i], expected[i], 1e-12 * (1 + std::fabs(expected[i]))) << c.oracle << " at " << grid[i];
        }
        // Each point is met exactly by the lines, to rounding by the spline.
        for (size_t i = 0; i < x.size(); ++i)
            EXPECT_NEAR(table.evaluate(x[i]), y[i], c.type == kind::interpolate_linear ? 0.0 : 1e-14) << c.oracle;
    }

    const auto coefficients = file("coefficients"), polyval = file("polyval");
    const auto poly = prepared(kind::poly, coefficients, {});
    for (size_t i = 0; i < grid.size(); ++i)
        ASSERT_NEAR(poly.evaluate(grid[i]), polyval[i], 1e-12 * (1 + std::fabs(polyval[i])));

    const auto px = file("px"), py = file("py"), pgrid = file("pgrid"), polyfit = file("polyfit");
    const auto inside = prepared(kind::interpolate_poly, px, py);
    const auto outside = prepared(kind::extrapolate_poly, px, py);
    for (size_t i = 0; i < pgrid.size(); ++i) {
        ASSERT_NEAR(outside.evaluate(pgrid[i]), polyfit[i], 1e-9 * (1 + std::fabs(polyfit[i])));
        if (pgrid[i] < px.front() || pgrid[i] > px.back())
            EXPECT_TRUE(std::isnan(inside.evaluate(pgrid[i])));
        else
            EXPECT_EQ(inside.evaluate(pgrid[i]), outside.evaluate(pgrid[i]));
    }

    const auto breaks = file("breaks"), pieces = file("pieces"), ppoly = file("ppoly"), ppolyGrid = file("ppoly_grid");
    const auto piecewise = prepared(kind::piecewise_poly, breaks, pieces);
    for (size_t i = 0; i < ppolyGrid.size(); ++i)
        ASSERT_NEAR(piecewise.evaluate(ppolyGrid[i]), ppoly[i], 1e-12 * (1 + std::fabs(ppoly[i]))) << ppolyGrid[i];
}

TEST(InterpolationTable, SmallTablesAndBadInput)
{
    // Two points: the natural spline is the straight line.
    const auto line = prepared(kind::extrapolate_spline, {0, 2}, {1, 5});
    EXPECT_DOUBLE_EQ(line.evaluate(-1), -1);
    EXPECT_DOUBLE_EQ(line.evaluate(1.5), 4);
    EXPECT_DOUBLE_EQ(line.evaluate(3), 7);
    // One point: a constant polynomial.
    EXPECT_EQ(prepared(kind::extrapolate_poly, {4}, {2.5}).evaluate(-100), 2.5);
    // Highest power first: 2x^2 + 0x - 1.
    const auto poly = prepared(kind::poly, {2, 0, -1}, {});
    EXPECT_EQ(poly.evaluate(3), 17);
    EXPECT_TRUE(std::isnan(poly.evaluate(NAN)));
    // Three points on a parabola give the parabola.
    const auto parabola = prepared(kind::extrapolate_poly, {-1, 0, 2}, {1, 0, 4});
    EXPECT_DOUBLE_EQ(parabola.evaluate(5), 25);
    // At an infinite x a polynomial is its leading term's limit: no zero coefficient times
    // infinity on the way (NaN), also when the leading coefficients are zero.
    const double inf = INFINITY;
    EXPECT_EQ(prepared(kind::poly, {2}, {}).evaluate(inf), 2);
    EXPECT_EQ(prepared(kind::poly, {0}, {}).evaluate(-inf), 0);
    EXPECT_EQ(prepared(kind::poly, {1, 2}, {}).evaluate(-inf), -inf);
    EXPECT_EQ(prepared(kind::poly, {0, -1, 2}, {}).evaluate(inf), -inf);
    EXPECT_EQ(poly.evaluate(-inf), inf);
    EXPECT_EQ(prepared(kind::piecewise_poly, {0, 1}, {3}).evaluate(inf), 3);
    EXPECT_EQ(prepared(kind::extrapolate_poly, {0, 1, 2}, {0, 1, 2}).evaluate(inf), inf);
    EXPECT_EQ(parabola.evaluate(-inf), inf);

    struct cBad {
        kind type;
        std::vector<double> a, b;
        const char* message;
    };
    const std::vector<cBad> bad = {
        {kind::interpolate_linear, {0, 1, 2}, {0, 1}, "The x and y vectors must have the same size (3 and 2)."},
        {kind::interpolate_spline, {0, 2, 1}, {0, 1, 2}, "The x values must rise strictly."},
        {kind::interpolate_spline, {0, 1, 1}, {0, 1, 2}, "The x values must rise strictly."},
        {kind::extrapolate_linear, {1}, {1}, "At least two points are needed."},
        {kind::interpolate_poly, {}, {}, "At least one point is needed."},
        {kind::interpolate_linear, {0, NAN}, {0, 1}, "The values must be defined numbers."},
        {kind::poly, {}, {}, "A polynomial needs at least one coefficient."},
        {kind::poly, {1, 2}, {3}, "A polynomial takes one vector of coefficients."},
        {kind::piecewise_poly, {0, 1, 2}, {1, 2, 3}, "The number of coefficients must be a multiple of the number of pieces (2)."},
        {kind::piecewise_poly, {0}, {1}, "A piecewise polynomial needs at least two breaks."},
        {kind::piecewise_poly, {0, 2, 1}, {1, 2}, "The breaks must rise strictly."},
    };
    for (const auto& b : bad) {
        cInterpolationTable table;
        std::string error;
        EXPECT_FALSE(table.prepare(b.type, b.a, b.b, error)) << b.message;
        EXPECT_EQ(error, b.message);
        EXPECT_FALSE(table.checkIsPrepared());
        EXPECT_TRUE(std::isnan(table.evaluate(0.5)));
    }

    // A stored table is taken up again as it was; numbers it didn't write are refused.
    for (kind type : {kind::poly, kind::piecewise_poly, kind::interpolate_poly, kind::interpolate_linear,
                      kind::interpolate_spline, kind::extrapolate_poly, kind::extrapolate_linear, kind::extrapolate_spline}) {
        const std::vector<double> xs = {0, 0.5, 1.5, 3, 3.25}, ys = {1, -2, 0.5, 4, 3};
        const auto table = type == kind::poly ? prepared(type, ys, {}) : prepared(type, xs, type == kind::piecewise_poly ? std::vector<double>{1, 2, 3, 4, 5, 6, 7, 8} : ys);
        std::vector<double> stored = {42};  // appended after what is there
        table.store(stored);
        cInterpolationTable copy;
        ASSERT_TRUE(copy.restore(stored.data() + 1, stored.size() - 1)) << static_cast<int>(type);
        EXPECT_EQ(copy.getKind(), type);
        for (double x = -1; x < 4.5; x += 0.125) {
            const double a = table.evaluate(x), b = copy.evaluate(x);
            EXPECT_TRUE(a == b || (std::isnan(a) && std::isnan(b))) << x;
        }
        EXPECT_FALSE(copy.restore(stored.data() + 1, stored.size() - 2));
        EXPECT_FALSE(copy.checkIsPrepared());
        stored[2] = 99;  // a point count that doesn't fit
        EXPECT_FALSE(copy.restore(stored.data() + 1, stored.size() - 1));
    }

    kind k;
    EXPECT_TRUE(interpolationTable::getKindOfFunction(baseExpression::op_function_extrapolate_spline, k));
    EXPECT_EQ(k, kind::extrapolate_spline);
    EXPECT_FALSE(interpolationTable::getKindOfFunction(baseExpression::op_function_sin, k));
}
