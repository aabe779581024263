// Names under which sections appear: deciding what tells them apart.
#include <algorithm>
#include <map>
#include <set>

#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"

namespace vx3 {

namespace {
bool isSkipped(const cCurvePlotDataSection& section)
{
    return section.checkMustClose() ||
           (section.getFile() && section.getFile()->checkSectionNamesAreUniqueByConstruction());
}

bool hasNoRunNumber(const cCurvePlotDataSection* section)
{
    return section->getStepIndex() == 0 && section->getStepParameterIndices().empty();
}
}  // namespace

void cCurvePlotDataFile::attributeUniqueNamesToNewDataSections(uint64_t firstIndex)
{
    cVxScopedLock lock(mMutex);
    const std::vector<cCurvePlotDataSection*> all = sectionCache();
    std::vector<cCurvePlotDataSection*> live;
    for (cCurvePlotDataSection* section : all)
        if (!isSkipped(*section))
            live.push_back(section);
    if (firstIndex >= all.size())
        return;
    if (getNbOfFilesExceptToolBox() < 2 && live.size() == 1) {
        // One file with one section: the file name says it all.
        live[0]->clearNameFlags();
        live[0]->setStepIndex(0);
        return;
    }
    // Level by level: file, section name, analysis type. A level with more than one entry in a
    // group gets shown for every member of the group.
    std::set<const cFileDbSupport*> touchedFiles;
    for (uint64_t i = firstIndex; i < all.size(); ++i)
        if (!isSkipped(*all[i]))
            touchedFiles.insert(all[i]->getFile());
    for (const cFileDbSupport* file : touchedFiles) {
        std::vector<cCurvePlotDataSection*> group;
        for (cCurvePlotDataSection* section : live)
            if (section->getFile() == file)
                group.push_back(section);
        std::map<std::string, std::vector<cCurvePlotDataSection*>> byName;
        for (cCurvePlotDataSection* section : group)
            byName[section->name()].push_back(section);
        const bool showNames = byName.size() > 1;
        for (auto& [name, sameName] : byName) {
            std::set<std::string> analyses;
            for (cCurvePlotDataSection* section : sameName)
                analyses.insert(section->getAnalysisTypeText());
            for (cCurvePlotDataSection* section : sameName) {
                section->setShowSectionName(showNames && !name.empty());
                section->setShowAnalysisType(analyses.size() > 1);
            }
        }
        // Whatever still collides is numbered 1, 2, 3, ... in list order: as runs where none
        // of them has a run number yet, else by the differentiator.
        std::map<std::string, std::vector<cCurvePlotDataSection*>> byCompleteName;
        for (cCurvePlotDataSection* section : group) {
            section->setAdditionalDifferentiatorIndex(0);
            byCompleteName[section->completeName()].push_back(section);
        }
        for (auto& [name, colliding] : byCompleteName) {
            if (colliding.size() < 2)
                continue;
            const bool asRuns = std::all_of(colliding.begin(), colliding.end(), hasNoRunNumber);
            unsigned number = 1;
            for (cCurvePlotDataSection* section : colliding) {
                if (asRuns)
                    section->setStepIndex(number++);
                else
                    section->setAdditionalDifferentiatorIndex(number++);
            }
        }
    }
}

void cCurvePlotDataFile::makeDataSectionNameUnique(cCurvePlotDataSection& section)
{
    cVxScopedLock lock(mMutex);
    unsigned highest = 0;
    for (const auto& other : mSections)
        if (other.get() != &section && !other->checkMustClose() && other->getFile() == section.getFile() &&
            other->name() == section.name())
            highest = std::max(highest, other->getAdditionalDifferentiatorIndex());
    section.setAdditionalDifferentiatorIndex(highest + 1);
}

bool cCurvePlotDataFile::checkUniqueSectionNames(const cVxLogger& logger)
{
    cVxScopedLock lock(mMutex);
    bool unique = true;
    std::map<std::string, unsigned> fileNames;
    for (const cFileDbSupport& file : mFiles)
        if (!file.checkIsToolbox() && ++fileNames[file.shortUniqueName()] == 2) {
            logger.errorMsg("The file name \"" + file.shortUniqueName() + "\" is used more than once.");
            unique = false;
        }
    std::map<std::string, unsigned> sectionNames;
    for (const auto& section : mSections) {
        if (section->checkMustClose())
            continue;
        const std::string name = section->completeName();
        if (++sectionNames[name] == 2) {
            logger.errorMsg("The complete section name \"" + name + "\" is used more than once.");
            unique = false;
        }
    }
    return unique;
}

}  // namespace vx3
