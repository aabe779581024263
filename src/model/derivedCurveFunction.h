// How a reading of a curve transforms its values: complex parts, digital display, x monotony.
#pragma once

#include <complex>
#include <cstdint>
#include <string>

namespace vx3::derivedCurveFunction {

// Other numbers occur (plots use 11 for a digital vector field; 15 and 20 are special conversions).
enum complex_data_conversion_type : unsigned {
    real_part = 0,
    imaginary_part = 1,
    angle = 2,
    magnitude = 3,
    magnitude_in_db = 4,
    real_and_imaginary_part = 5,
    magnitude_and_angle = 6,
    magnitude_in_db_and_angle = 7,
};

enum digital_data_type : unsigned {
    hexadecimal = 0,
    decimal = 1,
    signed_decimal = 2,
    binary = 3,
    octal = 4,
    hexadecimal_with_base = 5,
    decimal_with_base = 6,
    signed_decimal_with_base = 7,
    binary_with_base = 8,
    octal_with_base = 9,
    binary_with_strength = 10,
    binary_port_values = 11,
    binary_port_values_with_strength = 12,
    default_digital = 14,
};

enum value_monotony_type : unsigned {
    monotony_unknown = 0,  // not computed yet
    monotony_rising_and_falling = 1,
    monotony_undefined = 2,  // not monotone, last value equals the first
    monotony_constant = 3,   // also fewer than 2 values
    monotony_rising = 4,
    monotony_strictly_rising = 5,
    monotony_none_rising = 6,  // not monotone, last value above the first
    monotony_falling = 7,
    monotony_strictly_falling = 8,
    monotony_none_falling = 9,  // not monotone, last value below the first
};

enum double_data_conversion_type : unsigned {
    time_stamp = 0,
    year_month_day = 1,
    day_dot_month_dot_year = 2,
    day_slash_month_slash_year = 3,
    month_slash_day_slash_year = 4,
    time_stamp_ms_precision = 5,
};

const char* conversion_type_to_string(unsigned conversion);
const char* getFunctionAsString(unsigned conversion);
// True for the conversions that show a curve twice.
bool checkConversionHasTwoValues(unsigned conversion);
const char* digital_data_type_to_string(unsigned type);
const char* double_data_conversion_type_to_string(unsigned type);

bool check_monotony_increasing(unsigned monotony);
bool check_monotony_decreasing(unsigned monotony);
bool check_monotony_none(unsigned monotony);
// Monotony of a vector made of two halves with the given monotonies.
value_monotony_type merge_monotony(unsigned first, unsigned second);

}  // namespace vx3::derivedCurveFunction

namespace vx3 {

// A value transformation attached to a reading of a curve.
class cDerivedCurveFunction {
public:
    cDerivedCurveFunction() = default;
    cDerivedCurveFunction(unsigned conversion, unsigned digital) : mConversion(conversion), mDigitalType(digital) {}

    unsigned getConversion() const { return mConversion; }
    void setConversion(unsigned conversion) { mConversion = conversion; }
    unsigned getDigitalType() const { return mDigitalType; }
    void setDigitalType(unsigned type) { mDigitalType = type; }

    // ---- Analog values through the conversion. Angles are in degrees; the second value of
    // the two-valued conversions (5 to 7) is the imaginary part or the angle.
    static double convertComplexValue(std::complex<double> value, unsigned conversion, bool secondValue = false);
    double applyConversion(std::complex<double> value, bool secondValue = false) const
    {
        return convertComplexValue(value, mConversion, secondValue);
    }
    double applyConversion(double value) const
    {
        return mConversion == derivedCurveFunction::real_part ? value
                                                              : convertComplexValue(value, mConversion, false);
    }

    // ---- Logic values: one byte per bit, characters or strength codes.
    // The base value: '0', '1', 'z', 'u', 'x', or 10, 11, 12 for the three strength levels.
    static unsigned char simplifyDigitalValue(unsigned char value);
    // 0.0, 0.5 or 1.0 for drawing; a vector is drawn by its leftmost significant bit.
    static double convertSparseLogicValueToDouble(unsigned char value);
    static double convertSparseLogicVectorToDouble(const char* bits, uint64_t width);
    // False only for the well-defined levels 0, 1, D, H, L, U, d, h, l, u.
    static bool checkDigitalvalueMeansUndef(unsigned char value);
    // The text of a logic vector (most significant bit first) in the given digital display.
    static std::string convertDigitalVectorToString(const char* bits, uint64_t width, unsigned digitalType);
    // Characters that convertDigitalVectorToString may need for a vector of width bits.
    static uint64_t estimateMaximulLogicStringSize(uint64_t width, unsigned digitalType);

private:
    unsigned mConversion = derivedCurveFunction::real_part;
    unsigned mDigitalType = derivedCurveFunction::default_digital;
};

}  // namespace vx3
