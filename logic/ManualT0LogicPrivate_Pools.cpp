#include "DisplayUnits.h"
#include "HostLog.h"
#include "ManualT0Logic.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "PoolTypes.h"
#include "Quantity.h"

#include <QtCore/QElapsedTimer>

using namespace Master_Fields::ManualT0;

namespace {

/// What a public pool and its private partner have in common.
QString partnerKey(const VariantRecord &pool)
{
    return text(pool, Orvane_Fields::UserAccount::tradingAccount) + QLatin1Char('_') +
           text(pool, Orvane_Fields::Security::symbol) + QLatin1Char('_') +
           text(pool, Orvane_Fields::UserAccount::securityExchange);
}

/// Gives a pool the quantity of its public partner, which is then taken.
void takePartner(VariantRecord &pool, QMap<QString, VariantRecord> &publicPools)
{
    const auto partner = publicPools.find(partnerKey(pool));
    if (partner == publicPools.end())
        return;
    pool.insert(PublicPoolQty, partner->value(PoolTotalQty));
    publicPools.erase(partner);
}

/// A public pool without a partner: its quantity stands beside an empty private one.
VariantRecord withoutPartner(VariantRecord publicPool)
{
    publicPool.insert(PublicPoolQty, publicPool.value(PoolTotalQty));
    publicPool.insert(PoolTotalQty, 0);
    return publicPool;
}

} // namespace

RecordList ManualT0LogicPrivate::GetAllSecurityPoolList() const
{
    ReadLock lock(securityPoolLock);
    RecordList pools = securityPoolMap.values();
    lock.unlock();
    ReadLock namesLock(traderLock);
    fillTraderNames(pools);
    return pools;
}

VariantRecord ManualT0LogicPrivate::GetSecurityPoolDetailById(const QString &poolId) const
{
    ReadLock lock(securityPoolLock);
    return securityPoolMap.value(poolId);
}

RecordList ManualT0LogicPrivate::GetSecurityPoolDetailByIdList(const QStringList &poolIdList) const
{
    RecordList pools;
    ReadLock lock(securityPoolLock);
    for (const QString &id : poolIdList) {
        const auto pool = securityPoolMap.constFind(id);
        if (pool != securityPoolMap.cend())
            pools.append(*pool);
    }
    return pools;
}

RecordList ManualT0LogicPrivate::GetSecurityPoolDetailByResourceId(const QString &resourceId, int poolType) const
{
    ReadLock lock(securityPoolLock);
    RecordList pools = poolsOfResource(resourceId, poolType);
    lock.unlock();
    ReadLock namesLock(traderLock);
    fillTraderNames(pools);
    return pools;
}

RecordList ManualT0LogicPrivate::poolsOfResource(const QString &resourceId, int poolType) const
{
    RecordList pools;
    const IdSet *ids = poolIdsByResource.find(resourceId);
    if (!ids)
        return pools;
    for (const QString &id : *ids) {
        const VariantRecord pool = securityPoolMap.value(id);
        if (poolType == PoolTypes::All || Quantity::toIntQty(pool.value(PoolType)) == poolType)
            pools.append(pool);
    }
    return pools;
}

RecordList ManualT0LogicPrivate::GetSecurityPoolDetailListByTradingList(const QStringList &accountList,
                                                                        const QStringList &traderIdList,
                                                                        const QString &symbol, const QString &exchange,
                                                                        bool withPublic) const
{
    if (accountList.isEmpty())
        return {};
    QElapsedTimer elapsed;
    elapsed.start();

    ReadLock lock(securityPoolLock);
    const TradingFilter filter{accountList, traderIdList, symbol, exchange};
    const QVector<HeldRecord> held = withPublic ? privatePools(filter) : namedPools(filter);
    PublicPools publicPools;
    if (withPublic)
        publicPools = publicPoolsByPartner(accountList, symbol, exchange);
    RecordList pools;
    pools.reserve(held.size());
    for (const HeldRecord pool : held) {
        pools.append(*pool);
        if (!publicPools.isEmpty())
            takePartner(pools.last(), publicPools);
    }
    lock.unlock();

    ReadLock namesLock(traderLock);
    fillTraderNames(pools);
    namesLock.unlock();
    for (const VariantRecord &publicPool : qAsConst(publicPools))
        pools.append(withoutPartner(publicPool));
    HOST_DEBUG("ManualT0LogicPrivate", "ManualT0LogicPrivate::GetSecurityPoolDetailListByTradingList"
                                           << "get security pools" << elapsed.elapsed());
    return pools;
}

QVector<HeldRecord> ManualT0LogicPrivate::namedPools(TradingFilter filter) const
{
    const bool anyTrader = filter.traders.isEmpty();
    filter.traders.removeAll(QString());
    if (filter.traders.isEmpty() && !anyTrader)
        return {};
    return poolLookup().find(filter);
}

