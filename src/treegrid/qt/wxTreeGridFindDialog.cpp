#include "treegrid/qt/wxTreeGridFindDialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "treegrid/qt/wxTreeGridImpl.h"

namespace vx3 {

wxTreeGridFindDialog::wxTreeGridFindDialog(wxTreeGridImpl& grid, QWidget* parent) : QDialog(parent), mGrid(grid)
{
    setWindowTitle("Find Text");
    auto* layout = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel("Find Text", this));
    mText = new QLineEdit(this);
    row->addWidget(mText, 1);
    layout->addLayout(row);
    auto* boxes = new QGridLayout;
    mCase = new QCheckBox("Match case", this);
    mWholeWord = new QCheckBox("Whole word", this);
    mRegex = new QCheckBox("Regular expression", this);
    mFromTop = new QCheckBox("Find from top", this);
    boxes->addWidget(mCase, 0, 0);
    boxes->addWidget(mWholeWord, 0, 1);
    boxes->addWidget(mRegex, 1, 0);
    boxes->addWidget(mFromTop, 1, 1);
    layout->addLayout(boxes);
    mMessage = new QLabel(this);
    layout->addWidget(mMessage);
    auto* buttons = new QHBoxLayout;
    mPrevious = new QPushButton("Find Previous", this);
    mNext = new QPushButton("Find Next", this);
    mClose = new QPushButton("Close", this);
    mNext->setDefault(true);
    buttons->addStretch();
    buttons->addWidget(mPrevious);
    buttons->addWidget(mNext);
    buttons->addWidget(mClose);
    layout->addLayout(buttons);
    connect(mNext, &QPushButton::clicked, this, [this] { findNext(false); });
    connect(mPrevious, &QPushButton::clicked, this, [this] { findNext(true); });
    connect(mText, &QLineEdit::returnPressed, this, [this] { findNext(false); });
    connect(mClose, &QPushButton::clicked, this, &QDialog::close);
}

QString wxTreeGridFindDialog::message() const
{
    return mMessage->text();
}

bool wxTreeGridFindDialog::findNext(bool backward)
{
    treeGridFinder::cFindOptions options;
    options.text = mText->text().toStdString();
    options.caseSensitive = mCase->isChecked();
    options.wholeWord = mWholeWord->isChecked();
    options.regularExpression = mRegex->isChecked();
    options.backward = backward;
    options.fromTop = mFromTop->isChecked();
    std::string message;
    const treeGridFinder::cFindResult result = mGrid.findText(options, message);
    mMessage->setText(QString::fromStdString(message));
    // "From top" serves the first find; the next one goes on from the cell found.
    if (result.found)
        mFromTop->setChecked(false);
    return result.found;
}

}  // namespace vx3
