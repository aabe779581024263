// The commands for what lies over a plot's curves and how it looks: rulers, legend, annotations,
// highlighting and grid lines. Options that the plots read (legend position, snapping of rulers)
// are stored by the configuration first and then given to every plot, new plots included.

#include <cctype>
#include <cmath>
#include <string>

#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/cVxString.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "plot/wxPlotAnnotation.h"
#include "wxWaveExplorerNotebook.h"
#include "wxWaveExplorerWidgetImpl.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {
constexpr int kOk = 0;
constexpr int kFailed = 3;
constexpr int not_an_overlay_command = -1;

std::string lowerCase(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// A legend kind by its name or number, or by the short words of the option ("top" is the default
// of the configuration and means the legend inside the plot); -1 for anything else.
int legendTypeFromOption(const std::string& text)
{
    const int type = singlePlotWidgetLegend::get_legend_type_from_string(text);
    if (type >= 0)
        return type;
    const std::string word = lowerCase(text);
    if (word == "none" || word == "off" || word == "hidden")
        return singlePlotWidgetLegend::no_legend;
    if (word == "auto" || word == "automatic")
        return singlePlotWidgetLegend::automatically_hidden;
    if (word == "top" || word == "inside" || word == "plot" || word == "in_plot")
        return singlePlotWidgetLegend::in_plot_window;
    if (word == "left")
        return singlePlotWidgetLegend::on_the_left;
    if (word == "right")
        return singlePlotWidgetLegend::on_the_right;
    return -1;
}

// Grid lines by a word, or all nine flags as '0'/'1' in the order x, y0, y1 zero lines, coarse
// lines, fine lines. Empty for an unknown word.
std::string gridFlagsFromWord(const std::string& text)
{
    const std::string word = lowerCase(text);
    if (word.size() == plotWidgetCommon::nb_grid_flags && word.find_first_not_of("01") == std::string::npos)
        return word;
    if (word == "none" || word == "no_grid")
        return "000000000";
    if (word == "zero_lines")
        return "111000000";
    if (word == "coarse" || word == "coarse_grid")
        return "111111000";
    if (word == "fine" || word == "fine_grid" || word == "full")
        return "111111111";
    if (word == "default")
        return "010110110";
    return {};
}

// "_real" or "_imag" behind an annotation type names the part of a complex curve.
std::string splitPartSuffix(const std::string& type, bool& imaginary)
{
    imaginary = false;
    const std::string word = lowerCase(type);
    for (const char* suffix : {"_real", "_imag"}) {
        const size_t size = std::char_traits<char>::length(suffix);
        if (word.size() > size && word.compare(word.size() - size, size, suffix) == 0) {
            imaginary = suffix[1] == 'i';
            return type.substr(0, type.size() - size);
        }
    }
    return type;
}
}  // namespace

int wxWaveExplorerWidgetImpl::findCurveInPlot(const wxSinglePlotWidgetImpl& plot, const cCurvePlotDataSection* section,
                                              uint64_t curveIndex) const
{
    const std::vector<wxSinglePlotWidgetData>& curves = plot.getCurves();
    for (size_t i = 0; i < curves.size(); ++i)
        if (curves[i].description().getSection() == section && curves[i].description().getCurveIndex() == curveIndex)
            return static_cast<int>(i);
    mLogger.errorMsg("The curve is not shown in the plot window \"" + plot.getPlotName() + "\".");
    return -1;
}

