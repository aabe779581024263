#include "plot/qt/wxSinglePlotWidgetImpl.h"

#include <QFontDatabase>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "model/dataUnit.h"
#include "model/derivedCurveFunction.h"
#include "plot/qt/qtVxAxisDrawing.h"
#include "plot/qt/wxPlotOverlayDrawing.h"
#include "plot/wxPlotCurveDrawing.h"

namespace vx3 {

using namespace plotBuffer;
using namespace singlePlotWidgetImpl;

wxSinglePlotWidgetImpl::wxSinglePlotWidgetImpl(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger,
                                               wxAnalogPlotVirtual* page, int windowType)
    : qtVxWidget(parent), cPlotWidgetCommon(logger, page, windowType), mDataMutex(dataMutex), mOverlay(*this, logger)
{
    mOverlay.setPage(page);
    mBuffer.setBackgroundColour(mLook.background);
    // Bus values line up best in a fixed-pitch font, at the size of the plot's other texts.
    mDigitalFont = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    mDigitalFont.setPointSizeF(font().pointSizeF() > 0.0 ? font().pointSizeF() : 9.0);
}

wxSinglePlotWidgetImpl::~wxSinglePlotWidgetImpl() = default;

void wxSinglePlotWidgetImpl::setLook(const cPlotLook& look)
{
    mLook = look;
    mBuffer.setBackgroundColour(look.background);
    mBuffer.setFullRedrawRequired();
    refresh();
}

void wxSinglePlotWidgetImpl::setAxisTitles(const std::string& x, const std::string& y0)
{
    mXTitle = x;
    mY0Title = y0;
    mBuffer.setCompleteBufferAxesRedrawRequired();
    refresh();
}

// --- hooks of the plot's arithmetic ---------------------------------------------------------------

void wxSinglePlotWidgetImpl::plotRequestFullRedraw()
{
    mOverlay.curvesChanged();
    mBuffer.setFullRedrawRequired();
    refresh();
}

void wxSinglePlotWidgetImpl::plotRequestAddedCurve()
{
    mOverlay.curvesChanged();
    mBuffer.setAddedCurve();
    refresh();
}

void wxSinglePlotWidgetImpl::plotRequestScroll(double dxPixels, double dyPixels)
{
    if (dxPixels != 0.0)
        mBuffer.scrollX(static_cast<int>(dxPixels));
    if (dyPixels != 0.0)
        mBuffer.scrollY(static_cast<int>(dyPixels));
    refresh();
}

void wxSinglePlotWidgetImpl::plotStartTimer(int id, int milliseconds)
{
    startEventTimer(id, milliseconds, true);
}

void wxSinglePlotWidgetImpl::onEventTimer(int id)
{
    switch (id) {
    case plotWidgetCommon::timer_scheduled_operation: applyScheduledOperationAndRecord(); break;
    case timer_auto_scroll: mouseAutoScroll(); break;
    case plotWidgetCommon::timer_sliding_window_pause: slidingWindowPauseEnded(); break;
    case timer_paint_retry: refresh(); break;
    default: break;
    }
}

// --- painting -------------------------------------------------------------------------------------

void wxSinglePlotWidgetImpl::onPaint(QPainter& painter)
{
    paint(width(), height(), devicePixelRatioF());
    painter.drawImage(QPointF(0.0, 0.0), mPicture.getImage());
    drawZoomBoxImpl(painter);
}

void wxSinglePlotWidgetImpl::updateLayout(int width, int height)
{
    plotWidgetCommon::cCanvasLayout layout;
    layout.xLow = getLeftMargin();
    layout.xHigh = std::max<double>(width - getRightMargin(), layout.xLow + 1.0);
    layout.yLow = mLook.bottomMargin;
    layout.yHigh = std::max<double>(height - mLook.topMargin, layout.yLow + 1.0);
    setCanvasLayout(layout);
}

bool wxSinglePlotWidgetImpl::paint(int width, int height, double ratio)
{
    ++mPaints;
    mPaintWidth = width;
    mPicture.resize(std::max(width, 1), std::max(height, 1), ratio);
    mPicture.fill(mLook.background);
    const int canvasWidth = width - getLeftMargin() - getRightMargin();
    const int canvasHeight = height - mLook.bottomMargin - mLook.topMargin;
    if (canvasWidth <= 0 || canvasHeight <= 0)
        return true;  // no room for a canvas: nothing but the background
    updateLayout(width, height);
    mBuffer.resizeBuffer(canvasWidth, canvasHeight, ratio);

    if (mBuffer.checkNeedsCurves())
        drawCurvesIntoBuffer();
    const bool complete = mBuffer.getStatus() == status_complete;

    // The curves' bitmap at the canvas, then the axes around it.
    {
        QPainter painter(&mPicture.getImage());
        painter.drawImage(QPointF(getLeftMargin(), mLook.topMargin), mBuffer.bitmap().getImage());
    }
    qtVxBufferedDrawContextInverted context(mPicture);
    const plotWidgetCommon::cCanvasLayout& layout = getCanvasLayout();
    const qtVxAxisDrawing::cAxisFrame frame{layout.xLow, layout.yLow, layout.xHigh, layout.yHigh};
    yAxis(0).setMaxTextWidth(mLook.leftMargin - 24.0);
    xAxis().computeAxesTicks(context, layout.xHigh);
    yAxis(0).computeAxesTicks(context, layout.yHigh);
    context.setPen(vxDrawContext::cVxPen{mLook.axisColour, 1, vxDrawContext::solid_pen});
    if (mLook.xAxisLabels)
        qtVxAxisDrawing::draw(xAxis(), context, frame, computeXTitle());
    else
        context.drawLine(frame.left, frame.bottom, frame.right, frame.bottom);
    drawLeftAxis(context, frame);
    // The top and right edges close the frame; a second axis stands on the right one.
    context.drawLine(frame.left, frame.top, frame.right, frame.top);
    context.drawLine(frame.right, frame.bottom, frame.right, frame.top);
    if (checkY1Active())
        drawRightYAxis(context, frame.right, frame.bottom, frame.top);
    // Legend, rulers and annotations come with the curves they describe.
    if (complete)
        wxPlotOverlayDrawing::layoutAndDraw(mOverlay, *this, context, width, height);

    if (complete) {
        mBuffer.setDrawingComplete();
    } else {
        // A reader held the data: the curves come with a later paint.
        mBuffer.setChangedSomething();
        startEventTimer(timer_paint_retry, paint_retry_ms, true);
    }
    return complete;
}

void wxSinglePlotWidgetImpl::drawCurvesIntoBuffer()
{
    qtVxBitmap& bitmap = mBuffer.bitmap();
    if (mBuffer.getStatus() == status_none) {
        bitmap.fill(mLook.background);
        mBuffer.setStatus(status_bg);
        mBuffer.setCurvesPainted(0);
    }
    double x0, x1, y0, y1;
    mBuffer.adjustForScrolledBuffer(x0, x1, y0, y1);
    qtVxBufferedDrawContextInverted context(bitmap);
    context.setClipRectangle(x0, y0, x1, y1);
    // While curves are drawn the axes map onto the bitmap itself.
    setAxesToBitmapOrigin(true);
    if (mBuffer.getCurvesPainted() == 0 && mBuffer.getStatus() != status_add_curve)
        drawGrid(context, x0, x1, y0, y1);
    else if (mBuffer.checkIsScrolled() && mBuffer.getCurvesPainted() == 0)
        drawGrid(context, x0, x1, y0, y1);
    xAxis().computeMinMaxUpdate(x0, x1);
    yAxis(0).computeMinMaxUpdate(y0, y1);
    yAxis(1).computeMinMaxUpdate(y0, y1);
    {
        cVxScopedTryLock lock(mDataMutex);
        if (lock.checkIsLocked()) {
            drawCurves(context, mBuffer.getCurvesPainted());
            mBuffer.setCurvesPainted(getCurves().size());
            mBuffer.setStatus(status_complete);
        } else if (mBuffer.getStatus() == status_bg) {
            // Cleared and gridded: the next paint adds the curves without clearing again.
            mBuffer.setStatus(status_add_curve);
        }
    }
    setAxesToBitmapOrigin(false);
}

void wxSinglePlotWidgetImpl::drawCurves(qtVxBufferedDrawContextInverted& context, size_t first)
{
    const std::vector<wxSinglePlotWidgetData>& curves = getCurves();
    for (size_t i = first; i < curves.size(); ++i)
        drawCurve(context, curves[i]);
}

void wxSinglePlotWidgetImpl::drawLeftAxis(qtVxBufferedDrawContextInverted& context,
                                          const qtVxAxisDrawing::cAxisFrame& frame)
{
    qtVxAxisDrawing::draw(yAxis(0), context, frame, computeYTitle(0));
}

plotCurveDrawing::cDrawOptions wxSinglePlotWidgetImpl::makeDrawOptions() const
{
    plotCurveDrawing::cDrawOptions options;
    options.gridType = getWindowType();
    options.digitalType = mDigitalType;
    options.digitalFont = &mDigitalFont;
    return options;
}

void wxSinglePlotWidgetImpl::setDigitalRadix(unsigned digitalType)
{
    // The radix forms only; the strength and port forms belong to single bits.
    if (digitalType == mDigitalType || digitalType > derivedCurveFunction::octal_with_base)
        return;
    mDigitalType = digitalType;
    plotRequestFullRedraw();
}

void wxSinglePlotWidgetImpl::setDigitalFont(const QFont& font)
{
    if (font == mDigitalFont)
        return;
    mDigitalFont = font;
    plotRequestFullRedraw();
}

void wxSinglePlotWidgetImpl::drawGrid(qtVxBufferedDrawContextInverted& context, double x0, double x1, double y0,
                                      double y1)
{
    const double width = mBuffer.bitmap().getWidth(), height = mBuffer.bitmap().getHeight();
    xAxis().computeAxesTicks(context, width);
    yAxis(0).setMaxTextWidth(mLook.leftMargin - 24.0);
    yAxis(0).computeAxesTicks(context, height);
    const qtVxAxisDrawing::cAxisFrame frame{0.0, 0.0, width - 1.0, height - 1.0};
    using vxDrawContext::cVxPen;
    const cVxPen fine{mLook.fineGridColour, 1, vxDrawContext::solid_pen};
    const cVxPen coarse{mLook.coarseGridColour, 1, vxDrawContext::solid_pen};
    const cVxPen zero{mLook.zeroLineColour, 1, vxDrawContext::solid_pen};
    const bool secondAxis = checkY1Active() && (y1FineGrid() || y1CoarseGrid() || y1ZeroLine());
    if (secondAxis)
        yAxis(1).computeAxesTicks(context, height);
    // Fine lines first, so that coarser ones lie on top.
    using namespace plotWidgetCommon;
    const struct {
        int flag;
        const wxSinglePlotWidgetAxis* axis;
        bool vertical;
    } lines[] = {{x_fine_grid, &xAxis(), true},     {y0_fine_grid, &yAxis(0), false},
                 {y1_fine_grid, &yAxis(1), false},  {x_coarse_grid, &xAxis(), true},
                 {y0_coarse_grid, &yAxis(0), false}, {y1_coarse_grid, &yAxis(1), false},
                 {x_zero_line, &xAxis(), true},     {y0_zero_line, &yAxis(0), false},
                 {y1_zero_line, &yAxis(1), false}};
    for (const auto& line : lines) {
        if (!checkGridFlag(line.flag) || (line.axis == &yAxis(1) && !secondAxis))
            continue;
        if (line.flag <= y1_zero_line)
            qtVxAxisDrawing::drawGridZero(*line.axis, line.vertical, context, frame, zero);
        else if (line.flag <= y1_coarse_grid)
            qtVxAxisDrawing::drawGridCoarse(*line.axis, line.vertical, context, frame, coarse);
        else
            qtVxAxisDrawing::drawGridFine(*line.axis, line.vertical, context, frame, fine);
    }
}

void wxSinglePlotWidgetImpl::drawCurve(qtVxBufferedDrawContextInverted& context, const wxSinglePlotWidgetData& curve)
{
    if (curve.realHighlighted || curve.imagHighlighted) {
        // A highlighted part stands out by a wider pen, two pixels over its own width.
        wxSinglePlotWidgetData wide(curve);
        wide.realHighlighted = wide.imagHighlighted = false;
        wxCurveStyle& style = wide.description().style();
        if (curve.realHighlighted)
            style.realLineWidth = wxCurveStyle::clampLineWidth(style.realLineWidth + 2);
        if (curve.imagHighlighted)
            style.imagLineWidth = wxCurveStyle::clampLineWidth(style.imagLineWidth + 2);
        drawCurve(context, wide);
        return;
    }
    ++mCurveDraws;
    const wxCurveDescription& description = curve.description();
    if (!curve.checkIsComplex()) {
        if (curve.checkRealPartShown())
            drawCurveDescription(context, description, xAxis(), yAxis(curve.getRealAxis()), mColBuffer, 0, UINT64_MAX,
                                 makeDrawOptions());
        return;
    }
    // Both values of one two-valued conversion: one pass, the second value on its own axis.
    const unsigned conversion = curve.getRealConversion();
    if (curve.checkRealPartShown() && curve.checkImagPartShown() && curve.getImagConversion() == conversion &&
        derivedCurveFunction::checkConversionHasTwoValues(conversion) &&
        description.postProcessState().realConversion == conversion) {
        plotCurveDrawing::cDrawOptions options = makeDrawOptions();
        options.imagYAxis = &yAxis(curve.getImagAxis());
        drawCurveDescription(context, description, xAxis(), yAxis(curve.getRealAxis()), mColBuffer, 0, UINT64_MAX,
                             options);
        return;
    }
    if (curve.checkRealPartShown())
        drawCurvePart(context, curve, false);
    if (curve.checkImagPartShown())
        drawCurvePart(context, curve, true);
}

void wxSinglePlotWidgetImpl::drawCurvePart(qtVxBufferedDrawContextInverted& context,
                                           const wxSinglePlotWidgetData& curve, bool imaginary)
{
    using namespace derivedCurveFunction;
    unsigned conversion = imaginary ? curve.getImagConversion() : curve.getRealConversion();
    // The value of a two-valued conversion that this part shows, as a conversion of its own.
    switch (conversion) {
    case real_and_imaginary_part: conversion = imaginary ? imaginary_part : real_part; break;
    case magnitude_and_angle: conversion = imaginary ? angle : magnitude; break;
    case magnitude_in_db_and_angle: conversion = imaginary ? angle : magnitude_in_db; break;
    default: break;
    }
    const wxCurveDescription& description = curve.description();
    const wxSinglePlotWidgetAxis& axis = yAxis(imaginary ? curve.getImagAxis() : curve.getRealAxis());
    if (!imaginary && description.postProcessState().realConversion == conversion) {
        drawCurveDescription(context, description, xAxis(), axis, mColBuffer, 0, UINT64_MAX, makeDrawOptions());
        return;
    }
    wxCurveDescription part(description);
    part.postProcessState().realConversion = conversion;
    if (imaginary)
        part.style().copyImagToRealStyle();  // the drawer draws a single value with the real pen
    drawCurveDescription(context, part, xAxis(), axis, mColBuffer, 0, UINT64_MAX, makeDrawOptions());
}

std::string wxSinglePlotWidgetImpl::computeXTitle() const
{
    if (!mXTitle.empty() || getCurves().empty())
        return mXTitle;
    const wxCurveDescription& first = getCurves().front().description();
    const char* unit = curvePlotDataType::unitToShortString(first.getSweepVariableUnitIdentifier());
    const std::string name = first.getSweepVariableName();
    return unit && *unit ? name + " [" + unit + "]" : name;
}

std::string wxSinglePlotWidgetImpl::computeYTitle(int axis) const
{
    if (axis == 0 && !mY0Title.empty())
        return mY0Title;
    // The name of the one curve part on the axis, else the unit the parts share.
    const wxSinglePlotWidgetData* only = nullptr;
    int parts = 0;
    unsigned unit = 0;
    for (const wxSinglePlotWidgetData& curve : getCurves()) {
        if (curve.checkRealPartShown() && curve.getRealAxis() == axis)
            ++parts, only = &curve, unit = curve.getRealUnit();
        if (curve.checkImagPartShown() && curve.getImagAxis() == axis)
            ++parts, only = &curve, unit = curve.getImagUnit();
    }
    if (parts == 0)
        return std::string();
    const char* text = curvePlotDataType::unitToShortString(unit);
    const std::string bracket = text && *text ? std::string("[") + text + "]" : std::string();
    if (parts == 1)
        return bracket.empty() ? only->description().getName() : only->description().getName() + " " + bracket;
    return bracket;
}

int wxSinglePlotWidgetImpl::getRightMargin() const
{
    const int legend = mOverlay.legend().getType() == singlePlotWidgetLegend::on_the_right
                           ? static_cast<int>(mOverlay.computeLegendSideWidth(wxPlotOverlayTextMetrics(), mPaintWidth))
                           : 0;
    return (checkY1Active() ? mLook.leftMargin : mLook.rightMargin) + legend;
}

int wxSinglePlotWidgetImpl::getLeftMargin() const
{
    // A legend on the left takes a band left of the Y axis's labels.
    if (mOverlay.legend().getType() != singlePlotWidgetLegend::on_the_left)
        return mLook.leftMargin;
    return mLook.leftMargin + static_cast<int>(mOverlay.computeLegendSideWidth(wxPlotOverlayTextMetrics(), mPaintWidth));
}

void wxSinglePlotWidgetImpl::drawRightYAxis(qtVxBufferedDrawContextInverted& context, double right, double bottom,
                                            double top)
{
    wxSinglePlotWidgetYAxis& axis = yAxis(1);
    axis.setMaxTextWidth(mLook.leftMargin - 24.0);
    axis.computeAxesTicks(context, top);
    std::vector<QRectF> drawn;
    double rightmost = right + qtVxAxisDrawing::labelled_tick_length + qtVxAxisDrawing::label_gap;
    for (const singlePlotWidgetAxis::cTickLabel& tick : axis.getTicks()) {
        if (!std::isfinite(tick.position) || tick.position < bottom - 0.5 || tick.position > top + 0.5)
            continue;
        const bool labelled = tick.kind != singlePlotWidgetAxis::tick_subdivision;
        context.drawLine(right + 1.0, tick.position,
                         right + (labelled ? qtVxAxisDrawing::labelled_tick_length
                                           : qtVxAxisDrawing::subdivision_tick_length),
                         tick.position);
        if (tick.text.empty())
            continue;
        // Anchored at its top left, half a line above the tick: vertically centred on it.
        const double x = right + qtVxAxisDrawing::labelled_tick_length + qtVxAxisDrawing::label_gap;
        const double y = tick.position + 0.5 * context.getTextHeight(tick.text);
        const QRectF box = context.measureText(tick.text, x, y, qtVxBufferedDrawContext::anchor_top_left);
        bool fits = box.left() >= 0.0 && box.right() <= context.getWidth() && box.top() >= 0.0 &&
                    box.bottom() <= context.getHeight();
        for (const QRectF& other : drawn)
            fits = fits && !box.intersects(other);
        if (!fits)
            continue;
        drawn.push_back(context.drawText(tick.text, x, y, qtVxBufferedDrawContext::anchor_top_left));
        rightmost = std::max(rightmost, drawn.back().right());
    }
    const std::string title = computeYTitle(1);
    if (title.empty())
        return;
    // Turned to read upwards like the left title, beyond the widest label.
    const double x = rightmost + qtVxAxisDrawing::label_gap;
    const double y = (bottom + top) / 2;
    const QRectF box = context.measureText(title, x, y, qtVxBufferedDrawContext::anchor_top_centre, 90.0);
    if (box.right() <= context.getWidth() && box.left() >= 0.0)
        context.drawText(title, x, y, qtVxBufferedDrawContext::anchor_top_centre, 90.0);
}

}  // namespace vx3
