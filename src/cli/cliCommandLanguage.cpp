// Subcommands about the command language: its reference, and checking command files without
// running them.
#include <fstream>
#include <iostream>

#include "app/core/wxWaveExplorerCommand.h"
#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "cCliTool.h"

namespace vx3 {

namespace {

int runHelp(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    std::string word;
    for (const auto& argument : arguments)
        word += (word.empty() ? "" : " ") + argument;
    std::vector<std::string> lines;
    if (!wxWaveExplorerCommand::generateHelpStrings(lines, word)) {
        err << "zelwave-cli help: no command \"" << word << "\"\n";
        return 1;
    }
    for (const auto& line : lines)
        out << line << '\n';
    return 0;
}

// Prints what the viewer would log for each line that does not parse; the commands are not run.
int runCheck(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    if (arguments.empty()) {
        err << "zelwave-cli check: name at least one command file\n";
        return 2;
    }
    size_t failures = 0;
    for (const auto& file : arguments) {
        std::ifstream in(file, std::ios::binary);
        if (!in) {
            err << file << ": cannot be read\n";
            ++failures;
            continue;
        }
        cVxStringLogger messages(vxLogger::warning);
        cVxLogger logger;
        logger.setLoggerCallBack(&messages);
        wxWaveExplorerCommand command;
        bool inComment = false;
        std::string line;
        for (size_t number = 1; std::getline(in, line); ++number) {
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            messages.clear();
            bool ok = command.parseCommandString(line, logger);
            if (ok && command.actionType == waveExplorerAction::cmd_comment_start)
                inComment = true;
            else if (ok && command.actionType == waveExplorerAction::cmd_comment_end)
                inComment = false;
            if (ok || inComment || vxString::trim(line).empty())
                continue;
            ++failures;
            out << file << ":" << number << ": " << vxString::trim(line) << '\n';
            std::string text = messages.getBufferAsString();
            size_t start = 0, end;
            while ((end = text.find('\n', start)) != std::string::npos) {
                std::string message = text.substr(start, end - start);
                size_t dash = message.find(" - ", 7);  // behind the tag and the time
                out << "    " << (dash == std::string::npos ? message : message.substr(dash + 3)) << '\n';
                start = end + 1;
            }
            if (text.empty())
                out << "    unknown command word\n";
        }
    }
    out << failures << (failures == 1 ? " line does" : " lines do") << " not parse\n";
    return failures ? 1 : 0;
}

int runDoc(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    if (arguments.size() != 1) {
        err << "zelwave-cli doc: name one output file\n";
        return 2;
    }
    if (!wxWaveExplorerCommand::generateDocumentationFromHelpStrings(arguments[0])) {
        err << "zelwave-cli doc: cannot write \"" << arguments[0] << "\"\n";
        return 1;
    }
    out << "wrote " << arguments[0] << '\n';
    return 0;
}

}  // namespace

void addCommandLanguageSubcommands(cCliTool& tool)
{
    tool.add({"help", "the command language: every word, or one word with its description",
              "usage: zelwave-cli help [command]\n\n"
              "Without a command, lists every command word with its arguments; with one, prints its\n"
              "arguments and description, as the viewer's own help command does.\n",
              runHelp});
    tool.add({"check", "parse command files without running them; report the lines that fail",
              "usage: zelwave-cli check FILE...\n\n"
              "Reads each command file as the viewer would and prints, for every line that does not\n"
              "parse, its place, its text and the warning the viewer logs. Exit code 1 when a line fails.\n",
              runCheck});
    tool.add({"doc", "write the command reference as HTML",
              "usage: zelwave-cli doc FILE.html\n\n"
              "Writes every command with its arguments and description, as generate_documentation_from_help.\n",
              runDoc});
}

}  // namespace vx3
