#include "analysis/cFFTAnalysisArguments.h"

#include <algorithm>

namespace vx3 {

bool cFFTAnalysisArguments::loadArgument(const cPostProcessCurveDescription& curve, std::string& error)
{
    return curve.load(false, error);
}

bool cFFTAnalysisArguments::checkArgument(const cPostProcessCurveDescription& curve, std::string& error)
{
    if (!curve.getSection()) {
        error = "Bad curve definition.";
        return false;
    }
    const cCurvePlotVariable* variable = curve.getCurvePtr();
    if (!variable) {
        error = "Bad curve index.";
        return false;
    }
    if (!variable->getType()) {
        error = "No type defined.";
        return false;
    }
    if (curve.checkCurveIsDigital()) {
        error = "Incompatible data type.";
        return false;
    }
    return true;
}

bool cFFTAnalysisArguments::checkResult(std::string& error) const
{
    if (!mResult.getSection()) {
        error = "No result section defined.";
        return false;
    }
    return true;
}

cPostProcessCurveDescription& cFFTAnalysisArguments::createdCurve(int which)
{
    return which == result_curve ? mResult : which == first_resampled_curve ? mFirstResampled : mSecondResampled;
}

bool cFFTAnalysisArguments::createVariable(cCurvePlotDataFile& store, int which, const std::string& name, curvePlotProperties::data_type dataType,
                                           curvePlotDataType::dataUnit xUnit, curvePlotDataType::dataUnit yUnit)
{
    cPostProcessCurveDescription& target = createdCurve(which);
    if (target.getCurvePtr())
        return true;
    cCurvePlotDataSection* section = mResult.getSection();
    if (!section)
        return false;
    const cCurvePlotDataType* type = store.addType(name, dataType, yUnit);
    const uint64_t index = section->addVariable(type, name);
    cCurvePlotVariable* variable = section->getVariablePtr(index);
    if (!variable)
        return false;
    variable->setXAxisType(store.addType(xUnit == curvePlotDataType::hertz ? "frequency" : "time",
                                         curvePlotProperties::data_double, xUnit));
    target = cPostProcessCurveDescription(section, index, derivedCurveFunction::real_part);
    mCreated.push_back(which);
    return true;
}

bool cFFTAnalysisArguments::createResultVariableIfNecessary(cCurvePlotDataFile& store, const std::string& name,
                                                            curvePlotProperties::data_type dataType,
                                                            curvePlotDataType::dataUnit xUnit,
                                                            curvePlotDataType::dataUnit yUnit)
{
    return createVariable(store, result_curve, name, dataType, xUnit, yUnit);
}

bool cFFTAnalysisArguments::createFirstResampledVariableIfNecessary(cCurvePlotDataFile& store,
                                                                    const std::string& name,
                                                                    curvePlotDataType::dataUnit yUnit)
{
    return createVariable(store, first_resampled_curve, name, curvePlotProperties::parameterized_double,
                          curvePlotDataType::second, yUnit);
}

bool cFFTAnalysisArguments::createSecondResampledVariableIfNecessary(cCurvePlotDataFile& store,
                                                                     const std::string& name,
                                                                     curvePlotDataType::dataUnit yUnit)
{
    return createVariable(store, second_resampled_curve, name, curvePlotProperties::parameterized_double,
                          curvePlotDataType::second, yUnit);
}

void cFFTAnalysisArguments::removeCreatedVariables()
{
    // Newest first: the indices of older curves stay valid.
    std::vector<std::pair<cCurvePlotDataSection*, uint64_t>> made;
    for (int which : mCreated)
        if (createdCurve(which).getSection())
            made.emplace_back(createdCurve(which).getSection(), createdCurve(which).getCurveIndex());
    std::sort(made.begin(), made.end(), [](const auto& a, const auto& b) { return a.second > b.second; });
    for (const auto& [section, index] : made)
        section->removeVariable(index);
    for (int which : mCreated)
        createdCurve(which) = cPostProcessCurveDescription(which == result_curve ? createdCurve(which).getSection() : nullptr,
                                                           cCurvePlotVariable::npos);
    mCreated.clear();
}

std::string cFFTAnalysisArguments::completeName(const cPostProcessCurveDescription& curve)
{
    const std::string section = curve.getCompleteSectionName(), name = curve.getName();
    return section.empty() ? name : section + " : " + name;
}

const cCurvePlotDataType* cFFTAnalysisArguments::getFirstArgumentXAxisTypePtr() const
{
    const cCurvePlotVariable* curve = mFirst.getCurvePtr();
    if (!curve)
        return nullptr;
    if (curve->getXAxisType())
        return curve->getXAxisType();
    const cCurvePlotDataSection* section = mFirst.getSection();
    return section && section->getNbOfSweepVariables() ? section->getSweepVariable(0).getType() : nullptr;
}

}  // namespace vx3
