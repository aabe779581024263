#include "treegrid/wxTreeGridFilterChoices.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "base/cVxString.h"

namespace vx3 {

namespace {

std::string boundText(const std::vector<double>& interval, size_t index)
{
    if (index >= interval.size() || std::isnan(interval[index]))
        return {};
    return cVxString::createFromNumber(interval[index]);
}

// Empty text: an open bound (NaN). False when the text is not a number.
bool parseBound(const std::string& text, double& value)
{
    const cVxString trimmed(vxString::trim(text));
    if (trimmed.empty()) {
        value = std::nan("");
        return true;
    }
    return trimmed.toDouble(value) && !std::isnan(value);
}

}  // namespace

wxTreeGridFilterChoices::wxTreeGridFilterChoices(wxTreeGridGeometry& grid, unsigned col) : mGrid(grid), mCol(col)
{
    wxTreeGridVirtual& model = grid.getModel();
    mLabel = model.treeGridVirtualGetColHeaderLabel(col);
    mAccepts = model.treeGridVirtualCheckIfColumnAcceptsFilters(col);
    mNumberColumn = model.treeGridVirtualGetColType(col) == treeGridVirtual::col_number;
    const unsigned rows = grid.getNumberOfTotalRows();
    if (mNumberColumn) {
        // Texts keyed by value, so that the list reads in numerical order; NaN goes last.
        std::map<double, std::string> byValue;
        std::set<std::string> undefined;
        for (unsigned row = 0; row < rows && byValue.size() + undefined.size() <= maxDistinctTexts; ++row) {
            const double value = model.treeGridVirtualGetDoubleValue(row, col);
            std::string text = model.treeGridVirtualGetValue(row, col);
            if (std::isnan(value))
                undefined.insert(std::move(text));
            else
                byValue.emplace(value, std::move(text));
        }
        for (auto& entry : byValue)
            mTexts.push_back(std::move(entry.second));
        mTexts.insert(mTexts.end(), undefined.begin(), undefined.end());
    } else {
        std::set<std::string> texts;
        for (unsigned row = 0; row < rows && texts.size() <= maxDistinctTexts; ++row)
            texts.insert(model.treeGridVirtualGetValue(row, col));
        mTexts.assign(texts.begin(), texts.end());
    }
    if (mTexts.size() > maxDistinctTexts) {
        mTexts.resize(maxDistinctTexts);
        mComplete = false;
    }

    const auto& filter = grid.getFilter(col);
    inverted = filter.inverted;
    if (filter.discreteActive) {
        checked.resize(mTexts.size());
        for (size_t i = 0; i < mTexts.size(); ++i)
            checked[i] = filter.allowedTexts.count(mTexts[i]) != 0;
    } else {
        setAllChecked(true);
    }
    if (filter.numericalActive) {
        minimumReal = boundText(filter.interval, 0);
        maximumReal = boundText(filter.interval, 1);
        minimumImaginary = boundText(filter.interval, 2);
        maximumImaginary = boundText(filter.interval, 3);
    }
}

bool wxTreeGridFilterChoices::checkAllChecked() const
{
    return std::all_of(checked.begin(), checked.end(), [](bool b) { return b; });
}

bool wxTreeGridFilterChoices::apply(std::string& message)
{
    if (!mAccepts) {
        message = "The column \"" + mLabel + "\" does not accept filters.";
        return false;
    }
    treeGridFilters::wxNumericalFilter bounds;
    const std::pair<const std::string*, double*> fields[] = {
        {&minimumReal, &bounds.minimumReal},
        {&maximumReal, &bounds.maximumReal},
        {&minimumImaginary, &bounds.minimumImaginary},
        {&maximumImaginary, &bounds.maximumImaginary},
    };
    const char* names[] = {"Minimum real part", "Maximum real part", "Minimum imaginary part",
                           "Maximum imaginary part"};
    for (size_t i = 0; i < 4; ++i)
        if (!parseBound(*fields[i].first, *fields[i].second)) {
            message = std::string(names[i]) + " : \"" + *fields[i].first + "\" is not a number.";
            return false;
        }
    const bool discrete = checked.size() == mTexts.size() && !checkAllChecked();
    if (discrete && std::none_of(checked.begin(), checked.end(), [](bool b) { return b; }) && !inverted) {
        message = "No value of column \"" + mLabel + "\" is selected: the filter would hide every row.";
        return false;
    }
    if (!std::isnan(bounds.minimumReal) && !std::isnan(bounds.maximumReal) && bounds.minimumReal > bounds.maximumReal) {
        message = "Minimum real part is above maximum real part.";
        return false;
    }

    mGrid.clearFilters(mCol);
    if (discrete)
        for (size_t i = 0; i < mTexts.size(); ++i)
            if (checked[i])
                mGrid.addFilterRule(mCol, mTexts[i]);
    const bool anyBound = !std::isnan(bounds.minimumReal) || !std::isnan(bounds.maximumReal) ||
                          !std::isnan(bounds.minimumImaginary) || !std::isnan(bounds.maximumImaginary);
    if (anyBound)
        mGrid.addNumericalFilterRule(mCol, bounds);
    // Inverting without any rule would invert nothing; keep the flag only with a rule.
    mGrid.setFilterInverted(mCol, inverted && (discrete || anyBound));
    mGrid.filterRulesChanged();
    message.clear();
    return true;
}

}  // namespace vx3
