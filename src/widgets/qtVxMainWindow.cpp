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

}  // namespace vx3
