// The program's command line as main joins it: options, their values and file names.
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

#include "base/cCommandLineParser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    vx3::cCommandLineParser parser;
    // main catches what the parse throws and prints a usage text, so this does too (silently).
    try {
        parser.parseCommandLine(text);
    } catch (const std::exception&) {
        return 0;
    }
    parser.commandFileName();
    parser.logFileName();
    parser.getAllStringOptions(vx3::commandLineParser::socket);
    return 0;
}
