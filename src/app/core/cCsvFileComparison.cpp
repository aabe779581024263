#include "cCsvFileComparison.h"

#include <cmath>
#include <fstream>
#include <vector>

#include "base/cVxLogger.h"
#include "base/cVxString.h"

namespace vx3 {

namespace {

// Numbers this close are equal whatever their size: rounding noise around zero.
constexpr double kAbsoluteTolerance = 1e-10;

// The separator of a line: the first of ";", tab, "," that occurs, outside quotes.
char detectSeparator(const std::string& line)
{
    for (char candidate : {';', '\t', ','}) {
        bool quoted = false;
        for (char c : line) {
            if (c == '"')
                quoted = !quoted;
            else if (c == candidate && !quoted)
                return candidate;
        }
    }
    return ',';
}

// Cells as a spreadsheet writes them: a quoted cell may hold the separator, and "" inside it
// stands for one quote.
std::vector<std::string> splitCells(const std::string& line, char separator)
{
    std::vector<std::string> cells(1);
    bool quoted = false;
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"') {
            cells.back() += '"';
            ++i;
        } else if (c == '"') {
            quoted = !quoted;
        } else if (c == separator && !quoted) {
            cells.emplace_back();
        } else {
            cells.back() += c;
        }
    }
    for (auto& cell : cells)
        cell = vxString::trim(cell);
    return cells;
}

bool readLine(std::ifstream& in, std::string& line)
{
    if (!std::getline(in, line))
        return false;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return true;
}

}  // namespace

bool cCsvFileComparison::cellsMatch(const std::string& a, const std::string& b) const
{
    if (a == b)
        return true;
    double x = 0, y = 0;
    if (!cVxString(a).toDouble(x) || !cVxString(b).toDouble(y))
        return false;
    if (std::isnan(x) || std::isnan(y))
        return std::isnan(x) && std::isnan(y);
    const double difference = std::fabs(x - y);
    return difference <= kAbsoluteTolerance || difference <= mTolerance * std::max(std::fabs(x), std::fabs(y));
}

bool cCsvFileComparison::compare(const std::string& first, const std::string& second, const cVxLogger& logger) const
{
    auto fail = [&](const std::string& reason) {
        logger.errorMsg(reason);
        logger.errorMsg("File comparison for \"" + first + "\" failed.");
        return false;
    };
    std::ifstream a(first, std::ios::binary), b(second, std::ios::binary);
    if (!a)
        return fail("Could not open \"" + first + "\".");
    if (!b)
        return fail("Could not open \"" + second + "\".");
    std::string lineA, lineB;
    // Each file's separator is that of its first line: a text cell further down may hold a tab
    // or a semicolon without quotes.
    char separatorA = ',', separatorB = ',';
    for (size_t number = 1;; ++number) {
        bool moreA = readLine(a, lineA), moreB = readLine(b, lineB);
        if (!moreA && !moreB)
            break;
        if (moreA != moreB)
            return fail("The files have a different number of lines.");
        if (number == 1) {
            separatorA = detectSeparator(lineA);
            separatorB = detectSeparator(lineB);
        }
        std::vector<std::string> cellsA = splitCells(lineA, separatorA);
        std::vector<std::string> cellsB = splitCells(lineB, separatorB);
        if (cellsA.size() != cellsB.size())
            return fail("Line " + std::to_string(number) + " has a different number of columns.");
        for (size_t column = 0; column < cellsA.size(); ++column)
            if (!cellsMatch(cellsA[column], cellsB[column]))
                return fail("Line " + std::to_string(number) + ", column " + std::to_string(column + 1) + ": \"" +
                            cellsA[column] + "\" differs from \"" + cellsB[column] + "\".");
    }
    logger.infoMsg("File comparison for \"" + first + "\" succeeded.");
    return true;
}

}  // namespace vx3
