// The value change dump reader on its own: read in one sequential pass, read again in small
// pieces on two threads (which must give the same curves), and read with the values left in the
// file so that the block loader fetches them.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzzSupport.h"
#include "readers/cCurvePlotParser.h"
#include "readers/vcd/cCurveParserVcd.h"

namespace {

struct cRead {
    vx3::cCurvePlotDataFile store;
    vx3::returnCode code = vx3::failed;
};

// Reads path with the given threads and smallest piece; dbAccess leaves the values in the file.
void readDump(cRead& read, vx3::cCurvePlotParser& options, const std::string& path, unsigned threads,
              uint64_t minPiece, bool dbAccess)
{
    vx3::cCurveParserVcd reader(read.store, options);
    reader.setMaxThreads(threads);
    reader.setMinPieceSize(minPiece);
    reader.setMinimumSizeForDbAccess(dbAccess ? 1 : 0);
    read.code = options.parseFromFile(reader, read.store, path);
}

// The values of every curve as doubles, loaded if need be; sizes first.
std::string fingerprint(vx3::cCurvePlotDataFile& store, const vx3::cVxLogger& logger)
{
    std::string text;
    for (uint64_t s = 0; s < store.getNbOfDataSections(); ++s) {
        vx3::cCurvePlotDataSection* section = store.getDataSectionFromIndex(s);
        for (uint64_t v = 0; section && v < section->getNbOfVariables(); ++v) {
            vx3::cCurvePlotVariable& variable = section->getVariable(v);
            if (variable.loadDataFromDb(logger, section, v) != vx3::ok) {
                text += "unloaded;";
                continue;
            }
            text += std::to_string(variable.getValueCount()) + ":";
            for (uint64_t i = 0; i < variable.getValueCount(); ++i) {
                double value = 0;
                const bool found = variable.findCorresponingValue(*section, i, value);
                text += found ? std::to_string(value) + "@" + std::to_string(variable.computeXValue(*section, i)) : "-";
                text += ",";
            }
            text += ";";
        }
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string path = zwfuzz::scratch().write("input.vcd", data, size);
    zwfuzz::cQuietLogger quiet;
    vx3::cCurvePlotParser options;
    options.logger().setLoggerCallBack(&quiet);
    {
        cRead sequential, pieces;
        readDump(sequential, options, path, 1, uint64_t(1) << 40, false);
        readDump(pieces, options, path, 2, 64, false);
        if (sequential.code != pieces.code) {
            std::fprintf(stderr, "pieces on threads answer %d, one pass %d\n", int(pieces.code), int(sequential.code));
            std::abort();
        }
        if (sequential.code == vx3::ok &&
            fingerprint(sequential.store, options.logger()) != fingerprint(pieces.store, options.logger())) {
            std::fprintf(stderr, "pieces on threads give other curves than one pass\n");
            std::abort();
        }
    }
    {
        cRead inFile;
        readDump(inFile, options, path, 1, uint64_t(1) << 40, true);
        zwfuzz::touchEveryCurve(inFile.store, options.logger());
    }
    options.logger().setLoggerCallBack(nullptr);
    return 0;
}
