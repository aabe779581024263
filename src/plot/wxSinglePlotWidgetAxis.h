// One axis of a plot: the mapping between data and pixels, the limits of zoom and scroll, and the
// ticks with their labels. Free of any toolkit: texts are measured through wxAxisTextMetricsVirtual.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/cDoubleDouble.h"
#include "plot/wxAxisTextMetricsVirtual.h"

namespace vx3 {

class wxCurveDescriptionBase;

namespace singlePlotWidgetAxis {

enum tick_kind : int { tick_on_zero = 0, tick_labelled = 1, tick_subdivision = 2 };

struct cTickLabel {
    int kind = tick_subdivision;
    double position = 0.0;        // pixel, rounded
    double exactPosition = 0.0;   // pixel before rounding
    double textX = -1000.0;       // set when the label is drawn
    double textY = -1000.0;
    std::string text;             // empty: no label
    double value = 0.0;           // the tick's value is value + valueLow exactly
    double valueLow = 0.0;
    cDoubleDouble exactValue() const { return cDoubleDouble(value, valueLow); }
};

// An angle label of a polar or Smith grid: a tick with the rectangle its text covers (pixels,
// y downwards), so that labels around the circle can be thinned where they would touch.
struct cTickLabelAngle : cTickLabel {
    double angle = 0.0;  // degrees, counter-clockwise from the positive real axis
    double x0 = 0.0, y0 = 0.0, x1 = 0.0, y1 = 0.0;
    bool checkTextIsVisible(double left, double top, double right, double bottom) const
    {
        return x0 >= left && x1 <= right && y0 >= top && y1 <= bottom;
    }
    // Rectangles that merely touch count as intersecting: such labels read as one.
    bool checkTextDoesntIntersectX(const cTickLabelAngle& other) const { return x1 < other.x0 || other.x1 < x0; }
    bool checkTextDoesntIntersectY(const cTickLabelAngle& other) const { return y1 < other.y0 || other.y1 < y0; }
    bool checkTextDoesntIntersect(const cTickLabelAngle& other) const
    {
        return checkTextDoesntIntersectX(other) || checkTextDoesntIntersectY(other);
    }
};

// A circle of a Smith grid in the plane of the reflection coefficient (unit circle = |G| 1).
struct cSmithCircle {
    bool reactance = false;  // constant reactance (susceptance) arc, else constant resistance circle
    bool admittance = false; // of the admittance chart (the impedance chart turned by half a turn)
    double value = 0.0;      // normalised resistance or reactance
    double centreX = 0.0, centreY = 0.0, radius = 0.0;
    std::string text;
};

// The few settings of the user's configuration that the axis arithmetic needs.
struct cAxisSettings {
    bool zoomLimit = true;          // views may not leave the curves' bounding box (plus margin)
    double tickCrossSize = 1.0;     // configured size; the cross is this * 6 pixels
    bool timeStampLocalTime = true; // time stamp labels in local time, else in UTC
    std::string timeZoneText;       // shown in the label of a date axis; empty: the system's zone name
    // The colours of an axis by its state (0xrrggbb): plain, or showing offsets from one value.
    unsigned axisColour = 0x000000;
    unsigned disabledAxisColour = 0xa0a0a0;
    unsigned deltaAxisColour = 0x0000c0;
    unsigned disabledDeltaAxisColour = 0x9090d0;
};

// Classes of a time stamp axis's range, from the tick distance.
enum time_stamp_class : int {
    time_stamp_plain = 0,
    time_stamp_seconds = 1,
    time_stamp_minutes = 2,
    time_stamp_hours = 3,
    time_stamp_days = 4,
    time_stamp_weeks = 5,
    time_stamp_months = 6,
};

constexpr unsigned time_stamp_unit_identifier = 0x3c;  // data unit of seconds since the epoch
constexpr double smallest_range = 1e-40;
constexpr double largest_value = 1e+100;
constexpr double smallest_log_value = 1e-100;

}  // namespace singlePlotWidgetAxis

class wxSinglePlotWidgetAxis {
public:
    explicit wxSinglePlotWidgetAxis(const singlePlotWidgetAxis::cAxisSettings& settings = {});
    virtual ~wxSinglePlotWidgetAxis() = default;

