// Curve colours against an exact computation in Python, the style record's bytes, and styles
// set by commands.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <string>

#include "../base/testSupport.h"
#include "app/core/wxWaveExplorerCommand.h"
#include "base/cVxLogger.h"
#include "model/curveStyleTypes.h"
#include "plot/colourList.h"
#include "plot/wxCurveStyle.h"

using namespace vx3;
using namespace vx3::curvePlotProperties;

namespace {
wxWaveExplorerCommand parsed(const std::string& text)
{
    cVxStringLogger sink;
    cVxLogger logger;
    logger.setLoggerCallBack(&sink);
    wxWaveExplorerCommand command;
    EXPECT_TRUE(command.parseCommandString(text, logger)) << text << ": " << sink.getBufferAsString();
    return command;
}
}  // namespace

TEST(ColourList, AgreesWithExactOracleForStrongAndPaleColours)
{
    zwtest::cTempDir folder("zw_plot_test_");
    ASSERT_FALSE(folder.path().empty());
    for (unsigned lowest : {0u, 100u}) {
        const std::string out = folder.file("colours_" + std::to_string(lowest) + ".txt");
        const std::string command = "/usr/bin/python3 '" + std::string(ZW_SOURCE_DIR) +
                                    "/tests/plot/oracles/colour_list.py' " + std::to_string(lowest) + " '" + out + "'";
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
        std::ifstream expected(out);
        unsigned index = 0, red = 0, green = 0, blue = 0, rows = 0;
        while (expected >> index >> red >> green >> blue) {
            const colourList::cColour got = colourList::get_colour_from_list(index, 200, lowest);
            EXPECT_EQ(got.red, red) << "index " << index << " lowest " << lowest;
            EXPECT_EQ(got.green, green) << "index " << index << " lowest " << lowest;
            EXPECT_EQ(got.blue, blue) << "index " << index << " lowest " << lowest;
            EXPECT_EQ(got.alpha, 200);
            ++rows;
        }
        EXPECT_EQ(rows, 40u) << "the oracle covers two rounds of the list and more";
    }
    // The rule, not a table: index 1 lands on v = 6, the start of the red-to-green edge, which
    // is pure red; pure green is index 2.
    EXPECT_EQ(colourList::get_colour_from_list(0, 255, 0).rgb(), 0x0000ffu);
    EXPECT_EQ(colourList::get_colour_from_list(1, 255, 0).rgb(), 0xff0000u);
    EXPECT_EQ(colourList::get_colour_from_list(2, 255, 0).rgb(), 0x00ff00u);
    // Eighteen distinct colours, then the list starts again, even for indices beyond 32 bits.
    for (uint64_t i = 0; i < 18; ++i) {
        for (uint64_t j = 0; j < i; ++j)
            EXPECT_NE(colourList::get_colour_from_list(i, 255, 0), colourList::get_colour_from_list(j, 255, 0));
        EXPECT_EQ(colourList::get_colour_from_list(i + 18 * 12345678901ull, 255, 100),
                  colourList::get_colour_from_list(i, 255, 100));
    }
    // Out-of-range arguments are held to their bytes, not wrapped.
    EXPECT_EQ(colourList::get_colour_from_list(5, 999, 999).rgb(), 0xffffffu);
    EXPECT_EQ(colourList::get_colour_from_list(5, 999, 999).alpha, 255);

    // The counting form belongs to its owner: two counters don't disturb each other.
    colourList::cColourCounter first, second;
    EXPECT_EQ(first.get_colour_from_list(), colourList::get_colour_from_list(1, 255, 0));
    EXPECT_EQ(first.get_colour_from_list(), colourList::get_colour_from_list(2, 255, 0));
    EXPECT_EQ(second.get_colour_from_list(), colourList::get_colour_from_list(1, 255, 0));
    EXPECT_EQ(first.counter(), 2u);
}

TEST(ColourList, ParsesColourTexts)
{
    unsigned colour = 7;
    EXPECT_TRUE(parseColourString("#FF8000", colour));
    EXPECT_EQ(colour, 0xff8000u);
    EXPECT_TRUE(parseColourString(" 0x0000ff ", colour));
    EXPECT_EQ(colour, 0x0000ffu);
    EXPECT_TRUE(parseColourString("65280", colour));
    EXPECT_EQ(colour, 0x00ff00u);
    EXPECT_TRUE(parseColourString("Red", colour));
    EXPECT_EQ(colour & 0xff0000u, 0xff0000u);
    colour = 7;
    for (const char* bad : {"", "#12345", "#1234567", "#gg0000", "0x", "0x1234567", "16777216", "no such colour", "-1"})
        EXPECT_FALSE(parseColourString(bad, colour)) << bad;
    EXPECT_EQ(colour, 7u) << "a refused text leaves the colour alone";
    EXPECT_EQ(colourToString(0x12abcdefu), "#abcdef");
}

