// The commands that make plots and act on them: plots by name on the pages of the notebook,
// curves added by section and curve name, zoom, views and undo of the active plot.
#include <limits>

#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/cLoggedException.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"
#include "plot/colourList.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "wxWaveExplorerNotebook.h"
#include "wxWaveExplorerWidgetImpl.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {
constexpr int kOk = 0;
constexpr int kFailed = 3;
constexpr int not_a_plot_command = -1;
}  // namespace

wxSinglePlotWidgetImpl* wxWaveExplorerWidgetImpl::findPlot(const std::string& name) const
{
    return mNotebook->findPlot(name);
}

wxSinglePlotWidgetImpl* wxWaveExplorerWidgetImpl::findPlotOrLog(const std::string& name) const
{
    if (name.empty()) {
        wxSinglePlotWidgetImpl* active = mNotebook->getActivePlot();
        if (!active)
            mLogger.errorMsg("There is no plot to act on.");
        return active;
    }
    wxSinglePlotWidgetImpl* plot = findPlot(name);
    if (!plot)
        mLogger.errorMsg("The plot window \"" + name + "\" was not found.");
    return plot;
}

// The section by complete name or name, as every command naming one finds it.
cCurvePlotDataSection* wxWaveExplorerWidgetImpl::findSectionOrLog(const std::string& name) const
{
    cCurvePlotDataFile& store = *mStore;
    const uint64_t index = store.getDataSectionIndexFromCompleteName(name);
    cCurvePlotDataSection* section =
        index != cCurvePlotDataFile::npos ? store.getDataSectionFromIndex(index) : store.getDataSectionFromName(name);
    if (!section)
        mLogger.errorMsg("The section \"" + name + "\" was not found.");
    return section;
}

int wxWaveExplorerWidgetImpl::addCurveToPlot(wxSinglePlotWidgetImpl& plot, const std::string& sectionName,
                                             const std::string& curveName, bool clear)
{
    cCurvePlotDataSection* section = findSectionOrLog(sectionName);
    if (!section)
        return kFailed;
    const uint64_t curveIndex = section->findVariableIndex(curveName);
    if (curveIndex >= section->getNbOfVariables()) {
        mLogger.errorMsg("The curve \"" + curveName + "\" was not found in section \"" + sectionName + "\".");
        return kFailed;
    }
    return addDescriptionToPlot(plot, section, curveIndex, clear);
}

int wxWaveExplorerWidgetImpl::addCurveToPlotById(wxSinglePlotWidgetImpl& plot, uint64_t sectionId, uint64_t curveIndex,
                                                 bool clear)
{
    cCurvePlotDataSection* section = nullptr;
    for (uint64_t i = 0; i < mStore->getNbOfDataSections() && !section; ++i) {
        cCurvePlotDataSection* candidate = mStore->getDataSectionFromIndex(i);
        if (candidate && candidate->getSectionId() == sectionId)
            section = candidate;
    }
    if (!section) {
        mLogger.errorMsg("The section with identifier " + std::to_string(sectionId) + " was not found.");
        return kFailed;
    }
    if (curveIndex >= section->getNbOfVariables()) {
        mLogger.errorMsg("The curve index " + std::to_string(curveIndex) + " is out of range.");
        return kFailed;
    }
    return addDescriptionToPlot(plot, section, curveIndex, clear);
}

int wxWaveExplorerWidgetImpl::addDescriptionToPlot(wxSinglePlotWidgetImpl& plot, cCurvePlotDataSection* section,
                                                   uint64_t curveIndex, bool clear)
{
    wxCurveDescription description;
    try {
        description.init(section, curveIndex);
    } catch (const cLoggedException& exception) {
        mLogger.errorMsg(exception.message());
        return kFailed;
    }
    // Each curve of a plot in a colour of its own, in the order of the colour list.
    description.style().realColour = description.style().imagColour =
        colourList::get_colour_from_list(plot.getNbOfCurves(), 255, 0).rgb();
    description.style().setAutomatic(true);
    return mNotebook->addCurve(plot, description, clear) ? kOk : kFailed;
}

void wxWaveExplorerWidgetImpl::recordUserCommand(const std::string& text)
{
    wxWaveExplorerAction action;
    action.actionType = explorerCallBack::record_user_command;
    action.pushStringArguments(text);
    if (mOwner)
        mOwner->waveExplorerVirtualCallBackAction(action);
}

