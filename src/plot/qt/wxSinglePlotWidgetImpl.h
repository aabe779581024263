// The single plot as a widget: the plot's arithmetic (cPlotWidgetCommon) painted through a cached
// bitmap of its curves. A view change redraws the bitmap, a new curve is painted on top of it, a
// scroll shifts it and draws the uncovered strip only. Curves are read under a try-lock of the data
// mutex: while a reader holds it, a paint shows the frame and the bitmap as they are and a timer
// asks for another paint.
#pragma once

#include <QFont>
#include <QImage>
#include <cstdint>

#include "base/cVxThread.h"
#include "plot/cPlotWidgetCommon.h"
#include "plot/qt/qtVxAxisDrawing.h"
#include "plot/qt/wxPlotBuffer.h"
#include "plot/wxPlotAutoScroll.h"
#include "plot/wxPlotZoomBox.h"
#include "plot/wxSinglePlotOverlay.h"
#include "plot/wxPlotCurveDrawing.h"
#include "plot/wxPlotDrawerColBuffer.h"
#include "widgets/cVxEventHandler.h"
#include "widgets/qtVxBufferedDrawContext.h"
#include "widgets/qtVxWidget.h"

class QContextMenuEvent;
class QDragEnterEvent;
class QDragMoveEvent;
class QDropEvent;
class QMenu;
class QMimeData;

namespace vx3 {

namespace singlePlotWidgetImpl {
// The plot's own timers, besides those of cPlotWidgetCommon.
enum timer_id : int { timer_paint_retry = 20, timer_auto_scroll = 21 };
constexpr int paint_retry_ms = 50;

// Colours and room around the canvas.
struct cPlotLook {
    unsigned background = 0xffffff;
    unsigned axisColour = 0x202020;
    unsigned coarseGridColour = 0xd0d0d0;
    unsigned fineGridColour = 0xececec;
    unsigned zeroLineColour = 0x9090a0;
    int leftMargin = 72;    // room for the Y labels and title
    int bottomMargin = 44;  // room for the X labels and title
    int topMargin = 12;
    int rightMargin = 20;
    bool xAxisLabels = true;  // false: the X axis is a line only (plots stacked over a shared axis)
};
}  // namespace singlePlotWidgetImpl

class cCurvePlotDataFile;

class wxSinglePlotWidgetImpl : public qtVxWidget, public cVxEventHandler, public cPlotWidgetCommon {
    Q_OBJECT
public:
    // dataMutex: the mutex under which readers change curve values; the plot only try-locks it.
    wxSinglePlotWidgetImpl(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger,
                           wxAnalogPlotVirtual* page = nullptr,
                           int windowType = waveExplorerWidgetVirtual::analog_plot);
    ~wxSinglePlotWidgetImpl() override;

    // Draws the plot for a widget of width x height into the picture of the whole widget; the only
    // place that draws. Returns whether the curves were complete (false: data locked, retry asked).
    bool paint(int width, int height, double devicePixelRatio = 1.0);
    // The picture of the last paint (widget size).
    const QImage& getPicture() const { return mPicture.getImage(); }
    const wxPlotBuffer& getPlotBuffer() const { return mBuffer; }
    void setLook(const singlePlotWidgetImpl::cPlotLook& look);
    const singlePlotWidgetImpl::cPlotLook& getLook() const { return mLook; }
    // Counters for tests and benchmarks: paints, and curves drawn into the bitmap.
    uint64_t getPaintCount() const { return mPaints; }
    uint64_t getCurveDrawCount() const { return mCurveDraws; }
    // Forget the bitmap (configuration changed); or only the picture around it (a ruler moved).
    void plotWidgetRedrawAll() { plotRequestFullRedraw(); }
    void plotWidgetRedrawFrame() { mBuffer.setCompleteBufferAxesRedrawRequired(); refresh(); }
    // The X and Y titles shown under and beside the axes.
    void setAxisTitles(const std::string& x, const std::string& y0);
    // How bus values read (derivedCurveFunction::digital_data_type) and the font of the texts in
    // their boxes; a change redraws the curves.
    void setDigitalRadix(unsigned digitalType);
    unsigned getDigitalRadix() const { return mDigitalType; }
    void setDigitalFont(const QFont& font);
    const QFont& getDigitalFont() const { return mDigitalFont; }
    // Legend, rulers and annotations, drawn over the curves' bitmap.
    wxSinglePlotOverlay& overlay() { return mOverlay; }
    const wxSinglePlotOverlay& overlay() const { return mOverlay; }

