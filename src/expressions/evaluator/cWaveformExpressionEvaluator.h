// The evaluator of the waveform calculator: parses and evaluates expressions over the curves of
// a store.
#pragma once

#include <string>
#include <string_view>

#include "expressions/evaluator/cExpressionEvaluator.h"
#include "expressions/cWaveformExpression.h"
#include "expressions/evaluator/waveformExpressionEvaluator.h"

namespace vx3 {

class cWaveformExpressionEvaluator
    : public cExpressionEvaluator<waveformExpressionEvaluator::cEvaluator, cWaveformExpression> {
public:
    cWaveformExpressionEvaluator() = default;
    explicit cWaveformExpressionEvaluator(cCurvePlotDataFile* store, cCurvePlotDataSection* currentSection = nullptr)
    {
        setDataFile(store);
        setCurrentSection(currentSection);
    }

    // Parses text and evaluates it into result; false after the reasons were reported ("Failed
    // to parse expression ... (text)" for text that doesn't parse).
    bool evaluateString(std::string_view text, cWaveformExpression& result);
    // The curve that text evaluates to, defined under name in the result section; false with
    // "Failed to define curve from "name"" and the text when text gives no curve.
    bool defineCurveFromString(const std::string& name, std::string_view text);
};

}  // namespace vx3