TEST(CurveStyle, DefaultsBytesAndRoundTrip)
{
    const wxCurveStyle grey;
    EXPECT_EQ(grey.realColour, 0x808080u);
    EXPECT_EQ(grey.imagColour, 0x808080u);
    EXPECT_EQ(grey.realLineWidth, 1);
    EXPECT_EQ(grey.realLineStyle, solid_line);
    EXPECT_EQ(grey.realSymbol, no_symbol);
    EXPECT_TRUE(grey.checkIsAutomatic());

    // The nine fields in their order, little-endian; a reader of stored styles relies on it.
    wxCurveStyle style;
    style.realColour = 0x11223344;
    style.imagColour = 0x00a0b0c0;
    style.realLineWidth = 3;
    style.imagLineWidth = 5;
    style.realLineStyle = dashed_line;
    style.imagLineStyle = histogram_line;
    style.realSymbol = diamonds;
    style.imagSymbol = default_symbol;
    style.flags = {0, 7, 8, 9};
    std::vector<unsigned char> bytes = {0xee};  // something before it
    style.serialize(bytes);
    ASSERT_EQ(bytes.size(), 1 + wxCurveStyle::kSerializedSize);
    const std::vector<unsigned char> head(bytes.begin() + 1, bytes.begin() + 9);
    EXPECT_EQ(head, (std::vector<unsigned char>{0x44, 0x33, 0x22, 0x11, 0xc0, 0xb0, 0xa0, 0x00}));
    EXPECT_EQ(bytes[1 + 8], 3);
    EXPECT_EQ(bytes[1 + 12], 5);
    EXPECT_EQ(bytes[1 + 16], dashed_line);
    EXPECT_EQ(bytes[1 + 20], histogram_line);
    EXPECT_EQ(bytes[1 + 24], diamonds);
    EXPECT_EQ(bytes[1 + 28], default_symbol);
    EXPECT_EQ(bytes[1 + 33], 7);

    // Random styles survive a chain of them; a short tail is refused and leaves the style alone.
    std::mt19937 random(15);
    std::vector<wxCurveStyle> styles;
    std::vector<unsigned char> chain;
    for (int i = 0; i < 50; ++i) {
        wxCurveStyle s;
        s.realColour = random();
        s.imagColour = random();
        s.realLineWidth = static_cast<int>(random() % 7) - 1;
        s.imagLineWidth = static_cast<int>(random() % 7);
        s.realLineStyle = static_cast<int>(random() % 9);
        s.imagLineStyle = static_cast<int>(random() % 9);
        s.realSymbol = static_cast<int>(random() % 12);
        s.imagSymbol = static_cast<int>(random() % 12);
        s.flags = {static_cast<unsigned char>(random()), static_cast<unsigned char>(random()),
                   static_cast<unsigned char>(random()), static_cast<unsigned char>(random())};
        s.serialize(chain);
        styles.push_back(s);
    }
    size_t position = 0;
    for (const wxCurveStyle& s : styles) {
        wxCurveStyle back;
        ASSERT_TRUE(back.deserialize(chain, position));
        EXPECT_EQ(back, s);
    }
    EXPECT_EQ(position, chain.size());
    chain.pop_back();
    position = chain.size() - wxCurveStyle::kSerializedSize + 1;
    wxCurveStyle untouched;
    EXPECT_FALSE(untouched.deserialize(chain, position));
    EXPECT_EQ(untouched, wxCurveStyle());
    position = chain.size() + 10;
    EXPECT_FALSE(untouched.deserialize(chain, position));
}

