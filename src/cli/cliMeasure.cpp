// zelwave-cli measure: every measurement of one curve over an interval, one "name,value" line
// each, for scripts that check a simulation's results.
#include <cmath>
#include <iostream>
#include <map>

#include "cCliTool.h"
#include "cliFileSupport.h"
#include "expressions/postProcessCalculus.h"
#include "expressions/postProcessMeasure.h"

namespace vx3 {

namespace {

using namespace cliFiles;

// The options that take a number, with their values; NaN for those not given.
struct cMeasureOptions {
    double from = NAN, to = NAN, threshold = NAN, lowPercent = 10, highPercent = 90;
};

// Takes the numeric options out of arguments; false with a message for a bad one.
bool readMeasureOptions(std::vector<std::string>& arguments, cMeasureOptions& options, std::ostream& err)
{
    const std::map<std::string, double*> numeric = {{"--from", &options.from},
                                                    {"--to", &options.to},
                                                    {"--threshold", &options.threshold},
                                                    {"--low", &options.lowPercent},
                                                    {"--high", &options.highPercent}};
    std::vector<std::string> rest;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const auto found = numeric.find(arguments[i]);
        if (found == numeric.end()) {
            rest.push_back(arguments[i]);
            continue;
        }
        if (i + 1 >= arguments.size() || !readNumber(arguments[i + 1], *found->second) || !std::isfinite(*found->second)) {
            err << "zelwave-cli measure: " << found->first << " wants a number\n";
            return false;
        }
        ++i;
    }
    if (!(options.lowPercent >= 0 && options.highPercent <= 100 && options.lowPercent < options.highPercent)) {
        err << "zelwave-cli measure: --low and --high are percentages, 0 <= low < high <= 100\n";
        return false;
    }
    arguments = std::move(rest);
    return true;
}

std::string value(double v)
{
    return std::isnan(v) ? "undefined" : number(v);
}

template <class X, class Y>
int printMeasurements(const postProcess::cCurveSamples<X, Y>& s, const cMeasureOptions& options, std::ostream& out,
                      std::ostream& err)
{
    using namespace postProcess;
    const double x1 = options.from, x2 = options.to;
    double minY = NAN, xAtMin = NAN, maxY = NAN, xAtMax = NAN, low = NAN, high = NAN;
    if (!s.monotone) {
        err << "zelwave-cli measure: " << cPostProcessCurveDescriptionUser::kNonMonotoneMessage << '\n';
        return 1;
    }
    if (!computeMinMaxXValues(s, x1, x2, minY, xAtMin, maxY, xAtMax) || !computeStateLevels(s, x1, x2, low, high)) {
        err << "zelwave-cli measure: the curve has no defined value in the interval\n";
        return 1;
    }
    std::vector<double> xs, ys, integral;
    double area = NAN;
    if (reduceWaveformToInterval(s, x1, x2, xs, ys) &&
        computeIntegralCurveTrapez(makeCurveSamples(xs.data(), ys.data(), xs.size()), integral))
        area = integral.back();
    const double threshold = std::isnan(options.threshold) ? low + 0.5 * (high - low) : options.threshold;
    auto edges = [&](edgeMeasure::edge_kind kind) {
        return computeEdgeTimesBetweenLevels(s, low, high, options.lowPercent, options.highPercent, x1, x2, kind);
    };
    const cEdgeStatistics rises = edges(edgeMeasure::rising_edge), falls = edges(edgeMeasure::falling_edge),
                          slews = edges(edgeMeasure::slew_edge);
    const std::pair<const char*, double> lines[] = {
        {"low_level", low},
        {"high_level", high},
        {"minimum_value", minY},
        {"minimum_x_value", xAtMin},
        {"maximum_value", maxY},
        {"maximum_x_value", xAtMax},
        {"average", computeCurveAverage(s, x1, x2)},
        {"integral", area},
        {"threshold", threshold},
        {"frequency", computeFrequency(s, threshold, x1, x2)},
        {"duty_cycle", computeCurveDutyCycle(s, threshold, x1, x2)},
        {"low_reference", rises.lowReference},
        {"high_reference", rises.highReference},
        {"rising_edges", static_cast<double>(rises.count)},
        {"min_rise_time", rises.minimum},
        {"average_rise_time", rises.average},
        {"max_rise_time", rises.maximum},
        {"falling_edges", static_cast<double>(falls.count)},
        {"min_fall_time", falls.minimum},
        {"average_fall_time", falls.average},
        {"max_fall_time", falls.maximum},
        {"min_slew_rate", slews.minimum},
        {"average_slew_rate", slews.average},
        {"max_slew_rate", slews.maximum},
    };
    for (const auto& [name, v] : lines)
        out << name << ',' << value(v) << '\n';
    return 0;
}

int runMeasure(const std::vector<std::string>& given, std::ostream& out, std::ostream& err)
{
    std::vector<std::string> arguments = given;
    cMeasureOptions measure;
    cFileOptions options;
    if (!readMeasureOptions(arguments, measure, err) || !readOptions(arguments, options, err, true))
        return 2;
    if (options.positional.size() != 2) {
        err << "zelwave-cli measure: name one file and one curve\n";
        return 2;
    }
    cCurvePlotDataFile store;
    cCurveChoice choice;
    if (!openCurve(store, options, "measure", err, choice))
        return 1;
    if (!choice.isSweep && choice.curve->getType() && choice.curve->getType()->checkIsDigital()) {
        err << "zelwave-cli measure: \"" << choice.curve->name() << "\" is digital; measurements are of real curves\n";
        return 1;
    }
    curvePlotFunctionArgs::cDataVectors vectors;
    std::vector<double> indices;
    if (!curveVectors("measure", err, choice, vectors, indices))
        return 1;
    int code = 1;
    const bool walked = postProcess::visitSamples(vectors, [&](const auto& samples) {
        if constexpr (postProcess::kIsComplex<std::remove_cvref_t<decltype(samples.y[0])>>)
            err << "zelwave-cli measure: \"" << choice.curve->name()
                << "\" is complex; measurements are of real curves\n";
        else
            code = printMeasurements(samples, measure, out, err);
    });
    if (!walked)
        err << "zelwave-cli measure: \"" << choice.curve->name() << "\" has values of a type that can't be measured\n";
    return code;
}

}  // namespace

