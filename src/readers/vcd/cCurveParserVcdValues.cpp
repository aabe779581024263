// The values of a value change dump in two passes over pieces of the value section, each piece on
// a thread of its own. The first pass checks the text and counts the records of every variable
// piece by piece; the blocks are then allocated at their final size, and the second pass writes
// each piece's records straight to their places. Nothing grows or moves while values are read,
// and the result is what one sequential read would give (a piece that doesn't fit its
// neighbours, or a fault after the first piece, sends the file through one sequential pass).
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <future>
#include <memory>
#include <thread>

#include "readers/scan/cBusErrorGuard.h"
#include "readers/vcd/cCurveParserVcdImpl.h"
#include "readers/vcd/cCurveParserVcdScanner.h"
#include "readers/vcd/cCurveParserVcdStoreSink.h"

namespace vx3 {

using namespace curveParserVcd;

namespace curveParserVcd {

void releasePages(const char*& released, const char* upTo)
{
    // Pages of the mapping that were read would count in our resident memory until the end of
    // the read: hand them back (they stay in the page cache).
    static const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const uintptr_t from = (reinterpret_cast<uintptr_t>(released) + page - 1) & ~(page - 1);
    const uintptr_t to = reinterpret_cast<uintptr_t>(upTo) & ~(page - 1);
    if (to > from) {
        madvise(reinterpret_cast<void*>(from), to - from, MADV_DONTNEED);
        released = reinterpret_cast<const char*>(to);
    }
}

}  // namespace curveParserVcd

namespace {

struct cCountSink {
    cChunkResult& result;
    std::vector<uint64_t> lastStep;
    std::vector<uint32_t> lastPiece;
    uint32_t piece = 0;

