// The operations that combine two curve values, for double and long double (interpolated values
// are combined in extended precision). Undefined inputs never reach them: the walk gives NaN for
// those itself, except for the operations marked kPropagatesNaN, whose arithmetic does it.
#pragma once

#include <cmath>

namespace vx3::postProcess {

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
    T operator()(T a, T b) const { return b == 0 ? T(NAN) : a / b; }
};
struct cDivideComm {
    template <class T>
    T operator()(T a, T b) const { return a == 0 ? T(NAN) : b / a; }
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
    template <class T>
    T operator()(T a, T b) const { return a < b ? 1 : 0; }
};
struct cLessEqual {
    template <class T>
    T operator()(T a, T b) const { return a <= b ? 1 : 0; }
};
struct cGreater {
    template <class T>
    T operator()(T a, T b) const { return a > b ? 1 : 0; }
};
struct cGreaterEqual {
    template <class T>
    T operator()(T a, T b) const { return a >= b ? 1 : 0; }
};
struct cEqual {
    template <class T>
    T operator()(T a, T b) const { return a == b ? 1 : 0; }
};
struct cNotEqual {
    template <class T>
    T operator()(T a, T b) const { return a != b ? 1 : 0; }
};
// Logic: anything but 0 is true.
struct cLogicalAnd {
    template <class T>
    T operator()(T a, T b) const { return a != 0 && b != 0 ? 1 : 0; }
};
struct cLogicalOr {
    template <class T>
    T operator()(T a, T b) const { return a != 0 || b != 0 ? 1 : 0; }
};

}  // namespace vx3::postProcess
