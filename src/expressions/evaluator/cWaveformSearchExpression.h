// The matcher of the store's search expressions: an expression of the calculator's language over
// the predefined values prop_file_name, prop_variable_name and the others, parsed once and
// evaluated for each candidate. Strings compare with wild cards ("v(*)"); "=~" takes a regular
// expression.
#pragma once

#include <memory>
#include <string>

#include "expressions/cWaveformExpression.h"
#include "model/cCurvePlotDataSearch.h"

namespace vx3 {

class cWaveformExpressionEvaluator;

class cWaveformSearchExpression : public cCurvePlotSearchVirtual {
public:
    cWaveformSearchExpression();
    ~cWaveformSearchExpression() override;

    bool searchVirtualPrepare(const std::string& expression, const cVxLogger& logger) override;
    bool searchVirtualMatches(const curvePlotDataSearch::cSearchValues& values) override;

    // A name in the tree that is none of the predefined values: a string without its quotes.
    static bool checkHasUnquotedString(const cWaveformExpression& tree);
    // False with "In search expressions all strings should be enclosed by double quotes." on logger.
    static bool checkSearchStringIsQuoted(const cWaveformExpression& tree, const cVxLogger& logger);
    static bool checkIsPredefinedName(const std::string& name);

private:
    cWaveformExpression mTree;
    std::unique_ptr<cWaveformExpressionEvaluator> mEvaluator;
};

}  // namespace vx3
