// Annotations: the names of types and placeholders, placeholder substitution by tables, the
// refusals with their messages, the interpolation kinds against numpy and scipy, and the
// clipboard and command forms.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "overlayTestSupport.h"
#include "plot/wxPlotAnnotation.h"
#include "plot/wxSinglePlotOverlay.h"
#include "singlePlotTestSupport.h"

using namespace vx3;
using namespace vx3::singlePlotWidgetAnnotations;
using namespace zwplot;
using namespace zwoverlay;

namespace {

cCurveInformationContext plainContext()
{
    cCurveInformationContext context;
    context.formatX = [](double x) { return "X" + std::to_string(static_cast<int>(std::lround(x * 10))); };
    context.formatY = [](double y) { return "Y" + std::to_string(static_cast<int>(std::lround(y * 10))); };
    context.simpleName = "v(out)";
    context.reducedName = "tran : v(out)";
    context.fullName = "run.raw : tran : v(out)";
    context.simpleReferenceName = "v(in)";
    return context;
}

wxAnnotation made(int type, const std::string& text, const std::vector<double>& points)
{
    cCapturingLogger capture;
    wxAnnotation annotation;
    EXPECT_TRUE(annotation.createAnnotation(type, text, points, capture.logger)) << type << " " << text;
    return annotation;
}

}  // namespace

TEST(PlotAnnotation, TypeAndPlaceholderNamesReadBothWays)
{
    const std::vector<std::pair<int, std::string>> types{
        {1, "Text"}, {2, "Point"}, {4, "Delta"}, {5, "Delta"}, {6, "Delta X"}, {7, "Delta X"}, {8, "Difference"},
        {9, "Deviation"}, {10, "X Interval"}, {11, "Tangent Line"}, {12, "Rise Time"}, {13, "Fall Time"},
        {14, "Linear Interpolation"}, {15, "Spline Interpolation"}, {16, "Polynomial Interpolation"},
        {17, "Linear Extrapolation"}, {18, "Spline Extrapolation"}, {19, "Polynomial Extrapolation"}};
    for (const auto& [type, name] : types)
        EXPECT_EQ(getAnnotationTypeAsString(type), name) << type;
    for (int empty : {0, 3, 20, -1})
        EXPECT_EQ(getAnnotationTypeAsString(empty), "");
    // Names find the first type of that name (between two curves); numbers and odd spellings too.
    EXPECT_EQ(getTypeFromString("Delta"), delta_annotation);
    EXPECT_EQ(getTypeFromString("rise_time"), rise_time_annotation);
    EXPECT_EQ(getTypeFromString("SPLINE interpolation"), spline_interpolation_annotation);
    EXPECT_EQ(getTypeFromString("7"), delta_x_same_curve_annotation);
    for (const char* bad : {"", "3", "0", "42", "Circle", "12345"})
        EXPECT_EQ(getTypeFromString(bad), no_annotation) << bad;
    EXPECT_EQ(getCurveInformationName(0), "Deviation");
    EXPECT_EQ(getCurveInformationName(17), "All Points");
    EXPECT_EQ(getCurveInformationName(18), "");
    EXPECT_EQ(getCurveInformationName(21), "Full Reference Curve Name");
}

