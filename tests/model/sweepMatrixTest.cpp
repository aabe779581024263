// The cut layout of sweep matrices, checked against numpy's C-order ravel/unravel.
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "../base/testSupport.h"
#include "model/cCurvePlotDataFile.h"

using namespace vx3;

namespace {

// Runs the script with the system interpreter and returns what it printed.
std::string runPython(const std::string& script)
{
    zwtest::cTempDir dir("zw_sweep_");
    const std::string path = dir.file("oracle.py");
    FILE* file = std::fopen(path.c_str(), "w");
    if (!file)
        return std::string();
    std::fputs(script.c_str(), file);
    std::fclose(file);
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(("/usr/bin/python3 " + path).c_str(), "r"), pclose);
    if (!pipe)
        return std::string();
    std::string output;
    char buffer[4096];
    size_t read;
    while ((read = std::fread(buffer, 1, sizeof(buffer), pipe.get())) > 0)
        output.append(buffer, read);
    return output;
}

// Random shapes and permutations; for each, flat indices of random points (R lines) and the
// sweep indices of every cut (U lines). Sweep indices are listed by sweep number.
const char* const kOracle = R"PY(
import numpy as np
rng = np.random.default_rng(20240611)
cases = []
for _ in range(60):
    n = int(rng.integers(2, 6))
    sizes = [int(s) for s in rng.integers(1, 6, size=n)]
    cases.append((sizes, [int(p) for p in rng.permutation(n)]))
# one shape whose cut count passes 2**32
cases.append(([70000, 3, 70000], [2, 0, 1]))
for sizes, perm in cases:
    n = len(sizes)
    print('CASE', ' '.join(map(str, sizes)), '|', ' '.join(map(str, perm)))
    cut_shape = tuple(sizes[perm[k]] for k in range(n - 1))
    xsize = sizes[perm[n - 1]]
    for _ in range(25):
        idx = [int(rng.integers(0, s)) for s in sizes]
        v = int(rng.integers(0, xsize))
        multi = tuple([v] + [idx[perm[k]] for k in range(n - 1)])
        flat = int(np.ravel_multi_index(multi, (xsize,) + cut_shape))
        print('R', v, ' '.join(map(str, idx)), flat)
    ncuts = int(np.prod(np.array(cut_shape, dtype=np.int64)))
    cuts = range(ncuts) if ncuts <= 200 else [int(c) for c in rng.integers(0, ncuts, size=50)] + [ncuts - 1]
    for cut in cuts:
        parts = np.unravel_index(cut, cut_shape)
        idx = [0] * n
        for k in range(n - 1):
            idx[perm[k]] = int(parts[k])
        print('U', cut, ' '.join(map(str, idx)))
    print('N', int(np.prod(np.array(sizes[:-1], dtype=np.int64))))
)PY";

struct cSectionWithSweeps {
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = nullptr;

    explicit cSectionWithSweeps(const std::vector<uint64_t>& sizes)
    {
        section = store.addDataSection("matrix");
        const cCurvePlotDataType* type = store.addType("p", data_double_t(), curvePlotDataType::no_unit);
        for (size_t i = 0; i < sizes.size(); ++i) {
            section->addSweepVariable(type, "s" + std::to_string(i), static_cast<int>(i));
            section->getSweepVariable(i).setValueCount(sizes[i]);
        }
    }
    static curvePlotProperties::data_type data_double_t() { return curvePlotProperties::data_double; }
};

}  // namespace

