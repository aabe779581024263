// Time stamps in table cells: ISO dates, day.month.year, month/day/year, month and day names in
// English, French and German, times of day with am and pm. Read as seconds since 1970-01-01 UTC.
#pragma once

#include <string_view>

namespace vx3::csvDates {

// False when the text isn't a time stamp; a time without a date gives the seconds of the day.
bool parseTimeStamp(std::string_view text, double& seconds);
// The month (1 to 12) of a month name, 0 for other words; weekday names answer -1.
int getMonthOrWeekday(std::string_view lowerCaseWord);
inline bool checkMightBeTimeStampColumn(std::string_view text)
{
    double seconds = 0;
    return parseTimeStamp(text, seconds);
}
// Modified julian day and seconds of that day as seconds since 1970-01-01.
inline double convertModifiedJulianDay(double day, double seconds) { return (day - 40587.0) * 86400.0 + seconds; }

}  // namespace vx3::csvDates