TEST(PlotAnnotation, PlaceholdersAreReplacedByTable)
{
    const cCurveInformationContext context = plainContext();
    const wxAnnotation delta = made(delta_annotation, "x", {1.0, 2.0, 4.0, -1.0});
    const wxAnnotation point = made(point_annotation, "x", {0.5, 0.25});
    const wxAnnotation tangent = made(tangent_line_annotation, "x", {1.0, 1.0});
    struct cRow {
        const wxAnnotation* annotation;
        const char* text;
        const char* expected;
    };
    const std::vector<cRow> table{
        {&delta, "<X Value>", "X10"},
        {&delta, "<y value>", "Y20"},
        {&delta, "<XY Value>", "(X10, Y20)"},
        {&delta, "<Reference XY Value>", "(X40, Y-10)"},
        {&delta, "dx=<Delta X Value> dy=<DELTA Y VALUE>", "dx=X30 dy=Y-30"},
        {&delta, "<Gradient>", "-1"},
        {&delta, "<Deviation>", "Y-30"},
        {&delta, "<All Points>", "(X10, Y20) (X40, Y-10)"},
        {&delta, "<Simple Curve Name> vs <Simple Reference Curve Name>", "v(out) vs v(in)"},
        {&delta, "<Full Curve Name>", "run.raw : tran : v(out)"},
        {&delta, "<Reduced Curve Name>", "tran : v(out)"},
        {&delta, "<Run Parameters>", "no value defined"},
        {&delta, "<Full Reference Curve Name>", "no value defined"},
        {&delta, "<Expression>", "no value defined"},
        {&point, "<Reference X Value>", "no value defined"},
        {&point, "<Delta Y Value>", "no value defined"},
        {&point, "<Complete Curve Information>", "run.raw : tran : v(out)\n(X5, Y3)"},
        // Not placeholders: kept as typed, a later one still found.
        {&point, "a < b <Y Value>", "a < b Y3"},
        {&point, "<Z Value> <>", "<Z Value> <>"},
        {&point, "<X Value", "<X Value"},
        {&point, "", ""},
    };
    for (const cRow& row : table) {
        wxAnnotation annotation = *row.annotation;
        annotation.setText(row.text);
        EXPECT_EQ(annotation.replaceTextPlaceholders(context), row.expected) << row.text;
    }
    wxAnnotation slope = tangent;
    slope.setGradient(4321.987);
    slope.setText("<Gradient>");
    EXPECT_EQ(slope.replaceTextPlaceholders(context), "4322");
    // A moved annotation shows its new value.
    wxAnnotation moving = point;
    moving.setText("<Y Value>");
    moving.appendOrReplaceInterpolationPoint(0.5, 0.7);  // same x: replaced
    EXPECT_EQ(moving.replaceTextPlaceholders(context), "Y7");
    // Without printers every number is undefined.
    EXPECT_EQ(delta.getCurveInformation(info_x_value, cCurveInformationContext{}), "no value defined");
}

TEST(PlotAnnotation, LineEndsOfAnySystemAndTheTwoCharacterFormBecomeLineBreaks)
{
    EXPECT_EQ(wxAnnotation::normaliseText("a\\nb"), "a\nb");
    EXPECT_EQ(wxAnnotation::normaliseText("a\r\nb\rc\n"), "a\nb\nc\n");
    EXPECT_EQ(wxAnnotation::normaliseText("C:\\temp\\x"), "C:\\temp\\x");
    EXPECT_EQ(wxAnnotation::normaliseText("end\\"), "end\\");
    const wxAnnotation text = made(text_annotation, "first\\nsecond \"q\"", {1.0, 2.0});
    EXPECT_EQ(text.getText(), "first\nsecond \"q\"");
    EXPECT_EQ(text.getTypeAndTextForCommandFile(), "\"Text\" \"first\\nsecond \\\"q\\\"\"");
    EXPECT_EQ(text.createDndXmlString(), "<annotation type=\"Text\" text=\"first&#10;second &quot;q&quot;\" data=\"1,2\" />");
    const wxAnnotation rise = made(rise_time_annotation, "r<1>", {1e-9, 0.1, 2.5e-9, 0.9});
    EXPECT_EQ(rise.createDndXmlString(), "<annotation type=\"Rise Time\" text=\"r&lt;1&gt;\" data=\"1e-09,0.1,2.5e-09,0.9\" />");
    EXPECT_EQ(rise.getTypeAndTextForCommandFile(), "\"Rise_Time\" \"r<1>\"");
}

