// The table-driven reading of command arguments, and the commands with readers of their own.
#include <cmath>

#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "cInteractiveParser.h"
#include "model/curveStyleTypes.h"
#include "wxWaveExplorerCommand.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {

std::string ordinal(size_t index)
{
    switch (index) {
    case 1: return "1st";
    case 2: return "2nd";
    case 3: return "3rd";
    default: return std::to_string(index) + "th";
    }
}

}  // namespace

void wxWaveExplorerCommand::warnBadArgument(size_t index, const cVxLogger& logger) const
{
    // set_filter's own spelling of its third warning is part of the language.
    if (actionType == cmd_set_filter && index == 3)
        logger.warnMsg("Interactive Mode: bad 3nd argument.");
    else
        logger.warnMsg("Interactive Mode: bad " + ordinal(index) + " argument.");
}

bool wxWaveExplorerCommand::readArgument(char kind, const cInteractiveParser& parser, size_t index)
{
    switch (kind) {
    case 'P': {
        std::string name;
        if (!parser.getAsString(index, name))
            return false;
        plotName = name;
        return true;
    }
    case 'S': {
        std::string text;
        if (!parser.getAsString(index, text))
            return false;
        pushStringArguments(text);
        return true;
    }
    case 'E':
    case 'F': {
        std::string name;
        if (!parser.getAsString(index, name))
            return false;
        pushStringArguments(kind == 'E' ? computeAbsoluteFileName(name) : computeAbsoluteFileNameMightNotExist(name));
        return true;
    }
    case 'B': {
        bool flag = false;
        if (!parser.getAsBool(index, flag))
            return false;
        pushDoubleArg(flag ? 1.0 : 0.0);
        return true;
    }
    case 'I':
    case 'X': {
        int64_t value = 0;
        uint64_t hex = 0;
        if (parser.getAsInt(index, value)) {
            pushDoubleArg(static_cast<double>(value));
            return true;
        }
        if (kind == 'X' && parser.getAsHexInt(index, hex)) {
            pushDoubleArg(static_cast<double>(hex));
            return true;
        }
        return false;
    }
    case 'D': {
        double value = 0;
        if (!parser.getAsDouble(index, value))
            return false;
        pushDoubleArg(value);
        return true;
    }
    case '%': {
        double value = 0;
        if (!parser.getAsDoubleOrPercentage(index, value))
            return false;
        pushDoubleArg(value);
        return true;
    }
    case 'C': {
        unsigned colour = 0;
        if (!parser.getAsColor(index, colour))
            return false;
        pushIntArguments(colour);
        return true;
    }
    case 'A': {
        std::vector<int64_t> values;
        if (!parser.getAsIntArray(index, values))
            return false;
        pushIntArguments(static_cast<int64_t>(values.size()));
        for (int64_t value : values)
            pushIntArguments(value);
        return true;
    }
    case 'L':
    case 'Y': {
        int64_t value = 0;
        std::string word;
        if (!parser.getAsInt(index, value)) {
            if (!parser.getAsString(index, word))
                return false;
            value = kind == 'L' ? curvePlotProperties::get_line_style_from_string(word)
                                : curvePlotProperties::get_symbol_from_string(word);
        }
        if (value < 0 || value > (kind == 'L' ? 8 : 11))
            return false;
        pushDoubleArg(static_cast<double>(value));
        return true;
    }
    default:
        return false;
    }
}

bool wxWaveExplorerCommand::parseForm(const char* form, const cInteractiveParser& parser, size_t& index)
{
    // A form is a row of argument kinds; "[...]" is optional as a whole and "*" repeats the item
    // before it while tokens are left.
    const std::string text(form ? form : "");
    size_t position = 0;
    while (position < text.size()) {
        bool group = text[position] == '[';
        size_t end = group ? text.find(']', position) : position;
        if (end == std::string::npos)
            return false;
        std::string item = group ? text.substr(position + 1, end - position - 1) : text.substr(position, 1);
        position = end + 1;
        bool repeat = position < text.size() && text[position] == '*';
        if (repeat)
            ++position;
        do {
            if (group && index >= parser.size())
                break;  // an optional group that is not given
            for (char kind : item) {
                if (!readArgument(kind, parser, index))
                    return false;  // index tells which
                ++index;
            }
        } while (repeat && index < parser.size());
    }
    return true;
}

