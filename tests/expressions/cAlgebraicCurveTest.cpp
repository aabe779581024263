// Algebraic curves, the calculator interface and the store's search expressions: expressions over
// an x-variable computed on a plot's range, curve requests turned into expression texts, and
// sections, curves and instances found by their predefined values.
#include <gtest/gtest.h>

#include <cmath>

#include "expressions/evaluator/cAlgebraicCurve.h"
#include "expressions/evaluator/cVxWaveformCalculatorInterface.h"
#include "expressions/evaluator/cWaveformSearchExpression.h"
#include "expressions/postProcessCalculus.h"

using namespace vx3;

namespace {

class cErrors : public cVxLoggerCallBack {
public:
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        if (severity == vxLogger::error)
            errors.push_back(text);
    }
    std::vector<std::string> errors;
};

}  // namespace

TEST(AlgebraicCurve, ValuesIntervalAndGradient)
{
    cErrors errors;
    cVxLogger logger;
    logger.setLoggerCallBack(&errors);
    cAlgebraicCurve curve;
    ASSERT_TRUE(curve.defineAlgebraicCurve("3*t^2 + sin(t) - Pi", logger));
    EXPECT_EQ(curve.getFirstVariableName(), "t");
    double x1 = 0, x2 = 0;
    EXPECT_FALSE(curve.checkIsLimittedToInterval(x1, x2));
    EXPECT_DOUBLE_EQ(curve.computeInterpolatedValue(0.7), 3 * 0.49 + std::sin(0.7) - M_PI);
    // Symbolic: exact to rounding.
    EXPECT_NEAR(curve.computeGradient(0.7), 6 * 0.7 + std::cos(0.7), 1e-14);
    ASSERT_TRUE(curve.updateAlgebraicCurveValues("c", -1, 2, 31));
    ASSERT_EQ(curve.buffer().xs.size(), 31u);
    EXPECT_DOUBLE_EQ(curve.buffer().xs[10], 0.0);
    EXPECT_DOUBLE_EQ(curve.buffer().xs.back(), 2.0);
    for (size_t i = 0; i < 31; ++i) {
        const double t = curve.buffer().xs[i];
        EXPECT_NEAR(curve.buffer().ys[i], 3 * t * t + std::sin(t) - M_PI, 1e-12);
    }

    cAlgebraicCurve limited;
    ASSERT_TRUE(limited.defineAlgebraicCurve("interval(2*x, 1, 3)", logger));
    ASSERT_TRUE(limited.checkIsLimittedToInterval(x1, x2));
    EXPECT_EQ(x1, 1);
    EXPECT_EQ(x2, 3);
    EXPECT_TRUE(std::isnan(limited.computeInterpolatedValue(0.5)));
    EXPECT_EQ(limited.computeInterpolatedValue(2.5), 5);
    // A plot's range is cut to the interval.
    ASSERT_TRUE(limited.updateAlgebraicCurveValues("l", 0, 10, 5));
    EXPECT_EQ(limited.buffer().xs.front(), 1);
    EXPECT_EQ(limited.buffer().xs.back(), 3);

    // round() has no derivative rule: a centred difference.
    cAlgebraicCurve rounded;
    ASSERT_TRUE(rounded.defineAlgebraicCurve("round(3*u) + u^2", logger));
    EXPECT_NEAR(rounded.computeGradient(1.0), 2.0, 1e-6);

    cAlgebraicCurve twoNames;
    errors.errors.clear();
    EXPECT_FALSE(twoNames.defineAlgebraicCurve("a*b", logger));
    EXPECT_EQ(errors.errors.back(), "Failed to define algebraic curve from ... (a*b)");
    EXPECT_EQ(cAlgebraicCurve::createXAxisVector(1, 100, 3, true), (std::vector<double>{1, 10, 100}));
}

