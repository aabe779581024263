// How the dispatch runs any reader class T: a first parse, a parse of text in memory, a reload
// that keeps sections and curves, and the look at a file's head for the open dialog. T is built
// from (store, options) and provides parseFile(name), parseString(text),
// reloadFile(name, sections) and detectFileType(name, openFileOptions).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/returnCode.h"
#include "model/cCurvePlotDataFile.h"
#include "readers/cCurvePlotParserOptions.h"
#include "readers/scan/fileAccessCheck.h"

namespace vx3 {

namespace curvePlotParserCommon {

// What a section was before a reload, to put it back when the reload fails, and to tell
// exactly what the reload changed.
struct cSectionSnapshot {
    cCurvePlotDataSection* section = nullptr;
    std::string name;
    std::vector<curvePlotProperties::cProperty> properties;  // run parameters excluded
    std::vector<curvePlotProperties::cProperty> runParameters;
    unsigned reloadFlags = 0;
    bool mustClose = false;
    std::vector<std::string> variableNames;
    std::vector<bool> variableMustClose;
    std::vector<bool> sweepMustClose;
    std::vector<uint64_t> valueCounts;
    std::vector<std::pair<double, double>> firstAndLast;  // per variable, NaN when not in memory
    std::vector<std::pair<double, double>> sweepFirstAndLast;
};

}  // namespace curvePlotParserCommon

class cCurvePlotParserCommon : public cCurvePlotParserOptions {
public:
    // The section that was added last by the latest parse (what the explorer shows first).
    cCurvePlotDataSection* getLastParsedSection() const { return mLastParsedSection; }
    void clearLastParsedSection() { mLastParsedSection = nullptr; }

    template <class T>
    returnCode parseFromFile(T& reader, cCurvePlotDataFile& store, const std::string& name);
    template <class T>
    returnCode parseFromString(T& reader, cCurvePlotDataFile& store, const std::string& text, const std::string& name);
    template <class T>
    returnCode reloadFromFile(T& reader, cCurvePlotDataFile& store, cFileDbSupport& file);
    template <class T>
    returnCode detectFileTypeImpl(T& reader, cCurvePlotDataFile& store, const std::string& name,
                                  cCurvePlotParserOpenFileOptions& openFileOptions);

    // ---- The steps around a reader, shared by the templates.
    // The file's sections, in store order.
    static std::vector<cCurvePlotDataSection*> getListOfAssociatedSections(cCurvePlotDataFile& store,
                                                                          const cFileDbSupport& file);
    static std::vector<curvePlotParserCommon::cSectionSnapshot>
    takeSnapshots(const std::vector<cCurvePlotDataSection*>& sections);
    // After a failed reload: every section as it was; sections the reload created go.
    static void restoreDataSectionsAfterFailedReload(cCurvePlotDataFile& store, const cFileDbSupport& file,
                                                     const std::vector<curvePlotParserCommon::cSectionSnapshot>& snapshots);
    // After a reload that succeeded: sections it didn't reach stay as they were (fail-safe
    // formats) or close; curves it didn't find again close.
    static void finishReloadedSections(cCurvePlotDataFile& store, bool failSafe,
                                       const std::vector<curvePlotParserCommon::cSectionSnapshot>& snapshots);
    // Sets each section's reload flags from the comparison with its snapshot.
    static void compareDataSectionsChanges(cCurvePlotDataFile& store, const cFileDbSupport& file,
                                           const std::vector<curvePlotParserCommon::cSectionSnapshot>& snapshots);

protected:
    // What parseFromFile does once a reader succeeded, and undoes when it failed.
    void finishParse(cCurvePlotDataFile& store, const std::string& name, uint64_t firstNew);
    void removeParsed(cCurvePlotDataFile& store, const std::string& name, uint64_t firstNew);
    // The open options of the first parse, kept in the file entry (kinds 43, 44, 45).
    void storeOpenFileOptions(cFileDbSupport& file) const;
    void restoreOpenFileOptions(const cFileDbSupport& file);