bool wxWaveExplorerCommand::parseArguments(const cInteractiveParser& parser, int actType, const cVxLogger& logger)
{
    actionType = actType;
    size_t index = 1;
    switch (actType) {
    case cmd_wait: {
        double seconds = 0;
        if (!parser.getAsDouble(1, seconds) || seconds < 0 || std::isnan(seconds)) {
            logger.errorMsg("Interactive Command \"" + mText + "\" : bad 1st argument.");
            return false;
        }
        time = seconds;
        pushDoubleArg(seconds);
        return true;
    }
    case cmd_add_plot: {
        if (!parseForm("PS", parser, index)) {
            warnBadArgument(index, logger);
            return false;
        }
        std::string type = vxString::to_lower(getStringArgument(0));
        if (type == "table")
            type = "spreadsheet";
        else if (type == "analog_bus" || type == "synchronized")
            type = "analog_synchronized";
        setStringArgument(0, type);
        plotType = type;
        bool newPage = true, makeVisible = false;
        if (parser.size() > 3 && !parser.getAsBool(3, newPage)) {
            warnBadArgument(3, logger);
            return false;
        }
        if (parser.size() > 4 && !parser.getAsBool(4, makeVisible)) {
            warnBadArgument(4, logger);
            return false;
        }
        pushDoubleArg(newPage ? 1.0 : 0.0);
        pushDoubleArg(makeVisible ? 1.0 : 0.0);
        return true;
    }
    case cmd_add_curve:
    case cmd_add_points:
        return parseCurveValues(parser, logger);
    default:
        break;
    }
    const char* form = cCommandTable::getArgumentForm(actType);
    if (!form)
        return false;
    if (std::string(form) == "*") {
        // Words without a form of their own keep their tokens as text.
        for (size_t i = 1; i < parser.size(); ++i)
            pushStringArguments(parser.tokens()[i]);
        return true;
    }
    if (parseForm(form, parser, index))
        return true;
    warnBadArgument(index, logger);
    return false;
}

bool wxWaveExplorerCommand::parseCurveValues(const cInteractiveParser& parser, const cVxLogger& logger)
{
    size_t index = 1;
    if (!parseForm("SS", parser, index)) {
        warnBadArgument(index, logger);
        return false;
    }
    sectionName = getStringArgument(0);
    curveName = getStringArgument(1);
    size_t first = 3;
    if (actionType == cmd_add_curve) {
        bool complex = false;
        if (!parser.getAsBool(3, complex)) {
            warnBadArgument(3, logger);
            return false;
        }
        complexFlag = complex;
        std::string yUnit, xUnit;
        parser.getAsString(4, yUnit);
        parser.getAsString(5, xUnit);
        unit = yUnit;
        stringValue = xUnit;
        first = 6;
    }
    realNumbers.clear();
    for (size_t i = first; i < parser.size(); ++i) {
        double value = 0;
        if (!parser.getAsDouble(i, value)) {
            warnBadArgument(i, logger);
            return false;
        }
        realNumbers.push_back(value);
    }
    return true;
}

bool wxWaveExplorerCommand::parseOption(const cInteractiveParser& parser, bool guiFirst, const cVxLogger& logger)
{
    std::string key;
    if (!parser.getAsString(1, key, true)) {
        warnBadArgument(1, logger);
        return false;
    }
    // The order in which the three handlers are asked depends on the word.
    const int order[2][3] = {{1, 2, 3}, {1, 3, 2}};
    const int* handlers = order[guiFirst ? 1 : 0];
    size_t badArgument = 0;  // where the first handler that knew the key stumbled
    for (int k = 0; k < 3; ++k) {
        int number = cCommandTable::findOption(key, handlers[k]);
        if (number == cmd_no_command)
            continue;
        size_t index = 2;
        wxWaveExplorerCommand attempt(*this);
        attempt.clearAction();
        attempt.actionType = number;
        if (!attempt.parseForm(cCommandTable::getOptionForm(number, handlers[k]), parser, index)) {
            // A handler that does not take the value leaves the word to the next one.
            if (badArgument == 0)
                badArgument = index;
            continue;
        }
        *this = attempt;
        stringValue = key;
        return true;
    }
    if (badArgument != 0)
        warnBadArgument(badArgument, logger);
    return false;
}

}  // namespace vx3
