#include "wxWaveExplorerCommand.h"

#include <unordered_set>

#include "base/cVxFilePath.h"
#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "cInteractiveParser.h"

namespace vx3 {

using namespace waveExplorerAction;

void wxWaveExplorerCommand::clear()
{
    clearAction();
    actionType = cmd_no_command;
    sectionIndex = curveIndex = -1;
    realLineWidth = imagLineWidth = -1;
    realRed = realGreen = realBlue = imagRed = imagGreen = imagBlue = -1;
    fileName.clear();
    sectionName.clear();
    curveName.clear();
    secondCurveName.clear();
    title.clear();
    unit.clear();
    plotType.clear();
    realLineStyle = realSymbol = imagLineStyle = imagSymbol = -1;
    realNumbers.clear();
    complexFlag = false;
    firstDouble = 0.0;
    clearFlag = false;
    time = 0.0;
    intValue = 0;
    doubleValue = 0.0;
    stringValue.clear();
    portOrNumber = 0;
    mText.clear();
    mRemainder.clear();
    mWord.clear();
    mReturnValues.clear();
    // the base directory belongs to the reader of a command file and survives clear()
}

bool wxWaveExplorerCommand::parseCommandString(const std::string& text, const cVxLogger& logger)
{
    clear();
    mText = text;
    cInteractiveParser parser;
    std::string line = text;
    std::string rest;
    if (cVxString(text).trim().startsWithCaseInsensitive("show_string_in_text_editor"))
        parser.parseCmdAndLengthAndString(line, rest);
    else
        parser.parse(line, rest);
    mText = line;
    mRemainder = rest;
    if (parser.size() == 0)
        return false;
    parser.getAsString(0, mWord, true);
    if (!mWord.empty() && mWord.front() == '#') {
        actionType = cmd_comment;
        return true;
    }
    int type = cCommandTable::findCommand(mWord);
    if (type == cmd_no_command)
        return false;
    actionType = type;
    return parseArguments(parser, type, logger);
}

bool wxWaveExplorerCommand::parseArguments(const cInteractiveParser& parser, int actType, const cVxLogger&)
{
    // Every token behind the word is kept as a string argument; the performer reads them.
    for (size_t i = 1; i < parser.size(); ++i)
        pushStringArguments(parser.tokens()[i]);
    actionType = actType;
    return true;
}

bool wxWaveExplorerCommand::checkCommandIsCritical() const
{
    static const std::unordered_set<int> critical = {
        cmd_execute_command_file, cmd_register_command_file, cmd_unregister_command_file,
        cmd_start_interactive_socket, cmd_shut_down_interactive_socket, cmd_save_session_file,
        cmd_restore_session_file, cmd_save_curve_style_file, cmd_restore_curve_style_file, cmd_open_file,
        cmd_close_all, cmd_close_section, cmd_close_file, cmd_close, cmd_activate_measurements,
        cmd_activate_statistics, cmd_reload_file, cmd_add_section, cmd_add_curve, cmd_add_points};
    return critical.count(actionType) != 0;
}

std::string wxWaveExplorerCommand::computeAbsoluteFileName(const std::string& name) const
{
    cVxFilePath path(name);
    if (path.isAbsolutePath()) {
        if (path.exists())
            return path.name();
        if (path.resolveWildcardCharacters())
            return path.name();
        return name;
    }
    if (!mBaseDirectory.empty()) {
        cVxFilePath joined(mBaseDirectory, name);
        if (joined.exists())
            return joined.name();
    }
    return name;
}

std::string wxWaveExplorerCommand::computeAbsoluteFileNameMightNotExist(const std::string& name) const
{
    cVxFilePath path(name);
    if (path.isAbsolutePath() || mBaseDirectory.empty() || (!name.empty() && name.front() == '~'))
        return path.name().empty() ? name : path.name();
    return cVxFilePath(mBaseDirectory, name).name();
}

}  // namespace vx3