TEST(CurveStyle, PensAndWords)
{
    wxCurveStyle style;
    style.realColour = 0xff0000;
    style.realLineWidth = 4;
    style.imagColour = 0x00ff00;
    const int kinds[] = {1, 1, 1, 5, 2, 3, 1, 1, 1, 1, 1};
    for (int lineStyle = 0; lineStyle <= 10; ++lineStyle) {
        const int given = lineStyle == 10 ? -3 : lineStyle;
        EXPECT_EQ(style.getRealPen(given), (vxDrawContext::cVxPen{0xff0000, 4, kinds[lineStyle]}))
            << given;
        EXPECT_EQ(style.getImagPen(given).colour, 0x00ff00u);
    }
    EXPECT_TRUE(style.setLineStyleReal("short_dashed_line"));
    EXPECT_EQ(style.getRealPen().kind, vxDrawContext::short_dash_pen);
    EXPECT_TRUE(style.setSymbolImag("Down Triangles"));
    EXPECT_EQ(style.imagSymbol, down_triangles);
    EXPECT_FALSE(style.setSymbolReal("stars"));
    EXPECT_FALSE(style.setLineStyleImag(""));
    EXPECT_EQ(style.realSymbol, no_symbol);
    EXPECT_EQ(wxCurveStyle::getLineStylesAsStrings().size(), 7u);
    EXPECT_EQ(wxCurveStyle::getSymbolsAsStrings().back(), "histogram");

    wxCurveStyle other;
    other.copyRealStyle(style);
    EXPECT_EQ(other.realColour, 0xff0000u);
    EXPECT_EQ(other.realLineStyle, short_dashed_line);
    EXPECT_EQ(other.imagColour, 0x808080u);
    other.copyImagStyle(style);
    EXPECT_EQ(other.imagSymbol, down_triangles);
    other.copyImagToRealStyle();
    EXPECT_EQ(other.realColour, 0x00ff00u);
    EXPECT_EQ(other.realSymbol, down_triangles);
    other.realColour = 0x0000ff;
    other.copyRealToImagStyle();
    EXPECT_EQ(other.imagColour, 0x0000ffu);
}

TEST(CurveStyle, CommandsNeverAskForTheAutomaticStyle)
{
    // By id and index: the style starts behind the two numbers; one part sets both.
    wxCurveStyle style;
    ASSERT_TRUE(style.setStyle(parsed("set_curve_style_by_id_and_index 3 4 automatic automatic 9 #ff0000")));
    EXPECT_EQ(style.realLineStyle, default_line);
    EXPECT_EQ(style.realSymbol, default_symbol);
    EXPECT_EQ(style.realLineWidth, 5) << "widths are held to 1 .. 5";
    EXPECT_EQ(style.realColour, 0xff0000u);
    EXPECT_EQ(style.imagColour, 0xff0000u);
    EXPECT_FALSE(style.checkIsAutomatic());

    // By id and name: one number in front; both parts given.
    ASSERT_TRUE(style.setStyleFromAction(
        parsed("set_curve_style_by_id_and_name 3 \"v(out)\" 7 10 2 #00ff00 dashed_line circles 0 #0000ff")));
    EXPECT_EQ(style.realLineStyle, default_line);
    EXPECT_EQ(style.realSymbol, default_symbol);
    EXPECT_EQ(style.realLineWidth, 2);
    EXPECT_EQ(style.realColour, 0x00ff00u);
    EXPECT_EQ(style.imagLineStyle, dashed_line);
    EXPECT_EQ(style.imagSymbol, circles);
    EXPECT_EQ(style.imagLineWidth, 1);
    EXPECT_EQ(style.imagColour, 0x0000ffu);

    // By names: the numbers start at once; explicit styles stay what they are.
    ASSERT_TRUE(style.setStyle(parsed("set_curve_style_by_name tran \"v(out)\" dotted_line crosses 3 255")));
    EXPECT_EQ(style.realLineStyle, dotted_line);
    EXPECT_EQ(style.realSymbol, crosses);
    EXPECT_EQ(style.realColour, 0x0000ffu);
    EXPECT_EQ(style.getRealPen().kind, vxDrawContext::dotted_pen);

    // The old form with red, green and blue numbers.
    ASSERT_TRUE(style.setStyle(parsed("set_curve_style tran \"v(out)\" 4 10 2 1 2 3 7 5 3 255 128 0")));
    EXPECT_EQ(style.realLineStyle, dashed_line);
    EXPECT_EQ(style.realSymbol, default_symbol);
    EXPECT_EQ(style.realColour, 0x010203u);
    EXPECT_EQ(style.imagLineStyle, default_line);
    EXPECT_EQ(style.imagSymbol, up_triangles);
    EXPECT_EQ(style.imagColour, 0xff8000u);

    // Arguments that make no style leave it as it was.
    const wxCurveStyle before = style;
    EXPECT_FALSE(style.setStyle(parsed("set_curve_style tran \"v(out)\" 4 10 2 1 2 300 7 5 3 255 128 0")));
    EXPECT_FALSE(style.setStyle(parsed("set_option show_menu_bar 1")));
    wxWaveExplorerAction empty;
    empty.actionType = waveExplorerAction::cmd_set_curve_style_by_id_and_index;
    EXPECT_FALSE(style.setStyleFromAction(empty));
    EXPECT_EQ(style, before);
}

