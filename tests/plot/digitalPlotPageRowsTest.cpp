// The rows of a digital plot without any toolkit: places and heights of rows as buses open and
// close and groups hide their members, the row under a point while scrolled, bit names.
#include <gtest/gtest.h>

#include "plot/cDigitalPlotPageRows.h"

using namespace vx3;
using namespace digitalPlotPageRows;

namespace {

cRowHeights heights()
{
    cRowHeights h;
    h.digital = 20, h.analog = 60, h.group = 16, h.gap = 4;
    return h;
}

// Each row's top and height, for comparing whole layouts.
std::vector<std::pair<double, double>> places(const cDigitalPlotPageRows& rows)
{
    std::vector<std::pair<double, double>> out;
    for (const auto& row : rows.rows())
        out.emplace_back(row.position, row.height);
    return out;
}

}  // namespace

TEST(DigitalPlotPageRows, BusOpensIntoItsBitsAndClosesBackToTheSameLayout)
{
    cDigitalPlotPageRows rows;
    rows.setHeights(heights());
    rows.addCurve("top.clk", 0, 1);
    const size_t bus = rows.addCurve("top.count[7:0]", 1, 8);
    rows.addCurve("top.vout", 2, 0);
    // gap, then the row: 4..24, 28..48, 52..112.
    EXPECT_EQ(places(rows), (std::vector<std::pair<double, double>>{{4, 20}, {28, 20}, {52, 60}}));
    EXPECT_DOUBLE_EQ(rows.getTotalHeight(), 112.0);
    const auto closed = places(rows);

    ASSERT_TRUE(rows.expandBus(bus));
    EXPECT_FALSE(rows.expandBus(bus));  // already open
    ASSERT_EQ(rows.size(), 11u);
    for (unsigned field = 0; field < 8; ++field) {
        const auto& bit = rows.row(bus + 1 + field);
        EXPECT_EQ(bit.kind, row_bit);
        EXPECT_EQ(bit.curve, 1u);
        EXPECT_EQ(bit.field, field);
        EXPECT_TRUE(bit.parentExpanded);
        EXPECT_EQ(bit.name, "top.count[" + std::to_string(7 - field) + "]");
        EXPECT_DOUBLE_EQ(bit.position, 52.0 + 24.0 * field);
    }
    // The analog row moved down by eight bit rows and their gaps.
    EXPECT_DOUBLE_EQ(rows.row(10).position, 52.0 + 8 * 24.0);
    // A partial update from the bus on agrees with a full one.
    const auto full = places(rows);
    rows.updateYPositions(bus, true);
    EXPECT_EQ(places(rows), full);

    ASSERT_TRUE(rows.collapseBus(bus));
    EXPECT_FALSE(rows.collapseBus(bus));
    EXPECT_EQ(places(rows), closed);
    EXPECT_FALSE(rows.row(bus).expanded);

    // Only buses open: not a bit, not an analog curve, not a row past the end.
    EXPECT_FALSE(rows.expandBus(0));
    EXPECT_FALSE(rows.expandBus(2));
    EXPECT_FALSE(rows.expandBus(9));
    EXPECT_TRUE(rows.toggle(bus));
    EXPECT_TRUE(rows.row(bus).expanded);
    // Removing an open bus takes its bits along.
    ASSERT_TRUE(rows.removeRow(bus));
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows.row(1).name, "top.vout");
    EXPECT_DOUBLE_EQ(rows.row(1).position, 28.0);
}

