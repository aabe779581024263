// A main window that hands its events to functions registered by its owner, so that the
// owner need not derive from a Qt class.
#pragma once

#include <QMainWindow>

#include <functional>

namespace vx3 {

class qtVxMainWindow : public QMainWindow {
    Q_OBJECT
public:
    struct cHandlers {
        std::function<void(QCloseEvent*)> close;
        std::function<void()> show;
        std::function<void(int, int)> resize;
        std::function<void(QEvent*)> custom;  // events of user types
        std::function<void()> destroyed;
    };
    explicit qtVxMainWindow(QWidget* parent = nullptr) : QMainWindow(parent) {}
    ~qtVxMainWindow() override;
    void registerEventHandlerFunctions(const cHandlers& handlers) { mHandlers = handlers; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void customEvent(QEvent* event) override;

private:
    cHandlers mHandlers;
};

}  // namespace vx3
