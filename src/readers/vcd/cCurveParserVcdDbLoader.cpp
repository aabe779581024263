#include "readers/vcd/cCurveParserVcdDbLoader.h"

#include <mutex>

#include "model/cCurvePlotDataFile.h"
#include "model/fileDbType.h"
#include "readers/cCurvePlotParserOptions.h"
#include "readers/vcd/cCurveParserVcdImpl.h"
#include "readers/vcd/cCurveParserVcdScanner.h"
#include "readers/vcd/cCurveParserVcdStoreSink.h"

namespace vx3 {

using namespace curveParserVcd;

namespace {
// The declarations of the file, read into a store of its own.
class cDeclarations : public cCurveParserVcdImpl {
public:
    using cCurveParserVcdImpl::cCurveParserVcdImpl;
    using cCurveParserVcdBase::codes;
    using cCurveParserVcdBase::signals;
    using cCurveParserVcdBase::getMaxWidth;
    uint64_t valueSectionStart(const char* begin) const { return static_cast<uint64_t>(position() - begin); }
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
    return load(request, mapped.data(), mapped.size(), mapped.checkIsMapped(), error);
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
    return load(request, text.data(), text.size(), false, error);
}

int cCurveParserVcdDbLoader::load(cCurveLoadRequest& request, const char* data, uint64_t size, bool mapped,
                                  std::string& error)
{
    cCurvePlotVariable& curve = request.variable;
    cCurvePlotDataFile scratch;
    cCurvePlotParserOptions options;
    cDeclarations declarations(scratch, options);
    if (declarations.parseFileImpl(data, data + size, curve.fileName(), true, false) != ok) {
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
    context.releasePages = mapped;
    context.validated = true;
    const uint64_t valueStart = declarations.valueSectionStart(data);
    uint64_t count = 0;
    for (uint64_t e = 0; e < curve.getNbOfDbEntries(); ++e) {
        uint64_t position = 0, length = 0;
        if (!curve.getDbEntry(e, position, length) || position > size || length > size - position) {
            error = "The file \"" + curve.fileName() + "\" is shorter than when it was read.";
            return 3;
        }
        cChunkResult piece;
        piece.begin = data + position;
        piece.end = piece.begin + length;
        piece.first = position == valueStart;
        std::vector<uint64_t> first(all.size(), 0);
        first[wanted] = count;
        cStoreSink sink(targets, std::move(first), declarations.getMaxWidth(), scale);
        // A count past the block means the file changed: stop before writing past it.
        const bool good = cCurveParserVcdScanner<cStoreSink>(context, sink, piece).run();
        count = sink.next[wanted];
        if (!good || count > capacity) {
            error = good ? "The file \"" + curve.fileName() + "\" changed since it was read."
                         : cCurveParserVcdBase::formatDebugMessage(piece.error.position, piece.error.text);
            return 3;
        }
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
