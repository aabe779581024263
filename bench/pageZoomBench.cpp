// A page of 8 connected plots with 10^6 points each (the count as the first argument): one zoom
// command on the first plot, followed by the others through the page, until the last plot is
// painted; against 8 unconnected plots each zoomed and painted alone, the same work without the
// page in between.
#include <QApplication>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "base/cVxLogger.h"
#include "base/cVxThread.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "plot/qt/wxMultiPlotWidget.h"

using namespace vx3;

namespace {

constexpr int kPlots = 8;
constexpr int kWidth = 1200;
constexpr int kHeight = 100;  // each plot's share of an 800-pixel page
constexpr int kRounds = 6;

double millisecondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// The zoom window of a round: a tenth of the time axis, moving so that no round repeats a view.
void window(int round, double end, double& x0, double& x1)
{
    x0 = end * (0.05 + 0.08 * round);
    x1 = x0 + end * 0.1;
}

}  // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const uint64_t count = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1000000ull;

    cCurvePlotDataFile store;
    cFileDbSupport& file = store.findDbSupport("bench.raw");
    cCurvePlotDataSection& section = *store.addDataSection("tran", &file);
    std::vector<double> x(count);
    for (uint64_t i = 0; i < count; ++i)
        x[i] = double(i) * 1e-9;
    const cCurvePlotDataType* time = store.addType("time", curvePlotProperties::data_double, curvePlotDataType::second);
    const cCurvePlotDataType* volt = store.addType("v", curvePlotProperties::data_double, curvePlotDataType::volt);
    section.getSweepVariable(section.addSweepVariable(time, "time", 0)).setDoubleValues(x.data(), count);
    std::vector<wxCurveDescription> curves(kPlots);
    for (int p = 0; p < kPlots; ++p) {
        std::vector<double> y(count);
        for (uint64_t i = 0; i < count; ++i)
            y[i] = std::sin(double(i) * 1e-4 * (p + 1)) + 0.1 * std::sin(double(i) * 0.37);
        const uint64_t curve = section.addVariable(volt, "v" + std::to_string(p));
        section.getVariable(curve).setDoubleValues(y.data(), count);
        curves[p].init(&section, curve);
        curves[p].style().realColour = 0xc02020;
    }

    cVxLogger logger(vxLogger::warning);
    cVxMutex dataMutex("data");
    wxMultiPlotWidget page(nullptr, dataMutex, logger);
    for (int p = 1; p < kPlots; ++p)
        page.splitPlot(page.getPlotName(static_cast<size_t>(p - 1)), true);
    for (int p = 0; p < kPlots; ++p)
        page.addCurves(static_cast<size_t>(p), {curves[p]});
    std::vector<std::unique_ptr<wxSinglePlotWidgetImpl>> alone;
    for (int p = 0; p < kPlots; ++p) {
        alone.push_back(std::make_unique<wxSinglePlotWidgetImpl>(nullptr, dataMutex, logger));
        alone.back()->addToPlot(curves[p]);
    }
    for (int p = 0; p < kPlots; ++p) {
        page.plot(static_cast<size_t>(p)).paint(kWidth, kHeight);
        alone[p]->paint(kWidth, kHeight);
    }

    const double end = x.back();
    double connected = 0.0, separate = 0.0;
    bool inStep = true;
    for (int round = 0; round < kRounds; ++round) {
        double x0, x1;
        window(round, end, x0, x1);
        auto start = std::chrono::steady_clock::now();
        page.plot(0).zoomToBoxCmd(x0, x1, -1.2, 1.2);
        for (int p = 0; p < kPlots; ++p)
            page.plot(static_cast<size_t>(p)).paint(kWidth, kHeight);
        connected += millisecondsSince(start);
        // The followers took the X range: the measurement is of the synchronised zoom.
        for (int p = 1; p < kPlots; ++p)
            inStep = inStep && std::fabs(page.plot(static_cast<size_t>(p)).xAxis().getMin() - x0) < end * 1e-9;

        start = std::chrono::steady_clock::now();
        for (int p = 0; p < kPlots; ++p) {
            alone[p]->zoomToBoxCmd(x0, x1, -1.2, 1.2);
            alone[p]->paint(kWidth, kHeight);
        }
        separate += millisecondsSince(start);
    }
    connected /= kRounds;
    separate /= kRounds;
    std::printf("points per plot: %llu, %d plots of %d x %d, followers in step: %s\n",
                static_cast<unsigned long long>(count), kPlots, kWidth, kHeight, inStep ? "yes" : "NO");
    std::printf("synchronised zoom of %d plots: %.3f ms; baseline: %d plots zoomed alone %.3f ms; ratio: %.3f\n",
                kPlots, connected, kPlots, separate, separate > 0.0 ? connected / separate : 0.0);
    return inStep ? 0 : 1;
}
