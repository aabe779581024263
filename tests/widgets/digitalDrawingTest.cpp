// The digital drawers on the plots' own draw context, into images. A dump that iverilog writes at
// test time, read by the viewer's reader and drawn: every pixel column agrees with the changes
// that a few lines of Python read from the dump. And one image per kind of digital drawer,
// compared with the reference images kept beside this test, column by column, by colour only
// outside the band where bus texts stand (fonts differ between machines).
#include <QImage>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "../base/testSupport.h"
#include "digitalColumnCheck.h"
#include "digitalDumpOracle.h"
#include "expressions/cPostProcessCurveDescription.h"
#include "expressions/postProcessLogic.h"
#include "plot/qt/wxPlotDrawerDigitalQt.h"
#include "plot/wxSinglePlotWidgetXAxis.h"
#include "plot/wxSinglePlotWidgetYAxis.h"
#include "readers/cCurvePlotParser.h"
#include "widgets/qtVxBitmap.h"

using namespace vx3;
using namespace digitalColumnCheck;

namespace {

const plotDrawerDigital::cDigitalPens& pens()
{
    static const auto made = plotDrawerDigital::cDigitalPens::fromMainPen({0x0000c0, 1, 1});
    return made;
}

struct cPlot {
    wxSinglePlotWidgetXAxis x;
    wxSinglePlotWidgetYAxis y;
    qtVxBitmap bitmap;
    cPlot(int width, double xmin, double xmax) : bitmap(width, kHeight)
    {
        EXPECT_TRUE(x.setView(xmin, xmax, 0, width - 1));
        EXPECT_TRUE(y.setView(-0.25, 1.25, 0, kHeight));
        bitmap.fill(kWhite);
    }
    int column(double value) const { return int(std::lrint(x.toInt(value))); }
};

}  // namespace

TEST(digitalDrawing, dumpOfIverilogDrawsAtItsChangeTimes)
{
    zwtest::cTempDir folder("zw_digital_drawing_");
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
    const double xmax = 200e-9;
    for (const auto& [name, expected] : changes) {
        SCOPED_TRACE(name);
        uint64_t index = section->findVariableIndex("top." + name);
        if (index == cCurvePlotDataSection::npos)
            index = section->findVariableIndex("top." + name + "[7:0]");
        ASSERT_NE(index, cCurvePlotDataSection::npos);
        const cPostProcessCurveDescription description(section, index);
        std::string error;
        ASSERT_TRUE(description.load(false, error)) << error;
        postProcess::cSparseLogic curve;
        ASSERT_TRUE(postProcess::makeSparseLogic(*description.getCurvePtr(), *section, curve));
        ASSERT_EQ(curve.width, expected[0].second.size());

        cPlot plot(801, 0, xmax);
        {
            qtVxBufferedDrawContextInverted context(plot.bitmap);
            drawLogicVector(context, plot.x, plot.y, curve.positions, curve.timeScale, curve.states, curve.width,
                            curve.count, derivedCurveFunction::monotony_rising, derivedCurveFunction::hexadecimal,
                            pens());
        }
        const QImage& image = plot.bitmap.getImage();
        std::vector<int> columns;
        for (const auto& change : expected)
            columns.push_back(plot.column(double(change.first) * scale));
        const int last = plot.column(double(end) * scale);
        if (curve.width == 1)
            checkBitColumns(image, expected, columns, last, pens());
        else
            checkBusColumns(image, expected, columns, last, pens(), true);
        // Nothing right of the dump's end.
        for (int column = last + 1; column < 801; ++column)
            for (int row = 0; row < kHeight; ++row)
                ASSERT_EQ(pixelAt(image, column, row), kWhite) << column << "," << row;
    }
}

namespace {

// The colours of a column, outside the rows from bandLow to bandHigh (none when bandLow > bandHigh).
std::string columnColours(const QImage& image, int column, int bandLow, int bandHigh)
{
    std::string text;
    for (int y = 0; y < image.height(); ++y) {
        const int row = image.height() - 1 - y;
        if (row >= bandLow && row <= bandHigh)
            continue;
        char word[8];
        std::snprintf(word, sizeof(word), "%06x", image.pixel(column, y) & 0xffffffu);
        text += word;
    }
    return text;
}

// Compares with the reference image of that name, or writes it when ZW_UPDATE_REFERENCE_IMAGES is set.
void checkAgainstReference(const qtVxBitmap& bitmap, const std::string& name, bool withText)
{
    const std::string path = std::string(ZW_SOURCE_DIR) + "/tests/widgets/digital/" + name + ".png";
    if (std::getenv("ZW_UPDATE_REFERENCE_IMAGES")) {
        ASSERT_TRUE(bitmap.getImage().save(QString::fromStdString(path), "PNG")) << path;
        return;
    }
    QImage reference(QString::fromStdString(path));
    ASSERT_FALSE(reference.isNull()) << "no reference image " << path;
    reference = reference.convertToFormat(bitmap.getImage().format());
    ASSERT_EQ(reference.size(), bitmap.getImage().size()) << name;
    const int bandLow = withText ? kMiddle - 8 : 1, bandHigh = withText ? kMiddle + 8 : 0;
    int differing = 0;
    for (int column = 0; column < reference.width(); ++column)
        if (columnColours(reference, column, bandLow, bandHigh) !=
            columnColours(bitmap.getImage(), column, bandLow, bandHigh)) {
            if (++differing <= 5)
                ADD_FAILURE() << name << ": column " << column << " differs from the reference";
        }
    EXPECT_EQ(differing, 0) << name;
}

// Draws into a fresh plot of 400 columns over x 0 to 400, then compares with the reference.
template <class Draw>
void drawAndCompare(const std::string& name, bool withText, Draw&& draw)
{
    SCOPED_TRACE(name);
    cPlot plot(400, 0, 400);
    {
        qtVxBufferedDrawContextInverted context(plot.bitmap);
        draw(context, plot);
    }
    checkAgainstReference(plot.bitmap, name, withText);
}

// Records of a 32-bit index and a state.
std::vector<char> makeRecords(const std::vector<std::pair<uint32_t, std::string>>& entries, size_t stateSize)
{
    std::vector<char> records;
    for (const auto& [index, state] : entries) {
        const char* bytes = reinterpret_cast<const char*>(&index);
        records.insert(records.end(), bytes, bytes + 4);
        std::string padded = state;
        padded.resize(stateSize, '\0');
        records.insert(records.end(), padded.begin(), padded.end());
    }
    return records;
}

}  // namespace

