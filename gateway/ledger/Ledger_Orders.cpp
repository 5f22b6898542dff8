#include "Ledger.h"

namespace Ledger {

namespace {

qint64 &livePre(Live &live, bool buy)
{
    return buy ? live.buyPre : live.sellPre;
}

qint64 &liveDaily(Live &live, bool buy)
{
    return buy ? live.buyDaily : live.sellDaily;
}

qint64 liveTotal(const TraderUse &use, bool buy)
{
    const Live &live = use.live;
    return buy ? live.buyPre + live.buyDaily : live.sellPre + live.sellDaily;
}

qint64 liveSells(const QVector<TraderUse> &traders)
{
    qint64 sum = 0;
    for (const TraderUse &use : traders)
        sum += liveTotal(use, false);
    return sum;
}

Refusal refusedLots(const Order &order, qint64 freeTradeable)
{
    if (order.quantity <= 0)
        return Refusal::NoQuantity;
    if (order.quantity > order.maxQty)
        return Refusal::AboveMaximum;
    if (order.buy && order.quantity < order.minQty)
        return Refusal::BelowMinimum;
    const qint64 step = qMax<qint64>(1, order.step);
    const qint64 odd = order.quantity % step;
    // An odd lot goes in one order: it is gone once a live order sells it.
    const bool sellsOddLot = !order.buy && odd == freeTradeable % step;
    return odd == 0 || sellsOddLot ? Refusal::None : Refusal::OffStep;
}

bool tooMuch(qint64 position, qint64 most)
{
    return most >= 0 && qAbs(position) > most;
}

Refusal refusedExposure(const TraderUse &use, const Order &order)
{
    const qint64 sign = order.buy ? 1 : -1;
    const qint64 open = openPosition(use);
    const qint64 pending = liveTotal(use, order.buy) + order.quantity;
    // deliberate: a position can always be brought nearer to zero, also from above a lowered limit.
    const bool onlyCloses = sign * open < 0 && order.quantity <= qAbs(open);
    if (onlyCloses)
        return Refusal::None;
    if (tooMuch(open + sign * order.quantity, order.maxExposure))
        return Refusal::Exposure;
    return tooMuch(open + sign * pending, order.maxPendExposure) ? Refusal::PendingExposure : Refusal::None;
}

} // namespace

qint64 reducible(const TraderUse &use, bool buy)
{
    const qint64 open = openPosition(use);
    return qMax<qint64>(0, (buy ? -open : open) - liveTotal(use, buy));
}

Acceptance accept(const Terms &terms, const Stock &stock, QVector<TraderUse> &traders, int trader, const Order &order)
{
    TraderUse &use = traders[trader];
    const Limits limit = limits(terms, traders).at(trader);
    const qint64 closing = order.buy ? limit.closeBuy : limit.closeSell;
    const qint64 daily = order.buy ? limit.dailyBuy : limit.dailySell;
    const qint64 selling = liveSells(traders);

    Refusal refusal = refusedLots(order, qMax<qint64>(0, stock.tradeable - selling));
    if (refusal == Refusal::None && order.reduceOnly && order.quantity > reducible(use, order.buy))
        refusal = Refusal::NotReducing;
    if (refusal == Refusal::None && order.quantity > closing + daily)
        refusal = Refusal::AboveLimit;
    if (refusal == Refusal::None)
        refusal = refusedExposure(use, order);
    if (refusal == Refusal::None && !order.buy && order.quantity > stock.tradeable + stock.margin - selling)
        refusal = Refusal::NotSellable;
    if (refusal != Refusal::None)
        return {refusal, {}};

    Parts parts;
    parts.pre = qMin(order.quantity, closing);
    parts.daily = order.quantity - parts.pre;
    livePre(use.live, order.buy) += parts.pre;
    liveDaily(use.live, order.buy) += parts.daily;
    return {Refusal::None, parts};
}

namespace {

/// Moves a filled quantity into what was traded.
void book(qint64 &traded, double &amount, qint64 quantity, double price)
{
    traded += quantity;
    amount += double(quantity) * price;
}

void moveStock(Stock &stock, bool t0, bool buy, qint64 quantity)
{
    if (buy) {
        stock.quantity += quantity;
        stock.tradeable += t0 ? quantity : 0;
        return;
    }
    const qint64 own = qMin(quantity, stock.tradeable);
    stock.quantity -= own;
    stock.tradeable -= own;
    stock.margin -= quantity - own;
}

} // namespace

void fill(TraderUse &use, Stock &stock, bool t0, bool buy, Parts &open, qint64 quantity, double price)
{
    Q_ASSERT(quantity > 0 && quantity <= open.total());
    Parts filled;
    filled.pre = qMin(quantity, open.pre);
    filled.daily = quantity - filled.pre;
    if (buy) {
        book(use.leg.bought, use.leg.boughtAmount, filled.pre, price);
        book(use.dailyBought, use.dailyBoughtAmount, filled.daily, price);
    } else {
        book(use.leg.sold, use.leg.soldAmount, filled.pre, price);
        book(use.dailySold, use.dailySoldAmount, filled.daily, price);
    }
    open.pre -= filled.pre;
    open.daily -= filled.daily;
    release(use, buy, filled);
    moveStock(stock, t0, buy, quantity);
}

void release(TraderUse &use, bool buy, const Parts &open)
{
    livePre(use.live, buy) -= open.pre;
    liveDaily(use.live, buy) -= open.daily;
}

} // namespace Ledger