// The plot's position of the curve a command names: by section and curve name (first == 0) or by
// section id and curve index; -1 after a message.
int wxWaveExplorerWidgetImpl::findCommandCurveInPlot(const wxWaveExplorerCommand& command,
                                                     const wxSinglePlotWidgetImpl& plot, bool byId) const
{
    if (byId) {
        const double id = command.getDoubleArg(0, -1.0), index = command.getDoubleArg(1, -1.0);
        for (uint64_t i = 0; id >= 0.0 && index >= 0.0 && i < mStore->getNbOfDataSections(); ++i) {
            const cCurvePlotDataSection* section = mStore->getDataSectionFromIndex(i);
            if (section && section->getSectionId() == static_cast<uint64_t>(id))
                return findCurveInPlot(plot, section, static_cast<uint64_t>(index));
        }
        mLogger.errorMsg("The section with identifier " + std::to_string(static_cast<long long>(id)) + " was not found.");
        return -1;
    }
    const cCurvePlotDataSection* section = findSectionOrLog(command.getStringArgument(0));
    if (!section)
        return -1;
    const std::string& curveName = command.getStringArgument(1);
    const uint64_t curveIndex = section->findVariableIndex(curveName);
    if (curveIndex >= section->getNbOfVariables()) {
        mLogger.errorMsg("The curve \"" + curveName + "\" was not found in section \"" + command.getStringArgument(0) +
                         "\".");
        return -1;
    }
    return findCurveInPlot(plot, section, curveIndex);
}

void wxWaveExplorerWidgetImpl::applyOverlayOptions(wxSinglePlotWidgetImpl& plot) const
{
    const int legend = legendTypeFromOption(mConfiguration.getOptionText("legend_position"));
    bool changed = false;
    if (legend >= 0 && legend != plot.overlay().legend().getType()) {
        plot.overlay().legend().setType(legend);
        changed = true;
    }
    plot.overlay().settings.snapToGrid = mConfiguration.getOptionFlag("cursor_snap_to_grid", true);
    if (changed)
        plot.plotWidgetRedrawAll();  // a side legend changes the canvas
}

