// Curve values: loading a 1 GB curve from a mapped file that is in the page cache, extracting a
// strided column (alone and all columns in one pass), and sequential interpolated lookups.
// Baselines in the same run: `cat file > /dev/null` for the loads, a binary search per query
// for the lookups.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"
#include "model/curveValueLookup.h"
#include "readers/cStridedBinaryDbLoader.h"

using namespace vx3;
using namespace vx3::curvePlotProperties;

namespace {

double seconds(std::chrono::steady_clock::duration d) { return std::chrono::duration<double>(d).count(); }

double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Each way of reading values at rising x in a function of its own, as a plot's drawing loop calls
// the lookups: the sum of the values keeps the work from being optimised away.
__attribute__((noinline)) double cursorLookups(const double* xs, const double* ys, uint64_t points,
                                               const std::vector<double>& targets, const cDerivedCurveFunction& plain)
{
    uint64_t cursor = 0;
    double sum = 0;
    for (const double target : targets) {
        double out = 0;
        curvePlotVariable::computeInterpolatedValueIncreasing(target, xs, ys, points, cursor, out, plain);
        sum += out;
    }
    return sum;
}

__attribute__((noinline)) double binarySearchLookups(const double* xs, const double* ys, uint64_t points,
                                                     const std::vector<double>& targets)
{
    double sum = 0;
    for (const double target : targets) {
        const uint64_t i = std::upper_bound(xs, xs + points, target) - xs - 1;
        const double t = (target - xs[i]) / (xs[i + 1] - xs[i]);
        sum += ys[i] + (ys[i + 1] - ys[i]) * t;
    }
    return sum;
}

bool writeFile(const std::string& name, uint64_t doubles)
{
    FILE* file = std::fopen(name.c_str(), "wb");
    if (!file)
        return false;
    std::vector<double> block(1 << 20);
    for (uint64_t done = 0; done < doubles; done += block.size()) {
        const uint64_t n = std::min<uint64_t>(block.size(), doubles - done);
        for (uint64_t i = 0; i < n; ++i)
            block[i] = static_cast<double>(done + i);
        if (std::fwrite(block.data(), 8, n, file) != n)
            return false;
    }
    return std::fclose(file) == 0;
}

double timeCat(const std::string& name)
{
    const auto start = std::chrono::steady_clock::now();
    if (std::system(("cat " + name + " > /dev/null").c_str()) != 0)
        std::exit(3);
    return seconds(std::chrono::steady_clock::now() - start);
}

void report(const char* name, double seconds, double baseline, double megabytes, const char* what)
{
    std::printf("%s: %.0f MB/s; baseline: %.0f MB/s (%s); ratio: %.3f\n", name, megabytes / seconds,
                megabytes / baseline, what, baseline / seconds);
}

}  // namespace

