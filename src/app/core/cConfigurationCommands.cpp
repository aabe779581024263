#include "cConfigurationCommands.h"

#include "base/cVxFilePath.h"
#include "base/cVxLogger.h"
#include "wxWaveExplorerCommand.h"
#include "wxWaveExplorerConfiguration.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {
constexpr int kOk = 0;
constexpr int kFailed = 3;

std::string currentFileName(const wxWaveExplorerConfiguration& configuration)
{
    return configuration.getConfigFileName().empty() ? getConfigFileName() : configuration.getConfigFileName();
}

}  // namespace

int cConfigurationCommands::perform(wxWaveExplorerCommand& command, wxWaveExplorerConfiguration& configuration,
                                    const cVxLogger& logger)
{
    switch (command.actionType) {
    case cmd_read_configuration_file: {
        const std::string& given = command.getStringArgument(0);
        if (configuration.readConfigurationFile(given.empty() ? currentFileName(configuration) : given, logger))
            return kOk;
        if (given.empty())
            logger.errorMsg("The default configuration file could not be loaded.");
        else
            logger.errorMsg("The configuration file \"" + given + "\" could not be loaded.");
        return kFailed;
    }
    case cmd_save_configuration_file: {
        const std::string& given = command.getStringArgument(0);
        bool saved = given.empty() ? configuration.saveToConfig(logger) : configuration.saveToConfig(given, logger);
        return saved ? kOk : kFailed;
    }
    case cmd_get_configuration_file_name:
        command.pushReturnValue(currentFileName(configuration));
        return kOk;
    case cmd_get_mapping_spice_top:
        command.pushReturnValue(configuration.getOptionText("schematic_mapping_top_spice"));
        return kOk;
    case cmd_get_mapping_curve_top:
        command.pushReturnValue(configuration.getOptionText("schematic_mapping_top_curve"));
        return kOk;
    default:
        return not_a_configuration_command;
    }
}

}  // namespace vx3