TEST(digitalDrawing, eachKindMatchesItsReferenceImage)
{
    using plotContext = qtVxBufferedDrawContextInverted;
    // Two states: a clock that speeds up until its changes share columns, then holds.
    drawAndCompare("bits_2state", false, [](plotContext& context, cPlot& plot) {
        std::vector<double> xs{0};
        std::string states = "0";
        for (double x = 0, period = 40; x < 300; x += period, period = std::max(0.05, period * 0.8)) {
            xs.push_back(x + period);
            states.push_back(states.back() == '0' ? '1' : '0');
        }
        xs.push_back(390);
        states.push_back('1');
        drawLogicValue(context, plot.x, plot.y, xs.data(), 1.0, states.data(), 1, xs.size(),
                       derivedCurveFunction::monotony_strictly_rising, pens());
    });
    // Four states in 32-bit records: levels, an unknown box, floating at mid level, a glitch.
    const std::vector<double> grid{0, 40, 80, 120, 160, 200, 240, 240.3, 240.6, 280, 320, 360, 395};
    drawAndCompare("bits_4state", false, [&](plotContext& context, cPlot& plot) {
        const auto records = makeRecords(
            {{0, "0"}, {1, "1"}, {2, "x"}, {3, "0"}, {4, "z"}, {5, "1"}, {6, "0"}, {7, "1"}, {8, "0"}, {9, "Z"},
             {10, "X"}, {11, "1"}, {12, "1"}},
            1);
        drawLogic4StateValueInterleaved32Bit(context, plot.x, plot.y, grid.data(), grid.size(), 1.0, records.data(), 5,
                                             13, pens());
    });
    // Strength levels: weak low, weak high and unknown weak in the Z pen.
    drawAndCompare("bits_strength", false, [&](plotContext& context, cPlot& plot) {
        std::vector<char> records;
        const std::vector<std::pair<uint64_t, char>> entries{{0, '0'}, {1, 10}, {2, 12}, {3, '1'}, {4, 11},
                                                             {5, 'x'}, {6, 13}, {9, 'H'}, {10, 'L'}, {12, 'L'}};
        for (const auto& [index, state] : entries) {
            const char* bytes = reinterpret_cast<const char*>(&index);
            records.insert(records.end(), bytes, bytes + 8);
            records.push_back(state);
        }
        drawLogicValueInterleaved(context, plot.x, plot.y, grid.data(), grid.size(), 1.0, records.data(), 9,
                                  entries.size(), pens());
    });
    // A bus: wide values with their text, one cut, narrow ones as bare boxes, unknown and
    // floating values, and a crowd of changes in a few columns.
    drawAndCompare("bus", true, [](plotContext& context, cPlot& plot) {
        // 32 bits from 8 hexadecimal digits, x and z standing for four bits each.
        const auto bitsOf = [](const std::string& hex) {
            std::string bits;
            for (const char digit : hex) {
                if (digit == 'x' || digit == 'z') {
                    bits += std::string(4, digit);
                    continue;
                }
                const int value = std::stoi(std::string(1, digit), nullptr, 16);
                for (int bit = 3; bit >= 0; --bit)
                    bits += (value >> bit) & 1 ? '1' : '0';
            }
            return bits;
        };
        std::vector<double> xs;
        std::string bits;
        for (const auto& [x, hex] : std::vector<std::pair<double, std::string>>{
                 {0, "00000012"}, {100, "DEADBEEF"}, {140, "FFFFFFFF"}, {146, "0000xxxx"}, {230, "zzzzzzzz"}}) {
            xs.push_back(x);
            bits += bitsOf(hex);
        }
        for (double x = 300; x < 305; x += 0.25) {
            xs.push_back(x);
            bits += bitsOf(xs.size() % 2 ? "00000002" : "00000003");
        }
        xs.push_back(320);
        bits += bitsOf("F0F0F0F0");
        xs.push_back(395);
        bits += bitsOf("F0F0F0F0");
        drawLogicVector(context, plot.x, plot.y, xs.data(), 1.0, bits.data(), 32, xs.size(),
                        derivedCurveFunction::monotony_strictly_rising, derivedCurveFunction::hexadecimal, pens());
    });
    // An enumeration: names, and the number of a value without one.
    drawAndCompare("enum", true, [](plotContext& context, cPlot& plot) {
        const std::vector<double> xs{0, 90, 200, 215, 300, 390};
        const std::vector<uint32_t> values{0, 1, 2, 9, 1, 1};
        const std::vector<std::string> names{"idle", "running", "stopped"};
        drawDenseEnum(context, plot.x, plot.y, xs.data(), 1.0, values.data(), xs.size(), names,
                      derivedCurveFunction::monotony_strictly_rising, pens());
    });
}
