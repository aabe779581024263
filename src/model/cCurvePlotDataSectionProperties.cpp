// Property lists of a section and of its curves.
#include "model/cCurvePlotDataSection.h"
#include "model/cFileDbSupport.h"

namespace vx3 {

using namespace curvePlotProperties;

void cCurvePlotDataSection::addSweepVariableProperties(uint64_t index, const cCurvePlotProperties& properties)
{
    cCurvePlotProperties& target = mSweepVariableProperties[index];
    for (const cProperty& property : properties.getProperties())
        target.addProperty(property);
}

void cCurvePlotDataSection::addCurveProperties(uint64_t index, const cCurvePlotProperties& properties)
{
    cCurvePlotProperties& target = mCurveProperties[index];
    for (const cProperty& property : properties.getProperties())
        target.addProperty(property);
}

void cCurvePlotDataSection::setCurveProperties(uint64_t index, const cCurvePlotProperties& properties)
{
    mCurveProperties[index] = properties;
}

void cCurvePlotDataSection::removeCurveProperties(uint64_t index) { mCurveProperties.erase(index); }

void cCurvePlotDataSection::clearCurveProperties()
{
    mCurveProperties.clear();
    mSweepVariableProperties.clear();
}

const cCurvePlotProperties* cCurvePlotDataSection::getCurveProperties(uint64_t index) const
{
    const auto found = mCurveProperties.find(index);
    return found == mCurveProperties.end() ? nullptr : &found->second;
}

const cCurvePlotProperties* cCurvePlotDataSection::getSweepVariableProperties(uint64_t index) const
{
    const auto found = mSweepVariableProperties.find(index);
    return found == mSweepVariableProperties.end() ? nullptr : &found->second;
}

std::vector<cProperty> cCurvePlotDataSection::getOwnSectionProperties() const
{
    std::vector<cProperty> own;
    if (mFile && !mFile->fileName().empty())
        own.push_back(cProperty::makeText(file_name, mFile->fileName()));
    const char* type = curvePlotDataSection::typeToString(mAnalysisType);
    if (*type)
        own.push_back(cProperty::makeText(analysis_type, type));
    if (!mAnalysisName.empty())
        own.push_back(cProperty::makeText(analysis_name, mAnalysisName));
    if (mAlterIndex)
        own.push_back(cProperty::makeInteger(alter_index, mAlterIndex));
    if (mStepIndex)
        own.push_back(cProperty::makeInteger(run_index, mStepIndex));
    return own;
}

uint64_t cCurvePlotDataSection::getNbOfSectionProperties() const
{
    return getOwnSectionProperties().size() + getNbOfProperties();
}

bool cCurvePlotDataSection::getSectionProperty(uint64_t index, cProperty& property) const
{
    const std::vector<cProperty> own = getOwnSectionProperties();
    if (index < own.size()) {
        property = own[index];
        return true;
    }
    index -= own.size();
    if (index >= getNbOfProperties())
        return false;
    property = getProperty(index);
    return true;
}

namespace {
// The rows that a curve's type contributes ahead of its own properties.
std::vector<cProperty> typeRows(const cCurvePlotVariable& variable)
{
    std::vector<cProperty> rows;
    const cCurvePlotDataType* type = variable.getType();
    if (!type)
        return rows;
    rows.push_back(cProperty::makeText(curvePlotProperties::type, type->name()));
    if (type->checkIsEnum()) {
        rows.push_back(cProperty::makeText(user_defined, type->name(), "Type Name"));
        for (const std::string& value : type->getStrings())
            rows.push_back(cProperty::makeText(user_defined, value, "Enum Value"));
    }
    return rows;
}
}  // namespace

uint64_t cCurvePlotDataSection::getNbOfCurveProperties(uint64_t curveIndex) const
{
    if (curveIndex >= mVariables.size())
        return 0;
    const cCurvePlotProperties* own = getCurveProperties(curveIndex);
    return typeRows(mVariables[curveIndex]).size() + (own ? own->getNbOfProperties() : 0);
}

bool cCurvePlotDataSection::getCurveProperty(uint64_t curveIndex, uint64_t index, cProperty& property) const
{
    if (curveIndex >= mVariables.size())
        return false;
    const std::vector<cProperty> rows = typeRows(mVariables[curveIndex]);
    if (index < rows.size()) {
        property = rows[index];
        return true;
    }
    index -= rows.size();
    const cCurvePlotProperties* own = getCurveProperties(curveIndex);
    if (!own || index >= own->getNbOfProperties())
        return false;
    property = own->getProperty(index);
    return true;
}

}  // namespace vx3
