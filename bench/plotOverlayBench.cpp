// What a ruler move and a legend change cost over a plot of one long curve (10^7 points by
// default, the count as the first argument): each repaints the picture over the kept bitmap and
// must not depend on the point count. Baseline: a full redraw of the same view in the same run.
#include <QApplication>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "base/cVxLogger.h"
#include "base/cVxThread.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"

using namespace vx3;

namespace {

constexpr int kWidth = 1200;
constexpr int kHeight = 700;

template <typename Action>
double millisecondsEach(int rounds, Action action)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < rounds; ++i)
        action(i);
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count() / rounds;
}

void report(const char* name, double value, double baseline)
{
    std::printf("%s: %.4f ms; baseline: full redraw %.4f ms; ratio: %.4f\n", name, value, baseline,
                baseline > 0.0 ? value / baseline : 0.0);
}

}  // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const uint64_t count = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 10000000ull;

    cCurvePlotDataFile store;
    cCurvePlotDataSection& section = *store.addDataSection("tran", &store.findDbSupport("bench.raw"));
    std::vector<double> x(count), y(count);
    for (uint64_t i = 0; i < count; ++i) {
        x[i] = double(i) * 1e-9;
        y[i] = std::sin(double(i) * 1e-4) + 0.1 * std::sin(double(i) * 0.37);
    }
    const cCurvePlotDataType* time = store.addType("time", curvePlotProperties::data_double, curvePlotDataType::second);
    const cCurvePlotDataType* volt = store.addType("v", curvePlotProperties::data_double, curvePlotDataType::volt);
    section.getSweepVariable(section.addSweepVariable(time, "time", 0)).setDoubleValues(x.data(), count);
    const uint64_t curve = section.addVariable(volt, "v(out)");
    section.getVariable(curve).setDoubleValues(y.data(), count);
    wxCurveDescription description;
    description.init(&section, curve);
    description.style().realColour = 0xc02020;

    cVxLogger logger(vxLogger::warning);
    cVxMutex dataMutex("data");
    wxSinglePlotWidgetImpl plot(nullptr, dataMutex, logger);
    plot.addToPlot(description);
    plot.paint(kWidth, kHeight);
    const double full = millisecondsEach(3, [&](int) {
        plot.plotWidgetRedrawAll();
        plot.paint(kWidth, kHeight);
    });
    wxSinglePlotOverlay& overlay = plot.overlay();
    overlay.setCursor(x.back() * 0.25, "M1");
    const uint64_t drawsBefore = plot.getCurveDrawCount();
    const double ruler = millisecondsEach(200, [&](int round) {
        overlay.setCursor(x.back() * (0.3 + 0.003 * round), "C1");
        plot.plotWidgetRedrawFrame();
        plot.paint(kWidth, kHeight);
    });
    const double legend = millisecondsEach(200, [&](int round) {
        overlay.legend().setType(round % 2 ? singlePlotWidgetLegend::in_plot_window : singlePlotWidgetLegend::no_legend);
        plot.plotWidgetRedrawFrame();
        plot.paint(kWidth, kHeight);
    });
    std::printf("points: %llu, canvas %d x %d, curves drawn during the moves: %llu\n",
                static_cast<unsigned long long>(count), kWidth, kHeight,
                static_cast<unsigned long long>(plot.getCurveDrawCount() - drawsBefore));
    report("ruler move (C1 readout, dx and dy boxes)", ruler, full);
    report("legend change (in plot window / none)", legend, full);
    return 0;
}
