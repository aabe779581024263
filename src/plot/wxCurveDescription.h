// The handle by which plots, lists, the clipboard and sessions refer to a curve: its section,
// its index there, the post-process state and a style. It never owns the values.
#pragma once

#include <cstdint>
#include <string>

#include "expressions/cPostProcessCurveDescription.h"
#include "plot/wxCurveStyle.h"

namespace vx3 {

class cCurvePlotDataSection;
class cCurvePlotVariable;
class cCurvePlotSweepVariable;

namespace curveDescription {
// What a plot does with a curve beyond naming it: reset whenever the curve changes.
struct cPostProcessState {
    bool temporary = false;  // made by a post-process run, not by the user
    bool inverted = false;
    unsigned sweepIndex = 0;
    unsigned cutIndex = 0;
    unsigned realConversion = 3;  // derivedCurveFunction::magnitude
    unsigned imagConversion = 3;
    unsigned fieldIndex = 0;
    bool operator==(const cPostProcessState& other) const = default;
};
}  // namespace curveDescription

class wxCurveDescriptionBase {
public:
    wxCurveDescriptionBase() = default;
    virtual ~wxCurveDescriptionBase() = default;

    cCurvePlotDataSection* getSection() const { return mCurve.getSection(); }
    uint64_t getCurveIndex() const { return mCurve.getCurveIndex(); }
    const cPostProcessCurveDescription& postProcessDescription() const { return mCurve; }
    const wxCurveStyle& style() const { return mStyle; }
    wxCurveStyle& style() { return mStyle; }
    void setStyle(const wxCurveStyle& style) { mStyle = style; }
    const curveDescription::cPostProcessState& postProcessState() const { return mState; }
    curveDescription::cPostProcessState& postProcessState() { return mState; }

    // The description names an existing curve of its section.
    bool checkIsVariable() const;
    // Number of values of the curve, loaded or not; 0 without a curve.
    uint64_t size() const;
    // Throw cLoggedException when the curve or the x axis isn't there.
    cCurvePlotVariable& curvePlotVariable() const;
    cCurvePlotSweepVariable& curvePlotSweepVariable() const;
    // The curve, or for a derived curve the one whose values it shows; null when none.
    cCurvePlotVariable* curvePlotVariableOrIdentical() const;
    unsigned getSweepVariableUnitIdentifier() const;
    unsigned getVariableUnitIdentifier() const;
    std::string getSweepVariableName() const;
    // The x axis name and the factor its values are shown with (the time scale of digital dumps).
    void getSweepVariableLabelAndScaleFactor(std::string& label, double& factor) const;
    // The curve's name; for a group or separator row its own name.
    std::string getName() const;
    // "name.field" for a member of a structured curve.
    std::string getNameWithFieldIndex(unsigned fieldIndex) const;
    // "section : name".
    std::string getCompleteName() const;
    // With withFile, the file's short name leads: "file : section : name".
    std::string getFullCurveName(bool withFile) const;
    void setGroupOrSeparatorName(const std::string& name) { mGroupOrSeparatorName = name; }
    const std::string& groupOrSeparatorName() const { return mGroupOrSeparatorName; }
    // A complex curve whose imaginary part is drawn differently from the real one.
    bool checkIfImagPenIsDifferentAndCurveIsComplex() const;

    // Binds the description to a curve (null section: to nothing) and resets the post-process
    // state; the forms with a style take it over.
    virtual void init(cCurvePlotDataSection* section, uint64_t index);
    virtual void init(cCurvePlotDataSection* section, uint64_t index, const wxCurveStyle& style);
    // Only when it names another curve now; the style is taken either way.
    void initIfNecessary(cCurvePlotDataSection* section, uint64_t index, const wxCurveStyle& style);

protected:
    void setCurve(cCurvePlotDataSection* section, uint64_t index);

    wxCurveStyle mStyle;
    cPostProcessCurveDescription mCurve;
    curveDescription::cPostProcessState mState;
    std::string mGroupOrSeparatorName;
};

// A description that keeps the values of its curve and x axis loaded while it lives.
class wxCurveDescription : public wxCurveDescriptionBase {
public:
    wxCurveDescription() = default;
    wxCurveDescription(const wxCurveDescription& other);
    wxCurveDescription& operator=(const wxCurveDescription& other);
    ~wxCurveDescription() override;

    // Loads the x axis and the curve and counts the reference; throws cLoggedException when the
    // section has no x axis or a load fails (the description then names no curve).
    void init(cCurvePlotDataSection* section, uint64_t index) override { init(section, index, mStyle); }
    void init(cCurvePlotDataSection* section, uint64_t index, const wxCurveStyle& style) override;
    // Lets go of the values; the description names no curve afterwards.
    void release();
    bool checkHoldsReferences() const { return mReferenced; }

private:
    void incrementReferenceCounters();
    void decrementReferenceCounters();
    bool mReferenced = false;
    bool mSweepsReferenced = false;  // a parameterized curve carries its own x values
};

}  // namespace vx3
