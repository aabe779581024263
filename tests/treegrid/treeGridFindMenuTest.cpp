// Find, the filter dialog's choices and the column menu without a screen. Find results are checked
// against Python's re over the same cells.
#include <gtest/gtest.h>

#include <cmath>

#include "treeGridOracle.h"
#include "treeGridTestModel.h"
#include "treegrid/wxTreeGridColMenu.h"
#include "treegrid/wxTreeGridFilterChoices.h"
#include "treegrid/wxTreeGridFinder.h"

using namespace vx3;
using zwtest::cTableModel;

namespace {

// Every cell the finder visits, walking from the edge until it comes round to the first one.
std::vector<std::pair<unsigned, unsigned>> collectAll(wxTreeGridFinder& finder, wxTreeGridGeometry& grid)
{
    std::vector<std::pair<unsigned, unsigned>> cells;
    auto result = finder.find(grid, wxTreeGridExpanderHandler::npos, wxTreeGridExpanderHandler::npos);
    while (result.found && !result.wrapped && cells.size() < 100000) {
        cells.emplace_back(result.totalRow, result.col);
        result = finder.find(grid, result.effectiveRow, result.effectiveCol);
    }
    return cells;
}

class cRemovableModel : public cTableModel {
public:
    bool treeGridVirtualCheckColCanBeRemoved(unsigned col) override { return col == 2; }
    void treeGridVirtualColHasBeenRemoved(unsigned col) override { columns.erase(columns.begin() + col); }
};

}  // namespace

TEST(TreeGridFind, EveryModeMatchesPythonReForwardAndBackward)
{
    cTableModel model;
    // Words, partial words, cases, punctuation and numbers: each mode has something to get wrong.
    std::mt19937 rng(77);
    const std::vector<std::string> words = {"vout", "VOUT", "v(out)", "out", "outer", "i(vdd)", "net_out", "Out.2",
                                            "clk", "data[7:0]", "", "a+b", "x.y", "ab"};
    std::uniform_int_distribution<size_t> pick(0, words.size() - 1);
    std::vector<std::string> a, c;
    std::vector<double> b;
    for (int r = 0; r < 3000; ++r) {
        a.push_back(words[pick(rng)] + (r % 3 ? "" : " " + words[pick(rng)]));
        c.push_back(words[pick(rng)]);
        b.push_back(r % 17 == 0 ? std::nan("") : (r % 41) * 0.25);
    }
    model.addTextColumn("Name", a);
    model.addNumberColumn("Value", b);
    model.addTextColumn("Other", c);
    wxTreeGridGeometry grid(model);
    grid.dataChanged(true, false);

    const std::vector<zwtest::cFindJob> jobs = {
        {"out", false, false, false}, {"OUT", false, true, false},  {"out", false, false, true},
        {"v(out)", false, false, false}, {"^v.*t$", true, false, false}, {"o?ut\\b", true, true, false},
        {"a+b", false, false, false},  {"[0-9]\\.5", true, false, false}, {"undef", false, false, true},
        {"out|clk", true, false, true},
    };
    zwtest::cTempFolder folder;
    const auto expected = zwtest::runFindOracle(model, jobs, folder);
    ASSERT_EQ(expected.size(), jobs.size());
    wxTreeGridFinder finder;
    for (size_t j = 0; j < jobs.size(); ++j) {
        treeGridFinder::cFindOptions options;
        options.text = jobs[j].text;
        options.regularExpression = jobs[j].regex;
        options.caseSensitive = jobs[j].caseSensitive;
        options.wholeWord = jobs[j].word;
        std::string message;
        ASSERT_TRUE(finder.setOptions(options, message)) << message;
        const auto forward = collectAll(finder, grid);
        EXPECT_EQ(forward, expected[j]) << "job " << j << " \"" << jobs[j].text << "\"";
        ASSERT_FALSE(forward.empty()) << "job " << j << " tests nothing";
        options.backward = true;
        ASSERT_TRUE(finder.setOptions(options, message));
        auto backward = collectAll(finder, grid);
        std::reverse(backward.begin(), backward.end());
        EXPECT_EQ(backward, expected[j]) << "backward job " << j;
    }
}

