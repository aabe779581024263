// How the single plot answers the mouse, the wheel, the keys, the context menu, drops and the
// clipboard. Every decision starts from the class of the mouse position; every action that has a
// command form is written to the command log as that command.
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeySequence>
#include <QMenu>
#include <QMimeData>
#include <QPainter>

#include <charconv>
#include <cmath>

#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"
#include "plot/colourList.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "plot/wxListOfCurveDescriptions.h"
#include "plot/wxPlotMousePosition.h"

namespace vx3 {

using namespace singlePlotWidgetImpl;

namespace {
// The drag-and-drop and clipboard format of curve lists, as other programs read it.
const char* const curve_list_mime_type = "harlanTessel/zelWaveXml";

// Shortest text that reads back as the same double, so that a replayed command gives the same view.
std::string exactNumber(double value)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof(buffer), value);
    return std::string(buffer, result.ptr);
}

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

// How close, in pixels, a press must come to a ruler's line to take hold of it.
constexpr double ruler_grip_pixels = 4.0;
}  // namespace

// --- recording ------------------------------------------------------------------------------------

void wxSinglePlotWidgetImpl::recordUserCommand(const std::string& text)
{
    if (wxAnalogPlotVirtual* page = getPage())
        page->analogPlotVirtualRecordUserCommand(this, text);
}

std::string wxSinglePlotWidgetImpl::makeZoomCommandText() const
{
    const wxSinglePlotWidgetAxis& x = xAxis();
    const wxSinglePlotWidgetAxis& y0 = yAxis(0);
    const wxSinglePlotWidgetAxis& y1 = yAxis(1);
    return "zoom " + quoted(mPlotName) + " " + exactNumber(x.getMin()) + " " + exactNumber(x.getMax()) + " " +
           exactNumber(y0.getMin()) + " " + exactNumber(y0.getMax()) + " " + exactNumber(y1.getMin()) + " " +
           exactNumber(y1.getMax());
}

void wxSinglePlotWidgetImpl::recordRulerCommand(int ruler)
{
    const wxSinglePlotWidgetRuler& moved =
        ruler == singlePlotWidgetRuler::marker_ruler ? mOverlay.marker() : mOverlay.cursor();
    recordUserCommand("set_cursor " + quotedName() + " " + exactNumber(moved.getX()) + " " + moved.getName());
}

bool wxSinglePlotWidgetImpl::setRulerImpl(int ruler, double x)
{
    if (!mOverlay.setRulerFromConnection(ruler, x))
        return false;
    plotWidgetRedrawFrame();
    return true;
}

void wxSinglePlotWidgetImpl::clearRulerImpl(int ruler)
{
    mOverlay.clearRulerFromConnection(ruler);
    plotWidgetRedrawFrame();
}

bool wxSinglePlotWidgetImpl::addAnnotationAtMouse(const std::string& canvasText)
{
    size_t index = 0;
    bool imaginary = false;
    double x = 0.0, y = 0.0;
    if (mOverlay.annotatePointAt(mMouseX, mMouseY, index, imaginary, x, y)) {
        const wxCurveDescription& description = getCurves()[index].description();
        recordUserCommand("add_curve_annotation_to_plot_by_id_and_index " + quotedName() + " " +
                          std::to_string(description.getSection()->getSectionId()) + " " +
                          std::to_string(description.getCurveIndex()) + (imaginary ? " Point_imag" : " Point") +
                          " \"<Y Value>\" " + exactNumber(x) + " " + exactNumber(y));
        plotWidgetRedrawFrame();
        return true;
    }
    if (canvasText.empty() || mMousePosition != canvas)
        return false;
    if (!mOverlay.addTextAnnotation(canvasText, xAxis().toDouble(mMouseX), yAxis(0).toDouble(mMouseY)))
        return false;
    // The command places its text at the view's top left: the nearest a replay can come.
    recordUserCommand("add_text_annotation_to_plot " + quotedName() + " " + quoted(canvasText));
    plotWidgetRedrawFrame();
    return true;
}

// --- positions ------------------------------------------------------------------------------------

void wxSinglePlotWidgetImpl::classifyMousePosition(double x, double y)
{
    const plotMousePosition::cPlotPoint point = plotMousePosition::fromWidget(x, y, height());
    mMouseX = point.x;
    mMouseY = point.y;
    // The legend, rulers and buttons lie over the canvas and will be asked here before it.
    mMousePosition = plotMousePosition::classify(getCanvasLayout(), width(), height(), checkY1Active(), point);
    setMousePosition(mMousePosition, mMouseX, mMouseY);
}

