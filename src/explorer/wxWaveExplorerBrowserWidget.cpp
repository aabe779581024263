#include "wxWaveExplorerBrowserWidget.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QTabWidget>
#include <QVBoxLayout>

#include <set>

#include "app/core/wxWaveExplorerCommand.h"
#include "base/cVxLogger.h"
#include "base/cVxThread.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cFileDbSupport.h"
#include "plot/qt/wxCurveListDataObject.h"
#include "wxWaveExplorerBrowserConfigureGrid.h"
#include "wxWaveExplorerBrowserFilterGrid.h"
#include "wxWaveExplorerBrowserSearchBar.h"
#include "wxWaveExplorerBrowserTreeGrid.h"
#include "wxWaveExplorerWidgetImpl.h"

namespace vx3 {

wxWaveExplorerBrowserWidget::wxWaveExplorerBrowserWidget(QWidget* parent, wxWaveExplorerWidgetImpl* explorer,
                                                         cCurvePlotDataFile& store, cVxLogger& logger)
    : QWidget(parent), mExplorer(explorer), mStore(store), mLogger(logger)
{
    setObjectName("browser_widget");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    mPages = new QTabWidget(this);
    layout->addWidget(mPages);

    auto* treePage = new QWidget(mPages);
    auto* treeLayout = new QVBoxLayout(treePage);
    treeLayout->setContentsMargins(0, 0, 0, 0);
    treeLayout->setSpacing(2);
    mTree = new wxWaveExplorerBrowserTreeGrid(treePage, &mConfiguration);
    mSearch = new cBrowserSearch(treePage);
    treeLayout->addWidget(mTree, 1);
    treeLayout->addWidget(mSearch);
    mPages->addTab(treePage, "Curves");

    mFilters = new wxWaveExplorerBrowserFilterGrid(mPages, mConfiguration);
    mPages->addTab(mFilters, "Filters");
    mSetup = new wxWaveExplorerBrowserConfigureGrid(mPages, mConfiguration);
    mPages->addTab(mSetup, "Setup");
    // A page that applies its changes rebuilds the tree; the filter page is filled when shown.
    mFilters->setAppliedHandler([this] { refresh(); });
    mSetup->setAppliedHandler([this] { refresh(); });
    connect(mPages, &QTabWidget::currentChanged, this, [this](int index) {
        if (index == 1)
            mFilters->fill(mTree->rows());
        else if (index == 2)
            mSetup->fill();
    });

    mSearch->setRequestHandler([this](int request) { onSearchRequest(request); });

    wxWaveExplorerBrowserTreeGrid::cActions actions;
    actions.plot = [this](const std::vector<size_t>& rows, bool clear) { plotRows(rows, clear); };
    actions.plotOverMatching = [this](const std::vector<size_t>& rows) { plotOverMatching(rows); };
    actions.reload = [this](const std::vector<size_t>& rows) { forSectionsOf(rows, "reload_file"); };
    actions.reloadAll = [this] {
        std::vector<size_t> all;
        for (size_t r = 0; r < mTree->rows().getNumberOfCurveRows(); ++r)
            all.push_back(r);
        forSectionsOf(all, "reload_file");
    };
    actions.openFile = [this] {
        const QString name = QFileDialog::getOpenFileName(this, "Open File");
        if (!name.isEmpty())
            runCommand("open_file \"" + name.toStdString() + "\"");
    };
    actions.close = [this](const std::vector<size_t>& rows) { forSectionsOf(rows, "close_section"); };
    actions.closeAll = [this] { runCommand("close_all"); };
    actions.message = [this](const std::string& text) { message(text); };
    actions.mimeData = [this](const std::vector<size_t>& rows) { return createMimeData(rows); };
    actions.selectionChanged = [this](size_t count) {
        if (mStatusText)
            mStatusText(count ? std::to_string(count) + " Curves Selected" : std::string());
    };
    mTree->setActions(std::move(actions));
}

void wxWaveExplorerBrowserWidget::refresh(cCurvePlotDataFile& store)
{
    mTree->refresh(store);
    if (mPages->currentIndex() == 1)
        mFilters->fill(mTree->rows());
    if (mRulesChanged)
        mRulesChanged();
}

void wxWaveExplorerBrowserWidget::refresh()
{
    refresh(mStore);
}

void wxWaveExplorerBrowserWidget::switchToPage(int index)
{
    if (index >= 0 && index < mPages->count())
        mPages->setCurrentIndex(index);
}

void wxWaveExplorerBrowserWidget::message(const std::string& text)
{
    mSearch->showMessage(text);
    if (!text.empty())
        mLogger.infoMsg(text);
}

int wxWaveExplorerBrowserWidget::runCommand(const std::string& text)
{
    if (!mExplorer)
        return 3;
    wxWaveExplorerCommand command;
    if (!command.parseCommandString(text, mLogger))
        return 3;
    return mExplorer->executeCommandFromThread(command, false);
}

// ---- Search

std::string wxWaveExplorerBrowserWidget::startSearch(const std::string& text, const cBrowserSearchOptions& given,
                                                     bool selectedInstance)
{
    cBrowserSearchOptions options = given;
    mSearchStarted = false;
    if (selectedInstance && !mTree->getSelectedInstanceRows(options.firstRow, options.endRow)) {
        message("Please select an instance.");
        return "Please select an instance.";
    }
    mSearchText = text;
    mSearchOptions = given;
    mSearchSelected = selectedInstance;
    std::string result = mTree->rows().reinitSearch(text, options);
    mSearchStarted = result.empty();
    if (mSearchStarted)
        mTree->showRow(mTree->rows().getSearchRow());
    message(result);
    return result;
}

std::string wxWaveExplorerBrowserWidget::searchStep(bool forward)
{
    const cBrowserSearchOptions options = mSearch->getOptions();
    const bool changed = !mSearchStarted || mSearch->getText() != mSearchText ||
                         options.caseSensitive != mSearchOptions.caseSensitive ||
                         options.wildcard != mSearchOptions.wildcard || options.wrap != mSearchOptions.wrap ||
                         mSearch->getSelectedInstanceOnly() != mSearchSelected;
    if (changed)
        return startSearch(mSearch->getText(), options, mSearch->getSelectedInstanceOnly());
    wxWaveExplorerBrowserRows& rows = mTree->rows();
    const size_t current = mTree->getCurrentRow();
    std::string result;
    if (current == size_t(-1)) {
        // Without a current row the search begins at the top (or the bottom going back).
        if (rows.getNumberOfSearchResults() == 0)
            result = forward ? "Forward search failed." : "Backward search failed.";
        else
            mTree->showRow(forward ? rows.getSearchResults().front() : rows.getSearchResults().back());
    } else {
        result = forward ? rows.findNext(current) : rows.findPrevious(current);
        if (rows.getNumberOfSearchResults() > 0 && rows.getSearchRow() != current)
            mTree->showRow(rows.getSearchRow());
    }
    message(result);
    return result;
}

std::string wxWaveExplorerBrowserWidget::findNext()
{
    return searchStep(true);
}

std::string wxWaveExplorerBrowserWidget::findPrevious()
{
    return searchStep(false);
}

void wxWaveExplorerBrowserWidget::plotAllSearchResults()
{
    if (!mSearchStarted || mSearch->getText() != mSearchText)
        startSearch(mSearch->getText(), mSearch->getOptions(), mSearch->getSelectedInstanceOnly());
    const auto& results = mTree->rows().getSearchResults();
    if (results.empty()) {
        message("No matching curve found.");
        return;
    }
    plotRows(results, false);
}

void wxWaveExplorerBrowserWidget::onSearchRequest(int request)
{
    switch (request) {
    case cBrowserSearch::find_next: findNext(); break;
    case cBrowserSearch::find_previous: findPrevious(); break;
    default: plotAllSearchResults(); break;
    }
}

// ---- Actions on rows

void wxWaveExplorerBrowserWidget::plotRows(const std::vector<size_t>& rows, bool clear)
{
    const wxWaveExplorerBrowserRows& model = mTree->rows();
    bool first = true;
    for (size_t row : rows) {
        if (row >= model.getNumberOfCurveRows())
            continue;
        const wxBrowserRow& r = model.getRow(row);
        runCommand("add_curve_to_plot_by_id_and_index \"\" " + std::to_string(r.sectionId) + " " +
                   std::to_string(r.curveIndex) + ((clear && first) ? " 1" : " 0"));
        first = false;
    }
}

void wxWaveExplorerBrowserWidget::plotOverMatching(const std::vector<size_t>& rows)
{
    // The same curve in the other sections: other runs, alters and files of the same design.
    const wxWaveExplorerBrowserRows& model = mTree->rows();
    std::set<std::string> names;
    for (size_t row : rows)
        if (row < model.getNumberOfCurveRows())
            names.insert(model.getRow(row).fullName);
    std::vector<size_t> matching;
    for (size_t row = 0; row < model.getNumberOfCurveRows(); ++row)
        if (names.count(model.getRow(row).fullName))
            matching.push_back(row);
    plotRows(matching, false);
}

void wxWaveExplorerBrowserWidget::forSectionsOf(const std::vector<size_t>& rows, const char* word)
{
    const wxWaveExplorerBrowserRows& model = mTree->rows();
    std::vector<std::string> sections;
    for (size_t row : rows) {
        if (row >= model.getNumberOfCurveRows())
            continue;
        const std::string name = model.getSectionText(row);
        if (std::find(sections.begin(), sections.end(), name) == sections.end())
            sections.push_back(name);
    }
    if (sections.empty()) {
        message("No valid selection.");
        return;
    }
    for (const auto& name : sections)
        runCommand(std::string(word) + " \"" + name + "\"");
}

QMimeData* wxWaveExplorerBrowserWidget::createMimeData(const std::vector<size_t>& rows)
{
    const wxWaveExplorerBrowserRows& model = mTree->rows();
    wxListOfCurveDescriptions list;
    cVxScopedLock lock(mStore.getMutex());
    for (size_t row : rows) {
        if (row >= model.getNumberOfCurveRows())
            continue;
        const wxBrowserRow& r = model.getRow(row);
        list.addCurve(mStore, r.sectionId, r.curveIndex, mLogger);
    }
    if (list.empty())
        return nullptr;
    return new wxCurveListDataObject(list, std::to_string(QCoreApplication::applicationPid()));
}

}  // namespace vx3
