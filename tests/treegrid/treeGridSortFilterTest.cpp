// Sorting and filtering of 10^5 random rows against Python's stable sort with the same keys.
#include <gtest/gtest.h>

#include <random>

#include "treeGridOracle.h"
#include "treeGridTestModel.h"
#include "treegrid/wxTreeGridGeometry.h"

using namespace vx3;
using zwtest::cTableModel;
using zwtest::cJob;
using zwtest::fillRandomTable;
using zwtest::runOracle;

namespace {

constexpr unsigned kRows = 100000;

void applySort(wxTreeGridGeometry& grid, const std::vector<std::pair<unsigned, bool>>& sort)
{
    grid.clearSortOrders();
    for (const auto& [col, ascending] : sort)
        grid.setColSortOrder(col, ascending ? treeGridGeometry::sort_ascending : treeGridGeometry::sort_descending);
    ASSERT_TRUE(grid.sort());
}

}  // namespace

TEST(TreeGridSort, RandomTableMatchesPythonSortedForEveryKeyCombination)
{
    cTableModel model;
    fillRandomTable(model, kRows, 1234);
    wxTreeGridGeometry grid(model);
    grid.dataChanged(true, false);
    ASSERT_EQ(grid.getNumberOfEffectiveRows(), kRows);

    // Sort columns apply leftmost first, so the column order of the view is part of each job:
    // the jobs here keep the model's order A, B, C and pick the priority by which columns sort.
    const std::vector<cJob> jobs = {
        {{{1, true}}, ""},                       // numbers, NaN last
        {{{1, false}}, ""},                      // numbers descending: blocks reversed, NaN still last
        {{{0, true}}, ""},                       // texts, case folded, byte order
        {{{2, false}}, ""},                      // texts descending with many ties
        {{{0, true}, {1, false}}, ""},           // mixed directions
        {{{0, false}, {1, true}, {2, false}}, ""},
        {{{1, true}, {2, true}}, ""},
    };
    const auto expected = runOracle(model, jobs, zwtest::cTempFolder());
    ASSERT_EQ(expected.size(), jobs.size());
    for (size_t j = 0; j < jobs.size(); ++j) {
        applySort(grid, jobs[j].sort);
        EXPECT_EQ(grid.getEffectiveToTotalRows(), expected[j]) << "job " << j;
    }

    // Moving C to the front makes it the primary key of a C-and-B sort.
    grid.moveColumn(2, 0);
    applySort(grid, {{2, true}, {1, true}});
    const auto cFirst = runOracle(model, {{{{2, true}, {1, true}}, ""}}, zwtest::cTempFolder());
    EXPECT_EQ(grid.getEffectiveToTotalRows(), cFirst.at(0));

    // Case-sensitive comparison changes the order of "a" against "B".
    grid.restoreDefaultColumnOrder();
    grid.setCaseSensitive(true);
    applySort(grid, {{0, true}});
    unsigned aRow = 0, bRow = 0;
    for (unsigned r = 0; r < kRows; ++r) {
        if (model.columns[0].texts[r] == "a")
            aRow = r;
        if (model.columns[0].texts[r] == "B")
            bRow = r;
    }
    EXPECT_LT(grid.getEffectiveRow(bRow), grid.getEffectiveRow(aRow));

    // No sort column: the model's order again.
    grid.clearSortOrders();
    grid.sort();
    for (unsigned r = 0; r < kRows; r += 997)
        EXPECT_EQ(grid.getTotalRow(r), r);
}

