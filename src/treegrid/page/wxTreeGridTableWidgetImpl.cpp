#include "treegrid/page/wxTreeGridTableWidgetImpl.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "treegrid/qt/wxTreeGridImpl.h"

namespace vx3 {

wxTreeGridTableWidgetImpl::wxTreeGridTableWidgetImpl(cCurvePlotDataFile& store, QWidget* parent,
                                                     cVxLoggerCallBack* forward)
    : QWidget(parent), mData(std::make_unique<wxTreeGridData>(store)), mForward(forward)
{
    mData->setLoggerCallBack(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    auto* bar = new QHBoxLayout;
    bar->addWidget(new QLabel("=", this));
    mExpression = new QLineEdit(this);
    mExpression->setPlaceholderText("Expression over the columns, e.g. A*B or deriv(A)");
    bar->addWidget(mExpression, 1);
    mInsert = new QPushButton("Insert Column", this);
    mExport = new QPushButton("Export...", this);
    bar->addWidget(mInsert);
    bar->addWidget(mExport);
    layout->addLayout(bar);
    mGrid = new wxTreeGridImpl(*mData, this);
    layout->addWidget(mGrid, 1);
    mMessage = new QLabel(this);
    mMessage->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(mMessage);
    connect(mInsert, &QPushButton::clicked, this, [this] { insertCalculatorColumn(); });
    connect(mExpression, &QLineEdit::returnPressed, this, [this] { insertCalculatorColumn(); });
    connect(mExport, &QPushButton::clicked, this, [this] { exportFromDialog(); });
    mGrid->dataChanged(true, false);
}

wxTreeGridTableWidgetImpl::~wxTreeGridTableWidgetImpl()
{
    mData->setLoggerCallBack(nullptr);
}

QString wxTreeGridTableWidgetImpl::message() const
{
    return mMessage->text();
}

void wxTreeGridTableWidgetImpl::loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text)
{
    mMessage->setText(QString::fromStdString(text));
    const bool bad = severity == vxLogger::error || severity == vxLogger::fatal_error;
    mMessage->setStyleSheet(bad ? "color: #b00020" : "");
    if (mForward)
        mForward->loggerCallBackVirtualLogMessage(severity, text);
}

void wxTreeGridTableWidgetImpl::tableChanged()
{
    mGrid->dataChanged(true, true);
}

bool wxTreeGridTableWidgetImpl::addSection(cCurvePlotDataSection& section)
{
    const bool added = mData->addSection(section);
    tableChanged();
    return added;
}

bool wxTreeGridTableWidgetImpl::addCurve(cCurvePlotDataSection& section, uint64_t curveIndex)
{
    const bool added = mData->addCurve(section, curveIndex);
    tableChanged();
    return added;
}

bool wxTreeGridTableWidgetImpl::insertCalculatorColumn(const QString& expression)
{
    const QString text = (expression.isEmpty() ? mExpression->text() : expression).trimmed();
    if (text.isEmpty()) {
        loggerCallBackVirtualLogMessage(vxLogger::error, "Type an expression over the columns first.");
        return false;
    }
    if (!mData->insertCalculatorColumn(text.toStdString()))
        return false;
    tableChanged();
    loggerCallBackVirtualLogMessage(vxLogger::info, "Column " + mData->getExcelColumnName(mData->getNbOfCurveColumns() - 1) +
                                                        " = " + text.toStdString());
    if (expression.isEmpty())
        mExpression->clear();
    return true;
}

std::vector<unsigned> wxTreeGridTableWidgetImpl::shownCurveColumns()
{
    // In the view's order, without hidden ones; grid column 0 is x.
    std::vector<unsigned> columns;
    if (mGrid->checkIsTransposed())
        return columns;  // the transposed view has no curve columns of its own
    for (unsigned e = 0; e < mGrid->getNumberOfColumns(); ++e) {
        const unsigned col = mGrid->getColFromEffectiveCol(e);
        if (col > 0 && !mGrid->checkColIsHidden(col))
            columns.push_back(col - 1);
    }
    return columns;
}

bool wxTreeGridTableWidgetImpl::exportToFile(const QString& fileName, int format)
{
    if (mGrid->checkIsTransposed()) {
        // The inverted view has rows for columns: the file keeps the table upright.
        return mData->exportFromDialog(fileName.toStdString(), format, {});
    }
    const std::vector<unsigned> columns = shownCurveColumns();
    if (!mData->checkSelectionForExport(columns))
        return false;
    std::vector<unsigned> gridColumns;
    for (unsigned e = 0; e < mGrid->getNumberOfColumns(); ++e) {
        const unsigned col = mGrid->getColFromEffectiveCol(e);
        if (col == 0 || !mGrid->checkColIsHidden(col))
            gridColumns.push_back(col);
    }
    return mData->exportGridColumns(fileName.toStdString(), format, gridColumns, mGrid->getSortedRows());
}

void wxTreeGridTableWidgetImpl::clear()
{
    mData->clear();
    tableChanged();
}

bool wxTreeGridTableWidgetImpl::checkColumnCommand(unsigned col, const char* what)
{
    if (mGrid->checkIsTransposed()) {
        mData->getLogger().errorMsg(std::string("The table shows its rows and columns inverted: ") + what +
                                    " acts on the columns of the upright table.");
        return false;
    }
    if (col >= mGrid->getNumberOfColumns()) {
        mData->getLogger().errorMsg("The column index " + std::to_string(col) + " is not in the table (columns 0 to " +
                                    std::to_string(mGrid->getNumberOfColumns() - 1) + ").");
        return false;
    }
    return true;
}

bool wxTreeGridTableWidgetImpl::sortColumn(unsigned col, int order)
{
    if (!checkColumnCommand(col, "sorting"))
        return false;
    mGrid->setColSortOrder(col, order);
    const bool sorted = mGrid->sort();
    mGrid->viewChanged();
    return sorted;
}

bool wxTreeGridTableWidgetImpl::moveColumn(unsigned col, unsigned newPosition)
{
    if (!checkColumnCommand(col, "moving"))
        return false;
    if (newPosition >= mGrid->getNumberOfColumns()) {
        mData->getLogger().errorMsg("The column position " + std::to_string(newPosition) +
                                    " is not in the table (positions 0 to " +
                                    std::to_string(mGrid->getNumberOfColumns() - 1) + ").");
        return false;
    }
    mGrid->moveColumn(col, newPosition);
    mGrid->updateHeaderAndColWidth();
    mGrid->viewChanged();
    return true;
}

void wxTreeGridTableWidgetImpl::setInterpolateMissingValues(bool flag)
{
    if (flag == mData->getInterpolateMissingValues())
        return;
    mData->setInterpolateMissingValues(flag);
    mGrid->dataChanged(false, true);
    mGrid->update();
}

void wxTreeGridTableWidgetImpl::setRowsAndColumnsInverted(bool flag)
{
    if (flag != mGrid->checkIsTransposed())
        mGrid->transposeGrid();
}

void wxTreeGridTableWidgetImpl::exportFromDialog()
{
    QString filter;
    const QString name = QFileDialog::getSaveFileName(this, "Export Table", QString(),
                                                      "CSV (*.csv);;Text (*.txt);;HTML (*.html *.htm)", &filter);
    if (name.isEmpty())
        return;
    int format = treeGridData::export_csv;
    if (filter.startsWith("Text") || name.endsWith(".txt", Qt::CaseInsensitive))
        format = treeGridData::export_text;
    if (filter.startsWith("HTML") || name.endsWith(".html", Qt::CaseInsensitive) ||
        name.endsWith(".htm", Qt::CaseInsensitive))
        format = treeGridData::export_html;
    exportToFile(name, format);
}

}  // namespace vx3