TEST(PlotAnnotation, RefusedAnnotationsSayWhyAndLeaveThePlotAsItWas)
{
    cCapturingLogger capture;
    cCurvePlotDataFile store;
    cTestSection section(store, "s", {0.0, 1.0, 2.0, 3.0});
    cOverlayTestPlot plot(capture.logger);
    ASSERT_TRUE(plot.addToPlot(section.describe(section.addReal("v", {0.0, 1.0, 0.0, 1.0}))));
    cRecordingPage page;
    wxSinglePlotOverlay overlay(plot, capture.logger);
    overlay.setPage(&page);
    ASSERT_TRUE(overlay.addTextAnnotation("kept", 1.0, 0.5));
    ASSERT_TRUE(overlay.addCurveAnnotation(0, "Point", "<Y Value>", {1.0, 1.0}));
    const wxAnnotation keptText = overlay.getGlobalAnnotations()[0];

    struct cCase {
        std::string what;
        std::function<bool()> attempt;
        std::string logged;
    };
    const std::string huge(5000, 'x');
    std::string manyLines;
    for (int i = 0; i < 100; ++i)
        manyLines += "line\\n";
    const std::vector<cCase> cases{
        {"empty text", [&] { return overlay.addTextAnnotation("", 1.0, 1.0); }, "Creating annotation : The text is empty."},
        {"blank text", [&] { return overlay.addTextAnnotation(" \\n \t", 1.0, 1.0); }, "The text is empty."},
        {"huge text", [&] { return overlay.addTextAnnotation(huge, 1.0, 1.0); }, "The text is too long"},
        {"many lines", [&] { return overlay.addTextAnnotation(manyLines, 1.0, 1.0); }, "The text is too long"},
        {"huge curve text", [&] { return overlay.addCurveAnnotation(0, "Point", huge, {1.0, 1.0}); }, "too long"},
        {"unknown type", [&] { return overlay.addCurveAnnotation(0, "Circle", "t", {1.0, 1.0}); },
         "Creating annotation : Unsupported annotation type."},
        {"text on a curve", [&] { return overlay.addCurveAnnotation(0, "Text", "t", {1.0, 1.0}); },
         "Unsupported annotation type."},
        {"too few points", [&] { return overlay.addCurveAnnotation(0, "Delta", "t", {1.0, 1.0}); },
         "Creating annotation : Not enough valid points for defining an annotation."},
        {"spline of two", [&] { return overlay.addCurveAnnotation(0, "15", "t", {0.0, 0.0, 1.0, 1.0}); },
         "Not enough valid points"},
        {"spline on one x", [&] { return overlay.addCurveAnnotation(0, "15", "t", {1.0, 0.0, 1.0, 1.0, 1.0, 2.0}); },
         "Not enough valid points"},
        {"undefined points", [&] { return overlay.addCurveAnnotation(0, "Point", "t", {NAN, 1.0, 2.0, INFINITY}); },
         "Creating annotation : 2 data points were ignored."},
        {"no curve", [&] { return overlay.addCurveAnnotation(5, "Point", "t", {1.0, 1.0}); }, "the curve is not in the plot"},
    };
    for (const cCase& c : cases) {
        capture.log.clear();
        page.statusMessages.clear();
        EXPECT_FALSE(c.attempt()) << c.what;
        EXPECT_TRUE(capture.log.contains(c.logged)) << c.what;
        ASSERT_EQ(page.statusMessages.size(), 1u) << c.what;
        EXPECT_EQ(page.statusMessages[0], "Failed to create annotation.") << c.what;
        EXPECT_EQ(overlay.getNbAnnotations(), 2u) << c.what;
    }
    EXPECT_EQ(overlay.getGlobalAnnotations()[0].getText(), keptText.getText());
    // Extra points beyond what a type takes are dropped, and said so; the annotation is made.
    capture.log.clear();
    EXPECT_TRUE(overlay.addCurveAnnotation(0, "Point", "", {1.0, 1.0, 2.0, 0.0}));
    EXPECT_TRUE(capture.log.contains("1 data points were ignored."));
    // No text given: the type's own placeholders.
    EXPECT_EQ(overlay.getCurveAnnotations(0, false)->back().getText(), "<XY Value>");
    EXPECT_EQ(overlay.getNbAnnotations(), 3u);
    // A difference has both points at the first one's x.
    ASSERT_TRUE(overlay.addCurveAnnotation(0, "Difference", "", {1.0, 1.0, 7.0, 0.0}));
    EXPECT_EQ(overlay.getCurveAnnotations(0, false)->back().getX(1), 1.0);
    EXPECT_TRUE(overlay.clearCurveAnnotations(0));
    EXPECT_EQ(overlay.getNbAnnotations(), 1u);
    overlay.clearAnnotations();
    EXPECT_EQ(overlay.getNbAnnotations(), 0u);
}

