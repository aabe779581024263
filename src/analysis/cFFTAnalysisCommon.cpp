#include "analysis/cFFTAnalysisCommon.h"

namespace vx3::cFFTAnalysisCommon {

bool resampleVariable(const cPostProcessCurveDescription& curve, double start, double step, uint64_t n,
                      cResampled& result, std::string& error)
{
    curvePlotFunctionArgs::cDataVectors vectors;
    if (!curve.computeDataVectors(vectors, error))
        return false;
    bool resampled = false;
    const bool walked = postProcess::visitSamples(vectors, [&](const auto& samples) {
        using tY = std::remove_cvref_t<decltype(samples.y[0])>;
        result.isComplex = postProcess::kIsComplex<tY>;
        if constexpr (postProcess::kIsComplex<tY>) {
            result.complex.resize(n);
            resampled = resampleVectorOnInterval(samples, start, step, n, result.complex.data());
        } else {
            result.real.resize(n);
            resampled = resampleVectorOnInterval(samples, start, step, n, result.real.data());
        }
    });
    if (!walked) {
        error = "Incompatible data type.";
        return false;
    }
    if (!resampled)
        error = cPostProcessCurveDescriptionUser::kNonMonotoneMessage;
    return resampled;
}

bool findXRange(const cPostProcessCurveDescription& curve, double& first, double& last, uint64_t& count,
                std::string& error)
{
    curvePlotFunctionArgs::cDataVectors vectors;
    if (!curve.computeDataVectors(vectors, error))
        return false;
    bool found = false;
    postProcess::visitSamples(vectors, [&](const auto& samples) {
        count = samples.count;
        if (!samples.count)
            return;
        first = static_cast<double>(samples.x[0]);
        last = static_cast<double>(samples.x[samples.count - 1]);
        found = std::isfinite(first) && std::isfinite(last);
    });
    return found;
}

}  // namespace vx3::cFFTAnalysisCommon
