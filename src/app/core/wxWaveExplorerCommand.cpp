#include "wxWaveExplorerCommand.h"

#include <unordered_set>

#include "base/cVxFilePath.h"
#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "cInteractiveParser.h"

namespace vx3 {

using namespace waveExplorerAction;

void wxWaveExplorerCommand::clear()
{
    clearAction();
    actionType = cmd_no_command;
    sectionIndex = curveIndex = -1;
    realLineWidth = imagLineWidth = -1;
    realRed = realGreen = realBlue = imagRed = imagGreen = imagBlue = -1;
    fileName.clear();
    sectionName.clear();
    curveName.clear();
    secondCurveName.clear();
    title.clear();
    unit.clear();
    plotType.clear();
    realLineStyle = realSymbol = imagLineStyle = imagSymbol = -1;
    realNumbers.clear();
    complexFlag = false;
    firstDouble = 0.0;
    clearFlag = false;
    time = 0.0;
    intValue = 0;
    doubleValue = 0.0;
    stringValue.clear();
    portOrNumber = 0;
    mText.clear();
    mConsumed = 0;
    mWord.clear();
    mReturnValues.clear();
    // the base directory belongs to the reader of a command file and survives clear()
}

bool wxWaveExplorerCommand::parseCommandString(std::string_view text, const cVxLogger& logger)
{
    clear();
    cInteractiveParser parser;
    std::string line;
    std::string rest;
    size_t first = text.find_first_not_of(" \t");
    std::string_view start = first == std::string_view::npos ? std::string_view() : text.substr(first);
    if (start.size() >= 26 && vxString::to_lower(start.substr(0, 26)) == "show_string_in_text_editor") {
        // Counted bytes may hold line ends: this one reads past the first line.
        line.assign(text);
        parser.parseCmdAndLengthAndString(line, rest);
        mConsumed = parser.consumed();
    } else {
        size_t end = text.find_first_of("\r\n");
        line.assign(text.substr(0, end));
        parser.parse(line);
        mConsumed = end == std::string_view::npos ? text.size() : text.find_first_not_of(" \t\r\n", end);
        if (mConsumed == std::string_view::npos)
            mConsumed = text.size();
        line = vxString::trim(line);
    }
    mText = line;
    if (parser.size() == 0)
        return false;
    parser.getAsString(0, mWord, true);
    if (!mWord.empty() && mWord.front() == '#') {
        actionType = cmd_comment;
        return true;
    }
    if (mWord == "set_option" || mWord == "set_string_option" || mWord == "set_gui_option")
        return parseOption(parser, mWord == "set_gui_option", logger);
    int type = cCommandTable::findCommand(mWord);
    if (type == cmd_no_command)
        return false;
    actionType = type;
    return parseArguments(parser, type, logger);
}

bool wxWaveExplorerCommand::checkCommandIsCritical() const
{
    // These wait for files and plots to settle, so they queue behind running work.
    static const std::unordered_set<int> critical = {
        cmd_execute_command_file, cmd_register_command_file, cmd_unregister_command_file,
        cmd_start_interactive_socket, cmd_shut_down_interactive_socket, cmd_save_session_file,
        cmd_restore_session_file, cmd_save_curve_style_file, cmd_restore_curve_style_file, cmd_open_file,
        cmd_close_all, cmd_close_section, cmd_close_file, cmd_close, cmd_activate_measurements,
        cmd_activate_statistics, cmd_reload_file, cmd_add_section, cmd_add_curve, cmd_add_points, cmd_delete_tab,
        cmd_close_plot, cmd_add_curve_to_plot, cmd_add_curve_to_plot_by_name, cmd_add_voltage_on_spice_node_to_plot,
        cmd_add_current_through_spice_device_to_plot, cmd_add_voltages_in_spice_instance_to_plot,
        cmd_add_currents_in_spice_instance_to_plot, cmd_add_curve_to_plot_by_index,
        cmd_add_curve_to_plot_by_id_and_index, cmd_add_n_dimensional_curve_to_plot_by_index,
        cmd_remove_curve_from_plot_by_index, cmd_remove_n_dimensional_curve_from_plot_by_index, cmd_zoom,
        cmd_set_cursor, cmd_set_curve_style_by_id_and_index, cmd_set_curve_style_by_name,
        cmd_set_curve_style_by_id_and_name, cmd_set_curve_style_in_plot_by_id_and_index, cmd_set_x_axis_type,
        cmd_set_x_axis_label, cmd_set_y1_axis_label, cmd_set_y2_axis_label, cmd_clear_filters, cmd_set_filter,
        cmd_set_number_filter, cmd_spreadsheet_get_nb_sweep_variable_columns, cmd_spreadsheet_sort_column,
        cmd_spreadsheet_move_column, cmd_show_command_file_in_text_editor, cmd_show_file_in_text_editor,
        cmd_show_string_in_text_editor, cmd_show_text_editor, cmd_show_curves_from_oid_list, cmd_compute_mapping,
        cmd_print_mapping_to_spice_to_file, cmd_get_mapping_spice_top, cmd_get_mapping_curve_top,
        cmd_selection_changed, cmd_highlight_oid, cmd_copy_highlighting_from_schematics, cmd_create_equivalent_nets,
        opt_use_notebook_with_tabs, opt_use_white_background, opt_make_curve_style_changes_global,
        opt_plot_window_button_style, opt_incremental_file_reload, opt_file_can_be_closed_by_user};
    return critical.count(actionType) != 0;
}

std::string wxWaveExplorerCommand::substitutePlotName(const std::string& command, const std::string& plotName)
{
    if (plotName.empty())
        return command;
    wxWaveExplorerCommand parsed;
    cVxLogger scratch;
    if (!parsed.parseCommandString(command, scratch) || parsed.plotName != "*")
        return command;
    std::string result = command;
    size_t quoted = result.find("\"*\"");
    if (quoted != std::string::npos)
        return result.replace(quoted, 3, "\"" + plotName + "\"");
    size_t bare = result.find('*');
    if (bare != std::string::npos)
        result.replace(bare, 1, "\"" + plotName + "\"");
    return result;
}

std::string wxWaveExplorerCommand::computeAbsoluteFileName(const std::string& name) const
{
    cVxFilePath path(name);
    if (path.isAbsolutePath()) {
        if (path.exists())
            return path.name();
        if (path.resolveWildcardCharacters())
            return path.name();
        return name;
    }
    if (!mBaseDirectory.empty()) {
        cVxFilePath joined(mBaseDirectory, name);
        if (joined.exists())
            return joined.name();
    }
    return name;
}

std::string wxWaveExplorerCommand::computeAbsoluteFileNameMightNotExist(const std::string& name) const
{
    cVxFilePath path(name);
    if (path.isAbsolutePath() || mBaseDirectory.empty() || (!name.empty() && name.front() == '~'))
        return path.name().empty() ? name : path.name();
    return cVxFilePath(mBaseDirectory, name).name();
}

}  // namespace vx3
