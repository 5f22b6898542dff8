#include "Ledger.h"

#include <tuple>

namespace Ledger {

qint64 Leg::remaining() const
{
    switch (side) {
    case Side::BuyOpen:
        return qMax<qint64>(0, bought - sold);
    case Side::SellOpen:
        return qMax<qint64>(0, sold - bought);
    case Side::None:
        break;
    }
    return 0;
}

bool Limits::operator==(const Limits &other) const
{
    return std::tie(poolTotal, dailyBuy, dailySell, closeBuy, closeSell) ==
           std::tie(other.poolTotal, other.dailyBuy, other.dailySell, other.closeBuy, other.closeSell);
}

qint64 usedToBuy(const TraderUse &use, bool t0)
{
    if (!t0)
        return use.dailyBought + use.live.buyDaily;
    const qint64 longLeg = use.leg.side == Side::BuyOpen ? use.leg.remaining() : 0;
    return use.dailyBought - use.dailySold + use.live.buyDaily + longLeg;
}

qint64 usedToSell(const TraderUse &use, bool t0)
{
    const bool isShort = use.leg.side == Side::SellOpen;
    if (t0)
        return use.dailySold - use.dailyBought + use.live.sellDaily + (isShort ? use.leg.remaining() : 0);
    // The whole day and not only while the leg is open: shares bought back today can be sold tomorrow.
    return use.dailySold + use.live.sellDaily + (isShort ? use.leg.sold : 0);
}

namespace {

/// What is left to one trader of his own part, used first, and of the common part.
qint64 remaining(qint64 privateQty, qint64 used, qint64 publicQty, qint64 publicUsed)
{
    return qMax<qint64>(0, privateQty - used) + qMax<qint64>(0, publicQty - publicUsed);
}

} // namespace

PublicUse publicUse(const Terms &terms, const QVector<TraderUse> &traders)
{
    PublicUse sum;
    for (const TraderUse &use : traders) {
        sum.toBuy += qMax<qint64>(0, usedToBuy(use, terms.t0) - use.privateQty);
        sum.toSell += qMax<qint64>(0, usedToSell(use, terms.t0) - use.privateQty);
    }
    return sum;
}

QVector<Limits> limits(const Terms &terms, const QVector<TraderUse> &traders)
{
    const PublicUse common = publicUse(terms, traders);
    QVector<Limits> all;
    all.reserve(traders.size());
    for (const TraderUse &use : traders) {
        Limits one;
        one.poolTotal = use.privateQty + terms.publicQty;
        if (terms.enabled) {
            one.dailyBuy = remaining(use.privateQty, usedToBuy(use, terms.t0), terms.publicQty, common.toBuy);
            one.dailySell = remaining(use.privateQty, usedToSell(use, terms.t0), terms.publicQty, common.toSell);
            if (use.leg.side == Side::BuyOpen)
                one.closeSell = qMax<qint64>(0, use.leg.remaining() - use.live.sellPre);
            if (use.leg.side == Side::SellOpen)
                one.closeBuy = qMax<qint64>(0, use.leg.remaining() - use.live.buyPre);
        }
        all.append(one);
    }
    return all;
}

qint64 openPosition(const TraderUse &use)
{
    return use.leg.bought - use.leg.sold + use.dailyBought - use.dailySold;
}

} // namespace Ledger
