#include "plot/wxSinglePlotWidgetLegend.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <map>

namespace vx3 {

using namespace singlePlotWidgetLegend;
using plotBoxLayout::cBox;

namespace singlePlotWidgetLegend {

namespace {
const std::array<const char*, 5> kNames{"No Legend", "Automatically Hidden", "In Plot Window", "On the Left",
                                        "On the Right"};
std::string squeezed(const std::string& text)
{
    std::string out;
    for (char c : text)
        if (c != ' ' && c != '_')
            out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}
}  // namespace

std::string get_legend_type_as_string(int type)
{
    return type >= 0 && type < get_nb_legend_types() ? kNames[type] : "";
}

int get_legend_type_from_string(const std::string& text)
{
    const std::string key = squeezed(text);
    if (key.size() == 1 && key[0] >= '0' && key[0] < '0' + get_nb_legend_types())
        return key[0] - '0';
    for (int type = 0; type < get_nb_legend_types(); ++type)
        if (squeezed(kNames[type]) == key)
            return type;
    return -1;
}

}  // namespace singlePlotWidgetLegend

bool wxSinglePlotWidgetLegend::setType(int type)
{
    if (type < 0 || type >= get_nb_legend_types())
        return false;
    mType = type;
    mAutoShown = false;
    return true;
}

bool wxSinglePlotWidgetLegend::checkIfLegendIsShown() const
{
    if (mEntries.empty() || mType == no_legend)
        return false;
    return mType != automatically_hidden || mAutoShown;
}

bool wxSinglePlotWidgetLegend::checkTakesSideBand() const
{
    return (mType == on_the_left || mType == on_the_right) && !mEntries.empty();
}

std::vector<std::string> wxSinglePlotWidgetLegend::computeCurveNames(const std::vector<wxSinglePlotWidgetData>& curves)
{
    // Each name grows only as far as it must: the plain name, then with the section, then with
    // the file, last with the sweep index; a level is taken by all curves that share a name.
    using Namer = std::string (*)(const wxSinglePlotWidgetData&);
    const std::array<Namer, 4> levels{
        [](const wxSinglePlotWidgetData& c) { return c.description().getName(); },
        [](const wxSinglePlotWidgetData& c) { return c.description().getCompleteName(); },
        [](const wxSinglePlotWidgetData& c) { return c.description().getFullCurveName(true); },
        [](const wxSinglePlotWidgetData& c) {
            return c.description().getFullCurveName(true) + " [" +
                   std::to_string(c.description().postProcessState().sweepIndex) + "]";
        }};
    std::vector<size_t> level(curves.size(), 0);
    std::vector<std::string> names(curves.size());
    for (size_t round = 0; round < levels.size(); ++round) {
        for (size_t i = 0; i < curves.size(); ++i)
            names[i] = levels[level[i]](curves[i]);
        std::map<std::string, std::vector<size_t>> holders;
        for (size_t i = 0; i < curves.size(); ++i)
            holders[names[i]].push_back(i);
        bool changed = false;
        for (auto& [name, indices] : holders) {
            if (indices.size() < 2)
                continue;
            for (size_t i : indices)
                if (level[i] + 1 < levels.size()) {
                    ++level[i];
                    changed = true;
                }
        }
        if (!changed)
            break;
    }
    return names;
}

void wxSinglePlotWidgetLegend::update(const std::vector<wxSinglePlotWidgetData>& curves)
{
    mEntries.clear();
    const std::vector<std::string> names = computeCurveNames(curves);
    for (size_t i = 0; i < curves.size(); ++i) {
        const wxSinglePlotWidgetData& curve = curves[i];
        const wxCurveStyle& style = curve.description().style();
        const bool both = curve.checkRealPartShown() && curve.checkImagPartShown();
        if (curve.checkRealPartShown())
            mEntries.push_back({i, false, both ? names[i] + " (re)" : names[i], style.getRealPen(), style.realSymbol,
                                curve.realHighlighted});
        if (curve.checkImagPartShown())
            mEntries.push_back({i, true, both ? names[i] + " (im)" : names[i], style.getImagPen(), style.imagSymbol,
                                curve.imagHighlighted});
    }
    if (mFirstVisible >= mEntries.size())
        mFirstVisible = 0;
}

std::vector<size_t> wxSinglePlotWidgetLegend::getIndexInPlotDataIndices() const
{
    std::vector<size_t> indices;
    for (const cLegendEntry& entry : mEntries)
        indices.push_back(entry.curveIndex);
    return indices;
}

double wxSinglePlotWidgetLegend::rowHeight(const wxAxisTextMetricsVirtual& metrics) const
{
    return std::ceil(metrics.getTextHeight("Xg")) + geometry.rowGap;
}

double wxSinglePlotWidgetLegend::naturalWidth(const wxAxisTextMetricsVirtual& metrics) const
{
    double widest = 0.0;
    for (const cLegendEntry& entry : mEntries)
        widest = std::max(widest, metrics.getTextWidth(entry.name));
    return std::ceil(2.0 * geometry.padding + geometry.sampleWidth + geometry.sampleGap + widest);
}

double wxSinglePlotWidgetLegend::computeSideWidth(const wxAxisTextMetricsVirtual& metrics, double widgetWidth) const
{
    if (!checkTakesSideBand())
        return 0.0;
    return std::min(naturalWidth(metrics) + geometry.margin, std::floor(widgetWidth * geometry.maxShareOfWidth));
}

void wxSinglePlotWidgetLegend::layout(const wxAxisTextMetricsVirtual& metrics, const cBox& widget, const cBox& canvas)
{
    mRows.clear();
    mRect = {};
    mCanvas = canvas;
    if (!checkIfLegendIsShown())
        return;
    const double row = rowHeight(metrics);
    const double pad = geometry.padding;
    const double wanted = naturalWidth(metrics);
    const double neededHeight = 2.0 * pad + row * static_cast<double>(mEntries.size()) - geometry.rowGap;
    if (mType == on_the_left || mType == on_the_right) {
        const double width = std::min(wanted, std::floor((widget.x1 - widget.x0) * geometry.maxShareOfWidth));
        const double height = std::min(neededHeight, canvas.y1 - canvas.y0);
        const double left = mType == on_the_right ? widget.x1 - geometry.margin - width : widget.x0 + geometry.margin;
        mRect = {left, canvas.y1 - height, left + width, canvas.y1};
    } else {
        const double room = canvas.x1 - canvas.x0 - 2.0 * geometry.margin;
        const double width = std::min(wanted, std::floor(room * geometry.maxShareOfWidth * 1.5));
        const double height = std::min(neededHeight, canvas.y1 - canvas.y0 - 2.0 * geometry.margin);
        double left = canvas.x1 - geometry.margin - width, top = canvas.y1 - geometry.margin;
        if (mFixed) {
            left = std::clamp(canvas.x0 + mFixedLeft, canvas.x0, std::max(canvas.x0, canvas.x1 - width));
            top = std::clamp(canvas.y1 - mFixedTop, std::min(canvas.y1, canvas.y0 + height), canvas.y1);
        }
        mRect = {left, top - height, left + width, top};
    }
    if (mRect.width() < pad * 2.0 + geometry.sampleWidth || mRect.height() < row) {
        mRect = {};  // no room for even one entry
        return;
    }
    mVisibleRows = static_cast<size_t>(std::max(1.0, std::floor((mRect.height() - 2.0 * pad + geometry.rowGap) / row)));
    if (mFirstVisible + mVisibleRows > mEntries.size())
        mFirstVisible = mEntries.size() > mVisibleRows ? mEntries.size() - mVisibleRows : 0;
    const double textLeft = mRect.x0 + pad + geometry.sampleWidth + geometry.sampleGap;
    const double textRoom = mRect.x1 - pad - textLeft;
    double top = mRect.y1 - pad;
    for (size_t i = mFirstVisible; i < mEntries.size() && mRows.size() < mVisibleRows; ++i) {
        const cBox box{mRect.x0 + pad, top - (row - geometry.rowGap), mRect.x1 - pad, top};
        mRows.push_back({i, box, truncateText(metrics, mEntries[i].name, textRoom)});
        top -= row;
    }
}

int wxSinglePlotWidgetLegend::legendHitTest(double x, double y) const
{
    for (const cRow& row : mRows)
        if (row.box.contains(x, y))
            return static_cast<int>(row.entry);
    return -1;
}

bool wxSinglePlotWidgetLegend::scroll(bool down)
{
    if (down)
        return scrollToPosition(mFirstVisible + 1);
    return mFirstVisible > 0 && scrollToPosition(mFirstVisible - 1);
}

bool wxSinglePlotWidgetLegend::scrollToPosition(size_t first)
{
    const size_t last = mEntries.size() > mVisibleRows ? mEntries.size() - mVisibleRows : 0;
    first = std::min(first, last);
    if (first == mFirstVisible)
        return false;
    mFirstVisible = first;
    return true;
}

void wxSinglePlotWidgetLegend::moveLegend(double dx, double dy)
{
    if (!mFixed)
        setFixedPosition(mRect.x0 - mCanvas.x0, mCanvas.y1 - mRect.y1);
    mFixedLeft += dx;
    mFixedTop -= dy;  // dy upwards moves the top up
}

void wxSinglePlotWidgetLegend::setFixedPosition(double left, double top)
{
    mFixed = true;
    mFixedLeft = left;
    mFixedTop = top;
}

std::string wxSinglePlotWidgetLegend::truncateText(const wxAxisTextMetricsVirtual& metrics, const std::string& text,
                                                   double width)
{
    if (metrics.getTextWidth(text) <= width)
        return text;
    // Whole UTF-8 characters only; the longest prefix that fits with the dots.
    std::vector<size_t> cuts;
    for (size_t i = 1; i <= text.size(); ++i)
        if (i == text.size() || (static_cast<unsigned char>(text[i]) & 0xc0) != 0x80)
            cuts.push_back(i);
    size_t low = 0, high = cuts.size();  // answer: cuts[low - 1], low 0 meaning none
    while (low < high) {
        const size_t middle = (low + high + 1) / 2;
        if (metrics.getTextWidth(text.substr(0, cuts[middle - 1]) + "...") <= width)
            low = middle;
        else
            high = middle - 1;
    }
    if (low == 0)
        return metrics.getTextWidth("...") <= width ? "..." : "";
    return text.substr(0, cuts[low - 1]) + "...";
}

}  // namespace vx3
