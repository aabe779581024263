// The tree derived from runs of equal texts: its shape, opening and closing, and the lines on the
// screen against a plain count over all rows.
#include <gtest/gtest.h>

#include <random>

#include "treeGridTestModel.h"
#include "treegrid/wxTreeGridGeometry.h"

using namespace vx3;
using zwtest::cTableModel;

namespace {

constexpr unsigned npos = wxTreeGridExpander::npos;

// x: a run of three with a run of two (p) inside; y: a run whose one child run spans it all;
// z: a single row.
void fillSmallTree(cTableModel& model, std::vector<std::string> values = {"1", "5", "3", "2", "6", "4"})
{
    model.expanders = true;
    model.defaultExpanded = false;
    model.addTextColumn("top", {"x", "x", "x", "y", "y", "z"});
    model.addTextColumn("mid", {"p", "p", "q", "r", "r", "s"});
    model.addTextColumn("value", std::move(values));
}

std::vector<unsigned> visibleRows(wxTreeGridGeometry& grid)
{
    std::vector<unsigned> rows;
    for (unsigned v = 0; v < grid.getNumberOfVisibleRows(); ++v)
        rows.push_back(grid.getEffectiveRowFromVisible(v));
    return rows;
}

}  // namespace

TEST(TreeGridExpanders, ShapeOfSmallTreeAndOpeningClosing)
{
    cTableModel model;
    fillSmallTree(model);
    wxTreeGridGeometry grid(model);
    grid.dataChanged(true, false);
    ASSERT_EQ(grid.getEffectiveColExpandersLevel(), 2u);

    // y's only child run spans all of y and makes no expander of its own.
    const auto& ex = grid.getExpanders();
    ASSERT_EQ(ex.size(), 3u);
    EXPECT_EQ(ex[0].firstRow, 0u);
    EXPECT_EQ(ex[0].level, 0u);
    EXPECT_EQ(ex[0].nbOfRows, 3u);
    EXPECT_EQ(ex[1].firstRow, 0u);
    EXPECT_EQ(ex[1].level, 1u);
    EXPECT_EQ(ex[1].nbOfRows, 2u);
    EXPECT_EQ(ex[1].parent, 0u);
    EXPECT_EQ(ex[1].indentLevel, 1u);
    EXPECT_EQ(ex[2].firstRow, 3u);
    EXPECT_EQ(ex[2].nbOfRows, 2u);
    EXPECT_EQ(ex[0].nextIdentical, 2u);
    EXPECT_EQ(ex[2].previousIdentical, 0u);
    EXPECT_EQ(ex[1].nextIdentical, npos);
    EXPECT_EQ(grid.getNextExpanderInColumn(0), 2u);
    EXPECT_EQ(grid.findExpanderAt(3, 0), 2u);
    EXPECT_EQ(grid.findExpanderAt(3, 1), npos);
    EXPECT_EQ(grid.findDeepestExpanderContainingRow(1), 1u);
    EXPECT_EQ(grid.findDeepestExpanderContainingRow(2), 0u);
    EXPECT_EQ(grid.findDeepestExpanderContainingRow(5), npos);

    // All closed: x, y and z show one line each.
    EXPECT_EQ(visibleRows(grid), (std::vector<unsigned>{0, 3, 5}));
    EXPECT_TRUE(grid.checkIfParentIsCollapsed(1));
    EXPECT_EQ(grid.getNextVisibleExpander(0), 2u);  // p is under the closed x

    ASSERT_TRUE(grid.setExpanded(0, true));
    EXPECT_EQ(visibleRows(grid), (std::vector<unsigned>{0, 2, 3, 5}));
    ASSERT_TRUE(grid.setExpanded(1, true));
    EXPECT_EQ(visibleRows(grid), (std::vector<unsigned>{0, 1, 2, 3, 5}));
    EXPECT_FALSE(grid.setExpanded(1, true));  // no change

    // Closing the parent hides p but keeps it open inside.
    grid.setExpanded(0, false);
    EXPECT_EQ(visibleRows(grid), (std::vector<unsigned>{0, 3, 5}));
    EXPECT_EQ(grid.getVisibleRowFromEffective(1), 0u);  // hidden: the line of its collapsed parent
    EXPECT_TRUE(grid.checkEffectiveRowIsHidden(1));
    grid.setExpanded(0, true);
    EXPECT_EQ(visibleRows(grid), (std::vector<unsigned>{0, 1, 2, 3, 5}));

    // A sort that separates the rows of x dissolves its runs; undoing it brings the tree back
    // with the states the user set.
    grid.setColSortOrder(2, treeGridGeometry::sort_ascending);
    grid.sort();
    EXPECT_EQ(grid.getEffectiveToTotalRows(), (std::vector<unsigned>{0, 3, 2, 5, 1, 4}));
    EXPECT_EQ(grid.getNumberOfExpanders(), 0u);
    EXPECT_EQ(grid.getNumberOfVisibleRows(), 6u);
    grid.clearSortOrders();
    grid.sort();
    ASSERT_EQ(grid.getNumberOfExpanders(), 3u);
    EXPECT_TRUE(grid.getExpander(0).expanded);
    EXPECT_TRUE(grid.getExpander(1).expanded);
    EXPECT_FALSE(grid.getExpander(2).expanded);

    // A whole level at once, then everything.
    grid.expandEffectiveColumn(0, false);
    EXPECT_EQ(visibleRows(grid), (std::vector<unsigned>{0, 3, 5}));
    grid.expandAll(true);
    EXPECT_EQ(grid.getNumberOfVisibleRows(), 6u);

    // Without expanders the same rows stay flat.
    model.expanders = false;
    grid.dataChanged(true, false);
    EXPECT_EQ(grid.getNumberOfExpanders(), 0u);
    EXPECT_EQ(grid.getNumberOfVisibleRows(), 6u);
}

