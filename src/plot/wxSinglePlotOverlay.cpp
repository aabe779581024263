#include "plot/wxSinglePlotOverlay.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cmath>

#include "base/cVxLogger.h"
#include "plot/cPlotWidgetCommon.h"
#include "plot/wxAnalogPlotVirtual.h"
#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"

namespace vx3 {

using namespace singlePlotOverlay;
using namespace singlePlotWidgetAnnotations;
using plotBoxLayout::cBox;

namespace {

std::string upper(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace

wxSinglePlotOverlay::wxSinglePlotOverlay(cPlotWidgetCommon& plot, const cVxLogger& logger)
    : mPlot(plot),
      mLogger(logger),
      mMarker(plot, singlePlotWidgetRuler::marker_ruler),
      mCursor(plot, singlePlotWidgetRuler::cursor_ruler),
      mHitTest(plot, singlePlotWidgetRuler::hit_test_ruler)
{
    mCursor.setOtherRuler(&mMarker);
}

void wxSinglePlotOverlay::failed(const std::string& message) const
{
    mLogger.warnMsg(message);
    if (mPage)
        mPage->analogPlotVirtualStatusBarMessage(vxLogger::warning, message);
}

wxSinglePlotWidgetRuler* wxSinglePlotOverlay::findRuler(const std::string& name)
{
    const std::string key = upper(name);
    if (key == "M1")
        return &mMarker;
    if (key == "C1" || key.empty())
        return &mCursor;
    return nullptr;
}

// ---- rulers ---------------------------------------------------------------------------------------

bool wxSinglePlotOverlay::activateRulers(double x, double y)
{
    if (mPlot.getCurves().empty()) {
        failed("Rulers need a curve in the plot.");
        return false;
    }
    mRulerState = waiting_for_marker;
    for (auto& group : mCurveAnnotations)
        for (auto* list : {&group.real, &group.imag})
            for (wxAnnotation& annotation : *list)
                annotation.pending = false;
    mCursor.setPosition(x, y, true, singlePlotWidgetRuler::follow_mouse, settings.snapToGrid);
    return true;
}

void wxSinglePlotOverlay::escapePressedAction()
{
    if (mRulerState == waiting_for_marker)
        mCursor.clear();
    mRulerState = no_ruler;
}

bool wxSinglePlotOverlay::leftClick(double x, double y)
{
    if (mRulerState == waiting_for_marker) {
        mMarker.setPosition(x, y, true, singlePlotWidgetRuler::follow_mouse, settings.snapToGrid);
        mCursor.computeDoubleYCoordinates();
        mRulerState = waiting_for_cursor;
        if (mPage)
            mPage->analogPlotVirtualRulerWasSet(&mPlot, singlePlotWidgetRuler::marker_ruler, mMarker.getX());
        return true;
    }
    if (mRulerState == waiting_for_cursor) {
        mCursor.setPosition(x, y, true, singlePlotWidgetRuler::follow_mouse, settings.snapToGrid);
        mRulerState = both_rulers_set;
        if (mPage)
            mPage->analogPlotVirtualRulerWasSet(&mPlot, singlePlotWidgetRuler::cursor_ruler, mCursor.getX());
        return true;
    }
    return false;
}

bool wxSinglePlotOverlay::mouseMoved(double x, double y)
{
    if (mRulerState == waiting_for_marker || mRulerState == waiting_for_cursor)
        return mCursor.setPosition(x, y, false, singlePlotWidgetRuler::follow_mouse, settings.snapToGrid);
    return false;
}

bool wxSinglePlotOverlay::setCursor(double x, const std::string& name)
{
    wxSinglePlotWidgetRuler* ruler = findRuler(name);
    if (!ruler) {
        failed("Unknown cursor name \"" + name + "\" (M1 or C1).");
        return false;
    }
    if (mPlot.getCurves().empty()) {
        failed("Cannot set cursor " + ruler->getName() + ": the plot holds no curve.");
        return false;
    }
    if (!std::isfinite(x) || std::fabs(x) >= 1e300) {
        failed("Cannot set cursor " + ruler->getName() + ": the X value is not a finite number.");
        return false;
    }
    ruler->setPositionX(x);
    if (ruler == &mMarker)
        mCursor.computeDoubleYCoordinates();  // its dy refers to the marker
    mRulerState = mMarker.checkIsEnabled() && mCursor.checkIsEnabled() ? both_rulers_set : mRulerState;
    if (mPage)
        mPage->analogPlotVirtualRulerWasSet(&mPlot, ruler->getType(), x);
    return true;
}

bool wxSinglePlotOverlay::clearRuler(const std::string& name)
{
    wxSinglePlotWidgetRuler* ruler = findRuler(name);
    if (!ruler || name.empty()) {
        failed("Unknown cursor name \"" + name + "\" (M1 or C1).");
        return false;
    }
    ruler->clear();
    if (ruler == &mMarker)
        mCursor.computeDoubleYCoordinates();
    if (mRulerState == both_rulers_set)
        mRulerState = no_ruler;
    if (mPage)
        mPage->analogPlotVirtualRulerWasCleared(&mPlot, ruler->getType());
    return true;
}

void wxSinglePlotOverlay::clearRulers()
{
    mMarker.clear();
    mCursor.clear();
    mRulerState = no_ruler;
    if (mPage) {
        mPage->analogPlotVirtualRulerWasCleared(&mPlot, singlePlotWidgetRuler::marker_ruler);
        mPage->analogPlotVirtualRulerWasCleared(&mPlot, singlePlotWidgetRuler::cursor_ruler);
    }
}

void wxSinglePlotOverlay::clearRulersLocally()
{
    mMarker.clear();
    mCursor.clear();
    mRulerState = no_ruler;
}

wxSinglePlotWidgetRuler* wxSinglePlotOverlay::rulerOfType(int type)
{
    return type == singlePlotWidgetRuler::marker_ruler ? &mMarker
           : type == singlePlotWidgetRuler::cursor_ruler ? &mCursor
                                                         : nullptr;
}

bool wxSinglePlotOverlay::setRulerFromConnection(int type, double x)
{
    wxSinglePlotWidgetRuler* ruler = rulerOfType(type);
    if (!ruler || mPlot.getCurves().empty() || !std::isfinite(x))
        return false;
    ruler->setPositionX(x, singlePlotWidgetRuler::set_by_connection);
    if (ruler == &mMarker)
        mCursor.computeDoubleYCoordinates();
    // A plot in the middle of setting its own rulers by clicks keeps its mode.
    if (mRulerState == no_ruler && mMarker.checkIsEnabled() && mCursor.checkIsEnabled())
        mRulerState = both_rulers_set;
    return true;
}

void wxSinglePlotOverlay::clearRulerFromConnection(int type)
{
    wxSinglePlotWidgetRuler* ruler = rulerOfType(type);
    if (!ruler)
        return;
    ruler->clear();
    if (ruler == &mMarker)
        mCursor.computeDoubleYCoordinates();
    if (mRulerState == both_rulers_set)
        mRulerState = no_ruler;
}

int wxSinglePlotOverlay::rulerHitTest(double x, double tolerance) const
{
    for (const wxSinglePlotWidgetRuler* ruler : {&mCursor, &mMarker})
        if (ruler->checkIsEnabled() && std::fabs(ruler->getPixelX() - x) <= tolerance)
            return ruler->getType();
    return -1;
}

bool wxSinglePlotOverlay::checkIsMovingRuler() const
{
    return mRulerState == moving_marker || mRulerState == moving_cursor;
}

bool wxSinglePlotOverlay::startMovingRuler(int type)
{
    const wxSinglePlotWidgetRuler* ruler = rulerOfType(type);
    if (!ruler || !ruler->checkIsEnabled() || checkIsMovingRuler())
        return false;
    mStateBeforeMove = mRulerState;
    mRulerState = type == singlePlotWidgetRuler::marker_ruler ? moving_marker : moving_cursor;
    return true;
}

bool wxSinglePlotOverlay::moveRuler(double x, double y)
{
    if (!checkIsMovingRuler())
        return false;
    const plotWidgetCommon::cCanvasLayout& canvas = mPlot.getCanvasLayout();
    x = std::clamp(x, canvas.xLow, canvas.xHigh);
    wxSinglePlotWidgetRuler& ruler = mRulerState == moving_marker ? mMarker : mCursor;
    // Set by hand from now on: after the first step it snaps like a ruler placed by a click.
    const bool changed = ruler.setPosition(x, y, false, singlePlotWidgetRuler::follow_mouse, settings.snapToGrid);
    if (&ruler == &mMarker)
        mCursor.computeDoubleYCoordinates();
    return changed;
}

int wxSinglePlotOverlay::endMovingRuler()
{
    if (!checkIsMovingRuler())
        return -1;
    const wxSinglePlotWidgetRuler& ruler = mRulerState == moving_marker ? mMarker : mCursor;
    mRulerState = mStateBeforeMove;
    if (mPage)
        mPage->analogPlotVirtualRulerWasSet(&mPlot, ruler.getType(), ruler.getX());
    return ruler.getType();
}

bool wxSinglePlotOverlay::moveRulerByKey(int type, int pixels)
{
    wxSinglePlotWidgetRuler* ruler = rulerOfType(type);
    if (!ruler || !ruler->checkIsEnabled() || !ruler->incrementPosition(pixels, settings.snapToGrid))
        return false;
    if (ruler == &mMarker)
        mCursor.computeDoubleYCoordinates();
    if (mPage)
        mPage->analogPlotVirtualRulerWasSet(&mPlot, ruler->getType(), ruler->getX());
    return true;
}

bool wxSinglePlotOverlay::getClosestCurveIndex(double x, double y, size_t& index, bool& imaginary) const
{
    if (!settings.hitTest)
        return false;
    return mHitTest.findClosestCurveIndex(x, y, settings.hitTolerance, index, imaginary);
}

// ---- annotations ----------------------------------------------------------------------------------

bool wxSinglePlotOverlay::addTextAnnotation(const std::string& text, double x, double y)
{
    if (std::isnan(x) || std::isnan(y)) {
        // The top left of the view, a little inside.
        const wxSinglePlotWidgetXAxis& xAxis = mPlot.xAxis();
        const wxSinglePlotWidgetYAxis& yAxis = mPlot.yAxis(0);
        const plotWidgetCommon::cCanvasLayout& canvas = mPlot.getCanvasLayout();
        if (canvas.xHigh - canvas.xLow > 48.0 && canvas.yHigh - canvas.yLow > 48.0) {
            x = xAxis.toDouble(canvas.xLow + 12.0);
            y = yAxis.toDouble(canvas.yHigh - 12.0);
        } else {
            // Not laid out yet (a command before the first paint): the same corner by the view.
            x = xAxis.getMin() + 0.03 * (xAxis.getMax() - xAxis.getMin());
            y = yAxis.getMax() - 0.03 * (yAxis.getMax() - yAxis.getMin());
        }
    }
    wxAnnotation annotation;
    if (!annotation.createAnnotation(text_annotation, text, {x, y}, mLogger)) {
        failed("Failed to create annotation.");
        return false;
    }
    mGlobal.push_back(std::move(annotation));
    return true;
}

int wxSinglePlotOverlay::findCurveAnnotations(size_t curveIndex) const
{
    const std::vector<wxSinglePlotWidgetData>& curves = mPlot.getCurves();
    if (curveIndex >= curves.size())
        return -1;
    const wxCurveDescription& description = curves[curveIndex].description();
    for (size_t i = 0; i < mCurveAnnotations.size(); ++i) {
        const cCurveAnnotations& group = mCurveAnnotations[i];
        if (group.section == description.getSection() && group.curve == description.getCurveIndex() &&
            group.sweep == description.postProcessState().sweepIndex)
            return static_cast<int>(i);
    }
    return -1;
}

bool wxSinglePlotOverlay::addCurveAnnotation(size_t curveIndex, const std::string& type, const std::string& text,
                                             const std::vector<double>& points, bool imaginary)
{
    if (curveIndex >= mPlot.getCurves().size()) {
        mLogger.errorMsg("Creating annotation : the curve is not in the plot.");
        failed("Failed to create annotation.");
        return false;
    }
    const int kind = getTypeFromString(type);
    wxAnnotation annotation;
    if (kind == text_annotation) {
        mLogger.errorMsg("Creating annotation : Unsupported annotation type.");
        failed("Failed to create annotation.");
        return false;
    }
    if (!annotation.createAnnotation(kind, text, points, mLogger, static_cast<int>(curveIndex))) {
        failed("Failed to create annotation.");
        return false;
    }
    if (kind == tangent_line_annotation) {
        // The slope of the curve at the point, from its neighbours.
        const double x = annotation.getX(0), dx = std::fabs(mPlot.xAxis().getInverseScale());
        const wxCurveDescription& description = mPlot.getCurves()[curveIndex].description();
        double y0 = NAN, y1 = NAN;
        uint64_t cursor = 0;
        if (description.checkIsVariable() && dx > 0.0) {
            const cCurvePlotDataSection& section = *description.getSection();
            description.curvePlotVariable().findInterpolatedValue(section, x - dx, cursor, y0, false, imaginary);
            description.curvePlotVariable().findInterpolatedValue(section, x + dx, cursor, y1, false, imaginary);
        }
        annotation.setGradient(std::isfinite(y0) && std::isfinite(y1) ? (y1 - y0) / (2.0 * dx) : 0.0);
    }
    int group = findCurveAnnotations(curveIndex);
    if (group < 0) {
        const wxCurveDescription& description = mPlot.getCurves()[curveIndex].description();
        mCurveAnnotations.push_back({description.getSection(), description.getCurveIndex(),
                                     description.postProcessState().sweepIndex, {}, {}});
        group = static_cast<int>(mCurveAnnotations.size() - 1);
    }
    (imaginary ? mCurveAnnotations[group].imag : mCurveAnnotations[group].real).push_back(std::move(annotation));
    return true;
}

bool wxSinglePlotOverlay::annotatePointAt(double pixelX, double pixelY, size_t& curveIndex, bool& imaginary,
                                          double& x, double& y)
{
    if (!getClosestCurveIndex(pixelX, pixelY, curveIndex, imaginary))
        return false;
    const wxCurveDescription& description = mPlot.getCurves()[curveIndex].description();
    if (!description.checkIsVariable() || !description.getSection())
        return false;
    const cCurvePlotDataSection& section = *description.getSection();
    const cCurvePlotVariable& variable = description.curvePlotVariable();
    uint64_t index = 0;
    if (!variable.findClosestXValue(section, mPlot.xAxis().toDouble(pixelX), index, x) || !std::isfinite(x))
        return false;
    uint64_t cursor = 0;
    if (!variable.findInterpolatedValue(section, x, cursor, y, false, imaginary) || !std::isfinite(y))
        return false;
    return addCurveAnnotation(curveIndex, "Point", "<Y Value>", {x, y}, imaginary);
}

bool wxSinglePlotOverlay::addRiseFallAnnotation(size_t curveIndex, bool imaginary)
{
    const std::vector<wxSinglePlotWidgetData>& curves = mPlot.getCurves();
    auto refuse = [this](const std::string& reason) {
        mLogger.errorMsg("Creating annotation : " + reason);
        failed("Failed to create annotation.");
        return false;
    };
    if (curveIndex >= curves.size() || !curves[curveIndex].description().checkIsVariable())
        return refuse("the curve is not in the plot.");
    if (!mMarker.checkIsEnabled() || !mCursor.checkIsEnabled())
        return refuse("rise and fall times are measured between the marker and the cursor.");
    const wxCurveDescription& description = curves[curveIndex].description();
    const cCurvePlotDataSection& section = *description.getSection();
    const cCurvePlotVariable& variable = description.curvePlotVariable();
    const double from = std::min(mMarker.getX(), mCursor.getX()), to = std::max(mMarker.getX(), mCursor.getX());
    double start = NAN, end = NAN;
    uint64_t cursor = 0;
    const bool logX = mPlot.xAxis().checkIsLog();
    variable.findInterpolatedValue(section, from, cursor, start, logX, imaginary);
    variable.findInterpolatedValue(section, to, cursor, end, logX, imaginary);
    if (!std::isfinite(start) || !std::isfinite(end) || start == end)
        return refuse("the curve does not change between the rulers.");
    const double low = start + settings.riseLowPercent / 100.0 * (end - start);
    const double high = start + settings.riseHighPercent / 100.0 * (end - start);
    double xLow = NAN, xHigh = NAN;
    if (!variable.findClosestXValueForGivenY(section, low, from, xLow) || xLow < from || xLow > to ||
        !variable.findClosestXValueForGivenY(section, high, xLow, xHigh) || xHigh < xLow || xHigh > to)
        return refuse("no edge between the rulers.");
    return addCurveAnnotation(curveIndex, end > start ? "Rise Time" : "Fall Time", "", {xLow, low, xHigh, high},
                              imaginary);
}

bool wxSinglePlotOverlay::clearCurveAnnotations(size_t curveIndex)
{
    const int group = findCurveAnnotations(curveIndex);
    if (group < 0)
        return false;
    mCurveAnnotations.erase(mCurveAnnotations.begin() + group);
    return true;
}

void wxSinglePlotOverlay::clearAnnotations()
{
    mGlobal.clear();
    mCurveAnnotations.clear();
    mBoxes.clear();
}

const std::vector<wxAnnotation>* wxSinglePlotOverlay::getCurveAnnotations(size_t curveIndex, bool imaginary) const
{
    const int group = findCurveAnnotations(curveIndex);
    if (group < 0)
        return nullptr;
    return imaginary ? &mCurveAnnotations[group].imag : &mCurveAnnotations[group].real;
}

size_t wxSinglePlotOverlay::getNbAnnotations() const
{
    size_t count = mGlobal.size();
    for (const cCurveAnnotations& group : mCurveAnnotations)
        count += group.real.size() + group.imag.size();
    return count;
}

cCurveInformationContext wxSinglePlotOverlay::makeInformationContext(int curveIndex, bool imaginary) const
{
    cCurveInformationContext context;
    const std::vector<wxSinglePlotWidgetData>& curves = mPlot.getCurves();
    const int axis = curveIndex >= 0 && static_cast<size_t>(curveIndex) < curves.size()
                         ? (imaginary ? curves[curveIndex].getImagAxis() : curves[curveIndex].getRealAxis())
                         : 0;
    context.formatX = [this](double x) { return mHitTest.formatX(x); };
    context.formatY = [this, axis](double y) { return mHitTest.formatY(y, axis); };
    if (curveIndex < 0 || static_cast<size_t>(curveIndex) >= curves.size())
        return context;
    const wxCurveDescription& description = curves[curveIndex].description();
    context.simpleName = description.getName();
    context.reducedName = wxSinglePlotWidgetLegend::computeCurveNames(curves)[curveIndex];
    context.fullName = description.getFullCurveName(true);
    // Annotations between two curves refer to the same curve unless told otherwise.
    context.simpleReferenceName = context.simpleName;
    context.reducedReferenceName = context.reducedName;
    context.fullReferenceName = context.fullName;
    return context;
}

// ---- the plot changed -----------------------------------------------------------------------------

void wxSinglePlotOverlay::curvesChanged()
{
    mLegend.update(mPlot.getCurves());
    if (mPlot.getCurves().empty()) {
        // Only this plot lost its curves: connected plots keep their rulers.
        clearRulersLocally();
        return;
    }
    mMarker.computeDoublePosition();
    mCursor.computeDoublePosition();
}

void wxSinglePlotOverlay::removeAnnotationsOfSection(const cCurvePlotDataSection* section)
{
    std::erase_if(mCurveAnnotations, [section](const cCurveAnnotations& group) { return group.section == section; });
}

void wxSinglePlotOverlay::viewChanged()
{
    mMarker.computeIntegerPosition();
    mCursor.computeIntegerPosition();
}

}  // namespace vx3
