#include "plot/qt/cDigitalPlotPage.h"

namespace vx3 {

cDigitalPlotPage::cDigitalPlotPage(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger)
    : wxSharedXPlotPage(parent, dataMutex, logger, waveExplorerWidgetVirtual::digital_plot)
{
}

}  // namespace vx3
