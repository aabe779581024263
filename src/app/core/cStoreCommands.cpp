#include "cStoreCommands.h"

#include <complex>
#include <fstream>

#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "model/cCurvePlotDataFile.h"
#include "readers/cCurvePlotParser.h"
#include "wxWaveExplorerCommand.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {

constexpr int kOk = 0;
constexpr int kFailed = 3;

// A section named as the browser shows it, or else by the name its reader gave.
cCurvePlotDataSection* findSection(cCurvePlotDataFile& store, const std::string& name)
{
    uint64_t index = store.getDataSectionIndexFromCompleteName(name);
    if (index != cCurvePlotDataFile::npos)
        return store.getDataSectionFromIndex(index);
    return store.getDataSectionFromName(name);
}

cCurvePlotDataSection* findSectionOrLog(cCurvePlotDataFile& store, const std::string& name, const cVxLogger& logger)
{
    cCurvePlotDataSection* section = findSection(store, name);
    if (!section)
        logger.errorMsg("The section \"" + name + "\" was not found.");
    return section;
}

// Integer arguments arrive as numbers; a negative one names nothing.
bool readIndex(const wxWaveExplorerCommand& command, uint64_t& value)
{
    double number = command.getDoubleArg(0, -1.0);
    if (number < 0)
        return false;
    value = static_cast<uint64_t>(number);
    return true;
}

// Sections made by add_section belong to no file: only those take curves from commands.
bool checkIsUserSection(const cCurvePlotDataSection& section) { return section.getFile() == nullptr; }

cCurvePlotDataSection* findUserSection(cCurvePlotDataFile& store, const std::string& name, const cVxLogger& logger)
{
    cCurvePlotDataSection* section = findSectionOrLog(store, name, logger);
    if (section && !checkIsUserSection(*section)) {
        logger.errorMsg("The section \"" + name + "\" was not defined by the user.");
        logger.errorMsg("It is not possible to add curves to section \"" + name + "\".");
        return nullptr;
    }
    return section;
}

cCurvePlotVariable* findCurveOrLog(cCurvePlotDataSection& section, const std::string& sectionName,
                                   const std::string& curveName, const cVxLogger& logger)
{
    uint64_t index = section.findVariableIndex(0, curveName, false);
    if (index == cCurvePlotDataSection::npos) {
        logger.errorMsg("The curve \"" + curveName + "\" was not found in section \"" + sectionName + "\".");
        return nullptr;
    }
    return &section.getVariable(index);
}

// x y pairs, or x re im triples for a complex curve; nothing is added from a bad count.
bool splitPoints(const std::vector<double>& numbers, bool complex, std::vector<double>& xs, std::vector<double>& re,
                 std::vector<double>& im, const cVxLogger& logger)
{
    const size_t step = complex ? 3 : 2;
    if (numbers.size() % step != 0) {
        logger.errorMsg("Bad arguments for interactive command.");
        return false;
    }
    for (size_t i = 0; i < numbers.size(); i += step) {
        xs.push_back(numbers[i]);
        re.push_back(numbers[i + 1]);
        if (complex)
            im.push_back(numbers[i + 2]);
    }
    return true;
}

bool appendPoints(cCurvePlotVariable& curve, bool complex, const std::vector<double>& xs,
                  const std::vector<double>& re, const std::vector<double>& im)
{
    curve.setGrowthFlag(true);
    for (size_t i = 0; i < xs.size(); ++i) {
        bool ok = complex ? curve.pushBackValuePair(xs[i], std::complex<double>(re[i], im[i]))
                          : curve.pushBackValuePair(xs[i], re[i]);
        if (!ok)
            return false;
    }
    curve.resetMinMaxInitialized();
    return true;
}

