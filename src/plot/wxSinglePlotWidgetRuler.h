// The rulers of a single plot: the marker "M1" and the cursor "C1", vertical lines that read the
// value of every curve at their X, and a third, never drawn, that only finds the curve under the
// mouse. A ruler works in data units and pixels of the plot's canvas (y upwards).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "plot/wxPlotBoxLayout.h"

namespace vx3 {

class cPlotWidgetCommon;
class wxSinglePlotWidgetAxis;

namespace singlePlotWidgetRuler {

enum ruler_type : int { marker_ruler = 0, cursor_ruler = 1, hit_test_ruler = 2 };

// How setPosition takes its pixel: following the mouse (snapping), or as given.
enum position_kind : int {
    follow_mouse = 1,
    set_direct = 2,
    set_by_program = 3,
    moved_by_key = 4,
    set_by_connection = 5,
};

// The readout of one shown part of one curve at the ruler's X.
struct cRulerValue {
    size_t curveIndex = 0;
    bool imaginary = false;
    bool valid = false;
    double y = 0.0;          // data units of the part's axis
    std::string text;        // the value as the readout shows it (a digital state's text too)
    int axis = 0;            // 0: y0, 1: y1
};

}  // namespace singlePlotWidgetRuler

namespace waveExplorerConfiguration {
enum ruler_style : int {
    ruler_no_values = 0,
    ruler_simple_values = 1,
    ruler_values_in_annotations = 2,
    ruler_values_in_non_overlapping_annotations = 3,
    ruler_values_and_names_in_annotations = 4,
    ruler_values_and_names_in_non_overlapping_annotations = 5,
    ruler_annotations_on_x_axis = 7,
};
// Empty for numbers that are no style.
std::string ruler_style_to_string(int style);
}  // namespace waveExplorerConfiguration

class wxSinglePlotWidgetRuler {
public:
    wxSinglePlotWidgetRuler(const cPlotWidgetCommon& plot, int type);

    int getType() const { return mType; }
    // "M1", "C1", or empty for the hit test ruler.
    std::string getName() const;
    bool checkIsEnabled() const { return mEnabled; }
    bool checkIsSetByProgram() const { return mSetByProgram; }
    double getX() const { return mX; }
    double getY() const { return mY; }
    double getPreviousX() const { return mPreviousX; }
    double getPixelX() const { return mPixelX; }
    double getPixelY() const { return mPixelY; }
    // The cursor reads dx and dy against the marker.
    void setOtherRuler(const wxSinglePlotWidgetRuler* other) { mOther = other; }
    const wxSinglePlotWidgetRuler* getOtherRuler() const { return mOther; }

    // Places the ruler at canvas pixel (x, y). With follow_mouse and snapping on, X moves to the
    // closest sample of any curve. Returns whether anything changed. False without curves.
    bool setPosition(double x, double y, bool update, int kind, bool snapToGrid = true);
    // At an X in data units (a command, a connected plot); y stays where it was.
    bool setPositionX(double x, int kind = singlePlotWidgetRuler::set_by_program);
    // Moves by pixels (arrow keys): to the next sample when snapping.
    bool incrementPosition(int pixels, bool snapToGrid = true);
    // The view changed: the pixels anew from the data position.
    void computeIntegerPosition();
    // The curves changed: the values anew at the same X.
    void computeDoublePosition() { computeDoubleYCoordinates(); }
    void clear();
    void disable() { mEnabled = false; }

    // The X of the sample closest to pixel x over all curves (in pixels); false without samples.
    bool computeXCoordinateOnGrid(double pixelX, double& x) const;
    // The next sample beyond x in direction (+1, -1) over all curves.
    bool incrementXCoordinateOnGrid(double x, int direction, double& next) const;
    // Reads every curve's value at the ruler's X.
    void computeDoubleYCoordinates();
    const std::vector<singlePlotWidgetRuler::cRulerValue>& getValues() const { return mValues; }

    // The curve nearest to canvas pixel (x, y) within tolerance pixels, the topmost (last drawn)
    // first; a tie goes to the first found. False when none is close enough.
    bool findClosestCurveIndex(double x, double y, double tolerance, size_t& index, bool& imaginary) const;
    // The squared pixel distance of curve index (part imaginary) to the canvas pixel; 1e+300 if none.
    double computeDoubleDistance(size_t index, bool imaginary, double x, double y) const;

    // Readout texts: numbers as the axes print them at readout precision.
    std::string formatX(double x) const;
    std::string formatY(double y, int axis) const;
    // The head box of the ruler: "C1 x=... dx=..." or "M1 x=...".
    std::string createAnnotationLabel() const;
    // The box text of one value: "y=..." and with the marker set " dy=..."; with names first.
    std::string createValueLabel(const singlePlotWidgetRuler::cRulerValue& value, bool withName,
                                 const std::string& curveName) const;
    // The marker's value for the same curve part, when it has one.
    const singlePlotWidgetRuler::cRulerValue* findValueOf(size_t curveIndex, bool imaginary) const;

private:
    const cPlotWidgetCommon& mPlot;
    int mType;
    bool mEnabled = false;
    bool mSetByProgram = false;
    double mPixelX = 0.0, mPixelY = 0.0;
    double mX = 0.0, mY = 0.0, mPreviousX = 0.0;
    std::vector<singlePlotWidgetRuler::cRulerValue> mValues;
    const wxSinglePlotWidgetRuler* mOther = nullptr;
};

}  // namespace vx3