TEST(TreeGridFilter, RandomTableMatchesPythonForDiscreteNumericalInvertedAndSuppressed)
{
    cTableModel model;
    fillRandomTable(model, kRows, 99);
    wxTreeGridGeometry grid(model);
    grid.dataChanged(true, false);

    const std::string discrete = "\"discrete\":{\"0\":[\"a\",\"B\",\"\",\"\xc3\xa9\"]}";
    const std::string numeric = "\"numeric\":{\"1\":[-5.5,20]}";
    const std::vector<cJob> jobs = {
        {{{1, true}}, discrete},
        {{{1, true}}, discrete + "," + numeric},
        {{{2, false}}, numeric + ",\"inverted\":[1]"},
        {{}, "\"numeric\":{\"1\":[null,0]},\"suppressed\":[0,1,2,99999]"},
    };
    const auto expected = runOracle(model, jobs, zwtest::cTempFolder());
    ASSERT_EQ(expected.size(), jobs.size());

    auto setDiscrete = [&] {
        for (const char* text : {"a", "B", "", "\xc3\xa9"})
            ASSERT_TRUE(grid.addFilterRule(0, text));
    };
    treeGridFilters::wxNumericalFilter bounds;
    bounds.minimumReal = -5.5;
    bounds.maximumReal = 20;

    setDiscrete();
    applySort(grid, jobs[0].sort);  // sort applies the filters too
    EXPECT_EQ(grid.getEffectiveToTotalRows(), expected[0]);

    ASSERT_TRUE(grid.addNumericalFilterRule(1, bounds));
    grid.filterRulesChanged();
    EXPECT_EQ(grid.getEffectiveToTotalRows(), expected[1]);

    grid.clearAllFilters();
    grid.addNumericalFilterRule(1, bounds);
    grid.setFilterInverted(1, true);
    applySort(grid, jobs[2].sort);
    EXPECT_EQ(grid.getEffectiveToTotalRows(), expected[2]);

    grid.clearAllFilters();
    treeGridFilters::wxNumericalFilter upTo0;
    upTo0.maximumReal = 0;
    grid.addNumericalFilterRule(1, upTo0);
    applySort(grid, {});
    grid.suppressRows({0, 1, 2, 99999});
    EXPECT_EQ(grid.getEffectiveToTotalRows(), expected[3]);
    EXPECT_EQ(grid.getNumberOfRowsSuppressedByHand(), 4u);

    // Rows suppressed by hand come back; the filter stays.
    grid.showAllSuppressedRows();
    EXPECT_EQ(grid.getNumberOfRowsSuppressedByHand(), 0u);
    for (unsigned r : {0u, 1u, 2u, 99999u})
        EXPECT_EQ(grid.checkRowIsSuppressed(r), model.columns[1].numbers[r] > 0) << r;

    // A numerical filter with both bounds open passes everything.
    grid.clearAllFilters();
    grid.addNumericalFilterRule(1, treeGridFilters::wxNumericalFilter());
    grid.filterRulesChanged();
    EXPECT_EQ(grid.getNumberOfEffectiveRows(), kRows);
}

TEST(TreeGridFilter, NumericalIntervalRules)
{
    treeGridFilters::wxFilter filter;
    filter.numericalActive = true;
    const double nan = std::nan("");
    filter.interval = {1.0, 2.0};
    EXPECT_TRUE(wxTreeGridFilters::checkIncludedByNumericalFilterInterval(filter, 1.0));
    EXPECT_TRUE(wxTreeGridFilters::checkIncludedByNumericalFilterInterval(filter, 2.0));
    EXPECT_FALSE(wxTreeGridFilters::checkIncludedByNumericalFilterInterval(filter, 2.5));
    EXPECT_FALSE(wxTreeGridFilters::checkIncludedByNumericalFilterInterval(filter, 0.5));
    // An undefined value is not above nor below anything.
    EXPECT_TRUE(wxTreeGridFilters::checkIncludedByNumericalFilterInterval(filter, nan));
    filter.interval = {nan, 2.0};
    EXPECT_TRUE(wxTreeGridFilters::checkIncludedByNumericalFilterInterval(filter, -1e300));
    // With the imaginary part both parts must lie in.
    filter.interval = {0.0, 1.0, -1.0, 0.0};
    EXPECT_TRUE(wxTreeGridFilters::checkIncludedByNumericalFilterInterval(filter, 0.5, -0.5));
    EXPECT_FALSE(wxTreeGridFilters::checkIncludedByNumericalFilterInterval(filter, 0.5, 0.5));
    // Fewer than two bounds: no filter at all.
    filter.interval = {5.0};
    EXPECT_TRUE(wxTreeGridFilters::checkIncludedByNumericalFilterInterval(filter, -100.0));
}
