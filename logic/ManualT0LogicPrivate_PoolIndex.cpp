#include "DisplayUnits.h"
#include "HostLog.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "OrvaneFields.h"

#include <QtCore/QElapsedTimer>

using namespace Master_Fields::ManualT0;

/// The fields by which a pool is found.
struct ManualT0LogicPrivate::PoolKeys : TradingKey {
    QString resource;

    PoolKeys(const VariantRecord &pool, const QString &traderField)
        : TradingKey{text(pool, Orvane_Fields::UserAccount::tradingAccount), text(pool, traderField),
                     text(pool, Orvane_Fields::Security::symbol),
                     text(pool, Orvane_Fields::UserAccount::securityExchange)}
        , resource(text(pool, ResourceId))
    {}
};

void ManualT0LogicPrivate::clearSecurityPools()
{
    ++poolVersion;
    securityPoolMap.clear();
    resetSecurityPoolIndex();
    poolTradersAreUsers = true;
}

void ManualT0LogicPrivate::storePool(const VariantRecord &pool)
{
    ++poolVersion;
    const QString id = text(pool, PoolDetailId);
    const PoolKeys keys(pool, poolTraderField());
    VariantRecord &held = securityPoolMap[id];
    if (held.isEmpty()) { // new: no record is empty, each has a symbol
        held = pool;
        indexPool(id, keys);
        return;
    }
    const PoolKeys heldKeys(held, poolTraderField());
    held = pool;
    reindexPool(id, heldKeys, keys);
}

void ManualT0LogicPrivate::storePool(const QString &id, const ReceivedPool &pool)
{
    const auto held = securityPoolMap.find(id);
    if (held == securityPoolMap.end()) {
        VariantRecord record;
        pool.writeTo(record);
        storePool(record);
        return;
    }
    ++poolVersion;
    const PoolKeys heldKeys(*held, poolTraderField());
    if (!held->isDetached())
        held->clear(); // somebody holds a copy: a new record costs less than one more copy to overwrite
    pool.writeTo(*held);
    reindexPool(id, heldKeys, PoolKeys(*held, poolTraderField()));
}

void ManualT0LogicPrivate::reindexPool(const QString &id, const PoolKeys &held, const PoolKeys &now)
{
    if (held.resource != now.resource)
        poolIdsByResource.remove(held.resource, id);
    // Also when it is the same: a deleted resource takes this key along before its pools are answered for.
    poolIdsByResource.insert(now.resource, id);
    if (static_cast<const TradingKey &>(held) == now)
        return;
    unindexTradingKey(id, held);
    indexTradingKey(id, now);
}

VariantRecord ManualT0LogicPrivate::takePool(const QString &poolId)
{
    ++poolVersion;
    const VariantRecord pool = securityPoolMap.take(poolId);
    unindexPool(poolId, PoolKeys(pool, poolTraderField()));
    return pool;
}

void ManualT0LogicPrivate::indexPool(const QString &id, const PoolKeys &keys)
{
    poolIdsByResource.insert(keys.resource, id);
    indexTradingKey(id, keys);
}

void ManualT0LogicPrivate::unindexPool(const QString &id, const PoolKeys &keys)
{
    poolIdsByResource.remove(keys.resource, id);
    unindexTradingKey(id, keys);
}

void ManualT0LogicPrivate::indexTradingKey(const QString &id, const TradingKey &key)
{
    poolIdsByTradingAccount.insert(key.account, id);
    poolIdsBySymbol.insert(key.symbol, id);
    poolIdsByExchange.insert(key.exchange, id);
    poolIdsByTrader.insert(key.trader, id);
    poolIdsByAccountAndTrader.insert({key.account, key.trader}, id);
    if (key.symbol.isEmpty())
        return;
    poolIdsByAccountAndSymbol.insert({key.account, key.symbol}, id);
    poolIdsByTradingKey.insert(key, id);
}

void ManualT0LogicPrivate::unindexTradingKey(const QString &id, const TradingKey &key)
{
    poolIdsByTradingAccount.remove(key.account, id);
    poolIdsBySymbol.remove(key.symbol, id);
    poolIdsByExchange.remove(key.exchange, id);
    poolIdsByTrader.remove(key.trader, id);
    poolIdsByAccountAndTrader.remove({key.account, key.trader}, id);
    if (key.symbol.isEmpty())
        return;
    poolIdsByAccountAndSymbol.remove({key.account, key.symbol}, id);
    poolIdsByTradingKey.remove(key, id);
}

void ManualT0LogicPrivate::resetSecurityPoolIndex()
{
    poolTradersAreUsers = false;
    rebuildPoolIndexes();
}

void ManualT0LogicPrivate::rebuildPoolIndexes()
{
    QElapsedTimer elapsed;
    elapsed.start();
    poolIdsByTradingAccount.clear();
    poolIdsBySymbol.clear();
    poolIdsByExchange.clear();
    poolIdsByTrader.clear();
    poolIdsByResource.clear();
    poolIdsByAccountAndTrader.clear();
    poolIdsByAccountAndSymbol.clear();
    poolIdsByTradingKey.clear();
    for (auto pool = securityPoolMap.cbegin(); pool != securityPoolMap.cend(); ++pool)
        indexPool(pool.key(), PoolKeys(*pool, poolTraderField()));
    HOST_DEBUG("ManualT0LogicPrivate", "ManualT0LogicPrivate::resetSecurityPoolIndex" << elapsed.elapsed());
}
