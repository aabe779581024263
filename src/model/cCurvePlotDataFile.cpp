#include "model/cCurvePlotDataFile.h"

#include <algorithm>
#include <filesystem>

#include "base/cLoggedException.h"

namespace vx3 {

cCurvePlotDataFile::cCurvePlotDataFile() : mMutex("cCurvePlotDataFile", true) {}

cCurvePlotDataFile::~cCurvePlotDataFile() = default;

// ---------------------------------------------------------------- sections

cCurvePlotDataSection* cCurvePlotDataFile::insertSection(cSectionList::iterator where, const std::string& name,
                                                         cFileDbSupport* file)
{
    const bool atEnd = where == mSections.end();
    const bool cacheValid = mSectionCache.size() == mSections.size();
    auto inserted = mSections.insert(where, std::make_unique<cCurvePlotDataSection>(file, name, mNextSectionId++));
    cCurvePlotDataSection* section = inserted->get();
    section->setReloadFlag(curvePlotDataSection::reload_new_section, true);
    mSectionsById.emplace(section->getSectionId(), section);
    if (atEnd && cacheValid)
        mSectionCache.push_back(section);
    else
        mSectionCache.clear();
    return section;
}

void cCurvePlotDataFile::eraseSection(cSectionList::iterator where)
{
    const cCurvePlotDataSection* section = where->get();
    const uint64_t id = section->getSectionId();
    if (section->getParentSectionId() == id) {
        // The group loses its leader: the others lead themselves.
        for (auto later = std::next(where); later != mSections.end(); ++later)
            if ((*later)->getParentSectionId() == id)
                (*later)->setParentSectionId((*later)->getSectionId());
    }
    mSectionsById.erase(id);
    mSections.erase(where);
    mSectionCache.clear();
}

const std::vector<cCurvePlotDataSection*>& cCurvePlotDataFile::sectionCache()
{
    if (mSectionCache.size() != mSections.size()) {
        mSectionCache.clear();
        mSectionCache.reserve(mSections.size());
        for (auto& section : mSections)
            mSectionCache.push_back(section.get());
    }
    return mSectionCache;
}

void cCurvePlotDataFile::createCurveHierarchy(uint64_t firstSectionIndex, bool flag)
{
    cVxScopedLock lock(mMutex);
    const std::vector<cCurvePlotDataSection*>& sections = sectionCache();
    for (uint64_t index = firstSectionIndex; index < sections.size(); ++index)
        sections[index]->createCurveHierarchy(flag);
}

void cCurvePlotDataFile::createCurveHierarchy(const std::vector<cCurvePlotDataSection*>& sections, bool flag)
{
    cVxScopedLock lock(mMutex);
    for (cCurvePlotDataSection* section : sections)
        if (section)
            section->createCurveHierarchy(flag);
}

void cCurvePlotDataFile::createCurveHierarchyOfLastSection(bool flag)
{
    cVxScopedLock lock(mMutex);
    if (!mSections.empty())
        mSections.back()->createCurveHierarchy(flag);
}

cCurvePlotDataSection* cCurvePlotDataFile::addDataSection(cFileDbSupport& file)
{
    return addDataSection(std::string(), &file);
}

cCurvePlotDataSection* cCurvePlotDataFile::addDataSection(const std::string& name, cFileDbSupport* file)
{
    cVxScopedLock lock(mMutex);
    return insertSection(mSections.end(), name, file);
}

cCurvePlotDataSection* cCurvePlotDataFile::insertDataSection(uint64_t before, const std::string& name,
                                                             cFileDbSupport* file)
{
    cVxScopedLock lock(mMutex);
    auto where = mSections.begin();
    std::advance(where, static_cast<std::ptrdiff_t>(std::min<uint64_t>(before, mSections.size())));
    return insertSection(where, name, file);
}

cCurvePlotDataSection* cCurvePlotDataFile::insertNewToolBoxSection(const std::string& name)
{
    cVxScopedLock lock(mMutex);
    cCurvePlotDataSection* section = insertSection(mSections.begin(), name, getToolBoxDbSupport());
    section->setShowSectionName(true);
    return section;
}

bool cCurvePlotDataFile::removeDataSection(const cCurvePlotDataSection* section)
{
    cVxScopedLock lock(mMutex);
    for (auto it = mSections.begin(); it != mSections.end(); ++it)
        if (it->get() == section) {
            eraseSection(it);
            return true;
        }
    return false;
}

bool cCurvePlotDataFile::removeDataSection(const std::string& name)
{
    cVxScopedLock lock(mMutex);
    for (auto it = mSections.begin(); it != mSections.end(); ++it)
        if ((*it)->completeName() == name) {
            eraseSection(it);
            return true;
        }
    return false;
}

uint64_t cCurvePlotDataFile::removeDataSections(const std::vector<cCurvePlotDataSection*>& sections)
{
    cVxScopedLock lock(mMutex);
    uint64_t removed = 0;
    for (const cCurvePlotDataSection* section : sections)
        removed += removeDataSection(section) ? 1 : 0;
    return removed;
}

bool cCurvePlotDataFile::removeLastDataSection() { return removeLastDataSection(1) == 1; }

uint64_t cCurvePlotDataFile::removeLastDataSection(uint64_t count)
{
    cVxScopedLock lock(mMutex);
    uint64_t removed = 0;
    for (; removed < count && !mSections.empty(); ++removed)
        eraseSection(std::prev(mSections.end()));
    return removed;
}

cCurvePlotDataSection* cCurvePlotDataFile::findSectionFromId(uint64_t id) const
{
    cVxScopedLock lock(mMutex);
    const auto found = mSectionsById.find(id);
    return found == mSectionsById.end() ? nullptr : found->second;
}

cCurvePlotDataSection* cCurvePlotDataFile::getDataSectionFromIndex(uint64_t index)
{
    cVxScopedLock lock(mMutex);
    const auto& cache = sectionCache();
    return index < cache.size() ? cache[index] : nullptr;
}

uint64_t cCurvePlotDataFile::getDataSectionIndex(const cCurvePlotDataSection* section)
{
    cVxScopedLock lock(mMutex);
    const auto& cache = sectionCache();
    const auto found = std::find(cache.begin(), cache.end(), section);
    return found == cache.end() ? npos : static_cast<uint64_t>(found - cache.begin());
}

cCurvePlotDataSection* cCurvePlotDataFile::getFirstFileDataSection()
{
    cVxScopedLock lock(mMutex);
    for (auto& section : mSections)
        if (!section->getFile() || !section->getFile()->checkIsToolbox())
            return section.get();
    return nullptr;
}

uint64_t cCurvePlotDataFile::getDataSectionIndexFromName(const std::string& name, uint64_t start)
{
    cVxScopedLock lock(mMutex);
    const auto& cache = sectionCache();
    for (uint64_t i = start; i < cache.size(); ++i)
        if (cache[i]->name() == name)
            return i;
    return npos;
}

cCurvePlotDataSection* cCurvePlotDataFile::getDataSectionFromName(const std::string& name, uint64_t start)
{
    cVxScopedLock lock(mMutex);
    const uint64_t index = getDataSectionIndexFromName(name, start);
    return index == npos ? nullptr : sectionCache()[index];
}

uint64_t cCurvePlotDataFile::getDataSectionIndexFromCompleteName(const std::string& completeName)
{
    cVxScopedLock lock(mMutex);
    const auto& cache = sectionCache();
    for (uint64_t i = 0; i < cache.size(); ++i)
        if (cache[i]->completeName() == completeName)
            return i;
    return npos;
}

std::vector<cCurvePlotDataSection*> cCurvePlotDataFile::getAllDataSectionFromName(const std::string& name)
{
    cVxScopedLock lock(mMutex);
    std::vector<cCurvePlotDataSection*> result;
    for (auto& section : mSections)
        if (section->name() == name)
            result.push_back(section.get());
    return result;
}

std::vector<cCurvePlotDataSection*> cCurvePlotDataFile::findSimilarSectionsSameFile(
    const cCurvePlotDataSection& section, bool withSweepVariables)
{
    cVxScopedLock lock(mMutex);
    std::vector<cCurvePlotDataSection*> result;
    for (auto& other : mSections)
        if (other.get() != &section && other->getFile() == section.getFile() &&
            other->checkSectionIsSimilar(section, withSweepVariables))
            result.push_back(other.get());
    return result;
}

std::vector<cCurvePlotDataSection*> cCurvePlotDataFile::findSimilarSectionsAllFiles(
    const cCurvePlotDataSection& section, bool withSweepVariables)
{
    cVxScopedLock lock(mMutex);
    std::vector<cCurvePlotDataSection*> result;
    for (auto& other : mSections)
        if (other.get() != &section && other->checkSectionIsSimilar(section, withSweepVariables))
            result.push_back(other.get());
    return result;
}

// ---------------------------------------------------------------- files

cFileDbSupport& cCurvePlotDataFile::findDbSupport(const std::string& fileName)
{
    return findDbSupport(fileName, fileDbSupport::undefined_db);
}

cFileDbSupport& cCurvePlotDataFile::findDbSupport(const std::string& fileName, unsigned dbType)
{
    if (fileName.empty())
        throw cLoggedException("cCurvePlotDataFile::findDbSupport");
    cVxScopedLock lock(mMutex);
    if (cFileDbSupport* existing = findDbSupportPtr(fileName)) {
        if (existing->getDbType() == fileDbSupport::undefined_db)
            existing->initDbSupport(dbType);
        return *existing;
    }
    cFileDbSupport& file = mFiles.emplace_back(fileName, dbType, mNextFileId++);
    // Files of the same base name are told apart by a number: "a.raw", "a.raw (2)", ...
    unsigned highest = 0;
    bool clash = false;
    for (const cFileDbSupport& other : mFiles)
        if (&other != &file && other.baseName() == file.baseName()) {
            clash = true;
            highest = std::max(highest, std::max(other.getFileIndex(), 1u));
        }
    if (clash)
        file.setFileIndex(highest + 1);
    return file;
}

cFileDbSupport* cCurvePlotDataFile::findDbSupportPtr(const std::string& fileName) const
{
    if (fileName.empty())
        return nullptr;
    cVxScopedLock lock(mMutex);
    for (const cFileDbSupport& file : mFiles)
        if (file.fileName() == fileName)
            return const_cast<cFileDbSupport*>(&file);
    return nullptr;
}

cFileDbSupport* cCurvePlotDataFile::findDbSupportPtrShortName(const std::string& shortName) const
{
    if (shortName.empty())
        return nullptr;
    cVxScopedLock lock(mMutex);
    for (const cFileDbSupport& file : mFiles)
        if (file.shortUniqueName() == shortName)
            return const_cast<cFileDbSupport*>(&file);
    return nullptr;
}

cFileDbSupport* cCurvePlotDataFile::findDbSupportFromId(uint64_t id) const
{
    cVxScopedLock lock(mMutex);
    for (const cFileDbSupport& file : mFiles)
        if (file.getId() == id)
            return const_cast<cFileDbSupport*>(&file);
    return nullptr;
}

cFileDbSupport* cCurvePlotDataFile::getToolBoxDbSupport()
{
    cVxScopedLock lock(mMutex);
    for (cFileDbSupport& file : mFiles)
        if (file.checkIsToolbox())
            return &file;
    // No file name: its sections show under their own names.
    return &mFiles.emplace_back(std::string(), fileDbSupport::tool_box, mNextFileId++);
}

cFileDbSupport* cCurvePlotDataFile::dbFile(uint64_t index) const
{
    cVxScopedLock lock(mMutex);
    if (index >= mFiles.size())
        return nullptr;
    auto it = mFiles.begin();
    std::advance(it, static_cast<std::ptrdiff_t>(index));
    return const_cast<cFileDbSupport*>(&*it);
}

uint64_t cCurvePlotDataFile::getDbSupportIndexFromName(const std::string& fileName) const
{
    cVxScopedLock lock(mMutex);
    uint64_t index = 0;
    for (const cFileDbSupport& file : mFiles) {
        if (file.fileName() == fileName && !fileName.empty())
            return index;
        ++index;
    }
    return npos;
}

bool cCurvePlotDataFile::removeDbSupport(const std::string& fileName)
{
    cVxScopedLock lock(mMutex);
    cFileDbSupport* file = findDbSupportPtr(fileName);
    if (!file)
        return false;
    for (auto it = mSections.begin(); it != mSections.end();) {
        auto next = std::next(it);
        if ((*it)->getFile() == file)
            eraseSection(it);
        it = next;
    }
    mFiles.remove_if([file](const cFileDbSupport& entry) { return &entry == file; });
    return true;
}

bool cCurvePlotDataFile::checkShortFileNameIsUnique(const std::string& shortName) const
{
    cVxScopedLock lock(mMutex);
    uint64_t count = 0;
    for (const cFileDbSupport& file : mFiles)
        if (file.shortUniqueName() == shortName)
            ++count;
    return count <= 1;
}

uint64_t cCurvePlotDataFile::getNbOfFilesExceptToolBox() const
{
    cVxScopedLock lock(mMutex);
    uint64_t count = 0;
    for (const cFileDbSupport& file : mFiles)
        if (!file.checkIsToolbox())
            ++count;
    return count;
}

namespace {
std::string normalisedPath(const std::string& name, const std::string& baseDirectory)
{
    std::filesystem::path path(name);
    if (path.is_relative() && !baseDirectory.empty())
        path = std::filesystem::path(baseDirectory) / path;
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return (error ? path : absolute).lexically_normal().string();
}
}  // namespace

bool cCurvePlotDataFile::checkIfFileHasAlreadyBeenOpened(const std::string& fileName,
                                                         const std::string& baseDirectory) const
{
    if (fileName.empty())
        return false;
    const std::string wanted = normalisedPath(fileName, baseDirectory);
    cVxScopedLock lock(mMutex);
    for (const cFileDbSupport& file : mFiles)
        if (!file.fileName().empty() && normalisedPath(file.fileName(), std::string()) == wanted)
            return true;
    return false;
}

}  // namespace vx3
