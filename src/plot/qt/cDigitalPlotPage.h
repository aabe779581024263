// The page of logic curves: plots of rows, one row per bit or bus, names on the left, all plots of
// the page on one X. A split gives another plot of rows in step with the first.
#pragma once

#include "plot/qt/wxSharedXPlotPage.h"

namespace vx3 {

class cDigitalPlotPage : public wxSharedXPlotPage {
public:
    cDigitalPlotPage(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger);
    // The label of the page kind (the acquisition page names its pages by it).
    static constexpr const char* class_label = "cDigitalPlotPage";
    // The rows of a plot of the page (every plot of this page has rows).
    wxDigitalRowsPlot& rows(size_t index = 0) { return *rowsPlot(index); }
};

}  // namespace vx3
