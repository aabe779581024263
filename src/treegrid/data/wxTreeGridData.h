// The table page: curves of the store as columns and their x values as rows, on the union of
// their x axes, with calculator columns computed from the others. The row model of the grid
// (wxTreeGridVirtual) with no Qt, so that the widget only shows it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "expressions/evaluator/cWaveformExpressionEvaluator.h"
#include "treegrid/data/wxTreeGridSectionData.h"
#include "treegrid/wxTreeGridVirtual.h"

namespace vx3 {

class cCurvePlotDataFile;
class cCurvePlotDataSection;

namespace treeGridData {
enum export_format : int { export_csv = 0, export_text = 1, export_html = 2 };
}

class wxTreeGridData : public wxTreeGridVirtual {
public:
    explicit wxTreeGridData(cCurvePlotDataFile& store);
    ~wxTreeGridData() override = default;
    wxTreeGridData(const wxTreeGridData&) = delete;
    wxTreeGridData& operator=(const wxTreeGridData&) = delete;

    // Messages of the page and of the calculator go here.
    void setLoggerCallBack(cVxLoggerCallBack* callBack);
    cVxLogger& getLogger() { return mLogger; }

    // ---- Columns. The first column is x; curve columns follow, named A, B, C, ... in order.
    bool addCurve(cCurvePlotDataSection& section, uint64_t curveIndex);
    // Every curve of the section; false when none could be added.
    bool addSection(cCurvePlotDataSection& section);
    bool removeCurveColumn(unsigned curveColumn);
    void clear();
    unsigned getNbOfCurveColumns() const { return unsigned(mColumnMap.size()); }
    const wxTreeGridDataColumn& getCurveColumn(unsigned curveColumn) const;
    const std::vector<double>& getRowXs() const { return mRowXs; }
    // The value of a curve column in a row; NaN where the curve has no value (and, with
    // interpolation on, where the row lies outside the curve's x range).
    double getCurveValue(unsigned row, unsigned curveColumn) const;
    // A row where a curve has no sample of its own shows the value interpolated between its
    // neighbours, instead of a blank.
    void setInterpolateMissingValues(bool flag) { mInterpolate = flag; }
    bool getInterpolateMissingValues() const { return mInterpolate; }
    // Leading columns that hold sweep values rather than curves: the x column.
    unsigned getNbOfSweepVariableColumns() const { return 1; }

    // ---- Calculator
    // "A", "B", ..., "Z", "AA", ...: the name of a curve column, and back (false for no name).
    static std::string getExcelColumnName(unsigned curveColumn);
    static bool decodeExcelColumnName(const std::string& name, unsigned& curveColumn);
    // text with every column name (A, B, ..., in capitals, outside quotes, not called as a
    // function) replaced by the calculator's text for that column. Other names stay.
    std::string replaceExcelColumnNames(const std::string& text) const;
    // Evaluates expression into column (the result sampled on the rows); false with the reasons
    // logged, and nothing changed.
    bool evaluateParsedExpression(const std::string& expression, wxTreeGridDataColumn& column);
    // A new calculator column at the end; false with the reasons logged and the table as it was.
    bool insertCalculatorColumn(const std::string& expression);
    bool calculatorDialogSucceeded(const std::string& expression) { return insertCalculatorColumn(expression); }

    // ---- Export of x and the given curve columns (all when empty) with a message either way.
    std::string exportToString(int format, const std::vector<unsigned>& curveColumns) const;
    bool exportFromDialog(const std::string& fileName, int format, const std::vector<unsigned>& curveColumns);
    // The same for grid columns (0 is x) in the given order and model rows in the given order
    // (all rows in model order when rows is empty): the table as a view arranged and sorted it.
    std::string exportGridColumnsToString(int format, const std::vector<unsigned>& gridColumns,
                                          const std::vector<unsigned>& rows) const;
    bool exportGridColumns(const std::string& fileName, int format, const std::vector<unsigned>& gridColumns,
                           const std::vector<unsigned>& rows);
    // The curve columns the user selected; empty answers "No curves selected in table.".
    bool checkSelectionForExport(const std::vector<unsigned>& curveColumns);

    // ---- wxTreeGridVirtual
    unsigned treeGridVirtualGetNumberOfColumns() override { return getNbOfCurveColumns() + 1; }
    unsigned treeGridVirtualGetNumberOfRows() override { return unsigned(mRowXs.size()); }
    std::string treeGridVirtualGetColHeaderLabel(unsigned col) override;
    std::string treeGridVirtualGetValue(unsigned row, unsigned col) override;
    double treeGridVirtualGetDoubleValue(unsigned row, unsigned col) override;
    bool treeGridVirtualGetDefaultExpanded(unsigned, unsigned) override { return true; }
    bool treeGridVirtualGetGridUsesExpanders() override { return false; }
    int treeGridVirtualGetColType(unsigned col) override { return treeGridVirtual::col_number; }
    // Curve and calculator columns may go from the column menu; x stays.
    bool treeGridVirtualCheckColCanBeRemoved(unsigned col) override { return col > 0 && col <= getNbOfCurveColumns(); }
    void treeGridVirtualColHasBeenRemoved(unsigned col) override
    {
        if (col > 0)
            removeCurveColumn(col - 1);
    }

private:
    struct cColumnRef {
        size_t section;
        size_t column;
    };
    wxTreeGridSectionData& sectionFor(uint64_t sectionId, const std::string& name);
    const wxTreeGridDataColumn* columnAt(unsigned col) const;  // grid column, 0 is x
    void rebuildRows();
    std::string cellText(unsigned row, unsigned col) const;
    // The sample of a column in a row, interpolated when allowed; false for none.
    bool cellValue(const wxTreeGridDataColumn& column, unsigned row, double& re, double& im) const;

    cCurvePlotDataFile& mStore;
    cWaveformExpressionEvaluator mEvaluator;
    cVxLogger mLogger;
    std::vector<wxTreeGridSectionData> mSections;
    std::vector<cColumnRef> mColumnMap;  // curve column -> section and its column
    std::vector<double> mRowXs;
    std::string mXName = "x";
    bool mInterpolate = false;
};

}  // namespace vx3
