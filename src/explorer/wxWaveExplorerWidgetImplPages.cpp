// The page commands: split a plot, maximize and restore, close plots and tabs, show a page, write
// a page as an image, name the plots of a page, and the questions about plots and their names.
#include <set>

#include "plot/qt/wxMultiPlotWidget.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "wxWaveExplorerNotebook.h"
#include "wxWaveExplorerWidgetImpl.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {
constexpr int kOk = 0;
constexpr int kFailed = 3;

const char* exportFormat(int actionType)
{
    switch (actionType) {
    case cmd_export_page_as_png: return "png";
    case cmd_export_page_as_jpg: return "jpg";
    case cmd_export_page_as_bmp: return "bmp";
    case cmd_export_page_as_tif: return "tif";
    case cmd_export_page_as_svg: return "svg";
    default: return nullptr;
    }
}
}  // namespace

// The plots of the page that holds the plot named first take the names that follow, in page
// order. Names stay unique over all pages: a clash changes nothing.
int wxWaveExplorerWidgetImpl::definePagePlotNames(wxWaveExplorerCommand& command)
{
    wxSinglePlotWidgetImpl* named = findPlotOrLog(command.getStringArgument(0));
    wxMultiPlotWidget* page = named ? mNotebook->findPage(named) : nullptr;
    if (!page)
        return kFailed;
    std::vector<std::string> names;
    for (size_t i = 1; i < command.getNumberOfStringArguments(); ++i)
        names.push_back(command.getStringArgument(i));
    if (names.size() > page->getNbOfPlots()) {
        mLogger.warnMsg("The page holds " + std::to_string(page->getNbOfPlots()) + " plots; " +
                        std::to_string(names.size() - page->getNbOfPlots()) + " names were ignored.");
        names.resize(page->getNbOfPlots());
    }
    std::set<std::string> seen;
    for (const std::string& name : names) {
        if (name.empty()) {
            mLogger.errorMsg("A plot name may not be empty.");
            return kFailed;
        }
        wxSinglePlotWidgetImpl* holder = mNotebook->findPlot(name);
        const bool elsewhere = holder && mNotebook->findPage(holder) != page;
        if (elsewhere || !seen.insert(name).second) {
            mLogger.errorMsg("The plot window \"" + name + "\" already exists.");
            return kFailed;
        }
    }
    for (size_t i = 0; i < names.size(); ++i) {
        wxSinglePlotWidgetImpl& plot = page->plot(i);
        plot.setObjectName(QString::fromStdString("plot_" + names[i]));
        plot.setPlotName(names[i]);
        page->setPlotName(i, names[i]);
    }
    return kOk;
}

int wxWaveExplorerWidgetImpl::performPageCommand(wxWaveExplorerCommand& command)
{
    wxWaveExplorerNotebook& notebook = *mNotebook;
    const std::string& name = command.plotName;
    auto result = [](bool done) { return done ? kOk : kFailed; };
    switch (command.actionType) {
    case cmd_split_vertically: return result(notebook.splitPlot(name, true));
    case cmd_split_horizontally: return result(notebook.splitPlot(name, false));
    case cmd_maximize_plot: return result(notebook.maximizePlot(name));
    case cmd_minimize_plot: return result(notebook.minimizePlot(name));
    case cmd_close_plot: return result(notebook.closePlot(name));
    case cmd_delete_tab: return result(notebook.deleteTab(name));
    case cmd_make_tab_visible:
    case cmd_make_plot_visible: return result(notebook.makePlotVisible(name));
    case cmd_export_page_as_png:
    case cmd_export_page_as_jpg:
    case cmd_export_page_as_bmp:
    case cmd_export_page_as_tif:
    case cmd_export_page_as_svg:
        return result(notebook.exportPage(name, exportFormat(command.actionType), command.getStringArgument(0)));
    case cmd_define_page_plot_names: return definePagePlotNames(command);
    case cmd_show_export_as_image_dialog: return result(notebook.showExportAsImageDialog(name));
    case cmd_get_number_of_plots:
        command.pushReturnValue(static_cast<long>(notebook.getAllPlots().size()));
        return kOk;
    case cmd_get_plot_name: {
        const std::vector<wxSinglePlotWidgetImpl*> plots = notebook.getAllPlots();
        const double index = command.getDoubleArg(0, -1.0);
        if (!(index >= 0.0) || index >= static_cast<double>(plots.size())) {
            mLogger.errorMsg("The plot index " + std::to_string(static_cast<long long>(index)) + " is out of range.");
            return kFailed;
        }
        command.pushReturnValue(plots[static_cast<size_t>(index)]->getPlotName());
        return kOk;
    }
    case cmd_get_current_plot_name: {
        const std::string current = notebook.getActivePlotName();
        if (current.empty()) {
            mLogger.errorMsg("There is no plot to act on.");
            return kFailed;
        }
        command.pushReturnValue(current);
        return kOk;
    }
    default:
        return performRowCommand(command);
    }
}

}  // namespace vx3
