// The value section of a value change dump, scanned over raw char pointers. One scanner reads one
// piece of the section (pieces start at a "#time" line), so that several threads read a large
// file at once; what it finds goes to a sink: the counting sink of the first pass, the storing
// sink of the second. A change costs a code lookup in an array and a call of the sink.
#pragma once

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstring>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "readers/vcd/cCurveParserVcdBase.h"

namespace vx3::curveParserVcd {

// What every scanner of one file shares, read only.
struct cScanContext {
    const char* fileBegin = nullptr;
    const cCurveParserVcdCodeArray* codes = nullptr;
    const std::vector<cSignal>* signals = nullptr;
    uint64_t valueBufferSize = 128;
    bool releasePages = false;  // hand the pages read back to the system (mapped files)
    const std::atomic<bool>* interrupted = nullptr;
    // The text was checked by an earlier pass: dump switches are not checked again (a piece
    // read alone doesn't know the state its predecessors left).
    bool validated = false;
    // Index pieces start at the first "#" line this many bytes after the previous one.
    uint64_t markInterval = ~uint64_t(0);
    // A load of one variable: the first variable of its code. Vectors and reals of other codes
    // are skipped by their line's last token, without reading their value.
    uint32_t onlyHead = kNoSignal;
};

// One piece of the value section: its range and initial state, and what the scan found.
struct cChunkResult {
    const char* begin = nullptr;
    const char* end = nullptr;
    bool dumpOffAtStart = false;  // a $dumpoff of an earlier piece is still in force

    bool failed = false;
    bool interrupted = false;
    cError error;
    const char* cut = nullptr;  // start of the faulty entry: the values before it are good
    bool closed = false;        // $vcdclose: nothing after it counts
    bool hasSteps = false;
    uint64_t firstTime = 0, lastTime = 0;
    unsigned firstDelta = 0, lastDelta = 0;
    const char* firstTimeAt = nullptr;
    bool deltaCyclesUsed = false;
    bool overwritten = false;
    bool dumpOffAtEnd = false;
    std::vector<uint64_t> times;     // one per step (first pass)
    std::vector<uint64_t> counts;    // records per variable (first pass)
    std::vector<uint64_t> dumpSwitches;  // times of $dumpoff and $dumpon, alternately
    // The index of the first pass: where its pieces start (the first at begin), which variables
    // have records in which of them (in the order found), and the time of each variable's last
    // record.
    std::vector<const char*> marks;
    std::vector<std::pair<uint32_t, uint32_t>> presence;
    std::vector<uint64_t> lastRecordTimes;
};

void releasePages(const char*& released, const char* upTo);

template <class Sink>
class cCurveParserVcdScanner {
public:
    // buffer holds a value while it is read (context.valueBufferSize bytes). The caller owns it,
    // and the sink, outside the bus error guard: a bus error skips every destructor in the guard.
    cCurveParserVcdScanner(const cScanContext& context, Sink& sink, cChunkResult& result, std::vector<char>& buffer)
        : mContext(context), mSink(sink), mResult(result), mSignals(context.signals->data()), mBuffer(buffer)
    {
        if (mBuffer.size() < context.valueBufferSize)
            mBuffer.resize(context.valueBufferSize);
    }

