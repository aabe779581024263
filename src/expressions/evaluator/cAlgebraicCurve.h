// A curve given by an expression over its x-variable, such as "sin(2*Pi*1e3*t)": it has no
// samples of its own and is computed on the x-range that a plot shows. "interval(expr, x1, x2)"
// limits it to [x1, x2]; without that it holds everywhere.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "expressions/cWaveformExpression.h"

namespace vx3 {

class cCurvePlotDataFile;
class cCurvePlotDataSection;
class cWaveformExpressionEvaluator;

// The values last computed for a plot.
struct cAlgebraicCurveBuffer {
    std::vector<double> xs;
    std::vector<double> ys;
};

class cAlgebraicCurve {
public:
    cAlgebraicCurve();
    ~cAlgebraicCurve();
    cAlgebraicCurve(const cAlgebraicCurve&) = delete;
    cAlgebraicCurve& operator=(const cAlgebraicCurve&) = delete;

    // Parses text; its one name that is no constant, parameter or curve of section is the
    // x-variable. False with the reason on logger ("Failed to define algebraic curve from ... (",
    // text, ")").
    bool defineAlgebraicCurve(const std::string& text, const cVxLogger& logger, cCurvePlotDataFile* store = nullptr,
                              cCurvePlotDataSection* section = nullptr);
    const std::string& getText() const { return mText; }
    // The expression without its interval.
    const cWaveformExpression& getExpression() const { return mExpression; }
    const std::string& getFirstVariableName() const { return mVariable; }

    // Whether the expression limits itself to an interval, and which.
    bool checkIsLimittedToInterval(double& x1, double& x2) const;
    // count points from x1 to x2, both included (on a logarithmic scale when logarithmic).
    static std::vector<double> createXAxisVector(double x1, double x2, size_t count, bool logarithmic = false);
    // The values at xs (NaN where undefined or outside the interval); false after a report.
    bool evaluate(const std::vector<double>& xs, std::vector<double>& ys);
    double computeInterpolatedValue(double x);
    // dy/dx at x: the symbolic derivative, or a centred difference for expressions without one.
    double computeGradient(double x);
    // Fills the buffer for a plot's range [x1, x2] (cut to the interval) with count points; false
    // with "Failed to update algebraic curve values for "name"." on the logger.
    bool updateAlgebraicCurveValues(const std::string& name, double x1, double x2, size_t count);
    const cAlgebraicCurveBuffer& buffer() const { return mBuffer; }

private:
    std::string mText;
    std::string mVariable;
    cWaveformExpression mExpression;
    bool mLimited = false;
    double mX1 = 0;
    double mX2 = 0;
    std::unique_ptr<cWaveformExpressionEvaluator> mEvaluator;
    cAlgebraicCurveBuffer mBuffer;
    const cVxLogger* mLogger = nullptr;
};

}  // namespace vx3
