#include "wxWaveExplorerBrowserFilterGrid.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <cmath>

#include "wxBrowserConfiguration.h"
#include "wxWaveExplorerBrowserRows.h"

namespace vx3 {

namespace {
enum group_kind : int { group_run = 0, group_sweep = 1, group_analysis = 2 };
enum item_role : int { role_kind = Qt::UserRole, role_name, role_value, role_bound };
enum item_type : int { item_group = 0, item_all = 1, item_value = 2, item_number = 3 };
const char* const kBounds[4] = {"Minimum real part", "Maximum real part", "Minimum imaginary part",
                                "Maximum imaginary part"};

QString boundText(double value)
{
    return std::isnan(value) ? QString() : QString::number(value, 'g', 12);
}
}  // namespace

wxWaveExplorerBrowserFilterGrid::wxWaveExplorerBrowserFilterGrid(QWidget* parent,
                                                                 wxBrowserConfiguration& configuration)
    : QWidget(parent), mConfiguration(configuration)
{
    setObjectName("browser_filter");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    mGrid = new QTreeWidget(this);
    mGrid->setObjectName("browser_filter_grid");
    mGrid->setColumnCount(2);
    mGrid->setHeaderLabels({"Filter", "Value"});
    layout->addWidget(mGrid, 1);
    auto* buttons = new QHBoxLayout;
    auto* apply = new QPushButton("Apply Filter Rule Changes", this);
    auto* cancel = new QPushButton("Cancel Filter Rule Changes", this);
    auto* clear = new QPushButton("Clear Filter Rules", this);
    buttons->addWidget(apply);
    buttons->addWidget(cancel);
    buttons->addWidget(clear);
    layout->addLayout(buttons);
    connect(apply, &QPushButton::clicked, this, [this] { applyChanges(); });
    connect(cancel, &QPushButton::clicked, this, [this] { cancelChanges(); });
    connect(clear, &QPushButton::clicked, this, [this] { clearRules(); });
    // "All" sets every value of its group.
    connect(mGrid, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
        if (mFilling || column != 0 || item->data(0, role_kind).toInt() != item_all)
            return;
        mFilling = true;
        QTreeWidgetItem* group = item->parent();
        for (int i = 0; i < group->childCount(); ++i)
            if (group->child(i)->data(0, role_kind).toInt() == item_value)
                group->child(i)->setCheckState(0, item->checkState(0));
        mFilling = false;
    });
}

QTreeWidgetItem* wxWaveExplorerBrowserFilterGrid::addGroup(const QString& title, int kind, const std::string& name,
                                                           const std::vector<std::string>& values, bool numbers)
{
    const auto& rules = kind == group_run ? mConfiguration.runParameterRules()
                        : kind == group_sweep ? mConfiguration.sweepVariableRules()
                                              : mConfiguration.analysisTypeRules();
    const std::string ruleName = kind == group_analysis ? std::string("analysis type") : name;
    auto* group = new QTreeWidgetItem(mGrid, {title});
    group->setData(0, role_kind, item_group);
    group->setData(0, role_bound, kind);
    group->setData(0, role_name, QString::fromStdString(name));
    auto* all = new QTreeWidgetItem(group, {"All"});
    all->setData(0, role_kind, item_all);
    all->setFlags(all->flags() | Qt::ItemIsUserCheckable);
    bool allShown = true;
    for (const auto& value : values) {
        auto* item = new QTreeWidgetItem(group, {QString::fromStdString(value)});
        item->setData(0, role_kind, item_value);
        item->setData(0, role_value, QString::fromStdString(value));
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        const bool shown = rules.checkVerifiesRule(ruleName, value);
        allShown = allShown && shown;
        item->setCheckState(0, shown ? Qt::Checked : Qt::Unchecked);
    }
    all->setCheckState(0, allShown ? Qt::Checked : Qt::Unchecked);
    if (numbers) {
        const auto found = rules.rules().find(name);
        browserConfiguration::wxNumericalFilter bounds;
        if (found != rules.rules().end())
            bounds = found->second.numbers;
        const double values4[4] = {bounds.minReal, bounds.maxReal, bounds.minImag, bounds.maxImag};
        for (int b = 0; b < 4; ++b) {
            auto* item = new QTreeWidgetItem(group, {kBounds[b], boundText(values4[b])});
            item->setData(0, role_kind, item_number);
            item->setData(0, role_bound, b);
            item->setFlags(item->flags() | Qt::ItemIsEditable);
        }
    }
    group->setExpanded(true);
    return group;
}

void wxWaveExplorerBrowserFilterGrid::fill(const wxWaveExplorerBrowserRows& rows)
{
    mRows = &rows;
    fillAgain();
}

void wxWaveExplorerBrowserFilterGrid::fillAgain()
{
    mFilling = true;
    mGrid->clear();
    if (mRows) {
        for (const auto& [name, values] : mRows->getRunParameterValues())
            addGroup(QString::fromStdString("Run parameter \"" + name + "\""), group_run, name, values, true);
        for (const auto& [name, values] : mRows->getSweepVariableValues())
            addGroup(QString::fromStdString("Sweep variable \"" + name + "\""), group_sweep, name, values, true);
        addGroup("Analysis type", group_analysis, std::string(), mRows->getAnalysisTypes(), false);
    }
    mGrid->resizeColumnToContents(0);
    mFilling = false;
}

void wxWaveExplorerBrowserFilterGrid::applyChanges()
{
    for (int g = 0; g < mGrid->topLevelItemCount(); ++g) {
        QTreeWidgetItem* group = mGrid->topLevelItem(g);
        const int kind = group->data(0, role_bound).toInt();
        const std::string name = group->data(0, role_name).toString().toStdString();
        browserConfiguration::wxNumericalFilter bounds;
        double* fields[4] = {&bounds.minReal, &bounds.maxReal, &bounds.minImag, &bounds.maxImag};
        bool hasBounds = false;
        for (int i = 0; i < group->childCount(); ++i) {
            QTreeWidgetItem* item = group->child(i);
            const int type = item->data(0, role_kind).toInt();
            if (type == item_value) {
                const std::string value = item->data(0, role_value).toString().toStdString();
                const bool shown = item->checkState(0) == Qt::Checked;
                if (kind == group_analysis)
                    mConfiguration.setAnalysisTypeFlag(value, shown);
                else
                    (kind == group_run ? mConfiguration.runParameterRules() : mConfiguration.sweepVariableRules())
                        .setValueFlag(name, value, shown);
            } else if (type == item_number) {
                bool ok = false;
                const double number = item->text(1).trimmed().toDouble(&ok);
                *fields[item->data(0, role_bound).toInt()] = ok ? number : NAN;
                hasBounds = true;
            }
        }
        if (hasBounds && kind != group_analysis)
            (kind == group_run ? mConfiguration.runParameterRules() : mConfiguration.sweepVariableRules())
                .setNumericalFilter(name, bounds);
    }
    if (mApplied)
        mApplied();
    fillAgain();
}

void wxWaveExplorerBrowserFilterGrid::cancelChanges()
{
    fillAgain();
}

void wxWaveExplorerBrowserFilterGrid::clearRules()
{
    mConfiguration.clearRules();
    if (mApplied)
        mApplied();
    fillAgain();
}

}  // namespace vx3
