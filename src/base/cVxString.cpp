#include "cVxString.h"

#include <algorithm>
#include <cerrno>
#include <cctype>
#include <charconv>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <locale.h>

#include "cPatternMatch.h"
#include "namedColors.h"

namespace vx3 {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// One C locale for all conversions: strtod must not see the GUI's locale.
locale_t cLocale()
{
    static locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

template <typename T>
bool parseInteger(std::string_view text, T& value)
{
    if (text.empty())
        return false;
    int base = 10;
    if (text.front() == '#') {
        text.remove_prefix(1);
        base = 16;
    }
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    if (text.empty())
        return false;
    if constexpr (std::is_unsigned_v<T>) {
        if (text.front() == '-')
            return false;
    }
    T result{};
    auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), result, base);
    if (ec != std::errc() || ptr != text.data() + text.size())
        return false;
    value = result;
    return true;
}

}  // namespace

// ---------------------------------------------------------------------------------------------
namespace vxString {

std::string escape_markup(std::string_view text, bool quote, bool apostrophe)
{
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += quote ? "&quot;" : "\""; break;
        case '\'': out += apostrophe ? "&apos;" : "'"; break;
        default: out += c;
        }
    }
    return out;
}

std::string to_lower(std::string_view text)
{
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return result;
}

std::string to_upper(std::string_view text)
{
    std::string result(text);
    for (char& c : result)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return result;
}

std::string trim(std::string_view text)
{
    size_t first = 0, last = text.size();
    while (first < last && isBlank(text[first]))
        ++first;
    while (last > first && isBlank(text[last - 1]))
        --last;
    return std::string(text.substr(first, last - first));
}

std::string trim_quotes(std::string_view text)
{
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
        return std::string(text.substr(1, text.size() - 2));
    return std::string(text);
}

std::string trim_comma(std::string_view text)
{
    size_t first = 0, last = text.size();
    while (first < last && text[first] == ',')
        ++first;
    while (last > first && text[last - 1] == ',')
        --last;
    return std::string(text.substr(first, last - first));
}

std::string trim_multiple_space(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (char c : text) {
        if (c == ' ' && !result.empty() && result.back() == ' ')
            continue;
        result += c;
    }
    return result;
}

std::string replace_string_first(std::string text, std::string_view from, std::string_view to)
{
    if (from.empty())
        return text;
    size_t position = text.find(from);
    if (position != std::string::npos)
        text.replace(position, from.size(), to);
    return text;
}

std::string replace_string_all(std::string text, std::string_view from, std::string_view to)
{
    if (from.empty())
        return text;
    size_t position = 0;
    while ((position = text.find(from, position)) != std::string::npos) {
        text.replace(position, from.size(), to);
        position += to.size();
    }
    return text;
}

std::string remove_string_all(std::string text, std::string_view what)
{
    return replace_string_all(std::move(text), what, "");
}

double strtod_replacement(const char* text, char** end)
{
    char* stop = nullptr;
    double value = strtod_l(text, &stop, cLocale());
    if (end)
        *end = stop;
    // A decimal comma: convert again with the separator swapped.
    if (stop && (*stop == ',' || *stop == '.') && stop[1] >= '0' && stop[1] <= '9' &&
        std::strlen(stop) > 1) {
        std::string copy(text);
        size_t comma = copy.find(',');
        if (comma != std::string::npos)
            copy[comma] = '.';
        else
            copy[copy.find('.')] = ',';
        char* stop2 = nullptr;
        double value2 = strtod_l(copy.c_str(), &stop2, cLocale());
        if (stop2 - copy.c_str() > stop - text) {
            if (end)
                *end = const_cast<char*>(text) + (stop2 - copy.c_str());
            return value2;
        }
    }
    return value;
}

}  // namespace vxString

// ---------------------------------------------------------------------------------------------
cVxString::cVxString(const std::wstring& text) : std::string(cVxWideString(text).toUtf8()) {}

cVxString cVxString::upperCaseLetter(size_t index) const
{
    cVxString result(*this);
    if (index < result.size() && result[index] >= 'a' && result[index] <= 'z')
        result[index] = static_cast<char>(result[index] - 'a' + 'A');
    return result;
}

