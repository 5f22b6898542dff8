#include "CBusinessDataBase.h"
#include "DisplayUnits.h"
#include "HostLog.h"
#include "InitKeys.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "Quantity.h"
#include "VantaKeys.h"

#include <QtCore/QElapsedTimer>

using namespace Master_Fields::ManualT0;

namespace {

using Scale = void (*)(VariantRecord &pool, int factor);

void multiply(QVariant &value, int factor)
{
    value = Quantity::toNum(value) * factor;
}

/// deliberate: the first answers of a load scale a limit of -1 too; readers take every negative limit as none.
void scaleFirst(VariantRecord &pool, int factor)
{
    for (const QString &field : {PoolTotalQty, MaxExposureQty, MaxPendExposureQty}) {
        const auto value = pool.find(field);
        if (value != pool.end())
            multiply(*value, factor);
    }
}

void scaleLater(VariantRecord &pool, int factor)
{
    const auto total = pool.find(PoolTotalQty);
    if (total != pool.end())
        multiply(*total, factor);
    for (const QString &field : {MaxExposureQty, MaxPendExposureQty}) {
        const auto value = pool.find(field);
        if (value == pool.end())
            continue;
        const int limit = Quantity::toIntQty(*value);
        if (limit != ManualT0Logic::InvalidExposure)
            *value = Quantity::clampToInt(qint64(limit) * factor);
    }
}

RecordList inDisplayUnits(RecordList pools, Scale scale)
{
    for (VariantRecord &pool : pools) {
        const QString symbol = symbolOf(pool);
        pool.insert(Orvane_Fields::Security::symbol, symbol);
        const int factor = displayFactor(symbol);
        if (factor > 1)
            scale(pool, factor);
    }
    return pools;
}

/// The fields by which a pool is found.
struct PoolKeys {
    QString account;
    QString symbol;
    QString exchange;
    QString trader;
    QString resource;

    PoolKeys(const VariantRecord &pool, const QString &traderField)
        : account(text(pool, Orvane_Fields::UserAccount::tradingAccount))
        , symbol(text(pool, Orvane_Fields::Security::symbol))
        , exchange(text(pool, Orvane_Fields::UserAccount::securityExchange))
        , trader(text(pool, traderField))
        , resource(text(pool, ResourceId))
    {}

    bool operator==(const PoolKeys &other) const
    {
        return account == other.account && symbol == other.symbol && exchange == other.exchange &&
               trader == other.trader && resource == other.resource;
    }
};

QString countsText(int before, int answered, int removed, const QString &account, int now)
{
    return QStringLiteral("原有%1条券池，查询到%2条券池，移除%3条%4账号的券池，合计共有%5条券池")
        .arg(QString::number(before), QString::number(answered), QString::number(removed), account,
             QString::number(now));
}

} // namespace

void ManualT0LogicPrivate::slotQuerySecurityPoolResponse(QString code, QVariantMap queryMap,
                                                         QList<QVariantMap> poolList)
{
    if (!enterSlot())
        return;
    const QString account = text(queryMap, Orvane_Fields::UserAccount::tradingAccount);
    const bool success = code == Orvane_Values::RequestExeStatus::success;
    if (isInitialLoad(ManualT0Logic::SecurityPools)) {
        if (success)
            takeFirstPools(account, inDisplayUnits(poolList, scaleFirst));
        else
            failFirstPools(account);
    } else if (success) {
        takeLaterPools(account, inDisplayUnits(poolList, scaleLater));
    }
}

void ManualT0LogicPrivate::slotRecvSecurityPoolChangedPush(QString tradingAccount)
{
    emit signalQuerySecurityPool({{Orvane_Fields::UserAccount::loginUserId, CBusinessDataBase::GetLoginAccount()},
                                  {Orvane_Fields::UserAccount::tradingAccount, tradingAccount}});
}

