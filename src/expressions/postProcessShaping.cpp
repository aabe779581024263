#include "expressions/postProcessShaping.h"

namespace vx3::postProcess {

bool buildResampleGrid(double xStart, double xEnd, double xStep, std::vector<double>& xs, std::string& error,
                       uint64_t maxPoints)
{
    xs.clear();
    if (!std::isfinite(xStart) || !std::isfinite(xEnd) || !std::isfinite(xStep) || !(xStep > 0)) {
        error = "Resampling needs a positive step and finite bounds.";
        return false;
    }
    if (xEnd < xStart) {
        error = "Resampling needs an end at or above its start.";
        return false;
    }
    // The end counts as on the grid when it misses it only by rounding.
    const long double steps = (static_cast<long double>(xEnd) - xStart) / xStep;
    if (steps + 1 > static_cast<long double>(maxPoints)) {
        error = "Resampling would make more than " + std::to_string(maxPoints) + " points.";
        return false;
    }
    const auto count = static_cast<uint64_t>(std::floor(steps + 1e-9L)) + 1;
    xs.resize(count);
    for (uint64_t i = 0; i < count; ++i)
        xs[i] = static_cast<double>(xStart + static_cast<long double>(i) * xStep);
    return true;
}

}  // namespace vx3::postProcess
