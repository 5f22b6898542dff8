#include "QueueView.h"

#include "Format.h"
#include "OrderQueuePanel.h"
#include "OrvaneFields.h"
#include "PageShell.h"
#include "StandFields.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>

#include <cmath>

namespace {

constexpr int largeQty = 10000; ///< a hundred lots
constexpr double tolerance = 1e-9;

double priceOf(const VariantRecord &order)
{
    return order.value(Orvane_Fields::Security::price).toDouble();
}

int remainingOf(const VariantRecord &order)
{
    return int(order.value(Orvane_Fields::Security::orderQty).toLongLong() -
               order.value(Stand_Fields::Order::filledQty).toLongLong());
}

} // namespace

QueueView::QueueView(bool isBids, QWidget *parent)
    : QWidget(parent)
    , m_isBids(isBids)
    , m_title(new QLabel)
    , m_panel(new OrderQueuePanel)
{
    m_panel->setObjectName(isBids ? QStringLiteral("trade.queue.bid") : QStringLiteral("trade.queue.ask"));
    m_panel->SetBaseQty(largeQty);
    m_panel->SetGridSize({m_panel->fontMetrics().averageCharWidth() * 5, m_panel->fontMetrics().height() + 4});
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(1);
    layout->addWidget(m_title);
    layout->addWidget(m_panel, 1);
}

void QueueView::setQueue(double price, const QList<int> &queue, int decimals)
{
    const QString side = m_isBids ? tr("买一") : tr("卖一");
    const QString shownPrice = price > 0 ? Format::price(price, decimals) : Format::missing();
    m_title->setText(tr("%1 %2　%3 笔（手）").arg(side, shownPrice, QString::number(queue.size())));
    const bool isOtherPrice = std::abs(price - m_price) > tolerance;
    m_price = price;
    if (isOtherPrice)
        mark();
    m_panel->SetOrderQueue(price, queue);
}

void QueueView::setOwnOrders(const RecordList &liveOrders)
{
    m_own.clear();
    for (const VariantRecord &order : liveOrders) {
        const bool isBuy = order.value(Orvane_Fields::Security::side).toString() == Stand_Values::Side::buy;
        if (isBuy == m_isBids)
            m_own.append(order);
    }
    mark();
}

/// Ids grow, so the last at the price is the newest.
void QueueView::mark()
{
    QMap<QString, double> prices;
    int quantity = 0;
    for (const VariantRecord &order : qAsConst(m_own)) {
        prices.insert(order.value(Orvane_Fields::Security::orderID).toString(), priceOf(order));
        if (std::abs(priceOf(order) - m_price) < tolerance)
            quantity = remainingOf(order);
    }
    if (const PageShell *shell = PageShell::instance()) {
        QColor large = shell->fallColor();
        large.setAlpha(70);
        m_panel->SetHighlightColor(large);
        m_panel->SetMonitorQty(quantity, shell->riseColor());
    }
    m_panel->SetOrderInfos(prices);
}
