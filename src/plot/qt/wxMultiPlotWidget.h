// A page of plot widgets: the shared page logic over wxSinglePlotWidgetImpl, the plots placed as
// child widgets by the page layout, and the picture of the whole page for image export.
#pragma once

#include <QImage>
#include <string>

#include "base/cVxThread.h"
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
    // A format given ("png", "svg", ...) is written whatever the suffix says.
    bool exportImage(const std::string& fileName, int width = 0, int height = 0, int quality = -1,
                     const std::string& format = std::string());

    // Asks for a file name, then writes the page ("Export to Image").
    void analogPlotVirtualExportAsImage(cPlotWidgetCommon*) override;

    // --- post-processing on a thread of the page's own --------------------------------------
    // Runs executeTaskInThread with task 1 (second) or 0 on the page's thread; false while a run
    // is still going. When it ends, reloadAfterPostProcessIsComplete runs on the main thread.
    bool startPostProcessThread(bool second);
    bool checkPostProcessThreadRunning() const;
    // Waits for a run to end; its results are not taken into the plots.
    void stopPostProcessThread();
    // On the page's thread: computes into the store under the data mutex; plots are not touched.
    virtual void executeTaskInThread(int task) {}

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
    // On the main thread after a run: every plot takes the new values as after a reload.
    virtual void reloadAfterPostProcessIsComplete(int task);

private:
    // The launcher's target: reads the task under the mutex, runs it, posts the end.
    struct cPostProcessRunner {
        wxMultiPlotWidget* page;
        void executeTaskInThread(int) { page->runPostProcess(); }
    };
    void runPostProcess();
    void postProcessThreadEnded(uint64_t run);

    cVxMutex& mDataMutex;
    cPostProcessRunner mRunner{this};
    cVxThreadLauncher<cPostProcessRunner> mPostProcess{&mRunner, "postProcess"};
    mutable cVxMutex mPostProcessMutex;
    bool mPostProcessRunning = false;
    uint64_t mPostProcessRun = 0;  // a stopped run's late end is told from the present run's
};

}  // namespace vx3
