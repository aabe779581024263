// Export read back by Python's html.parser, transposing, selection and suppression by hand, and
// the grid's answers to bad input.
#include <gtest/gtest.h>

#include "base/cLoggedException.h"
#include "treeGridTestModel.h"
#include "treegrid/wxTreeGridGeometry.h"

using namespace vx3;
using zwtest::cTableModel;

namespace {

std::vector<std::vector<std::string>> parseHtmlWithPython(const std::string& html, std::map<std::string, std::string>& meta)
{
    zwtest::cTempFolder folder;
    {
        std::ofstream out(folder.path() / "table.html", std::ios::binary);
        out << html;
    }
    const auto script = std::filesystem::path(ZW_SOURCE_DIR) / "tests/treegrid/oracles/html_table.py";
    const std::string dir = folder.path().string();
    EXPECT_EQ(zwtest::runPython(script, "'" + dir + "/table.html' '" + dir + "/table.txt'"), 0);
    std::vector<std::vector<std::string>> rows;
    std::ifstream in(folder.path() / "table.txt", std::ios::binary);
    std::string line;
    while (std::getline(in, line)) {
        std::vector<std::string> cells;
        size_t start = 0;
        for (size_t tab; (tab = line.find('\t', start)) != std::string::npos; start = tab + 1)
            cells.push_back(line.substr(start, tab - start));
        cells.push_back(line.substr(start));
        if (cells[0] == "row" || cells[0] == "header") {
            rows.push_back(std::vector<std::string>(cells.begin() + 1, cells.end()));
        } else
            meta[cells[0]] = cells.size() > 1 ? cells[1] : "";
    }
    return rows;
}

}  // namespace

TEST(TreeGridExport, HtmlReadsBackWithPythonInViewOrder)
{
    cTableModel model;
    model.addTextColumn("Name <&>", {"a&b", "<tag>", "\"quoted\"", "caf\xc3\xa9", "plain"});
    model.addNumberColumn("Value", {3.5, -1, std::nan(""), 0.25, 10});
    model.addTextColumn("Hidden", {"h0", "h1", "h2", "h3", "h4"});
    wxTreeGridGeometry grid(model);
    grid.dataChanged(true, false);
    grid.setColHidden(2, true);
    grid.moveColumn(1, 0);
    grid.setColSortOrder(1, treeGridGeometry::sort_descending);
    grid.sort();

    std::map<std::string, std::string> meta;
    auto rows = parseHtmlWithPython(grid.exportColumns(true), meta);
    EXPECT_EQ(meta["doctype"], "DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 3.2//EN\"");
    EXPECT_EQ(meta["generator"], "Harlan Tessel ZelkoraWave");
    EXPECT_EQ(meta["cols"], "2");
    EXPECT_EQ(meta["border"], "1");
    const std::vector<std::vector<std::string>> expected = {
        {"Value", "Name <&>"}, {"10", "plain"},     {"3.5", "a&b"},
        {"0.25", "caf\xc3\xa9"}, {"-1", "<tag>"}, {"undef", "\"quoted\""},
    };
    EXPECT_EQ(rows, expected);

    // With a selection only the selected rows go, still in view order.
    grid.selectRow(3, true);
    grid.selectRow(1, true);
    rows = parseHtmlWithPython(grid.exportColumns(true), meta);
    EXPECT_EQ(rows, (std::vector<std::vector<std::string>>{{"Value", "Name <&>"}, {"0.25", "caf\xc3\xa9"}, {"-1", "<tag>"}}));

    // The text form: a header line and one tab-separated line per row.
    EXPECT_EQ(grid.exportColumns(false), "Value\tName <&>\n0.25\tcaf\xc3\xa9\n-1\t<tag>\n");
}

TEST(TreeGridTranspose, RowsBecomeColumnsAndBack)
{
    cTableModel model;
    model.addTextColumn("name", {"r0", "r1", "r2"});
    model.addNumberColumn("v", {2, 1, 3});
    wxTreeGridGeometry grid(model);
    grid.dataChanged(true, false);
    grid.setColSortOrder(1, treeGridGeometry::sort_ascending);
    grid.sort();
    grid.selectRow(0, true);

    grid.transpose();
    EXPECT_TRUE(grid.checkIsTransposed());
    EXPECT_EQ(model.transposeEvents, 1);
    EXPECT_TRUE(model.lastTransposed);
    EXPECT_EQ(grid.getNumberOfColumns(), 3u);
    EXPECT_EQ(grid.getNumberOfTotalRows(), 2u);
    EXPECT_EQ(grid.getNumberOfSelectedRows(), 0u);
    EXPECT_EQ(grid.getModel().treeGridVirtualGetValue(1, 2), "3");
    EXPECT_EQ(grid.getModel().treeGridVirtualGetColHeaderLabel(0), "1");  // model rows counted from 1
    EXPECT_EQ(grid.getModel().treeGridVirtualGetRowHeaderLabel(1), "v");
    EXPECT_EQ(grid.exportColumns(false), "1\t2\t3\nr0\tr1\tr2\n2\t1\t3\n");
    // A transposed table sorts and filters like any other: its rows are the model's columns.
    grid.setColSortOrder(1, treeGridGeometry::sort_descending);
    ASSERT_TRUE(grid.sort());
    EXPECT_EQ(grid.getEffectiveToTotalRows(), (std::vector<unsigned>{0, 1}));  // "r1" sorts above "1"

    grid.transpose();
    EXPECT_FALSE(grid.checkIsTransposed());
    EXPECT_EQ(model.transposeEvents, 2);
    EXPECT_EQ(grid.getNumberOfColumns(), 2u);
    EXPECT_EQ(grid.getNumberOfTotalRows(), 3u);
    EXPECT_EQ(grid.getColSortOrder(1), treeGridGeometry::sort_none);
    EXPECT_EQ(grid.exportColumns(false), "name\tv\nr0\t2\nr1\t1\nr2\t3\n");
}

