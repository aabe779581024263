#include "wxWaveExplorerNotebook.h"

#include <QFileDialog>
#include <QLabel>
#include <QTabWidget>
#include <QVBoxLayout>

#include <filesystem>

#include "plot/plotWindowType.h"
#include "plot/qt/wxMultiPlotWidget.h"
#include "treegrid/page/wxTreeGridTableWidgetImpl.h"

namespace vx3 {

// A table page shows its messages in its own line and hands them on to the explorer's log.
class wxWaveExplorerNotebook::cLogForward : public cVxLoggerCallBack {
public:
    explicit cLogForward(const cVxLogger& logger) : mLogger(logger) {}
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        mLogger.sendMsg(severity, text);
    }

private:
    const cVxLogger& mLogger;
};

wxWaveExplorerNotebook::wxWaveExplorerNotebook(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger,
                                               std::function<void(const std::string&)> recordUserCommand)
    : QWidget(parent), mDataMutex(dataMutex), mLogger(logger), mRecordUserCommand(std::move(recordUserCommand)),
      mTableLog(std::make_unique<cLogForward>(logger))
{
    setObjectName("plot_notebook");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    mTabs = new QTabWidget(this);
    mTabs->setObjectName("plot_tabs");
    mTabs->setTabsClosable(true);
    mTabs->setDocumentMode(true);
    mPlaceholder = new QLabel(this);
    mPlaceholder->setObjectName("plot_area");
    mPlaceholder->setAlignment(Qt::AlignCenter);
    mPlaceholder->setText("No plot yet.\nOpen a file or add curves with commands.");
    mPlaceholder->setFrameShape(QFrame::StyledPanel);
    layout->addWidget(mTabs);
    layout->addWidget(mPlaceholder);
    connect(mTabs, &QTabWidget::tabCloseRequested, this, [this](int index) {
        if (index >= 0)
            removePage(static_cast<size_t>(index));
    });
    updatePlaceholder();
}

wxWaveExplorerNotebook::~wxWaveExplorerNotebook() = default;

void wxWaveExplorerNotebook::setCursorPositionTextHandler(std::function<void(const std::string&)> handler)
{
    mCursorPositionText = std::move(handler);
    for (cPage& page : mPages)
        if (page.analog)
            page.analog->setCursorPositionTextHandler(mCursorPositionText);
}

void wxWaveExplorerNotebook::setStore(cCurvePlotDataFile* store)
{
    mStore = store;
    setDropsAllowed(mDropsAllowed);
}

void wxWaveExplorerNotebook::setDropsAllowed(bool allowed)
{
    mDropsAllowed = allowed;
    for (wxSinglePlotWidgetImpl* plot : getAllPlots())
        plot->setStoreForDrops(allowed ? mStore : nullptr);
}

void wxWaveExplorerNotebook::releaseCurvesBeforeStoreCloses()
{
    for (wxSinglePlotWidgetImpl* plot : getAllPlots()) {
        plot->clearSectionPtrsForDestructor();
        plot->setStoreForDrops(nullptr);
    }
    // Table pages compute from the store with an evaluator of their own: they go before it.
    for (size_t i = mPages.size(); i-- > 0;)
        if (mPages[i].table)
            removePage(i);
    mStore = nullptr;
}

void wxWaveExplorerNotebook::updatePlaceholder()
{
    mTabs->setVisible(!mPages.empty());
    mPlaceholder->setVisible(mPages.empty());
}

size_t wxWaveExplorerNotebook::getNbOfPages() const { return mPages.size(); }

int wxWaveExplorerNotebook::indexOfPage(const wxMultiPlotWidget* page) const
{
    for (size_t i = 0; i < mPages.size(); ++i)
        if (mPages[i].analog == page)
            return static_cast<int>(i);
    return -1;
}

void wxWaveExplorerNotebook::preparePlot(wxSinglePlotWidgetImpl& plot, const std::string& name)
{
    plot.setObjectName(QString::fromStdString("plot_" + name));
    plot.setPlotName(name);
    plot.setStoreForDrops(mDropsAllowed ? mStore : nullptr);
    size_t index = 0;
    if (wxMultiPlotWidget* page = findPage(&plot, &index))
        page->setPlotName(index, name);
}

