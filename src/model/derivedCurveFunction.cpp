#include "model/derivedCurveFunction.h"

namespace vx3::derivedCurveFunction {

const char* conversion_type_to_string(unsigned conversion)
{
    static const char* const texts[] = {"Real Part",          "Imaginary Part",     "Angle",
                                        "Magnitude",          "Magnitude in DB",    "Real and Imaginary Part",
                                        "Magnitude and Angle", "Magnitude in DB and Angle"};
    return conversion < 8 ? texts[conversion] : "";
}

const char* getFunctionAsString(unsigned conversion)
{
    static const char* const texts[] = {"Re", "Im", "Angle", "Mag", "DB", "Re_Im", "Mag_Angle", "DB_Angle"};
    return conversion < 8 ? texts[conversion] : "";
}

bool checkConversionHasTwoValues(unsigned conversion) { return conversion >= 5 && conversion <= 7; }

const char* digital_data_type_to_string(unsigned type)
{
    static const char* const texts[] = {"hexadecimal",
                                        "decimal",
                                        "signed decimal",
                                        "binary",
                                        "octal",
                                        "hexadecimal with base",
                                        "decimal with base",
                                        "signed decimal with base",
                                        "binary with base",
                                        "octal with base",
                                        "binary with strength",
                                        "binary port values ",
                                        "binary port values with strength",
                                        "",
                                        "default"};
    return type < 15 ? texts[type] : "";
}

const char* double_data_conversion_type_to_string(unsigned type)
{
    static const char* const texts[] = {"time stamp",      "year-month-day",  "day.month.year",
                                        "day/month/year",  "month/day/year",  "time stamp (ms precision)"};
    return type < 6 ? texts[type] : "";
}

bool check_monotony_increasing(unsigned monotony)
{
    return monotony == monotony_rising_and_falling || monotony == monotony_rising ||
           monotony == monotony_strictly_rising;
}

bool check_monotony_decreasing(unsigned monotony)
{
    return monotony == monotony_rising_and_falling || monotony == monotony_falling ||
           monotony == monotony_strictly_falling;
}

bool check_monotony_none(unsigned monotony)
{
    return monotony == monotony_unknown || monotony == monotony_undefined || monotony == monotony_none_rising ||
           monotony == monotony_none_falling;
}

value_monotony_type merge_monotony(unsigned first, unsigned second)
{
    if (first == monotony_unknown)
        return static_cast<value_monotony_type>(second);
    if (second == monotony_unknown)
        return static_cast<value_monotony_type>(first);
    if (check_monotony_none(first))
        return static_cast<value_monotony_type>(first);
    if (check_monotony_none(second))
        return static_cast<value_monotony_type>(second);
    if (first == second)
        return static_cast<value_monotony_type>(first);
    // A half that is both rising and falling adapts to the other one.
    if (first == monotony_rising_and_falling)
        return static_cast<value_monotony_type>(second);
    if (second == monotony_rising_and_falling)
        return static_cast<value_monotony_type>(first);
    const bool rising = check_monotony_increasing(first) || check_monotony_increasing(second);
    const bool falling = check_monotony_decreasing(first) || check_monotony_decreasing(second);
    if (rising && falling)
        return monotony_undefined;
    if (rising)  // constant with rising, or strictly with repeated rising
        return monotony_rising;
    if (falling)
        return monotony_falling;
    return monotony_constant;
}

}  // namespace vx3::derivedCurveFunction
