// Positions typed by the user into the axis fields, and time stamps as readable dates.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <ctime>

#include "base/cVxLogger.h"
#include "expressions/evaluator/cWaveformExpressionEvaluator.h"
#include "model/derivedCurveFunction.h"
#include "plot/wxSinglePlotWidgetAxis.h"
#include "readers/scan/cParserBase.h"

namespace vx3 {

using namespace singlePlotWidgetAxis;

namespace {

using scanner = cParserBase<cParserBaseStringIterator>;

// Collects the evaluator's reasons as one line for the status bar.
class cMessageCollector : public cVxLoggerCallBack {
public:
    void loggerCallBackVirtualLogMessage(unsigned, const std::string& text) override
    {
        if (!mText.empty())
            mText += " ";
        mText += text;
    }
    const std::string& text() const { return mText; }

private:
    std::string mText;
};

std::string trim(const std::string& text)
{
    size_t begin = 0, end = text.size();
    while (begin < end && std::isspace(static_cast<unsigned char>(text[begin])))
        ++begin;
    while (end > begin && std::isspace(static_cast<unsigned char>(text[end - 1])))
        --end;
    return text.substr(begin, end - begin);
}

bool readWholeNumber(const std::string& text, double& value)
{
    cParserBaseStringIteratorHandler handler;
    handler.useStringData(text);
    cParserBaseStringIterator begin = handler.begin(), end = handler.end();
    return scanner::parseDoubleWithUnits(begin, end, value) && begin == end;
}

bool checkIsNameCharacter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

// The calculator knows no engineering suffixes: "1u+250n" becomes "1e-06+2.5e-07". A number
// counts only where a name can't be going on, and only when letters alone follow it.
std::string replaceEngineeringNumbers(const std::string& text)
{
    std::string out;
    size_t i = 0;
    while (i < text.size()) {
        const char c = text[i];
        const bool starts = (std::isdigit(static_cast<unsigned char>(c)) ||
                             (c == '.' && i + 1 < text.size() && std::isdigit(static_cast<unsigned char>(text[i + 1])))) &&
                            (i == 0 || (!checkIsNameCharacter(text[i - 1]) && text[i - 1] != '.'));
        if (!starts) {
            out += c;
            ++i;
            continue;
        }
        const std::string rest = text.substr(i);
        cParserBaseStringIteratorHandler handler;
        handler.useStringData(rest);
        cParserBaseStringIterator plainBegin = handler.begin(), unitBegin = handler.begin(), end = handler.end();
        double plain = 0.0, scaled = 0.0;
        const bool plainOk = scanner::parseDoubleNoUnits(plainBegin, end, plain);
        const bool unitOk = scanner::parseDoubleWithUnits(unitBegin, end, scaled);
        const size_t plainLength = plainOk ? static_cast<size_t>(plainBegin.position()) : 0;
        const size_t unitLength = unitOk ? static_cast<size_t>(unitBegin.position()) : 0;
        bool lettersOnly = unitLength > plainLength;
        for (size_t k = plainLength; k < unitLength && lettersOnly; ++k)
            lettersOnly = std::isalpha(static_cast<unsigned char>(rest[k])) != 0;
        const bool endsWell = unitLength >= rest.size() || (!checkIsNameCharacter(rest[unitLength]) && rest[unitLength] != '(');
        if (plainOk && unitOk && lettersOnly && endsWell) {
            char buffer[40];
            std::snprintf(buffer, sizeof buffer, "%.17g", scaled);
            out += "(";
            out += buffer;
            out += ")";
            i += unitLength;
        } else {
            const size_t length = std::max<size_t>(plainLength, 1);
            out += rest.substr(0, length);
            i += length;
        }
    }
    return out;
}

// Whether text starts like a date: three numbers joined by the same "-", "." or "/". On a time
// stamp axis such a text is a date or an error, never a subtraction.
bool checkLooksLikeDate(const std::string& text)
{
    int a = 0, b = 0, c = 0;
    char s1 = 0, s2 = 0;
    return std::sscanf(text.c_str(), "%d%c%d%c%d", &a, &s1, &b, &s2, &c) == 5 && s1 == s2 &&
           (s1 == '-' || s1 == '.' || s1 == '/') && text.find_first_of("0123456789") == 0;
}

// "2026-11-24 08:30:00.25", with "T" or blanks between date and time, the time optional; and
// the axis's own date order with "." or "/".
bool readDateTime(const std::string& text, unsigned conversion, bool localTime, double& seconds)
{
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, consumed = 0;
    double second = 0.0;
    int a = 0, b = 0, c = 0;
    char s1 = 0, s2 = 0;
    if (std::sscanf(text.c_str(), "%d%c%d%c%d%n", &a, &s1, &b, &s2, &c, &consumed) != 5 || s1 != s2)
        return false;
    if (s1 == '-') {
        year = a, month = b, day = c;
    } else if (s1 == '/' && conversion == derivedCurveFunction::month_slash_day_slash_year) {
        month = a, day = b, year = c;
    } else if (s1 == '/' || s1 == '.') {
        day = a, month = b, year = c;
    } else {
        return false;
    }
    std::string time = text.substr(static_cast<size_t>(consumed));
    if (!time.empty() && (time[0] == 'T' || time[0] == ' ')) {
        int used = 0;
        const int fields = std::sscanf(time.c_str() + 1, "%d:%d%n", &hour, &minute, &used);
        if (fields != 2)
            return false;
        time = time.substr(1 + static_cast<size_t>(used));
        if (!time.empty()) {
            if (time[0] != ':' || std::sscanf(time.c_str() + 1, "%lf%n", &second, &used) != 1 ||
                static_cast<size_t>(used) + 1 != time.size())
                return false;
            time.clear();
        }
    }
    if (!time.empty() || month < 1 || month > 12 || day < 1 || day > 31 || hour < 0 || hour > 23 || minute < 0 ||
        minute > 59 || !(second >= 0.0) || second >= 61.0)
        return false;
    struct tm parts {};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_isdst = -1;
    const time_t whole = localTime ? std::mktime(&parts) : timegm(&parts);
    if (parts.tm_mday != day)
        return false;  // the 31st of a short month rolled over
    seconds = static_cast<double>(whole) + second;
    return true;
}

}  // namespace

bool wxSinglePlotWidgetAxis::evaluatePosition(const std::string& input, double& value, std::string& message) const
{
    message.clear();
    const std::string text = trim(input);
    if (text.empty()) {
        message = "No position given.";
        return false;
    }
    double number = 0.0;
    if (readWholeNumber(text, number) && std::isfinite(number)) {
        value = number;
        return true;
    }
    if (checkIsTimeStampAxis() && checkLooksLikeDate(text)) {
        if (!readDateTime(text, mTimeStampConversion, mSettings.timeStampLocalTime, number)) {
            message = "Bad date \"" + text + "\": dates read as 2026-11-24 08:30:00.";
            return false;
        }
        value = number;
        return true;
    }
    cMessageCollector collector;
    cWaveformExpressionEvaluator evaluator;
    evaluator.setLoggerCallBack(&collector);
    cWaveformExpression result;
    if (!evaluator.evaluateString(replaceEngineeringNumbers(text), result)) {
        message = "Bad position \"" + text + "\": " + (collector.text().empty() ? "not a number." : collector.text());
        return false;
    }
    const auto kind = result.getOperator();
    if (kind != baseExpression::op_integer && kind != baseExpression::op_real &&
        !(kind == baseExpression::op_complex && result.getAsComplex().imag() == 0.0)) {
        message = "Bad position \"" + text + "\": the expression gives no real number.";
        return false;
    }
    number = kind == baseExpression::op_complex ? result.getAsComplex().real() : result.getAsDouble();
    if (!std::isfinite(number)) {
        message = "Bad position \"" + text + "\": the value is not finite.";
        return false;
    }
    value = number;
    return true;
}

std::string wxSinglePlotWidgetAxis::convertTimeStampToString(double seconds, int precision) const
{
    // The readout of a date axis: the date as the axis writes it, then the clock time.
    const std::string date = convertTimeStampToStringForAxes(seconds, time_stamp_days, 0);
    const std::string time = convertTimeStampToStringForAxes(seconds, time_stamp_plain, precision);
    return date == time ? date : date + " " + time;
}

}  // namespace vx3
