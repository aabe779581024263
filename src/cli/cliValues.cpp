// Subcommands that read values of a curve: the value at given x positions (interpolated as the
// cursors of a plot read it, or the closest sample), and the integrals.
#include <cmath>
#include <iostream>
#include <sstream>

#include "base/cVxLogger.h"
#include "cCliTool.h"
#include "cliFileSupport.h"
#include "model/cDataVectors.h"
#include "model/curveValueAnalysis.h"
#include "model/curveValueLookup.h"

namespace vx3 {

namespace {

using namespace cliFiles;

const char* kValueOptions =
    "Options:\n"
    "  --reader R   read with one reader only: csv (fast, then slow), fast, slow, html, tecplot,\n"
    "               vcd, nutmeg\n"
    "  --section N  the section, counting from 0 (default 0)\n"
    "  --verbose    also print the readers' informations (to standard error)\n";

int runAt(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    cFileOptions options;
    options.allowedFlags = {"--closest", "--log-x", "--magnitude", "--db", "--phase", "--imag", "--hex", "--dec"};
    if (!readOptions(arguments, options, err, true))
        return 2;
    if (options.positional.size() < 3) {
        err << "zelwave-cli at: name one file, one curve and at least one x\n";
        return 2;
    }
    std::vector<double> targets;
    for (size_t i = 2; i < options.positional.size(); ++i) {
        double x = 0;
        if (!readNumber(options.positional[i], x)) {
            err << "zelwave-cli at: \"" << options.positional[i] << "\" is no number\n";
            return 2;
        }
        targets.push_back(x);
    }
    cCurvePlotDataFile store;
    cCurveChoice choice;
    curvePlotFunctionArgs::cDataVectors vectors;
    std::vector<double> indices;
    if (!openCurve(store, options, "at", err, choice))
        return 1;
    if (!choice.isSweep && choice.curve->getType() && choice.curve->getType()->checkIsDigital()) {
        if (!loadValues(*choice.section, *choice.curve, choice.index, false, "at", err))
            return 1;
        // A logic state holds from its change to the next one.
        const unsigned radix = options.hasFlag("--hex")   ? derivedCurveFunction::hexadecimal
                               : options.hasFlag("--dec") ? derivedCurveFunction::decimal
                                                          : derivedCurveFunction::binary;
        out << "x," << choice.curve->name() << '\n';
        for (double x : targets) {
            std::string state;
            out << number(x) << ','
                << (choice.curve->getDigitalCurveValue(*choice.section, x, state, radix) ? state : "undefined")
                << '\n';
        }
        return 0;
    }
    if (!curveVectors("at", err, choice, vectors, indices))
        return 1;
    cDerivedCurveFunction conversion;
    using namespace derivedCurveFunction;
    if (options.hasFlag("--imag"))
        conversion.setConversion(imaginary_part);
    else if (options.hasFlag("--magnitude"))
        conversion.setConversion(magnitude);
    else if (options.hasFlag("--db"))
        conversion.setConversion(magnitude_in_db);
    else if (options.hasFlag("--phase"))
        conversion.setConversion(angle);
    unsigned monotony = vectors.monotony;
    if (monotony == monotony_unknown)
        monotony = curvePlotFunctionArgs::visitDataVectors(vectors, [&](auto xs, auto) {
            return static_cast<unsigned>(curvePlotVariable::computeMonotonyType(xs, vectors.count));
        });
    const bool closest = options.hasFlag("--closest"), logX = options.hasFlag("--log-x");
    uint64_t cursor = 0;
    out << "x," << (closest ? "closest_x," : "") << choice.curve->name() << '\n';
    for (double x : targets) {
        curvePlotFunctionArgs::visitDataVectors(vectors, [&](auto xs, auto ys) {
            out << number(x) << ',';
            if (closest) {
                double found = 0;
                if (curvePlotVariable::computeClosestXValue(x, xs, cursor, found, vectors.count, monotony))
                    out << number(found) << ',' << number(curvePlotVariable::convertedValue(ys[cursor], conversion));
                else
                    out << ",undefined";
            } else {
                double value = 0;
                if (curvePlotVariable::findInterpolatedValue(x, xs, ys, vectors.count, monotony, cursor, value,
                                                             conversion, logX))
                    out << number(value);
                else
                    out << "undefined";
            }
            out << '\n';
            return 0;
        });
    }
    return 0;
}

int runIntegral(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    cFileOptions options;
    if (!readOptions(arguments, options, err, true))
        return 2;
    if (options.positional.size() != 2) {
        err << "zelwave-cli integral: name one file and one curve\n";
        return 2;
    }
    cCurvePlotDataFile store;
    cCurveChoice choice;
    curvePlotFunctionArgs::cDataVectors vectors;
    std::vector<double> indices;
    if (!openCurve(store, options, "integral", err, choice) || !curveVectors("integral", err, choice, vectors, indices))
        return 1;
    if (vectors.yDoubleComplex || vectors.yFloatComplex) {
        err << "zelwave-cli integral: \"" << choice.curve->name() << "\" is complex; integrals are of real curves\n";
        return 1;
    }
    curvePlotFunctionArgs::visitDataVectors(vectors, [&](auto xs, auto ys) {
        if constexpr (std::is_arithmetic_v<std::remove_cv_t<std::remove_pointer_t<decltype(ys)>>>) {
            out << "integral,absolute_integral\n"
                << number(curvePlotVariable::computeRealIntegral(xs, ys, vectors.count)) << ','
                << number(curvePlotVariable::computeRealAbsIntegral(xs, ys, vectors.count)) << '\n';
        }
        return 0;
    });
    return 0;
}

}  // namespace

void addValueSubcommands(cCliTool& tool)
{
    tool.add({"at", "the value of a curve at x positions, as a plot's cursor reads it",
              "usage: zelwave-cli at [options] [--closest] [--log-x] [--imag|--magnitude|--db|--phase]\n"
              "                      FILE CURVE X...\n\n"
              "Prints \"x,value\" for each X: the value interpolated between the neighbouring points\n"
              "(on log10 of x with --log-x), the end value outside the curve's range, \"undefined\"\n"
              "next to a missing value. With --closest the x and value of the nearest sample instead.\n"
              "A complex curve gives its real part unless a conversion is chosen. A digital curve gives\n"
              "the state in force at X (X in seconds): \"0\", \"1\", \"x\", \"z\" or a vector of them,\n"
              "or with --hex or --dec the vector's value in that radix.\n\n" +
                  std::string(kValueOptions),
              runAt});
    tool.add({"integral", "the integral and the integral of the absolute value of a curve over x",
              "usage: zelwave-cli integral [options] FILE CURVE\n\n"
              "Sums trapezoids between neighbouring points; the absolute integral cuts a trapezoid at\n"
              "its zero crossing.\n\n" +
                  std::string(kValueOptions),
              runIntegral});
}

}  // namespace vx3
