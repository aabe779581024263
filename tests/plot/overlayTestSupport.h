// Helpers of the legend, ruler and annotation tests: a plot of fixed canvas, text metrics of a
// fixed-width font, and the numpy oracle for values read at positions.
#pragma once

#include <cstdlib>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "../base/testSupport.h"
#include "plot/cPlotWidgetCommon.h"
#include "plot/wxAxisTextMetricsVirtual.h"

namespace zwoverlay {

using namespace vx3;

// A plot of 600 x 400 canvas pixels at (60, 40), as a widget would lay it out.
class cOverlayTestPlot : public cPlotWidgetCommon {
public:
    explicit cOverlayTestPlot(const cVxLogger& logger) : cPlotWidgetCommon(logger)
    {
        setCanvasLayout(plotWidgetCommon::cCanvasLayout{60.0, 660.0, 40.0, 440.0});
    }
};

// 7 pixels a character, 14 a line.
class cFixedMetrics : public wxAxisTextMetricsVirtual {
public:
    double getTextWidth(const std::string& text) const override { return 7.0 * static_cast<double>(text.size()); }
    double getTextHeight(const std::string&) const override { return 14.0; }
};

// Values of the curve through points at the queries, by /usr/bin/python3 (numpy, scipy).
inline std::vector<double> oracleValues(const std::string& kind, const std::vector<std::pair<double, double>>& points,
                                        const std::vector<double>& queries)
{
    zwtest::cTempDir folder("zw_overlay_oracle_");
    {
        std::ofstream p(folder.file("points.txt")), q(folder.file("queries.txt"));
        p.precision(17);
        q.precision(17);
        for (const auto& [x, y] : points)
            p << x << ' ' << y << '\n';
        for (double x : queries)
            q << x << '\n';
    }
    const std::string command = "/usr/bin/python3 '" + std::string(ZW_SOURCE_DIR) +
                                "/tests/plot/oracles/interp_values.py' " + kind + " '" + folder.file("points.txt") +
                                "' '" + folder.file("queries.txt") + "' '" + folder.file("out.txt") + "'";
    std::vector<double> values;
    if (std::system(command.c_str()) != 0)
        return values;
    std::ifstream out(folder.file("out.txt"));
    double value = 0.0;
    while (out >> value)
        values.push_back(value);
    return values;
}

}  // namespace zwoverlay