void ManualT0LogicPrivate::loadSecurityPools()
{
    const QStringList accounts = GetAllT0TradingAccountList();
    WriteLock lock(securityPoolLock);
    // Started under the lock, as for resources.
    if (!initStates().StartInit(initKey(ManualT0Logic::SecurityPools)))
        return;
    clearSecurityPools();
    pendingSecurityPoolAccounts.clear();
    for (const QString &account : accounts)
        pendingSecurityPoolAccounts.insert(account, 0);
    const QStringList pending = pendingSecurityPoolAccounts.keys();
    if (pending.isEmpty())
        initStates().FinishInit(initKey(ManualT0Logic::SecurityPools), true, true);
    lock.unlock();

    if (pending.isEmpty())
        sendDataInited(ManualT0Logic::SecurityPools);
    for (const QString &account : pending)
        slotRecvSecurityPoolChangedPush(account);
}

void ManualT0LogicPrivate::takeFirstPools(const QString &tradingAccount, const RecordList &rows)
{
    WriteLock lock(securityPoolLock);
    for (const VariantRecord &row : rows)
        storePool(row);
    if (pendingSecurityPoolAccounts.remove(tradingAccount) == 0 || !pendingSecurityPoolAccounts.isEmpty())
        return;
    initStates().FinishInit(initKey(ManualT0Logic::SecurityPools), true, true);
    HOST_DEBUG("ManualT0LogicPrivate", "ManualT0LogicPrivate::slotQuerySecurityPoolResponse" << securityPoolMap.size());
    // deliberate: sent under the lock, so that no newer change slips in between the load and its
    // announcement; the host queues events, listeners read once the lock is free
    sendDataInited(ManualT0Logic::SecurityPools);
}

void ManualT0LogicPrivate::failFirstPools(const QString &tradingAccount)
{
    WriteLock lock(securityPoolLock);
    // A late answer of an account that is not outstanding earns it the same one retry.
    const int failures = pendingSecurityPoolAccounts.value(tradingAccount);
    pendingSecurityPoolAccounts.insert(tradingAccount, failures + 1);
    if (failures > 0)
        pendingSecurityPoolAccounts.remove(tradingAccount);
    const bool finished = pendingSecurityPoolAccounts.isEmpty();
    if (finished)
        initStates().FinishInit(initKey(ManualT0Logic::SecurityPools), false, true);
    lock.unlock();

    if (failures == 0)
        slotRecvSecurityPoolChangedPush(tradingAccount);
    else if (finished)
        sendDataInited(ManualT0Logic::SecurityPools);
}

void ManualT0LogicPrivate::takeLaterPools(const QString &tradingAccount, const RecordList &rows)
{
    QHash<QString, VariantRecord> fresh;
    for (const VariantRecord &row : rows)
        fresh.insert(text(row, PoolDetailId), row);

    WriteLock lock(securityPoolLock);
    const int countBefore = securityPoolMap.size();
    const PoolChanges changes = replacePools(tradingAccount, fresh);
    HOST_INFO("ManualT0LogicPrivate", "ManualT0LogicPrivate::slotQuerySecurityPoolResponse"
                                          << countsText(countBefore, fresh.size(), changes.deletedRecords.size(),
                                                        tradingAccount, securityPoolMap.size()));
    // deliberate: sent under the lock, as after a load
    if (!changes.changedIds.isEmpty())
        sendEvent(Vanta_Keys::EventMsgName::ManualT0SecurityPoolUpdated, changes.changedIds);
    if (!changes.deletedRecords.isEmpty())
        sendEvent(Vanta_Keys::EventMsgName::ManualT0SecurityPoolDeleted, changes.deletedRecords);
}

ManualT0LogicPrivate::PoolChanges ManualT0LogicPrivate::replacePools(const QString &tradingAccount,
                                                                     const QHash<QString, VariantRecord> &fresh)
{
    PoolChanges changes;
    IdSet unchanged;
    const IdSet *held = poolIdsByTradingAccount.find(tradingAccount);
    const IdSet oldIds = held ? *held : IdSet();
    for (const QString &id : oldIds) {
        const auto now = fresh.constFind(id);
        if (now == fresh.cend())
            changes.deletedRecords.append(takePool(id));
        else if (securityPoolMap.value(id) == *now)
            unchanged.insert(id);
    }
    for (auto pool = fresh.cbegin(); pool != fresh.cend(); ++pool) {
        storePool(*pool); // an equal one too: its numbers may be of another type
        if (!unchanged.contains(pool.key()))
            changes.changedIds.append(pool.key());
    }
    if (poolTradersAreUsers)
        resetSecurityPoolIndex();
    changes.changedIds.sort();
    return changes;
}

