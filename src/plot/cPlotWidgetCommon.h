// Everything of a single plot that does not touch a widget: its curves, its three axes and their
// views, the bounding boxes, zoom and scroll with their limits, the view history, the undo history
// of added and removed curves, reloads and the sliding window of growing curves. The widget
// (wxSinglePlotWidgetImpl) adds painting and input on top, through the hooks at the end.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "plot/plotWindowType.h"
#include "plot/wxAnalogPlotVirtual.h"
#include "plot/wxSinglePlotViewPortList.h"
#include "plot/wxSinglePlotWidgetData.h"
#include "plot/wxSinglePlotWidgetUndoBuffer.h"
#include "plot/wxSinglePlotWidgetXAxis.h"
#include "plot/wxSinglePlotWidgetYAxis.h"

namespace vx3 {

class cCurvePlotDataFile;
class cCurvePlotDataSection;
class cFileDbSupport;
class cVxLogger;

namespace plotWidgetCommon {

// The user's settings that the plot's arithmetic reads.
struct cPlotSettings {
    double zoomStep = 0.9;       // one wheel notch or zoom_out step scales by this
    double margin = 0.01;        // share of the bounding box left free around the curves
    bool checkXAxisUnit = true;  // refuse curves over another X unit
    bool checkYAxisUnit = true;  // put curves of another Y unit on the second axis, or refuse them
    bool zoomLimit = true;       // views may not leave the bounding box (and margin)
};

// Where the canvas lies in the widget's pixels, y upwards (the X axis at yLow, the Y axes at xLow).
struct cCanvasLayout {
    double xLow = 0.0, xHigh = 1.0;
    double yLow = 0.0, yHigh = 1.0;
    bool operator==(const cCanvasLayout&) const = default;
};

// Operations collected from wheel steps and applied once by a short timer.
enum scheduled_operation_type : int {
    no_operation = 0,
    start_zoom_box = 3,
    start_selection_box = 4,
    click_highlighted_curve = 5,
    click_highlighted_curve_ctrl = 6,
    click_button = 7,
    click_button_2 = 8,
    scroll_x = 10,
    scroll_nothing_11 = 11,
    scroll_y0 = 12,
    scroll_y1 = 13,
    zoom_x_in = 14,
    zoom_x_out = 15,
    zoom_nothing_16 = 16,
    zoom_nothing_17 = 17,
    zoom_y0_in = 18,
    zoom_y0_out = 19,
    zoom_y1_in = 20,
    zoom_y1_out = 21,
    zoom_in = 22,
    zoom_out = 23,
};

// Timers the plot asks its widget to run.
enum timer_id : int { timer_scheduled_operation = 4, timer_sliding_window_pause = 5 };
constexpr int scheduled_operation_delay_ms = 30;

// The nine grid flags of a plot, in this order: zero lines, coarse lines, fine lines, each for
// x, y0 and y1.
enum grid_flag : int {
    x_zero_line = 0,
    y0_zero_line = 1,
    y1_zero_line = 2,
    x_coarse_grid = 3,
    y0_coarse_grid = 4,
    y1_coarse_grid = 5,
    x_fine_grid = 6,
    y0_fine_grid = 7,
    y1_fine_grid = 8,
    nb_grid_flags = 9,
};

constexpr double smallest_zoom_range = 1e-40;
constexpr double largest_zoom_value = 1e+100;

}  // namespace plotWidgetCommon

class cPlotWidgetCommon : public wxSinglePlotViewPortList, public wxSinglePlotWidgetUndoBuffer<wxSinglePlotWidgetData> {
public:
    // page may be null: the plot then takes its own defaults for everything it would ask.
    explicit cPlotWidgetCommon(const cVxLogger& logger, wxAnalogPlotVirtual* page = nullptr,
                               int windowType = waveExplorerWidgetVirtual::analog_plot);
    virtual ~cPlotWidgetCommon();
    cPlotWidgetCommon(const cPlotWidgetCommon&) = delete;
    cPlotWidgetCommon& operator=(const cPlotWidgetCommon&) = delete;

    // --- settings and geometry ----------------------------------------------------------------
    void setSettings(const plotWidgetCommon::cPlotSettings& settings);
    const plotWidgetCommon::cPlotSettings& getSettings() const { return mSettings; }
    // New pixels for the same view: the scales follow, the data range stays.
    void setCanvasLayout(const plotWidgetCommon::cCanvasLayout& layout);
    const plotWidgetCommon::cCanvasLayout& getCanvasLayout() const { return mLayout; }
    int getWindowType() const { return mWindowType; }
    void setPage(wxAnalogPlotVirtual* page) { mPage = page; }
    wxAnalogPlotVirtual* getPage() const { return mPage; }
    const cVxLogger& getLogger() const { return mLogger; }

