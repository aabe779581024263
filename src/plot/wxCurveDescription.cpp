#include "wxCurveDescription.h"

#include "base/cLoggedException.h"
#include "base/cVxLogger.h"
#include "model/cCurvePlotDataSection.h"
#include "model/cFileDbSupport.h"
#include "model/curveStyleTypes.h"
#include "model/curveValueLookup.h"
#include "model/dataType.h"

namespace vx3 {

bool wxCurveDescriptionBase::checkIsVariable() const
{
    const cCurvePlotDataSection* section = getSection();
    return section && getCurveIndex() < section->getNbOfVariables();
}

uint64_t wxCurveDescriptionBase::size() const
{
    return checkIsVariable() ? getSection()->getVariableValueCount(getCurveIndex()) : 0;
}

cCurvePlotVariable& wxCurveDescriptionBase::curvePlotVariable() const
{
    if (!checkIsVariable())
        throw cLoggedException("wxCurveDescriptionBase::curvePlotVariable");
    return getSection()->getVariable(getCurveIndex());
}

cCurvePlotSweepVariable& wxCurveDescriptionBase::curvePlotSweepVariable() const
{
    cCurvePlotDataSection* section = getSection();
    if (!section || section->getNbOfSweepVariables() == 0)
        throw cLoggedException("wxCurveDescriptionBase::curvePlotSweepVariable");
    return section->getSweepVariable(section->getNbOfSweepVariables() - 1);
}

cCurvePlotVariable* wxCurveDescriptionBase::curvePlotVariableOrIdentical() const
{
    if (!checkIsVariable())
        return nullptr;
    cCurvePlotDataSection& section = *getSection();
    cCurvePlotVariable& variable = section.getVariable(getCurveIndex());
    if (variable.checkIsDerived() && variable.getDerivationSourceIndex() < section.getNbOfVariables())
        return &section.getVariable(variable.getDerivationSourceIndex());
    return &variable;
}

unsigned wxCurveDescriptionBase::getSweepVariableUnitIdentifier() const
{
    const cCurvePlotDataSection* section = getSection();
    if (!section || section->getNbOfSweepVariables() == 0)
        return 0;
    return section->getSweepVariable(section->getNbOfSweepVariables() - 1).getUnitIdentifier();
}

unsigned wxCurveDescriptionBase::getVariableUnitIdentifier() const
{
    return checkIsVariable() ? getSection()->getVariable(getCurveIndex()).getUnitIdentifier() : 0;
}

std::string wxCurveDescriptionBase::getSweepVariableName() const
{
    const cCurvePlotDataSection* section = getSection();
    if (!section || section->getNbOfSweepVariables() == 0)
        return std::string();
    return section->getSweepVariable(section->getNbOfSweepVariables() - 1).name();
}

void wxCurveDescriptionBase::getSweepVariableLabelAndScaleFactor(std::string& label, double& factor) const
{
    label = getSweepVariableName();
    factor = getSection() ? getSection()->getTimeScaleFactor() : 1.0;
    if (!checkIsVariable())
        return;
    const std::string unit = getSection()->getVariable(getCurveIndex()).getXUnitStr(*getSection());
    if (!unit.empty())
        label += " [" + unit + "]";
}

std::string wxCurveDescriptionBase::getName() const
{
    if (!mGroupOrSeparatorName.empty() || !checkIsVariable())
        return mGroupOrSeparatorName;
    return getSection()->getVariable(getCurveIndex()).name();
}

std::string wxCurveDescriptionBase::getNameWithFieldIndex(unsigned fieldIndex) const
{
    std::string name = getName();
    if (!checkIsVariable())
        return name;
    const std::vector<std::string>& fields = getSection()->getVariable(getCurveIndex()).fieldNames();
    if (fieldIndex < fields.size())
        name += "." + fields[fieldIndex];
    return name;
}

std::string wxCurveDescriptionBase::getCompleteName() const
{
    const cCurvePlotDataSection* section = getSection();
    return section ? section->completeName() + " : " + getName() : getName();
}

std::string wxCurveDescriptionBase::getFullCurveName(bool withFile) const
{
    const cCurvePlotDataSection* section = getSection();
    if (!withFile || !section || !section->getFile())
        return getCompleteName();
    return section->getFile()->shortUniqueName() + " : " + getCompleteName();
}

bool wxCurveDescriptionBase::checkIfImagPenIsDifferentAndCurveIsComplex() const
{
    if (!checkIsVariable())
        return false;
    const cCurvePlotVariable& variable = getSection()->getVariable(getCurveIndex());
    if (!curvePlotProperties::checkIsComplexDataType(variable.getDataType()))
        return false;
    return mStyle.realColour != mStyle.imagColour || mStyle.realLineWidth != mStyle.imagLineWidth ||
           mStyle.realLineStyle != mStyle.imagLineStyle || mStyle.realSymbol != mStyle.imagSymbol;
}

void wxCurveDescriptionBase::setCurve(cCurvePlotDataSection* section, uint64_t index)
{
    mCurve = cPostProcessCurveDescription(section, index);
}

void wxCurveDescriptionBase::init(cCurvePlotDataSection* section, uint64_t index)
{
    if (!section || index < section->getNbOfVariables()) {
        setCurve(section, index);
        mState = curveDescription::cPostProcessState();
    } else {
        setCurve(nullptr, 0);
    }
}

void wxCurveDescriptionBase::init(cCurvePlotDataSection* section, uint64_t index, const wxCurveStyle& style)
{
    init(section, index);
    mStyle = style;
}

void wxCurveDescriptionBase::initIfNecessary(cCurvePlotDataSection* section, uint64_t index, const wxCurveStyle& style)
{
    if (section != getSection() || index != getCurveIndex() || !checkIsVariable())
        init(section, index, style);
    else
        mStyle = style;
}

// ---- wxCurveDescription

wxCurveDescription::wxCurveDescription(const wxCurveDescription& other) : wxCurveDescriptionBase(other)
{
    mReferenced = false;
    if (other.mReferenced)
        incrementReferenceCounters();
}

wxCurveDescription& wxCurveDescription::operator=(const wxCurveDescription& other)
{
    if (this == &other)
        return *this;
    decrementReferenceCounters();
    wxCurveDescriptionBase::operator=(other);
    if (other.mReferenced)
        incrementReferenceCounters();
    return *this;
}

wxCurveDescription::~wxCurveDescription() { decrementReferenceCounters(); }

void wxCurveDescription::release()
{
    decrementReferenceCounters();
    setCurve(nullptr, 0);
}

void wxCurveDescription::incrementReferenceCounters()
{
    cCurvePlotDataSection* section = getSection();
    if (!section || !checkIsVariable())
        return;
    if (mSweepsReferenced)
        for (uint64_t i = 0; i < section->getNbOfSweepVariables(); ++i)
            section->getSweepVariable(i).incrementReferenceCount();
    section->getVariable(getCurveIndex()).incrementReferenceCount();
    mReferenced = true;
}

void wxCurveDescription::decrementReferenceCounters()
{
    if (!mReferenced)
        return;
    mReferenced = false;
    cCurvePlotDataSection* section = getSection();
    if (!section)
        return;
    if (mSweepsReferenced)
        for (uint64_t i = 0; i < section->getNbOfSweepVariables(); ++i)
            section->getSweepVariable(i).decrementReferenceCount();
    if (getCurveIndex() < section->getNbOfVariables())
        section->getVariable(getCurveIndex()).decrementReferenceCount();
}

void wxCurveDescription::init(cCurvePlotDataSection* section, uint64_t index, const wxCurveStyle& style)
{
    decrementReferenceCounters();
    wxCurveDescriptionBase::init(section, index);
    mStyle = style;
    if (!checkIsVariable())
        return;
    cCurvePlotVariable& variable = section->getVariable(index);
    const bool parameterized = curvePlotProperties::checkIsParameterizedDataType(variable.getDataType());
    const cVxLogger logger;
    auto fail = [&](const std::string& text) {
        setCurve(nullptr, 0);
        throw cLoggedException(text);
    };
    // Count what is loaded at once, so that a failure half way leaves nothing counted.
    std::vector<cCurvePlotVariable*> counted;
    auto undo = [&]() {
        for (cCurvePlotVariable* held : counted)
            held->decrementReferenceCount();
    };
    if (!parameterized) {
        if (section->getNbOfSweepVariables() == 0)
            fail("wxCurveDescription::init section without sweep variable");
        for (uint64_t i = 0; i < section->getNbOfSweepVariables(); ++i) {
            cCurvePlotSweepVariable& sweep = section->getSweepVariable(i);
            if (sweep.loadDataFromDb(logger, section, i, true) != ok) {
                undo();
                fail("wxCurveDescription::init could not load sweep var \"" + sweep.name() + "\"");
            }
            sweep.computeMinMaxValues();
            if (sweep.getMonotony() == derivedCurveFunction::monotony_unknown && sweep.doubleValues())
                sweep.setMonotony(curvePlotVariable::computeMonotonyType(sweep.doubleValues(), sweep.getVectorSize()));
            sweep.incrementReferenceCount();
            counted.push_back(&sweep);
        }
    }
    if (variable.loadDataFromDb(logger, section, index) != ok) {
        undo();
        fail("wxCurveDescription::init could not load variable from db");
    }
    // The drawers trust the Y limits to walk a curve that stays inside the view without clipping
    // every segment: known once, here, where the values arrive.
    if (!variable.getMinMax().initialized)
        variable.computeMinMaxValues();
    variable.incrementReferenceCount();
    mReferenced = true;
    mSweepsReferenced = !parameterized;
    // One point per run draws no line; a cross makes it visible unless the file chose a symbol.
    if (!parameterized && mStyle.realSymbol == curvePlotProperties::no_symbol &&
        section->getSweepVariableSize(section->getNbOfSweepVariables() - 1) == 1) {
        const cCurvePlotProperties* properties = section->getCurveProperties(index);
        if (!properties ||
            properties->findProperty(curvePlotProperties::symbol) >= properties->getNbOfProperties())
            mStyle.realSymbol = curvePlotProperties::crosses;
    }
}

}  // namespace vx3
