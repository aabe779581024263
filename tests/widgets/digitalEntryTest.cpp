// Digital curves drawn through the one entry a plot calls (drawCurveDescription), from the store
// as the readers fill it: a dump written by iverilog at test time and read by the viewer's VCD
// reader, whose columns must agree with the changes a few lines of Python read from the dump; an
// enumerated column of a CSV file read by the table reader, a line over the numbers of its states;
// and every other layout the store can hold logic, discrete values or texts in, built directly,
// which must draw the same pixels as the layout of the dumps for the same changes.
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "../base/testSupport.h"
#include "digitalColumnCheck.h"
#include "digitalDumpOracle.h"
#include "expressions/cPostProcessCurveDescription.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"
#include "model/curveValueLookup.h"
#include "plot/wxCurveDescription.h"
#include "plot/wxPlotCurveDrawing.h"
#include "plot/wxPlotDrawerColBuffer.h"
#include "plot/wxPlotDrawerDigitalPens.h"
#include "plot/wxSinglePlotWidgetData.h"
#include "plot/wxSinglePlotWidgetXAxis.h"
#include "plot/wxSinglePlotWidgetYAxis.h"
#include "readers/cCurvePlotParser.h"
#include "widgets/qtVxBitmap.h"
#include "widgets/qtVxBufferedDrawContext.h"

using namespace vx3;
using namespace vx3::curvePlotProperties;
using namespace digitalColumnCheck;

namespace {

wxCurveStyle styleOfColour(unsigned colour)
{
    wxCurveStyle style;
    style.realColour = colour;
    style.realLineWidth = 1;
    return style;
}

const wxCurveStyle& curveStyle()
{
    static const wxCurveStyle style = styleOfColour(0x0000c0);
    return style;
}

const plotDrawerDigital::cDigitalPens& pens()
{
    static const auto made = plotDrawerDigital::cDigitalPens::fromMainPen(curveStyle().getRealPen());
    return made;
}

const QFont& valueFont()
{
    static const QFont font = [] {
        QFont made("DejaVu Sans");
        made.setPixelSize(11);
        return made;
    }();
    return font;
}

int inkedPixels(const QImage& image)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            n += (image.pixel(x, y) & 0xffffffu) != kWhite;
    return n;
}

// Columns whose pixels differ, rows from bandLow to bandHigh (counted from the bottom) left out.
int differingColumns(const QImage& a, const QImage& b, int bandLow = 1, int bandHigh = 0)
{
    int n = 0;
    for (int x = 0; x < a.width(); ++x)
        for (int row = 0; row < kHeight; ++row)
            if ((row < bandLow || row > bandHigh) && pixelAt(a, x, row) != pixelAt(b, x, row)) {
                ++n;
                break;
            }
    return n;
}

struct cEntryPlot {
    wxSinglePlotWidgetXAxis x;
    wxSinglePlotWidgetYAxis y;
    int width;

    cEntryPlot(int columns, double xmin, double xmax, double ymin = -0.25, double ymax = 1.25) : width(columns)
    {
        EXPECT_TRUE(x.setView(xmin, xmax, 0, columns - 1));
        x.computeMinMaxUpdate(0, columns - 1);
        EXPECT_TRUE(y.setView(ymin, ymax, 0, kHeight));
        y.computeMinMaxUpdate(0, kHeight);
    }
    int column(double value) const { return int(std::lrint(x.toInt(value))); }

    QImage draw(cCurvePlotDataSection* section, uint64_t index, plotCurveDrawing::cDrawOptions options = {},
                bool* drawn = nullptr) const
    {
        wxCurveDescription description;
        description.init(section, index, curveStyle());
        qtVxBitmap bitmap(width, kHeight);
        bitmap.fill(kWhite);
        if (!options.digitalFont)
            options.digitalFont = &valueFont();
        {
            qtVxBufferedDrawContextInverted context(bitmap);
            wxPlotDrawerColBuffer buffer;
            const plotCurveDrawing::cDrawResult result =
                drawCurveDescription(context, description, x, y, buffer, 0, UINT64_MAX, options);
            if (drawn)
                *drawn = result.drawn;
            else
                EXPECT_TRUE(result.drawn);
        }
        return bitmap.getImage().copy();
    }
};

}  // namespace

