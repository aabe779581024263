#include "expressions/cInterpolationTable.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vx3 {

namespace interpolationTable {
bool getKindOfFunction(baseExpression::op_type function, kind& result)
{
    using namespace baseExpression;
    switch (function) {
    case op_function_poly: result = kind::poly; return true;
    case op_function_piecewise_poly: result = kind::piecewise_poly; return true;
    case op_function_interpolate_poly: result = kind::interpolate_poly; return true;
    case op_function_interpolate_linear: result = kind::interpolate_linear; return true;
    case op_function_interpolate_spline: result = kind::interpolate_spline; return true;
    case op_function_extrapolate_poly: result = kind::extrapolate_poly; return true;
    case op_function_extrapolate_linear: result = kind::extrapolate_linear; return true;
    case op_function_extrapolate_spline: result = kind::extrapolate_spline; return true;
    default: return false;
    }
}
}  // namespace interpolationTable

namespace {
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

bool allFinite(const std::vector<double>& values)
{
    return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

bool checkRising(const std::vector<double>& values)
{
    for (size_t i = 1; i < values.size(); ++i)
        if (!(values[i] > values[i - 1]))
            return false;
    return true;
}

// Highest power first. Leading zeros are passed over and the sum starts at the first nonzero
// coefficient, so that an infinite x never multiplies a zero (NaN).
double horner(const double* coefficients, size_t count, double x)
{
    size_t first = 0;
    while (first < count && coefficients[first] == 0)
        ++first;
    if (first == count)
        return 0;
    double value = coefficients[first];
    for (size_t i = first + 1; i < count; ++i)
        value = value * x + coefficients[i];
    return value;
}
}  // namespace

bool cInterpolationTable::prepare(kind type, const std::vector<double>& first, const std::vector<double>& second,
                                  std::string& error)
{
    mPrepared = false;
    mKind = type;
    mX.clear();
    mY.clear();
    mSecond.clear();
    mOrder = 0;

    if (type == kind::poly) {
        if (first.empty()) {
            error = "A polynomial needs at least one coefficient.";
            return false;
        }
        if (!second.empty()) {
            error = "A polynomial takes one vector of coefficients.";
            return false;
        }
        if (!allFinite(first)) {
            error = "The coefficients must be defined numbers.";
            return false;
        }
        mY = first;
        mPrepared = true;
        return true;
    }

    if (!allFinite(first) || !allFinite(second)) {
        error = "The values must be defined numbers.";
        return false;
    }
    if (type == kind::piecewise_poly) {
        if (first.size() < 2) {
            error = "A piecewise polynomial needs at least two breaks.";
            return false;
        }
        const size_t pieces = first.size() - 1;
        if (second.empty() || second.size() % pieces != 0) {
            error = "The number of coefficients must be a multiple of the number of pieces (" +
                    std::to_string(pieces) + ").";
            return false;
        }
        if (!checkRising(first)) {
            error = "The breaks must rise strictly.";
            return false;
        }
        mX = first;
        mY = second;
        mOrder = second.size() / pieces;
        mPrepared = true;
        return true;
    }

    if (first.size() != second.size()) {
        error = "The x and y vectors must have the same size (" + std::to_string(first.size()) + " and " +
                std::to_string(second.size()) + ").";
        return false;
    }
    const bool polynomial = type == kind::interpolate_poly || type == kind::extrapolate_poly;
    const size_t least = polynomial ? 1 : 2;
    if (first.size() < least) {
        error = polynomial ? "At least one point is needed." : "At least two points are needed.";
        return false;
    }
    if (!checkRising(first)) {
        error = "The x values must rise strictly.";
        return false;
    }
    mX = first;
    mY = second;
    const size_t n = mX.size();

    if (polynomial) {
        // Newton's divided differences, in place: mY[i] becomes f[x0..xi]. Better conditioned than
        // solving for the coefficients of the powers.
        for (size_t level = 1; level < n; ++level)
            for (size_t i = n - 1; i >= level; --i)
                mY[i] = (mY[i] - mY[i - 1]) / (mX[i] - mX[i - level]);
    } else if (type == kind::interpolate_spline || type == kind::extrapolate_spline) {
        // Natural spline: second derivatives zero at both ends, the inner ones from the
        // tridiagonal system of continuous slopes (Thomas algorithm; diagonally dominant).
        mSecond.assign(n, 0.0);
        if (n > 2) {
            std::vector<double> diagonal(n, 0.0), right(n, 0.0);
            for (size_t i = 1; i + 1 < n; ++i) {
                const double h0 = mX[i] - mX[i - 1], h1 = mX[i + 1] - mX[i];
                diagonal[i] = 2 * (h0 + h1);
                right[i] = 6 * ((mY[i + 1] - mY[i]) / h1 - (mY[i] - mY[i - 1]) / h0);
            }
            for (size_t i = 2; i + 1 < n; ++i) {
                const double lower = mX[i] - mX[i - 1];  // sub-diagonal of row i = super-diagonal of row i-1
                const double factor = lower / diagonal[i - 1];
                diagonal[i] -= factor * lower;
                right[i] -= factor * right[i - 1];
            }
            for (size_t i = n - 2; i >= 1; --i) {
                const double upper = i + 2 < n ? mX[i + 1] - mX[i] : 0.0;
                mSecond[i] = (right[i] - upper * mSecond[i + 1]) / diagonal[i];
            }
        }
    }
    mPrepared = true;
    return true;
}

size_t cInterpolationTable::findPiece(double x) const
{
    // Last i with x_i <= x, kept within the pieces so that the ends extend the end pieces.
    const auto it = std::upper_bound(mX.begin(), mX.end(), x);
    size_t i = it == mX.begin() ? 0 : static_cast<size_t>(it - mX.begin()) - 1;
    return std::min(i, mX.size() - 2);
}

double cInterpolationTable::evaluatePolynomialThroughPoints(double x) const
{
    // Newton's form from its highest nonzero divided difference: as in horner, no zero times an
    // infinite x.
    size_t top = mX.size() - 1;
    while (top > 0 && mY[top] == 0)
        --top;
    double value = mY[top];
    for (size_t i = top; i-- > 0;)
        value = value * (x - mX[i]) + mY[i];
    return value;
}

double cInterpolationTable::evaluate(double x) const
{
    if (!mPrepared || std::isnan(x))
        return kNaN;
    switch (mKind) {
    case kind::poly: return horner(mY.data(), mY.size(), x);
    case kind::piecewise_poly: {
        const size_t i = findPiece(x);
        return horner(mY.data() + i * mOrder, mOrder, x - mX[i]);
    }
    default: break;
    }
    const bool interpolateOnly =
        mKind == kind::interpolate_poly || mKind == kind::interpolate_linear || mKind == kind::interpolate_spline;
    if (interpolateOnly && (x < mX.front() || x > mX.back()))
        return kNaN;
    if (mKind == kind::interpolate_poly || mKind == kind::extrapolate_poly)
        return evaluatePolynomialThroughPoints(x);

    const size_t i = findPiece(x);
    const double h = mX[i + 1] - mX[i];
    if (mKind == kind::interpolate_linear || mKind == kind::extrapolate_linear) {
        // From the nearer end, so that the value at each point is its y exactly.
        const double slope = (mY[i + 1] - mY[i]) / h;
        return x - mX[i] <= mX[i + 1] - x ? mY[i] + slope * (x - mX[i]) : mY[i + 1] - slope * (mX[i + 1] - x);
    }
    const double a = (mX[i + 1] - x) / h, b = (x - mX[i]) / h;
    return a * mY[i] + b * mY[i + 1] +
           ((a * a * a - a) * mSecond[i] + (b * b * b - b) * mSecond[i + 1]) * (h * h) / 6;
}

void cInterpolationTable::evaluate(const std::vector<double>& xs, std::vector<double>& result) const
{
    result.resize(xs.size());
    for (size_t i = 0; i < xs.size(); ++i)
        result[i] = evaluate(xs[i]);
}

// Layout: kind, point count, coefficient count, spline flag, then the abscissas, the ordinates or
// coefficients, and the second derivatives if there are any.
void cInterpolationTable::store(std::vector<double>& values) const
{
    if (!mPrepared)
        return;
    values.push_back(static_cast<double>(mKind));
    values.push_back(static_cast<double>(mX.size()));
    values.push_back(static_cast<double>(mY.size()));
    values.push_back(mSecond.empty() ? 0.0 : 1.0);
    values.insert(values.end(), mX.begin(), mX.end());
    values.insert(values.end(), mY.begin(), mY.end());
    values.insert(values.end(), mSecond.begin(), mSecond.end());
}

bool cInterpolationTable::restore(const double* values, size_t count)
{
    mPrepared = false;
    mX.clear();
    mY.clear();
    mSecond.clear();
    mOrder = 0;
    if (count < 4)
        return false;
    const double type = values[0], points = values[1], coefficients = values[2], spline = values[3];
    auto whole = [](double v) { return v >= 0 && v <= 1e12 && v == std::trunc(v); };
    if (!whole(type) || type > static_cast<double>(kind::extrapolate_spline) || !whole(points) ||
        !whole(coefficients) || (spline != 0 && spline != 1))
        return false;
    const auto nx = static_cast<size_t>(points), ny = static_cast<size_t>(coefficients);
    const size_t ns = spline == 1 ? nx : 0;
    if (count != 4 + nx + ny + ns)
        return false;
    const kind k = static_cast<kind>(static_cast<int>(type));
    const bool isSpline = k == kind::interpolate_spline || k == kind::extrapolate_spline;
    if (isSpline != (spline == 1))
        return false;
    // The same checks as prepare, so that evaluate can trust the sizes.
    std::vector<double> xs(values + 4, values + 4 + nx);
    bool sizesFit;
    if (k == kind::poly)
        sizesFit = nx == 0 && ny > 0;
    else if (k == kind::piecewise_poly)
        sizesFit = nx >= 2 && ny > 0 && ny % (nx - 1) == 0;
    else
        sizesFit = ny == nx && nx >= (k == kind::interpolate_poly || k == kind::extrapolate_poly ? 1u : 2u);
    if (!sizesFit || !checkRising(xs))
        return false;
    mKind = k;
    mX = std::move(xs);
    mY.assign(values + 4 + nx, values + 4 + nx + ny);
    mSecond.assign(values + 4 + nx + ny, values + count);
    mOrder = k == kind::piecewise_poly ? ny / (nx - 1) : 0;
    mPrepared = true;
    return true;
}

}  // namespace vx3
