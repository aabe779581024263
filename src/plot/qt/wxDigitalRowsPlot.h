// A plot of rows: each curve in a band of its own over the plot's X axis, with a names column
// in place of the Y axis. Buses open into their bits and close again by a click on their name;
// groups hide and show their members the same way; the wheel over the names scrolls the rows.
// X zoom, scroll, rulers and the page's connections are the single plot's own.
#pragma once

#include "plot/cDigitalPlotPageRows.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "plot/wxPlotDrawerColBuffer.h"

namespace vx3 {

namespace digitalRowsPlot {
// The names column never gets narrower than a Y axis, nor so wide that no curve is left.
constexpr int min_names_width = 72;
constexpr int max_names_width = 320;
constexpr unsigned group_band_colour = 0xe4eaf4;
constexpr unsigned separator_band_colour = 0xf0f0f0;
constexpr unsigned row_line_colour = 0xe0e0e0;
}  // namespace digitalRowsPlot

class wxDigitalRowsPlot : public wxSinglePlotWidgetImpl {
    Q_OBJECT
public:
    wxDigitalRowsPlot(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger, wxAnalogPlotVirtual* page,
                      int windowType = waveExplorerWidgetVirtual::digital_plot);

    const cDigitalPlotPageRows& rows() const { return mRows; }
    // Adds the curves to the plot and a row for each; false when none could be added. Curves that
    // reach the plot by other doors (a drop, an undo, a command) get their rows at the next paint,
    // and rows of curves that left it go.
    bool addRowCurves(const std::vector<wxCurveDescription>& curves);
    size_t addGroup(const std::string& name);
    size_t addSeparator(const std::string& name);
    bool expandBus(size_t row);
    bool collapseBus(size_t row);
    bool toggleRow(size_t row);
    // Opens or closes a bus or a group row; false for other rows or when nothing changed.
    bool expandRow(size_t row, bool expand);
    // The first bus or group row of the name, -1 for none.
    int findExpandableRow(const std::string& name) const;
    bool removeRow(size_t row);
    void setRowHeights(const digitalPlotPageRows::cRowHeights& heights);
    bool scrollRows(double pixels);
    // The width the names column needs for the present names (within the limits above).
    int computeNamesWidth() const;
    // Bits of a curve as the rows count them: 0 an analog curve, 1 a bit, more a bus.
    static unsigned computeLogicWidth(const wxCurveDescription& curve);

protected:
    void drawCurves(qtVxBufferedDrawContextInverted& context, size_t first) override;
    void drawGrid(qtVxBufferedDrawContextInverted& context, double x0, double x1, double y0, double y1) override;
    void drawLeftAxis(qtVxBufferedDrawContextInverted& context, const qtVxAxisDrawing::cAxisFrame& frame) override;
    void onMouseDown(double x, double y, int button, int modifiers) override;
    void onWheel(double x, double y, double steps, int modifiers) override;

private:
    // The rows follow the plot's curves: by identity of curve, not by place in the list.
    void syncRowsWithCurves();
    void rowsChanged();
    void drawRow(qtVxBufferedDrawContextInverted& context, const digitalPlotPageRows::cRow& row, double bandLow,
                 double bandHigh);
    std::string rowText(const digitalPlotPageRows::cRow& row) const;

    cDigitalPlotPageRows mRows;
    // The curves the rows were made for, in the plot's order then.
    struct cCurveKey {
        const void* section;
        uint64_t curve;
        unsigned sweep, cut;
        bool operator==(const cCurveKey&) const = default;
    };
    static cCurveKey keyOf(const wxSinglePlotWidgetData& curve);
    std::vector<cCurveKey> mRowKeys;
    wxPlotDrawerColBuffer mRowColBuffer;
};

}  // namespace vx3
