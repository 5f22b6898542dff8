#pragma once

#include "Depth.h"
#include "Ticks.h"

#include <QtCore/QStringList>

class QDataStream;

struct Fill {
    QString id;
    qint64 quantity = 0;
    double price = 0;
    qint64 open = 0; ///< what is left of the order behind it
};

struct QuoteLevel {
    struct Item {
        qint64 quantity = 0;
        QString id; ///< of a paper order; empty: somebody else's
    };

    double price = 0;
    qint64 quantity = 0;
    QVector<Item> queue; ///< first in the queue first
};

struct Quote {
    double last = 0; ///< 0: none yet
    double preClose = 0;
    double upLimit = 0; ///< 0: no price limits
    double downLimit = 0;
    qint64 volume = 0;        ///< of the day
    QVector<QuoteLevel> bids; ///< best first, at most five
    QVector<QuoteLevel> asks;
};

struct MatchOptions {
    bool immediate = false; ///< whole quantities at the touch, as if there were no end of the other side
    int slippage = 0;       ///< ticks to the disadvantage of an order that takes, within its limit
};

struct RestingOrder {
    QString id;
    QString market; ///< an exchange
    bool buy = false;
    Micros price = 0;
    qint64 open = 0;
    quint64 slot = 0; ///< stands before the others' order of this number at its price
};
QDataStream &operator<<(QDataStream &stream, const RestingOrder &order);
QDataStream &operator>>(QDataStream &stream, RestingOrder &order);

/// The market in one symbol: its last price walks, paper orders rest and are matched with the others' orders
/// of the depth, never with one another. Without a last price nothing trades. Prices are on tick and inside the
/// price limits.
///
/// The markets given to the calls are those that trade now; orders of other markets rest.
class SymbolBook
{
public:
    /// last 0: none yet; otherwise the nearest valid price below counts.
    SymbolBook(const Books &books, const Instrument &instrument, double last, quint64 seed);

    bool allows(Micros price) const; ///< on tick and inside the price limits
    bool onTick(Micros price) const { return m_ticks.onTick(price); }

    void place(const RestingOrder &order);
    bool cancel(const QString &id);

    /// What the orders take from the other side at once; to be asked when one was placed.
    QVector<Fill> take(const QStringList &markets, const MatchOptions &options);

    /// One second of continuous trading.
    QVector<Fill> trade(const QStringList &markets, const MatchOptions &options);

    /// The end of an auction: one price for all.
    QVector<Fill> uncross(const QStringList &markets, const MatchOptions &options);

    bool setLast(double price); ///< 0: none; false: not a price of this symbol today
    void dayChange();           ///< the last price becomes the former close, all orders go
    Quote quote() const;
    Quote prices() const; ///< the quote without its depth, which takes longer
    Micros last() const { return m_last; }
    QVector<RestingOrder> orders() const { return m_buys + m_sells; }

    void save(QDataStream &stream) const;
    void restore(QDataStream &stream);

private:
    // SymbolBook.cpp
    bool inside(Micros price) const;
    Micros best(bool bid) const; ///< 0: nobody stands there
    Micros next(bool bid, Micros price) const;
    Micros limitOf(int points) const;
    qint64 available(Micros price) const;
    void appendQueue(QuoteLevel &level, bool bid, Micros price) const;
    QVector<QuoteLevel> levels(bool bid) const;

    // SymbolBook_Match.cpp
    void walk();
    void sweep(RestingOrder &order, const MatchOptions &options, QVector<Fill> &fills);
    void sweepAll(const QStringList &markets, const MatchOptions &options, QVector<Fill> &fills);
    bool fillAtLast(RestingOrder &order, qint64 &volume, QVector<Fill> &fills) const;
    void serve(bool buy, qint64 volume, quint64 head, const QStringList &markets, QVector<Fill> &fills);
    qint64 wholeSteps(qint64 open, qint64 offered) const;
    bool reaches(const RestingOrder &order, Micros price) const;
    Micros slipped(const RestingOrder &order, Micros price, int ticks) const;
    void forgetFilled();
    QVector<RestingOrder> &side(bool buy) { return buy ? m_buys : m_sells; }
    const QVector<RestingOrder> &side(bool buy) const { return buy ? m_buys : m_sells; }

    Ticks m_ticks;
    Depth m_depth;
    qint64 m_step = 1;
    int m_upPoints = 0; ///< of 10,000 of the former close; 0: no limit
    int m_downPoints = 0;

    Micros m_last = 0;
    bool m_lastIsBid = true; ///< on which side of the spread of one tick the last price stands
    Micros m_preClose = 0;
    Micros m_upLimit = 0;
    Micros m_downLimit = 0;
    qint64 m_volume = 0;
    quint64 m_beat = 0;            ///< seconds in which this symbol traded
    QVector<RestingOrder> m_buys;  ///< best price first, first come first
    QVector<RestingOrder> m_sells; ///< the same
    QMap<Micros, qint64> m_taken;  ///< by paper orders in this second
};
