// One curve in one plot: the description of the curve, which parts of it are shown on which Y
// axis, how they are selected, and the extremes of what is shown, computed once per load.
#pragma once

#include <cstdint>

#include "plot/wxCurveDescription.h"

namespace vx3 {

namespace singlePlotWidgetData {
// In a part's conversion slot: this part is not shown.
constexpr unsigned part_hidden = 1;
// In a part's conversion slot: a field of a digital vector.
constexpr unsigned digital_vector_field = 11;
}  // namespace singlePlotWidgetData

class wxSinglePlotWidgetData {
public:
    wxSinglePlotWidgetData() = default;
    // A real curve shows its values as they are (real slot 0, imaginary slot hidden); a complex
    // one shows its real slot and its imaginary slot through the conversions given.
    wxSinglePlotWidgetData(const wxCurveDescription& description, unsigned realConversion, unsigned imagConversion);

    const wxCurveDescription& description() const { return mDescription; }
    wxCurveDescription& description() { return mDescription; }

    bool checkIsComplex() const;
    unsigned getRealConversion() const { return mRealConversion; }
    unsigned getImagConversion() const { return mImagConversion; }
    void setRealConversion(unsigned conversion) { mRealConversion = conversion; resetMinMaxInitialized(); }
    void setImagConversion(unsigned conversion) { mImagConversion = conversion; resetMinMaxInitialized(); }
    bool checkRealPartShown() const { return mRealConversion != singlePlotWidgetData::part_hidden; }
    bool checkImagPartShown() const { return checkIsComplex() && mImagConversion != singlePlotWidgetData::part_hidden; }
    // 0: y0, 1: y1.
    int getRealAxis() const { return mRealAxis; }
    int getImagAxis() const { return mImagAxis; }
    void setRealAxis(int axis) { mRealAxis = axis; }
    void setImagAxis(int axis) { mImagAxis = axis; }

    // The unit of a shown part after its conversion (decibels, degrees), as curvePlotDataType::dataUnit.
    unsigned getRealUnit() const { return unitOfConversion(mRealConversion, false); }
    unsigned getImagUnit() const { return unitOfConversion(mImagConversion, true); }
    unsigned getXUnit() const { return mDescription.getSweepVariableUnitIdentifier(); }

    // Selection.
    bool realHighlighted = false;
    bool realActivated = false;
    bool imagHighlighted = false;
    bool imagActivated = false;
    bool colorizationIntervalOn = false;

    // Extremes of what is shown; NaN when the curve has no finite value there. Computed on first
    // use and kept until resetMinMaxInitialized (a reload, a new conversion).
    double getMinX() const { return mMinX; }
    double getMaxX() const { return mMaxX; }
    double getRealMinY() const { return mRealMinY; }
    double getRealMaxY() const { return mRealMaxY; }
    double getImagMinY() const { return mImagMinY; }
    double getImagMaxY() const { return mImagMaxY; }
    uint64_t getMinXIndex() const { return mMinXIndex; }
    uint64_t getMaxXIndex() const { return mMaxXIndex; }
    uint64_t getRealMinYIndex() const { return mRealMinYIndex; }
    uint64_t getRealMaxYIndex() const { return mRealMaxYIndex; }
    uint64_t getImagMinYIndex() const { return mImagMinYIndex; }
    uint64_t getImagMaxYIndex() const { return mImagMaxYIndex; }
    bool checkMinMaxInitialized() const { return mMinMaxInitialized; }
    void resetMinMaxInitialized() { mMinMaxInitialized = false; }
    // Computes the extremes when they are not known (or always with force); false when the curve
    // has no values to read.
    bool computeDerivedMinMaxValuesIfNecessary(bool force);

    // Same curve of the same section, sweep and cut: the plot holds it once.
    bool checkIfPlotIsIdentical(const wxSinglePlotWidgetData& other) const;
    bool checkIfPlotIsIdentical(const wxCurveDescription& other) const;
    // The store replaced the curve's values.
    bool checkVariableWasReloaded() const;
    // The curve is marked to go with its file.
    bool checkIsMarkedForClosing() const;

private:
    bool computeDigitalMinMaxValues(const cCurvePlotDataSection& section);
    unsigned unitOfConversion(unsigned conversion, bool imaginary) const;

    wxCurveDescription mDescription;
    unsigned mRealConversion = 0;
    unsigned mImagConversion = singlePlotWidgetData::part_hidden;
    int mRealAxis = 0;
    int mImagAxis = 0;
    bool mMinMaxInitialized = false;
    double mMinX = 0.0, mMaxX = 0.0, mRealMinY = 0.0, mRealMaxY = 0.0, mImagMinY = 0.0, mImagMaxY = 0.0;
    uint64_t mMinXIndex = 0, mMaxXIndex = 0, mRealMinYIndex = 0, mRealMaxYIndex = 0, mImagMinYIndex = 0,
             mImagMaxYIndex = 0;
};

}  // namespace vx3
