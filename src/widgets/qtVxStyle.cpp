#include "qtVxStyle.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

namespace vx3 {

qtVxStyle::qtVxStyle() : QProxyStyle(QStyleFactory::create("Fusion")) {}

void qtVxStyle::setToolbarButtonBgCol(const QColor& normal, const QColor& pressed)
{
    mNormal = normal;
    mPressed = pressed;
}

QColor qtVxStyle::deriveToolbarColor(const QColor& from)
{
    auto step = [](int value) { return static_cast<int>(value * 0.8 + 10.2); };
    return QColor(step(from.red()), step(from.green()), step(from.blue()));
}

void qtVxStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const
{
    // Tool buttons get a flat panel in the derived colours instead of the platform bevel.
    if (element == PE_PanelButtonTool && mNormal.isValid()) {
        bool down = option->state & (State_Sunken | State_On);
        bool hover = option->state & State_MouseOver;
        if (down || hover) {
            painter->fillRect(option->rect, down ? mPressed : mNormal);
            return;
        }
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

}  // namespace vx3
