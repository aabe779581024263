// What the value change dump reader keeps between the declarations and the values, independent
// of where the text comes from: the curves with their codes and widths, the scopes, the time
// steps, and the storing of values into sparse blocks (one append-only block per curve, no
// allocation per value change).
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "readers/cCurveParserIntermediate.h"
#include "readers/vcd/cCurveParserVcdCodeArray.h"

namespace vx3 {

namespace curveParserVcd {

enum signal_kind : uint8_t { logic_signal, real_signal, port_signal, bad_signal };

constexpr uint32_t kNoSignal = 0xffffffffu;
constexpr uint64_t kNoStep = ~uint64_t(0);

// One declared variable: the curve it fills and how.
struct cSignal {
    cCurvePlotVariable* curve = nullptr;  // set once the declarations are done
    uint64_t curveIndex = 0;
    uint64_t lastStep = kNoStep;  // the step of the curve's last record
    uint32_t width = 1;           // states per value; 0 for a real
    uint32_t aliasNext = kNoSignal;  // the next variable that shares the code
    uint32_t head = kNoSignal;       // the first variable of the code (itself when it is the first)
    signal_kind kind = logic_signal;
};

struct cScope {
    std::string type;
    std::string name;
    std::string fullName;
    uint32_t parent = kNoSignal;
    std::vector<uint32_t> children;
    std::vector<std::pair<uint32_t, uint32_t>> curveRanges;  // first..last inclusive
};

// The next blank-separated word of the text at position (moved past it); empty at the end.
inline std::string_view takeToken(const char*& position, const char* end)
{
    auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'; };
    while (position < end && blank(*position))
        ++position;
    const char* start = position;
    while (position < end && !blank(*position))
        ++position;
    return std::string_view(start, static_cast<size_t>(position - start));
}

// A parse error: the byte offset of the token at fault and the text.
struct cError {
    uint64_t position = 0;
    std::string text;
};

}  // namespace curveParserVcd

class cCurveParserVcdBase : public cCurveParserIntermediate {
public:
    using cCurveParserIntermediate::cCurveParserIntermediate;

    // "Vcd parser, file position N : text", as an error.
    void printDebugMessage(uint64_t position, const std::string& text) const;
    static std::string formatDebugMessage(uint64_t position, const std::string& text);

    // The full name of a variable: scope path, reference and bit range ("[7:0]", "[3]"); a
    // reference written "i(...)" or "v(...)" names a current or a voltage, which unit reports.
    static std::string computeVariableName(const std::string& scopePath, const std::string& reference, int64_t lower,
                                           int64_t upper, bool hasLower, bool hasUpper,
                                           curvePlotDataType::dataUnit& unit);

protected:
    void clear();
    // One type per width and kind, shared by all curves of that width.
    const cCurvePlotDataType* getVectorTypePtr(uint32_t width);
    const cCurvePlotDataType* getPortTypePtr(uint32_t width);
    const cCurvePlotDataType* getPortWithStrengthTypePtr(uint32_t width);
    const cCurvePlotDataType* getBadVariableDefinitionTypePtr(uint32_t width);
    const cCurvePlotDataType* getRealTypePtr(curvePlotDataType::dataUnit unit);

    // ---- Declarations
    void openScope(const std::string& type, const std::string& name);
    bool closeScope();  // false when no scope is open
    std::string currentScopePath() const;
    // Creates the curve (found again on a reload) and files its code; a known code makes the
    // curve an alias that receives the same values.
    void insertVariableToMap(std::string_view code, const cCurvePlotDataType* type, const std::string& name,
                             curveParserVcd::signal_kind kind, uint32_t width, unsigned variableType,
                             bool hasBits, int64_t left, int64_t right);
    // After $enddefinitions: the section's x axis, the curves' blocks and the instance tree.
    bool createSweepVariable();
    void prepareCurves();
    void defineInstanceTree();
    uint32_t getMaxWidth() const { return mMaxWidth; }

    // ---- Finishing: the values were read (see cCurveParserVcdValues.cpp).
    void completeDigitalVariables();
    void setMinMaxOfTimeAxis();

    std::vector<curveParserVcd::cSignal>& signals() { return mSignals; }
    const cCurveParserVcdCodeArray& codes() const { return mCodes; }

    // Fields read by the parser
    std::string mFileName;
    double mTimeScaleFactor = 1.0;
    std::string mTimeScaleText;
    // What the values gave: steps, the first and last time, dump switches.
    uint64_t mStepCount = 0;
    uint64_t mFirstTime = 0;
    uint64_t mLastTime = 0;
    bool mDeltaCyclesUsed = false;
    bool mOverwritten = false;
    std::vector<uint64_t> mDumpOffIntervals;
    cCurvePlotSweepVariable* mSweep = nullptr;

private:
    void buildInstanceNode(cCurvePlotDataCurveHierarchy& node, uint32_t scope) const;

    cCurveParserVcdCodeArray mCodes;
    std::vector<curveParserVcd::cSignal> mSignals;
    std::vector<curveParserVcd::cScope> mScopes;
    std::vector<uint32_t> mOpenScopes;  // indices into mScopes
    std::vector<std::pair<uint32_t, uint32_t>> mRootRanges;
    uint32_t mMaxWidth = 1;
    std::map<uint32_t, const cCurvePlotDataType*> mVectorTypes, mPortTypes, mPortStrengthTypes, mBadTypes;
    std::map<unsigned, const cCurvePlotDataType*> mRealTypes;
    const cCurvePlotDataType* mTimeType = nullptr;
};

}  // namespace vx3