bool wxSinglePlotWidgetImpl::plotCheckUserIsBusy() const { return mLeftDown || mAutoScroll.checkIsEnabled(); }

// --- buttons --------------------------------------------------------------------------------------

void wxSinglePlotWidgetImpl::onMouseDown(double x, double y, int button, int modifiers)
{
    classifyMousePosition(x, y);
    if (mAutoScroll.checkIsEnabled()) {
        // Any press ends a running auto scroll, and does nothing else.
        enableMouseAutoScroll(false, mMouseX, mMouseY);
        return;
    }
    if (button == button_middle) {
        if (mMousePosition == canvas)
            enableMouseAutoScroll(true, mMouseX, mMouseY);
        return;
    }
    if (button != button_left)
        return;
    // A pending box completes first, and the press does nothing else.
    if (mZoomBox.checkIsShown() && mZoomBox.getStyle() >= zoom_in_box) {
        zoomToBoxImpl();
        return;
    }
    if (mZoomBox.checkWaitsForFirstClick()) {
        if (mMousePosition == canvas)
            mZoomBox.start(zoom_in_box, mMouseX, mMouseY);
        refresh();
        return;
    }
    if (mMousePosition != canvas)
        return;  // the axes do nothing on a press of their own
    // In the ruler mode a click sets the marker, then the cursor.
    const int rulerState = mOverlay.getRulerState();
    if (rulerState == singlePlotOverlay::waiting_for_marker || rulerState == singlePlotOverlay::waiting_for_cursor) {
        if (mOverlay.leftClick(mMouseX, mMouseY)) {
            // A ruler set by hand is the ruler at that X, as a command file sets it.
            recordRulerCommand(rulerState == singlePlotOverlay::waiting_for_marker ? singlePlotWidgetRuler::marker_ruler
                                                                                    : singlePlotWidgetRuler::cursor_ruler);
            plotWidgetRedrawFrame();
        }
        return;
    }
    // A press on the line of a ruler that is set takes hold of it; the release puts it down.
    if (!(modifiers & Qt::ShiftModifier))
        if (const int ruler = mOverlay.rulerHitTest(mMouseX, ruler_grip_pixels);
            ruler >= 0 && mOverlay.startMovingRuler(ruler)) {
            mLeftDown = true;
            setCursor(Qt::SizeHorCursor);
            return;
        }
    if (handleLeftDownOnCurve(modifiers & Qt::ShiftModifier, modifiers & Qt::ControlModifier))
        return;
    mLeftDown = true;
    mZoomBox.start((modifiers & Qt::ControlModifier) ? drag_box_ctrl : drag_box, mMouseX, mMouseY);
}

bool wxSinglePlotWidgetImpl::handleLeftDownOnCurve(bool shift, bool ctrl)
{
    size_t index = 0;
    bool imaginary = false;
    if (shift || !mOverlay.getClosestCurveIndex(mMouseX, mMouseY, index, imaginary))
        return false;
    const wxSinglePlotWidgetData& curve = getCurves()[index];
    if (imaginary ? curve.imagHighlighted : curve.realHighlighted) {
        mDragArmed = true;
        mPressX = mMouseX;
        mPressY = mMouseY;
        return true;
    }
    setCurveHighlighted(index, imaginary, true, !ctrl);
    const wxCurveDescription& description = curve.description();
    if (description.getSection())
        recordUserCommand("highlight_curve_in_plot_by_id_and_index " + quotedName() + " " +
                          std::to_string(description.getSection()->getSectionId()) + " " +
                          std::to_string(description.getCurveIndex()) + (ctrl ? " 0 " : " 1 ") +
                          (imaginary ? "1" : "0"));
    if (wxAnalogPlotVirtual* page = getPage())
        page->analogPlotVirtualCurveHighlighted(this, description);
    return true;
}

void wxSinglePlotWidgetImpl::startDragOperation()
{
    mDragArmed = false;
    QMimeData* data = createMimeDataOfSelectedCurves();
    if (!data)
        return;
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    drag->exec(Qt::CopyAction);
}

