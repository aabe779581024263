// What a plot asks of the page that holds it: status messages, shared axes and bounding boxes of
// connected plots, the style of a new curve. Every operation has a default, so that a plot also
// lives on its own (in tests, or in a host's widget without a page).
#pragma once

#include <string>

#include "explorer/wxWaveExplorerWidgetVirtual.h"
#include "plot/plotWindowType.h"

namespace vx3 {

class cPlotWidgetCommon;
class wxCurveDescription;
class wxCurveStyle;
class wxSinglePlotWidgetXAxis;

namespace analogPlotVirtual {
// The view of a plot after a scroll or zoom, for the plots connected to it.
struct cScrollInfo {
    double xMin = 0.0, xMax = 1.0;
    double y0Min = 0.0, y0Max = 1.0;
    double y1Min = 0.0, y1Max = 1.0;
    bool y1Active = false;
    bool xIsLog = false;
};
}  // namespace analogPlotVirtual

class wxAnalogPlotVirtual : public wxWaveExplorerWidgetVirtualMinimum {
public:
    int waveExplorerVirtualCallBackAction(wxWaveExplorerAction&) override { return 0; }

    virtual void analogPlotVirtualDisableInteractiveMode() {}
    virtual void analogPlotVirtualSetActiveWindow(cPlotWidgetCommon*) {}
    virtual void analogPlotVirtualShowAnalogPlotProperties(cPlotWidgetCommon*) {}
    virtual void analogPlotVirtualTriggerEvent(int) {}
    // severity: vxLogger::severity.
    virtual void analogPlotVirtualStatusBarMessage(unsigned severity, const std::string& text) {}
    virtual void analogPlotVirtualLogProgress(const std::string& text, int percent) {}
    virtual unsigned analogPlotVirtualGetNumberOfPlotWindows() { return 1; }
    virtual void analogPlotVirtualSetCursorPosition(cPlotWidgetCommon*, double x) {}
    // The mouse's position over the canvas as the status line shows it.
    virtual void analogPlotVirtualSetCursorPositionText(cPlotWidgetCommon*, const std::string& text) {}
    virtual void analogPlotVirtualCloseAllOtherChildWindows(cPlotWidgetCommon*) {}
    virtual void analogPlotVirtualCloseChildWindow(cPlotWidgetCommon*) {}
    virtual void analogPlotVirtualActivelySetActiveWindow(cPlotWidgetCommon*) {}
    virtual void analogPlotVirtualCurveRemoved(cPlotWidgetCommon*) {}
    virtual bool analogPlotVirtualCheckIfPlotCanBeClosed(cPlotWidgetCommon*) { return true; }
    virtual int analogPlotVirtualGetPlotWindowType() { return waveExplorerWidgetVirtual::analog_plot; }
    virtual void analogPlotVirtualMaximizeWindow(cPlotWidgetCommon*) {}
    virtual void analogPlotVirtualMinimizeWindow(cPlotWidgetCommon*) {}
    virtual void analogPlotVirtualMaximizeOrMinimizeWindow(cPlotWidgetCommon*) {}
    // The plot's menu asks its page to split it, or to write the page as a picture.
    virtual void analogPlotVirtualSplitWindow(cPlotWidgetCommon*, bool vertically) {}
    virtual void analogPlotVirtualExportAsImage(cPlotWidgetCommon*) {}
    virtual bool analogPlotVirtualCheckIsMaximized(cPlotWidgetCommon*) { return false; }
    virtual void analogPlotVirtualStyleChanged(cPlotWidgetCommon*) {}
    virtual void analogPlotVirtualCurveHighlighted(cPlotWidgetCommon*, const wxCurveDescription&) {}
    virtual void analogPlotVirtualCurveUnhighlighted(cPlotWidgetCommon*) {}
    virtual void analogPlotVirtualCurveActivated(cPlotWidgetCommon*, const wxCurveDescription&) {}
    virtual void analogPlotVirtualComplexCurveConversionChanged(cPlotWidgetCommon*) {}
    // True when the page has a style for the curve (a style file, a colour turn of its own).
    virtual bool analogPlotVirtualGetCurveStyle(const wxCurveDescription&, wxCurveStyle&) { return false; }
    virtual void analogPlotVirtualPlotWasScrolled(cPlotWidgetCommon*, const analogPlotVirtual::cScrollInfo&,
                                                  bool addViewPort) {}
    virtual void analogPlotVirtualRulerWasSet(cPlotWidgetCommon*, int ruler, double x) {}
    virtual void analogPlotVirtualRulerWasCleared(cPlotWidgetCommon*, int ruler) {}
    // The X unit the page has locked for its plots (first form) or the whole locked axis.
    virtual bool analogPlotVirtualCheckIfXAxisTypeIsLocked(cPlotWidgetCommon*, unsigned& unit) { return false; }
    virtual bool analogPlotVirtualCheckIfXAxisTypeIsLocked(cPlotWidgetCommon*, wxSinglePlotWidgetXAxis& axis)
    {
        return false;
    }
    virtual bool analogPlotVirtualCheckIfPlotIsConnected(cPlotWidgetCommon*) { return false; }
    virtual void analogPlotVirtualLockXAxisType(cPlotWidgetCommon*, unsigned unit) {}
    virtual void analogPlotVirtualSwitchToLogXAxis(cPlotWidgetCommon*, bool log) {}
    virtual void analogPlotVirtualCurvesWereCleared(cPlotWidgetCommon*) {}
    virtual void analogPlotVirtualSynchronizeY1AxisPositions(cPlotWidgetCommon*) {}
    virtual void analogPlotVirtualSlidingWindowSetUserZoomAction(cPlotWidgetCommon*, bool flag) {}
    virtual void analogPlotVirtualEntirelySynchronizeY1AxisPositions(cPlotWidgetCommon*) {}
    virtual void analogPlotVirtualConnectPlotIfPossible(cPlotWidgetCommon*) {}
    virtual bool analogPlotVirtualCheckIfXAxisShouldBeUnzoomed(cPlotWidgetCommon*) { return false; }
    // No limit by default.
    virtual unsigned analogPlotVirtualGetNumberOfAllowedCurves() { return static_cast<unsigned>(-1); }
    virtual void analogPlotVirtualAdjustCurveStyleForNewCurve(cPlotWidgetCommon*, wxCurveDescription&) {}
    virtual void analogPlotVirtualComputeDefaultBoundingBox(cPlotWidgetCommon*) {}
    // False: no default of the page, the plot takes its own.
    virtual bool analogPlotVirtualGetDefaultBoundingBoxX(cPlotWidgetCommon*, double& min, double& max) { return false; }
    virtual bool analogPlotVirtualGetDefaultBoundingBoxY(cPlotWidgetCommon*, double& min, double& max) { return false; }
    virtual void analogPlotVirtualCreateNewToolBoxSection(cPlotWidgetCommon*) {}
    virtual bool analogPlotVirtualGetContextMenuActivation() { return true; }
    // A user action on the plot as the command text that repeats it, for the command log.
    virtual void analogPlotVirtualRecordUserCommand(cPlotWidgetCommon*, const std::string& text) {}
};

}  // namespace vx3
