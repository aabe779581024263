#include "readers/scan/cParserBase.h"

namespace vx3::parserBaseBom {

bool checkIsNumericRow(const std::string& line)
{
    cParserBaseStringIteratorHandler handler;
    handler.useStringData(line);
    cParserBaseStringIterator begin = handler.begin();
    const cParserBaseStringIterator end = handler.end();
    using parser = cParserBase<cParserBaseStringIterator>;
    unsigned numbers = 0;
    for (;;) {
        while (begin != end && (*begin == ' ' || *begin == '\t' || *begin == ',' || *begin == ';' || *begin == '\r' ||
                                *begin == '|'))
            ++begin;
        if (begin == end)
            break;
        double value;
        if (!parser::parseDoubleNoUnits(begin, end, value))
            return false;
        ++numbers;
    }
    return numbers > 0;
}

bool checkIsCitiKeywordLine(const std::string& line)
{
    static const char* const keywords[] = {"CITIFILE", "NAME",     "VAR",      "DATA",           "BEGIN", "END",
                                           "COMMENT",  "CONSTANT", "SEG_LIST", "VAR_LIST_BEGIN", "SEG"};
    for (const char* keyword : keywords)
        if (startsWith(line, keyword))
            return true;
    return false;
}

}  // namespace vx3::parserBaseBom