    // --- state -------------------------------------------------------------------------------
    bool checkIsLog() const { return mIsLog; }
    void setLog(bool log) { mIsLog = log; mPixelCacheStale = true; }
    double getScale() const { return mScale; }
    double getInverseScale() const { return mInverseScale; }
    void setScale(double scale);
    double getMin() const { return mMin; }
    double getMax() const { return mMax; }
    double getLogOffset() const { return mLogOffset; }
    double getPixelOfMin() const { return mPixelOfMin; }
    // Sets the view and the scale that puts min at pixelLow and max at pixelHigh (log or linear).
    bool setView(double min, double max, double pixelLow, double pixelHigh);

    const singlePlotWidgetAxis::cAxisSettings& getSettings() const { return mSettings; }
    void setSettings(const singlePlotWidgetAxis::cAxisSettings& settings) { mSettings = settings; }
    int getTickCrossSize() const;

    double getLabelScaleFactor() const { return mLabelScaleFactor; }
    // factor: the unit per displayed unit (1e-9 shows nanoseconds); the labels multiply by 1 / factor.
    void setLabelScaleFactor(double factor, const std::string& prefix = std::string());
    const std::string& getScaleFactorPrefix() const { return mScaleFactorPrefix; }
    int getLabelPrecision() const { return mLabelPrecision; }
    int getFixedPrecision() const { return mFixedPrecision; }
    void setFixedPrecision(int precision) { mFixedPrecision = precision; }
    double getUpdateMin() const { return mUpdateMin; }
    double getUpdateMax() const { return mUpdateMax; }
    unsigned getDataUnitIdentifier() const { return mDataUnitIdentifier; }
    void setDataUnitIdentifier(unsigned unit) { mDataUnitIdentifier = unit; }
    bool checkIsTimeStampAxis() const;
    void setTimeStampAsDate(bool asDate) { mTimeStampAsDate = asDate; }
    bool checkTimeStampAsDate() const { return mTimeStampAsDate; }
    unsigned getTimeStampConversion() const { return mTimeStampConversion; }
    void setTimeStampConversion(unsigned conversion) { mTimeStampConversion = conversion; }
    int getGridType() const { return mGridType; }
    void setGridType(int type) { mGridType = type; }
    double getZoomLimitMargin() const { return mZoomLimitMargin; }
    void setZoomLimitMargin(double margin) { mZoomLimitMargin = margin; }

    // Returns whether the box changed.
    bool setBoundingBox(double min, double max);
    double getBoundingBoxMin() const { return mBoundingBoxMin; }
    double getBoundingBoxMax() const { return mBoundingBoxMax; }
    // Orders and widens a box so that it has a usable positive width.
    static void fixBBoxValues(double& min, double& max);

    const std::vector<singlePlotWidgetAxis::cTickLabel>& getTicks() const { return mTicks; }
    int getDeltaReferenceIndex() const { return mDeltaReferenceIndex; }
    double getTickDistance() const { return mCacheTickDistance; }
    unsigned getTickSubdivisions() const { return mCacheSubdivisions; }
    double getLabelSpace() const { return mLabelSpace; }

    // --- mapping -----------------------------------------------------------------------------
    double toInt(double value) const;
    double toInt(double value, cDoubleDouble& exact) const;
    double toDouble(double pixel) const;
    cDoubleDouble toDoubleExact(double pixel) const;  // linear axes only
    cDoubleDouble toIntLin(const cDoubleDouble& value) const;
    cDoubleDouble toIntLog(const cDoubleDouble& value) const;
    double toDoubleDistanceLog(double pixels) const;  // factor spanned by a pixel distance

    // --- zoom and scroll ---------------------------------------------------------------------
    bool zoomFactor(double factor, double centre, double pixelLow, double pixelHigh);
    bool checkAxisMaxZoomExceeded(double factor) const;
    bool checkAxisMaxZoomExceeded(double factor, double centre, double pixelLow, double pixelHigh) const;
    void limitZoomRange(double& min, double& max) const;
    void getZoomRangeMinMax(double& min, double& max) const;
    void getZoomRangeMinMax(double& min, double& max, double range) const;
    bool scrollLinear(double distance);
    bool scroll(double pixels);
    bool updateScaleForLogAxis(double min, double max, double pixelLow, double pixelHigh);

