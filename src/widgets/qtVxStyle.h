// The application style: the platform style with the system's own tool bar button colours.
#pragma once

#include <QColor>
#include <QProxyStyle>

namespace vx3 {

class qtVxStyle : public QProxyStyle {
    Q_OBJECT
public:
    qtVxStyle();
    void setToolbarButtonBgCol(const QColor& normal, const QColor& pressed);
    const QColor& toolbarButtonColor() const { return mNormal; }
    const QColor& toolbarButtonPressedColor() const { return mPressed; }
    // The two colours derived from the palette's window colour: v * 0.8 + 10.2, twice.
    static QColor deriveToolbarColor(const QColor& from);
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;

private:
    QColor mNormal;
    QColor mPressed;
};

}  // namespace vx3
