#include "wxCurveStyle.h"

#include <algorithm>

#include "app/core/wxWaveExplorerCommand.h"
#include "model/curveStyleTypes.h"

namespace vx3 {

using namespace curvePlotProperties;

namespace {
void putWord(std::vector<unsigned char>& out, uint32_t word)
{
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<unsigned char>(word >> (8 * i)));
}

uint32_t getWord(const std::vector<unsigned char>& in, size_t position)
{
    uint32_t word = 0;
    for (int i = 3; i >= 0; --i)
        word = (word << 8) | in[position + i];
    return word;
}

int argumentToInt(const wxWaveExplorerAction& action, size_t index)
{
    return static_cast<int>(action.getDoubleArg(index, -1.0));
}
}  // namespace

void wxCurveStyle::serialize(std::vector<unsigned char>& out) const
{
    putWord(out, realColour);
    putWord(out, imagColour);
    putWord(out, static_cast<uint32_t>(realLineWidth));
    putWord(out, static_cast<uint32_t>(imagLineWidth));
    putWord(out, static_cast<uint32_t>(realLineStyle));
    putWord(out, static_cast<uint32_t>(imagLineStyle));
    putWord(out, static_cast<uint32_t>(realSymbol));
    putWord(out, static_cast<uint32_t>(imagSymbol));
    out.insert(out.end(), flags.begin(), flags.end());
}

bool wxCurveStyle::deserialize(const std::vector<unsigned char>& in, size_t& position)
{
    if (position > in.size() || in.size() - position < kSerializedSize)
        return false;
    size_t at = position;
    auto next = [&]() {
        const uint32_t word = getWord(in, at);
        at += 4;
        return word;
    };
    realColour = next();
    imagColour = next();
    realLineWidth = static_cast<int32_t>(next());
    imagLineWidth = static_cast<int32_t>(next());
    realLineStyle = static_cast<int32_t>(next());
    imagLineStyle = static_cast<int32_t>(next());
    realSymbol = static_cast<int32_t>(next());
    imagSymbol = static_cast<int32_t>(next());
    std::copy(in.begin() + at, in.begin() + at + 4, flags.begin());
    position = at + 4;
    return true;
}

int wxCurveStyle::penKindOfLineStyle(int lineStyle)
{
    switch (lineStyle) {
    case dashed_line: return vxDrawContext::dash_pen;
    case short_dashed_line: return vxDrawContext::short_dash_pen;
    case dotted_line: return vxDrawContext::dotted_pen;
    default: return vxDrawContext::solid_pen;
    }
}

vxDrawContext::cVxPen wxCurveStyle::getRealPen(int lineStyle) const
{
    return {realColour, realLineWidth, penKindOfLineStyle(lineStyle)};
}

vxDrawContext::cVxPen wxCurveStyle::getImagPen(int lineStyle) const
{
    return {imagColour, imagLineWidth, penKindOfLineStyle(lineStyle)};
}

int wxCurveStyle::clampLineWidth(int width) { return std::clamp(width, kMinLineWidth, kMaxLineWidth); }

size_t wxCurveStyle::getStyleArgumentStart(int actionType)
{
    using namespace waveExplorerAction;
    switch (actionType) {
    case cmd_set_curve_style_by_id_and_index:
    case cmd_set_curve_style_in_plot_by_id_and_index: return 2;  // section id, curve index
    case cmd_set_curve_style_by_id_and_name: return 1;           // section id; the name is a text
    default: return 0;                                            // names as texts, or the selection
    }
}

bool wxCurveStyle::setStyleFromAction(const wxWaveExplorerAction& action)
{
    // Numbers: line style, symbol, width per part; colours travel as integers, one per part.
    const size_t start = getStyleArgumentStart(action.actionType);
    if (action.getNumberOfDoubleArgs() < start + 3 || action.getNumberOfIntArguments() < 1)
        return false;
    auto readPart = [&](size_t first, int& lineStyle, int& symbol, int& width, unsigned& colour, size_t colourIndex) {
        int style = argumentToInt(action, first), mark = argumentToInt(action, first + 1);
        const int size = argumentToInt(action, first + 2);
        if (style < 0 || style > default_line || mark < 0 || mark > default_symbol)
            return false;
        // An action sets a style; "automatic" would hand the choice back, so it means the default.
        if (style == automatic_line)
            style = default_line;
        if (mark == automatic_symbol)
            mark = default_symbol;
        lineStyle = style;
        symbol = mark;
        width = clampLineWidth(size);
        colour = static_cast<unsigned>(action.getIntArgument(colourIndex)) & 0xffffffu;
        return true;
    };
    wxCurveStyle style = *this;
    if (!readPart(start, style.realLineStyle, style.realSymbol, style.realLineWidth, style.realColour, 0))
        return false;
    if (action.getNumberOfDoubleArgs() >= start + 6 && action.getNumberOfIntArguments() >= 2) {
        if (!readPart(start + 3, style.imagLineStyle, style.imagSymbol, style.imagLineWidth, style.imagColour, 1))
            return false;
    } else {
        style.copyRealToImagStyle();
    }
    style.setAutomatic(false);
    *this = style;
    return true;
}