    // --- scroll bar ----------------------------------------------------------------------------
    // The view shows the whole bounding box (to a rounding).
    bool checkIsUnzoomed() const;
    // Part of the box lies outside the view.
    bool checkNeedsScrollBar() const;
    // The scroll bar of the view within the box and the view together, in steps of
    // scroll_bar_range (decades on a log axis): the first step shown and the steps shown.
    static constexpr int scroll_bar_range = 10000;
    void getScrollBarSize(int& position, int& thumbSize) const;
    // Centres the view on value, keeping its width, as far as the zoom limit lets it.
    bool clickScrollToPosition(double value);
    void computeMinMaxUpdate(double pixelLow, double pixelHigh);

    // --- numbers as text ---------------------------------------------------------------------
    static int computeExponent(double value);
    void computeLabelPrecision(double min, double max, double distance, int& precision) const;
    // The drawing form: also the width and height of the widest of the texts of min, max and
    // distance; a positive maxTextWidth lowers the precision (not below 2) until the text fits.
    void computeLabelPrecision(const wxAxisTextMetricsVirtual& metrics, double min, double max,
                               double distance, int& precision, double& textWidth,
                               double& textHeight, double maxTextWidth = -1.0) const;
    int computeRequiredPrecision(double min, double max, double distance) const;
    std::string doubleToStr(int precision, double value) const;
    std::string doubleToStr(int precision, double value, double& error) const;

    // --- ticks -------------------------------------------------------------------------------
    static void computeTickDistance(double range, double& distance);
    static void computeFirstTick(double min, double distance, unsigned subdivisions,
                                 cDoubleDouble& firstValue, int64_t& index, bool& overflow);
    static void computeFirstTick(double min, const cDoubleDouble& distance, unsigned subdivisions,
                                 cDoubleDouble& firstValue, int64_t& index, bool& overflow);
    virtual void computeAxesTicks(const wxAxisTextMetricsVirtual& metrics, double pixelHigh) = 0;
    // Distance, subdivisions and precision of linear ticks over [min, max] (the view's scale),
    // with the size of the widest label; the distance and subdivisions are cached per scale.
    void computeTicksLinear(const wxAxisTextMetricsVirtual& metrics, double pixelHigh, double min, double max,
                            double& distance, int& precision, unsigned& subdivisions, double& textWidth,
                            double& textHeight);
    // timeStampClass >= 0 labels with clock times and dates; alignment shifts the multiples of
    // the distance on which ticks stand (seconds of a time zone or to a Monday).
    void computeAxesTicksLinear(const wxAxisTextMetricsVirtual& metrics, double pixelHigh,
                                double distance, unsigned subdivisions, int precision,
                                int timeStampClass = -1, double alignment = 0.0);
    virtual void computeAxesTicksLog(const wxAxisTextMetricsVirtual& metrics, double pixelHigh);
    void removeDuplicatedLabels();
    void computeDeltaLabels(const wxAxisTextMetricsVirtual& metrics, int reference, double step,
                            double pixelHigh);
    void simplifyTickLabelsLog(const wxAxisTextMetricsVirtual& metrics);
    void clearTicks();

