#include "CBusinessDataBase.h"
#include "DisplayUnits.h"
#include "HostLog.h"
#include "InitKeys.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "PoolTypes.h"
#include "Quantity.h"
#include "VantaKeys.h"

#include <array>

using namespace Master_Fields::ManualT0;

namespace {

VariantRecord inDisplayUnits(VariantRecord resource)
{
    const QString symbol = symbolOf(resource);
    resource.insert(Orvane_Fields::Security::symbol, symbol);
    const int factor = displayFactor(symbol);
    const auto quantity = resource.find(ResourceQty);
    if (factor > 1 && quantity != resource.end())
        *quantity = Quantity::roundToInt64(Quantity::toNum(*quantity) * factor);
    return resource;
}

RecordList inDisplayUnits(const RecordList &resources)
{
    RecordList result;
    result.reserve(resources.size());
    for (const VariantRecord &resource : resources)
        result.append(inDisplayUnits(resource));
    return result;
}

bool sameIndexKeys(const VariantRecord &a, const VariantRecord &b)
{
    return text(a, Orvane_Fields::UserAccount::tradingAccount) == text(b, Orvane_Fields::UserAccount::tradingAccount) &&
           text(a, Orvane_Fields::Security::symbol) == text(b, Orvane_Fields::Security::symbol) &&
           text(a, Orvane_Fields::UserAccount::securityExchange) ==
               text(b, Orvane_Fields::UserAccount::securityExchange);
}

} // namespace

RecordList ManualT0LogicPrivate::GetAllResourceList() const
{
    ReadLock lock(resourceLock);
    ReadLock poolLock(securityPoolLock);
    ReadLock namesLock(traderLock);
    RecordList result = resourceCache.values();
    for (VariantRecord &resource : result)
        packSecurityPoolInfoIntoResource(resource);
    return result;
}

VariantRecord ManualT0LogicPrivate::GetResourceDetailById(const QString &resourceId) const
{
    ReadLock lock(resourceLock);
    return resourceCache.value(resourceId);
}

RecordList ManualT0LogicPrivate::GetResourceByProductAccount(const QStringList &productAccounts,
                                                             const QString &assetProp, const QString &symbol,
                                                             const QString &exchange,
                                                             const QStringList &traderIds) const
{
    QStringList accounts;
    for (const QString &product : productAccounts)
        accounts += GetTradingAccountListByProductAndAssetProp(product, assetProp);
    if (accounts.isEmpty())
        return {};

    ReadLock lock(resourceLock);
    ReadLock poolLock(securityPoolLock);
    ReadLock namesLock(traderLock);
    RecordList result;
    const QVector<HeldRecord> held = findResources(accounts, symbol, exchange);
    for (const HeldRecord resource : held) {
        if (!traderIds.isEmpty() && !hasPoolOf(resource.key(), traderIds))
            continue;
        result.append(*resource);
        packSecurityPoolInfoIntoResource(result.last());
    }
    return result;
}

void ManualT0LogicPrivate::slotQueryResourceResponse(QString code, QVariantMap queryMap,
                                                     QList<QVariantMap> resourceList, bool cover)
{
    if (!enterSlot())
        return;
    const QString account = text(queryMap, Orvane_Fields::UserAccount::tradingAccount);
    const bool success = code == Orvane_Values::RequestExeStatus::success;
    if (isInitialLoad(ManualT0Logic::Resources)) {
        if (success)
            takeFirstResources(account, inDisplayUnits(resourceList));
        else
            failFirstResources(account);
    } else if (success) {
        takeLaterResources(account, inDisplayUnits(resourceList), cover);
    }
    endResourceQuery(account);
    unreadResources.answered(account, success);
}

void ManualT0LogicPrivate::loadResources()
{
    const QStringList accounts = GetAllT0TradingAccountList();
    WriteLock lock(resourceLock);
    // Started under the lock: an answer that comes in between would find nothing outstanding and finish.
    if (!initStates().StartInit(initKey(ManualT0Logic::Resources)))
        return;
    resourceCache.clear();
    resourceAccountIndex.clear();
    resourceSymbolIndex.clear();
    resourceExchangeIndex.clear();
    pendingResourceAccounts.clear();
    for (const QString &account : accounts)
        pendingResourceAccounts.insert(account, 0);
    const QStringList pending = pendingResourceAccounts.keys();
    if (pending.isEmpty())
        initStates().FinishInit(initKey(ManualT0Logic::Resources), true, true);
    lock.unlock();

    if (pending.isEmpty())
        sendDataInited(ManualT0Logic::Resources);
    for (const QString &account : pending)
        queryResources(account);
}