void addMeasureSubcommands(cCliTool& tool)
{
    tool.add({"measure", "the levels, extremes, average, frequency, duty cycle and edges of a curve",
              "usage: zelwave-cli measure [options] [--from X1] [--to X2] [--threshold T] [--low P --high P]\n"
              "                           FILE CURVE\n\n"
              "Prints one \"name,value\" line per measurement of the curve between X1 and X2 (default:\n"
              "the whole curve; a bound between two points reads the curve there), \"undefined\" for a\n"
              "value that doesn't exist, e.g. a frequency without two rising crossings:\n"
              "  low_level, high_level   the state levels: where the curve dwells in the lower and the\n"
              "                          upper half of its range (a histogram), else its min and max\n"
              "  minimum_value, minimum_x_value, maximum_value, maximum_x_value, average, integral\n"
              "  threshold               T, by default halfway between the levels\n"
              "  frequency, duty_cycle   from the rising crossings of the threshold: 1 / the mean\n"
              "                          period, and the mean ratio of each period spent above it\n"
              "  low_reference, high_reference   the levels P% of the way from low to high level\n"
              "                          (default 10 and 90)\n"
              "  rising_edges, min_rise_time, average_rise_time, max_rise_time   edges from the low\n"
              "                          to the high reference; likewise falling edges and fall times\n"
              "  min_slew_rate, average_slew_rate, max_slew_rate   the references' span over the time\n"
              "                          of each rising or falling edge\n\n"
              "Options:\n"
              "  --reader R   read with one reader only: csv (fast, then slow), fast, slow, html, tecplot,\n"
              "               vcd, nutmeg\n"
              "  --section N  the section, counting from 0 (default 0)\n"
              "  --verbose    also print the readers' informations (to standard error)\n",
              runMeasure});
}

}  // namespace vx3
