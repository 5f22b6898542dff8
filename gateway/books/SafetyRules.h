#pragma once

#include "StandFields.h"

#include <QtCore/QStringList>

/// What a trader is held to besides his limits. 0: no such rule. At first there is none: each is a decision of a
/// manager, and those about time would make what follows from the same requests depend on how fast they come.
struct SafetyRules {
    static constexpr int maxOrdersPerSecond = 1'000;
    static constexpr int maxCancelsPerMinute = 10'000;
    static constexpr int maxDuplicateMs = 60'000;

    QString tradeSwitch = Stand_Values::TradeSwitch::Active;
    int ordersPerSecond = 0;
    int cancelsPerMinute = 0;
    int duplicateMs = 0;
    bool refuseSelfMatch = false;

    static QStringList tradeSwitches()
    {
        using namespace Stand_Values::TradeSwitch;
        return {Active, ReduceOnly, Halted};
    }

    bool isActive() const { return tradeSwitch == Stand_Values::TradeSwitch::Active; }
    bool isHalted() const { return tradeSwitch == Stand_Values::TradeSwitch::Halted; }
    bool reducesOnly() const { return tradeSwitch == Stand_Values::TradeSwitch::ReduceOnly; }
};
