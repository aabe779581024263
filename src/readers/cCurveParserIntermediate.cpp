#include "readers/cCurveParserIntermediate.h"

namespace vx3 {

cCurvePlotDataSection* cCurveParserIntermediate::useSection(cCurvePlotDataSection* section)
{
    mCurrentSection = section;
    if (section)
        mDbSupport = section->getFile();
    mClosingStart = 0;
    return section;
}

cFileDbSupport& cCurveParserIntermediate::initDbSupport(const std::string& fileName, unsigned dbType)
{
    if (mIsReload && mDbSupport)
        return *mDbSupport;
    cFileDbSupport& file = mStore.findDbSupport(fileName, dbType);
    file.initDbSupport(dbType);
    mDbSupport = &file;
    return file;
}

void cCurveParserIntermediate::adoptValues(cCurvePlotVariable& variable, cCurvePlotData&& values)
{
    const cDerivedCurveFunction derivation = variable;
    static_cast<cCurvePlotData&>(variable) = std::move(values);
    static_cast<cDerivedCurveFunction&>(variable) = derivation;
    variable.resetMinMaxInitialized();
    variable.setMonotony(0);
}

cCurvePlotDataSection* cCurveParserIntermediate::createNewDataSection(cFileDbSupport& file)
{
    return useSection(mStore.addDataSection(file));
}

cCurvePlotDataSection* cCurveParserIntermediate::createNewDataSection(const std::string& fileName,
                                                                      const std::string& sectionName)
{
    cFileDbSupport& file = mStore.findDbSupport(fileName);
    return useSection(mStore.addDataSection(sectionName, &file));
}

cCurvePlotDataSection* cCurveParserIntermediate::createNewDataSection(const std::string& fileName,
                                                                      const std::string& sectionName,
                                                                      unsigned stepIndex)
{
    cCurvePlotDataSection* section = createNewDataSection(fileName, sectionName);
    section->setStepIndex(stepIndex);
    if (mDbSupport)
        mDbSupport->setMaxStepIndex(stepIndex);
    return section;
}

cCurvePlotDataSection* cCurveParserIntermediate::findExistingDataSection(uint64_t index)
{
    if (index >= mReloadSections.size())
        return nullptr;
    mReloadSectionUsed[index] = true;
    mReloadSections[index]->setFlagMustClose(false);
    return useSection(mReloadSections[index]);
}

cCurvePlotDataSection* cCurveParserIntermediate::findOrCreate(cFileDbSupport& file, const std::string& sectionName,
                                                              unsigned stepIndex)
{
    if (mIsReload) {
        for (size_t i = 0; i < mReloadSections.size(); ++i) {
            cCurvePlotDataSection* old = mReloadSections[i];
            if (mReloadSectionUsed[i] || old->name() != sectionName || old->getStepIndex() != stepIndex)
                continue;
            mReloadSectionUsed[i] = true;
            old->setFlagMustClose(false);
            return useSection(old);
        }
    }
    cCurvePlotDataSection* section = useSection(mStore.addDataSection(sectionName, &file));
    section->setStepIndex(stepIndex);
    file.setMaxStepIndex(stepIndex);
    if (mIsReload)
        section->setReloadFlag(curvePlotDataSection::reload_new_section, true);
    return section;
}

cCurvePlotDataSection* cCurveParserIntermediate::findExistingDataSectionOrCreateNewOne(const std::string& fileName,
                                                                                       const std::string& sectionName)
{
    return findOrCreate(mStore.findDbSupport(fileName), sectionName, 0);
}

cCurvePlotDataSection* cCurveParserIntermediate::findExistingDataSectionOrCreateNewOne(const std::string& fileName,
                                                                                       const std::string& sectionName,
                                                                                       unsigned stepIndex)
{
    return findOrCreate(mStore.findDbSupport(fileName), sectionName, stepIndex);
}

cCurvePlotDataSection* cCurveParserIntermediate::findExistingDataSectionOrCreateNewOne(cFileDbSupport& file,
                                                                                       const std::string& sectionName)
{
    return findOrCreate(file, sectionName, 0);
}

cCurvePlotDataSection* cCurveParserIntermediate::findExistingDataSectionOrCreateNewOne(cFileDbSupport& file,
                                                                                       const std::string& sectionName,
                                                                                       unsigned stepIndex)
{
    return findOrCreate(file, sectionName, stepIndex);
}

cCurvePlotDataSection* cCurveParserIntermediate::createNewDataSectionIfItDoesNotExist(const std::string& fileName,
                                                                                      const std::string& sectionName)
{
    cFileDbSupport& file = mStore.findDbSupport(fileName);
    for (uint64_t i = 0; i < mStore.getNbOfDataSections(); ++i) {
        cCurvePlotDataSection* section = mStore.getDataSectionFromIndex(i);
        if (section->getFile() == &file && section->name() == sectionName)
            return useSection(section);
    }
    return useSection(mStore.addDataSection(sectionName, &file));
}

unsigned cCurveParserIntermediate::getOrCreateStepIndex(const std::string& name, double value)
{
    return getOrCreateStepIndex({{name, value}});
}

unsigned cCurveParserIntermediate::getOrCreateStepIndex(const std::vector<std::pair<std::string, double>>& parameters)
{
    for (size_t i = 0; i < mStepParameters.size(); ++i)
        if (mStepParameters[i] == parameters)
            return static_cast<unsigned>(i + 1);
    mStepParameters.push_back(parameters);
    const unsigned index = static_cast<unsigned>(mStepParameters.size());
    if (mDbSupport)
        mDbSupport->setMaxStepIndex(index);
    return index;
}

void cCurveParserIntermediate::clear()
{
    mDbSupport = nullptr;
    mCurrentSection = nullptr;
    mInterrupted = false;
    mIsReload = false;
    mReloadSections.clear();
    mReloadSectionUsed.clear();
    mFillOrder.clear();
    mClosingStart = 0;
    mStepParameters.clear();
}

void cCurveParserIntermediate::setReloadSections(const std::vector<cCurvePlotDataSection*>& sections)
{
    mReloadSections = sections;
    mReloadSectionUsed.assign(sections.size(), false);
    mIsReload = true;
    if (!sections.empty())
        mDbSupport = sections.front()->getFile();
}

// ---------------------------------------------------------------- fill order

uint64_t cCurveParserIntermediate::pushVariableToFillOrder(const cCurvePlotDataType* type, const std::string& name)
{
    cCurvePlotDataSection& section = *mCurrentSection;
    uint64_t index = mIsReload ? section.findVariableCheckType(type, name) : cCurvePlotDataSection::npos;
    if (index == cCurvePlotDataSection::npos)
        index = section.addVariable(type, name);
    else
        section.getVariable(index).setFlagMustClose(false);
    mFillOrder.push_back({index, false});
    return index;
}

uint64_t cCurveParserIntermediate::pushSweepVariableToFillOrder(const cCurvePlotDataType* type,
                                                                const std::string& name, int position)
{
    cCurvePlotDataSection& section = *mCurrentSection;
    uint64_t index = mIsReload ? section.findSweepVariable(type, name, position) : cCurvePlotDataSection::npos;
    if (index == cCurvePlotDataSection::npos)
        index = section.addSweepVariable(type, name, position);
    else
        section.getSweepVariable(index).setFlagMustClose(false);
    mFillOrder.push_back({index, true});
    return index;
}

void cCurveParserIntermediate::insertToReloadFillOrder(uint64_t position, uint64_t index)
{
    if (position > mFillOrder.size())
        position = mFillOrder.size();
    mFillOrder.insert(mFillOrder.begin() + static_cast<std::ptrdiff_t>(position), {index, false});
}

bool cCurveParserIntermediate::createFillOrderFromReloadFillOrder(bool complex, uint64_t first, uint64_t last,
                                                                  std::vector<cCurvePlotVariable*>& fillOrder)
{
    fillOrder.clear();
    if (!mCurrentSection)
        return false;
    cCurvePlotDataSection& section = *mCurrentSection;
    last = std::min<uint64_t>(last, mFillOrder.size());
    uint64_t sweeps = 0;
    for (uint64_t i = first; i < last; ++i) {
        const cFillEntry& entry = mFillOrder[i];
        cCurvePlotVariable* variable = entry.sweep ? section.getSweepVariablePtr(entry.index)
                                                   : section.getVariablePtr(entry.index);
        if (!variable)
            return false;
        sweeps += entry.sweep ? 1 : 0;
        fillOrder.push_back(variable);
        if (complex && curvePlotProperties::checkIsComplexDataType(variable->getDataType()))
            fillOrder.push_back(variable);
    }
    if (sweeps > section.getNbOfSweepVariables()) {
        errorMsg("waveform data parser : incoherent nb of sweep variables");
        fillOrder.clear();
        return false;
    }
    return true;
}

bool cCurveParserIntermediate::createFillOrderFromReloadFillOrderMatrix(const std::vector<uint64_t>& sweepSizes,
                                                                        std::vector<cCurvePlotVariable*>& fillOrder)
{
    fillOrder.clear();
    if (!mCurrentSection || mCurrentSection->getNbOfSweepVariables() == 0) {
        errorMsg("waveform data parser : no sweep variables");
        return false;
    }
    cCurvePlotDataSection& section = *mCurrentSection;
    bool sizesFit = sweepSizes.size() == section.getNbOfSweepVariables();
    for (uint64_t size : sweepSizes)
        sizesFit = sizesFit && size > 0;
    if (!sizesFit) {
        errorMsg("waveform data parser : bad sweep variables sizes");
        return false;
    }
    for (const cFillEntry& entry : mFillOrder)
        if (!entry.sweep)
            if (cCurvePlotVariable* variable = section.getVariablePtr(entry.index))
                fillOrder.push_back(variable);
    return true;
}

void cCurveParserIntermediate::clearAllValuesInFillOrder()
{
    if (!mCurrentSection)
        return;
    for (const cFillEntry& entry : mFillOrder) {
        cCurvePlotVariable* variable = entry.sweep ? mCurrentSection->getSweepVariablePtr(entry.index)
                                                   : mCurrentSection->getVariablePtr(entry.index);
        if (variable)
            variable->clearValues();
    }
}

uint64_t cCurveParserIntermediate::findOrCreateClosingNextVariable(const cCurvePlotDataType* type,
                                                                   const std::string& name)
{
    cCurvePlotDataSection& section = *mCurrentSection;
    uint64_t index = section.findClosingNextVariableUpdateStart(mClosingStart, name);
    if (index == cCurvePlotDataSection::npos)
        return section.addVariable(type, name);
    section.getVariable(index).setFlagMustClose(false);
    return index;
}

// ---------------------------------------------------------------- reload questions

bool cCurveParserIntermediate::checkReloadFiles(bool (*test)(const cCurvePlotVariable&), bool sweeps) const
{
    for (const cCurvePlotDataSection* section : mReloadSections) {
        const uint64_t count = sweeps ? section->getNbOfSweepVariables() : section->getNbOfVariables();
        for (uint64_t i = 0; i < count; ++i) {
            const cCurvePlotVariable& variable =
                sweeps ? static_cast<const cCurvePlotVariable&>(section->getSweepVariable(i)) : section->getVariable(i);
            return test(variable);  // one file has one layout: the first answer stands
        }
    }
    return false;
}

namespace {
bool isDoubleType(unsigned type)
{
    using namespace curvePlotProperties;
    return type == data_double || type == double_complex || type == parameterized_double ||
           type == parameterized_double_complex || type == data_double_sweep_matrix ||
           type == data_double_complex_sweep_matrix;
}
}  // namespace

bool cCurveParserIntermediate::checkReloadSectionsAreBigEndian() const
{
    return !mReloadSections.empty() && mReloadSections.front()->getFile() &&
           mReloadSections.front()->getFile()->checkIsBigEndian();
}

bool cCurveParserIntermediate::checkReloadSectionsHaveDoublePrecision() const
{
    return checkReloadFiles([](const cCurvePlotVariable& v) { return isDoubleType(v.getDataType()); }, false);
}

bool cCurveParserIntermediate::checkReloadSectionsHaveDoubleSweepPrecision() const
{
    return checkReloadFiles([](const cCurvePlotVariable& v) { return isDoubleType(v.getDataType()); }, true);
}

}  // namespace vx3
