#include "wxWaveExplorerBrowserRows.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <unordered_map>

#include "base/cVxThread.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cFileDbSupport.h"

namespace vx3 {

using namespace waveExplorerBrowser;
using namespace browserConfiguration;

namespace {
std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return text;
}

std::string numberText(double value)
{
    char buffer[32];
    std::snprintf(buffer, sizeof(buffer), "%.6g", value);
    return buffer;
}

// The position of a name in an order, names not in it last.
size_t rankIn(const std::vector<std::string>& order, const std::string& name)
{
    const auto found = std::find(order.begin(), order.end(), name);
    return size_t(found - order.begin());
}

struct cNamedValue {
    std::string name, text;
    double real = std::nan(""), imag = std::nan("");
};

std::string joinValues(std::vector<cNamedValue>& values, const std::vector<std::string>& order, bool withNames)
{
    std::stable_sort(values.begin(), values.end(), [&order](const cNamedValue& a, const cNamedValue& b) {
        return rankIn(order, a.name) < rankIn(order, b.name);
    });
    std::string text;
    for (const auto& value : values) {
        if (!text.empty())
            text += ", ";
        if (withNames)
            text += value.name + "=";
        text += value.text;
    }
    return text;
}
}  // namespace

void wxWaveExplorerBrowserRows::rememberValue(std::vector<std::pair<std::string, std::vector<std::string>>>& list,
                                              const std::string& name, const std::string& value)
{
    auto entry = std::find_if(list.begin(), list.end(), [&name](const auto& e) { return e.first == name; });
    if (entry == list.end()) {
        list.emplace_back(name, std::vector<std::string>());
        entry = list.end() - 1;
    }
    if (std::find(entry->second.begin(), entry->second.end(), value) == entry->second.end())
        entry->second.push_back(value);
}

bool wxWaveExplorerBrowserRows::makeSectionTexts(const cCurvePlotDataSection& section, cSectionTexts& texts)
{
    wxBrowserConfiguration& config = *mConfiguration;
    if (const cFileDbSupport* file = section.getFile()) {
        // The base name keeps the curve column in view; a full path would push it off the screen.
        texts.file = file->fileName();
        if (const size_t slash = texts.file.find_last_of('/'); slash != std::string::npos && slash + 1 < texts.file.size())
            texts.file.erase(0, slash + 1);
    }
    texts.name = section.name();
    texts.complete = section.completeName();
    texts.analysis = section.getAnalysisTypeText();
    if (std::find(mAnalysisTypes.begin(), mAnalysisTypes.end(), texts.analysis) == mAnalysisTypes.end())
        mAnalysisTypes.push_back(texts.analysis);
    if (section.getAlterIndex() != 0)
        texts.alter = "alter " + std::to_string(section.getAlterIndex());
    if (section.getAdditionalDifferentiatorIndex() != 0)
        texts.index = "(" + std::to_string(section.getAdditionalDifferentiatorIndex()) + ")";
    texts.runIndex = section.getStepIndex();

    bool shown = config.checkVerifiesAnalysisTypeFilterRules(texts.analysis);
    std::vector<cNamedValue> parameters;
    for (const auto& property : section.getStepParameters().parameters) {
        cNamedValue value;
        value.name = property.getName();
        value.text = property.getValueAsString();
        if (property.isComplex()) {
            value.real = property.getReal();
            value.imag = property.getImag();
        } else {
            property.getAsDouble(value.real);
        }
        config.addRunParameterName(value.name);
        rememberValue(mRunValues, value.name, value.text);
        shown = shown && config.checkVerifiesParameterFilterRules(value.name, value.text, value.real, value.imag);
        parameters.push_back(std::move(value));
    }
    const unsigned style = config.getRunParameterStyle();
    if (!parameters.empty() && style != style_run_index)
        texts.run = joinValues(parameters, config.getRunParameterOrder(), style == style_names_and_values);
    else if (texts.runIndex != 0)
        texts.run = "run " + std::to_string(texts.runIndex);
    if (!parameters.empty())
        texts.runParameters = joinValues(parameters, config.getRunParameterOrder(), true);

    // Curves swept over more than one variable show one row per cut, named by the values of the
    // sweep variables other than the x axis.
    const uint64_t nbSweeps = section.getNbOfSweepVariables();
    if (nbSweeps >= 2) {
        std::vector<uint64_t> permutation;
        section.getDefaultSweepPermutationArray(permutation);
        for (uint64_t k = 0; k + 1 < permutation.size(); ++k)
            config.addSweepVariableName(section.getSweepVariable(permutation[k]).name());
        const uint64_t cuts = section.computeNbOfCutsPerCurve();
        std::vector<uint64_t> indices;
        for (uint64_t cut = 0; cut < cuts; ++cut) {
            section.computeSweepIndicesForCut(cut, permutation, indices);
            std::vector<cNamedValue> values;
            bool cutShown = true;
            for (uint64_t k = 0; k + 1 < permutation.size() && k + 1 < indices.size() + 1; ++k) {
                const uint64_t sweep = permutation[k];
                cNamedValue value;
                value.name = section.getSweepVariable(sweep).name();
                value.real = sweep < indices.size() ? section.getSweepValue(sweep, indices[sweep]) : std::nan("");
                value.text = numberText(value.real);
                rememberValue(mSweepValues, value.name, value.text);
                cutShown = cutShown && config.checkVerifiesSweepFilterRules(value.name, value.text, value.real, 0.0);
                values.push_back(std::move(value));
            }
            texts.cuts.push_back(joinValues(values, config.getSweepVariableOrder(), true));
            texts.cutShown.push_back(cutShown);
        }
    }
    return shown;
}

