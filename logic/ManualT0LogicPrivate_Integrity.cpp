#include "HostLog.h"
#include "IndexAudit.h"
#include "ManualT0LogicPrivate.h"
#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "Quantity.h"
#include "ReceivedUsage.h"
#include "UserTexts.h"

#include <QtCore/QTimer>

#include <algorithm>

using namespace Master_Fields::ManualT0;
using IndexAudit::ByField;
using IndexAudit::ByFields;
using IndexAudit::ByTradingKey;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

/// Compares the sizes of indexes with that of their cache; walks those that differ, which is not done otherwise.
class SizeCheck
{
public:
    SizeCheck(IntegrityWalk &walk, const RecordCache &cache, const IdIndex<QString> &bySymbol)
        : m_walk(walk)
        , m_cache(cache)
    {
        if (const IdSet *ids = bySymbol.find(QString()))
            m_ofUnknownSymbol = ids->size();
    }

    template <typename Index, typename KeyOf> void operator()(const Index &index, const KeyOf &keyOf)
    {
        if (IndexAudit::idCount(index) == IndexAudit::expectedCount(index, m_cache.size(), m_ofUnknownSymbol))
            return;
        const IdSet ids = IndexAudit::differing(index, keyOf, m_cache);
        for (const QString &id : ids)
            m_walk.add(IntegrityFault::Index, id, text(m_cache.value(id), tradingAccount));
    }

private:
    IntegrityWalk &m_walk;
    const RecordCache &m_cache;
    int m_ofUnknownSymbol = 0;
};

template <typename Map> QSet<QString> keysOf(const Map &map)
{
    return {map.keyBegin(), map.keyEnd()};
}

} // namespace

template <typename Visit> void ManualT0LogicPrivate::visitResourceIndexes(Visit visit) const
{
    visit(resourceAccountIndex, ByField{tradingAccount});
    visit(resourceSymbolIndex, ByField{symbol});
    visit(resourceExchangeIndex, ByField{securityExchange});
}

template <typename Visit> void ManualT0LogicPrivate::visitPoolIndexes(Visit visit) const
{
    const QString &trader = poolTraderField();
    visit(poolIdsByTradingAccount, ByField{tradingAccount});
    visit(poolIdsBySymbol, ByField{symbol});
    visit(poolIdsByExchange, ByField{securityExchange});
    visit(poolIdsByTrader, ByField{trader});
    visit(poolIdsByAccountAndTrader, ByFields{tradingAccount, trader});
    visit(poolIdsByAccountAndSymbol, ByFields{tradingAccount, symbol});
    visit(poolIdsByTradingKey, ByTradingKey{trader});
}

template <typename Visit> void ManualT0LogicPrivate::visitUsageIndexes(Visit visit) const
{
    visit(realtimeAccountIndex, ByField{tradingAccount});
    visit(realtimeTraderIndex, ByField{T0TraderId});
    visit(realtimeSymbolIndex, ByField{symbol});
    visit(realtimeExchangeIndex, ByField{securityExchange});
    visit(realtimeAccountAndTraderIndex, ByFields{tradingAccount, T0TraderId});
    visit(realtimeAccountAndSymbolIndex, ByFields{tradingAccount, symbol});
}

void ManualT0LogicPrivate::startIntegrityChecks()
{
    if (integrityTimer || timing.integrityCheck <= 0)
        return;
    integrityTimer = new QTimer(this);
    integrityTimer->setSingleShot(true);
    connect(integrityTimer, &QTimer::timeout, this, &ManualT0LogicPrivate::checkNextSlice);
    integrityTimer->start(timing.integrityCheck);
}

void ManualT0LogicPrivate::checkNextSlice()
{
    if (!enterSlot())
        return;
    switch (integrityWalk.family()) {
    case ManualT0Logic::Resources:
        checkResources();
        break;
    case ManualT0Logic::SecurityPools:
        checkPools();
        break;
    default:
        checkUsage();
        break;
    }
    const bool isThrough = integrityWalk.isThrough();
    if (isThrough)
        finishIntegrityCheck();
    // Answers and pushes that came meanwhile are taken first.
    integrityTimer->start(isThrough ? timing.integrityCheck : 0);
}

