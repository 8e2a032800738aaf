#pragma once

#include <QProxyStyle>

namespace quellbox {

/// Qt's own style, with outlines that can be seen on black. That style draws them darker than the window, so that on a
/// desktop of high contrast fields, buttons and what is not checked would vanish. On every other desktop it changes
/// nothing.
class ContrastStyle : public QProxyStyle {
public:
    ContrastStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
};

} // namespace quellbox
