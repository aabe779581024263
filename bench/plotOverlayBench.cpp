// What a ruler move and a legend change cost over a plot of one long curve (10^7 points by
// default, the count as the first argument): each repaints the picture over the kept bitmap and
// must not depend on the point count. Baseline: a full redraw of the same view in the same run.
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
using bench::millisecondsEach;

namespace {

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
    bench::cLongCurve curve(count);
    const std::vector<double>& x = curve.x;

    cVxLogger logger(vxLogger::warning);
    cVxMutex dataMutex("data");
    wxSinglePlotWidgetImpl plot(nullptr, dataMutex, logger);
    plot.addToPlot(curve.description);
    plot.paint(kPlotWidth, kPlotHeight);
    const double full = millisecondsEach(3, [&](int) {
        plot.plotWidgetRedrawAll();
        plot.paint(kPlotWidth, kPlotHeight);
    });
    wxSinglePlotOverlay& overlay = plot.overlay();
    overlay.setCursor(x.back() * 0.25, "M1");
    const uint64_t drawsBefore = plot.getCurveDrawCount();
    const double ruler = millisecondsEach(200, [&](int round) {
        overlay.setCursor(x.back() * (0.3 + 0.003 * round), "C1");
        plot.plotWidgetRedrawFrame();
        plot.paint(kPlotWidth, kPlotHeight);
    });
    const double legend = millisecondsEach(200, [&](int round) {
        overlay.legend().setType(round % 2 ? singlePlotWidgetLegend::in_plot_window : singlePlotWidgetLegend::no_legend);
        plot.plotWidgetRedrawFrame();
        plot.paint(kPlotWidth, kPlotHeight);
    });
    std::printf("points: %llu, canvas %d x %d, curves drawn during the moves: %llu\n",
                static_cast<unsigned long long>(count), kPlotWidth, kPlotHeight,
                static_cast<unsigned long long>(plot.getCurveDrawCount() - drawsBefore));
    report("ruler move (C1 readout, dx and dy boxes)", ruler, full);
    report("legend change (in plot window / none)", legend, full);
    return 0;
}
