// The curve browser: every curve becomes a row (no cap), names are shortened under their instance,
// levels follow the configured order, filters hide runs, analyses and cuts, expanders keep their
// state by name over a rebuild and a new order, and the search answers with its messages.
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <sstream>

#include "explorer/wxBrowserConfiguration.h"
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
// The text of an expander when it stands in a column of this kind (and level); the rows are
// unsorted, so effective rows are the model's.
std::string expanderText(wxWaveExplorerBrowserTreeGrid& grid, unsigned e, waveExplorerBrowser::column_kind kind,
                         unsigned priority = browserConfiguration::curve_name)
{
    const wxTreeGridExpander& expander = grid.getExpander(e);
    const unsigned col = grid.getColFromEffectiveCol(expander.level);
    const auto& column = grid.rows().columns().at(col);
    if (column.kind != kind || column.priority != priority)
        return {};
    return grid.rows().treeGridVirtualGetValue(expander.firstRow, col);
}
std::string instanceOf(wxWaveExplorerBrowserTreeGrid& grid, unsigned e)
{
    return expanderText(grid, e, waveExplorerBrowser::kind_instance);
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
    EXPECT_NE(dump.find("many.csv | tran | top.u7 | sig2977 | V | 0\n"), std::string::npos) << dump.substr(0, 200);
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

// The rules as a record of the configuration file: read back whole, and a record cut short or
// naming levels that don't make a tree leaves the rules as they were.
TEST(BrowserConfiguration, RecordRoundTripAndDamagedRecords)
{
    wxBrowserConfiguration config;
    std::string unknown;
    ASSERT_TRUE(config.setGroupPriorities({"Curve name", "Analysis type"}, unknown));
    config.setRunParameterOrder({"C", "R"});
    config.setSweepVariableOrder({"temp"});
    ASSERT_TRUE(config.setRunParameterStyle("names"));
    config.runParameterRules().setValueFlag("R", "2000", false);
    config.runParameterRules().setValueFlag("R", "1000", true);
    browserConfiguration::wxNumericalFilter inverted;
    inverted.set(2e-9, 1e-9, NAN, 5.0);
    config.runParameterRules().setNumericalFilter("C", inverted);
    browserConfiguration::wxNumericalFilter everySweep;
    everySweep.set(NAN, 100.0, NAN, NAN);
    config.sweepVariableRules().setNumericalFilter("", everySweep);
    config.setAnalysisTypeFlag("ac", false);
    const std::string record = config.serialize();

    wxBrowserConfiguration back;
    ASSERT_TRUE(back.deserialize(record));
    EXPECT_EQ(back.getGroupPriorities(), config.getGroupPriorities());
    EXPECT_EQ(back.getRunParameterOrder(), (std::vector<std::string>{"C", "R"}));
    EXPECT_EQ(back.getSweepVariableOrder(), (std::vector<std::string>{"temp"}));
    EXPECT_EQ(back.getRunParameterStyle(), browserConfiguration::style_names_and_values);
    EXPECT_EQ(back.runParameterRules(), config.runParameterRules());
    EXPECT_EQ(back.sweepVariableRules(), config.sweepVariableRules());
    EXPECT_EQ(back.analysisTypeRules(), config.analysisTypeRules());
    // The rules act as before: the inverted interval, the unnamed sweep bound, the hidden analysis.
    EXPECT_FALSE(back.checkVerifiesParameterFilterRules("C", "1.5e-09", 1.5e-9, NAN));
    EXPECT_TRUE(back.checkVerifiesParameterFilterRules("C", "3e-09", 3e-9, NAN));
    EXPECT_FALSE(back.checkVerifiesParameterFilterRules("R", "2000", 2000, NAN));
    EXPECT_FALSE(back.checkVerifiesSweepFilterRules("temp", "120", 120, 0));
    EXPECT_FALSE(back.checkVerifiesAnalysisTypeFilterRules("ac"));
    EXPECT_TRUE(back.checkVerifiesAnalysisTypeFilterRules("tran"));
    EXPECT_EQ(back.serialize(), record);

    // Every cut of the record, and a byte changed anywhere, never throws; a failed read keeps
    // what was there.
    for (size_t size = 0; size < record.size(); ++size) {
        wxBrowserConfiguration target;
        target.setRunParameterOrder({"kept"});
        EXPECT_FALSE(target.deserialize(record.substr(0, size))) << size;
        EXPECT_EQ(target.getRunParameterOrder(), (std::vector<std::string>{"kept"}));
        EXPECT_TRUE(target.checkPrioritiesAreStandard());
    }
    for (size_t at = 0; at < record.size(); ++at) {
        std::string damaged = record;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x5a);
        wxBrowserConfiguration target;
        if (target.deserialize(damaged)) {
            // What a changed byte lets through must still make a tree of all eight levels.
            std::vector<unsigned> sorted = target.getGroupPriorities();
            std::sort(sorted.begin(), sorted.end());
            EXPECT_EQ(sorted, (std::vector<unsigned>{0, 1, 2, 3, 4, 5, 6, 7})) << at;
        }
    }
    // Levels given twice are refused.
    wxBrowserConfiguration twice;
    ASSERT_TRUE(twice.setGroupPriorities({"File name"}, unknown));
    std::string bad = twice.serialize();
    const std::string good = bad;
    // The eight priorities follow the version word (8 bytes) and the vector's head (4 + 12 + 4).
    bad[28 + 4] = 0;  // the second level becomes "File name" again
    EXPECT_FALSE(twice.deserialize(bad));
    EXPECT_TRUE(twice.deserialize(good));
}

