// Physical units of curve values: texts, parsing, guessing from names, axis scaling.
#pragma once

#include <string>
#include <string_view>

namespace vx3::curvePlotDataType {

// Numbers are stored in files and sessions: never renumber.
enum dataUnit : unsigned {
    undefined_unit = 0,
    no_unit = 1,
    converted_unit = 2,  // what the conversions 15 and 20 turn a unit into
    unit_3 = 3,
    error_unit = 4,
    any_unit = 5,
    second = 6,
    hour = 7,
    volt = 8,
    ampere = 9,
    kelvin = 10,
    degree_centigrade = 11,
    farenheit = 12,
    watt = 13,
    hertz = 14,
    integer_index = 15,
    ampere_turn = 16,
    weber = 17,
    volt_per_second = 18,
    ampere_per_second = 19,
    one_per_second = 20,
    newton_meter = 21,
    radians_per_second_squared = 22,
    radians_per_second = 23,
    radians = 24,
    gradians = 25,
    newton = 26,
    meter_per_second_cubed = 27,
    meter_per_second_squared = 28,
    meter_per_second = 29,
    meter = 30,
    coulomb = 31,
    index = 32,
    degree = 33,
    volt_db = 34,
    ampere_db = 35,
    volt_mag = 36,
    ampere_mag = 37,
    degree_38 = 38,
    degree_39 = 39,
    real_volt = 40,
    real_ampere = 41,
    imag_volt = 42,
    imag_ampere = 43,
    decibel = 44,
    parameter = 45,
    ohm = 46,
    henry = 47,
    farad = 48,
    siemens = 49,
    s_parameter = 50,
    z_parameter = 51,
    y_parameter = 52,
    g_parameter = 53,
    h_parameter = 54,
    noise_figure = 55,
    noise = 56,
    reflection_coefficient = 57,
    logic_state = 58,
    logic_state_59 = 59,
    date = 60,
    count = 61,
    kilogram = 62,
    candela = 63,
    mole = 64,
    pascal = 65,
    joule = 66,
    tesla = 67,
    lumen = 68,
    lux = 69,
    becquerel = 70,
    gray = 71,
    sievert = 72,
    katal = 73,
    percent = 74,
    hecto_pascal = 75,
    gram_per_cubic_meter = 76,
    dbm = 77,
    bits_per_second = 78,
    correlation = 79,
    volt_meter = 80,
    unit_81 = 81,
    volt_per = 82,
    date_text = 83,
    mjd = 84,
    pole = 85,
};

constexpr unsigned kNbOfUnits = 86;

// Long text; "" for numbers without one.
const char* unitToString(unsigned unit);
// Axis label text; "" when the unit has none.
const char* unitToShortString(unsigned unit);

// Case-insensitive, surrounding blanks ignored; undefined_unit for unknown words.
dataUnit stringToUnit(std::string_view text);
// True when the word is part of the vocabulary, even if it names no unit ("double", "none").
bool checkIsKnownUnitWord(std::string_view text);

// "v(out)" -> volt, "i(r1)" -> ampere; undefined_unit when the name isn't of that form.
dataUnit guessUnitFromExpressionInBrackets(std::string_view name);
dataUnit guessUnitFromVariableName(std::string_view name);

bool checkUnitCanBeScaled(unsigned unit);

// "a", "10a", ... "E", "10E", "100E" for -18 to 20; "" outside.
const char* exponentToUnit(int exponent);

// Unit seen through a conversion of complex data (derivedCurveFunction numbering).
dataUnit applyConversionToUnit(unsigned unit, unsigned conversion);

// Axis label and the factor by which values are multiplied for it. typeName stands in
// for units without a short text. The conversion is applied to the unit first.
void getLabelAndScaleFactor(unsigned unit, const std::string& typeName, double min, double max,
                            std::string& label, double& factor);
void getLabelAndScaleFactor(unsigned unit, const std::string& typeName, double min, double max,
                            std::string& label, double& factor, unsigned conversion);

}  // namespace vx3::curvePlotDataType
