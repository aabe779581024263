#include "vxTime.h"

#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iomanip>
#include <locale>
#include <mutex>
#include <sstream>

#include <time.h>
#include <unistd.h>

namespace vx3 {

namespace {

// Month and day names must not follow the GUI's locale: log files and exports are read back.
std::string formatTime(time_t seconds, const char* format, bool local = true)
{
    std::tm parts{};
    if (local)
        localtime_r(&seconds, &parts);
    else
        gmtime_r(&seconds, &parts);
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << std::put_time(&parts, format);
    return stream.str();
}

double monotonicSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Taken at static initialisation, which is close enough to the start of the process.
struct cStartTime {
    std::mutex lock;
    double seconds = monotonicSeconds();
};
cStartTime& startTime()
{
    static cStartTime instance;
    return instance;
}
[[maybe_unused]] const bool startTimeTaken = (startTime(), true);

std::string withMilliseconds(int64_t value, const char* format)
{
    int64_t seconds = value / 1000;
    int64_t milliseconds = value % 1000;
    if (milliseconds < 0) {
        milliseconds += 1000;
        seconds -= 1;
    }
    char fraction[8];
    std::snprintf(fraction, sizeof(fraction), ".%03d", static_cast<int>(milliseconds));
    return formatTime(static_cast<time_t>(seconds), format) + fraction;
}

}  // namespace

std::string getCurrentDate() { return formatTime(time(nullptr), "%d-%m-%Y"); }
std::string getCurrentDateReverse() { return formatTime(time(nullptr), "%Y-%m-%d"); }
std::string getCurrentYear() { return formatTime(time(nullptr), "%Y"); }
std::string getCurrentTime() { return formatTime(time(nullptr), "%H:%M:%S"); }
std::string getTimeAndDate(time_t seconds) { return formatTime(seconds, "%a %b %d %H:%M:%S %Y"); }
std::string getHumanReadableTimeAndDate(time_t seconds) { return formatTime(seconds, "%y%m%d"); }
std::string getDate(time_t seconds) { return formatTime(seconds, "%d %b %Y"); }

std::string getFormatedTimeAndDate(time_t seconds, const std::string& format)
{
    return formatTime(seconds, format.c_str());
}

std::string get_time_stamp_ms_precision_as_string(int64_t value)
{
    return withMilliseconds(value, "%b %d, %H:%M:%S");
}

std::string get_time_stamp_ms_precision_as_string_with_year(int64_t value)
{
    return withMilliseconds(value, "%b %d, %Y, %H:%M:%S");
}

double elapsedTime()
{
    cStartTime& start = startTime();
    std::lock_guard<std::mutex> guard(start.lock);
    return monotonicSeconds() - start.seconds;
}

void resetElapsedTime()
{
    cStartTime& start = startTime();
    std::lock_guard<std::mutex> guard(start.lock);
    start.seconds = monotonicSeconds();
}

int64_t get_elapsed_time_ms_precision() { return static_cast<int64_t>(std::llround(elapsedTime() * 1000.0)); }

int64_t get_cpu_time_ms_precision()
{
    timespec used{};
    if (clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used) != 0)
        return 0;
    return static_cast<int64_t>(used.tv_sec) * 1000 + used.tv_nsec / 1000000;
}

std::string convert_time_val_to_string(double seconds)
{
    if (!std::isfinite(seconds) || seconds < 0)
        seconds = 0;
    auto total = static_cast<int64_t>(std::llround(seconds * 1000.0));
    char text[64];
    std::snprintf(text, sizeof(text), "%" PRId64 ":%02d:%02d.%03d", total / 3600000,
                  static_cast<int>(total / 60000 % 60), static_cast<int>(total / 1000 % 60),
                  static_cast<int>(total % 1000));
    return text;
}

std::string cDateAndTime::getElapsedTime() { return formatElapsedTime(elapsedTime()); }

std::string cDateAndTime::formatElapsedTime(double seconds)
{
    if (!std::isfinite(seconds) || seconds < 0)
        seconds = 0;
    auto total = static_cast<int64_t>(std::llround(seconds * 1000.0));
    char text[64];
    std::snprintf(text, sizeof(text), "%02" PRId64 ":%02d:%02d.%03d", total / 3600000,
                  static_cast<int>(total / 60000 % 60), static_cast<int>(total / 1000 % 60),
                  static_cast<int>(total % 1000));
    return text;
}

// Set once at start-up; the lock orders that write against readers on other threads.
namespace {
std::mutex& simulatorNameLock()
{
    static std::mutex lock;
    return lock;
}
std::string& simulatorNameStorage()
{
    static std::string name = "ZelkoraWave";
    return name;
}
}  // namespace

const std::string& simulatorName()
{
    std::lock_guard<std::mutex> guard(simulatorNameLock());
    return simulatorNameStorage();
}

void setSimulatorName(const std::string& name)
{
    std::lock_guard<std::mutex> guard(simulatorNameLock());
    simulatorNameStorage() = name;
}

uint64_t cMemoryUsage::getMemoryUsage(bool resident)
{
    // statm: size resident shared text lib data dt, in pages.
    std::ifstream in("/proc/self/statm");
    uint64_t size = 0, residentPages = 0;
    if (!(in >> size >> residentPages))
        return 0;
    long pageSize = sysconf(_SC_PAGESIZE);
    if (pageSize <= 0)
        pageSize = 4096;
    return (resident ? residentPages : size) * static_cast<uint64_t>(pageSize);
}

}  // namespace vx3
