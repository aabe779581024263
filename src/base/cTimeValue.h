// The exact time of digital waveforms: an integer count of a decimal time unit plus a delta
// count, or a plain double for analog times.
#pragma once

#include <cstdint>
#include <limits>
#include <string>

namespace vx3 {

class cTimeValue {
public:
    // Unit numbers; each is a tenth of the one before. 22 is a plain double time in seconds.
    enum time_value_type : int {
        time_100s = 1,
        time_10s = 2,
        time_1s = 3,
        time_100ms = 4,
        time_10ms = 5,
        time_1ms = 6,
        time_100us = 7,
        time_10us = 8,
        time_1us = 9,
        time_100ns = 10,
        time_10ns = 11,
        time_1ns = 12,
        time_100ps = 13,
        time_10ps = 14,
        time_1ps = 15,
        time_100fs = 16,
        time_10fs = 17,
        time_1fs = 18,
        time_01fs = 19,
        time_001fs = 20,
        time_double = 22
    };

    cTimeValue() = default;
    explicit cTimeValue(double seconds) { setDoubleTime(seconds); }
    cTimeValue(uint64_t value, time_value_type unit) { setDigitalTime(value, 0, unit); }
    cTimeValue(uint64_t value, uint32_t deltaCount, time_value_type unit) { setDigitalTime(value, deltaCount, unit); }
    explicit cTimeValue(const std::string& text) { initFromString(text); }

    void clearTime();
    void setDoubleTime(double seconds);
    void setDigitalTime(uint64_t value, uint32_t deltaCount, time_value_type unit);
    // Keeps the digital value and reads it in the new unit.
    bool setTimeScale(time_value_type unit);
    bool setTimeScale(const std::string& unitName);
    // Converts the value to another unit; false (and unchanged) when it can't be held exactly.
    bool convertType(time_value_type unit);

    // A number with a unit, "10ns", "1.5 us", "2 s"; a bare number is a plain time in seconds.
    bool initFromString(const std::string& text);
    bool initFromString(const std::string& value, const std::string& unit);
    // "<digital value>*<unit name>[+<delta count>]" or a plain number.
    bool initFromCompleteString(const std::string& text);
    std::string toCompleteString() const;

    // -1, 0 or 1. Digital times are compared exactly in the finer of the two units, equal times
    // by their delta counts; a plain double on either side compares as doubles.
    int compareDigitalTime(const cTimeValue& other) const;
    bool operator<(const cTimeValue& other) const { return compareDigitalTime(other) < 0; }
    bool operator<=(const cTimeValue& other) const { return checkIsValid() && other.checkIsValid() && compareDigitalTime(other) <= 0; }
    bool operator>(const cTimeValue& other) const { return compareDigitalTime(other) > 0; }
    bool operator>=(const cTimeValue& other) const { return checkIsValid() && other.checkIsValid() && compareDigitalTime(other) >= 0; }
    bool operator==(const cTimeValue& other) const { return checkIsValid() && other.checkIsValid() && compareDigitalTime(other) == 0; }
    bool operator!=(const cTimeValue& other) const { return !(*this == other); }

    bool checkIsValid() const { return mDoubleValue == mDoubleValue; }
    bool checkIsDigital() const { return mType != time_double; }
    double getDoubleTime() const { return mDoubleValue; }  // seconds
    uint64_t getDigitalValue() const { return mDigitalValue; }
    uint32_t getDeltaCount() const { return mDeltaCount; }
    void setDeltaCount(uint32_t count) { mDeltaCount = count; }
    time_value_type getTimeScale() const { return mType; }
    uint32_t getFactor() const { return mFactor; }
    // Multiplies the unit: a scale of "5ns" is unit 1ns with factor 5.
    void setFactor(uint32_t factor);
    // Seconds of one digital step: the unit times the factor; 1 for a plain double time.
    double getTimeScaleFactor() const;

    static const char* timeScaleToString(time_value_type unit);  // "" for an unknown unit
    static bool stringToTimeScale(const std::string& name, time_value_type& unit);
    static double unitInSeconds(time_value_type unit);

private:
    void updateDoubleValue();

    double mDoubleValue = std::numeric_limits<double>::quiet_NaN();
    uint64_t mDigitalValue = 0;
    uint32_t mDeltaCount = 0;
    time_value_type mType = time_double;
    uint32_t mFactor = 1;
};

}  // namespace vx3
