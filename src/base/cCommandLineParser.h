// The program's command line: flags, options with values, unknown "--name=value" pairs and the
// positional file names. A bad argument marks the parse as failed but never stops the walk.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vx3 {

namespace commandLineParser {
enum options : int {
    undefined = 0,
    interactive = 1,
    install = 2,
    run = 3,
    use_existing = 4,
    resolve = 5,
    test = 6,
    verbose = 7,
    silent = 8,
    debug = 9,
    help = 10,
    log_file = 11,
    socket = 12,
    nocli = 13,
    command_file = 19
};
}  // namespace commandLineParser

class cCommandLineParser {
public:
    cCommandLineParser() = default;
    // Parse at once; a thrown parse failure is printed, never passed on.
    cCommandLineParser(int argc, const char* const* argv);

    bool parseCommandLine(const std::string& text);
    bool parseCommandLine(int argc, const char* const* argv);
    void clear();

    // Joins argv[1..] as main does: quoted items and options as they stand, items with blanks quoted.
    static std::string assembleArguments(int argc, const char* const* argv);
    static std::string usageText(const std::string& arguments, bool withBadArguments);
    void printUsage(const std::string& arguments, bool withBadArguments) const;

    bool flagPresent(commandLineParser::options flag) const;
    bool helpFlagPresent() const { return flagPresent(commandLineParser::help); }
    bool verboseFlagPresent() const { return flagPresent(commandLineParser::verbose); }
    bool silentFlagPresent() const { return flagPresent(commandLineParser::silent); }
    bool debugFlagPresent() const { return flagPresent(commandLineParser::debug); }
    bool nocliFlagPresent() const { return flagPresent(commandLineParser::nocli); }
    bool interactiveFlagPresent() const { return flagPresent(commandLineParser::interactive); }
    bool socketPresent() const { return flagPresent(commandLineParser::socket); }

    // First value stored under the option, or empty.
    std::string getStringOption(commandLineParser::options option) const;
    std::vector<std::string> getAllStringOptions(commandLineParser::options option) const;
    std::string commandFileName() const { return getStringOption(commandLineParser::command_file); }
    std::string logFileName() const { return getStringOption(commandLineParser::log_file); }
    unsigned logSeverity() const { return mLogSeverity; }
    const std::string& socketAddress() const { return mSocketAddress; }
    unsigned socketPort() const { return mSocketPort; }
    const std::vector<std::string>& stringArguments() const { return mStringArguments; }
    const std::vector<std::pair<std::string, std::string>>& otherOptions() const { return mOtherOptions; }
    const std::string& programName() const { return mProgramName; }

    // Accepted for compatibility with other tools of the family; this program reads none.
    bool onlyInstantiatedSubcircuitsFlagPresent() const { return false; }
    bool incrementFlagPresent() const { return false; }
    bool overwriteFlagPresent() const { return false; }
    std::string libraryName() const { return std::string(); }
    std::string cellName() const { return std::string(); }
    std::string viewName() const { return std::string(); }
    std::string dataBaseName() const { return std::string(); }
    std::string outPathName() const { return std::string(); }

private:
    struct cItem {
        std::string text;
        bool found = false;
    };
    // Reads the next item (quoted items keep their blanks, quotes removed).
    static cItem nextItem(const std::string& text, size_t& position);
    bool analyzeSingleMinus(const std::string& name);
    bool analyzeDoubleMinus(const std::string& name, const std::string& value, bool hasValue,
                            const std::string& text, size_t& position);

    std::string mProgramName;
    std::vector<commandLineParser::options> mFlags;
    std::vector<std::pair<commandLineParser::options, std::string>> mStringOptions;
    std::vector<std::pair<std::string, std::string>> mOtherOptions;
    std::vector<std::string> mStringArguments;
    std::string mSocketAddress;
    unsigned mSocketPort = 0;
    unsigned mLogSeverity = 3;
};

}  // namespace vx3
