// One analysis result: a table of curves over common sweep variables.
#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "model/analysisType.h"
#include "model/cCurvePlotDataCurveHierarchy.h"
#include "model/cCurvePlotProperties.h"
#include "model/cCurvePlotVariable.h"
#include "model/cVariableNameIndex.h"

namespace vx3 {

class cFileDbSupport;
class cCurvePlotDataFile;

namespace curvePlotDataSection {

enum reload_flag : unsigned {
    reload_name_changed = 1u << 0,
    reload_variables_added = 1u << 1,
    reload_variables_removed = 1u << 2,
    reload_new_section = 1u << 3,
    reload_values_changed = 1u << 4,
    reload_sweep_values_changed = 1u << 5,
};

// What tells one run of a multi-run file from the others.
class cStepParameters {
public:
    unsigned stepIndex = 0;
    unsigned alterIndex = 0;
    std::vector<curvePlotProperties::cProperty> parameters;

    bool corresponds(const cStepParameters& other) const;
};

}  // namespace curvePlotDataSection

class cCurvePlotDataSection : public cCurvePlotProperties {
public:
    static constexpr uint64_t npos = std::numeric_limits<uint64_t>::max();
    using cProperty = curvePlotProperties::cProperty;

    cCurvePlotDataSection(cFileDbSupport* file, const std::string& name, uint64_t sectionId);
    cCurvePlotDataSection(const cCurvePlotDataSection&) = delete;
    cCurvePlotDataSection& operator=(const cCurvePlotDataSection&) = delete;

    // ---- Identity and names
    uint64_t getSectionId() const { return mSectionId; }
    uint64_t getParentSectionId() const { return mParentSectionId; }
    void setParentSectionId(uint64_t id) { mParentSectionId = id; }
    cFileDbSupport* getFile() const { return mFile; }
    void setFile(cFileDbSupport* file) { mFile = file; }
    const std::string& name() const { return mName; }
    void setName(const std::string& name) { mName = name; }
    const std::string& shortName() const { return mShortName; }
    void setShortName(const std::string& name) { mShortName = name; }

    unsigned getStepIndex() const { return mStepIndex; }
    void setStepIndex(unsigned index);
    unsigned getAlterIndex() const { return mAlterIndex; }
    void setAlterIndex(unsigned index) { mAlterIndex = index; }
    unsigned getAdditionalDifferentiatorIndex() const { return mAdditionalDifferentiatorIndex; }
    void setAdditionalDifferentiatorIndex(unsigned index) { mAdditionalDifferentiatorIndex = index; }

    bool getShowSectionName() const { return mShowSectionName; }
    void setShowSectionName(bool flag) { mShowSectionName = flag; }
    bool getShowAnalysisType() const { return mShowAnalysisType; }
    void setShowAnalysisType(bool flag) { mShowAnalysisType = flag; }
    bool getSectionNameCanReplaceAnalysisType() const { return mSectionNameCanReplaceAnalysisType; }
    void setSectionNameCanReplaceAnalysisType(bool flag) { mSectionNameCanReplaceAnalysisType = flag; }
    void clearNameFlags() { mShowSectionName = mShowAnalysisType = mSectionNameCanReplaceAnalysisType = false; }

    // The browser's name of the section. With useShortName a non-empty short name is returned whole.
    std::string completeName(bool useShortName = false) const;
    // mask switches file, section, analysis, alter and run one by one.
    std::string completeName(const std::vector<bool>& mask) const;
    std::string uniqueShortFileNameOrSectionName() const;
    // Appends "run N" (when asked and set) and the values of the run parameters.
    void addRunParametersToName(std::string& name, bool withRunNumber) const;

    // ---- Analysis
    unsigned getAnalysisType() const { return mAnalysisType; }
    void setAnalysisType(unsigned type) { mAnalysisType = type; }
    // From a simulator's text; the text is kept as the free analysis name.
    void setAnalysisType(const std::string& text);
    const std::string& analysisTypeString() const { return mAnalysisName; }
    void setAnalysisTypeString(const std::string& text) { mAnalysisName = text; }
    // The type's text, or the free analysis name when the type has none.
    std::string getAnalysisTypeText() const;
    bool checkAnalysisTypeIsExplicit() const;
    // Time sweeps make a transient, frequency sweeps an ac analysis; explicit types stay.
    void setAnalysisTypeFromSweepVariable();
    void updateAnlysisTypeFromSweepVariable(unsigned unit);