    // Scans the piece; false on a fault (in the result) or an interruption.
    bool run()
    {
        mPosition = mResult.begin;
        mEnd = mResult.end;
        mReleased = mResult.begin;
        mDumpOff = mResult.dumpOffAtStart;
        mSink.mark(mPosition);
        mNextMark = mContext.markInterval > uint64_t(mEnd - mPosition) ? mEnd : mPosition + mContext.markInterval;
        const char* nextCheck = mPosition + std::min<uint64_t>(kCheckInterval, static_cast<uint64_t>(mEnd - mPosition));
        bool good = true;
        while (good) {
            while (mPosition < mEnd && isSpace(*mPosition))
                ++mPosition;
            if (mPosition >= mEnd || mResult.closed)
                break;
            if (mPosition >= nextCheck) {
                if (mContext.interrupted && mContext.interrupted->load(std::memory_order_relaxed)) {
                    mResult.interrupted = true;
                    return false;
                }
                if (mContext.releasePages)
                    releasePages(mReleased, mPosition);
                nextCheck = mPosition + std::min<uint64_t>(kCheckInterval, static_cast<uint64_t>(mEnd - mPosition));
            }
            mEntry = mPosition;
            switch (*mPosition) {
            case '0': case '1': case 'x': case 'z': case 'X': case 'Z': good = parseScalarValue(); break;
            case 'b': case 'B': good = parseVectorValues(); break;
            case '#': good = parseTimeStatement(); break;
            case 'r': case 'R': good = parseRealValue(); break;
            case 'p': case 'P': good = parsePortValues(); break;
            case '$': good = parseDumpKeyword(); break;
            default: good = fail(mPosition, "invalid entry."); break;
            }
        }
        mResult.dumpOffAtEnd = mDumpOff;
        if (mContext.releasePages)
            releasePages(mReleased, mPosition < mEnd ? mPosition : mEnd);
        return good;
    }

private:
    static constexpr uint64_t kCheckInterval = 16u << 20;
    static bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
    static bool isBlankOrTab(char c) { return c == ' ' || c == '\t'; }
    static char logicState(char c)
    {
        switch (c) {
        case '0': return '0';
        case '1': return '1';
        case 'x': case 'X': return 'x';
        case 'z': case 'Z': return 'z';
        default: return 0;
        }
    }

    bool fail(const char* at, std::string text)
    {
        mResult.failed = true;
        mResult.error.position = static_cast<uint64_t>(at - mContext.fileBegin);
        mResult.error.text = std::move(text);
        mResult.cut = mEntry;
        return false;
    }

    // A new step unless time and delta cycle repeat the last ones; false when time falls.
    bool step(uint64_t time, unsigned delta)
    {
        if (mResult.hasSteps) {
            if (time < mResult.lastTime || (time == mResult.lastTime && delta < mResult.lastDelta))
                return false;
            if (time == mResult.lastTime && delta == mResult.lastDelta)
                return true;
        } else {
            mResult.hasSteps = true;
            mResult.firstTime = time;
            mResult.firstDelta = delta;
            mResult.firstTimeAt = mEntry;
        }
        mResult.lastTime = time;
        mResult.lastDelta = delta;
        ++mStep;
        mSink.step(time);
        return true;
    }
    void ensureStep()
    {
        if (!mResult.hasSteps)
            step(0, 0);
    }

    bool parseId(uint32_t& signal, const char* undefinedText, const char* missingText)
    {
        const char* start = mPosition;
        const char* p = mPosition;
        uint64_t index = 0, weight = 1;
        while (p < mEnd && static_cast<unsigned char>(*p) > ' ') {
            index += static_cast<uint64_t>(static_cast<unsigned char>(*p) - 32) * weight;
            weight *= 95;
            ++p;
        }
        const size_t length = static_cast<size_t>(p - start);
        if (length == 0)
            return fail(start, missingText);
        mPosition = p;
        const cCurveParserVcdCodeArray& codes = *mContext.codes;
        const bool found = length <= cCurveParserVcdCodeArray::kMaxDenseCodeLength &&
                                   index < cCurveParserVcdCodeArray::kMaxDenseIndex && !codes.checkUsesMap()
                               ? codes.getVariableIndex(index, signal)
                               : codes.getVariableIndex(std::string_view(start, length), signal);
        if (!found) {
            // The code is copied off the mapping first: a string made from the mapping itself
            // would leak if the bus error guard jumped out of its making.
            char code[64];
            const size_t shown = std::min(length, sizeof(code));
            std::memcpy(code, start, shown);
            return fail(start, std::string(undefinedText) + "\"" + std::string(code, shown) +
                                   (shown < length ? "...\"" : "\"") + " has not been defined.");
        }
        return true;
    }

    void storeLogic(uint32_t signal, const char* bits, uint64_t n)
    {
        for (; signal != kNoSignal; signal = mSignals[signal].aliasNext)
            if (mSignals[signal].kind != real_signal)
                mSink.logic(signal, bits, n, mStep, mResult.lastTime);
    }

