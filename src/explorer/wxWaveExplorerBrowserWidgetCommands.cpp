// The browser's commands: the order of levels, run parameters and sweep variables, the filters,
// and the words by which scripts and tests read the rows and drive the search row.
#include <cmath>

#include "app/core/cCommandTable.h"
#include "app/core/wxWaveExplorerCommand.h"
#include "base/cVxLogger.h"
#include "wxWaveExplorerBrowserSearchBar.h"
#include "wxWaveExplorerBrowserTreeGrid.h"
#include "wxWaveExplorerBrowserWidget.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {
constexpr int kOk = 0;
constexpr int kFailed = 3;
constexpr int kNotMine = -1;

// Tokens of words without a form arrive as typed: quotes are taken off here.
std::string unquoted(const std::string& token)
{
    if (token.size() >= 2 && token.front() == '"' && token.back() == '"')
        return token.substr(1, token.size() - 2);
    return token;
}

bool flagWord(const std::string& word)
{
    return word == "1" || word == "true" || word == "yes" || word == "on";
}
}  // namespace

std::vector<std::string> wxWaveExplorerBrowserWidget::stringArguments(const wxWaveExplorerCommand& command) const
{
    std::vector<std::string> names;
    for (size_t i = 0; i < command.getNumberOfStringArguments(); ++i)
        names.push_back(unquoted(command.getStringArgument(i)));
    return names;
}

int wxWaveExplorerBrowserWidget::performCommand(wxWaveExplorerCommand& command)
{
    switch (command.actionType) {
    case opt_browser_use_full_hierarchical_names: {
        // The explorer keeps the option in the configuration as well.
        const bool flag = command.getDoubleArgAsBool(0, false);
        if (flag != mConfiguration.getUseFullHierarchicalNames()) {
            mConfiguration.setUseFullHierarchicalNames(flag);
            refresh();
        }
        return kNotMine;
    }
    case cmd_set_browser_item_order: {
        std::string unknown;
        if (!mConfiguration.setGroupPriorities(stringArguments(command), unknown)) {
            mLogger.errorMsg("Unknown browser item \"" + unknown + "\".");
            return kFailed;
        }
        refresh();
        return kOk;
    }
    case cmd_set_browser_default_item_order:
        mConfiguration.setDefaults();
        refresh();
        return kOk;
    case cmd_set_browser_run_parameter_order:
        mConfiguration.setRunParameterOrder(stringArguments(command));
        refresh();
        return kOk;
    case cmd_set_browser_sweep_variable_order:
        mConfiguration.setSweepVariableOrder(stringArguments(command));
        refresh();
        return kOk;
    case cmd_set_browser_run_parameter_style:
        if (!mConfiguration.setRunParameterStyle(command.getStringArgument(0))) {
            mLogger.errorMsg("Unknown run parameter style \"" + command.getStringArgument(0) +
                             "\" (values, names or run).");
            return kFailed;
        }
        refresh();
        return kOk;
    case cmd_set_browser_run_parameter_filter:
    case cmd_set_browser_sweep_variable_filter: {
        auto& rules = command.actionType == cmd_set_browser_run_parameter_filter ? mConfiguration.runParameterRules()
                                                                                 : mConfiguration.sweepVariableRules();
        rules.setValueFlag(command.getStringArgument(0), command.getStringArgument(1),
                           command.getDoubleArgAsBool(0, true));
        refresh();
        return kOk;
    }
    case cmd_set_browser_run_parameter_number_filter:
    case cmd_set_browser_sweep_variable_number_filter: {
        const bool run = command.actionType == cmd_set_browser_run_parameter_number_filter;
        browserConfiguration::wxNumericalFilter filter;
        filter.set(command.getDoubleArg(0, NAN), command.getDoubleArg(1, NAN), command.getDoubleArg(2, NAN),
                   command.getDoubleArg(3, NAN));
        // Without a name, a sweep filter bounds every sweep variable.
        const std::string name = run ? command.getStringArgument(0) : std::string();
        (run ? mConfiguration.runParameterRules() : mConfiguration.sweepVariableRules()).setNumericalFilter(name, filter);
        refresh();
        return kOk;
    }
    case cmd_browser_action:
        return performAction(command);
    default:
        return kNotMine;
    }
}

// browser_action rows | search <text> [case] [wildcard] [wrap] [selected instance] | find_next |
// find_previous. The rows come back one per return value; a search step returns its message (empty
// when a curve was found) and the full name of the curve it stands on.
int wxWaveExplorerBrowserWidget::performAction(wxWaveExplorerCommand& command)
{
    const std::vector<std::string> words = stringArguments(command);
    const std::string what = words.empty() ? std::string() : words[0];
    auto pushCurrent = [this, &command] {
        const size_t row = mTree->getCurrentRow();
        command.pushReturnValue(row < mTree->rows().getNumberOfCurveRows() ? mTree->rows().getRow(row).fullName
                                                                            : std::string());
    };
    if (what == "rows") {
        const wxWaveExplorerBrowserRows& rows = mTree->rows();
        for (size_t r = 0; r < rows.getNumberOfCurveRows(); ++r)
            command.pushReturnValue(rows.dumpRow(r));
        return kOk;
    }
    if (what == "search" && words.size() >= 2) {
        auto flag = [&words](size_t i) { return i < words.size() && flagWord(words[i]); };
        mSearch->setText(words[1]);
        mSearch->setOptions(flag(2), flag(3), flag(4), flag(5));
        command.pushReturnValue(startSearch(words[1], mSearch->getOptions(), flag(5)));
        pushCurrent();
        return kOk;
    }
    if (what == "find_next" || what == "find_previous") {
        command.pushReturnValue(what == "find_next" ? findNext() : findPrevious());
        pushCurrent();
        return kOk;
    }
    mLogger.errorMsg("browser_action : unknown request \"" + what + "\" (rows, search, find_next, find_previous).");
    return kFailed;
}

}  // namespace vx3
