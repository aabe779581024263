// The rows of an ascii block: an index, then one value per variable (blank or line separated),
// complex values as "re,im". A row that breaks off ends the block.
#include <algorithm>
#include <charconv>

#include "readers/nutmeg/cCurvePlotParserNutmeg.h"

namespace vx3 {

using namespace curvePlotParserNutmeg;

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v'; }

bool parseNumber(const char* text, uint64_t size, uint64_t& position, double& value)
{
    const char* begin = text + position;
    const char* end = text + size;
    if (begin < end && *begin == '+')
        ++begin;
    const auto result = std::from_chars(begin, end, value);
    if (result.ec != std::errc() || result.ptr == begin)
        return false;
    position = static_cast<uint64_t>(result.ptr - text);
    return true;
}

void skipBlanks(const char* text, uint64_t size, uint64_t& position)
{
    while (position < size && isBlank(text[position]))
        ++position;
}

}  // namespace

void cCurvePlotParserNutmeg::parseAsciiValues(const char* text, uint64_t size, cPlot& plot)
{
    const uint64_t count = plot.header.variables.size();
    const bool complex = plot.header.complex;
    const cCurvePlotParserOpenFileOptions& open = options().openFileOptions();
    const bool restricted = open.checkFirstXAxisValueIsDefined() || open.checkLastXAxisValueIsDefined();
    plot.values.assign(count, {});
    // The header's count only sizes the vectors, and never beyond what the rest of the file can hold.
    if (plot.header.nbOfPoints > 0 && !restricted) {
        const uint64_t fit = (size - std::min(size, plot.header.dataPosition)) / (2 * count) + 1;
        const uint64_t rows = std::min(static_cast<uint64_t>(plot.header.nbOfPoints), fit);
        for (std::vector<double>& column : plot.values)
            column.reserve(static_cast<size_t>(rows) * (complex ? 2 : 1));
    }
    std::vector<double> row(count * 2);
    uint64_t position = plot.header.dataPosition;
    while (true) {
        skipBlanks(text, size, position);
        plot.end = position;
        if (position >= size) {
            // The end of the file before the rows the header announces: a file still being written.
            if (!restricted && plot.header.nbOfPoints > 0 &&
                static_cast<uint64_t>(plot.header.nbOfPoints) > plot.values.front().size())
                plot.complete = false;
            return;
        }
        const char c = text[position];
        if (c < '0' || c > '9') {
            // The next plot, or something that isn't a row.
            if (!checkIsHeader(text, size, position)) {
                reportInconsistentEntries();
                plot.complete = false;
            }
            return;
        }
        uint64_t index = 0;
        const auto parsed = std::from_chars(text + position, text + size, index);
        position = static_cast<uint64_t>(parsed.ptr - text);
        bool full = true;
        for (uint64_t v = 0; v < count && full; ++v) {
            skipBlanks(text, size, position);
            double re = 0, im = 0;
            full = parseNumber(text, size, position, re);
            // Complex files write the x axis as a pair too; a real one is taken as it is.
            const bool pair = complex && (v > 0 || (position < size && text[position] == ','));
            if (full && pair) {
                full = position < size && text[position] == ',';
                ++position;
                full = full && parseNumber(text, size, position, im);
            }
            row[2 * v] = re;
            row[2 * v + 1] = im;
        }
        // A row is complete only when its line ends after the last value.
        if (full && (position >= size || !isBlank(text[position])))
            full = false;
        if (!full) {
            reportInconsistentEntries();
            plot.complete = false;
            return;
        }
        if (restricted && !open.checkXIsInRange(row[0]))
            continue;
        for (uint64_t v = 0; v < count; ++v) {
            plot.values[v].push_back(row[2 * v]);
            if (complex && v > 0)
                plot.values[v].push_back(row[2 * v + 1]);
        }
        if (checkIsInterrupted())
            return;
    }
}

}  // namespace vx3
