// The declaration section of a value change dump: header keywords, scopes and variables.
#include <charconv>
#include <cstring>

#include "base/cTimeValue.h"
#include "model/cCurvePlotProperties.h"
#include "readers/vcd/cCurveParserVcdImpl.h"

namespace vx3 {

using namespace curveParserVcd;
using namespace curvePlotProperties;

namespace {

struct cVarKind {
    const char* word;
    unsigned code;  // vcd_variable_type
    signal_kind kind;
};

// The variable kinds of the format; the real ones take "r" values, ports "p" values.
const cVarKind kVarKinds[] = {
    {"event", vcd_event, logic_signal},         {"integer", vcd_integer, logic_signal},
    {"parameter", vcd_parameter, logic_signal}, {"real", vcd_real, real_signal},
    {"real_parameter", vcd_real_parameter, real_signal}, {"realtime", vcd_realtime, real_signal},
    {"reg", vcd_reg, logic_signal},             {"supply0", vcd_supply0, logic_signal},
    {"supply1", vcd_supply1, logic_signal},     {"time", vcd_time, logic_signal},
    {"tri", vcd_tri, logic_signal},             {"triand", vcd_triand, logic_signal},
    {"trior", vcd_trior, logic_signal},         {"trireg", vcd_trireg, logic_signal},
    {"tri0", vcd_tri0, logic_signal},           {"tri1", vcd_tri1, logic_signal},
    {"wand", vcd_wand, logic_signal},           {"wire", vcd_wire, logic_signal},
    {"wor", vcd_wor, logic_signal},             {"in", vcd_in, port_signal},
    {"out", vcd_out, port_signal},              {"inout", vcd_inout, port_signal},
    {"port", vcd_port, port_signal},            {"shortreal", vcd_shortreal, real_signal},
    {"shortint", vcd_shortint, logic_signal},   {"longint", vcd_longint, logic_signal},
    {"byte", vcd_byte, logic_signal},           {"bit", vcd_bit, logic_signal},
    {"logic", vcd_logic, logic_signal},         {"int", vcd_int, logic_signal},
    {"enum", vcd_enum, logic_signal},           {"wreal", vcd_wreal, real_signal},
};

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'; }

bool parseInteger(std::string_view text, int64_t& value)
{
    if (text.empty())
        return false;
    const char* first = text.data();
    if (*first == '+')
        ++first;
    const auto result = std::from_chars(first, text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

bool parseSize(std::string_view text, uint64_t& value)
{
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return !text.empty() && result.ec == std::errc() && result.ptr == text.data() + text.size();
}

// "[n]" or "[n:m]" (the brackets already stripped); badLower and badUpper say which number failed.
void parseRange(std::string_view inner, int64_t& lower, int64_t& upper, bool& hasUpper, bool& badLower,
                bool& badUpper)
{
    const size_t colon = inner.find(':');
    hasUpper = colon != std::string_view::npos;
    badLower = !parseInteger(inner.substr(0, colon), lower);
    badUpper = hasUpper && !parseInteger(inner.substr(colon + 1), upper);
}

std::string quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

}  // namespace

// ---------------------------------------------------------------- tokens

std::string_view cCurveParserVcdImpl::nextToken() { return takeToken(mPosition, mEnd); }

std::string_view cCurveParserVcdImpl::peekToken()
{
    const char* saved = mPosition;
    const std::string_view token = nextToken();
    mPosition = saved;
    return token;
}

bool cCurveParserVcdImpl::checkMatchesEnd()
{
    const char* saved = mPosition;
    if (nextToken() == "$end")
        return true;
    mPosition = saved;
    return false;
}

bool cCurveParserVcdImpl::parseStringUntilEnd(std::string& text)
{
    text.clear();
    while (true) {
        const std::string_view token = nextToken();
        if (token.empty())
            return false;
        if (token == "$end")
            return true;
        // "$end" glued to the text ("text$end") ends it too.
        if (token.size() > 4 && token.substr(token.size() - 4) == "$end") {
            if (!text.empty())
                text.push_back(' ');
            text.append(token.substr(0, token.size() - 4));
            return true;
        }
        if (!text.empty())
            text.push_back(' ');
        text.append(token);
    }
}

bool cCurveParserVcdImpl::fail(const char* at, const std::string& text)
{
    printDebugMessage(offsetOf(at), text);
    return false;
}

// ---------------------------------------------------------------- declaration section

bool cCurveParserVcdImpl::parseDeclarationSection()
{
    bool finished = false;
    while (!finished) {
        while (mPosition < mEnd && isBlank(*mPosition))
            ++mPosition;
        if (mPosition >= mEnd)
            return fail(mPosition, "$enddefinitions missing, the file ends in the declaration section.");
        if (*mPosition != '$') {
            const char* at = mPosition;
            const std::string_view token = nextToken();
            return fail(at, "unknown entry " + quoted(token) + ".");
        }
        if (!parseKeyword(finished))
            return false;
    }
    return true;
}

bool cCurveParserVcdImpl::parseKeyword(bool& finished)
{
    const char* at = mPosition;
    const std::string_view keyword = nextToken();
    if (keyword.size() < 2)
        return fail(at, "failed to read vcd keyword.");
    const std::string_view word = keyword.substr(1);
    std::string text;
    if (word == "comment") {
        if (!parseStringUntilEnd(text))
            return fail(at, "$end missing after $comment directive.");
        return true;
    }
    if (word == "date" || word == "version") {
        if (!parseStringUntilEnd(text))
            return fail(at, "$end missing after $" + std::string(word) + " directive.");
        currentSection()->setProperty(cProperty::makeText(user_defined, text, word == "date" ? "Date" : "Version"));
        return true;
    }
    if (word == "scope")
        return parseScopeStatement(at);
    if (word == "upscope")
        return parseUpscopeStatement(at);
    if (word == "timescale")
        return parseTimeScaleStatement(at);
    if (word == "var")
        return parseVarStatement(at);
    if (word == "vcdclose") {
        // A close before any value: nothing follows that matters.
        parseStringUntilEnd(text);
        return true;
    }
    if (word == "enddefinitions") {
        if (!checkMatchesEnd())
            return fail(at, "bad $enddefinitions statement.");
        finished = true;
        return true;
    }
    return fail(at, "unknown vcd keyword.");
}

bool cCurveParserVcdImpl::parseTimeScaleStatement(const char* at)
{
    // "1ns", "1 ns", "10 ps": a number and a unit word, in one token or two.
    std::string number, unit;
    std::string_view token = nextToken();
    size_t digits = 0;
    while (digits < token.size() && ((token[digits] >= '0' && token[digits] <= '9') || token[digits] == '.'))
        ++digits;
    number = std::string(token.substr(0, digits));
    unit = std::string(token.substr(digits));
    if (unit.empty() && !number.empty()) {
        const std::string_view next = peekToken();
        if (!next.empty() && next != "$end")
            unit = std::string(nextToken());
    }
    for (char& c : unit)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    cTimeValue value;
    if (number.empty() || unit.empty() || !value.initFromString(number, unit) || !value.checkIsDigital())
        return fail(at, "invalid $timescale directive.");
    if (!checkMatchesEnd())
        return fail(at, "$end missing after $timescale directive.");
    mTimeScaleFactor = value.getTimeScaleFactor();
    mTimeScaleText = number + unit;
    return true;
}

bool cCurveParserVcdImpl::parseScopeStatement(const char* at)
{
    const std::string_view type = nextToken();
    if (type.empty() || type[0] == '$')
        return fail(at, "invalid $scope directive (bad scope type).");
    const std::string_view name = nextToken();
    if (name.empty() || name == "$end")
        return fail(at, "invalid $scope directive, bad scope name (scope type = " + quoted(type) + ").");
    if (!checkMatchesEnd())
        return fail(at, "$end missing after $scope directive (scope type = " + quoted(type) +
                            ", scope name = " + quoted(name) + ").");
    openScope(std::string(type), std::string(name));
    return true;
}

bool cCurveParserVcdImpl::parseUpscopeStatement(const char* at)
{
    if (!checkMatchesEnd())
        return fail(at, "$end missing after $upscope directive.");
    // An upscope too many is harmless: the curves that follow go to the top.
    closeScope();
    return true;
}

bool cCurveParserVcdImpl::parseVarStatement(const char* at)
{
    const std::string_view typeWord = nextToken();
    if (typeWord.empty() || typeWord == "$end")
        return fail(at, "invalid $var directive.");
    const cVarKind* kind = nullptr;
    for (const cVarKind& candidate : kVarKinds)
        if (typeWord == candidate.word)
            kind = &candidate;
    if (!kind)
        return fail(at, "unknown $var type " + quoted(typeWord) + ".");
    const std::string type(typeWord);

    // The size; ports may give it as a range "[3:0]".
    const char* sizeAt = mPosition;
    const std::string_view sizeText = nextToken();
    uint64_t size = 0;
    bool portRange = false;
    int64_t portLower = 0, portUpper = 0;
    if (kind->kind == port_signal && !sizeText.empty() && sizeText.front() == '[') {
        if (sizeText.back() != ']')
            return fail(sizeAt, "invalid $var directive, port definition is bad (var type =" + quoted(type) + ").");
        bool hasUpper = false, badLower = false, badUpper = false;
        parseRange(sizeText.substr(1, sizeText.size() - 2), portLower, portUpper, hasUpper, badLower, badUpper);
        if (badLower || badUpper)
            return fail(sizeAt, "invalid $var directive ( port definition is bad ).");
        if (!hasUpper)
            portUpper = portLower;
        size = static_cast<uint64_t>(portLower > portUpper ? portLower - portUpper : portUpper - portLower) + 1;
        portRange = true;
    } else if (!parseSize(sizeText, size) || (size == 0 && kind->kind != real_signal)) {
        return fail(sizeAt, "invalid $var directive, variable size is bad (var type =" + quoted(type) + ").");
    }

    const char* codeAt = mPosition;
    const std::string_view code = nextToken();
    if (code.empty() || code == "$end" || !cCurveParserVcdCodeArray::checkIsValidCode(code))
        return fail(codeAt, "invalid $var directive, variable id code is missing (var type =" + quoted(type) +
                                ", var_size = " + std::to_string(size) + ").");
    const char* nameAt = mPosition;
    const std::string_view reference = nextToken();
    if (reference.empty() || reference == "$end")
        return fail(nameAt, "invalid $var directive, variable name is bad (var type =" + quoted(type) +
                                ", var_size = " + std::to_string(size) + ", var_id_code = " + std::string(code) +
                                ").");
    const std::string name(reference);

    // An optional bit range, then $end.
    int64_t lower = 0, upper = 0;
    bool hasLower = false, hasUpper = false;
    const char* rangeAt = mPosition;
    std::string_view next = nextToken();
    if (!next.empty() && next.front() == '[') {
        std::string range(next);
        // "[7 : 0]" written with blanks.
        while (range.back() != ']') {
            const std::string_view more = peekToken();
            if (more.empty() || more == "$end")
                break;
            range.append(nextToken());
        }
        if (range.back() != ']')
            return fail(rangeAt, "invalid $var directive, lower and upper bit numbers are bad (var_name = " +
                                     quoted(name) + ").");
        bool badLower = false, badUpper = false;
        parseRange(std::string_view(range).substr(1, range.size() - 2), lower, upper, hasUpper, badLower, badUpper);
        if (badLower && badUpper)
            return fail(rangeAt, "invalid $var directive, lower and upper bit numbers are bad (var_name = " +
                                     quoted(name) + ").");
        if (badLower)
            return fail(rangeAt, "invalid $var directive, lower bit number is bad (var_name = " + quoted(name) + ").");
        if (badUpper)
            return fail(rangeAt, "invalid $var directive, upper bit number is bad (var_name = " + quoted(name) + ").");
        hasLower = true;
        if (!checkMatchesEnd())
            return fail(mPosition, "invalid $var directive, $end is missing (var_name = " + quoted(name) + ").");
    } else if (next != "$end") {
        return fail(rangeAt, "$end missing after $var directive (var_name = " + quoted(name) + ").");
    }

    // Checks that leave the variable in place with a type of its own.
    bool bad = false;
    std::string problem;
    if (kind->kind == real_signal && hasLower) {
        bad = true;
        problem = "The real variable " + quoted(name) +
                  " is badly defined, no lower or upper bit numbers are accepted for real variables (lower_bit_number = " +
                  std::to_string(lower) + ", upper_bit_number = " + std::to_string(hasUpper ? upper : lower) + ").";
    } else if (kind->kind == port_signal && !portRange && size != 1) {
        bad = true;
        problem = "The port size should be 1 in $var directive (var_name = " + quoted(name) +
                  ", port_size = " + std::to_string(size) + ").";
    } else if (hasLower && kind->kind != real_signal) {
        const int64_t last = hasUpper ? upper : lower;
        const uint64_t width = static_cast<uint64_t>(lower > last ? lower - last : last - lower) + 1;
        if (width != size) {
            bad = true;
            problem = "The variable size does not correspond in $var directive (var_name = " + quoted(name) +
                      ", lower_bit_number = " + std::to_string(lower) + ", upper_bit_number = " +
                      std::to_string(last) + ", port_size = " + std::to_string(size) + ").";
        }
    }
    if (bad)
        printDebugMessage(offsetOf(at), problem);

    curvePlotDataType::dataUnit unit = curvePlotDataType::undefined_unit;
    const std::string fullName =
        computeVariableName(currentScopePath(), name, lower, upper, hasLower, hasUpper, unit);
    // Logic vectors are stored state by state: a width that can't be held is a bad definition.
    constexpr uint64_t kMaxWidth = 1u << 24;
    if (size > kMaxWidth) {
        printDebugMessage(offsetOf(at), "invalid $var directive, variable size is bad (var type =" + quoted(type) + ").");
        bad = true;
        size = 1;
    }
    const uint32_t width = static_cast<uint32_t>(size ? size : 1);
    const cCurvePlotDataType* dataType = nullptr;
    signal_kind storedKind = kind->kind;
    if (bad) {
        dataType = getBadVariableDefinitionTypePtr(width);
        storedKind = bad_signal;
    } else if (kind->kind == real_signal) {
        dataType = getRealTypePtr(unit);
    } else if (kind->kind == port_signal) {
        dataType = getPortTypePtr(width);
    } else {
        dataType = getVectorTypePtr(width);
    }
    const bool hasBits = hasLower || portRange;
    const int64_t left = portRange ? portLower : lower;
    const int64_t right = portRange ? portUpper : (hasUpper ? upper : lower);
    insertVariableToMap(code, dataType, fullName, storedKind, width, kind->code, hasBits, left, right);
    return true;
}

}  // namespace vx3
