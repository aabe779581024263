// The pages of the control panel that read the data and the plots and act on them.
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "wxZelWaveControlPanel.h"
#include "wxZelWaveControlPanelDragAndDrop.h"

namespace vx3 {

using namespace zelWaveControlPanel;

namespace {
// The panel reads curve names one command each: a file with more curves shows the first ones.
constexpr long kMaxCurvesListed = 10000;

QComboBox* makePlotCombo()
{
    auto* combo = new QComboBox;
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(16);
    return combo;
}

void setPlotNames(QComboBox* combo, const QStringList& names)
{
    QString current = combo->currentText();
    combo->clear();
    combo->addItems(names);
    if (!current.isEmpty() && names.contains(current))
        combo->setCurrentText(current);
}
}  // namespace

QWidget* wxZelWaveControlPanel::buildDataPage()
{
    auto* page = new QWidget;
    auto* readRow = new QHBoxLayout;
    readRow->addWidget(addButton("Read Sections", [this] { readSections(); }));
    readRow->addWidget(addButton("Read Plots", [this] { readPlots(); }));
    readRow->addStretch(1);

    mSections = new QComboBox;
    mSections->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    mSections->setMinimumContentsLength(16);
    connect(mSections, &QComboBox::currentIndexChanged, this, [this](int index) { readCurvesOfSection(index); });
    mSectionInfo = new QLabel;
    mCurves = new QListWidget;
    mCurves->setSelectionMode(QAbstractItemView::SingleSelection);
    mDataPlot = makePlotCombo();
    mDataPlot->setObjectName("data_plot");
    mUnhighlightOthers = new QCheckBox("Unhighlight others");
    mUnhighlightOthers->setChecked(true);

    auto* form = new QFormLayout;
    form->addRow("Section:", mSections);
    form->addRow("", mSectionInfo);
    form->addRow("Curve:", mCurves);
    form->addRow("Plot:", mDataPlot);

    auto* plotButton = addButton("Plot Curve", [this] { plotCurve(); });
    auto* highlightButton = addButton("Highlight Curve", [this] { highlightCurve(); });
    plotButton->setEnabled(false);
    highlightButton->setEnabled(false);
    connect(mCurves, &QListWidget::currentRowChanged, this, [plotButton, highlightButton](int row) {
        plotButton->setEnabled(row >= 0);
        highlightButton->setEnabled(row >= 0);
    });
    auto* actRow = new QHBoxLayout;
    actRow->addWidget(plotButton);
    actRow->addWidget(highlightButton);
    actRow->addWidget(mUnhighlightOthers);
    actRow->addStretch(1);

    auto* layout = new QVBoxLayout(page);
    layout->addLayout(readRow);
    layout->addLayout(form, 1);
    layout->addLayout(actRow);
    return page;
}

void wxZelWaveControlPanel::readSections()
{
    QSignalBlocker blocker(mSections);
    mSections->clear();
    mSectionCurveCounts.clear();
    long count = 0;
    if (controlPanelVirtualExecuteCommandInt("get_number_of_sections", count) != vx_code_ok)
        count = 0;
    for (long i = 0; i < count; ++i) {
        std::string name;
        if (controlPanelVirtualExecuteCommandStr("get_section_name " + std::to_string(i), name) != vx_code_ok)
            continue;
        long curves = 0, sweeps = 0;
        if (controlPanelVirtualExecuteCommandInt("get_section_number_of_curves " + quoteArgument(name), curves) !=
            vx_code_ok)
            curves = 0;
        if (controlPanelVirtualExecuteCommandInt("get_section_number_of_sweep_variables " + quoteArgument(name),
                                                 sweeps) != vx_code_ok)
            sweeps = 0;
        mSections->addItem(QString::fromStdString(name), QVariant::fromValue(static_cast<qlonglong>(sweeps)));
        mSectionCurveCounts.push_back(curves);
    }
    blocker.unblock();
    if (mSections->count() > 0) {
        mSections->setCurrentIndex(0);
        readCurvesOfSection(0);
    } else {
        readCurvesOfSection(-1);
    }
}

void wxZelWaveControlPanel::readCurvesOfSection(int index)
{
    mCurves->clear();
    if (index < 0 || index >= static_cast<int>(mSectionCurveCounts.size())) {
        mSectionInfo->clear();
        return;
    }
    const std::string section = mSections->itemText(index).toStdString();
    const long curves = mSectionCurveCounts[index];
    const long sweeps = mSections->itemData(index).toLongLong();
    QString info = QString("%1 curves, %2 sweep variables").arg(curves).arg(sweeps);
    if (curves > kMaxCurvesListed)
        info += QString(" (the first %1 are listed)").arg(kMaxCurvesListed);
    mSectionInfo->setText(info);
    for (long i = 0; i < std::min(curves, kMaxCurvesListed); ++i) {
        std::string name;
        if (controlPanelVirtualExecuteCommandStr("get_curve_name " + quoteArgument(section) + " " + std::to_string(i),
                                                 name) == vx_code_ok)
            mCurves->addItem(QString::fromStdString(name));
    }
}

void wxZelWaveControlPanel::readPlots()
{
    long count = 0;
    if (controlPanelVirtualExecuteCommandInt("get_number_of_plots", count) != vx_code_ok)
        count = 0;
    QStringList names;
    for (long i = 0; i < count; ++i) {
        std::string name;
        if (controlPanelVirtualExecuteCommandStr("get_plot_name " + std::to_string(i), name) == vx_code_ok)
            names << QString::fromStdString(name);
    }
    setPlotNames(mDataPlot, names);
    setPlotNames(mExistingPlot, names);
}

std::string wxZelWaveControlPanel::selectedPlotName(const QComboBox* combo) const
{
    return combo->currentText().trimmed().toStdString();
}

void wxZelWaveControlPanel::plotCurve()
{
    QListWidgetItem* curve = mCurves->currentItem();
    if (!curve || mSections->currentIndex() < 0)
        return;
    controlPanelVirtualExecuteCommand("add_curve_to_plot_by_name " + quoteArgument(selectedPlotName(mDataPlot)) + " " +
                                      quoteArgument(mSections->currentText().toStdString()) + " " +
                                      quoteArgument(curve->text().toStdString()) + " 0");
}

void wxZelWaveControlPanel::highlightCurve()
{
    QListWidgetItem* curve = mCurves->currentItem();
    if (!curve || mSections->currentIndex() < 0)
        return;
    controlPanelVirtualExecuteCommand("highlight_curve " + quoteArgument(mSections->currentText().toStdString()) + " " +
                                      quoteArgument(curve->text().toStdString()) +
                                      (mUnhighlightOthers->isChecked() ? " 1" : " 0"));
}

// ---------------------------------------------------------------------------------------------
QWidget* wxZelWaveControlPanel::buildNewPlotPage()
{
    auto* page = new QWidget;
    mNewPlotName = new QLineEdit("analog 1");
    mNewPlotType = new QComboBox;
    mNewPlotType->setObjectName("new_plot_type");
    mNewPlotType->addItems({"analog", "digital", "fft", "calculator"});
    mNewTab = new QCheckBox("Create New Tab");
    mNewTab->setChecked(true);
    auto* form = new QFormLayout;
    form->addRow("Plot Name", mNewPlotName);
    form->addRow("Plot Type", mNewPlotType);
    form->addRow("", mNewTab);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(addButton("Add New Plot", [this] { addNewPlot(); }));
    auto* layout = new QVBoxLayout(page);
    layout->addLayout(form);
    layout->addLayout(buttons);
    layout->addStretch(1);
    return page;
}

void wxZelWaveControlPanel::addNewPlot()
{
    std::string name = mNewPlotName->text().trimmed().toStdString();
    if (name.empty())
        return;
    int code = controlPanelVirtualExecuteCommand("add_plot " + quoteArgument(name) + " " +
                                                 mNewPlotType->currentText().toStdString() +
                                                 (mNewTab->isChecked() ? " 1" : " 0") + " 1");
    if (code == vx_code_ok)
        controlPanelVirtualNewPlotCreated(name);
}

void wxZelWaveControlPanel::controlPanelVirtualNewPlotCreated(const std::string& plotName)
{
    const QString name = QString::fromStdString(plotName);
    for (QComboBox* combo : {mDataPlot, mExistingPlot}) {
        if (combo->findText(name) < 0)
            combo->addItem(name);
        combo->setCurrentText(name);
    }
    if (mNewPlotName->text().trimmed() == name)
        mNewPlotName->setText(QString::fromStdString(proposeNextPlotName(plotName)));
}

QWidget* wxZelWaveControlPanel::buildExistingPlotsPage()
{
    auto* page = new QWidget;
    mExistingPlot = makePlotCombo();
    mExistingPlot->setObjectName("existing_plot");
    auto* form = new QFormLayout;
    form->addRow("Existing Plot Name", mExistingPlot);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(addButton("Read Plots", [this] { readPlots(); }));
    buttons->addStretch(1);
    buttons->addWidget(addButton("Clear Plot", [this] {
        controlPanelVirtualExecuteCommand("clear_plot " + quoteArgument(selectedPlotName(mExistingPlot)));
    }));
    buttons->addWidget(addButton("Make Plot Visible", [this] {
        controlPanelVirtualExecuteCommand("make_plot_visible " + quoteArgument(selectedPlotName(mExistingPlot)));
    }));
    auto* layout = new QVBoxLayout(page);
    layout->addLayout(form);
    layout->addLayout(buttons);
    layout->addStretch(1);
    return page;
}

// ---------------------------------------------------------------------------------------------
QWidget* wxZelWaveControlPanel::buildGuiOptionsPage()
{
    auto* page = new QWidget;
    // Blank until chosen: the panel does not know what the window shows now.
    auto* toolBar = new QComboBox;
    toolBar->setObjectName("tool_bar_style");
    toolBar->addItems({"none", "permanent", "permanent_left", "permanent_right"});
    toolBar->setCurrentIndex(-1);
    connect(toolBar, &QComboBox::activated, this,
            [this, toolBar](int) { setGuiOption("tool_bar_style", toolBar->currentText().toStdString()); });
    auto* sideBar = new QComboBox;
    sideBar->setObjectName("side_bar_style");
    sideBar->addItems({"none", "permanent", "permanent_left", "permanent_right", "in_sidebar", "temporary",
                       "temporary_left", "temporary_right"});
    sideBar->setCurrentIndex(-1);
    connect(sideBar, &QComboBox::activated, this,
            [this, sideBar](int) { setGuiOption("side_bar_style", sideBar->currentText().toStdString()); });
    auto* notebook = new QCheckBox("Use notebook with tabs.");
    notebook->setChecked(true);
    connect(notebook, &QCheckBox::clicked, this,
            [this](bool on) { setGuiOption("use_notebook_with_tabs", on ? "1" : "0"); });
    auto* menuBar = new QCheckBox("Show menu bar.");
    menuBar->setChecked(true);
    connect(menuBar, &QCheckBox::clicked, this, [this](bool on) { setGuiOption("show_menu_bar", on ? "1" : "0"); });

    auto* form = new QFormLayout(page);
    form->addRow("Tool Bar Style", toolBar);
    form->addRow("Side bar Style", sideBar);
    form->addRow("", notebook);
    form->addRow("", menuBar);
    return page;
}

void wxZelWaveControlPanel::setGuiOption(const std::string& key, const std::string& value)
{
    controlPanelVirtualExecuteCommand("set_gui_option " + key + " " + value);
}

// ---------------------------------------------------------------------------------------------
QWidget* wxZelWaveControlPanel::buildDragAndDropPage()
{
    auto* page = new QWidget;
    auto* sourceBox = new QGroupBox("Drag Source");
    auto* forms = new QHBoxLayout;
    forms->addWidget(addButton("Initialize CSV data", [this] { initializeDragData(drag_csv); }));
    forms->addWidget(addButton("Initialize HTML data", [this] { initializeDragData(drag_html); }));
    forms->addWidget(addButton("Initialize XML command", [this] { initializeDragData(drag_xml_command); }));
    mDragText = new QPlainTextEdit;
    mDragText->setLineWrapMode(QPlainTextEdit::NoWrap);
    mDragText->setObjectName("control_panel_drag_text");
    mDragSource = new wxZelWaveDragSource(nullptr, [this] { return createDragData(); });
    auto* sourceLayout = new QVBoxLayout(sourceBox);
    sourceLayout->addLayout(forms);
    sourceLayout->addWidget(mDragText, 1);
    sourceLayout->addWidget(mDragSource);

    auto* targetBox = new QGroupBox("Drop Target");
    mDropTarget = new wxZelWaveDropTarget(nullptr);
    auto* targetLayout = new QVBoxLayout(targetBox);
    targetLayout->addWidget(mDropTarget);

    auto* layout = new QVBoxLayout(page);
    layout->addWidget(sourceBox, 3);
    layout->addWidget(targetBox, 2);
    initializeDragData(drag_csv);
    return page;
}

void wxZelWaveControlPanel::initializeDragData(int form)
{
    mDragForm = form;
    mDragText->setPlainText(QString::fromStdString(generateDragData(form)));
}

}  // namespace vx3
