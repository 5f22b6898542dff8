#pragma once

#include "MasterFields.h"
#include "Quantity.h"
#include "VariantRecord.h"

/// What is bought and not yet sold back, or sold and not yet bought back.
namespace OpenPosition {

/// Of one usage record; negative for a short one.
inline qint64 net(const VariantRecord &usage)
{
    using namespace Master_Fields::ManualT0;
    const auto of = [&usage](const QString &field) { return Quantity::toQty(usage.value(field)); };
    return Quantity::satAdd(Quantity::satSub(of(PreUnclosedBoughtQty), of(PreUnclosedSoldQty)),
                            Quantity::satSub(of(DailyBoughtQty), of(DailySoldQty)));
}

/// What of it one direction can close: a buy a short one, a sell a long one.
inline qint64 closedBy(qint64 net, bool isBuy)
{
    return qMax<qint64>(0, isBuy ? Quantity::satSub(0, net) : net);
}

} // namespace OpenPosition