bool wxSinglePlotWidgetImpl::activateRulersAtMouse()
{
    double x = mMouseX, y = mMouseY;
    if (mMousePosition != canvas) {
        const plotWidgetCommon::cCanvasLayout& layout = getCanvasLayout();
        x = 0.5 * (layout.xLow + layout.xHigh);
        y = 0.5 * (layout.yLow + layout.yHigh);
    }
    enableMouseAutoScroll(false, mMouseX, mMouseY);
    mZoomBox.hide();
    if (!mOverlay.activateRulers(x, y))
        return false;
    plotWidgetRedrawFrame();
    return true;
}

void wxSinglePlotWidgetImpl::onMouseUp(double x, double y, int button, int modifiers)
{
    if (button == button_left)
        mDragArmed = false;
    if (button != button_left || !mLeftDown)
        return;
    mLeftDown = false;
    classifyMousePosition(x, y);
    if (mOverlay.checkIsMovingRuler()) {
        mOverlay.moveRuler(mMouseX, mMouseY);
        unsetCursor();
        if (const int ruler = mOverlay.endMovingRuler(); ruler >= 0)
            recordRulerCommand(ruler);
        plotWidgetRedrawFrame();
        return;
    }
    const int style = mZoomBox.getStyle();
    if (style == drag_box || style == drag_box_ctrl) {
        const plotWidgetCommon::cCanvasLayout& layout = getCanvasLayout();
        mZoomBox.moveTo(std::clamp(mMouseX, layout.xLow, layout.xHigh), std::clamp(mMouseY, layout.yLow, layout.yHigh));
        if (!zoomToBoxImpl()) {
            mZoomBox.hide();
            refresh();
        }
    }
}

void wxSinglePlotWidgetImpl::onMouseMove(double x, double y, int buttons, int modifiers)
{
    classifyMousePosition(x, y);
    if (mZoomBox.checkIsShown()) {
        // The moving corner stays on the canvas.
        const plotWidgetCommon::cCanvasLayout& layout = getCanvasLayout();
        mZoomBox.moveTo(std::clamp(mMouseX, layout.xLow, layout.xHigh), std::clamp(mMouseY, layout.yLow, layout.yHigh));
        refresh();
    }
    if (mDragArmed && (buttons & Qt::LeftButton) &&
        std::hypot(mMouseX - mPressX, mMouseY - mPressY) >= QApplication::startDragDistance()) {
        startDragOperation();
        return;
    }
    if (mOverlay.checkIsMovingRuler()) {
        if (mOverlay.moveRuler(mMouseX, mMouseY))
            plotWidgetRedrawFrame();
    } else if (mOverlay.mouseMoved(mMouseX, mMouseY)) {
        plotWidgetRedrawFrame();
    }
    if (wxAnalogPlotVirtual* page = getPage(); page && mMousePosition == canvas) {
        page->analogPlotVirtualSetCursorPosition(this, xAxis().toDouble(mMouseX));
        page->analogPlotVirtualSetCursorPositionText(this, makeCursorPositionText(mMouseX, mMouseY));
    }
}

// --- zoom box -------------------------------------------------------------------------------------

void wxSinglePlotWidgetImpl::setZoomBoxStyle(int style)
{
    enableMouseAutoScroll(false, mMouseX, mMouseY);
    if (style == click_box)
        mZoomBox.armClickBox();
    else if (style >= zoom_in_box && style <= zoom_out_y2_box)
        mZoomBox.start(style, mMouseX, mMouseY);
    else
        mZoomBox.hide();
    refresh();
}

void wxSinglePlotWidgetImpl::incrementZoomBoxStyle()
{
    const int style = mZoomBox.getStyle();
    if (!mZoomBox.checkIsShown() || style < zoom_in_box || style > zoom_out_y2_box)
        return;
    const plotWidgetCommon::cCanvasLayout& layout = getCanvasLayout();
    mZoomBox.setStyle(wxPlotZoomBox::nextStyle(style, checkY1Active(), mZoomBox.y1() < layout.yLow,
                                               mZoomBox.x1() < layout.xLow, mZoomBox.x1() >= layout.xHigh));
    refresh();
}

bool wxSinglePlotWidgetImpl::zoomToBoxImpl()
{
    wxSinglePlotViewPort view;
    const bool sized = mZoomBox.computeTargetView(*this, view);
    mZoomBox.hide();
    refresh();
    if (!sized)
        return false;
    if (!fitPrintMessage(view[0], view[1], view[2], view[3], view[4], view[5], true, true))
        return false;
    zoomUserActionPerformed();
    recordUserCommand(makeZoomCommandText());
    return true;
}

