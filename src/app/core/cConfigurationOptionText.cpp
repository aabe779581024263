#include "cConfigurationOptionText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/cVxLogger.h"
#include "cCommandTable.h"
#include "wxWaveExplorerCommand.h"
#include "wxWaveExplorerConfiguration.h"

namespace vx3 {

using waveExplorerConfiguration::cConfigData;
using waveExplorerConfiguration::cOptionValue;

namespace {
const char* formOf(const std::string& key)
{
    for (int handler = 1; handler <= 3; ++handler) {
        int number = cCommandTable::findOption(key, handler);
        if (number != waveExplorerAction::cmd_no_command)
            return cCommandTable::getOptionForm(number, handler);
    }
    return nullptr;
}

std::string quoted(const std::string& text)
{
    std::string result = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\')
            result += '\\';
        result += c;
    }
    return result + "\"";
}

std::string numberText(double value)
{
    if (std::isnan(value))
        return "nan";
    char buffer[32];
    std::snprintf(buffer, sizeof(buffer), "%.15g", value);
    return buffer;
}
}  // namespace

std::vector<std::string> cConfigurationOptionText::getOptionKeys(const cConfigData& configuration)
{
    std::vector<std::string> keys;
    for (int number = waveExplorerAction::cmd_first_option; number < waveExplorerAction::opt_end_of_options;
         ++number) {
        std::string key = cCommandTable::getOptionKey(number);
        if (!key.empty() && configuration.getOption(key) && (keys.empty() || keys.back() != key))
            keys.push_back(key);
    }
    for (const auto& option : waveExplorerConfiguration::getDialogOnlyOptions())
        if (configuration.getOption(option.key))
            keys.push_back(option.key);
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    return keys;
}

std::string cConfigurationOptionText::getValueText(const cConfigData& configuration, const std::string& key)
{
    const cOptionValue* value = configuration.getOption(key);
    if (!value)
        return std::string();
    const char* form = formOf(key);
    size_t s = 0, n = 0, i = 0;
    std::string text;
    auto add = [&text](const std::string& part) {
        if (!text.empty())
            text += ' ';
        text += part;
    };
    // An empty plot name is not stored: when the strings are one short, the plot name is the one missing.
    size_t slots = 0;
    bool hasPlot = false;
    for (const char* letter = form ? form : ""; *letter; ++letter) {
        slots += std::strchr("PSEF", *letter) != nullptr;
        hasPlot |= *letter == 'P';
    }
    size_t missing = hasPlot && value->strings.size() < slots ? 1 : 0;
    for (const char* letter = form ? form : ""; *letter; ++letter) {
        switch (*letter) {
        case 'P':
            if (missing > 0 || s >= value->strings.size()) {
                if (missing > 0)
                    --missing;
                add("\"\"");
                break;
            }
            add(quoted(value->strings[s++]));
            break;
        case 'S':
        case 'E':
        case 'F':
            if (s < value->strings.size())
                add(quoted(value->strings[s++]));
            break;
        case 'C':
            if (i < value->integers.size()) {
                char buffer[16];
                std::snprintf(buffer, sizeof(buffer), "0x%06llx",
                              static_cast<unsigned long long>(value->integers[i++] & 0xffffff));
                add(buffer);
            }
            break;
        case '[':
        case ']':
            break;
        default:
            if (n < value->numbers.size())
                add(numberText(value->numbers[n++]));
            break;
        }
    }
    // Whatever the form did not name (a form that grew), in store order.
    for (; s < value->strings.size(); ++s)
        add(quoted(value->strings[s]));
    for (; n < value->numbers.size(); ++n)
        add(numberText(value->numbers[n]));
    return text;
}

bool cConfigurationOptionText::setValueFromText(cConfigData& configuration, const std::string& key,
                                                const std::string& text, const cVxLogger& logger)
{
    if (const auto* option = waveExplorerConfiguration::findDialogOnlyOption(key)) {
        // A whole number in the setting's range, or for a flag the words set_option reads.
        double number = NAN;
        if (option->flag) {
            if (text == "1" || text == "true" || text == "yes")
                number = 1.0;
            else if (text == "0" || text == "false" || text == "no")
                number = 0.0;
        } else {
            char* end = nullptr;
            const double read = std::strtod(text.c_str(), &end);
            if (!text.empty() && end && *end == '\0' && read == std::floor(read))
                number = read;
        }
        if (!(number >= option->minimum && number <= option->maximum)) {
            logger.errorMsg("The value \"" + text + "\" does not fit the option \"" + key + "\".");
            return false;
        }
        cOptionValue value;
        value.numbers = {number};
        configuration.setOptionValue(key, value);
        return true;
    }
    wxWaveExplorerCommand command;
    cVxLogger quiet(vxLogger::fatal_error);
    if (!command.parseCommandString("set_option " + key + " " + text, quiet) ||
        cCommandTable::getOptionKey(command.actionType) != key) {
        logger.errorMsg("The value \"" + text + "\" does not fit the option \"" + key + "\".");
        return false;
    }
    configuration.setOption(command);
    return true;
}

}  // namespace vx3
