#include "plot/qt/wxMultiPlotWidget.h"

#include <QBuffer>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QImageWriter>
#include <QPainter>
#include <QResizeEvent>
#include <algorithm>
#include <filesystem>

namespace vx3 {

wxMultiPlotWidget::wxMultiPlotWidget(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger)
    : qtVxWidget(parent), cMultiPlotCommon<wxSinglePlotWidgetImpl>(logger), mDataMutex(dataMutex)
{
    createFirstPlot();
    layoutChanged();
}

wxMultiPlotWidget::wxMultiPlotWidget(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger, cDeferFirstPlot)
    : qtVxWidget(parent), cMultiPlotCommon<wxSinglePlotWidgetImpl>(logger), mDataMutex(dataMutex)
{
}

// The plots go with the page logic, before the widget they are children of. A page that computes
// on its thread stops it in its own destructor, while its executeTaskInThread still exists.
wxMultiPlotWidget::~wxMultiPlotWidget() { stopPostProcessThread(); }

bool wxMultiPlotWidget::startPostProcessThread(bool second)
{
    cVxScopedLock lock(mPostProcessMutex);
    if (mPostProcessRunning)
        return false;
    // A run that ended but whose end was not taken yet is joined first.
    mPostProcess.joinThread();
    mPostProcess.setTask(second ? 1 : 0);
    mPostProcessRunning = true;
    ++mPostProcessRun;
    if (!mPostProcess.createThread()) {
        mPostProcessRunning = false;
        logger().errorMsg("Post Processing: the thread could not be started.");
        return false;
    }
    return true;
}

bool wxMultiPlotWidget::checkPostProcessThreadRunning() const
{
    cVxScopedLock lock(mPostProcessMutex);
    return mPostProcessRunning;
}

void wxMultiPlotWidget::stopPostProcessThread()
{
    mPostProcess.joinThread();
    cVxScopedLock lock(mPostProcessMutex);
    mPostProcessRunning = false;
}

void wxMultiPlotWidget::runPostProcess()
{
    int task = 0;
    uint64_t run = 0;
    {
        cVxScopedLock lock(mPostProcessMutex);
        task = mPostProcess.getTask();
        run = mPostProcessRun;
    }
    executeTaskInThread(task);
    // Results reach the plots only on the main thread; a page gone by then drops the call.
    QMetaObject::invokeMethod(this, [this, run] { postProcessThreadEnded(run); }, Qt::QueuedConnection);
}

void wxMultiPlotWidget::postProcessThreadEnded(uint64_t run)
{
    int task = 0;
    {
        cVxScopedLock lock(mPostProcessMutex);
        if (!mPostProcessRunning || run != mPostProcessRun)
            return;  // stopped: the results are not wanted
    }
    // The thread posted this as its last act: the join returns at once.
    mPostProcess.joinThread();
    {
        cVxScopedLock lock(mPostProcessMutex);
        mPostProcessRunning = false;
        task = mPostProcess.getTask();
    }
    reloadAfterPostProcessIsComplete(task);
}

void wxMultiPlotWidget::reloadAfterPostProcessIsComplete(int)
{
    for (size_t i = 0; i < getNbOfPlots(); ++i)
        plot(i).redrawAfterReload(true);
}

std::unique_ptr<wxSinglePlotWidgetImpl> wxMultiPlotWidget::createPlot()
{
    auto plot = std::make_unique<wxSinglePlotWidgetImpl>(this, mDataMutex, logger(), this);
    plot->show();
    return plot;
}

void wxMultiPlotWidget::layoutChanged()
{
    const int w = std::max(width(), 1), h = std::max(height(), 1);
    for (size_t i = 0; i < getNbOfPlots(); ++i) {
        const plotPageLayout::cPixelRect rect = getLayout().computeScreenPosition(i, w, h);
        wxSinglePlotWidgetImpl& single = plot(i);
        if (rect.w <= 0 || rect.h <= 0) {
            single.hide();
            continue;
        }
        single.setGeometry(rect.x, rect.y, rect.w, rect.h);
        single.show();
    }
}

void wxMultiPlotWidget::plotsChanged()
{
    for (size_t i = 0; i < getNbOfPlots(); ++i)
        plot(i).refresh();
}

void wxMultiPlotWidget::resizeEvent(QResizeEvent* event)
{
    qtVxWidget::resizeEvent(event);
    layoutChanged();
}

void wxMultiPlotWidget::analogPlotVirtualExportAsImage(cPlotWidgetCommon*)
{
    const QString file = QFileDialog::getSaveFileName(
        this, "Export to Image", QString(),
        "PNG (*.png);;JPEG (*.jpg *.jpeg);;Bitmap (*.bmp);;TIFF (*.tif *.tiff);;SVG (*.svg)");
    if (!file.isEmpty())
        exportImage(file.toStdString());
}

QImage wxMultiPlotWidget::paintPage(int width, int height)
{
    QImage page(width, height, QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter painter(&page);
    for (size_t i = 0; i < getNbOfPlots(); ++i) {
        const plotPageLayout::cPixelRect rect = getLayout().computeScreenPosition(i, width, height);
        if (rect.w <= 0 || rect.h <= 0)
            continue;
        wxSinglePlotWidgetImpl& single = plot(i);
        single.paint(rect.w, rect.h);
        painter.drawImage(rect.x, rect.y, single.getPicture());
    }
    painter.end();
    // Painting at the export size changed each plot's pixels: the widgets take theirs back.
    for (size_t i = 0; i < getNbOfPlots(); ++i)
        plot(i).plotWidgetRedrawAll();
    return page;
}

bool wxMultiPlotWidget::exportImage(const std::string& fileName, int width, int height, int quality,
                                    const std::string& format)
{
    namespace fs = std::filesystem;
    const fs::path path(fileName);
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
        logger().errorMsg("The directory \"" + folder.string() + "\" doesn't exist.");
        return false;
    }
    std::string suffix = format.empty() ? path.extension().string() : "." + format;
    std::transform(suffix.begin(), suffix.end(), suffix.begin(), [](unsigned char c) { return std::tolower(c); });
    static const char* const raster[] = {".bmp", ".gif", ".jpeg", ".jpg", ".png", ".tif", ".tiff"};
    const bool isSvg = suffix == ".svg";
    if (!isSvg && std::none_of(std::begin(raster), std::end(raster), [&](const char* s) { return suffix == s; })) {
        logger().errorMsg("Failed to export to \"" + fileName + "\" (unknown image type \"" + suffix + "\").");
        return false;
    }
    if (width <= 0 || height <= 0) {
        // Offscreen there is no screen the size would mean anything on: the fixed size makes
        // pages of scripts and CI the same from run to run.
        const bool headless = QGuiApplication::platformName() == QLatin1String("offscreen");
        const bool shown = !headless && isVisible() && this->width() > 1 && this->height() > 1;
        width = shown ? this->width() : multiPlotWidget::headless_export_width;
        height = shown ? this->height() : multiPlotWidget::headless_export_height;
    }
    const QImage page = paintPage(width, height);
    bool written = false;
    if (isSvg) {
        // The page as a picture inside an SVG document, so that the file opens where SVG is asked for.
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        page.save(&buffer, "PNG");
        QFile file(QString::fromStdString(fileName));
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            const QByteArray w = QByteArray::number(width), h = QByteArray::number(height);
            QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                              "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
                              "width=\"" + w + "\" height=\"" + h + "\" viewBox=\"0 0 " + w + " " + h + "\">\n"
                              "<title>Export to Image</title>\n"
                              "<image x=\"0\" y=\"0\" width=\"" + w + "\" height=\"" + h +
                              "\" xlink:href=\"data:image/png;base64," + png.toBase64() + "\"/>\n</svg>\n";
            written = file.write(text) == text.size() && file.flush();
        }
    } else {
        QImageWriter writer(QString::fromStdString(fileName));
        writer.setFormat(QByteArray::fromStdString(suffix.substr(1) == "tif" ? "tiff" : suffix.substr(1)));
        if (quality >= 0)
            writer.setQuality(quality);
        written = writer.write(page);
    }
    if (!written) {
        logger().errorMsg("Failed to export to \"" + fileName + "\"");
        return false;
    }
    return true;
}

}  // namespace vx3
