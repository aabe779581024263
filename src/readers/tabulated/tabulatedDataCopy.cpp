// The second half of the slow table reader: from analysed columns to the tables of the store.
// Several runs (step lines, a restarting x axis, parameter columns), sweep matrices, and the
// cleaning of rows that break a rising x axis.
#include <algorithm>
#include <cmath>

#include "readers/cCurvePlotParserOptions.h"
#include "readers/tabulated/cCurvePlotParserTabulatedData.h"

namespace vx3 {

using namespace csvParserTempData;
using namespace tabulatedData;
using tabulatedParser::cColumn;
using tabulatedParser::cTable;

namespace {

bool isUsable(const cAnalysedColumn& column)
{
    return column.type == column_numeric || column.type == column_date || column.type == column_enum;
}

bool isAxis(const cAnalysedColumn& column) { return column.type == column_numeric || column.type == column_date; }

}  // namespace

tabulatedParser::cColumn cCurvePlotParserTabulatedData::makeColumn(cAnalysedColumn& source, uint64_t first,
                                                                   uint64_t last) const
{
    cColumn column;
    column.name = source.name;
    column.unitText = source.unit;
    column.scale = source.scale;
    column.enumStrings = source.enumStrings;
    last = std::min<uint64_t>(last, source.values.size());
    column.values.assignValues(source.values.data() + first, last > first ? last - first : 0, sizeof(double));
    return column;
}

returnCode cCurvePlotParserTabulatedData::copyTempCsvData(cCsvParserTempData& data, const std::string& sectionName,
                                                          std::vector<cTable>& tables)
{
    const uint64_t firstDataRow = defineFirstDataRow(data);
    // As many columns as the typical data row has, or as the header names.
    std::map<uint64_t, uint64_t> widths;
    for (uint64_t row = firstDataRow; row < data.getNbOfRows(); ++row)
        if (data.getRowKind(row) == row_data)
            ++widths[data.getRowSize(row)];
    uint64_t columns = 0, times = 0;
    for (const auto& [width, count] : widths)
        if (count >= times) {
            times = count;
            columns = width;
        }
    for (uint64_t row = 0; row < firstDataRow; ++row)
        if (data.getRowKind(row) == row_data && data.getRowSize(row) > columns && data.getRowSize(row) <= columns + 2)
            columns = data.getRowSize(row);
    if (columns == 0) {
        errorMsg("CSV Parser : \"" + mFileName + "\" holds no table.");
        return failed;
    }
    cAnalysedTable table;
    defineColNames(data, firstDataRow, columns, table);
    const uint64_t errors = analyzeColumnTypes(data, firstDataRow, table);
    handleModifiedJulianTimeColumns(table);
    table.columns.erase(std::remove_if(table.columns.begin(), table.columns.end(),
                                       [](const cAnalysedColumn& column) { return !isUsable(column); }),
                        table.columns.end());
    const bool anyNumbers = std::any_of(table.columns.begin(), table.columns.end(), isAxis);
    if (!anyNumbers || table.rowLines.empty()) {
        errorMsg("CSV Parser : no column of numbers was found in \"" + mFileName + "\".");
        return failed;
    }
    splitIntoTables(table, sectionName, tables);
    if (tables.empty())
        return failed;
    return errors || mRemovedRows ? partly_parsed : ok;
}

void cCurvePlotParserTabulatedData::splitIntoTables(cAnalysedTable& table, const std::string& sectionName,
                                                    std::vector<cTable>& tables)
{
    const uint64_t rows = table.rowLines.size();
    const bool hasAxis = table.columns.size() > 1 && isAxis(table.columns.front());
    struct cRun {
        uint64_t first, last;
        unsigned step;
        std::vector<std::pair<std::string, double>> parameters;
    };
    std::vector<cRun> runs;
    size_t xColumn = 0;
    std::vector<size_t> parameterColumns;

    // Runs announced by step lines ("End" lines only close a run).
    if (!table.runStarts.empty()) {
        std::vector<std::pair<uint64_t, std::vector<std::pair<std::string, double>>>> starts;
        if (table.runStarts.front().first > 0)
            starts.push_back({0, {}});
        for (auto& start : table.runStarts) {
            if (!starts.empty() && starts.back().first == start.first) {
                if (!start.second.empty())
                    starts.back().second = start.second;
            } else {
                starts.push_back(start);
            }
        }
        for (size_t i = 0; i < starts.size(); ++i) {
            const uint64_t last = i + 1 < starts.size() ? starts[i + 1].first : rows;
            if (last > starts[i].first)
                runs.push_back({starts[i].first, last, 0, starts[i].second});
        }
    }
    if (runs.size() < 2 && hasAxis) {
        runs.clear();
        if (options().getFlagParseSweepMatrices() && copySweepMatrixTempCsvData(table, 0, sectionName, tables))
            return;
        // Leading parameter columns, constant while the next column rises and changing where it
        // starts again: one run per parameter set.
        for (size_t k = 1; runs.empty() && k <= 3 && k + 1 < table.columns.size(); ++k) {
            const std::vector<double>& x = table.columns[k].values;
            if (!isAxis(table.columns[k]) || table.columns[k - 1].type != column_numeric)
                break;
            std::vector<uint64_t> starts{0};
            bool fits = true;
            for (uint64_t r = 1; r < rows && fits; ++r) {
                bool same = true;
                for (size_t p = 0; p < k; ++p)
                    same = same && table.columns[p].values[r] == table.columns[p].values[r - 1];
                const bool restart = x[r] < x[r - 1];
                if (restart != !same)
                    fits = false;
                else if (restart)
                    starts.push_back(r);
            }
            if (!fits || starts.size() < 2)
                continue;
            for (size_t i = 0; i < starts.size(); ++i) {
                cRun run{starts[i], i + 1 < starts.size() ? starts[i + 1] : rows, 0, {}};
                for (size_t p = 0; p < k; ++p)
                    run.parameters.emplace_back(table.columns[p].name, table.columns[p].values[starts[i]]);
                runs.push_back(run);
            }
            xColumn = k;
            for (size_t p = 0; p < k; ++p)
                parameterColumns.push_back(p);
        }
        // A first column that starts again from its first value: numbered runs.
        if (runs.empty()) {
            const std::vector<double>& x = table.columns.front().values;
            std::vector<uint64_t> starts{0};
            for (uint64_t r = 1; r < rows; ++r)
                if (x[r] < x[r - 1] && x[r] <= x[starts.back()])
                    starts.push_back(r);
            bool longEnough = starts.size() > 1;
            for (size_t i = 0; i < starts.size() && longEnough; ++i)
                longEnough = (i + 1 < starts.size() ? starts[i + 1] : rows) - starts[i] >= 2;
            if (longEnough)
                for (size_t i = 0; i < starts.size(); ++i)
                    runs.push_back({starts[i], i + 1 < starts.size() ? starts[i + 1] : rows,
                                    static_cast<unsigned>(i + 1), {}});
        }
        if (runs.empty()) {
            removeOutliers(table);
            forceIncreasingValues(table, std::max<uint64_t>(10, table.rowLines.size() / 100));
        }
    }
    if (runs.empty())
        runs.push_back({0, table.rowLines.size(), 0, {}});

    for (const cRun& run : runs) {
        cTable result;
        result.sectionName = sectionName;
        result.rowCount = run.last - run.first;
        if (runs.size() > 1 || !run.parameters.empty()) {
            result.stepIndex = run.parameters.empty() ? run.step : getOrCreateStepIndex(run.parameters);
            if (result.stepIndex == 0)
                result.stepIndex = static_cast<unsigned>(&run - runs.data() + 1);
            result.runParameters = run.parameters;
        }
        for (size_t c = 0; c < table.columns.size(); ++c) {
            if (std::find(parameterColumns.begin(), parameterColumns.end(), c) != parameterColumns.end())
                continue;
            cColumn column = makeColumn(table.columns[c], run.first, run.last);
            (hasAxis && c == xColumn ? result.sweeps : result.curves).push_back(std::move(column));
        }
        shapeTable(result);
        restrictToXInterval(result, options().openFileOptions());
        tables.push_back(std::move(result));
    }
}

bool cCurvePlotParserTabulatedData::copySweepMatrixTempCsvData(cAnalysedTable& table, size_t xColumn,
                                                               const std::string& sectionName,
                                                               std::vector<cTable>& tables)
{
    // Leading columns nested like loops: each constant over blocks that the next one runs
    // through, the same pattern in every outer block, the innermost one running fastest.
    const uint64_t rows = table.rowLines.size();
    std::vector<size_t> sweeps;
    std::vector<uint64_t> sizes;
    uint64_t block = rows;
    size_t c = xColumn;
    for (; c + 1 < table.columns.size(); ++c) {
        const cAnalysedColumn& column = table.columns[c];
        if (column.type != column_numeric)
            return false;
        const std::vector<double>& v = column.values;
        uint64_t run = 1;
        while (run < block && v[run] == v[0])
            ++run;
        if (run == 1)
            break;  // the innermost sweep
        if (run == block) {
            // Constant through every block of the sweep before it: a redundant sweep column.
            bool redundant = !sweeps.empty();
            for (uint64_t r = 0; r < rows && redundant; ++r)
                redundant = v[r] == v[(r / block) * block];
            if (!redundant)
                return false;
            continue;
        }
        if (block % run != 0)
            return false;
        for (uint64_t r = 0; r < rows; ++r) {
            const uint64_t inBlock = r % block;
            if (v[r] != v[inBlock - inBlock % run] || v[r] != v[(r / block) * block + inBlock - inBlock % run] ||
                v[r] != v[inBlock])
                return false;
            if (inBlock % run == 0 && inBlock > 0 && v[r] == v[r - run])
                return false;
        }
        sweeps.push_back(c);
        sizes.push_back(block / run);
        block = run;
    }
    if (sweeps.empty() || c + 1 >= table.columns.size() || block < 2 || !isAxis(table.columns[c]))
        return false;
    // The innermost sweep must be the same vector in every block.
    const std::vector<double>& x = table.columns[c].values;
    for (uint64_t r = 0; r < rows; ++r)
        if (!(x[r] == x[r % block]))
            return false;
    sweeps.push_back(c);
    sizes.push_back(block);

    cTable result;
    result.sectionName = sectionName;
    const uint64_t cuts = rows / block;
    for (size_t s = 0; s < sweeps.size(); ++s) {
        cAnalysedColumn& column = table.columns[sweeps[s]];
        cColumn sweep;
        sweep.name = column.name;
        sweep.unitText = column.unit;
        sweep.scale = column.scale;
        // One period of the sweep: every stride-th value of the first outer block.
        const uint64_t stride = s + 1 < sweeps.size() ? [&] {
            uint64_t product = 1;
            for (size_t k = s + 1; k < sizes.size(); ++k)
                product *= sizes[k];
            return product;
        }() : 1;
        std::vector<double> values(sizes[s]);
        for (uint64_t i = 0; i < sizes[s]; ++i)
            values[i] = column.values[i * stride];
        sweep.values.assignValues(values.data(), values.size(), sizeof(double));
        result.sweeps.push_back(std::move(sweep));
    }
    for (size_t k = c + 1; k < table.columns.size(); ++k) {
        cAnalysedColumn& column = table.columns[k];
        cColumn curve;
        curve.name = column.name;
        curve.unitText = column.unit;
        curve.scale = column.scale;
        curve.enumStrings = column.enumStrings;
        // Rows run x fastest; the store keeps the cuts of one x together.
        std::vector<double> values(rows);
        for (uint64_t r = 0; r < rows; ++r)
            values[(r % block) * cuts + r / block] = column.values[r];
        curve.values.assignValues(values.data(), values.size(), sizeof(double));
        result.curves.push_back(std::move(curve));
    }
    applyUnitFactors(result);
    makeColumnNamesUnique(result);
    tables.push_back(std::move(result));
    return true;
}

// ---------------------------------------------------------------- cleaning

namespace {
void eraseRows(cAnalysedTable& table, const std::vector<bool>& remove)
{
    for (cAnalysedColumn& column : table.columns) {
        size_t kept = 0;
        for (size_t r = 0; r < column.values.size(); ++r)
            if (!remove[r])
                column.values[kept++] = column.values[r];
        column.values.resize(kept);
    }
    size_t kept = 0;
    for (size_t r = 0; r < table.rowLines.size(); ++r)
        if (!remove[r])
            table.rowLines[kept++] = table.rowLines[r];
    table.rowLines.resize(kept);
}
// Only an axis that rises but for a few rows (at most 1 %) is cleaned; others are data of their own.
bool checkAxisNeedsCleaning(const std::vector<double>& x)
{
    uint64_t decreases = 0;
    for (size_t r = 1; r < x.size(); ++r)
        decreases += x[r] < x[r - 1] ? 1 : 0;
    return decreases != 0 && decreases <= std::max<uint64_t>(1, x.size() / 100);
}
}  // namespace

uint64_t cCurvePlotParserTabulatedData::removeOutliers(cAnalysedTable& table)
{
    if (table.columns.empty() || table.rowLines.size() < 3)
        return 0;
    const std::vector<double>& x = table.columns.front().values;
    if (!checkAxisNeedsCleaning(x))
        return 0;
    std::vector<bool> remove(x.size(), false);
    uint64_t count = 0;
    for (size_t r = 1; r + 1 < x.size(); ++r) {
        const bool spike = x[r] > x[r + 1] && x[r - 1] <= x[r + 1];
        const bool dip = x[r] < x[r - 1] && x[r + 1] >= x[r - 1];
        if (spike || dip) {
            remove[r] = true;
            ++count;
            ++r;  // its neighbour is judged against the kept row
        }
    }
    if (count) {
        eraseRows(table, remove);
        infoMsg("CSV File : " + std::to_string(count) + " outlier lines were removed.");
    }
    return count;
}

uint64_t cCurvePlotParserTabulatedData::forceIncreasingValues(cAnalysedTable& table, uint64_t maximum)
{
    if (table.columns.empty())
        return 0;
    const std::vector<double>& x = table.columns.front().values;
    if (!checkAxisNeedsCleaning(x))
        return 0;
    std::vector<bool> remove(x.size(), false);
    uint64_t count = 0, firstLine = 0;
    double last = x.empty() ? 0 : x[0];
    for (size_t r = 1; r < x.size(); ++r) {
        if (x[r] >= last) {
            last = x[r];
            continue;
        }
        if (count == maximum) {
            warnMsg("CSV File : the maximum number of rows that can be removed was reached.");
            break;
        }
        if (!count)
            firstLine = table.rowLines[r];
        remove[r] = true;
        ++count;
    }
    if (!count)
        return 0;
    eraseRows(table, remove);
    if (count == 1)
        infoMsg("CSV File : forcing increasing x-axis values, the row " + std::to_string(firstLine) + " was removed");
    else
        infoMsg("CSV File : forcing increasing x-axis values, " + std::to_string(count) +
                " lines were removed (the first removed row was " + std::to_string(firstLine) + ")");
    return count;
}

}  // namespace vx3
