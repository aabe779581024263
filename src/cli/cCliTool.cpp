#include "cCliTool.h"

#include <iostream>

namespace vx3 {

const cCliSubcommand* cCliTool::find(const std::string& name) const
{
    for (const auto& subcommand : mSubcommands)
        if (subcommand.name == name)
            return &subcommand;
    return nullptr;
}

void cCliTool::printOverview(std::ostream& out) const
{
    out << "usage: zelwave-cli <subcommand> [arguments]\n"
           "       zelwave-cli <subcommand> --help\n\n"
           "The headless tool of zelwave: its engine without windows.\n\nSubcommands:\n";
    for (const auto& subcommand : mSubcommands) {
        out << "  " << subcommand.name;
        for (size_t pad = subcommand.name.size(); pad < 12; ++pad)
            out << ' ';
        out << subcommand.summary << '\n';
    }
    out << "\nExit codes: 0 success, 1 the work failed, 2 bad usage.\n";
}

int cCliTool::run(int argc, const char* const* argv, std::ostream& out, std::ostream& err) const
{
    if (argc < 2) {
        printOverview(err);
        return 2;
    }
    const std::string name = argv[1];
    if (name == "--help" || name == "-h") {
        printOverview(out);
        return 0;
    }
    const cCliSubcommand* subcommand = find(name);
    if (!subcommand) {
        err << "zelwave-cli: unknown subcommand \"" << name << "\"; see zelwave-cli --help\n";
        return 2;
    }
    std::vector<std::string> arguments(argv + 2, argv + argc);
    for (const auto& argument : arguments) {
        if (argument == "--help" || argument == "-h") {
            out << subcommand->usage;
            return 0;
        }
    }
    try {
        return subcommand->run(arguments, out, err);
    } catch (const std::exception& exception) {
        err << "zelwave-cli " << name << ": " << exception.what() << '\n';
        return 1;
    }
}

}  // namespace vx3
