#include <gtest/gtest.h>

#include "app/core/cCommandTable.h"
#include "app/core/cInteractiveParser.h"
#include "app/core/wxWaveExplorerCommand.h"
#include "base/cVxLogger.h"

using namespace vx3;

namespace {
std::vector<std::string> tokens(const std::string& text)
{
    cInteractiveParser parser;
    parser.parse(text);
    return parser.tokens();
}
}  // namespace

TEST(cInteractiveParser, TokenRules)
{
    using V = std::vector<std::string>;
    EXPECT_EQ(tokens("  open_file\t\"a b.csv\"  x"), (V{"open_file", "a b.csv", "x"}));
    EXPECT_EQ(tokens("ab\"c d\"e"), (V{"ab\"c d\"e"})) << "quotes inside a token stay";
    EXPECT_EQ(tokens("ab\"c"), (V{"ab\"c"}));
    EXPECT_EQ(tokens("\"never closed x y"), (V{"\"never closed x y"})) << "an open quote reaches the line end";
    EXPECT_EQ(tokens("say \\\"hi\\\""), (V{"say", "\"hi\""})) << "escaped quotes are literal and not trimmed";
    EXPECT_EQ(tokens("a\\ b"), (V{"a\\", "b"}));
    EXPECT_EQ(tokens("end\\"), (V{"end\\"}));
    EXPECT_EQ(tokens("\"\""), (V{""}));
    EXPECT_EQ(tokens("one \"two\nthree\" four"), (V{"one", "\"two"})) << "a line end ends the command in any state";
    EXPECT_TRUE(tokens(" \t \n a").empty());
}

TEST(cInteractiveParser, FirstLineAndRemainder)
{
    cInteractiveParser parser;
    std::string command = "  add_section s1  \r\n\n  get_number_of_sections\nhelp  ";
    std::string rest;
    parser.parse(command, rest);
    EXPECT_EQ(command, "add_section s1");
    EXPECT_EQ(rest, "get_number_of_sections\nhelp");

    command = "show_string_in_text_editor 5 a b c txt\nnext";
    parser.parseCmdAndLengthAndString(command, rest);
    EXPECT_EQ(parser.tokens(), (std::vector<std::string>{"show_string_in_text_editor", "5", "a b c", "txt"}));
    EXPECT_EQ(rest, "next");
    command = "show_string_in_text_editor 7 a\nb c\nd txt";
    parser.parseCmdAndLengthAndString(command, rest);
    EXPECT_EQ(parser.tokens()[2], "a\nb c\nd") << "the counted bytes keep their line ends";
    EXPECT_EQ(parser.tokens()[3], "txt");
}

TEST(wxWaveExplorerCommand, WordsAreCaseFreeArgumentsAreNot)
{
    cVxLogger logger;
    wxWaveExplorerCommand command;
    const std::string text = "OPEN_FILE \"A b.csv\"\n\n  get_status";
    ASSERT_TRUE(command.parseCommandString(text, logger));
    EXPECT_EQ(command.actionType, waveExplorerAction::cmd_open_file);
    EXPECT_EQ(command.getStringArgument(0), "A b.csv");
    EXPECT_EQ(text.substr(command.consumed()), "get_status");
    EXPECT_TRUE(command.checkCommandIsCritical());

    ASSERT_TRUE(command.parseCommandString("# get_status", logger));
    EXPECT_EQ(command.actionType, waveExplorerAction::cmd_comment);
    EXPECT_FALSE(command.parseCommandString("no_such_word 1", logger));
    EXPECT_FALSE(command.parseCommandString("   ", logger));

    ASSERT_TRUE(command.parseCommandString("add_curve s c 0", logger)) << "parser-only words are understood";
    std::string name, tip;
    EXPECT_FALSE(cCommandTable::getCmdAndCallTip(command.actionType, name, tip)) << "and have no help row";
}

TEST(cCommandTable, NumbersNamesAndHelp)
{
    using namespace waveExplorerAction;
    std::string name, tip, text;
    EXPECT_EQ(cCommandTable::findCommand("help"), 395);
    ASSERT_TRUE(cCommandTable::getCmdAndCallTip(cmd_get_curve_name, name, tip));
    EXPECT_EQ(name, "get_curve_name");
    EXPECT_EQ(tip, "<section name> <curve index>");
    for (int gap : {420, 443, 472, 485, 561})
        EXPECT_FALSE(cCommandTable::getCmdAndCallTip(gap, name, tip)) << gap;
    // Two words are listed by help under a neighbour's name.
    ASSERT_TRUE(cCommandTable::getCmdAndCallTip(cmd_spreadsheet_move_column, name, tip));
    EXPECT_EQ(name, "spreadsheet_sort_column");
    EXPECT_EQ(cCommandTable::findCommand("spreadsheet_move_column"), cmd_spreadsheet_move_column);
    ASSERT_TRUE(cCommandTable::getCmdDescription(cmd_wait, text));
    EXPECT_NE(text.find("<time_in_seconds>"), std::string::npos);
    EXPECT_FALSE(cCommandTable::getCmdDescription(cmd_get_curve_name, text));

    // Every word with a help row finds its own number back.
    int rows = 0;
    for (int type = cCommandTable::firstCommand(); type < cCommandTable::endOfCommands(); ++type) {
        if (!cCommandTable::getCmdAndCallTip(type, name, tip))
            continue;
        ++rows;
        if (type != cmd_spreadsheet_move_column && type != cmd_show_status_bar_progress) {
            EXPECT_EQ(cCommandTable::findCommand(name), type) << name;
        }
    }
    EXPECT_EQ(rows, 234);
}
