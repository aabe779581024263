// The single plot's paint cycle over one long curve (10^7 points by default, the count as the
// first argument): a full redraw of the zoomed view, against a scroll by 37 pixels (bitmap shift
// and a strip), and against a repaint that changes no curve (what a ruler or legend change costs).
#include <QApplication>
#include <cstdio>
#include <cstdlib>

#include "base/cVxLogger.h"
#include "base/cVxThread.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "singlePlotBenchSetup.h"

using namespace vx3;
using bench::kPlotHeight;
using bench::kPlotWidth;

namespace {

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
    bench::cLongCurve curve(count);
    const std::vector<double>& x = curve.x;
    const auto timeEach = [](int rounds, auto action) { return bench::millisecondsEach(rounds, action); };

    cVxLogger logger(vxLogger::warning);
    cVxMutex dataMutex("data");
    wxSinglePlotWidgetImpl plot(nullptr, dataMutex, logger);
    plot.addToPlot(curve.description);
    plot.paint(kPlotWidth, kPlotHeight);
    const double unzoomed = timeEach(3, [&](int) {
        plot.plotWidgetRedrawAll();
        plot.paint(kPlotWidth, kPlotHeight);
    });
    // A tenth of the curve: a million points on the canvas at the default count.
    const double span = x.back() * 0.1;
    plot.zoomToBoxCmd(x.back() * 0.3, x.back() * 0.3 + span, -1.2, 1.2);
    plot.paint(kPlotWidth, kPlotHeight);
    const double full = timeEach(5, [&](int) {
        plot.plotWidgetRedrawAll();
        plot.paint(kPlotWidth, kPlotHeight);
    });
    const double scroll = timeEach(40, [&](int round) {
        plot.scrollXPixels(round % 2 ? -37 : 37, false);
        plot.paint(kPlotWidth, kPlotHeight);
    });
    const double frame = timeEach(40, [&](int) {
        plot.plotWidgetRedrawFrame();
        plot.paint(kPlotWidth, kPlotHeight);
    });
    std::printf("points: %llu, canvas %d x %d\n", static_cast<unsigned long long>(count), kPlotWidth, kPlotHeight);
    report("full redraw, whole curve", unzoomed, "full redraw of a tenth", full);
    report("scroll by 37 pixels, a tenth shown", scroll, "full redraw of a tenth", full);
    report("repaint without curve change", frame, "full redraw of a tenth", full);
    return 0;
}
