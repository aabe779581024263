#include "cStoreCommands.h"

#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "model/cCurvePlotDataFile.h"
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

bool readIndex(const wxWaveExplorerCommand& command, size_t argument, uint64_t& value, const cVxLogger& logger)
{
    static const char* const ordinals[] = {"1st", "2nd", "3rd"};
    if (cVxString(vxString::trim(command.getStringArgument(argument))).toUint64(value))
        return true;
    logger.warnMsg(std::string("Interactive Mode: bad ") + ordinals[argument < 3 ? argument : 2] + " argument.");
    return false;
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
        uint64_t first = store.getNbOfDataSections();
        cCurvePlotDataSection* section = store.addDataSection(name);
        if (!section)
            return kFailed;
        store.attributeUniqueNamesToNewDataSections(first);
        command.pushReturnValue(static_cast<long>(section->getSectionId()));
        return kOk;
    }
    case cmd_get_number_of_sections:
        command.pushReturnValue(static_cast<long>(store.getNbOfDataSections()));
        return kOk;
    case cmd_get_section_name: {
        uint64_t index = 0;
        if (!readIndex(command, 0, index, logger))
            return kFailed;
        cCurvePlotDataSection* section = store.getDataSectionFromIndex(index);
        if (!section) {
            logger.errorMsg("The section index " + std::to_string(index) + " is out of range.");
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
        if (!section || !readIndex(command, 1, index, logger))
            return kFailed;
        if (index >= section->getNbOfVariables()) {
            logger.errorMsg("The curve index " + std::to_string(index) + " is out of range in section \"" +
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
            row.curves.push_back({curve.name(), curve.getUnitStr(), curve.getVectorSize()});
        }
        row.hiddenCurves = row.count - shown;
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace vx3
