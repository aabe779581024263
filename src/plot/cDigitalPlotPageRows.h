// The rows of a digital plot: one row per curve (a bit, a bus, or an analog curve on a mixed
// page), a bus opened into one row per bit and closed again, named groups whose members can be
// hidden, and separators. Works out each row's height and place from the top, and which row lies
// under a point; the plot draws each curve in its row's band. No toolkit here.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vx3 {

namespace digitalPlotPageRows {

enum row_kind : int {
    row_curve = 0,      // a curve of the plot
    row_bit = 1,        // one bit of a bus row above it
    row_group = 2,      // a named heading; its members are the rows below it up to the next heading
    row_separator = 3,  // a named gap that ends a group
};

struct cRow {
    int kind = row_curve;
    std::string name;
    size_t curve = 0;     // curve and bit rows: the plot's curve shown (for a bit: its bus)
    unsigned width = 0;   // bits of the curve: 0 an analog curve, 1 a bit, more a bus
    unsigned field = 0;   // bit rows: the bit's place in the bus value, 0 the most significant
    bool expanded = false;        // a bus shows its bits; a group shows its members
    bool parentExpanded = true;   // a bit row: its bus is open
    bool hidden = false;          // a member of a closed group
    double height = 0.0;          // 0 for a row not shown
    double position = 0.0;        // top of the row from the top of the rows, gap included before it
};

// Pixels of the rows; the plot takes them from the configuration.
struct cRowHeights {
    double digital = 22.0;
    double analog = 72.0;
    double group = 18.0;
    double gap = 4.0;
};

// The Y range a row's axis shows for values from min to max: 5 % room above and below, so that
// the levels never touch the row's edges.
void computeRowAxisRange(double min, double max, double& low, double& high);

// "count[7:0]", 8 bits, field 0 -> "count[7]"; a name without a range counts from width - 1.
std::string makeBitName(const std::string& busName, unsigned width, unsigned field);

}  // namespace digitalPlotPageRows

class cDigitalPlotPageRows {
public:
    using cRow = digitalPlotPageRows::cRow;

    const std::vector<cRow>& rows() const { return mRows; }
    size_t size() const { return mRows.size(); }
    const cRow& row(size_t index) const { return mRows.at(index); }
    void setHeights(const digitalPlotPageRows::cRowHeights& heights);
    const digitalPlotPageRows::cRowHeights& getHeights() const { return mHeights; }

    // Each returns the new row's index. A row of a curve the rows already show is added again:
    // a user may want a signal twice, next to two others.
    size_t addCurve(const std::string& name, size_t curve, unsigned width);
    size_t addGroup(const std::string& name);
    size_t addSeparator(const std::string& name);
    // Removes a row; a bus takes its bit rows along, a group heading leaves its members.
    bool removeRow(size_t index);
    // The plot's curves changed: a row of curve i shows curve newIndex[i] now, or goes with its
    // bits when that is -1 (or i is past the list).
    void remapCurves(const std::vector<long>& newIndex);
    // Whether some curve or bit row shows the curve.
    bool checkShowsCurve(size_t curve) const;
    void clear() { mRows.clear(); }

    // Opens a bus into one row per bit, most significant first, right under it. False for a row
    // that is not a bus or already open.
    bool expandBus(size_t index);
    bool collapseBus(size_t index);
    // Opens or closes a group.
    bool expandGroup(size_t index, bool expand);
    // A bus or a group opens when closed and closes when open; false for other rows.
    bool toggle(size_t index);

    // Heights and places of the rows from row first on (the rows above keep theirs). With
    // assignHeights, each shown row takes the height of its kind; hidden rows take none.
    void updateYPositions(size_t first = 0, bool assignHeights = true);
    // From the top of the first row to the bottom of the last, gaps included.
    double getTotalHeight() const;
    // The row at a distance from the top of the rows area (the scroll offset added), -1 for none.
    int findRowAt(double y) const;

    // Rows scroll up and down inside a plot of viewHeight pixels; the offset stays in range.
    void setViewHeight(double height);
    bool scrollBy(double pixels);
    double getScrollOffset() const { return mScrollOffset; }

private:
    void clampScrollOffset();
    size_t endOfBits(size_t bus) const;
    void applyGroupVisibility();

    std::vector<cRow> mRows;
    digitalPlotPageRows::cRowHeights mHeights;
    double mViewHeight = 0.0;
    double mScrollOffset = 0.0;
};

}  // namespace vx3