void wxWaveExplorerBrowserRows::rebuild(cCurvePlotDataFile& store)
{
    mRows.clear();
    mSections.clear();
    mRunValues.clear();
    mSweepValues.clear();
    mAnalysisTypes.clear();
    mMatches.clear();
    mFilteredCount = 0;
    const bool fullNames = mConfiguration->getUseFullHierarchicalNames();
    {
        cVxScopedLock lock(store.getMutex());
        for (uint64_t i = 0; i < store.getNbOfDataSections(); ++i) {
            const cCurvePlotDataSection* section = store.getDataSectionFromIndex(i);
            if (!section)
                continue;
            cSectionTexts texts;
            const uint64_t count = section->getNbOfVariables();
            if (!makeSectionTexts(*section, texts)) {
                mFilteredCount += count;
                continue;
            }
            const uint32_t sectionIndex = uint32_t(mSections.size());
            const size_t cuts = texts.cuts.empty() ? 1 : texts.cuts.size();
            mSections.push_back(std::move(texts));
            const cSectionTexts& shown = mSections.back();
            mRows.reserve(mRows.size() + count * cuts);
            for (uint64_t k = 0; k < count; ++k) {
                const cCurvePlotVariable& curve = section->getVariable(k);
                wxBrowserRow row;
                row.sectionId = section->getSectionId();
                row.curveIndex = k;
                row.section = sectionIndex;
                row.fullName = curve.name();
                if (fullNames)
                    row.curve = row.fullName;
                else
                    simplifyCurveName(row.fullName, row.scope, row.curve);
                row.unit = curve.getUnitStr();
                row.points = section->getVariableValueCount(k);
                for (size_t cut = 0; cut < cuts; ++cut) {
                    if (!shown.cutShown.empty() && !shown.cutShown[cut]) {
                        ++mFilteredCount;
                        continue;
                    }
                    row.cut = uint32_t(cut);
                    mRows.push_back(row);
                }
            }
        }
    }
    makeColumns();
    groupRows();
    if (mSearchActive)
        reinitSearch(mPattern, mOptions);
}