TEST(DigitalPlotPageRows, GroupsHideTheirMembersUpToTheNextHeadingAndRowsAreFoundUnderPoints)
{
    cDigitalPlotPageRows rows;
    rows.setHeights(heights());
    const size_t group = rows.addGroup("control");
    rows.addCurve("clk", 0, 1);
    const size_t bus = rows.addCurve("addr[3:0]", 1, 4);
    rows.addSeparator("data path");
    rows.addCurve("data[0:1]", 2, 2);
    ASSERT_TRUE(rows.expandBus(bus));
    EXPECT_EQ(rows.row(bus + 1).name, "addr[3]");
    EXPECT_EQ(rows.row(rows.size() - 1).name, "data[0:1]");

    // Closing the group hides its members, the bits of its bus included, not what follows the
    // separator; every hidden row has no height and no gap.
    ASSERT_TRUE(rows.toggle(group));
    EXPECT_FALSE(rows.row(group).expanded);
    for (size_t i = group + 1; i < bus + 5; ++i) {
        EXPECT_TRUE(rows.row(i).hidden) << i;
        EXPECT_DOUBLE_EQ(rows.row(i).height, 0.0) << i;
    }
    const size_t separator = bus + 5;
    EXPECT_FALSE(rows.row(separator).hidden);
    EXPECT_DOUBLE_EQ(rows.row(separator).position, 4 + 16 + 4);
    EXPECT_DOUBLE_EQ(rows.row(separator + 1).position, 24 + 16 + 4);
    EXPECT_EQ(rows.findRowAt(10.0), int(group));
    EXPECT_EQ(rows.findRowAt(30.0), int(separator));
    EXPECT_EQ(rows.findRowAt(2.0), -1);  // the gap above the first row
    EXPECT_EQ(rows.findRowAt(1000.0), -1);
    // A bus hidden in a closed group keeps its bits when the group opens again.
    ASSERT_TRUE(rows.expandGroup(group, true));
    EXPECT_TRUE(rows.row(bus).expanded);
    EXPECT_DOUBLE_EQ(rows.row(bus + 4).height, 20.0);
    EXPECT_FALSE(rows.toggle(separator));

    // Scrolling: the offset stays between 0 and what the view can't show (plus a last gap).
    const double total = rows.getTotalHeight();
    rows.setViewHeight(50.0);
    EXPECT_TRUE(rows.scrollBy(24.0));
    EXPECT_DOUBLE_EQ(rows.getScrollOffset(), 24.0);
    EXPECT_EQ(rows.findRowAt(10.0), int(group + 1));  // 34 from the top of the rows: clk
    EXPECT_TRUE(rows.scrollBy(1e6));
    EXPECT_DOUBLE_EQ(rows.getScrollOffset(), total + 4 - 50.0);
    EXPECT_TRUE(rows.scrollBy(-1e6));
    EXPECT_DOUBLE_EQ(rows.getScrollOffset(), 0.0);
    EXPECT_FALSE(rows.scrollBy(-1.0));
    // A view taller than the rows doesn't scroll at all.
    rows.setViewHeight(1000.0);
    EXPECT_FALSE(rows.scrollBy(10.0));

    // The plot lost its curve 1 (the bus) and its curves 0 and 2 traded places: the bus's rows
    // go with its bits, the others follow their curves.
    rows.remapCurves({1, -1, 0});
    ASSERT_EQ(rows.size(), 4u);
    for (const auto& row : rows.rows())
        EXPECT_NE(row.name.substr(0, 4), "addr");
    EXPECT_EQ(rows.row(1).curve, 1u);
    EXPECT_EQ(rows.row(3).curve, 0u);
    EXPECT_TRUE(rows.checkShowsCurve(0));
    EXPECT_FALSE(rows.checkShowsCurve(2));
}

TEST(DigitalPlotPageRows, BitNamesAndRowRanges)
{
    EXPECT_EQ(makeBitName("top.count[7:0]", 8, 0), "top.count[7]");
    EXPECT_EQ(makeBitName("top.count[7:0]", 8, 7), "top.count[0]");
    EXPECT_EQ(makeBitName("b[0:3]", 4, 0), "b[0]");
    EXPECT_EQ(makeBitName("b[0:3]", 4, 3), "b[3]");
    EXPECT_EQ(makeBitName("b[15:8]", 8, 1), "b[14]");
    EXPECT_EQ(makeBitName("data", 4, 0), "data[3]");
    EXPECT_EQ(makeBitName("mem[2]", 4, 3), "mem[2][0]");  // an index, not a range
    double low = 0, high = 0;
    computeRowAxisRange(0.0, 1.0, low, high);
    EXPECT_DOUBLE_EQ(low, -0.05);
    EXPECT_DOUBLE_EQ(high, 1.05);
    computeRowAxisRange(3.0, -1.0, low, high);
    EXPECT_DOUBLE_EQ(low, -1.2);
    EXPECT_DOUBLE_EQ(high, 3.2);
    computeRowAxisRange(2.0, 2.0, low, high);  // a constant stands in the middle of its row
    EXPECT_DOUBLE_EQ(low + high, 4.0);
    EXPECT_LT(low, 2.0);
}
