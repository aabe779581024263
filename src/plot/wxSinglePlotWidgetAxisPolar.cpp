// Ticks of polar and Smith grids: radius ticks, angle labels around the circle, and the circles of
// constant resistance and reactance.
#include <algorithm>
#include <array>
#include <cmath>

#include "plot/plotWindowType.h"
#include "plot/wxSinglePlotWidgetAxis.h"

namespace vx3 {

using namespace singlePlotWidgetAxis;

namespace {

// Gap between the circle and the nearest edge of an angle label, in pixels.
constexpr double angle_label_gap = 4.0;
constexpr double pi = 3.14159265358979323846;

struct cAngleLabel {
    double degrees;
    const char* text;
};

// 90, 180 and 270 degrees lie on the drawn axes themselves and are read from them.
constexpr std::array<cAngleLabel, 10> angle_labels = {{
    {0.0, "0"}, {30.0, "30.0"}, {60.0, "60.0"}, {120.0, "120.0"}, {150.0, "150.0"},
    {210.0, "210.0"}, {240.0, "240.0"}, {300.0, "300.0"}, {330.0, "330.0"}, {360.0, "360.00"},
}};

bool checkIsAdmittanceGrid(int type)
{
    return type == waveExplorerWidgetVirtual::smith_admittance_grid ||
           type == waveExplorerWidgetVirtual::smith_admittance_and_impedance_grid;
}

}  // namespace

void wxSinglePlotWidgetAxis::setNormalizingImpedance(double impedance)
{
    // A Smith grid needs a positive finite reference; anything else keeps the previous one.
    if (std::isfinite(impedance) && impedance > 0.0)
        mNormalizingImpedance = impedance;
}

void wxSinglePlotWidgetAxis::computeMinMaxRadiusForPolarPlot(double& minRadius, double& maxRadius) const
{
    minRadius = 0.0;
    if (waveExplorerWidgetVirtual::checkIsSmithGrid(mGridType)) {
        maxRadius = 1.0;
        return;
    }
    maxRadius = std::max(std::fabs(mMin), std::fabs(mMax));
    if (!std::isfinite(maxRadius) || maxRadius < smallest_range)
        maxRadius = 1.0;
}

void wxSinglePlotWidgetAxis::sortAngleTicksIncreasingTextPositionX0(std::vector<cTickLabelAngle>& ticks)
{
    // Stable: of labels starting at the same x the one listed first (0 before 360) wins.
    std::stable_sort(ticks.begin(), ticks.end(),
                     [](const cTickLabelAngle& a, const cTickLabelAngle& b) { return a.x0 < b.x0; });
}

void wxSinglePlotWidgetAxis::computeAngleTicksForPolarPlot(const wxAxisTextMetricsVirtual& metrics,
                                                           double centreX, double centreY, double radius)
{
    mAngleTicks.clear();
    std::vector<cTickLabelAngle> candidates;
    for (const cAngleLabel& label : angle_labels) {
        cTickLabelAngle tick;
        tick.kind = tick_labelled;
        tick.angle = label.degrees;
        tick.value = label.degrees;
        tick.text = label.text;
        tick.position = tick.exactPosition = radius;
        const double a = label.degrees * pi / 180.0;
        const double c = std::cos(a), s = std::sin(a);
        const double x = centreX + (radius + angle_label_gap) * c;
        const double y = centreY - (radius + angle_label_gap) * s;
        const double w = metrics.getTextWidth(tick.text), h = metrics.getTextHeight(tick.text);
        // The label lies outside the circle: anchored at its near corner or edge midpoint.
        tick.x0 = c > 0.01 ? x : (c < -0.01 ? x - w : x - 0.5 * w);
        tick.y0 = s > 0.01 ? y - h : (s < -0.01 ? y : y - 0.5 * h);
        tick.x1 = tick.x0 + w;
        tick.y1 = tick.y0 + h;
        tick.textX = tick.x0;
        tick.textY = tick.y0;
        candidates.push_back(tick);
    }
    sortAngleTicksIncreasingTextPositionX0(candidates);
    std::vector<cTickLabelAngle> kept;
    for (const cTickLabelAngle& tick : candidates) {
        const bool free = std::all_of(kept.begin(), kept.end(),
                                      [&](const cTickLabelAngle& k) { return tick.checkTextDoesntIntersect(k); });
        if (free)
            kept.push_back(tick);
    }
    // Around the circle in the order of the angles, as they are read.
    std::stable_sort(kept.begin(), kept.end(),
                     [](const cTickLabelAngle& a, const cTickLabelAngle& b) { return a.angle < b.angle; });
    mAngleTicks = std::move(kept);
}

void wxSinglePlotWidgetAxis::computePolarAxesTicks(const wxAxisTextMetricsVirtual& metrics, double centreX,
                                                   double centreY, double radius)
{
    clearTicks();
    mSmithCircles.clear();
    double minRadius = 0.0, maxRadius = 1.0;
    computeMinMaxRadiusForPolarPlot(minRadius, maxRadius);
    const double range = maxRadius - minRadius;
    double distance = 0.0;
    computeTickDistance(range, distance);
    unsigned subdivisions = 2;
    if (range < 10.0 * distance) {
        if (range < 5.0 * distance) {
            distance *= 0.2;
            subdivisions = 5;
        } else {
            distance *= 0.5;
        }
    }
    int precision = 0;
    double textWidth = 0.0, textHeight = 0.0;
    computeLabelPrecision(metrics, minRadius, maxRadius, distance, precision, textWidth, textHeight);
    // The radius is read along the horizontal: as many labels as fit side by side.
    const double charHeight = metrics.getTextHeight("0");
    const double space = 2.0 * charHeight < textWidth ? textWidth + 2.0 * charHeight : 2.0 * textWidth;
    const auto count = static_cast<int64_t>(std::floor(range / distance + 1e-9));
    const double labels = std::max(1.0, std::round(radius / std::max(space, 1.0)));
    while (labels * subdivisions < static_cast<double>(count))
        subdivisions *= 2;
    const double pixelsPerUnit = radius > 0.0 ? radius / range : 0.0;
    for (int64_t i = 0; i <= count && i <= 100000; ++i) {
        const double v = minRadius + static_cast<double>(i) * distance;
        cTickLabel tick;
        tick.value = v;
        tick.exactPosition = (v - minRadius) * pixelsPerUnit;
        tick.position = std::round(tick.exactPosition);
        if (i % subdivisions == 0) {
            tick.kind = std::fabs(v) < 0.01 * distance ? tick_on_zero : tick_labelled;
            tick.text = tick.kind == tick_on_zero ? "0.0" : doubleToStr(precision, v * mLabelScaleFactor);
        }
        mTicks.push_back(tick);
    }
    computeAngleTicksForPolarPlot(metrics, centreX, centreY, radius);
}

void wxSinglePlotWidgetAxis::pushAxisTickSmith(double value, bool reactance, bool admittance)
{
    cSmithCircle circle;
    circle.reactance = reactance;
    circle.value = value;
    circle.admittance = admittance;
    if (!reactance) {
        if (value <= -1.0 || !std::isfinite(value))
            return;  // no circle of constant resistance -1 or below inside the chart
        circle.centreX = value / (1.0 + value);
        circle.radius = 1.0 / (1.0 + value);
    } else {
        if (value == 0.0 || !std::isfinite(value))
            return;  // reactance 0 is the real axis, drawn as a line
        circle.centreX = 1.0;
        circle.centreY = 1.0 / value;
        circle.radius = 1.0 / std::fabs(value);
    }
    // The admittance chart is the impedance chart turned by half a turn.
    if (admittance) {
        circle.centreX = -circle.centreX;
        circle.centreY = -circle.centreY;
    }
    circle.text = doubleToStr(2, value);
    mSmithCircles.push_back(circle);
}

void wxSinglePlotWidgetAxis::computeSmithAxesTicks(const wxAxisTextMetricsVirtual& metrics, double centreX,
                                                   double centreY, double radius)
{
    clearTicks();
    mSmithCircles.clear();
    static constexpr std::array<double, 6> resistances = {0.0, 0.2, 0.5, 1.0, 2.0, 5.0};
    static constexpr std::array<double, 10> reactances = {0.2, 0.5, 1.0, 2.0, 5.0, -0.2, -0.5, -1.0, -2.0, -5.0};
    const auto pushChart = [&](bool admittance) {
        for (double r : resistances)
            pushAxisTickSmith(r, false, admittance);
        for (double x : reactances)
            pushAxisTickSmith(x, true, admittance);
    };
    const bool admittanceFirst = checkIsAdmittanceGrid(mGridType);
    pushChart(admittanceFirst);
    if (mGridType == waveExplorerWidgetVirtual::smith_impedance_and_admittance_grid ||
        mGridType == waveExplorerWidgetVirtual::smith_admittance_and_impedance_grid)
        pushChart(!admittanceFirst);
    computeAngleTicksForPolarPlot(metrics, centreX, centreY, radius);
}

void wxSinglePlotWidgetAxis::resetPolarOrSmithLabelAndScaleFactor(bool imaginary)
{
    if (!waveExplorerWidgetVirtual::checkIsPolarOrSmithGrid(mGridType))
        return;
    if (!waveExplorerWidgetVirtual::checkIsSmithGrid(mGridType)) {
        mLabel = "Mag";
        mLabelScaleFactor = 1.0;
        mScaleFactorPrefix.clear();
        return;
    }
    if (checkIsAdmittanceGrid(mGridType)) {
        mLabel = imaginary ? "Im(Y) [mS]" : "Re(Y) [mS]";
        // Admittances read in millisiemens; from 1 ohm up a milli prefix keeps the numbers short.
        if (mNormalizingImpedance >= 1.0) {
            mLabelScaleFactor = 1.0 / mNormalizingImpedance;
            mScaleFactorPrefix = "m";
        } else {
            mLabelScaleFactor = 1000.0 / mNormalizingImpedance;
            mScaleFactorPrefix.clear();
        }
        return;
    }
    mLabel = std::string(imaginary ? "Im(Z) [" : "Re(Z) [") + doubleToStr(6, mNormalizingImpedance) + "]";
    mLabelScaleFactor = 1.0;
    mScaleFactorPrefix.clear();
}

}  // namespace vx3
