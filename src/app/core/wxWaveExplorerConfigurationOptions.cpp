// The option store of the configuration: every key of set_option with its default.
#include "base/cVxLogger.h"
#include "wxWaveExplorerCommand.h"
#include "wxWaveExplorerConfiguration.h"

#include <algorithm>
#include <cmath>

#include "cCommandTable.h"
#include "cDataBaseSerializer.h"

namespace vx3 {
namespace waveExplorerConfiguration {

namespace {
// Defaults, written as the command text that would set them. The topics that use an option own the
// meaning of its value; these are the values they start from.
const char* const kDefaults[] = {
    "set_option enable_status_bar 1",
    "set_option tool_bar_style permanent",
    "set_option side_bar_style permanent_left",
    "set_option use_notebook_with_tabs 1",
    "set_option use_curve_names_form_internal_dnd 0",
    "set_option legend_position top",
    "set_option browser_colorize_curves text",
    "set_option toolbar_button_style classic",
    "set_option text_highlight_background_color 0xffff80",
    "set_option default_background_color 0x000000",
    "set_option show_menu_bar 1",
    "set_option tooltip_background_color 0xffffe0",
    "set_option tooltip_text_color 0x000000",
    "set_option zoom_box_color 0x808080",
    "set_option use_white_background 0",
    "set_option default_curve_point_style automatic",
    "set_option enable_text_editor 1",
    "set_option show_view_port_buttons 1",
    "set_option show_new_plot_page_button 1",
    "set_option show_change_shown_page_button 1",
    "set_option show_split_page_buttons 1",
    "set_option enable_browser_configuration 1",
    "set_option show_execute_command_file_button 1",
    "set_option show_exit_button 1",
    "set_option show_digital_plot_button 1",
    "set_option show_detach_button 1",
    "set_option show_attach_button 1",
    "set_option show_browser_header 1",
    "set_option cursor_snap_to_grid 0",
    "set_option fft_parameter_inverse 0",
    "set_option fft_parameter_normalize 0",
    "set_option fft_parameter_normalize_inverse 1",
    "set_option fft_parameter_extract_frequency_from_data 0",
    "set_option fft_parameter_extract_interval_from_cursors 0",
    "set_option fft_parameter_generate_resampled_curves 0",
    "set_option eye_diagram_restrict_to_interval 0",
    "set_option draw_delta_labels 1",
    "set_option use_graph_instead_of_plot 0",
    "set_option fft_parameter_nb_time_samples 1024",
    "set_option fft_parameter_oversampling_factor 1",
    "set_option fft_parameter_interval 0 0",
    "set_option fft_parameter_sampling_frequency 0",
    "set_option fft_parameter_fundamental_frequency 0",
    "set_option complex_curve_representation magnitude",
    "set_option eye_diagram_bit_rate 5e9",
    "set_option eye_diagram_interval_start nan",
    "set_option eye_diagram_interval_end nan",
    "set_option eye_diagram_trigger_mode 0",
    "set_option eye_diagram_number_of_intervals 2",
    "set_option eye_diagram_low_level 40",
    "set_option eye_diagram_high_level 60",
    "set_option eye_diagram_rise_time_low_level 20",
    "set_option eye_diagram_rise_time_high_level 80",
    "set_option eye_diagram_rising_edge_trigger_level 50",
    "set_option eye_diagram_falling_edge_trigger_level 50",
    "set_option eye_diagram_show_curve_density 1",
    "set_option eye_diagram_show_unfolded 1",
    "set_option eye_diagram_show_vertical_cut 0",
    "set_option eye_diagram_show_horizontal_cut 0",
    "set_option eye_diagram_auto_zoom_unfolded 1",
    "set_option export_interpolate 0",
    "set_option export_interpolate_dnd 0",
    "set_option use_gtk_file_dialog 0",
    "set_option schematic_mapping_case_sensitive 0",
    "set_option time_zone UTC",
    "set_option utc_offset 0",
    "set_option data_reduction_tolerance 0.001",
    "set_option data_reduction_max_x_step 0",
    "set_option auto_connect_plots 1",
    "set_option make_curve_style_changes_global \"\" 0",
    "set_option plot_window_button_style \"\" top_left",
    "set_option export_file_name \"\"",
    "set_option export_as_image_directory_name \"\"",
    "set_option incremental_file_reload \"\" 0",
    "set_option file_can_be_closed_by_user \"\" 1",
    "set_option schematic_mapping_top_spice \"\"",
    "set_option schematic_mapping_top_curve \"\"",
    "set_option schematic_mapping_separator_spice .",
    "set_option schematic_mapping_separator_curve .",
    "set_option minimum_analog_plot_height 60",
    "set_option minimum_analog_plot_width 100",
    "set_option convolution_parameter_sampling_frequency 1e9",
    "set_option convolution_parameter_periodic 0",
    "set_option spreadsheet_accept_several_sweep_variables 0",
    "set_option spreadsheet_split_complex_curves 0",
    "set_option spreadsheet_interpolate_missing_values 1",
    "set_option spreadsheet_expand_by_default 1",
    "set_option spreadsheet_invert_rows_and_columns 0",
    "set_option spreadsheet_repeat_values 0",
    "set_option check_x_axis_unit 1",
    "set_option measurements_invert_grid 0",
    "set_option statistics_invert_grid 0",
    "set_option measurements_eye_diagram_invert_grid 0",
    "set_option parser_generate_sweep_matrices 1",
    "set_option parser_convert_to_float 0",
    "set_option export_only_interval 0",
    "set_option export_only_highlighted 0",
    "set_option export_only_selected 0",
    "set_option export_only_visible 0",
    "set_option export_invert_row_cols 0",
    "set_option export_file_format csv",
    "set_option export_separator ,",
    "set_option export_text_delimiter \\\"",
    "set_option export_precision 15",
    "set_option export_error 0",
    "set_gui_option unzoom_when_curve_is_added 1",
    "set_gui_option browser_use_full_hierarchical_names 0",
};

cOptionValue valueOfCommand(const wxWaveExplorerCommand& command)
{
    cOptionValue value;
    for (size_t i = 0; i < command.getNumberOfStringArguments(); ++i)
        value.strings.push_back(command.getStringArgument(i));
    value.numbers = command.doubleArgs();
    for (size_t i = 0; i < command.getNumberOfIntArguments(); ++i)
        value.integers.push_back(command.getIntArgument(i));
    if (!command.plotName.empty())
        value.strings.insert(value.strings.begin(), command.plotName);
    return value;
}

// The defaults as values by key, read once from the command texts above.
const std::map<std::string, cOptionValue>& defaultOptions()
{
    static const std::map<std::string, cOptionValue> defaults = [] {
        std::map<std::string, cOptionValue> map;
        cVxLogger quiet;
        wxWaveExplorerCommand command;
        for (const char* text : kDefaults) {
            if (!command.parseCommandString(text, quiet))
                continue;
            const std::string key = cCommandTable::getOptionKey(command.actionType);
            if (key.empty())
                continue;
            map[key] = valueOfCommand(command);
        }
        for (const cDialogOnlyOption& option : getDialogOnlyOptions())
            map[option.key].numbers = {option.defaultValue};
        return map;
    }();
    return defaults;
}

bool checkIsKnownOptionKey(const std::string& key)
{
    if (findDialogOnlyOption(key))
        return true;
    for (int handler = 1; handler <= 3; ++handler)
        if (cCommandTable::findOption(key, handler) != waveExplorerAction::cmd_no_command)
            return true;
    return false;
}

bool startsWith(const std::string& text, const char* prefix) { return text.rfind(prefix, 0) == 0; }
}  // namespace

const std::vector<cDialogOnlyOption>& getDialogOnlyOptions()
{
    static const std::vector<cDialogOnlyOption> options = {
        {"default_curve_line_width", 1.0, 1.0, 5.0, false},
        {"strong_colours", 0.0, 0.0, 1.0, true},
    };
    return options;
}

const cDialogOnlyOption* findDialogOnlyOption(const std::string& key)
{
    for (const cDialogOnlyOption& option : getDialogOnlyOptions())
        if (key == option.key)
            return &option;
    return nullptr;
}

topic_type cConfigData::getOptionTopic(const std::string& key)
{
    for (const char* prefix : {"fft_parameter_", "eye_diagram_", "convolution_parameter_", "data_reduction_",
                               "data_smoothing_", "time_shift_", "complex_curve_representation"})
        if (startsWith(key, prefix))
            return topic_post_process;
    if (startsWith(key, "browser_") || key == "show_browser_header" || key == "enable_browser_configuration")
        return topic_browser;
    return topic_main;
}

void cConfigData::setDefaultOptions(topic_type topic)
{
    std::erase_if(mOptions, [topic](const auto& entry) { return getOptionTopic(entry.first) == topic; });
    for (const auto& [key, value] : defaultOptions())
        if (getOptionTopic(key) == topic)
            mOptions[key] = value;
}

bool cConfigData::setOption(const wxWaveExplorerCommand& command)
{
    const std::string key = cCommandTable::getOptionKey(command.actionType);
    if (key.empty())
        return false;
    return setOptionValue(key, valueOfCommand(command));
}

bool cConfigData::setOptionValue(const std::string& key, const cOptionValue& value)
{
    auto found = mOptions.find(key);
    if (found != mOptions.end() && found->second == value)
        return false;
    bool wasWhite = getFlagUseWhiteBackground();
    mOptions[key] = value;
    if (key == "use_white_background" && getFlagUseWhiteBackground() != wasWhite)
        invertColours();
    if (key == "zoom_box_color" && !value.integers.empty())
        setColour(colour_zoom_box, static_cast<uint32_t>(value.integers.front()) & 0xffffffu);
    markChanged(key);
    return true;
}

void cConfigData::resetOptionToDefault(const std::string& key)
{
    const auto& defaults = defaultOptions();
    auto found = defaults.find(key);
    if (found != defaults.end())
        setOptionValue(key, found->second);
    else if (mOptions.erase(key))
        markChanged(key);
}

const cOptionValue* cConfigData::getOption(const std::string& key) const
{
    auto found = mOptions.find(key);
    return found == mOptions.end() ? nullptr : &found->second;
}

bool cConfigData::getOptionFlag(const std::string& key, bool defaultValue) const
{
    return getOptionNumber(key, 0, defaultValue ? 1.0 : 0.0) != 0.0;
}

double cConfigData::getOptionNumber(const std::string& key, size_t index, double defaultValue) const
{
    const cOptionValue* value = getOption(key);
    return value && index < value->numbers.size() ? value->numbers[index] : defaultValue;
}

std::string cConfigData::getOptionText(const std::string& key, size_t index) const
{
    const cOptionValue* value = getOption(key);
    return value && index < value->strings.size() ? value->strings[index] : std::string();
}

int64_t cConfigData::getOptionInteger(const std::string& key, size_t index, int64_t defaultValue) const
{
    const cOptionValue* value = getOption(key);
    return value && index < value->integers.size() ? value->integers[index] : defaultValue;
}

// The options of one topic: a count, then key and the three value lists for each. A read adds option by
// option, so that a damaged blob keeps the options before the damage.
void cConfigData::serializeOptions(cDataBaseSerializer& serializer, topic_type topic)
{
    if (serializer.checkIsSerializing()) {
        uint64_t count = 0;
        for (const auto& entry : mOptions)
            count += getOptionTopic(entry.first) == topic;
        serializer.serializedeserialize(count);
        for (auto& [key, value] : mOptions) {
            if (getOptionTopic(key) != topic)
                continue;
            std::string name = key;
            serializer.serializedeserialize(name);
            serializer.serializedeserialize(value.strings);
            serializer.serializedeserialize(value.numbers);
            serializer.serializedeserialize(value.integers);
        }
        return;
    }
    uint64_t count = 0;
    serializer.serializedeserialize(count);
    for (uint64_t i = 0; i < count; ++i) {
        std::string key;
        cOptionValue value;
        serializer.serializedeserialize(key);
        serializer.serializedeserialize(value.strings);
        serializer.serializedeserialize(value.numbers);
        serializer.serializedeserialize(value.integers);
        // Options that this version does not know, or that belong to another topic, are left out.
        if (checkIsKnownOptionKey(key) && getOptionTopic(key) == topic)
            mOptions[key] = std::move(value);
    }
}

}  // namespace waveExplorerConfiguration
}  // namespace vx3
