// The user's settings. Held in memory here; the file behind it is added with the
// configuration dialog.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vx3 {

class wxWaveExplorerCommand;

namespace waveExplorerConfiguration {
// The value of one option as its set_option command carried it.
struct cOptionValue {
    std::vector<std::string> strings;
    std::vector<double> numbers;   // flags as 1 and 0
    std::vector<int64_t> integers;  // colours
    bool operator==(const cOptionValue& other) const = default;
};
enum tool_bar_style : int { tool_bar_none = 0, tool_bar_permanent = 2, tool_bar_permanent_left = 3,
                            tool_bar_permanent_right = 4 };
}

class wxWaveExplorerConfiguration {
public:
    wxWaveExplorerConfiguration() { setDefaults(); }
    void setDefaults();

    // Window geometry remembered between runs; -1 means "not known yet".
    int windowWidth = 1200;
    int windowHeight = 800;

    // Fields switched by the style bits of the top object.
    int sideBarStyle = 4;  // the style field that stands before the tool bar style
    int toolBarStyle = waveExplorerConfiguration::tool_bar_none;
    bool guiFlagBit4 = false;
    bool guiFlagBit32 = false;
    bool showMenuBar = false;
    bool nocliMode = false;
    bool loadAndSaveConfigFile = false;
    std::string toolbarButtonStyle = "classic";

    // An address-sized identity that a host can compare with check_instance_identifier.
    uint64_t getInstanceIdentifier() const { return reinterpret_cast<uintptr_t>(this); }

    // Options of set_option, by key. Setting one that changes its value flags the configuration
    // as changed; the result tells whether it changed.
    bool setOption(const wxWaveExplorerCommand& command);
    const waveExplorerConfiguration::cOptionValue* getOption(const std::string& key) const;
    bool getOptionFlag(const std::string& key, bool defaultValue = false) const;
    double getOptionNumber(const std::string& key, size_t index = 0, double defaultValue = 0.0) const;
    std::string getOptionText(const std::string& key, size_t index = 0) const;
    int64_t getOptionInteger(const std::string& key, size_t index = 0, int64_t defaultValue = 0) const;

    const std::string& getConfigFileName() const { return mConfigFileName; }
    void setConfigFileName(const std::string& name) { mConfigFileName = name; }
    void setFlagConfigChanged(bool flag) { mChanged = flag; }
    bool getFlagConfigChanged() const { return mChanged; }
    bool checkConfigLoaded() const { return mLoaded; }

private:
    void setDefaultOptions();

    std::map<std::string, waveExplorerConfiguration::cOptionValue> mOptions;
    std::string mConfigFileName;
    bool mChanged = false;
    bool mLoaded = false;
};

}  // namespace vx3
