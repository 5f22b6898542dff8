#include "OrderAllocation.h"

#include "MasterUtils.h"
#include "Quantity.h"

namespace OrderAllocation {

namespace {

qint64 roundedDown(qint64 quantity, qint64 step)
{
    return quantity - quantity % step;
}

qint64 roundedUp(qint64 quantity, qint64 step)
{
    const qint64 part = quantity % step;
    return part > 0 ? Quantity::satAdd(quantity, step - part) : quantity - part;
}

/// A buy comes in whole steps. So does a sell that leaves an odd rest in its account: odd lots are not split off.
qint64 whole(qint64 portion, bool isBuy, qint64 step, qint64 rest, qint64 quota)
{
    const bool mayBeOdd = !isBuy && (portion == rest || portion == quota);
    return mayBeOdd ? portion : roundedDown(portion, step);
}

} // namespace

QVector<Share> distribute(qint64 quantity, bool isBuy, qint64 step, const QVector<Account> &accounts)
{
    QVector<Share> shares;
    for (const Account &account : accounts)
        shares.append({account.id, 0});

    qint64 rest = quantity;
    for (const bool closing : {true, false}) {
        for (int i = 0; i < accounts.size(); ++i) {
            const qint64 quota = accounts.at(i).quota - shares.at(i).quantity;
            const qint64 portion = closing ? qMin(quota, accounts.at(i).close) : quota;
            const qint64 placed = whole(qMax<qint64>(0, qMin(rest, portion)), isBuy, step, rest, quota);
            shares[i].quantity += placed;
            rest -= placed;
        }
    }
    QVector<Share> used;
    for (const Share &share : qAsConst(shares))
        if (share.quantity > 0)
            used.append(share);
    return used;
}

QVector<qint64> split(qint64 quantity, qint64 partQty, qint64 step, qint64 minQty)
{
    if (partQty <= 0)
        return {quantity};
    const qint64 wanted = qMax(qMax(step, roundedDown(partQty, step)), roundedUp(minQty, step));
    const qint64 part = qMax(wanted, roundedUp(quantity / MaxParts + (quantity % MaxParts > 0 ? 1 : 0), step));
    QVector<qint64> parts = MasterUtils::SplitBigNumIntoSmallNumList(quantity, part).toVector();
    if (parts.size() > 1 && parts.constLast() < minQty) {
        const qint64 last = parts.takeLast();
        parts.last() += last;
    }
    return parts;
}

} // namespace OrderAllocation