    // ---- Runs
    bool checkMultiRunMakesSense() const;
    void pushBackStepParameter(const std::string& name, double value);
    void pushBackStepParameter(const std::string& name, double real, double imag);
    void pushBackStepParameter(const std::string& name, const std::string& text);
    const std::vector<uint64_t>& getStepParameterIndices() const { return mStepParameters; }
    void clearStepParameters() { mStepParameters.clear(); }
    curvePlotDataSection::cStepParameters getStepParameters() const;

    // ---- Variables
    uint64_t getNbOfVariables() const { return mVariables.size(); }
    uint64_t getNbOfSweepVariables() const { return mSweepVariables.size(); }
    cCurvePlotVariable& getVariable(uint64_t index) { return mVariables[index]; }
    const cCurvePlotVariable& getVariable(uint64_t index) const { return mVariables[index]; }
    cCurvePlotVariable* getVariablePtr(uint64_t index) { return index < mVariables.size() ? &mVariables[index] : nullptr; }
    cCurvePlotSweepVariable& getSweepVariable(uint64_t index) { return mSweepVariables[index]; }
    const cCurvePlotSweepVariable& getSweepVariable(uint64_t index) const { return mSweepVariables[index]; }
    cCurvePlotSweepVariable* getSweepVariablePtr(uint64_t index)
    {
        return index < mSweepVariables.size() ? &mSweepVariables[index] : nullptr;
    }
    void reserveVariables(uint64_t count) { mVariables.reserve(count); }
    // Both return the new curve index. The NoCapacityTest form is for readers that reserved.
    uint64_t addVariable(const cCurvePlotDataType* type, const std::string& name);
    uint64_t addVariableNoCapacityTest(const cCurvePlotDataType* type, const std::string& name);
    uint64_t addSweepVariable(const cCurvePlotDataType* type, const std::string& name, int position);
    bool renameVariable(uint64_t index, const std::string& name);
    bool removeVariable(uint64_t index);
    // Rebuilds the name lookup on the next search (after names were changed behind its back).
    void invalidateNameIndex() { mNameIndex.invalidate(); }

    // ---- Finding: answers an index past the end (npos) when nothing matches.
    // Readers' forms: exact name, curves that must close included.
    uint64_t findVariableCheckType(const cCurvePlotDataType* type, const std::string& name) const;
    uint64_t findVariableDontCheckType(const std::string& name) const;
    uint64_t findNextVariableCheckType(uint64_t start, const cCurvePlotDataType* type, const std::string& name) const;
    uint64_t findNextVariableDontCheckType(uint64_t start, const std::string& name) const;
    // A name followed by a bus or hierarchy ending ("bus" finds "bus[7:0]"), for matching on reload.
    uint64_t findClosingVariableIndex(const std::string& name) const;
    uint64_t findClosingNextVariableUpdateStart(uint64_t& start, const std::string& name) const;
    uint64_t findSweepVariable(const cCurvePlotDataType* type, const std::string& name, int position) const;
    // Users' forms: the passes of the name search; curves that must close are not found.
    uint64_t findVariableIndex(const std::string& name) const { return findVariableIndex(0, name, false); }
    uint64_t findVariableIndex(uint64_t start, const std::string& name) const { return findVariableIndex(start, name, false); }
    uint64_t findVariableIndex(uint64_t start, const std::string& name, bool caseInsensitive) const;
    uint64_t findVariableIndexCaseSensitive(const std::string& name) const { return findVariableIndex(0, name, false); }
    std::vector<uint64_t> findAllVariableIndices(const std::string& name) const;
    uint64_t findVoltageVariableIndex(const std::string& name) const;
    uint64_t findVoltageOrLogicVariableIndex(const std::string& name) const;
    uint64_t findCurrentVariableIndex(const std::string& name) const;
    uint64_t findLogicBusVariableIndex(const std::string& name) const;
    uint64_t findSweepVariableIndex(const std::string& name) const;
    // "name - sweep=value, ... vs x": the curve, its sweep indices and the permutation that the name implies.
    uint64_t findVariableIndexForSweepMatrix(uint64_t start, const std::string& cutName, bool caseInsensitive,
                                             std::vector<uint64_t>& sweepIndices,
                                             std::vector<uint64_t>& permutation) const;
    // name, or name_1, name_2, ...; "" when even name_99999999 is taken.
    std::string generateUniqueCurveName(const std::string& name) const;

