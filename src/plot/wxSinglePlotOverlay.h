// What lies on top of a single plot's curves: the legend, the marker and cursor rulers with their
// value boxes, and the annotations. It is drawn over the curves' bitmap, so none of it costs a
// redraw of curves. All arithmetic is here, without a toolkit; drawing reads the boxes it laid out.
#pragma once

#include <string>
#include <vector>

#include "plot/wxPlotAnnotation.h"
#include "plot/wxPlotBoxLayout.h"
#include "plot/wxSinglePlotWidgetLegend.h"
#include "plot/wxSinglePlotWidgetRuler.h"

namespace vx3 {

class cCurvePlotDataSection;
class cPlotWidgetCommon;
class cVxLogger;
class wxAnalogPlotVirtual;

namespace singlePlotOverlay {

// The plot's ruler state: 0 no ruler, 1 the cursor follows and no marker yet, 2 the marker is set
// and the cursor follows, 3 both set; 4 to 6 a ruler is being dragged.
enum ruler_state : int {
    no_ruler = 0,
    waiting_for_marker = 1,
    waiting_for_cursor = 2,
    both_rulers_set = 3,
    moving_marker = 4,
    moving_cursor = 5,
    moving_both = 6,
};

struct cOverlaySettings {
    int rulerStyle = waveExplorerConfiguration::ruler_values_in_non_overlapping_annotations;
    bool snapToGrid = true;       // cursor_snap_to_grid
    bool hitTest = true;          // the closest-curve hit test
    double hitTolerance = 6.0;    // pixels
    double boxPadding = 3.0;      // pixels between a box's frame and its text
    double riseLowPercent = 10.0;   // levels of rise and fall times, in percent of the swing
    double riseHighPercent = 90.0;
};

enum box_kind : int { ruler_head_box = 0, ruler_value_box = 1, annotation_box = 2, text_annotation_box = 3 };

// One text box as laid out for drawing.
struct cOverlayBox {
    int kind = annotation_box;
    int owner = 0;                 // the ruler type, or the annotation's index in its list
    bool global = false;           // a text annotation of the plot, not of a curve
    size_t curveIndex = 0;
    bool imaginary = false;
    std::vector<std::string> lines;
    unsigned colour = 0;           // frame and connector: the curve's colour, or the ruler's
    plotBoxLayout::cItem item;     // wished, placed, anchor
};

// Annotations of one curve, kept by the curve's identity so that a curve that comes back from
// the undo history finds its annotations again.
struct cCurveAnnotations {
    const cCurvePlotDataSection* section = nullptr;
    uint64_t curve = 0;
    unsigned sweep = 0;
    std::vector<singlePlotWidgetAnnotations::wxAnnotation> real;
    std::vector<singlePlotWidgetAnnotations::wxAnnotation> imag;
};

}  // namespace singlePlotOverlay

class wxSinglePlotOverlay {
public:
    wxSinglePlotOverlay(cPlotWidgetCommon& plot, const cVxLogger& logger);

    singlePlotOverlay::cOverlaySettings settings;
    // Where messages for the user and ruler changes go besides the log; may be null.
    void setPage(wxAnalogPlotVirtual* page) { mPage = page; }
    wxSinglePlotWidgetLegend& legend() { return mLegend; }
    const wxSinglePlotWidgetLegend& legend() const { return mLegend; }
    wxSinglePlotWidgetRuler& marker() { return mMarker; }
    const wxSinglePlotWidgetRuler& marker() const { return mMarker; }
    wxSinglePlotWidgetRuler& cursor() { return mCursor; }
    const wxSinglePlotWidgetRuler& cursor() const { return mCursor; }
    // The ruler of a name ("M1", "C1", any case), or null.
    wxSinglePlotWidgetRuler* findRuler(const std::string& name);

    // --- rulers ------------------------------------------------------------------------------
    int getRulerState() const { return mRulerState; }
    // Enters the ruler mode with the cursor at canvas pixel (x, y); false on an empty plot.
    bool activateRulers(double x, double y);
    // Leaves the ruler mode (Escape): the rulers that are set stay.
    void escapePressedAction();
    // A left click on the canvas in the ruler mode; false when it did nothing.
    bool leftClick(double x, double y);
    // The mouse moved over the canvas: the following ruler goes along.
    bool mouseMoved(double x, double y);
    // set_cursor: the ruler of the name (C1 when empty) at x in data units.
    bool setCursor(double x, const std::string& name);
    bool clearRuler(const std::string& name);
    void clearRulers();
    // A ruler (marker_ruler, cursor_ruler) taken from a connected plot: shown here and not told
    // back to the page.
    bool setRulerFromConnection(int type, double x);
    void clearRulerFromConnection(int type);

    // --- moving a ruler that is set --------------------------------------------------------------
    // The ruler whose line lies within tolerance pixels of canvas pixel x, the cursor first: its
    // type, or -1.
    int rulerHitTest(double x, double tolerance) const;
    bool startMovingRuler(int type);
    bool checkIsMovingRuler() const;
    // During a drag: the ruler goes to the mouse (snapping as a ruler set by a click does).
    bool moveRuler(double x, double y);
    // Ends a drag and tells the page where the ruler stayed: the ruler's type, -1 when none moved.
    int endMovingRuler();
    // The arrow keys: to the next sample in the direction (by pixels when not snapping); the page
    // is told.
    bool moveRulerByKey(int type, int pixels);

