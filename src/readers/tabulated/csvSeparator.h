// Separator types of the table readers, as the import dialog lists them and as a file entry
// remembers them for reloads (property kind 40).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vx3::csvSeparator {

enum SepT : unsigned {
    automatic = 0,
    comma = 1,
    tab = 2,
    space = 3,
    multiple_space = 4,
    semicolon = 5,
    colon = 6,
    tab_or_space = 7,
    tab_or_multiple_space = 8,
    other = 9,
    tab_space_or_comma = 10,
    tab_space_or_comma_11 = 11,
};

inline const char* getSeparatorTypeAsString(unsigned type)
{
    static const char* const texts[] = {"Automatic", "Comma", "Tab", "Space", "Multiple Space", "Semicolon",
                                        "Colon", "Tab or Space", "Tab or Multiple Space", "Other",
                                        "Tab, Space or Comma", "Tab, Space or Comma"};
    return type < sizeof(texts) / sizeof(texts[0]) ? texts[type] : "";
}

// The list of the import dialog, in type order (the two last types show once).
inline std::vector<std::string> getSeparatorTypeStringVector()
{
    std::vector<std::string> texts;
    for (unsigned type = automatic; type <= tab_space_or_comma; ++type)
        texts.push_back(getSeparatorTypeAsString(type));
    return texts;
}

// The type the fast reader's single-character separators stand for (' ' is a run of blanks).
inline unsigned fromCharacter(char c)
{
    switch (c) {
    case ',': return comma;
    case '\t': return tab;
    case ';': return semicolon;
    case ':': return colon;
    case ' ': return tab_or_multiple_space;
    default: return other;
    }
}

// A cell in double quotes, the opening quote at i: appends its text to cell ("" stands for one
// quote) and leaves i behind the closing quote, or at the end of an unclosed line.
inline void readQuotedCell(std::string_view line, size_t& i, std::string& cell)
{
    ++i;
    while (i < line.size()) {
        if (line[i] == '"' && i + 1 < line.size() && line[i + 1] == '"') {
            cell.push_back('"');
            i += 2;
        } else if (line[i] == '"') {
            ++i;
            return;
        } else {
            cell.push_back(line[i++]);
        }
    }
}

}  // namespace vx3::csvSeparator
