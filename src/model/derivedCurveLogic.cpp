// Value conversions of cDerivedCurveFunction: complex parts and the logic value texts.
#include <cmath>
#include <vector>

#include "model/derivedCurveFunction.h"

namespace vx3 {

using namespace derivedCurveFunction;

double cDerivedCurveFunction::convertComplexValue(std::complex<double> value, unsigned conversion, bool secondValue)
{
    constexpr double kDegree = 180.0 / 3.14159265358979323846;
    switch (conversion) {
    case real_part: return value.real();
    case imaginary_part: return value.imag();
    case angle: return std::arg(value) * kDegree;
    case magnitude: return std::abs(value);
    case magnitude_in_db: return 20.0 * std::log10(std::abs(value));
    case real_and_imaginary_part: return secondValue ? value.imag() : value.real();
    case magnitude_and_angle: return secondValue ? std::arg(value) * kDegree : std::abs(value);
    case magnitude_in_db_and_angle:
        return secondValue ? std::arg(value) * kDegree : 20.0 * std::log10(std::abs(value));
    default: return value.real();
    }
}

unsigned char cDerivedCurveFunction::simplifyDigitalValue(unsigned char value)
{
    if ((value >= 4 && value <= 30) || (value >= 130 && value <= 135))
        return static_cast<unsigned char>(10 + (value >= 130 ? (value - 130) % 3 : (value - 4) % 3));
    switch (value) {
    case '0': case 'D': case 'L': case 'd': case 'l': return '0';
    case '1': case 'H': case 'h': return '1';
    case 'F': case 'T': case 'Z': case 'f': case 'z': return 'z';
    case 'U': case 'u': return 'u';
    default: return 'x';
    }
}

double cDerivedCurveFunction::convertSparseLogicValueToDouble(unsigned char value)
{
    switch (value) {
    case 130: case 133: return 0.0;
    case 131: case 134: return 0.5;
    case 132: case 135: return 1.0;
    default: break;
    }
    switch (simplifyDigitalValue(value)) {
    case '0': case 'u': return 0.0;
    case '1': return 1.0;
    default: return 0.5;  // "z" and "x"
    }
}

double cDerivedCurveFunction::convertSparseLogicVectorToDouble(const char* bits, uint64_t width)
{
    for (uint64_t i = 0; i < width; ++i)
        if (simplifyDigitalValue(static_cast<unsigned char>(bits[i])) != 'x')
            return convertSparseLogicValueToDouble(static_cast<unsigned char>(bits[i]));
    return 0.5;
}

bool cDerivedCurveFunction::checkDigitalvalueMeansUndef(unsigned char value)
{
    switch (value) {
    case '0': case '1': case 'D': case 'H': case 'L': case 'U': case 'd': case 'h': case 'l': case 'u':
        return false;
    default:
        return true;
    }
}

namespace {

// '0', '1', or the undefined class 'x', 'z', 'u' of a bit (strength codes keep their level).
char bitClass(char raw)
{
    const unsigned char base = cDerivedCurveFunction::simplifyDigitalValue(static_cast<unsigned char>(raw));
    if (base == 10)
        return '0';
    if (base == 11)
        return 'z';
    if (base == 12)
        return '1';
    return static_cast<char>(base);
}

const char* baseText(unsigned type)
{
    switch (type) {
    case hexadecimal: case hexadecimal_with_base: return " hex";
    case decimal: case decimal_with_base: return " dec";
    case signed_decimal: case signed_decimal_with_base: return " signed";
    case octal: case octal_with_base: return " oct";
    default: return " bin";
    }
}

bool withBase(unsigned type) { return type >= hexadecimal_with_base && type <= octal_with_base; }

// Groups of bitsPerDigit bits from the right; a group holding undefined bits is "x", "z", "u"
// when it holds nothing else, and "X", "Z", "U" when mixed ("x" before "z" before "u").
std::string groupedDigits(const std::vector<char>& classes, unsigned bitsPerDigit)
{
    static const char digits[] = "0123456789ABCDEF";
    const uint64_t width = classes.size();
    const uint64_t groups = (width + bitsPerDigit - 1) / bitsPerDigit;
    std::string text(groups, '0');
    for (uint64_t g = 0; g < groups; ++g) {
        unsigned value = 0, defined = 0;
        bool x = false, z = false, u = false;
        for (unsigned b = 0; b < bitsPerDigit; ++b) {
            const uint64_t fromRight = g * bitsPerDigit + b;
            if (fromRight >= width)
                break;
            const char bit = classes[width - 1 - fromRight];
            if (bit == '0' || bit == '1') {
                value |= static_cast<unsigned>(bit - '0') << b;
                ++defined;
            } else {
                x = x || bit == 'x';
                z = z || bit == 'z';
                u = u || bit == 'u';
            }
        }
        char& digit = text[groups - 1 - g];
        if (!x && !z && !u) {
            digit = digits[value];
            continue;
        }
        const char kind = x ? 'x' : z ? 'z' : 'u';
        const bool mixed = defined > 0 || (int(x) + int(z) + int(u)) > 1;
        digit = mixed ? static_cast<char>(kind - 32) : kind;
    }
    return text;
}

// Decimal text of a vector of 0/1 characters (most significant first), in 10^9 limbs.
std::string unsignedDecimal(const std::vector<char>& bits)
{
    std::vector<uint32_t> limbs(1, 0);  // least significant first, base 1e9
    for (char bit : bits) {
        uint64_t carry = bit == '1' ? 1 : 0;
        for (uint32_t& limb : limbs) {
            const uint64_t next = uint64_t(limb) * 2 + carry;
            limb = static_cast<uint32_t>(next % 1000000000u);
            carry = next / 1000000000u;
        }
        if (carry)
            limbs.push_back(static_cast<uint32_t>(carry));
    }
    std::string text = std::to_string(limbs.back());
    for (size_t i = limbs.size() - 1; i-- > 0;) {
        const std::string part = std::to_string(limbs[i]);
        text += std::string(9 - part.size(), '0') + part;
    }
    return text;
}

}  // namespace

std::string cDerivedCurveFunction::convertDigitalVectorToString(const char* bits, uint64_t width, unsigned digitalType)
{
    std::vector<char> classes(width);
    for (uint64_t i = 0; i < width; ++i)
        classes[i] = bitClass(bits[i]);
    const std::string suffix = withBase(digitalType) ? baseText(digitalType) : "";
    switch (digitalType) {
    case decimal: case decimal_with_base: case signed_decimal: case signed_decimal_with_base: {
        const bool isSigned = digitalType == signed_decimal || digitalType == signed_decimal_with_base;
        for (const char undefined : {'x', 'z', 'u'})
            for (char c : classes)
                if (c == undefined)
                    return std::string(1, undefined) + baseText(digitalType);
        if (width == 0)
            return "0" + suffix;
        if (isSigned && classes[0] == '1') {
            // Two's complement: invert and add one.
            std::vector<char> magnitude(classes);
            for (char& c : magnitude)
                c = c == '1' ? '0' : '1';
            for (uint64_t i = width; i-- > 0;) {
                if (magnitude[i] == '0') {
                    magnitude[i] = '1';
                    break;
                }
                magnitude[i] = '0';
            }
            return "-" + unsignedDecimal(magnitude) + suffix;
        }
        return unsignedDecimal(classes) + suffix;
    }
    case hexadecimal: case hexadecimal_with_base:
        return groupedDigits(classes, 4) + suffix;
    case octal: case octal_with_base:
        return groupedDigits(classes, 3) + suffix;
    case binary_with_strength: case binary_port_values: case binary_port_values_with_strength:
        return std::string(bits, width);
    case default_digital:
        return width > 1 ? groupedDigits(classes, 4) : std::string(classes.begin(), classes.end());
    default:
        return std::string(classes.begin(), classes.end()) + suffix;
    }
}

uint64_t cDerivedCurveFunction::estimateMaximulLogicStringSize(uint64_t width, unsigned digitalType)
{
    const uint64_t suffix = withBase(digitalType) || digitalType == decimal || digitalType == signed_decimal ? 7 : 0;
    switch (digitalType) {
    case decimal: case decimal_with_base:
        return static_cast<uint64_t>(std::ceil(width * 0.30103)) + 1 + suffix;
    case signed_decimal: case signed_decimal_with_base:
        return static_cast<uint64_t>(std::ceil(width * 0.30103)) + 2 + suffix;
    case hexadecimal: case hexadecimal_with_base: case default_digital:
        return (width + 3) / 4 + suffix;
    case octal: case octal_with_base:
        return (width + 2) / 3 + suffix;
    default:
        return width + suffix;
    }
}

}  // namespace vx3