    // --- polar and Smith grids -----------------------------------------------------------------
    void setNormalizingImpedance(double impedance);
    double getNormalizingImpedance() const { return mNormalizingImpedance; }
    const std::string& getLabel() const { return mLabel; }
    const std::vector<singlePlotWidgetAxis::cTickLabelAngle>& getAngleTicks() const { return mAngleTicks; }
    const std::vector<singlePlotWidgetAxis::cSmithCircle>& getSmithCircles() const { return mSmithCircles; }
    // The radii shown: 0 to the largest magnitude of the view (a Smith grid: the unit circle).
    void computeMinMaxRadiusForPolarPlot(double& minRadius, double& maxRadius) const;
    // Angle labels outside a circle of radius pixels around (centreX, centreY), touching ones dropped.
    void computeAngleTicksForPolarPlot(const wxAxisTextMetricsVirtual& metrics, double centreX,
                                       double centreY, double radius);
    static void sortAngleTicksIncreasingTextPositionX0(std::vector<singlePlotWidgetAxis::cTickLabelAngle>& ticks);
    // Radius ticks (position = pixels from the centre) by the linear tick rules, and the angle labels.
    void computePolarAxesTicks(const wxAxisTextMetricsVirtual& metrics, double centreX, double centreY,
                               double radius);
    // One circle of constant resistance, or arc of constant reactance (value normalised).
    void pushAxisTickSmith(double value, bool reactance, bool admittance);
    // The usual Smith chart circles and arcs, with the angle labels. A mixed grid holds both
    // charts, the one named first in the grid's name first.
    void computeSmithAxesTicks(const wxAxisTextMetricsVirtual& metrics, double centreX, double centreY,
                               double radius);
    // The axis label and scale factor of a polar or Smith grid (imaginary: the vertical axis).
    void resetPolarOrSmithLabelAndScaleFactor(bool imaginary);

    // --- curves, units and labels ---------------------------------------------------------------
    // A vertical axis reads the imaginary part on polar and Smith grids.
    virtual bool checkIsVerticalAxis() const { return false; }
    // The axis of a curve's values: their unit seen through the complex conversion, the
    // enumeration texts of an enumerated curve, the label and its scale factor.
    void init(const wxCurveDescriptionBase& description, unsigned conversion);
    // The axis of a curve's x values: the unit and name of its sweep variable. resetLabel also
    // forgets a label and scale the user set.
    void initSweep(const wxCurveDescriptionBase& description, bool resetLabel);
    // Takes over another axis: view, scale, log flag, unit, label, scale factor and box.
    void synchronizeAxis(const wxSinglePlotWidgetAxis& other);
    // The other axis's unit, label and data range, on this axis's own pixels.
    bool synchronizeAxis(const wxSinglePlotWidgetAxis& other, double pixelLow, double pixelHigh);
    // A data range received from a linked plot; refused (nothing changes) like any view change.
    bool synchronizeAxis(double min, double max, double pixelLow, double pixelHigh);
    // A label the user chose; an empty text gives the automatic label back.
    void resetLabel(const std::string& label);
    // Forgets the user's label and scale: both follow the curves again.
    void resetLabelAndScaleFactor();
    void setScaleFactorByUser(double factor, const std::string& prefix);
    bool checkLabelSetByUser() const { return mLabelSetByUser; }
    bool checkScaleSetByUser() const { return mScaleSetByUser; }
    // Label and scale factor for the visible range of the curve's unit (1e-9 s reads "ns"),
    // unless the user fixed the scale; on polar and Smith grids their own labels.
    void adjustScaleFactor(const wxCurveDescriptionBase& description, unsigned conversion);
    // The quantity and unit texts the label is made of ("time", "s"), before the scale prefix.
    const std::string& getAxisName() const { return mAxisName; }
    const std::string& getUnitText() const { return mUnitText; }
    const std::vector<std::string>& getEnumerationTexts() const { return mEnumerationTexts; }
    void setEnumerationTexts(const std::vector<std::string>& texts) { mEnumerationTexts = texts; }
    // The enumeration text of a whole value on an enumerated axis; false otherwise.
    bool replaceByEnumStringValue(double value, std::string& text) const;

    // The colour the axis is drawn in: a delta axis (one value and offsets) stands out, an axis
    // of a plot that isn't the active one is greyed.
    unsigned getCorrespondingColor(bool enabled) const;

    // A position the user typed: a number with an engineering suffix ("2.5u"), an expression of
    // the calculator ("1u + 250n", "2*pi", "1e3/4"), on a time stamp axis also a date and time
    // ("2026-11-24 08:30:00", "2026-11-24T08:30:00.25"). False with the reason in message.
    bool evaluatePosition(const std::string& text, double& value, std::string& message) const;
    // Date and clock time of a time stamp for readouts, in the axis's date format and time zone.
    std::string convertTimeStampToString(double seconds, int precision = 0) const;
    // The time zone text shown in the label of a date axis.
    std::string getTimeZoneText() const;

