// Reads one table file through the reader dispatch, as open_file does, and prints the time, the
// peak resident memory and the number of values read, for bench/csv_read.py.
// usage: bench_csv_read FILE [fast|slow]
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "model/cCurvePlotDataFile.h"
#include "readers/cCurvePlotParser.h"

namespace {
long peakResidentKb()
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmHWM:", 0) == 0)
            return std::atol(line.c_str() + 6);
    return -1;
}
}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_csv_read FILE [fast|slow]\n");
        return 2;
    }
    vx3::cCurvePlotDataFile store;
    vx3::cCurvePlotParser parser;
    if (argc > 2)
        parser.setForcedParserType(std::strcmp(argv[2], "slow") == 0 ? vx3::curvePlotParser::tabulated_slow
                                                                     : vx3::curvePlotParser::tabulated_fast);
    const auto start = std::chrono::steady_clock::now();
    const vx3::returnCode code = parser.parse(store, argv[1]);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (code != vx3::ok) {
        std::fprintf(stderr, "bench_csv_read: code %d\n", static_cast<int>(code));
        return 1;
    }
    uint64_t values = 0;
    for (uint64_t s = 0; s < store.getNbOfDataSections(); ++s) {
        vx3::cCurvePlotDataSection* section = store.getDataSectionFromIndex(s);
        for (uint64_t k = 0; k < section->getNbOfSweepVariables(); ++k)
            values += section->getSweepVariable(k).getVectorSize();
        for (uint64_t c = 0; c < section->getNbOfVariables(); ++c)
            values += section->getVariable(c).getVectorSize();
    }
    std::printf("seconds=%.6f peak_kb=%ld values=%llu\n", seconds, peakResidentKb(),
                static_cast<unsigned long long>(values));
    return 0;
}