void ManualT0LogicPrivate::queryResources(const QString &tradingAccount)
{
    {
        WriteLock lock(resourceLock);
        ++resourceQueries[tradingAccount].count;
    }
    emit signalQueryResources({{Orvane_Fields::UserAccount::tradingAccount, tradingAccount},
                               {Orvane_Fields::UserAccount::loginUserId, CBusinessDataBase::GetLoginAccount()}});
}

void ManualT0LogicPrivate::endResourceQuery(const QString &tradingAccount)
{
    WriteLock lock(resourceLock);
    const auto queries = resourceQueries.find(tradingAccount);
    if (queries != resourceQueries.end() && --queries->count == 0)
        resourceQueries.erase(queries);
}

void ManualT0LogicPrivate::takeFirstResources(const QString &tradingAccount, const RecordList &rows)
{
    WriteLock lock(resourceLock);
    storeResources(tradingAccount, rows);
    if (pendingResourceAccounts.remove(tradingAccount) == 0 || !pendingResourceAccounts.isEmpty())
        return;
    initStates().FinishInit(initKey(ManualT0Logic::Resources), true, true);
    // deliberate: sent under the lock, so that no newer change slips in between the load and its
    // announcement; the host queues events, listeners read once the lock is free
    sendDataInited(ManualT0Logic::Resources);
}

void ManualT0LogicPrivate::failFirstResources(const QString &tradingAccount)
{
    WriteLock lock(resourceLock);
    // A late answer of an account that is not outstanding earns it the same one retry.
    const int failures = pendingResourceAccounts.value(tradingAccount);
    pendingResourceAccounts.insert(tradingAccount, failures + 1);
    if (failures > 0)
        pendingResourceAccounts.remove(tradingAccount);
    const bool finished = pendingResourceAccounts.isEmpty();
    if (finished)
        initStates().FinishInit(initKey(ManualT0Logic::Resources), false, true);
    lock.unlock();

    if (failures == 0)
        queryResources(tradingAccount);
    else if (finished)
        sendDataInited(ManualT0Logic::Resources);
}

void ManualT0LogicPrivate::takeLaterResources(const QString &tradingAccount, const RecordList &rows, bool cover)
{
    IdSet fresh;
    fresh.reserve(rows.size());
    for (const VariantRecord &row : rows)
        fresh.insert(text(row, ResourceId));

    WriteLock lock(resourceLock);
    if (const IdSet *held = cover ? resourceAccountIndex.find(tradingAccount) : nullptr) {
        const IdSet gone = IdSet(*held).subtract(fresh);
        for (const QString &id : gone)
            removeResource(id);
    }
    storeResources(tradingAccount, rows);
    HOST_INFO("ManualT0LogicPrivate",
              "ManualT0LogicPrivate::slotQueryResourceResponse" << tradingAccount << rows.size());
    // deliberate: under the lock, as above
    sendEvent(Vanta_Keys::EventMsgName::ManualT0ResourceUpdated,
              VariantRecord{{Orvane_Fields::UserAccount::tradingAccount, tradingAccount}});
}

void ManualT0LogicPrivate::storeResources(const QString &tradingAccount, const RecordList &rows)
{
    const auto queries = resourceQueries.constFind(tradingAccount);
    const bool anyDeleted = queries != resourceQueries.cend() && !queries->deleted.isEmpty();
    for (const VariantRecord &row : rows) {
        if (!anyDeleted || !queries->deleted.contains(text(row, ResourceId)))
            storeResource(row);
    }
}

