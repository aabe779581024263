#include "expressions/vxBasicOperators.h"

#include <cmath>
#include <limits>
#include <numbers>

#include <boost/math/complex/acos.hpp>
#include <boost/math/complex/acosh.hpp>
#include <boost/math/complex/asin.hpp>
#include <boost/math/complex/asinh.hpp>
#include <boost/math/complex/atan.hpp>
#include <boost/math/complex/atanh.hpp>
#include <boost/math/special_functions/acosh.hpp>
#include <boost/math/special_functions/asinh.hpp>
#include <boost/math/special_functions/atanh.hpp>
#include <boost/math/special_functions/expm1.hpp>

namespace vx3::vxBasicOperators {

namespace {

// Domain errors give NaN and poles infinities: a calculator shows an undefined value, it doesn't throw.
using quietPolicy = boost::math::policies::policy<
    boost::math::policies::domain_error<boost::math::policies::ignore_error>,
    boost::math::policies::pole_error<boost::math::policies::ignore_error>,
    boost::math::policies::overflow_error<boost::math::policies::ignore_error>,
    boost::math::policies::evaluation_error<boost::math::policies::ignore_error>>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kRadiansPerDegree = std::numbers::pi / 180;
constexpr double kDegreesPerRadian = 180 / std::numbers::pi;

// sin and cos of x degrees, after an exact reduction to [-45, 45] degrees and a quadrant.
void sinCosDegrees(double x, double& s, double& c)
{
    if (!std::isfinite(x)) {
        s = c = kNaN;
        return;
    }
    double r = std::fmod(x, 360.0);  // exact
    const double quadrant = std::nearbyint(r / 90);
    r -= quadrant * 90;  // exact: |r| <= 360 and quadrant * 90 is representable
    // At 45 degrees sine and cosine are the same number, so that tand(45) is 1.
    const double rs = std::fabs(r) == 45 ? std::copysign(std::numbers::sqrt2 / 2, r) : std::sin(r * kRadiansPerDegree);
    const double rc = r == 0 ? 1.0 : (std::fabs(r) == 45 ? std::numbers::sqrt2 / 2 : std::cos(r * kRadiansPerDegree));
    const double sr = r == 0 ? 0.0 : rs;
    switch ((static_cast<int>(quadrant) % 4 + 4) % 4) {
    case 0: s = sr; c = rc; break;
    case 1: s = rc; c = -sr; break;
    case 2: s = -sr; c = -rc; break;
    default: s = -rc; c = sr; break;
    }
    // fmod keeps the sign of x: sin(-0) stays -0 only for x = -0.
    if (s == 0)
        s = std::copysign(0.0, x);
    if (c == 0)
        c = 0.0;
}

// Refines a first guess x of erfinv(y), y in (0, 1). In the middle Halley's method on
// erf(x) = y, where f''/f' = -2x gives the step dx / (1 + x dx) with dx = f / f'. In the tail
// Newton's method on log(erfc(x)) = log(1 - y), with 1 - y exact: the logarithm is nearly a
// parabola there, so the steps stay good even where erfc itself changes by orders of magnitude.
double refineInverseErf(double x, double y, bool tail)
{
    constexpr double kTwoOverSqrtPi = 1.1283791670955126;
    if (tail) {
        const double logTarget = std::log(1 - y);
        for (int i = 0; i < 60; ++i) {
            const double complement = std::erfc(x);
            const double slope = -kTwoOverSqrtPi * std::exp(-x * x) / complement;
            const double step = (std::log(complement) - logTarget) / slope;
            x -= step;
            if (!(std::fabs(step) > 1e-16 * x))
                break;
        }
        return x;
    }
    for (int i = 0; i < 4; ++i) {
        const double dx = (std::erf(x) - y) / (kTwoOverSqrtPi * std::exp(-x * x));
        const double step = dx / (1 + x * dx);
        x -= step;
        if (!(std::fabs(step) > 1e-17 * x))
            break;
    }
    return x;
}

}  // namespace

double_complex sin(const double_complex& z) { return std::sin(z); }
double_complex cos(const double_complex& z) { return std::cos(z); }
double_complex tan(const double_complex& z) { return std::tan(z); }
double_complex sinh(const double_complex& z) { return std::sinh(z); }
double_complex cosh(const double_complex& z) { return std::cosh(z); }
double_complex tanh(const double_complex& z) { return std::tanh(z); }
double_complex asin(const double_complex& z) { return boost::math::asin(z); }
double_complex acos(const double_complex& z) { return boost::math::acos(z); }
double_complex atan(const double_complex& z) { return boost::math::atan(z); }
double_complex asinh(const double_complex& z) { return boost::math::asinh(z); }
double_complex acosh(const double_complex& z) { return boost::math::acosh(z); }
double_complex atanh(const double_complex& z) { return boost::math::atanh(z); }
double_complex exp(const double_complex& z) { return std::exp(z); }
double_complex log(const double_complex& z) { return std::log(z); }
double_complex log10(const double_complex& z) { return std::log10(z); }
double_complex sqrt(const double_complex& z) { return std::sqrt(z); }

double_complex pow(const double_complex& base, const double_complex& exponent)
{
    if (exponent.imag() == 0) {
        const double e = exponent.real();
        if (base.imag() == 0 && (base.real() >= 0 || e == std::trunc(e)))
            return {std::pow(base.real(), e), 0.0};
        if (e == std::trunc(e) && std::fabs(e) <= 1024) {
            // Square and multiply: exact signs, no residue from going through log and exp.
            auto n = static_cast<long>(std::fabs(e));
            double_complex result{1.0, 0.0}, factor = base;
            while (n) {
                if (n & 1)
                    result *= factor;
                factor *= factor;
                n >>= 1;
            }
            return e < 0 ? double_complex{1.0, 0.0} / result : result;
        }
    }
    if (base == double_complex{0.0, 0.0})
        return exponent.real() > 0 ? double_complex{0.0, 0.0} : double_complex{kNaN, kNaN};
    return std::pow(base, exponent);
}

double asinh(double x) { return std::isnan(x) ? x : boost::math::asinh(x, quietPolicy()); }
double acosh(double x) { return std::isnan(x) || x < 1 ? kNaN : boost::math::acosh(x, quietPolicy()); }
double atanh(double x)
{
    if (std::isnan(x) || std::fabs(x) > 1)
        return kNaN;
    if (std::fabs(x) == 1)
        return std::copysign(std::numeric_limits<double>::infinity(), x);
    return boost::math::atanh(x, quietPolicy());
}
double expm1(double x) { return std::isnan(x) ? x : boost::math::expm1(x, quietPolicy()); }
double pow(double base, double exponent) { return std::pow(base, exponent); }

double error_function(double x) { return std::erf(x); }

double inverse_error_function(double y)
{
    if (std::isnan(y) || std::fabs(y) > 1)
        return kNaN;
    if (std::fabs(y) == 1)
        return std::copysign(std::numeric_limits<double>::infinity(), y);
    if (y == 0)
        return y;
    const double a = std::fabs(y);
    // First guess: a single precision rational fit in w = -log(1 - a^2), good to about 1e-7.
    double w = -std::log((1 - a) * (1 + a)), p;
    if (w < 5) {
        w -= 2.5;
        p = 2.81022636e-08;
        p = 3.43273939e-07 + p * w;
        p = -3.5233877e-06 + p * w;
        p = -4.39150654e-06 + p * w;
        p = 0.00021858087 + p * w;
        p = -0.00125372503 + p * w;
        p = -0.00417768164 + p * w;
        p = 0.246640727 + p * w;
        p = 1.50140941 + p * w;
    } else {
        w = std::sqrt(w) - 3;
        p = -0.000200214257;
        p = 0.000100950558 + p * w;
        p = 0.00134934322 + p * w;
        p = -0.00367342844 + p * w;
        p = 0.00573950773 + p * w;
        p = -0.0076224613 + p * w;
        p = 0.00943887047 + p * w;
        p = 1.00167406 + p * w;
        p = 2.83297682 + p * w;
    }
    const double x = refineInverseErf(p * a, a, a >= 0.5);
    return std::copysign(x, y);
}

double rand_gauss_distrib(double uniform, double mean, double sigma)
{
    return inverse_error_function(2 * uniform - 1) * sigma * 1.4142135623730951 + mean;
}

double db(double x)
{
    if (std::isnan(x))
        return x;
    const double magnitude = std::fabs(x);
    return magnitude >= 1e-300 ? 20 * std::log10(magnitude) : -300.0;
}

double db(const double_complex& z)
{
    if (std::isnan(z.real()) || std::isnan(z.imag()))
        return kNaN;
    const double magnitude = std::abs(z);
    return magnitude >= 1e-300 ? 20 * std::log10(magnitude) : -300.0;
}

double sign(double x) { return std::isnan(x) ? x : (x >= 0 ? 1.0 : -1.0); }

double sign(double a, double b)
{
    if (std::isnan(a) || std::isnan(b))
        return kNaN;
    return b >= 0 ? std::fabs(a) : -std::fabs(a);
}

double sgn(double x)
{
    if (std::isnan(x))
        return x;
    return x > 0 ? 1.0 : (x < 0 ? -1.0 : 0.0);
}

double pwr(double a, double b)
{
    const double magnitude = std::pow(std::fabs(a), b);
    return a < 0 ? -magnitude : magnitude;
}

double phase(double x) { return std::isnan(x) ? x : std::atan2(0.0, x); }
double phase(const double_complex& z) { return std::arg(z); }
double angle(double x) { return phase(x) * kDegreesPerRadian; }
double angle(const double_complex& z) { return std::arg(z) * kDegreesPerRadian; }

double sind(double x)
{
    double s, c;
    sinCosDegrees(x, s, c);
    return s;
}

double cosd(double x)
{
    double s, c;
    sinCosDegrees(x, s, c);
    return c;
}

double tand(double x)
{
    double s, c;
    sinCosDegrees(x, s, c);
    if (c == 0)
        return std::copysign(std::numeric_limits<double>::infinity(), s);
    return s / c;
}

double sinhd(double x) { return std::sinh(x * kRadiansPerDegree); }
double coshd(double x) { return std::cosh(x * kRadiansPerDegree); }
double tanhd(double x) { return std::tanh(x * kRadiansPerDegree); }
double asind(double x) { return std::asin(x) * kDegreesPerRadian; }
double acosd(double x) { return std::acos(x) * kDegreesPerRadian; }
double atand(double x) { return std::atan(x) * kDegreesPerRadian; }
double asinhd(double x) { return asinh(x) * kDegreesPerRadian; }
double acoshd(double x) { return acosh(x) * kDegreesPerRadian; }
double atanhd(double x) { return atanh(x) * kDegreesPerRadian; }

double_complex sind(const double_complex& z)
{
    return z.imag() == 0 ? double_complex{sind(z.real()), 0.0} : std::sin(z * kRadiansPerDegree);
}
double_complex cosd(const double_complex& z)
{
    return z.imag() == 0 ? double_complex{cosd(z.real()), 0.0} : std::cos(z * kRadiansPerDegree);
}
double_complex tand(const double_complex& z)
{
    return z.imag() == 0 ? double_complex{tand(z.real()), 0.0} : std::tan(z * kRadiansPerDegree);
}
double_complex sinhd(const double_complex& z) { return std::sinh(z * kRadiansPerDegree); }
double_complex coshd(const double_complex& z) { return std::cosh(z * kRadiansPerDegree); }
double_complex tanhd(const double_complex& z) { return std::tanh(z * kRadiansPerDegree); }
double_complex asind(const double_complex& z) { return asin(z) * kDegreesPerRadian; }
double_complex acosd(const double_complex& z) { return acos(z) * kDegreesPerRadian; }
double_complex atand(const double_complex& z) { return atan(z) * kDegreesPerRadian; }
double_complex asinhd(const double_complex& z) { return asinh(z) * kDegreesPerRadian; }
double_complex acoshd(const double_complex& z) { return acosh(z) * kDegreesPerRadian; }
double_complex atanhd(const double_complex& z) { return atanh(z) * kDegreesPerRadian; }

bool checkAppliesToComplex(baseExpression::op_type function)
{
    using namespace baseExpression;
    switch (function) {
    case op_function_abs: case op_function_mag: case op_function_magnitude:
    case op_function_sin: case op_function_cos: case op_function_tan:
    case op_function_asin: case op_function_acos: case op_function_atan:
    case op_function_sinh: case op_function_cosh: case op_function_tanh:
    case op_function_asinh: case op_function_acosh: case op_function_atanh:
    case op_function_exp: case op_function_ln: case op_function_log: case op_function_log10:
    case op_function_sqrt: case op_function_real: case op_function_imag: case op_function_conj:
    case op_function_phase: case op_function_arg: case op_function_argument: case op_function_angle:
    case op_function_sind: case op_function_cosd: case op_function_tand:
    case op_function_sinhd: case op_function_coshd: case op_function_tanhd:
    case op_function_asind: case op_function_acosd: case op_function_atand:
    case op_function_asinhd: case op_function_acoshd: case op_function_atanhd:
    case op_function_db: case op_function_pow: case op_function_power:
        return true;
    default:
        return false;
    }
}

}  // namespace vx3::vxBasicOperators
