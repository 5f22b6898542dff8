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
    if (!isConnected())
        return;
    switch (type) {
    case ManualT0Logic::Products: {
        // One step for an answer that is just being taken: it must not finish what is cleared afterwards.
        WriteLock lock(productLock);
        if (!initStates().Reset(initKey(type)))
            return;
        tradingAccountList.clear();
        productAccountMap.clear();
        const bool starts = initStates().StartInit(initKey(type));
        lock.unlock();
        if (starts)
            queryT0Products();
        break;
    }
    case ManualT0Logic::Traders: {
        WriteLock lock(traderLock);
        if (!initStates().Reset(initKey(type)))
            return;
        traderMap.clear();
        const bool starts = initStates().StartInit(initKey(type));
        lock.unlock();
        if (starts)
            emit signalQueryT0Traders();
        break;
    }
    case ManualT0Logic::Resources:
        if (initStates().Reset(initKey(type)))
            loadResources();
        break;
    case ManualT0Logic::SecurityPools:
        if (initStates().Reset(initKey(type)))
            loadSecurityPools();
        break;
    default:
        initStates().Reset(initKey(type)); // deliberate: those come back with their own triggers or a full refresh
        break;
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
