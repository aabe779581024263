// One annotation of a plot: a point, a distance, an interpolation on a curve, or a text on the
// canvas. It keeps its points in data units and its text with placeholders ("<Y Value>") that are
// filled in each time it is drawn, so that the text follows the annotation when it moves.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "plot/wxPlotBoxLayout.h"

namespace vx3 {

class cVxLogger;

namespace singlePlotWidgetAnnotations {

enum annotation_type : int {
    no_annotation = 0,
    text_annotation = 1,
    point_annotation = 2,
    unused_annotation_3 = 3,
    delta_annotation = 4,
    delta_same_curve_annotation = 5,
    delta_x_annotation = 6,
    delta_x_same_curve_annotation = 7,
    difference_annotation = 8,
    deviation_annotation = 9,
    x_interval_annotation = 10,
    tangent_line_annotation = 11,
    rise_time_annotation = 12,
    fall_time_annotation = 13,
    linear_interpolation_annotation = 14,
    spline_interpolation_annotation = 15,
    polynomial_interpolation_annotation = 16,
    linear_extrapolation_annotation = 17,
    spline_extrapolation_annotation = 18,
    polynomial_extrapolation_annotation = 19,
};
constexpr int nb_annotation_types = 20;

enum annotation_info_type : int {
    info_deviation = 0,
    info_gradient = 1,
    info_expression = 2,
    info_x_value = 3,
    info_y_value = 4,
    info_xy_value = 5,
    info_reference_x_value = 6,
    info_reference_y_value = 7,
    info_reference_xy_value = 8,
    info_delta_x_value = 9,
    info_delta_y_value = 10,
    info_simple_curve_name = 11,
    info_reduced_curve_name = 12,
    info_full_curve_name = 13,
    info_run_parameters = 14,
    info_reference_run_parameters = 15,
    info_complete_curve_information = 16,
    info_all_points = 17,
    info_unused_18 = 18,
    info_simple_reference_curve_name = 19,
    info_reduced_reference_curve_name = 20,
    info_full_reference_curve_name = 21,
};
constexpr int nb_annotation_info_types = 22;

// Texts longer than this are refused: nobody reads them on a plot, and they would cost every paint.
constexpr size_t max_text_length = 4096;
constexpr size_t max_text_lines = 64;

std::string getAnnotationTypeAsString(int type);
// From the name (case and blanks ignored, "_" for a blank) or the number; no_annotation if neither.
int getTypeFromString(const std::string& text);
std::string getCurveInformationName(int info);
// How many (x, y) points a type needs at least, and takes at most (0: no limit).
size_t getMinimumPoints(int type);
size_t getMaximumPoints(int type);
bool checkIsInterpolationType(int type);
bool checkIsExtrapolationType(int type);
// Placeholders a fresh annotation of the type shows when the user gave no text.
std::string getDefaultText(int type);

// What the placeholders of an annotation read from outside it: the curves' names and the way
// the axes print numbers. Empty names and null printers resolve to "no value defined".
struct cCurveInformationContext {
    std::string simpleName, reducedName, fullName, runParameters;
    std::string simpleReferenceName, reducedReferenceName, fullReferenceName, referenceRunParameters;
    std::function<std::string(double)> formatX;
    std::function<std::string(double)> formatY;
};

class wxAnnotation {
public:
    wxAnnotation() = default;

    // Checks and takes type, text and points (x, y pairs, as a flat list). Non-finite pairs are
    // dropped with " data points were ignored."; too few, or a type that doesn't exist, refuse the
    // annotation (the reason in the log under "Creating annotation : "), and so does a text that is
    // empty for a text annotation or too long. The annotation is untouched when refused.
    bool createAnnotation(int type, const std::string& text, const std::vector<double>& points, const cVxLogger& logger,
                          int curveIndex = -1);

    int getType() const { return mType; }
    bool setType(int type);
    const std::string& getText() const { return mText; }
    // Line ends of any system become "\n", and the two characters "\n" a line end as well.
    static std::string normaliseText(const std::string& text);
    void setText(const std::string& text) { mText = normaliseText(text); }
    const std::vector<double>& getPoints() const { return mPoints; }
    size_t getNbPoints() const { return mPoints.size() / 2; }
    double getX(size_t i) const { return mPoints[2 * i]; }
    double getY(size_t i) const { return mPoints[2 * i + 1]; }
    int getCurveIndex() const { return mCurveIndex; }
    void setCurveIndex(int index) { mCurveIndex = index; }
    // The slope of a tangent line, found on the curve when the annotation was made.
    double getGradient() const { return mGradient; }
    void setGradient(double gradient) { mGradient = gradient; }

    bool pending = false;
    bool permanent = true;
    bool highlighted = false;

    // Interpolation annotations keep their points sorted by x; a point at an x already there
    // replaces that one.
    void appendOrReplaceInterpolationPoint(double x, double y);
    // Removes the point nearest to x, unless the type's minimum would be broken.
    bool removeOrReplaceInterpolationPoint(double x);
    // The value of the annotation's interpolation at x (linear, natural cubic spline, or the
    // polynomial through all points); NaN outside the points for non-extrapolating types.
    double evaluateInterpolation(double x) const;

    // Placeholders replaced: each "<name>" of getCurveInformationName, any case; unknown names are
    // left as they are.
    std::string replaceTextPlaceholders(const cCurveInformationContext& context) const;
    // One piece of information; "no value defined" when there is none for this annotation.
    std::string getCurveInformation(int info, const cCurveInformationContext& context) const;
    // The expression of the curve an interpolation annotation stands for.
    std::string buildExpressionFromAnnotation() const;

    // Where the text box sits relative to its wished place: moved by the user by whole pixels.
    int getShiftX() const { return mShiftX; }
    int getShiftY() const { return mShiftY; }
    void updateIntegerShiftDelta(int dx, int dy) { mShiftX += dx, mShiftY += dy; }
    void resetIntegerShift() { mShiftX = mShiftY = 0; }
    // The text box of the last layout (pixels, y upwards).
    const plotBoxLayout::cBox& getBBox() const { return mBBox; }
    void setBBox(const plotBoxLayout::cBox& box) { mBBox = box; }
    bool checkIsInBBox(double x, double y) const { return mBBox.contains(x, y); }

    // Whether any point lies in the view, widened by margin data units on each side.
    bool checkIfAnnotationIsDrawn(double xmin, double xmax, double ymin, double ymax, double xMargin,
                                  double yMargin) const;

    // The clipboard form: <annotation type="..." text="..." data="x,y,..." />.
    std::string createDndXmlString() const;
    // Type and text as the annotation commands take them (quoted, line ends as "\n").
    std::string getTypeAndTextForCommandFile() const;

private:
    std::string formatPoint(size_t i, const cCurveInformationContext& context) const;

    int mType = no_annotation;
    std::string mText;
    std::vector<double> mPoints;
    int mCurveIndex = -1;
    double mGradient = 0.0;
    int mShiftX = 0, mShiftY = 0;
    plotBoxLayout::cBox mBBox;
};

}  // namespace singlePlotWidgetAnnotations

}  // namespace vx3
