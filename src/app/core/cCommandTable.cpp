#include "cCommandTable.h"

#include <unordered_map>

namespace vx3 {

namespace {

struct cRow {
    const char* word;      // what the parser reads; empty for a number without a word
    const char* helpName;  // what help shows; empty for words without help
    const char* tip;
};

const cRow kRows[] = {
#define ZW_COMMAND(word, tip) {#word, #word, tip},
#define ZW_COMMAND_AS(word, helpName, tip) {#word, #helpName, tip},
#define ZW_GAP(number) {"", "", ""},
#define ZW_PARSER_WORD(word) {#word, "", ""},
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

}  // namespace

int cCommandTable::findCommand(std::string_view word)
{
    const auto& index = wordIndex();
    auto found = index.find(word);
    return found == index.end() ? waveExplorerAction::cmd_no_command : found->second;
}

bool cCommandTable::getCmdAndCallTip(int actType, std::string& name, std::string& tip)
{
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

bool cCommandTable::getCmdDescription(int actType, std::string& text)
{
    std::string name, tip;
    text.clear();
    if (!getCmdAndCallTip(actType, name, tip))
        return false;
    if (name != kRows[actType - firstCommand()].word)
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