void wxWaveExplorerBrowserRows::makeColumns()
{
    // A level that applies to no section is left out; the instance column follows the curve level.
    mColumns.clear();
    auto anyRow = [this](auto test) {
        return std::any_of(mSections.begin(), mSections.end(), test);
    };
    const bool anyScope = std::any_of(mRows.begin(), mRows.end(), [](const wxBrowserRow& r) { return !r.scope.empty(); });
    for (unsigned priority : mConfiguration->getGroupPriorities()) {
        bool applies = true;
        switch (priority) {
        case file_name: applies = anyRow([](const cSectionTexts& t) { return !t.file.empty(); }); break;
        case analysis_type: applies = anyRow([](const cSectionTexts& t) { return !t.analysis.empty(); }); break;
        case section_alter_index: applies = anyRow([](const cSectionTexts& t) { return !t.alter.empty(); }); break;
        case section_run_index_or_parameter:
            applies = anyRow([](const cSectionTexts& t) { return !t.run.empty(); });
            break;
        case additional_section_index: applies = anyRow([](const cSectionTexts& t) { return !t.index.empty(); }); break;
        case additional_sweep_variable_value:
            applies = anyRow([](const cSectionTexts& t) { return !t.cuts.empty(); });
            break;
        default: break;
        }
        if (!applies)
            continue;
        if (priority == curve_name && anyScope)
            mColumns.push_back({kind_instance, curve_name});
        mColumns.push_back({kind_level, priority});
    }
    mExpanderColumns = mColumns.empty() ? 0 : unsigned(mColumns.size() - 1);
    mColumns.push_back({kind_unit, no_priority});
    mColumns.push_back({kind_points, no_priority});
}

