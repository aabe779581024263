// The entry of curve drawing on a plot's bitmap: the description's loaded values and style are
// gathered here and handed to the drawers, instantiated for the inverted bitmap context.
#include "plot/wxPlotCurveDrawing.h"

#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "plot/wxCurveDescription.h"
#include "plot/wxPlotCurveDrawingImpl.h"
#include "plot/wxSinglePlotWidgetAxis.h"
#include "widgets/qtVxBufferedDrawContext.h"

namespace vx3 {

namespace {

// The drawers' window of an axis: the strip being updated, 5 pixels beyond the view.
void windowOf(const wxSinglePlotWidgetAxis& axis, double& min, double& max)
{
    min = axis.getUpdateMin();
    max = axis.getUpdateMax();
    if (min > max)
        std::swap(min, max);
}

// What is known of a curve's values without walking them.
plotDrawer::cCurveLimits limitsOf(const cCurvePlotVariable& variable, const curvePlotFunctionArgs::cDataVectors& v)
{
    using namespace derivedCurveFunction;
    plotDrawer::cCurveLimits limits;
    limits.monotony = v.monotony;
    const curvePlotVariable::cMinMaxCache& cache = variable.getMinMax();
    if (cache.initialized) {
        limits.minY = cache.realMiny;
        limits.maxY = cache.realMaxy;
    }
    // The ends of a rising X are its limits; anything else is scanned anyway.
    if (v.count && (check_monotony_increasing(limits.monotony) || limits.monotony == monotony_constant)) {
        const uint64_t last = (v.count - 1) * v.xStride;
        if (v.xDouble) {
            limits.minX = v.xDouble[0];
            limits.maxX = v.xDouble[last];
        } else if (v.xFloat) {
            limits.minX = v.xFloat[0];
            limits.maxX = v.xFloat[last];
        }
    }
    return limits;
}

}  // namespace

plotCurveDrawing::cDrawResult drawCurveDescription(qtVxBufferedDrawContextInverted& context,
                                                   const wxCurveDescription& curve,
                                                   const wxSinglePlotWidgetAxis& xAxis,
                                                   const wxSinglePlotWidgetAxis& yAxis,
                                                   wxPlotDrawerColBuffer& colBuffer, uint64_t first, uint64_t last,
                                                   const plotCurveDrawing::cDrawOptions& options)
{
    using namespace plotCurveDrawing;
    if (!curve.checkIsVariable())
        return {};
    cCurvePlotDataSection* section = curve.getSection();
    const cCurvePlotVariable* variable = curve.curvePlotVariableOrIdentical();
    if (!section || !variable || !variable->checkHasStorage())
        return {};

    cCurveInput in;
    in.style = curve.style();
    in.conversion = curve.postProcessState().realConversion;
    const unsigned type = variable->getDataType();
    if (checkIsSparseRealType(type)) {
        in.vectors.yType = type;
        in.records = variable->data();
        in.recordCount = variable->getVectorSize();
        in.recordSize = variable->getElementSize();
        in.recordXs = section->getXAxisDoubleValues(in.recordXCount);
        // Records follow the X axis, which rises.
        in.limits.monotony = derivedCurveFunction::monotony_rising;
        const curvePlotVariable::cMinMaxCache& cache = variable->getMinMax();
        if (cache.initialized) {
            in.limits.minY = cache.realMiny;
            in.limits.maxY = cache.realMaxy;
        }
    } else if (checkIsRealType(type) || checkIsComplexType(type)) {
        bool haveVectors = false;
        if (section->getNbOfSweepVariables() > 1) {
            cPostProcessCurveDescription description = curve.postProcessDescription();
            haveVectors = section->computeSweepDataVectors(curve.getCurveIndex(), curve.postProcessState().cutIndex,
                                                           description.sweepPermutation(), in.vectors);
        } else {
            haveVectors = variable->computeDataVectors(*section, in.vectors);
        }
        if (!haveVectors)
            return {};
        in.vectors.yType = type;
        in.limits = limitsOf(*variable, in.vectors);
    } else {
        // Logic values, buses and enumerations: the digital drawers' part.
        return {};
    }

    cAxesInput axes;
    axes.x = plotDrawer::cAxisMap::fromAxis(xAxis);
    axes.y = plotDrawer::cAxisMap::fromAxis(yAxis);
    const wxSinglePlotWidgetAxis& imagAxis = options.imagYAxis ? *options.imagYAxis : yAxis;
    axes.imagY = plotDrawer::cAxisMap::fromAxis(imagAxis);
    windowOf(xAxis, axes.window.xmin, axes.window.xmax);
    windowOf(yAxis, axes.window.ymin, axes.window.ymax);
    axes.imagWindow = axes.window;
    windowOf(imagAxis, axes.imagWindow.ymin, axes.imagWindow.ymax);
    return drawCurveInput(context, in, axes, colBuffer, first, last, options);
}

}  // namespace vx3
