#include "plot/qt/wxDigitalRowsPlot.h"

#include <algorithm>
#include <cmath>

#include "expressions/postProcessLogic.h"
#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "model/dataType.h"
#include "plot/qt/wxPlotDrawerDigitalQt.h"
#include "plot/wxPlotCurveDrawing.h"
#include "plot/wxPlotDrawerDigitalEntry.h"

namespace vx3 {

using namespace digitalPlotPageRows;

wxDigitalRowsPlot::wxDigitalRowsPlot(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger,
                                     wxAnalogPlotVirtual* page, int windowType)
    : wxSinglePlotWidgetImpl(parent, dataMutex, logger, page, windowType)
{
    // Each row has its own Y: curves of any Y unit share the plot.
    plotWidgetCommon::cPlotSettings settings = getSettings();
    settings.checkYAxisUnit = false;
    setSettings(settings);
    // The names column says which curve each row is: a legend would only cover rows.
    overlay().legend().setType(singlePlotWidgetLegend::no_legend);
}

unsigned wxDigitalRowsPlot::computeLogicWidth(const wxCurveDescription& curve)
{
    const cCurvePlotVariable* variable = curve.curvePlotVariableOrIdentical();
    const cCurvePlotDataSection* section = curve.getSection();
    if (!variable || !section)
        return 0;
    postProcess::cSparseLogic view;
    if (postProcess::makeSparseLogic(*variable, *section, view))
        return static_cast<unsigned>(std::max<uint64_t>(view.width, 1));
    return curvePlotProperties::checkCurveIsDigital(variable->getDataType()) ? 1 : 0;
}

bool wxDigitalRowsPlot::addRowCurves(const std::vector<wxCurveDescription>& curves)
{
    if (!addToPlot(curves))
        return false;
    syncRowsWithCurves();
    rowsChanged();
    return true;
}

wxDigitalRowsPlot::cCurveKey wxDigitalRowsPlot::keyOf(const wxSinglePlotWidgetData& curve)
{
    const wxCurveDescription& d = curve.description();
    return cCurveKey{d.getSection(), d.getCurveIndex(), d.postProcessState().sweepIndex, d.postProcessState().cutIndex};
}

void wxDigitalRowsPlot::syncRowsWithCurves()
{
    const std::vector<wxSinglePlotWidgetData>& curves = getCurves();
    std::vector<cCurveKey> keys;
    for (const wxSinglePlotWidgetData& curve : curves)
        keys.push_back(keyOf(curve));
    if (keys == mRowKeys)
        return;
    std::vector<long> newIndex(mRowKeys.size(), -1);
    for (size_t i = 0; i < mRowKeys.size(); ++i)
        if (const auto found = std::find(keys.begin(), keys.end(), mRowKeys[i]); found != keys.end())
            newIndex[i] = found - keys.begin();
    mRows.remapCurves(newIndex);
    for (size_t i = 0; i < curves.size(); ++i)
        if (!mRows.checkShowsCurve(i))
            mRows.addCurve(curves[i].description().getName(), i, computeLogicWidth(curves[i].description()));
    mRowKeys = std::move(keys);
}

size_t wxDigitalRowsPlot::addGroup(const std::string& name)
{
    const size_t row = mRows.addGroup(name);
    rowsChanged();
    return row;
}

size_t wxDigitalRowsPlot::addSeparator(const std::string& name)
{
    const size_t row = mRows.addSeparator(name);
    rowsChanged();
    return row;
}

bool wxDigitalRowsPlot::expandBus(size_t row)
{
    const bool changed = mRows.expandBus(row);
    if (changed)
        rowsChanged();
    return changed;
}

bool wxDigitalRowsPlot::collapseBus(size_t row)
{
    const bool changed = mRows.collapseBus(row);
    if (changed)
        rowsChanged();
    return changed;
}

bool wxDigitalRowsPlot::toggleRow(size_t row)
{
    const bool changed = mRows.toggle(row);
    if (changed)
        rowsChanged();
    return changed;
}

bool wxDigitalRowsPlot::expandRow(size_t row, bool expand)
{
    if (row >= mRows.size())
        return false;
    const digitalPlotPageRows::cRow& target = mRows.row(row);
    bool changed = false;
    if (target.kind == digitalPlotPageRows::row_group)
        changed = target.expanded != expand && mRows.expandGroup(row, expand);
    else if (target.kind == digitalPlotPageRows::row_curve && target.width > 1)
        changed = expand ? mRows.expandBus(row) : mRows.collapseBus(row);
    if (changed)
        rowsChanged();
    return changed;
}

int wxDigitalRowsPlot::findExpandableRow(const std::string& name) const
{
    for (size_t i = 0; i < mRows.size(); ++i) {
        const digitalPlotPageRows::cRow& row = mRows.row(i);
        const bool expandable = row.kind == digitalPlotPageRows::row_group ||
                                (row.kind == digitalPlotPageRows::row_curve && row.width > 1);
        if (expandable && row.name == name)
            return static_cast<int>(i);
    }
    return -1;
}

bool wxDigitalRowsPlot::removeRow(size_t row)
{
    const bool changed = mRows.removeRow(row);
    if (changed)
        rowsChanged();
    return changed;
}

void wxDigitalRowsPlot::setRowHeights(const cRowHeights& heights)
{
    mRows.setHeights(heights);
    rowsChanged();
}

bool wxDigitalRowsPlot::scrollRows(double pixels)
{
    const bool moved = mRows.scrollBy(pixels);
    if (moved)
        plotWidgetRedrawAll();
    return moved;
}

void wxDigitalRowsPlot::rowsChanged()
{
    singlePlotWidgetImpl::cPlotLook look = getLook();
    const int width = computeNamesWidth();
    // Only ever wider here: the page aligns its plots to the widest names column.
    if (width > look.leftMargin) {
        look.leftMargin = width;
        setLook(look);
    }
    plotWidgetRedrawAll();
}

std::string wxDigitalRowsPlot::rowText(const cRow& row) const
{
    const bool opens = row.kind == row_group || (row.kind == row_curve && row.width > 1);
    if (opens)
        return std::string(row.expanded ? "- " : "+ ") + row.name;
    return row.kind == row_bit ? "  " + row.name : row.name;
}

int wxDigitalRowsPlot::computeNamesWidth() const
{
    qtVxBitmap probe(1, 1);
    qtVxBufferedDrawContextInverted context(probe);
    double widest = 0.0;
    for (const cRow& row : mRows.rows())
        widest = std::max(widest, context.getTextWidth(rowText(row)));
    return std::clamp(static_cast<int>(std::ceil(widest)) + 16, digitalRowsPlot::min_names_width,
                      digitalRowsPlot::max_names_width);
}

// --- drawing ------------------------------------------------------------------------------------

void wxDigitalRowsPlot::drawGrid(qtVxBufferedDrawContextInverted& context, double, double, double, double)
{
    syncRowsWithCurves();
    const double width = buffer().bitmap().getWidth(), height = buffer().bitmap().getHeight();
    const singlePlotWidgetImpl::cPlotLook& look = getLook();
    xAxis().computeAxesTicks(context, width);
    const qtVxAxisDrawing::cAxisFrame frame{0.0, 0.0, width - 1.0, height - 1.0};
    using vxDrawContext::cVxPen;
    qtVxAxisDrawing::drawGridFine(xAxis(), true, context, frame, cVxPen{look.fineGridColour, 1, vxDrawContext::solid_pen});
    qtVxAxisDrawing::drawGridCoarse(xAxis(), true, context, frame,
                                    cVxPen{look.coarseGridColour, 1, vxDrawContext::solid_pen});
    // Bands of headings, and a line under each row.
    mRows.setViewHeight(height);
    const double offset = mRows.getScrollOffset();
    context.setPen(cVxPen{digitalRowsPlot::row_line_colour, 1, vxDrawContext::solid_pen});
    for (const cRow& row : mRows.rows()) {
        if (row.height <= 0.0)
            continue;
        const double top = height - (row.position - offset), bottom = top - row.height;
        if (top < 0.0 || bottom > height)
            continue;
        if (row.kind == row_group || row.kind == row_separator)
            context.fillRectangle(0.0, bottom, width - 1.0, top,
                                  row.kind == row_group ? digitalRowsPlot::group_band_colour
                                                        : digitalRowsPlot::separator_band_colour);
        const double line = bottom - 0.5 * mRows.getHeights().gap;
        context.drawLine(0.0, line, width - 1.0, line);
    }
}

void wxDigitalRowsPlot::drawCurves(qtVxBufferedDrawContextInverted& context, size_t first)
{
    syncRowsWithCurves();
    const double height = buffer().bitmap().getHeight();
    mRows.setViewHeight(height);
    const double offset = mRows.getScrollOffset();
    for (const cRow& row : mRows.rows()) {
        if (row.height <= 0.0 || (row.kind != row_curve && row.kind != row_bit) || row.curve < first)
            continue;
        const double top = height - (row.position - offset), bottom = top - row.height;
        if (top < 0.0 || bottom > height)
            continue;
        drawRow(context, row, bottom, top);
    }
}

void wxDigitalRowsPlot::drawRow(qtVxBufferedDrawContextInverted& context, const cRow& row, double bandLow,
                                double bandHigh)
{
    if (row.curve >= getCurves().size())
        return;
    const wxSinglePlotWidgetData& data = getCurves()[row.curve];
    const wxCurveDescription& curve = data.description();
    double min = 0.0, max = 1.0;
    if (row.width == 0 && std::isfinite(data.getRealMinY()) && std::isfinite(data.getRealMaxY()))
        min = data.getRealMinY(), max = data.getRealMaxY();
    double low = 0.0, high = 1.0;
    computeRowAxisRange(min, max, low, high);
    wxSinglePlotWidgetYAxis axis;
    if (!axis.setView(low, high, bandLow, bandHigh))
        return;
    axis.computeMinMaxUpdate(bandLow, bandHigh);
    if (row.kind == row_curve) {
        drawCurveDescription(context, curve, xAxis(), axis, mRowColBuffer);
        return;
    }
    // One bit of a bus: its state byte in each record of the bus, drawn as a bit.
    const cCurvePlotVariable* variable = curve.curvePlotVariableOrIdentical();
    const cCurvePlotDataSection* section = curve.getSection();
    postProcess::cSparseLogic view;
    if (!variable || !section || !postProcess::makeSparseLogic(*variable, *section, view) || row.field >= view.width)
        return;
    const auto pens = plotDrawerDigital::cDigitalPens::fromMainPen(curve.style().getRealPen());
    drawLogicValue(context, xAxis(), axis, view.positions, view.timeScale, view.states + row.field, view.width,
                   view.count, derivedCurveFunction::monotony_rising, pens);
}

void wxDigitalRowsPlot::drawLeftAxis(qtVxBufferedDrawContextInverted& context, const qtVxAxisDrawing::cAxisFrame& frame)
{
    const singlePlotWidgetImpl::cPlotLook& look = getLook();
    context.setPen(vxDrawContext::cVxPen{look.axisColour, 1, vxDrawContext::solid_pen});
    context.drawLine(frame.left, frame.bottom, frame.left, frame.top);
    const double offset = mRows.getScrollOffset();
    const double room = frame.left - 10.0;
    for (const cRow& row : mRows.rows()) {
        if (row.height <= 0.0)
            continue;
        const double centre = frame.top - (row.position - offset + 0.5 * row.height);
        if (centre < frame.bottom || centre > frame.top)
            continue;
        std::string text = rowText(row);
        // A name too long keeps its end, where hierarchical names say which signal it is.
        while (text.size() > 4 && context.getTextWidth(text) > room)
            text = "..." + text.substr(4);
        context.drawText(text, frame.left - 6.0, centre, qtVxBufferedDrawContext::anchor_centre_right);
    }
}

// --- input --------------------------------------------------------------------------------------

void wxDigitalRowsPlot::onMouseDown(double x, double y, int button, int modifiers)
{
    const singlePlotWidgetImpl::cPlotLook& look = getLook();
    if (x < look.leftMargin && y >= look.topMargin && y < height() - look.bottomMargin) {
        const int row = mRows.findRowAt(y - look.topMargin);
        if (row >= 0 && toggleRow(static_cast<size_t>(row))) {
            // Recorded by name, as a script would open or close it.
            const digitalPlotPageRows::cRow& toggled = mRows.row(static_cast<size_t>(row));
            recordUserCommand(std::string(toggled.expanded ? "expand_group_in_plot" : "collapse_group_in_plot") +
                              " \"" + getPlotName() + "\" \"" + toggled.name + "\"");
        }
        return;
    }
    wxSinglePlotWidgetImpl::onMouseDown(x, y, button, modifiers);
}

void wxDigitalRowsPlot::onWheel(double x, double y, double steps, int modifiers)
{
    if (x < getLook().leftMargin) {
        scrollRows(-steps * (mRows.getHeights().digital + mRows.getHeights().gap));
        return;
    }
    wxSinglePlotWidgetImpl::onWheel(x, y, steps, modifiers);
}

}  // namespace vx3