TEST(digitalEntry, dumpOfIverilogReadByTheViewerDrawsAtItsChangeTimes)
{
    zwtest::cTempDir folder("zw_digital_entry_");
    zwtest::cDigitalDumpOracle oracle;
    ASSERT_TRUE(oracle.write(folder.path())) << "the oracle needs iverilog and vvp";
    const double scale = oracle.scale;
    const uint64_t end = oracle.end;
    const auto& changes = oracle.changes;
    ASSERT_EQ(changes.size(), 3u);

    cCurvePlotDataFile store;
    cCurvePlotParser parser;
    ASSERT_EQ(parser.parse(store, folder.path() + "/design.vcd"), ok);
    cCurvePlotDataSection* section = store.getDataSectionFromIndex(0);
    ASSERT_TRUE(section);
    const cEntryPlot plot(801, 0, 200e-9);
    std::vector<QImage> drawnImages;
    for (const auto& [name, expected] : changes) {
        SCOPED_TRACE(name);
        uint64_t index = section->findVariableIndex("top." + name);
        if (index == cCurvePlotDataSection::npos)
            index = section->findVariableIndex("top." + name + "[7:0]");
        ASSERT_NE(index, cCurvePlotDataSection::npos);
        std::string error;
        ASSERT_TRUE(cPostProcessCurveDescription(section, index).load(false, error)) << error;
        // The layout the reader writes; the other layouts are drawn below against it.
        ASSERT_EQ(section->getVariable(index).getDataType(), sparse_logic_vector_4_state);

        // A plot spans the dump's whole time axis for a logic curve, its levels from 0 to 1.
        wxCurveDescription description;
        description.init(section, index);
        wxSinglePlotWidgetData extent(description, 0, 0);
        ASSERT_TRUE(extent.computeDerivedMinMaxValuesIfNecessary(true));
        EXPECT_DOUBLE_EQ(extent.getMaxX(), double(end) * scale);
        EXPECT_LE(extent.getMinX(), double(expected.front().first) * scale);
        EXPECT_EQ(extent.getRealMinY(), 0.0);
        EXPECT_EQ(extent.getRealMaxY(), 1.0);

        const QImage image = plot.draw(section, index);
        drawnImages.push_back(image);
        std::vector<int> columns;
        for (const auto& change : expected)
            columns.push_back(plot.column(double(change.first) * scale));
        const int last = plot.column(double(end) * scale);
        if (expected[0].second.size() == 1) {
            checkBitColumns(image, expected, columns, last, pens());
        } else {
            checkBusColumns(image, expected, columns, last, pens(), true);
            // The radix of the values reaches the bus: only the texts change.
            plotCurveDrawing::cDrawOptions binary;
            binary.digitalType = derivedCurveFunction::binary;
            const QImage inBinary = plot.draw(section, index, binary);
            EXPECT_EQ(differingColumns(image, inBinary, kMiddle - 8, kMiddle + 8), 0);
            EXPECT_GT(differingColumns(image, inBinary), 20);
        }
        // Nothing right of the dump's end.
        for (int column = last + 1; column < plot.width; ++column)
            for (int row = 0; row < kHeight; ++row)
                ASSERT_EQ(pixelAt(image, column, row), kWhite) << column << "," << row;
    }
    // For a look by eye: the signals one under the other.
    if (const char* keep = std::getenv("ZW_KEEP_DIGITAL_ENTRY_PNG")) {
        QImage all(plot.width, kHeight * int(drawnImages.size()), QImage::Format_RGB32);
        for (size_t i = 0; i < drawnImages.size(); ++i)
            for (int y = 0; y < kHeight; ++y)
                for (int x = 0; x < plot.width; ++x)
                    all.setPixel(x, int(i) * kHeight + y, drawnImages[i].pixel(x, y));
        EXPECT_TRUE(all.save(QString::fromStdString(keep), "PNG"));
    }
}