int wxWaveExplorerWidgetImpl::executeOverlayCommand(wxWaveExplorerCommand& command)
{
    // The annotation commands: section and curve by name, or by id and index (two numbers first).
    auto annotate = [&](bool byId, bool highlight) {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
        if (!plot)
            return kFailed;
        const int curve = findCommandCurveInPlot(command, *plot, byId);
        if (curve < 0) {
            mLogger.warnMsg("Failed to create annotation.");
            return kFailed;
        }
        const size_t first = byId ? 0 : 2;  // string arguments: [section, curve,] type, text, points...
        bool imaginary = false;
        const std::string type = splitPartSuffix(command.getStringArgument(first), imaginary);
        std::vector<double> points;
        for (size_t i = first + 2; i < command.getNumberOfStringArguments(); ++i) {
            double value = NAN;
            if (!cVxString(command.getStringArgument(i)).toDouble(value))
                value = NAN;  // counted among the ignored points
            points.push_back(value);
        }
        if (!plot->overlay().addCurveAnnotation(static_cast<size_t>(curve), type, command.getStringArgument(first + 1),
                                                points, imaginary))
            return kFailed;
        if (highlight)
            plot->setCurveHighlighted(static_cast<size_t>(curve), imaginary, true, false);
        plot->plotWidgetRedrawFrame();
        return kOk;
    };
    auto highlight = [&](bool byId, bool on) {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
        if (!plot)
            return kFailed;
        int curve = -1;
        if (byId) {
            curve = findCommandCurveInPlot(command, *plot, true);
        } else if (const cCurvePlotDataSection* section = findSectionOrLog(command.getStringArgument(0))) {
            const double index = command.getDoubleArg(0, -1.0);
            curve = index >= 0.0 ? findCurveInPlot(*plot, section, static_cast<uint64_t>(index)) : -1;
        }
        if (curve < 0)
            return kFailed;
        const size_t flags = byId ? 2 : 1;  // the optional flags follow the numbers
        const bool clear = command.getDoubleArgAsBool(flags, false);
        const bool imaginary = command.getDoubleArgAsBool(flags + 1, false);
        if (!on && clear)
            plot->clearHighlightingAll();
        else
            plot->setCurveHighlighted(static_cast<size_t>(curve), imaginary, on, clear);
        return kOk;
    };

    switch (command.actionType) {
    case cmd_add_plot: {
        const int result = performPlotCommand(command);
        if (result == kOk)
            if (wxSinglePlotWidgetImpl* plot = findPlot(command.plotName))
                applyOverlayOptions(*plot);
        return result;
    }
    case opt_legend_position:
        if (legendTypeFromOption(command.getStringArgument(0)) < 0) {
            mLogger.errorMsg("Unknown legend position \"" + command.getStringArgument(0) +
                             "\" (none, auto, top, left, right or a legend kind).");
            return kFailed;
        }
        [[fallthrough]];
    case opt_cursor_snap_to_grid: {
        const int result = performOption(command);
        if (mNotebook)
            for (wxSinglePlotWidgetImpl* plot : mNotebook->getAllPlots())
                applyOverlayOptions(*plot);
        return result;
    }
    case cmd_set_cursor:
    case cmd_reset_cursor:
    case cmd_clear_cursors: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
        if (!plot)
            return kFailed;
        bool done = true;
        if (command.actionType == cmd_set_cursor)
            done = plot->overlay().setCursor(command.getDoubleArg(0, NAN), command.getStringArgument(0));
        else if (command.actionType == cmd_reset_cursor)
            done = plot->overlay().clearRuler(command.getStringArgument(0));
        else
            plot->overlay().clearRulers();
        if (done)
            plot->plotWidgetRedrawFrame();
        return done ? kOk : kFailed;
    }
    case cmd_enable_cursor_mode:
    case cmd_disable_cursor_mode:
    case cmd_toggle_cursor_mode: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(std::string());
        if (!plot)
            return kFailed;
        const int state = plot->overlay().getRulerState();
        const bool inMode = state == singlePlotOverlay::waiting_for_marker || state == singlePlotOverlay::waiting_for_cursor;
        const bool enable = command.actionType == cmd_enable_cursor_mode ||
                            (command.actionType == cmd_toggle_cursor_mode && !inMode);
        const bool done = enable ? plot->activateRulersAtMouse() : (plot->escapePressedAction(), true);
        return done ? kOk : kFailed;
    }
    case cmd_add_text_annotation_to_plot: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
        if (!plot || !plot->overlay().addTextAnnotation(command.getStringArgument(0)))
            return kFailed;
        plot->plotWidgetRedrawFrame();
        return kOk;
    }
    case cmd_add_curve_annotation_to_plot: return annotate(false, false);
    case cmd_add_highlighted_curve_annotation_to_plot: return annotate(false, true);
    case cmd_add_curve_annotation_to_plot_by_id_and_index: return annotate(true, false);
    case cmd_clear_curve_annotations_in_plot: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
        if (!plot)
            return kFailed;
        const int curve = findCommandCurveInPlot(command, *plot, false);
        if (curve < 0)
            return kFailed;
        plot->overlay().clearCurveAnnotations(static_cast<size_t>(curve));
        plot->plotWidgetRedrawFrame();
        return kOk;
    }
    case cmd_clear_annotations_in_plot: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
        if (!plot)
            return kFailed;
        plot->overlay().clearAnnotations();
        plot->plotWidgetRedrawFrame();
        return kOk;
    }
    case cmd_highlight_curve_in_plot_by_id_and_index: return highlight(true, true);
    case cmd_unhighlight_curve_in_plot_by_id_and_index: return highlight(true, false);
    case cmd_highlight_curve_in_plot_by_index: return highlight(false, true);
    case cmd_unhighlight_curve_in_plot_by_index: return highlight(false, false);
    case cmd_set_grid_type: {
        wxSinglePlotWidgetImpl* plot = findPlotOrLog(command.plotName);
        if (!plot)
            return kFailed;
        const std::string flags = gridFlagsFromWord(command.getStringArgument(0));
        if (flags.empty()) {
            mLogger.errorMsg("Unknown grid type \"" + command.getStringArgument(0) +
                             "\" (none, zero_lines, coarse, fine, default, or nine flags of 0 and 1).");
            return kFailed;
        }
        plot->setGridFlagsFromString(flags);
        return kOk;
    }
    default:
        return not_an_overlay_command;
    }
}

}  // namespace vx3
