#include "CBusinessDataBase.h"
#include "DisplayUnits.h"
#include "HostLog.h"
#include "InitKeys.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "ReceivedPool.h"
#include "VantaKeys.h"

using namespace Master_Fields::ManualT0;

namespace {

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
            takeFirstPools(account, std::move(poolList));
        else
            failFirstPools(account);
    } else if (success) {
        takeLaterPools(account, poolList);
    }
    unreadPools.answered(account, success);
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

void ManualT0LogicPrivate::takeFirstPools(const QString &tradingAccount, RecordList &&rows)
{
    for (VariantRecord &row : rows)
        row = ReceivedPool(std::move(row)).takeAsFirst();

    startIntegrityChecks();
    WriteLock lock(securityPoolLock);
    for (const VariantRecord &row : qAsConst(rows))
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
    ReceivedPools fresh;
    fresh.reserve(rows.size());
    for (const VariantRecord &row : rows)
        fresh.insert(text(row, PoolDetailId), ReceivedPool(row));

    // Compared while others read: in the usual answer little has changed, and only that waits for the readers.
    ReadLock comparing(securityPoolLock);
    PoolChanges changes = comparePools(tradingAccount, fresh);
    const quint64 comparedVersion = poolVersion;
    comparing.unlock();

    WriteLock lock(securityPoolLock);
    if (poolVersion != comparedVersion)
        changes = comparePools(tradingAccount, fresh);
    const int countBefore = securityPoolMap.size();
    const QVariantList deletedRecords = applyPools(changes);
    HOST_INFO("ManualT0LogicPrivate", "ManualT0LogicPrivate::slotQuerySecurityPoolResponse"
                                          << countsText(countBefore, fresh.size(), deletedRecords.size(),
                                                        tradingAccount, securityPoolMap.size()));
    // deliberate: sent under the lock, as after a load
    if (!changes.changedIds.isEmpty())
        sendEvent(Vanta_Keys::EventMsgName::ManualT0SecurityPoolUpdated, changes.changedIds);
    if (!deletedRecords.isEmpty())
        sendEvent(Vanta_Keys::EventMsgName::ManualT0SecurityPoolDeleted, deletedRecords);
}

ManualT0LogicPrivate::PoolChanges ManualT0LogicPrivate::comparePools(const QString &tradingAccount,
                                                                     const ReceivedPools &fresh) const
{
    using Likeness = ReceivedPool::Likeness;
    PoolChanges changes;
    if (const IdSet *held = poolIdsByTradingAccount.find(tradingAccount)) {
        for (const QString &id : *held) {
            if (!fresh.contains(id))
                changes.deletedIds.append(id);
        }
    }
    for (auto pool = fresh.cbegin(); pool != fresh.cend(); ++pool) {
        const HeldRecord held = securityPoolMap.constFind(pool.key());
        const bool isOfAccount =
            held != securityPoolMap.cend() && text(*held, Orvane_Fields::UserAccount::tradingAccount) == tradingAccount;
        const Likeness likeness = isOfAccount ? pool->likenessTo(*held) : Likeness::Different;
        if (likeness == Likeness::Different)
            changes.changedIds.append(pool.key());
        if (likeness != Likeness::Same || !isInResourceIndex(held))
            changes.pools.append(pool);
    }
    changes.changedIds.sort();
    return changes;
}

bool ManualT0LogicPrivate::isInResourceIndex(HeldRecord pool) const
{
    const IdSet *ids = poolIdsByResource.find(text(*pool, ResourceId));
    return ids && ids->contains(pool.key());
}

QVariantList ManualT0LogicPrivate::applyPools(const PoolChanges &changes)
{
    QVariantList deletedRecords;
    for (const QString &id : changes.deletedIds)
        deletedRecords.append(takePool(id));
    for (const auto pool : changes.pools)
        storePool(pool.key(), *pool);
    if (poolTradersAreUsers)
        resetSecurityPoolIndex();
    return deletedRecords;
}