TEST(BrowserConfiguration, LevelNamesOrdersAndNumberFilters)
{
    wxBrowserConfiguration config;
    EXPECT_TRUE(config.checkPrioritiesAreStandard());
    EXPECT_EQ(config.getGroupPriorityAsString(4), "Section run index or parameter");
    EXPECT_EQ(wxBrowserConfiguration::findGroupPriority("curve NAME"), browserConfiguration::curve_name);
    EXPECT_EQ(wxBrowserConfiguration::findGroupPriority("Curve"), browserConfiguration::no_priority);

    // Named levels go first, the rest keeps its order; an unknown name changes nothing.
    std::string unknown;
    ASSERT_TRUE(config.setGroupPriorities({"Curve name", "File name"}, unknown));
    EXPECT_EQ(config.getGroupPriorities(), (std::vector<unsigned>{7, 0, 1, 2, 3, 4, 5, 6}));
    EXPECT_FALSE(config.checkFileNameIsTopPriority());
    EXPECT_FALSE(config.checkCurveNameIsBottomPriority());
    EXPECT_FALSE(config.setGroupPriorities({"File name", "Bogus"}, unknown));
    EXPECT_EQ(unknown, "Bogus");
    EXPECT_EQ(config.getGroupPriority(0), browserConfiguration::curve_name);
    EXPECT_TRUE(config.moveGroupPriorityDown(0));
    EXPECT_FALSE(config.moveGroupPriorityUp(0) && config.moveGroupPriorityDown(7));
    config.setDefaults();
    EXPECT_TRUE(config.checkPrioritiesAreStandard());

    // A parameter not in the saved order goes to its end; a given order keeps the others after it.
    config.setRunParameterOrder({"C", "R"});
    EXPECT_TRUE(config.addRunParameterName("L"));
    EXPECT_FALSE(config.addRunParameterName("R"));
    config.setRunParameterOrder({"L"});
    EXPECT_EQ(config.getRunParameterOrder(), (std::vector<std::string>{"L", "C", "R"}));

    // Number filters: inside with ends included, outside when inverted, NaN values always pass.
    browserConfiguration::wxNumericalFilter inside, outside, open;
    inside.set(1.0, 2.0, NAN, NAN);
    outside.set(2.0, 1.0, NAN, NAN);
    open.set(NAN, NAN, NAN, NAN);
    EXPECT_TRUE(inside.checkVerifiesRule(1.0, 0) && inside.checkVerifiesRule(2.0, 0));
    EXPECT_FALSE(inside.checkVerifiesRule(2.5, 0));
    EXPECT_FALSE(outside.checkVerifiesRule(1.5, 0));
    EXPECT_TRUE(outside.checkVerifiesRule(0.5, 0) && outside.checkVerifiesRule(3.0, 0));
    EXPECT_TRUE(inside.checkVerifiesRule(NAN, 0));
    EXPECT_FALSE(open.checkIsUsed());
    EXPECT_TRUE(open.checkVerifiesRule(-1e300, 5));
    browserConfiguration::wxNumericalFilter imag;
    imag.set(NAN, NAN, 0.0, NAN);
    EXPECT_TRUE(imag.usedForImag && !imag.usedForReal);
    EXPECT_FALSE(imag.checkVerifiesRule(5, -1));

    // Value flags: unknown names and values pass; setAll flips the known ones.
    browserConfiguration::wxFilterRules rules;
    rules.setValueFlag("R", "1000", false);
    EXPECT_FALSE(rules.checkVerifiesRule("R", "1000"));
    EXPECT_TRUE(rules.checkVerifiesRule("R", "2000"));
    EXPECT_TRUE(rules.checkVerifiesRule("C", "1000"));
    rules.setAll(true);
    EXPECT_TRUE(rules.checkVerifiesRule("R", "1000"));
    rules.setNumericalFilter("", inside);  // without a name: every name
    EXPECT_FALSE(rules.checkVerifiesRule("C", "7", 7.0, 0.0));
}