void wxWaveExplorerBrowserRows::groupRows()
{
    // The grid makes an expander of a run of equal texts, so rows with the same text in an
    // expander column must be adjacent. Texts keep the order in which they first appear, rows
    // the order of the data.
    if (mExpanderColumns == 0 || mRows.size() < 2)
        return;
    const size_t n = mRows.size();
    std::vector<uint32_t> ranks(n * mExpanderColumns);
    bool sorted = true;
    for (unsigned c = 0; c < mExpanderColumns; ++c) {
        std::unordered_map<std::string, uint32_t> rank;
        for (size_t r = 0; r < n; ++r)
            ranks[r * mExpanderColumns + c] =
                rank.emplace(treeGridVirtualGetValue(unsigned(r), c), uint32_t(rank.size())).first->second;
    }
    const unsigned width = mExpanderColumns;
    auto less = [&ranks, width](size_t a, size_t b) {
        return std::lexicographical_compare(ranks.begin() + long(a * width), ranks.begin() + long(a * width + width),
                                            ranks.begin() + long(b * width), ranks.begin() + long(b * width + width));
    };
    for (size_t r = 1; r < n && sorted; ++r)
        sorted = !less(r, r - 1);
    if (sorted)
        return;
    std::vector<size_t> order(n);
    std::iota(order.begin(), order.end(), size_t(0));
    std::stable_sort(order.begin(), order.end(), less);
    std::vector<wxBrowserRow> rows;
    rows.reserve(n);
    for (size_t index : order)
        rows.push_back(std::move(mRows[index]));
    mRows = std::move(rows);
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

unsigned wxWaveExplorerBrowserRows::getColumnPriority(unsigned col) const
{
    return col < mColumns.size() && mColumns[col].kind == kind_level ? mColumns[col].priority : unsigned(no_priority);
}

std::string wxWaveExplorerBrowserRows::dumpRow(size_t row) const
{
    std::string text;
    auto* self = const_cast<wxWaveExplorerBrowserRows*>(this);
    for (unsigned c = 0; c < mColumns.size(); ++c) {
        if (c)
            text += " | ";
        text += self->treeGridVirtualGetValue(unsigned(row), c);
    }
    return text;
}

std::string wxWaveExplorerBrowserRows::dumpRows() const
{
    std::string text;
    for (size_t row = 0; row < mRows.size(); ++row)
        text += dumpRow(row) + "\n";
    return text;
}

std::string wxWaveExplorerBrowserRows::getSectionText(size_t row) const
{
    return row < mRows.size() ? mSections[mRows[row].section].complete : std::string();
}

bool wxWaveExplorerBrowserRows::checkSearchStringMatches(size_t rowIndex, bool curvesOnly) const
{
    // Every row of this model is a curve (type 13); group rows exist only as expanders.
    (void)curvesOnly;
    const wxBrowserRow& row = mRows[rowIndex];
    // The full name is searched, so that a path typed with dots finds a shortened row.
    const std::string text = mOptions.caseSensitive ? row.fullName : lowered(row.fullName);
    if (mOptions.wildcard)
        return checkWildCardPatternMatch(mPattern, text);
    return text.find(mPattern) != std::string::npos;
}

void wxWaveExplorerBrowserRows::clearSearch()
{
    mSearchActive = false;
    mPattern.clear();
    mMatches.clear();
}

std::string wxWaveExplorerBrowserRows::reinitSearch(const std::string& text, const cBrowserSearchOptions& options)
{
    mOptions = options;
    mSearchActive = true;
    mPattern = options.caseSensitive ? text : lowered(text);
    mMatches.clear();
    const size_t end = std::min(options.endRow, mRows.size());
    for (size_t row = std::min(options.firstRow, end); row < end; ++row)
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
    if (col >= mColumns.size())
        return {};
    static const char* const levels[nb_priorities] = {"File", "Section", "Analysis", "Alter",
                                                      "Run",  "Index",   "Sweep",    "Curve"};
    switch (mColumns[col].kind) {
    case kind_instance: return "Instance";
    case kind_unit: return "Unit";
    case kind_points: return "Points";
    default: return levels[mColumns[col].priority];
    }
}

std::string wxWaveExplorerBrowserRows::levelText(const wxBrowserRow& row, unsigned priority) const
{
    const cSectionTexts& texts = mSections[row.section];
    switch (priority) {
    case file_name: return texts.file;
    case section_name: return texts.name;
    case analysis_type: return texts.analysis;
    case section_alter_index: return texts.alter;
    case section_run_index_or_parameter: return texts.run;
    case additional_section_index: return texts.index;
    case additional_sweep_variable_value: return row.cut < texts.cuts.size() ? texts.cuts[row.cut] : std::string();
    case curve_name: return row.curve;
    default: return {};
    }
}

std::string wxWaveExplorerBrowserRows::treeGridVirtualGetValue(unsigned rowIndex, unsigned col)
{
    if (rowIndex >= mRows.size() || col >= mColumns.size())
        return {};
    const wxBrowserRow& row = mRows[rowIndex];
    switch (mColumns[col].kind) {
    case kind_instance: return row.scope;
    case kind_level: return levelText(row, mColumns[col].priority);
    case kind_unit: return row.unit;
    case kind_points: return std::to_string(row.points);
    }
    return {};
}

int wxWaveExplorerBrowserRows::treeGridVirtualGetColType(unsigned col)
{
    return col < mColumns.size() && mColumns[col].kind == kind_points ? treeGridVirtual::col_number
                                                                      : treeGridVirtual::col_string;
}

double wxWaveExplorerBrowserRows::treeGridVirtualGetDoubleValue(unsigned row, unsigned col)
{
    return row < mRows.size() && col < mColumns.size() && mColumns[col].kind == kind_points ? double(mRows[row].points)
                                                                                            : 0.0;
}

std::string wxWaveExplorerBrowserRows::treeGridVirtualGetToolTip(unsigned rowIndex, unsigned)
{
    if (rowIndex >= mRows.size())
        return {};
    const wxBrowserRow& row = mRows[rowIndex];
    const cSectionTexts& texts = mSections[row.section];
    std::string tip = "Name : " + row.curve + "\nFull Name: " + row.fullName + "\nAnalysis : " + texts.analysis;
    if (texts.runIndex != 0)
        tip += "\nRun Index : " + std::to_string(texts.runIndex);
    if (!texts.runParameters.empty())
        tip += "\nRun Parameter : " + texts.runParameters;
    return tip + "\nVariable Type: " + row.unit;
}

}  // namespace vx3
