// The subcommand that draws curves of a file on a page and writes the page as a picture, for
// reports and CI pipelines. The only subcommand with a toolkit: it starts a widget application on
// the offscreen platform for its own run, so that no display is needed.
#include <QApplication>

#include <iostream>
#include <memory>

#include "base/cLoggedException.h"
#include "base/cVxLogger.h"
#include "base/cVxThread.h"
#include "cCliTool.h"
#include "cliFileSupport.h"
#include "plot/colourList.h"
#include "plot/qt/wxMultiPlotWidget.h"

namespace vx3 {

namespace {

using namespace cliFiles;

class cErrLogger : public cVxLoggerCallBack {
public:
    explicit cErrLogger(std::ostream& stream) : mStream(stream) {}
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        if (severity >= vxLogger::fatal_error && severity <= vxLogger::warning)
            mStream << vxLogger::severityTag(severity) << text << '\n';
    }

private:
    std::ostream& mStream;
};

bool readSize(const std::string& text, int& width, int& height)
{
    const size_t x = text.find('x');
    if (x == std::string::npos)
        return false;
    try {
        size_t used = 0;
        width = std::stoi(text.substr(0, x), &used);
        if (used != x)
            return false;
        height = std::stoi(text.substr(x + 1), &used);
        if (used != text.size() - x - 1)
            return false;
    } catch (const std::exception&) {
        return false;
    }
    return width >= 16 && height >= 16 && width <= 20000 && height <= 20000;
}

int runPlot(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    std::string output;
    int width = multiPlotWidget::headless_export_width, height = multiPlotWidget::headless_export_height;
    std::vector<std::string> rest;
    for (size_t i = 0; i < arguments.size(); ++i) {
        if ((arguments[i] == "-o" || arguments[i] == "--output") && i + 1 < arguments.size()) {
            output = arguments[++i];
        } else if (arguments[i] == "--size" && i + 1 < arguments.size()) {
            if (!readSize(arguments[++i], width, height)) {
                err << "zelwave-cli plot: \"" << arguments[i] << "\" is no size (WIDTHxHEIGHT, 16 to 20000 pixels)\n";
                return 2;
            }
        } else {
            rest.push_back(arguments[i]);
        }
    }
    cFileOptions options;
    if (!readOptions(rest, options, err, true))
        return 2;
    if (output.empty() || options.positional.size() < 2) {
        err << "zelwave-cli plot: name one file, at least one curve and the picture with -o\n";
        return 2;
    }

    cCurvePlotDataFile store;
    if (!openFile(store, options, err))
        return 1;
    std::vector<wxCurveDescription> curves;
    for (size_t i = 1; i < options.positional.size(); ++i) {
        cCurveChoice choice;
        if (!findCurve(store, options, options.positional[i], "plot", err, choice))
            return 1;
        if (choice.isSweep) {
            err << "zelwave-cli plot: \"" << options.positional[i] << "\" is a sweep variable, not a curve\n";
            return 1;
        }
        wxCurveDescription description;
        try {
            description.init(choice.section, choice.index);
        } catch (const cLoggedException& exception) {
            err << "zelwave-cli plot: " << exception.message() << '\n';
            return 1;
        }
        description.style().realColour = description.style().imagColour =
            colourList::get_colour_from_list(static_cast<unsigned>(curves.size()), 255, 0).rgb();
        description.style().setAutomatic(true);
        curves.push_back(description);
    }

    // Only this subcommand needs the toolkit, and never a screen.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int argc = 1;
    char name[] = "zelwave-cli";
    char* argv[] = {name, nullptr};
    QApplication application(argc, argv);

    cErrLogger messages(err);
    cVxLogger logger;
    logger.setLoggerCallBack(&messages);
    cVxMutex mutex("plot page");
    int result = 1;
    {
        wxMultiPlotWidget page(nullptr, mutex, logger);
        if (page.addCurves(0, curves) && page.exportImage(output, width, height)) {
            out << output << '\n';
            result = 0;
        }
    }
    logger.setLoggerCallBack(nullptr);
    return result;
}

}  // namespace

void addPlotSubcommands(cCliTool& tool)
{
    tool.add({"plot", "draw curves of a file on a page and write it as PNG, JPEG, BMP, TIFF or SVG",
              "usage: zelwave-cli plot FILE CURVE... -o OUT.png|svg [--size WxH] [--section N] [--reader R]\n"
              "Draws the curves on one plot and writes the page; the suffix of OUT chooses the format\n"
              "(.png .jpg .jpeg .bmp .tif .tiff .svg). The page is 1200x800 pixels unless --size says\n"
              "otherwise. Runs without a display.\n",
              runPlot});
}

}  // namespace vx3
