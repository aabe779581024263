#include "model/cCurvePlotProperties.h"

#include <cmath>

#include "base/cVxString.h"

namespace vx3::curvePlotProperties {

const char* propertyTypeToString(unsigned kind)
{
    switch (kind) {
    case run_parameter: return "Run Parameter";
    case run_index: return "Run Index";
    case alter_index: return "Alter Index";
    case temperature: return "Temperature";
    case file_name: return "File Name";
    case analysis_type: return "Analysis Type";
    case analysis_name: return "Analysis Name";
    case x_start: return "X Start";
    case x_stop: return "X Stop";
    case x_step: return "X Step";
    case scale: return "Scale";
    case variable_type: return "Variable Type";
    case left_bit_number: return "Left Bit Number";
    case right_bit_number: return "Right Bit Number";
    case calculator_expression: return "Calculator Expression";
    case color: return "Color";
    case line_style: return "Line Style";
    case symbol: return "Symbol";
    case line_width: return "Line Width";
    case color_imaginary_part: return "Color (Imaginary Part)";
    case line_style_imaginary_part: return "Line Style (Imaginary Part)";
    case symbol_imaginary_part: return "Symbol (Imaginary Part)";
    case line_width_imaginary_part: return "Line Width (Imaginary Part)";
    case initial_section: return "Initial Section";
    case initial_curve: return "Initial Curve";
    case model: return "Model";
    case region: return "Region";
    case assertion: return "Assert";
    case instance: return "Instance";
    case expression: return "Expression";
    case severity: return "Severity";
    case status: return "Status";
    case used_by_link_to_schematic: return "Used By Link To Schematic";
    case parent_section_id: return "Parent Section Id";
    case file_variant: return "File Variant";
    case type: return "Type";
    case equivalent_parent_net: return "Equivalent Parent Net";
    case original_file_name: return "Original File Name";
    default: return "";
    }
}

const char* convertVcdVariableTypeToString(unsigned code)
{
    static const char* const texts[kNbOfVcdVariableTypes] = {
        "wreal", "trireg", "logic", "realtime", "shortint", "supply1", "wand", "int", "inout",
        "triand", "wor", "real", "byte", "reg", "tri1", "integer", "out", "trior", "port",
        "shortreal", "longint", "supply0", "tri", "enum", "in",
        "event", "parameter", "real_parameter", "time", "tri0", "wire", "bit"};
    return code < kNbOfVcdVariableTypes ? texts[code] : "";
}

cProperty cProperty::makeInteger(unsigned kind, int64_t value, const std::string& name)
{
    cProperty property;
    property.mKind = kind;
    property.mName = name;
    property.mValueKind = int64_value;
    property.mInteger = value;
    return property;
}

cProperty cProperty::makeDouble(unsigned kind, double value, const std::string& name)
{
    cProperty property;
    property.mKind = kind;
    property.mName = name;
    property.mValueKind = double_value;
    property.mReal = value;
    return property;
}

cProperty cProperty::makeComplex(unsigned kind, double real, double imag, const std::string& name)
{
    cProperty property = makeDouble(kind, real, name);
    property.mValueKind = complex_value;
    property.mImag = imag;
    return property;
}

cProperty cProperty::makeText(unsigned kind, const std::string& text, const std::string& name)
{
    cProperty property;
    property.mKind = kind;
    property.mName = name;
    property.mValueKind = text_value;
    property.mText = text;
    return property;
}

cProperty cProperty::makeTextWithUnit(unsigned kind, const std::string& text, const std::string& unit,
                                      const std::string& name)
{
    cProperty property = makeText(kind, text, name);
    property.mValueKind = text_with_unit_value;
    property.mUnit = unit;
    return property;
}

std::string cProperty::getTypeAsString() const
{
    if (mKind == user_defined || mKind == undefined_property)
        return mName;
    return propertyTypeToString(mKind);
}

bool cProperty::getAsDouble(double& value) const
{
    switch (mValueKind) {
    case int64_value:
        value = static_cast<double>(mInteger);
        return true;
    case double_value:
    case complex_value:
        value = mReal;
        return true;
    default:
        return false;
    }
}

std::string cProperty::getValueAsString() const
{
    switch (mValueKind) {
    case int64_value:
        return std::to_string(mInteger);
    case double_value:
        return cVxString::createFromNumber(mReal);
    case complex_value:
        return "(" + cVxString::createFromNumber(mReal) + "," + cVxString::createFromNumber(mImag) + ")";
    case text_value:
    case text_with_unit_value:
        return mText;
    default:
        return std::string();
    }
}

namespace {
bool nearlyEqual(double a, double b)
{
    if (a == b || (std::isnan(a) && std::isnan(b)))
        return true;
    return std::fabs(a - b) <= 1e-12 * std::max(std::fabs(a), std::fabs(b));
}
}  // namespace

bool cProperty::corresponds(const cProperty& other) const
{
    if (mKind != other.mKind || mName != other.mName || mValueKind != other.mValueKind)
        return false;
    switch (mValueKind) {
    case int64_value:
        return mInteger == other.mInteger;
    case double_value:
        return nearlyEqual(mReal, other.mReal);
    case complex_value:
        return nearlyEqual(mReal, other.mReal) && nearlyEqual(mImag, other.mImag);
    case text_value:
        return mText == other.mText;
    case text_with_unit_value:
        return mText == other.mText && mUnit == other.mUnit;
    default:
        return true;
    }
}

bool cProperty::operator==(const cProperty& other) const
{
    return mKind == other.mKind && mName == other.mName && mValueKind == other.mValueKind &&
           mInteger == other.mInteger && mReal == other.mReal && mImag == other.mImag && mText == other.mText &&
           mUnit == other.mUnit;
}

}  // namespace vx3::curvePlotProperties

