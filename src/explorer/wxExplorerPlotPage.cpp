#include "wxExplorerPlotPage.h"

namespace vx3 {

void wxExplorerPlotPage::analogPlotVirtualStatusBarMessage(unsigned severity, const std::string& text)
{
    if (mHandlers.statusBarMessage)
        mHandlers.statusBarMessage(severity, text);
}

unsigned wxExplorerPlotPage::analogPlotVirtualGetNumberOfPlotWindows()
{
    return mHandlers.numberOfPlots ? mHandlers.numberOfPlots() : 1;
}

void wxExplorerPlotPage::analogPlotVirtualRecordUserCommand(cPlotWidgetCommon*, const std::string& text)
{
    if (mHandlers.recordUserCommand)
        mHandlers.recordUserCommand(text);
}

void wxExplorerPlotPage::analogPlotVirtualSetCursorPositionText(cPlotWidgetCommon*, const std::string& text)
{
    if (mCursorPosition)
        mCursorPosition(text);
}

}  // namespace vx3
