// Separators of hierarchical curve names: finding, counting, voting, and cutting names apart.
#include <algorithm>
#include <cctype>
#include <cstring>

#include "model/cCurvePlotDataCurveHierarchy.h"

namespace vx3 {

using namespace curvePlotProperties;
using curvePlotDataCurveHierarchy::cSeparatorVote;

namespace {
const char* const kSeparatorTexts[kNbOfSeparatorTypes] = {"", "", ".", "/", "|", ":", "::", "@", "#"};

// Length of a separator of the type that starts at i, 0 when none does. A single colon is never
// half of "::".
size_t matchSeparatorAt(std::string_view name, size_t i, unsigned type)
{
    const char c = name[i];
    const bool doubleColon = c == ':' && i + 1 < name.size() && name[i + 1] == ':';
    switch (type) {
    case any_separator:
        if (c == '.' || c == '/' || c == '|')
            return 1;
        return c == ':' ? (doubleColon ? 2 : 1) : 0;
    case dot_separator: return c == '.' ? 1 : 0;
    case slash_separator: return c == '/' ? 1 : 0;
    case pipe_separator: return c == '|' ? 1 : 0;
    case colon_separator: return c == ':' && !doubleColon && (i == 0 || name[i - 1] != ':') ? 1 : 0;
    case double_colon_separator: return doubleColon ? 2 : 0;
    case at_separator: return c == '@' ? 1 : 0;
    case hash_separator: return c == '#' ? 1 : 0;
    default: return 0;
    }
}

bool isAccessFunction(std::string_view function)
{
    // v, i, p and their forms such as vdb, vm, ir.
    if (function.empty() || function.size() > 3 || !std::strchr("vViIpP", function[0]))
        return false;
    return std::all_of(function.begin(), function.end(), [](char c) { return std::isalpha(static_cast<unsigned char>(c)); });
}
}  // namespace

const char* curvePlotProperties::getSeparatorAsString(unsigned type)
{
    return type < kNbOfSeparatorTypes ? kSeparatorTexts[type] : "";
}

separator_type curvePlotProperties::string_to_separator_type(std::string_view text)
{
    for (unsigned type = dot_separator; type < kNbOfSeparatorTypes; ++type)
        if (text == kSeparatorTexts[type])
            return static_cast<separator_type>(type);
    return no_separator;
}

// ---------------------------------------------------------------- votes

void cSeparatorVote::addName(uint64_t occurrences)
{
    if (occurrences == 0)
        return;
    ++mNames;
    mOccurrences += occurrences;
    mSquares += occurrences * occurrences;
}

// Acceptable when at least one name in twenty (and at least one name) contains the separator.
void cSeparatorVote::evaluateVote(uint64_t nbOfNames) { mAcceptable = mNames > 0 && mNames * 20 >= nbOfNames; }

double cSeparatorVote::getVariance() const
{
    if (mNames == 0)
        return 0.0;
    const double mean = static_cast<double>(mOccurrences) / static_cast<double>(mNames);
    return static_cast<double>(mSquares) / static_cast<double>(mNames) - mean * mean;
}

bool cSeparatorVote::isBetter(const cSeparatorVote& other) const
{
    if (mNames != other.mNames)
        return mNames > other.mNames;
    return getVariance() < other.getVariance() - 1e-12;
}

// ---------------------------------------------------------------- finding and counting

size_t cCurvePlotDataCurveHierarchy::findSeparatorPosition(std::string_view name, size_t start, unsigned type,
                                                           size_t& length)
{
    // From the name's beginning: a bracket opened before start still hides what follows.
    int depth = 0;
    for (size_t i = 0; i < name.size(); ++i) {
        const char c = name[i];
        if (c == '(' || c == '[' || c == '{') {
            ++depth;
            continue;
        }
        if (c == ')' || c == ']' || c == '}') {
            if (depth > 0)
                --depth;
            continue;
        }
        if (depth > 0)
            continue;
        const size_t found = matchSeparatorAt(name, i, type);
        if (found == 0)
            continue;
        if (i >= start) {
            length = found;
            return i;
        }
        i += found - 1;
    }
    length = 0;
    return std::string::npos;
}

std::vector<cSeparatorVote> cCurvePlotDataCurveHierarchy::createSeparatorVotes()
{
    // "#" ends branch currents ("v1#branch") rather than cutting a path: readers set it explicitly.
    std::vector<cSeparatorVote> votes;
    for (unsigned type = dot_separator; type <= at_separator; ++type)
        votes.emplace_back(type);
    return votes;
}

void cCurvePlotDataCurveHierarchy::countSeparator(std::string_view name, std::vector<cSeparatorVote>& votes)
{
    for (cSeparatorVote& vote : votes) {
        uint64_t count = 0;
        size_t length = 0;
        // A separator in front of the name opens no level, so it isn't counted.
        for (size_t position = findSeparatorPosition(name, 1, vote.getType(), length); position != std::string::npos;
             position = findSeparatorPosition(name, position + length, vote.getType(), length))
            ++count;
        vote.addName(count);
    }
}

unsigned cCurvePlotDataCurveHierarchy::chooseSeparator(const std::vector<std::string>& names)
{
    std::vector<cSeparatorVote> votes = createSeparatorVotes();
    for (const std::string& name : names)
        countSeparator(name, votes);
    const cSeparatorVote* best = nullptr;
    for (cSeparatorVote& vote : votes) {
        vote.evaluateVote(names.size());
        if (vote.isAcceptable() && (!best || vote.isBetter(*best)))
            best = &vote;
    }
    return best ? best->getType() : no_separator;
}

unsigned cCurvePlotDataCurveHierarchy::getSeparatorType(std::string_view name)
{
    std::vector<cSeparatorVote> votes = createSeparatorVotes();
    countSeparator(name, votes);
    const cSeparatorVote* best = nullptr;
    for (const cSeparatorVote& vote : votes)
        if (vote.getNbOfOccurrences() > 0 && (!best || vote.getNbOfOccurrences() > best->getNbOfOccurrences()))
            best = &vote;
    return best ? best->getType() : no_separator;
}

// ---------------------------------------------------------------- names

bool cCurvePlotDataCurveHierarchy::checkIsPossibleInstanceName(std::string_view name)
{
    // A bare number is a bus bit or a decimal, never an instance.
    if (name.empty() || std::all_of(name.begin(), name.end(), [](char c) { return std::isdigit(static_cast<unsigned char>(c)); }))
        return false;
    return name.find_first_of(" \t\r\n") == std::string_view::npos;
}

bool cCurvePlotDataCurveHierarchy::checkIsPossibleCurveName(std::string_view name)
{
    return std::any_of(name.begin(), name.end(), [](char c) { return !std::isspace(static_cast<unsigned char>(c)); });
}

std::string cCurvePlotDataCurveHierarchy::removeHierarchySeparatorFromString(std::string_view name, unsigned type)
{
    for (size_t length = 0; !name.empty() && (length = matchSeparatorAt(name, 0, type)) > 0;)
        name.remove_prefix(length);
    for (bool again = true; again && !name.empty();) {
        again = false;
        for (size_t length : {size_t(2), size_t(1)})
            if (name.size() >= length && matchSeparatorAt(name, name.size() - length, type) == length) {
                name.remove_suffix(length);
                again = true;
                break;
            }
    }
    return std::string(name);
}

std::string cCurvePlotDataCurveHierarchy::removeParenthesesFromName(std::string_view name)
{
    const size_t open = name.find('(');
    if (open == std::string_view::npos || name.size() < open + 3 || name.back() != ')' ||
        !isAccessFunction(name.substr(0, open)))
        return std::string(name);
    int depth = 0;
    for (size_t i = open; i + 1 < name.size(); ++i) {
        if (name[i] == '(')
            ++depth;
        else if (name[i] == ')' && --depth == 0)
            return std::string(name);  // "v(a)+v(b)": the bracket closes early
        else if (name[i] == ',' && depth == 1)
            return std::string(name);  // a voltage between two nets belongs to neither's instance
    }
    return std::string(name.substr(open + 1, name.size() - open - 2));
}

std::string cCurvePlotDataCurveHierarchy::computeSimpleName(std::string_view fullName, unsigned type)
{
    const std::string name = removeHierarchySeparatorFromString(fullName, type);
    size_t cut = 0;
    size_t length = 0;
    for (size_t position = findSeparatorPosition(name, 1, type, length); position != std::string::npos;
         position = findSeparatorPosition(name, position + length, type, length))
        cut = position + length;
    return name.substr(cut);
}

}  // namespace vx3
