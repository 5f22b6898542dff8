#include "StorePrivate.h"

#include "MasterValues.h"

namespace {

Ledger::Side sideOf(const QString &text)
{
    if (text == Master_Values::OpenPositionSide::BuyOpen)
        return Ledger::Side::BuyOpen;
    return text == Master_Values::OpenPositionSide::SellOpen ? Ledger::Side::SellOpen : Ledger::Side::None;
}

QString usageColumns()
{
    return QStringLiteral(
        "SELECT trader, account, security, exchange, modify_time, bought, sold, bought_amount, "
        "sold_amount, pre_side, pre_bought, pre_sold, pre_bought_amount, pre_sold_amount, pool_total, buy_limit, "
        "sell_limit, close_buy_limit, close_sell_limit FROM usage ");
}

StoredUsage usageFrom(const QSqlQuery &query)
{
    StoredUsage usage;
    usage.trader = query.value(0).toString();
    usage.holding = {query.value(1).toString(), query.value(2).toString(), query.value(3).toString()};
    usage.modifyTime = query.value(4).toString();
    Ledger::TraderUse &use = usage.use;
    use.dailyBought = query.value(5).toLongLong();
    use.dailySold = query.value(6).toLongLong();
    use.dailyBoughtAmount = query.value(7).toDouble();
    use.dailySoldAmount = query.value(8).toDouble();
    use.leg.side = sideOf(query.value(9).toString());
    use.leg.bought = query.value(10).toLongLong();
    use.leg.sold = query.value(11).toLongLong();
    use.leg.boughtAmount = query.value(12).toDouble();
    use.leg.soldAmount = query.value(13).toDouble();
    Ledger::Limits &limits = usage.limits;
    limits.poolTotal = query.value(14).toLongLong();
    limits.dailyBuy = query.value(15).toLongLong();
    limits.dailySell = query.value(16).toLongLong();
    limits.closeBuy = query.value(17).toLongLong();
    limits.closeSell = query.value(18).toLongLong();
    return usage;
}

} // namespace

QString legSideText(Ledger::Side side)
{
    switch (side) {
    case Ledger::Side::BuyOpen:
        return Master_Values::OpenPositionSide::BuyOpen;
    case Ledger::Side::SellOpen:
        return Master_Values::OpenPositionSide::SellOpen;
    case Ledger::Side::None:
        break;
    }
    return Master_Values::OpenPositionSide::NoOpenPos;
}

int Store::Private::usageCount(const QString &trader)
{
    const QString sql = QStringLiteral("SELECT COUNT(*) FROM usage WHERE trader = ?");
    return rows<int>(sql, {trader}, [](const QSqlQuery &row) { return row.value(0).toInt(); }).value(0);
}

QVector<StoredUsage> Store::usage(const QStringList &traders, int skip, int limit)
{
    // One statement a trader, so that its text, and with it the prepared statement, stays the same.
    const QString sql = usageColumns() + QStringLiteral("WHERE trader = ? ORDER BY account, security, exchange "
                                                        "LIMIT ? OFFSET ?");
    QStringList sorted = traders;
    sorted.removeDuplicates();
    sorted.sort();
    QVector<StoredUsage> page;
    for (const QString &trader : qAsConst(sorted)) {
        if (page.size() == limit)
            break;
        const int held = skip > 0 ? d->usageCount(trader) : 0;
        if (skip > 0 && skip >= held) {
            skip -= held;
            continue;
        }
        page += d->rows<StoredUsage>(sql, {trader, limit - page.size(), skip}, usageFrom);
        skip = 0;
    }
    return page;
}

QVector<StoredUsage> Store::usageOf(const Holding &holding)
{
    return d->rows<StoredUsage>(
        usageColumns() + QStringLiteral("WHERE account = ? AND security = ? AND exchange = ? ORDER BY trader"),
        {holding.account, holding.securityID, holding.exchange}, usageFrom);
}

QVector<StoredUsage> Store::usageOfAccount(const QString &account)
{
    return d->rows<StoredUsage>(
        usageColumns() + QStringLiteral("WHERE account = ? ORDER BY security, exchange, trader"), {account}, usageFrom);
}

QVector<StoredUsage> Store::allUsage()
{
    return d->rows<StoredUsage>(usageColumns() + QStringLiteral("ORDER BY account, security, exchange, trader"), {},
                                usageFrom);
}

bool Store::saveUsage(const StoredUsage &usage)
{
    const Ledger::TraderUse &use = usage.use;
    const Ledger::Limits &limits = usage.limits;
    QSqlQuery *query = d->execute(
        QStringLiteral("INSERT OR REPLACE INTO usage (trader, account, security, exchange, modify_time, bought, sold, "
                       "bought_amount, sold_amount, pre_side, pre_bought, pre_sold, pre_bought_amount, "
                       "pre_sold_amount, pool_total, buy_limit, sell_limit, close_buy_limit, close_sell_limit) "
                       "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
        {usage.trader, usage.holding.account, usage.holding.securityID, usage.holding.exchange, bound(usage.modifyTime),
         use.dailyBought, use.dailySold, use.dailyBoughtAmount, use.dailySoldAmount, legSideText(use.leg.side),
         use.leg.bought, use.leg.sold, use.leg.boughtAmount, use.leg.soldAmount, limits.poolTotal, limits.dailyBuy,
         limits.dailySell, limits.closeBuy, limits.closeSell});
    return query != nullptr;
}