int addCurve(wxWaveExplorerCommand& command, cCurvePlotDataFile& store, const cVxLogger& logger)
{
    cCurvePlotDataSection* section = findUserSection(store, command.sectionName, logger);
    if (!section)
        return kFailed;
    if (section->findVariableIndex(0, command.curveName, false) != cCurvePlotDataSection::npos) {
        logger.errorMsg("The curve \"" + command.curveName + "\" already exists in  section \"" +
                        command.sectionName + "\".");
        return kFailed;
    }
    std::vector<double> xs, re, im;
    if (!splitPoints(command.realNumbers, command.complexFlag, xs, re, im, logger))
        return kFailed;
    using namespace curvePlotProperties;
    const data_type dataType = command.complexFlag ? parameterized_double_complex : parameterized_double;
    const cCurvePlotDataType* type =
        command.unit.empty()
            ? store.addType(std::string(), dataType, curvePlotDataType::guessUnitFromVariableName(command.curveName))
            : store.addTypeWithUnitString(command.unit, dataType, command.unit);
    const std::string xUnit = command.stringValue.empty() ? std::string("s") : command.stringValue;
    const cCurvePlotDataType* xType = store.addTypeWithUnitString(xUnit, data_double, xUnit);
    uint64_t index = section->addVariable(type, command.curveName);
    cCurvePlotVariable& curve = section->getVariable(index);
    curve.setXAxisType(xType);
    bool ok = command.complexFlag ? curve.setParameterizedSize(xs.size(), sizeof(double), sizeof(std::complex<double>))
                                  : curve.setParameterizedSize(xs.size(), sizeof(double), sizeof(double));
    if (!ok || !appendPoints(curve, command.complexFlag, xs, re, im)) {
        section->removeVariable(index);
        logger.errorMsg("Bad arguments for interactive command.");
        return kFailed;
    }
    return kOk;
}

int addPoints(wxWaveExplorerCommand& command, cCurvePlotDataFile& store, const cVxLogger& logger)
{
    cCurvePlotDataSection* section = findUserSection(store, command.sectionName, logger);
    if (!section)
        return kFailed;
    cCurvePlotVariable* curve = findCurveOrLog(*section, command.sectionName, command.curveName, logger);
    if (!curve)
        return kFailed;
    const bool complex = curve->getDataType() == curvePlotProperties::parameterized_double_complex;
    std::vector<double> xs, re, im;
    if (!splitPoints(command.realNumbers, complex, xs, re, im, logger))
        return kFailed;
    if (!appendPoints(*curve, complex, xs, re, im)) {
        logger.errorMsg("Bad arguments for interactive command.");
        return kFailed;
    }
    return kOk;
}

// The unit as an axis shows it; units without a short text (seconds) fall back to the name the
// file gave the type, then to the unit's long name.
std::string unitText(const cCurvePlotDataType* type)
{
    if (!type)
        return std::string();
    std::string text = type->getUnitStr();
    if (text.empty())
        text = type->name();
    if (text.empty())
        text = type->getUnitName();
    return text;
}

std::string curveXUnit(const cCurvePlotDataSection& section, const cCurvePlotVariable& curve)
{
    if (curve.getXAxisType())
        return unitText(curve.getXAxisType());
    const uint64_t sweeps = section.getNbOfSweepVariables();
    return sweeps ? unitText(section.getSweepVariable(sweeps - 1).getType()) : std::string();
}

std::string sectionXUnit(const cCurvePlotDataSection& section)
{
    if (section.getNbOfSweepVariables() > 0)
        return unitText(section.getSweepVariable(section.getNbOfSweepVariables() - 1).getType());
    if (section.getNbOfVariables() > 0)
        return curveXUnit(section, section.getVariable(0));
    return std::string();
}

// Text files equal line by line, whatever their line ends.
bool compareTextFiles(const std::string& a, const std::string& b)
{
    std::ifstream first(a, std::ios::binary), second(b, std::ios::binary);
    if (!first || !second)
        return false;
    std::string lineA, lineB;
    while (true) {
        bool moreA = static_cast<bool>(std::getline(first, lineA));
        bool moreB = static_cast<bool>(std::getline(second, lineB));
        if (moreA != moreB)
            return false;
        if (!moreA)
            return true;
        if (!lineA.empty() && lineA.back() == '\r')
            lineA.pop_back();
        if (!lineB.empty() && lineB.back() == '\r')
            lineB.pop_back();
        if (lineA != lineB)
            return false;
    }
}

// Hands the reader's messages and the question whether the user interrupted to the logger of
// the caller.
class cForwardingCallBack : public cVxLoggerCallBack {
public:
    explicit cForwardingCallBack(const cVxLogger& target) : mTarget(target) {}
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        mTarget.sendMsg(severity, text);
    }
    bool loggerCallBackVirtualCheckActionIsInterrupted() override { return mTarget.checkActionIsInterrupted(); }

private:
    const cVxLogger& mTarget;
};

