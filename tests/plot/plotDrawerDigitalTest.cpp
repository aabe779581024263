// The walks of the digital drawers, against a context that records the painter calls: the calls
// follow the changes in view, not the records; unknown states become boxes and floating ones a
// line at mid level; bus texts are cut to their box or left out.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <set>

#include "digitalRecordingContext.h"
#include "plot/wxPlotDrawerDigitalEntry.h"
#include "plot/wxSinglePlotWidgetXAxis.h"
#include "plot/wxSinglePlotWidgetYAxis.h"

using namespace vx3;
using zwplot::cRecordedCall;
using zwplot::cRecordingContext;

namespace {

constexpr int kLow = 10, kHigh = 50, kMiddle = 30;

// One pixel per x unit from xmin; rows 10, 30 and 50 for the levels 0, 0.5 and 1.
struct cView {
    wxSinglePlotWidgetXAxis x;
    wxSinglePlotWidgetYAxis y;
    plotDrawerDigital::cDigitalPens pens = plotDrawerDigital::cDigitalPens::fromMainPen({0x0000c0, 1, 1});
    explicit cView(double xmin = 0, double xmax = 1000)
    {
        EXPECT_TRUE(x.setView(xmin, xmax, 0, xmax - xmin));
        EXPECT_TRUE(y.setView(-0.25, 1.25, 0, 60));
    }
    int column(double value) const { return int(std::lrint(x.toInt(value))); }
};

std::set<int> strokeColumns(const cRecordingContext& context)
{
    std::set<int> columns;
    for (const auto& call : context.calls())
        if (call.kind == cRecordedCall::stroke)
            columns.insert(int(call.x0));
    return columns;
}

// Horizontal runs are fills one row high; the X box is a fill of the box colour.
std::vector<const cRecordedCall*> fillsOf(const cRecordingContext& context, unsigned colour)
{
    std::vector<const cRecordedCall*> result;
    for (const auto& call : context.calls())
        if (call.kind == cRecordedCall::fill && call.colour == colour)
            result.push_back(&call);
    return result;
}

const cRecordedCall* strokeAt(const cRecordingContext& context, int column)
{
    for (const auto& call : context.calls())
        if (call.kind == cRecordedCall::stroke && int(call.x0) == column)
            return &call;
    return nullptr;
}

}  // namespace

TEST(plotDrawerDigital, twoStateCallsFollowTheChangesInView)
{
    // 200000 samples half a unit apart, the state toggling every 10 units.
    const size_t n = 200000;
    std::vector<double> xs(n);
    std::string states(n, '0');
    for (size_t i = 0; i < n; ++i) {
        xs[i] = 0.5 * double(i);
        states[i] = (i / 20) % 2 ? '1' : '0';
    }
    for (const auto& [xmin, xmax] : {std::pair{20000.0, 21000.0}, std::pair{20003.0, 20103.0}, std::pair{-50.0, 950.0}}) {
        SCOPED_TRACE(xmin);
        cView view(xmin, xmax);
        cRecordingContext context;
        drawLogicValue(context, view.x, view.y, xs.data(), 1.0, states.data(), 1, n,
                       derivedCurveFunction::monotony_strictly_rising, view.pens);
        std::set<int> expected;
        for (size_t i = 1; i < n; ++i)
            if (states[i] != states[i - 1] && xs[i] >= xmin && xs[i] <= xmax)
                expected.insert(view.column(xs[i]));
        ASSERT_FALSE(expected.empty());
        EXPECT_EQ(strokeColumns(context), expected);
        // An edge and a level per change, and the level that runs out of the view.
        EXPECT_LE(context.calls().size(), 2 * expected.size() + 2);
        for (const auto& call : context.calls()) {
            if (call.kind == cRecordedCall::stroke) {
                EXPECT_EQ(call.y0, kLow);
                EXPECT_EQ(call.y1, kHigh);
            } else {
                ASSERT_EQ(call.kind, cRecordedCall::fill);
                EXPECT_TRUE(call.y0 == kLow || call.y0 == kHigh) << call.y0;
                EXPECT_GE(call.x0, 0);
                EXPECT_LE(call.x1, xmax - xmin + 1);
            }
        }
    }

    // A million changes in one column: one bar from low to high, the levels either side.
    const size_t burst = 1000000;
    std::vector<double> bx{0.0};
    std::string bs = "0";
    for (size_t i = 0; i < burst; ++i) {
        bx.push_back(500.0 + 1e-7 * double(i));
        bs.push_back(i % 2 ? '0' : '1');
    }
    bx.push_back(1000.0);
    bs.push_back('1');  // the last burst state is 0: one more real change at 1000
    cView view;
    cRecordingContext context;
    drawLogicValue(context, view.x, view.y, bx.data(), 1.0, bs.data(), 1, bx.size(),
                   derivedCurveFunction::monotony_strictly_rising, view.pens);
    EXPECT_LE(context.calls().size(), 6u);
    EXPECT_EQ(strokeColumns(context), (std::set<int>{500, 1000}));
    const auto runs = fillsOf(context, view.pens.main.colour);
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_EQ(runs[0]->x0, 0);
    EXPECT_EQ(runs[0]->y0, kLow);
    EXPECT_EQ(runs[1]->x0, 501);  // the burst's last state, 0, from right of the bar to the change at 1000
    EXPECT_EQ(runs[1]->x1, 1001);
    EXPECT_EQ(runs[1]->y0, kLow);
    EXPECT_EQ(runs[2]->y0, kHigh);
}

