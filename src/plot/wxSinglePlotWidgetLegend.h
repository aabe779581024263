// The legend of a single plot: one entry per shown part of each curve, in the plot's curve order,
// with the curve's pen and a name that is as short as it can be while it stays unique. It sits in
// the canvas (kinds 1 and 2) or in a band beside it (3 and 4); entries that don't fit scroll.
#pragma once

#include <string>
#include <vector>

#include "plot/wxAxisTextMetricsVirtual.h"
#include "plot/wxCurveStyle.h"
#include "plot/wxPlotBoxLayout.h"
#include "plot/wxSinglePlotWidgetData.h"

namespace vx3 {

namespace singlePlotWidgetLegend {

enum legend_type : int {
    no_legend = 0,
    automatically_hidden = 1,
    in_plot_window = 2,
    on_the_left = 3,
    on_the_right = 4,
};

std::string get_legend_type_as_string(int type);
constexpr int get_nb_legend_types() { return 5; }
// From the number or the name (case and blanks ignored); -1 when neither.
int get_legend_type_from_string(const std::string& text);

struct cLegendEntry {
    size_t curveIndex = 0;
    bool imaginary = false;
    std::string name;
    vxDrawContext::cVxPen pen;
    int symbol = 0;
    bool highlighted = false;
};

// Pixel sizes of the legend's parts.
struct cLegendGeometry {
    double padding = 6.0;
    double sampleWidth = 26.0;   // the line sample before each name
    double sampleGap = 6.0;
    double rowGap = 3.0;
    double margin = 8.0;         // between the legend and the canvas edge
    double maxShareOfWidth = 0.4;  // a legend never takes more of the widget's width
};

}  // namespace singlePlotWidgetLegend

class wxSinglePlotWidgetLegend {
public:
    wxSinglePlotWidgetLegend() = default;

    int getType() const { return mType; }
    // False for a number that is no legend kind.
    bool setType(int type);
    // Kind 1 shows while the mouse is over its place; the plot hides it again after a delay.
    void setAutoShown(bool shown) { mAutoShown = shown; }
    bool checkIfLegendIsShown() const;
    bool checkIfLegendCanBeToggled() const { return mType != singlePlotWidgetLegend::no_legend; }
    // Kinds 3 and 4 take a band beside the canvas.
    bool checkTakesSideBand() const;

    // The entries anew from the plot's curves.
    void update(const std::vector<wxSinglePlotWidgetData>& curves);
    const std::vector<singlePlotWidgetLegend::cLegendEntry>& getEntries() const { return mEntries; }
    // The index list of the curves shown, one per entry.
    std::vector<size_t> getIndexInPlotDataIndices() const;
    // The shortest unique name of curve index among the curves (see computeSectionNameGeneFlags).
    static std::vector<std::string> computeCurveNames(const std::vector<wxSinglePlotWidgetData>& curves);

    // The width a side band needs for widgetWidth, 0 for the kinds inside the canvas.
    double computeSideWidth(const wxAxisTextMetricsVirtual& metrics, double widgetWidth) const;
    // Places the legend: widget is the whole widget, canvas the curves' area (pixels, y upwards).
    // Kinds 3 and 4 take the band between the canvas and the widget's edge.
    void layout(const wxAxisTextMetricsVirtual& metrics, const plotBoxLayout::cBox& widget,
                const plotBoxLayout::cBox& canvas);
    const plotBoxLayout::cBox& getRectangle() const { return mRect; }
    // Rows of the visible entries, top down: the entry index and its box.
    struct cRow {
        size_t entry;
        plotBoxLayout::cBox box;
        std::string text;  // the name, cut to the room with "..."
    };
    const std::vector<cRow>& getRows() const { return mRows; }
    size_t getFirstVisible() const { return mFirstVisible; }
    bool checkCanScroll() const { return mRows.size() < mEntries.size(); }

    // The entry under (x, y), or -1.
    int legendHitTest(double x, double y) const;
    // One entry up (false) or down (true); false when it couldn't move.
    bool scroll(bool down);
    bool scrollToPosition(size_t first);
    // Kind 2 moved by the user: the offset of its top left corner from the canvas's top left.
    void moveLegend(double dx, double dy);
    void setFixedPosition(double left, double top);
    void resetPosition() { mFixed = false; }

    // text cut to width, ending in "..." when it had to be cut.
    static std::string truncateText(const wxAxisTextMetricsVirtual& metrics, const std::string& text, double width);

    singlePlotWidgetLegend::cLegendGeometry geometry;

private:
    double rowHeight(const wxAxisTextMetricsVirtual& metrics) const;
    double naturalWidth(const wxAxisTextMetricsVirtual& metrics) const;

    int mType = singlePlotWidgetLegend::in_plot_window;
    bool mAutoShown = false;
    std::vector<singlePlotWidgetLegend::cLegendEntry> mEntries;
    plotBoxLayout::cBox mRect;
    std::vector<cRow> mRows;
    size_t mFirstVisible = 0;
    size_t mVisibleRows = 0;
    plotBoxLayout::cBox mCanvas;
    bool mFixed = false;
    double mFixedLeft = 0.0, mFixedTop = 0.0;  // offset from the canvas's top left, y downwards
};

}  // namespace vx3
