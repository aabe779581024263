// Spectra and windows in the calculator: fft, ifft, fftshift and ifftshift of vectors and curves,
// and the window functions as vectors.
#include <cmath>

#include "analysis/cFFTAnalysis.h"
#include "analysis/cFFTAnalysisArguments.h"
#include "analysis/cFFTAnalysisOptions.h"
#include "analysis/cFFTInterface.h"
#include "expressions/evaluator/waveformExpressionEvaluator.h"

namespace vx3::waveformExpressionEvaluator {

using namespace baseExpression;

bool cEvaluator::checkIsSpectralFunction(op_type op)
{
    switch (op) {
    case op_function_fft:
    case op_function_ifft:
    case op_function_fftshift:
    case op_function_ifftshift:
    case op_function_bartlett:
    case op_function_blackman:
    case op_function_blackman_periodic:
    case op_function_hamming:
    case op_function_hamming_periodic:
    case op_function_hann:
    case op_function_hann_periodic:
    case op_function_triang:
    case op_function_kaiser: return true;
    default: return false;
    }
}

op_type cEvaluator::computeWindow(T& node)
{
    const op_type op = node.getOperator();
    const size_t n = node.childSize();
    if (n < 1 || n > (op == op_function_kaiser ? 2u : 1u))
        return op_bad_number_of_arguments;
    const T& size = node.operands()[0];
    if (!size.checkIsNumber() || size.getOperator() == op_complex)
        return op_bad_first_argument;
    const double count = size.getAsDouble();
    // Below 1 the call stays as it is: no window of that size.
    if (!(count >= 1))
        return op;
    if (count != std::floor(count))
        return op_bad_first_argument;
    if (count > static_cast<double>(mMaximumVectorSize)) {
        errorMsg("The maximum vector size has been reached.");
        return op_failed;
    }
    const auto points = static_cast<uint64_t>(count);
    std::vector<double> values;
    switch (op) {
    case op_function_bartlett: values = cFFTInterface::bartlett(points); break;
    case op_function_blackman: values = cFFTInterface::blackman(points); break;
    case op_function_blackman_periodic: values = cFFTInterface::blackmanPeriodic(points); break;
    case op_function_hamming: values = cFFTInterface::hamming(points); break;
    case op_function_hamming_periodic: values = cFFTInterface::hammingPeriodic(points); break;
    case op_function_hann: values = cFFTInterface::hann(points); break;
    case op_function_hann_periodic: values = cFFTInterface::hannPeriodic(points); break;
    case op_function_triang: values = cFFTInterface::triang(points); break;
    default: {
        double beta = 0.5;
        if (n == 2) {
            if (!node.operands()[1].checkIsNumber() || node.operands()[1].getOperator() == op_complex)
                return op_bad_second_argument;
            beta = node.operands()[1].getAsDouble();
        }
        values = cFFTInterface::kaiser(points, beta);
    }
    }
    node.clear();
    node.setOperator(op_real_vector);
    node.doubleValues() = std::move(values);
    return op_real_vector;
}

op_type cEvaluator::computeVectorSpectrum(T& node)
{
    const op_type op = node.getOperator();
    const size_t n = node.childSize();
    const bool shift = op == op_function_fftshift || op == op_function_ifftshift;
    if (n < 1 || n > (shift ? 1u : 2u))
        return op_bad_number_of_arguments;
    cNumbers input;
    if (!readNumbers(node.operands()[0], input))
        return op_bad_first_argument;
    uint64_t points = input.size();
    if (n == 2) {
        const double wanted = node.operands()[1].getAsDouble();
        if (!node.operands()[1].checkIsNumber() || !(wanted >= 1) || wanted != std::floor(wanted) ||
            wanted > static_cast<double>(mMaximumVectorSize))
            return op_bad_second_argument;
        points = static_cast<uint64_t>(wanted);
    }
    if (points == 0)
        return op_bad_first_argument;
    cNumbers result;
    result.vector = true;
    if (shift) {
        result.complex = input.complex;
        if (input.complex) {
            result.values = op == op_function_fftshift ? cFFTInterface::computeComplexFFTShift(input.values)
                                                       : cFFTInterface::computeComplexInverseFFTShift(input.values);
        } else {
            std::vector<double> reals;
            for (const auto& value : input.values)
                reals.push_back(value.real());
            for (double value : op == op_function_fftshift ? cFFTInterface::computeRealFFTShift(reals)
                                                           : cFFTInterface::computeRealInverseFFTShift(reals))
                result.values.emplace_back(value, 0.0);
        }
        writeNumbers(node, result);
        return node.getOperator();
    }
    // The whole spectrum, unscaled; the inverse divided by n, so that ifft(fft(v)) is v.
    cFFTInterface transform;
    result.complex = true;
    if (op == op_function_fft && !input.complex) {
        std::vector<double> reals;
        for (const auto& value : input.values)
            reals.push_back(value.real());
        result.values = transform.FFT(reals, points, true);
    } else if (op == op_function_fft) {
        result.values = transform.FFT(input.values, points);
    } else {
        result.values = transform.iFFT(input.values, points, FFTInterface::normalize_by_n);
    }
    if (result.values.empty())
        return op_bad_arguments;
    writeNumbers(node, result);
    return node.getOperator();
}

op_type cEvaluator::computeCurveSpectrum(T& node, const cPostProcessCurveDescription& curve)
{
    // fft(curve [, n]): the spectrum of the curve resampled on n points (1024 by default);
    // ifft(spectrum [, n]): the time curve of a spectrum.
    const op_type op = node.getOperator();
    if (op != op_function_fft && op != op_function_ifft)
        return op_bad_first_argument;
    if (node.childSize() > 2)
        return op_bad_number_of_arguments;
    cFFTAnalysisOptions options;
    options.setNumberOfPoints(FFTAnalysisOptions::kDefaultNumberOfPoints);
    if (node.childSize() == 2) {
        const double wanted = node.operands()[1].getAsDouble();
        if (!node.operands()[1].checkIsNumber() || !(wanted >= 1) || wanted != std::floor(wanted))
            return op_bad_second_argument;
        options.setNumberOfPoints(static_cast<int64_t>(wanted));
    }
    options.setFrequencyToTime(op == op_function_ifft);
    cCurvePlotDataSection* section = getResultSection();
    cFFTAnalysis analysis(options, *section, getDataFile());
    cFFTAnalysisArguments run;
    run.setFirstArgumentCurve(curve);
    const uint64_t before = section->getNbOfVariables();
    if (!analysis.computeFFTAndAddCurve(run)) {
        errorMsg(analysis.getErrorString());
        return op_failed;
    }
    // The spectrum becomes a temporary curve; resampled copies that the run added go again.
    const std::string name = generateNewTmpCurve();
    const std::string resultName = run.getResultCurveName();
    for (uint64_t i = section->getNbOfVariables(); i-- > before;)
        if (section->getVariable(i).name() != resultName)
            section->removeVariable(i);
    const uint64_t index = section->findVariableIndex(0, resultName, false);
    const bool renamed = index != cCurvePlotDataSection::npos && section->renameVariable(index, name);
    return adoptTemporaryCurve(node, renamed, name, section->getSectionId(), "Unsupported curve type.");
}

}  // namespace vx3::waveformExpressionEvaluator
