// Style menus as data, and the command text of a style.
#include <cstdio>

#include "model/curveStyleTypes.h"
#include "model/derivedCurveFunction.h"
#include "plot/wxCurveStyle.h"

namespace vx3 {

using curveStyle::cMenuEntry;
using curveStyle::cStyleTarget;

namespace {

enum part_choice { both_parts, real_part, imag_part };

std::string quoted(const std::string& text)
{
    std::string out = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    return out + "\"";
}

std::string partText(int lineStyle, int symbol, int width, unsigned colour)
{
    char buffer[96];
    // Colours as style files write them: hexadecimal, without leading zeros, 24 bits.
    std::snprintf(buffer, sizeof buffer, " %d %d %d #%x", lineStyle, symbol, width, colour & 0xffffffu);
    return buffer;
}

template <class Change>
void appendEntry(std::vector<cMenuEntry>& menu, const wxCurveStyle& style, const cStyleTarget& target,
                 std::string text, bool checked, Change change)
{
    wxCurveStyle changed = style;
    change(changed);
    menu.push_back({std::move(text), changed.getStyleCommand(target), checked});
}

void appendWidths(std::vector<cMenuEntry>& menu, const wxCurveStyle& style, const cStyleTarget& target, int part)
{
    const int current = part == imag_part ? style.imagLineWidth : style.realLineWidth;
    for (int width = wxCurveStyle::kMinLineWidth; width <= wxCurveStyle::kMaxLineWidth; ++width) {
        const std::string text = std::to_string(width) + (width == 1 ? " pixel" : " pixels");
        const bool checked = current == width && (part != both_parts || style.imagLineWidth == width);
        appendEntry(menu, style, target, text, checked, [&](wxCurveStyle& s) {
            if (part != imag_part)
                s.realLineWidth = width;
            if (part != real_part)
                s.imagLineWidth = width;
        });
    }
}

void appendSymbols(std::vector<cMenuEntry>& menu, const wxCurveStyle& style, const cStyleTarget& target, int part)
{
    const int current = part == imag_part ? style.imagSymbol : style.realSymbol;
    for (const std::string& word : wxCurveStyle::getSymbolsAsStrings()) {
        const int symbol = curvePlotProperties::get_symbol_from_string(word);
        if (symbol < 0)
            continue;
        const bool checked = current == symbol && (part != both_parts || style.imagSymbol == symbol);
        appendEntry(menu, style, target, word, checked, [&](wxCurveStyle& s) {
            if (part != imag_part)
                s.realSymbol = symbol;
            if (part != real_part)
                s.imagSymbol = symbol;
        });
    }
}

}  // namespace

std::vector<std::string> wxCurveStyle::getDigitalDataAsStrings()
{
    std::vector<std::string> words;
    for (unsigned type = 0; type < derivedCurveFunction::default_digital; ++type) {
        const std::string word = derivedCurveFunction::digital_data_type_to_string(type);
        if (!word.empty())
            words.push_back(word);
    }
    return words;
}

std::string wxCurveStyle::getStyleCommand(const cStyleTarget& target) const
{
    std::string text = target.plotName.empty()
                           ? "set_curve_style_by_id_and_index"
                           : "set_curve_style_in_plot_by_id_and_index " + quoted(target.plotName);
    text += " " + std::to_string(target.sectionId) + " " + std::to_string(target.curveIndex);
    text += partText(realLineStyle, realSymbol, realLineWidth, realColour);
    if (target.complex)
        text += partText(imagLineStyle, imagSymbol, imagLineWidth, imagColour);
    return text;
}

void wxCurveStyle::appendLineWidthMenu(std::vector<cMenuEntry>& menu, const cStyleTarget& target) const
{
    appendWidths(menu, *this, target, both_parts);
}

void wxCurveStyle::appendLineWidthMenuReal(std::vector<cMenuEntry>& menu, const cStyleTarget& target) const
{
    appendWidths(menu, *this, target, real_part);
}

void wxCurveStyle::appendLineWidthMenuImag(std::vector<cMenuEntry>& menu, const cStyleTarget& target) const
{
    appendWidths(menu, *this, target, imag_part);
}

void wxCurveStyle::appendSymbolMenu(std::vector<cMenuEntry>& menu, const cStyleTarget& target) const
{
    appendSymbols(menu, *this, target, both_parts);
}

void wxCurveStyle::appendSymbolMenuReal(std::vector<cMenuEntry>& menu, const cStyleTarget& target) const
{
    appendSymbols(menu, *this, target, real_part);
}

void wxCurveStyle::appendSymbolMenuImag(std::vector<cMenuEntry>& menu, const cStyleTarget& target) const
{
    appendSymbols(menu, *this, target, imag_part);
}

}  // namespace vx3
