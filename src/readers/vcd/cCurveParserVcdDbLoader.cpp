#include "readers/vcd/cCurveParserVcdDbLoader.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <future>
#include <mutex>
#include <thread>

#include "model/cCurvePlotDataFile.h"
#include "model/fileDbType.h"
#include "readers/cCurvePlotParserOptions.h"
#include "readers/scan/cBusErrorGuard.h"
#include "readers/vcd/cCurveParserVcdImpl.h"
#include "readers/vcd/cCurveParserVcdScanner.h"
#include "readers/vcd/cCurveParserVcdStoreSink.h"

namespace vx3 {

using namespace curveParserVcd;

namespace {
// The records of one variable found in a run of pieces, collected to be copied into the block
// in the order of the pieces.
struct cCollectSink {
    uint32_t wanted;
    uint64_t width;
    bool isReal;
    double scale;
    std::vector<uint64_t> positions;
    std::vector<char> states;
    std::vector<double> xs, ys;
    std::vector<char> extended;
    uint64_t lastStep = kNoStep;

    void mark(const char*) {}
    void step(uint64_t) {}
    void newPiece() { lastStep = kNoStep; }
    void logic(uint32_t signal, const char* bits, uint64_t n, uint64_t step, uint64_t time)
    {
        if (signal != wanted || isReal)
            return;
        if (extended.size() < width)
            extended.resize(width);
        const char* value = fitToWidth(bits, n, width, extended.data());
        if (lastStep == step && !positions.empty()) {
            std::memcpy(states.data() + states.size() - width, value, width);
            return;
        }
        lastStep = step;
        positions.push_back(time);
        states.insert(states.end(), value, value + width);
    }
    void real(uint32_t signal, double value, uint64_t step, uint64_t time)
    {
        if (signal != wanted || !isReal)
            return;
        if (lastStep == step && !ys.empty()) {
            ys.back() = value;
            return;
        }
        lastStep = step;
        xs.push_back(static_cast<double>(time) * scale);
        ys.push_back(value);
    }
    uint64_t count() const { return isReal ? ys.size() : positions.size(); }
};

// The declarations of the file, read into a store of its own.
class cDeclarations : public cCurveParserVcdImpl {
public:
    using cCurveParserVcdImpl::cCurveParserVcdImpl;
    using cCurveParserVcdBase::codes;
    using cCurveParserVcdBase::signals;
    using cCurveParserVcdBase::getMaxWidth;
};
}  // namespace

void cCurveParserVcdDbLoader::registerLoader()
{
    static std::once_flag once;
    std::call_once(once, [] {
        auto loader = std::make_shared<cCurveParserVcdDbLoader>();
        for (unsigned type : {fileDbSupport::vcd_63, fileDbSupport::vcd_64, fileDbSupport::vcd_65})
            curveDbLoaders::registerLoader(type, loader);
    });
}

int cCurveParserVcdDbLoader::loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxMemoryFile>& file,
                                        std::string& error)
{
    cVxMemoryFile& mapped = file.file();
    return load(request, mapped.data(), mapped.size(), mapped.checkIsMapped() ? &mapped : nullptr, error);
}

int cCurveParserVcdDbLoader::loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxBinFile>& file,
                                        std::string& error)
{
    // A file that can't be mapped is read whole: such files are rare.
    cVxBinFile& binary = file.file();
    std::string text(binary.size(), '\0');
    if (!binary.readBytes(0, text.data(), text.size())) {
        error = "The file \"" + binary.fileName() + "\" could not be read.";
        return 3;
    }
    return load(request, text.data(), text.size(), nullptr, error);
}

