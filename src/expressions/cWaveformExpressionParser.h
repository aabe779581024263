// The parser of the waveform calculator's expressions: text to a cWaveformExpression tree.
#pragma once

#include <string>
#include <string_view>

#include "expressions/cParserBaseExpression.h"
#include "expressions/cWaveformExpression.h"
#include "readers/scan/cParserBaseIterators.h"

namespace vx3 {

class cWaveformExpressionParser : public cParserBaseExpression<cParserBaseStringIterator, cWaveformExpression> {
public:
    cWaveformExpressionParser() = default;
    // Messages go to the call-back of logger.
    explicit cWaveformExpressionParser(const cVxLogger& logger);

    // Clears result and parses all of text into it. False with a message when nothing parses
    // ("Failed to parse expression.") or text is left over ("Failed to entirely parse
    // expression.", the parsed part, then " ... " and the rest); result must not be used then.
    bool parseString(std::string_view text, cWaveformExpression& result);
};

}  // namespace vx3
