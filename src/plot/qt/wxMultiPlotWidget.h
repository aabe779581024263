// A page of plot widgets: the shared page logic over wxSinglePlotWidgetImpl, the plots placed as
// child widgets by the page layout, and the picture of the whole page for image export.
#pragma once

#include <QImage>
#include <string>

#include "plot/cMultiPlotCommon.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "widgets/qtVxWidget.h"

namespace vx3 {

namespace multiPlotWidget {
// Headless pages have no screen to take a size from: they export at this size.
constexpr int headless_export_width = 1200;
constexpr int headless_export_height = 800;
}  // namespace multiPlotWidget

class wxMultiPlotWidget : public qtVxWidget, public cMultiPlotCommon<wxSinglePlotWidgetImpl> {
public:
    wxMultiPlotWidget(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger);
    ~wxMultiPlotWidget() override;

    // Paints every shown plot at its place on a page of width x height.
    QImage paintPage(int width, int height);
    // Writes the page by the file's suffix (.png .jpg .jpeg .bmp .tif .tiff .gif .svg). A size of 0
    // takes the widget's size, or the headless size when the widget was never shown. False with
    // the message when the folder is missing, the suffix unknown or the file can't be written.
    bool exportImage(const std::string& fileName, int width = 0, int height = 0, int quality = -1);

protected:
    // For pages whose plots are of another kind: the derived page makes the first plot itself
    // (createFirstPlot, then layoutChanged), once its createPlot can run.
    struct cDeferFirstPlot {};
    wxMultiPlotWidget(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger, cDeferFirstPlot);
    cVxMutex& dataMutex() { return mDataMutex; }
    std::unique_ptr<wxSinglePlotWidgetImpl> createPlot() override;
    void layoutChanged() override;
    void plotsChanged() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    cVxMutex& mDataMutex;
};

}  // namespace vx3