std::string wxWaveExplorerNotebook::generatePlotName(const std::string& base) const
{
    for (unsigned n = 2;; ++n) {
        std::string candidate = base + "_" + std::to_string(n);
        if (!findPlot(candidate))
            return candidate;
    }
}

bool wxWaveExplorerNotebook::addPlot(const std::string& name, const std::string& typeWord, bool newPage,
                                     bool makeVisible, int defaultType)
{
    if (name.empty() || findPlot(name) || findTable(name)) {
        mLogger.errorMsg("The plot window \"" + name + "\" already exists.");
        return false;
    }
    if (typeWord == "spreadsheet") {
        // A table is never split into a plot page: it always opens a tab of its own.
        cPage page = createPage(kTablePage);
        if (!page.table) {
            mLogger.errorMsg("The table \"" + name + "\" can't be opened: there is no data to show in it.");
            return false;
        }
        page.tableName = name;
        page.widget->setObjectName(QString::fromStdString("page_" + name));
        mPages.push_back(page);
        const int tab = mTabs->addTab(page.widget, QString::fromStdString(name));
        if (makeVisible || mPages.size() == 1)
            mTabs->setCurrentIndex(tab);
        updatePlaceholder();
        return true;
    }
    wxMultiPlotWidget* current = mPages.empty() ? nullptr : mPages[static_cast<size_t>(mTabs->currentIndex())].analog;
    if (!newPage && current) {
        // Another plot on the page shown: the active plot gives it the lower half.
        const size_t active = current->getActiveIndex();
        if (!current->splitPlot(current->getPlotName(active), true))
            return false;
        preparePlot(current->plot(active + 1), name);
        return true;
    }
    int type = string_to_window_type(typeWord);
    cPage page = createPage(type < 0 ? defaultType : type);
    if (!page.widget) {
        if (type >= 0)
            mLogger.warnMsg("The plot type \"" + typeWord + "\" has no page in this version; the default page is used.");
        type = defaultType;
        page = createPage(defaultType);
    }
    if (!page.widget) {
        page = createPage(waveExplorerWidgetVirtual::analog_plot);
        if (!page.widget)
            return false;
    }
    page.widget->setObjectName(QString::fromStdString("page_" + name));
    if (wxMultiPlotWidget* analog = page.analog) {
        analog->setCommandRecorder(mRecordUserCommand);
        analog->setCursorPositionTextHandler(mCursorPositionText);
        // Plots split off by command or menu get a name of their own and the store for drops.
        analog->setPlotCreatedHandler([this, analog](size_t index) {
            if (index > 0 && index < analog->getNbOfPlots())
                preparePlot(analog->plot(index), generatePlotName(analog->plot(index - 1).getPlotName()));
        });
    }
    mPages.push_back(page);
    const int tab = mTabs->addTab(page.widget, QString::fromStdString(name));
    if (page.analog)
        preparePlot(page.analog->plot(0), name);
    if (makeVisible || mPages.size() == 1)
        mTabs->setCurrentIndex(tab);
    updatePlaceholder();
    return true;
}

wxSinglePlotWidgetImpl* wxWaveExplorerNotebook::findPlot(const std::string& name) const
{
    if (name.empty())
        return nullptr;
    for (const cPage& page : mPages)
        if (page.analog)
            if (const int index = page.analog->findPlot(name); index >= 0)
                return &page.analog->plot(static_cast<size_t>(index));
    return nullptr;
}

wxSinglePlotWidgetImpl* wxWaveExplorerNotebook::getActivePlot() const
{
    const int tab = mTabs->currentIndex();
    if (tab < 0 || static_cast<size_t>(tab) >= mPages.size() || !mPages[static_cast<size_t>(tab)].analog)
        return nullptr;
    return &mPages[static_cast<size_t>(tab)].analog->getActiveOrFirstWindow();
}

std::string wxWaveExplorerNotebook::getActivePlotName() const
{
    const wxSinglePlotWidgetImpl* plot = getActivePlot();
    return plot ? plot->getPlotName() : std::string();
}

