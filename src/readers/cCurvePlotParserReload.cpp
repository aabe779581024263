// Reloads, and the steps around a reader that the templates of cCurvePlotParserCommon share.
#include <cmath>

#include "readers/cCurvePlotParserReaders.h"

namespace vx3 {

using namespace curvePlotParserCommon;
using curvePlotProperties::cProperty;

namespace {

std::pair<double, double> firstAndLast(const cCurvePlotVariable& variable)
{
    const uint64_t count = variable.getVectorSize();
    if (!variable.checkHasStorage() || count == 0 || variable.checkIsParameterizedLayout())
        return {NAN, NAN};
    return {variable.getDoubleValue(0), variable.getDoubleValue(count - 1)};
}

bool sameValue(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

}  // namespace

// ---------------------------------------------------------------- after a reader

void cCurvePlotParserCommon::storeOpenFileOptions(cFileDbSupport& file) const
{
    const cCurvePlotParserOpenFileOptions& open = openFileOptions();
    file.setProperty(cProperty::makeInteger(curvePlotProperties::file_open_read_data, open.getFlagReadData() ? 1 : 0));
    file.setProperty(cProperty::makeDouble(curvePlotProperties::file_open_first_x_value, open.getFirstXAxisValue()));
    file.setProperty(cProperty::makeDouble(curvePlotProperties::file_open_last_x_value, open.getLastXAxisValue()));
}

void cCurvePlotParserCommon::restoreOpenFileOptions(const cFileDbSupport& file)
{
    cCurvePlotParserOpenFileOptions& open = openFileOptions();
    open.clearOpenFileOptions();
    if (const cProperty* read = file.getFileProperty(curvePlotProperties::file_open_read_data))
        open.setFlagReadData(read->getInteger() != 0);
    if (const cProperty* first = file.getFileProperty(curvePlotProperties::file_open_first_x_value))
        open.setFirstXAxisValue(first->getReal());
    if (const cProperty* last = file.getFileProperty(curvePlotProperties::file_open_last_x_value))
        open.setLastXAxisValue(last->getReal());
}

void cCurvePlotParserCommon::finishParse(cCurvePlotDataFile& store, const std::string& name, uint64_t firstNew)
{
    if (cFileDbSupport* file = store.findDbSupportPtr(name)) {
        storeOpenFileOptions(*file);
        uint64_t size = 0;
        time_t time = 0;
        if (fileAccess::getFileSizeAndTime(name, size, time))
            file->setFileSizeAndTime(size, time);
    }
    store.attributeUniqueNamesToNewDataSections(firstNew);
    const uint64_t count = store.getNbOfDataSections();
    mLastParsedSection = count > firstNew ? store.getDataSectionFromIndex(count - 1) : nullptr;
}

void cCurvePlotParserCommon::removeParsed(cCurvePlotDataFile& store, const std::string& name, uint64_t firstNew)
{
    const uint64_t count = store.getNbOfDataSections();
    if (count > firstNew)
        store.removeLastDataSection(count - firstNew);
    store.removeDbSupport(name);
}

// ---------------------------------------------------------------- reload steps

std::vector<cCurvePlotDataSection*> cCurvePlotParserCommon::getListOfAssociatedSections(cCurvePlotDataFile& store,
                                                                                       const cFileDbSupport& file)
{
    std::vector<cCurvePlotDataSection*> sections;
    for (uint64_t i = 0; i < store.getNbOfDataSections(); ++i) {
        cCurvePlotDataSection* section = store.getDataSectionFromIndex(i);
        if (section && section->getFile() == &file)
            sections.push_back(section);
    }
    return sections;
}

std::vector<cSectionSnapshot> cCurvePlotParserCommon::takeSnapshots(const std::vector<cCurvePlotDataSection*>& sections)
{
    std::vector<cSectionSnapshot> snapshots;
    for (cCurvePlotDataSection* section : sections) {
        cSectionSnapshot snapshot;
        snapshot.section = section;
        snapshot.name = section->name();
        for (const cProperty& property : section->getProperties())
            if (property.getType() != curvePlotProperties::run_parameter)
                snapshot.properties.push_back(property);
        snapshot.runParameters = section->getStepParameters().parameters;
        snapshot.reloadFlags = section->getReloadFlags();
        snapshot.mustClose = section->checkMustClose();
        for (uint64_t i = 0; i < section->getNbOfVariables(); ++i) {
            const cCurvePlotVariable& variable = section->getVariable(i);
            snapshot.variableNames.push_back(variable.name());
            snapshot.variableMustClose.push_back(variable.checkMustClose());
            snapshot.valueCounts.push_back(variable.getVectorSize());
            snapshot.firstAndLast.push_back(firstAndLast(variable));
        }
        for (uint64_t i = 0; i < section->getNbOfSweepVariables(); ++i) {
            snapshot.sweepMustClose.push_back(section->getSweepVariable(i).checkMustClose());
            snapshot.sweepFirstAndLast.push_back(firstAndLast(section->getSweepVariable(i)));
        }
        snapshots.push_back(std::move(snapshot));
    }
    return snapshots;
}

namespace {
void restoreSection(const cSectionSnapshot& snapshot)
{
    cCurvePlotDataSection& section = *snapshot.section;
    section.setName(snapshot.name);
    section.clearProperties();
    section.clearStepParameters();
    for (const cProperty& property : snapshot.properties)
        section.addProperty(property);
    for (const cProperty& parameter : snapshot.runParameters) {
        if (parameter.isComplex())
            section.pushBackStepParameter(parameter.getName(), parameter.getReal(), parameter.getImag());
        else if (parameter.isText())
            section.pushBackStepParameter(parameter.getName(), parameter.getText());
        else
            section.pushBackStepParameter(parameter.getName(), parameter.getReal());
    }
    section.setReloadFlags(snapshot.reloadFlags);
    section.setFlagMustClose(snapshot.mustClose);
    for (uint64_t i = 0; i < snapshot.variableMustClose.size() && i < section.getNbOfVariables(); ++i)
        section.getVariable(i).setFlagMustClose(snapshot.variableMustClose[i]);
    for (uint64_t i = 0; i < snapshot.sweepMustClose.size() && i < section.getNbOfSweepVariables(); ++i)
        section.getSweepVariable(i).setFlagMustClose(snapshot.sweepMustClose[i]);
}
}  // namespace

void cCurvePlotParserCommon::restoreDataSectionsAfterFailedReload(cCurvePlotDataFile& store, const cFileDbSupport& file,
                                                                  const std::vector<cSectionSnapshot>& snapshots)
{
    for (const cSectionSnapshot& snapshot : snapshots)
        restoreSection(snapshot);
    // Sections that the failed reload created go again.
    std::vector<cCurvePlotDataSection*> created;
    for (cCurvePlotDataSection* section : getListOfAssociatedSections(store, file)) {
        bool old = false;
        for (const cSectionSnapshot& snapshot : snapshots)
            old = old || snapshot.section == section;
        if (!old)
            created.push_back(section);
    }
    store.removeDataSections(created);
}

void cCurvePlotParserCommon::finishReloadedSections(cCurvePlotDataFile& store, bool failSafe,
                                                    const std::vector<cSectionSnapshot>& snapshots)
{
    std::vector<cCurvePlotDataSection*> vanished;
    for (const cSectionSnapshot& snapshot : snapshots) {
        cCurvePlotDataSection& section = *snapshot.section;
        if (section.checkMustClose()) {
            if (failSafe)
                restoreSection(snapshot);
            else
                vanished.push_back(&section);
            continue;
        }
        // Curves that the file no longer has stay in place (indices of the others hold) but
        // lose their values.
        for (uint64_t i = 0; i < section.getNbOfVariables(); ++i)
            if (section.getVariable(i).checkMustClose())
                section.getVariable(i).freeStorage();
        for (uint64_t i = 0; i < section.getNbOfSweepVariables(); ++i)
            if (section.getSweepVariable(i).checkMustClose())
                section.getSweepVariable(i).freeStorage();
        section.invalidateNameIndex();
    }
    store.removeDataSections(vanished);
}

void cCurvePlotParserCommon::compareDataSectionsChanges(cCurvePlotDataFile& store, const cFileDbSupport& file,
                                                        const std::vector<cSectionSnapshot>& snapshots)
{
    using namespace curvePlotDataSection;
    for (cCurvePlotDataSection* section : getListOfAssociatedSections(store, file)) {
        const cSectionSnapshot* snapshot = nullptr;
        for (const cSectionSnapshot& candidate : snapshots)
            if (candidate.section == section)
                snapshot = &candidate;
        if (!snapshot) {
            section->setReloadFlags(reload_new_section);
            continue;
        }
        unsigned flags = 0;
        if (section->name() != snapshot->name)
            flags |= reload_name_changed;
        bool values = false;
        for (uint64_t i = 0; i < section->getNbOfVariables(); ++i) {
            const cCurvePlotVariable& variable = section->getVariable(i);
            if (i >= snapshot->variableNames.size()) {
                flags |= reload_variables_added;
                continue;
            }
            if (variable.checkMustClose() && !snapshot->variableMustClose[i])
                flags |= reload_variables_removed;
            if (!variable.checkMustClose() && snapshot->variableMustClose[i])
                flags |= reload_variables_added;
            const auto ends = firstAndLast(variable);
            values = values || variable.getVectorSize() != snapshot->valueCounts[i] ||
                     !sameValue(ends.first, snapshot->firstAndLast[i].first) ||
                     !sameValue(ends.second, snapshot->firstAndLast[i].second);
        }
        if (values)
            flags |= reload_values_changed;
        for (uint64_t i = 0; i < section->getNbOfSweepVariables(); ++i) {
            const auto ends = firstAndLast(section->getSweepVariable(i));
            if (i >= snapshot->sweepFirstAndLast.size() || !sameValue(ends.first, snapshot->sweepFirstAndLast[i].first) ||
                !sameValue(ends.second, snapshot->sweepFirstAndLast[i].second))
                flags |= reload_sweep_values_changed;
        }
        section->setReloadFlags(flags);
    }
}

// ---------------------------------------------------------------- reload entry points

returnCode cCurvePlotParser::reload(cCurvePlotDataFile& store, cFileDbSupport& file, const std::string& name)
{
    mLastParsedSection = nullptr;
    if (!fileAccess::checkFileExists(name)) {
        logger().errorMsg("The file \"" + name + "\" does no longer exist.");
        return file_not_found;
    }
    const unsigned dbType = file.getDbType();
    returnCode code = failed;
    std::string what = "The file \"" + name + "\"";
    if (dbType == fileDbSupport::plugin_71) {
        if (!file.checkFileChanged())
            return ok;
        cCurvePlotParserPlugin reader(store, *this, nullptr);
        code = reloadFromFile(reader, store, file);
    } else {
        // The reader that made the file's sections, and how the messages name the file.
        struct cReloadReader {
            unsigned firstDbType, lastDbType, parserType;
            const char* word;
        };
        using namespace curvePlotParser;
        static const cReloadReader kReaders[] = {
            {fileDbSupport::nutmeg_ascii_4, fileDbSupport::nutmeg_binary_12, nutmeg, "nutmeg"},
            {fileDbSupport::csv, fileDbSupport::csv, tabulated_fast, "csv"},
            {fileDbSupport::tabulated_23, fileDbSupport::tabulated_31, tabulated_slow, "csv"},
            {fileDbSupport::vcd_63, fileDbSupport::vcd_63, vcd, "vcd"},
            {fileDbSupport::pwf_66, fileDbSupport::pwf_66, pwf, "pwf"},
            {fileDbSupport::html, fileDbSupport::html, html, "html"},
            {fileDbSupport::tecplot, fileDbSupport::tecplot, tecplot, "tecplot"},
        };
        for (const auto& entry : kReaders) {
            if (dbType < entry.firstDbType || dbType > entry.lastDbType)
                continue;
            what = std::string("The ") + entry.word + " file \"" + name + "\"";
            code = withReader(entry.parserType, store,
                              [&](auto& reader) { return reloadFromFile(reader, store, file); });
            // A table that has grown into one the fast reader hands over (runs, an axis to clean)
            // goes to the slow reader, as it would when the file is opened.
            if (entry.parserType == tabulated_fast && code == failed)
                code = withReader(tabulated_slow, store,
                                  [&](auto& reader) { return reloadFromFile(reader, store, file); });
            break;
        }
    }
    if (code == partly_parsed)
        logger().errorMsg(what + " was only partially updated.");
    else if (code == action_interrupted)
        logger().infoMsg("File parsing was interrupted while parsing \"" + name + "\".");
    else if (code != ok)
        logger().errorMsg(what + " could not be updated.");
    if (code == ok || code == partly_parsed) {
        const std::vector<cCurvePlotDataSection*> sections = getListOfAssociatedSections(store, file);
        mLastParsedSection = sections.empty() ? nullptr : sections.back();
    }
    return code;
}

returnCode cCurvePlotParser::reloadFile(cCurvePlotDataFile& store, const std::string& name, const std::string& newName,
                                        std::vector<cFileDbSupport*>& files)
{
    cFileDbSupport* file = store.findDbSupportPtr(name);
    if (!file)
        file = store.findDbSupportPtr(resolveFileName(name));
    if (!file)
        file = store.findDbSupportPtrShortName(name);
    if (!file) {
        logger().errorMsg("The file \"" + name + "\" was not found in the list of open files.");
        return failed;
    }
    if (!newName.empty() && newName != file->fileName()) {
        const std::string oldBase = file->baseName();
        file->setFileName(resolveFileName(newName));
        // Sections named after the file (tables are) follow its new name, so that the reload
        // finds them again instead of adding new ones beside them.
        const std::string& newBase = file->baseName();
        for (cCurvePlotDataSection* section : getListOfAssociatedSections(store, *file)) {
            const std::string& old = section->name();
            if (!oldBase.empty() && (old == oldBase || old.rfind(oldBase + " - ", 0) == 0))
                section->setName(newBase + old.substr(oldBase.size()));
        }
    }
    const unsigned type = file->getDbType();
    if (type != fileDbSupport::pwf_66 && type != fileDbSupport::pwf_67 && type != fileDbSupport::plugin_71 &&
        type != fileDbSupport::plugin_db_access)
        file->closeFile();
    files.push_back(file);
    return reload(store, *file, file->fileName());
}

returnCode cCurvePlotParser::reloadFile(cCurvePlotDataFile& store, const std::string& name, const std::string& newName)
{
    std::vector<cFileDbSupport*> files;
    return reloadFile(store, name, newName, files);
}

returnCode cCurvePlotParser::reloadMarkedFiles(cCurvePlotDataFile& store, const std::vector<cFileDbSupport*>& files)
{
    returnCode result = ok;
    for (cFileDbSupport* file : files) {
        if (!file || !file->checkFileChanged())
            continue;
        const returnCode code = reload(store, *file, file->fileName());
        if (code == action_interrupted)
            return code;
        if (code != ok && result == ok)
            result = code;
    }
    return result;
}

}  // namespace vx3
