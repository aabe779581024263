#include "wxWaveExplorerBrowserRows.h"

#include <algorithm>
#include <cctype>
#include <unordered_map>

#include "base/cVxThread.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cFileDbSupport.h"

namespace vx3 {

using namespace waveExplorerBrowser;

namespace {
std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return text;
}
}  // namespace

void wxWaveExplorerBrowserRows::rebuild(cCurvePlotDataFile& store)
{
    mRows.clear();
    mFiles.clear();
    mSections.clear();
    mAnalyses.clear();
    mMatches.clear();
    cVxScopedLock lock(store.getMutex());
    for (uint64_t i = 0; i < store.getNbOfDataSections(); ++i) {
        const cCurvePlotDataSection* section = store.getDataSectionFromIndex(i);
        if (!section)
            continue;
        const cFileDbSupport* file = section->getFile();
        // The base name keeps the curve column in view; a full path would push it off the screen.
        std::string fileName = file ? file->fileName() : std::string();
        if (const size_t slash = fileName.find_last_of('/'); slash != std::string::npos && slash + 1 < fileName.size())
            fileName.erase(0, slash + 1);
        if (mFiles.empty() || mFiles.back() != fileName)
            mFiles.push_back(fileName);
        mSections.push_back(section->completeName());
        mAnalyses.push_back(section->getAnalysisTypeText());
        const uint64_t count = section->getNbOfVariables();
        const size_t sectionStart = mRows.size();
        mRows.reserve(mRows.size() + count);
        for (uint64_t k = 0; k < count; ++k) {
            const cCurvePlotVariable& curve = section->getVariable(k);
            wxBrowserRow row;
            row.sectionId = section->getSectionId();
            row.curveIndex = k;
            row.file = uint32_t(mFiles.size() - 1);
            row.section = uint32_t(mSections.size() - 1);
            row.fullName = curve.name();
            if (mFullNames)
                row.curve = row.fullName;
            else
                simplifyCurveName(row.fullName, row.scope, row.curve);
            row.unit = curve.getUnitStr();
            row.points = section->getVariableValueCount(k);
            mRows.push_back(std::move(row));
        }
        groupByInstance(sectionStart);
    }
    if (!mPattern.empty())
        reinitSearch(mPattern, mOptions);
}

void wxWaveExplorerBrowserRows::groupByInstance(size_t first)
{
    // The grid makes an expander of a run of equal texts, so the curves of one instance must be
    // adjacent. Instances keep the order in which they first appear, curves the order of the data.
    std::unordered_map<std::string, size_t> rank;
    bool sorted = true;
    size_t last = 0;
    for (size_t r = first; r < mRows.size(); ++r) {
        const size_t k = rank.emplace(mRows[r].scope, rank.size()).first->second;
        sorted = sorted && k >= last;
        last = k;
    }
    if (sorted)
        return;
    std::stable_sort(mRows.begin() + long(first), mRows.end(), [&rank](const wxBrowserRow& a, const wxBrowserRow& b) {
        return rank.at(a.scope) < rank.at(b.scope);
    });
}

void wxWaveExplorerBrowserRows::simplifyCurveName(const std::string& name, std::string& scope, std::string& shortName)
{
    // A dot inside brackets belongs to a name like v(x1.out): only dots outside any bracket split.
    int depth = 0;
    size_t split = std::string::npos;
    for (size_t i = 0; i < name.size(); ++i) {
        const char c = name[i];
        if (c == '(' || c == '[')
            ++depth;
        else if ((c == ')' || c == ']') && depth > 0)
            --depth;
        else if (c == '.' && depth == 0 && i > 0 && i + 1 < name.size())
            split = i;
    }
    if (split == std::string::npos) {
        scope.clear();
        shortName = name;
        return;
    }
    scope = name.substr(0, split);
    shortName = name.substr(split + 1);
}

