#pragma once

#include <QtCore/QVector>

/// The accounting of one security in one account: what each of its traders may still buy and sell.
/// Pure functions over plain structs; every quantity is in display units.
namespace Ledger {

enum class Side { None, BuyOpen, SellOpen };

/// The position a trader carried over from the day before, and what was traded against it since.
/// The side stays as it was at the start of the day, even when the leg is closed.
struct Leg {
    Side side = Side::None;
    qint64 bought = 0;
    qint64 sold = 0;
    double boughtAmount = 0;
    double soldAmount = 0;

    qint64 remaining() const; ///< what is still to be closed; never negative
};

/// Quantities of live orders; the pre part closes the carried-over leg, the daily part is the rest.
struct Live {
    qint64 buyPre = 0;
    qint64 buyDaily = 0;
    qint64 sellPre = 0;
    qint64 sellDaily = 0;
};

struct TraderUse {
    qint64 privateQty = 0;
    qint64 dailyBought = 0;
    qint64 dailySold = 0;
    double dailyBoughtAmount = 0;
    double dailySoldAmount = 0;
    Leg leg;
    Live live;
};

struct Terms {
    qint64 publicQty = 0;
    bool t0 = false;      ///< what was bought may be sold on the same day
    bool enabled = false; ///< a disabled account has limits of 0
};

/// Remaining quantities; none is negative.
struct Limits {
    qint64 poolTotal = 0;
    qint64 dailyBuy = 0;
    qint64 dailySell = 0;
    qint64 closeBuy = 0; ///< of a carried-over short
    qint64 closeSell = 0;

    bool operator==(const Limits &other) const;
};

/// What a trader holds open: bought and not sold again, the carried-over leg included; negative: sold.
qint64 openQuantity(const TraderUse &use);

/// How much of the ordinary quantities a trader uses; negative for a T+0 security when he has traded back.
qint64 usedToBuy(const TraderUse &use, bool t0);
qint64 usedToSell(const TraderUse &use, bool t0);

/// The limits of all traders on one security of one account, in the order of the traders. They belong
/// together: what one takes of the public part is missing for the others.
QVector<Limits> limits(const Terms &terms, const QVector<TraderUse> &traders);

} // namespace Ledger
