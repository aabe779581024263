// The thin base of the viewer's own widgets: painting on request and the input events as plain
// virtual calls, so that plots deal with pixels and keys rather than Qt event objects.
#pragma once

#include <QWidget>

#include "widgets/qtVxMainWindow.h"

namespace vx3 {

class qtVxWidget : public QWidget {
    Q_OBJECT
public:
    explicit qtVxWidget(QWidget* parent = nullptr);
    ~qtVxWidget() override;
    // A host that embeds the viewer hears of close, show, resize and its own events here.
    void registerEventHandlerFunctions(const qtVxMainWindow::cHandlers& handlers) { mHandlers = handlers; }
    QSize sizeHint() const override { return QSize(1000, 1000); }
    QSize minimumSizeHint() const override { return QSize(100, 100); }

    // Asks for a repaint; several requests before the next paint give one paint.
    void refresh() { update(); }

    enum mouse_button : int { button_none = 0, button_left = 1, button_right = 2, button_middle = 4 };

protected:
    // Positions are in device-independent pixels of the widget; modifiers are Qt's flags.
    virtual void onPaint(QPainter& painter) {}
    virtual void onMouseDown(double x, double y, int button, int modifiers) {}
    virtual void onMouseUp(double x, double y, int button, int modifiers) {}
    virtual void onMouseDoubleClick(double x, double y, int button, int modifiers) {}
    virtual void onMouseMove(double x, double y, int buttons, int modifiers) {}
    // steps: wheel notches, positive away from the user (1 per 120 eighths of a degree).
    virtual void onWheel(double x, double y, double steps, int modifiers) {}
    // Returns whether the key was used; unused keys go on to the parent.
    virtual bool onKeyDown(int key, int modifiers, const QString& text) { return false; }
    virtual bool onKeyUp(int key, int modifiers) { return false; }

    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void customEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    qtVxMainWindow::cHandlers mHandlers;
    static int toButton(Qt::MouseButton button);
    static int toButtons(Qt::MouseButtons buttons);
};

}  // namespace vx3
