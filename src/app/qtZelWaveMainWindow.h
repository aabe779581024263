// The two concrete top objects: a stand-alone main window, and a plain widget for a host.
#pragma once

#include "wxZelWaveWidgetWrapper.h"

class QCloseEvent;
class QEvent;
class QWidget;

namespace vx3 {

class qtVxMainWindow;
class qtVxWidget;

namespace zelWaveWindow {
enum : int { retry_close_event = 10678 };
}

class qtZelWaveMainWindow : public wxZelWaveWidgetWrapper {
public:
    qtZelWaveMainWindow(QWidget* parent, int x, int y, int width, int height, int style);
    ~qtZelWaveMainWindow() override;
    void* handle() const { return mWindow; }
    qtVxMainWindow* window() const { return mWindow; }
    int controlPanelVirtualExecuteCommand(const std::string& command) override;

protected:
    int closeRequested(bool force) override;
    void showTopLevel(bool show) override;

private:
    void handleCloseEvent(QCloseEvent* event);
    void handleCustomEvent(QEvent* event);
    void buildMenuBar();
    qtVxMainWindow* mWindow = nullptr;
};

class qtZelWaveWidget : public wxZelWaveWidgetWrapper {
public:
    qtZelWaveWidget(QWidget* parent, int x, int y, int width, int height, int style);
    ~qtZelWaveWidget() override;
    void* handle() const { return mWidget; }
    int controlPanelVirtualExecuteCommand(const std::string& command) override;

protected:
    int closeRequested(bool force) override;
    void showTopLevel(bool show) override;

private:
    void handleCloseEvent(QCloseEvent* event);
    qtVxWidget* mWidget = nullptr;
};

// Called once when the Qt object of a top object is destroyed.
void triggerWidgetDestroyedCallBack(wxZelWaveWidgetWrapper* wrapper, void* handle);

}  // namespace vx3