TEST(SweepMatrix, CutIndicesMatchNumpyRavelAndUnravel)
{
    ASSERT_EQ(zwtest::missingPythonModules("numpy"), "");
    const std::string output = runPython(kOracle);
    ASSERT_FALSE(output.empty()) << "the numpy oracle produced nothing";
    std::istringstream lines(output);
    std::string line;
    std::unique_ptr<cSectionWithSweeps> current;
    std::vector<uint64_t> permutation;
    uint64_t cases = 0, ravelChecks = 0, unravelChecks = 0;
    while (std::getline(lines, line)) {
        std::istringstream in(line);
        std::string tag;
        in >> tag;
        if (tag == "CASE") {
            std::vector<uint64_t> sizes;
            std::string token;
            while (in >> token && token != "|")
                sizes.push_back(std::stoull(token));
            permutation.clear();
            uint64_t p;
            while (in >> p)
                permutation.push_back(p);
            current = std::make_unique<cSectionWithSweeps>(sizes);
            ++cases;
            continue;
        }
        ASSERT_TRUE(current);
        const uint64_t n = permutation.size();
        if (tag == "R") {
            uint64_t valueIndex, flat;
            std::vector<uint64_t> indices(n);
            in >> valueIndex;
            for (auto& index : indices)
                in >> index;
            in >> flat;
            EXPECT_EQ(current->section->computeSweepMatrixCurveIndex(valueIndex, permutation, indices), flat) << line;
            ++ravelChecks;
        } else if (tag == "U") {
            uint64_t cut;
            std::vector<uint64_t> expected(n), indices;
            in >> cut;
            for (auto& index : expected)
                in >> index;
            EXPECT_TRUE(current->section->computeSweepIndicesForCut(cut, permutation, indices)) << line;
            EXPECT_EQ(indices, expected) << line;
            ++unravelChecks;
        } else if (tag == "N") {
            uint64_t cuts;
            in >> cuts;
            EXPECT_EQ(current->section->computeNbOfCutsPerCurve(), cuts) << "all sweeps but the last of the default order";
        }
    }
    EXPECT_EQ(cases, 61u);
    EXPECT_EQ(ravelChecks, 61u * 25u);
    EXPECT_GT(unravelChecks, 61u);
}

TEST(SweepMatrix, CutsBeyondThirtyTwoBitsAreExact)
{
    cSectionWithSweeps data({100000, 100000, 7});
    const std::vector<uint64_t> permutation = {0, 1, 2};
    EXPECT_EQ(data.section->computeNbOfCutsPerCurve(), 10000000000ull);
    std::vector<uint64_t> indices;
    ASSERT_TRUE(data.section->computeSweepIndicesForCut(9999999999ull, permutation, indices));
    EXPECT_EQ(indices, (std::vector<uint64_t>{99999, 99999, 0}));
    // x index 6 lies 6 * 10^10 samples in.
    EXPECT_EQ(data.section->computeSweepMatrixCurveIndex(6, permutation, indices), 6ull * 10000000000ull + 9999999999ull);
    EXPECT_FALSE(data.section->computeSweepIndicesForCut(10000000000ull, permutation, indices))
        << "a cut index past the last cut is not used up";
}

TEST(SweepMatrix, DegenerateShapes)
{
    cSectionWithSweeps none({});
    EXPECT_EQ(none.section->computeNbOfCutsPerCurve(), 1u) << "no sweep: one cut";
    EXPECT_EQ(none.section->computeSweepMatrixCurveIndex(17, {}, {}), 17u) << "addressed with an empty sweep vector";
    std::vector<uint64_t> indices;
    EXPECT_FALSE(none.section->computeSweepIndicesForCut(0, {}, indices));

    cSectionWithSweeps one({5});
    EXPECT_EQ(one.section->computeNbOfCutsPerCurve(), 1u);
    EXPECT_EQ(one.section->computeSweepMatrixCurveIndex(3, {0}, {2}), 3u);

    cSectionWithSweeps two({4, 10});
    EXPECT_EQ(two.section->computeSweepMatrixCurveIndex(3, {0}, {1, 0}), 3u) << "wrong permutation length";
    EXPECT_EQ(two.section->computeSweepMatrixCurveIndex(3, {0, 1}, {1}), 3u) << "wrong index vector length";
    EXPECT_FALSE(two.section->computeSweepIndicesForCut(1, {0}, indices));

    // A sweep's size falls back to used bytes / element size.
    cSectionWithSweeps bytes({0, 3});
    const double values[] = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
    bytes.section->getSweepVariable(0).setDoubleValues(values, 6);
    EXPECT_EQ(bytes.section->getSweepVariableSize(0), 6u);
    EXPECT_EQ(bytes.section->computeNbOfCutsPerCurve(), 6u);
    bytes.section->getSweepVariable(0).setElementSize(0);
    EXPECT_EQ(bytes.section->getSweepVariableSize(0), 0u) << "element size 0 gives size 0, no division";
}
