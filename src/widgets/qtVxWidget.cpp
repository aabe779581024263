#include "widgets/qtVxWidget.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QWheelEvent>

namespace vx3 {

qtVxWidget::qtVxWidget(QWidget* parent) : QWidget(parent)
{
    setMouseTracking(true);  // plots show readouts under the pointer without a pressed button
    setFocusPolicy(Qt::StrongFocus);
}

qtVxWidget::~qtVxWidget()
{
    if (mHandlers.destroyed)
        mHandlers.destroyed();
}

void qtVxWidget::closeEvent(QCloseEvent* event)
{
    if (mHandlers.close)
        mHandlers.close(event);
    else
        event->accept();
}

void qtVxWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (mHandlers.show)
        mHandlers.show();
}

void qtVxWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (mHandlers.resize)
        mHandlers.resize(event->size().width(), event->size().height());
}

void qtVxWidget::customEvent(QEvent* event)
{
    if (mHandlers.custom)
        mHandlers.custom(event);
}

int qtVxWidget::toButton(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton: return button_left;
    case Qt::RightButton: return button_right;
    case Qt::MiddleButton: return button_middle;
    default: return button_none;
    }
}

int qtVxWidget::toButtons(Qt::MouseButtons buttons)
{
    int result = button_none;
    if (buttons & Qt::LeftButton)
        result |= button_left;
    if (buttons & Qt::RightButton)
        result |= button_right;
    if (buttons & Qt::MiddleButton)
        result |= button_middle;
    return result;
}

void qtVxWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    onPaint(painter);
}

void qtVxWidget::mousePressEvent(QMouseEvent* event)
{
    onMouseDown(event->position().x(), event->position().y(), toButton(event->button()), int(event->modifiers()));
}

void qtVxWidget::mouseReleaseEvent(QMouseEvent* event)
{
    onMouseUp(event->position().x(), event->position().y(), toButton(event->button()), int(event->modifiers()));
}

void qtVxWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    onMouseDoubleClick(event->position().x(), event->position().y(), toButton(event->button()),
                       int(event->modifiers()));
}

void qtVxWidget::mouseMoveEvent(QMouseEvent* event)
{
    onMouseMove(event->position().x(), event->position().y(), toButtons(event->buttons()), int(event->modifiers()));
}

void qtVxWidget::wheelEvent(QWheelEvent* event)
{
    onWheel(event->position().x(), event->position().y(), event->angleDelta().y() / 120.0, int(event->modifiers()));
    event->accept();
}

void qtVxWidget::keyPressEvent(QKeyEvent* event)
{
    if (onKeyDown(event->key(), int(event->modifiers()), event->text()))
        event->accept();
    else
        QWidget::keyPressEvent(event);
}

void qtVxWidget::keyReleaseEvent(QKeyEvent* event)
{
    if (onKeyUp(event->key(), int(event->modifiers())))
        event->accept();
    else
        QWidget::keyReleaseEvent(event);
}

}  // namespace vx3
