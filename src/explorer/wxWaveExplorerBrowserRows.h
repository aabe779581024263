// The rows of the curve browser, without Qt: one row per curve (per cut for curves swept over more
// than one variable) of every open section that passes the filters. The levels of the tree are
// columns in the configured order, so the tree grid groups them into expanders. Also the search
// over these rows, which walks curves hidden in closed expanders as well.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "treegrid/wxTreeGridVirtual.h"
#include "wxBrowserConfiguration.h"

namespace vx3 {

class cCurvePlotDataFile;
class cCurvePlotDataSection;

namespace waveExplorerBrowser {
// What a column shows: a level of the tree (its priority), the instance part of a shortened
// hierarchical name, or the curve's unit and number of points.
enum column_kind : unsigned { kind_level = 0, kind_instance, kind_unit, kind_points };
struct cColumn {
    column_kind kind = kind_level;
    unsigned priority = 0;
};
// The row type of a curve, as the tree's other row types are numbered.
constexpr unsigned row_type_curve = 13;
}  // namespace waveExplorerBrowser

struct wxBrowserRow {
    uint64_t sectionId = 0;
    uint64_t curveIndex = 0;
    uint32_t section = 0;  // index into the section texts
    uint32_t cut = 0;      // the cut of a curve swept over more than one variable
    std::string scope;     // the hierarchical part shown by the instance expander
    std::string curve;     // the name as shown: shortened unless full names are wanted
    std::string fullName;
    std::string unit;
    uint64_t points = 0;
};

struct cBrowserSearchOptions {
    bool caseSensitive = false;
    bool wildcard = false;
    bool wrap = false;
    // The rows searched, [firstRow, endRow): a selected instance's rows lie together.
    size_t firstRow = 0;
    size_t endRow = std::numeric_limits<size_t>::max();
};

class wxWaveExplorerBrowserRows : public wxTreeGridVirtual {
public:
    // The rows follow the rules of this configuration, which learns the names of run parameters and
    // sweep variables as they appear.
    explicit wxWaveExplorerBrowserRows(wxBrowserConfiguration& configuration) : mConfiguration(&configuration) {}
    wxWaveExplorerBrowserRows() : mConfiguration(&mOwnConfiguration) {}

    // Rebuilds every row from the store; the grid keeps the expanders open by their names.
    void rebuild(cCurvePlotDataFile& store);
    void setUseFullHierarchicalNames(bool flag) { mConfiguration->setUseFullHierarchicalNames(flag); }
    bool getUseFullHierarchicalNames() const { return mConfiguration->getUseFullHierarchicalNames(); }
    wxBrowserConfiguration& configuration() { return *mConfiguration; }

    size_t getNumberOfCurveRows() const { return mRows.size(); }
    const wxBrowserRow& getRow(size_t row) const { return mRows[row]; }
    const std::vector<waveExplorerBrowser::cColumn>& columns() const { return mColumns; }
    // The leading columns that make expanders: all levels but the last.
    unsigned getNumberOfExpanderColumns() const { return mExpanderColumns; }
    // The level a column stands for, or no_priority for the instance and data columns.
    unsigned getColumnPriority(unsigned col) const;
    // One line per row, the columns separated by " | ": a read-only view for tests and scripts.
    std::string dumpRows() const;
    std::string dumpRow(size_t row) const;
    std::string getSectionText(size_t row) const;
    const std::string& getSectionName(size_t row) const { return mSections[mRows[row].section].name; }
    const std::string& getAnalysisText(size_t row) const { return mSections[mRows[row].section].analysis; }
    // Names and values met in the last rebuild, for the filter page.
    const std::vector<std::pair<std::string, std::vector<std::string>>>& getRunParameterValues() const
    {
        return mRunValues;
    }
    const std::vector<std::pair<std::string, std::vector<std::string>>>& getSweepVariableValues() const
    {
        return mSweepValues;
    }
    const std::vector<std::string>& getAnalysisTypes() const { return mAnalysisTypes; }
    size_t getNumberOfFilteredCurves() const { return mFilteredCount; }

    // Splits a hierarchical name at its last dot outside brackets; names without one have an empty scope.
    static void simplifyCurveName(const std::string& name, std::string& scope, std::string& shortName);
    // '*' any run, '?' one character, over the whole text.
    static bool checkWildCardPatternMatch(const std::string& pattern, const std::string& text);

    // ---- Search. Each returns a message for the status line, empty when a row was found; the
    // found row is in getSearchRow(). The rows are the model's own.
    std::string reinitSearch(const std::string& text, const cBrowserSearchOptions& options);
    std::string findNext(size_t currentRow);
    std::string findPrevious(size_t currentRow);
    size_t getSearchRow() const { return mSearchRow; }
    size_t getNumberOfSearchResults() const { return mMatches.size(); }
    const std::vector<size_t>& getSearchResults() const { return mMatches; }
    bool checkSearchStringMatches(size_t row, bool curvesOnly = true) const;
    void clearSearch();

    // ---- wxTreeGridVirtual
    unsigned treeGridVirtualGetNumberOfColumns() override { return unsigned(mColumns.size()); }
    unsigned treeGridVirtualGetNumberOfRows() override { return unsigned(mRows.size()); }
    std::string treeGridVirtualGetColHeaderLabel(unsigned col) override;
    std::string treeGridVirtualGetRowHeaderLabel(unsigned row) override { return std::to_string(row + 1); }
    std::string treeGridVirtualGetValue(unsigned row, unsigned col) override;
    bool treeGridVirtualGetDefaultExpanded(unsigned row, unsigned level) override { return level == 0; }
    bool treeGridVirtualGetGridUsesExpanders() override { return true; }
    int treeGridVirtualGetColType(unsigned col) override;
    double treeGridVirtualGetDoubleValue(unsigned row, unsigned col) override;
    std::string treeGridVirtualGetToolTip(unsigned row, unsigned col) override;

private:
    // The texts of one section's levels, made once per rebuild.
    struct cSectionTexts {
        std::string file, name, complete, analysis, alter, run, index, runParameters;
        std::vector<std::string> cuts;  // per cut, the values of the sweep variables before the x axis
        std::vector<bool> cutShown;
        unsigned runIndex = 0;
    };
    bool makeSectionTexts(const cCurvePlotDataSection& section, cSectionTexts& texts);
    void makeColumns();
    void groupRows();
    void rememberValue(std::vector<std::pair<std::string, std::vector<std::string>>>& list, const std::string& name,
                       const std::string& value);
    std::string levelText(const wxBrowserRow& row, unsigned priority) const;

    wxBrowserConfiguration mOwnConfiguration;
    wxBrowserConfiguration* mConfiguration;
    std::vector<wxBrowserRow> mRows;
    std::vector<cSectionTexts> mSections;
    std::vector<waveExplorerBrowser::cColumn> mColumns;
    unsigned mExpanderColumns = 0;
    std::vector<std::pair<std::string, std::vector<std::string>>> mRunValues;
    std::vector<std::pair<std::string, std::vector<std::string>>> mSweepValues;
    std::vector<std::string> mAnalysisTypes;
    size_t mFilteredCount = 0;

    std::string mPattern;
    bool mSearchActive = false;
    cBrowserSearchOptions mOptions;
    std::vector<size_t> mMatches;  // rows that match, ascending
    size_t mSearchRow = 0;
};

}  // namespace vx3
