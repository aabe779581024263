// The command language without a window: the table walk, typed arguments, options and help.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "../base/testSupport.h"

#include "app/core/cCommandTable.h"
#include "app/core/wxWaveExplorerCommand.h"
#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/cVxLogger.h"
#include "base/cVxString.h"

using namespace vx3;
using namespace vx3::waveExplorerAction;

namespace {

// Parses one line and returns what the logger heard.
struct cParsed {
    bool ok = false;
    wxWaveExplorerCommand command;
    std::string log;
};

cParsed parse(const std::string& text)
{
    cParsed result;
    cVxStringLogger sink;
    cVxLogger logger;
    logger.setLoggerCallBack(&sink);
    result.ok = result.command.parseCommandString(text, logger);
    result.log = sink.getBufferAsString();
    return result;
}

// A token that the reader of the given kind accepts.
std::string sampleToken(char kind)
{
    switch (kind) {
    case 'B': return "1";
    case 'I':
    case 'X': return "3";
    case 'D':
    case '%': return "2.5";
    case 'C': return "#ff8000";
    case 'A': return "[0,1]";
    case 'L': return "dashed_line";
    case 'Y': return "circles";
    default: return "\"a b\"";
    }
}

std::string sampleArguments(const std::string& form)
{
    std::string text;
    for (char kind : form)
        if (kind != '[' && kind != ']' && kind != '*')
            text += " " + sampleToken(kind);
    return text;
}

}  // namespace

TEST(commandLanguage, EveryWordOfTheTableParsesWithItsArguments)
{
    std::string name, tip;
    int words = 0;
    for (int type = cCommandTable::firstCommand(); type < cCommandTable::endOfCommands(); ++type) {
        const char* form = cCommandTable::getArgumentForm(type);
        if (!form)
            continue;
        cCommandTable::getCmdAndCallTip(type, name, tip);
        // The parser's word, which differs from the help name for two rows.
        std::string word = type == cmd_spreadsheet_move_column      ? "spreadsheet_move_column"
                           : type == cmd_show_status_bar_progress   ? "show_status_bar_progress"
                           : name.empty() ? std::string() : name;
        if (word.empty())
            continue;
        ++words;
        std::string line = word + (type == cmd_wait ? " 1.5" : type == cmd_add_plot ? " p analog" : sampleArguments(form));
        cParsed full = parse(line);
        EXPECT_TRUE(full.ok) << line << "\n" << full.log;
        EXPECT_EQ(full.command.actionType, type) << line;
        // Upper case words are the same words.
        EXPECT_TRUE(parse(vxString::to_upper(word) + line.substr(word.size())).ok) << line;
        // Without its first required argument a command fails with the 1st-argument warning.
        std::string required = form;
        if (!required.empty() && required[0] != '[' && required != "*" && type != cmd_wait && type != cmd_add_plot) {
            cParsed missing = parse(word);
            EXPECT_FALSE(missing.ok) << word;
            EXPECT_NE(missing.log.find("Interactive Mode: bad 1st argument."), std::string::npos) << word;
        }
    }
    EXPECT_EQ(words, 234);
    for (const char* word : {"add_curve", "add_points", "use_as_drop_proxy"})
        EXPECT_NE(cCommandTable::findCommand(word), cmd_no_command) << word;
}

