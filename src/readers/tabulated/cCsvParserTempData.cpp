#include "readers/tabulated/cCsvParserTempData.h"

#include <cmath>

#include "base/cVxString.h"

namespace vx3 {

using namespace csvParserTempData;

void cCsvParserTempData::clear()
{
    *this = cCsvParserTempData();
}

void cCsvParserTempData::startRow(unsigned kind, uint64_t line)
{
    if (!mRowStart.empty())
        mMaxRowSize = std::max(mMaxRowSize, getRowSize(mRowStart.size() - 1));
    mRowStart.push_back(mEntries.size());
    mRowKind.push_back(static_cast<uint8_t>(kind));
    mRowLine.push_back(line);
}

void cCsvParserTempData::addDoubleValue(double value, bool usedComma)
{
    cCsvParserTempDataEntry& entry = mEntries.emplace_back();
    entry.value = value;
    entry.type = entry_double;
    entry.usedComma = usedComma;
}

void cCsvParserTempData::addIntegerValue(double value)
{
    cCsvParserTempDataEntry& entry = mEntries.emplace_back();
    entry.value = value;
    entry.type = entry_integer;
}

void cCsvParserTempData::addStringValue(std::string_view text)
{
    cCsvParserTempDataEntry& entry = mEntries.emplace_back();
    entry.offset = mStrings.size();
    entry.length = static_cast<uint32_t>(std::min<size_t>(text.size(), UINT32_MAX));
    entry.type = entry_string;
    mStrings.append(text.substr(0, entry.length));
}

void cCsvParserTempData::addEmptyValue() { mEntries.emplace_back(); }

void cCsvParserTempData::addEmptyValueToIncompleteRow(uint64_t count)
{
    if (mRowStart.empty())
        return;
    while (getRowSize(mRowStart.size() - 1) < count)
        addEmptyValue();
}

void cCsvParserTempData::setStepParameters(std::vector<std::pair<std::string, double>> parameters)
{
    if (!mRowStart.empty())
        mStepParameters[mRowStart.size() - 1] = std::move(parameters);
}

uint64_t cCsvParserTempData::getRowSize(uint64_t row) const
{
    const uint64_t end = row + 1 < mRowStart.size() ? mRowStart[row + 1] : mEntries.size();
    return end - mRowStart[row];
}

const cCsvParserTempDataEntry& cCsvParserTempData::getDataEntry(uint64_t row, uint64_t column) const
{
    static const cCsvParserTempDataEntry empty;
    if (row >= mRowStart.size() || column >= getRowSize(row))
        return empty;
    return mEntries[mRowStart[row] + column];
}

std::string_view cCsvParserTempData::getString(const cCsvParserTempDataEntry& entry) const
{
    if (entry.type != entry_string)
        return std::string_view();
    return std::string_view(mStrings).substr(entry.offset, entry.length);
}

std::string cCsvParserTempData::getText(uint64_t row, uint64_t column) const
{
    const cCsvParserTempDataEntry& entry = getDataEntry(row, column);
    switch (entry.type) {
    case entry_string:
        return std::string(getString(entry));
    case entry_double:
    case entry_integer:
        return cVxString::createFromNumber(entry.value);
    default:
        return std::string();
    }
}

const std::vector<std::pair<std::string, double>>* cCsvParserTempData::getStepParameters(uint64_t row) const
{
    const auto found = mStepParameters.find(row);
    return found == mStepParameters.end() ? nullptr : &found->second;
}

uint64_t cCsvParserTempData::getNumberOfNonCommentRows() const
{
    uint64_t count = 0;
    for (uint8_t kind : mRowKind)
        count += kind == row_data ? 1 : 0;
    return count;
}

uint64_t cCsvParserTempData::getNumberOfHeaderAndCommentRows(uint64_t firstDataRow) const
{
    return std::min<uint64_t>(firstDataRow, getNbOfRows());
}

void cCsvParserTempData::countColumnEntries(uint64_t first, uint64_t count)
{
    uint64_t width = 0;
    for (uint64_t row = first; row < getNbOfRows() && row < first + count; ++row)
        if (mRowKind[row] == row_data)
            width = std::max(width, getRowSize(row));
    mColumns.resize(std::max<uint64_t>(width, mColumns.size()));
    for (cCsvCol& column : mColumns)
        column.nbDouble = column.nbInteger = column.nbString = column.nbEmpty = column.nbComma = 0;
    mCountedRows = 0;
    mCountedFirst = first;
    for (uint64_t row = first; row < getNbOfRows() && row < first + count; ++row) {
        if (mRowKind[row] != row_data)
            continue;
        ++mCountedRows;
        for (uint64_t c = 0; c < mColumns.size(); ++c) {
            const cCsvParserTempDataEntry& entry = getDataEntry(row, c);
            cCsvCol& column = mColumns[c];
            switch (entry.type) {
            case entry_double:
                ++column.nbDouble;
                column.nbComma += entry.usedComma ? 1 : 0;
                break;
            case entry_integer:
                ++column.nbInteger;
                break;
            case entry_string:
                ++column.nbString;
                break;
            default:
                ++column.nbEmpty;
                break;
            }
        }
    }
}

double cCsvParserTempData::getFillRatio() const
{
    if (!mCountedRows || mColumns.empty())
        return 0.0;
    uint64_t filled = 0;
    for (const cCsvCol& column : mColumns)
        filled += column.nbDouble + column.nbInteger + column.nbString;
    return static_cast<double>(filled) / static_cast<double>(mCountedRows * mColumns.size());
}

uint64_t cCsvParserTempData::getNbOfNumericCols() const
{
    uint64_t count = 0;
    for (const cCsvCol& column : mColumns)
        count += (column.nbDouble + column.nbInteger) * 2 > mCountedRows ? 1 : 0;
    return count;
}

uint64_t cCsvParserTempData::getNumberOfIncompleteCols(double ratio) const
{
    uint64_t count = 0;
    for (const cCsvCol& column : mColumns) {
        const uint64_t filled = column.nbDouble + column.nbInteger + column.nbString;
        count += static_cast<double>(filled) < ratio * static_cast<double>(mCountedRows) ? 1 : 0;
    }
    return count;
}

uint64_t cCsvParserTempData::getMaxStringSize(uint64_t column) const
{
    uint64_t size = 0;
    for (uint64_t row = 0; row < getNbOfRows(); ++row)
        size = std::max<uint64_t>(size, getText(row, column).size());
    return size;
}

double cCsvParserTempData::computeAverage(uint64_t column) const
{
    double sum = 0;
    uint64_t count = 0;
    for (uint64_t row = mCountedFirst; row < getNbOfRows(); ++row) {
        const cCsvParserTempDataEntry& entry = getDataEntry(row, column);
        if (mRowKind[row] == row_data && entry.isNumber() && std::isfinite(entry.value)) {
            sum += entry.value;
            ++count;
        }
    }
    return count ? sum / static_cast<double>(count) : NAN;
}

double cCsvParserTempData::computeStdDerivation(uint64_t column) const
{
    const double mean = computeAverage(column);
    double sum = 0;
    uint64_t count = 0;
    for (uint64_t row = mCountedFirst; row < getNbOfRows(); ++row) {
        const cCsvParserTempDataEntry& entry = getDataEntry(row, column);
        if (mRowKind[row] == row_data && entry.isNumber() && std::isfinite(entry.value)) {
            sum += (entry.value - mean) * (entry.value - mean);
            ++count;
        }
    }
    return count > 1 ? std::sqrt(sum / static_cast<double>(count - 1)) : NAN;
}

}  // namespace vx3
