#include "model/dataUnit.h"

#include <cmath>
#include <unordered_map>

#include "base/cVxString.h"
#include "model/dataUnitTable.h"

namespace vx3::curvePlotDataType {

namespace {

struct cUnitDictionary {
    std::unordered_map<std::string, dataUnit> words;

    cUnitDictionary()
    {
        words.reserve(detail::kNbOfUnitWords + kNbOfUnits);
        for (size_t i = 0; i < detail::kNbOfUnitWords; ++i)
            words.emplace(detail::kUnitWords[i].word, detail::kUnitWords[i].unit);
        // The long texts read back as their unit, unless a listed word already claims the spelling.
        for (unsigned unit = 2; unit < kNbOfUnits; ++unit) {
            const std::string text = vxString::to_lower(detail::kUnitTexts[unit].longText);
            if (!text.empty())
                words.emplace(text, static_cast<dataUnit>(unit));
        }
    }
};

const cUnitDictionary& dictionary()
{
    static const cUnitDictionary instance;
    return instance;
}

bool isVoltFamily(unsigned unit)
{
    return unit == volt || unit == real_volt || unit == imag_volt || unit == volt_mag;
}

bool isAmpereFamily(unsigned unit)
{
    return unit == ampere || unit == real_ampere || unit == imag_ampere || unit == ampere_mag;
}

bool isWordCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

// Splits "f(inner)" when the bracket opened after f closes at the very end.
bool splitFunctionCall(std::string_view text, std::string_view& function, std::string_view& inner)
{
    const size_t open = text.find('(');
    if (open == std::string_view::npos || open == 0 || text.size() < open + 2 || text.back() != ')')
        return false;
    int depth = 0;
    for (size_t i = open; i < text.size(); ++i) {
        if (text[i] == '(')
            ++depth;
        else if (text[i] == ')' && --depth == 0 && i + 1 != text.size())
            return false;
    }
    function = text.substr(0, open);
    for (char c : function)
        if (!isWordCharacter(c))
            return false;
    inner = text.substr(open + 1, text.size() - open - 2);
    return true;
}

dataUnit guessFromPartFunctionLowerCase(std::string_view name);

// "re" and "im" are part functions here, not the Spice spelling of a current magnitude.
dataUnit guessFromBracketsLowerCase(std::string_view name)
{
    std::string_view function, inner;
    if (!splitFunctionCall(name, function, inner))
        return undefined_unit;
    if (function == "re" || function == "real" || function == "im" || function == "imag")
        return guessFromPartFunctionLowerCase(name);
    return stringToUnit(function);
}

// "re(v(x))" and "im(i(x))": the part function as a prefix to the unit of the argument.
dataUnit guessFromPartFunctionLowerCase(std::string_view name)
{
    std::string_view function, inner;
    if (!splitFunctionCall(name, function, inner))
        return undefined_unit;
    const bool real = function == "re" || function == "real";
    const bool imag = function == "im" || function == "imag";
    if (!real && !imag)
        return undefined_unit;
    dataUnit unit = guessFromBracketsLowerCase(inner);
    if (unit == undefined_unit)
        unit = stringToUnit(inner);
    if (isVoltFamily(unit))
        return real ? real_volt : imag_volt;
    if (isAmpereFamily(unit))
        return real ? real_ampere : imag_ampere;
    return unit;
}

}  // namespace

const char* unitToString(unsigned unit)
{
    return unit < kNbOfUnits ? detail::kUnitTexts[unit].longText : "";
}

const char* unitToShortString(unsigned unit)
{
    return unit < kNbOfUnits ? detail::kUnitTexts[unit].shortText : "";
}

dataUnit stringToUnit(std::string_view text)
{
    const std::string key = vxString::to_lower(vxString::trim(text));
    const auto& words = dictionary().words;
    const auto found = words.find(key);
    return found == words.end() ? undefined_unit : found->second;
}

bool checkIsKnownUnitWord(std::string_view text)
{
    const std::string key = vxString::to_lower(vxString::trim(text));
    return dictionary().words.count(key) != 0;
}

dataUnit guessUnitFromExpressionInBrackets(std::string_view name)
{
    return guessFromBracketsLowerCase(vxString::to_lower(name));
}

dataUnit guessUnitFromVariableName(std::string_view name)
{
    std::string lower = vxString::to_lower(vxString::trim(name));
    if (!lower.empty() && (lower[0] == '+' || lower[0] == '-'))
        lower.erase(0, 1);
    dataUnit unit = guessFromBracketsLowerCase(lower);
    if (unit == undefined_unit)
        unit = stringToUnit(lower);
    for (char separator : {'+', '-'}) {
        if (unit != undefined_unit)
            break;
        const size_t position = lower.rfind(separator);
        if (position != std::string::npos && position + 1 < lower.size()) {
            const std::string_view rest = std::string_view(lower).substr(position + 1);
            unit = guessFromBracketsLowerCase(rest);
            if (unit == undefined_unit)
                unit = stringToUnit(rest);
        }
    }
    return unit;
}

bool checkUnitCanBeScaled(unsigned unit)
{
    switch (unit) {
    case 0: case 1: case 2: case 3: case 7: case 10: case 11: case 12: case 15: case 24: case 25:
    case 32: case 33: case 34: case 35: case 38: case 39: case 44:
    case 50: case 51: case 52: case 53: case 54: case 56:
    case 58: case 59: case 60: case 61:
    case 74: case 75: case 76: case 77: case 79: case 80:
    case 82: case 83: case 84: case 85:
        return false;
    default:
        return true;
    }
}

const char* exponentToUnit(int exponent)
{
    static const char* const texts[] = {"a",  "10a",  "100a",  "f",  "10f",  "100f",  "p",  "10p",
                                        "100p", "n",  "10n",  "100n",  "u",  "10u",  "100u", "m",
                                        "10m", "100m", "",   "10",   "100",  "k",  "10k",  "100k",
                                        "M",  "10M",  "100M",  "G",  "10G",  "100G", "T",  "10T",
                                        "100T", "P",  "10P",  "100P",  "E",  "10E",  "100E"};
    if (exponent < -18 || exponent > 20)
        return "";
    return texts[exponent + 18];
}

dataUnit applyConversionToUnit(unsigned unit, unsigned conversion)
{
    switch (conversion) {
    case 0:  // real part
        if (isVoltFamily(unit))
            return real_volt;
        if (isAmpereFamily(unit))
            return real_ampere;
        break;
    case 1:  // imaginary part
        if (isVoltFamily(unit))
            return imag_volt;
        if (isAmpereFamily(unit))
            return imag_ampere;
        break;
    case 2:  // angle
        return degree;
    case 3:  // magnitude
        if (isVoltFamily(unit))
            return volt_mag;
        if (isAmpereFamily(unit))
            return ampere_mag;
        break;
    case 4:  // magnitude in dB
        if (isVoltFamily(unit))
            return volt_db;
        if (isAmpereFamily(unit))
            return ampere_db;
        return decibel;
    case 15:
    case 20:
        return converted_unit;
    default:
        break;
    }
    return static_cast<dataUnit>(unit);
}

namespace {
// Engineering exponent of a non-zero magnitude: a multiple of 3 at or below its decade.
int engineeringExponent(double magnitude)
{
    int exponent = static_cast<int>(std::floor(std::log10(magnitude)));
    exponent = exponent >= 0 ? exponent / 3 * 3 : -((-exponent + 2) / 3 * 3);
    if (std::pow(10.0, exponent) > magnitude)  // log10 rounding just below a power of ten
        exponent -= 3;
    return exponent;
}
}  // namespace

void getLabelAndScaleFactor(unsigned unit, const std::string& typeName, double min, double max,
                            std::string& label, double& factor)
{
    const char* shortText = unitToShortString(unit);
    label = *shortText ? std::string(shortText) : typeName;
    factor = 1.0;
    if (std::isnan(min) || std::isnan(max) || !checkUnitCanBeScaled(unit))
        return;
    int exponent = -300;
    for (double value : {min, max}) {
        const double magnitude = std::fabs(value);
        if (magnitude != 0.0 && std::isfinite(magnitude))
            exponent = std::max(exponent, engineeringExponent(magnitude));
    }
    if (exponent < -18 || exponent > 18)
        return;
    if ((unit == second && exponent > 0) || (unit == hertz && exponent < 0))
        exponent = 0;
    factor = std::pow(10.0, -exponent);
    label = std::string(exponentToUnit(exponent)) + label;
}

void getLabelAndScaleFactor(unsigned unit, const std::string& typeName, double min, double max,
                            std::string& label, double& factor, unsigned conversion)
{
    getLabelAndScaleFactor(applyConversionToUnit(unit, conversion), typeName, min, max, label, factor);
}

}  // namespace vx3::curvePlotDataType