void wxWaveExplorerWidgetImpl::preparePlotsForStoreCommand(const wxWaveExplorerCommand& command)
{
    const std::vector<wxSinglePlotWidgetImpl*> plots = mNotebook->getAllPlots();
    if (plots.empty())
        return;
    cCurvePlotDataFile& store = *mStore;
    const std::string& name = command.getStringArgument(0);
    // The file a command names, by its full or short name, or by one of its sections.
    auto fileNamed = [&]() -> const cFileDbSupport* {
        if (const cFileDbSupport* file = store.findDbSupportPtr(name))
            return file;
        if (const cFileDbSupport* file = store.findDbSupportPtrShortName(name))
            return file;
        const uint64_t index = store.getDataSectionIndexFromCompleteName(name);
        const cCurvePlotDataSection* section = index != cCurvePlotDataFile::npos ? store.getDataSectionFromIndex(index)
                                                                                : store.getDataSectionFromName(name);
        return section ? section->getFile() : nullptr;
    };
    switch (command.actionType) {
    case cmd_close_section: {
        const uint64_t index = store.getDataSectionIndexFromCompleteName(name);
        const cCurvePlotDataSection* section = index != cCurvePlotDataFile::npos ? store.getDataSectionFromIndex(index)
                                                                                : store.getDataSectionFromName(name);
        if (section)
            for (wxSinglePlotWidgetImpl* plot : plots)
                plot->removeCurvesOfSection(section);
        break;
    }
    case cmd_close_file:
    case cmd_close_all: {
        const cFileDbSupport* file = command.actionType == cmd_close_file ? store.findDbSupportPtr(name) : nullptr;
        if (command.actionType == cmd_close_file && !file)
            break;
        for (uint64_t i = 0; i < store.getNbOfDataSections(); ++i) {
            const cCurvePlotDataSection* section = store.getDataSectionFromIndex(i);
            if (section && (!file || section->getFile() == file))
                for (wxSinglePlotWidgetImpl* plot : plots)
                    plot->removeCurvesOfSection(section);
        }
        break;
    }
    case cmd_reload_file:
        if (const cFileDbSupport* file = fileNamed())
            for (wxSinglePlotWidgetImpl* plot : plots)
                plot->releaseCurvesForReload(file);
        break;
    default:
        break;
    }
}

void wxWaveExplorerWidgetImpl::updatePlotsAfterStoreCommand(const wxWaveExplorerCommand& command)
{
    if (command.actionType != cmd_reload_file)
        return;
    for (wxSinglePlotWidgetImpl* plot : mNotebook->getAllPlots())
        plot->reattachCurvesAfterReload(*mStore);
}

int wxWaveExplorerWidgetImpl::performPlotCommand(wxWaveExplorerCommand& command)
{
    switch (command.actionType) {
    case cmd_add_plot: {
        const std::string& name = command.plotName;
        if (!mNotebook->addPlot(name, command.plotType, command.getDoubleArgAsBool(0, true),
                                command.getDoubleArgAsBool(1, false), mConfiguration.defaultWindowType))
            return kFailed;
        command.pushReturnValue(name);
        return kOk;
    }
    case cmd_add_curve_to_plot_by_name: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
        return plot ? addCurveToPlot(*plot, command.getStringArgument(0), command.getStringArgument(1),
                                     command.getDoubleArgAsBool(0, false))
                    : kFailed;
    }
    case cmd_add_curve_to_plot: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.getStringArgument(2));
        return plot ? addCurveToPlot(*plot, command.getStringArgument(0), command.getStringArgument(1),
                                     command.getDoubleArgAsBool(0, false))
                    : kFailed;
    }
    case cmd_add_curve_to_plot_by_id_and_index: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
        return plot ? addCurveToPlotById(*plot, static_cast<uint64_t>(command.getDoubleArg(0, -1.0)),
                                         static_cast<uint64_t>(command.getDoubleArg(1, -1.0)),
                                         command.getDoubleArgAsBool(2, false))
                    : kFailed;
    }
    case cmd_clear_plot: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
        if (plot && plot->getNbOfCurves())
            plot->clearCurves();
        return plot ? kOk : kFailed;
    }
    case cmd_zoom: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
        if (!plot)
            return kFailed;
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const bool done = plot->fitPrintMessage(command.getDoubleArg(0, nan), command.getDoubleArg(1, nan),
                                                command.getDoubleArg(2, nan), command.getDoubleArg(3, nan),
                                                command.getDoubleArg(4, nan), command.getDoubleArg(5, nan), true, true);
        return done ? kOk : kFailed;
    }
    case cmd_define_sliding_plot_window: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
        if (!plot)
            return kFailed;
        const double pause = command.getDoubleArg(0, -1.0), width = command.getDoubleArg(1, -1.0);
        if (!(width > 0.0) || !(pause >= 0.0)) {
            mLogger.errorMsg("The sliding window needs a positive width and a pause of 0 seconds or more.");
            return kFailed;
        }
        plot->defineSlidingWindow(width, pause);
        plot->zoomToSlidingWindow(true);
        return kOk;
    }
    case cmd_zoom_in:
    case cmd_zoom_out:
    case cmd_zoom_x:
    case cmd_zoom_y:
    case cmd_unzoom:
    case cmd_zoom_fit:
    case cmd_previous_view_port:
    case cmd_next_view_port:
    case cmd_undo:
    case cmd_redo: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(std::string());
        if (!plot)
            return kFailed;
        bool done = false;
        switch (command.actionType) {
        case cmd_zoom_in: done = plot->zoomIn(1); break;
        case cmd_zoom_out: done = plot->zoomOut(1); break;
        case cmd_zoom_x: done = plot->zoomX(1); break;
        case cmd_zoom_y: done = plot->zoomFactor(1.0, 1.0 / plot->getSettings().zoomStep, 1.0 / plot->getSettings().zoomStep); break;
        case cmd_unzoom:
        case cmd_zoom_fit: done = plot->unzoom(); break;
        case cmd_previous_view_port: done = plot->switchViewPorts(-1); break;
        case cmd_next_view_port: done = plot->switchViewPorts(+1); break;
        case cmd_undo: done = plot->performUndoAction(); break;
        case cmd_redo: done = plot->performRedoAction(); break;
        default: break;
        }
        return done ? kOk : kFailed;
    }
    default:
        return performPageCommand(command);
    }
}

}  // namespace vx3
