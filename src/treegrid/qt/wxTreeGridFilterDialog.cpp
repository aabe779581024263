#include "treegrid/qt/wxTreeGridFilterDialog.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "treegrid/qt/wxTreeGridImpl.h"

namespace vx3 {

wxTreeGridFilterDialog::wxTreeGridFilterDialog(wxTreeGridImpl& grid, unsigned col, QWidget* parent)
    : QDialog(parent), mGrid(grid), mChoices(std::make_unique<wxTreeGridFilterChoices>(grid, col))
{
    setWindowTitle(QString::fromStdString("Filters for Column " + mChoices->getColumnLabel()));
    auto* layout = new QVBoxLayout(this);
    mTabs = new QTabWidget(this);
    layout->addWidget(mTabs);

    auto* discrete = new QWidget(mTabs);
    auto* discreteLayout = new QVBoxLayout(discrete);
    mAll = new QCheckBox("All", discrete);
    mAll->setTristate(false);
    discreteLayout->addWidget(mAll);
    mList = new QListWidget(discrete);
    mList->setUniformItemSizes(true);
    for (size_t i = 0; i < mChoices->getTexts().size(); ++i) {
        auto* item = new QListWidgetItem(QString::fromStdString(mChoices->getTexts()[i]), mList);
        item->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
        item->setCheckState(mChoices->checked[i] ? Qt::Checked : Qt::Unchecked);
    }
    discreteLayout->addWidget(mList);
    if (!mChoices->checkTextsAreComplete())
        discreteLayout->addWidget(new QLabel(
            QString("Only the first %1 distinct values are listed.").arg(wxTreeGridFilterChoices::maxDistinctTexts),
            discrete));
    mTabs->addTab(discrete, "Discrete filters");

    auto* numbers = new QWidget(mTabs);
    auto* form = new QFormLayout(numbers);
    const char* labels[] = {"Minimum real part", "Maximum real part", "Minimum imaginary part",
                            "Maximum imaginary part"};
    const std::string* values[] = {&mChoices->minimumReal, &mChoices->maximumReal, &mChoices->minimumImaginary,
                                   &mChoices->maximumImaginary};
    for (int i = 0; i < 4; ++i) {
        mBounds[i] = new QLineEdit(QString::fromStdString(*values[i]), numbers);
        mBounds[i]->setPlaceholderText("no bound");
        form->addRow(labels[i], mBounds[i]);
    }
    mTabs->addTab(numbers, "Number filters");
    // Texts of a number column are numbers too, but the interval is what such a column wants.
    if (mChoices->checkIsNumberColumn() && !mChoices->checkTextsAreComplete())
        mTabs->setCurrentIndex(1);

    mInvert = new QCheckBox("Invert filter", this);
    mInvert->setChecked(mChoices->inverted);
    layout->addWidget(mInvert);
    mMessage = new QLabel(this);
    mMessage->setWordWrap(true);
    mMessage->setStyleSheet("color: #b00020");
    layout->addWidget(mMessage);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    mOk = new QPushButton("Ok", this);
    mCancel = new QPushButton("Cancel", this);
    mOk->setDefault(true);
    buttons->addWidget(mOk);
    buttons->addWidget(mCancel);
    layout->addLayout(buttons);

    onItemChanged();
    connect(mList, &QListWidget::itemChanged, this, [this] { onItemChanged(); });
    connect(mAll, &QCheckBox::clicked, this, [this](bool on) { setAllChecked(on); });
    connect(mOk, &QPushButton::clicked, this, [this] { onOk(); });
    connect(mCancel, &QPushButton::clicked, this, &QDialog::reject);
    if (!mChoices->checkColumnAcceptsFilters()) {
        mOk->setEnabled(false);
        mMessage->setText(QString::fromStdString("The column \"" + mChoices->getColumnLabel() +
                                                 "\" does not accept filters."));
    }
}

wxTreeGridFilterDialog::~wxTreeGridFilterDialog() = default;

QString wxTreeGridFilterDialog::message() const
{
    return mMessage->text();
}

bool wxTreeGridFilterDialog::setTextChecked(const QString& text, bool checked)
{
    const auto found = mList->findItems(text, Qt::MatchExactly);
    if (found.isEmpty())
        return false;
    for (QListWidgetItem* item : found)
        item->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
    return true;
}

void wxTreeGridFilterDialog::setAllChecked(bool checked)
{
    mUpdating = true;
    for (int i = 0; i < mList->count(); ++i)
        mList->item(i)->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
    mUpdating = false;
    onItemChanged();
}

// "All" follows the list: ticked when every text is.
void wxTreeGridFilterDialog::onItemChanged()
{
    if (mUpdating)
        return;
    bool all = true;
    for (int i = 0; i < mList->count() && all; ++i)
        all = mList->item(i)->checkState() == Qt::Checked;
    mAll->setChecked(all);
}

void wxTreeGridFilterDialog::onOk()
{
    for (int i = 0; i < mList->count(); ++i)
        mChoices->checked[size_t(i)] = mList->item(i)->checkState() == Qt::Checked;
    std::string* values[] = {&mChoices->minimumReal, &mChoices->maximumReal, &mChoices->minimumImaginary,
                             &mChoices->maximumImaginary};
    for (int i = 0; i < 4; ++i)
        *values[i] = mBounds[i]->text().toStdString();
    mChoices->inverted = mInvert->isChecked();
    std::string message;
    if (!mChoices->apply(message)) {
        mMessage->setText(QString::fromStdString(message));
        return;
    }
    mGrid.viewChanged();
    accept();
}

}  // namespace vx3