TEST(TreeGridFind, ViewOrderHiddenColumnsSuppressedRowsWrapAndBadPatterns)
{
    cTableModel model;
    model.addTextColumn("A", {"zeta", "alpha", "gamma", "alpha beta"});
    model.addTextColumn("B", {"alpha", "x", "y", "z"});
    wxTreeGridGeometry grid(model);
    grid.dataChanged(true, false);
    grid.setColSortOrder(0, treeGridGeometry::sort_ascending);
    ASSERT_TRUE(grid.sort());  // rows 1, 3, 2, 0

    wxTreeGridFinder finder;
    std::string message;
    treeGridFinder::cFindOptions options;
    options.text = "alpha";
    ASSERT_TRUE(finder.setOptions(options, message));
    auto cells = collectAll(finder, grid);
    EXPECT_EQ(cells, (std::vector<std::pair<unsigned, unsigned>>{{1, 0}, {3, 0}, {0, 1}}));  // the view's order

    // From the last match the next find comes round to the first, and says so.
    auto last = finder.find(grid, grid.getEffectiveRow(0), grid.getEffectiveColFromCol(1));
    EXPECT_TRUE(last.found && last.wrapped);
    EXPECT_EQ(last.totalRow, 1u);

    // From a whole row, that row's own cells come first, either way.
    auto ownRow = finder.find(grid, 0, wxTreeGridExpanderHandler::npos);
    EXPECT_TRUE(ownRow.found && !ownRow.wrapped && ownRow.totalRow == 1 && ownRow.col == 0);
    options.backward = true;
    ASSERT_TRUE(finder.setOptions(options, message));
    ownRow = finder.find(grid, 1, wxTreeGridExpanderHandler::npos);  // model row 3
    EXPECT_TRUE(ownRow.found && !ownRow.wrapped && ownRow.totalRow == 3);
    ownRow = finder.find(grid, 0, 0);  // before the first cell lies the table's end
    EXPECT_TRUE(ownRow.found && ownRow.wrapped && ownRow.totalRow == 0 && ownRow.col == 1);
    options.backward = false;
    ASSERT_TRUE(finder.setOptions(options, message));

    grid.setColHidden(1, true);
    grid.suppressRows({3});
    EXPECT_EQ(collectAll(finder, grid), (std::vector<std::pair<unsigned, unsigned>>{{1, 0}}));

    options.regularExpression = true;
    options.text = "alp(ha";
    EXPECT_FALSE(finder.setOptions(options, message));
    EXPECT_NE(message.find("Invalid regular expression \"alp(ha\""), std::string::npos) << message;
    EXPECT_FALSE(finder.find(grid, 0, 0).found);
    options.text.clear();
    EXPECT_FALSE(finder.setOptions(options, message));
}

