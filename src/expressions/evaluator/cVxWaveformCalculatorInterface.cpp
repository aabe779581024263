#include "expressions/evaluator/cVxWaveformCalculatorInterface.h"

#include "base/cVxString.h"

namespace vx3 {

namespace {

std::string numberText(double value)
{
    std::string text;
    baseExpression::appendNumber(text, value, false);
    return text;
}

}  // namespace

cVxWaveformCalculatorInterface::cVxWaveformCalculatorInterface(cCurvePlotDataFile& store) : mEvaluator(&store) {}

cVxWaveformCalculatorInterface::~cVxWaveformCalculatorInterface() = default;

std::string cVxWaveformCalculatorInterface::generateExpressionForWaveform(uint64_t sectionId, uint64_t curveIndex)
{
    return "waveform(" + std::to_string(sectionId) + ", " + std::to_string(curveIndex) + ")";
}

std::string cVxWaveformCalculatorInterface::generateExpressionOperatorOnWaveforms(const std::string& op,
                                                                                 uint64_t sectionA, uint64_t curveA,
                                                                                 uint64_t sectionB, uint64_t curveB)
{
    return generateExpressionForWaveform(sectionA, curveA) + " " + op + " " +
           generateExpressionForWaveform(sectionB, curveB);
}

std::string cVxWaveformCalculatorInterface::generateExpressionReduceWaveform(uint64_t sectionId, uint64_t curveIndex,
                                                                            double toleranceY, double toleranceX)
{
    return "reduce_waveform(" + generateExpressionForWaveform(sectionId, curveIndex) + ", " + numberText(toleranceY) +
           ", " + numberText(toleranceX) + ")";
}

std::string cVxWaveformCalculatorInterface::generateExpressionConvertToStepFunction(uint64_t sectionId,
                                                                                   uint64_t curveIndex,
                                                                                   double threshold)
{
    return "convert_to_step_function(" + generateExpressionForWaveform(sectionId, curveIndex) + ", " +
           numberText(threshold) + ")";
}

bool cVxWaveformCalculatorInterface::evaluateInSection(const std::string& text, const std::string& section,
                                                       cWaveformExpression& value)
{
    mEvaluator.setResultSectionName(section);
    return mEvaluator.evaluateString(text, value);
}

bool cVxWaveformCalculatorInterface::evaluate(const std::string& text, cWaveformExpression& value)
{
    return evaluateInSection(text, "expression", value);
}

bool cVxWaveformCalculatorInterface::calcEvaluateExpression(const std::string& text, cWaveformExpression& value)
{
    return evaluateInSection(text, "expression", value);
}

bool cVxWaveformCalculatorInterface::calcOperatorOnCurves(const std::string& op, uint64_t sectionA, uint64_t curveA,
                                                          uint64_t sectionB, uint64_t curveB,
                                                          cWaveformExpression& value)
{
    const std::string section = op == "+" ? "add" : op == "-" ? "subtract" : "expression";
    return evaluateInSection(generateExpressionOperatorOnWaveforms(op, sectionA, curveA, sectionB, curveB), section,
                             value);
}

bool cVxWaveformCalculatorInterface::calcAddCurves(uint64_t sectionA, uint64_t curveA, uint64_t sectionB,
                                                   uint64_t curveB, cWaveformExpression& value)
{
    return calcOperatorOnCurves("+", sectionA, curveA, sectionB, curveB, value);
}

bool cVxWaveformCalculatorInterface::calcSubtractCurves(uint64_t sectionA, uint64_t curveA, uint64_t sectionB,
                                                        uint64_t curveB, cWaveformExpression& value)
{
    return calcOperatorOnCurves("-", sectionA, curveA, sectionB, curveB, value);
}

bool cVxWaveformCalculatorInterface::calcReduceCurve(uint64_t sectionId, uint64_t curveIndex, double toleranceY,
                                                     double toleranceX, cWaveformExpression& value)
{
    return evaluateInSection(generateExpressionReduceWaveform(sectionId, curveIndex, toleranceY, toleranceX), "reduced",
                             value);
}

bool cVxWaveformCalculatorInterface::calcStepFunctionCurve(uint64_t sectionId, uint64_t curveIndex, double threshold,
                                                           cWaveformExpression& value)
{
    return evaluateInSection(generateExpressionConvertToStepFunction(sectionId, curveIndex, threshold),
                             "step_function", value);
}

bool cVxWaveformCalculatorInterface::calcGetAddedCurvesData(uint64_t sectionA, uint64_t curveA, uint64_t sectionB,
                                                            uint64_t curveB, cData& data)
{
    cWaveformExpression value;
    return calcAddCurves(sectionA, curveA, sectionB, curveB, value) && getDataFromEvaluationResult(value, data);
}

bool cVxWaveformCalculatorInterface::calcGetSubtractedCurvesData(uint64_t sectionA, uint64_t curveA,
                                                                 uint64_t sectionB, uint64_t curveB, cData& data)
{
    cWaveformExpression value;
    return calcSubtractCurves(sectionA, curveA, sectionB, curveB, value) && getDataFromEvaluationResult(value, data);
}

bool cVxWaveformCalculatorInterface::calcGetReducedCurveData(uint64_t sectionId, uint64_t curveIndex,
                                                             double toleranceY, double toleranceX, cData& data)
{
    cWaveformExpression value;
    return calcReduceCurve(sectionId, curveIndex, toleranceY, toleranceX, value) &&
           getDataFromEvaluationResult(value, data);
}

bool cVxWaveformCalculatorInterface::calcGetStepFunctionCurveData(uint64_t sectionId, uint64_t curveIndex,
                                                                  double threshold, cData& data)
{
    cWaveformExpression value;
    return calcStepFunctionCurve(sectionId, curveIndex, threshold, value) && getDataFromEvaluationResult(value, data);
}

bool cVxWaveformCalculatorInterface::getDataFromEvaluationResult(const cWaveformExpression& value, cData& data)
{
    using namespace baseExpression;
    data = cData();
    cPostProcessCurveDescription curve;
    if (mEvaluator.getCurveDescription(value, curve)) {
        waveformExpressionEvaluator::cEvaluator::cCurveCopy copy;
        if (!mEvaluator.readCurve(curve, copy))
            return false;
        data.isCurve = true;
        data.complex = copy.complex;
        data.xs = std::move(copy.xs);
        data.ys = std::move(copy.ys);
        data.yc = std::move(copy.yc);
        return true;
    }
    const auto& numbers = value.doubleValues();
    switch (value.getOperator()) {
    case op_integer:
    case op_real:
    case op_real_vector: data.ys = numbers; return true;
    case op_complex:
    case op_complex_vector:
        data.complex = true;
        for (size_t i = 0; i + 1 < numbers.size(); i += 2)
            data.yc.emplace_back(numbers[i], numbers[i + 1]);
        return true;
    default: return false;
    }
}

void cVxWaveformCalculatorInterface::releaseCalculator()
{
    mEvaluator.clearEvaluator();
    mEvaluator.initStd();
}

}  // namespace vx3
