#include "qtVxMainWindow.h"

#include <QCloseEvent>
#include <QResizeEvent>

namespace vx3 {

namespace {
template <class Handlers>
void forwardClose(const Handlers& handlers, QCloseEvent* event)
{
    if (handlers.close)
        handlers.close(event);
    else
        event->accept();
}
}  // namespace

qtVxMainWindow::~qtVxMainWindow()
{
    if (mHandlers.destroyed)
        mHandlers.destroyed();
}

void qtVxMainWindow::closeEvent(QCloseEvent* event) { forwardClose(mHandlers, event); }

void qtVxMainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (mHandlers.show)
        mHandlers.show();
}

void qtVxMainWindow::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    if (mHandlers.resize)
        mHandlers.resize(event->size().width(), event->size().height());
}

void qtVxMainWindow::customEvent(QEvent* event)
{
    if (mHandlers.custom)
        mHandlers.custom(event);
}

qtVxWidget::~qtVxWidget()
{
    if (mHandlers.destroyed)
        mHandlers.destroyed();
}

void qtVxWidget::closeEvent(QCloseEvent* event) { forwardClose(mHandlers, event); }

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

}  // namespace vx3
