// The store of all open files, their sections and the shared curve types.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/cVxThread.h"
#include "model/cCurvePlotDataSearch.h"
#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotDataType.h"
#include "model/cFileDbSupport.h"

namespace vx3 {

class cVxLogger;

class cCurvePlotDataFile {
public:
    static constexpr uint64_t npos = std::numeric_limits<uint64_t>::max();

    cCurvePlotDataFile();
    ~cCurvePlotDataFile();
    cCurvePlotDataFile(const cCurvePlotDataFile&) = delete;
    cCurvePlotDataFile& operator=(const cCurvePlotDataFile&) = delete;

    // Guards the lists of sections, files and types; recursive, so a holder may call any method.
    cVxMutex& getMutex() { return mMutex; }

    // ---- Sections. Pointers stay valid until the section is removed.
    cCurvePlotDataSection* addDataSection(cFileDbSupport& file);
    cCurvePlotDataSection* addDataSection(const std::string& name, cFileDbSupport* file = nullptr);
    cCurvePlotDataSection* insertDataSection(uint64_t before, const std::string& name, cFileDbSupport* file = nullptr);
    // Tool box sections come first in the list.
    cCurvePlotDataSection* insertNewToolBoxSection(const std::string& name);
    bool removeDataSection(const cCurvePlotDataSection* section);
    // The first section whose complete name is name.
    bool removeDataSection(const std::string& name);
    uint64_t removeDataSections(const std::vector<cCurvePlotDataSection*>& sections);
    bool removeLastDataSection();
    uint64_t removeLastDataSection(uint64_t count);

    uint64_t getNbOfDataSections() const { return mSections.size(); }
    cCurvePlotDataSection* findSectionFromId(uint64_t id) const;
    cCurvePlotDataSection* getDataSectionFromIndex(uint64_t index);
    uint64_t getDataSectionIndex(const cCurvePlotDataSection* section);
    // The first section that doesn't belong to the tool box.
    cCurvePlotDataSection* getFirstFileDataSection();
    // By the name that the reader gave, from index start on.
    cCurvePlotDataSection* getDataSectionFromName(const std::string& name, uint64_t start = 0);
    cCurvePlotDataSection* getDataSectionPtrFromName(const std::string& name) { return getDataSectionFromName(name); }
    uint64_t getDataSectionIndexFromName(const std::string& name, uint64_t start = 0);
    uint64_t getDataSectionIndexFromCompleteName(const std::string& completeName);
    std::vector<cCurvePlotDataSection*> getAllDataSectionFromName(const std::string& name);
    // Sections for which other.checkSectionIsSimilar holds, the section itself excluded.
    std::vector<cCurvePlotDataSection*> findSimilarSectionsSameFile(const cCurvePlotDataSection& section,
                                                                    bool withSweepVariables);
    std::vector<cCurvePlotDataSection*> findSimilarSectionsAllFiles(const cCurvePlotDataSection& section,
                                                                    bool withSweepVariables);
    // The id that the next section will get.
    uint64_t getNextSectionId() const { return mNextSectionId; }

    // ---- Files. findDbSupport creates the entry when missing and throws for an empty name.
    cFileDbSupport& findDbSupport(const std::string& fileName);
    cFileDbSupport& findDbSupport(const std::string& fileName, unsigned dbType);
    cFileDbSupport* findDbSupportPtr(const std::string& fileName) const;
    cFileDbSupport* findDbSupportPtrShortName(const std::string& shortName) const;
    cFileDbSupport* findDbSupportFromId(uint64_t id) const;
    cFileDbSupport* getToolBoxDbSupport();
    uint64_t getNbOfDbFiles() const { return mFiles.size(); }
    cFileDbSupport* dbFile(uint64_t index) const;
    uint64_t getDbSupportIndexFromName(const std::string& fileName) const;
    // Removes the file's entry together with all its sections.
    bool removeDbSupport(const std::string& fileName);
    bool checkShortFileNameIsUnique(const std::string& shortName) const;
    uint64_t getNbOfFilesExceptToolBox() const;
    // Relative names are taken from baseDirectory; paths are compared after normalisation.
    bool checkIfFileHasAlreadyBeenOpened(const std::string& fileName, const std::string& baseDirectory) const;

    // ---- Closing
    void markAllSectionsAndFiles(bool flag);
    void unmarkUnclosableFilesAndSections();
    // Marked sections first (fixing parent ids), then marked files without sections. Returns the sections closed.
    uint64_t closeMarkedFilesAndSections();
    uint64_t closeMarkedFilesAndSectionsExceptToolBox();
    // Everything goes, except tool box sections that are still referred to.
    void clear();
    void clearExceptToolBox();
    // Keeps tool box sections in use from being closed; true if one was kept.
    bool vetoClosingOnToolBoxSectionsStillInUse();