int main(int argc, char** argv)
{
    const uint64_t megabytes = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1024;
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 5;
    const uint64_t doubles = megabytes << 17;
    const std::string packed = "/tmp/zelwave-bench-curve.raw";
    if (!writeFile(packed, doubles))
        return 1;
    curveDbLoaders::registerLoader(fileDbSupport::nutmeg_binary_7, std::make_shared<cStridedBinaryDbLoader>());
    cVxLogger logger;
    cCurvePlotDataFile store;
    const cCurvePlotDataType* type = store.addType("V", data_double, curvePlotDataType::volt);
    cFileDbSupport& file = store.findDbSupport(packed, fileDbSupport::nutmeg_binary_7);
    cCurvePlotDataSection* section = store.addDataSection(file);
    {
        cCurvePlotVariable& v = section->getVariable(section->addVariable(type, "all"));
        v.setFile(&file);
        v.setDbSize(doubles);
        v.addDbEntry(0, doubles);
    }
    // Rows of 8 values: column c of row r at (r * 8 + c) * 8.
    const uint64_t columns = 8, rows = doubles / columns;
    for (uint64_t c = 0; c < columns; ++c) {
        cCurvePlotVariable& v = section->getVariable(section->addVariable(type, "c" + std::to_string(c)));
        v.setFile(&file);
        v.setDbSize(rows);
        v.setDbStride(columns * 8);
        v.addDbEntry(c * 8, rows);
    }
    timeCat(packed);  // into the page cache

    std::vector<double> catTimes, loadTimes, columnTimes, allColumnTimes;
    for (int round = 0; round < rounds; ++round) {
        catTimes.push_back(timeCat(packed));

        cCurvePlotVariable& all = section->getVariable(0);
        auto start = std::chrono::steady_clock::now();
        if (all.loadDataFromDb(logger, section, 0) != ok || all.getVectorSize() != doubles)
            return 2;
        loadTimes.push_back(seconds(std::chrono::steady_clock::now() - start));
        if (all.doubleValues()[doubles - 1] != static_cast<double>(doubles - 1))
            return 4;
        all.releaseDb();

        cCurvePlotVariable& third = section->getVariable(4);
        start = std::chrono::steady_clock::now();
        if (third.loadDataFromDb(logger, section, 4) != ok || third.getVectorSize() != rows)
            return 2;
        columnTimes.push_back(seconds(std::chrono::steady_clock::now() - start));
        if (third.doubleValues()[rows - 1] != static_cast<double>((rows - 1) * columns + 3))
            return 4;
        third.releaseDb();

        start = std::chrono::steady_clock::now();
        if (cCurvePlotVariable::loadDataFromDbParallel(logger, *section, {1, 2, 3, 4, 5, 6, 7, 8}, 2) != ok)
            return 2;
        allColumnTimes.push_back(seconds(std::chrono::steady_clock::now() - start));
        if (section->getVariable(8).doubleValues()[rows - 1] != static_cast<double>(rows * columns - 1))
            return 4;
        section->collectGarbage();
    }
    std::remove(packed.c_str());
    const double cat = medianOf(catTimes);
    const double size = static_cast<double>(megabytes);
    report("load_packed_curve", medianOf(loadTimes), cat, size, "cat file > /dev/null");
    report("load_strided_column", medianOf(columnTimes), cat, size, "cat of the same bytes");
    report("load_all_columns_one_pass_2_threads", medianOf(allColumnTimes), cat, size, "cat of the same bytes");

    // Interpolated lookups: 10^8 points, ten million queries in rising order, over the block of a
    // parameterized curve as the store holds it (x half, then y half).
    const uint64_t points = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 100000000;
    const uint64_t queries = 10000000;
    cCurvePlotData curve;
    if (!curve.setParameterizedSize(points, sizeof(double), sizeof(double)))
        return 6;
    double* xs = reinterpret_cast<double*>(curve.parameterizedXData());
    double* ys = reinterpret_cast<double*>(curve.parameterizedYData());
    std::vector<double> targets(queries);
    std::mt19937_64 random(9);
    std::uniform_real_distribution<double> step(0.5, 1.5);
    double x = 0;
    for (uint64_t i = 0; i < points; ++i) {
        x += step(random);
        xs[i] = x;
        ys[i] = std::sin(1e-3 * static_cast<double>(i));
    }
    curve.setUsedValueCount(points);
    for (uint64_t q = 0; q < queries; ++q)
        targets[q] = xs[0] + (xs[points - 1] - xs[0]) * (static_cast<double>(q) + 0.5) / static_cast<double>(queries);
    std::vector<double> lookupTimes, searchTimes;
    double checksum[2] = {0, 0};
    const cDerivedCurveFunction plain;
    // The rounds of each way run in a block of their own: right after a pass of binary searches
    // the streaming lookups ran about 30 % slower here (85 against 105 to 140 ms).
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        checksum[0] = cursorLookups(xs, ys, points, targets, plain);
        lookupTimes.push_back(seconds(std::chrono::steady_clock::now() - start));
    }
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        checksum[1] = binarySearchLookups(xs, ys, points, targets);
        searchTimes.push_back(seconds(std::chrono::steady_clock::now() - start));
    }
    if (std::fabs(checksum[0] - checksum[1]) > 1e-6 * queries)
        return 5;
    const double lookup = medianOf(lookupTimes), search = medianOf(searchTimes);
    std::printf("interpolated_lookups: %.1f ms for %llu queries on %llu points; baseline: %.1f ms (binary search "
                "per query); ratio: %.3f\n",
                lookup * 1e3, static_cast<unsigned long long>(queries), static_cast<unsigned long long>(points),
                search * 1e3, search / lookup);
    return 0;
}
