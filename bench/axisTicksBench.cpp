// Ticks and labels of 10^5 random views (from 1e-30 to 1e30, down to widths of 1e-15 of the
// value), against a naive tick loop in plain doubles with printf labels over the same views.
#include <chrono>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "plot/wxSinglePlotWidgetXAxis.h"

using namespace vx3;

namespace {

constexpr int kViews = 100000;
constexpr double kPixels = 1000.0;

class cFixedWidthMetrics : public wxAxisTextMetricsVirtual {
public:
    double getTextWidth(const std::string& text) const override { return 7.0 * static_cast<double>(text.size()); }
    double getTextHeight(const std::string&) const override { return 12.0; }
};

struct cView {
    double min, max;
};

std::vector<cView> makeViews()
{
    std::vector<cView> views;
    std::mt19937_64 random(1);
    std::uniform_int_distribution<int> magnitude(-30, 30), relativeWidth(-3, 15);
    std::uniform_real_distribution<double> mantissa(-9.99, 9.99), unit(0.5, 1.5);
    while (views.size() < static_cast<size_t>(kViews)) {
        const double centre = mantissa(random) * std::pow(10.0, magnitude(random));
        const double width = std::fabs(centre) * std::pow(10.0, -relativeWidth(random)) * unit(random);
        const double min = centre - 0.5 * width, max = centre + 0.5 * width;
        if (max - min > 1e-40 && max > min)
            views.push_back({min, max});
    }
    return views;
}

// What a first attempt looks like: a power of ten near a fifth of the range, doubles all through.
size_t naiveTicks(const cView& view, std::vector<double>& pixels, std::vector<std::string>& labels)
{
    pixels.clear();
    labels.clear();
    const double range = view.max - view.min;
    const double scale = kPixels / range;
    const double distance = std::pow(10.0, std::floor(std::log10(range / 5.0)));
    char text[32];
    for (double value = std::ceil(view.min / distance) * distance; value <= view.max && pixels.size() < 1000;
         value += distance) {
        pixels.push_back(std::round((value - view.min) * scale));
        std::snprintf(text, sizeof text, "%.6g", value);
        labels.emplace_back(text);
    }
    return pixels.size();
}

}  // namespace

int main()
{
    const std::vector<cView> views = makeViews();
    cFixedWidthMetrics metrics;

    std::vector<double> pixels;
    std::vector<std::string> labels;
    size_t naiveCount = 0;
    const auto naiveStart = std::chrono::steady_clock::now();
    for (const auto& view : views)
        naiveCount += naiveTicks(view, pixels, labels);
    const double naiveSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - naiveStart).count();

    wxSinglePlotWidgetXAxis axis;
    size_t tickCount = 0, labelCount = 0, deltaViews = 0;
    const auto start = std::chrono::steady_clock::now();
    for (const auto& view : views) {
        if (!axis.setView(view.min, view.max, 0.0, kPixels))
            continue;
        axis.computeAxesTicks(metrics, kPixels);
        tickCount += axis.getTicks().size();
        for (const auto& tick : axis.getTicks())
            labelCount += !tick.text.empty();
        deltaViews += axis.getDeltaReferenceIndex() >= 0;
    }
    const double axisSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    const double perView = axisSeconds / kViews * 1e6, naivePerView = naiveSeconds / kViews * 1e6;
    std::printf("views: %d; ticks per view: %.1f (naive %.1f); labels per view: %.1f; views with offset labels: %zu\n",
                kViews, static_cast<double>(tickCount) / kViews, static_cast<double>(naiveCount) / kViews,
                static_cast<double>(labelCount) / kViews, deltaViews);
    // Deep views make the naive loop crawl by rounding steps up to its cap, so per tick it is
    // compared as well.
    std::printf("axis ticks per tick: %.3f us; baseline: %.3f us; ratio: %.2f\n",
                axisSeconds * 1e6 / static_cast<double>(tickCount), naiveSeconds * 1e6 / static_cast<double>(naiveCount),
                (axisSeconds / static_cast<double>(tickCount)) / (naiveSeconds / static_cast<double>(naiveCount)));
    std::printf("axis ticks per view: %.2f us; baseline: %.2f us; ratio: %.2f\n", perView, naivePerView,
                perView / naivePerView);
    return 0;
}