TEST(TreeGridExpanders, NewDataKeepsOpenStatesWhereTextsAgree)
{
    cTableModel model;
    fillSmallTree(model);
    wxTreeGridGeometry grid(model);
    grid.dataChanged(true, false);
    grid.setExpanded(2, true);  // y
    // Rows are added in front: y moves down but stays open, x stays closed.
    for (auto& c : model.columns)
        c.texts.insert(c.texts.begin(), {"w", "w"});
    grid.dataChanged(true, false);
    const unsigned y = grid.findExpanderAt(5, 0);
    ASSERT_NE(y, npos);
    EXPECT_TRUE(grid.getExpander(y).expanded);
    EXPECT_FALSE(grid.getExpander(grid.findExpanderAt(2, 0)).expanded);
}

TEST(TreeGridExpanders, RandomTreesAndTogglesAgreeWithCountingEveryRow)
{
    std::mt19937 rng(7);
    for (int round = 0; round < 6; ++round) {
        cTableModel model;
        model.expanders = true;
        model.defaultExpanded = round % 2 == 0;
        const unsigned rows = 3000;
        std::vector<std::string> cols[4];
        std::uniform_int_distribution<int> pick(0, 2 + round);
        for (unsigned r = 0; r < rows; ++r)
            for (auto& c : cols)
                c.push_back(std::string(1, char('a' + pick(rng))));
        // Sorted leading columns make long nested runs, as a browser's rows do.
        std::vector<unsigned> order(rows);
        std::iota(order.begin(), order.end(), 0u);
        std::sort(order.begin(), order.end(), [&](unsigned a, unsigned b) {
            return std::tie(cols[0][a], cols[1][a], cols[2][a]) < std::tie(cols[0][b], cols[1][b], cols[2][b]);
        });
        for (int c = 0; c < 4; ++c) {
            std::vector<std::string> sorted;
            for (unsigned r : order)
                sorted.push_back(cols[c][r]);
            model.addTextColumn("c" + std::to_string(c), std::move(sorted));
        }
        wxTreeGridGeometry grid(model);
        grid.dataChanged(true, false);
        const auto& ex = grid.getExpanders();
        ASSERT_GT(ex.size(), 10u);

        // Every expander is a maximal run of two or more equal texts inside its parent, and not
        // the whole of the parent's range.
        for (unsigned i = 0; i < ex.size(); ++i) {
            const auto& e = ex[i];
            ASSERT_GE(e.nbOfRows, 2u);
            const auto& texts = model.columns[e.level].texts;
            for (unsigned r = e.firstRow; r < e.firstRow + e.nbOfRows; ++r)
                ASSERT_EQ(texts[r], texts[e.firstRow]);
            const unsigned lo = e.parent == npos ? 0 : ex[e.parent].firstRow;
            const unsigned hi = e.parent == npos ? rows : ex[e.parent].firstRow + ex[e.parent].nbOfRows;
            if (e.firstRow > lo) {
                EXPECT_NE(texts[e.firstRow - 1], texts[e.firstRow]);
            }
            if (e.firstRow + e.nbOfRows < hi) {
                EXPECT_NE(texts[e.firstRow + e.nbOfRows], texts[e.firstRow]);
            }
            EXPECT_FALSE(e.firstRow == lo && e.firstRow + e.nbOfRows == hi);
            if (i > 0) {
                ASSERT_TRUE(ex[i - 1].firstRow < e.firstRow ||
                            (ex[i - 1].firstRow == e.firstRow && ex[i - 1].level < e.level));
            }
        }

        std::uniform_int_distribution<unsigned> anyExpander(0, unsigned(ex.size()) - 1);
        for (int step = 0; step < 40; ++step) {
            for (int t = 0; t < 5; ++t)
                grid.toggleExpanded(anyExpander(rng));
            // A row is on screen unless a closed expander holds it after its first row.
            std::vector<unsigned> expected;
            for (unsigned r = 0; r < rows; ++r) {
                bool hidden = false;
                for (const auto& e : ex)
                    if (!e.expanded && r > e.firstRow && r < e.firstRow + e.nbOfRows) {
                        hidden = true;
                        break;
                    }
                if (!hidden)
                    expected.push_back(r);
            }
            ASSERT_EQ(grid.getNumberOfVisibleRows(), expected.size());
            // In order (the cursor's path), then scattered (its searches), then back again.
            for (unsigned v = 0; v < expected.size(); ++v) {
                ASSERT_EQ(grid.getEffectiveRowFromVisible(v), expected[v]) << "line " << v;
            }
            std::uniform_int_distribution<unsigned> anyLine(0, unsigned(expected.size()) - 1);
            for (int k = 0; k < 50; ++k) {
                const unsigned v = anyLine(rng);
                ASSERT_EQ(grid.getEffectiveRowFromVisible(v), expected[v]);
                ASSERT_EQ(grid.getVisibleRowFromEffective(expected[v]), v);
            }
            for (unsigned v = unsigned(expected.size()); v-- > 0;) {
                ASSERT_EQ(grid.getEffectiveRowFromVisible(v), expected[v]);
            }
        }
    }
}
