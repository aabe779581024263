// The one table of command words: numbers, call tips, long descriptions and the word lookup
// are all derived from commandTable.inc.
#pragma once

#include <string>
#include <string_view>

namespace vx3 {

namespace waveExplorerAction {
enum act_type : int {
    cmd_no_command = 393,
    cmd_comment = 394,
#define ZW_COMMAND(word, tip, form) cmd_##word,
#define ZW_COMMAND_AS(word, helpName, tip, form) cmd_##word,
#define ZW_GAP(number) cmd_gap_##number,
#define ZW_PARSER_WORD(word) cmd_##word,
#include "commandTable.inc"
#undef ZW_COMMAND
#undef ZW_COMMAND_AS
#undef ZW_GAP
#undef ZW_PARSER_WORD
    cmd_end_of_commands,
    cmd_first_option = 640,
    opt_before_first = cmd_first_option - 1,
#define ZW_OPTION(key, tip, form, handler) opt_##key,
#define ZW_OPTION_ALSO(key, form, handler)
#include "optionTable.inc"
#undef ZW_OPTION
#undef ZW_OPTION_ALSO
    opt_end_of_options,
    cmd_last_option = 746,
    cmd_understood_without_action = cmd_gap_420
};
}  // namespace waveExplorerAction

class cCommandTable {
public:
    // Number of a command word (lower case), or cmd_no_command.
    static int findCommand(std::string_view word);
    // Empty strings for numbers without a word.
    static bool getCmdAndCallTip(int actType, std::string& name, std::string& tip);
    static bool getCmdDescription(int actType, std::string& text);
    // How the parser reads the arguments (see commandTable.inc); null for numbers without a word.
    static const char* getArgumentForm(int actType);
    // The number of an option key for one of the three option handlers (1 any option, 2 fixed keys,
    // 3 window options), or cmd_no_command. Keys are lower case.
    static int findOption(std::string_view key, int handler);
    // The argument form of an option as the given handler reads it.
    static const char* getOptionForm(int actType, int handler);
    static bool checkIsOption(int actType) { return actType >= waveExplorerAction::cmd_first_option &&
                                                    actType < waveExplorerAction::opt_end_of_options; }
    // "key" of an option number.
    static std::string getOptionKey(int actType);
    static int firstCommand() { return waveExplorerAction::cmd_comment + 1; }
    static int endOfCommands() { return waveExplorerAction::cmd_end_of_commands; }
};

}  // namespace vx3