TEST(digitalEntry, enumeratedColumnOfACsvFileIsALineOverItsStates)
{
    zwtest::cTempDir folder("zw_digital_entry_csv_");
    // Runs of a state machine, one sample per time unit. The reader numbers the states in the
    // order of their names, and the plot's Y axis labels those numbers with the names.
    const std::vector<std::pair<int, std::string>> runs{{0, "go"}, {10, "waiting"}, {30, "halted"}, {60, "go"}};
    const std::map<std::string, int> numberOf{{"go", 0}, {"halted", 1}, {"waiting", 2}};
    constexpr int kEnd = 79;
    std::string text = "time,state\n";
    std::vector<int> states;
    size_t run = 0;
    for (int t = 0; t <= kEnd; ++t) {
        if (run + 1 < runs.size() && t >= runs[run + 1].first)
            ++run;
        text += std::to_string(t) + "," + runs[run].second + "\n";
        states.push_back(numberOf.at(runs[run].second));
    }
    const std::string path = folder.write("machine.csv", text);

    cCurvePlotDataFile store;
    cCurvePlotParser parser;
    ASSERT_EQ(parser.parse(store, path), ok);
    cCurvePlotDataSection* section = store.getDataSectionFromIndex(0);
    ASSERT_TRUE(section);
    const uint64_t index = section->findVariableIndex("state");
    ASSERT_NE(index, cCurvePlotDataSection::npos);
    std::string error;
    ASSERT_TRUE(cPostProcessCurveDescription(section, index).load(true, error)) << error;
    ASSERT_EQ(section->getVariable(index).getDataType(), data_enum);

    // States 0, 1 and 2 on the rows of low, middle and high.
    const cEntryPlot plot(801, 0, 80, -0.5, 2.5);
    const QImage image = plot.draw(section, index);
    const std::array<int, 3> rows{kLow, kMiddle, kHigh};
    int checked = 0;
    for (int t = 1; t < kEnd; ++t) {
        if (states[t - 1] != states[t] || states[t + 1] != states[t])
            continue;
        // Inside a run the line is flat at its state's row, and no other state's row is touched
        // (the pixels where segments meet are the rasteriser's business).
        for (int column = plot.column(t - 1) + 1; column < plot.column(t + 1); ++column)
            for (int state = 0; state < 3; ++state)
                ASSERT_EQ(pixelAt(image, column, rows[state]), state == states[t] ? pens().main.colour : kWhite)
                    << "t " << t << " column " << column << " state " << state;
        ++checked;
    }
    EXPECT_GT(checked, 60);
    for (int column = plot.column(kEnd) + 1; column < plot.width; ++column)
        for (int row = 0; row < kHeight; ++row)
            ASSERT_EQ(pixelAt(image, column, row), kWhite) << column << "," << row;
}

namespace {

// A section over x = 0, 10, ... 60 with curves of the same changes in every layout.
struct cLayouts {
    static constexpr uint64_t kCount = 7;
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = nullptr;
    std::array<double, kCount> xs{0, 10, 20, 30, 40, 50, 60};

