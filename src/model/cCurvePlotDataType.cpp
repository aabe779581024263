#include "model/cCurvePlotDataType.h"

namespace vx3 {

std::string cCurvePlotDataType::getUnitStr() const
{
    const char* text = curvePlotDataType::unitToShortString(mUnit);
    if (*text)
        return text;
    if (!mUnitString.empty())
        return mUnitString;
    return std::string();
}

std::string cCurvePlotDataType::getUnitName() const
{
    if (mUnit == curvePlotDataType::undefined_unit && !mUnitString.empty())
        return mUnitString;
    return curvePlotDataType::unitToString(mUnit);
}

void cCurvePlotDataType::getLabelAndScaleFactor(double min, double max, std::string& label, double& factor) const
{
    curvePlotDataType::getLabelAndScaleFactor(mUnit, mUnitString.empty() ? mName : mUnitString, min, max, label,
                                              factor);
}

void cCurvePlotDataType::getLabelAndScaleFactor(double min, double max, std::string& label, double& factor,
                                                unsigned conversion) const
{
    curvePlotDataType::getLabelAndScaleFactor(mUnit, mUnitString.empty() ? mName : mUnitString, min, max, label,
                                              factor, conversion);
}

bool cCurvePlotDataType::checkTypesAreIdentical(const cCurvePlotDataType& a, const cCurvePlotDataType& b)
{
    return a.mDataType == b.mDataType && a.mUnit == b.mUnit && a.mConstantStringSize == b.mConstantStringSize &&
           a.mName == b.mName && a.mUnitString == b.mUnitString && a.mStrings == b.mStrings &&
           a.mSubTypes == b.mSubTypes;
}

}  // namespace vx3
