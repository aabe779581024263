// Digital, mixed and stacked pages offscreen, over a dump that iverilog writes at test time. The
// page's picture is read column by column: each row's ink tells the level there, which must be
// the state that a few lines of Python read from the dump, before and after a bus opens into its
// bits, in every plot of a page zoomed in one of them.
#include <gtest/gtest.h>

#include <QImage>
#include <QTest>
#include <cstdlib>
#include <filesystem>

#include "../base/testSupport.h"
#include "../plot/singlePlotTestSupport.h"
#include "base/cVxThread.h"
#include "digitalDumpOracle.h"
#include "plot/qt/cDigitalPlotPage.h"
#include "plot/qt/cMixedPlotPage.h"
#include "plot/qt/cStackedPlotPage.h"
#include "readers/cCurvePlotParser.h"

using namespace vx3;
using namespace zwplot;

namespace {

constexpr int kWidth = 1000, kHeight = 700;

// Background, grid and row lines are not ink.
bool isInk(QRgb pixel)
{
    const unsigned rgb = pixel & 0xffffffu;
    const singlePlotWidgetImpl::cPlotLook look;
    return rgb != look.background && rgb != look.fineGridColour && rgb != look.coarseGridColour &&
           rgb != digitalRowsPlot::row_line_colour;
}

// The level a column of a row shows: '0' ink only in the lower third of the band, '1' only in
// the upper third, 'z' only in the middle, 'x' from the lower to the upper third, '?' else.
char levelAt(const QImage& image, int column, int top, int bottom)
{
    const int third = (bottom - top) / 3;
    bool upper = false, middle = false, lower = false;
    for (int y = top; y < bottom; ++y)
        if (isInk(image.pixel(column, y)))
            (y < top + third ? upper : y < bottom - third ? middle : lower) = true;
    if (lower && upper)
        return 'x';
    if (lower && !middle)
        return '0';
    if (upper && !middle)
        return '1';
    if (middle && !lower && !upper)
        return 'z';
    return '?';
}

struct cDump {
    zwtest::cTempDir folder{"zw_digital_page_"};
    zwtest::cDigitalDumpOracle oracle;
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = nullptr;
    bool ok = false;

    cDump()
    {
        if (!oracle.write(folder.path()))
            return;
        cCurvePlotParser parser;
        if (parser.parse(store, folder.path() + "/design.vcd") != vx3::ok)
            return;
        section = store.getDataSectionFromIndex(0);
        ok = section != nullptr;
    }
    wxCurveDescription describe(const std::string& name) const
    {
        uint64_t index = section->findVariableIndex("top." + name);
        if (index == cCurvePlotDataSection::npos)
            index = section->findVariableIndex("top." + name + "[7:0]");
        EXPECT_NE(index, cCurvePlotDataSection::npos) << name;
        wxCurveDescription description;
        description.init(section, index);
        return description;
    }
    // The state of a signal (for a bit of a bus: field 0 the most significant) at a tick.
    char stateAt(const std::string& name, unsigned field, uint64_t tick) const
    {
        char state = '?';
        for (const auto& [at, value] : oracle.changes.at(name))
            if (at <= tick)
                state = value.size() > field ? value[field] : '?';
        return state;
    }
};

std::string joined(const std::vector<std::string>& messages)
{
    std::string text;
    for (const std::string& message : messages)
        text += message + "\n";
    return text;
}

// Writes the picture for a look by eye when ZW_KEEP_PAGE_IMAGES names a folder.
void keep(const QImage& image, const std::string& name)
{
    if (const char* folder = std::getenv("ZW_KEEP_PAGE_IMAGES"))
        image.save(QString::fromStdString(std::string(folder) + "/" + name + ".png"));
}

// Every row of a plot of rows that shows a bit within the canvas, checked in each column away from
// its changes against the oracle's states; returns the number of columns checked.
int checkBitRows(const QImage& image, wxDigitalRowsPlot& plot, int plotTop, int plotHeight, const cDump& dump)
{
    const singlePlotWidgetImpl::cPlotLook& look = plot.getLook();
    const wxSinglePlotWidgetAxis& x = plot.xAxis();
    const double scale = dump.oracle.scale;
    int checked = 0;
    for (const auto& row : plot.rows().rows()) {
        if (row.height <= 0 || row.width != 1)
            continue;
        const std::string name = row.name.substr(4, row.name.find('[') == std::string::npos
                                                        ? std::string::npos : row.name.find('[') - 4);
        const unsigned field = row.kind == digitalPlotPageRows::row_bit ? row.field : 0;
        // The band with a pixel either side: the levels lie just inside it.
        const int top = plotTop + look.topMargin + int(row.position - plot.rows().getScrollOffset()) - 1;
        const int bottom = top + int(row.height) + 2;
        if (bottom > plotTop + plotHeight - look.bottomMargin)
            continue;  // scrolled out of the canvas
        const auto& changes = dump.oracle.changes.at(name);
        for (int column = int(x.getPixelOfMin()) + 1; column < look.leftMargin + 1 + int(x.toInt(x.getMax()) -
                                                           x.getPixelOfMin()) - 1 && column < kWidth - look.rightMargin;
             ++column) {
            const double seconds = x.toDouble(column);
            const double tick = seconds / scale;
            if (tick < 0 || tick > double(dump.oracle.end))
                continue;
            bool nearChange = false;
            for (const auto& change : changes)
                nearChange = nearChange || std::abs(x.toInt(double(change.first) * scale) - column) < 3;
            if (nearChange || std::abs(x.toInt(double(dump.oracle.end) * scale) - column) < 3)
                continue;
            const char expected = dump.stateAt(name, field, uint64_t(tick));
            EXPECT_EQ(levelAt(image, column, top, bottom), expected)
                << row.name << " at column " << column << " (tick " << tick << ")";
            ++checked;
        }
    }
    return checked;
}

}  // namespace

