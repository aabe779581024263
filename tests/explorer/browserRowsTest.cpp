// The curve browser: every curve becomes a row (no cap), names are shortened under their instance,
// expanders keep their state by name over a rebuild, and the search answers with its messages.
#include <gtest/gtest.h>

#include <QImage>
#include <sstream>

#include "explorer/wxWaveExplorerBrowserRows.h"
#include "explorer/wxWaveExplorerBrowserTreeGrid.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cFileDbSupport.h"

using namespace vx3;

namespace {
// A file of 3,000 curves spread over 30 instances, plus one flat and one bracketed name.
void fillStore(cCurvePlotDataFile& store, cFileDbSupport& file)
{
    cCurvePlotDataSection* section = store.addDataSection("tran", &file);
    const cCurvePlotDataType* type = store.addType("V", curvePlotProperties::data_double, curvePlotDataType::volt);
    for (int i = 0; i < 3000; ++i)
        section->addVariable(type, "top.u" + std::to_string(i % 30) + ".sig" + std::to_string(i));
    section->addVariable(type, "Flat");
    section->addVariable(type, "v(x1.out)");
}
// The instance an expander stands for; the rows are unsorted, so effective rows are the model's.
std::string instanceOf(wxWaveExplorerBrowserTreeGrid& grid, unsigned e)
{
    const wxTreeGridExpander& expander = grid.getExpander(e);
    if (expander.level != waveExplorerBrowser::col_scope)
        return {};
    return grid.rows().treeGridVirtualGetValue(expander.firstRow, waveExplorerBrowser::col_scope);
}
}  // namespace

TEST(BrowserRows, AllCurvesShortenedNamesAndWildcards)
{
    cCurvePlotDataFile store;
    cFileDbSupport file("/tmp/many.csv", 0, 1);
    fillStore(store, file);
    wxWaveExplorerBrowserRows rows;
    rows.rebuild(store);
    ASSERT_EQ(rows.getNumberOfCurveRows(), 3002u) << "no cap on the number of curves";
    const std::string dump = rows.dumpRows();
    EXPECT_EQ(std::count(dump.begin(), dump.end(), '\n'), 3002);
    EXPECT_NE(dump.find("many.csv | many.csv | top.u7 | sig2977 | V | 0\n"), std::string::npos) << dump.substr(0, 200);
    EXPECT_EQ(rows.getRow(3000).scope, "");
    EXPECT_EQ(rows.getRow(3001).scope, "") << "a dot inside brackets does not split";
    EXPECT_EQ(rows.getRow(3001).curve, "v(x1.out)");

    rows.setUseFullHierarchicalNames(true);
    rows.rebuild(store);
    EXPECT_EQ(rows.getRow(5).curve, "top.u5.sig5");
    EXPECT_EQ(rows.getRow(5).scope, "");

    EXPECT_TRUE(wxWaveExplorerBrowserRows::checkWildCardPatternMatch("top.*.sig1?", "top.u1.sig11"));
    EXPECT_FALSE(wxWaveExplorerBrowserRows::checkWildCardPatternMatch("top.*.sig1?", "top.u1.sig111"));
    EXPECT_TRUE(wxWaveExplorerBrowserRows::checkWildCardPatternMatch("*", ""));
    EXPECT_FALSE(wxWaveExplorerBrowserRows::checkWildCardPatternMatch("a*b", "acbc"));
}

