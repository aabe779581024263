// The tree grid over 10^6 rows: building the tree, sorting, painting deep in the table and the
// memory the grid adds per row. Baselines from the same run: reading the same texts in a plain
// loop, std::stable_sort of the same keys, painting at row 0, and the model's own bytes per row.
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "treegrid/qt/wxTreeGridImpl.h"

using namespace vx3;

namespace {

constexpr unsigned kRows = 1000000;

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Files of 10,000 rows, sections of 100, unique curve names and random values: the shape of a
// browser over many runs.
class cBenchModel : public wxTreeGridVirtual {
public:
    std::vector<std::string> files, sections, curves;
    std::vector<double> values;
    cBenchModel()
    {
        std::mt19937_64 random(3);
        std::uniform_real_distribution<double> value(-1e6, 1e6);
        for (unsigned r = 0; r < kRows; ++r) {
            files.push_back("run" + std::to_string(r / 10000) + ".raw");
            sections.push_back("tran" + std::to_string((r / 100) % 100));
            curves.push_back("v(n" + std::to_string(r) + ")");
            values.push_back(value(random));
        }
    }
    size_t bytes() const
    {
        size_t total = values.capacity() * sizeof(double);
        for (const auto* column : {&files, &sections, &curves})
            for (const auto& text : *column)
                total += sizeof(std::string) + (text.capacity() > 15 ? text.capacity() + 1 : 0);
        return total;
    }
    unsigned treeGridVirtualGetNumberOfColumns() override { return 4; }
    unsigned treeGridVirtualGetNumberOfRows() override { return kRows; }
    std::string treeGridVirtualGetColHeaderLabel(unsigned col) override
    {
        static const char* labels[] = {"File", "Section", "Curve", "Value"};
        return labels[col];
    }
    std::string treeGridVirtualGetValue(unsigned row, unsigned col) override
    {
        switch (col) {
        case 0: return files[row];
        case 1: return sections[row];
        case 2: return curves[row];
        default: return std::to_string(values[row]);
        }
    }
    double treeGridVirtualGetDoubleValue(unsigned row, unsigned col) override { return values[row]; }
    bool treeGridVirtualGetDefaultExpanded(unsigned, unsigned) override { return true; }
    bool treeGridVirtualGetGridUsesExpanders() override { return true; }
    int treeGridVirtualGetColType(unsigned col) override
    {
        return col == 3 ? treeGridVirtual::col_number : treeGridVirtual::col_string;
    }
    bool treeGridVirtualGetValueForColWidthComputation(unsigned col, std::string& text) override
    {
        text = col == 3 ? "-999999.999999" : "run100.raw tran99 v(n999999)";
        return true;
    }
};

// Median of the painting times of the grid scrolled to line.
double paintMilliseconds(wxTreeGridImpl& grid, unsigned line)
{
    grid.scrollToVisibleRow(line);
    QImage image(grid.size(), QImage::Format_RGB32);
    std::vector<double> times;
    for (int i = 0; i < 31; ++i) {
        QPainter painter(&image);
        const auto start = std::chrono::steady_clock::now();
        grid.drawGrid(painter);
        times.push_back(secondsSince(start) * 1e3);
    }
    std::nth_element(times.begin(), times.begin() + 15, times.end());
    return times[15];
}

void printFigure(const char* name, double value, const char* unit, double baseline, const char* baselineUnit,
                 const char* baselineWhat)
{
    std::printf("%s: %.3f %s; baseline: %.3f %s (%s); ratio: %.2f\n", name, value, unit, baseline, baselineUnit,
                baselineWhat, baseline > 0 ? value / baseline : 0.0);
}

}  // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    cBenchModel model;

    // Building: the grid reads the two tree columns of every row once and makes the expanders.
    wxTreeGridImpl grid(model);
    grid.create(true, 0, 0, 1000, 800);
    auto start = std::chrono::steady_clock::now();
    grid.dataChanged(true, false);
    const double build = secondsSince(start);
    start = std::chrono::steady_clock::now();
    size_t runs = 0;
    std::string previous[2];
    for (unsigned r = 0; r < kRows; ++r)
        for (unsigned c = 0; c < 2; ++c) {
            std::string text = model.treeGridVirtualGetValue(r, c);
            runs += text != previous[c];
            previous[c] = std::move(text);
        }
    const double readLoop = secondsSince(start);
    std::printf("# %u rows, %u expanders, %zu run starts read by the baseline\n", kRows, grid.getNumberOfExpanders(),
                runs);
    printFigure("build 10^6 rows with expanders", build * 1e3, "ms", readLoop * 1e3, "ms",
                "reading the same texts in a loop");

    // Sorting by the number column, then by the curve names descending.
    grid.setColSortOrder(3, treeGridGeometry::sort_ascending);
    start = std::chrono::steady_clock::now();
    grid.sort();
    const double sortNumbers = secondsSince(start);
    std::vector<double> keys(model.values);
    std::vector<unsigned> order(kRows);
    std::iota(order.begin(), order.end(), 0u);
    start = std::chrono::steady_clock::now();
    std::stable_sort(order.begin(), order.end(), [&](unsigned a, unsigned b) { return keys[a] < keys[b]; });
    const double stableNumbers = secondsSince(start);
    printFigure("sort 10^6 rows by a number column", sortNumbers * 1e3, "ms", stableNumbers * 1e3, "ms",
                "std::stable_sort of the same keys");
    if (std::vector<unsigned>(grid.getEffectiveToTotalRows()) != order)
        std::printf("# MISMATCH: the grid's order differs from std::stable_sort\n");

    grid.clearSortOrders();
    grid.setColSortOrder(2, treeGridGeometry::sort_descending);
    start = std::chrono::steady_clock::now();
    grid.sort();
    const double sortTexts = secondsSince(start);
    std::vector<std::string> textKeys(model.curves);
    std::iota(order.begin(), order.end(), 0u);
    start = std::chrono::steady_clock::now();
    std::stable_sort(order.begin(), order.end(), [&](unsigned a, unsigned b) { return textKeys[b] < textKeys[a]; });
    const double stableTexts = secondsSince(start);
    printFigure("sort 10^6 rows by a text column descending", sortTexts * 1e3, "ms", stableTexts * 1e3, "ms",
                "std::stable_sort of the same keys");

    // Painting: back to the tree, all open; the same widget at row 0 and at row 900,000.
    grid.clearSortOrders();
    grid.sort();
    const double paintTop = paintMilliseconds(grid, 0);
    const double paintDeep = paintMilliseconds(grid, 900000);
    printFigure("paint at row 900000", paintDeep, "ms", paintTop, "ms", "paint at row 0");
    std::printf("# lines drawn per paint: %u, top line %u\n", grid.getRowsDrawnByLastPaint(), grid.getTopVisibleRow());

    // The same with every file closed: the lines are expanders, the rows behind them skipped.
    grid.expandEffectiveColumn(0, false);
    grid.redraw();
    const unsigned lines = grid.getNumberOfVisibleRows();
    const double paintClosed = paintMilliseconds(grid, lines > 40 ? lines - 40 : 0);
    printFigure("paint at the last line, files closed", paintClosed, "ms", paintTop, "ms", "paint at row 0");

    const double gridBytes = double(grid.getMemoryBytes()) / kRows;
    const double modelBytes = double(model.bytes()) / kRows;
    printFigure("grid memory per row beyond the model", gridBytes, "bytes", modelBytes, "bytes",
                "the model's own bytes per row");
    return 0;
}
