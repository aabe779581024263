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
    const std::vector<unsigned> columns = shownCurveColumns();
    if (!mData->checkSelectionForExport(columns))
        return false;
    return mData->exportFromDialog(fileName.toStdString(), format, columns);
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
