// Reading the state of a digital curve at an x position, as the rulers and tool tips show it.
#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"

namespace vx3 {

namespace {
// Strength-coded states read as the level they stand for: L, W (unknown) or H, weak.
std::string singleStateText(char raw)
{
    switch (cDerivedCurveFunction::simplifyDigitalValue(static_cast<unsigned char>(raw))) {
    case 10: return "L";
    case 11: return "W";
    case 12: return "H";
    default: break;
    }
    return std::string(1, raw);
}
}  // namespace

bool cCurvePlotVariable::getDigitalCurveValue(const cCurvePlotDataSection& section, double x, std::string& value,
                                              unsigned digitalType) const
{
    uint64_t xCount = 0;
    const double* xs = section.getXAxisDoubleValues(xCount);
    const char* bits = nullptr;
    uint64_t width = 0;
    if (!findLogicValueAt(getDataType(), x, xs, xCount, section.getTimeScaleFactor(), bits, width) || width == 0)
        return false;
    if (width == 1 && (digitalType == derivedCurveFunction::default_digital ||
                       digitalType == derivedCurveFunction::binary_with_strength))
        value = singleStateText(bits[0]);
    else
        value = convertDigitalVectorToString(bits, width, digitalType);
    return true;
}

}  // namespace vx3