void ManualT0LogicPrivate::checkResources()
{
    ReadLock lock(resourceLock);
    ReadLock poolLock(securityPoolLock);
    if (!integrityWalk.hasBegun()) {
        integrityWalk.begin(resourceAccountIndex);
        visitResourceIndexes(SizeCheck(integrityWalk, resourceCache, resourceSymbolIndex));
        return;
    }
    const QVector<HeldRecord> resources = integrityWalk.next(resourceCache, resourceAccountIndex);
    for (const HeldRecord resource : resources) {
        bool isIndexed = true;
        visitResourceIndexes(IndexAudit::RecordCheck(resource, isIndexed));
        if (!isIndexed)
            integrityWalk.add(IntegrityFault::Index, resource.key(), text(*resource, tradingAccount));
        checkPoolsOf(resource);
    }
}

void ManualT0LogicPrivate::checkPoolsOf(HeldRecord resource)
{
    const IdSet *ids = poolIdsByResource.find(resource.key());
    if (!ids)
        return;
    const QString account = text(*resource, tradingAccount);
    double allocated = 0;
    for (const QString &id : *ids) {
        const HeldRecord pool = securityPoolMap.constFind(id);
        if (pool != securityPoolMap.cend() && text(*pool, ResourceId) == resource.key())
            allocated += Quantity::toNum(pool->value(PoolTotalQty));
        else
            integrityWalk.add(IntegrityFault::Listing, id, account);
    }
    // The rule by which changes are refused.
    if (Quantity::toNum(resource->value(ResourceQty)) + Quantity::Tolerance < allocated)
        integrityWalk.add(IntegrityFault::Allocation, resource.key(), account);
}

void ManualT0LogicPrivate::checkPools()
{
    ReadLock lock(securityPoolLock);
    if (!integrityWalk.hasBegun()) {
        integrityWalk.begin(poolIdsByTradingAccount);
        visitPoolIndexes(SizeCheck(integrityWalk, securityPoolMap, poolIdsBySymbol));
        return;
    }
    const QVector<HeldRecord> pools = integrityWalk.next(securityPoolMap, poolIdsByTradingAccount);
    for (const HeldRecord pool : pools) {
        bool isIndexed = true;
        visitPoolIndexes(IndexAudit::RecordCheck(pool, isIndexed));
        if (!isIndexed)
            integrityWalk.add(IntegrityFault::Index, pool.key(), text(*pool, tradingAccount));
        if (!isInResourceIndex(pool))
            integrityWalk.add(IntegrityFault::Listing, pool.key(), text(*pool, tradingAccount));
    }
}

void ManualT0LogicPrivate::checkUsage()
{
    ReadLock lock(realtimePoolLock);
    if (!integrityWalk.hasBegun()) {
        integrityWalk.begin(realtimeAccountIndex);
        visitUsageIndexes(SizeCheck(integrityWalk, realtimePoolCache, realtimeSymbolIndex));
        return;
    }
    const QVector<HeldRecord> records = integrityWalk.next(realtimePoolCache, realtimeAccountIndex);
    for (const HeldRecord record : records) {
        bool isIndexed = true;
        visitUsageIndexes(IndexAudit::RecordCheck(record, isIndexed));
        if (!isIndexed)
            integrityWalk.add(IntegrityFault::Index, record.key(), text(*record, tradingAccount));
        if (!ReceivedUsage(*record, text(*record, symbol), 1).isHeldIn(*record))
            integrityWalk.add(IntegrityFault::Derivation, record.key(), text(*record, tradingAccount));
    }
}

void ManualT0LogicPrivate::UnreadAccounts::answered(const QString &account, bool success)
{
    asked.remove(account);
    if (success)
        accounts.remove(account);
    else
        accounts.insert(account);
}

QSet<QString> ManualT0LogicPrivate::UnreadAccounts::takeOpen(const QSet<QString> &enabled,
                                                             const QSet<QString> &underWay)
{
    accounts.intersect(enabled); // of the others nothing is held
    const QSet<QString> open = QSet<QString>(accounts).subtract(underWay).subtract(asked);
    asked.unite(open);
    return open;
}

