#include "cCommandLineParser.h"

#include <algorithm>
#include <exception>
#include <iostream>

#include "cVxString.h"

namespace vx3 {

using namespace commandLineParser;

namespace {
bool isBlankOrTab(char c) { return c == ' ' || c == '\t'; }
}  // namespace

cCommandLineParser::cCommandLineParser(int argc, const char* const* argv)
{
    try {
        parseCommandLine(argc, argv);
    } catch (const std::exception&) {
        std::cout << "EXCEPTION : " << "parsing of command line failed" << std::endl;
    }
}

void cCommandLineParser::clear()
{
    mFlags.clear();
    mStringOptions.clear();
    mOtherOptions.clear();
    mStringArguments.clear();
    mSocketAddress.clear();
    mSocketPort = 0;
    mLogSeverity = 3;
}

std::string cCommandLineParser::assembleArguments(int argc, const char* const* argv)
{
    std::string result;
    for (int i = 1; i < argc; ++i) {
        std::string item = argv[i] ? argv[i] : "";
        if (!result.empty())
            result += ' ';
        bool quoted = item.size() >= 2 && item.front() == '"' && item.back() == '"';
        bool option = !item.empty() && item.front() == '-';
        bool plain = item.find_first_of(" \t") == std::string::npos;
        if (quoted || option || plain)
            result += item;
        else
            result += '"' + item + '"';
    }
    return result;
}

bool cCommandLineParser::parseCommandLine(int argc, const char* const* argv)
{
    if (argc > 0 && argv && argv[0])
        mProgramName = argv[0];
    std::string text;
    for (int i = 1; i < argc; ++i) {
        std::string item = argv[i] ? argv[i] : "";
        if (!text.empty())
            text += ' ';
        bool quoted = item.size() >= 2 && item.front() == '"' && item.back() == '"';
        if (!quoted && item.find_first_of(" \t") != std::string::npos)
            text += '"' + item + '"';
        else
            text += item;
    }
    return parseCommandLine(text);
}

cCommandLineParser::cItem cCommandLineParser::nextItem(const std::string& text, size_t& position)
{
    cItem item;
    while (position < text.size() && (isBlankOrTab(text[position]) || text[position] == '='))
        ++position;
    if (position >= text.size())
        return item;
    item.found = true;
    if (text[position] == '"') {
        size_t close = text.find('"', position + 1);
        if (close == std::string::npos) {
            item.text = text.substr(position + 1);
            position = text.size();
        } else {
            item.text = text.substr(position + 1, close - position - 1);
            position = close + 1;
        }
        return item;
    }
    size_t start = position;
    while (position < text.size() && !isBlankOrTab(text[position]))
        ++position;
    item.text = text.substr(start, position - start);
    return item;
}

bool cCommandLineParser::parseCommandLine(const std::string& text)
{
    clear();
    bool success = true;
    size_t position = 0;
    while (true) {
        while (position < text.size() && isBlankOrTab(text[position]))
            ++position;
        if (position >= text.size())
            break;
        bool option = text[position] == '-' && position + 1 < text.size() && !isBlankOrTab(text[position + 1]);
        if (option) {
            size_t start = position;
            while (position < text.size() && text[position] != '=' && !isBlankOrTab(text[position]))
                ++position;
            std::string item = text.substr(start, position - start);
            bool hasValue = position < text.size() && text[position] == '=';
            while (position < text.size() && text[position] == '=')
                ++position;
            bool ok;
            if (item.size() >= 2 && item[1] == '-')
                ok = analyzeDoubleMinus(vxString::to_lower(item.substr(2)), std::string(), hasValue, text, position);
            else
                ok = analyzeSingleMinus(item.substr(1));
            success = success && ok;
            continue;
        }
        cItem item = nextItem(text, position);
        if (item.found)
            mStringArguments.push_back(item.text);
        while (position < text.size() && text[position] == '=')
            ++position;
    }
    return success;
}

bool cCommandLineParser::analyzeSingleMinus(const std::string& name)
{
    bool ok = true;
    for (char c : vxString::to_lower(name)) {
        switch (c) {
        case 'd': mFlags.push_back(debug); break;
        case 'h': mFlags.push_back(help); break;
        case 'i': mFlags.push_back(interactive); break;
        case 's': mFlags.push_back(silent); break;
        case 'v': mFlags.push_back(verbose); break;
        default: ok = false;
        }
    }
    return ok;
}

bool cCommandLineParser::analyzeDoubleMinus(const std::string& name, const std::string&, bool hasValue,
                                            const std::string& text, size_t& position)
{
    if (name == "silent") { mFlags.push_back(silent); return true; }
    if (name == "verbose") { mFlags.push_back(verbose); return true; }
    if (name == "debug") { mFlags.push_back(debug); return true; }
    if (name == "help") { mFlags.push_back(help); return true; }
    if (name == "nocli") { mFlags.push_back(nocli); return true; }
    if (name == "install") { mFlags.push_back(install); return true; }
    if (name == "run") { mFlags.push_back(run); return true; }
    if (name == "socket") {
        cItem address = nextItem(text, position);
        cItem port = nextItem(text, position);
        unsigned value = 0;
        if (!address.found || !port.found || !cVxString(port.text).toUint(value))
            return false;
        mSocketAddress = address.text;
        mSocketPort = value;
        mFlags.push_back(socket);
        return true;
    }
    if (name.compare(0, 5, "inter") == 0) { mFlags.push_back(interactive); return true; }
    if (name == "use_existing") { mFlags.push_back(use_existing); return true; }
    if (name == "command_file" || name == "session_file" || name == "resolve" || name == "test") {
        options option = (name == "resolve") ? resolve : (name == "test") ? test : command_file;
        cItem item = nextItem(text, position);
        if (!item.found)
            return false;
        mStringOptions.emplace_back(option, item.text);
        return true;
    }
    if (name == "log") {
        cItem item = nextItem(text, position);
        if (!item.found)
            return false;
        mStringOptions.emplace_back(log_file, item.text);
        mLogSeverity = 3;
        size_t peek = position;
        cItem severity = nextItem(text, peek);
        unsigned value = 0;
        if (severity.found && cVxString(severity.text).toUint(value)) {
            mLogSeverity = value;
            position = peek;
        }
        return true;
    }
    // Unknown options are kept, never fatal: hosts may pass their own.
    std::string value;
    if (hasValue) {
        cItem item = nextItem(text, position);
        value = item.text;
    }
    mOtherOptions.emplace_back(name, value);
    return true;
}

bool cCommandLineParser::flagPresent(options flag) const
{
    return std::find(mFlags.begin(), mFlags.end(), flag) != mFlags.end();
}

std::string cCommandLineParser::getStringOption(options option) const
{
    for (const auto& [key, value] : mStringOptions)
        if (key == option)
            return value;
    return std::string();
}

std::vector<std::string> cCommandLineParser::getAllStringOptions(options option) const
{
    std::vector<std::string> result;
    for (const auto& [key, value] : mStringOptions)
        if (key == option)
            result.push_back(value);
    return result;
}

std::string cCommandLineParser::usageText(const std::string& arguments, bool withBadArguments)
{
    std::string text;
    if (withBadArguments)
        text += " Bad command line arguments : " + arguments + "\n\n";
    text += " Available options are :\n";
    text += "  --h                          print this message\n";
    text += "  --log <log_file_name>        name of the used log file\n";
    text += "  --socket <ip> <port>         interactive mode over socket\n";
    text += "  --session_file <file_name>   open a previously stored session from file\n";
    text += "  --command_file <file_name>   execute interactive commands from file\n";
    text += " Names with white spaces must be included by quotes \"...\".\n";
    return text;
}

void cCommandLineParser::printUsage(const std::string& arguments, bool withBadArguments) const
{
    std::cout << usageText(arguments, withBadArguments) << std::flush;
}

}  // namespace vx3