int resultOf(returnCode code)
{
    switch (code) {
    case ok:
    case partly_parsed:
        return kOk;
    case file_not_found:
        return 4;
    case action_interrupted:
        return action_interrupted;
    default:
        return kFailed;
    }
}

int openFile(const std::string& name, cCurvePlotDataFile& store, const cVxLogger& logger)
{
    if (name.empty()) {
        logger.warnMsg("Interactive Mode: bad 1st argument.");
        return kFailed;
    }
    cForwardingCallBack forward(logger);
    cCurvePlotParser parser;
    parser.logger().setLoggerCallBack(&forward);
    const int result = resultOf(parser.parse(store, name));
    parser.logger().setLoggerCallBack(nullptr);
    return result;
}

// The argument names an open file (its path or its short name) or one of its sections.
int reloadFile(const std::string& name, cCurvePlotDataFile& store, const cVxLogger& logger)
{
    std::string fileName;
    if (const cFileDbSupport* file = store.findDbSupportPtr(name))
        fileName = file->fileName();
    else if (const cFileDbSupport* file = store.findDbSupportPtrShortName(name))
        fileName = file->fileName();
    else if (const cCurvePlotDataSection* section = findSection(store, name); section && section->getFile())
        fileName = section->getFile()->fileName();
    if (fileName.empty()) {
        logger.errorMsg("The file \"" + name + "\" was not found in the list of open files.");
        return kFailed;
    }
    cForwardingCallBack forward(logger);
    cCurvePlotParser parser;
    parser.logger().setLoggerCallBack(&forward);
    const int result = resultOf(parser.reloadFile(store, fileName, std::string()));
    parser.logger().setLoggerCallBack(nullptr);
    return result;
}

}  // namespace