namespace {
// Three runs of one design (R = 1k, 2k, 4k) with a tran and an ac section each, and a section swept
// over temperature and supply besides its x axis.
struct cRunsStore {
    cCurvePlotDataFile store;
    cFileDbSupport file{"/tmp/runs.raw", 0, 1};
    cRunsStore()
    {
        const cCurvePlotDataType* volt = store.addType("V", curvePlotProperties::data_double, curvePlotDataType::volt);
        for (double r : {1000.0, 2000.0, 4000.0})
            for (const char* analysis : {"tran", "ac"}) {
                cCurvePlotDataSection* section = store.addDataSection(analysis, &file);
                section->setAnalysisType(std::string(analysis));
                section->pushBackStepParameter("R", r);
                section->addVariable(volt, "x1.out");
                section->addVariable(volt, "in");
            }
        cCurvePlotDataSection* swept = store.addDataSection("dc", &file);
        swept->setAnalysisType(std::string("dc"));
        const cCurvePlotDataType* param = store.addType("p", curvePlotProperties::data_double,
                                                        curvePlotDataType::no_unit);
        swept->addSweepVariable(param, "temp", 0);
        swept->addSweepVariable(param, "vdd", 1);
        swept->addSweepVariable(volt, "vin", 2);
        const double temps[] = {-40.0, 27.0, 125.0};
        const double vdds[] = {1.0, 1.2};
        const double vins[] = {0.0, 0.5, 1.0};
        swept->getSweepVariable(0).setDoubleValues(temps, 3);
        swept->getSweepVariable(1).setDoubleValues(vdds, 2);
        swept->getSweepVariable(2).setDoubleValues(vins, 3);
        swept->addVariable(volt, "vout");
    }
};

std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        result.push_back(line);
    return result;
}
}  // namespace

