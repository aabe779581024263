// The rows of the curve browser, without Qt: one row per curve of every open section, with the file,
// the section and the instance path as expander columns, so the tree grid groups them. Also the
// search over these rows, which walks curves hidden in closed expanders as well.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "treegrid/wxTreeGridVirtual.h"

namespace vx3 {

class cCurvePlotDataFile;

namespace waveExplorerBrowser {
enum browser_column : unsigned { col_file = 0, col_section, col_scope, col_curve, col_unit, col_points, col_count };
// The expander columns: file, section, instance path.
constexpr unsigned kExpanderLevels = 3;
}  // namespace waveExplorerBrowser

struct wxBrowserRow {
    uint64_t sectionId = 0;
    uint64_t curveIndex = 0;
    uint32_t file = 0;     // index into the file names
    uint32_t section = 0;  // index into the section names
    std::string scope;     // the hierarchical part already shown by the expander
    std::string curve;     // the name as shown: shortened unless full names are wanted
    std::string fullName;
    std::string unit;
    uint64_t points = 0;
};

struct cBrowserSearchOptions {
    bool caseSensitive = false;
    bool wildcard = false;
    bool wrap = false;
};

class wxWaveExplorerBrowserRows : public wxTreeGridVirtual {
public:
    // Rebuilds every row from the store; the grid keeps the expanders open by their names.
    void rebuild(cCurvePlotDataFile& store);
    void setUseFullHierarchicalNames(bool flag) { mFullNames = flag; }
    bool getUseFullHierarchicalNames() const { return mFullNames; }

    size_t getNumberOfCurveRows() const { return mRows.size(); }
    const wxBrowserRow& getRow(size_t row) const { return mRows[row]; }
    // One line per row, the columns separated by " | ": a read-only view for tests and scripts.
    std::string dumpRows() const;

    // Splits a hierarchical name at its last dot; names without one have an empty scope.
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
    bool checkSearchStringMatches(size_t row) const;

    // ---- wxTreeGridVirtual
    unsigned treeGridVirtualGetNumberOfColumns() override { return waveExplorerBrowser::col_count; }
    unsigned treeGridVirtualGetNumberOfRows() override { return unsigned(mRows.size()); }
    std::string treeGridVirtualGetColHeaderLabel(unsigned col) override;
    std::string treeGridVirtualGetRowHeaderLabel(unsigned row) override { return std::to_string(row + 1); }
    int treeGridVirtualGetRowHeaderLabelOffset() override { return 1; }
    std::string treeGridVirtualGetValue(unsigned row, unsigned col) override;
    bool treeGridVirtualGetDefaultExpanded(unsigned row, unsigned level) override { return level == 0; }
    bool treeGridVirtualGetGridUsesExpanders() override { return true; }
    void treeGridVirtualElementSelected(unsigned, unsigned) override {}
    void treeGridVirtualElementDeselected(unsigned, unsigned) override {}
    void treeGridVirtualRowSelected(unsigned) override {}
    void treeGridVirtualRowDeselected(unsigned) override {}
    void treeGridVirtualColSelected(unsigned) override {}
    void treeGridVirtualColDeselected(unsigned) override {}
    int treeGridVirtualGetColType(unsigned col) override;
    double treeGridVirtualGetDoubleValue(unsigned row, unsigned col) override;
    std::string treeGridVirtualGetToolTip(unsigned row, unsigned col) override;

private:
    void groupByInstance(size_t firstRowOfSection);

    std::vector<wxBrowserRow> mRows;
    std::vector<std::string> mFiles;
    std::vector<std::string> mSections;
    std::vector<std::string> mAnalyses;  // per section name index
    bool mFullNames = false;

    std::string mPattern;
    cBrowserSearchOptions mOptions;
    std::vector<size_t> mMatches;  // rows that match, ascending
    size_t mSearchRow = 0;
};

}  // namespace vx3