/// A failed answer changes nothing when it comes; what it was to bring is asked for again here, until it is there.
void ManualT0LogicPrivate::readUnreadAgain()
{
    const QSet<QString> enabled = t0Accounts();
    // Not what is being asked: a load takes a second failure of an account for its last.
    ReadLock lock(resourceLock);
    const QSet<QString> resources = unreadResources.takeOpen(enabled, keysOf(resourceQueries));
    lock.unlock();
    ReadLock poolLock(securityPoolLock);
    const QSet<QString> pools = unreadPools.takeOpen(enabled, keysOf(pendingSecurityPoolAccounts));
    poolLock.unlock();

    for (const QString &account : resources)
        queryResources(account);
    for (const QString &account : pools)
        slotRecvSecurityPoolChangedPush(account);
}

void ManualT0LogicPrivate::finishIntegrityCheck()
{
    readUnreadAgain();
    const QVector<IntegrityFault> found = integrityWalk.takeFound();
    const QVector<IntegrityFault> told = integrityBook.enter(found);
    QVector<IntegrityFault> certain = told;
    std::copy_if(found.cbegin(), found.cend(), std::back_inserter(certain),
                 [](const IntegrityFault &fault) { return !fault.mayPass(); });
    repair(certain);
    if (told.isEmpty())
        return;
    for (const IntegrityFault &fault : told)
        HOST_INFO("ManualT0LogicPrivate",
                  "ManualT0LogicPrivate::finishIntegrityCheck" << fault.description() << fault.account);
    const QStringList accounts = accountsOf(told);
    MasterBusinessDataInterface::AddBusiMsg(Master_Values::BusiMsgLevel::Normal,
                                            UserTexts::integrityFaults(told.size(), accounts),
                                            Master_Values::BusiMsgType::SystemMsg, QString(), true, QString());
    for (const QString &account : accounts)
        queryResources(account);
    queryPoolsOfEach(accounts);
    refreshPoolRealTime();
}

void ManualT0LogicPrivate::repair(const QVector<IntegrityFault> &faults)
{
    QSet<int> misindexed;
    for (const IntegrityFault &fault : faults) {
        if (fault.kind == IntegrityFault::Index)
            misindexed.insert(fault.family);
        if (fault.kind == IntegrityFault::Listing)
            misindexed.insert(ManualT0Logic::SecurityPools);
        if (fault.kind == IntegrityFault::Derivation)
            deriveAgain(fault.id);
    }
    if (misindexed.contains(ManualT0Logic::Resources)) {
        WriteLock lock(resourceLock);
        rebuildResourceIndexes();
    }
    if (misindexed.contains(ManualT0Logic::SecurityPools)) {
        WriteLock lock(securityPoolLock);
        ++poolVersion;
        rebuildPoolIndexes();
    }
    if (misindexed.contains(ManualT0Logic::RealtimeUsage)) {
        WriteLock lock(realtimePoolLock);
        rebuildRealtimeIndexes();
    }
}

void ManualT0LogicPrivate::rebuildResourceIndexes()
{
    const RecordCache resources = std::exchange(resourceCache, {});
    resourceAccountIndex.clear();
    resourceSymbolIndex.clear();
    resourceExchangeIndex.clear();
    for (const VariantRecord &resource : resources)
        storeResource(resource);
}

void ManualT0LogicPrivate::deriveAgain(const QString &usageKey)
{
    WriteLock lock(realtimePoolLock);
    const auto held = realtimePoolCache.find(usageKey);
    if (held == realtimePoolCache.end())
        return;
    VariantRecord parts = *held;
    // Without a time: what the server says of the record is news, though it may not have changed there.
    parts.insert(Master_Fields::System::ModifyTime, QString());
    *held = {};
    ReceivedUsage(parts, text(parts, symbol), 1).writeTo(*held);
}

QStringList ManualT0LogicPrivate::accountsOf(const QVector<IntegrityFault> &faults) const
{
    QStringList accounts;
    for (const IntegrityFault &fault : faults)
        accounts += fault.account.isEmpty() ? GetAllT0TradingAccountList() : QStringList(fault.account);
    accounts.removeDuplicates();
    accounts.sort();
    return accounts;
}
