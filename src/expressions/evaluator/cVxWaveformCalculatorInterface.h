// The calculator behind the plug-in and widget interfaces: requests on curves ("add these two",
// "thin this one") become expression texts that the evaluator computes, so that every door
// computes a curve the same way and the text can be shown and edited.
#pragma once

#include <complex>
#include <cstdint>
#include <string>
#include <vector>

#include "expressions/evaluator/cWaveformExpressionEvaluator.h"

namespace vx3 {

class cVxWaveformCalculatorInterface {
public:
    // Curves are looked up in store; results go to tool box sections named after the request.
    explicit cVxWaveformCalculatorInterface(cCurvePlotDataFile& store);
    ~cVxWaveformCalculatorInterface();

    // The values of an evaluation's result: x and y of a curve, or y alone for a number or vector.
    struct cData {
        std::vector<double> xs;
        std::vector<double> ys;
        std::vector<std::complex<double>> yc;
        bool complex = false;
        bool isCurve = false;
    };

    cWaveformExpressionEvaluator& evaluator() { return mEvaluator; }

    // ---- Expression texts
    static std::string generateExpressionForWaveform(uint64_t sectionId, uint64_t curveIndex);
    // op is an operator of the language: "+", "-", "*", "/", "^", "<", ...
    static std::string generateExpressionOperatorOnWaveforms(const std::string& op, uint64_t sectionA,
                                                             uint64_t curveA, uint64_t sectionB, uint64_t curveB);
    static std::string generateExpressionReduceWaveform(uint64_t sectionId, uint64_t curveIndex, double toleranceY,
                                                        double toleranceX);
    static std::string generateExpressionConvertToStepFunction(uint64_t sectionId, uint64_t curveIndex,
                                                               double threshold);

    // ---- Evaluation. Each gives false after the reasons went to the evaluator's logger.
    // text evaluated into value, results in the section "expression".
    bool evaluate(const std::string& text, cWaveformExpression& value);
    bool calcEvaluateExpression(const std::string& text, cWaveformExpression& value);
    bool calcOperatorOnCurves(const std::string& op, uint64_t sectionA, uint64_t curveA, uint64_t sectionB,
                              uint64_t curveB, cWaveformExpression& value);
    bool calcAddCurves(uint64_t sectionA, uint64_t curveA, uint64_t sectionB, uint64_t curveB,
                       cWaveformExpression& value);
    bool calcSubtractCurves(uint64_t sectionA, uint64_t curveA, uint64_t sectionB, uint64_t curveB,
                            cWaveformExpression& value);
    bool calcReduceCurve(uint64_t sectionId, uint64_t curveIndex, double toleranceY, double toleranceX,
                         cWaveformExpression& value);
    bool calcStepFunctionCurve(uint64_t sectionId, uint64_t curveIndex, double threshold, cWaveformExpression& value);
    // The same, with the values of the result.
    bool calcGetAddedCurvesData(uint64_t sectionA, uint64_t curveA, uint64_t sectionB, uint64_t curveB, cData& data);
    bool calcGetSubtractedCurvesData(uint64_t sectionA, uint64_t curveA, uint64_t sectionB, uint64_t curveB,
                                     cData& data);
    bool calcGetReducedCurveData(uint64_t sectionId, uint64_t curveIndex, double toleranceY, double toleranceX,
                                 cData& data);
    bool calcGetStepFunctionCurveData(uint64_t sectionId, uint64_t curveIndex, double threshold, cData& data);
    bool getDataFromEvaluationResult(const cWaveformExpression& value, cData& data);
    // Drops all definitions and the curves made here.
    void releaseCalculator();

private:
    bool evaluateInSection(const std::string& text, const std::string& section, cWaveformExpression& value);

    cWaveformExpressionEvaluator mEvaluator;
};

}  // namespace vx3