    // --- axes ----------------------------------------------------------------------------------
    wxSinglePlotWidgetXAxis& xAxis() { return mXAxis; }
    const wxSinglePlotWidgetXAxis& xAxis() const { return mXAxis; }
    wxSinglePlotWidgetYAxis& yAxis(int index) { return index == 1 ? mY1Axis : mY0Axis; }
    const wxSinglePlotWidgetYAxis& yAxis(int index) const { return index == 1 ? mY1Axis : mY0Axis; }
    bool checkY1Active() const { return mY1Active; }
    // The present view: x, y0 and, with a second axis, y1 ranges.
    wxSinglePlotViewPort getCurrentView() const;

    // --- curves --------------------------------------------------------------------------------
    const std::vector<wxSinglePlotWidgetData>& getCurves() const { return mCurves; }
    size_t getNbOfCurves() const { return mCurves.size(); }
    // Adds curves as one undo step; false when none could be added (the reason is logged).
    bool addToPlot(const wxCurveDescription& description);
    bool addToPlot(const std::vector<wxCurveDescription>& descriptions,
                   unsigned position = singlePlotWidgetUndoBuffer::no_position);
    // One curve into the list; index tells where it is (new or already there). False: refused.
    bool addCurveToPlotData(const wxCurveDescription& description, unsigned realConversion, unsigned imagConversion,
                            size_t& index, unsigned position);
    // 0 for y0, 1 for y1, -1 refused (isXMismatch tells whether the X unit was the reason).
    int getCorrespondingAxis(const wxCurveDescription& description, unsigned unit, bool& isXMismatch) const;
    // Refuses curves whose values can't be drawn; the reason goes to the debug log.
    bool checkCurveCanBePlotted(const wxCurveDescription& description) const;
    // Removes the shown part (imaginary or real) of the curve at index, as one undo step.
    bool removeFromPlot(size_t index, bool imaginary = false);
    // Removes the curves at the indices (both parts) as one undo step.
    bool removeCurvesFromPlot(std::vector<size_t> indices);
    // Removes all curves as one undo step.
    bool clearCurves();
    // Empties the plot without an undo step: axes and views back to their defaults.
    void clear();
    bool performUndoAction();
    bool performRedoAction();
    // Lets go of every curve, undo steps included, without a redraw or a call to the page: the
    // store goes away before the plot does.
    void clearSectionPtrsForDestructor();
    // The store reloaded curves: extremes anew, a plot that was unzoomed unzooms again, a zoomed one
    // keeps its view.
    void redrawAfterReload(bool force = false);
    // A section is going away: its curves leave the plot and the undo history, without an undo step.
    void removeCurvesOfSection(const cCurvePlotDataSection* section);
    // Around a reload of a file, whose sections may go or change: before it, the curves of the
    // file let go of their values and remember section id and name (their undo steps go); after
    // it, each finds its section and curve again or leaves the plot, and the plot redraws as
    // after any reload (a zoomed view stays).
    void releaseCurvesForReload(const cFileDbSupport* file);
    void reattachCurvesAfterReload(cCurvePlotDataFile& store);
    // Why the last insertion failed, as "(...)" for a message; empty when nothing is known.
    std::string getDiagnosis() const;
    static std::string makeSureCurveNameIsNotTooLong(const std::string& name);

    // --- bounding boxes ------------------------------------------------------------------------
    bool computeBoundingBox();
    bool incrementBoundingBox(const wxSinglePlotWidgetData& curve);
    // Stores the three boxes (each fixed first); true when one changed.
    bool setBoundingBoxes(double xmin, double xmax, double y0min, double y0max, double y1min, double y1max);
    // Repairs a range so that it has a usable width (see the design notes); digital kinds keep 0.
    static void fixBBoxValues(double& min, double& max, int windowType);
    void fixBBoxValues(double& min, double& max) const { fixBBoxValues(min, max, mWindowType); }