cVxString cVxString::removeLastLowerCase(char c) const
{
    size_t position = rfind(c);
    if (position == npos)
        return lowerCase();
    return vxString::to_lower(std::string_view(*this).substr(0, position));
}

bool cVxString::startsWith(std::string_view prefix) const
{
    return std::string_view(*this).substr(0, prefix.size()) == prefix;
}

bool cVxString::endsWith(std::string_view suffix) const
{
    return size() >= suffix.size() && std::string_view(*this).substr(size() - suffix.size()) == suffix;
}

bool cVxString::startsWithCaseInsensitive(std::string_view prefix) const
{
    return size() >= prefix.size() &&
           vxString::to_lower(std::string_view(*this).substr(0, prefix.size())) == vxString::to_lower(prefix);
}

bool cVxString::endsWithCaseInsensitive(std::string_view suffix) const
{
    return size() >= suffix.size() &&
           vxString::to_lower(std::string_view(*this).substr(size() - suffix.size())) ==
               vxString::to_lower(suffix);
}

cVxString& cVxString::trim() { return *this = vxString::trim(*this); }
cVxString& cVxString::trimQuotes() { return *this = vxString::trim_quotes(*this); }
cVxString& cVxString::trimMultipleSpace() { return *this = vxString::trim_multiple_space(*this); }

bool cVxString::findFirst(char c, size_t start, size_t& position) const
{
    size_t found = find(c, start);
    if (found == npos)
        return false;
    position = found;
    return true;
}

bool cVxString::findFirst(std::string_view part, size_t start, size_t& position) const
{
    size_t found = find(part, start);
    if (found == npos)
        return false;
    position = found;
    return true;
}

cVxString cVxString::subString(size_t start, size_t count) const
{
    if (start >= size())
        return cVxString();
    return cVxString(substr(start, count));
}

cVxString& cVxString::replaceFirst(std::string_view from, std::string_view to)
{
    return *this = vxString::replace_string_first(std::move(*this), from, to);
}

cVxString& cVxString::replaceAll(std::string_view from, std::string_view to)
{
    return *this = vxString::replace_string_all(std::move(*this), from, to);
}

cVxString& cVxString::removeAll(char c)
{
    erase(std::remove(begin(), end(), c), end());
    return *this;
}

cVxString& cVxString::removeEnd(size_t count)
{
    resize(count >= size() ? 0 : size() - count);
    return *this;
}

cVxString& cVxString::replaceNewlineBySpace()
{
    for (char& c : *this)
        if (c == '\n' || c == '\r')
            c = ' ';
    return *this;
}

cVxString& cVxString::replaceNewlineCharacters(std::string_view with)
{
    useNativeNewlineCharacters();
    return replaceAll("\n", with);
}

cVxString& cVxString::useNativeNewlineCharacters()
{
    replaceAll("\r\n", "\n");
    for (char& c : *this)
        if (c == '\r')
            c = '\n';
    return *this;
}

cVxString& cVxString::allowNewlineCharacters() { return replaceAll("\\n", "\n"); }

cVxString& cVxString::padConstantSizeString(size_t size)
{
    resize(size, ' ');
    return *this;
}

void cVxString::splitString(std::vector<cVxString>& result, char separator) const
{
    result.clear();
    size_t start = 0;
    while (true) {
        size_t position = find(separator, start);
        if (position == npos) {
            result.emplace_back(substr(start));
            return;
        }
        result.emplace_back(substr(start, position - start));
        start = position + 1;
    }
}

void cVxString::splitStringWithTokenSize(std::vector<cVxString>& result, size_t tokenSize) const
{
    result.clear();
    if (tokenSize == 0)
        return;
    for (size_t start = 0; start < size(); start += tokenSize)
        result.emplace_back(substr(start, tokenSize));
}

bool cVxString::toInt(int& value) const { return parseInteger(*this, value); }
bool cVxString::toLong(long& value) const { return parseInteger(*this, value); }
bool cVxString::toLongLong(long long& value) const { return parseInteger(*this, value); }
bool cVxString::toInt64(int64_t& value) const { return parseInteger(*this, value); }
bool cVxString::toUint(unsigned& value) const { return parseInteger(*this, value); }
bool cVxString::toUint64(uint64_t& value) const { return parseInteger(*this, value); }