    // ---- Sweeps and cuts
    uint64_t getSweepVariableSize(uint64_t sweepIndex) const;
    void getDefaultSweepPermutationArray(std::vector<uint64_t>& permutation) const;
    uint64_t computeNbOfCutsPerCurve() const;
    uint64_t computeSweepMatrixCurveIndex(uint64_t valueIndex, const std::vector<uint64_t>& permutation,
                                          const std::vector<uint64_t>& sweepIndices) const;
    bool computeSweepIndicesForCut(uint64_t cutIndex, const std::vector<uint64_t>& permutation,
                                   std::vector<uint64_t>& sweepIndices) const;
    // Value of a sweep variable at an index: from its values in memory or its start and step.
    double getSweepValue(uint64_t sweepIndex, uint64_t valueIndex) const;
    // Creates the first sweep variable if there is none; start and step (unless NaN) become its
    // X Start, X Stop and X Step properties. Returns the sweep index.
    uint64_t updateOrCreateArtSweepVariable(const cCurvePlotDataType* type, const std::string& name, double start,
                                            double stop, double step, uint64_t count);
    // "x" counting 0, 1, 2, ...
    uint64_t updateOrCreateTrivialArtSweepVariable(const cCurvePlotDataType* type, uint64_t count);
    // The trivial form sized to the longest curve, when no sweep variable exists.
    uint64_t updateOrCreateArtSweepVariable(cCurvePlotDataFile& store);
    bool getXStartAndStepOrDefault(uint64_t sweepIndex, double& start, double& step) const;
    // The x axis (the last sweep variable) when its values are in memory as doubles; null otherwise.
    const double* getXAxisDoubleValues(uint64_t& count) const;
    // Seconds per unit of an integer time axis: the Scale property of the x-axis sweep
    // variable (digital dumps count time in ticks of their time scale); 1 without one.
    double getTimeScaleFactor() const;

    // ---- Values of the curves as a whole (cCurvePlotDataSectionValues.cpp)
    // The vectors of one cut of a sweep-matrix curve: y from the cut's first value with the cut
    // stride, x the sweep that permutation puts last. A curve without sweep matrix: its vectors.
    bool computeSweepDataVectors(uint64_t curveIndex, uint64_t cutIndex, const std::vector<uint64_t>& permutation,
                                 curvePlotFunctionArgs::cDataVectors& vectors) const;
    // Curves one value short of the x axis get their last value again; returns how many.
    uint64_t duplicateLastValueIfNecessary();
    void balanceParameterizedCurves();
    // Extremes of every loaded curve that has none yet; returns how many were computed.
    uint64_t computeMinMaxValuesOfLoadedCurves();
    // Loads the sweep (x-axis) variables that stay in the file until asked for
    // (cCurvePlotDataSectionLoad.cpp). ok when all are in memory afterwards.
    returnCode loadSweepVariablesFromDb(const cVxLogger& logger);
    // The number of values of a curve: in memory, or in the file when not loaded yet.
    uint64_t getVariableValueCount(uint64_t index) const;

    // ---- Instance tree of the curve names; its root is the section.
    const cCurvePlotDataCurveHierarchy& getCurveHierarchy() const { return mCurveHierarchy; }
    cCurvePlotDataCurveHierarchy& getCurveHierarchy() { return mCurveHierarchy; }
    // With flag off all curves stay at the root (the reader's option not to build instances).
    void createCurveHierarchy(bool flag = true);

