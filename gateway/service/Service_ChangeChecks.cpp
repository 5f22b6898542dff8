#include "Service.h"

#include "ChangeRows.h"
#include "GatewayTexts.h"
#include "MasterFields.h"
#include "OrvaneFields.h"

namespace T0_ = Master_Fields::ManualT0;

void Service::checkAddable(ChangeRow &row, const QString &account)
{
    row.require(m_books.account(account), GatewayTexts::unknownAccount(account));
    row.require(m_memory.enabled.contains(account), GatewayTexts::notEnabled(account));
}

Holding Service::holdingOf(ChangeRow &row, const QString &account)
{
    const Holding holding{account, row.id(Orvane_Fields::Security::securityID),
                          row.id(Orvane_Fields::UserAccount::securityExchange)};
    const Account *known = m_books.account(account);
    row.require(m_books.instrument(holding.securityID, holding.exchange),
                GatewayTexts::unknownSecurity(holding.securityID, holding.exchange));
    row.require(known && known->exchanges.contains(holding.exchange),
                GatewayTexts::foreignExchange(account, holding.exchange));
    return holding;
}

StoredResource Service::resourceOf(ChangeRow &row)
{
    const QString id = row.id(T0_::ResourceId);
    const StoredResource resource = m_store->resource(id);
    row.require(!resource.id.isEmpty(), GatewayTexts::unknownResource(id));
    return resource;
}

StoredPool Service::poolOf(ChangeRow &row)
{
    const QString id = row.id(T0_::PoolDetailId);
    const StoredPool pool = m_store->pool(id);
    row.require(!pool.id.isEmpty(), GatewayTexts::unknownPool(id));
    return pool;
}

QString Service::traderOf(ChangeRow &row, const QString &account)
{
    const QString trader = row.id(T0_::T0TraderId);
    const int type = row.poolType();
    if (trader == Books::publicTrader()) {
        row.require(type == 0, GatewayTexts::privatePublic());
        return trader;
    }
    const User *user = m_books.user(trader);
    row.require(user, GatewayTexts::unknownTrader(trader));
    row.require(type == 1, GatewayTexts::publicTrader(trader));
    row.require(user && user->isTrader(), GatewayTexts::noTraderRole(trader));
    row.require(m_books.tradersOf(account).contains(trader), GatewayTexts::mayNotTrade(trader, account));
    return trader;
}

qint64 Service::factorOf(const Holding &holding) const
{
    const Instrument *instrument = m_books.instrument(holding.securityID, holding.exchange);
    return instrument ? instrument->dispFactor : 1;
}

qint64 Service::allocated(const Holding &holding)
{
    qint64 sum = 0;
    const QVector<StoredPool> pools = m_store->poolsOf(holding);
    for (const StoredPool &pool : pools)
        sum += pool.quantity;
    return sum;
}

QString Service::standsAgainst(const Holding &holding, const QString &trader)
{
    const QVector<StoredUsage> records = m_store->usageOf(holding);
    for (const StoredUsage &usage : records) {
        const qint64 open = Ledger::openPosition(usage.use);
        if (open != 0 && (trader.isEmpty() || usage.trader == trader))
            return GatewayTexts::openPosition(usage.trader, open);
    }
    return liveAgainst(holding, trader);
}

QString Service::liveAgainst(const Holding &holding, const QString &trader)
{
    const QVector<StoredOrder> orders = m_store->liveOrdersOf(holding);
    for (const StoredOrder &order : orders)
        if (trader.isEmpty() || order.user == trader)
            return GatewayTexts::liveOrder(order.user, order.id);
    return QString();
}
