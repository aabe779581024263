// The value section of a value change dump, and the whole file from declarations to finished curves.
#include "readers/vcd/cCurveParserVcdImpl.h"

#include <sys/mman.h>
#include <unistd.h>

#include <charconv>
#include <cstring>
#include <exception>

namespace vx3 {

using namespace curveParserVcd;

namespace {

// Folded state of a logic value character, 0 for a character that isn't one.
struct cLogicTable {
    char map[256] = {};
    constexpr cLogicTable()
    {
        map[static_cast<unsigned char>('0')] = '0';
        map[static_cast<unsigned char>('1')] = '1';
        map[static_cast<unsigned char>('x')] = 'x';
        map[static_cast<unsigned char>('X')] = 'x';
        map[static_cast<unsigned char>('z')] = 'z';
        map[static_cast<unsigned char>('Z')] = 'z';
    }
};
constexpr cLogicTable kLogic;

inline bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
inline bool isBlankOrTab(char c) { return c == ' ' || c == '\t'; }

// How often the value loop looks at the interruption flag and hands read pages back.
constexpr uint64_t kCheckInterval = 32u << 20;

}  // namespace

bool cCurveParserVcdImpl::parseId(uint32_t& signal, const char* undefinedText, const char* missingText)
{
    const char* start = mPosition;
    const char* p = mPosition;
    uint64_t index = 0, weight = 1;
    // Short codes are read as their array index on the way.
    while (p < mEnd && static_cast<unsigned char>(*p) > ' ') {
        index += static_cast<uint64_t>(static_cast<unsigned char>(*p) - 32) * weight;
        weight *= 95;
        ++p;
    }
    const size_t length = static_cast<size_t>(p - start);
    if (length == 0)
        return fail(start, missingText);
    mPosition = p;
    const bool found = length <= cCurveParserVcdCodeArray::kMaxDenseCodeLength &&
                               index < cCurveParserVcdCodeArray::kMaxDenseIndex && !codes().checkUsesMap()
                           ? codes().getVariableIndex(index, signal)
                           : codes().getVariableIndex(std::string_view(start, length), signal);
    if (!found)
        return fail(start, std::string(undefinedText) + "\"" + std::string(start, length) + "\" has not been defined.");
    return true;
}

bool cCurveParserVcdImpl::parseScalarValue()
{
    const char state = kLogic.map[static_cast<unsigned char>(*mPosition)];
    ++mPosition;
    uint32_t signal = 0;
    if (!parseId(signal, "failed to read data, the code ", "failed to parse variable code."))
        return false;
    ensureTimeStep();
    storeLogic(signal, &state, 1);
    return true;
}

bool cCurveParserVcdImpl::parseVectorValues()
{
    const char* at = mPosition;
    ++mPosition;
    char* buffer = mValueBuffer.data();
    const uint64_t capacity = mValueBuffer.size();
    uint64_t n = 0;
    const char* p = mPosition;
    while (p < mEnd && !isSpace(*p)) {
        const char state = kLogic.map[static_cast<unsigned char>(*p)];
        if (!state)
            return fail(p, "unknown value in bus variable.");
        if (n >= capacity)
            return fail(at, "the value is too large for the allocated buffer");
        buffer[n++] = state;
        ++p;
    }
    if (n == 0)
        return fail(at, "empty bus variable.");
    while (p < mEnd && isBlankOrTab(*p))
        ++p;
    mPosition = p;
    uint32_t signal = 0;
    if (!parseId(signal, "failed to read vector data, the code ", "failed to parse variable code."))
        return false;
    ensureTimeStep();
    storeLogic(signal, buffer, n);
    return true;
}

bool cCurveParserVcdImpl::parseRealValue()
{
    const char* at = mPosition;
    ++mPosition;
    const char* p = mPosition;
    while (p < mEnd && !isSpace(*p))
        ++p;
    const char* first = mPosition;
    if (first < p && *first == '+')
        ++first;
    double value = 0;
    const auto result = std::from_chars(first, p, value);
    if (first == p || result.ptr != p || (result.ec != std::errc() && result.ec != std::errc::result_out_of_range))
        return fail(at, "failed to parse real value.");
    while (p < mEnd && isBlankOrTab(*p))
        ++p;
    mPosition = p;
    uint32_t signal = 0;
    if (!parseId(signal, "failed to read real value, the code ", "failed to parse variable code."))
        return false;
    ensureTimeStep();
    storeReal(signal, value);
    return true;
}

bool cCurveParserVcdImpl::parseStrength(unsigned& strength)
{
    const char* start = mPosition;
    unsigned value = 0;
    while (mPosition < mEnd && !isSpace(*mPosition)) {
        if (*mPosition < '0' || *mPosition > '7')
            return fail(start, "unknown variable value.");
        value = value * 10 + static_cast<unsigned>(*mPosition - '0');
        ++mPosition;
    }
    if (mPosition == start)
        return fail(start, "empty variable.");
    strength = value;
    return true;
}

bool cCurveParserVcdImpl::parsePortValues()
{
    // "pVALUE strength0 strength1 <code": the value keeps its port states as written.
    const char* at = mPosition;
    ++mPosition;
    char* buffer = mValueBuffer.data();
    uint64_t n = 0;
    while (mPosition < mEnd && !isSpace(*mPosition)) {
        if (n >= mValueBuffer.size())
            return fail(at, "failed to parse port values.");
        buffer[n++] = *mPosition++;
    }
    if (n == 0)
        return fail(at, "empty port variable.");
    unsigned strength0 = 0, strength1 = 0;
    while (mPosition < mEnd && isBlankOrTab(*mPosition))
        ++mPosition;
    if (!parseStrength(strength0))
        return fail(mPosition, "failed to parse 0 strength.");
    while (mPosition < mEnd && isBlankOrTab(*mPosition))
        ++mPosition;
    if (!parseStrength(strength1))
        return fail(mPosition, "failed to parse 1 strength.");
    while (mPosition < mEnd && isBlankOrTab(*mPosition))
        ++mPosition;
    uint32_t signal = 0;
    if (!parseId(signal, "failed to read port value, the code ", "failed to parse port variable identifier."))
        return false;
    if (signal != kNoSignal && this->signal(signal).kind == port_signal && this->signal(signal).width != n)
        return fail(at, "bad value vector size for port variable.");
    ensureTimeStep();
    storeLogic(signal, buffer, n);
    return true;
}

bool cCurveParserVcdImpl::parseTimeStatement()
{
    const char* at = mPosition;
    ++mPosition;
    uint64_t time = 0;
    const char* p = mPosition;
    while (p < mEnd && *p >= '0' && *p <= '9') {
        const uint64_t digit = static_cast<uint64_t>(*p - '0');
        if (time > (~uint64_t(0) - digit) / 10)
            return fail(at, "invalid #time directive.");
        time = time * 10 + digit;
        ++p;
    }
    if (p == mPosition)
        return fail(at, "invalid #time directive.");
    unsigned delta = 0;
    if (p < mEnd && *p == '+') {
        const char* digits = ++p;
        while (p < mEnd && *p >= '0' && *p <= '9' && delta < 0x10000000u)
            delta = delta * 10 + static_cast<unsigned>(*p++ - '0');
        if (p == digits)
            return fail(at, "invalid #time directive.");
        mDeltaCyclesUsed = true;
    }
    if (p < mEnd && !isSpace(*p))
        return fail(at, "invalid #time directive.");
    mPosition = p;
    if (!pushBackTimeStep(time, delta))
        return fail(at, "the time must be increasing.");
    mDeltaCycle = delta;
    return true;
}

void cCurveParserVcdImpl::skipCommentAndNewLine()
{
    std::string ignored;
    parseStringUntilEnd(ignored);
}

bool cCurveParserVcdImpl::parseDumpKeyword()
{
    const char* at = mPosition;
    const std::string_view keyword = nextToken();
    const std::string_view word = keyword.substr(1);
    if (word == "end" || word == "dumpvars" || word == "dumpall" || word == "dumpports" || word == "dumpportsall")
        return true;  // the values inside are read as any others
    if (word == "dumpoff" || word == "dumpportsoff") {
        if (!pushDumpOff(mCurrentTime))
            return fail(at, "invalid $dumpoff directive.");
        return true;
    }
    if (word == "dumpon" || word == "dumpportson") {
        if (!pushDumpOn(mCurrentTime))
            return fail(at, "invalid $dumpon directive.");
        return true;
    }
    if (word == "comment") {
        skipCommentAndNewLine();
        return true;
    }
    if (word == "vcdclose") {
        // "$vcdclose #time $end": the final time closes the file.
        const char* timeAt = mPosition;
        const std::string_view time = nextToken();
        if (time.size() < 2 || time[0] != '#')
            return fail(timeAt, "invalid #time directive in $vcdclose.");
        uint64_t value = 0;
        const auto result = std::from_chars(time.data() + 1, time.data() + time.size(), value);
        if (result.ec != std::errc() || result.ptr != time.data() + time.size())
            return fail(timeAt, "invalid #time directive in $vcdclose.");
        if (value > mCurrentTime || stepCount() == 0)
            if (!pushBackTimeStep(value, 0))
                return fail(timeAt, "invalid #time directive in $vcdclose.");
        checkMatchesEnd();
        mPosition = mEnd;
        return true;
    }
    return fail(at, "invalid keyword.");
}

bool cCurveParserVcdImpl::parseSimulationSection()
{
    const char* nextCheck = mPosition + std::min<uint64_t>(kCheckInterval, static_cast<uint64_t>(mEnd - mPosition));
    while (true) {
        // Blank lines and line ends between the entries.
        while (mPosition < mEnd && isSpace(*mPosition))
            ++mPosition;
        if (mPosition >= mEnd)
            return true;
        if (mPosition >= nextCheck) {
            if (checkIsInterrupted())
                return false;
            releaseReadPages(false);
            nextCheck = mPosition + std::min<uint64_t>(kCheckInterval, static_cast<uint64_t>(mEnd - mPosition));
        }
        bool good = true;
        switch (*mPosition) {
        case '0': case '1': case 'x': case 'z': case 'X': case 'Z':
            good = parseScalarValue();
            break;
        case 'b': case 'B':
            good = parseVectorValues();
            break;
        case '#':
            good = parseTimeStatement();
            break;
        case 'r': case 'R':
            good = parseRealValue();
            break;
        case 'p': case 'P':
            good = parsePortValues();
            break;
        case '$':
            good = parseDumpKeyword();
            break;
        default:
            good = fail(mPosition, "invalid entry.");
            break;
        }
        if (!good)
            return false;
    }
}

void cCurveParserVcdImpl::releaseReadPages(bool all)
{
    // The mapped pages already read would count in our resident memory until the end of the
    // parse: hand them back (they stay in the page cache) and keep the values' memory only.
    if (!mMapped)
        return;
    static const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const char* upTo = all ? mEnd : mPosition;
    const uintptr_t from = (reinterpret_cast<uintptr_t>(mReleased) + page - 1) & ~(page - 1);
    const uintptr_t to = reinterpret_cast<uintptr_t>(upTo) & ~(page - 1);
    if (to > from) {
        madvise(reinterpret_cast<void*>(from), to - from, MADV_DONTNEED);
        mReleased = reinterpret_cast<const char*>(to);
    }
}

returnCode cCurveParserVcdImpl::parseFileImpl(const char* begin, const char* end, const std::string& fileName,
                                              bool detectOnly, bool mapped)
{
    try {
        clear();
        mBegin = mPosition = mReleased = begin;
        mEnd = end;
        mFileName = fileName;
        mError = cError();
        cFileDbSupport& file = initDbSupport(fileName, fileDbSupport::vcd_63);
        std::string sectionName = fileName;
        const size_t slash = sectionName.find_last_of('/');
        if (slash != std::string::npos)
            sectionName = sectionName.substr(slash + 1);
        if (!findExistingDataSectionOrCreateNewOne(file, sectionName))
            return file_format_recognized;
        if (!parseDeclarationSection())
            return file_format_recognized;
        if (detectOnly)
            return ok;
        defineInstanceTree();
        if (!createSweepVariable())
            return file_format_recognized;
        prepareCurves();
        mValueBuffer.assign(std::max<uint64_t>(128, uint64_t(getMaxWidth()) * 2 + 16), 0);
        mMapped = mapped;
        returnCode code = ok;
        if (!parseSimulationSection()) {
            if (checkIsInterrupted())
                return action_interrupted;
            errorMsg("Failed to parse value section");
            // Steps before the faulty one were complete and stay.
            code = stepCount() > 1 ? partly_parsed : file_format_recognized;
            if (code == file_format_recognized)
                return code;
        }
        releaseReadPages(true);
        pushLastDeltaStep();
        setMinMaxOfTimeAxis();
        completeDigitalVariables();
        if (valuesWereOverwritten())
            highWarnMsg("Vcd Parser : for some variables multiple value definitions for a single time step were "
                        "overwritten.");
        return code;
    } catch (const std::exception&) {
        errorMsg("Vcd Parser : exception caught.");
        errorMsg("Vcd failed.");
        return file_format_recognized;
    }
}

}  // namespace vx3
