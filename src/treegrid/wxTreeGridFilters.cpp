#include "treegrid/wxTreeGridFilters.h"

#include <algorithm>

#include "base/cLoggedException.h"

namespace vx3 {

wxTreeGridFilters::wxFilter& wxTreeGridFilters::filterAt(unsigned col)
{
    if (col >= mFilters.size())
        throw cLoggedException("wxTreeGridFilters : column " + std::to_string(col) + " out of range (" +
                               std::to_string(mFilters.size()) + " columns)");
    return mFilters[col];
}

const wxTreeGridFilters::wxFilter& wxTreeGridFilters::getFilter(unsigned col) const
{
    return const_cast<wxTreeGridFilters*>(this)->filterAt(col);
}

void wxTreeGridFilters::addDiscreteFilterText(unsigned col, const std::string& text)
{
    wxFilter& filter = filterAt(col);
    filter.allowedTexts.insert(text);
    filter.discreteActive = true;
}

void wxTreeGridFilters::setNumericalFilter(unsigned col, const wxNumericalFilter& bounds)
{
    wxFilter& filter = filterAt(col);
    filter.interval = {bounds.minimumReal, bounds.maximumReal, bounds.minimumImaginary, bounds.maximumImaginary};
    // All bounds open: the filter lets everything through, so it does not count as active.
    filter.numericalActive = std::any_of(filter.interval.begin(), filter.interval.end(),
                                         [](double v) { return !std::isnan(v); });
}

void wxTreeGridFilters::setFilterInverted(unsigned col, bool inverted)
{
    filterAt(col).inverted = inverted;
}

void wxTreeGridFilters::clearFilters(unsigned col)
{
    filterAt(col) = wxFilter();
}

void wxTreeGridFilters::clearAllFilters()
{
    for (auto& filter : mFilters)
        filter = wxFilter();
}

bool wxTreeGridFilters::checkAnyColumnIsFiltered() const
{
    return std::any_of(mFilters.begin(), mFilters.end(), [](const wxFilter& f) { return f.checkIsActive(); });
}

bool wxTreeGridFilters::checkIncludedByNumericalFilterInterval(const wxFilter& filter, double real, double imaginary)
{
    auto inside = [](double value, double minimum, double maximum) {
        if (!std::isnan(maximum) && value > maximum)
            return false;
        if (!std::isnan(minimum) && value < minimum)
            return false;
        return true;
    };
    const auto& b = filter.interval;
    if (b.size() < 2)
        return true;
    if (!inside(real, b[0], b[1]))
        return false;
    if (b.size() >= 4 && !std::isnan(imaginary))
        return inside(imaginary, b[2], b[3]);
    return true;
}

bool wxTreeGridFilters::checkFilteredByNumericalFilter(unsigned col, double real, double imaginary) const
{
    const wxFilter& filter = getFilter(col);
    if (!filter.numericalActive || filter.interval.size() < 2)
        return false;
    const bool included = checkIncludedByNumericalFilterInterval(filter, real, imaginary);
    return filter.inverted ? included : !included;
}

bool wxTreeGridFilters::checkFilteredByDiscreteFilter(unsigned col, const std::string& text) const
{
    const wxFilter& filter = getFilter(col);
    if (!filter.discreteActive)
        return false;
    const bool included = filter.allowedTexts.count(text) != 0;
    return filter.inverted ? included : !included;
}

}  // namespace vx3
