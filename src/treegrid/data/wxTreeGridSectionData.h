// What one section gives a table page: its curves as columns of (x, y) samples in rising x.
// Calculator columns live in a section of their own, without a section of the store behind it.
#pragma once

#include <complex>
#include <cstdint>
#include <string>
#include <vector>

namespace vx3 {

struct wxTreeGridDataColumn {
    std::string name;       // the curve's name, or the expression as typed
    std::string reference;  // the calculator text that stands for the column
    bool calculated = false;
    bool complex = false;
    std::vector<double> xs;  // rising
    std::vector<double> ys;  // real parts
    std::vector<double> imag;

    // The index of the sample at x (within a relative tolerance), or npos.
    size_t findSample(double x) const;
    // The sample at x, or between its neighbours by linear interpolation; false outside the
    // curve's range.
    bool interpolate(double x, double& re, double& im) const;
    static constexpr size_t npos = size_t(-1);
};

class wxTreeGridSectionData {
public:
    wxTreeGridSectionData(uint64_t sectionId, std::string name) : mSectionId(sectionId), mName(std::move(name)) {}

    // 0 for the section of calculator columns.
    uint64_t getSectionId() const { return mSectionId; }
    const std::string& name() const { return mName; }
    std::vector<wxTreeGridDataColumn>& columns() { return mColumns; }
    const std::vector<wxTreeGridDataColumn>& columns() const { return mColumns; }

private:
    uint64_t mSectionId;
    std::string mName;
    std::vector<wxTreeGridDataColumn> mColumns;
};

// Two x values that name the same row: equal to 12 significant digits, as files written with
// different precisions of the same grid are.
bool checkSameRowX(double a, double b);

}  // namespace vx3