bool cVxString::toDouble(double& value) const
{
    if (empty() || isBlank(front()))
        return false;
    char* end = nullptr;
    double result = vxString::strtod_replacement(c_str(), &end);
    if (end != c_str() + size())
        return false;
    value = result;
    return true;
}

bool cVxString::toDoubleCommaSep(double& value) const
{
    if (empty() || contains('.'))
        return false;
    cVxString copy(*this);
    size_t comma = copy.find(',');
    if (comma != npos)
        copy[comma] = '.';
    if (copy.find(',') != npos)
        return false;
    return copy.toDouble(value);
}

bool cVxString::toDoubleComplexCommaSep(double& real, double& imaginary) const
{
    size_t comma = find(',');
    if (comma == npos)
        return false;
    double re = 0, im = 0;
    if (!cVxString(substr(0, comma)).trim().toDouble(re) || !cVxString(substr(comma + 1)).trim().toDouble(im))
        return false;
    real = re;
    imaginary = im;
    return true;
}

bool cVxString::toUint64FromHexString(uint64_t& value) const
{
    std::string_view text(*this);
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        text.remove_prefix(2);
    if (text.empty())
        return false;
    uint64_t result = 0;
    auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), result, 16);
    if (ec != std::errc() || ptr != text.data() + text.size())
        return false;
    value = result;
    return true;
}

bool cVxString::convertHexAsciiToDouble(double& value) const
{
    uint64_t bits = 0;
    if (size() != 16 || !toUint64FromHexString(bits))
        return false;
    std::memcpy(&value, &bits, sizeof(value));
    return true;
}

bool cVxString::toColorCode(unsigned& value) const
{
    if (size() < 2 || front() != '#')
        return false;
    return parseInteger(std::string_view(*this), value);
}

cVxString cVxString::convertNamedColorString() const
{
    const char* code = findNamedColor(*this);
    return code ? cVxString(code) : *this;
}

bool cVxString::isAsciiCharacter(char c)
{
    unsigned char u = static_cast<unsigned char>(c);
    return u >= 32 && u < 127;
}

bool cVxString::isExpressionWordLimit(char c)
{
    return !(std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '.' || c == '#' || c == '$' ||
             c == ':' || c == '\\' || c == '@');
}

bool cVxString::checkHasNonAsciiCharacters() const { return getNumberOfNonAsciiCharacters() > 0; }

size_t cVxString::getNumberOfNonAsciiCharacters() const
{
    return static_cast<size_t>(std::count_if(begin(), end(), [](char c) { return !isPureAsciiCharacter(c); }));
}

bool cVxString::containsAlphaCharacters() const
{
    return std::any_of(begin(), end(), [](char c) { return std::isalpha(static_cast<unsigned char>(c)); });
}

bool cVxString::containsOnlyAlphaCharacters() const
{
    return !empty() && std::all_of(begin(), end(), [](char c) { return std::isalpha(static_cast<unsigned char>(c)); });
}

cVxString cVxString::convertExtendedAsciiCharacter(unsigned char c)
{
    std::string result;
    if (c < 0x80) {
        result += static_cast<char>(c);
    } else {
        result += static_cast<char>(0xC0 | (c >> 6));
        result += static_cast<char>(0x80 | (c & 0x3F));
    }
    return result;
}

cVxString cVxString::replaceUtf8Characters() const
{
    cVxString result(*this);
    result.replaceAll(ohmUtf8(), "Ohm");
    result.replaceAll("\xE2\x84\xA6", "Ohm");  // the Ohm sign
    result.replaceAll("\xC2\xB5", "u");        // micro
    result.replaceAll("\xCE\xBC", "u");
    result.replaceAll(degreeUtf8(), "deg");
    result.replaceAll(deltaUtf8(), "delta");
    result.replaceAll(gammaUtf8(), "gamma");
    result.replaceAll(squareRootUtf8(), "sqrt");
    return result;
}

cVxString cVxString::urlDecode() const
{
    std::string result;
    result.reserve(size());
    for (size_t i = 0; i < size(); ++i) {
        char c = (*this)[i];
        if (c == '%' && i + 2 < size()) {
            unsigned value = 0;
            auto [ptr, ec] = std::from_chars(data() + i + 1, data() + i + 3, value, 16);
            if (ec == std::errc() && ptr == data() + i + 3) {
                result += static_cast<char>(value);
                i += 2;
                continue;
            }
        }
        result += (c == '+') ? ' ' : c;
    }
    return result;
}