std::vector<wxSinglePlotWidgetImpl*> wxWaveExplorerNotebook::getAllPlots() const
{
    std::vector<wxSinglePlotWidgetImpl*> plots;
    for (const cPage& page : mPages)
        if (page.analog)
            for (size_t i = 0; i < page.analog->getNbOfPlots(); ++i)
                plots.push_back(&page.analog->plot(i));
    return plots;
}

wxMultiPlotWidget* wxWaveExplorerNotebook::findPage(const cPlotWidgetCommon* plot, size_t* index) const
{
    for (const cPage& page : mPages)
        if (page.analog)
            if (const int at = page.analog->indexOf(plot); at >= 0) {
                if (index)
                    *index = static_cast<size_t>(at);
                return page.analog;
            }
    return nullptr;
}

bool wxWaveExplorerNotebook::addCurve(wxSinglePlotWidgetImpl& plot, const wxCurveDescription& description, bool clear)
{
    size_t index = 0;
    wxMultiPlotWidget* page = findPage(&plot, &index);
    if (clear)
        plot.clearCurves();
    return page ? page->addCurves(index, {description}) : plot.addToPlot(description);
}

int wxWaveExplorerNotebook::indexOfTable(const std::string& name) const
{
    for (size_t i = 0; i < mPages.size(); ++i)
        if (mPages[i].table && mPages[i].tableName == name)
            return static_cast<int>(i);
    return -1;
}

wxTreeGridTableWidgetImpl* wxWaveExplorerNotebook::findTable(const std::string& name) const
{
    const int index = indexOfTable(name);
    return index < 0 ? nullptr : mPages[static_cast<size_t>(index)].table;
}

std::vector<wxTreeGridTableWidgetImpl*> wxWaveExplorerNotebook::getAllTables() const
{
    std::vector<wxTreeGridTableWidgetImpl*> tables;
    for (const cPage& page : mPages)
        if (page.table)
            tables.push_back(page.table);
    return tables;
}

bool wxWaveExplorerNotebook::performOnTable(const std::string& name, bool close, bool show)
{
    const int index = name.empty() ? -1 : indexOfTable(name);
    if (index < 0)
        return false;
    if (close)
        removePage(static_cast<size_t>(index));
    if (show)
        mTabs->setCurrentIndex(index);
    return true;
}

wxSinglePlotWidgetImpl* wxWaveExplorerNotebook::findPlotOrLog(const std::string& name) const
{
    wxSinglePlotWidgetImpl* plot = name.empty() ? getActivePlot() : findPlot(name);
    if (!plot)
        mLogger.errorMsg(name.empty() ? std::string("There is no plot to act on.")
                                      : "The plot window \"" + name + "\" was not found.");
    return plot;
}

bool wxWaveExplorerNotebook::splitPlot(const std::string& name, bool vertically)
{
    wxSinglePlotWidgetImpl* plot = findPlotOrLog(name);
    size_t index = 0;
    wxMultiPlotWidget* page = plot ? findPage(plot, &index) : nullptr;
    if (!page)
        return false;
    return page->splitPlot(page->getPlotName(index), vertically);
}

bool wxWaveExplorerNotebook::maximizePlot(const std::string& name)
{
    wxSinglePlotWidgetImpl* plot = findPlotOrLog(name);
    size_t index = 0;
    wxMultiPlotWidget* page = plot ? findPage(plot, &index) : nullptr;
    if (!page)
        return false;
    // Maximizing the plot already maximized keeps it so; minimize_plot brings the others back.
    if (page->getLayout().getMaximized() == static_cast<int>(index))
        return true;
    return page->maximizePlot(page->getPlotName(index));
}

bool wxWaveExplorerNotebook::minimizePlot(const std::string& name)
{
    wxSinglePlotWidgetImpl* plot = findPlotOrLog(name);
    size_t index = 0;
    wxMultiPlotWidget* page = plot ? findPage(plot, &index) : nullptr;
    if (!page)
        return false;
    if (page->getLayout().getMaximized() < 0)
        return true;  // nothing maximized: already as asked
    return page->minimizePlot(page->getPlotName(index));
}