    bool parseScalarValue()
    {
        const char state = logicState(*mPosition);
        ++mPosition;
        uint32_t signal = 0;
        if (!parseId(signal, "failed to read data, the code ", "failed to parse variable code."))
            return false;
        ensureStep();
        storeLogic(signal, &state, 1);
        return true;
    }

    // With a load of one variable: true when the entry at the cursor (a value, then its code as
    // the line's last token) names another code; the cursor then stands at the line's end.
    bool skipOtherCode()
    {
        if (mContext.onlyHead == kNoSignal)
            return false;
        const char* end = static_cast<const char*>(std::memchr(mPosition, '\n', static_cast<size_t>(mEnd - mPosition)));
        if (!end)
            end = mEnd;
        const char* last = end;
        while (last > mPosition && isSpace(last[-1]))
            --last;
        const char* first = last;
        while (first > mPosition && !isSpace(first[-1]))
            --first;
        if (first == mPosition || first == last)
            return false;  // one token only: let the parser explain
        uint32_t signal = kNoSignal;
        const std::string_view code(first, static_cast<size_t>(last - first));
        if (!mContext.codes->getVariableIndex(code, signal) || signal == mContext.onlyHead)
            return false;
        mPosition = end;
        return true;
    }

    bool parseVectorValues()
    {
        if (skipOtherCode())
            return true;
        const char* at = mPosition;
        ++mPosition;
        char* buffer = mBuffer.data();
        const uint64_t capacity = mBuffer.size();
        uint64_t n = 0;
        const char* p = mPosition;
        // Eight states at a time while they are all 0 or 1 (the common case of wide buses).
        while (p + 8 <= mEnd && n + 8 <= capacity) {
            uint64_t word;
            std::memcpy(&word, p, 8);
            if ((word & 0xfefefefefefefefeull) != 0x3030303030303030ull)
                break;
            std::memcpy(buffer + n, &word, 8);
            n += 8;
            p += 8;
        }
        while (p < mEnd && !isSpace(*p)) {
            const char state = logicState(*p);
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
        ensureStep();
        storeLogic(signal, buffer, n);
        return true;
    }

    bool parseRealValue()
    {
        if (skipOtherCode())
            return true;
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
        ensureStep();
        for (; signal != kNoSignal; signal = mSignals[signal].aliasNext)
            if (mSignals[signal].kind == real_signal)
                mSink.real(signal, value, mStep, mResult.lastTime);
        return true;
    }

    bool parseStrength(const char* failText)
    {
        while (mPosition < mEnd && isBlankOrTab(*mPosition))
            ++mPosition;
        const char* start = mPosition;
        while (mPosition < mEnd && !isSpace(*mPosition)) {
            if (*mPosition < '0' || *mPosition > '7')
                return fail(start, failText);
            ++mPosition;
        }
        if (mPosition == start)
            return fail(start, failText);
        return true;
    }

    bool parsePortValues()
    {
        // "pVALUE strength0 strength1 <code": the value keeps its port states as written.
        const char* at = mPosition;
        ++mPosition;
        char* buffer = mBuffer.data();
        uint64_t n = 0;
        while (mPosition < mEnd && !isSpace(*mPosition)) {
            if (n >= mBuffer.size())
                return fail(at, "failed to parse port values.");
            buffer[n++] = *mPosition++;
        }
        if (n == 0)
            return fail(at, "empty port variable.");
        if (!parseStrength("failed to parse 0 strength.") || !parseStrength("failed to parse 1 strength."))
            return false;
        while (mPosition < mEnd && isBlankOrTab(*mPosition))
            ++mPosition;
        uint32_t signal = 0;
        if (!parseId(signal, "failed to read port value, the code ", "failed to parse port variable identifier."))
            return false;
        if (mSignals[signal].kind == port_signal && mSignals[signal].width != n)
            return fail(at, "bad value vector size for port variable.");
        ensureStep();
        storeLogic(signal, buffer, n);
        return true;
    }

    bool parseTime(const char*& p, uint64_t& time, unsigned& delta, bool& hasDelta)
    {
        time = 0;
        const char* digits = p;
        while (p < mEnd && *p >= '0' && *p <= '9') {
            const uint64_t digit = static_cast<uint64_t>(*p - '0');
            if (time > (~uint64_t(0) - digit) / 10)
                return false;
            time = time * 10 + digit;
            ++p;
        }
        if (p == digits)
            return false;
        delta = 0;
        hasDelta = p < mEnd && *p == '+';
        if (hasDelta) {
            const char* first = ++p;
            while (p < mEnd && *p >= '0' && *p <= '9' && delta < 0x10000000u)
                delta = delta * 10 + static_cast<unsigned>(*p++ - '0');
            if (p == first)
                return false;
        }
        return p >= mEnd || isSpace(*p);
    }

    bool parseTimeStatement()
    {
        const char* at = mPosition;
        const char* p = mPosition + 1;
        uint64_t time = 0;
        unsigned delta = 0;
        bool hasDelta = false;
        if (!parseTime(p, time, delta, hasDelta))
            return fail(at, "invalid #time directive.");
        if (at >= mNextMark) {
            mSink.mark(at);
            mNextMark = mContext.markInterval > uint64_t(mEnd - at) ? mEnd : at + mContext.markInterval;
        }
        mPosition = p;
        mResult.deltaCyclesUsed = mResult.deltaCyclesUsed || hasDelta;
        if (!step(time, delta))
            return fail(at, "the time must be increasing.");
        return true;
    }

    std::string_view nextToken() { return takeToken(mPosition, mEnd); }

    void skipCommentAndNewLine()
    {
        while (true) {
            const std::string_view token = nextToken();
            if (token.empty() || token == "$end" ||
                (token.size() > 4 && token.substr(token.size() - 4) == "$end"))
                return;
        }
    }

    bool parseDumpKeyword()
    {
        const char* at = mPosition;
        const std::string_view word = nextToken().substr(1);
        if (word == "end" || word == "dumpvars" || word == "dumpall" || word == "dumpports" || word == "dumpportsall")
            return true;  // the values inside are read as any others
        const uint64_t now = mResult.hasSteps ? mResult.lastTime : 0;
        if (word == "dumpoff" || word == "dumpportsoff") {
            if (mDumpOff && !mContext.validated)
                return fail(at, "invalid $dumpoff directive.");
            mDumpOff = true;
            mResult.dumpSwitches.push_back(now);
            return true;
        }
        if (word == "dumpon" || word == "dumpportson") {
            if (!mDumpOff && !mContext.validated)
                return fail(at, "invalid $dumpon directive.");
            mDumpOff = false;
            mResult.dumpSwitches.push_back(now);
            return true;
        }
        if (word == "comment") {
            skipCommentAndNewLine();
            return true;
        }
        if (word == "vcdclose") {
            // "$vcdclose #time $end": the final time closes the file.
            while (mPosition < mEnd && isSpace(*mPosition))
                ++mPosition;
            const char* timeAt = mPosition;
            uint64_t time = 0;
            unsigned delta = 0;
            bool hasDelta = false;
            const char* p = mPosition + 1;
            if (mPosition >= mEnd || *mPosition != '#' || !parseTime(p, time, delta, hasDelta))
                return fail(timeAt, "invalid #time directive in $vcdclose.");
            mPosition = p;
            if (!mResult.hasSteps || time > mResult.lastTime)
                step(time, 0);
            nextToken();
            mResult.closed = true;
            return true;
        }
        return fail(at, "invalid keyword.");
    }

    const cScanContext& mContext;
    Sink& mSink;
    cChunkResult& mResult;
    const cSignal* mSignals;
    std::vector<char>& mBuffer;
    const char* mPosition = nullptr;
    const char* mEnd = nullptr;
    const char* mEntry = nullptr;
    const char* mReleased = nullptr;
    const char* mNextMark = nullptr;
    uint64_t mStep = ~uint64_t(0);  // local step index; the first step is 0
    bool mDumpOff = false;
};

}  // namespace vx3::curveParserVcd