    // ---- Memory of loaded values
    uint64_t countCurveMemoryThatCanBeReleased() const;
    uint64_t countNumberOfCurvesThatCanBeReleased() const;
    // Frees the values of curves that can be loaded again and aren't in use. Returns the bytes freed.
    uint64_t collectGarbage();

    // ---- Types: every distinct type exists once; pointers live as long as the store.
    const cCurvePlotDataType* addType();  // unnamed double, unit Second
    const cCurvePlotDataType* addType(const std::string& name, bool complex, bool singlePrecision,
                                      curvePlotDataType::dataUnit unit);
    const cCurvePlotDataType* addType(const std::string& name, curvePlotProperties::data_type dataType,
                                      curvePlotDataType::dataUnit unit);
    const cCurvePlotDataType* addType(const std::string& name, curvePlotProperties::data_type dataType,
                                      curvePlotDataType::dataUnit unit, uint64_t constantStringSize);
    const cCurvePlotDataType* addType(const std::string& name, curvePlotProperties::data_type dataType,
                                      curvePlotDataType::dataUnit unit, const std::vector<std::string>& enumStrings);
    // A unit spelled by the file: known words become the unit, others stay as text.
    const cCurvePlotDataType* addTypeWithUnitString(const std::string& name, curvePlotProperties::data_type dataType,
                                                    const std::string& unitText);
    const cCurvePlotDataType* addConstantStringType(const std::string& name, uint64_t size);
    const cCurvePlotDataType* addStructMemberType(const std::string& name,
                                                  const std::vector<const cCurvePlotDataType*>& members,
                                                  const std::vector<std::string>& fieldNames);
    const cCurvePlotDataType* addSinglePrecisionType(const cCurvePlotDataType* type);
    const cCurvePlotDataType* addComplexType(const cCurvePlotDataType* type);
    const cCurvePlotDataType* addRealType(const cCurvePlotDataType* type);
    const cCurvePlotDataType* getTypeFromTypeIndex(uint64_t index) const;
    uint64_t getNbOfTypes() const { return mTypes.size(); }

    // ---- Instance trees of the curve names (flag as in cCurvePlotDataSection::createCurveHierarchy)
    void createCurveHierarchy(uint64_t firstSectionIndex, bool flag = true);
    void createCurveHierarchy(const std::vector<cCurvePlotDataSection*>& sections, bool flag = true);
    void createCurveHierarchyOfLastSection(bool flag = true);

    // ---- Search (cCurvePlotDataFileSearch.cpp). Each evaluates expression through search for
    // every candidate; an expression that search refuses matches nothing.
    std::vector<cCurvePlotDataSection*> findMatchingSections(const std::string& expression,
                                                             cCurvePlotSearchVirtual& search, const cVxLogger& logger);
    std::vector<std::pair<cCurvePlotDataSection*, uint64_t>> findMatchingCurves(const std::string& expression,
                                                                                cCurvePlotSearchVirtual& search,
                                                                                const cVxLogger& logger);
    std::vector<std::pair<cCurvePlotDataSection*, const cCurvePlotDataCurveHierarchy*>> findMatchingInstances(
        const std::string& expression, cCurvePlotSearchVirtual& search, const cVxLogger& logger);

    // ---- Names
    void attributeUniqueNamesToNewDataSections(uint64_t firstIndex);
    void makeDataSectionNameUnique(cCurvePlotDataSection& section);
    // Debug aid: logs names that occur more than once; true when all are unique.
    bool checkUniqueSectionNames(const cVxLogger& logger);

private:
    using cSectionList = std::list<std::unique_ptr<cCurvePlotDataSection>>;

    cCurvePlotDataSection* insertSection(cSectionList::iterator where, const std::string& name, cFileDbSupport* file);
    void eraseSection(cSectionList::iterator where);
    const std::vector<cCurvePlotDataSection*>& sectionCache();
    const cCurvePlotDataType* internType(std::unique_ptr<cCurvePlotDataType> type);
    void closeMarked(bool exceptToolBox, uint64_t& closed);

    mutable cVxMutex mMutex;
    cSectionList mSections;
    // Index -> section; valid only while its length equals the section count.
    std::vector<cCurvePlotDataSection*> mSectionCache;
    std::unordered_map<uint64_t, cCurvePlotDataSection*> mSectionsById;
    uint64_t mNextSectionId = 1;  // 0 is never a section

    std::list<cFileDbSupport> mFiles;
    uint64_t mNextFileId = 1;

    std::vector<std::unique_ptr<cCurvePlotDataType>> mTypes;
    std::vector<const cCurvePlotDataType*> mTypeIndex;
    std::unordered_multimap<std::string, const cCurvePlotDataType*> mTypesByName;
};

}  // namespace vx3