int cCurveParserVcdDbLoader::load(cCurveLoadRequest& request, const char* data, uint64_t size, cVxMemoryFile* mapped,
                                  std::string& error)
{
    cCurvePlotVariable& curve = request.variable;
    // The declarations end where the curve's first piece of values begins. Off a mapping they are
    // copied first (a guarded copy): their parse builds names and a scratch store, whose
    // destructors no bus error may jump over.
    std::string copied;
    const char* header = data;
    uint64_t headerSize = size;
    if (mapped) {
        for (uint64_t e = 0, position = 0, length = 0; e < curve.getNbOfDbEntries(); ++e)
            if (curve.getDbEntry(e, position, length))
                headerSize = std::min(headerSize, position);
        copied.resize(headerSize);
        if (!mapped->readBytes(0, copied.data(), headerSize)) {
            error = mapped->getErrorMessage();
            return 3;
        }
        header = copied.data();
    }
    cCurvePlotDataFile scratch;
    cCurvePlotParserOptions options;
    cDeclarations declarations(scratch, options);
    if (declarations.parseFileImpl(header, header + headerSize, curve.fileName(), true, false) != ok) {
        error = "The declarations of \"" + curve.fileName() + "\" can't be read any more.";
        return 3;
    }
    // The curve is found by its name among the declarations.
    const std::vector<cSignal>& all = declarations.signals();
    cCurvePlotDataSection* section = scratch.getDataSectionFromIndex(0);
    const bool real = curve.getDataType() == curvePlotProperties::parameterized_double;
    uint32_t wanted = kNoSignal;
    for (uint32_t s = 0; s < all.size() && section; ++s)
        if ((all[s].kind == real_signal) == real && section->getVariable(all[s].curveIndex).name() == curve.name()) {
            wanted = s;
            break;
        }
    if (wanted == kNoSignal) {
        error = "The variable \"" + curve.name() + "\" is no longer declared in \"" + curve.fileName() + "\".";
        return 3;
    }
    std::vector<cTarget> targets(all.size());
    cTarget& target = targets[wanted];
    if (real) {
        target.xs = reinterpret_cast<double*>(curve.parameterizedXData());
        target.ys = reinterpret_cast<double*>(curve.parameterizedYData());
    } else {
        if (curve.getValueVectorWidth() != all[wanted].width) {
            error = "The variable \"" + curve.name() + "\" changed its width.";
            return 3;
        }
        target.positions = const_cast<uint64_t*>(curve.valueVectorPositions());
        target.states = curve.valueVectorData();
        target.width = all[wanted].width;
    }
    const uint64_t capacity = real ? curve.getParameterizedCapacity() : curve.getValueVectorPairCapacity();
    const double scale = request.section ? request.section->getTimeScaleFactor() : 1.0;
    cScanContext context;
    context.fileBegin = data;
    context.codes = &declarations.codes();
    context.signals = &all;
    context.valueBufferSize = std::max<uint64_t>(128, uint64_t(declarations.getMaxWidth()) * 2 + 16);
    context.releasePages = mapped != nullptr;
    context.validated = true;
    context.onlyHead = all[wanted].head;
    // The pieces in groups of about equal size, one thread each; a group's records are copied
    // into the block once all groups are done, in the order of the pieces.
    std::vector<std::pair<uint64_t, uint64_t>> entries(curve.getNbOfDbEntries());
    uint64_t bytes = 0;
    for (uint64_t e = 0; e < entries.size(); ++e) {
        if (!curve.getDbEntry(e, entries[e].first, entries[e].second) || entries[e].first > size ||
            entries[e].second > size - entries[e].first) {
            error = "The file \"" + curve.fileName() + "\" is shorter than when it was read.";
            return 3;
        }
        bytes += entries[e].second;
    }
    const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1u, 8u);
    const uint64_t groupBytes = std::max<uint64_t>(bytes / threads + 1, uint64_t(4) << 20);
    std::vector<std::pair<size_t, size_t>> groups;
    for (size_t e = 0; e < entries.size();) {
        size_t last = e;
        uint64_t sum = 0;
        while (last < entries.size() && (last == e || sum + entries[last].second <= groupBytes))
            sum += entries[last++].second;
        groups.emplace_back(e, last);
        e = last;
    }
    std::vector<cCollectSink> sinks(groups.size(), cCollectSink{wanted, all[wanted].width, real, scale, {}, {}, {}, {}, {}});
    std::vector<cError> errors(groups.size());
    std::vector<char> failedGroups(groups.size(), 0);
    // What owns memory stays outside the bus error guard, whose jump skips destructors.
    std::vector<cChunkResult> pieces(groups.size());
    std::vector<std::vector<char>> buffers(groups.size(), std::vector<char>(context.valueBufferSize));
    auto scanGroup = [&](size_t g) {
        for (size_t e = groups[g].first; e < groups[g].second; ++e) {
            cChunkResult& piece = pieces[g];
            piece = cChunkResult();
            piece.begin = data + entries[e].first;
            piece.end = piece.begin + entries[e].second;
            sinks[g].newPiece();
            if (!cCurveParserVcdScanner<cCollectSink>(context, sinks[g], piece, buffers[g]).run()) {
                errors[g] = piece.error;
                failedGroups[g] = 1;
                return;
            }
        }
    };
    // A mapped file cut meanwhile fails the load instead of the process.
    std::atomic<bool> busError(false);
    auto guarded = [&](size_t g) {
        if (!busErrorGuard::runGuarded([&] { scanGroup(g); }))
            busError = true;
    };
    std::vector<std::future<void>> running;
    for (size_t g = 1; g < groups.size(); ++g)
        running.push_back(std::async(std::launch::async, guarded, g));
    if (!groups.empty())
        guarded(0);
    for (auto& future : running)
        future.get();
    if (busError) {
        error = "The file \"" + curve.fileName() + "\" was cut while it was read.";
        return 3;
    }
    uint64_t count = 0;
    for (size_t g = 0; g < groups.size(); ++g) {
        if (failedGroups[g]) {
            error = cCurveParserVcdBase::formatDebugMessage(errors[g].position, errors[g].text);
            return 3;
        }
        const uint64_t found = sinks[g].count();
        // More records than the block holds means the file changed: stop before writing past it.
        if (count + found > capacity) {
            error = "The file \"" + curve.fileName() + "\" changed since it was read.";
            return 3;
        }
        if (real) {
            std::memcpy(target.xs + count, sinks[g].xs.data(), found * sizeof(double));
            std::memcpy(target.ys + count, sinks[g].ys.data(), found * sizeof(double));
        } else {
            std::memcpy(target.positions + count, sinks[g].positions.data(), found * sizeof(uint64_t));
            std::memcpy(target.states + count * target.width, sinks[g].states.data(), found * target.width);
        }
        count += found;
        sinks[g] = cCollectSink{};
    }
    // The last value holds to the end of the time axis, as when the file was read.
    uint64_t lastTime = 0;
    const cCurvePlotSweepVariable* axis =
        request.section && request.section->getNbOfSweepVariables() ? &request.section->getSweepVariable(0) : nullptr;
    if (axis && axis->getDataType() == curvePlotProperties::uint_64 && axis->getVectorSize())
        lastTime = axis->uint64Values()[axis->getVectorSize() - 1];
    if (count + 1 == curve.getDbSize() && count > 0 && count < capacity) {
        if (real) {
            target.xs[count] = static_cast<double>(lastTime) * scale;
            target.ys[count] = target.ys[count - 1];
        } else {
            target.positions[count] = lastTime;
            std::memmove(target.states + count * target.width, target.states + (count - 1) * target.width, target.width);
        }
        ++count;
    }
    if (count != curve.getDbSize()) {
        error = "The file \"" + curve.fileName() + "\" changed since it was read.";
        return 3;
    }
    curve.setUsedValueCount(count);
    return 0;
}

}  // namespace vx3
