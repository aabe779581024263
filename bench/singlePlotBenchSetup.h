// What the single-plot benchmarks share: one long curve in a store of its own (a sine with a
// fast ripple over a rising time axis, as a transient simulation writes it) and the timing loop.
#pragma once

#include <chrono>
#include <cmath>
#include <cstdint>
#include <vector>

#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "plot/wxCurveDescription.h"

namespace vx3::bench {

constexpr int kPlotWidth = 1200;
constexpr int kPlotHeight = 700;

struct cLongCurve {
    cCurvePlotDataFile store;
    std::vector<double> x;
    wxCurveDescription description;

    explicit cLongCurve(uint64_t count) : x(count)
    {
        cCurvePlotDataSection& section = *store.addDataSection("tran", &store.findDbSupport("bench.raw"));
        std::vector<double> y(count);
        for (uint64_t i = 0; i < count; ++i) {
            x[i] = double(i) * 1e-9;
            y[i] = std::sin(double(i) * 1e-4) + 0.1 * std::sin(double(i) * 0.37);
        }
        const cCurvePlotDataType* time =
            store.addType("time", curvePlotProperties::data_double, curvePlotDataType::second);
        const cCurvePlotDataType* volt = store.addType("v", curvePlotProperties::data_double, curvePlotDataType::volt);
        section.getSweepVariable(section.addSweepVariable(time, "time", 0)).setDoubleValues(x.data(), count);
        const uint64_t curve = section.addVariable(volt, "v(out)");
        section.getVariable(curve).setDoubleValues(y.data(), count);
        description.init(&section, curve);
        description.style().realColour = 0xc02020;
    }
    double lastX() const { return x.back(); }
};

// Mean milliseconds of one call of action(round) over the given rounds.
template <typename Action>
double millisecondsEach(int rounds, Action action)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < rounds; ++i)
        action(i);
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count() / rounds;
}

}  // namespace vx3::bench
