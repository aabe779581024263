// One line per page kind: the widget that a tab of that kind holds. Kinds without a page in this
// build answer an empty page, and the notebook falls back to the default kind.
#include "plot/plotWindowType.h"
#include "plot/qt/cDigitalPlotPage.h"
#include "plot/qt/cMixedPlotPage.h"
#include "plot/qt/cStackedPlotPage.h"
#include "plot/qt/wxMultiPlotWidget.h"
#include "treegrid/page/wxTreeGridTableWidgetImpl.h"
#include "wxWaveExplorerNotebook.h"

namespace vx3 {

wxWaveExplorerNotebook::cPage wxWaveExplorerNotebook::createPage(int type)
{
    using namespace waveExplorerWidgetVirtual;
    cPage page;
    page.type = type;
    switch (type) {
    case analog_plot:
    case analog_synchronized_plot:
        // Analog pages connect plots of one X unit from the start.
        page.analog = new wxMultiPlotWidget(mTabs, mDataMutex, mLogger);
        page.widget = page.analog;
        break;
    case digital_plot:
        page.analog = new cDigitalPlotPage(mTabs, mDataMutex, mLogger);
        page.widget = page.analog;
        break;
    case mixed_signal_plot:
        page.analog = new cMixedPlotPage(mTabs, mDataMutex, mLogger);
        page.widget = page.analog;
        break;
    case stacked_plot:
        page.analog = new cStackedPlotPage(mTabs, mDataMutex, mLogger);
        page.widget = page.analog;
        break;
    case kTablePage:
        if (mStore) {
            page.table = new wxTreeGridTableWidgetImpl(*mStore, mTabs, mTableLog.get());
            page.widget = page.table;
        }
        break;
    default:
        break;
    }
    return page;
}

}  // namespace vx3
