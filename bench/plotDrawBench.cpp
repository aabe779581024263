// Drawing a curve of 10^7 (and with --large 10^8) double points on a 1000-pixel plot: the time of
// one full-view draw into a bitmap against a plain min/max pass over the same arrays, a draw
// zoomed to a thousandth, and the painter calls per draw (counted by a context that only counts,
// which is also the drawer's time without the painter).
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <vector>

#include <QGuiApplication>

#include "plot/wxPlotDrawer.h"
#include "widgets/qtVxBitmap.h"
#include "widgets/qtVxBufferedDrawContext.h"

namespace {

using namespace vx3;
using Clock = std::chrono::steady_clock;

struct cCountingContext {
    long calls = 0;
    void setPen(const vxDrawContext::cVxPen&) {}
    void setBrush(unsigned) {}
    void setTransparentBrush() {}
    void drawLine(double, double, double, double) { ++calls; }
    void drawVerticalStroke(double, double, double) { ++calls; }
    void drawPoint(double, double) { ++calls; }
    void drawEllipse(double, double, double) { ++calls; }
    void drawPolygon(const double*, const double*, int) { ++calls; }
};

template <class Fn>
double bestMs(int repeats, Fn&& fn)
{
    double best = 1e300;
    for (int r = 0; r < repeats; ++r) {
        const auto t0 = Clock::now();
        fn();
        best = std::min(best, std::chrono::duration<double, std::milli>(Clock::now() - t0).count());
    }
    return best;
}

void run(size_t n, int repeats)
{
    constexpr int W = 1000, H = 600;
    std::vector<double> x(n), y(n);
    std::mt19937_64 random(1);
    std::normal_distribution<double> normal(0.0, 1.0);
    double v = 0.0;
    for (size_t i = 0; i < n; ++i) {
        x[i] = double(i) * 1e-9;
        v += normal(random);
        y[i] = v;
    }
    // The baseline: what any drawer must at least do, read every value once.
    double lo = 0, hi = 0;
    const double baseline = bestMs(repeats, [&] {
        double a = INFINITY, b = -INFINITY, c = INFINITY, d = -INFINITY;
        for (size_t i = 0; i < n; ++i) {
            a = std::min(a, x[i]);
            b = std::max(b, x[i]);
            c = std::min(c, y[i]);
            d = std::max(d, y[i]);
        }
        lo = c;
        hi = d;
        if (a > b)
            std::puts("");
    });
    plotDrawer::cCurveLimits limits{x.front(), x.back(), lo, hi, derivedCurveFunction::monotony_strictly_rising};
    auto axes = [&](double x0, double x1, plotDrawer::cAxisMap& xa, plotDrawer::cAxisMap& ya,
                    plotDrawer::cDrawWindow& window) {
        xa.min = x0;
        xa.scale = (W - 1) / (x1 - x0);
        ya.min = lo;
        ya.scale = (H - 1) / (hi - lo);
        window = {x0 - 5 / xa.scale, x1 + 5 / xa.scale, lo - 5 / ya.scale, hi + 5 / ya.scale};
    };
    plotDrawer::cCurvePart part;
    part.pen = vxDrawContext::cVxPen{0xd02020, 1, vxDrawContext::solid_pen};
    wxPlotDrawerColBuffer buffer;
    plotDrawer::cRealSource<double, double> source{x.data(), y.data(), n};
    qtVxBitmap bitmap(W, H);

    auto drawBitmap = [&](double x0, double x1) {
        plotDrawer::cAxisMap xa, ya;
        plotDrawer::cDrawWindow window;
        axes(x0, x1, xa, ya, window);
        bitmap.fill(0xffffff);
        qtVxBufferedDrawContextInverted context(bitmap);
        plotDrawer::drawReal(context, source, 0, n, limits, xa, ya, window, part, buffer);
    };
    auto drawCounting = [&](double x0, double x1) {
        plotDrawer::cAxisMap xa, ya;
        plotDrawer::cDrawWindow window;
        axes(x0, x1, xa, ya, window);
        cCountingContext context;
        plotDrawer::drawReal(context, source, 0, n, limits, xa, ya, window, part, buffer);
        return context.calls;
    };
    const double full = bestMs(repeats, [&] { drawBitmap(x.front(), x.back()); });
    long calls = 0;
    const double counting = bestMs(repeats, [&] { calls = drawCounting(x.front(), x.back()); });
    const double span = (x.back() - x.front()) / 1000.0, mid = x[n / 2];
    const int zoomRepeats = 50;
    const double zoomed = bestMs(zoomRepeats, [&] { drawBitmap(mid, mid + span); });
    long zoomCalls = 0;
    bestMs(1, [&] { zoomCalls = drawCounting(mid, mid + span); });
    // An empty bitmap fill and context alone, so that the zoomed figure can be read net of it.
    const double frame = bestMs(zoomRepeats, [&] {
        bitmap.fill(0xffffff);
        qtVxBufferedDrawContextInverted context(bitmap);
    });

    const char* tag = n >= 100000000 ? "1e8" : n >= 10000000 ? "1e7" : "n";
    std::printf("draw_full_view_%s_points_bitmap: %.2f ms; baseline: %.2f ms; ratio: %.2f\n", tag, full, baseline,
                full / baseline);
    std::printf("draw_full_view_%s_points_counting: %.2f ms; baseline: %.2f ms; ratio: %.2f\n", tag, counting,
                baseline, counting / baseline);
    std::printf("painter_calls_full_view_%s: %ld calls; baseline: %d columns; ratio: %.2f\n", tag, calls, W,
                double(calls) / W);
    std::printf("draw_zoomed_1e-3_%s_points_bitmap: %.3f ms; baseline: %.3f ms (fill and context only); ratio: %.2f\n",
                tag, zoomed, frame, zoomed / frame);
    std::printf("painter_calls_zoomed_%s: %ld calls; baseline: %d columns; ratio: %.2f\n", tag, zoomCalls, W,
                double(zoomCalls) / W);
}

}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    bool large = false;
    for (int i = 1; i < argc; ++i)
        large = large || std::strcmp(argv[i], "--large") == 0;
    run(10000000, 5);
    if (large)
        run(100000000, 3);  // 1.6 GB of x and y
    else
        std::printf("(10^8 points: run with --large; it needs 1.6 GB)\n");
    return 0;
}
