// Binary Spice raw files: opening a file of 2 GB against one of 2 MB (only the header and a
// sample of rows are read, so the times should match), loading one of 100 curves against
// "cat file > /dev/null" in the same run, and the resident memory after opening against the
// file's size. The files are written at the start and deleted at the end.
// usage: bench_raw_read [FOLDER] [BIG_MB]   (defaults: /tmp, 2100)
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"
#include "readers/cCurvePlotParser.h"

namespace {

constexpr unsigned kCurves = 100;
constexpr unsigned kRounds = 5;

double now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

long residentKb()
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmRSS:", 0) == 0)
            return std::atol(line.c_str() + 6);
    return -1;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// A transient of kCurves curves over rows rows, written in blocks.
bool writeRaw(const std::string& name, uint64_t rows)
{
    FILE* file = std::fopen(name.c_str(), "wb");
    if (!file)
        return false;
    std::string header = "Title: benchmark\nDate: today\nPlotname: Transient Analysis\nFlags: real\nNo. Variables: " +
                         std::to_string(kCurves + 1) + "\nNo. Points: " + std::to_string(rows) + "\nVariables:\n\t0\ttime\ttime\n";
    for (unsigned c = 1; c <= kCurves; ++c)
        header += "\t" + std::to_string(c) + "\tv(n" + std::to_string(c) + ")\tvoltage\n";
    header += "Binary:\n";
    std::fwrite(header.data(), 1, header.size(), file);
    const uint64_t blockRows = 8192;
    std::vector<double> block(blockRows * (kCurves + 1));
    for (uint64_t first = 0; first < rows; first += blockRows) {
        const uint64_t count = std::min(blockRows, rows - first);
        for (uint64_t r = 0; r < count; ++r) {
            const double t = static_cast<double>(first + r) * 1e-10;
            block[r * (kCurves + 1)] = t;
            for (unsigned c = 1; c <= kCurves; ++c)
                block[r * (kCurves + 1) + c] = std::sin(t * 1e7 * c);
        }
        if (std::fwrite(block.data(), sizeof(double) * (kCurves + 1), count, file) != count) {
            std::fclose(file);
            return false;
        }
    }
    return std::fclose(file) == 0;
}

double openSeconds(const std::string& name, long* rssKb = nullptr)
{
    vx3::cCurvePlotDataFile store;
    vx3::cCurvePlotParser parser;
    const double start = now();
    const vx3::returnCode code = parser.parse(store, name);
    const double seconds = now() - start;
    if (code != vx3::ok) {
        std::fprintf(stderr, "bench_raw_read: %s could not be opened (%d)\n", name.c_str(), static_cast<int>(code));
        std::exit(1);
    }
    if (rssKb)
        *rssKb = residentKb();
    return seconds;
}

void report(const char* name, double value, const char* unit, double baseline, const char* baselineUnit, double ratio)
{
    std::printf("%s: %.4g %s; baseline: %.4g %s; ratio: %.3g\n", name, value, unit, baseline, baselineUnit, ratio);
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string folder = argc > 1 ? argv[1] : "/tmp";
    const double bigMb = argc > 2 ? std::atof(argv[2]) : 2100.0;
    const std::string big = folder + "/bench_raw_big_" + std::to_string(::getpid()) + ".raw";
    const std::string small = folder + "/bench_raw_small_" + std::to_string(::getpid()) + ".raw";
    const uint64_t rowBytes = sizeof(double) * (kCurves + 1);
    const uint64_t bigRows = static_cast<uint64_t>(bigMb * 1e6 / static_cast<double>(rowBytes));
    const uint64_t smallRows = static_cast<uint64_t>(2e6 / static_cast<double>(rowBytes));
    const long rssBefore = residentKb();
    if (!writeRaw(big, bigRows) || !writeRaw(small, smallRows)) {
        std::fprintf(stderr, "bench_raw_read: could not write the files in %s\n", folder.c_str());
        std::remove(big.c_str());
        std::remove(small.c_str());
        return 1;
    }
    const double bigBytes = static_cast<double>(bigRows * rowBytes);
    std::printf("files: %.0f MB and %.1f MB, %u curves\n", bigBytes / 1e6, static_cast<double>(smallRows * rowBytes) / 1e6,
                kCurves);

    // Opening: the header and a sample of rows.
    long rssAfterOpen = 0;
    std::vector<double> bigOpen, smallOpen;
    for (unsigned round = 0; round < kRounds; ++round) {
        bigOpen.push_back(openSeconds(big, round == 0 ? &rssAfterOpen : nullptr));
        smallOpen.push_back(openSeconds(small));
    }
    const double bigMs = median(bigOpen) * 1e3, smallMs = median(smallOpen) * 1e3;
    report("open 2 GB file", bigMs, "ms", smallMs, "ms (2 MB file)", bigMs / smallMs);
    const double rssBytes = static_cast<double>(rssAfterOpen) * 1024.0;
    report("resident memory after opening", rssBytes / 1e6, "MB", bigBytes / 1e6, "MB (file size)", rssBytes / bigBytes);
    std::printf("  (resident before writing the files: %.1f MB)\n", static_cast<double>(rssBefore) * 1024.0 / 1e6);

    // One curve against reading the whole file with cat, alternating, in the same run.
    vx3::cCurvePlotDataFile store;
    vx3::cCurvePlotParser parser;
    if (parser.parse(store, big) != vx3::ok)
        return 1;
    vx3::cCurvePlotDataSection& section = *store.getDataSectionFromIndex(0);
    const uint64_t index = section.findVariableIndex("v(n50)");
    vx3::cCurvePlotVariable& curve = section.getVariable(index);
    vx3::cVxLogger logger;
    std::vector<double> loads, cats;
    const std::string cat = "cat '" + big + "' > /dev/null";
    for (unsigned round = 0; round < kRounds; ++round) {
        double start = now();
        if (std::system(cat.c_str()) != 0)
            return 1;
        cats.push_back(now() - start);
        curve.releaseDb();
        start = now();
        if (curve.loadDataFromDb(logger, &section, index) != vx3::ok || curve.getVectorSize() != bigRows) {
            std::fprintf(stderr, "bench_raw_read: the curve could not be loaded\n");
            return 1;
        }
        loads.push_back(now() - start);
        // The values are the ones written: curve 50 of the last row.
        const double t = static_cast<double>(bigRows - 1) * 1e-10;
        if (curve.getDoubleValue(bigRows - 1) != std::sin(t * 1e7 * 50)) {
            std::fprintf(stderr, "bench_raw_read: the loaded values differ from the written ones\n");
            return 1;
        }
    }
    const double loadRate = bigBytes / 1e6 / median(loads), catRate = bigBytes / 1e6 / median(cats);
    report("load one curve of 100 (file bytes per second)", loadRate, "MB/s", catRate, "MB/s (cat file > /dev/null)",
           loadRate / catRate);
    std::printf("  (medians of %u rounds: load %.3f s, cat %.3f s)\n", kRounds, median(loads), median(cats));
    std::remove(big.c_str());
    std::remove(small.c_str());
    return 0;
}