TEST(TreeGridFilterChoices, ListsPresetsRefusalsAndAppliedRows)
{
    cTableModel model;
    model.addTextColumn("Kind", {"b", "a", "c", "a", "b", "a"});
    model.addNumberColumn("Value", {10, std::nan(""), -2, 10, 0.5, 3});
    wxTreeGridGeometry grid(model);
    grid.dataChanged(true, false);

    wxTreeGridFilterChoices kinds(grid, 0);
    EXPECT_EQ(kinds.getTexts(), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_TRUE(kinds.checkAllChecked());
    wxTreeGridFilterChoices values(grid, 1);
    EXPECT_EQ(values.getTexts(), (std::vector<std::string>{"-2", "0.5", "3", "10", "undef"}));  // by value, NaN last

    // A bound that is no number, bounds the wrong way round and nothing ticked are refused and
    // change nothing.
    std::string message;
    values.minimumReal = "1k0";
    EXPECT_FALSE(values.apply(message));
    EXPECT_EQ(message, "Minimum real part : \"1k0\" is not a number.");
    values.minimumReal = "5";
    values.maximumReal = "1";
    EXPECT_FALSE(values.apply(message));
    kinds.setAllChecked(false);
    EXPECT_FALSE(kinds.apply(message));
    EXPECT_EQ(grid.getNumberOfEffectiveRows(), 6u);

    kinds.checked = {true, false, true};  // a and c
    ASSERT_TRUE(kinds.apply(message)) << message;
    values.minimumReal = "0";
    values.maximumReal = "";
    ASSERT_TRUE(values.apply(message)) << message;
    // a/NaN passes the interval (NaN is not below a bound), c/-2 does not, a/10 and a/3 do.
    EXPECT_EQ(grid.getEffectiveToTotalRows(), (std::vector<unsigned>{1, 3, 5}));

    // A new dialog shows what is set; inverting the discrete filter keeps b only.
    wxTreeGridFilterChoices again(grid, 0);
    EXPECT_EQ(again.checked, (std::vector<bool>{true, false, true}));
    wxTreeGridFilterChoices againValues(grid, 1);
    EXPECT_EQ(againValues.minimumReal, "0");
    EXPECT_TRUE(againValues.maximumReal.empty());
    again.inverted = true;
    ASSERT_TRUE(again.apply(message));
    EXPECT_EQ(grid.getEffectiveToTotalRows(), (std::vector<unsigned>{0, 4}));

    model.acceptsFilters = false;
    wxTreeGridFilterChoices refused(grid, 0);
    EXPECT_FALSE(refused.apply(message));
}

TEST(TreeGridColMenu, ItemsFollowTheColumnAndActionsChangeTheView)
{
    cRemovableModel model;
    model.expanders = true;
    model.addTextColumn("File", {"a", "a", "b", "b"});
    model.addTextColumn("Curve", {"x", "y", "x", "y"});
    model.addNumberColumn("Points", {2, 1, 4, 3});
    wxTreeGridGeometry grid(model);
    grid.dataChanged(true, false);
    grid.setNumberOfExpanderColumns(1);

    auto labels = [&](unsigned col) {
        std::vector<std::string> out;
        for (const auto& item : wxTreeGridColMenu::collectColMenuItems(grid, col))
            if (item.action != treeGridColMenu::act_separator)
                out.push_back((item.subMenu.empty() ? "" : item.subMenu + "/") + item.label +
                              (item.enabled ? "" : " (off)"));
        return out;
    };
    const auto file = labels(0);
    EXPECT_NE(std::find(file.begin(), file.end(), "Move File/Left (off)"), file.end());
    EXPECT_NE(std::find(file.begin(), file.end(), "Expanders/Collapse"), file.end());
    EXPECT_NE(std::find(file.begin(), file.end(), "Filters/Clear Filters (off)"), file.end());
    EXPECT_EQ(std::find(file.begin(), file.end(), "Remove File"), file.end());
    const auto points = labels(2);
    EXPECT_NE(std::find(points.begin(), points.end(), "Remove Points"), points.end());
    EXPECT_EQ(std::find(points.begin(), points.end(), "Expanders/Expand"), points.end());

    using namespace treeGridColMenu;
    EXPECT_TRUE(wxTreeGridColMenu::executeColMenuAction(grid, act_sort_ascending, 2));
    EXPECT_EQ(grid.getEffectiveToTotalRows(), (std::vector<unsigned>{1, 0, 3, 2}));
    EXPECT_TRUE(wxTreeGridColMenu::executeColMenuAction(grid, act_collapse, 0));
    EXPECT_EQ(grid.getNumberOfVisibleRows(), 2u);
    EXPECT_TRUE(wxTreeGridColMenu::executeColMenuAction(grid, act_move_right, 0));
    EXPECT_EQ(grid.getColFromEffectiveCol(1), 0u);
    EXPECT_FALSE(wxTreeGridColMenu::executeColMenuAction(grid, act_define_filters, 0));  // the widget's dialog

    // Hiding stops at the last shown column.
    EXPECT_TRUE(wxTreeGridColMenu::executeColMenuAction(grid, act_hide, 0));
    EXPECT_TRUE(wxTreeGridColMenu::executeColMenuAction(grid, act_hide, 1));
    EXPECT_FALSE(wxTreeGridColMenu::executeColMenuAction(grid, act_hide, 2));
    EXPECT_FALSE(grid.checkColIsHidden(2));
    EXPECT_TRUE(wxTreeGridColMenu::executeColMenuAction(grid, act_show_all, 0));

    EXPECT_FALSE(wxTreeGridColMenu::executeColMenuAction(grid, act_remove, 0));
    EXPECT_TRUE(wxTreeGridColMenu::executeColMenuAction(grid, act_remove, 2));
    EXPECT_EQ(grid.getNumberOfColumns(), 2u);
}