bool wxCurveStyle::setStyle(const wxWaveExplorerCommand& command)
{
    if (command.actionType != waveExplorerAction::cmd_set_curve_style)
        return setStyleFromAction(command);
    // The old form: both parts in full, the colours as red, green and blue numbers.
    if (command.getNumberOfDoubleArgs() < 12)
        return false;
    wxCurveStyle style = *this;
    int* lineStyles[] = {&style.realLineStyle, &style.imagLineStyle};
    int* symbols[] = {&style.realSymbol, &style.imagSymbol};
    int* widths[] = {&style.realLineWidth, &style.imagLineWidth};
    unsigned* colours[] = {&style.realColour, &style.imagColour};
    for (size_t part = 0; part < 2; ++part) {
        const size_t first = part * 6;
        int values[6];
        for (size_t i = 0; i < 6; ++i)
            values[i] = argumentToInt(command, first + i);
        if (values[0] < 0 || values[0] > default_line || values[1] < 0 || values[1] > default_symbol)
            return false;
        for (size_t i = 3; i < 6; ++i)
            if (values[i] < 0 || values[i] > 255)
                return false;
        *lineStyles[part] = values[0] == automatic_line ? default_line : values[0];
        *symbols[part] = values[1] == automatic_symbol ? default_symbol : values[1];
        *widths[part] = clampLineWidth(values[2]);
        *colours[part] = (unsigned(values[3]) << 16) | (unsigned(values[4]) << 8) | unsigned(values[5]);
    }
    style.setAutomatic(false);
    *this = style;
    return true;
}

namespace {
bool setFromWord(int& field, int value)
{
    if (value < 0)
        return false;
    field = value;
    return true;
}
}  // namespace

bool wxCurveStyle::setSymbolReal(const std::string& text) { return setFromWord(realSymbol, get_symbol_from_string(text)); }
bool wxCurveStyle::setSymbolImag(const std::string& text) { return setFromWord(imagSymbol, get_symbol_from_string(text)); }
bool wxCurveStyle::setLineStyleReal(const std::string& text)
{
    return setFromWord(realLineStyle, get_line_style_from_string(text));
}
bool wxCurveStyle::setLineStyleImag(const std::string& text)
{
    return setFromWord(imagLineStyle, get_line_style_from_string(text));
}

std::vector<std::string> wxCurveStyle::getLineStylesAsStrings()
{
    std::vector<std::string> words;
    for (int style = solid_line; style < automatic_line; ++style)
        words.push_back(line_style_type_to_string(style));
    return words;
}

std::vector<std::string> wxCurveStyle::getSymbolsAsStrings()
{
    std::vector<std::string> words;
    for (int symbol = no_symbol; symbol < automatic_symbol; ++symbol)
        words.push_back(symbol_type_to_string(symbol));
    return words;
}

void wxCurveStyle::copyRealStyle(const wxCurveStyle& other)
{
    realColour = other.realColour;
    realLineWidth = other.realLineWidth;
    realLineStyle = other.realLineStyle;
    realSymbol = other.realSymbol;
}

void wxCurveStyle::copyImagStyle(const wxCurveStyle& other)
{
    imagColour = other.imagColour;
    imagLineWidth = other.imagLineWidth;
    imagLineStyle = other.imagLineStyle;
    imagSymbol = other.imagSymbol;
}

void wxCurveStyle::copyImagToRealStyle()
{
    realColour = imagColour;
    realLineWidth = imagLineWidth;
    realLineStyle = imagLineStyle;
    realSymbol = imagSymbol;
}

void wxCurveStyle::copyRealToImagStyle()
{
    imagColour = realColour;
    imagLineWidth = realLineWidth;
    imagLineStyle = realLineStyle;
    imagSymbol = realSymbol;
}

}  // namespace vx3