bool wxWaveExplorerNotebook::closePlot(const std::string& name)
{
    if (performOnTable(name, true, false))
        return true;
    wxSinglePlotWidgetImpl* plot = findPlotOrLog(name);
    size_t index = 0;
    wxMultiPlotWidget* page = plot ? findPage(plot, &index) : nullptr;
    if (!page)
        return false;
    if (page->getNbOfPlots() == 1) {
        removePage(static_cast<size_t>(indexOfPage(page)));
        return true;
    }
    return page->closeWindow(index);
}

bool wxWaveExplorerNotebook::deleteTab(const std::string& name)
{
    if (performOnTable(name, true, false))
        return true;
    wxSinglePlotWidgetImpl* plot = findPlotOrLog(name);
    wxMultiPlotWidget* page = plot ? findPage(plot) : nullptr;
    if (!page)
        return false;
    removePage(static_cast<size_t>(indexOfPage(page)));
    return true;
}

bool wxWaveExplorerNotebook::makePlotVisible(const std::string& name)
{
    if (performOnTable(name, false, true))
        return true;
    wxSinglePlotWidgetImpl* plot = findPlotOrLog(name);
    size_t index = 0;
    wxMultiPlotWidget* page = plot ? findPage(plot, &index) : nullptr;
    if (!page)
        return false;
    mTabs->setCurrentIndex(indexOfPage(page));
    page->setActiveWindow(index);
    return true;
}

void wxWaveExplorerNotebook::removePage(size_t index)
{
    if (index >= mPages.size())
        return;
    QWidget* widget = mPages[index].widget;
    mPages.erase(mPages.begin() + static_cast<std::ptrdiff_t>(index));
    mTabs->removeTab(static_cast<int>(index));
    delete widget;
    updatePlaceholder();
}

bool wxWaveExplorerNotebook::exportPage(const std::string& name, const std::string& format,
                                        const std::string& fileName)
{
    if (wxTreeGridTableWidgetImpl* table = findTable(name)) {
        std::string target = fileName;
        if (!std::filesystem::path(target).has_extension())
            target += "." + format;
        const std::filesystem::path folder = std::filesystem::path(target).parent_path();
        if (!folder.empty() && !std::filesystem::is_directory(folder)) {
            mLogger.errorMsg("The directory \"" + folder.string() + "\" doesn't exist.");
            return false;
        }
        // The page as it shows; a table that never showed gets the size of the notebook first.
        if (!table->isVisible() && table->size().width() < 100)
            table->resize(mTabs->size().isEmpty() ? QSize(1200, 800) : mTabs->size());
        if (format == "svg") {
            mLogger.errorMsg("A table page is exported as png, jpg, bmp or tif, not as svg.");
            return false;
        }
        const std::string qtFormat = format == "jpg" ? "JPEG" : format == "tif" ? "TIFF" : format == "bmp" ? "BMP" : "PNG";
        if (!table->grab().save(QString::fromStdString(target), qtFormat.c_str())) {
            mLogger.errorMsg("Failed to export to \"" + target + "\"");
            return false;
        }
        return true;
    }
    wxSinglePlotWidgetImpl* plot = findPlotOrLog(name);
    wxMultiPlotWidget* page = plot ? findPage(plot) : nullptr;
    if (!page)
        return false;
    std::string target = fileName;
    if (!std::filesystem::path(target).has_extension())
        target += "." + format;
    return page->exportImage(target, 0, 0, -1, format);
}

bool wxWaveExplorerNotebook::showExportAsImageDialog(const std::string& name)
{
    wxSinglePlotWidgetImpl* plot = findPlotOrLog(name);
    wxMultiPlotWidget* page = plot ? findPage(plot) : nullptr;
    if (!page)
        return false;
    const QString file = QFileDialog::getSaveFileName(
        this, "Export to Image", QString(),
        "PNG (*.png);;JPEG (*.jpg *.jpeg);;Bitmap (*.bmp);;TIFF (*.tif *.tiff);;SVG (*.svg)");
    if (file.isEmpty())
        return false;  // the user changed their mind
    return page->exportImage(file.toStdString());
}

}  // namespace vx3
