#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

/// The accounting of one security in one account: what each of its traders may still buy and sell, and what
/// orders, fills and a new day change in it. Pure functions over plain structs; every quantity is in display
/// units, every price and amount is money.
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

/// The open quantity of one order; fills take the pre part first.
struct Parts {
    qint64 pre = 0;
    qint64 daily = 0;

    qint64 total() const { return pre + daily; }
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

/// What the account itself holds of the security.
struct Stock {
    qint64 quantity = 0;
    qint64 tradeable = 0; ///< what of the quantity can be sold today
    qint64 margin = 0;    ///< borrowed securities in use, beside the quantity; sold when nothing is tradeable
};

struct Fees {
    double buy = 0; ///< fraction of the amount
    double sell = 0;
};

// Ledger.cpp

/// How much of the ordinary quantities a trader uses; negative for a T+0 security when he has traded back.
qint64 usedToBuy(const TraderUse &use, bool t0);
qint64 usedToSell(const TraderUse &use, bool t0);

/// What all traders together use of the public quantity.
struct PublicUse {
    qint64 toBuy = 0;
    qint64 toSell = 0;
};
PublicUse publicUse(const Terms &terms, const QVector<TraderUse> &traders);

/// The limits of all traders on one security of one account, in the order of the traders. They belong
/// together: what one takes of the public part is missing for the others.
QVector<Limits> limits(const Terms &terms, const QVector<TraderUse> &traders);

/// Above 0: long, below 0: short; the carried-over leg included.
qint64 openPosition(const TraderUse &use);

// Ledger_Orders.cpp

/// In the order of the checks; the first that fails is the answer.
enum class Refusal {
    None,
    NoQuantity,      ///< 0 or negative
    AboveMaximum,    ///< of one order
    BelowMinimum,    ///< of a buy
    OffStep,         ///< a sell may also end in the odd part of what is tradeable
    NotReducing,     ///< of who may only reduce: more than reducible()
    AboveLimit,      ///< closing and daily limit together
    Exposure,        ///< of the position that the order would leave
    PendingExposure, ///< the same with all live orders of its direction filled
    NotSellable      ///< more than the account has and other orders do not sell already
};

struct Order {
    bool buy = false;
    qint64 quantity = 0;
    qint64 step = 1;
    qint64 minQty = 1;
    qint64 maxQty = 1;
    qint64 maxExposure = -1; ///< of the trader's private pool; negative: none
    qint64 maxPendExposure = -1;
    bool reduceOnly = false; ///< the trader may only bring his open position nearer to zero
};

struct Acceptance {
    Refusal refusal = Refusal::None;
    Parts parts; ///< how the quantity is split, the closing limit first; zeros when refused
};

/// How much more may be ordered in a direction so that the open position comes nearer to zero and never beyond it.
/// Live orders of the direction count as filled; those of the other one do not, they may be cancelled.
qint64 reducible(const TraderUse &use, bool buy);

/// Accepts an order of one of the traders into his live quantities, or changes nothing.
Acceptance accept(const Terms &terms, const Stock &stock, QVector<TraderUse> &traders, int trader, const Order &order);

/// Part of a live order is filled: moves it from the live quantities to what was traded, and the account's
/// stock with it. quantity is at most open.total(), which falls by it.
void fill(TraderUse &use, Stock &stock, bool t0, bool buy, Parts &open, qint64 quantity, double price);

/// What is still open of an order returns to the limits: it was cancelled, rejected or has expired.
void release(TraderUse &use, bool buy, const Parts &open);

// Ledger_Day.cpp

/// The next morning: live orders have expired, the open position becomes the carried-over leg. Its amount is at
/// the average price with the fees of the opening side, so that closing it costs the other side's fee only.
void dayChange(TraderUse &use, const Fees &fees);
void dayChange(Stock &stock); ///< what was bought becomes tradeable

/// One security of one account as a whole.
struct Picture {
    struct LiveOrder {
        int trader = 0;
        bool buy = false;
        Parts open;
    };

    Terms terms;
    QVector<TraderUse> traders;
    QVector<LiveOrder> orders;
    Stock stock;
    qint64 stockWhenFlat = 0; ///< quantity and margin as they were, or would be, with no trader's position open
    PublicUse overuse;        ///< by how much a lowered pool was in use already
};

/// What contradicts itself in a picture, a sentence a line; empty when nothing does.
QString faults(const Picture &picture);

} // namespace Ledger
