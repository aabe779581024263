// The settings of one analysis as plain vectors: doubles, 64-bit integers, integers and flags.
// Each analysis gives the entries names (cFFTAnalysisOptions); sessions store the vectors as
// they are, so that an analysis can read settings saved by an older or newer version.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vx3 {

class cAnalysisOptions {
public:
    cAnalysisOptions() = default;
    cAnalysisOptions(uint64_t doubles, uint64_t int64s, uint64_t ints, uint64_t flags) { resize(doubles, int64s, ints, flags); }

    // Grows (never shrinks) each vector to at least the given size; new entries are 0 and false.
    void resize(uint64_t doubles, uint64_t int64s, uint64_t ints, uint64_t flags);
    // Every entry to 0 and false; the sizes stay.
    void setZero();

    // Out-of-range reads give 0 or false; out-of-range writes grow the vector.
    double getDouble(uint64_t index) const { return index < mDoubles.size() ? mDoubles[index] : 0.0; }
    int64_t getInt64(uint64_t index) const { return index < mInt64s.size() ? mInt64s[index] : 0; }
    int getInt(uint64_t index) const { return index < mInts.size() ? mInts[index] : 0; }
    bool getFlag(uint64_t index) const { return index < mFlags.size() && mFlags[index]; }
    void setDouble(uint64_t index, double value);
    void setInt64(uint64_t index, int64_t value);
    void setInt(uint64_t index, int value);
    void setFlag(uint64_t index, bool value);

    const std::vector<double>& doubles() const { return mDoubles; }
    const std::vector<int64_t>& int64s() const { return mInt64s; }
    const std::vector<int>& ints() const { return mInts; }
    const std::vector<bool>& flags() const { return mFlags; }

    // The name of the result curve, when the caller chooses it.
    const std::string& getResultCurveName() const { return mResultCurveName; }
    void setResultCurveName(const std::string& name) { mResultCurveName = name; }

    bool operator==(const cAnalysisOptions& other) const = default;

private:
    std::vector<double> mDoubles;
    std::vector<int64_t> mInt64s;
    std::vector<int> mInts;
    std::vector<bool> mFlags;
    std::string mResultCurveName;
};

}  // namespace vx3
