// Compares two CSV files cell by cell: numbers within a relative tolerance, text exactly.
// Used by regression scripts that check what the viewer exported.
#pragma once

#include <string>

namespace vx3 {

class cVxLogger;

class cCsvFileComparison {
public:
    explicit cCsvFileComparison(double relativeTolerance = 1e-9) : mTolerance(relativeTolerance) {}
    // Logs "File comparison for "<a>" succeeded." or "... failed." with the first difference.
    bool compare(const std::string& first, const std::string& second, const cVxLogger& logger) const;

private:
    bool cellsMatch(const std::string& a, const std::string& b) const;
    double mTolerance;
};

}  // namespace vx3
