#include "wxWaveExplorerConfiguration.h"

namespace vx3 {

void wxWaveExplorerConfiguration::setDefaults()
{
    windowWidth = 1200;
    windowHeight = 800;
    sideBarStyle = 4;
    toolBarStyle = waveExplorerConfiguration::tool_bar_none;
    guiFlagBit4 = false;
    guiFlagBit32 = false;
    showMenuBar = false;
    nocliMode = false;
    toolbarButtonStyle = "classic";
    setDefaultOptions();
    mChanged = false;
}

}  // namespace vx3