TEST(CalculatorInterface, RequestsBecomeExpressions)
{
    EXPECT_EQ(cVxWaveformCalculatorInterface::generateExpressionForWaveform(3, 1), "waveform(3, 1)");
    EXPECT_EQ(cVxWaveformCalculatorInterface::generateExpressionOperatorOnWaveforms("-", 3, 1, 4, 0),
              "waveform(3, 1) - waveform(4, 0)");
    EXPECT_EQ(cVxWaveformCalculatorInterface::generateExpressionReduceWaveform(2, 5, 0.01, 1e-9),
              "reduce_waveform(waveform(2, 5), 0.01, 1e-09)");
    EXPECT_EQ(cVxWaveformCalculatorInterface::generateExpressionConvertToStepFunction(2, 5, 0.5),
              "convert_to_step_function(waveform(2, 5), 0.5)");

    cCurvePlotDataFile store;
    cCurvePlotDataSection* a = store.addDataSection("a");
    cCurvePlotDataSection* b = store.addDataSection("b");
    const double xa[] = {0, 1, 2, 3}, ya[] = {0, 1, 4, 9}, xb[] = {0.5, 1.5, 2.5}, yb[] = {10, 20, 30};
    const cCurvePlotDataType* type = store.addType("v", curvePlotProperties::parameterized_double, curvePlotDataType::volt);
    a->getVariable(a->addVariable(type, "va")).setParameterizedDoubleValues(xa, ya, 4);
    b->getVariable(b->addVariable(type, "vb")).setParameterizedDoubleValues(xb, yb, 3);

    cErrors errors;
    cVxWaveformCalculatorInterface calculator(store);
    calculator.evaluator().setLoggerCallBack(&errors);
    cVxWaveformCalculatorInterface::cData data;
    ASSERT_TRUE(calculator.calcGetAddedCurvesData(a->getSectionId(), 0, b->getSectionId(), 0, data));
    EXPECT_EQ(data.xs, (std::vector<double>{0, 0.5, 1, 1.5, 2, 2.5, 3}));
    EXPECT_EQ(data.ys, (std::vector<double>{0, 10.5, 16, 22.5, 29, 36.5, 9}));
    EXPECT_NE(store.getDataSectionFromName("add"), nullptr);
    ASSERT_TRUE(calculator.calcGetSubtractedCurvesData(a->getSectionId(), 0, b->getSectionId(), 0, data));
    EXPECT_EQ(data.xs, (std::vector<double>{0.5, 1, 1.5, 2, 2.5}));
    EXPECT_EQ(data.ys, (std::vector<double>{0.5 - 10, 1 - 15, 2.5 - 20, 4 - 25, 6.5 - 30}));
    ASSERT_TRUE(calculator.calcGetStepFunctionCurveData(a->getSectionId(), 0, 0, data));
    EXPECT_EQ(data.xs, (std::vector<double>{0, 1, 1, 2, 2, 3, 3}));
    EXPECT_EQ(data.ys, (std::vector<double>{0, 0, 1, 1, 4, 4, 9}));
    // A straight line thins to its ends.
    const double xl[] = {0, 1, 2, 3, 4}, yl[] = {0, 2, 4, 6, 8};
    a->getVariable(a->addVariable(type, "line")).setParameterizedDoubleValues(xl, yl, 5);
    ASSERT_TRUE(calculator.calcGetReducedCurveData(a->getSectionId(), 1, 1e-9, NAN, data));
    EXPECT_EQ(data.xs, (std::vector<double>{0, 4}));
    EXPECT_FALSE(calculator.calcGetAddedCurvesData(999, 0, b->getSectionId(), 0, data));
    EXPECT_EQ(errors.errors.back(), "Didn't find section \"999\".");
    cWaveformExpression value;
    ASSERT_TRUE(calculator.evaluate("2*waveform(\"b\", \"vb\")", value));
    ASSERT_TRUE(calculator.getDataFromEvaluationResult(value, data));
    EXPECT_EQ(data.ys, (std::vector<double>{20, 40, 60}));
    calculator.releaseCalculator();
    EXPECT_EQ(store.getDataSectionFromName("add")->getNbOfVariables(), 0u);
}

TEST(SearchExpressions, SectionsCurvesAndInstances)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection* tran = store.addDataSection("tran", &store.findDbSupport("/data/rc.raw"));
    cCurvePlotDataSection* ac = store.addDataSection("ac", &store.findDbSupport("/data/rc_ac.raw"));
    const cCurvePlotDataType* volt = store.addType("v", curvePlotProperties::parameterized_double, curvePlotDataType::volt);
    const cCurvePlotDataType* amp = store.addType("i", curvePlotProperties::parameterized_double, curvePlotDataType::ampere);
    for (cCurvePlotDataSection* section : {tran, ac}) {
        section->addVariable(volt, "x1.out");
        section->addVariable(volt, "x1.mid");
        section->addVariable(amp, "x2.supply");
        section->createCurveHierarchy();
    }
    cErrors errors;
    cVxLogger logger;
    logger.setLoggerCallBack(&errors);
    cWaveformSearchExpression search;

    auto sections = store.findMatchingSections("prop_section_name == \"tr*\"", search, logger);
    ASSERT_EQ(sections.size(), 1u);
    EXPECT_EQ(sections[0], tran);
    sections = store.findMatchingSections("prop_file_name =~ \".*_ac\\\\.raw\" || prop_section_identifier == " +
                                              std::to_string(tran->getSectionId()),
                                          search, logger);
    EXPECT_EQ(sections.size(), 2u);

    auto curves = store.findMatchingCurves("prop_variable_name == \"X1.*\" && prop_section_name == \"ac\"", search, logger);
    ASSERT_EQ(curves.size(), 2u);
    EXPECT_EQ(curves[0], std::make_pair(ac, uint64_t{0}));
    EXPECT_EQ(curves[1], std::make_pair(ac, uint64_t{1}));
    curves = store.findMatchingCurves("prop_variable_y_axis_unit == \"" + tran->getVariable(2).getUnitName() + "\"",
                                      search, logger);
    EXPECT_EQ(curves.size(), 2u);

    auto instances = store.findMatchingInstances("prop_instance_name == \"x1\" && prop_instance_hierarchical_level == 1",
                                                 search, logger);
    ASSERT_EQ(instances.size(), 2u);
    EXPECT_EQ(instances[0].second->getSimpleName(), "x1");

    errors.errors.clear();
    EXPECT_TRUE(store.findMatchingCurves("prop_variable_name == out", search, logger).empty());
    EXPECT_EQ(errors.errors, std::vector<std::string>{"In search expressions all strings should be enclosed by double quotes."});
    errors.errors.clear();
    EXPECT_TRUE(store.findMatchingCurves("prop_variable_name == (", search, logger).empty());
    EXPECT_EQ(errors.errors, std::vector<std::string>{"Failed to parse search expression."});
}
