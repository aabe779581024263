// An option's value as the text that set_option reads, and back: what the configuration dialog shows
// in its grid and what it applies from an edited cell.
#pragma once

#include <string>
#include <vector>

namespace vx3 {

class cVxLogger;
namespace waveExplorerConfiguration {
class cConfigData;
}

class cConfigurationOptionText {
public:
    // Every option key of the table that has a value in the configuration, sorted.
    static std::vector<std::string> getOptionKeys(const waveExplorerConfiguration::cConfigData& configuration);
    // The argument text of set_option for the key's current value: strings quoted, colours in hex.
    static std::string getValueText(const waveExplorerConfiguration::cConfigData& configuration,
                                    const std::string& key);
    // Reads the text as set_option would; a text that does not fit the option's form is refused with a
    // message and changes nothing.
    static bool setValueFromText(waveExplorerConfiguration::cConfigData& configuration, const std::string& key,
                                 const std::string& text, const cVxLogger& logger);
};

}  // namespace vx3
