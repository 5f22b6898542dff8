#pragma once

#include <QtWidgets/QStyledItemDelegate>

/// Draws a fraction as a bar with its percent over it; above 1 the bar is full and in the colour of what rises.
class BarDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
