#include "Ledger.h"

#include <QtCore/QStringList>

namespace Ledger {

void dayChange(TraderUse &use, const Fees &fees)
{
    const qint64 net = openPosition(use);
    const Leg &old = use.leg;
    Leg fresh;
    // Amounts of a leg on its opening side have their fee already.
    if (net > 0) {
        const double closing = old.side == Side::SellOpen ? 1 + fees.buy : 1;
        const double amount = use.dailyBoughtAmount * (1 + fees.buy) + old.boughtAmount * closing;
        fresh = {Side::BuyOpen, net, 0, double(net) * amount / double(use.dailyBought + old.bought), 0};
    } else if (net < 0) {
        const double closing = old.side == Side::BuyOpen ? 1 - fees.sell : 1;
        const double amount = use.dailySoldAmount * (1 - fees.sell) + old.soldAmount * closing;
        fresh = {Side::SellOpen, 0, -net, 0, double(-net) * amount / double(use.dailySold + old.sold)};
    }
    const qint64 privateQty = use.privateQty;
    use = {};
    use.privateQty = privateQty;
    use.leg = fresh;
}

void dayChange(Stock &stock)
{
    stock.tradeable = stock.quantity;
}

namespace {

void expect(QStringList &faults, bool holds, const char *sentence, int trader = -1)
{
    if (!holds)
        faults += (trader < 0 ? QString() : QStringLiteral("trader %1: ").arg(trader)) + QLatin1String(sentence);
}

void checkTrader(QStringList &faults, const Picture &picture, int trader, const Limits &limit)
{
    const TraderUse &use = picture.traders.at(trader);
    const Live &live = use.live;
    const Leg &leg = use.leg;
    Live orders;
    for (const Picture::LiveOrder &order : picture.orders) {
        if (order.trader != trader)
            continue;
        (order.buy ? orders.buyPre : orders.sellPre) += order.open.pre;
        (order.buy ? orders.buyDaily : orders.sellDaily) += order.open.daily;
    }
    expect(faults, qMin(qMin(limit.dailyBuy, limit.dailySell), qMin(limit.closeBuy, limit.closeSell)) >= 0,
           "a limit is negative", trader);
    expect(faults, live.buyPre == orders.buyPre && live.buyDaily == orders.buyDaily, "live buys are not his orders",
           trader);
    expect(faults, live.sellPre == orders.sellPre && live.sellDaily == orders.sellDaily,
           "live sells are not his orders", trader);
    const qint64 closingBuys = leg.side == Side::SellOpen ? leg.sold - leg.bought : 0;
    const qint64 closingSells = leg.side == Side::BuyOpen ? leg.bought - leg.sold : 0;
    expect(faults, closingBuys >= 0 && closingSells >= 0, "more was closed than was carried over", trader);
    expect(faults, live.buyPre <= closingBuys && live.sellPre <= closingSells, "live orders close more than is open",
           trader);
}

} // namespace

QString faults(const Picture &picture)
{
    QStringList found;
    const QVector<Limits> all = limits(picture.terms, picture.traders);
    qint64 net = 0;
    qint64 selling = 0;
    for (int i = 0; i < picture.traders.size(); ++i) {
        const TraderUse &use = picture.traders.at(i);
        checkTrader(found, picture, i, all.at(i));
        net += openPosition(use);
        selling += use.live.sellPre + use.live.sellDaily;
    }
    const PublicUse used = publicUse(picture.terms, picture.traders);
    expect(found, used.toBuy <= picture.terms.publicQty + picture.overuse.toBuy, "the public quantity is overbought");
    expect(found, used.toSell <= picture.terms.publicQty + picture.overuse.toSell, "the public quantity is oversold");
    const Stock &stock = picture.stock;
    expect(found, stock.quantity + stock.margin - picture.stockWhenFlat == net, "the stock did not follow the traders");
    expect(found, stock.tradeable >= 0 && stock.margin >= 0 && stock.tradeable <= stock.quantity,
           "the stock is impossible");
    expect(found, selling <= stock.tradeable + stock.margin, "live orders sell more than the account has");
    return found.join(QLatin1Char('\n'));
}

} // namespace Ledger