    cLayouts()
    {
        cFileDbSupport& file = store.findDbSupport("layouts.dat");
        section = store.addDataSection("digital", &file);
        const cCurvePlotDataType* time = store.addType("time", data_double, curvePlotDataType::second);
        cCurvePlotSweepVariable& sweep = section->getSweepVariable(section->addSweepVariable(time, "time", 0));
        sweep.setDoubleValues(xs.data(), kCount);
        sweep.setMonotony(curvePlotVariable::computeMonotonyType(xs.data(), kCount));
    }
    cCurvePlotVariable& add(data_type type, const std::string& name, uint64_t& index,
                            const std::vector<std::string>& texts = {})
    {
        const cCurvePlotDataType* made =
            texts.empty() ? store.addType(name, type, curvePlotDataType::logic_state)
                          : store.addType(name, type, curvePlotDataType::no_unit, texts);
        index = section->addVariable(made, name);
        return section->getVariable(index);
    }
    // The dumps' layout: 64-bit positions, then the states.
    uint64_t addSparseVectors(data_type type, const std::vector<std::string>& states)
    {
        uint64_t index = 0;
        cCurvePlotVariable& v = add(type, "sparse" + std::to_string(type), index);
        EXPECT_TRUE(v.setValueVectorPairSize(kCount, states[0].size()));
        for (uint64_t i = 0; i < kCount; ++i)
            EXPECT_TRUE(v.pushBackValueVectorPair(uint64_t(xs[i]), states[i].data(), states[i].size()));
        return index;
    }
    // Records of a position of type P and the states, padded with zeros to stateBytes.
    template <class P>
    uint64_t addInterleaved(data_type type, const std::vector<std::string>& states, uint64_t stateBytes)
    {
        uint64_t index = 0;
        cCurvePlotVariable& v = add(type, "interleaved" + std::to_string(type), index);
        EXPECT_TRUE(v.setSize(kCount, sizeof(P) + stateBytes));
        for (uint64_t i = 0; i < kCount; ++i)
            EXPECT_TRUE(v.pushBackInterleavedSparse4StateValueLogicPair<P>(P(xs[i]), states[i].data(),
                                                                           states[i].size()));
        return index;
    }
    // The states of each x, one after the other; parameterized with x of its own, or flat.
    template <size_t W>
    uint64_t addParameterized(data_type type, const std::vector<std::string>& states)
    {
        uint64_t index = 0;
        cCurvePlotVariable& v = add(type, "parameterized" + std::to_string(type), index);
        std::vector<std::array<char, W>> values(kCount);
        for (uint64_t i = 0; i < kCount; ++i)
            std::copy_n(states[i].data(), W, values[i].data());
        EXPECT_TRUE(v.assignParameterizedValues(xs.data(), values.data(), kCount));
        return index;
    }
    uint64_t addFlatLogic(const std::vector<std::string>& states)
    {
        uint64_t index = 0;
        cCurvePlotVariable& v = add(nine_level_logic, "flat", index);
        EXPECT_TRUE(v.setSize(kCount, 1));
        for (const std::string& state : states)
            EXPECT_TRUE(v.pushBackValue(state[0]));
        return index;
    }
};

}  // namespace

