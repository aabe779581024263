#include "cTimeValue.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "cVxString.h"

namespace vx3 {

namespace {

constexpr int firstUnit = cTimeValue::time_100s;
constexpr int lastUnit = cTimeValue::time_001fs;

const char* const unitNames[] = {"100s", "10s", "1s", "100ms", "10ms", "1ms", "100us", "10us", "1us", "100ns",
                                 "10ns", "1ns",  "100ps", "10ps", "1ps", "100fs", "10fs", "1fs", "0.1fs", "0.01fs"};

bool isDigitalUnit(int unit) { return unit >= firstUnit && unit <= lastUnit; }

// Decimal exponent of a unit in seconds: 100s is 10^2, 0.01fs is 10^-17.
int unitExponent(int unit) { return 3 - unit; }

// Exact in double up to 10^22.
double powerOfTen(int exponent)
{
    static const double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    if (exponent >= 0 && exponent <= 22)
        return powers[exponent];
    if (exponent < 0 && exponent >= -22)
        return 1.0 / powers[-exponent];
    return std::pow(10.0, exponent);
}

// value * 10^exponent without the rounding error of multiplying by an inexact 10^-n.
double scaleByPowerOfTen(double value, int exponent)
{
    if (exponent >= 0)
        return value * powerOfTen(exponent);
    if (exponent >= -22)
        return value / powerOfTen(-exponent);
    return value * std::pow(10.0, exponent);
}

bool multiplyByPowerOfTen(unsigned __int128& value, int exponent)
{
    for (int i = 0; i < exponent; ++i)
        if (__builtin_mul_overflow(value, static_cast<unsigned __int128>(10), &value))
            return false;
    return true;
}

std::string toDecimal(unsigned __int128 value)
{
    if (value == 0)
        return "0";
    std::string digits;
    while (value > 0) {
        digits.insert(digits.begin(), static_cast<char>('0' + static_cast<int>(value % 10)));
        value /= 10;
    }
    return digits;
}

// Treats a double as a whole number when it is within rounding noise of one.
bool checkIsWholeNumber(double value, uint64_t& whole)
{
    if (!(value >= 0) || value >= 9.2e18)
        return false;
    double rounded = std::round(value);
    if (std::fabs(value - rounded) > 1e-11 * std::max(1.0, rounded))
        return false;
    whole = static_cast<uint64_t>(rounded);
    return true;
}

// The number-with-unit scan of time texts: "10ns", "1.5 us", "3e-9s". Exponent of the SI
// prefix in "exponent"; false when the text is not a number, optionally followed by blanks and
// a time unit. A text without unit gives "hasUnit" false.
bool scanNumberWithTimeUnit(const std::string& text, double& number, int& exponent, bool& hasUnit)
{
    std::string trimmed = vxString::trim(text);
    if (trimmed.empty())
        return false;
    char* end = nullptr;
    double value = vxString::strtod_replacement(trimmed.c_str(), &end);
    if (end == trimmed.c_str())
        return false;
    std::string unit = vxString::to_lower(vxString::trim(std::string(end)));
    static const struct {
        const char* name;
        int exponent;
    } units[] = {{"s", 0},           {"ms", -3}, {"us", -6}, {"\xC2\xB5s", -6}, {"\xCE\xBCs", -6},
                 {"ns", -9},         {"ps", -12}, {"fs", -15}, {"as", -18}, {"sec", 0}};
    if (unit.empty()) {
        number = value;
        exponent = 0;
        hasUnit = false;
        return true;
    }
    for (const auto& candidate : units) {
        if (unit == candidate.name) {
            number = value;
            exponent = candidate.exponent;
            hasUnit = true;
            return true;
        }
    }
    return false;
}

}  // namespace

const char* cTimeValue::timeScaleToString(time_value_type unit)
{
    return isDigitalUnit(unit) ? unitNames[unit - firstUnit] : "";
}

bool cTimeValue::stringToTimeScale(const std::string& name, time_value_type& unit)
{
    std::string key = vxString::to_lower(vxString::remove_string_all(vxString::trim(name), " "));
    for (int candidate = firstUnit; candidate <= lastUnit; ++candidate) {
        if (key == unitNames[candidate - firstUnit]) {
            unit = static_cast<time_value_type>(candidate);
            return true;
        }
    }
    return false;
}

double cTimeValue::unitInSeconds(time_value_type unit)
{
    return isDigitalUnit(unit) ? powerOfTen(unitExponent(unit)) : 1.0;
}

void cTimeValue::clearTime() { *this = cTimeValue(); }

void cTimeValue::setDoubleTime(double seconds)
{
    mDoubleValue = seconds;
    mDigitalValue = 0;
    mDeltaCount = 0;
    mType = time_double;
    mFactor = 1;
}

void cTimeValue::setDigitalTime(uint64_t value, uint32_t deltaCount, time_value_type unit)
{
    if (!isDigitalUnit(unit)) {
        setDoubleTime(static_cast<double>(value));
        return;
    }
    mDigitalValue = value;
    mDeltaCount = deltaCount;
    mType = unit;
    updateDoubleValue();
}

void cTimeValue::setFactor(uint32_t factor)
{
    mFactor = factor == 0 ? 1 : factor;
    updateDoubleValue();
}

double cTimeValue::getTimeScaleFactor() const
{
    return checkIsDigital() ? unitInSeconds(mType) * static_cast<double>(mFactor) : 1.0;
}

void cTimeValue::updateDoubleValue()
{
    if (checkIsDigital())
        mDoubleValue = scaleByPowerOfTen(static_cast<double>(mDigitalValue) * static_cast<double>(mFactor),
                                         unitExponent(mType));
}

bool cTimeValue::setTimeScale(time_value_type unit)
{
    if (!isDigitalUnit(unit))
        return false;
    if (!checkIsDigital()) {
        mDigitalValue = 0;
        mDeltaCount = 0;
        mFactor = 1;
    }
    mType = unit;
    updateDoubleValue();
    return true;
}

bool cTimeValue::setTimeScale(const std::string& unitName)
{
    time_value_type unit;
    return stringToTimeScale(unitName, unit) && setTimeScale(unit);
}

bool cTimeValue::convertType(time_value_type unit)
{
    if (unit == mType)
        return true;
    if (unit == time_double) {
        double seconds = mDoubleValue;
        setDoubleTime(seconds);
        return true;
    }
    if (!isDigitalUnit(unit))
        return false;
    if (!checkIsDigital()) {
        uint64_t whole = 0;
        if (!checkIsValid() || !checkIsWholeNumber(scaleByPowerOfTen(mDoubleValue, -unitExponent(unit)), whole))
            return false;
        if (whole == 0 && mDoubleValue != 0)
            return false;  // too small for the unit, only rounding noise made it whole
        mFactor = 1;
        setDigitalTime(whole, 0, unit);
        return true;
    }
    unsigned __int128 ticks = static_cast<unsigned __int128>(mDigitalValue) * mFactor;
    if (unit > mType) {
        if (!multiplyByPowerOfTen(ticks, unit - mType))
            return false;
    } else {
        unsigned __int128 divisor = 1;
        multiplyByPowerOfTen(divisor, mType - unit);
        if (ticks % divisor != 0)
            return false;
        ticks /= divisor;
    }
    if (ticks > UINT64_MAX)
        return false;
    mFactor = 1;
    setDigitalTime(static_cast<uint64_t>(ticks), mDeltaCount, unit);
    return true;
}

bool cTimeValue::initFromString(const std::string& text)
{
    double number = 0;
    int exponent = 0;
    bool hasUnit = false;
    if (!scanNumberWithTimeUnit(text, number, exponent, hasUnit))
        return false;
    double seconds = scaleByPowerOfTen(number, exponent);
    if (!hasUnit || !std::isfinite(number) || number < 0) {
        setDoubleTime(seconds);
        return true;
    }
    mFactor = 1;
    if (number == 0) {
        // Zero fits every unit; the one the text named reads best.
        int unit = std::min(std::max(3 - exponent, firstUnit), lastUnit);
        setDigitalTime(0, 0, static_cast<time_value_type>(unit));
        return true;
    }
    // The coarsest unit that holds the value as a whole number: "10ns" is one step of 10ns.
    for (int unit = firstUnit; unit <= lastUnit; ++unit) {
        uint64_t whole = 0;
        // A small value is within rounding noise of zero in coarse units: zero is no answer here.
        if (checkIsWholeNumber(scaleByPowerOfTen(number, exponent - unitExponent(unit)), whole) && whole > 0) {
            setDigitalTime(whole, 0, static_cast<time_value_type>(unit));
            return true;
        }
    }
    setDoubleTime(seconds);  // finer than the finest unit
    return true;
}

bool cTimeValue::initFromString(const std::string& value, const std::string& unit)
{
    return initFromString(value + unit);
}

std::string cTimeValue::toCompleteString() const
{
    if (!checkIsDigital()) {
        char text[64];
        std::snprintf(text, sizeof(text), "%.17g", mDoubleValue);
        return text;
    }
    std::string result = toDecimal(static_cast<unsigned __int128>(mDigitalValue) * mFactor);
    result += '*';
    result += timeScaleToString(mType);
    if (mDeltaCount != 0)
        result += "+" + std::to_string(mDeltaCount);
    return result;
}

bool cTimeValue::initFromCompleteString(const std::string& text)
{
    cVxString trimmed = vxString::trim(text);
    size_t star = trimmed.find('*');
    if (star == std::string::npos) {
        double seconds = 0;
        if (!trimmed.toDouble(seconds))
            return false;
        setDoubleTime(seconds);
        return true;
    }
    uint64_t value = 0;
    if (!cVxString(trimmed.substr(0, star)).toUint64(value))
        return false;
    std::string rest = trimmed.substr(star + 1);
    uint32_t delta = 0;
    size_t plus = rest.find('+');
    if (plus != std::string::npos) {
        unsigned parsed = 0;
        if (!cVxString(rest.substr(plus + 1)).toUint(parsed))
            return false;
        delta = parsed;
        rest.resize(plus);
    }
    time_value_type unit;
    if (!stringToTimeScale(rest, unit))
        return false;
    mFactor = 1;
    setDigitalTime(value, delta, unit);
    return true;
}

int cTimeValue::compareDigitalTime(const cTimeValue& other) const
{
    if (!checkIsDigital() || !other.checkIsDigital()) {
        if (mDoubleValue < other.mDoubleValue)
            return -1;
        if (mDoubleValue > other.mDoubleValue)
            return 1;
        return 0;  // equal, or NaN on one side
    }
    unsigned __int128 mine = static_cast<unsigned __int128>(mDigitalValue) * mFactor;
    unsigned __int128 theirs = static_cast<unsigned __int128>(other.mDigitalValue) * other.mFactor;
    // Only the coarser side is scaled up; if that overflows it is the larger one.
    if (mType < other.mType) {
        if (!multiplyByPowerOfTen(mine, other.mType - mType))
            return 1;
    } else if (other.mType < mType) {
        if (!multiplyByPowerOfTen(theirs, mType - other.mType))
            return -1;
    }
    if (mine != theirs)
        return mine < theirs ? -1 : 1;
    if (mDeltaCount != other.mDeltaCount)
        return mDeltaCount < other.mDeltaCount ? -1 : 1;
    return 0;
}

}  // namespace vx3
