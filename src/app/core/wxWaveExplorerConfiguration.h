// The user's settings. Held in memory here; the file behind it is added with the
// configuration dialog.
#pragma once

#include <cstdint>
#include <string>

namespace vx3 {

namespace waveExplorerConfiguration {
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

    const std::string& getConfigFileName() const { return mConfigFileName; }
    void setConfigFileName(const std::string& name) { mConfigFileName = name; }
    void setFlagConfigChanged(bool flag) { mChanged = flag; }
    bool getFlagConfigChanged() const { return mChanged; }
    bool checkConfigLoaded() const { return mLoaded; }

private:
    std::string mConfigFileName;
    bool mChanged = false;
    bool mLoaded = false;
};

}  // namespace vx3
