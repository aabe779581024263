// The single plot's paint cycle over one long curve (10^7 points by default, the count as the
// first argument): a full redraw of the zoomed view, against a scroll by 37 pixels (bitmap shift
// and a strip), and against a repaint that changes no curve (what a ruler or legend change costs).
#include <QApplication>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
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

double millisecondsOf(const std::chrono::steady_clock::duration& duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

template <typename Action>
double timeEach(int rounds, Action action)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < rounds; ++i)
        action(i);
    return millisecondsOf(std::chrono::steady_clock::now() - start) / rounds;
}

void report(const char* name, double value, const char* baselineName, double baseline)
{
    std::printf("%s: %.4f ms; baseline: %s %.4f ms; ratio: %.4f\n", name, value, baselineName, baseline,
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
    cFileDbSupport& file = store.findDbSupport("bench.raw");
    cCurvePlotDataSection& section = *store.addDataSection("tran", &file);
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
    const double unzoomed = timeEach(3, [&](int) {
        plot.plotWidgetRedrawAll();
        plot.paint(kWidth, kHeight);
    });
    // A tenth of the curve: a million points on the canvas at the default count.
    const double span = x.back() * 0.1;
    plot.zoomToBoxCmd(x.back() * 0.3, x.back() * 0.3 + span, -1.2, 1.2);
    plot.paint(kWidth, kHeight);
    const double full = timeEach(5, [&](int) {
        plot.plotWidgetRedrawAll();
        plot.paint(kWidth, kHeight);
    });
    const double scroll = timeEach(40, [&](int round) {
        plot.scrollXPixels(round % 2 ? -37 : 37, false);
        plot.paint(kWidth, kHeight);
    });
    const double frame = timeEach(40, [&](int) {
        plot.plotWidgetRedrawFrame();
        plot.paint(kWidth, kHeight);
    });
    std::printf("points: %llu, canvas %d x %d\n", static_cast<unsigned long long>(count), kWidth, kHeight);
    report("full redraw, whole curve", unzoomed, "full redraw of a tenth", full);
    report("scroll by 37 pixels, a tenth shown", scroll, "full redraw of a tenth", full);
    report("repaint without curve change", frame, "full redraw of a tenth", full);
    return 0;
}
