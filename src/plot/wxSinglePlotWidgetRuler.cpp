#include "plot/wxSinglePlotWidgetRuler.h"

#include <algorithm>
#include <cmath>

#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotDataType.h"
#include "model/cCurvePlotVariable.h"
#include "model/curveValueDistance.h"
#include "plot/cPlotWidgetCommon.h"

namespace vx3 {

using namespace singlePlotWidgetRuler;

namespace waveExplorerConfiguration {
std::string ruler_style_to_string(int style)
{
    switch (style) {
    case ruler_no_values: return "No Values";
    case ruler_simple_values: return "Simple Values";
    case ruler_values_in_annotations: return "Values In Annotations";
    case ruler_values_in_non_overlapping_annotations: return "Values In Non-Overlapping Annotations";
    case ruler_values_and_names_in_annotations: return "Values And Simple Names In Annotations";
    case ruler_values_and_names_in_non_overlapping_annotations:
        return "Values And Simple Names In Non-Overlapping Annotations";
    case ruler_annotations_on_x_axis: return "Annotations On The X-Axis";
    default: return "";
    }
}
}  // namespace waveExplorerConfiguration

namespace {

// The variable behind a curve whose values can be read, or null.
const cCurvePlotVariable* readableVariable(const wxSinglePlotWidgetData& curve, const cCurvePlotDataSection*& section)
{
    const wxCurveDescription& description = curve.description();
    section = description.getSection();
    if (!section || !description.checkIsVariable())
        return nullptr;
    return &description.curvePlotVariable();
}

// Readouts need a digit more than a pixel resolves, so that neighbouring samples read apart.
int readoutPrecision(const wxSinglePlotWidgetAxis& axis)
{
    const double pixel = std::fabs(axis.getInverseScale());
    if (axis.checkIsLog() || !(pixel > 0.0) || !std::isfinite(pixel))
        return 6;
    return std::clamp(axis.computeRequiredPrecision(axis.getMin(), axis.getMax(), pixel) + 1, 3, 12);
}

}  // namespace

wxSinglePlotWidgetRuler::wxSinglePlotWidgetRuler(const cPlotWidgetCommon& plot, int type) : mPlot(plot), mType(type) {}

std::string wxSinglePlotWidgetRuler::getName() const
{
    return mType == marker_ruler ? "M1" : mType == cursor_ruler ? "C1" : "";
}

void wxSinglePlotWidgetRuler::clear()
{
    mEnabled = false;
    mSetByProgram = false;
    mValues.clear();
}

bool wxSinglePlotWidgetRuler::computeXCoordinateOnGrid(double pixelX, double& x) const
{
    const wxSinglePlotWidgetXAxis& axis = mPlot.xAxis();
    const double target = axis.toDouble(pixelX);
    bool found = false;
    double bestPixels = INFINITY;
    for (const wxSinglePlotWidgetData& curve : mPlot.getCurves()) {
        const cCurvePlotDataSection* section = nullptr;
        const cCurvePlotVariable* variable = readableVariable(curve, section);
        uint64_t index = 0;
        double closest = 0.0;
        if (!variable || !variable->findClosestXValue(*section, target, index, closest) || !std::isfinite(closest))
            continue;
        const double pixels = std::fabs(axis.toInt(closest) - pixelX);
        if (pixels < bestPixels) {
            bestPixels = pixels;
            x = closest;
            found = true;
        }
    }
    return found;
}

bool wxSinglePlotWidgetRuler::incrementXCoordinateOnGrid(double x, int direction, double& next) const
{
    bool found = false;
    for (const wxSinglePlotWidgetData& curve : mPlot.getCurves()) {
        const cCurvePlotDataSection* section = nullptr;
        const cCurvePlotVariable* variable = readableVariable(curve, section);
        if (!variable)
            continue;
        uint64_t index = 0;
        double closest = 0.0;
        if (!variable->findClosestXValue(*section, x, index, closest))
            continue;
        // The closest sample, or its neighbour when it lies at or behind x in the direction.
        for (int step = 0; step < 3; ++step) {
            const double candidate = variable->computeXValue(*section, index);
            if (std::isfinite(candidate) && (direction > 0 ? candidate > x : candidate < x)) {
                if (!found || (direction > 0 ? candidate < next : candidate > next))
                    next = candidate;
                found = true;
                break;
            }
            if (direction > 0)
                ++index;
            else if (index > 0)
                --index;
            else
                break;
        }
    }
    return found;
}

bool wxSinglePlotWidgetRuler::setPosition(double x, double y, bool update, int kind, bool snapToGrid)
{
    if (mPlot.getCurves().empty())
        return false;
    const bool wasEnabled = mEnabled;
    const double oldPixelX = mPixelX, oldX = mX;
    double dataX = mPlot.xAxis().toDouble(x);
    if (kind == follow_mouse && snapToGrid && !mSetByProgram) {
        double snapped = 0.0;
        if (computeXCoordinateOnGrid(x, snapped))
            dataX = snapped;
    }
    if (!std::isfinite(dataX))
        return false;
    mPreviousX = mX;
    mX = dataX;
    mPixelX = mPlot.xAxis().toInt(dataX);
    mPixelY = y;
    mY = mPlot.yAxis(0).toDouble(y);
    mEnabled = true;
    mSetByProgram = kind == set_by_program || kind == set_by_connection;
    const bool changed = !wasEnabled || mPixelX != oldPixelX || mX != oldX;
    if (changed || update)
        computeDoubleYCoordinates();
    return changed;
}

bool wxSinglePlotWidgetRuler::setPositionX(double x, int kind)
{
    if (mPlot.getCurves().empty() || !std::isfinite(x))
        return false;
    const bool changed = !mEnabled || x != mX;
    mPreviousX = mX;
    mX = x;
    mPixelX = mPlot.xAxis().toInt(x);
    if (!mEnabled)
        mPixelY = 0.5 * (mPlot.getCanvasLayout().yLow + mPlot.getCanvasLayout().yHigh);
    mEnabled = true;
    mSetByProgram = kind == set_by_program || kind == set_by_connection;
    computeDoubleYCoordinates();
    return changed;
}

bool wxSinglePlotWidgetRuler::incrementPosition(int pixels, bool snapToGrid)
{
    if (!mEnabled || pixels == 0)
        return false;
    double next = 0.0;
    if (snapToGrid && incrementXCoordinateOnGrid(mX, pixels > 0 ? 1 : -1, next))
        return setPositionX(next, moved_by_key);
    return setPosition(mPixelX + pixels, mPixelY, true, moved_by_key, false);
}

void wxSinglePlotWidgetRuler::computeIntegerPosition()
{
    if (mEnabled)
        mPixelX = mPlot.xAxis().toInt(mX);
}

void wxSinglePlotWidgetRuler::computeDoubleYCoordinates()
{
    mValues.clear();
    if (!mEnabled)
        return;
    const bool logX = mPlot.xAxis().checkIsLog();
    const std::vector<wxSinglePlotWidgetData>& curves = mPlot.getCurves();
    for (size_t i = 0; i < curves.size(); ++i) {
        const wxSinglePlotWidgetData& curve = curves[i];
        const cCurvePlotDataSection* section = nullptr;
        const cCurvePlotVariable* variable = readableVariable(curve, section);
        for (bool imaginary : {false, true}) {
            if (imaginary ? !curve.checkImagPartShown() : !curve.checkRealPartShown())
                continue;
            cRulerValue value;
            value.curveIndex = i;
            value.imaginary = imaginary;
            value.axis = imaginary ? curve.getImagAxis() : curve.getRealAxis();
            uint64_t cursor = 0;
            if (variable && variable->getType() && variable->getType()->checkIsDigital()) {
                value.valid = variable->getDigitalCurveValue(*section, mX, value.text);
            } else if (variable && variable->findInterpolatedValue(*section, mX, cursor, value.y, logX, imaginary)) {
                value.valid = std::isfinite(value.y);
                value.text = value.valid ? formatY(value.y, value.axis) : "";
            }
            mValues.push_back(value);
        }
    }
}

const cRulerValue* wxSinglePlotWidgetRuler::findValueOf(size_t curveIndex, bool imaginary) const
{
    if (!mEnabled)
        return nullptr;
    for (const cRulerValue& value : mValues)
        if (value.curveIndex == curveIndex && value.imaginary == imaginary && value.valid)
            return &value;
    return nullptr;
}

double wxSinglePlotWidgetRuler::computeDoubleDistance(size_t index, bool imaginary, double x, double y) const
{
    const std::vector<wxSinglePlotWidgetData>& curves = mPlot.getCurves();
    if (index >= curves.size())
        return curvePlotVariable::kNoDistance;
    const wxSinglePlotWidgetData& curve = curves[index];
    const cCurvePlotDataSection* section = nullptr;
    const cCurvePlotVariable* variable = readableVariable(curve, section);
    if (!variable)
        return curvePlotVariable::kNoDistance;
    const wxSinglePlotWidgetAxis& yAxis = mPlot.yAxis(imaginary ? curve.getImagAxis() : curve.getRealAxis());
    curvePlotVariable::cDistanceScale scale;
    scale.pixelsPerX = mPlot.xAxis().getScale();
    scale.pixelsPerY = yAxis.getScale();
    scale.logX = mPlot.xAxis().checkIsLog();
    if (yAxis.checkIsLog())
        return curvePlotVariable::kNoDistance;  // distances are measured on linear values only
    uint64_t sample = 0;
    double distance2 = curvePlotVariable::kNoDistance;
    if (!variable->computeDistanceToValue(*section, mPlot.xAxis().toDouble(x), yAxis.toDouble(y), scale, sample,
                                          distance2, imaginary))
        return curvePlotVariable::kNoDistance;
    return distance2;
}

bool wxSinglePlotWidgetRuler::findClosestCurveIndex(double x, double y, double tolerance, size_t& index,
                                                    bool& imaginary) const
{
    const std::vector<wxSinglePlotWidgetData>& curves = mPlot.getCurves();
    double best = curvePlotVariable::kNoDistance;
    bool found = false;
    const double limit = tolerance * tolerance;
    for (size_t i = curves.size(); i-- > 0;) {
        for (bool part : {false, true}) {
            if (part ? !curves[i].checkImagPartShown() : !curves[i].checkRealPartShown())
                continue;
            const double d2 = computeDoubleDistance(i, part, x, y);
            if (d2 <= limit && d2 < best) {
                best = d2;
                index = i;
                imaginary = part;
                found = true;
            }
        }
    }
    return found;
}

std::string wxSinglePlotWidgetRuler::formatX(double x) const
{
    const wxSinglePlotWidgetXAxis& axis = mPlot.xAxis();
    return axis.doubleToStr(readoutPrecision(axis), x);
}

std::string wxSinglePlotWidgetRuler::formatY(double y, int axisIndex) const
{
    const wxSinglePlotWidgetAxis& axis = mPlot.yAxis(axisIndex);
    return axis.doubleToStr(readoutPrecision(axis), y);
}

std::string wxSinglePlotWidgetRuler::createAnnotationLabel() const
{
    std::string text = getName() + " x=" + formatX(mX);
    if (mType == cursor_ruler && mOther && mOther->checkIsEnabled())
        text += " dx=" + formatX(mX - mOther->getX());
    return text;
}

std::string wxSinglePlotWidgetRuler::createValueLabel(const cRulerValue& value, bool withName,
                                                      const std::string& curveName) const
{
    std::string text = withName ? curveName + ": " : std::string();
    text += "y=" + value.text;
    if (mType == cursor_ruler && mOther) {
        const cRulerValue* reference = mOther->findValueOf(value.curveIndex, value.imaginary);
        if (reference && !reference->text.empty() && value.valid) {
            const bool digital = value.text != formatY(value.y, value.axis);
            text += digital ? " (marker=" + reference->text + ")" : " dy=" + formatY(value.y - reference->y, value.axis);
        }
    }
    return text;
}

}  // namespace vx3
