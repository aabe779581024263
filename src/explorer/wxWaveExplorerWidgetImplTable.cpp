// The table pages: add_plot of a "spreadsheet", curves added to a table as columns, the
// spreadsheet_* column commands, calculator columns, the options of tables, clear and export.
#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/cVxString.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"
#include "treegrid/page/wxTreeGridTableWidgetImpl.h"
#include "treegrid/wxTreeGridGeometry.h"
#include "wxWaveExplorerNotebook.h"
#include "wxWaveExplorerWidgetImpl.h"

#include <cmath>
#include <filesystem>

namespace vx3 {

using namespace waveExplorerAction;

namespace {
constexpr int kOk = 0;
constexpr int kFailed = 3;
constexpr int not_a_table_command = -1;

// A column index or place of a command: a whole number from 0 on, else -1.
long long columnArgument(const wxWaveExplorerCommand& command, size_t index)
{
    const double value = command.getDoubleArg(index, -1.0);
    return value >= 0.0 && value == std::floor(value) && value < 4e9 ? static_cast<long long>(value) : -1;
}

// The export format of a file name: HTML and text by their suffixes, CSV for anything else.
int exportFormatOfFile(const std::string& fileName)
{
    std::string suffix = std::filesystem::path(fileName).extension().string();
    for (char& c : suffix)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (suffix == ".html" || suffix == ".htm")
        return treeGridData::export_html;
    if (suffix == ".txt" || suffix == ".tab")
        return treeGridData::export_text;
    return treeGridData::export_csv;
}
}  // namespace

void wxWaveExplorerWidgetImpl::applyTableOptions(wxTreeGridTableWidgetImpl& table) const
{
    table.setInterpolateMissingValues(mConfiguration.getOptionFlag("spreadsheet_interpolate_missing_values", true));
    table.setRowsAndColumnsInverted(mConfiguration.getOptionFlag("spreadsheet_invert_rows_and_columns", false));
}

wxTreeGridTableWidgetImpl* wxWaveExplorerWidgetImpl::findTableOrLog(const std::string& name) const
{
    wxTreeGridTableWidgetImpl* table = mNotebook->findTable(name);
    if (!table) {
        if (findPlot(name))
            mLogger.errorMsg("The plot window \"" + name + "\" is not a table.");
        else
            mLogger.errorMsg("The plot window \"" + name + "\" was not found.");
    }
    return table;
}

int wxWaveExplorerWidgetImpl::addCurveToTable(wxTreeGridTableWidgetImpl& table, cCurvePlotDataSection& section,
                                              uint64_t curveIndex, bool clear)
{
    if (clear)
        table.clear();
    return table.addCurve(section, curveIndex) ? kOk : kFailed;
}

int wxWaveExplorerWidgetImpl::performTableCommand(wxWaveExplorerCommand& command)
{
    const int type = command.actionType;
    if (type == opt_spreadsheet_interpolate_missing_values || type == opt_spreadsheet_invert_rows_and_columns) {
        const int result = performOption(command);
        for (wxTreeGridTableWidgetImpl* table : mNotebook->getAllTables())
            applyTableOptions(*table);
        return result;
    }
    if (type == cmd_add_plot) {
        if (command.plotType != "spreadsheet")
            return not_a_table_command;
        const std::string& name = command.plotName;
        if (!mNotebook->addPlot(name, command.plotType, true, command.getDoubleArgAsBool(1, false),
                                mConfiguration.defaultWindowType))
            return kFailed;
        applyTableOptions(*mNotebook->findTable(name));
        command.pushReturnValue(name);
        return kOk;
    }
    // The commands below act on a table; for a name that is no table they belong to the plots.
    const std::string& name = type == cmd_add_curve_to_plot ? command.getStringArgument(2) : command.plotName;
    const bool namesTable = mNotebook->findTable(name) != nullptr;
    switch (type) {
    case cmd_add_curve_to_plot:
    case cmd_add_curve_to_plot_by_name:
    case cmd_add_curve_to_plot_by_index:
    case cmd_add_curve_to_plot_by_id_and_index: {
        if (!namesTable)
            return not_a_table_command;
        wxTreeGridTableWidgetImpl& table = *mNotebook->findTable(name);
        cCurvePlotDataSection* section = nullptr;
        uint64_t curveIndex = 0;
        if (type == cmd_add_curve_to_plot_by_id_and_index) {
            const double id = command.getDoubleArg(0, -1.0);
            for (uint64_t i = 0; i < mStore->getNbOfDataSections() && !section; ++i) {
                cCurvePlotDataSection* candidate = mStore->getDataSectionFromIndex(i);
                if (candidate && id >= 0.0 && candidate->getSectionId() == static_cast<uint64_t>(id))
                    section = candidate;
            }
            if (!section) {
                mLogger.errorMsg("The section with identifier " + std::to_string(static_cast<long long>(id)) +
                                 " was not found.");
                return kFailed;
            }
        } else if (!(section = findSectionOrLog(command.getStringArgument(0)))) {
            return kFailed;
        }
        if (type == cmd_add_curve_to_plot || type == cmd_add_curve_to_plot_by_name) {
            const std::string& curve = command.getStringArgument(1);
            curveIndex = section->findVariableIndex(curve);
            if (curveIndex >= section->getNbOfVariables()) {
                mLogger.errorMsg("The curve \"" + curve + "\" was not found in section \"" +
                                 command.getStringArgument(0) + "\".");
                return kFailed;
            }
        } else {
            const size_t at = type == cmd_add_curve_to_plot_by_index ? 0 : 1;
            const long long index = columnArgument(command, at);
            if (index < 0 || static_cast<uint64_t>(index) >= section->getNbOfVariables()) {
                mLogger.errorMsg("The curve number " + std::to_string(index) + " was not found in section \"" +
                                 section->name() + "\".");
                return kFailed;
            }
            curveIndex = static_cast<uint64_t>(index);
        }
        const size_t clearAt = type == cmd_add_curve_to_plot_by_index ? 1 : type == cmd_add_curve_to_plot_by_id_and_index ? 2 : 0;
        return addCurveToTable(table, *section, curveIndex, command.getDoubleArgAsBool(clearAt, false));
    }
    case cmd_add_algebraic_curve_to_plot: {
        // On a table the expression makes a calculator column; it may name columns by letter.
        if (!namesTable)
            return not_a_table_command;
        const std::string& expression = command.getStringArgument(0);
        if (expression.empty()) {
            mLogger.errorMsg("Bad arguments for interactive command.");
            return kFailed;
        }
        return mNotebook->findTable(name)->insertCalculatorColumn(QString::fromStdString(expression)) ? kOk : kFailed;
    }
    case cmd_clear_plot:
        if (!namesTable)
            return not_a_table_command;
        mNotebook->findTable(name)->clear();
        return kOk;
    case cmd_export_as_data: {
        if (!namesTable)
            return not_a_table_command;
        const std::string& fileName = command.getStringArgument(0);
        return mNotebook->findTable(name)->exportToFile(QString::fromStdString(fileName), exportFormatOfFile(fileName))
                   ? kOk
                   : kFailed;
    }
    case cmd_spreadsheet_get_nb_sweep_variable_columns: {
        wxTreeGridTableWidgetImpl* table = findTableOrLog(name);
        if (!table)
            return kFailed;
        command.pushReturnValue(static_cast<long>(table->getData().getNbOfSweepVariableColumns()));
        return kOk;
    }
    case cmd_spreadsheet_sort_column: {
        wxTreeGridTableWidgetImpl* table = findTableOrLog(name);
        if (!table)
            return kFailed;
        const std::string word = vxString::to_lower(command.getStringArgument(0));
        int order = treeGridGeometry::sort_none;
        if (word == "up")
            order = treeGridGeometry::sort_ascending;
        else if (word == "down")
            order = treeGridGeometry::sort_descending;
        else if (word != "none") {
            mLogger.errorMsg("The sort direction \"" + command.getStringArgument(0) + "\" is not up, down or none.");
            return kFailed;
        }
        const long long col = columnArgument(command, 0);
        if (col < 0) {
            mLogger.errorMsg("The column index must be a whole number from 0 on.");
            return kFailed;
        }
        return table->sortColumn(static_cast<unsigned>(col), order) ? kOk : kFailed;
    }
    case cmd_spreadsheet_move_column: {
        wxTreeGridTableWidgetImpl* table = findTableOrLog(name);
        if (!table)
            return kFailed;
        const long long col = columnArgument(command, 0), place = columnArgument(command, 1);
        if (col < 0 || place < 0) {
            mLogger.errorMsg("The column index and the new column position must be whole numbers from 0 on.");
            return kFailed;
        }
        return table->moveColumn(static_cast<unsigned>(col), static_cast<unsigned>(place)) ? kOk : kFailed;
    }
    default:
        return not_a_table_command;
    }
}

}  // namespace vx3
