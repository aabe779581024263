// The commands that read, write and name the configuration file, and those that answer with a
// configuration value. Headless: the explorer passes them on, tests call them directly.
#pragma once

namespace vx3 {

class cVxLogger;
class wxWaveExplorerCommand;
class wxWaveExplorerConfiguration;

class cConfigurationCommands {
public:
    enum : int { not_a_configuration_command = -1 };
    // 0 success, 3 failure; not_a_configuration_command for other words.
    static int perform(wxWaveExplorerCommand& command, wxWaveExplorerConfiguration& configuration,
                       const cVxLogger& logger);
};

}  // namespace vx3
