// The filters of a grid's columns: a discrete filter (the set of texts that may show) and a
// numerical interval on the real and imaginary part, each optional, with an inverting flag.
#pragma once

#include <cmath>
#include <set>
#include <string>
#include <vector>

namespace vx3 {

namespace treeGridFilters {

// Bounds of a numerical filter; NaN is an open bound.
struct wxNumericalFilter {
    double minimumReal = std::nan("");
    double maximumReal = std::nan("");
    double minimumImaginary = std::nan("");
    double maximumImaginary = std::nan("");
};

struct wxFilter {
    bool inverted = false;
    // minimum real, maximum real and optionally minimum and maximum imaginary; fewer than two
    // entries: no numerical filter.
    std::vector<double> interval;
    std::set<std::string> allowedTexts;
    bool discreteActive = false;
    bool numericalActive = false;
    bool checkIsActive() const { return discreteActive || numericalActive; }
};

}  // namespace treeGridFilters

class wxTreeGridFilters {
public:
    using wxFilter = treeGridFilters::wxFilter;
    using wxNumericalFilter = treeGridFilters::wxNumericalFilter;

    // One filter per column of the model; existing filters of kept columns stay.
    void resizeFilters(unsigned columns) { mFilters.resize(columns); }
    unsigned getNumberOfFilterColumns() const { return unsigned(mFilters.size()); }

    // The texts a discrete filter lets through; several calls build up the set.
    void addDiscreteFilterText(unsigned col, const std::string& text);
    void setNumericalFilter(unsigned col, const wxNumericalFilter& bounds);
    void setFilterInverted(unsigned col, bool inverted);
    void clearFilters(unsigned col);
    void clearAllFilters();
    const wxFilter& getFilter(unsigned col) const;
    bool checkColumnIsFiltered(unsigned col) const { return getFilter(col).checkIsActive(); }
    bool checkAnyColumnIsFiltered() const;

    // Whether value lies in the bounds: not above a given maximum, not below a given minimum;
    // with an imaginary part both parts must lie in.
    static bool checkIncludedByNumericalFilterInterval(const wxFilter& filter, double real,
                                                       double imaginary = std::nan(""));
    // Whether the column's numerical filter removes value (true: the row goes).
    bool checkFilteredByNumericalFilter(unsigned col, double real, double imaginary = std::nan("")) const;
    // Whether the column's discrete filter removes text.
    bool checkFilteredByDiscreteFilter(unsigned col, const std::string& text) const;

private:
    wxFilter& filterAt(unsigned col);
    std::vector<wxFilter> mFilters;
};

}  // namespace vx3