TEST(digitalEntry, everyLayoutOfTheStoreDrawsAsTheDumpLayoutDoes)
{
    cLayouts layouts;
    const cEntryPlot plot(601, 0, 70);
    // Bits, with the upper case forms some writers use for unknown and floating.
    {
        const std::vector<std::string> bits{"0", "1", "x", "z", "1", "0", "0"};
        const std::vector<std::string> upper{"0", "1", "X", "Z", "1", "0", "0"};
        const uint64_t dumpLayout = layouts.addSparseVectors(sparse_logic_vector_4_state, bits);
        const QImage reference = plot.draw(layouts.section, dumpLayout);
        ASSERT_GT(inkedPixels(reference), 600);
        const std::map<std::string, uint64_t> others{
            {"interleaved", layouts.addInterleaved<uint64_t>(interleaved_sparse_logic, bits, 1)},
            {"interleaved with strength",
             layouts.addInterleaved<uint64_t>(interleaved_sparse_logic_with_strength, upper, 1)},
            {"interleaved 4-state, padded",
             layouts.addInterleaved<uint64_t>(interleaved_sparse_4_state_logic_vector, bits, 8)},
            {"interleaved 4-state 32-bit",
             layouts.addInterleaved<uint32_t>(interleaved_sparse_4_state_logic_vector_32b_index, upper, 1)},
            {"sparse 256 states", layouts.addSparseVectors(sparse_logic_vector_256_state, upper)},
            {"flat 9 levels", layouts.addFlatLogic(upper)},
            {"parameterized 9 levels", layouts.addParameterized<1>(parameterized_9_level_logic, upper)},
            {"parameterized 4 states", layouts.addParameterized<1>(data_double_parameterized_logic_4_state, bits)},
        };
        for (const auto& [name, index] : others)
            EXPECT_EQ(differingColumns(reference, plot.draw(layouts.section, index)), 0) << name;
    }
    // Buses of four bits, padded records among them.
    {
        const std::vector<std::string> bus{"0101", "1111", "xxxx", "zzzz", "01x1", "1100", "1100"};
        const uint64_t dumpLayout = layouts.addSparseVectors(sparse_logic_vector_4_state, bus);
        const QImage reference = plot.draw(layouts.section, dumpLayout);
        ASSERT_GT(inkedPixels(reference), 1000);
        const std::map<std::string, uint64_t> others{
            {"sparse 2 states", layouts.addSparseVectors(sparse_logic_vector_2_state, bus)},
            {"sparse 256 states", layouts.addSparseVectors(sparse_logic_vector_256_state, bus)},
            {"interleaved", layouts.addInterleaved<uint64_t>(interleaved_sparse_logic_vector, bus, 4)},
            {"interleaved 4-state, padded",
             layouts.addInterleaved<uint64_t>(interleaved_sparse_4_state_logic_vector, bus, 8)},
            {"interleaved 4-state 32-bit",
             layouts.addInterleaved<uint32_t>(interleaved_sparse_4_state_logic_vector_32b_index, bus, 4)},
            {"parameterized 2 states", layouts.addParameterized<4>(data_double_parameterized_logic_2_state, bus)},
            {"parameterized 4 states", layouts.addParameterized<4>(data_double_parameterized_logic_4_state, bus)},
            {"parameterized 256 states", layouts.addParameterized<4>(data_double_parameterized_logic_256_state, bus)},
        };
        for (const auto& [name, index] : others)
            EXPECT_EQ(differingColumns(reference, plot.draw(layouts.section, index)), 0) << name;
    }
    // Discrete values and texts: the names in boxes, a value past the names as its number, the
    // same for values in records and for a string curve of those texts.
    {
        const std::vector<std::string> names{"go", "wait", "halted"};
        const std::vector<uint32_t> values{0, 1, 2, 1, 5, 0, 0};
        uint64_t discreteIndex = 0, sparseIndex = 0, stringIndex = 0;
        cCurvePlotVariable& flat = layouts.add(discrete, "discrete", discreteIndex, names);
        ASSERT_TRUE(flat.setSize(values.size(), 4));
        cCurvePlotVariable& records = layouts.add(interleaved_sparse_discrete, "sparse discrete", sparseIndex, names);
        ASSERT_TRUE(records.setSize(values.size(), 8));
        cCurvePlotVariable& strings = layouts.add(data_uint32_string, "strings", stringIndex);
        ASSERT_TRUE(strings.setSize(values.size(), 4));
        std::vector<std::string> texts;
        for (uint32_t i = 0; i < values.size(); ++i) {
            ASSERT_TRUE(flat.pushBackValue(values[i]));
            // The record's index points into the section's x values.
            ASSERT_TRUE(records.pushBackInterleavedSparseValueVectorPair<uint32_t>(
                i, reinterpret_cast<const char*>(&values[i]), 4));
            texts.push_back(values[i] < names.size() ? names[values[i]] : std::to_string(values[i]));
            ASSERT_TRUE(strings.pushBackUint32StringValue(texts.back()));
        }
        const QImage reference = plot.draw(layouts.section, discreteIndex);
        EXPECT_EQ(differingColumns(reference, plot.draw(layouts.section, sparseIndex)), 0) << "sparse discrete";
        EXPECT_EQ(differingColumns(reference, plot.draw(layouts.section, stringIndex)), 0) << "strings";
        // Each text centred in its box, its ink as wide as the font says within a few pixels.
        const QFontMetricsF metrics(valueFont());
        for (size_t k = 0; k + 2 < values.size(); ++k) {
            SCOPED_TRACE(texts[k]);
            const int from = plot.column(layouts.xs[k]), to = plot.column(layouts.xs[k + 1]);
            const auto ink = inkInBand(reference, from + 5, to - 5, pens().main.colour);
            ASSERT_GE(ink.first, 0);
            EXPECT_NEAR(ink.second - ink.first + 1, metrics.horizontalAdvance(QString::fromStdString(texts[k])), 4.0);
            EXPECT_NEAR((ink.first + ink.second) * 0.5, (from + to) * 0.5, 3.0);
        }
    }
    // Curves whose values are not in memory, or whose records hold no state, draw nothing.
    {
        uint64_t unloaded = 0, stateless = 0;
        layouts.add(sparse_logic_vector_4_state, "unloaded", unloaded);
        layouts.add(interleaved_sparse_logic, "stateless", stateless).setSize(4, 8);
        for (const uint64_t index : {unloaded, stateless}) {
            bool drawn = true;
            const QImage image = plot.draw(layouts.section, index, {}, &drawn);
            EXPECT_FALSE(drawn) << index;
            EXPECT_EQ(inkedPixels(image), 0) << index;
        }
    }
}
