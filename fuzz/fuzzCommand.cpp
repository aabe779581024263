// The command language: the tokeniser with every typed reader on every token, and the command
// parser walking a whole text command after command, as a command file or the socket feeds it.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "app/core/cInteractiveParser.h"
#include "app/core/wxWaveExplorerCommand.h"
#include "base/cVxLogger.h"

namespace {

void readEveryToken(const vx3::cInteractiveParser& parser)
{
    for (size_t i = 0; i <= parser.size(); ++i) {
        std::string text, key, value;
        bool flag = false;
        int64_t integer = 0;
        uint64_t unsignedInteger = 0;
        double real = 0;
        unsigned colour = 0;
        std::vector<int64_t> integers;
        std::vector<std::string> strings;
        parser.getAsString(i, text, true);
        parser.getAsBool(i, flag);
        parser.getAsInt(i, integer);
        parser.getAsInt(i, unsignedInteger);
        parser.getAsIntNoSharp(i, integer);
        parser.getAsHexInt(i, unsignedInteger);
        parser.getAsDouble(i, real);
        parser.getAsPercentage(i, real);
        parser.getAsDoubleOrPercentage(i, real);
        parser.getAsColor(i, colour);
        parser.getAsIntArray(i, integers);
        parser.getAsStringArray(i, strings);
        parser.getAsStringEqualsString(i, key, value);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    {
        vx3::cInteractiveParser parser;
        parser.parse(text);
        readEveryToken(parser);
        std::string command = text, rest;
        parser.parse(command, rest);
        std::string counted = text, after;
        parser.parseCmdAndLengthAndString(counted, after);
        readEveryToken(parser);
    }
    vx3::cVxLogger logger;  // no call-back: messages are dropped
    std::string_view remaining(text);
    while (!remaining.empty()) {
        vx3::wxWaveExplorerCommand command;
        command.parseCommandString(remaining, logger);
        const size_t used = command.consumed();
        // Each command must use up some text, or a command file would never end.
        if (used == 0 || used > remaining.size()) {
            std::fprintf(stderr, "parseCommandString consumed %zu of %zu characters\n", used, remaining.size());
            std::abort();
        }
        remaining.remove_prefix(used);
    }
    vx3::wxWaveExplorerCommand::substitutePlotName(text, "plot 1");
    return 0;
}
