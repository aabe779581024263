// The widget page offscreen: two connected plots zoom together and each keeps its Y, seen in the
// exported picture column by column; every image format is what `file` says it is, the SVG is
// well-formed for xmllint, and a path that can't be written gives its message.
#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "../plot/singlePlotTestSupport.h"
#include "base/cVxThread.h"
#include "plot/qt/wxMultiPlotWidget.h"

using namespace vx3;
using namespace zwplot;
namespace fs = std::filesystem;

namespace {

struct cTempFolder {
    cTempFolder()
    {
        char pattern[] = "/tmp/zw-pages-XXXXXX";
        path = mkdtemp(pattern);
    }
    ~cTempFolder() { fs::remove_all(path); }
    fs::path path;
};

std::string run(const std::string& command)
{
    std::string output;
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::array<char, 256> buffer{};
    while (pipe && fgets(buffer.data(), buffer.size(), pipe.get()))
        output += buffer.data();
    return output;
}

// A curve pixel: dark, unlike the background and the grid; callers keep off the axes' frame.
bool isCurvePixel(QRgb pixel) { return std::max({qRed(pixel), qGreen(pixel), qBlue(pixel)}) < 160; }

// The mean row of curve pixels in a column between two rows, -1 when there are none.
double curveRow(const QImage& image, int column, int top, int bottom)
{
    double sum = 0.0;
    int count = 0;
    for (int y = top; y < bottom; ++y)
        if (isCurvePixel(image.pixel(column, y)))
            sum += y, ++count;
    return count ? sum / count : -1.0;
}

// y = x over 0 .. 10 in both plots of a page split in two, one above the other.
struct cRampPage {
    cRampPage()
    {
        std::vector<double> x(1001);
        for (size_t i = 0; i < x.size(); ++i)
            x[i] = 0.01 * double(i);
        cTestSection tran(store, "tran", x);
        const wxCurveDescription ramp = tran.describe(tran.addReal("ramp", x));
        EXPECT_TRUE(page.splitPlot("1", true));
        EXPECT_TRUE(page.addCurves(0, {ramp}));
        EXPECT_TRUE(page.addCurves(1, {ramp}));
    }
    cCapturingLogger capture;
    cVxMutex mutex;
    cCurvePlotDataFile store;
    wxMultiPlotWidget page{nullptr, mutex, capture.logger};
};

}  // namespace

TEST(MultiPlotWidget, ConnectedPlotsZoomTogetherInThePictureEachKeepingItsY)
{
    cRampPage t;
    const int w = multiPlotWidget::headless_export_width, h = multiPlotWidget::headless_export_height;
    const singlePlotWidgetImpl::cPlotLook look;
    // Three quarters across both canvases, inside each canvas's frame.
    const int column = look.leftMargin + (w - look.leftMargin - look.rightMargin) * 3 / 4;
    const int half = h / 2;
    auto canvasRow = [&](const QImage& image, int plotTop) {
        const double row = curveRow(image, column, plotTop + look.topMargin + 3, plotTop + half - look.bottomMargin - 3);
        const double height = half - look.topMargin - look.bottomMargin;
        return row < 0 ? -1.0 : (row - plotTop - look.topMargin) / height;  // 0 top .. 1 bottom
    };

    // Unzoomed: x = 7.5 there, y = 7.5 of about 0 .. 10, a quarter down from the top, in both.
    const QImage before = t.page.paintPage(w, h);
    ASSERT_EQ(before.size(), QSize(w, h));
    EXPECT_NEAR(canvasRow(before, 0), 0.25, 0.05);
    EXPECT_NEAR(canvasRow(before, half), 0.25, 0.05);

    // Zoom the upper plot to x and y 0 .. 5: x = 3.75 there now. The upper curve keeps its place
    // (y 3.75 of 0 .. 5); the lower plot follows in X only, so y 3.75 of its own 0 .. 10 sits lower.
    ASSERT_TRUE(t.page.plot(0).zoomToBoxCmd(0.0, 5.0, 0.0, 5.0));
    const QImage after = t.page.paintPage(w, h);
    EXPECT_NEAR(canvasRow(after, 0), 0.25, 0.05);
    EXPECT_NEAR(canvasRow(after, half), 0.625, 0.05);
}