int cStoreCommands::perform(wxWaveExplorerCommand& command, cCurvePlotDataFile& store, const cVxLogger& logger)
{
    cVxScopedLock lock(store.getMutex());
    switch (command.actionType) {
    case cmd_add_section: {
        const std::string& name = command.getStringArgument(0);
        if (name.empty()) {
            logger.warnMsg("Interactive Mode: bad 1st argument.");
            return kFailed;
        }
        cCurvePlotDataSection* existing = findSection(store, name);
        if (existing && checkIsUserSection(*existing)) {
            logger.errorMsg("The section \"" + name + "\" already exists.");
            return kFailed;
        }
        uint64_t first = store.getNbOfDataSections();
        cCurvePlotDataSection* section = store.addDataSection(name);
        if (!section)
            return kFailed;
        store.attributeUniqueNamesToNewDataSections(first);
        return kOk;
    }
    case cmd_add_curve:
        return addCurve(command, store, logger);
    case cmd_add_points:
        return addPoints(command, store, logger);
    case cmd_get_number_of_post_process_sections: {
        uint64_t count = 0;
        for (uint64_t i = 0; i < store.getNbOfDataSections(); ++i) {
            const cCurvePlotDataSection* section = store.getDataSectionFromIndex(i);
            if (section && section->getAnalysisType() == curvePlotDataSection::post_process)
                ++count;
        }
        command.pushReturnValue(static_cast<long>(count));
        return kOk;
    }
    case cmd_get_section_file_name:
    case cmd_get_section_x_unit: {
        cCurvePlotDataSection* section = findSectionOrLog(store, command.getStringArgument(0), logger);
        if (!section)
            return kFailed;
        if (command.actionType == cmd_get_section_x_unit)
            command.pushReturnValue(sectionXUnit(*section));
        else
            command.pushReturnValue(section->getFile() ? section->getFile()->fileName() : std::string());
        return kOk;
    }
    case cmd_get_curve_y_unit:
    case cmd_get_curve_x_unit: {
        const std::string& sectionName = command.getStringArgument(0);
        cCurvePlotDataSection* section = findSectionOrLog(store, sectionName, logger);
        if (!section)
            return kFailed;
        cCurvePlotVariable* curve = findCurveOrLog(*section, sectionName, command.getStringArgument(1), logger);
        if (!curve)
            return kFailed;
        command.pushReturnValue(command.actionType == cmd_get_curve_y_unit ? unitText(curve->getType())
                                                                            : curveXUnit(*section, *curve));
        return kOk;
    }
    case cmd_open_file:
        return openFile(command.getStringArgument(0), store, logger);
    case cmd_reload_file:
        return reloadFile(command.getStringArgument(0), store, logger);
    case cmd_close_file: {
        const std::string& name = command.getStringArgument(0);
        if (!store.findDbSupportPtr(name)) {
            logger.errorMsg("The file \"" + name + "\" was not found in the list of open files.");
            return kFailed;
        }
        store.removeDbSupport(name);
        return kOk;
    }
    case cmd_compare_files: {
        const std::string& first = command.getStringArgument(0);
        bool same = compareTextFiles(first, command.getStringArgument(1));
        if (same)
            logger.infoMsg("File comparison for \"" + first + "\" succeeded.");
        else
            logger.errorMsg("File comparison for \"" + first + "\" failed.");
        return same ? kOk : kFailed;
    }
    case cmd_get_number_of_sections:
        command.pushReturnValue(static_cast<long>(store.getNbOfDataSections()));
        return kOk;
    case cmd_get_section_name: {
        uint64_t index = 0;
        cCurvePlotDataSection* section = readIndex(command, index) ? store.getDataSectionFromIndex(index) : nullptr;
        if (!section) {
            logger.errorMsg("Could not find section \"" + std::to_string(static_cast<long long>(command.getDoubleArg(0, -1.0))) + "\".");
            return kFailed;
        }
        command.pushReturnValue(section->completeName());
        return kOk;
    }
    case cmd_get_section_number_of_curves:
    case cmd_get_section_number_of_sweep_variables:
    case cmd_get_section_number_of_cuts: {
        cCurvePlotDataSection* section = findSectionOrLog(store, command.getStringArgument(0), logger);
        if (!section)
            return kFailed;
        uint64_t count = command.actionType == cmd_get_section_number_of_curves ? section->getNbOfVariables()
                         : command.actionType == cmd_get_section_number_of_cuts ? section->computeNbOfCutsPerCurve()
                                                                                 : section->getNbOfSweepVariables();
        command.pushReturnValue(static_cast<long>(count));
        return kOk;
    }
    case cmd_get_curve_name: {
        cCurvePlotDataSection* section = findSectionOrLog(store, command.getStringArgument(0), logger);
        uint64_t index = 0;
        if (!section)
            return kFailed;
        if (!readIndex(command, index) || index >= section->getNbOfVariables()) {
            logger.errorMsg("The curve number " + std::to_string(static_cast<long long>(command.getDoubleArg(0, -1.0))) + " was not found in section \"" +
                            command.getStringArgument(0) + "\".");
            return kFailed;
        }
        command.pushReturnValue(section->getVariable(index).name());
        return kOk;
    }
    case cmd_close_section: {
        cCurvePlotDataSection* section = findSectionOrLog(store, command.getStringArgument(0), logger);
        if (!section)
            return kFailed;
        store.removeDataSection(section);
        return kOk;
    }
    case cmd_close_all:
        store.clearExceptToolBox();
        return kOk;
    default:
        return not_a_store_command;
    }
}

bool cStoreCommands::checkChangesStore(int actionType)
{
    switch (actionType) {
    case cmd_add_section:
    case cmd_add_curve:
    case cmd_add_points:
    case cmd_close_section:
    case cmd_close_file:
    case cmd_close_all:
    case cmd_open_file:
    case cmd_reload_file:
        return true;
    default:
        return false;
    }
}

cStoreCommands::cBrowserRows cStoreCommands::listForBrowser(const cCurvePlotDataFile& constStore, size_t limit)
{
    // The store's lookups are not const (they keep caches); reading them changes nothing visible.
    cCurvePlotDataFile& store = const_cast<cCurvePlotDataFile&>(constStore);
    cVxScopedLock lock(store.getMutex());
    cBrowserRows rows;
    for (uint64_t i = 0; i < store.getNbOfDataSections(); ++i) {
        const cCurvePlotDataSection* section = store.getDataSectionFromIndex(i);
        if (!section)
            continue;
        cSectionRow row;
        row.name = section->completeName();
        row.count = section->getNbOfVariables();
        uint64_t shown = std::min<uint64_t>(row.count, limit);
        for (uint64_t k = 0; k < shown; ++k) {
            const cCurvePlotVariable& curve = section->getVariable(k);
            // Values still in the file count as their reader counted them.
            row.curves.push_back({curve.name(), curve.getUnitStr(), section->getVariableValueCount(k)});
        }
        row.hiddenCurves = row.count - shown;
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace vx3