void ManualT0LogicPrivate::clearSecurityPools()
{
    securityPoolMap.clear();
    resetSecurityPoolIndex();
    poolTradersAreUsers = true;
}

void ManualT0LogicPrivate::storePool(const VariantRecord &pool)
{
    const QString id = text(pool, PoolDetailId);
    const QString &traderField = poolTradersAreUsers ? Orvane_Fields::UserAccount::userID : T0TraderId;
    const auto held = securityPoolMap.find(id);
    if (held != securityPoolMap.end() && PoolKeys(*held, traderField) == PoolKeys(pool, traderField)) {
        *held = pool;
        // A deleted resource takes this key along before its pools are answered for.
        poolIdsByResource.insert(text(pool, ResourceId), id);
        return;
    }
    takePool(id);
    securityPoolMap.insert(id, pool);
    indexPool(pool);
}

VariantRecord ManualT0LogicPrivate::takePool(const QString &poolId)
{
    if (!securityPoolMap.contains(poolId))
        return {};
    const VariantRecord pool = securityPoolMap.take(poolId);
    unindexPool(pool);
    return pool;
}

void ManualT0LogicPrivate::indexPool(const VariantRecord &pool)
{
    const QString id = text(pool, PoolDetailId);
    const PoolKeys keys(pool, poolTradersAreUsers ? Orvane_Fields::UserAccount::userID : T0TraderId);
    poolIdsByTradingAccount.insert(keys.account, id);
    poolIdsBySymbol.insert(keys.symbol, id);
    poolIdsByExchange.insert(keys.exchange, id);
    poolIdsByTrader.insert(keys.trader, id);
    poolIdsByResource.insert(keys.resource, id);
    poolIdsByAccountAndTrader.insert({keys.account, keys.trader}, id);
    poolIdsByAccountAndSymbol.insert({keys.account, keys.symbol}, id);
    poolIdsByTradingKey.insert({keys.account, keys.trader, keys.symbol, keys.exchange}, id);
}

void ManualT0LogicPrivate::unindexPool(const VariantRecord &pool)
{
    const QString id = text(pool, PoolDetailId);
    const PoolKeys keys(pool, poolTradersAreUsers ? Orvane_Fields::UserAccount::userID : T0TraderId);
    poolIdsByTradingAccount.remove(keys.account, id);
    poolIdsBySymbol.remove(keys.symbol, id);
    poolIdsByExchange.remove(keys.exchange, id);
    poolIdsByTrader.remove(keys.trader, id);
    poolIdsByResource.remove(keys.resource, id);
    poolIdsByAccountAndTrader.remove({keys.account, keys.trader}, id);
    poolIdsByAccountAndSymbol.remove({keys.account, keys.symbol}, id);
    poolIdsByTradingKey.remove({keys.account, keys.trader, keys.symbol, keys.exchange}, id);
}

void ManualT0LogicPrivate::resetSecurityPoolIndex()
{
    QElapsedTimer elapsed;
    elapsed.start();
    poolTradersAreUsers = false;
    poolIdsByTradingAccount.clear();
    poolIdsBySymbol.clear();
    poolIdsByExchange.clear();
    poolIdsByTrader.clear();
    poolIdsByResource.clear();
    poolIdsByAccountAndTrader.clear();
    poolIdsByAccountAndSymbol.clear();
    poolIdsByTradingKey.clear();
    for (const VariantRecord &pool : qAsConst(securityPoolMap))
        indexPool(pool);
    HOST_DEBUG("ManualT0LogicPrivate", "ManualT0LogicPrivate::resetSecurityPoolIndex" << elapsed.elapsed());
}
