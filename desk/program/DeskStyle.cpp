#include "DeskStyle.h"

#include <QtWidgets/QStyleOption>

DeskStyle::DeskStyle()
    : QProxyStyle(QStringLiteral("Fusion"))
{}

void DeskStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    const bool isTick = element == PE_IndicatorCheckBox || element == PE_IndicatorItemViewItemCheck ||
                        element == PE_IndicatorRadioButton;
    const auto *button = isTick ? qstyleoption_cast<const QStyleOptionButton *>(option) : nullptr;
    const auto *item = isTick ? qstyleoption_cast<const QStyleOptionViewItem *>(option) : nullptr;
    // The frame is this colour, made darker.
    const QColor frame = option->palette.color(QPalette::Disabled, QPalette::Text).lighter(140);
    if (button) {
        QStyleOptionButton framed(*button);
        framed.palette.setColor(QPalette::Window, frame);
        QProxyStyle::drawPrimitive(element, &framed, painter, widget);
    } else if (item) {
        QStyleOptionViewItem framed(*item);
        framed.palette.setColor(QPalette::Window, frame);
        QProxyStyle::drawPrimitive(element, &framed, painter, widget);
    } else {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}