    // ---- Per-curve properties
    void addSweepVariableProperties(uint64_t index, const cCurvePlotProperties& properties);
    void addCurveProperties(uint64_t index, const cCurvePlotProperties& properties);
    void setCurveProperties(uint64_t index, const cCurvePlotProperties& properties);
    void removeCurveProperties(uint64_t index);
    void clearCurveProperties();
    const cCurvePlotProperties* getCurveProperties(uint64_t index) const;
    const cCurvePlotProperties* getSweepVariableProperties(uint64_t index) const;
    // The section's own fields ahead of its property vector.
    uint64_t getNbOfSectionProperties() const;
    bool getSectionProperty(uint64_t index, cProperty& property) const;
    uint64_t getNbOfCurveProperties(uint64_t curveIndex) const;
    bool getCurveProperty(uint64_t curveIndex, uint64_t index, cProperty& property) const;

    // ---- State and reload
    void setFlagMustClose(bool flag) { mMustClose = flag; }
    bool checkMustClose() const { return mMustClose; }
    bool checkFileMustClose() const;
    void incrementReferenceCounter() { ++mReferenceCounter; }
    void decrementReferenceCounter()
    {
        if (mReferenceCounter > 0)
            --mReferenceCounter;
    }
    int getReferenceCounter() const { return mReferenceCounter; }
    bool checkIsReferedTo() const;
    unsigned getReloadFlags() const { return mReloadFlags; }
    void setReloadFlags(unsigned flags) { mReloadFlags = flags; }
    void setReloadFlag(unsigned flag, bool on) { mReloadFlags = on ? (mReloadFlags | flag) : (mReloadFlags & ~flag); }
    // Frees the values of all curves and sweep variables that can be loaded again and aren't
    // in use. Returns the bytes freed.
    uint64_t collectGarbage();
    // A curve that a load found to change seldom keeps only its changes (and the ends of runs of
    // an analog curve). False when the curve isn't parameterized.
    bool convertParameterizedDataToSparse(uint64_t curveIndex);
    // After a reload: loads again what is still referred to and recomputes its extremes.
    returnCode reloadReferencedCurvesFromDb(const cVxLogger& logger);
    void initForReload(bool clearValues);
    void initForReloadFailSave();
    uint64_t getOldValueCount(uint64_t curveIndex) const;
    bool checkSomethingChanged() const;
    // Same counts, and pair by pair the same must-close state, name and data type.
    bool checkSectionIsSimilar(const cCurvePlotDataSection& other, bool withSweepVariables) const;

private:
    void initForReloadImpl(bool clearValues, bool touchValues);
    void refreshCurveHierarchy();
    uint64_t findWithKey(cVariableNameIndex::key_kind kind, const std::string& query, uint64_t start,
                         bool usersOnly) const;
    uint64_t findPasses(uint64_t start, const std::string& name, bool caseInsensitive) const;
    void addDifferentiatorAndRun(std::string& text, bool alter, bool run) const;
    std::vector<cProperty> getOwnSectionProperties() const;

    cFileDbSupport* mFile = nullptr;
    std::string mShortName;
    std::string mName;
    unsigned mStepIndex = 0;
    std::vector<uint64_t> mStepParameters;
    unsigned mAlterIndex = 0;
    unsigned mAdditionalDifferentiatorIndex = 0;
    bool mShowSectionName = false;
    bool mShowAnalysisType = false;
    bool mSectionNameCanReplaceAnalysisType = false;
    std::vector<cCurvePlotSweepVariable> mSweepVariables;
    std::vector<cCurvePlotVariable> mVariables;
    std::map<uint64_t, cCurvePlotProperties> mSweepVariableProperties;
    std::map<uint64_t, cCurvePlotProperties> mCurveProperties;
    unsigned mAnalysisType = curvePlotDataSection::undefined_analysis;
    std::string mAnalysisName;
    bool mMustClose = false;
    int mReferenceCounter = 0;
    unsigned mReloadFlags = 0;
    uint64_t mSectionId = 0;
    uint64_t mParentSectionId = 0;
    std::vector<uint64_t> mOldValueCounts;
    std::vector<uint64_t> mOldSweepValueCounts;
    // Built lazily by const lookups, which may come from the reader thread and the main thread.
    mutable std::mutex mNameIndexMutex;
    mutable cVariableNameIndex mNameIndex;
    cCurvePlotDataCurveHierarchy mCurveHierarchy;
    bool mCurveHierarchyFlag = true;
};

}  // namespace vx3