    // --- mouse, wheel, keys, menus, drops and the clipboard (wxSinglePlotWidgetImplMouse.cpp) ---
    // The name under which recorded commands address the plot.
    void setPlotName(const std::string& name) { mPlotName = name; }
    const std::string& getPlotName() const { return mPlotName; }
    // The store that dropped and pasted curve lists are read against; without one they are refused.
    void setStoreForDrops(cCurvePlotDataFile* store)
    {
        mDropStore = store;
        setAcceptDrops(store != nullptr);
    }
    // singlePlotWidgetImpl::mouse_position_type of the last mouse event.
    int getMousePositionType() const { return mMousePosition; }
    const wxPlotZoomBox& getZoomBox() const { return mZoomBox; }
    // Shows a box of a zoom form (4..13) with a corner at the last mouse position, or arms the
    // click box (3); the next click finishes it.
    void setZoomBoxStyle(int style);
    int getZoomBoxStyle() const { return mZoomBox.getStyle(); }
    void incrementZoomBoxStyle();
    // Applies the shown box and records the view as a zoom command; false when it did nothing.
    bool zoomToBoxImpl();
    void enableMouseAutoScroll(bool enable, double x, double y);
    bool checkMouseAutoScrollEnabled() const { return mAutoScroll.checkIsEnabled(); }
    // Escape: leaves a zoom box, auto scroll or the ruler mode.
    void escapePressedAction();
    // The ruler mode with the cursor at the mouse (the canvas's middle when the mouse is elsewhere):
    // the next click sets the marker, the one after it the cursor. False on an empty plot.
    bool activateRulersAtMouse();
    // "Add Annotation" at the last mouse position: over a curve a "Point" at its closest sample,
    // elsewhere on the canvas a text (canvasText; nothing when it is empty). Recorded as the
    // command that adds it; false when nothing was added.
    bool addAnnotationAtMouse(const std::string& canvasText);
    // A ruler of a connected plot shown here as well.
    bool setRulerImpl(int ruler, double x) override;
    void clearRulerImpl(int ruler) override;
    // The context menu for the mouse at the last position; the caller owns it.
    QMenu* createMainContextMenu(QWidget* parent);
    // A curve list (curve-list XML or plain text of it) added as one undo step; the reason of a
    // refusal goes to the status bar with the operation's name.
    bool handleDropToTargetImpl(const QMimeData& data, bool fromClipboard);
    void copySelectedCurvesToClipboard();
    bool copySelectedCurvesFromClipboard();
    // Writes a user action to the command log as the command that repeats it.
    void recordUserCommand(const std::string& text);
    // The present view as the zoom command that restores it.
    std::string makeZoomCommandText() const;

protected:
    void onMouseDown(double x, double y, int button, int modifiers) override;
    void onMouseUp(double x, double y, int button, int modifiers) override;
    void onMouseMove(double x, double y, int buttons, int modifiers) override;
    void onWheel(double x, double y, double steps, int modifiers) override;
    bool onKeyDown(int key, int modifiers, const QString& text) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool plotCheckUserIsBusy() const override;

protected:
    void onPaint(QPainter& painter) override;
    void onEventTimer(int id) override;
    void plotRequestFullRedraw() override;
    void plotRequestAddedCurve() override;
    void plotRequestScroll(double dxPixels, double dyPixels) override;
    void plotStartTimer(int id, int milliseconds) override;

    // --- what plots of other kinds (digital rows) draw differently ---------------------------
    // The curves from index first on into the curves' bitmap, with the axes on the bitmap.
    virtual void drawCurves(qtVxBufferedDrawContextInverted& context, size_t first);
    virtual void drawGrid(qtVxBufferedDrawContextInverted& context, double x0, double x1, double y0, double y1);
    // The area left of the canvas: the Y axis with its labels and title.
    virtual void drawLeftAxis(qtVxBufferedDrawContextInverted& context, const qtVxAxisDrawing::cAxisFrame& frame);
    const wxPlotBuffer& buffer() const { return mBuffer; }

private:
    // Interaction (wxSinglePlotWidgetImplMouse.cpp).
    void classifyMousePosition(double x, double y);
    // The ruler of a type where it stands, as the set_cursor command that puts it there.
    void recordRulerCommand(int ruler);
    void handleMouseWheel(double steps);
    void mouseAutoScroll();
    void applyScheduledOperationAndRecord();
    void drawZoomBoxImpl(QPainter& painter);
    void printDnDErrorMessage(bool fromClipboard, bool partly, const std::string& reason);
    QMimeData* createMimeDataOfSelectedCurves() const;
    // The plot's name as recorded commands quote it.
    std::string quotedName() const { return "\"" + mPlotName + "\""; }
    // A left press on the canvas that may hit a curve: highlights it, or arms a drag of the
    // highlighted curves; true when the press was used.
    bool handleLeftDownOnCurve(bool shift, bool ctrl);
    void startDragOperation();

    void updateLayout(int width, int height);
    void drawCurvesIntoBuffer();
    // Draws the shown parts of one curve over the strip the axes' update range names.
    void drawCurve(qtVxBufferedDrawContextInverted& context, const wxSinglePlotWidgetData& curve);
    // One part of a complex curve alone, through its own single-valued conversion and pen.
    void drawCurvePart(qtVxBufferedDrawContextInverted& context, const wxSinglePlotWidgetData& curve,
                       bool imaginary);
    // The second Y axis stands on the right of the canvas, its labels right of its ticks.
    void drawRightYAxis(qtVxBufferedDrawContextInverted& context, double right, double bottom, double top);
    int getRightMargin() const;
    int getLeftMargin() const;
    std::string computeXTitle() const;
    std::string computeYTitle(int axis) const;

    cVxMutex& mDataMutex;
    singlePlotWidgetImpl::cPlotLook mLook;
    wxPlotBuffer mBuffer;
    qtVxBitmap mPicture;
    wxPlotDrawerColBuffer mColBuffer;
    std::string mXTitle, mY0Title;
    unsigned mDigitalType = 0;  // hexadecimal
    QFont mDigitalFont;
    // The options every curve of this plot is drawn with.
    plotCurveDrawing::cDrawOptions makeDrawOptions() const;
    uint64_t mPaints = 0;
    uint64_t mCurveDraws = 0;

    // Interaction state.
    std::string mPlotName;
    cCurvePlotDataFile* mDropStore = nullptr;
    int mMousePosition = 0;
    double mMouseX = 0.0, mMouseY = 0.0;  // plot pixels, y upwards
    bool mLeftDown = false;
    // A press on a highlighted curve: a drag of the highlighted curves starts once the mouse moves.
    bool mDragArmed = false;
    double mPressX = 0.0, mPressY = 0.0;
    wxPlotZoomBox mZoomBox;
    wxPlotAutoScroll mAutoScroll;
    wxSinglePlotOverlay mOverlay;
    int mPaintWidth = 0;
};

}  // namespace vx3
