// Closing sections and files, and releasing loaded values.
#include "model/cCurvePlotDataFile.h"

namespace vx3 {

namespace {
bool isToolBox(const cCurvePlotDataSection& section)
{
    return section.getFile() && section.getFile()->checkIsToolbox();
}
}  // namespace

void cCurvePlotDataFile::markAllSectionsAndFiles(bool flag)
{
    cVxScopedLock lock(mMutex);
    for (auto& section : mSections)
        section->setFlagMustClose(flag);
    for (cFileDbSupport& file : mFiles)
        file.setFlagMustClose(flag);
}

void cCurvePlotDataFile::unmarkUnclosableFilesAndSections()
{
    cVxScopedLock lock(mMutex);
    for (auto& section : mSections)
        if (section->checkIsReferedTo()) {
            section->setFlagMustClose(false);
            if (section->getFile())
                section->getFile()->setFlagMustClose(false);
        }
}

void cCurvePlotDataFile::closeMarked(bool exceptToolBox, uint64_t& closed)
{
    for (auto it = mSections.begin(); it != mSections.end();) {
        auto next = std::next(it);
        if ((*it)->checkMustClose() && !(exceptToolBox && isToolBox(**it))) {
            eraseSection(it);
            ++closed;
        }
        it = next;
    }
    // A file goes only after all its sections went.
    mFiles.remove_if([this, exceptToolBox](const cFileDbSupport& file) {
        if (!file.checkMustClose() || (exceptToolBox && file.checkIsToolbox()))
            return false;
        for (const auto& section : mSections)
            if (section->getFile() == &file)
                return false;
        return true;
    });
}

uint64_t cCurvePlotDataFile::closeMarkedFilesAndSections()
{
    cVxScopedLock lock(mMutex);
    uint64_t closed = 0;
    closeMarked(false, closed);
    return closed;
}

uint64_t cCurvePlotDataFile::closeMarkedFilesAndSectionsExceptToolBox()
{
    cVxScopedLock lock(mMutex);
    uint64_t closed = 0;
    closeMarked(true, closed);
    return closed;
}

void cCurvePlotDataFile::clear()
{
    cVxScopedLock lock(mMutex);
    for (auto& section : mSections) {
        // Kept tool box results are those that a plot or the calculator still uses.
        const bool keep = section->getFile() && section->getFile()->getDbType() == fileDbSupport::tool_box_referable &&
                          section->checkIsReferedTo();
        section->setFlagMustClose(!keep);
    }
    for (cFileDbSupport& file : mFiles)
        file.setFlagMustClose(true);
    uint64_t closed = 0;
    closeMarked(false, closed);
    for (cFileDbSupport& file : mFiles)
        file.setFlagMustClose(false);
}

void cCurvePlotDataFile::clearExceptToolBox()
{
    cVxScopedLock lock(mMutex);
    for (auto& section : mSections)
        section->setFlagMustClose(!isToolBox(*section));
    for (cFileDbSupport& file : mFiles)
        file.setFlagMustClose(!file.checkIsToolbox());
    uint64_t closed = 0;
    closeMarked(true, closed);
}

bool cCurvePlotDataFile::vetoClosingOnToolBoxSectionsStillInUse()
{
    cVxScopedLock lock(mMutex);
    bool vetoed = false;
    for (auto& section : mSections)
        if (isToolBox(*section) && section->checkMustClose() && section->checkIsReferedTo()) {
            section->setFlagMustClose(false);
            section->getFile()->setFlagMustClose(false);
            vetoed = true;
        }
    return vetoed;
}

namespace {
bool canBeReleased(const cCurvePlotVariable& variable)
{
    return variable.checkDbSupportActive() && variable.getReferenceCount() <= 0 && variable.checkHasStorage();
}

template <typename F>
void forEachVariable(std::list<std::unique_ptr<cCurvePlotDataSection>>& sections, F&& visit)
{
    for (auto& section : sections) {
        for (uint64_t i = 0; i < section->getNbOfVariables(); ++i)
            visit(section->getVariable(i));
        for (uint64_t i = 0; i < section->getNbOfSweepVariables(); ++i)
            visit(section->getSweepVariable(i));
    }
}
}  // namespace

uint64_t cCurvePlotDataFile::countCurveMemoryThatCanBeReleased() const
{
    cVxScopedLock lock(mMutex);
    uint64_t bytes = 0;
    forEachVariable(const_cast<cSectionList&>(mSections), [&bytes](cCurvePlotVariable& variable) {
        if (canBeReleased(variable))
            bytes += variable.getAllocatedSize();
    });
    return bytes;
}

uint64_t cCurvePlotDataFile::countNumberOfCurvesThatCanBeReleased() const
{
    cVxScopedLock lock(mMutex);
    uint64_t count = 0;
    forEachVariable(const_cast<cSectionList&>(mSections), [&count](cCurvePlotVariable& variable) {
        if (canBeReleased(variable))
            ++count;
    });
    return count;
}

uint64_t cCurvePlotDataFile::collectGarbage()
{
    cVxScopedLock lock(mMutex);
    uint64_t bytes = 0;
    forEachVariable(mSections, [&bytes](cCurvePlotVariable& variable) {
        if (!canBeReleased(variable))
            return;
        const uint64_t size = variable.getAllocatedSize();
        if (variable.releaseDb())
            bytes += size;
    });
    return bytes;
}

}  // namespace vx3
