// The digital drawers' walk over 10^7 changes of a bit and of a 16-bit bus, stored sparsely as
// a dump leaves them (64-bit positions and states), on a 1000-column plot: the full view and a
// view zoomed to a thousandth, against a plain pass over the same arrays that only counts the
// changes. Painter calls are counted by a context that paints nothing.
#include <algorithm>
#include <chrono>
#include <cstring>
#include <cstdio>
#include <string>
#include <vector>

#include "plot/wxPlotDrawerDigitalEntry.h"
#include "plot/wxSinglePlotWidgetXAxis.h"
#include "plot/wxSinglePlotWidgetYAxis.h"

using namespace vx3;

namespace {

struct cPoint {
    double x, y;
    cPoint(double px, double py) : x(px), y(py) {}
};

struct cCountingContext {
    enum text_anchor : int { anchor_centre = 2 };
    long calls = 0;
    void setPen(const vxDrawContext::cVxPen&) {}
    void drawLine(double, double, double, double) { ++calls; }
    void drawPolyline(const std::vector<cPoint>&) { ++calls; }
    void drawVerticalStroke(double, double, double) { ++calls; }
    void fillRectangle(double, double, double, double, unsigned) { ++calls; }
    void drawText(const std::string&, double, double, int) { ++calls; }
    double getTextWidth(const std::string& text) const { return 7.0 * double(text.size()); }
    double getTextHeight(const std::string&) const { return 12.0; }
};

template <class Fn>
double bestMilliseconds(Fn&& fn)
{
    double best = 1e300;
    for (int run = 0; run < 5; ++run) {
        const auto start = std::chrono::steady_clock::now();
        fn();
        best = std::min(best, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    return best;
}

}  // namespace

int main()
{
    const size_t n = 10000000;
    const uint64_t width = 16;
    const double scale = 1e-12;
    std::vector<uint64_t> positions(n);
    std::string bits(n, '0'), bus(n * width, '0');
    for (size_t i = 0; i < n; ++i) {
        positions[i] = 10 * i + (i * 7919) % 5;  // a little jitter, as a real dump has
        bits[i] = i % 2 ? '1' : '0';
        for (uint64_t b = 0; b < width; ++b)
            bus[i * width + b] = (i >> (width - 1 - b)) & 1 ? '1' : '0';
    }
    const double last = double(positions.back()) * scale;
    const auto pens = plotDrawerDigital::cDigitalPens::fromMainPen({0x0000c0, 1, 1});
    wxSinglePlotWidgetYAxis yAxis;
    yAxis.setView(-0.25, 1.25, 0, 60);

    volatile size_t sink = 0;
    const double baseline = bestMilliseconds([&] {
        size_t changes = 0;
        for (size_t i = 1; i < n; ++i)
            changes += bits[i] != bits[i - 1] && double(positions[i]) * scale <= last;
        sink = changes;
    });
    const double busBaseline = bestMilliseconds([&] {
        size_t changes = 0;
        for (size_t i = 1; i < n; ++i)
            changes += std::memcmp(&bus[i * width], &bus[(i - 1) * width], width) != 0 &&
                       double(positions[i]) * scale <= last;
        sink = changes;
    });

    for (const double zoom : {1.0, 1e-3}) {
        wxSinglePlotWidgetXAxis xAxis;
        const double from = last * 0.4, to = from + (last - 0) * zoom;
        xAxis.setView(zoom == 1.0 ? 0 : from, zoom == 1.0 ? last : to, 0, 999);
        long bitCalls = 0, busCalls = 0;
        const double bitTime = bestMilliseconds([&] {
            cCountingContext context;
            drawLogicValue(context, xAxis, yAxis, positions.data(), scale, bits.data(), 1, n,
                           derivedCurveFunction::monotony_strictly_rising, pens);
            bitCalls = context.calls;
        });
        const double busTime = bestMilliseconds([&] {
            cCountingContext context;
            drawLogicVector(context, xAxis, yAxis, positions.data(), scale, bus.data(), width, n,
                            derivedCurveFunction::monotony_strictly_rising, derivedCurveFunction::hexadecimal, pens);
            busCalls = context.calls;
        });
        const char* name = zoom == 1.0 ? "full view" : "zoomed to 1/1000";
        std::printf("digital bit, 10^7 changes, %s: %.3f ms; baseline: %.3f ms; ratio: %.2f; painter calls: %ld\n",
                    name, bitTime, baseline, bitTime / baseline, bitCalls);
        std::printf("digital bus, 10^7 changes, %s: %.3f ms; baseline: %.3f ms; ratio: %.2f; painter calls: %ld\n",
                    name, busTime, busBaseline, busTime / busBaseline, busCalls);
    }
    return sink == 0 ? 1 : 0;
}
