#pragma once

#include <QtWidgets/QProxyStyle>

/// Fusion, whose ticks are also seen where they are not set: it frames them darker than the window, which on a dark one
/// is nothing.
class DeskStyle : public QProxyStyle
{
    Q_OBJECT

public:
    DeskStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
};