bool cVxString::removeIndex(int& index)
{
    if (size() < 3 || back() != ']')
        return false;
    size_t open = rfind('[');
    if (open == npos)
        return false;
    int value = 0;
    if (!cVxString(substr(open + 1, size() - open - 2)).toInt(value))
        return false;
    index = value;
    resize(open);
    return true;
}

bool cVxString::removeIndices(int& first, int& second, char separator)
{
    if (size() < 5 || back() != ']')
        return false;
    size_t open = rfind('[');
    if (open == npos)
        return false;
    cVxString inner(substr(open + 1, size() - open - 2));
    size_t split = inner.find(separator);
    if (split == npos)
        return false;
    int a = 0, b = 0;
    if (!cVxString(inner.substr(0, split)).toInt(a) || !cVxString(inner.substr(split + 1)).toInt(b))
        return false;
    first = a;
    second = b;
    resize(open);
    return true;
}

cVxString& cVxString::replaceInExpression(std::string_view oldName, std::string_view newName)
{
    if (oldName.empty())
        return *this;
    size_t position = 0;
    while ((position = find(oldName, position)) != npos) {
        size_t after = position + oldName.size();
        bool leftOk = position == 0 || isExpressionWordLimit((*this)[position - 1]);
        bool rightOk = after >= size() || isExpressionWordLimit((*this)[after]);
        if (leftOk && rightOk) {
            replace(position, oldName.size(), newName);
            position += newName.size();
        } else {
            position += 1;
        }
    }
    return *this;
}

bool cVxString::loadFromFile(const std::string& fileName)
{
    std::ifstream in(fileName, std::ios::binary);
    if (!in)
        return false;
    std::string content((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad())
        return false;
    assign(std::move(content));
    return true;
}

bool cVxString::checkIsRegularExpression() const { return cRegularExpressionPatternMatch::checkIsRegularExpression(*this); }

// ---------------------------------------------------------------------------------------------
cVxWideString cVxWideString::createFromUtf8(std::string_view text)
{
    cVxWideString result;
    size_t i = 0;
    while (i < text.size()) {
        unsigned char c = static_cast<unsigned char>(text[i]);
        uint32_t code = 0xFFFD;
        size_t length = 1;
        if (c < 0x80) {
            code = c;
        } else if ((c & 0xE0) == 0xC0) {
            length = 2;
            code = c & 0x1F;
        } else if ((c & 0xF0) == 0xE0) {
            length = 3;
            code = c & 0x0F;
        } else if ((c & 0xF8) == 0xF0) {
            length = 4;
            code = c & 0x07;
        } else {
            result += static_cast<wchar_t>(0xFFFD);
            ++i;
            continue;
        }
        if (i + length > text.size()) {
            result += static_cast<wchar_t>(0xFFFD);
            break;
        }
        bool valid = true;
        for (size_t k = 1; k < length; ++k) {
            unsigned char d = static_cast<unsigned char>(text[i + k]);
            if ((d & 0xC0) != 0x80) {
                valid = false;
                break;
            }
            code = (code << 6) | (d & 0x3F);
        }
        if (!valid) {
            result += static_cast<wchar_t>(0xFFFD);
            ++i;
            continue;
        }
        result += static_cast<wchar_t>(code);
        i += length;
    }
    return result;
}

std::string cVxWideString::toUtf8() const
{
    std::string result;
    result.reserve(size());
    for (wchar_t w : *this) {
        uint32_t code = static_cast<uint32_t>(w);
        if (code < 0x80) {
            result += static_cast<char>(code);
        } else if (code < 0x800) {
            result += static_cast<char>(0xC0 | (code >> 6));
            result += static_cast<char>(0x80 | (code & 0x3F));
        } else if (code < 0x10000) {
            result += static_cast<char>(0xE0 | (code >> 12));
            result += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            result += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            result += static_cast<char>(0xF0 | (code >> 18));
            result += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
            result += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            result += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return result;
}

}  // namespace vx3