TEST(PlotAnnotation, InterpolationsAgreeWithNumpyAndScipy)
{
    std::mt19937 random(9);
    std::uniform_real_distribution<double> value(-2.0, 2.0), gap(0.2, 1.5);
    for (int round = 0; round < 5; ++round) {
        std::vector<std::pair<double, double>> points;
        double x = value(random);
        for (int i = 0; i < 4 + round; ++i, x += gap(random))
            points.emplace_back(x, value(random));
        // Given out of order: the annotation sorts its points.
        std::vector<double> flat;
        for (size_t i = points.size(); i-- > 0;)
            flat.insert(flat.end(), {points[i].first, points[i].second});
        std::vector<double> inside, everywhere;
        for (int i = 0; i <= 40; ++i) {
            const double t = static_cast<double>(i) / 40.0;
            inside.push_back(points.front().first + t * (points.back().first - points.front().first));
            everywhere.push_back(points.front().first - 1.0 + t * (points.back().first - points.front().first + 2.0));
        }
        struct cKind {
            int interpolation, extrapolation;
            const char* oracle;
        };
        for (const cKind& kind : {cKind{linear_interpolation_annotation, linear_extrapolation_annotation, "linear"},
                                  cKind{spline_interpolation_annotation, spline_extrapolation_annotation, "spline"},
                                  cKind{polynomial_interpolation_annotation, polynomial_extrapolation_annotation,
                                        "polynomial"}}) {
            const wxAnnotation interpolation = made(kind.interpolation, "", flat);
            for (size_t i = 1; i < interpolation.getNbPoints(); ++i)
                ASSERT_LT(interpolation.getX(i - 1), interpolation.getX(i));
            const std::vector<double> expected = oracleValues(kind.oracle, points, inside);
            ASSERT_EQ(expected.size(), inside.size()) << "oracle failed for " << kind.oracle;
            for (size_t i = 0; i < inside.size(); ++i)
                EXPECT_NEAR(interpolation.evaluateInterpolation(inside[i]), expected[i], 1e-9) << kind.oracle;
            // Beyond the points only the extrapolating kinds give values (numpy.interp holds the
            // end values, so the linear one is compared inside only).
            EXPECT_TRUE(std::isnan(interpolation.evaluateInterpolation(points.back().first + 0.5)));
            if (std::string(kind.oracle) == "linear")
                continue;
            const wxAnnotation extrapolation = made(kind.extrapolation, "", flat);
            const std::vector<double> outside = oracleValues(kind.oracle, points, everywhere);
            ASSERT_EQ(outside.size(), everywhere.size());
            for (size_t i = 0; i < everywhere.size(); ++i)
                EXPECT_NEAR(extrapolation.evaluateInterpolation(everywhere[i]), outside[i],
                            1e-8 * std::max(1.0, std::fabs(outside[i])))
                    << kind.oracle;
        }
    }
    // A point added between two others keeps the order; removal keeps the minimum.
    wxAnnotation spline = made(spline_interpolation_annotation, "", {0.0, 0.0, 1.0, 1.0, 3.0, 0.0});
    spline.appendOrReplaceInterpolationPoint(2.0, 5.0);
    EXPECT_EQ(spline.getPoints(), (std::vector<double>{0.0, 0.0, 1.0, 1.0, 2.0, 5.0, 3.0, 0.0}));
    EXPECT_TRUE(spline.removeOrReplaceInterpolationPoint(0.9));
    EXPECT_EQ(spline.getPoints(), (std::vector<double>{0.0, 0.0, 2.0, 5.0, 3.0, 0.0}));
    EXPECT_FALSE(spline.removeOrReplaceInterpolationPoint(0.0));
    EXPECT_EQ(spline.buildExpressionFromAnnotation(), "spline_interpolation([0,2,3],[0,5,0],0)");
}

