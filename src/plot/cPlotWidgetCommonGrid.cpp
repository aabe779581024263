// The plot's grid flags, the highlighting of curves, and the text that tells where the mouse is.
#include <algorithm>
#include <cmath>

#include "plot/cPlotWidgetCommon.h"

namespace vx3 {

using namespace plotWidgetCommon;

namespace {
// A digit more than a pixel resolves, as the rulers read, so that neighbouring pixels read apart.
int positionPrecision(const wxSinglePlotWidgetAxis& axis)
{
    const double pixel = std::fabs(axis.getInverseScale());
    if (axis.checkIsLog() || !(pixel > 0.0) || !std::isfinite(pixel))
        return 6;
    return std::clamp(axis.computeRequiredPrecision(axis.getMin(), axis.getMax(), pixel) + 1, 3, 12);
}
}  // namespace

bool cPlotWidgetCommon::setGridFlag(int flag, bool on)
{
    if (flag < 0 || flag >= nb_grid_flags || mGridFlags[flag] == on)
        return false;
    mGridFlags[flag] = on;
    plotRequestFullRedraw();  // the grid lies in the curves' bitmap
    return true;
}

std::string cPlotWidgetCommon::getGridFlagsAsString() const
{
    std::string text;
    for (bool flag : mGridFlags)
        text += flag ? '1' : '0';
    return text;
}

bool cPlotWidgetCommon::setGridFlagsFromString(const std::string& flags)
{
    if (flags.size() != nb_grid_flags || flags.find_first_not_of("01") != std::string::npos)
        return false;
    bool changed = false;
    for (int i = 0; i < nb_grid_flags; ++i)
        if (mGridFlags[i] != (flags[i] == '1')) {
            mGridFlags[i] = flags[i] == '1';
            changed = true;
        }
    if (changed)
        plotRequestFullRedraw();
    return true;
}

bool cPlotWidgetCommon::setCurveHighlighted(size_t index, bool imaginary, bool on, bool clearOthers)
{
    if (index >= mCurves.size())
        return false;
    bool changed = false;
    if (clearOthers)
        for (size_t i = 0; i < mCurves.size(); ++i)
            for (bool part : {false, true}) {
                if (i == index && part == imaginary)
                    continue;
                bool& flag = part ? mCurves[i].imagHighlighted : mCurves[i].realHighlighted;
                changed = changed || flag;
                flag = false;
            }
    bool& flag = imaginary ? mCurves[index].imagHighlighted : mCurves[index].realHighlighted;
    changed = changed || flag != on;
    flag = on;
    if (changed)
        plotRequestFullRedraw();
    return changed;
}

bool cPlotWidgetCommon::clearHighlightingAll()
{
    bool changed = false;
    for (wxSinglePlotWidgetData& curve : mCurves) {
        changed = changed || curve.realHighlighted || curve.imagHighlighted;
        curve.realHighlighted = curve.imagHighlighted = false;
    }
    if (changed)
        plotRequestFullRedraw();
    return changed;
}

std::string cPlotWidgetCommon::makeCursorPositionText(double x, double y) const
{
    std::string text = "x = " + mXAxis.doubleToStr(positionPrecision(mXAxis), mXAxis.toDouble(x));
    if (!mY1Active)
        return text + " y = " + mY0Axis.doubleToStr(positionPrecision(mY0Axis), mY0Axis.toDouble(y));
    return text + " y1 = " + mY0Axis.doubleToStr(positionPrecision(mY0Axis), mY0Axis.toDouble(y)) +
           " y2 = " + mY1Axis.doubleToStr(positionPrecision(mY1Axis), mY1Axis.toDouble(y));
}

}  // namespace vx3
