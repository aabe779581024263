// One parsed text command: its word, its arguments and, after it ran, its result strings.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cCommandTable.h"
#include "cVxAction.h"

namespace vx3 {

class cVxLogger;
class cInteractiveParser;

class wxWaveExplorerCommand : public wxWaveExplorerAction {
public:
    wxWaveExplorerCommand() { clear(); }
    void clear();

    // True when the first command of text was understood. consumed() tells where the next one
    // starts, so that a long text is walked without copying what is left of it.
    bool parseCommandString(std::string_view text, const cVxLogger& logger);
    // Reads the arguments behind the command word.
    bool parseArguments(const cInteractiveParser& parser, int actType, const cVxLogger& logger);

    static bool getCmdAndCallTip(int actType, std::string& name, std::string& tip)
    {
        return cCommandTable::getCmdAndCallTip(actType, name, tip);
    }
    static bool getCmdDescription(int actType, std::string& text)
    {
        return cCommandTable::getCmdDescription(actType, text);
    }
    // help: every word with its arguments, or one word with its description.
    static bool generateHelpStrings(std::vector<std::string>& results, const std::string& command);
    static bool generateDocumentationFromHelpStrings(const std::string& fileName);
    // For a command carried in a dropped text: a plot name "*" becomes the given plot.
    static std::string substitutePlotName(const std::string& command, const std::string& plotName);

    // Commands that must wait for files and plots to settle (the explorer's queue rule).
    bool checkCommandIsCritical() const;

    void pushReturnValue(long value) { mReturnValues.push_back(std::to_string(value)); }
    void pushReturnValue(const std::string& value) { mReturnValues.push_back(value); }
    const std::vector<std::string>& returnValues() const { return mReturnValues; }
    std::vector<std::string>& returnValues() { return mReturnValues; }

    const std::string& text() const { return mText; }
    size_t consumed() const { return mConsumed; }
    const std::string& word() const { return mWord; }
    const std::string& baseDirectory() const { return mBaseDirectory; }
    void setBaseDirectory(const std::string& directory) { mBaseDirectory = directory; }
    // Resolves a file argument against the directory of the command file being read.
    std::string computeAbsoluteFileName(const std::string& name) const;
    std::string computeAbsoluteFileNameMightNotExist(const std::string& name) const;

    // Fields of the typed argument readers.
    int sectionIndex = -1;
    int curveIndex = -1;
    int realLineWidth = -1, imagLineWidth = -1;
    int realRed = -1, realGreen = -1, realBlue = -1;
    int imagRed = -1, imagGreen = -1, imagBlue = -1;
    std::string fileName, sectionName, curveName, secondCurveName, title, unit, plotType;
    int realLineStyle = -1, realSymbol = -1, imagLineStyle = -1, imagSymbol = -1;
    std::vector<double> realNumbers;
    bool complexFlag = false;
    double firstDouble = 0.0;
    bool clearFlag = false;
    double time = 0.0;
    int64_t intValue = 0;
    double doubleValue = 0.0;
    std::string stringValue;
    int64_t portOrNumber = 0;

private:
    // False with index at the argument that failed.
    bool parseForm(const char* form, const cInteractiveParser& parser, size_t& index);
    bool readArgument(char kind, const cInteractiveParser& parser, size_t index);
    bool parseCurveValues(const cInteractiveParser& parser, const cVxLogger& logger);
    // set_option and its two siblings: the key decides the number.
    bool parseOption(const cInteractiveParser& parser, bool guiFirst, const cVxLogger& logger);
    void warnBadArgument(size_t index, const cVxLogger& logger) const;

    std::string mText;
    size_t mConsumed = 0;
    std::string mWord;
    std::string mBaseDirectory;
    std::vector<std::string> mReturnValues;
};

}  // namespace vx3