    // --- views ---------------------------------------------------------------------------------
    // The only door to a new view; false and "Maximum zoom range reached." when refused.
    bool fitPrintMessage(double x0, double x1, double y0Min, double y0Max, double y1Min, double y1Max,
                         bool addViewPort, bool printMessage);
    bool unzoom(bool printMessage = true);
    bool unzoomX();
    bool unzoomY(bool printMessage = true);
    bool unzoomY0();
    bool unzoomY1();
    // Both Y unzoomed, X to [xMin, xMax].
    bool unzoomY(double xMin, double xMax, bool printMessage);
    bool checkIsUnzoomed() const { return mUnzoomed; }
    // Factors above 1 zoom in about the fixed point (mouse or centre of the canvas).
    bool zoomFactor(double fx, double fy0, double fy1);
    bool zoomIn(int steps = 1);
    bool zoomOut(int steps = 1);
    bool zoomX(int steps = 1);
    bool zoomOutX(int steps = 1);
    bool zoomY0(int steps = 1);
    bool zoomOutY0(int steps = 1);
    bool zoomY1(int steps = 1);
    bool zoomOutY1(int steps = 1);
    // A box in data units (the zoom command): NaN, infinite or reversed bounds are refused.
    bool zoomToBoxCmd(double x0, double x1, double y0, double y1);
    // A box in canvas pixels (a zoom box drawn with the mouse); a box of no size does nothing.
    bool zoomToBox(double px0, double py0, double px1, double py1);
    // +1 next, -1 previous; applies the stored view without recording it again.
    bool switchViewPorts(int direction);
    // Moves the view by pixels (positive: the curves move left / down); false when it can't move.
    bool scrollXPixels(double pixels, bool recordViewPort = true);
    bool scrollYPixels(int axis, double pixels, bool recordViewPort = true);
    // Switches the X axis between logarithmic and linear and unzooms X; false when the curves'
    // X values can't go on a log axis (none positive).
    bool enableLogXAxis(bool log);
    // The fixed point of zooms: kind 0 = the mouse is not over the plot (canvas centre).
    void setMousePosition(int kind, double x, double y);

    // --- grid, highlighting, position readout (cPlotWidgetCommonGrid.cpp) -----------------------
    // One of plotWidgetCommon::grid_flag; a change redraws the curves' bitmap.
    bool setGridFlag(int flag, bool on);
    bool checkGridFlag(int flag) const { return flag >= 0 && flag < plotWidgetCommon::nb_grid_flags && mGridFlags[flag]; }
    bool xZeroLine() const { return checkGridFlag(plotWidgetCommon::x_zero_line); }
    bool y0ZeroLine() const { return checkGridFlag(plotWidgetCommon::y0_zero_line); }
    bool y1ZeroLine() const { return checkGridFlag(plotWidgetCommon::y1_zero_line); }
    bool xCoarseGrid() const { return checkGridFlag(plotWidgetCommon::x_coarse_grid); }
    bool y0CoarseGrid() const { return checkGridFlag(plotWidgetCommon::y0_coarse_grid); }
    bool y1CoarseGrid() const { return checkGridFlag(plotWidgetCommon::y1_coarse_grid); }
    bool xFineGrid() const { return checkGridFlag(plotWidgetCommon::x_fine_grid); }
    bool y0FineGrid() const { return checkGridFlag(plotWidgetCommon::y0_fine_grid); }
    bool y1FineGrid() const { return checkGridFlag(plotWidgetCommon::y1_fine_grid); }
    // All nine as a text of '0' and '1' in flag order, and back; false (nothing changed) for a
    // text of another form.
    std::string getGridFlagsAsString() const;
    bool setGridFlagsFromString(const std::string& flags);
    // Highlights part imaginary of curve index; clearOthers drops every other highlight first.
    // Returns whether anything changed.
    bool setCurveHighlighted(size_t index, bool imaginary, bool on, bool clearOthers);
    bool clearHighlightingAll();
    // "x = ..., y = ..." for canvas pixel (x, y), "y1 = " and "y2 = " with a second Y axis.
    std::string makeCursorPositionText(double x, double y) const;

    // --- rulers from connected plots ----------------------------------------------------------
    // A ruler (0 marker, 1 cursor) at x in data units, taken from a connected plot: the plot shows
    // it without telling its page again. The arithmetic plot has no rulers: false.
    virtual bool setRulerImpl(int ruler, double x) { return false; }
    virtual void clearRulerImpl(int ruler) {}

