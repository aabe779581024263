#include "expressions/cWaveformExpressionParser.h"

namespace vx3 {

cWaveformExpressionParser::cWaveformExpressionParser(const cVxLogger& logger)
{
    setLoggerCallBack(logger.getLoggerCallBack());
}

bool cWaveformExpressionParser::parseString(std::string_view text, cWaveformExpression& result)
{
    result.clear();
    cParserBaseStringIteratorHandler handler;
    handler.useStringData(text);
    cParserBaseStringIterator begin = handler.begin();
    const cParserBaseStringIterator end = handler.end();
    const bool parsed = parseExpression(begin, end, result);
    if (checkNestingExceeded()) {
        result.clear();
        errorMsg("The expression nests brackets or prefix operators more than " + std::to_string(kMaximumNesting) +
                 " levels deep.");
        errorMsg("Failed to parse expression.");
        return false;
    }
    if (!parsed) {
        result.clear();
        errorMsg("Failed to parse expression.");
        return false;
    }
    const size_t used = begin.position();
    skipWhiteSpace(begin, end);
    if (begin != end) {
        errorMsg("Failed to entirely parse expression.");
        infoMsg(std::string(text.substr(0, used)));
        errorMsg(" ... " + std::string(text.substr(begin.position())));
        return false;
    }
    return true;
}

}  // namespace vx3