    // --- closest curve -------------------------------------------------------------------------
    bool getClosestCurveIndex(double x, double y, size_t& index, bool& imaginary) const;

    // --- annotations ----------------------------------------------------------------------------
    // A text on the canvas at (x, y) in data units (NaN: the top left of the view).
    bool addTextAnnotation(const std::string& text, double x = NAN, double y = NAN);
    // An annotation of a type (name or number) on curve index, points as x, y pairs.
    bool addCurveAnnotation(size_t curveIndex, const std::string& type, const std::string& text,
                            const std::vector<double>& points, bool imaginary = false);
    // The rise or fall time of curve index between the marker and the cursor: the swing from the
    // value at the first ruler to the value at the second, and the first crossings of its low and
    // high levels after the first ruler. A "Rise Time" or "Fall Time" annotation by the direction.
    bool addRiseFallAnnotation(size_t curveIndex, bool imaginary = false);
    // "Add Annotation" by mouse: a "Point" reading "<Y Value>" at the sample of the curve closest
    // to canvas pixel (x, y). False (and nothing added) when no curve lies within the hit
    // tolerance. Tells which curve and the point's data coordinates, for the command log.
    bool annotatePointAt(double pixelX, double pixelY, size_t& curveIndex, bool& imaginary, double& x, double& y);
    bool clearCurveAnnotations(size_t curveIndex);
    void clearAnnotations();
    const std::vector<singlePlotWidgetAnnotations::wxAnnotation>& getGlobalAnnotations() const { return mGlobal; }
    // The annotations of curve index (real or imaginary part); null when it has none.
    const std::vector<singlePlotWidgetAnnotations::wxAnnotation>* getCurveAnnotations(size_t curveIndex,
                                                                                       bool imaginary) const;
    size_t getNbAnnotations() const;
    // What the placeholders of an annotation of curve index read.
    singlePlotWidgetAnnotations::cCurveInformationContext makeInformationContext(int curveIndex, bool imaginary) const;

    // --- the plot changed -----------------------------------------------------------------------
    // Curves added or removed, a reload: the legend's entries and the rulers' values anew; the
    // annotations of curves that are gone for good (their section closed) are dropped.
    void curvesChanged();
    void removeAnnotationsOfSection(const cCurvePlotDataSection* section);
    // The view moved: rulers' pixels anew.
    void viewChanged();

    // --- layout ---------------------------------------------------------------------------------
    // The width a side legend takes from the widget (0 for legends in the canvas).
    double computeLegendSideWidth(const wxAxisTextMetricsVirtual& metrics, double widgetWidth) const
    {
        return mLegend.computeSideWidth(metrics, widgetWidth);
    }
    // Places the legend and every text box; canvas and widget in pixels, y upwards.
    void layout(const wxAxisTextMetricsVirtual& metrics, const plotBoxLayout::cBox& widget,
                const plotBoxLayout::cBox& canvas);
    const std::vector<singlePlotOverlay::cOverlayBox>& getBoxes() const { return mBoxes; }
    const plotBoxLayout::cBox& getCanvas() const { return mCanvas; }
    // The annotation whose text box holds (x, y): its box index, or -1.
    int annotationHitTest(double x, double y) const;

private:
    void failed(const std::string& message) const;
    int findCurveAnnotations(size_t curveIndex) const;
    void addRulerBoxes(const wxAxisTextMetricsVirtual& metrics, const wxSinglePlotWidgetRuler& ruler,
                       std::vector<singlePlotOverlay::cOverlayBox>& heads,
                       std::vector<singlePlotOverlay::cOverlayBox>& values) const;
    singlePlotOverlay::cOverlayBox makeBox(const wxAxisTextMetricsVirtual& metrics, const std::string& text, int kind,
                                           double anchorX, double anchorY, double dx, double dy) const;
    void addAnnotationBoxes(const wxAxisTextMetricsVirtual& metrics, std::vector<singlePlotOverlay::cOverlayBox>& texts,
                            std::vector<singlePlotOverlay::cOverlayBox>& others) const;

    cPlotWidgetCommon& mPlot;
    const cVxLogger& mLogger;
    wxAnalogPlotVirtual* mPage = nullptr;
    wxSinglePlotWidgetLegend mLegend;
    wxSinglePlotWidgetRuler mMarker;
    wxSinglePlotWidgetRuler mCursor;
    wxSinglePlotWidgetRuler mHitTest;
    void clearRulersLocally();
    wxSinglePlotWidgetRuler* rulerOfType(int type);

    int mRulerState = singlePlotOverlay::no_ruler;
    int mStateBeforeMove = singlePlotOverlay::no_ruler;
    std::vector<singlePlotWidgetAnnotations::wxAnnotation> mGlobal;
    std::vector<singlePlotOverlay::cCurveAnnotations> mCurveAnnotations;
    std::vector<singlePlotOverlay::cOverlayBox> mBoxes;
    plotBoxLayout::cBox mCanvas;
};

}  // namespace vx3
