#include "model/cCurvePlotDataSection.h"

#include <cmath>

#include "model/cCurvePlotDataFile.h"
#include "model/cFileDbSupport.h"

namespace vx3 {

using namespace curvePlotProperties;

bool curvePlotDataSection::cStepParameters::corresponds(const cStepParameters& other) const
{
    if (stepIndex != other.stepIndex || alterIndex != other.alterIndex || parameters.size() != other.parameters.size())
        return false;
    for (size_t i = 0; i < parameters.size(); ++i)
        if (!parameters[i].corresponds(other.parameters[i]))
            return false;
    return true;
}

cCurvePlotDataSection::cCurvePlotDataSection(cFileDbSupport* file, const std::string& name, uint64_t sectionId)
    : mFile(file), mName(name), mSectionId(sectionId), mParentSectionId(sectionId)
{
}

void cCurvePlotDataSection::setStepIndex(unsigned index)
{
    mStepIndex = index;
    if (mFile)
        mFile->setMaxStepIndex(index);
}

// ---------------------------------------------------------------- names

void cCurvePlotDataSection::addRunParametersToName(std::string& name, bool withRunNumber) const
{
    const bool runNumber = withRunNumber && mStepIndex != 0;
    if (runNumber)
        name += "run " + std::to_string(mStepIndex);
    if (mStepParameters.empty() || mStepParameters[0] >= getNbOfProperties() ||
        getProperty(mStepParameters[0]).getType() != run_parameter)
        return;
    bool first = true;
    for (uint64_t index : mStepParameters) {
        if (index >= getNbOfProperties() || getProperty(index).getType() != run_parameter)
            continue;
        if (!first || runNumber)
            name += ", ";
        name += getProperty(index).getValueAsString();
        first = false;
    }
}

namespace {
void appendPiece(std::string& text, const std::string& piece)
{
    if (piece.empty())
        return;
    if (!text.empty())
        text += " - ";
    text += piece;
}

bool hasRunParameters(const cCurvePlotDataSection& section)
{
    const auto& indices = section.getStepParameterIndices();
    return !indices.empty() && indices[0] < section.getNbOfProperties() &&
           section.getProperty(indices[0]).getType() == run_parameter;
}
}  // namespace

std::string cCurvePlotDataSection::getAnalysisTypeText() const
{
    const char* text = curvePlotDataSection::typeToString(mAnalysisType);
    return *text ? std::string(text) : mAnalysisName;
}

void cCurvePlotDataSection::addDifferentiatorAndRun(std::string& text, bool alter, bool run) const
{
    if (alter && mAlterIndex != 0)
        appendPiece(text, "alter " + std::to_string(mAlterIndex));
    if (run && (mStepIndex != 0 || hasRunParameters(*this))) {
        std::string runPart;
        addRunParametersToName(runPart, true);
        appendPiece(text, runPart);
    }
}

std::string cCurvePlotDataSection::completeName(bool useShortName) const
{
    if (useShortName && !mShortName.empty())
        return mShortName;
    const std::string fileName = mFile ? mFile->shortUniqueName() : std::string();
    std::string text;
    bool sectionNameShown = false;
    if (fileName.empty()) {
        text = mName;
        sectionNameShown = !mName.empty();
    } else {
        text = fileName;
        if (mShowSectionName && !mName.empty()) {
            appendPiece(text, mName);
            sectionNameShown = true;
        }
    }
    if (mShowAnalysisType) {
        // The section name may stand for the analysis where it tells more.
        if (mSectionNameCanReplaceAnalysisType && !mName.empty()) {
            if (!sectionNameShown)
                appendPiece(text, mName);
        } else {
            appendPiece(text, getAnalysisTypeText());
        }
    }
    addDifferentiatorAndRun(text, true, true);
    if (mAdditionalDifferentiatorIndex != 0)
        text += " - (" + std::to_string(mAdditionalDifferentiatorIndex) + ")";
    return text;
}

std::string cCurvePlotDataSection::completeName(const std::vector<bool>& mask) const
{
    auto on = [&mask](size_t i) { return i < mask.size() && mask[i]; };
    std::string text;
    if (on(0) && mFile)
        appendPiece(text, mFile->shortUniqueName());
    if (on(1))
        appendPiece(text, mName);
    if (on(2))
        appendPiece(text, getAnalysisTypeText());
    addDifferentiatorAndRun(text, on(3), on(4));
    if (on(1) && mAdditionalDifferentiatorIndex != 0)
        text += " - (" + std::to_string(mAdditionalDifferentiatorIndex) + ")";
    return text;
}

std::string cCurvePlotDataSection::uniqueShortFileNameOrSectionName() const
{
    if (mFile && !mFile->shortUniqueName().empty())
        return mFile->shortUniqueName();
    return mName;
}

// ---------------------------------------------------------------- analysis

void cCurvePlotDataSection::setAnalysisType(const std::string& text)
{
    mAnalysisType = curvePlotDataSection::stringToType(text);
    mAnalysisName = text;
}

bool cCurvePlotDataSection::checkAnalysisTypeIsExplicit() const
{
    return mAnalysisType != curvePlotDataSection::no_analysis &&
           mAnalysisType != curvePlotDataSection::undefined_analysis;
}

void cCurvePlotDataSection::updateAnlysisTypeFromSweepVariable(unsigned unit)
{
    if (checkAnalysisTypeIsExplicit())
        return;
    if (unit == curvePlotDataType::second)
        mAnalysisType = curvePlotDataSection::tran;
    else if (unit == curvePlotDataType::hertz)
        mAnalysisType = curvePlotDataSection::ac;
}

void cCurvePlotDataSection::setAnalysisTypeFromSweepVariable()
{
    if (!mSweepVariables.empty())
        updateAnlysisTypeFromSweepVariable(mSweepVariables[0].getUnitIdentifier());
}

// ---------------------------------------------------------------- runs

bool cCurvePlotDataSection::checkMultiRunMakesSense() const
{
    return mStepIndex != 0 || !mStepParameters.empty() || mAlterIndex != 0;
}

void cCurvePlotDataSection::pushBackStepParameter(const std::string& name, double value)
{
    mStepParameters.push_back(addProperty(cProperty::makeDouble(run_parameter, value, name)));
}

void cCurvePlotDataSection::pushBackStepParameter(const std::string& name, double real, double imag)
{
    mStepParameters.push_back(addProperty(cProperty::makeComplex(run_parameter, real, imag, name)));
}

void cCurvePlotDataSection::pushBackStepParameter(const std::string& name, const std::string& text)
{
    mStepParameters.push_back(addProperty(cProperty::makeText(run_parameter, text, name)));
}

curvePlotDataSection::cStepParameters cCurvePlotDataSection::getStepParameters() const
{
    curvePlotDataSection::cStepParameters result;
    result.stepIndex = mStepIndex;
    result.alterIndex = mAlterIndex;
    for (uint64_t index : mStepParameters)
        if (index < getNbOfProperties())
            result.parameters.push_back(getProperty(index));
    return result;
}

// ---------------------------------------------------------------- variables

uint64_t cCurvePlotDataSection::addVariable(const cCurvePlotDataType* type, const std::string& name)
{
    mVariables.emplace_back(type, name);
    mVariables.back().setFile(mFile);
    return mVariables.size() - 1;
}

uint64_t cCurvePlotDataSection::addVariableNoCapacityTest(const cCurvePlotDataType* type, const std::string& name)
{
    // Same as addVariable: a vector never reallocates within the reserved capacity anyway.
    return addVariable(type, name);
}

uint64_t cCurvePlotDataSection::addSweepVariable(const cCurvePlotDataType* type, const std::string& name, int position)
{
    mSweepVariables.emplace_back(type, name, position);
    mSweepVariables.back().setFile(mFile);
    return mSweepVariables.size() - 1;
}

bool cCurvePlotDataSection::renameVariable(uint64_t index, const std::string& name)
{
    if (index >= mVariables.size())
        return false;
    {
        std::lock_guard<std::mutex> lock(mNameIndexMutex);
        mVariables[index].setName(name);
        mNameIndex.invalidate();
    }
    refreshCurveHierarchy();
    return true;
}

void cCurvePlotDataSection::refreshCurveHierarchy()
{
    // A built tree holds names and indices: it is built again, the same way, when they change.
    if (mCurveHierarchy.getHierachySize() > 0)
        createCurveHierarchy(mCurveHierarchyFlag);
}

bool cCurvePlotDataSection::removeVariable(uint64_t index)
{
    if (index >= mVariables.size())
        return false;
    {
        std::lock_guard<std::mutex> lock(mNameIndexMutex);
        mVariables.erase(mVariables.begin() + static_cast<std::ptrdiff_t>(index));
        mNameIndex.invalidate();
        // Per-curve properties follow their curves down by one.
        std::map<uint64_t, cCurvePlotProperties> moved;
        for (auto& [curve, properties] : mCurveProperties)
            if (curve != index)
                moved.emplace(curve > index ? curve - 1 : curve, std::move(properties));
        mCurveProperties = std::move(moved);
        if (index < mOldValueCounts.size())
            mOldValueCounts.erase(mOldValueCounts.begin() + static_cast<std::ptrdiff_t>(index));
    }
    refreshCurveHierarchy();
    return true;
}

// ---------------------------------------------------------------- sweeps and cuts

uint64_t cCurvePlotDataSection::getSweepVariableSize(uint64_t sweepIndex) const
{
    return sweepIndex < mSweepVariables.size() ? mSweepVariables[sweepIndex].getVectorSize() : 0;
}

void cCurvePlotDataSection::getDefaultSweepPermutationArray(std::vector<uint64_t>& permutation) const
{
    permutation.resize(mSweepVariables.size());
    for (uint64_t i = 0; i < permutation.size(); ++i)
        permutation[i] = i;
}

uint64_t cCurvePlotDataSection::computeNbOfCutsPerCurve() const
{
    if (mSweepVariables.size() < 2)
        return 1;
    uint64_t cuts = 1;
    for (uint64_t i = 0; i + 1 < mSweepVariables.size(); ++i)
        cuts *= getSweepVariableSize(i);
    return cuts;
}

uint64_t cCurvePlotDataSection::computeSweepMatrixCurveIndex(uint64_t valueIndex,
                                                             const std::vector<uint64_t>& permutation,
                                                             const std::vector<uint64_t>& sweepIndices) const
{
    const uint64_t n = mSweepVariables.size();
    if (n < 2 || permutation.size() != n || sweepIndices.size() != n)
        return valueIndex;
    uint64_t acc = 0, stride = 1;
    for (uint64_t k = 0; k + 1 < n; ++k) {
        const uint64_t sweep = permutation[k];
        if (sweep >= n)
            return valueIndex;
        const uint64_t size = getSweepVariableSize(sweep);
        acc = acc * size + sweepIndices[sweep];
        stride *= size;
    }
    return acc + valueIndex * stride;
}

bool cCurvePlotDataSection::computeSweepIndicesForCut(uint64_t cutIndex, const std::vector<uint64_t>& permutation,
                                                      std::vector<uint64_t>& sweepIndices) const
{
    const uint64_t n = mSweepVariables.size();
    if (n < 2 || permutation.size() != n)
        return false;
    sweepIndices.assign(n, 0);
    for (uint64_t k = n - 1; k-- > 0;) {
        const uint64_t sweep = permutation[k];
        if (sweep >= n)
            return false;
        const uint64_t size = getSweepVariableSize(sweep);
        if (size == 0)
            return false;
        sweepIndices[sweep] = cutIndex % size;
        cutIndex /= size;
    }
    return cutIndex == 0;
}

double cCurvePlotDataSection::getSweepValue(uint64_t sweepIndex, uint64_t valueIndex) const
{
    if (sweepIndex >= mSweepVariables.size())
        return NAN;
    const cCurvePlotSweepVariable& sweep = mSweepVariables[sweepIndex];
    // Integer time axes count ticks of the section's time scale.
    if (sweep.getDataType() == curvePlotProperties::uint_64 && sweep.checkHasStorage() &&
        !sweep.checkIsParameterizedLayout() && sweep.getElementSize() == sizeof(uint64_t))
        return valueIndex < sweep.getVectorSize()
                   ? static_cast<double>(sweep.uint64Values()[valueIndex]) *
                         (sweepIndex + 1 == mSweepVariables.size() ? getTimeScaleFactor() : 1.0)
                   : NAN;
    if (sweep.checkHasStorage() && sweep.getDataSize())
        return sweep.getDoubleValue(valueIndex);
    double start = 0.0, step = 0.0;
    const cCurvePlotProperties* properties = getSweepVariableProperties(sweepIndex);
    if (properties && properties->getXStartAndStep(start, step) && valueIndex < sweep.getVectorSize())
        return start + static_cast<double>(valueIndex) * step;
    return NAN;
}

uint64_t cCurvePlotDataSection::updateOrCreateArtSweepVariable(const cCurvePlotDataType* type, const std::string& name,
                                                               double start, double stop, double step, uint64_t count)
{
    if (mSweepVariables.empty())
        addSweepVariable(type, name, 0);
    cCurvePlotSweepVariable& sweep = mSweepVariables[0];
    if (!std::isnan(start) && !std::isnan(step)) {
        cCurvePlotProperties& properties = mSweepVariableProperties[0];
        properties.setProperty(cProperty::makeDouble(x_start, start));
        if (!std::isnan(stop))
            properties.setProperty(cProperty::makeDouble(x_stop, stop));
        properties.setProperty(cProperty::makeDouble(x_step, step));
        sweep.freeStorage();
        sweep.setValueCount(count);
    }
    return 0;
}

uint64_t cCurvePlotDataSection::updateOrCreateTrivialArtSweepVariable(const cCurvePlotDataType* type, uint64_t count)
{
    return updateOrCreateArtSweepVariable(type, "x", 0.0, count ? static_cast<double>(count - 1) : 0.0, 1.0, count);
}

uint64_t cCurvePlotDataSection::updateOrCreateArtSweepVariable(cCurvePlotDataFile& store)
{
    if (!mSweepVariables.empty())
        return 0;
    uint64_t count = 0;
    for (const cCurvePlotVariable& variable : mVariables)
        count = std::max(count, variable.getVectorSize());
    return updateOrCreateTrivialArtSweepVariable(store.addType("x", data_double, curvePlotDataType::no_unit), count);
}

bool cCurvePlotDataSection::getXStartAndStepOrDefault(uint64_t sweepIndex, double& start, double& step) const
{
    const cCurvePlotProperties* properties = getSweepVariableProperties(sweepIndex);
    if (properties && properties->getXStartAndStep(start, step))
        return true;
    start = 0.0;
    step = 1.0;
    return false;
}

// ---------------------------------------------------------------- state and reload

bool cCurvePlotDataSection::checkFileMustClose() const { return mFile && mFile->checkMustClose(); }

bool cCurvePlotDataSection::checkIsReferedTo() const
{
    if (mReferenceCounter > 0)
        return true;
    for (const cCurvePlotVariable& variable : mVariables)
        if (variable.getReferenceCount() > 0)
            return true;
    for (const cCurvePlotSweepVariable& variable : mSweepVariables)
        if (variable.getReferenceCount() > 0)
            return true;
    return false;
}

void cCurvePlotDataSection::initForReloadImpl(bool clearValues, bool touchValues)
{
    mMustClose = true;
    mCurveHierarchy.clear();  // its curve indices may not survive the reload
    clearProperties();
    mStepParameters.clear();  // they index the properties just cleared
    mReloadFlags = curvePlotDataSection::reload_name_changed | curvePlotDataSection::reload_variables_added |
                   curvePlotDataSection::reload_variables_removed | curvePlotDataSection::reload_values_changed |
                   curvePlotDataSection::reload_sweep_values_changed;
    mOldValueCounts.resize(mVariables.size());
    for (uint64_t i = 0; i < mVariables.size(); ++i)
        mOldValueCounts[i] = mVariables[i].getVectorSize();
    mOldSweepValueCounts.resize(mSweepVariables.size());
    for (uint64_t i = 0; i < mSweepVariables.size(); ++i)
        mOldSweepValueCounts[i] = mSweepVariables[i].getVectorSize();
    auto reset = [&](cCurvePlotVariable& variable) {
        variable.setFlagMustClose(true);
        if (touchValues && clearValues) {
            variable.setDbSize(0);
            variable.freeStorage();
            variable.resetMinMaxInitialized();
        }
    };
    for (cCurvePlotVariable& variable : mVariables)
        reset(variable);
    for (cCurvePlotSweepVariable& variable : mSweepVariables)
        reset(variable);
}

void cCurvePlotDataSection::createCurveHierarchy(bool flag)
{
    std::lock_guard<std::mutex> lock(mNameIndexMutex);  // names may be renamed meanwhile
    mCurveHierarchyFlag = flag;
    mCurveHierarchy.computeCurveHierarchy(mVariables, true,
                                          flag ? cCurvePlotDataCurveHierarchy::vote_separator
                                               : unsigned(curvePlotProperties::no_separator));
    mCurveHierarchy.defineInstanceIndices();
}

void cCurvePlotDataSection::initForReload(bool clearValues) { initForReloadImpl(clearValues, true); }

void cCurvePlotDataSection::initForReloadFailSave() { initForReloadImpl(false, false); }

uint64_t cCurvePlotDataSection::getOldValueCount(uint64_t curveIndex) const
{
    return curveIndex < mOldValueCounts.size() ? mOldValueCounts[curveIndex] : 0;
}

bool cCurvePlotDataSection::checkSomethingChanged() const
{
    constexpr unsigned structural = curvePlotDataSection::reload_name_changed |
                                    curvePlotDataSection::reload_variables_added |
                                    curvePlotDataSection::reload_variables_removed |
                                    curvePlotDataSection::reload_new_section;
    return mMustClose || checkFileMustClose() || (mReloadFlags & structural) != 0;
}

bool cCurvePlotDataSection::checkSectionIsSimilar(const cCurvePlotDataSection& other, bool withSweepVariables) const
{
    if (mVariables.size() != other.mVariables.size())
        return false;
    if (withSweepVariables && mSweepVariables.size() != other.mSweepVariables.size())
        return false;
    auto same = [](const cCurvePlotVariable& a, const cCurvePlotVariable& b) {
        return a.checkMustClose() == b.checkMustClose() && a.name() == b.name() && a.getDataType() == b.getDataType();
    };
    for (uint64_t i = 0; i < mVariables.size(); ++i)
        if (!same(mVariables[i], other.mVariables[i]))
            return false;
    if (withSweepVariables)
        for (uint64_t i = 0; i < mSweepVariables.size(); ++i)
            if (!same(mSweepVariables[i], other.mSweepVariables[i]))
                return false;
    return true;
}

}  // namespace vx3

