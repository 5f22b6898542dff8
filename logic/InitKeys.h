#pragma once

#include "ManualT0Logic.h"
#include "MasterInitStateMgr.h"
#include "MasterValues.h"

/// The key of a family in the host's registry of init states.
inline QString initKey(int type)
{
    return Master_Values::InitTypeCode::ManualT0Info + QString::number(type);
}

inline MasterInitStateMgr &initStates()
{
    return MasterInitStateMgr::instance();
}

inline bool isInitialLoad(ManualT0Logic::InitType type)
{
    return initStates().GetInitState(initKey(type)) == MasterInitStateMgr::Initing;
}
