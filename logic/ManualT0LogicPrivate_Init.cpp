#include "CBusinessDataBase.h"
#include "InitKeys.h"
#include "ManualT0LogicPrivate.h"
#include "MasterBusinessDataInterface.h"
#include "UserTexts.h"

#include <QtCore/QMetaMethod>

void ManualT0LogicPrivate::InitData()
{
    if (initStates().StartInit(initKey(ManualT0Logic::Products))) {
        queryT0Products();
    } else if (initStates().IsInited(initKey(ManualT0Logic::Products))) {
        // Not before: without the trading accounts there is nothing to ask for.
        loadResources();
        loadSecurityPools();
    }
    if (initStates().StartInit(initKey(ManualT0Logic::Traders)))
        emit signalQueryT0Traders();
    if (initStates().StartInit(initKey(ManualT0Logic::AccountPriority)))
        queryT0AccountPriority();
}

void ManualT0LogicPrivate::RefreshData()
{
    if (!isConnected())
        return;
    if (!refreshThrottle.accept(QDateTime::currentDateTimeUtc())) {
        MasterBusinessDataInterface::AddBusiMsg(Master_Values::BusiMsgLevel::Normal, UserTexts::refreshTooOften(),
                                                Master_Values::BusiMsgType::SystemMsg, QString(), true, QString());
        return;
    }
    for (int type = ManualT0Logic::Products; type <= ManualT0Logic::AccountPriority; ++type)
        initStates().Reset(initKey(type));
    InitData();
}

void ManualT0LogicPrivate::RefreshDataByType(int type)
{
    if (!isConnected() || !initStates().Reset(initKey(type)))
        return;
    switch (type) {
    case ManualT0Logic::Products: {
        WriteLock lock(productLock);
        tradingAccountList.clear();
        productAccountMap.clear();
        lock.unlock();
        if (initStates().StartInit(initKey(type)))
            queryT0Products();
        break;
    }
    case ManualT0Logic::Traders: {
        WriteLock lock(traderLock);
        traderMap.clear();
        lock.unlock();
        if (initStates().StartInit(initKey(type)))
            emit signalQueryT0Traders();
        break;
    }
    case ManualT0Logic::Resources:
        loadResources();
        break;
    case ManualT0Logic::SecurityPools:
        loadSecurityPools();
        break;
    default:
        break; // deliberate: those families come back with their own triggers or a full refresh
    }
}

MasterInitStateMgr::InitState ManualT0LogicPrivate::GetInitStateByType(int type) const
{
    return initStates().GetInitState(initKey(type));
}

bool ManualT0LogicPrivate::isConnected() const
{
    return isSignalConnected(QMetaMethod::fromSignal(&ManualT0LogicPrivate::signalQueryT0Products));
}