namespace vx3 {

bool cCurvePlotDataSection::convertParameterizedDataToSparse(uint64_t curveIndex)
{
    cCurvePlotVariable* variable = getVariablePtr(curveIndex);
    if (!variable || !variable->convertParameterizedDataToSparse())
        return false;
    // The extremes stay; the monotony of x can only have become strict.
    variable->setMonotony(derivedCurveFunction::monotony_unknown);
    return true;
}

uint64_t cCurvePlotDataSection::collectGarbage()
{
    uint64_t bytes = 0;
    auto release = [&bytes](cCurvePlotVariable& variable) {
        const uint64_t size = variable.getAllocatedSize();
        if (variable.checkHasStorage() && variable.releaseDb())
            bytes += size;
    };
    for (cCurvePlotVariable& variable : mVariables)
        release(variable);
    for (cCurvePlotSweepVariable& variable : mSweepVariables)
        release(variable);
    return bytes;
}

returnCode cCurvePlotDataSection::reloadReferencedCurvesFromDb(const cVxLogger& logger)
{
    returnCode result = ok;
    auto reload = [&](cCurvePlotVariable& variable, uint64_t index, bool sweep) {
        if (variable.getReferenceCount() <= 0 || !variable.checkDbSupportActive())
            return;
        // loadDataFromDb doesn't touch curves in use: step aside while the values come back.
        const int references = variable.getReferenceCount();
        while (variable.getReferenceCount() > 0)
            variable.decrementReferenceCount();
        variable.freeStorage();
        variable.setNeedsLoading(true);
        if (variable.loadDataFromDb(logger, this, index, sweep) != ok)
            result = failed;
        else
            variable.computeMinMaxValues();
        for (int i = 0; i < references; ++i)
            variable.incrementReferenceCount();
    };
    for (uint64_t i = 0; i < mSweepVariables.size(); ++i)
        reload(mSweepVariables[i], i, true);
    for (uint64_t i = 0; i < mVariables.size(); ++i)
        reload(mVariables[i], i, false);
    return result;
}

}  // namespace vx3