TEST(TreeGridBadInput, EmptyTablesNanColumnsUnknownColumnsAndBadModelOrders)
{
    // No columns, no rows: everything answers and nothing is drawn.
    cTableModel empty;
    wxTreeGridGeometry none(empty);
    none.dataChanged(true, false);
    EXPECT_EQ(none.getNumberOfVisibleRows(), 0u);
    EXPECT_TRUE(none.sort());
    none.filterRulesChanged();
    EXPECT_EQ(none.exportColumns(false), "\n");
    EXPECT_NE(none.exportColumns(true).find("<TABLE COLS=0 BORDER=1>"), std::string::npos);
    none.transpose();
    EXPECT_EQ(none.getNumberOfVisibleRows(), 0u);

    // Columns but no rows, with expanders.
    cTableModel noRows;
    noRows.expanders = true;
    noRows.addTextColumn("a", {});
    noRows.addTextColumn("b", {});
    wxTreeGridGeometry grid0(noRows);
    grid0.dataChanged(true, false);
    grid0.setColSortOrder(0, treeGridGeometry::sort_descending);
    EXPECT_TRUE(grid0.sort());
    EXPECT_EQ(grid0.getNumberOfVisibleRows(), 0u);
    EXPECT_EQ(grid0.getNumberOfExpanders(), 0u);

    // A column of NaN only ties everywhere: the next column decides, then the model's row.
    cTableModel nan;
    nan.addNumberColumn("n", std::vector<double>(5, std::nan("")));
    nan.addTextColumn("t", {"b", "a", "b", "a", "c"});
    wxTreeGridGeometry gridNan(nan);
    gridNan.dataChanged(true, false);
    gridNan.setColSortOrder(0, treeGridGeometry::sort_descending);
    gridNan.sort();
    EXPECT_EQ(gridNan.getEffectiveToTotalRows(), (std::vector<unsigned>{0, 1, 2, 3, 4}));
    gridNan.setColSortOrder(1, treeGridGeometry::sort_descending);
    gridNan.sort();
    EXPECT_EQ(gridNan.getEffectiveToTotalRows(), (std::vector<unsigned>{4, 0, 2, 1, 3}));

    // Unknown columns and rows are the caller's error: a logged exception, the state unchanged.
    EXPECT_THROW(gridNan.addFilterRule(2, "x"), cLoggedException);
    EXPECT_THROW(gridNan.setColSortOrder(7, treeGridGeometry::sort_ascending), cLoggedException);
    EXPECT_THROW(gridNan.suppressRows({5}), cLoggedException);
    try {
        gridNan.addFilterRule(9, "x");
    } catch (const cLoggedException& e) {
        EXPECT_NE(std::string(e.what()).find("EXCEPTION : wxTreeGridGeometry::addFilterRule : column 9 out of range"),
                  std::string::npos);
    }
    EXPECT_FALSE(gridNan.checkAnyColumnIsFiltered());
    EXPECT_EQ(gridNan.getNumberOfEffectiveRows(), 5u);

    // A column that refuses filters keeps none.
    nan.acceptsFilters = false;
    EXPECT_FALSE(gridNan.addFilterRule(1, "a"));
    EXPECT_FALSE(gridNan.checkColumnIsFiltered(1));

    // A model whose ready order is not a permutation is not trusted: the grid compares instead.
    cTableModel ordered;
    ordered.addTextColumn("t", {"c", "a", "b"});
    ordered.offersOrder = true;
    ordered.offeredOrder = {2, 2, 0};
    wxTreeGridGeometry gridOrdered(ordered);
    gridOrdered.dataChanged(true, false);
    gridOrdered.setColSortOrder(0, treeGridGeometry::sort_ascending);
    gridOrdered.sort();
    EXPECT_EQ(gridOrdered.getEffectiveToTotalRows(), (std::vector<unsigned>{1, 2, 0}));
    // A valid one is taken as it is, without comparing.
    ordered.offeredOrder = {0, 2, 1};
    gridOrdered.sort();
    EXPECT_EQ(gridOrdered.getEffectiveToTotalRows(), (std::vector<unsigned>{0, 2, 1}));
}
