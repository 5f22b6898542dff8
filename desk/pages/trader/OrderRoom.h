#pragma once

#include "OrderWish.h"

#include <optional>

/// What the user may still trade of a wish's instrument, in its direction and accounts.
struct OrderRoom {
    qint64 quota = 0;
    qint64 closable = 0;            ///< what of the open position the direction closes
    std::optional<double> exposure; ///< money, at the latest price; none: not known
    std::optional<double> limit;    ///< of the exposure; none: not known or not limited
    bool isUnlimited = false;       ///< an account without a limit is among them

    static OrderRoom of(const OrderWish &wish);
};

/// Quantities that a key or a click fills in.
namespace QuickQuantity {

enum Kind { Third, Half, All, OneLot, TenLots, Close };

/// Shares of the quota and whole lots are multiples of step, but all of it is sold with its odd lot.
qint64 of(Kind kind, const OrderRoom &room, bool isBuy, qint64 step, qint64 lot);

} // namespace QuickQuantity