TEST(DigitalPlotPage, BusOpensIntoBitsThatMatchTheDumpAndClosesToTheSamePicture)
{
    cDump dump;
    ASSERT_TRUE(dump.ok) << "the oracle needs iverilog and vvp";
    cCapturingLogger capture;
    cVxMutex mutex;
    cDigitalPlotPage page(nullptr, mutex, capture.logger);
    ASSERT_TRUE(page.addCurves(0, {dump.describe("clk"), dump.describe("count"), dump.describe("sig")}));
    wxDigitalRowsPlot& rows = page.rows();
    ASSERT_EQ(rows.rows().size(), 3u);
    EXPECT_EQ(rows.rows().row(1).width, 8u);

    const QImage closed = page.paintPage(kWidth, kHeight);
    keep(closed, "digital_closed");
    EXPECT_GT(checkBitRows(closed, rows, 0, kHeight, dump), 500);
    // The closed bus: a crossing at the middle of its band at each change of value.
    {
        const auto& bus = rows.rows().row(1);
        const int middle = rows.getLook().topMargin + int(bus.position + bus.height / 2);
        const auto& changes = dump.oracle.changes.at("count");
        for (size_t k = 1; k < changes.size(); ++k) {
            const int column = int(std::lround(rows.xAxis().toInt(double(changes[k].first) * dump.oracle.scale)));
            bool crossing = false;
            for (int c = column - 1; c <= column + 1; ++c)
                crossing = crossing || isInk(closed.pixel(c, middle));
            EXPECT_TRUE(crossing) << "change " << k << " at column " << column;
        }
    }

    ASSERT_TRUE(rows.expandBus(1));
    ASSERT_EQ(rows.rows().size(), 11u);
    const QImage open = page.paintPage(kWidth, kHeight);
    keep(open, "digital_open");
    // Eight bit rows more than before, each column of each bit as the dump says.
    EXPECT_GT(checkBitRows(open, rows, 0, kHeight, dump), 9 * 500);
    EXPECT_EQ(rows.rows().row(2).name, "top.count[7]");

    ASSERT_TRUE(rows.collapseBus(1));
    const QImage again = page.paintPage(kWidth, kHeight);
    EXPECT_EQ(again, closed);

    // A click on the bus's name opens it, a second closes it; each is recorded by name.
    {
        std::vector<std::string> recorded;
        page.setCommandRecorder([&recorded](const std::string& text) { recorded.push_back(text); });
        rows.resize(kWidth, kHeight);
        const auto& look = rows.getLook();
        const auto& bus = rows.rows().row(1);
        const QPoint onName(look.leftMargin / 2, look.topMargin + int(bus.position + bus.height / 2));
        QTest::mouseClick(&rows, Qt::LeftButton, Qt::NoModifier, onName);
        EXPECT_EQ(rows.rows().size(), 11u);
        QTest::mouseClick(&rows, Qt::LeftButton, Qt::NoModifier, onName);
        EXPECT_EQ(rows.rows().size(), 3u);
        const std::string plot = "\"" + rows.getPlotName() + "\"";
        EXPECT_EQ(recorded, (std::vector<std::string>{"expand_group_in_plot " + plot + " \"top.count[7:0]\"",
                                                      "collapse_group_in_plot " + plot + " \"top.count[7:0]\""}));
        page.setCommandRecorder(nullptr);
    }

    // Curves leaving and coming back by the plot's own doors (remove, undo): the rows follow, each
    // row still naming the curve it draws.
    auto rowsMatchCurves = [&] {
        for (const auto& row : rows.rows().rows())
            if (row.kind == digitalPlotPageRows::row_curve &&
                rows.getCurves().at(row.curve).description().getName() != row.name)
                return false;
        return true;
    };
    ASSERT_TRUE(rows.removeFromPlot(0));
    page.paintPage(kWidth, kHeight);
    ASSERT_EQ(rows.rows().size(), 2u);
    EXPECT_TRUE(rowsMatchCurves());
    ASSERT_TRUE(rows.performUndoAction());
    const QImage back = page.paintPage(kWidth, kHeight);
    ASSERT_EQ(rows.rows().size(), 3u);
    EXPECT_TRUE(rowsMatchCurves());
    EXPECT_GT(checkBitRows(back, rows, 0, kHeight, dump), 2 * 500);
    EXPECT_EQ(joined(capture.log.messages), "");
}