    // --- sliding window of growing curves ------------------------------------------------------
    void defineSlidingWindow(double width, double pauseSeconds);
    void removeSlidingWindow() { mSlidingWindowDefined = false; }
    bool checkSlidingWindowDefined() const { return mSlidingWindowDefined; }
    bool checkSlidingWindowUserZoom() const { return mSlidingWindowUserZoom; }
    // A zoom or scroll by the user: the window stops following for the pause.
    void zoomUserActionPerformed();
    // The pause ended.
    void slidingWindowPauseEnded();
    bool zoomToSlidingWindow(bool force);

    // --- wheel steps gathered by a short timer --------------------------------------------------
    void setScheduledOperation(int operation, int steps = 1);
    int getScheduledOperation() const { return mScheduledOperation; }
    int getScheduledSteps() const { return mScheduledSteps; }
    void timerEventForScheduledOperation();

protected:
    // --- hooks of the widget ------------------------------------------------------------------
    // The view changed: the curves' bitmap must be drawn anew.
    virtual void plotRequestFullRedraw() {}
    // A curve was appended and the view stayed: only the new curve needs drawing.
    virtual void plotRequestAddedCurve() {}
    // The view moved by whole pixels: the bitmap can be shifted and the strip drawn.
    virtual void plotRequestScroll(double dxPixels, double dyPixels) { plotRequestFullRedraw(); }
    virtual void plotStartTimer(int id, int milliseconds) {}
    // The mouse is pressed on the plot or auto-scroll runs: a sliding window waits.
    virtual bool plotCheckUserIsBusy() const { return false; }

    // The axes map onto the curves' bitmap (origin 0, no axis margins) while curves are drawn into
    // it, and onto the widget's canvas otherwise; the view itself doesn't change.
    void setAxesToBitmapOrigin(bool toBitmap);

    void printMessage(const std::string& text) const;
    void printMaxZoomReached() const;

private:
    bool finishUndoRedoStep(bool wasEmpty);
    bool fitImpl(double x0, double x1, double y0Min, double y0Max, double y1Min, double y1Max, bool addViewPort,
                 bool printMessage, bool limit);
    void viewChanged(bool addViewPort);
    void syncAfterScrolling(bool addViewPort);
    void applyAxisPixels();
    double fixedPointPixel(int axis) const;  // -1: x
    void computeUnzoomRange(const wxSinglePlotWidgetAxis& axis, double& min, double& max, bool log) const;
    void initialiseXAxisFrom(const wxSinglePlotWidgetData& curve);
    bool removeCurveFromVector(size_t index, bool imaginary, bool& axesChanged);
    void updateAfterRemove();
    void insertCurveAt(const wxSinglePlotWidgetData& curve, unsigned position);
    void reportAddResult(size_t requested, size_t added);
    bool zoomAxis(wxSinglePlotWidgetAxis& axis, double factor, double centre, double pixelLow, double pixelHigh);

    const cVxLogger& mLogger;
    wxAnalogPlotVirtual* mPage;
    int mWindowType;
    plotWidgetCommon::cPlotSettings mSettings;
    plotWidgetCommon::cCanvasLayout mLayout;
    wxSinglePlotWidgetXAxis mXAxis;
    wxSinglePlotWidgetYAxis mY0Axis;
    wxSinglePlotWidgetYAxis mY1Axis;
    bool mY1Active = false;
    std::vector<wxSinglePlotWidgetData> mCurves;
    bool mUnzoomed = true;
    int mMouseKind = 0;
    double mMouseX = 0.0, mMouseY = 0.0;
    bool mGridFlags[plotWidgetCommon::nb_grid_flags] = {false, true, false, true, true, false, true, true, false};
    // What went wrong with the last insertion, beyond the undo buffer's flags.
    bool mRefusedDataType = false;
    bool mRefusedMaxCurves = false;
    bool mRefusedImagY = false;
    unsigned mRefusedUnit = 0;
    std::string mRefusedName;
    // Curves waiting for their file's reload: position, section id, curve name.
    struct cReleasedCurve {
        size_t index;
        uint64_t sectionId;
        std::string name;
    };
    std::vector<cReleasedCurve> mReleasedCurves;
    // Sliding window.
    bool mSlidingWindowDefined = false;
    bool mSlidingWindowUserZoom = false;
    double mSlidingWindowWidth = 0.0;
    double mSlidingWindowPause = 0.0;
    // Wheel steps.
    int mScheduledOperation = plotWidgetCommon::no_operation;
    int mScheduledSteps = 0;
};

}  // namespace vx3
