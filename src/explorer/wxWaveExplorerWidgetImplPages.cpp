// The page commands: split a plot, maximize and restore, close plots and tabs, show a page, write
// a page as an image, and the questions about plots and their names.
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "wxWaveExplorerNotebook.h"
#include "wxWaveExplorerWidgetImpl.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {
constexpr int kOk = 0;
constexpr int kFailed = 3;
constexpr int not_a_plot_command = -1;

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
        return not_a_plot_command;
    }
}

}  // namespace vx3