TEST(plotDrawerDigital, unknownIsABoxFloatingAndWeakLevelsUseTheZPen)
{
    // 4-state records of a 32-bit index and a state, into x values 100 apart; the last record's
    // index lies past the x values and ends the curve.
    const std::vector<double> xs{0, 100, 200, 300, 400, 500, 600, 700};
    const std::vector<std::pair<uint32_t, char>> entries{{0, '0'}, {1, '1'}, {2, 'x'}, {3, 'z'}, {4, '0'},
                                                         {5, 'Z'}, {6, '1'}, {7, '1'}, {99, '0'}};
    std::vector<char> records;
    for (const auto& [index, state] : entries) {
        char record[5];
        std::memcpy(record, &index, 4);
        record[4] = state;
        records.insert(records.end(), record, record + 5);
    }
    cView view;
    cRecordingContext context;
    drawLogic4StateValueInterleaved32Bit(context, view.x, view.y, xs.data(), xs.size(), 1.0, records.data(), 5,
                                         entries.size(), view.pens);
    const auto boxes = fillsOf(context, view.pens.xBoxColour);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]->x0, 201);  // levels start right of their edge
    EXPECT_EQ(boxes[0]->x1, 301);
    EXPECT_EQ(boxes[0]->y0, kLow);
    EXPECT_EQ(boxes[0]->y1, kHigh + 1);
    EXPECT_EQ(fillsOf(context, view.pens.x.colour).size(), 2u);  // the box's top and bottom
    const auto floating = fillsOf(context, view.pens.z.colour);
    ASSERT_EQ(floating.size(), 2u);
    for (const auto* run : floating)
        EXPECT_EQ(run->y0, kMiddle);
    EXPECT_EQ(floating[0]->x0, 301);
    EXPECT_EQ(floating[1]->x0, 501);
    const std::vector<std::tuple<int, int, int>> edges{{100, kLow, kHigh}, {200, kLow, kHigh}, {300, kLow, kHigh},
                                                       {400, kLow, kMiddle}, {500, kLow, kMiddle}, {600, kMiddle, kHigh}};
    EXPECT_EQ(strokeColumns(context), (std::set<int>{100, 200, 300, 400, 500, 600}));
    for (const auto& [column, low, high] : edges) {
        const cRecordedCall* edge = strokeAt(context, column);
        ASSERT_TRUE(edge) << column;
        EXPECT_EQ(std::min(edge->y0, edge->y1), low) << column;
        EXPECT_EQ(std::max(edge->y0, edge->y1), high) << column;
    }
    // The last good record (700) ends the curve: no level reaches beyond it.
    for (const auto& call : context.calls())
        EXPECT_LE(call.x1, 701);

    // Strength levels: weak low and weak high at their rows in the Z pen, unknown weak at mid.
    const std::vector<std::pair<uint64_t, char>> weak{{0, '0'}, {1, 10}, {2, 12}, {3, 11}, {4, '1'}, {5, '1'}};
    std::vector<char> weakRecords;
    for (const auto& [index, state] : weak) {
        char record[9];
        std::memcpy(record, &index, 8);
        record[8] = state;
        weakRecords.insert(weakRecords.end(), record, record + 9);
    }
    context.clear();
    drawLogicValueInterleaved(context, view.x, view.y, xs.data(), xs.size(), 1.0, weakRecords.data(), 9, weak.size(),
                              view.pens);
    auto zRuns = fillsOf(context, view.pens.z.colour);
    ASSERT_EQ(zRuns.size(), 3u);
    EXPECT_EQ(zRuns[0]->y0, kLow);
    EXPECT_EQ(zRuns[1]->y0, kHigh);
    EXPECT_EQ(zRuns[2]->y0, kMiddle);
    EXPECT_EQ(strokeColumns(context), (std::set<int>{200, 300, 400}));  // 0 to weak 0 keeps its row

    // On a bus grid the weak levels are one state, at mid level.
    view.y.setGridType(plotDrawerDigital::cDigitalFrame::kBusGridType);
    context.clear();
    drawLogicValueInterleaved(context, view.x, view.y, xs.data(), xs.size(), 1.0, weakRecords.data(), 9, weak.size(),
                              view.pens);
    zRuns = fillsOf(context, view.pens.z.colour);
    ASSERT_EQ(zRuns.size(), 1u);
    EXPECT_EQ(zRuns[0]->x0, 101);
    EXPECT_EQ(zRuns[0]->x1, 401);
    EXPECT_EQ(zRuns[0]->y0, kMiddle);
    EXPECT_EQ(strokeColumns(context), (std::set<int>{100, 400}));
}