void wxSinglePlotWidgetImpl::drawZoomBoxImpl(QPainter& painter)
{
    if (!mZoomBox.checkIsShown())
        return;
    const plotWidgetCommon::cCanvasLayout& layout = getCanvasLayout();
    const int style = mZoomBox.getStyle();
    // Axes a form leaves alone span the whole canvas.
    double left = std::min(mZoomBox.x0(), mZoomBox.x1()), right = std::max(mZoomBox.x0(), mZoomBox.x1());
    double bottom = std::min(mZoomBox.y0(), mZoomBox.y1()), top = std::max(mZoomBox.y0(), mZoomBox.y1());
    if (!wxPlotZoomBox::checkActsOnX(style))
        left = layout.xLow, right = layout.xHigh;
    if (!wxPlotZoomBox::checkActsOnY0(style) && !(wxPlotZoomBox::checkActsOnY1(style) && checkY1Active()))
        bottom = layout.yLow, top = layout.yHigh;
    const double h = height();
    const QRectF box(QPointF(left, h - top), QPointF(right, h - bottom));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(box, QColor(40, 90, 200, 36));
    QPen pen(QColor(30, 70, 170));
    pen.setWidth(1);
    pen.setStyle(wxPlotZoomBox::checkIsZoomOut(style) ? Qt::DashLine : Qt::SolidLine);
    painter.setPen(pen);
    painter.drawRect(box);
    const QString text = QString::fromUtf8(wxPlotZoomBox::label(style));
    if (!text.isEmpty()) {
        const QFontMetricsF metrics(painter.font());
        // Above the box where there is room, else just inside its top edge.
        const bool roomAbove = box.top() - 4.0 - metrics.height() >= 0.0;
        const QPointF at(box.left() + 4.0,
                         roomAbove ? box.top() - 4.0 - metrics.descent() : box.top() + 3.0 + metrics.ascent());
        painter.drawText(at, text);
    }
    painter.restore();
}

// --- wheel ----------------------------------------------------------------------------------------

void wxSinglePlotWidgetImpl::onWheel(double x, double y, double steps, int modifiers)
{
    classifyMousePosition(x, y);
    handleMouseWheel(steps);
}

void wxSinglePlotWidgetImpl::handleMouseWheel(double steps)
{
    if (steps == 0.0)
        return;
    const int operation = plotMousePosition::wheelOperation(mMousePosition, steps > 0.0);
    if (operation == plotWidgetCommon::no_operation)
        return;
    // Fine wheels send parts of a notch; each event counts at least one step.
    const int count = std::max(1, static_cast<int>(std::lround(std::fabs(steps))));
    const bool scroll = operation == plotWidgetCommon::scroll_x || operation == plotWidgetCommon::scroll_y0 ||
                        operation == plotWidgetCommon::scroll_y1;
    setScheduledOperation(operation, scroll && steps < 0.0 ? -count : count);
}

void wxSinglePlotWidgetImpl::applyScheduledOperationAndRecord()
{
    const wxSinglePlotViewPort before = getCurrentView();
    timerEventForScheduledOperation();
    if (getCurrentView() != before)
        recordUserCommand(makeZoomCommandText());
}

// --- auto scroll ----------------------------------------------------------------------------------

void wxSinglePlotWidgetImpl::enableMouseAutoScroll(bool enable, double x, double y)
{
    if (!enable) {
        if (!mAutoScroll.checkIsEnabled())
            return;
        mAutoScroll.disable();
        stopEventTimer(timer_auto_scroll);
        unsetCursor();
        // The whole run is one action in the log: the view where it ended.
        recordUserCommand(makeZoomCommandText());
        return;
    }
    mZoomBox.hide();
    mAutoScroll.enable(x, y);
    setCursor(Qt::SizeAllCursor);
    startEventTimer(timer_auto_scroll, wxPlotAutoScroll::tick_ms, false);
    refresh();
}

