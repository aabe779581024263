#include "treegrid/wxTreeGridFinder.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "base/cVxString.h"

namespace vx3 {

using namespace treeGridFinder;

struct wxTreeGridFinder::cRegex {
    pcre2_code* code = nullptr;
    pcre2_match_data* matchData = nullptr;
    ~cRegex()
    {
        pcre2_match_data_free(matchData);
        pcre2_code_free(code);
    }
};

namespace {

bool isWordChar(char c)
{
    // ASCII only, as the regular expressions' \b has it, so both ways agree on what a word is.
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

std::string lowerAscii(std::string text)
{
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = char(c - 'A' + 'a');
    return text;
}

}  // namespace

wxTreeGridFinder::wxTreeGridFinder() = default;
wxTreeGridFinder::~wxTreeGridFinder() = default;

bool wxTreeGridFinder::setOptions(const cFindOptions& options, std::string& message)
{
    mRegex.reset();
    mOptions = options;
    if (options.text.empty()) {
        message = "Nothing to find.";
        return false;
    }
    mFoldedText = options.caseSensitive ? options.text : lowerAscii(options.text);
    if (!options.regularExpression)
        return true;
    const std::string pattern = options.wholeWord ? "\\b(?:" + options.text + ")\\b" : options.text;
    uint32_t flags = PCRE2_UTF | PCRE2_MATCH_INVALID_UTF;
    if (!options.caseSensitive)
        flags |= PCRE2_CASELESS;
    int errorCode = 0;
    PCRE2_SIZE errorOffset = 0;
    auto regex = std::make_unique<cRegex>();
    regex->code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), flags, &errorCode,
                                &errorOffset, nullptr);
    if (!regex->code) {
        PCRE2_UCHAR buffer[256];
        pcre2_get_error_message(errorCode, buffer, sizeof(buffer));
        message = "Invalid regular expression \"" + options.text + "\": " + reinterpret_cast<char*>(buffer) + ".";
        return false;
    }
    regex->matchData = pcre2_match_data_create_from_pattern(regex->code, nullptr);
    mRegex = std::move(regex);
    return true;
}

bool wxTreeGridFinder::checkPlainMatches(const std::string& text) const
{
    const std::string haystack = mOptions.caseSensitive ? text : lowerAscii(text);
    if (!mOptions.wholeWord)
        return haystack.find(mFoldedText) != std::string::npos;
    for (size_t at = haystack.find(mFoldedText); at != std::string::npos; at = haystack.find(mFoldedText, at + 1)) {
        const size_t end = at + mFoldedText.size();
        const bool startsWord = at == 0 || !isWordChar(haystack[at - 1]) || !isWordChar(mFoldedText.front());
        const bool endsWord = end == haystack.size() || !isWordChar(haystack[end]) || !isWordChar(mFoldedText.back());
        if (startsWord && endsWord)
            return true;
    }
    return false;
}

bool wxTreeGridFinder::checkMatches(const std::string& text) const
{
    if (mOptions.text.empty())
        return false;
    if (!mOptions.regularExpression)
        return checkPlainMatches(text);
    if (!mRegex)
        return false;
    return pcre2_match(mRegex->code, reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0, 0, mRegex->matchData,
                       nullptr) >= 0;
}

cFindResult wxTreeGridFinder::find(wxTreeGridGeometry& grid, unsigned effectiveRow, unsigned effectiveCol) const
{
    cFindResult result;
    std::vector<unsigned> cols;  // effective columns that show
    for (unsigned e = 0; e < grid.getNumberOfColumns(); ++e)
        if (!grid.checkColIsHidden(grid.getColFromEffectiveCol(e)))
            cols.push_back(e);
    const uint64_t rows = grid.getNumberOfEffectiveRows();
    const uint64_t cells = rows * cols.size();
    if (cells == 0 || mOptions.text.empty())
        return result;

    // The cells as one sequence, row by row. first is the position looked at first, unwrapped:
    // it may lie just past either end, and the walk wraps round from there.
    const bool backward = mOptions.backward;
    const bool fromEdge = mOptions.fromTop || effectiveRow == wxTreeGridExpanderHandler::npos || effectiveRow >= rows;
    const int64_t n = int64_t(cells);
    int64_t first;
    if (fromEdge) {
        first = backward ? n - 1 : 0;
    } else {
        const auto colPos = std::find(cols.begin(), cols.end(), effectiveCol);
        const int64_t rowStart = int64_t(effectiveRow) * int64_t(cols.size());
        if (colPos == cols.end())  // a whole row: its own cells come first
            first = backward ? rowStart + int64_t(cols.size()) - 1 : rowStart;
        else  // a cell: the search goes on after it
            first = rowStart + int64_t(colPos - cols.begin()) + (backward ? -1 : 1);
    }
    wxTreeGridVirtual& model = grid.getModel();
    for (int64_t step = 0; step < n; ++step) {
        const int64_t raw = backward ? first - step : first + step;
        const uint64_t at = uint64_t(((raw % n) + n) % n);
        const unsigned row = unsigned(at / cols.size());
        const unsigned effCol = cols[at % cols.size()];
        const unsigned totalRow = grid.getTotalRow(row);
        const unsigned col = grid.getColFromEffectiveCol(effCol);
        if (checkMatches(model.treeGridVirtualGetValue(totalRow, col))) {
            result.found = true;
            result.wrapped = raw < 0 || raw >= n;
            result.effectiveRow = row;
            result.effectiveCol = effCol;
            result.totalRow = totalRow;
            result.col = col;
            return result;
        }
    }
    return result;
}

}  // namespace vx3