    cCurvePlotDataSection* mLastParsedSection = nullptr;
};

// ---------------------------------------------------------------- templates

template <class T>
returnCode cCurvePlotParserCommon::parseFromFile(T& reader, cCurvePlotDataFile& store, const std::string& name)
{
    const uint64_t count = store.getNbOfDataSections();
    mLastParsedSection = nullptr;
    if (logger().checkActionIsInterrupted())
        return action_interrupted;
    // No bus error guard around a whole reader: its jump would skip every destructor inside. The
    // readers that work on a mapping in place guard it themselves (busErrorGuard::cInPlaceReadScope).
    const returnCode code = reader.parseFile(name);
    if (code == ok || code == partly_parsed) {
        finishParse(store, name, count);
        return code;
    }
    removeParsed(store, name, count);
    return reader.checkIsInterrupted() || logger().checkActionIsInterrupted() ? action_interrupted : code;
}

template <class T>
returnCode cCurvePlotParserCommon::parseFromString(T& reader, cCurvePlotDataFile& store, const std::string& text,
                                                   const std::string& name)
{
    const uint64_t count = store.getNbOfDataSections();
    mLastParsedSection = nullptr;
    if (logger().checkActionIsInterrupted())
        return action_interrupted;
    reader.setSourceName(name);
    const returnCode code = reader.parseString(text);
    if (code == ok || code == partly_parsed) {
        if (cFileDbSupport* file = store.findDbSupportPtr(name))
            file->initDbSupport(fileDbSupport::drop);
        finishParse(store, name, count);
        return code;
    }
    removeParsed(store, name, count);
    return reader.checkIsInterrupted() ? action_interrupted : code;
}

template <class T>
returnCode cCurvePlotParserCommon::reloadFromFile(T& reader, cCurvePlotDataFile& store, cFileDbSupport& file)
{
    if (logger().checkActionIsInterrupted())
        return action_interrupted;
    const std::vector<cCurvePlotDataSection*> sections = getListOfAssociatedSections(store, file);
    const bool keepsEverything = file.getDbType() == fileDbSupport::pwf_66 ||
                                 file.getDbType() == fileDbSupport::pwf_67 ||
                                 file.getDbType() == fileDbSupport::plugin_71 ||
                                 file.getDbType() == fileDbSupport::plugin_db_access;
    if (!keepsEverything)
        file.closeFile();
    const std::vector<curvePlotParserCommon::cSectionSnapshot> snapshots = takeSnapshots(sections);
    const bool failSafe = file.checkHandlesFailSaveReload();
    for (cCurvePlotDataSection* section : sections) {
        if (keepsEverything) {
            section->setFlagMustClose(true);
            section->setReloadFlags(curvePlotDataSection::reload_values_changed);
        } else if (failSafe) {
            section->initForReloadFailSave();
        } else {
            section->initForReload(true);
        }
    }
    restoreOpenFileOptions(file);
    const std::string name = file.fileName();
    returnCode code = reader.reloadFile(name, sections);
    if (code == ok || code == partly_parsed) {
        finishReloadedSections(store, failSafe || code == partly_parsed, snapshots);
        uint64_t size = 0;
        time_t time = 0;
        if (fileAccess::getFileSizeAndTime(name, size, time))
            file.setFileSizeAndTime(size, time);
    } else {
        restoreDataSectionsAfterFailedReload(store, file, snapshots);
        if (reader.checkIsInterrupted() || logger().checkActionIsInterrupted())
            code = action_interrupted;
    }
    if (getFlagMonitorReloadChangesInSections())
        compareDataSectionsChanges(store, file, snapshots);
    store.attributeUniqueNamesToNewDataSections(0);
    return code;
}

template <class T>
returnCode cCurvePlotParserCommon::detectFileTypeImpl(T& reader, cCurvePlotDataFile& store, const std::string& name,
                                                      cCurvePlotParserOpenFileOptions& openFileOptions)
{
    if (logger().checkActionIsInterrupted())
        return action_interrupted;
    const bool wasOpen = store.findDbSupportPtr(name) != nullptr;
    const returnCode code = reader.detectFileType(name, openFileOptions);
    if (!wasOpen)
        store.removeDbSupport(name);
    if (code == ok || code == partly_parsed || code == file_format_recognized)
        return code;
    return failed;
}

}  // namespace vx3
