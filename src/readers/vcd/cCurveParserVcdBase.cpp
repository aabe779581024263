#include "readers/vcd/cCurveParserVcdBase.h"

#include <algorithm>
#include <cstring>

#include "model/cCurvePlotProperties.h"

namespace vx3 {

using namespace curveParserVcd;
using namespace curvePlotProperties;

std::string cCurveParserVcdBase::formatDebugMessage(uint64_t position, const std::string& text)
{
    return "Vcd parser, file position " + std::to_string(position) + " : " + text;
}

void cCurveParserVcdBase::printDebugMessage(uint64_t position, const std::string& text) const
{
    errorMsg(formatDebugMessage(position, text));
}

std::string cCurveParserVcdBase::computeVariableName(const std::string& scopePath, const std::string& reference,
                                                     int64_t lower, int64_t upper, bool hasLower, bool hasUpper,
                                                     curvePlotDataType::dataUnit& unit)
{
    std::string name = scopePath.empty() ? reference : scopePath + "." + reference;
    if (hasLower && hasUpper)
        name += "[" + std::to_string(lower) + ":" + std::to_string(upper) + "]";
    else if (hasLower)
        name += "[" + std::to_string(lower) + "]";
    // Mixed-signal dumps name analog quantities like a Spice output: "i(...)" is a current.
    unit = curvePlotDataType::undefined_unit;
    if (reference.size() > 3 && reference.back() == ')' && reference[1] == '(') {
        if (reference[0] == 'i' || reference[0] == 'I')
            unit = curvePlotDataType::ampere;
        else if (reference[0] == 'v' || reference[0] == 'V')
            unit = curvePlotDataType::volt;
    }
    return name;
}

void cCurveParserVcdBase::clear()
{
    // The reload context (the old sections) stays: a reload reads the file again into them.
    clearReloadFillOrder();
    mCodes.clear();
    mSignals.clear();
    mScopes.clear();
    mOpenScopes.clear();
    mRootRanges.clear();
    mDumpOffIntervals.clear();
    mMaxWidth = 1;
    mStepCount = 0;
    mFirstTime = mLastTime = 0;
    mDeltaCyclesUsed = false;
    mOverwritten = false;
    mTimeScaleFactor = 1.0;
    mTimeScaleText.clear();
    mSweep = nullptr;
}

// ---------------------------------------------------------------- types

const cCurvePlotDataType* cCurveParserVcdBase::getVectorTypePtr(uint32_t width)
{
    const cCurvePlotDataType*& type = mVectorTypes[width];
    if (!type)
        type = store().addType(width == 1 ? "logic" : "logic vector", sparse_logic_vector_4_state,
                               curvePlotDataType::logic_state, width);
    return type;
}

const cCurvePlotDataType* cCurveParserVcdBase::getPortTypePtr(uint32_t width)
{
    const cCurvePlotDataType*& type = mPortTypes[width];
    if (!type)
        type = store().addType("port", sparse_logic_vector_256_state, curvePlotDataType::logic_state, width);
    return type;
}

const cCurvePlotDataType* cCurveParserVcdBase::getPortWithStrengthTypePtr(uint32_t width)
{
    const cCurvePlotDataType*& type = mPortStrengthTypes[width];
    if (!type)
        type = store().addType("port with strength", sparse_logic_vector_256_state, curvePlotDataType::logic_state,
                               width);
    return type;
}

const cCurvePlotDataType* cCurveParserVcdBase::getBadVariableDefinitionTypePtr(uint32_t width)
{
    const cCurvePlotDataType*& type = mBadTypes[width];
    if (!type)
        type = store().addType("bad variable definition", sparse_logic_vector_256_state,
                               curvePlotDataType::logic_state, width);
    return type;
}

const cCurvePlotDataType* cCurveParserVcdBase::getRealTypePtr(curvePlotDataType::dataUnit unit)
{
    const cCurvePlotDataType*& type = mRealTypes[unit];
    if (!type)
        type = store().addType("", parameterized_double, unit);
    return type;
}

// ---------------------------------------------------------------- declarations

void cCurveParserVcdBase::openScope(const std::string& type, const std::string& name)
{
    cScope scope;
    scope.type = type;
    scope.name = name;
    scope.parent = mOpenScopes.empty() ? kNoSignal : mOpenScopes.back();
    scope.fullName = mOpenScopes.empty() ? name : currentScopePath() + "." + name;
    const uint32_t index = static_cast<uint32_t>(mScopes.size());
    if (scope.parent != kNoSignal)
        mScopes[scope.parent].children.push_back(index);
    mScopes.push_back(std::move(scope));
    mOpenScopes.push_back(index);
}

bool cCurveParserVcdBase::closeScope()
{
    if (mOpenScopes.empty())
        return false;
    mOpenScopes.pop_back();
    return true;
}

std::string cCurveParserVcdBase::currentScopePath() const
{
    return mOpenScopes.empty() ? std::string() : mScopes[mOpenScopes.back()].fullName;
}

void cCurveParserVcdBase::insertVariableToMap(std::string_view code, const cCurvePlotDataType* type,
                                              const std::string& name, signal_kind kind, uint32_t width,
                                              unsigned variableType, bool hasBits, int64_t left, int64_t right)
{
    const uint64_t curveIndex = pushVariableToFillOrder(type, name);
    cCurvePlotProperties properties;
    properties.addProperty(cProperty::makeInteger(variable_type, variableType));
    if (hasBits) {
        properties.addProperty(cProperty::makeInteger(left_bit_number, left));
        properties.addProperty(cProperty::makeInteger(right_bit_number, right));
    }
    currentSection()->setCurveProperties(curveIndex, properties);

    const uint32_t index = static_cast<uint32_t>(mSignals.size());
    cSignal added;
    added.curveIndex = curveIndex;
    added.width = kind == real_signal ? 0 : std::max<uint32_t>(width, 1);
    added.kind = kind;
    mSignals.push_back(added);
    mMaxWidth = std::max(mMaxWidth, added.width);
    uint32_t previous = kNoSignal;
    mSignals.back().head = index;
    if (!mCodes.insertCode(code, index, previous)) {
        mSignals.back().head = previous;
        // Values of a shared code go to every variable of the chain.
        uint32_t last = previous;
        while (mSignals[last].aliasNext != kNoSignal)
            last = mSignals[last].aliasNext;
        mSignals[last].aliasNext = index;
    }
    auto& ranges = mOpenScopes.empty() ? mRootRanges : mScopes[mOpenScopes.back()].curveRanges;
    const uint32_t curve = static_cast<uint32_t>(curveIndex);
    if (!ranges.empty() && ranges.back().second + 1 == curve)
        ranges.back().second = curve;
    else
        ranges.emplace_back(curve, curve);
}

bool cCurveParserVcdBase::createSweepVariable()
{
    cCurvePlotDataSection& section = *currentSection();
    if (!mTimeType)
        mTimeType = store().addType("time", uint_64, curvePlotDataType::second);
    const uint64_t index = pushSweepVariableToFillOrder(mTimeType, "time", 0);
    if (section.getNbOfSweepVariables() != 1) {
        errorMsg("vcd parser : section has more than one sweep variable.");
        return false;
    }
    mSweep = &section.getSweepVariable(index);
    mSweep->freeStorage();
    cCurvePlotProperties properties;
    properties.addProperty(cProperty::makeDouble(scale, mTimeScaleFactor));
    section.addSweepVariableProperties(index, properties);
    if (!mTimeScaleText.empty())
        section.setProperty(cProperty::makeText(user_defined, mTimeScaleText, "Time scale"));
    return true;
}

void cCurveParserVcdBase::prepareCurves()
{
    cCurvePlotDataSection& section = *currentSection();
    for (cSignal& entry : mSignals) {
        cCurvePlotVariable& curve = section.getVariable(entry.curveIndex);
        entry.curve = &curve;
        curve.freeStorage();
        curve.setGrowthFlag(false);
    }
}

void cCurveParserVcdBase::buildInstanceNode(cCurvePlotDataCurveHierarchy& node, uint32_t scope) const
{
    const cScope& own = mScopes[scope];
    for (const auto& [first, last] : own.curveRanges)
        node.addRangeOfCurveIndices(first, last);
    for (uint32_t child : own.children) {
        cCurvePlotDataCurveHierarchy& added = node.pushBackChild(mScopes[child].name, mScopes[child].fullName);
        added.setSubcircuitName(mScopes[child].type);
        buildInstanceNode(added, child);
    }
}

void cCurveParserVcdBase::defineInstanceTree()
{
    // One instance per scope, straight from the declarations: the names need no guessing.
    cCurvePlotDataCurveHierarchy& root = currentSection()->getCurveHierarchy();
    root.clear();
    root.setSeparatorType(dot_separator);
    for (const auto& [first, last] : mRootRanges)
        root.addRangeOfCurveIndices(first, last);
    for (uint32_t scope = 0; scope < mScopes.size(); ++scope) {
        if (mScopes[scope].parent != kNoSignal)
            continue;
        cCurvePlotDataCurveHierarchy& added = root.pushBackChild(mScopes[scope].name, mScopes[scope].fullName);
        added.setSubcircuitName(mScopes[scope].type);
        buildInstanceNode(added, scope);
    }
    root.defineInstanceIndices();
}

// ---------------------------------------------------------------- finishing

void cCurveParserVcdBase::completeDigitalVariables()
{
    // The blocks were sized for one record more than the file gave: the last value holds to the
    // end of the time axis.
    const double lastX = static_cast<double>(mLastTime) * mTimeScaleFactor;
    for (cSignal& entry : mSignals) {
        cCurvePlotVariable& curve = *entry.curve;
        const uint64_t count = curve.getValueCount();
        if (count == 0)
            continue;
        if (entry.kind == real_signal) {
            const double* xs = reinterpret_cast<const double*>(curve.parameterizedXData());
            if (xs[count - 1] < lastX && count < curve.getParameterizedCapacity()) {
                double value = 0;
                std::memcpy(&value, curve.parameterizedYData() + (count - 1) * sizeof(double), sizeof(double));
                std::memcpy(curve.parameterizedXData() + count * sizeof(double), &lastX, sizeof(double));
                std::memcpy(curve.parameterizedYData() + count * sizeof(double), &value, sizeof(double));
                curve.setUsedValueCount(count + 1);
            }
            curve.balanceParameterizedCurve();
        } else {
            const uint64_t* positions = curve.valueVectorPositions();
            if (positions[count - 1] < mLastTime && count < curve.getValueVectorPairCapacity()) {
                char* vectors = curve.valueVectorData();
                std::memcpy(const_cast<uint64_t*>(positions) + count, &mLastTime, sizeof(uint64_t));
                std::memmove(vectors + count * entry.width, vectors + (count - 1) * entry.width, entry.width);
                curve.setUsedValueCount(count + 1);
            }
        }
        curve.setGrowthFlag(false);
    }
}

void cCurveParserVcdBase::setMinMaxOfTimeAxis()
{
    if (!mSweep || mStepCount == 0)
        return;
    cCurvePlotDataSection& section = *currentSection();
    mSweep->setMinMaxValue(static_cast<double>(mFirstTime) * mTimeScaleFactor,
                           static_cast<double>(mLastTime) * mTimeScaleFactor, mStepCount);
    if (!mDumpOffIntervals.empty()) {
        std::string text;
        for (size_t i = 0; i < mDumpOffIntervals.size(); ++i)
            text += (i ? (i % 2 ? "-" : ",") : "") + std::to_string(mDumpOffIntervals[i]);
        section.setProperty(cProperty::makeText(user_defined, text, "Dump Off Intervals"));
    }
}

}  // namespace vx3
