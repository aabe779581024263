// Polynomials, piecewise polynomials and interpolations of tabulated points, prepared once and
// then evaluated at any number of x: the spline's second derivatives or the interpolating
// polynomial's coefficients are computed by prepare, never again per point.
#pragma once

#include <string>
#include <vector>

#include "expressions/baseExpression.h"

namespace vx3 {

namespace interpolationTable {
enum class kind {
    poly,                // coefficients, highest power first (Horner)
    piecewise_poly,      // breaks and, per piece, coefficients in (x - left break), highest power first
    interpolate_poly,    // the polynomial through all points
    interpolate_linear,  // straight lines between points
    interpolate_spline,  // natural cubic spline
    extrapolate_poly,
    extrapolate_linear,
    extrapolate_spline
};
// The kind of a built-in function (op_function_poly ...); false for other functions.
bool getKindOfFunction(baseExpression::op_type function, kind& result);
}  // namespace interpolationTable

class cInterpolationTable {
public:
    using kind = interpolationTable::kind;

    // Checks and prepares. The two vectors are:
    //   poly: the coefficients, highest power first; the second vector is empty.
    //   piecewise_poly: the rising breaks b0 < ... < bm, and m pieces of k coefficients each, one
    //     piece after the other; piece i is a polynomial in (x - bi), highest power first.
    //   interpolate_* and extrapolate_*: x values, strictly rising, and y values of the same size.
    // False with a message in error for bad input; the table is then empty.
    bool prepare(kind type, const std::vector<double>& first, const std::vector<double>& second, std::string& error);

    bool checkIsPrepared() const { return mPrepared; }
    kind getKind() const { return mKind; }

    // The value at x. The interpolate kinds are undefined (NaN) outside [x0, xn]; the extrapolate
    // kinds and piecewise_poly continue with the end piece; a polynomial holds everywhere.
    double evaluate(double x) const;
    void evaluate(const std::vector<double>& xs, std::vector<double>& result) const;

    // The prepared table as numbers, appended to values, so that it can live in an expression
    // node and be taken up again by restore without preparing anew. restore is false (and the
    // table empty) for numbers that no table wrote.
    void store(std::vector<double>& values) const;
    bool restore(const double* values, size_t count);

private:
    size_t findPiece(double x) const;  // index i of the piece [x_i, x_i+1] holding x, ends extended
    double evaluatePolynomialThroughPoints(double x) const;

    kind mKind = kind::poly;
    bool mPrepared = false;
    std::vector<double> mX;  // abscissas or breaks
    std::vector<double> mY;  // ordinates, coefficients or Newton's divided differences
    std::vector<double> mSecond;  // spline: second derivatives at the points
    size_t mOrder = 0;  // piecewise_poly: coefficients per piece
};

}  // namespace vx3