namespace vx3 {

size_t cCurvePlotProperties::addProperty(const cProperty& property)
{
    mProperties.push_back(property);
    return mProperties.size() - 1;
}

size_t cCurvePlotProperties::setProperty(const cProperty& property)
{
    const size_t index = property.getType() == curvePlotProperties::user_defined
                             ? findProperty(property.getType(), property.getName())
                             : findProperty(property.getType());
    if (index < mProperties.size()) {
        mProperties[index] = property;
        return index;
    }
    return addProperty(property);
}

void cCurvePlotProperties::removeProperty(size_t index)
{
    if (index < mProperties.size())
        mProperties.erase(mProperties.begin() + static_cast<std::ptrdiff_t>(index));
}

size_t cCurvePlotProperties::findProperty(unsigned kind, size_t start) const
{
    for (size_t i = start; i < mProperties.size(); ++i)
        if (mProperties[i].getType() == kind)
            return i;
    return mProperties.size();
}

size_t cCurvePlotProperties::findProperty(unsigned kind, const std::string& name) const
{
    for (size_t i = 0; i < mProperties.size(); ++i)
        if (mProperties[i].getType() == kind && mProperties[i].getName() == name)
            return i;
    return mProperties.size();
}

bool cCurvePlotProperties::getXStartAndStep(double& start, double& step) const
{
    const size_t startIndex = findProperty(curvePlotProperties::x_start);
    const size_t stepIndex = findProperty(curvePlotProperties::x_step);
    double startValue = 0.0, stepValue = 0.0;
    if (startIndex >= mProperties.size() || stepIndex >= mProperties.size() ||
        !mProperties[startIndex].getAsDouble(startValue) || !mProperties[stepIndex].getAsDouble(stepValue))
        return false;
    start = startValue;
    step = stepValue;
    return true;
}

bool cCurvePlotProperties::getXStop(double& stop) const
{
    const size_t index = findProperty(curvePlotProperties::x_stop);
    return index < mProperties.size() && mProperties[index].getAsDouble(stop);
}

}  // namespace vx3