TEST(plotDrawerDigital, busTextIsCutToItsBoxAndLeftOutWhenTooNarrow)
{
    // Positions in ticks of 2 units: the values 12, AB for 6 units, FF for 34, 0x, zz.
    const std::vector<uint64_t> ticks{0, 150, 153, 170, 300, 500};
    const std::string bits = "00010010"
                             "10101011"
                             "11111111"
                             "0000xxxx"
                             "zzzzzzzz"
                             "zzzzzzzz";
    cView view;
    cRecordingContext context;
    drawLogicVector(context, view.x, view.y, ticks.data(), 2.0, bits.data(), 8, ticks.size(),
                    derivedCurveFunction::monotony_strictly_rising, derivedCurveFunction::hexadecimal_with_base,
                    view.pens);
    const auto texts = context.texts();
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_EQ(texts[0]->text, "12 hex");
    EXPECT_EQ(texts[0]->x0, 150);
    EXPECT_EQ(texts[0]->y0, kMiddle + 0.5);
    EXPECT_EQ(texts[1]->text, "F...");  // 24 pixels between the slants and the padding
    EXPECT_EQ(texts[1]->x0, 323);
    EXPECT_EQ(texts[2]->text, "0x hex");
    EXPECT_EQ(texts[2]->colour, view.pens.x.colour);
    EXPECT_EQ(texts[3]->text, "zz hex");
    EXPECT_EQ(texts[3]->colour, view.pens.z.colour);
    for (const auto* text : texts)
        EXPECT_NE(text->text.find_first_not_of("."), std::string::npos);
    // A box per run, AB's too, though it has no text.
    std::vector<const cRecordedCall*> boxes;
    for (const auto& call : context.calls())
        if (call.kind == cRecordedCall::polyline)
            boxes.push_back(&call);
    ASSERT_EQ(boxes.size(), 5u);
    EXPECT_EQ(boxes[1]->points.front().x, 300);
    EXPECT_EQ(boxes[1]->points.front().y, kMiddle);
    EXPECT_EQ(boxes[2]->colour, view.pens.main.colour);
    EXPECT_EQ(boxes[3]->colour, view.pens.x.colour);
    // The last run ends with the curve, straight: no point at mid level on its right end.
    for (const auto& point : boxes[4]->points)
        EXPECT_FALSE(point.x == 1000 && point.y == kMiddle);

    // A view starting inside a run shows the value in force there, cut straight at the edge.
    cView inside(100, 400);
    context.clear();
    drawLogicVector(context, inside.x, inside.y, ticks.data(), 2.0, bits.data(), 8, ticks.size(),
                    derivedCurveFunction::monotony_strictly_rising, derivedCurveFunction::hexadecimal, inside.pens);
    ASSERT_FALSE(context.texts().empty());
    EXPECT_EQ(context.texts()[0]->text, "12");
    EXPECT_EQ(context.texts()[0]->x0, 98.5);  // centred in the visible part: columns 0 to 197 less padding
    const auto& first = context.calls()[0];
    ASSERT_EQ(first.kind, cRecordedCall::polyline);
    for (const auto& point : first.points)
        EXPECT_FALSE(point.x == 0 && point.y == kMiddle);

    // Very many narrow runs: no text, and the calls stay bounded by the columns.
    const size_t many = 200000;
    std::vector<uint64_t> dense(many);
    std::string denseBits(many * 8, '0');
    for (size_t i = 0; i < many; ++i) {
        dense[i] = i;
        denseBits[i * 8 + 7] = char('0' + i % 2);
    }
    context.clear();
    drawLogicVector(context, view.x, view.y, dense.data(), 1000.0 / many, denseBits.data(), 8, many,
                    derivedCurveFunction::monotony_strictly_rising, derivedCurveFunction::hexadecimal, view.pens);
    EXPECT_TRUE(context.texts().empty());
    EXPECT_LE(context.calls().size(), 2u * 1001);
}

