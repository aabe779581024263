#include "expressions/evaluator/cWaveformSearchExpression.h"

#include <array>
#include <string_view>

#include "expressions/evaluator/cWaveformExpressionEvaluator.h"
#include "expressions/cWaveformExpressionParser.h"

namespace vx3 {

namespace {

constexpr std::array<std::string_view, 11> kPredefinedNames = {
    "prop_file_id",
    "prop_file_name",
    "prop_section_name",
    "prop_section_identifier",
    "prop_variable_name",
    "prop_variable_y_axis_unit",
    "prop_variable_y_axis_type_index",
    "prop_instance_name",
    "prop_instance_full_hierarchical_name",
    "prop_instance_hierarchical_level",
    "prop_instance_subcircuit_name",
};

}  // namespace

cWaveformSearchExpression::cWaveformSearchExpression() = default;

cWaveformSearchExpression::~cWaveformSearchExpression() = default;

bool cWaveformSearchExpression::checkIsPredefinedName(const std::string& name)
{
    for (const auto predefined : kPredefinedNames)
        if (name == predefined)
            return true;
    return false;
}

bool cWaveformSearchExpression::checkHasUnquotedString(const cWaveformExpression& tree)
{
    for (const auto& name : tree.computeVariableNames())
        if (!checkIsPredefinedName(name))
            return true;
    return false;
}

bool cWaveformSearchExpression::checkSearchStringIsQuoted(const cWaveformExpression& tree, const cVxLogger& logger)
{
    if (!checkHasUnquotedString(tree))
        return true;
    logger.errorMsg("In search expressions all strings should be enclosed by double quotes.");
    return false;
}

bool cWaveformSearchExpression::searchVirtualPrepare(const std::string& expression, const cVxLogger& logger)
{
    mTree.clear();
    mEvaluator = std::make_unique<cWaveformExpressionEvaluator>();
    mEvaluator->setLoggerCallBack(logger.getLoggerCallBack());
    // Names of curves and sections are matched as users see them, with wild cards.
    mEvaluator->setFlagAcceptWildCardsForStringComparison(true);
    cVxLogger quiet(vxLogger::fatal_error);
    cWaveformExpressionParser parser(quiet);
    cWaveformExpression tree;
    if (!parser.parseString(expression, tree)) {
        logger.errorMsg("Failed to parse search expression.");
        return false;
    }
    if (!checkSearchStringIsQuoted(tree, logger))
        return false;
    mTree = std::move(tree);
    return true;
}

bool cWaveformSearchExpression::searchVirtualMatches(const curvePlotDataSearch::cSearchValues& values)
{
    if (!mEvaluator)
        return false;
    for (const auto& [name, text] : values.strings) {
        cWaveformExpression value(baseExpression::op_quoted_string);
        value.setStringValue(text);
        mEvaluator->insertUserDefinedExpression(name, value);
    }
    for (const auto& [name, number] : values.numbers)
        mEvaluator->insertUserDefinedParameterValue(name, number);
    // A value that this kind of candidate lacks (prop_variable_name of a section) is empty.
    for (const auto name : kPredefinedNames) {
        if (!mEvaluator->findUserDefinedExpression(std::string(name))) {
            cWaveformExpression empty(baseExpression::op_quoted_string);
            empty.setStringValue("");
            mEvaluator->insertUserDefinedExpression(std::string(name), empty);
        }
    }
    cWaveformExpression tree = mTree;
    if (!mEvaluator->topLevelEvaluate(tree, false) || !tree.checkIsNumber()) {
        // Told for the first candidate; the others would only repeat it.
        mEvaluator->setLoggerCallBack(nullptr);
        return false;
    }
    const double truth = tree.getAsDouble();
    return truth == truth && truth != 0;
}

}  // namespace vx3
