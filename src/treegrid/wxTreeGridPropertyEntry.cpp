#include "treegrid/wxTreeGridPropertyEntry.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "base/cVxString.h"

namespace vx3 {

using namespace treeGridPropertyEntry;

namespace {

std::string trim(const std::string& text)
{
    const size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

bool parseDouble(const std::string& text, double& value)
{
    const std::string t = trim(text);
    char* end = nullptr;
    errno = 0;
    value = std::strtod(t.c_str(), &end);
    return !t.empty() && *end == 0 && errno != ERANGE;
}

bool parseInteger(const std::string& text, long long& value, bool allowNegative)
{
    const std::string t = trim(text);
    if (t.empty() || (!allowNegative && t[0] == '-'))
        return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtoll(t.c_str(), &end, 10);
    return *end == 0 && errno != ERANGE;
}

bool parseUnsigned(const std::string& text, unsigned long long& value)
{
    const std::string t = trim(text);
    if (t.empty() || t[0] == '-')
        return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtoull(t.c_str(), &end, 10);
    return *end == 0 && errno != ERANGE;
}

bool parseBool(const std::string& text, bool& value)
{
    const std::string t = vxString::to_lower(trim(text));
    if (t == "1" || t == "true" || t == "yes" || t == "on")
        value = true;
    else if (t == "0" || t == "false" || t == "no" || t == "off")
        value = false;
    else
        return false;
    return true;
}

std::vector<std::string> splitList(const std::string& text)
{
    std::vector<std::string> items;
    std::stringstream in(text);
    std::string item;
    while (std::getline(in, item, ','))
        items.push_back(trim(item));
    if (!text.empty() && text.back() == ',')
        items.emplace_back();
    return items;
}

std::string formatDouble(double value)
{
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    return buffer;
}

}  // namespace

wxTreeGridPropertyEntry::wxTreeGridPropertyEntry(std::string group, std::string label, data_type kind, tTarget target)
    : mGroup(std::move(group)), mLabel(std::move(label)), mKind(kind), mTarget(target)
{
}

std::string wxTreeGridPropertyEntry::getStringValue() const
{
    return std::visit(
        [this](auto* p) -> std::string {
            using T = std::remove_pointer_t<decltype(p)>;
            if constexpr (std::is_same_v<T, std::string>) {
                return mKind == type_password ? std::string(p->size(), '*') : *p;
            } else if constexpr (std::is_same_v<T, bool>) {
                return *p ? "true" : "false";
            } else if constexpr (std::is_same_v<T, double>) {
                return formatDouble(*p);
            } else if constexpr (std::is_same_v<T, unsigned>) {
                if (mKind == type_colour) {
                    char buffer[16];
                    std::snprintf(buffer, sizeof buffer, "#%06x", *p & 0xffffffu);
                    return buffer;
                }
                if (mKind == type_enum)
                    return *p < mEnumValues.size() ? mEnumValues[*p] : std::to_string(*p);
                return std::to_string(*p);
            } else if constexpr (std::is_same_v<T, std::vector<bool>>) {
                std::string out;
                for (size_t i = 0; i < p->size(); ++i)
                    out += (i ? "," : "") + std::string((*p)[i] ? "1" : "0");
                return out;
            } else if constexpr (std::is_same_v<T, std::vector<double>>) {
                std::string out;
                for (size_t i = 0; i < p->size(); ++i)
                    out += (i ? "," : "") + formatDouble((*p)[i]);
                return out;
            } else if constexpr (std::is_same_v<T, std::vector<unsigned>>) {
                std::string out;
                for (size_t i = 0; i < p->size(); ++i)
                    out += (i ? "," : "") + ((*p)[i] < mEnumValues.size() ? mEnumValues[(*p)[i]] : std::to_string((*p)[i]));
                return out;
            } else {
                return std::to_string(*p);
            }
        },
        mTarget);
}

bool wxTreeGridPropertyEntry::setStringValue(const std::string& text, std::string& error)
{
    if (!checkIsEditable()) {
        error = "\"" + mLabel + "\" cannot be changed.";
        return false;
    }
    const std::string bad = "\"" + text + "\" is not a valid value for \"" + mLabel + "\".";
    auto enumIndex = [this](const std::string& t, unsigned& index) {
        for (size_t i = 0; i < mEnumValues.size(); ++i)
            if (mEnumValues[i] == t) {
                index = unsigned(i);
                return true;
            }
        return false;
    };
    bool ok = std::visit(
        [&](auto* p) -> bool {
            using T = std::remove_pointer_t<decltype(p)>;
            if constexpr (std::is_same_v<T, std::string>) {
                if (mKind == type_file_name && trim(text).empty())
                    return false;  // a file name is required; the "or empty" kinds accept none
                *p = text;
                return true;
            } else if constexpr (std::is_same_v<T, bool>) {
                return parseBool(text, *p);
            } else if constexpr (std::is_same_v<T, double>) {
                double v;
                if (!parseDouble(text, v))
                    return false;
                *p = v;
                return true;
            } else if constexpr (std::is_same_v<T, long long> || std::is_same_v<T, int>) {
                long long v;
                if (!parseInteger(text, v, true))
                    return false;
                if constexpr (std::is_same_v<T, int>)
                    if (v < INT32_MIN || v > INT32_MAX)
                        return false;
                *p = T(v);
                return true;
            } else if constexpr (std::is_same_v<T, unsigned>) {
                if (mKind == type_enum) {
                    unsigned index;
                    if (!enumIndex(trim(text), index))
                        return false;
                    *p = index;
                    return true;
                }
                if (mKind == type_colour) {
                    const std::string t = trim(text);
                    if (t.size() != 7 || t[0] != '#')
                        return false;
                    char* end = nullptr;
                    const unsigned long v = std::strtoul(t.c_str() + 1, &end, 16);
                    if (*end != 0)
                        return false;
                    *p = unsigned(v);
                    return true;
                }
                unsigned long long v;
                if (!parseUnsigned(text, v) || v > UINT32_MAX)
                    return false;
                *p = unsigned(v);
                return true;
            } else if constexpr (std::is_same_v<T, unsigned long long>) {
                unsigned long long v;
                if (!parseUnsigned(text, v))
                    return false;
                *p = v;
                return true;
            } else if constexpr (std::is_same_v<T, std::vector<bool>>) {
                std::vector<bool> values;
                for (const auto& item : splitList(text)) {
                    bool b;
                    if (!parseBool(item, b))
                        return false;
                    values.push_back(b);
                }
                *p = values;
                return true;
            } else if constexpr (std::is_same_v<T, std::vector<double>>) {
                std::vector<double> values;
                for (const auto& item : splitList(text)) {
                    double v;
                    if (!parseDouble(item, v))
                        return false;
                    values.push_back(v);
                }
                *p = values;
                return true;
            } else {
                std::vector<unsigned> values;
                for (const auto& item : splitList(text)) {
                    unsigned index;
                    if (!enumIndex(item, index))
                        return false;
                    values.push_back(index);
                }
                *p = values;
                return true;
            }
        },
        mTarget);
    if (!ok)
        error = bad;
    return ok;
}

}  // namespace vx3