TEST(DigitalPlotPage, PlotsOfAPageStayInStepWhenOneZooms)
{
    cDump dump;
    ASSERT_TRUE(dump.ok) << "the oracle needs iverilog and vvp";
    cCapturingLogger capture;
    cVxMutex mutex;

    // A digital page split in two: both plots of rows follow a zoom of either.
    cDigitalPlotPage page(nullptr, mutex, capture.logger);
    ASSERT_TRUE(page.addCurves(0, {dump.describe("clk"), dump.describe("sig")}));
    ASSERT_TRUE(page.splitPlot("1", true));
    ASSERT_TRUE(page.addCurves(1, {dump.describe("count")}));
    ASSERT_TRUE(page.rows(1).expandBus(0));
    const double t0 = 40e-9, t1 = 120e-9;
    ASSERT_TRUE(page.plot(1).zoomToBoxCmd(t0, t1, 0.0, 1.0));
    for (size_t i = 0; i < 2; ++i) {
        EXPECT_NEAR(page.plot(i).xAxis().getMin(), t0, 1e-15) << i;
        EXPECT_NEAR(page.plot(i).xAxis().getMax(), t1, 1e-15) << i;
    }
    const QImage zoomed = page.paintPage(kWidth, kHeight);
    keep(zoomed, "digital_zoomed");
    EXPECT_GT(checkBitRows(zoomed, page.rows(0), 0, kHeight / 2, dump), 2 * 500);
    EXPECT_GT(checkBitRows(zoomed, page.rows(1), kHeight / 2, kHeight / 2, dump), 8 * 500);
    // Synchronisation off: a zoom stays in its plot.
    page.setSynchronized(false);
    ASSERT_TRUE(page.plot(0).zoomToBoxCmd(0.0, 20e-9, 0.0, 1.0));
    EXPECT_NEAR(page.plot(1).xAxis().getMin(), t0, 1e-15);

    // A mixed page: an analog trace over the rows, one X pixel for one time in both.
    std::vector<double> x(201), y(201);
    for (size_t i = 0; i < x.size(); ++i)
        x[i] = double(i) * 1e-9, y[i] = std::sin(double(i) / 10.0);
    cTestSection analog(dump.store, "tran", x);
    cMixedPlotPage mixed(nullptr, mutex, capture.logger);
    ASSERT_TRUE(mixed.addMixedCurves({analog.describe(analog.addReal("vout", y)), dump.describe("clk")}));
    ASSERT_EQ(mixed.getNbOfPlots(), 2u);
    ASSERT_EQ(mixed.findRowsPlot(), 1);
    wxDigitalRowsPlot& rows = *mixed.rowsPlot(1);
    const size_t group = rows.addGroup("counter");
    ASSERT_TRUE(mixed.addMixedCurves({dump.describe("count")}));
    rows.addSeparator("");
    ASSERT_TRUE(mixed.addDigitalCurves({dump.describe("sig")}));
    ASSERT_EQ(mixed.getNbOfPlots(), 2u);
    ASSERT_TRUE(rows.expandBus(2));
    ASSERT_TRUE(mixed.plot(0).zoomToBoxCmd(t0, t1, -1.0, 1.0));
    const QImage picture = mixed.paintPage(kWidth, kHeight);
    keep(picture, "mixed");
    EXPECT_EQ(mixed.plot(0).getLook().leftMargin, rows.getLook().leftMargin);
    for (double t : {50e-9, 80e-9, 110e-9})
        EXPECT_NEAR(mixed.plot(0).xAxis().toInt(t), rows.xAxis().toInt(t), 0.5) << t;
    EXPECT_GT(checkBitRows(picture, rows, kHeight / 2, kHeight / 2, dump), 10 * 500);
    // The closed group hides the bus and its bits; clk and sig are still where the dump says.
    ASSERT_TRUE(rows.toggleRow(group));
    const QImage closedGroup = mixed.paintPage(kWidth, kHeight);
    keep(closedGroup, "mixed_group_closed");
    std::vector<std::string> shown;
    for (const auto& row : rows.rows().rows())
        if (row.height > 0 && row.width > 0)
            shown.push_back(row.name);
    EXPECT_EQ(shown, (std::vector<std::string>{"top.clk", "top.sig"}));
    EXPECT_GT(checkBitRows(closedGroup, rows, kHeight / 2, kHeight / 2, dump), 2 * 500);
    // One X axis with labels, under the rows; the trace above ends in a line.
    EXPECT_FALSE(mixed.plot(0).getLook().xAxisLabels);
    EXPECT_TRUE(rows.getLook().xAxisLabels);
    EXPECT_EQ(joined(capture.log.messages), "");
}

