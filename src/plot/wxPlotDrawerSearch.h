// Where drawing of a curve starts: the point before the first one inside the view, so that the
// segment entering the view is drawn. Rising x is found by an interpolation search that guesses
// the index from the value and then halves; any other x by a linear scan. Shared by the analog
// and the digital drawers, which read x plain or through an index array (sparse records).
#pragma once

#include <cmath>
#include <cstdint>

#include "model/derivedCurveFunction.h"

namespace vx3::plotDrawer {

// xAt(i) gives the x value of point i as a double, for 0 <= i < count. curveMinX and curveMaxX
// are the curve's x limits (first and last x of rising data). Returns the index drawing starts at.
template <typename XAt>
uint64_t findFirstDrawnPoint(const XAt& xAt, uint64_t count, double xmin, double curveMinX, double curveMaxX,
                             unsigned monotony)
{
    using namespace derivedCurveFunction;
    if (count < 2 || !(xmin > curveMinX))
        return 0;  // the view begins at or before the curve (or NaN limits): draw from the start
    if (!check_monotony_increasing(monotony) && monotony != monotony_constant) {
        for (uint64_t i = 0; i < count; ++i)
            if (xAt(i) >= xmin)
                return i > 0 ? i - 1 : 0;
        return count - 1;
    }
    if (count == 2)
        return xAt(1) < xmin ? 1 : 0;
    const uint64_t n = count;
    uint64_t lo = 0, hi = n - 2;
    double guess = curveMaxX > curveMinX ? (xmin - curveMinX) * double(n - 2) / (curveMaxX - curveMinX) : 0.0;
    uint64_t i;
    if (!(guess < double(n)))  // also NaN
        i = n / 2;
    else
        i = guess < 1.0 ? 1 : static_cast<uint64_t>(std::llround(guess));
    if (i >= n - 1)
        i = n / 2;
    while (lo < hi) {
        const double xi = xAt(i);
        if (xi <= xmin) {
            if (xAt(i + 1) >= xmin)
                break;
            lo = i + 1;
            i = (i + hi) / 2;
            if (i < lo)
                i = lo;
        } else {
            if (i == 0 || xAt(i - 1) <= xmin)
                break;
            hi = i;
            i = (i + lo) / 2;
        }
    }
    if (lo >= hi)
        i = lo;
    // i is at or just past the crossing: start one point before the first x at or beyond xmin.
    while (i > 0 && !(xAt(i) < xmin))
        --i;
    while (i + 1 < n && xAt(i + 1) < xmin)
        ++i;
    return i;
}

}  // namespace vx3::plotDrawer
