// A page of analog plots and logic rows on one X: analog traces stacked as on a stacked page,
// with one plot of rows under them that takes the digital curves.
#pragma once

#include "plot/qt/cStackedPlotPage.h"

namespace vx3 {

class cMixedPlotPage : public cStackedPlotPage {
public:
    cMixedPlotPage(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger);
    static constexpr const char* class_label = "cMixedPlotPage";

    // Digital curves become rows of the page's plot of rows (made at the bottom when missing);
    // analog curves become a trace above the rows.
    bool addDigitalCurves(const std::vector<wxCurveDescription>& curves);
    bool addAnalogCurves(const std::vector<wxCurveDescription>& curves);
    // Each curve where it belongs, by whether it holds logic values.
    bool addMixedCurves(const std::vector<wxCurveDescription>& curves);
    // The index of the plot of rows, -1 while there is none.
    int findRowsPlot();
};

}  // namespace vx3
