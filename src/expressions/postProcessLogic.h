// Logic curves in the curve engine: logic and enumerations turned into numbers, single bits taken
// out of a vector, buses made of bits, and the comparison of two digital curves.
//
// A sparse logic curve of the store keeps 64-bit positions in ticks of its section's time scale
// and, for each, the states as characters, the most significant bit first. The walks here read
// it through cXIterUint64SparseLogic; results that stay digital are made in the same form.
#pragma once

#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "expressions/cPostProcessCurveDescription.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"

namespace vx3::postProcess {

// A view of a sparse logic curve: positions in ticks, states of width characters each.
struct cSparseLogic {
    const uint64_t* positions = nullptr;
    const char* states = nullptr;
    uint64_t width = 0;
    uint64_t count = 0;
    double timeScale = 1.0;  // seconds (or the x unit) per tick
};

// The view of a loaded sparse logic curve of section; false for other layouts.
bool makeSparseLogic(const cCurvePlotVariable& curve, const cCurvePlotDataSection& section, cSparseLogic& view);

// A digital curve made here, in the store's sparse form.
struct cSparseLogicResult {
    std::vector<uint64_t> positions;
    std::string states;  // positions.size() * width characters
    uint64_t width = 1;
    double timeScale = 1.0;

    uint64_t count() const { return positions.size(); }
    cSparseLogic view() const { return {positions.data(), states.data(), width, positions.size(), timeScale}; }
    // Appends a state unless it repeats the last one (a state holds until the next change).
    void push(uint64_t position, const char* state);
    // Repeats the last state at position, so that the curve lasts as long as its inputs.
    void close(uint64_t position);
};

// Walks the x-values of a curve for the operations that also read logic values.
class cXIter {
public:
    virtual ~cXIter() = default;
    virtual double getValue() const = 0;
    virtual void increment() = 0;
    virtual bool atEnd() const = 0;
    // Moves to the last sample at or before x (the first one when x lies before the curve).
    virtual void gotoValue(const double& x) = 0;
    virtual const char* logicValue() const = 0;
    virtual uint64_t logicVectorSize() const = 0;

    // The unsigned number of the logic value here; NaN when a bit is unknown or floating.
    double computeDigitalValue() const;
};

// The time stamps of a sparse logic curve, as doubles (ticks times the time scale).
class cXIterUint64SparseLogic : public cXIter {
public:
    explicit cXIterUint64SparseLogic(const cSparseLogic& curve) : mCurve(curve) {}
    double getValue() const override { return static_cast<double>(mCurve.positions[mIndex]) * mCurve.timeScale; }
    uint64_t getTicks() const { return mCurve.positions[mIndex]; }
    void increment() override { ++mIndex; }
    bool atEnd() const override { return mIndex >= mCurve.count; }
    void gotoValue(const double& x) override;
    const char* logicValue() const override { return mCurve.states + mIndex * mCurve.width; }
    uint64_t logicVectorSize() const override { return mCurve.width; }

private:
    const cSparseLogic& mCurve;
    uint64_t mIndex = 0;
};

// The number each logic state stands for. A vector is its unsigned value; a vector with an
// unknown bit takes the level of x, one with a floating bit (and no unknown) that of z.
struct cLogicLevels {
    double zero = 0;
    double one = 1;
    double x = NAN;  // undefined by default: a gap where the state is unknown
    double z = NAN;
};

// The number of a state of width characters by the levels (a single character: its level).
double convertLogicStateToDouble(const char* state, uint64_t width, const cLogicLevels& levels);

// A logic curve as a real curve in x units: each change is a ramp of riseTime from the old
// level to the new one (a vertical step, two samples at one x, with riseTime 0), cut short by
// a following change that comes sooner. An empty curve gives an empty result.
void convertLogicToDouble(const cSparseLogic& curve, const cLogicLevels& levels, double riseTime,
                          std::vector<double>& xs, std::vector<double>& ys);

// The same for a curve of the store, as a new real curve name in resultSection (its index in
// resultIndex); false with the reason in error ("Incompatible data type." for a curve that isn't a
// sparse logic curve).
bool convertLogicToDouble(cCurvePlotDataFile& store, cCurvePlotDataSection& resultSection, const std::string& name,
                          const cPostProcessCurveDescription& curve, const cLogicLevels& levels, double riseTime,
                          uint64_t& resultIndex, std::string& error);

// Enumeration states as numbers through table; a state missing from it is undefined. With an
// empty table each state counts by the order of its first appearance, from 0.
void convertEnumToDouble(const std::vector<std::string>& states, const std::map<std::string, double>& table,
                         std::vector<double>& ys);

// Bit bitIndex (0: the least significant, the last character) of a vector curve.
bool computeBit(const cSparseLogic& curve, uint64_t bitIndex, cSparseLogicResult& result, std::string& error);

// A bus of the curves given, the first one its most significant part; a curve contributes
// "x" characters before its first change. All must share one time scale.
bool createDigitalBus(const std::vector<cSparseLogic>& parts, cSparseLogicResult& result, std::string& error);

// "1" where the two curves' states differ (character by character, unknowns included), "0"
// where they agree, from the time both have a state on. Curves of time scales whose ratio is a
// whole number are compared in ticks of the finer one.
bool compareDigitalSignals(const cSparseLogic& a, const cSparseLogic& b, cSparseLogicResult& result,
                           std::string& error);

}  // namespace vx3::postProcess
