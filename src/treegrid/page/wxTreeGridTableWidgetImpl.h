// The table page: curves of the store as columns of a grid, with a bar to add a calculator column
// from an expression over the columns (A, B, ...) and to export the table. Messages of the page
// show in the bar's message line and go on to the logger given, if any.
#pragma once

#include <QWidget>
#include <memory>

#include "base/cVxLogger.h"
#include "treegrid/data/wxTreeGridData.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace vx3 {

class wxTreeGridImpl;

class wxTreeGridTableWidgetImpl : public QWidget, public cVxLoggerCallBack {
    Q_OBJECT
public:
    // forward: where messages go besides the message line (the explorer's log); may be null.
    wxTreeGridTableWidgetImpl(cCurvePlotDataFile& store, QWidget* parent = nullptr,
                              cVxLoggerCallBack* forward = nullptr);
    ~wxTreeGridTableWidgetImpl() override;

    wxTreeGridData& getData() { return *mData; }
    wxTreeGridImpl& getGrid() { return *mGrid; }

    // Columns from the store; the grid follows. False when nothing could be added.
    bool addSection(cCurvePlotDataSection& section);
    bool addCurve(cCurvePlotDataSection& section, uint64_t curveIndex);
    // A calculator column from the expression (the bar's text when empty); false with the reason
    // in the message line, and the table as it was.
    bool insertCalculatorColumn(const QString& expression = {});
    // Writes the columns that show, in the view's order of columns and of sorted rows (format by
    // treeGridData::export_format); filtered rows are written too, since the file is the data.
    bool exportToFile(const QString& fileName, int format);
    // The model changed behind the grid's back (a reload): read it again.
    void tableChanged();
    // Removes every column but x.
    void clear();

    // Column commands by model column (0 is x, then A, B, ...), each false with its message when
    // the column or the place is not in the table. order: treeGridGeometry::sort_order.
    bool sortColumn(unsigned col, int order);
    bool moveColumn(unsigned col, unsigned newPosition);
    void setInterpolateMissingValues(bool flag);
    // Rows and columns exchanged; the grid's transpose, kept in step with the option.
    void setRowsAndColumnsInverted(bool flag);

    QLineEdit* expressionEdit() const { return mExpression; }
    QPushButton* insertButton() const { return mInsert; }
    QPushButton* exportButton() const { return mExport; }
    QString message() const;

    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override;

private:
    void exportFromDialog();
    std::vector<unsigned> shownCurveColumns();
    bool checkColumnCommand(unsigned col, const char* what);

    std::unique_ptr<wxTreeGridData> mData;
    wxTreeGridImpl* mGrid = nullptr;
    cVxLoggerCallBack* mForward = nullptr;
    QLineEdit* mExpression = nullptr;
    QPushButton* mInsert = nullptr;
    QPushButton* mExport = nullptr;
    QLabel* mMessage = nullptr;
};

}  // namespace vx3
