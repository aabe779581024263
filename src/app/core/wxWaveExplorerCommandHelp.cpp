// help and its HTML documentation, both walked from the one command table.
#include <fstream>

#include "base/cVxString.h"
#include "wxWaveExplorerCommand.h"

namespace vx3 {

using namespace waveExplorerAction;

bool wxWaveExplorerCommand::generateHelpStrings(std::vector<std::string>& results, const std::string& command)
{
    results.clear();
    std::string name, tip, description;
    for (int type = cmd_no_command; type <= cmd_last_option; ++type) {
        if (!getCmdAndCallTip(type, name, tip) || name.empty())
            continue;
        if (command.empty()) {
            results.push_back(name + " " + tip);
        } else if (name == command) {
            results.push_back(name + " " + tip);
            if (getCmdDescription(type, description))
                results.push_back(description);
            return true;
        }
    }
    return !results.empty();
}

bool wxWaveExplorerCommand::generateDocumentationFromHelpStrings(const std::string& fileName)
{
    std::ofstream out(fileName, std::ios::out | std::ios::trunc);
    if (!out)
        return false;
    out << "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.0 Transitional//EN\">\n<html>\n<head>\n</head>\n<body>\n";
    std::string name, tip, description;
    for (int type = cmd_no_command; type <= cmd_last_option; ++type) {
        if (!getCmdAndCallTip(type, name, tip) || name.empty())
            continue;
        out << "<p><b>" << vxString::escape_markup(name, false) << "</b> " << vxString::escape_markup(tip, false);
        if (getCmdDescription(type, description))
            out << "<br>Description: " << vxString::escape_markup(description, false);
        out << "</p>\n";
    }
    out << "</body>\n</html>\n";
    return static_cast<bool>(out);
}

}  // namespace vx3
