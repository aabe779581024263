#include "wxWaveExplorerBrowserConfigureGrid.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace vx3 {

wxWaveExplorerBrowserConfigureGrid::wxWaveExplorerBrowserConfigureGrid(QWidget* parent,
                                                                       wxBrowserConfiguration& configuration)
    : QWidget(parent), mConfiguration(configuration), mCopy(configuration)
{
    setObjectName("browser_config");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    auto* lists = new QGridLayout;
    const char* const titles[3] = {"Item Order", "Run Parameter Order", "Sweep Variable Order"};
    for (int i = 0; i < 3; ++i) {
        lists->addWidget(new QLabel(titles[i], this), 0, i);
        mLists[i] = new QListWidget(this);
        lists->addWidget(mLists[i], 1, i);
        // Choosing in one list leaves the others without a selection: the buttons act on one.
        connect(mLists[i], &QListWidget::itemPressed, this, [this, i] {
            for (int k = 0; k < 3; ++k)
                if (k != i)
                    mLists[k]->setCurrentRow(-1);
        });
    }
    mLists[0]->setObjectName("browser_config_grid");
    layout->addLayout(lists, 1);
    auto* buttons = new QGridLayout;
    const char* const labels[5] = {"Move Selected Item Up", "Move Selected Item Down", "Apply Setup Changes",
                                   "Cancel Setup Changes", "Reset Setup To Default"};
    QPushButton* button[5];
    for (int i = 0; i < 5; ++i) {
        button[i] = new QPushButton(labels[i], this);
        buttons->addWidget(button[i], i / 2, i % 2);
    }
    layout->addLayout(buttons);
    connect(button[0], &QPushButton::clicked, this, [this] { moveSelected(true); });
    connect(button[1], &QPushButton::clicked, this, [this] { moveSelected(false); });
    connect(button[2], &QPushButton::clicked, this, [this] { applyChanges(); });
    connect(button[3], &QPushButton::clicked, this, [this] { fill(); });
    connect(button[4], &QPushButton::clicked, this, [this] { resetToDefault(); });
}

void wxWaveExplorerBrowserConfigureGrid::fill()
{
    mCopy = mConfiguration;
    showCopy();
}

void wxWaveExplorerBrowserConfigureGrid::showCopy()
{
    for (QListWidget* list : mLists)
        list->clear();
    for (size_t i = 0; i < mCopy.getGroupPriorities().size(); ++i)
        mLists[0]->addItem(QString::fromStdString(mCopy.getGroupPriorityAsString(i)));
    for (const auto& name : mCopy.getRunParameterOrder())
        mLists[1]->addItem(QString::fromStdString(name));
    for (const auto& name : mCopy.getSweepVariableOrder())
        mLists[2]->addItem(QString::fromStdString(name));
}

void wxWaveExplorerBrowserConfigureGrid::moveSelected(bool up)
{
    for (int i = 0; i < 3; ++i) {
        const int row = mLists[i]->currentRow();
        if (row < 0)
            continue;
        const size_t index = size_t(row);
        bool moved = false;
        if (i == 0)
            moved = up ? mCopy.moveGroupPriorityUp(index) : mCopy.moveGroupPriorityDown(index);
        else if (i == 1)
            moved = up ? mCopy.moveRunParameterUp(index) : mCopy.moveRunParameterDown(index);
        else
            moved = up ? mCopy.moveSweepVariableUp(index) : mCopy.moveSweepVariableDown(index);
        showCopy();
        mLists[i]->setCurrentRow(moved ? (up ? row - 1 : row + 1) : row);
        return;
    }
}

void wxWaveExplorerBrowserConfigureGrid::applyChanges()
{
    // Only the orders are the page's: the filters set meanwhile stay as they are.
    std::vector<std::string> names;
    for (size_t i = 0; i < mCopy.getGroupPriorities().size(); ++i)
        names.push_back(mCopy.getGroupPriorityAsString(i));
    std::string unknown;
    mConfiguration.setGroupPriorities(names, unknown);
    mConfiguration.setRunParameterOrder(mCopy.getRunParameterOrder());
    mConfiguration.setSweepVariableOrder(mCopy.getSweepVariableOrder());
    if (mApplied)
        mApplied();
}

void wxWaveExplorerBrowserConfigureGrid::resetToDefault()
{
    mCopy.setDefaults();
    showCopy();
}

}  // namespace vx3
