#include "readers/vcd/cCurveParserVcdBase.h"

#include <algorithm>
#include <cstring>

#include "model/cCurvePlotProperties.h"

namespace vx3 {

using namespace curveParserVcd;
using namespace curvePlotProperties;

namespace {
// Blocks start small: a dump may declare a hundred thousand signals of which most never change.
constexpr uint64_t kFirstRecords = 4;
}  // namespace

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
    cCurveParserIntermediate::clear();
    mCodes.clear();
    mSignals.clear();
    mScopes.clear();
    mOpenScopes.clear();
    mRootRanges.clear();
    mScopeStack.clear();
    mDumpOffIntervals.clear();
    mMaxWidth = 1;
    mStepCount = 0;
    mPreviousTime = mCurrentTime = mFirstTime = 0;
    mPreviousDelta = mDeltaCycle = 0;
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
    scope.fullName = mScopeStack.empty() ? name : currentScopePath() + "." + name;
    const uint32_t index = static_cast<uint32_t>(mScopes.size());
    if (scope.parent != kNoSignal)
        mScopes[scope.parent].children.push_back(index);
    mScopes.push_back(std::move(scope));
    mOpenScopes.push_back(index);
    mScopeStack.push_back(name);
}

bool cCurveParserVcdBase::closeScope()
{
    if (mOpenScopes.empty())
        return false;
    mOpenScopes.pop_back();
    mScopeStack.pop_back();
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
    if (!mCodes.insertCode(code, index, previous)) {
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
    mSweep->setGrowthFlag(true);
    if (!mSweep->setSize(1024, sizeof(uint64_t)))
        return false;
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
    mExtendBuffer.assign(std::max<uint32_t>(mMaxWidth, 1), '0');
    for (cSignal& entry : mSignals) {
        cCurvePlotVariable& curve = section.getVariable(entry.curveIndex);
        entry.curve = &curve;
        entry.lastStep = kNoStep;
        curve.freeStorage();
        curve.setGrowthFlag(true);
        if (entry.kind == real_signal)
            curve.setParameterizedSize(kFirstRecords, sizeof(double), sizeof(double));
        else
            curve.setValueVectorPairSize(kFirstRecords, entry.width);
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

// ---------------------------------------------------------------- values

bool cCurveParserVcdBase::pushBackTimeStep(uint64_t time, unsigned delta)
{
    if (mStepCount > 0) {
        if (time < mPreviousTime || (time == mPreviousTime && delta < mPreviousDelta))
            return false;
        if (time == mPreviousTime && delta == mPreviousDelta)
            return true;
    } else {
        mFirstTime = time;
    }
    mPreviousTime = time;
    mPreviousDelta = delta;
    mCurrentTime = time;
    ++mStepCount;
    if (mSweep)
        mSweep->pushBackValue<uint64_t>(time);
    return true;
}

void cCurveParserVcdBase::storeLogicOne(cSignal& target, const char* bits, uint64_t n)
{
    const uint64_t width = target.width;
    const char* value = bits;
    if (n < width) {
        // Verilog's left extension: x and z repeat, anything else extends with 0.
        const char fill = bits[0] == 'x' || bits[0] == 'z' ? bits[0] : '0';
        char* extended = mExtendBuffer.data();
        std::memset(extended, fill, width - n);
        std::memcpy(extended + (width - n), bits, n);
        value = extended;
    } else if (n > width) {
        value = bits + (n - width);
    }
    cCurvePlotVariable& curve = *target.curve;
    const uint64_t step = mStepCount - 1;
    const uint64_t count = curve.getValueCount();
    if (target.lastStep == step && count) {
        // A second value in one step replaces the first.
        std::memcpy(curve.valueVectorData() + (count - 1) * width, value, width);
        mOverwritten = true;
        return;
    }
    if (count >= curve.getValueVectorPairCapacity())
        curve.reserveValueVectorPairs(count < 64 ? count * 2 + 4 : count + count / 2);
    curve.pushBackValueVectorPair(mCurrentTime, value, width);
    target.lastStep = step;
}

void cCurveParserVcdBase::storeLogic(uint32_t signal, const char* bits, uint64_t n)
{
    while (signal != kNoSignal) {
        cSignal& target = mSignals[signal];
        if (target.kind != real_signal)
            storeLogicOne(target, bits, n);
        signal = target.aliasNext;
    }
}

void cCurveParserVcdBase::storeReal(uint32_t signal, double value)
{
    const double x = static_cast<double>(mCurrentTime) * mTimeScaleFactor;
    while (signal != kNoSignal) {
        cSignal& target = mSignals[signal];
        if (target.kind == real_signal) {
            cCurvePlotVariable& curve = *target.curve;
            const uint64_t step = mStepCount - 1;
            const uint64_t count = curve.getValueCount();
            if (target.lastStep == step && count) {
                std::memcpy(curve.parameterizedYData() + (count - 1) * sizeof(double), &value, sizeof(double));
                mOverwritten = true;
            } else {
                curve.pushBackValuePair(x, value);
                target.lastStep = step;
            }
        }
        signal = target.aliasNext;
    }
}

bool cCurveParserVcdBase::pushDumpOff(uint64_t position)
{
    if (mDumpOffIntervals.size() % 2 != 0)
        return false;
    mDumpOffIntervals.push_back(position);
    return true;
}

bool cCurveParserVcdBase::pushDumpOn(uint64_t position)
{
    if (mDumpOffIntervals.size() % 2 != 1)
        return false;
    mDumpOffIntervals.push_back(position);
    return true;
}

// ---------------------------------------------------------------- finishing

void cCurveParserVcdBase::pushLastDeltaStep()
{
    // The last delta cycle gets a step of its own so that its values have a width when drawn.
    if (mDeltaCyclesUsed && mStepCount > 0)
        pushBackTimeStep(mPreviousTime, mPreviousDelta + 1);
}

void cCurveParserVcdBase::completeDigitalVariables()
{
    if (mStepCount == 0)
        return;
    const uint64_t lastStep = mStepCount - 1;
    const uint64_t lastTime = mPreviousTime;
    const double lastX = static_cast<double>(lastTime) * mTimeScaleFactor;
    for (cSignal& entry : mSignals) {
        cCurvePlotVariable& curve = *entry.curve;
        const uint64_t count = curve.getValueCount();
        if (count && entry.lastStep != lastStep) {
            // The last value holds to the end of the time axis.
            if (entry.kind == real_signal) {
                double value = 0;
                std::memcpy(&value, curve.parameterizedYData() + (count - 1) * sizeof(double), sizeof(double));
                curve.pushBackValuePair(lastX, value);
            } else {
                if (count >= curve.getValueVectorPairCapacity())
                    curve.reserveValueVectorPairs(count + 1);
                const char* last = curve.valueVectorData() + (count - 1) * entry.width;
                std::memcpy(mExtendBuffer.data(), last, entry.width);
                curve.pushBackValueVectorPair(lastTime, mExtendBuffer.data(), entry.width);
            }
            entry.lastStep = lastStep;
        }
        if (entry.kind == real_signal)
            curve.balanceParameterizedCurve();
        else
            curve.shrinkValueVectorPairs();
        curve.setGrowthFlag(false);
    }
    if (mSweep) {
        mSweep->setGrowthFlag(false);
    }
}

void cCurveParserVcdBase::setMinMaxOfTimeAxis()
{
    if (!mSweep || mStepCount == 0)
        return;
    cCurvePlotDataSection& section = *currentSection();
    mSweep->setMinMaxValue(static_cast<double>(mFirstTime) * mTimeScaleFactor,
                           static_cast<double>(mPreviousTime) * mTimeScaleFactor, mStepCount);
    if (!mDumpOffIntervals.empty()) {
        std::string text;
        for (size_t i = 0; i < mDumpOffIntervals.size(); ++i)
            text += (i ? (i % 2 ? "-" : ",") : "") + std::to_string(mDumpOffIntervals[i]);
        section.setProperty(cProperty::makeText(user_defined, text, "Dump Off Intervals"));
    }
}

}  // namespace vx3
