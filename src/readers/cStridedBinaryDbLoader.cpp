#include "readers/cStridedBinaryDbLoader.h"

#include <algorithm>

#include "model/cCurvePlotVariable.h"
#include "model/cFileDbSupport.h"
#include "readers/scan/cCurvePlotParserBin.h"
#include "readers/scan/stridedColumns.h"

namespace vx3 {

using namespace curvePlotProperties;

unsigned cStridedBinaryDbLoader::valueWidth(unsigned dataType)
{
    switch (dataType) {
    case data_double: case int_64: case uint_64: case float_complex: return 8;
    case data_float: case int_32: case uint_32: return 4;
    case double_complex: case int_128: return 16;
    case int_16: case uint_16: return 2;
    case int_8: case uint_8: return 1;
    default: return 0;
    }
}

void cStridedBinaryDbLoader::swapBytes(char* values, uint64_t count, unsigned dataType) const
{
    using curvePlotParserBin::byteSwap;
    // Complex values swap each part on its own.
    const unsigned width = valueWidth(dataType);
    const unsigned part = dataType == double_complex ? 8 : dataType == float_complex ? 4 : width;
    const uint64_t parts = count * (width / part);
    for (uint64_t i = 0; i < parts; ++i) {
        char* p = values + i * part;
        if (part == 8) {
            uint64_t v;
            std::memcpy(&v, p, 8);
            v = byteSwap(v);
            std::memcpy(p, &v, 8);
        } else if (part == 4) {
            uint32_t v;
            std::memcpy(&v, p, 4);
            v = byteSwap(v);
            std::memcpy(p, &v, 4);
        } else if (part == 2) {
            uint16_t v;
            std::memcpy(&v, p, 2);
            v = byteSwap(v);
            std::memcpy(p, &v, 2);
        } else if (part == 16) {
            for (int b = 0; b < 8; ++b)
                std::swap(p[b], p[15 - b]);
        }
    }
}

template <class File>
int cStridedBinaryDbLoader::load(cCurveLoadRequest& request, cBitWiseParser<File>& file, std::string& error)
{
    cCurvePlotVariable& variable = request.variable;
    const unsigned width = valueWidth(request.dataType);
    if (!width) {
        error = "values of type \"" + std::string(dataTypeToString(request.dataType)) + "\" are not stored this way";
        return 3;
    }
    const uint64_t stride = variable.getDbStride() ? variable.getDbStride() : width;
    const uint64_t capacity = variable.getAllocatedSize() / width;
    uint64_t loaded = 0;
    for (uint64_t entry = 0; entry < variable.getNbOfDbEntries(); ++entry) {
        uint64_t position = 0, count = 0;
        variable.getDbEntry(entry, position, count);
        count = std::min(count, capacity - loaded);
        if (!count)
            break;
        if (!file.readStrided(position, stride, width, count, variable.data() + loaded * width)) {
            error = file.getErrorMessage();
            return 3;
        }
        loaded += count;
    }
    if (mBigEndian)
        swapBytes(variable.data(), loaded, request.dataType);
    variable.setUsedValueCount(loaded);
    return 0;
}

int cStridedBinaryDbLoader::loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxMemoryFile>& file,
                                       std::string& error)
{
    return load(request, file, error);
}

int cStridedBinaryDbLoader::loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxBinFile>& file,
                                       std::string& error)
{
    return load(request, file, error);
}

int cStridedBinaryDbLoader::loadSeveral(std::vector<cCurveLoadRequest*>& requests, cFileDbSupport& file,
                                        unsigned threads, std::string& error)
{
    if (requests.empty())
        return 0;
    // One row layout for all: one chunk each, the same count and stride, columns inside a row.
    const cCurvePlotVariable& first = requests.front()->variable;
    const uint64_t stride = first.getDbStride();
    uint64_t base = UINT64_MAX, count = 0;
    bool oneLayout = stride > 0;
    for (cCurveLoadRequest* request : requests) {
        uint64_t position = 0, size = 0;
        const cCurvePlotVariable& variable = request->variable;
        oneLayout = oneLayout && variable.getNbOfDbEntries() == 1 && variable.getDbStride() == stride &&
                    valueWidth(request->dataType) && variable.getDbEntry(0, position, size) &&
                    (count == 0 || size == count);
        count = size;
        base = std::min(base, position);
    }
    // The row window ends where the last requested column ends: a window starting at the first
    // column would reach past the end of the file by the columns before it (the x axis, say).
    uint64_t lastEnd = 0;
    for (cCurveLoadRequest* request : requests) {
        uint64_t position = 0, size = 0;
        request->variable.getDbEntry(0, position, size);
        lastEnd = std::max(lastEnd, position + valueWidth(request->dataType));
    }
    oneLayout = oneLayout && lastEnd - base <= stride;
    if (oneLayout)
        base = lastEnd > stride ? lastEnd - stride : 0;
    std::vector<stridedColumns::cColumn> columns;
    for (cCurveLoadRequest* request : requests) {
        if (!oneLayout)
            break;
        uint64_t position = 0, size = 0;
        request->variable.getDbEntry(0, position, size);
        const unsigned width = valueWidth(request->dataType);
        oneLayout = position - base + width <= stride && request->variable.getAllocatedSize() >= count * width;
        columns.push_back({position - base, width, request->variable.data()});
    }
    if (!oneLayout)
        return cCurveDbLoader::loadSeveral(requests, file, threads, error);
    bool done = false;
    if (cVxMemoryFile* mapped = file.memoryFileHandle())
        done = stridedColumns::extract(*mapped, base, stride, count, columns, threads, error);
    else if (cVxBinFile* binary = file.binaryFileHandle())
        done = stridedColumns::extract(*binary, base, stride, count, columns, threads, error);
    else
        error = "The file \"" + file.fileName() + "\" is not open.";
    if (!done)
        return 3;
    for (cCurveLoadRequest* request : requests) {
        if (mBigEndian)
            swapBytes(request->variable.data(), count, request->dataType);
        request->variable.setUsedValueCount(count);
    }
    return 0;
}

}  // namespace vx3
