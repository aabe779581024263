#include "readers/tabulated/csvDates.h"

#include <cctype>
#include <cmath>
#include <string>
#include <vector>

namespace vx3::csvDates {

namespace {

struct cToken {
    enum kind_type { number, word, mark } kind;
    std::string text;
};

// Days since 1970-01-01 of a date of the proleptic Gregorian calendar.
long long daysFromCivil(long long year, unsigned month, unsigned day)
{
    year -= month <= 2 ? 1 : 0;
    const long long era = (year >= 0 ? year : year - 399) / 400;
    const unsigned yearOfEra = static_cast<unsigned>(year - era * 400);
    const unsigned dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + static_cast<long long>(dayOfEra) - 719468;
}

bool tokenize(std::string_view text, std::vector<cToken>& tokens)
{
    for (size_t i = 0; i < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (std::isdigit(c)) {
            size_t j = i;
            while (j < text.size() && std::isdigit(static_cast<unsigned char>(text[j])))
                ++j;
            tokens.push_back({cToken::number, std::string(text.substr(i, j - i))});
            i = j;
        } else if (std::isalpha(c) || c >= 0x80) {
            size_t j = i;
            while (j < text.size() && (std::isalpha(static_cast<unsigned char>(text[j])) ||
                                       static_cast<unsigned char>(text[j]) >= 0x80))
                ++j;
            std::string word(text.substr(i, j - i));
            for (char& letter : word)
                letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
            tokens.push_back({cToken::word, word});
            i = j;
        } else if (c == ' ' || c == '\t') {
            ++i;
        } else {
            tokens.push_back({cToken::mark, std::string(1, static_cast<char>(c))});
            ++i;
        }
    }
    return !tokens.empty();
}

}  // namespace

int getMonthOrWeekday(std::string_view word)
{
    static const struct {
        const char* name;
        int month;
    } names[] = {{"jan", 1},       {"january", 1},  {"janvier", 1},  {"feb", 2},      {"february", 2},
                 {"fevrier", 2},   {"fev", 2},      {"februar", 2},  {"mar", 3},      {"march", 3},
                 {"mars", 3},      {"maerz", 3},    {"apr", 4},      {"april", 4},    {"avr", 4},
                 {"avril", 4},     {"may", 5},      {"mai", 5},      {"jun", 6},      {"june", 6},
                 {"juin", 6},      {"jul", 7},      {"july", 7},     {"juillet", 7},  {"aug", 8},
                 {"august", 8},    {"aou", 8},      {"aout", 8},     {"sep", 9},      {"september", 9},
                 {"septembre", 9}, {"oct", 10},     {"october", 10}, {"octobre", 10}, {"nov", 11},
                 {"november", 11}, {"novembre", 11}, {"dec", 12},    {"december", 12}, {"decembre", 12},
                 {"mon", -1},      {"monday", -1},  {"lun", -1},     {"lundi", -1},   {"tue", -1},
                 {"tuesday", -1},  {"mardi", -1},   {"wed", -1},     {"wednesday", -1}, {"mer", -1},
                 {"mercredi", -1}, {"thu", -1},     {"thursday", -1}, {"jeu", -1},    {"jeudi", -1},
                 {"fri", -1},      {"friday", -1},  {"ven", -1},     {"vendredi", -1}, {"sat", -1},
                 {"saturday", -1}, {"sam", -1},     {"samedi", -1},  {"sun", -1},     {"sunday", -1},
                 {"dim", -1},      {"dimanche", -1}};
    for (const auto& entry : names)
        if (word == entry.name)
            return entry.month;
    return 0;
}

bool parseTimeStamp(std::string_view text, double& seconds)
{
    std::vector<cToken> tokens;
    if (text.size() > 64 || !tokenize(text, tokens))
        return false;
    double hour = -1, minute = 0, second = 0, offset = 0;
    bool pm = false, am = false;
    int month = 0;
    std::vector<std::pair<std::string, char>> dateNumbers;  // the number and the mark after it
    for (size_t i = 0; i < tokens.size(); ++i) {
        const cToken& token = tokens[i];
        const auto markAt = [&](size_t k, char c) { return k < tokens.size() && tokens[k].kind == cToken::mark && tokens[k].text[0] == c; };
        if (token.kind == cToken::number && hour < 0 && markAt(i + 1, ':') && i + 2 < tokens.size() &&
            tokens[i + 2].kind == cToken::number) {
            hour = std::stod(token.text);
            minute = std::stod(tokens[i + 2].text);
            i += 2;
            if (markAt(i + 1, ':') && i + 2 < tokens.size() && tokens[i + 2].kind == cToken::number) {
                second = std::stod(tokens[i + 2].text);
                i += 2;
                if ((markAt(i + 1, '.') || markAt(i + 1, ',')) && i + 2 < tokens.size() &&
                    tokens[i + 2].kind == cToken::number) {
                    second += std::stod("0." + tokens[i + 2].text);
                    i += 2;
                }
            }
            // A zone behind the time: "+01:00", "-0500".
            if ((markAt(i + 1, '+') || markAt(i + 1, '-')) && i + 2 < tokens.size() &&
                tokens[i + 2].kind == cToken::number) {
                const double sign = tokens[i + 1].text[0] == '-' ? -1.0 : 1.0;
                const std::string& digits = tokens[i + 2].text;
                double zone = 0;
                if (markAt(i + 3, ':') && i + 4 < tokens.size() && tokens[i + 4].kind == cToken::number) {
                    zone = std::stod(digits) * 3600 + std::stod(tokens[i + 4].text) * 60;
                    i += 4;
                } else if (digits.size() == 4) {
                    zone = std::stod(digits.substr(0, 2)) * 3600 + std::stod(digits.substr(2)) * 60;
                    i += 2;
                } else {
                    return false;
                }
                offset = sign * zone;
            }
            continue;
        }
        if (token.kind == cToken::number) {
            if (token.text.size() > 4)
                return false;
            const char mark = i + 1 < tokens.size() && tokens[i + 1].kind == cToken::mark ? tokens[i + 1].text[0] : ' ';
            dateNumbers.emplace_back(token.text, mark);
            continue;
        }
        if (token.kind == cToken::word) {
            const int found = getMonthOrWeekday(token.text);
            if (found > 0 && month == 0)
                month = found;
            else if (found > 0 || found < 0)
                continue;
            else if (token.text == "am")
                am = true;
            else if (token.text == "pm")
                pm = true;
            else if (token.text == "t" && hour < 0)
                continue;
            else if (!(token.text == "z" || token.text == "utc" || token.text == "gmt" || token.text == "st" ||
                       token.text == "nd" || token.text == "rd" || token.text == "th"))
                return false;
            continue;
        }
        const char c = token.text[0];
        if (!(c == '-' || c == '/' || c == '.' || c == ','))
            return false;
    }
    if (am || pm) {
        if (hour < 1 || hour > 12)
            return false;
        hour = pm ? (hour == 12 ? 12 : hour + 12) : (hour == 12 ? 0 : hour);
    }
    if (hour >= 0 && (hour > 24 || minute >= 60 || second >= 61))
        return false;
    const double timeOfDay = hour >= 0 ? hour * 3600 + minute * 60 + second : 0;
    if (dateNumbers.empty() && month == 0) {
        if (hour < 0)
            return false;
        seconds = timeOfDay - offset;
        return true;
    }
    long long year = 0;
    unsigned mon = 0, day = 0;
    auto value = [](const std::string& digits) { return std::stoll(digits); };
    if (month > 0) {
        if (dateNumbers.size() != 2)
            return false;
        mon = static_cast<unsigned>(month);
        const bool firstIsYear = dateNumbers[0].first.size() == 4 || value(dateNumbers[0].first) > 31;
        year = value(dateNumbers[firstIsYear ? 0 : 1].first);
        day = static_cast<unsigned>(value(dateNumbers[firstIsYear ? 1 : 0].first));
    } else {
        if (dateNumbers.size() != 3)
            return false;
        const long long a = value(dateNumbers[0].first), b = value(dateNumbers[1].first),
                        c = value(dateNumbers[2].first);
        const char mark = dateNumbers[0].second;
        if (dateNumbers[0].first.size() == 4) {
            year = a;
            mon = static_cast<unsigned>(b);
            day = static_cast<unsigned>(c);
        } else if (mark == '/' && a <= 12) {
            mon = static_cast<unsigned>(a);
            day = static_cast<unsigned>(b);
            year = c;
        } else {
            day = static_cast<unsigned>(a);
            mon = static_cast<unsigned>(b);
            year = c;
        }
    }
    if (year < 100 && year >= 0)
        year += year < 70 ? 2000 : 1900;
    if (mon < 1 || mon > 12 || day < 1 || day > 31)
        return false;
    seconds = static_cast<double>(daysFromCivil(year, mon, day)) * 86400.0 + timeOfDay - offset;
    return true;
}

}  // namespace vx3::csvDates
