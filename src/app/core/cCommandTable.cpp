#include "cCommandTable.h"

#include <string>
#include <unordered_map>

namespace vx3 {

namespace {

struct cRow {
    const char* word;      // what the parser reads; empty for a number without a word
    const char* helpName;  // what help shows; empty for words without help
    const char* tip;
    const char* form;
};

const cRow kRows[] = {
#define ZW_COMMAND(word, tip, form) {#word, #word, tip, form},
#define ZW_COMMAND_AS(word, helpName, tip, form) {#word, #helpName, tip, form},
#define ZW_GAP(number) {"", "", "", ""},
#define ZW_PARSER_WORD(word) {#word, "", "", "*"},
#include "commandTable.inc"
#undef ZW_COMMAND
#undef ZW_COMMAND_AS
#undef ZW_GAP
#undef ZW_PARSER_WORD
};

struct cDescription {
    const char* word;  // "set_option__key" stands for "set_option key"
    const char* text;
};

const cDescription kDescriptions[] = {
#define ZW_DESCRIPTION(word, text) {#word, text},
#include "commandDescriptions.inc"
#undef ZW_DESCRIPTION
};

constexpr int kRowCount = static_cast<int>(sizeof(kRows) / sizeof(kRows[0]));

const std::unordered_map<std::string_view, int>& wordIndex()
{
    static const std::unordered_map<std::string_view, int> index = [] {
        std::unordered_map<std::string_view, int> map;
        map.reserve(kRowCount * 2);
        for (int i = 0; i < kRowCount; ++i)
            if (*kRows[i].word)
                map.emplace(kRows[i].word, cCommandTable::firstCommand() + i);  // first match wins
        return map;
    }();
    return index;
}


struct cOption {
    const char* key;
    int number;
    const char* tip;
    const char* form;
    int handler;
};

const cOption kOptions[] = {
#define ZW_OPTION(key, tip, form, handler) {#key, waveExplorerAction::opt_##key, tip, form, handler},
#define ZW_OPTION_ALSO(key, form, handler) {#key, waveExplorerAction::opt_##key, "", form, handler},
#include "optionTable.inc"
#undef ZW_OPTION
#undef ZW_OPTION_ALSO
    // Keys that the window handler reads under the number of another spelling.
    {"use_curve_names_for_internal_dnd", waveExplorerAction::opt_use_curve_names_form_internal_dnd, "", "B", 3},
    {"set_legend_position", waveExplorerAction::opt_legend_position, "", "S", 3},
    {"enable_status_bar", waveExplorerAction::opt_enable_status_bar, "", "B", 3},
    {"tool_bar_style", waveExplorerAction::opt_tool_bar_style, "", "S", 3},
    {"use_notebook_with_tabs", waveExplorerAction::opt_use_notebook_with_tabs, "", "B", 3},
    {"side_bar_style", waveExplorerAction::opt_side_bar_style, "", "S", 3},
    {"legend_position", waveExplorerAction::opt_legend_position, "", "S", 3},
};

const cOption* findOptionRow(std::string_view key, int handler)
{
    static const auto index = [] {
        std::unordered_map<std::string, const cOption*> map;
        for (const auto& option : kOptions)
            map.emplace(std::to_string(option.handler) + ":" + option.key, &option);
        return map;
    }();
    auto found = index.find(std::to_string(handler) + ":" + std::string(key));
    return found == index.end() ? nullptr : found->second;
}

const cOption* findOptionRow(int number, int handler)
{
    for (const auto& option : kOptions)
        if (option.number == number && (handler == 0 || option.handler == handler))
            return &option;
    return nullptr;
}

}  // namespace

int cCommandTable::findOption(std::string_view key, int handler)
{
    const cOption* option = findOptionRow(key, handler);
    return option ? option->number : waveExplorerAction::cmd_no_command;
}

const char* cCommandTable::getOptionForm(int actType, int handler)
{
    const cOption* option = findOptionRow(actType, handler);
    return option ? option->form : nullptr;
}

std::string cCommandTable::getOptionKey(int actType)
{
    const cOption* option = findOptionRow(actType, 0);
    return option ? option->key : std::string();
}

int cCommandTable::findCommand(std::string_view word)
{
    const auto& index = wordIndex();
    auto found = index.find(word);
    return found == index.end() ? waveExplorerAction::cmd_no_command : found->second;
}

bool cCommandTable::getCmdAndCallTip(int actType, std::string& name, std::string& tip)
{
    if (checkIsOption(actType)) {
        const cOption* option = findOptionRow(actType, 0);
        name = option && option->handler == 1 ? std::string("set_option ") + option->key : std::string();
        tip = option && option->handler == 1 ? option->tip : "";
        return !name.empty();
    }
    int row = actType - firstCommand();
    if (row < 0 || row >= kRowCount) {
        name.clear();
        tip.clear();
        return false;
    }
    name = kRows[row].helpName;
    tip = kRows[row].tip;
    return !name.empty();
}

const char* cCommandTable::getArgumentForm(int actType)
{
    int row = actType - firstCommand();
    if (row < 0 || row >= kRowCount || !*kRows[row].word)
        return nullptr;
    return kRows[row].form;
}

bool cCommandTable::getCmdDescription(int actType, std::string& text)
{
    std::string name, tip;
    text.clear();
    if (!getCmdAndCallTip(actType, name, tip))
        return false;
    if (checkIsOption(actType))
        name = "set_option__" + name.substr(11);
    else if (name != kRows[actType - firstCommand()].word)
        return false;  // a word listed under another name has no description of its own
    for (const auto& description : kDescriptions) {
        if (name == description.word) {
            text = description.text;
            return true;
        }
    }
    return false;
}

}  // namespace vx3

namespace vx3 {
// The numbers are part of the language: words without a number keep their place.
static_assert(waveExplorerAction::cmd_help == 395);
static_assert(waveExplorerAction::cmd_gap_420 == 420 && waveExplorerAction::cmd_gap_561 == 561);
static_assert(waveExplorerAction::cmd_end_of_commands <= waveExplorerAction::cmd_first_option);
}  // namespace vx3

namespace vx3 {
static_assert(waveExplorerAction::opt_end_of_options == waveExplorerAction::cmd_last_option + 1,
              "the option keys fill the numbers 640 to 746");
}  // namespace vx3