TEST(commandLanguage, TypedArgumentsAndTheirWarnings)
{
    cParsed curve = parse("get_curve_name \"my section\" 7");
    ASSERT_TRUE(curve.ok);
    EXPECT_EQ(curve.command.getStringArgument(0), "my section");
    EXPECT_EQ(curve.command.getDoubleArg(0, -1), 7.0);

    cParsed bad = parse("get_curve_name s x");
    EXPECT_FALSE(bad.ok);
    EXPECT_NE(bad.log.find(" - W - "), std::string::npos);
    EXPECT_NE(bad.log.find("Interactive Mode: bad 2nd argument."), std::string::npos) << bad.log;

    cParsed filter = parse("set_filter p c");
    EXPECT_FALSE(filter.ok);
    EXPECT_NE(filter.log.find("Interactive Mode: bad 3nd argument."), std::string::npos) << filter.log;

    cParsed wait = parse("wait -1");
    EXPECT_FALSE(wait.ok);
    EXPECT_NE(wait.log.find(" - E - "), std::string::npos);
    EXPECT_NE(wait.log.find("Interactive Command \"wait -1\" : bad 1st argument."), std::string::npos) << wait.log;
    EXPECT_FALSE(parse("wait soon").ok);
    cParsed zero = parse("wait 0");
    EXPECT_TRUE(zero.ok);
    EXPECT_EQ(zero.command.time, 0.0);

    // Flags take exactly these words; numbers are whole tokens without units.
    EXPECT_TRUE(parse("activate_measurements yes").ok);
    EXPECT_FALSE(parse("activate_measurements YES").ok);
    EXPECT_FALSE(parse("activate_measurements 2").ok);
    EXPECT_FALSE(parse("set_cursor p 1ns").ok);
    EXPECT_TRUE(parse("set_cursor p 1e-9 M1").ok);
    EXPECT_TRUE(parse("set_cursor p -2.5e-3").ok) << "the optional cursor name may be left out";

    // Colours: decimal, 0x, a colour name, #rrggbb; arrays; symbols and line styles by word or number.
    cParsed colour = parse("highlight_oid o 0xff0000 0 1");
    ASSERT_TRUE(colour.ok) << colour.log;
    EXPECT_EQ(colour.command.getIntArgument(0), 0xff0000);
    EXPECT_EQ(parse("highlight_oid o \"black blue\" 0 1").command.getIntArgument(0), 0x040720);
    EXPECT_EQ(parse("highlight_oid o #00ff00 0 1").command.getIntArgument(0), 0x00ff00);
    EXPECT_FALSE(parse("highlight_oid o nocolour 0 1").ok);
    cParsed sweep = parse("add_n_dimensional_curve_to_plot_by_index p s 2 [1,0] [3,4] 1");
    ASSERT_TRUE(sweep.ok) << sweep.log;
    EXPECT_EQ(sweep.command.getIntegerVector(0, 6), (std::vector<int64_t>{2, 1, 0, 2, 3, 4}))
        << "each array comes with its length";
    EXPECT_FALSE(parse("add_n_dimensional_curve_to_plot_by_index p s 2 [1,x] [3,4] 1").ok);
    EXPECT_TRUE(parse("set_curve_style_by_name s c dotted_line crosses 2 red").ok);
    EXPECT_TRUE(parse("set_curve_style_by_name s c 8 11 2 0").ok);
    EXPECT_FALSE(parse("set_curve_style_by_name s c 9 1 2 0").ok) << "line styles stop at 8";
    EXPECT_FALSE(parse("set_curve_style_by_name s c 1 12 2 0").ok) << "symbols stop at 11";

    // Colour triples repeat while tokens are left.
    cParsed colorize = parse("colorize_curve_by_name s c 255 0 1 65280 1 2");
    ASSERT_TRUE(colorize.ok) << colorize.log;
    EXPECT_EQ(colorize.command.getNumberOfIntArguments(), 2u);
    EXPECT_EQ(colorize.command.getNumberOfDoubleArgs(), 4u);
    EXPECT_FALSE(parse("colorize_curve_by_name s c 255 0").ok);

    // add_plot: type words are rewritten, flags have defaults.
    cParsed plot = parse("add_plot \"My Plot\" TABLE");
    ASSERT_TRUE(plot.ok);
    EXPECT_EQ(plot.command.plotName, "My Plot");
    EXPECT_EQ(plot.command.plotType, "spreadsheet");
    EXPECT_EQ(plot.command.getDoubleArg(0, -1), 1.0);
    EXPECT_EQ(plot.command.getDoubleArg(1, -1), 0.0);
    EXPECT_EQ(parse("add_plot x synchronized").command.plotType, "analog_synchronized");

    // Relative file names resolve against the directory of the command file being read.
    wxWaveExplorerCommand command;
    command.setBaseDirectory("/tmp/zelwave-base");
    cVxLogger logger;
    ASSERT_TRUE(command.parseCommandString("save_session_file out.ses", logger));
    EXPECT_EQ(command.getStringArgument(0), "/tmp/zelwave-base/out.ses");
    ASSERT_TRUE(command.parseCommandString("save_session_file /abs/out.ses", logger));
    EXPECT_EQ(command.getStringArgument(0), "/abs/out.ses");
}