TEST(BrowserRows, LevelsInTheirOrderAndFiltersOnRunsAnalysesAndCuts)
{
    cRunsStore runs;
    wxBrowserConfiguration config;
    wxWaveExplorerBrowserRows rows(config);
    rows.rebuild(runs.store);
    // 3 runs x 2 analyses x 2 curves, and one curve in 6 cuts.
    ASSERT_EQ(rows.getNumberOfCurveRows(), 18u) << rows.dumpRows();
    std::vector<std::string> dump = lines(rows.dumpRows());
    // File, section, analysis, run, sweep, instance, curve, unit, points; levels that apply to no
    // section (alter, additional index) are left out.
    std::vector<std::string> headers;
    for (unsigned c = 0; c < rows.treeGridVirtualGetNumberOfColumns(); ++c)
        headers.push_back(rows.treeGridVirtualGetColHeaderLabel(c));
    EXPECT_EQ(headers, (std::vector<std::string>{"File", "Section", "Analysis", "Run", "Sweep", "Instance", "Curve",
                                                 "Unit", "Points"}));
    EXPECT_EQ(rows.getNumberOfExpanderColumns(), 6u);
    EXPECT_EQ(dump[0], "runs.raw | tran | tran | 1000 |  | x1 | out | V | 0");
    // Rows of one section name stay together although the runs alternate tran and ac in the file.
    EXPECT_EQ(dump[5], "runs.raw | tran | tran | 4000 |  |  | in | V | 0");
    EXPECT_EQ(dump[6], "runs.raw | ac | ac | 1000 |  | x1 | out | V | 0");
    EXPECT_EQ(dump[12], "runs.raw | dc | dc |  | temp=-40, vdd=1 |  | vout | V | 0");
    EXPECT_EQ(dump[17], "runs.raw | dc | dc |  | temp=125, vdd=1.2 |  | vout | V | 0");
    EXPECT_EQ(config.getRunParameterOrder(), std::vector<std::string>{"R"});
    EXPECT_EQ(config.getSweepVariableOrder(), (std::vector<std::string>{"temp", "vdd"}));

    // The sweep order decides how a cut is named; the run style how a run is.
    config.setSweepVariableOrder({"vdd"});
    config.setRunParameterStyle(browserConfiguration::style_names_and_values);
    rows.rebuild(runs.store);
    dump = lines(rows.dumpRows());
    EXPECT_EQ(dump[0], "runs.raw | tran | tran | R=1000 |  | x1 | out | V | 0");
    EXPECT_EQ(dump[13], "runs.raw | dc | dc |  | vdd=1.2, temp=-40 |  | vout | V | 0");
    config.setRunParameterStyle(browserConfiguration::style_values);

    // Curve name on top: one group per curve over all runs and analyses.
    std::string unknown;
    ASSERT_TRUE(config.setGroupPriorities({"Curve name", "Section run index or parameter"}, unknown));
    rows.rebuild(runs.store);
    dump = lines(rows.dumpRows());
    EXPECT_EQ(dump[0], "x1 | out | 1000 | runs.raw | tran | tran |  | V | 0");
    EXPECT_EQ(dump[1], "x1 | out | 1000 | runs.raw | ac | ac |  | V | 0");
    EXPECT_EQ(dump[5], "x1 | out | 4000 | runs.raw | ac | ac |  | V | 0");
    EXPECT_EQ(dump[6], " | in | 1000 | runs.raw | tran | tran |  | V | 0");
    config.setDefaults();

    // A discrete run filter, then an inverted number filter that keeps what lies outside 1500..3000.
    config.runParameterRules().setValueFlag("R", "2000", false);
    rows.rebuild(runs.store);
    EXPECT_EQ(rows.getNumberOfCurveRows(), 14u);
    EXPECT_EQ(rows.getNumberOfFilteredCurves(), 4u);
    config.clearRules();
    browserConfiguration::wxNumericalFilter outside;
    outside.set(3000, 1500, NAN, NAN);
    config.runParameterRules().setNumericalFilter("R", outside);
    rows.rebuild(runs.store);
    EXPECT_EQ(rows.getNumberOfCurveRows(), 14u);
    EXPECT_EQ(rows.dumpRows().find(" | 2000 | "), std::string::npos);
    EXPECT_NE(rows.dumpRows().find(" | 4000 | "), std::string::npos);

    // Analysis types and sweep values; the filter page's lists still hold what is hidden.
    config.clearRules();
    config.setAnalysisTypeFlag("ac", false);
    config.sweepVariableRules().setValueFlag("temp", "27", false);
    rows.rebuild(runs.store);
    EXPECT_EQ(rows.getNumberOfCurveRows(), 6u + 4u);
    EXPECT_EQ(rows.dumpRows().find(" | ac | "), std::string::npos);
    EXPECT_EQ(rows.dumpRows().find("temp=27"), std::string::npos);
    EXPECT_EQ(rows.getAnalysisTypes().size(), 3u);
    ASSERT_EQ(rows.getSweepVariableValues().size(), 2u);
    EXPECT_EQ(rows.getSweepVariableValues()[0].second, (std::vector<std::string>{"-40", "27", "125"}));
}

TEST(BrowserTreeGrid, OpenStateFollowsTheNamesWhenTheOrderChanges)
{
    cRunsStore runs;
    wxBrowserConfiguration config;
    wxWaveExplorerBrowserTreeGrid grid(nullptr, &config);
    grid.resize(600, 400);
    grid.refresh(runs.store);
    using waveExplorerBrowser::kind_level;
    // Close every run group, then open run 2000 of the ac section.
    unsigned opened = 0;
    for (unsigned e = 0; e < grid.getNumberOfExpanders(); ++e) {
        const std::string run = expanderText(grid, e, kind_level, browserConfiguration::section_run_index_or_parameter);
        if (run.empty())
            continue;
        const std::string section = grid.rows().getSectionName(grid.getTotalRow(grid.getExpander(e).firstRow));
        const bool open = run == "2000" && section == "ac";
        grid.setExpanded(e, open);
        opened += open;
    }
    ASSERT_EQ(opened, 1u);

    // Runs above sections: the group of section "ac" in run 2000 is the group that was open; the
    // sections of the other runs were closed and stay closed.
    std::string unknown;
    ASSERT_TRUE(config.setGroupPriorities({"File name", "Section run index or parameter"}, unknown));
    grid.refresh(runs.store);
    unsigned checked = 0;
    for (unsigned e = 0; e < grid.getNumberOfExpanders(); ++e) {
        const std::string section = expanderText(grid, e, kind_level, browserConfiguration::section_name);
        if (section.empty() || section == "dc")
            continue;
        const unsigned row = grid.getTotalRow(grid.getExpander(e).firstRow);
        const std::string run = grid.rows().treeGridVirtualGetValue(row, 1);
        EXPECT_EQ(grid.getExpander(e).expanded, run == "2000" && section == "ac") << run << " " << section;
        ++checked;
    }
    EXPECT_EQ(checked, 6u);
}
