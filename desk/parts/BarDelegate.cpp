#include "BarDelegate.h"

#include "PageShell.h"
#include "RecordModel.h"

#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include <algorithm>

void BarDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QString text = cell.text;
    cell.text.clear();
    QApplication::style()->drawControl(QStyle::CE_ItemViewItem, &cell, painter, option.widget);

    const QVariant value = index.data(RecordModel::ValueRole);
    if (value.isValid()) {
        const double fraction = value.toDouble();
        QRect bar = option.rect.adjusted(2, 3, -2, -3);
        bar.setWidth(int(bar.width() * std::clamp(fraction, 0., 1.)));
        const PageShell *shell = PageShell::instance();
        QColor colour = fraction > 1 && shell ? shell->riseColor() : option.palette.color(QPalette::Highlight);
        colour.setAlpha(90);
        painter->fillRect(bar, colour);
    }
    const bool chosen = option.state.testFlag(QStyle::State_Selected);
    painter->setPen(option.palette.color(chosen ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(option.rect.adjusted(4, 0, -4, 0), Qt::AlignVCenter | Qt::AlignRight, text);
}