TEST(commandLanguage, CurveValuesComeAsPairsOrTriples)
{
    cParsed curve = parse("add_curve s v 0 V s 0 1 1e-9 2.5");
    ASSERT_TRUE(curve.ok) << curve.log;
    EXPECT_EQ(curve.command.sectionName, "s");
    EXPECT_EQ(curve.command.curveName, "v");
    EXPECT_FALSE(curve.command.complexFlag);
    EXPECT_EQ(curve.command.unit, "V");
    EXPECT_EQ(curve.command.realNumbers, (std::vector<double>{0, 1, 1e-9, 2.5}));
    cParsed points = parse("add_points s v 2 3 4 5");
    ASSERT_TRUE(points.ok);
    EXPECT_EQ(points.command.realNumbers.size(), 4u);
    cParsed bad = parse("add_points s v 2 x");
    EXPECT_FALSE(bad.ok);
    EXPECT_NE(bad.log.find("Interactive Mode: bad 4th argument."), std::string::npos) << bad.log;
    EXPECT_FALSE(parse("add_curve s v maybe").ok);
}

TEST(commandLanguage, OptionsGoThroughTheThreeHandlers)
{
    cParsed style = parse("set_option TOOLBAR_BUTTON_STYLE plain");
    ASSERT_TRUE(style.ok) << style.log;
    EXPECT_EQ(style.command.actionType, opt_toolbar_button_style);
    EXPECT_EQ(style.command.getStringArgument(0), "plain");

    // The misspelt key works through the first handler, the right one through the window handler.
    EXPECT_EQ(parse("set_option use_curve_names_form_internal_dnd 1").command.actionType,
              opt_use_curve_names_form_internal_dnd);
    EXPECT_EQ(parse("set_option use_curve_names_for_internal_dnd 1").command.actionType,
              opt_use_curve_names_form_internal_dnd);
    EXPECT_EQ(parse("set_gui_option set_legend_position bottom").command.actionType, opt_legend_position);
    EXPECT_EQ(parse("set_option export_precision 12").command.actionType, opt_export_precision);
    EXPECT_EQ(parse("set_option minimum_analog_plot_height 0x40").command.getDoubleArg(0, 0), 64.0);
    EXPECT_EQ(parse("set_option eye_diagram_low_level 30%").command.getDoubleArg(0, 0), 30.0);
    EXPECT_TRUE(parse("set_option make_curve_style_changes_global p 1").ok);

    cParsed unknown = parse("set_option no_such_key 1");
    EXPECT_FALSE(unknown.ok);
    EXPECT_EQ(unknown.log.find("bad 1st argument"), std::string::npos) << "a present key warns nothing";
    cParsed noKey = parse("set_option");
    EXPECT_FALSE(noKey.ok);
    EXPECT_NE(noKey.log.find("Interactive Mode: bad 1st argument."), std::string::npos);
    cParsed badValue = parse("set_option enable_status_bar perhaps");
    EXPECT_FALSE(badValue.ok);
    EXPECT_NE(badValue.log.find("Interactive Mode: bad 2nd argument."), std::string::npos) << badValue.log;

    // Into the configuration: defaults first, a change is seen and flagged.
    wxWaveExplorerConfiguration configuration;
    EXPECT_EQ(configuration.getOptionNumber("fft_parameter_nb_time_samples"), 1024.0);
    EXPECT_EQ(configuration.getOptionText("export_separator"), ",");
    EXPECT_EQ(configuration.getOptionText("export_text_delimiter"), "\"");
    EXPECT_FALSE(configuration.getFlagConfigChanged());
    EXPECT_TRUE(configuration.setOption(parse("set_option fft_parameter_nb_time_samples 4096").command));
    EXPECT_FALSE(configuration.setOption(parse("set_option fft_parameter_nb_time_samples 4096").command));
    EXPECT_EQ(configuration.getOptionNumber("fft_parameter_nb_time_samples"), 4096.0);
    EXPECT_TRUE(configuration.getFlagConfigChanged());
    // Every key has a default.
    for (int type = cmd_first_option; type < opt_end_of_options; ++type)
        EXPECT_NE(configuration.getOption(cCommandTable::getOptionKey(type)), nullptr)
            << cCommandTable::getOptionKey(type);
}