TEST(BrowserRows, SearchMessagesForwardBackwardAndWrap)
{
    cCurvePlotDataFile store;
    cFileDbSupport file("/tmp/many.csv", 0, 1);
    fillStore(store, file);
    wxWaveExplorerBrowserRows rows;
    rows.rebuild(store);
    // Rows are grouped by instance, so positions are looked up by name.
    auto at = [&rows](const std::string& name) {
        for (size_t r = 0; r < rows.getNumberOfCurveRows(); ++r)
            if (rows.getRow(r).curve == name)
                return r;
        return size_t(0);
    };
    auto found = [&rows] { return rows.getRow(rows.getSearchRow()).curve; };

    EXPECT_EQ(rows.reinitSearch("nothing", {}), "No matching curve found.");
    EXPECT_EQ(rows.findNext(0), "Forward search failed.");
    EXPECT_EQ(rows.findPrevious(0), "Backward search failed.");

    // Case: "FLAT" finds "Flat" only without case sensitivity.
    EXPECT_EQ(rows.reinitSearch("FLAT", {}), "");
    EXPECT_EQ(found(), "Flat");
    EXPECT_EQ(rows.reinitSearch("FLAT", {true, false, false}), "No matching curve found.");

    // sig2990..sig2999 (the last of instances u20..u29), searched through the full name although the row shows it shortened.
    EXPECT_EQ(rows.reinitSearch("top.*.sig299?", {false, true, false}), "");
    EXPECT_EQ(rows.getNumberOfSearchResults(), 10u);
    EXPECT_EQ(rows.findNext(at("sig2990")), "");
    EXPECT_EQ(found(), "sig2991");
    EXPECT_EQ(rows.findNext(at("sig2999")), "End of forward search reached.");
    EXPECT_EQ(found(), "sig2991") << "without wrap the found row stays";
    EXPECT_EQ(rows.findPrevious(at("sig2990")), "End of backward search reached.");
    EXPECT_EQ(rows.findPrevious(at("sig2995")), "");
    EXPECT_EQ(found(), "sig2994");

    EXPECT_EQ(rows.reinitSearch("top.*.sig299?", {false, true, true}), "");
    EXPECT_EQ(rows.findNext(at("sig2999")), "End of forward search reached, continuing from top.");
    EXPECT_EQ(found(), "sig2990");
    EXPECT_EQ(rows.findPrevious(at("sig2990")), "End of backward search reached, continuing from bottom.");
    EXPECT_EQ(found(), "sig2999");
    // A single match: the wrapped search comes back to the row it started from.
    EXPECT_EQ(rows.reinitSearch("sig2999", {false, false, true}), "");
    EXPECT_EQ(rows.findNext(at("sig2999")), "End of forward search reached, continuing from top.");
    EXPECT_EQ(found(), "sig2999");
}

TEST(BrowserTreeGrid, ExpandersKeptOverRebuildAndScreenshot)
{
    cCurvePlotDataFile store;
    cFileDbSupport file("/tmp/many.csv", 0, 1);
    fillStore(store, file);
    wxWaveExplorerBrowserTreeGrid grid;
    grid.resize(500, 400);
    grid.refresh(store);
    // One file and one section: single-branch levels are skipped, the instances are the top.
    const unsigned closedLines = grid.computeVisibleNbOfRows();
    ASSERT_GT(grid.getNumberOfExpanders(), 0u);
    unsigned u3 = wxTreeGridExpander::npos;
    for (unsigned e = 0; e < grid.getNumberOfExpanders(); ++e)
        if (instanceOf(grid, e) == "top.u3")
            u3 = e;
    ASSERT_NE(u3, wxTreeGridExpander::npos);
    const bool wasOpen = grid.getExpander(u3).expanded;
    ASSERT_TRUE(grid.setExpanded(u3, !wasOpen));
    const unsigned changedLines = grid.computeVisibleNbOfRows();
    EXPECT_NE(changedLines, closedLines);

    // A curve more in another instance: the rebuild keeps top.u3 as the user left it.
    const cCurvePlotDataType* type = store.addType("V", curvePlotProperties::data_double, curvePlotDataType::volt);
    store.getDataSectionFromIndex(0)->addVariable(type, "top.u9.late");
    grid.refresh(store);
    EXPECT_EQ(grid.rows().getNumberOfCurveRows(), 3003u);
    unsigned found = 0;
    for (unsigned e = 0; e < grid.getNumberOfExpanders(); ++e)
        if (instanceOf(grid, e) == "top.u3") {
            EXPECT_EQ(grid.getExpander(e).expanded, !wasOpen);
            ++found;
        }
    EXPECT_EQ(found, 1u);

    const char* out = std::getenv("ZW_BROWSER_PNG");
    QImage image = grid.grab().toImage();
    EXPECT_FALSE(image.isNull());
    if (out)
        image.save(out);
}
