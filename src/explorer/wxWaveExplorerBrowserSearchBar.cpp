#include "wxWaveExplorerBrowserSearchBar.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace vx3 {

cBrowserSearch::cBrowserSearch(QWidget* parent) : QWidget(parent)
{
    setObjectName("browser_search");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    auto* title = new QLabel("Search Browser", this);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    layout->addWidget(title);

    auto* line = new QHBoxLayout;
    mText = new QLineEdit(this);
    mText->setObjectName("browser_search_text");
    mText->setPlaceholderText("curve name or pattern");
    line->addWidget(mText, 1);
    auto* next = new QPushButton("Find Next", this);
    auto* previous = new QPushButton("Find Previous", this);
    line->addWidget(next);
    line->addWidget(previous);
    layout->addLayout(line);

    auto* second = new QHBoxLayout;
    auto* plotAll = new QPushButton("Plot All Search Results", this);
    auto* toggle = new QPushButton("Show/Hide Advanced Search Options", this);
    second->addWidget(plotAll);
    second->addWidget(toggle);
    second->addStretch(1);
    layout->addLayout(second);

    mAdvanced = new QWidget(this);
    auto* options = new QHBoxLayout(mAdvanced);
    options->setContentsMargins(0, 0, 0, 0);
    mCase = new QCheckBox("case sensitive", mAdvanced);
    mWildcard = new QCheckBox("use wildcard expression", mAdvanced);
    mWrap = new QCheckBox("use wrap search", mAdvanced);
    mSelected = new QCheckBox("search selected instance", mAdvanced);
    for (QCheckBox* box : {mCase, mWildcard, mWrap, mSelected})
        options->addWidget(box);
    options->addStretch(1);
    layout->addWidget(mAdvanced);
    mAdvanced->setVisible(false);

    mMessage = new QLabel(this);
    mMessage->setObjectName("browser_search_message");
    layout->addWidget(mMessage);

    auto request = [this](int kind) {
        return [this, kind] {
            if (mHandler)
                mHandler(kind);
        };
    };
    connect(next, &QPushButton::clicked, this, request(find_next));
    connect(previous, &QPushButton::clicked, this, request(find_previous));
    connect(plotAll, &QPushButton::clicked, this, request(plot_all));
    connect(mText, &QLineEdit::returnPressed, this, request(find_next));
    connect(toggle, &QPushButton::clicked, this, [this] { mAdvanced->setVisible(!mAdvanced->isVisible()); });
}

std::string cBrowserSearch::getText() const
{
    return mText->text().toStdString();
}

void cBrowserSearch::setText(const std::string& text)
{
    mText->setText(QString::fromStdString(text));
}

cBrowserSearchOptions cBrowserSearch::getOptions() const
{
    cBrowserSearchOptions options;
    options.caseSensitive = mCase->isChecked();
    options.wildcard = mWildcard->isChecked();
    options.wrap = mWrap->isChecked();
    return options;
}

bool cBrowserSearch::getSelectedInstanceOnly() const
{
    return mSelected->isChecked();
}

void cBrowserSearch::setOptions(bool caseSensitive, bool wildcard, bool wrap, bool selectedOnly)
{
    mCase->setChecked(caseSensitive);
    mWildcard->setChecked(wildcard);
    mWrap->setChecked(wrap);
    mSelected->setChecked(selectedOnly);
}

void cBrowserSearch::showMessage(const std::string& text)
{
    mMessage->setText(QString::fromStdString(text));
}

std::string cBrowserSearch::getMessage() const
{
    return mMessage->text().toStdString();
}

void cBrowserSearch::setAdvancedOptionsVisible(bool visible)
{
    mAdvanced->setVisible(visible);
}

}  // namespace vx3