TEST(plotDrawerDigital, enumerationsShowTheirTexts)
{
    const std::vector<double> xs{0, 100, 200, 300, 400, 500};
    const std::vector<uint32_t> values{0, 0, 1, 7, 2, 2};
    const std::vector<std::string> names{"idle", "run", "stop"};
    cView view;
    cRecordingContext context;
    drawDenseEnum(context, view.x, view.y, xs.data(), 1.0, values.data(), xs.size(), names,
                  derivedCurveFunction::monotony_strictly_rising, view.pens);
    std::vector<std::string> shown;
    for (const auto* text : context.texts())
        shown.push_back(text->text);
    EXPECT_EQ(shown, (std::vector<std::string>{"idle", "run", "7", "stop"}));

    // The same as sparse records of a 32-bit index and a 32-bit value.
    std::vector<char> records;
    for (uint32_t i = 0; i < values.size(); ++i) {
        records.insert(records.end(), reinterpret_cast<const char*>(&i), reinterpret_cast<const char*>(&i) + 4);
        records.insert(records.end(), reinterpret_cast<const char*>(&values[i]),
                       reinterpret_cast<const char*>(&values[i]) + 4);
    }
    cRecordingContext sparse;
    drawSparseEnum(sparse, view.x, view.y, xs.data(), xs.size(), 1.0, records.data(), 8, values.size(), names,
                   view.pens);
    ASSERT_EQ(sparse.calls().size(), context.calls().size());
    for (size_t i = 0; i < sparse.calls().size(); ++i) {
        EXPECT_EQ(sparse.calls()[i].kind, context.calls()[i].kind);
        EXPECT_EQ(sparse.calls()[i].text, context.calls()[i].text);
    }
}

TEST(plotDrawerDigital, degenerateCurvesAndViews)
{
    cView view(100, 200);
    cRecordingContext context;
    const double xs[] = {150, 250, 300};
    const char states[] = "101";
    const auto draw = [&](const double* x, uint64_t count) {
        context.clear();
        drawLogicValue(context, view.x, view.y, x, 1.0, states, 1, count, derivedCurveFunction::monotony_rising,
                       view.pens);
    };
    draw(xs, 0);
    EXPECT_TRUE(context.calls().empty());
    draw(nullptr, 3);
    EXPECT_TRUE(context.calls().empty());
    draw(xs, 1);  // one record: one dot at its column
    ASSERT_EQ(context.calls().size(), 1u);
    EXPECT_EQ(context.calls()[0].x0, 50);
    EXPECT_EQ(context.calls()[0].x1, 51);
    EXPECT_EQ(context.calls()[0].y0, kHigh);
    draw(xs + 1, 2);  // right of the view
    EXPECT_TRUE(context.calls().empty());
    const double before[] = {10, 20, 30};
    draw(before, 3);  // left of the view
    EXPECT_TRUE(context.calls().empty());
    const double nan[] = {150, std::nan(""), 190};
    draw(nan, 3);  // a NaN x ends the curve
    ASSERT_EQ(context.calls().size(), 1u);
    EXPECT_EQ(context.calls()[0].x1, 51);
    // A pen of width 0 draws nothing.
    view.pens.main.width = 0;
    draw(xs, 3);
    EXPECT_TRUE(context.calls().empty());
    // A log axis: columns by decades; a value at or below zero sits at the left edge.
    view.pens.main.width = 1;
    wxSinglePlotWidgetXAxis logAxis;
    logAxis.setLog(true);
    ASSERT_TRUE(logAxis.setView(1, 1000, 0, 300));
    const double decades[] = {-5, 10, 100, 1000};
    context.clear();
    drawLogicValue(context, logAxis, view.y, decades, 1.0, "0101", 1, 4, derivedCurveFunction::monotony_rising,
                   view.pens);
    EXPECT_EQ(strokeColumns(context), (std::set<int>{100, 200, 300}));
    // Buses alike.
    context.clear();
    drawLogicVector(context, view.x, view.y, before, 1.0, "00011011", 2, 3, derivedCurveFunction::monotony_rising,
                    derivedCurveFunction::binary, view.pens);
    EXPECT_TRUE(context.calls().empty());
}