TEST(MultiPlotWidget, EachImageFormatIsWrittenAndRecognisedAndBadPathsGiveTheirMessage)
{
    cRampPage t;
    cTempFolder folder;
    const std::vector<std::pair<std::string, std::string>> formats = {
        {"page.png", "PNG image data, 1200 x 800"}, {"page.jpg", "JPEG image data"},
        {"page.bmp", "PC bitmap"},                  {"page.tif", "TIFF image data"},
        {"page.svg", "SVG Scalable Vector Graphics image"}};
    for (const auto& [name, kind] : formats) {
        const fs::path file = folder.path / name;
        ASSERT_TRUE(t.page.exportImage(file.string())) << name;
        EXPECT_NE(run("file -b '" + file.string() + "'").find(kind), std::string::npos) << name;
    }
    const fs::path svg = folder.path / "page.svg";
    EXPECT_EQ(run("xmllint --noout '" + svg.string() + "' 2>&1; echo rc=$?"), "rc=0\n");
    // The raster inside the SVG is the page itself.
    const QImage png(QString::fromStdString((folder.path / "page.png").string()));
    EXPECT_EQ(png.size(), QSize(1200, 800));
    EXPECT_GT(curveRow(png, 900, 20, 350), 0.0);

    // A missing folder, a target that is a folder, an unknown suffix: the message, no file.
    t.capture.log.clear();
    EXPECT_FALSE(t.page.exportImage((folder.path / "missing" / "p.png").string()));
    EXPECT_TRUE(t.capture.log.contains("The directory \"" + (folder.path / "missing").string() + "\" doesn't exist."));
    fs::create_directory(folder.path / "taken.png");
    EXPECT_FALSE(t.page.exportImage((folder.path / "taken.png").string()));
    EXPECT_TRUE(t.capture.log.contains("Failed to export to \"" + (folder.path / "taken.png").string() + "\""));
    EXPECT_FALSE(t.page.exportImage((folder.path / "page.xyz").string()));
    EXPECT_FALSE(fs::exists(folder.path / "page.xyz"));
    EXPECT_EQ(t.page.getNbOfPlots(), 2u);
    EXPECT_EQ(t.page.plot(0).getNbOfCurves(), 1u);
}

TEST(MultiPlotWidget, MenuSplitTellsTheOwnerAndCloseOthersKeepsTheChosenPlot)
{
    cRampPage t;
    std::vector<size_t> created;
    t.page.setPlotCreatedHandler([&](size_t index) { created.push_back(index); });
    t.page.analogPlotVirtualSplitWindow(&t.page.plot(1), false);
    ASSERT_EQ(t.page.getNbOfPlots(), 3u);
    EXPECT_EQ(created, std::vector<size_t>{2});
    EXPECT_EQ(t.page.getActiveIndex(), 2u);

    wxSinglePlotWidgetImpl* kept = &t.page.plot(1);
    EXPECT_FALSE(t.page.analogPlotVirtualCheckIsMaximized(kept));
    t.page.analogPlotVirtualMaximizeOrMinimizeWindow(kept);
    EXPECT_TRUE(t.page.analogPlotVirtualCheckIsMaximized(kept));
    EXPECT_FALSE(t.page.analogPlotVirtualCheckIsMaximized(&t.page.plot(0)));

    t.page.analogPlotVirtualCloseAllOtherChildWindows(kept);
    ASSERT_EQ(t.page.getNbOfPlots(), 1u);
    EXPECT_EQ(&t.page.plot(0), kept);
    EXPECT_EQ(kept->getNbOfCurves(), 1u);
    // What was maximized is the only plot now and fills the page.
    const plotPageLayout::cPixelRect rect = t.page.getLayout().computeScreenPosition(0, 1200, 800);
    EXPECT_EQ(rect.w, 1200);
    EXPECT_EQ(rect.h, 800);
}