    // --- time stamps (seconds since the epoch) ------------------------------------------------
    // Returns the time_stamp_class of the chosen distance; at most maxTicks ticks of that distance.
    static int computeTickDistanceTimeStamp(double min, double max, double& distance,
                                            unsigned& subdivisions, double maxTicks = 6.0);
    static int computeTimeStampPrecision(int timeStampClass, double distance);
    std::string convertTimeStampToStringForAxes(double seconds, int timeStampClass,
                                                int precision) const;
    void computeAxesTicksTimeStamp(const wxAxisTextMetricsVirtual& metrics, double pixelHigh);
    // Ticks on the first days of months, or of years, for views of months and longer; false
    // (nothing changed) beyond the years the calendar covers.
    bool computeAxesTicksCalendar(const wxAxisTextMetricsVirtual& metrics, double pixelHigh, double maxTicks);
    // The first instant of month monthIndex counted from January of year 0 (year * 12 + month - 1).
    double convertCalendarMonthToTimeStamp(int64_t monthIndex) const;

protected:
    // The space one label needs along the axis, from the measured text.
    virtual double computeLabelSpace(double textWidth, double textHeight, double charHeight) const = 0;
    // How far a label reaches along the axis.
    virtual double computeLabelExtent(const wxAxisTextMetricsVirtual& metrics, const std::string& text) const = 0;
    // The widest label text allowed; not positive for no bound.
    virtual double getMaxLabelTextWidth() const { return -1.0; }
    // Replaces the ticks by the linear ticks of the present view.
    void computeAxesTicksLinearView(const wxAxisTextMetricsVirtual& metrics, double pixelHigh);
    bool checkValuesWithinLimits(double min, double max, double range) const;
    void recomputeScaleFromPixels(double pixelLow, double pixelHigh);
    double pixelPositionOf(const cDoubleDouble& value) const;

    struct cSavedView {
        double scale, inverse, min, max, logOffset, pixelOfMin;
    };
    cSavedView saveView() const;
    void restoreView(const cSavedView& saved);

    bool mIsLog = false;
    double mInverseScale = 1.0;
    double mScale = 1.0;
    bool mPixelCacheStale = true;
    double mMin = 0.0;
    double mLogOffset = 0.0;
    double mPixelOfMin = 0.0;
    double mMax = 1.0;
    singlePlotWidgetAxis::cAxisSettings mSettings;
    void updateLabel();

    std::string mLabel;
    std::vector<std::string> mLabelLines;
    std::string mAxisName;
    std::string mUnitText;
    std::string mScaleFactorPrefix;
    double mLabelScaleFactor = 1.0;
    double mNormalizingImpedance = 50.0;
    int mLabelPrecision = 6;
    int mFixedPrecision = -1;
    bool mLabelSetByUser = false;
    bool mScaleSetByUser = false;
    double mUpdateMin = 0.0;
    double mUpdateMax = 1.0;
    double mUpdatePixelLow = 0.0;
    double mUpdatePixelHigh = 0.0;
    unsigned mDataUnitIdentifier = 0;
    double mBoundingBoxMin = 0.0;
    double mBoundingBoxMax = 1.0;
    bool mBoundingBoxInitialised = false;
    std::vector<std::string> mEnumerationTexts;
    std::vector<singlePlotWidgetAxis::cTickLabel> mTicks;
    std::vector<singlePlotWidgetAxis::cTickLabelAngle> mAngleTicks;
    std::vector<singlePlotWidgetAxis::cSmithCircle> mSmithCircles;
    int mDeltaReferenceIndex = -1;
    double mCacheScale = 0.0;
    bool mCacheValid = false;
    double mCachePixels = 0.0;
    double mCacheLabelScaleFactor = 1.0;
    double mCacheTickDistance = 0.0;
    unsigned mCacheSubdivisions = 1;
    double mLabelSpace = 0.0;
    unsigned mTimeStampConversion = 2;
    bool mTimeStampAsDate = false;
    double mZoomLimitMargin = 0.01;
    int mGridType = 2;
};

}  // namespace vx3
