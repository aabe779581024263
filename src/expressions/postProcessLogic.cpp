#include "expressions/postProcessLogic.h"

#include <algorithm>
#include <cstring>

#include "expressions/cPostProcessCurveDescriptionUser.h"
#include "model/dataType.h"

namespace vx3::postProcess {

namespace {

enum class cBit { zero, one, unknown, floating };

cBit classify(char state)
{
    switch (state) {
    case '0': case 'l': case 'L': return cBit::zero;
    case '1': case 'h': case 'H': return cBit::one;
    case 'z': case 'Z': return cBit::floating;
    default: return cBit::unknown;
    }
}

// The ratio of a coarse time scale to a fine one when it is a whole number, else 0.
uint64_t wholeRatio(double coarse, double fine)
{
    const double ratio = std::round(coarse / fine);
    if (!(ratio >= 1) || std::fabs(ratio * fine - coarse) > 1e-9 * coarse)
        return 0;
    return static_cast<uint64_t>(ratio);
}

}  // namespace

bool makeSparseLogic(const cCurvePlotVariable& curve, const cCurvePlotDataSection& section, cSparseLogic& view)
{
    using namespace curvePlotProperties;
    const unsigned type = curve.getDataType();
    if (type != sparse_logic_vector_2_state && type != sparse_logic_vector_4_state &&
        type != sparse_logic_vector_256_state)
        return false;
    if (!curve.checkHasStorage() || !curve.getValueVectorWidth())
        return false;
    view.positions = curve.valueVectorPositions();
    view.states = curve.valueVectorData();
    view.width = curve.getValueVectorWidth();
    view.count = curve.getVectorSize();
    view.timeScale = section.getTimeScaleFactor();
    if (!(view.timeScale > 0))
        view.timeScale = 1.0;
    return true;
}

void cSparseLogicResult::push(uint64_t position, const char* state)
{
    const uint64_t n = positions.size();
    if (n && std::memcmp(states.data() + (n - 1) * width, state, width) == 0)
        return;
    if (n && positions.back() == position) {
        // A later state at the same tick replaces the earlier one.
        states.replace((n - 1) * width, width, state, width);
        if (n > 1 && std::memcmp(states.data() + (n - 2) * width, state, width) == 0) {
            positions.pop_back();
            states.resize((n - 1) * width);
        }
        return;
    }
    positions.push_back(position);
    states.append(state, width);
}

void cSparseLogicResult::close(uint64_t position)
{
    if (positions.empty() || position <= positions.back())
        return;
    positions.push_back(position);
    states.append(states.data() + states.size() - width, width);
}

double cXIter::computeDigitalValue() const
{
    return convertLogicStateToDouble(logicValue(), logicVectorSize(), cLogicLevels());
}

void cXIterUint64SparseLogic::gotoValue(const double& x)
{
    // The last time stamp at or before x.
    uint64_t low = 0, high = mCurve.count;
    while (low < high) {
        const uint64_t middle = low + (high - low) / 2;
        if (static_cast<double>(mCurve.positions[middle]) * mCurve.timeScale <= x)
            low = middle + 1;
        else
            high = middle;
    }
    mIndex = low == 0 ? 0 : low - 1;
}

double convertLogicStateToDouble(const char* state, uint64_t width, const cLogicLevels& levels)
{
    if (width == 1) {
        switch (classify(state[0])) {
        case cBit::zero: return levels.zero;
        case cBit::one: return levels.one;
        case cBit::floating: return levels.z;
        default: return levels.x;
        }
    }
    double value = 0;
    bool floating = false;
    for (uint64_t i = 0; i < width; ++i) {
        switch (classify(state[i])) {
        case cBit::zero: value = value * 2; break;
        case cBit::one: value = value * 2 + 1; break;
        case cBit::floating: floating = true; break;
        default: return levels.x;
        }
    }
    return floating ? levels.z : value;
}

void convertLogicToDouble(const cSparseLogic& curve, const cLogicLevels& levels, double riseTime,
                          std::vector<double>& xs, std::vector<double>& ys)
{
    xs.clear();
    ys.clear();
    if (!curve.count)
        return;
    xs.reserve(curve.count * 2);
    ys.reserve(curve.count * 2);
    cXIterUint64SparseLogic iter(curve);
    double previous = convertLogicStateToDouble(iter.logicValue(), curve.width, levels);
    xs.push_back(iter.getValue());
    ys.push_back(previous);
    for (iter.increment(); !iter.atEnd(); iter.increment()) {
        const double x = iter.getValue();
        const double level = convertLogicStateToDouble(iter.logicValue(), curve.width, levels);
        if (level == previous || (std::isnan(level) && std::isnan(previous)))
            continue;
        // The old level holds up to the change; the new one is reached riseTime later, or at the
        // next change when that comes sooner.
        xs.push_back(x);
        ys.push_back(previous);
        double end = x;
        if (riseTime > 0) {
            end = x + riseTime;
            cXIterUint64SparseLogic next = iter;
            next.increment();
            if (!next.atEnd())
                end = std::min(end, next.getValue());
        }
        xs.push_back(end);
        ys.push_back(level);
        previous = level;
    }
    // The last state holds to the last event's time.
    const double last = static_cast<double>(curve.positions[curve.count - 1]) * curve.timeScale;
    if (xs.back() < last) {
        xs.push_back(last);
        ys.push_back(previous);
    }
}

bool convertLogicToDouble(cCurvePlotDataFile& store, cCurvePlotDataSection& resultSection, const std::string& name,
                          const cPostProcessCurveDescription& curve, const cLogicLevels& levels, double riseTime,
                          uint64_t& resultIndex, std::string& error)
{
    if (!curve.load(false, error))
        return false;
    cSparseLogic view;
    if (!makeSparseLogic(*curve.getCurvePtr(), *curve.getSection(), view)) {
        error = "Incompatible data type.";
        return false;
    }
    std::vector<double> xs, ys;
    convertLogicToDouble(view, levels, riseTime, xs, ys);
    return storeResultCurve(
        store, resultSection, name, curvePlotProperties::parameterized_double, curvePlotDataType::no_unit,
        [&](cCurvePlotVariable& result) { return result.setParameterizedDoubleValues(xs.data(), ys.data(), xs.size()); },
        resultIndex, error);
}

void convertEnumToDouble(const std::vector<std::string>& states, const std::map<std::string, double>& table,
                         std::vector<double>& ys)
{
    ys.resize(states.size());
    std::map<std::string, double> order;
    for (size_t i = 0; i < states.size(); ++i) {
        if (table.empty()) {
            const auto found = order.emplace(states[i], static_cast<double>(order.size())).first;
            ys[i] = found->second;
            continue;
        }
        const auto found = table.find(states[i]);
        ys[i] = found == table.end() ? NAN : found->second;
    }
}

bool computeBit(const cSparseLogic& curve, uint64_t bitIndex, cSparseLogicResult& result, std::string& error)
{
    if (bitIndex >= curve.width) {
        error = "Bit " + std::to_string(bitIndex) + " lies beyond the vector's " + std::to_string(curve.width) +
                " bits.";
        return false;
    }
    result = cSparseLogicResult();
    result.width = 1;
    result.timeScale = curve.timeScale;
    const uint64_t column = curve.width - 1 - bitIndex;
    for (cXIterUint64SparseLogic iter(curve); !iter.atEnd(); iter.increment())
        result.push(iter.getTicks(), iter.logicValue() + column);
    if (curve.count)
        result.close(curve.positions[curve.count - 1]);
    return true;
}

bool createDigitalBus(const std::vector<cSparseLogic>& parts, cSparseLogicResult& result, std::string& error)
{
    if (parts.empty()) {
        error = "A bus needs at least one curve.";
        return false;
    }
    result = cSparseLogicResult();
    result.width = 0;
    result.timeScale = parts[0].timeScale;
    for (const cSparseLogic& part : parts) {
        if (part.timeScale != result.timeScale) {
            error = "Curves of different time scales can't form a bus.";
            return false;
        }
        result.width += part.width;
    }
    std::vector<cXIterUint64SparseLogic> iters;
    iters.reserve(parts.size());
    for (const cSparseLogic& part : parts)
        iters.emplace_back(part);
    std::vector<bool> started(parts.size(), false);
    std::string state(result.width, 'x');
    uint64_t last = 0;
    while (true) {
        // The earliest pending change of any part; all changes at that tick apply together.
        uint64_t tick = UINT64_MAX;
        bool any = false;
        for (const auto& iter : iters)
            if (!iter.atEnd()) {
                tick = std::min(tick, iter.getTicks());
                any = true;
            }
        if (!any)
            break;
        uint64_t offset = 0;
        for (size_t k = 0; k < iters.size(); ++k) {
            while (!iters[k].atEnd() && iters[k].getTicks() == tick) {
                state.replace(offset, parts[k].width, iters[k].logicValue(), parts[k].width);
                iters[k].increment();
            }
            offset += parts[k].width;
        }
        result.push(tick, state.data());
        last = tick;
    }
    result.close(last);
    return true;
}

bool compareDigitalSignals(const cSparseLogic& a, const cSparseLogic& b, cSparseLogicResult& result,
                           std::string& error)
{
    if (a.width != b.width) {
        error = "Digital curves of " + std::to_string(a.width) + " and " + std::to_string(b.width) +
                " bits can't be compared.";
        return false;
    }
    const bool aFiner = a.timeScale <= b.timeScale;
    const uint64_t ratio = aFiner ? wholeRatio(b.timeScale, a.timeScale) : wholeRatio(a.timeScale, b.timeScale);
    if (!ratio) {
        error = "Digital curves of time scales that aren't whole multiples can't be compared.";
        return false;
    }
    const uint64_t ratioA = aFiner ? 1 : ratio, ratioB = aFiner ? ratio : 1;
    result = cSparseLogicResult();
    result.width = 1;
    result.timeScale = aFiner ? a.timeScale : b.timeScale;
    cXIterUint64SparseLogic iterA(a), iterB(b);
    const char* stateA = nullptr;
    const char* stateB = nullptr;
    uint64_t last = 0;
    while (!iterA.atEnd() || !iterB.atEnd()) {
        const uint64_t tickA = iterA.atEnd() ? UINT64_MAX : iterA.getTicks() * ratioA;
        const uint64_t tickB = iterB.atEnd() ? UINT64_MAX : iterB.getTicks() * ratioB;
        const uint64_t tick = std::min(tickA, tickB);
        while (!iterA.atEnd() && iterA.getTicks() * ratioA == tick) {
            stateA = iterA.logicValue();
            iterA.increment();
        }
        while (!iterB.atEnd() && iterB.getTicks() * ratioB == tick) {
            stateB = iterB.logicValue();
            iterB.increment();
        }
        if (stateA && stateB)
            result.push(tick, std::memcmp(stateA, stateB, a.width) == 0 ? "0" : "1");
        last = tick;
    }
    result.close(last);
    return true;
}

}  // namespace vx3::postProcess
