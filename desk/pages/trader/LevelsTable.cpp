#include "LevelsTable.h"

#include "Format.h"
#include "PageShell.h"

#include <QtWidgets/QHeaderView>

namespace {

constexpr int levelCount = 5;

enum ColumnOf { Name, Price, Quantity, ColumnCount };

} // namespace

LevelsTable::LevelsTable(QWidget *parent)
    : QTableWidget(2 * levelCount, ColumnCount, parent)
{
    setObjectName(QStringLiteral("trade.levels"));
    setHorizontalHeaderLabels({tr("档位"), tr("价格"), tr("数量")});
    horizontalHeader()->hide();
    verticalHeader()->hide();
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    verticalHeader()->setMinimumSectionSize(fontMetrics().height());
    setEditTriggers(NoEditTriggers);
    setSelectionMode(NoSelection);
    setFocusPolicy(Qt::NoFocus); // the panel that the price goes to keeps it
    setShowGrid(false);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (int row = 0; row < rowCount(); ++row) {
        for (int column = 0; column < ColumnCount; ++column)
            setItem(row, column, new QTableWidgetItem);
        const bool isAsk = row < levelCount;
        const int level = isAsk ? levelCount - row : row - levelCount + 1;
        item(row, Name)->setText((isAsk ? tr("卖%1") : tr("买%1")).arg(level));
        item(row, Price)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        item(row, Quantity)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    connect(this, &QTableWidget::cellClicked, this, [this](int row) {
        const double price = item(row, Price)->data(Qt::UserRole).toDouble();
        if (price > 0)
            emit priceClicked(price);
    });
}

void LevelsTable::show(const SymbolQuote &quote, int decimals)
{
    for (int i = 0; i < levelCount; ++i) {
        showLevel(levelCount - 1 - i, quote.asks.value(i), quote.preClose, decimals);
        showLevel(levelCount + i, quote.bids.value(i), quote.preClose, decimals);
    }
}

void LevelsTable::showLevel(int row, const SymbolQuote::Level &level, double preClose, int decimals)
{
    const bool isThere = level.price > 0;
    item(row, Price)->setText(isThere ? Format::price(level.price, decimals) : Format::missing());
    item(row, Price)->setData(Qt::UserRole, level.price);
    item(row, Quantity)->setText(isThere ? Format::quantity(level.quantity) : Format::missing());
    QVariant color;
    const PageShell *shell = PageShell::instance();
    if (shell && isThere && preClose > 0 && level.price != preClose)
        color = level.price > preClose ? shell->riseColor() : shell->fallColor();
    item(row, Price)->setData(Qt::ForegroundRole, color);
}
