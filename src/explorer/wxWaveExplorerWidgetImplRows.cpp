// The commands for the rows of digital and mixed plots: group headings and separators, and buses
// and groups opened and closed by name.
#include "plot/qt/wxDigitalRowsPlot.h"
#include "wxWaveExplorerWidgetImpl.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {
constexpr int kOk = 0;
constexpr int kFailed = 3;
constexpr int not_a_row_command = -1;
}  // namespace

int wxWaveExplorerWidgetImpl::performRowCommand(wxWaveExplorerCommand& command)
{
    const int type = command.actionType;
    if (type != cmd_add_group_to_plot && type != cmd_add_separator_to_plot && type != cmd_expand_group_in_plot &&
        type != cmd_collapse_group_in_plot)
        return not_a_row_command;
    wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
    if (!plot)
        return kFailed;
    auto* rows = dynamic_cast<wxDigitalRowsPlot*>(plot);
    if (!rows) {
        mLogger.errorMsg("The plot window \"" + command.plotName + "\" has no rows: groups and buses need a digital "
                         "or mixed plot.");
        return kFailed;
    }
    const std::string& name = command.getStringArgument(0);
    if (type == cmd_add_group_to_plot || type == cmd_add_separator_to_plot) {
        if (name.empty()) {
            mLogger.errorMsg(std::string(type == cmd_add_group_to_plot ? "A group" : "A separator") +
                             " needs a name.");
            return kFailed;
        }
        if (type == cmd_add_group_to_plot)
            rows->addGroup(name);
        else
            rows->addSeparator(name);
        return kOk;
    }
    const int row = rows->findExpandableRow(name);
    if (row < 0) {
        mLogger.errorMsg("No group or bus \"" + name + "\" in the plot window \"" + command.plotName + "\".");
        return kFailed;
    }
    // Opening what is open (or closing what is closed) is no failure: a script states the wanted state.
    rows->expandRow(static_cast<size_t>(row), type == cmd_expand_group_in_plot);
    return kOk;
}

}  // namespace vx3