bool wxWaveExplorerBrowserRows::checkWildCardPatternMatch(const std::string& pattern, const std::string& text)
{
    // Iterative match with one back-track point for the last star: linear in practice.
    size_t p = 0, t = 0, star = std::string::npos, mark = 0;
    while (t < text.size()) {
        if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
            ++p;
            ++t;
        } else if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            mark = t;
        } else if (star != std::string::npos) {
            p = star + 1;
            t = ++mark;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

std::string wxWaveExplorerBrowserRows::dumpRows() const
{
    std::string text;
    for (const auto& row : mRows) {
        text += mFiles[row.file] + " | " + mSections[row.section] + " | " + row.scope + " | " + row.curve + " | " +
                row.unit + " | " + std::to_string(row.points) + "\n";
    }
    return text;
}

bool wxWaveExplorerBrowserRows::checkSearchStringMatches(size_t rowIndex) const
{
    const wxBrowserRow& row = mRows[rowIndex];
    // The full name is searched, so that a path typed with dots finds a shortened row.
    const std::string text = mOptions.caseSensitive ? row.fullName : lowered(row.fullName);
    if (mOptions.wildcard)
        return checkWildCardPatternMatch(mPattern, text);
    return text.find(mPattern) != std::string::npos;
}

std::string wxWaveExplorerBrowserRows::reinitSearch(const std::string& text, const cBrowserSearchOptions& options)
{
    mOptions = options;
    mPattern = options.caseSensitive ? text : lowered(text);
    mMatches.clear();
    for (size_t row = 0; row < mRows.size(); ++row)
        if (checkSearchStringMatches(row))
            mMatches.push_back(row);
    if (mMatches.empty())
        return "No matching curve found.";
    mSearchRow = mMatches.front();
    return {};
}

std::string wxWaveExplorerBrowserRows::findNext(size_t currentRow)
{
    if (mMatches.empty())
        return "Forward search failed.";
    auto it = std::upper_bound(mMatches.begin(), mMatches.end(), currentRow);
    if (it != mMatches.end()) {
        mSearchRow = *it;
        return {};
    }
    if (!mOptions.wrap)
        return "End of forward search reached.";
    // From the top up to the current row itself: the wrapped search ends where it began.
    mSearchRow = mMatches.front();
    return "End of forward search reached, continuing from top.";
}

std::string wxWaveExplorerBrowserRows::findPrevious(size_t currentRow)
{
    if (mMatches.empty())
        return "Backward search failed.";
    auto it = std::lower_bound(mMatches.begin(), mMatches.end(), currentRow);
    if (it != mMatches.begin()) {
        mSearchRow = *(it - 1);
        return {};
    }
    if (!mOptions.wrap)
        return "End of backward search reached.";
    mSearchRow = mMatches.back();
    return "End of backward search reached, continuing from bottom.";
}

std::string wxWaveExplorerBrowserRows::treeGridVirtualGetColHeaderLabel(unsigned col)
{
    static const char* const labels[col_count] = {"File", "Section", "Instance", "Curve", "Unit", "Points"};
    return col < col_count ? labels[col] : std::string();
}

std::string wxWaveExplorerBrowserRows::treeGridVirtualGetValue(unsigned rowIndex, unsigned col)
{
    if (rowIndex >= mRows.size())
        return {};
    const wxBrowserRow& row = mRows[rowIndex];
    switch (col) {
    case col_file: return mFiles[row.file];
    case col_section: return mSections[row.section];
    case col_scope: return row.scope;
    case col_curve: return row.curve;
    case col_unit: return row.unit;
    case col_points: return std::to_string(row.points);
    default: return {};
    }
}

int wxWaveExplorerBrowserRows::treeGridVirtualGetColType(unsigned col)
{
    return col == col_points ? treeGridVirtual::col_number : treeGridVirtual::col_string;
}

double wxWaveExplorerBrowserRows::treeGridVirtualGetDoubleValue(unsigned row, unsigned col)
{
    return row < mRows.size() && col == col_points ? double(mRows[row].points) : 0.0;
}

std::string wxWaveExplorerBrowserRows::treeGridVirtualGetToolTip(unsigned rowIndex, unsigned)
{
    if (rowIndex >= mRows.size())
        return {};
    const wxBrowserRow& row = mRows[rowIndex];
    return "Name : " + row.curve + "\nFull Name: " + row.fullName + "\nAnalysis : " + mAnalyses[row.section] +
           "\nVariable Type: " + row.unit;
}

}  // namespace vx3