    cCountSink(cChunkResult& chunk, size_t signals)
        : result(chunk), lastStep(signals, kNoStep), lastPiece(signals, kNoSignal)
    {
        result.counts.assign(signals, 0);
        result.lastRecordTimes.assign(signals, 0);
    }
    void mark(const char* at)
    {
        piece = static_cast<uint32_t>(result.marks.size());
        result.marks.push_back(at);
    }
    void step(uint64_t time) { result.times.push_back(time); }
    void record(uint32_t signal, uint64_t step, uint64_t time)
    {
        if (lastStep[signal] == step) {
            result.overwritten = true;
            return;
        }
        lastStep[signal] = step;
        ++result.counts[signal];
        result.lastRecordTimes[signal] = time;
        if (lastPiece[signal] != piece) {
            lastPiece[signal] = piece;
            result.presence.emplace_back(signal, piece);
        }
    }
    void logic(uint32_t signal, const char*, uint64_t, uint64_t step, uint64_t time) { record(signal, step, time); }
    void real(uint32_t signal, double, uint64_t step, uint64_t time) { record(signal, step, time); }
};

// Cuts [begin, end) into up to count pieces that start at a line beginning with "#".
std::vector<std::pair<const char*, const char*>> cutIntoPieces(const char* begin, const char* end, unsigned count,
                                                               uint64_t minPieceSize)
{
    std::vector<std::pair<const char*, const char*>> pieces;
    const uint64_t size = static_cast<uint64_t>(end - begin);
    const uint64_t wanted = std::max<uint64_t>(size / std::max(count, 1u), minPieceSize);
    const char* start = begin;
    while (start < end) {
        const char* cut = end;
        if (static_cast<uint64_t>(end - start) > wanted + minPieceSize / 2) {
            const char* p = start + wanted;
            while (p < end) {
                const char* line = static_cast<const char*>(std::memchr(p, '\n', static_cast<size_t>(end - p)));
                if (!line || line + 1 >= end)
                    break;
                if (line[1] == '#') {
                    cut = line + 1;
                    break;
                }
                p = line + 1;
            }
        }
        pieces.emplace_back(start, cut);
        start = cut;
    }
    return pieces;
}

// Runs the tasks on threads of their own and waits for them, passing an interruption on. A
// mapped file cut meanwhile fails the task instead of the process; false when one failed so.
bool runTasks(std::vector<std::function<void()>>& tasks, std::atomic<bool>& interrupted,
              const std::function<bool()>& checkInterrupted)
{
    std::atomic<bool> busError(false);
    std::vector<std::future<void>> running;
    for (auto& task : tasks)
        running.push_back(std::async(std::launch::async, [&task, &busError] {
            if (!busErrorGuard::runGuarded(task))
                busError = true;
        }));
    for (auto& future : running) {
        while (future.wait_for(std::chrono::milliseconds(50)) != std::future_status::ready)
            if (checkInterrupted())
                interrupted = true;
        future.get();
    }
    return !busError;
}

}  // namespace

bool cCurveParserVcdImpl::parseSimulationSection(returnCode& code)
{
    std::vector<cSignal>& all = signals();
    const size_t signalCount = all.size();
    cScanContext context;
    context.fileBegin = mBegin;
    context.codes = &codes();
    context.signals = &all;
    context.valueBufferSize = std::max<uint64_t>(128, uint64_t(getMaxWidth()) * 2 + 16);
    context.releasePages = mMapped;
    // Index pieces: fine enough that a curve that changes seldom loads from a few of them, and
    // no more than some thousand of them.
    context.markInterval = std::max<uint64_t>(uint64_t(1) << 20, static_cast<uint64_t>(mEnd - mPosition) / 2048);
    std::atomic<bool> interrupted(false);
    context.interrupted = &interrupted;
    const std::function<bool()> checkInterrupted = [this] { return checkIsInterrupted(); };

    const unsigned threads = mMaxThreads ? mMaxThreads : std::clamp(std::thread::hardware_concurrency(), 1u, 8u);
    auto pieces = cutIntoPieces(mPosition, mEnd, threads, mMinPieceSize);
    std::vector<cChunkResult> chunks;

    // ---- First pass: check and count.
    bool cut = false;
    auto countPass = [&](bool sequential) {
        if (sequential)
            pieces.assign(1, {mPosition, mEnd});
        chunks.assign(pieces.size(), cChunkResult());
        // Sinks and buffers live outside the tasks, which run under the bus error guard.
        std::vector<std::unique_ptr<cCountSink>> sinks(pieces.size());
        std::vector<std::vector<char>> buffers(pieces.size());
        std::vector<std::function<void()>> tasks;
        for (size_t k = 0; k < pieces.size(); ++k) {
            chunks[k].begin = pieces[k].first;
            chunks[k].end = pieces[k].second;
            sinks[k] = std::make_unique<cCountSink>(chunks[k], signalCount);
            buffers[k].resize(context.valueBufferSize);
            tasks.push_back([&, k] { cCurveParserVcdScanner<cCountSink>(context, *sinks[k], chunks[k], buffers[k]).run(); });
        }
        if (!runTasks(tasks, interrupted, checkInterrupted))
            cut = true;
    };
    countPass(pieces.size() <= 1);
    if (interrupted || checkIsInterrupted()) {
        code = action_interrupted;
        return false;
    }
    if (cut) {
        errorMsg("Vcd Parser : the file \"" + mFileName + "\" was cut while it was read.");
        code = file_format_recognized;
        return false;
    }
    // The pieces must fit together as one text: a fault after the first piece, a $dumpoff still
    // in force, a step that falls at a seam. Then one sequential pass decides.
    if (chunks.size() > 1) {
        bool fits = true;
        bool dumpOff = false;
        for (size_t k = 0; k < chunks.size() && fits; ++k) {
            const cChunkResult& chunk = chunks[k];
            if ((k > 0 && chunk.failed) || chunk.dumpOffAtStart != dumpOff || (chunk.closed && k + 1 < chunks.size()))
                fits = false;
            if (k > 0 && chunk.hasSteps && chunks[k - 1].hasSteps &&
                (chunk.firstTime < chunks[k - 1].lastTime ||
                 (chunk.firstTime == chunks[k - 1].lastTime && chunk.firstDelta <= chunks[k - 1].lastDelta)))
                fits = false;
            if (k > 0 && !chunk.hasSteps)
                fits = false;
            dumpOff = chunk.dumpOffAtEnd;
            if (chunk.failed)
                break;
        }
        if (!fits) {
            countPass(true);
            if (interrupted || checkIsInterrupted()) {
                code = action_interrupted;
                return false;
            }
        }
    }

    mPiecesRead = chunks.size();

    // ---- Between the passes: the time axis, the block sizes and each piece's first records.
    const cChunkResult* failedChunk = nullptr;
    size_t used = 0;
    for (const cChunkResult& chunk : chunks) {
        ++used;
        if (chunk.failed) {
            failedChunk = &chunk;
            break;
        }
    }
    uint64_t steps = 0;
    for (size_t k = 0; k < used; ++k)
        steps += chunks[k].times.size();
    if (failedChunk) {
        printDebugMessage(failedChunk->error.position, failedChunk->error.text);
        errorMsg("Failed to parse value section");
        // Steps before the faulty one were complete and stay.
        if (steps < 2) {
            code = file_format_recognized;
            return false;
        }
        code = partly_parsed;
    }
    std::vector<std::vector<uint64_t>> firstRecords(used, std::vector<uint64_t>(signalCount, 0));
    std::vector<uint64_t> totals(signalCount, 0), lastRecordTimes(signalCount, 0);
    for (size_t k = 0; k < used; ++k) {
        for (size_t s = 0; s < signalCount; ++s) {
            firstRecords[k][s] = totals[s];
            totals[s] += chunks[k].counts[s];
            if (chunks[k].counts[s])
                lastRecordTimes[s] = chunks[k].lastRecordTimes[s];
        }
        mDeltaCyclesUsed = mDeltaCyclesUsed || chunks[k].deltaCyclesUsed;
        mOverwritten = mOverwritten || chunks[k].overwritten;
        mDumpOffIntervals.insert(mDumpOffIntervals.end(), chunks[k].dumpSwitches.begin(), chunks[k].dumpSwitches.end());
        std::vector<uint64_t>().swap(chunks[k].counts);
    }
    // The time axis; the last delta cycle gets a step of its own so that its values have a width.
    const bool extraStep = mDeltaCyclesUsed && steps > 0;
    mSweep->setGrowthFlag(false);
    if (!mSweep->setSize(steps + (extraStep ? 1 : 0), sizeof(uint64_t))) {
        errorMsg("Vcd Parser : not enough memory for the time axis.");
        code = file_format_recognized;
        return false;
    }
    for (size_t k = 0; k < used; ++k) {
        mSweep->pushBackValueVector(chunks[k].times.data(), chunks[k].times.size());
        std::vector<uint64_t>().swap(chunks[k].times);
    }
    mStepCount = steps;
    if (steps > 0) {
        mFirstTime = mSweep->uint64Values()[0];
        mLastTime = mSweep->uint64Values()[steps - 1];
    }
    if (extraStep) {
        mSweep->pushBackValue<uint64_t>(mLastTime);
        ++mStepCount;
    }
    // The time axis lives only in memory: its loader reads curves, not the axis.
    mSweep->setNeedsLoading(false);
    mSweep->setLocalDbType(fileDbSupport::cou_19);

    // Where each curve's records lie in the file, so that its values can be loaded again (or
    // for the first time) by reading only the pieces that hold them. One record more than the
    // file gives when the last value must be held to the end of the time axis.
    std::vector<uint64_t> pieceStart, pieceSize;
    for (size_t s = 0; s < signalCount; ++s) {
        all[s].curve->clearDbEntries();
        all[s].curve->setDbStride(0);
        all[s].curve->setDbSize(totals[s] + (totals[s] && lastRecordTimes[s] < mLastTime ? 1 : 0));
    }
    for (size_t k = 0; k < used; ++k) {
        const cChunkResult& chunk = chunks[k];
        const size_t base = pieceStart.size();
        for (size_t i = 0; i < chunk.marks.size(); ++i) {
            const char* end = i + 1 < chunk.marks.size() ? chunk.marks[i + 1] : (chunk.failed ? chunk.cut : chunk.end);
            pieceStart.push_back(static_cast<uint64_t>(chunk.marks[i] - mBegin));
            pieceSize.push_back(static_cast<uint64_t>(std::max(end, chunk.marks[i]) - chunk.marks[i]));
        }
        for (const auto& [signal, piece] : chunk.presence)
            all[signal].curve->addDbEntry(pieceStart[base + piece], pieceSize[base + piece]);
    }

    if (!readValuesNow()) {
        // The values stay in the file until a curve is shown.
        dbSupport()->initDbSupport(fileDbSupport::vcd_65);
        for (size_t s = 0; s < signalCount; ++s)
            all[s].curve->setNeedsLoading(totals[s] > 0);
        // Curves that plots hold come back at once, from the file as it is now.
        if (checkIsReload() && currentSection()->reloadReferencedCurvesFromDb(options().logger()) != ok)
            warnMsg("Vcd Parser : some curves in use could not be loaded again.");
        return !failedChunk;
    }

    std::vector<cTarget> targets(signalCount);
    uint64_t maxWidth = 1;
    for (size_t s = 0; s < signalCount; ++s) {
        cSignal& entry = all[s];
        cCurvePlotVariable& curve = *entry.curve;
        const uint64_t capacity = std::max<uint64_t>(curve.getDbSize(), 1);
        bool allocated = false;
        if (entry.kind == real_signal) {
            allocated = curve.setParameterizedSize(capacity, sizeof(double), sizeof(double));
            if (allocated) {
                targets[s].xs = reinterpret_cast<double*>(curve.parameterizedXData());
                targets[s].ys = reinterpret_cast<double*>(curve.parameterizedYData());
            }
        } else {
            allocated = curve.setValueVectorPairSize(capacity, entry.width);
            if (allocated) {
                targets[s].positions = const_cast<uint64_t*>(curve.valueVectorPositions());
                targets[s].states = curve.valueVectorData();
                targets[s].width = entry.width;
                maxWidth = std::max<uint64_t>(maxWidth, entry.width);
            }
        }
        if (!allocated) {
            errorMsg("Vcd Parser : not enough memory for the values of \"" + curve.name() + "\".");
            code = file_format_recognized;
            return false;
        }
    }

    // ---- Second pass: every piece writes its records to their places.
    std::vector<std::function<void()>> tasks;
    std::vector<cChunkResult> again(used);
    std::vector<std::unique_ptr<cStoreSink>> storeSinks(used);
    std::vector<std::vector<char>> buffers(used);
    for (size_t k = 0; k < used; ++k) {
        again[k].begin = chunks[k].begin;
        again[k].end = chunks[k].failed ? chunks[k].cut : chunks[k].end;
        again[k].dumpOffAtStart = chunks[k].dumpOffAtStart;
        storeSinks[k] = std::make_unique<cStoreSink>(targets, std::move(firstRecords[k]), maxWidth, mTimeScaleFactor);
        buffers[k].resize(context.valueBufferSize);
        tasks.push_back(
            [&, k] { cCurveParserVcdScanner<cStoreSink>(context, *storeSinks[k], again[k], buffers[k]).run(); });
    }
    const bool complete = runTasks(tasks, interrupted, checkInterrupted);
    if (interrupted || checkIsInterrupted()) {
        code = action_interrupted;
        return false;
    }
    if (!complete) {
        errorMsg("Vcd Parser : the file \"" + mFileName + "\" was cut while it was read.");
        code = file_format_recognized;
        return false;
    }
    for (size_t s = 0; s < signalCount; ++s) {
        all[s].curve->setUsedValueCount(totals[s]);
        all[s].curve->setNeedsLoading(false);
    }
    return !failedChunk;
}

}  // namespace vx3
