// Plot pages through the program's own door: command files run offscreen, pages written as
// pictures and read back column by column.
#include <gtest/gtest.h>

#include <QImage>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct cFolder {
    cFolder()
    {
        char pattern[] = "/tmp/zelwave-pages-XXXXXX";
        const char* made = mkdtemp(pattern);
        path = made ? made : "";
    }
    ~cFolder()
    {
        std::error_code error;
        fs::remove_all(path, error);
    }
    std::string path;
};

std::string shell(const std::string& command)
{
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return output;
    std::array<char, 4096> buffer{};
    size_t count;
    while ((count = fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
        output.append(buffer.data(), count);
    pclose(pipe);
    return output;
}

// Runs the commands (a close is appended) and answers the log of the run.
std::string runCommands(const cFolder& folder, const std::string& commands)
{
    std::ofstream(folder.path + "/run.cmd") << commands << "close\n";
    shell("cd " + folder.path + " && HOME=" + folder.path + " QT_QPA_PLATFORM=offscreen timeout 120 " ZW_PROGRAM
          " --log run.log 5 --command_file run.cmd 2>&1");
    std::ifstream in(folder.path + "/run.log");
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// The first curve of a plot is drawn in pure blue; grid, axes and text are grey or black.
bool isCurvePixel(QRgb pixel) { return qBlue(pixel) > 180 && qRed(pixel) < 90 && qGreen(pixel) < 90; }

// The runs of curve pixels down one column: the mean row of each.
std::vector<double> curveRuns(const QImage& image, int column)
{
    std::vector<double> runs;
    int start = -1;
    for (int y = 0; y <= image.height(); ++y) {
        const bool on = y < image.height() && isCurvePixel(image.pixel(column, y));
        if (on && start < 0)
            start = y;
        if (!on && start >= 0) {
            runs.push_back(0.5 * (start + y - 1));
            start = -1;
        }
    }
    return runs;
}

const char* kTwoRamps =
    "add_section data\n"
    "add_curve data ramp 0 V s 0 0 1 1 2 2 3 3 4 4 5 5 6 6 7 7 8 8 9 9 10 10\n"
    "add_plot p1 analog 1 1\n"
    "split_vertically p1\n"
    "add_curve_to_plot_by_name p1 data ramp 0\n"
    "add_curve_to_plot_by_name p1_2 data ramp 0\n";

}  // namespace

TEST(pageCommands, SplitPlotsZoomTogetherInXAndEachKeepsItsY)
{
    cFolder folder;
    const std::string log = runCommands(folder, std::string(kTwoRamps) +
                                                    "export_page_as_png p1 before.png\n"
                                                    "zoom p1 0 5 0 5 0 1\n"
                                                    "export_page_as_png p1_2 after.png\n");
    const QImage before(QString::fromStdString(folder.path + "/before.png"));
    const QImage after(QString::fromStdString(folder.path + "/after.png"));
    ASSERT_EQ(before.size(), QSize(1200, 800)) << log;
    ASSERT_EQ(after.size(), QSize(1200, 800));
    const int column = 900;
    const std::vector<double> b = curveRuns(before, column), a = curveRuns(after, column);
    ASSERT_EQ(b.size(), 2u) << "one ramp in each half";
    ASSERT_EQ(a.size(), 2u);
    // Both plots show the same ramp over the same ranges: the same place in each half.
    EXPECT_NEAR(b[1] - b[0], 400.0, 6.0);
    // Upper plot zoomed to x and y 0 .. 5: the ramp crosses the column at the same height.
    EXPECT_NEAR(a[0], b[0], 4.0);
    // Lower plot followed in X only: x is half of before, y keeps 0 .. 10, so the curve sits lower,
    // by 3/8 of the canvas height (about 340 pixels of a 400-pixel half).
    EXPECT_GT(a[1] - b[1], 90.0);
    EXPECT_LT(a[1] - b[1], 160.0);
    EXPECT_EQ(log.find(" - E - ", log.find("Reading command file")), std::string::npos) << log;
}

TEST(pageCommands, EveryFormatIsWhatFileSaysAndSvgParses)
{
    cFolder folder;
    const std::string log = runCommands(folder, std::string(kTwoRamps) +
                                                    "export_page_as_png p1 page.png\n"
                                                    "export_page_as_jpg p1 page.jpg\n"
                                                    "export_page_as_bmp p1 page.bmp\n"
                                                    "export_page_as_tif p1_2 page.tif\n"
                                                    "export_page_as_svg p1_2 page.svg\n"
                                                    "export_page_as_png p1 nosuffix\n");
    const std::vector<std::pair<std::string, std::string>> formats = {
        {"page.png", "PNG image data, 1200 x 800"}, {"page.jpg", "JPEG image data"},
        {"page.bmp", "PC bitmap"},                  {"page.tif", "TIFF image data"},
        {"page.svg", "SVG Scalable Vector Graphics image"}, {"nosuffix.png", "PNG image data"}};
    for (const auto& [name, kind] : formats)
        EXPECT_NE(shell("file -b '" + folder.path + "/" + name + "'").find(kind), std::string::npos) << name << log;
    EXPECT_EQ(shell("xmllint --noout '" + folder.path + "/page.svg' 2>&1; echo rc=$?"), "rc=0\n");
}

TEST(pageCommands, BadTargetsAndMissingPlotsGiveTheirMessageAndChangeNothing)
{
    cFolder folder;
    fs::create_directory(folder.path + "/taken.png");
    const std::string log = runCommands(folder, std::string(kTwoRamps) +
                                                    "export_page_as_png p1 first.png\n"
                                                    "export_page_as_png p1 missing/page.png\n"
                                                    "export_page_as_png p1 taken.png\n"
                                                    "export_page_as_png nosuch other.png\n"
                                                    "split_vertically nosuch\n"
                                                    "split_horizontally nosuch\n"
                                                    "maximize_plot nosuch\n"
                                                    "close_plot nosuch\n"
                                                    "add_plot p1_2 analog\n"
                                                    "export_page_as_png p1 second.png\n");
    EXPECT_NE(log.find("The directory \"" + folder.path + "/missing\" doesn't exist."), std::string::npos) << log;
    EXPECT_NE(log.find("Failed to export to \"" + folder.path + "/taken.png\""), std::string::npos) << log;
    size_t notFound = 0;
    for (size_t at = log.find("The plot window \"nosuch\" was not found."); at != std::string::npos;
         at = log.find("The plot window \"nosuch\" was not found.", at + 1))
        ++notFound;
    EXPECT_EQ(notFound, 5u) << log;
    EXPECT_NE(log.find("The plot window \"p1_2\" already exists."), std::string::npos);
    EXPECT_FALSE(fs::exists(folder.path + "/other.png"));
    EXPECT_FALSE(fs::exists(folder.path + "/missing"));
    // The page after all that is the page before it.
    const QImage first(QString::fromStdString(folder.path + "/first.png"));
    const QImage second(QString::fromStdString(folder.path + "/second.png"));
    ASSERT_FALSE(first.isNull());
    EXPECT_TRUE(first == second);
}

TEST(pageCommands, MaximizeCloseAndPageKinds)
{
    cFolder folder;
    const std::string log = runCommands(folder, std::string(kTwoRamps) +
                                                    "maximize_plot p1_2\n"
                                                    "export_page_as_png p1 max.png\n"
                                                    "minimize_plot p1_2\n"
                                                    "export_page_as_png p1 restored.png\n"
                                                    "split_horizontally p1\n"
                                                    "close_plot p1_2\n"
                                                    "add_curve_to_plot_by_name p1_3 data ramp 0\n"
                                                    "export_page_as_png p1 side.png\n"
                                                    "add_plot d polar\n"
                                                    "add_plot dg digital\n"
                                                    "add_plot st stacked\n"
                                                    "add_plot w nonsense_kind\n"
                                                    "add_curve_to_plot_by_name d data ramp 0\n"
                                                    "close_plot w\n"
                                                    "add_plot w analog\n");
    auto runsAt = [&](const char* name, int column) {
        return curveRuns(QImage(QString::fromStdString(folder.path + "/" + name)), column).size();
    };
    EXPECT_EQ(runsAt("max.png", 900), 1u) << "only the maximized plot is drawn";
    EXPECT_EQ(runsAt("restored.png", 900), 2u);
    // p1 and p1_3 side by side: one ramp in each column half, none above the other.
    EXPECT_EQ(runsAt("side.png", 300), 1u);
    EXPECT_EQ(runsAt("side.png", 900), 1u);
    // A known kind without a page here is told; an unknown word quietly takes the default.
    EXPECT_NE(log.find("The plot type \"polar\" has no page in this version; the default page is used."),
              std::string::npos)
        << log;
    EXPECT_EQ(log.find("nonsense_kind"), std::string::npos) << log;
    EXPECT_EQ(log.find("\"digital\" has no page"), std::string::npos) << log;
    EXPECT_EQ(log.find("\"stacked\" has no page"), std::string::npos) << log;
    // Closing the only plot of a page frees its name.
    EXPECT_EQ(log.find("The plot window \"w\" already exists."), std::string::npos) << log;
    EXPECT_EQ(log.find("was not found"), std::string::npos) << log;
}

namespace {
// The cursor's dashed line is drawn in its own red; the marker's in a mid blue.
bool isCursorPixel(QRgb p) { return qRed(p) > 180 && qGreen(p) > 35 && qGreen(p) < 85 && qBlue(p) < 60; }
bool isMarkerPixel(QRgb p) { return qRed(p) < 60 && qGreen(p) > 90 && qGreen(p) < 135 && qBlue(p) > 180; }

// The column where a ruler's line runs down the rows top .. bottom: the column with the most
// pixels of its colour, when they cover at least a third of the rows (a dashed line does; a value
// box does not); -1 otherwise.
int rulerColumn(const QImage& image, int top, int bottom, bool (*isRuler)(QRgb))
{
    int best = -1, bestCount = 0;
    for (int x = 0; x < image.width(); ++x) {
        int count = 0;
        for (int y = top; y < bottom; ++y)
            count += isRuler(image.pixel(x, y)) ? 1 : 0;
        if (count > bestCount)
            best = x, bestCount = count;
    }
    return bestCount * 3 >= bottom - top ? best : -1;
}
}  // namespace

TEST(pageCommands, RulersSetOnOnePlotShowInEveryConnectedPlotAndInOneConnectedLater)
{
    cFolder folder;
    const std::string log = runCommands(folder, std::string(kTwoRamps) +
                                                    "set_cursor p1 3 C1\n"
                                                    "set_cursor p1_2 7 M1\n"
                                                    "export_page_as_png p1 both.png\n"
                                                    "split_vertically p1_2\n"
                                                    "add_curve_to_plot_by_name p1_2_2 data ramp 0\n"
                                                    "export_page_as_png p1 three.png\n"
                                                    "reset_cursor p1_2_2 C1\n"
                                                    "export_page_as_png p1 cleared.png\n");
    auto image = [&](const char* name) { return QImage(QString::fromStdString(folder.path + "/" + name)); };
    const QImage both = image("both.png"), three = image("three.png"), cleared = image("cleared.png");
    ASSERT_FALSE(both.isNull()) << log;
    // Two plots of 400 rows: each ruler at one column in both, the cursor left of the marker.
    const int c1 = rulerColumn(both, 40, 360, isCursorPixel), m1 = rulerColumn(both, 40, 360, isMarkerPixel);
    ASSERT_GT(c1, 0) << log;
    ASSERT_GT(m1, c1);
    EXPECT_NEAR(rulerColumn(both, 440, 760, isCursorPixel), c1, 1);
    EXPECT_NEAR(rulerColumn(both, 440, 760, isMarkerPixel), m1, 1);
    // The lower plot split: p1_2_2, given its curve after the rulers were set, shows them too.
    ASSERT_FALSE(three.isNull());
    EXPECT_NEAR(rulerColumn(three, 630, 770, isCursorPixel), c1, 1);
    EXPECT_NEAR(rulerColumn(three, 630, 770, isMarkerPixel), m1, 1);
    // The cursor cleared in p1_2_2 is gone from every plot; the marker stays in all.
    for (const auto& [top, bottom] : {std::pair{40, 360}, std::pair{430, 570}, std::pair{630, 770}}) {
        EXPECT_EQ(rulerColumn(cleared, top, bottom, isCursorPixel), -1) << top;
        EXPECT_NEAR(rulerColumn(cleared, top, bottom, isMarkerPixel), m1, 1) << top;
    }
    EXPECT_EQ(log.find(" - E - ", log.find("Reading command file")), std::string::npos) << log;
}

TEST(pageCommands, DefinePagePlotNamesRenamesInPageOrderAndRefusesClashes)
{
    cFolder folder;
    const std::string log = runCommands(folder, std::string(kTwoRamps) +
                                                    "add_plot other analog 1 0\n"
                                                    "define_page_plot_names p1_2 top bottom extra\n"
                                                    "zoom bottom 0 5 0 5 0 1\n"
                                                    "export_page_as_png top renamed.png\n"
                                                    "define_page_plot_names top other x\n"
                                                    "define_page_plot_names top same same\n"
                                                    "define_page_plot_names nosuch a b\n"
                                                    "export_page_as_png bottom after.png\n");
    EXPECT_NE(log.find("names were ignored"), std::string::npos) << log;
    // Renamed plots answer to their new names: the zoom and the exports reached them.
    const QImage renamed(QString::fromStdString(folder.path + "/renamed.png"));
    ASSERT_FALSE(renamed.isNull()) << log;
    EXPECT_TRUE(renamed == QImage(QString::fromStdString(folder.path + "/after.png")))
        << "refused renames change nothing";
    // "bottom" is the lower plot: zoomed in Y, its ramp crosses a column higher in its half than the
    // upper plot's, which followed in X only.
    const std::vector<double> runs = curveRuns(renamed, 900);
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_LT(runs[1] - 400.0, runs[0] - 60.0);
    EXPECT_NE(log.find("The plot window \"other\" already exists."), std::string::npos) << log;
    EXPECT_NE(log.find("The plot window \"same\" already exists."), std::string::npos) << log;
    EXPECT_NE(log.find("The plot window \"nosuch\" was not found."), std::string::npos) << log;
    EXPECT_EQ(log.find("The plot window \"bottom\" was not found."), std::string::npos) << log;
    EXPECT_EQ(log.find("The plot window \"top\" was not found."), std::string::npos) << log;
}

TEST(pageCommands, BusesOpenAndCloseByNameAndRowCommandsRefuseWhatTheyCannotDo)
{
    cFolder folder;
    // A 4-bit bus stepping 0, A, 5, F and a clock, as a simulator's dump writes them.
    std::ofstream(folder.path + "/bus.vcd") << "$timescale 1ns $end\n$scope module top $end\n"
                                               "$var wire 4 ! bus [3:0] $end\n$var wire 1 \" clk $end\n"
                                               "$upscope $end\n$enddefinitions $end\n"
                                               "#0\nb0000 !\n0\"\n#10\nb1010 !\n1\"\n#20\nb0101 !\n0\"\n"
                                               "#30\nb1111 !\n1\"\n#40\n";
    const std::string log = runCommands(folder, std::string(kTwoRamps) +
                                                    "open_file " + folder.path + "/bus.vcd\n"
                                                    "add_plot d digital 1 1\n"
                                                    "add_curve_to_plot_by_name d bus.vcd top.bus[3:0] 0\n"
                                                    "add_curve_to_plot_by_name d bus.vcd top.clk 0\n"
                                                    "export_page_as_png d closed.png\n"
                                                    "expand_group_in_plot d top.bus[3:0]\n"
                                                    "expand_group_in_plot d top.bus[3:0]\n"
                                                    "export_page_as_png d open.png\n"
                                                    "collapse_group_in_plot d top.bus[3:0]\n"
                                                    "add_group_to_plot d control\n"
                                                    "add_separator_to_plot d end\n"
                                                    "collapse_group_in_plot d control\n"
                                                    "collapse_group_in_plot d nosuch\n"
                                                    "expand_group_in_plot p1 ramp\n"
                                                    "export_page_as_png d closed_again.png\n");
    auto image = [&](const char* name) { return QImage(QString::fromStdString(folder.path + "/" + name)); };
    const QImage closed = image("closed.png"), open = image("open.png"), again = image("closed_again.png");
    ASSERT_FALSE(closed.isNull()) << log;
    // Down a column in the first step (everything low): the bus box's two edges and the clock's low
    // line; opened, four more low lines, one per bit. Grid and row lines are grey, not counted.
    auto inkRuns = [](const QImage& picture, int column) {
        int runs = 0;
        bool inside = false;
        for (int y = 0; y < picture.height(); ++y) {
            const QRgb p = picture.pixel(column, y);
            const bool ink = std::max({qRed(p), qGreen(p), qBlue(p)}) - std::min({qRed(p), qGreen(p), qBlue(p)}) > 100;
            runs += ink && !inside ? 1 : 0;
            inside = ink;
        }
        return runs;
    };
    EXPECT_EQ(inkRuns(closed, 250), 3) << log;
    EXPECT_EQ(inkRuns(open, 250), 7);
    // Closed again, with a heading and a separator below the rows that draw nothing.
    EXPECT_EQ(inkRuns(again, 250), 3);
    EXPECT_NE(log.find("No group or bus \"nosuch\" in the plot window \"d\"."), std::string::npos) << log;
    EXPECT_NE(log.find("The plot window \"p1\" has no rows"), std::string::npos) << log;
    size_t errors = 0;
    for (size_t at = log.find(" - E - ", log.find("Reading command file")); at != std::string::npos;
         at = log.find(" - E - ", at + 1))
        ++errors;
    EXPECT_EQ(errors, 2u) << log;
}