TEST(CurveStyleMenus, EveryEntryIsACommandThatChangesOneChoice)
{
    wxCurveStyle style;
    style.realColour = 0x00a0ff;
    style.imagColour = 0x102030;
    style.realLineWidth = 2;
    style.imagLineWidth = 4;
    style.realSymbol = circles;
    style.imagSymbol = diamonds;
    style.realLineStyle = dashed_line;
    style.imagLineStyle = dotted_line;
    style.setAutomatic(false);
    for (const std::string plot : {"", "Plot 1"}) {
        SCOPED_TRACE(plot);
        const curveStyle::cStyleTarget target{plot, 7, 3, true};
        // The style's own command gives the style back.
        wxCurveStyle back;
        ASSERT_TRUE(back.setStyle(parsed(style.getStyleCommand(target))));
        EXPECT_EQ(back, style);

        struct cMenu {
            const char* name;
            void (wxCurveStyle::*append)(std::vector<curveStyle::cMenuEntry>&, const curveStyle::cStyleTarget&) const;
            bool widths;
            bool real, imag;
        } menus[] = {
            {"widths", &wxCurveStyle::appendLineWidthMenu, true, true, true},
            {"real widths", &wxCurveStyle::appendLineWidthMenuReal, true, true, false},
            {"imaginary widths", &wxCurveStyle::appendLineWidthMenuImag, true, false, true},
            {"symbols", &wxCurveStyle::appendSymbolMenu, false, true, true},
            {"real symbols", &wxCurveStyle::appendSymbolMenuReal, false, true, false},
            {"imaginary symbols", &wxCurveStyle::appendSymbolMenuImag, false, false, true},
        };
        for (const cMenu& menu : menus) {
            SCOPED_TRACE(menu.name);
            std::vector<curveStyle::cMenuEntry> entries;
            (style.*menu.append)(entries, target);
            ASSERT_EQ(entries.size(), menu.widths ? 5u : wxCurveStyle::getSymbolsAsStrings().size());
            int checked = 0;
            for (size_t i = 0; i < entries.size(); ++i) {
                const auto& entry = entries[i];
                const wxWaveExplorerCommand command = parsed(entry.command);
                EXPECT_EQ(command.plotName, plot);
                wxCurveStyle applied = style;
                ASSERT_TRUE(applied.setStyle(command)) << entry.command;
                // Only the chosen attribute of the chosen parts differs.
                wxCurveStyle expected = style;
                const int choice = menu.widths ? int(i) + 1 : get_symbol_from_string(entry.text);
                ASSERT_GE(choice, 0) << entry.text;
                if (menu.real)
                    (menu.widths ? expected.realLineWidth : expected.realSymbol) = choice;
                if (menu.imag)
                    (menu.widths ? expected.imagLineWidth : expected.imagSymbol) = choice;
                EXPECT_EQ(applied, expected) << entry.command;
                checked += entry.checked ? 1 : 0;
            }
            // The present choice is ticked; for both parts only when they agree (2 and 4 don't).
            EXPECT_EQ(checked, menu.real && menu.imag ? 0 : 1);
        }
    }
    // Both parts ticked when they agree; a real curve's command has one part.
    style.imagLineWidth = 2;
    std::vector<curveStyle::cMenuEntry> entries;
    style.appendLineWidthMenu(entries, {"", 1, 0, false});
    ASSERT_EQ(entries.size(), 5u);
    EXPECT_TRUE(entries[1].checked);
    EXPECT_EQ(entries[1].text, "2 pixels");
    EXPECT_EQ(entries[0].text, "1 pixel");
    EXPECT_EQ(entries[0].command, "set_curve_style_by_id_and_index 1 0 4 2 1 #a0ff");

    const std::vector<std::string> digital = wxCurveStyle::getDigitalDataAsStrings();
    ASSERT_EQ(digital.size(), 13u);
    EXPECT_EQ(digital.front(), "hexadecimal");
    EXPECT_EQ(digital[5], "hexadecimal with base");
    EXPECT_EQ(digital[11], "binary port values ");
    EXPECT_EQ(digital.back(), "binary port values with strength");
}
