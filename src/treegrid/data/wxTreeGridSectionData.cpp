#include "treegrid/data/wxTreeGridSectionData.h"

#include <algorithm>
#include <cmath>

namespace vx3 {

bool checkSameRowX(double a, double b)
{
    if (a == b)
        return true;
    return std::fabs(a - b) <= 1e-12 * std::max(std::fabs(a), std::fabs(b));
}

size_t wxTreeGridDataColumn::findSample(double x) const
{
    auto it = std::lower_bound(xs.begin(), xs.end(), x);
    if (it != xs.end() && checkSameRowX(*it, x))
        return size_t(it - xs.begin());
    if (it != xs.begin() && checkSameRowX(*(it - 1), x))
        return size_t(it - xs.begin()) - 1;
    return npos;
}

bool wxTreeGridDataColumn::interpolate(double x, double& re, double& im) const
{
    im = 0;
    const size_t exact = findSample(x);
    if (exact != npos) {
        re = ys[exact];
        if (complex)
            im = imag[exact];
        return true;
    }
    auto it = std::lower_bound(xs.begin(), xs.end(), x);
    if (it == xs.begin() || it == xs.end())
        return false;
    const size_t hi = size_t(it - xs.begin()), lo = hi - 1;
    const double t = (x - xs[lo]) / (xs[hi] - xs[lo]);
    re = ys[lo] + t * (ys[hi] - ys[lo]);
    if (complex)
        im = imag[lo] + t * (imag[hi] - imag[lo]);
    return true;
}

}  // namespace vx3