TEST(StackedPlotPage, TracesStackWithTheirOwnYOverOneXAndEdgesMove)
{
    cCapturingLogger capture;
    cVxMutex mutex;
    cCurvePlotDataFile store;
    std::vector<double> x(101), small(101), large(101);
    for (size_t i = 0; i < x.size(); ++i)
        x[i] = double(i), small[i] = 0.001 * double(i), large[i] = 1000.0 * double(i);
    cTestSection tran(store, "tran", x);
    cStackedPlotPage page(nullptr, mutex, capture.logger);
    ASSERT_TRUE(page.addTrace({tran.describe(tran.addReal("small", small))}));
    ASSERT_TRUE(page.addTrace({tran.describe(tran.addReal("large", large, curvePlotDataType::ampere))}));
    ASSERT_EQ(page.getNbOfPlots(), 2u);  // the first trace took the empty plot
    EXPECT_NEAR(page.plot(0).yAxis(0).getMax(), 0.1, 0.01);
    EXPECT_NEAR(page.plot(1).yAxis(0).getMax(), 1e5, 2e3);
    ASSERT_TRUE(page.plot(0).zoomToBoxCmd(20.0, 40.0, 0.0, 0.1));
    EXPECT_NEAR(page.plot(1).xAxis().getMin(), 20.0, 1e-9);
    EXPECT_NEAR(page.plot(1).xAxis().getMax(), 40.0, 1e-9);
    EXPECT_NEAR(page.plot(1).yAxis(0).getMax(), 1e5, 2e3);  // its own Y

    // The edge between them moves; no plot gets less than its smallest share.
    ASSERT_TRUE(page.moveEdgeBelow(0, 0.25));
    EXPECT_NEAR(page.getLayout().cell(0).h, 0.75, 1e-9);
    EXPECT_NEAR(page.getLayout().cell(1).y, 0.75, 1e-9);
    const QImage picture = page.paintPage(kWidth, kHeight);
    keep(picture, "stacked");
    // Both traces are drawn, each over the full width of one X: curve ink in each canvas.
    const int column = page.plot(0).getLook().leftMargin + 400;
    int inkAbove = 0, inkBelow = 0;
    for (int y = 0; y < kHeight; ++y)
        if (isInk(picture.pixel(column, y)) && (picture.pixel(column, y) & 0xffffffu) != 0x202020u)
            ++(y < kHeight * 3 / 4 ? inkAbove : inkBelow);
    EXPECT_GT(inkAbove, 0);
    EXPECT_GT(inkBelow, 0);
    ASSERT_TRUE(page.moveEdgeBelow(0, 5.0));
    EXPECT_NEAR(page.getLayout().cell(1).h, stackedPlotPage::smallest_share, 1e-9);
    EXPECT_FALSE(page.moveEdgeBelow(1, 0.1));
    EXPECT_EQ(joined(capture.log.messages), "");
}
