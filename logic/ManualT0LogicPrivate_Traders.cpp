#include "CBusinessDataBase.h"
#include "InitKeys.h"
#include "ManualT0LogicPrivate.h"
#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "Retries.h"

QMap<QString, QString> ManualT0LogicPrivate::GetAllT0TraderId() const
{
    ReadLock lock(traderLock);
    return traderMap;
}

QString ManualT0LogicPrivate::GetTraderNameByTraderId(const QString &traderId) const
{
    if (traderId == ManualT0Logic::PublicTrader)
        return traderId;
    ReadLock lock(traderLock);
    return traderMap.value(traderId);
}

QStringList ManualT0LogicPrivate::GetAllT0TradingAccountListByCurUser() const
{
    ReadLock lock(accountPriorityLock);
    return curUserTradingAccountList;
}

void ManualT0LogicPrivate::slotQueryT0TradersResponse(QString code, QList<QVariantMap> traderIdList, bool isManager)
{
    if (!enterSlot())
        return;
    WriteLock lock(traderLock);
    if (code != Orvane_Values::RequestExeStatus::success) {
        const bool again = ++traderQueryRetries < Retries::MaxRequests;
        lock.unlock();
        if (again) {
            emit signalQueryT0Traders();
            return;
        }
        initStates().FinishInit(initKey(ManualT0Logic::Traders), false, true);
        sendDataInited(ManualT0Logic::Traders);
        return;
    }
    // Finished and announced under the lock: whoever sees the family finished waits here for its names. The
    // host queues events, so a listener reads them only after the lock is free.
    initStates().FinishInit(initKey(ManualT0Logic::Traders), true, true);
    traderMap.clear();
    for (const VariantRecord &row : qAsConst(traderIdList))
        traderMap.insert(row.value(Orvane_Fields::UserAccount::userID).toString(),
                         row.value(Orvane_Fields::UserAccount::userName).toString());
    sendDataInited(ManualT0Logic::Traders);
    this->isManager = isManager;
    if (initStates().StartInit(initKey(ManualT0Logic::RealtimeUsage)))
        queryPoolRealTime(traderMap.keys());
}

void ManualT0LogicPrivate::slotQueryT0AccountPriorityResponse(QString code, QVariantMap queryMap,
                                                              QList<QVariantMap> accountMapList)
{
    Q_UNUSED(queryMap)
    if (!enterSlot())
        return;
    if (code != Orvane_Values::RequestExeStatus::success) {
        // deliberate: no limit and no finish here, a user without accounts cannot trade at all
        retryLater(accountPriorityRetryTimer, &ManualT0LogicPrivate::queryT0AccountPriority);
        return;
    }
    QStringList accounts;
    for (const VariantRecord &row : qAsConst(accountMapList))
        accounts.append(row.value(Orvane_Fields::UserAccount::tradingAccount).toString());

    WriteLock lock(accountPriorityLock);
    curUserTradingAccountList.swap(accounts);
    initStates().FinishInit(initKey(ManualT0Logic::AccountPriority), true, true);
    lock.unlock();
    sendDataInited(ManualT0Logic::AccountPriority);
}

void ManualT0LogicPrivate::queryT0AccountPriority()
{
    emit signalQueryT0AccountPriority(
        {{Orvane_Fields::UserAccount::loginUserId, loginUserId}, {Master_Fields::ManualT0::T0TraderId, loginUserId}});
}

void ManualT0LogicPrivate::refreshPoolRealTime()
{
    queryPoolRealTime(GetAllT0TraderId().keys());
}

void ManualT0LogicPrivate::queryPoolRealTime(const QStringList &traderIds)
{
    const QString asked = isManager ? traderIds.join(QLatin1Char(',')) : loginUserId;
    emit signalQueryPoolRealTimeData(
        {{Orvane_Fields::UserAccount::loginUserId, loginUserId}, {Master_Fields::ManualT0::T0TraderId, asked}});
    if (!pushSubscribed)
        subscribePoolRealTime(traderIds);
}

void ManualT0LogicPrivate::subscribePoolRealTime(const QStringList &traderIds)
{
    const auto subscribe = [](const QString &user) {
        return MasterBusinessDataInterface::SubscribePushMsgFromServer(Master_MsgType::ManualT0RealTimePoolUsagePush,
                                                                       {{Orvane_Fields::UserAccount::userID, user}},
                                                                       QStringLiteral("tradeGate"));
    };
    if (!isManager) {
        pushSubscribed = subscribe(CBusinessDataBase::GetLoginAccount());
        return;
    }
    bool all = true; // of no traders too: a manager without traders has nothing to hear
    for (const QString &trader : traderIds) {
        if (stopping) // each subscription may wait for the server
            return;
        all = subscribe(trader) && all;
    }
    pushSubscribed = all;
}

QString ManualT0LogicPrivate::traderName(const QString &traderId) const
{
    return traderId == ManualT0Logic::PublicTrader ? traderId : traderMap.value(traderId);
}

void ManualT0LogicPrivate::fillTraderNames(RecordList &pools) const
{
    for (VariantRecord &pool : pools)
        pool.insert(Master_Fields::ManualT0::T0TraderName,
                    traderName(pool.value(Master_Fields::ManualT0::T0TraderId).toString()));
}
