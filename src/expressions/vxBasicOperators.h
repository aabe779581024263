// Scalar mathematics of the calculator that is more than a plain call of the standard library:
// complex functions with their branch cuts, the error function and its inverse, decibels, signs
// and the degree forms. Real and complex overloads; functions that have no meaning on complex
// values (sign, sgn, pwr) have only the real form, and checkAppliesToComplex says so.
#pragma once

#include <complex>

#include "expressions/baseExpression.h"

namespace vx3::vxBasicOperators {

using double_complex = std::complex<double>;

// ---- Complex functions. The inverse functions take the principal branch with the usual cuts
// (asin/acos on the real axis beyond +-1, atan/asinh on the imaginary axis beyond +-i, acosh
// below 1, atanh beyond +-1).
double_complex sin(const double_complex& z);
double_complex cos(const double_complex& z);
double_complex tan(const double_complex& z);
double_complex sinh(const double_complex& z);
double_complex cosh(const double_complex& z);
double_complex tanh(const double_complex& z);
double_complex asin(const double_complex& z);
double_complex acos(const double_complex& z);
double_complex atan(const double_complex& z);
double_complex asinh(const double_complex& z);
double_complex acosh(const double_complex& z);
double_complex atanh(const double_complex& z);
double_complex exp(const double_complex& z);
double_complex log(const double_complex& z);
double_complex log10(const double_complex& z);
double_complex sqrt(const double_complex& z);
// Whole real exponents multiply out, so that pow(-2, 2) is 4 exactly and not 4 plus a rounding
// residue in the imaginary part; a real base of at least 0 with a real exponent stays real.
double_complex pow(const double_complex& base, const double_complex& exponent);

// ---- Real functions whose domain errors give NaN (and poles give infinities) instead of throwing.
double asinh(double x);
double acosh(double x);  // NaN below 1
double atanh(double x);  // NaN beyond +-1, +-inf at +-1
double expm1(double x);
// Real power; NaN where the result would be complex (negative base, fractional exponent).
double pow(double base, double exponent);

// ---- Error function and its inverse. inverse_error_function(y) is NaN outside [-1, 1] and +-inf
// at +-1; it is accurate to a few units in the last place over the whole range, the tails included.
double error_function(double x);
double inverse_error_function(double y);
// A normally distributed number from a uniform one in [0, 1]: mean + sigma * sqrt(2) * erfinv(2u - 1).
// The ends of [0, 1] give infinities: a caller that needs a finite number draws again.
double rand_gauss_distrib(double uniform, double mean, double sigma);

// ---- Catalogue definitions.
// 20 * log10(|x|), and -300 when |x| is below 1e-300 (zero included).
double db(double x);
double db(const double_complex& z);
// 1 for x >= 0, else -1 (NaN stays NaN).
double sign(double x);
// |a| with the sign of b; b = 0 (of either sign) counts as positive.
double sign(double a, double b);
// 1, 0 or -1.
double sgn(double x);
// |a| to the power b, negated for a < 0.
double pwr(double a, double b);
// Phase in radians and in degrees: of a real number 0 or pi (180 degrees).
double phase(double x);
double phase(const double_complex& z);
double angle(double x);
double angle(const double_complex& z);

// Degree forms. sind, cosd and tand reduce the argument exactly, so that whole multiples of 90
// degrees give exact zeros and ones; the hyperbolic ones take the argument in degrees like the
// others; the inverse forms give degrees.
double sind(double x);
double cosd(double x);
double tand(double x);
double sinhd(double x);
double coshd(double x);
double tanhd(double x);
double asind(double x);
double acosd(double x);
double atand(double x);
double asinhd(double x);
double acoshd(double x);
double atanhd(double x);
double_complex sind(const double_complex& z);
double_complex cosd(const double_complex& z);
double_complex tand(const double_complex& z);
double_complex sinhd(const double_complex& z);
double_complex coshd(const double_complex& z);
double_complex tanhd(const double_complex& z);
double_complex asind(const double_complex& z);
double_complex acosd(const double_complex& z);
double_complex atand(const double_complex& z);
double_complex asinhd(const double_complex& z);
double_complex acoshd(const double_complex& z);
double_complex atanhd(const double_complex& z);

// Whether a built-in function of one or two values has a complex form here. False for sign, sgn
// and pwr, whose definitions compare with zero, and for the rounding functions.
bool checkAppliesToComplex(baseExpression::op_type function);

}  // namespace vx3::vxBasicOperators
