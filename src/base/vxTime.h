// Dates, clock times and elapsed times as text.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

namespace vx3 {

std::string getCurrentDate();         // "%d-%m-%Y"
std::string getCurrentDateReverse();  // "%Y-%m-%d"
std::string getCurrentYear();         // "%Y"
std::string getCurrentTime();         // "%H:%M:%S"
std::string getTimeAndDate(time_t seconds);              // "%a %b %d %H:%M:%S %Y"
std::string getHumanReadableTimeAndDate(time_t seconds); // "%y%m%d"
std::string getDate(time_t seconds);                     // "%d %b %Y"
std::string getFormatedTimeAndDate(time_t seconds, const std::string& format);
// value: milliseconds since the epoch
std::string get_time_stamp_ms_precision_as_string(int64_t value);            // "%b %d, %H:%M:%S"
std::string get_time_stamp_ms_precision_as_string_with_year(int64_t value);  // "%b %d, %Y, %H:%M:%S"
double elapsedTime();       // seconds since the process started, or since resetElapsedTime
void resetElapsedTime();
int64_t get_elapsed_time_ms_precision();
int64_t get_cpu_time_ms_precision();
std::string convert_time_val_to_string(double seconds);  // "h:mm:ss.mmm"

class cDateAndTime {
public:
    // Run time as "hh:mm:ss.mmm", each field padded with "0".
    static std::string getElapsedTime();
    static std::string formatElapsedTime(double seconds);
};

// The tool name used in texts.
const std::string& simulatorName();
void setSimulatorName(const std::string& name);

class cMemoryUsage {
public:
    // Resident set size in bytes from /proc/self/statm (virtual size when the flag is false).
    static uint64_t getMemoryUsage(bool resident = true);
};

}  // namespace vx3