QVector<HeldRecord> ManualT0LogicPrivate::privatePools(const TradingFilter &filter) const
{
    QVector<HeldRecord> pools = namedPools(filter);
    if (filter.traders.isEmpty()) {
        const auto isPublic = [trader = poolTraderField()](HeldRecord pool) {
            return text(*pool, trader) == ManualT0Logic::PublicTrader;
        };
        pools.erase(std::remove_if(pools.begin(), pools.end(), isPublic), pools.end());
    }
    sortById(pools);
    return pools;
}

ManualT0LogicPrivate::PublicPools ManualT0LogicPrivate::publicPoolsByPartner(const QStringList &accountList,
                                                                             const QString &symbol,
                                                                             const QString &exchange) const
{
    PublicPools publicPools;
    QVector<HeldRecord> held = poolLookup().find({accountList, {ManualT0Logic::PublicTrader}, symbol, exchange});
    sortById(held);
    for (const HeldRecord pool : qAsConst(held))
        publicPools.insert(partnerKey(*pool), *pool);
    return publicPools;
}

RecordList ManualT0LogicPrivate::GetSecurityPoolDetailListByTrading(const QString &tradingAccount,
                                                                    const QString &traderId, const QString &symbol,
                                                                    const QString &exchange) const
{
    return GetSecurityPoolDetailListByTradingList({tradingAccount}, {traderId}, symbol, exchange, false);
}

VariantRecord ManualT0LogicPrivate::GetSecurityPoolDetailByTrading(const QString &tradingAccount,
                                                                   const QString &traderId, const QString &symbol,
                                                                   const QString &exchange) const
{
    ReadLock lock(securityPoolLock);
    const HeldRecord first = findPool({tradingAccount, traderId, symbol, exchange});
    if (first == securityPoolMap.cend())
        return {};
    VariantRecord pool = *first;
    lock.unlock();
    ReadLock namesLock(traderLock);
    pool.insert(T0TraderName, traderName(text(pool, T0TraderId)));
    return pool;
}

RecordList ManualT0LogicPrivate::GetSecurityPoolDetail(const QString &productAccount, const QString &assetProp,
                                                       const QString &traderId, const QString &symbol,
                                                       const QString &exchange, bool withPublic) const
{
    if (productAccount.isEmpty() || assetProp.isEmpty())
        return {};
    const QStringList traders = traderId.isEmpty() ? QStringList() : QStringList(traderId);
    return GetSecurityPoolDetail(QStringList(productAccount), QStringList(assetProp), traders, symbol, exchange,
                                 withPublic);
}

RecordList ManualT0LogicPrivate::GetSecurityPoolDetail(const QStringList &productAccountList,
                                                       const QStringList &assetPropList,
                                                       const QStringList &traderIdList, const QString &symbol,
                                                       const QString &exchange, bool withPublic) const
{
    QStringList accounts;
    ReadLock lock(productLock);
    const QStringList products =
        productAccountList.isEmpty() ? QStringList(productAccountMap.keys()) : productAccountList;
    for (const QString &product : products) {
        const QStringList properties = assetPropList.isEmpty() ? productAccountMap.value(product) : assetPropList;
        for (const QString &property : properties)
            accounts += candidateAccounts(product, property);
    }
    lock.unlock();
    return GetSecurityPoolDetailListByTradingList(accounts, traderIdList, symbol, exchange, withPublic);
}

HeldRecord ManualT0LogicPrivate::findPool(const TradingKey &key) const
{
    HeldRecord first = securityPoolMap.cend();
    if (!key.symbol.isEmpty() && !key.exchange.isEmpty() && !key.trader.isEmpty()) {
        const auto &ids = poolIdsByTradingKey.ids();
        for (auto id = ids.constFind(key); id != ids.cend() && id.key() == key; ++id) {
            if (first == securityPoolMap.cend() || *id < first.key())
                first = securityPoolMap.constFind(*id);
        }
        return first;
    }
    // Here an empty symbol or exchange means any, an empty trader nobody.
    QVector<HeldRecord> pools = namedPools({{key.account}, {key.trader}, key.symbol, key.exchange});
    sortById(pools);
    return pools.isEmpty() ? first : pools.first();
}

TradingLookup ManualT0LogicPrivate::poolLookup() const
{
    return {securityPoolMap,
            {poolIdsByTradingAccount, poolIdsByTrader, poolIdsBySymbol, poolIdsByExchange, poolIdsByAccountAndTrader,
             poolIdsByAccountAndSymbol},
            poolTraderField()};
}

const QString &ManualT0LogicPrivate::poolTraderField() const
{
    return poolTradersAreUsers ? Orvane_Fields::UserAccount::userID : T0TraderId;
}