TEST(PlotAnnotation, OnlyAnnotationsNearTheViewAreDrawn)
{
    const wxAnnotation point = made(point_annotation, "", {5.0, 5.0});
    EXPECT_TRUE(point.checkIfAnnotationIsDrawn(0.0, 10.0, 0.0, 10.0, 0.1, 0.1));
    EXPECT_FALSE(point.checkIfAnnotationIsDrawn(6.0, 10.0, 0.0, 10.0, 0.1, 0.1));
    EXPECT_TRUE(point.checkIfAnnotationIsDrawn(5.05, 10.0, 0.0, 10.0, 0.1, 0.1));  // within the margin
    // A distance whose points lie on both sides still crosses the view.
    const wxAnnotation delta = made(delta_annotation, "", {-5.0, 1.0, 20.0, 1.0});
    EXPECT_TRUE(delta.checkIfAnnotationIsDrawn(0.0, 10.0, 0.0, 10.0, 0.1, 0.1));
    EXPECT_FALSE(delta.checkIfAnnotationIsDrawn(30.0, 40.0, 0.0, 10.0, 0.1, 0.1));
    // An X interval is seen at any height.
    const wxAnnotation interval = made(x_interval_annotation, "", {2.0, 100.0, 3.0, 100.0});
    EXPECT_TRUE(interval.checkIfAnnotationIsDrawn(0.0, 10.0, 0.0, 10.0, 0.1, 0.1));
}

TEST(PlotAnnotation, RiseAndFallTimesBetweenTheRulersMatchNumpyCrossings)
{
    cCapturingLogger capture;
    cCurvePlotDataFile store;
    std::vector<double> x(2001), up(x.size()), down(x.size());
    for (size_t i = 0; i < x.size(); ++i) {
        x[i] = 1e-9 * static_cast<double>(i);
        up[i] = 1.2 * std::tanh((x[i] - 0.7e-6) / 0.08e-6) + 0.3;
        down[i] = -up[i];
    }
    cTestSection section(store, "tran", x);
    cOverlayTestPlot plot(capture.logger);
    ASSERT_TRUE(plot.addToPlot(section.describe(section.addReal("rise", up))));
    ASSERT_TRUE(plot.addToPlot(section.describe(section.addReal("fall", down))));
    wxSinglePlotOverlay overlay(plot, capture.logger);
    // No rulers: refused, nothing made.
    EXPECT_FALSE(overlay.addRiseFallAnnotation(0));
    EXPECT_TRUE(capture.log.contains("between the marker and the cursor"));
    ASSERT_TRUE(overlay.setCursor(0.3e-6, "M1"));
    ASSERT_TRUE(overlay.setCursor(1.4e-6, "C1"));
    ASSERT_TRUE(overlay.addRiseFallAnnotation(0));
    ASSERT_TRUE(overlay.addRiseFallAnnotation(1));
    for (size_t c = 0; c < 2; ++c) {
        const wxAnnotation& edge = overlay.getCurveAnnotations(c, false)->back();
        EXPECT_EQ(edge.getType(), c == 0 ? rise_time_annotation : fall_time_annotation);
        // numpy: the levels from the values at the rulers, crossed where the monotone edge passes them.
        const std::vector<double>& y = c == 0 ? up : down;
        const std::vector<double> ends = oracleValues("linear", [&] {
            std::vector<std::pair<double, double>> points;
            for (size_t i = 0; i < x.size(); ++i)
                points.emplace_back(x[i], y[i]);
            return points;
        }(), {0.3e-6, 1.4e-6});
        ASSERT_EQ(ends.size(), 2u);
        const double low = ends[0] + 0.1 * (ends[1] - ends[0]), high = ends[0] + 0.9 * (ends[1] - ends[0]);
        // The inverse of the edge: x as a function of y, increasing y for numpy.
        std::vector<std::pair<double, double>> inverse;
        for (size_t i = 300; i <= 1400; ++i)
            inverse.emplace_back(c == 0 ? y[i] : -y[i], x[i]);
        const std::vector<double> crossings = oracleValues("linear", inverse, {c == 0 ? low : -low, c == 0 ? high : -high});
        ASSERT_EQ(crossings.size(), 2u);
        EXPECT_NEAR(edge.getX(0), crossings[0], 1e-15);
        EXPECT_NEAR(edge.getX(1), crossings[1], 1e-15);
        EXPECT_NEAR(edge.getY(0), low, 1e-12);
        EXPECT_NEAR(edge.getY(1), high, 1e-12);
    }
    // Rulers over a flat stretch: no edge.
    ASSERT_TRUE(overlay.setCursor(1.6e-6, "M1"));
    ASSERT_TRUE(overlay.setCursor(1.6e-6, "C1"));
    const size_t before = overlay.getNbAnnotations();
    EXPECT_FALSE(overlay.addRiseFallAnnotation(0));
    EXPECT_EQ(overlay.getNbAnnotations(), before);
}