TEST(commandLanguage, CriticalCommands)
{
    EXPECT_TRUE(parse("add_section s").command.checkCommandIsCritical());
    EXPECT_TRUE(parse("zoom p 0 1 0 1 0 1").command.checkCommandIsCritical());
    EXPECT_TRUE(parse("set_option use_white_background 1").command.checkCommandIsCritical());
    EXPECT_FALSE(parse("set_curve_style s c 0 0 1 0 0 0 0 0 1 0 0 0").command.checkCommandIsCritical());
    EXPECT_FALSE(parse("get_number_of_plots").command.checkCommandIsCritical());
    EXPECT_FALSE(parse("get_status").command.checkCommandIsCritical());
}

TEST(commandLanguage, HelpAndItsDocumentation)
{
    std::vector<std::string> all;
    ASSERT_TRUE(wxWaveExplorerCommand::generateHelpStrings(all, ""));
    EXPECT_EQ(all.size(), 234u + 81u) << "every word with a help row and every key of the first option group";
    EXPECT_EQ(all.front(), "help <command>");
    EXPECT_NE(std::find(all.begin(), all.end(), "set_option tool_bar_style <style>"), all.end());
    EXPECT_EQ(std::count(all.begin(), all.end(), "spreadsheet_sort_column <plot name> <column index> <new column position>"), 1);

    std::vector<std::string> one;
    ASSERT_TRUE(wxWaveExplorerCommand::generateHelpStrings(one, "wait"));
    ASSERT_EQ(one.size(), 2u);
    EXPECT_EQ(one[0], "wait <time_in_seconds>");
    EXPECT_EQ(one[1].rfind("This command instructs Zelkora Wave to wait for <time_in_seconds> seconds", 0), 0u);
    EXPECT_FALSE(wxWaveExplorerCommand::generateHelpStrings(one, "spreadsheet_move_column"));
    ASSERT_TRUE(wxWaveExplorerCommand::generateHelpStrings(one, "set_option data_reduction_tolerance"));
    EXPECT_EQ(one.size(), 2u);

    zwtest::cTempDir scratch("zw_app_test_");
    std::string file = scratch.file("zelwave-help.html");
    ASSERT_TRUE(wxWaveExplorerCommand::generateDocumentationFromHelpStrings(file));
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    std::string html = text.str();
    EXPECT_EQ(html.rfind("<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.0 Transitional//EN\">\n<html>\n<head>\n</head>\n<body>\n", 0), 0u);
    size_t paragraphs = 0;
    for (size_t at = html.find("<p>"); at != std::string::npos; at = html.find("<p>", at + 1))
        ++paragraphs;
    EXPECT_EQ(paragraphs, all.size());
    EXPECT_NE(html.find("<p><b>wait</b> &lt;time_in_seconds&gt;<br>Description: This command instructs"), std::string::npos);
    // An independent HTML parser accepts it.
    ASSERT_EQ(std::system("command -v xmllint >/dev/null 2>&1"), 0)
        << "this check needs xmllint (Debian package libxml2-utils, installed by scripts/install-deps)";
    std::string check = "xmllint --html --noout " + file + " 2>&1";
    FILE* pipe = popen(check.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    char buffer[512];
    std::string complaints;
    while (fgets(buffer, sizeof(buffer), pipe))
        complaints += buffer;
    EXPECT_EQ(pclose(pipe), 0) << complaints;
    EXPECT_EQ(complaints, "");
}

TEST(commandLanguage, BadInputNeverCrashes)
{
    EXPECT_FALSE(parse("no_such_word").ok);
    EXPECT_TRUE(parse("open_file \"unbalanced name").ok) << "an open quote reaches the line end";
    EXPECT_EQ(parse("open_file \"unbalanced name").command.getStringArgument(0), "\"unbalanced name");
    std::string huge = "add_section " + std::string(1 << 20, 'x');
    cParsed big = parse(huge);
    EXPECT_TRUE(big.ok);
    EXPECT_EQ(big.command.getStringArgument(0).size(), 1u << 20);
    // A command word followed by binary bytes: a word that takes no arguments gets one it can't use.
    std::string binary("get_status\0\x01\xff", 13);
    cParsed garbage = parse(binary);
    EXPECT_FALSE(garbage.ok) << garbage.log;
    EXPECT_FALSE(parse(std::string(1 << 20, ' ')).ok);
    EXPECT_TRUE(parse("# get_status").ok);
}
