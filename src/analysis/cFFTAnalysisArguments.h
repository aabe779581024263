// The curves of one analysis run: the first and second argument, the result and the resampled
// copies that a run may add, each named by a cPostProcessCurveDescription.
#pragma once

#include <string>

#include "expressions/cPostProcessCurveDescription.h"
#include "model/cCurvePlotDataFile.h"

namespace vx3 {

class cFFTAnalysisArguments {
public:
    void setFirstArgumentCurve(const cPostProcessCurveDescription& curve) { mFirst = curve; }
    void setSecondArgumentCurve(const cPostProcessCurveDescription& curve) { mSecond = curve; }
    void setResultCurve(const cPostProcessCurveDescription& curve) { mResult = curve; }
    void setFirstResampledCurve(const cPostProcessCurveDescription& curve) { mFirstResampled = curve; }
    void setSecondResampledCurve(const cPostProcessCurveDescription& curve) { mSecondResampled = curve; }

    const cPostProcessCurveDescription& getFirstArgumentCurve() const { return mFirst; }
    const cPostProcessCurveDescription& getSecondArgumentCurve() const { return mSecond; }
    const cPostProcessCurveDescription& getResultCurve() const { return mResult; }
    const cPostProcessCurveDescription& getFirstResampledCurve() const { return mFirstResampled; }
    const cPostProcessCurveDescription& getSecondResampledCurve() const { return mSecondResampled; }
    bool hasResultCurve() const { return mResult.getCurvePtr() != nullptr; }

    // The first argument's values (and x-axis) from the curve data base; false with the reason.
    bool loadFirstArgument(std::string& error) const { return loadArgument(mFirst, error); }
    bool loadSecondArgument(std::string& error) const { return loadArgument(mSecond, error); }
    // Whether an argument names a curve with real or complex values; false with the reason.
    bool checkFirstArgument(std::string& error) const { return checkArgument(mFirst, error); }
    bool checkSecondArgument(std::string& error) const { return checkArgument(mSecond, error); }
    // Whether the result names a section to put a curve in. A result whose index is past the
    // section's end (cCurvePlotVariable::npos) is made by the run.
    bool checkResult(std::string& error) const;

    // Adds the named curve to the result section unless the result already names one; data
    // type and units as given. False when there is no result section.
    bool createResultVariableIfNecessary(cCurvePlotDataFile& store, const std::string& name,
                                         curvePlotProperties::data_type dataType, curvePlotDataType::dataUnit xUnit,
                                         curvePlotDataType::dataUnit yUnit);
    bool createFirstResampledVariableIfNecessary(cCurvePlotDataFile& store, const std::string& name,
                                                 curvePlotDataType::dataUnit yUnit);
    bool createSecondResampledVariableIfNecessary(cCurvePlotDataFile& store, const std::string& name,
                                                  curvePlotDataType::dataUnit yUnit);
    // Takes the curves that this run added out of the result section again.
    void removeCreatedVariables();

    std::string getResultCurveName() const { return mResult.getName(); }
    // "section : curve" where the section has a name, for the property "Full name".
    std::string getCompleteFirstArgumentName() const { return completeName(mFirst); }
    std::string getCompleteSecondArgumentName() const { return completeName(mSecond); }
    const cCurvePlotDataType* getFirstArgumentXAxisTypePtr() const;

private:
    static bool loadArgument(const cPostProcessCurveDescription& curve, std::string& error);
    static bool checkArgument(const cPostProcessCurveDescription& curve, std::string& error);
    static std::string completeName(const cPostProcessCurveDescription& curve);
    bool createVariable(cCurvePlotDataFile& store, int which, const std::string& name,
                        curvePlotProperties::data_type dataType, curvePlotDataType::dataUnit xUnit,
                        curvePlotDataType::dataUnit yUnit);

    // The curves that a run may add, for removeCreatedVariables.
    enum created_curve : int { result_curve, first_resampled_curve, second_resampled_curve };
    cPostProcessCurveDescription& createdCurve(int which);

    cPostProcessCurveDescription mFirst, mSecond, mResult, mFirstResampled, mSecondResampled;
    // Curves added by this run, newest last.
    std::vector<int> mCreated;
};

}  // namespace vx3