void ManualT0LogicPrivate::storeResource(const VariantRecord &resource)
{
    const QString id = text(resource, ResourceId);
    const auto held = resourceCache.find(id);
    if (held != resourceCache.end() && sameIndexKeys(*held, resource)) {
        *held = resource;
        return;
    }
    removeResource(id);
    resourceCache.insert(id, resource);
    resourceAccountIndex.insert(text(resource, Orvane_Fields::UserAccount::tradingAccount), id);
    resourceSymbolIndex.insert(text(resource, Orvane_Fields::Security::symbol), id);
    resourceExchangeIndex.insert(text(resource, Orvane_Fields::UserAccount::securityExchange), id);
}

void ManualT0LogicPrivate::removeResource(const QString &resourceId)
{
    if (!resourceCache.contains(resourceId))
        return;
    const VariantRecord resource = resourceCache.take(resourceId);
    resourceAccountIndex.remove(text(resource, Orvane_Fields::UserAccount::tradingAccount), resourceId);
    resourceSymbolIndex.remove(text(resource, Orvane_Fields::Security::symbol), resourceId);
    resourceExchangeIndex.remove(text(resource, Orvane_Fields::UserAccount::securityExchange), resourceId);
}

QVector<HeldRecord> ManualT0LogicPrivate::findResources(const QStringList &accounts, const QString &symbol,
                                                        const QString &exchange) const
{
    const QSet<QString> accountSet(accounts.cbegin(), accounts.cend());
    HeldIds ids = HeldIds::under(resourceAccountIndex, accountSet);
    if (!symbol.isEmpty())
        ids = smaller(ids, HeldIds::under(resourceSymbolIndex, std::array{symbol}));
    if (!exchange.isEmpty())
        ids = smaller(ids, HeldIds::under(resourceExchangeIndex, std::array{exchange}));
    QVector<HeldRecord> resources = recordsOf(ids, resourceCache);
    const auto isOther = [&](HeldRecord resource) {
        return (!symbol.isEmpty() && text(*resource, Orvane_Fields::Security::symbol) != symbol) ||
               (!exchange.isEmpty() && text(*resource, Orvane_Fields::UserAccount::securityExchange) != exchange) ||
               !accountSet.contains(text(*resource, Orvane_Fields::UserAccount::tradingAccount));
    };
    resources.erase(std::remove_if(resources.begin(), resources.end(), isOther), resources.end());
    return resources;
}

bool ManualT0LogicPrivate::hasPoolOf(const QString &resourceId, const QStringList &traderIds) const
{
    const RecordList pools = poolsOfResource(resourceId, PoolTypes::All);
    const auto isOfThem = [&traderIds, field = poolTraderField()](const VariantRecord &pool) {
        return traderIds.contains(text(pool, field));
    };
    return std::any_of(pools.cbegin(), pools.cend(), isOfThem);
}

void ManualT0LogicPrivate::packSecurityPoolInfoIntoResource(VariantRecord &resource) const
{
    qint64 publicSum = 0;
    qint64 privateSum = 0;
    QStringList traderIds;
    QStringList names;
    QStringList poolIds;
    if (const IdSet *ids = poolIdsByResource.find(text(resource, ResourceId)))
        poolIds = ids->values();
    poolIds.sort(); // the order shows in the joined texts
    for (const QString &id : qAsConst(poolIds)) {
        const VariantRecord pool = securityPoolMap.value(id);
        HOST_DEBUG("ManualT0LogicPrivate", "ManualT0LogicPrivate::packSecurityPoolInfoIntoResource" << pool);
        const bool isPrivate = Quantity::toIntQty(pool.value(PoolType)) == PoolTypes::Private;
        const QString trader = isPrivate ? text(pool, T0TraderId) : ManualT0Logic::PublicTrader;
        qint64 &sum = isPrivate ? privateSum : publicSum;
        sum = Quantity::satAdd(sum, Quantity::toIntQty(pool.value(PoolTotalQty)));
        traderIds.append(trader);
        names.append(isPrivate ? traderMap.value(trader) : trader);
    }
    resource.insert(PublicPoolQty, Quantity::clampToInt(publicSum));
    resource.insert(PrivatePoolQty, Quantity::clampToInt(privateSum));
    resource.insert(T0TraderId, traderIds.join(QLatin1Char(',')));
    resource.insert(T0TraderName, names.join(QLatin1Char(',')));
    HOST_DEBUG("ManualT0LogicPrivate", "ManualT0LogicPrivate::packSecurityPoolInfoIntoResource" << resource);
}
