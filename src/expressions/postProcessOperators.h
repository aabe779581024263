// The operations that combine two curve values, for double and long double (interpolated values
// are combined in extended precision), real or complex. Undefined inputs never reach them: the
// walk gives NaN for those itself, except for the operations marked kPropagatesNaN, whose
// arithmetic does it. Operations marked kRealOnly have no meaning for complex values.
#pragma once

#include <cmath>
#include <complex>
#include <type_traits>

namespace vx3::postProcess {

template <class T>
inline constexpr bool kIsComplex = false;
template <class T>
inline constexpr bool kIsComplex<std::complex<T>> = true;

// The type in which values of Y are interpolated and combined, and the type stored.
template <class Y>
using tWide = std::conditional_t<kIsComplex<Y>, std::complex<long double>, long double>;
template <class Y>
using tStored = std::conditional_t<kIsComplex<Y>, std::complex<double>, double>;

// value converted to W; a real value widens to a complex one with zero imaginary part.
template <class W, class T>
W widen(const T& value)
{
    if constexpr (kIsComplex<T>)
        return W(static_cast<long double>(value.real()), static_cast<long double>(value.imag()));
    else
        return W(static_cast<long double>(value));
}

template <class T>
bool checkIsUndefined(const T& value)
{
    if constexpr (kIsComplex<T>)
        return std::isnan(value.real()) || std::isnan(value.imag());
    else
        return std::isnan(value);
}

template <class T>
T undefinedValue()
{
    if constexpr (kIsComplex<T>)
        return T(NAN, NAN);
    else
        return T(NAN);
}

template <class R, class T>
R narrow(const T& value)
{
    if constexpr (kIsComplex<R>)
        return R(static_cast<double>(std::real(value)), static_cast<double>(std::imag(value)));
    else
        return static_cast<R>(value);
}

template <class Op>
constexpr bool kOperatorIsRealOnly = requires { Op::kRealOnly; };

struct cAdd {
    static constexpr bool kPropagatesNaN = true;
    template <class T>
    T operator()(T a, T b) const { return a + b; }
};
struct cSubtract {
    static constexpr bool kPropagatesNaN = true;
    template <class T>
    T operator()(T a, T b) const { return a - b; }
};
struct cSubtractComm {
    static constexpr bool kPropagatesNaN = true;
    template <class T>
    T operator()(T a, T b) const { return b - a; }
};
struct cMultiply {
    static constexpr bool kPropagatesNaN = true;
    template <class T>
    T operator()(T a, T b) const { return a * b; }
};
// Division by zero is undefined, not infinite: a curve that crosses zero in the denominator
// gets a gap there instead of a spike that ruins the plot's scale.
struct cDivide {
    template <class T>
    T operator()(T a, T b) const { return b == T(0) ? undefinedValue<T>() : a / b; }
};
struct cDivideComm {
    template <class T>
    T operator()(T a, T b) const { return a == T(0) ? undefinedValue<T>() : b / a; }
};
struct cPower {
    template <class T>
    T operator()(T a, T b) const { return std::pow(a, b); }
};
struct cPowerComm {
    template <class T>
    T operator()(T a, T b) const { return std::pow(b, a); }
};
// Comparisons give 1 for true and 0 for false.
struct cLess {
    static constexpr bool kRealOnly = true;
    template <class T>
    T operator()(T a, T b) const { return a < b ? 1 : 0; }
};
struct cLessEqual {
    static constexpr bool kRealOnly = true;
    template <class T>
    T operator()(T a, T b) const { return a <= b ? 1 : 0; }
};
struct cGreater {
    static constexpr bool kRealOnly = true;
    template <class T>
    T operator()(T a, T b) const { return a > b ? 1 : 0; }
};
struct cGreaterEqual {
    static constexpr bool kRealOnly = true;
    template <class T>
    T operator()(T a, T b) const { return a >= b ? 1 : 0; }
};
struct cEqual {
    template <class T>
    T operator()(T a, T b) const { return a == b ? T(1) : T(0); }
};
struct cNotEqual {
    template <class T>
    T operator()(T a, T b) const { return a != b ? T(1) : T(0); }
};
// Logic: anything but 0 is true.
struct cLogicalAnd {
    static constexpr bool kRealOnly = true;
    template <class T>
    T operator()(T a, T b) const { return a != 0 && b != 0 ? 1 : 0; }
};
struct cLogicalOr {
    static constexpr bool kRealOnly = true;
    template <class T>
    T operator()(T a, T b) const { return a != 0 || b != 0 ? 1 : 0; }
};

}  // namespace vx3::postProcess