void wxSinglePlotWidgetImpl::mouseAutoScroll()
{
    if (!mAutoScroll.checkIsEnabled())
        return;
    const wxPlotAutoScroll::cStep step = mAutoScroll.computeStep(mMouseX, mMouseY);
    // The mouse right of the anchor moves the view to the right, above it upwards.
    if (step.dx != 0.0)
        scrollXPixels(-step.dx, step.recordViewPort);
    if (step.dy != 0.0) {
        scrollYPixels(0, -step.dy, step.recordViewPort);
        if (checkY1Active())
            scrollYPixels(1, -step.dy, false);
    }
}

// --- keys -----------------------------------------------------------------------------------------

void wxSinglePlotWidgetImpl::escapePressedAction()
{
    enableMouseAutoScroll(false, mMouseX, mMouseY);
    mZoomBox.hide();
    mLeftDown = false;
    mDragArmed = false;
    if (mOverlay.checkIsMovingRuler()) {
        // A ruler being dragged stays where it is now.
        unsetCursor();
        if (const int ruler = mOverlay.endMovingRuler(); ruler >= 0)
            recordRulerCommand(ruler);
    }
    mOverlay.escapePressedAction();
    plotWidgetRedrawFrame();
}

bool wxSinglePlotWidgetImpl::onKeyDown(int key, int modifiers, const QString& text)
{
    const QKeySequence pressed{QKeyCombination(Qt::KeyboardModifiers(modifiers), Qt::Key(key))};
    auto is = [&](QKeySequence::StandardKey standard) {
        return QKeySequence::keyBindings(standard).contains(pressed);
    };
    if (key == Qt::Key_Escape) {
        escapePressedAction();
        return true;
    }
    if ((key == Qt::Key_Left || key == Qt::Key_Right) && !(modifiers & Qt::ControlModifier)) {
        // The cursor moves sample by sample; with Shift the marker does.
        const int ruler = (modifiers & Qt::ShiftModifier) ? singlePlotWidgetRuler::marker_ruler
                                                          : singlePlotWidgetRuler::cursor_ruler;
        if (!mOverlay.moveRulerByKey(ruler, key == Qt::Key_Right ? 1 : -1))
            return false;
        recordRulerCommand(ruler);
        plotWidgetRedrawFrame();
        return true;
    }
    if (key == Qt::Key_Space && mZoomBox.checkIsShown()) {
        incrementZoomBoxStyle();
        return true;
    }
    if (is(QKeySequence::Undo)) {
        if (performUndoAction())
            recordUserCommand("undo");
        return true;
    }
    if (is(QKeySequence::Redo)) {
        if (performRedoAction())
            recordUserCommand("redo");
        return true;
    }
    if (is(QKeySequence::Copy)) {
        copySelectedCurvesToClipboard();
        return true;
    }
    if (is(QKeySequence::Paste)) {
        copySelectedCurvesFromClipboard();
        return true;
    }
    if (is(QKeySequence::ZoomIn) || is(QKeySequence::ZoomOut)) {
        setMousePosition(outside, 0.0, 0.0);  // about the centre of the canvas
        const bool done = is(QKeySequence::ZoomIn) ? zoomIn(1) : zoomOut(1);
        if (done)
            recordUserCommand(makeZoomCommandText());
        return true;
    }
    return false;
}

// --- drops and the clipboard ----------------------------------------------------------------------

void wxSinglePlotWidgetImpl::dragEnterEvent(QDragEnterEvent* event)
{
    const QMimeData* data = event->mimeData();
    if (mDropStore && data && (data->hasFormat(curve_list_mime_type) || data->hasText()))
        event->acceptProposedAction();
}

void wxSinglePlotWidgetImpl::dragMoveEvent(QDragMoveEvent* event)
{
    classifyMousePosition(event->position().x(), event->position().y());
    event->acceptProposedAction();
}

void wxSinglePlotWidgetImpl::dropEvent(QDropEvent* event)
{
    if (event->mimeData() && handleDropToTargetImpl(*event->mimeData(), false))
        event->acceptProposedAction();
}

void wxSinglePlotWidgetImpl::printDnDErrorMessage(bool fromClipboard, bool partly, const std::string& reason)
{
    std::string text;
    if (partly)
        text = "Some curves were not accepted in \"" + mPlotName + "\"";
    else if (mPlotName.empty())
        text = fromClipboard ? "Copy-and-paste operation failed " : "Drag-and-drop operation failed ";
    else
        text = (fromClipboard ? "Copy-and-paste operation to \"" : "Drag-and-drop operation to \"") + mPlotName +
               "\" failed ";
    text += reason;
    getLogger().errorMsg(text);
    if (wxAnalogPlotVirtual* page = getPage())
        page->analogPlotVirtualStatusBarMessage(vxLogger::error, text);
}

