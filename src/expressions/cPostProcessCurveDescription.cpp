#include "expressions/cPostProcessCurveDescription.h"

#include "base/cVxLogger.h"

namespace vx3 {

cCurvePlotVariable* cPostProcessCurveDescription::getCurvePtr() const
{
    return mSection ? mSection->getVariablePtr(mCurveIndex) : nullptr;
}

std::string cPostProcessCurveDescription::getName() const
{
    const cCurvePlotVariable* curve = getCurvePtr();
    return curve ? curve->name() : std::string();
}

std::string cPostProcessCurveDescription::getCompleteSectionName() const
{
    return mSection ? mSection->completeName() : std::string();
}

std::string cPostProcessCurveDescription::sectionName() const { return mSection ? mSection->name() : std::string(); }

uint64_t cPostProcessCurveDescription::getNbOfValues() const
{
    const cCurvePlotVariable* curve = getCurvePtr();
    return curve ? curve->getVectorSize() : 0;
}

bool cPostProcessCurveDescription::checkCurveIsComplex() const
{
    const cCurvePlotVariable* curve = getCurvePtr();
    return curve && curve->getType() && curve->getType()->checkIsComplex();
}

bool cPostProcessCurveDescription::checkCurveIsDigital() const
{
    const cCurvePlotVariable* curve = getCurvePtr();
    return curve && curve->getType() && curve->getType()->checkIsDigital();
}

bool cPostProcessCurveDescription::load(bool computeMinMax, std::string& error) const
{
    if (!mSection) {
        error = "Bad curve definition.";
        return false;
    }
    cCurvePlotVariable* curve = getCurvePtr();
    if (!curve) {
        error = "Bad curve index.";
        return false;
    }
    if (!curve->getType()) {
        error = "No type defined.";
        return false;
    }
    const cVxLogger quiet(vxLogger::fatal_error);
    if (mSection->loadSweepVariablesFromDb(quiet) != ok || curve->loadDataFromDb(quiet, mSection, mCurveIndex) != ok ||
        !curve->checkHasStorage()) {
        error = "Could not load data from db.";
        return false;
    }
    if (computeMinMax)
        curve->computeMinMaxValues();
    return true;
}

bool cPostProcessCurveDescription::computeDataVectors(curvePlotFunctionArgs::cDataVectors& vectors,
                                                      std::string& error) const
{
    const cCurvePlotVariable* curve = getCurvePtr();
    if (!curve) {
        error = mSection ? "Bad curve index." : "Bad curve definition.";
        return false;
    }
    if (!mSweepIndices.empty() || !curve->computeDataVectors(*mSection, vectors) || !vectors.checkHasX() ||
        !vectors.checkHasY()) {
        error = "Unsupported curve type.";
        return false;
    }
    return true;
}

}  // namespace vx3
