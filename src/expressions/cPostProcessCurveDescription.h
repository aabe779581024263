// Names one curve for the curve engine: its section, its index there, which part of a complex
// curve is meant, and the sweep selection.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "model/cDataVectors.h"
#include "model/derivedCurveFunction.h"

namespace vx3 {

class cPostProcessCurveDescription {
public:
    cPostProcessCurveDescription() = default;
    cPostProcessCurveDescription(cCurvePlotDataSection* section, uint64_t curveIndex,
                                 unsigned conversion = derivedCurveFunction::real_part)
        : mSection(section), mCurveIndex(curveIndex), mConversion(conversion)
    {
    }

    cCurvePlotDataSection* getSection() const { return mSection; }
    uint64_t getCurveIndex() const { return mCurveIndex; }
    unsigned getConversion() const { return mConversion; }
    void setConversion(unsigned conversion) { mConversion = conversion; }
    std::vector<uint64_t>& sweepIndices() { return mSweepIndices; }
    std::vector<uint64_t>& sweepPermutation() { return mSweepPermutation; }

    // Null when the description names no curve.
    cCurvePlotVariable* getCurvePtr() const;
    std::string getName() const;
    std::string getCompleteSectionName() const;
    std::string sectionName() const;
    uint64_t getNbOfValues() const;
    bool checkCurveIsComplex() const;
    bool checkCurveIsDigital() const;

    // Brings the curve's values and its section's x-axis in from the curve data base. False
    // with the reason in error: "Bad curve definition.", "Bad curve index.", "Could not load
    // data from db.", "No type defined.".
    bool load(bool computeMinMax, std::string& error) const;
    bool loadDontComputeMinMax(std::string& error) const { return load(false, error); }
    // The loaded values; false with "Unsupported curve type." for a curve the engine can't walk
    // (a sweep selection, or values without an x-axis).
    bool computeDataVectors(curvePlotFunctionArgs::cDataVectors& vectors, std::string& error) const;

private:
    cCurvePlotDataSection* mSection = nullptr;
    uint64_t mCurveIndex = 0;
    unsigned mConversion = derivedCurveFunction::real_part;
    std::vector<uint64_t> mSweepIndices;
    std::vector<uint64_t> mSweepPermutation;
};

}  // namespace vx3