bool wxSinglePlotWidgetImpl::handleDropToTargetImpl(const QMimeData& data, bool fromClipboard)
{
    const QByteArray bytes = data.hasFormat(curve_list_mime_type) ? data.data(curve_list_mime_type)
                                                                   : data.text().toUtf8();
    if (!mDropStore || bytes.isEmpty()) {
        printDnDErrorMessage(fromClipboard, false, "(nothing to add)");
        return false;
    }
    wxListOfCurveDescriptions list;
    std::string instance;
    if (!list.readDndCurveListString(bytes.toStdString(), *mDropStore, instance, getLogger())) {
        printDnDErrorMessage(fromClipboard, false, "(not a curve list)");
        return false;
    }
    // What can't be drawn at all leaves before anything is added; the rest goes in as one step.
    std::vector<wxCurveDescription> descriptions;
    size_t requested = 0;
    for (const listOfCurveDescriptions::cSectionEntry& entry : list.entries()) {
        std::vector<uint64_t> indices(entry.curveIndices.begin(), entry.curveIndices.end());
        if (entry.allCurves)
            for (uint64_t i = 0; i < entry.section->getNbOfVariables(); ++i)
                indices.push_back(i);
        for (uint64_t index : indices) {
            ++requested;
            wxCurveDescription description;
            try {
                description.init(entry.section, index);
            } catch (const cLoggedException&) {
                continue;
            }
            if (!checkCurveCanBePlotted(description))
                continue;
            description.style().realColour = description.style().imagColour =
                colourList::get_colour_from_list(getNbOfCurves() + descriptions.size(), 255, 0).rgb();
            description.style().setAutomatic(true);
            descriptions.push_back(description);
        }
    }
    const size_t before = getNbOfCurves();
    const bool added = !descriptions.empty() && addToPlot(descriptions);
    const size_t count = getNbOfCurves() - before;
    if (!added || count == 0) {
        printDnDErrorMessage(fromClipboard, false, getDiagnosis());
        return false;
    }
    if (count < requested)
        printDnDErrorMessage(fromClipboard, true, getDiagnosis());
    for (size_t i = before; i < getNbOfCurves(); ++i) {
        const wxCurveDescription& description = getCurves()[i].description();
        recordUserCommand("add_curve_to_plot_by_id_and_index " + quoted(mPlotName) + " " +
                          std::to_string(description.getSection()->getSectionId()) + " " +
                          std::to_string(description.getCurveIndex()) + " 0");
    }
    return true;
}

QMimeData* wxSinglePlotWidgetImpl::createMimeDataOfSelectedCurves() const
{
    // The highlighted curves, or every curve when none is highlighted.
    bool anyHighlighted = false;
    for (const wxSinglePlotWidgetData& curve : getCurves())
        anyHighlighted = anyHighlighted || curve.realHighlighted || curve.imagHighlighted;
    wxListOfCurveDescriptions list;
    for (const wxSinglePlotWidgetData& curve : getCurves()) {
        if (anyHighlighted && !curve.realHighlighted && !curve.imagHighlighted)
            continue;
        const wxCurveDescription& description = curve.description();
        if (description.getSection())
            list.addCurve(description.getSection(), description.getCurveIndex(), getLogger());
    }
    std::string text;
    if (list.empty() || !list.createDndCurveListString(listOfCurveDescriptions::curve_list_xml, text, "", getLogger()))
        return nullptr;
    auto* data = new QMimeData;
    data->setData(curve_list_mime_type, QByteArray::fromStdString(text));
    data->setText(QString::fromStdString(text));
    return data;
}

void wxSinglePlotWidgetImpl::copySelectedCurvesToClipboard()
{
    if (QMimeData* data = createMimeDataOfSelectedCurves())
        QApplication::clipboard()->setMimeData(data);
}

bool wxSinglePlotWidgetImpl::copySelectedCurvesFromClipboard()
{
    const QMimeData* data = QApplication::clipboard()->mimeData();
    if (!data) {
        printDnDErrorMessage(true, false, "(the clipboard is empty)");
        return false;
    }
    return handleDropToTargetImpl(*data, true);
}

}  // namespace vx3
