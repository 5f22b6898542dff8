#pragma once

#include "Ticks.h"

/// The other people's orders of one symbol, and every throw of its dice.
///
/// Nothing of it is kept: all follows from the seed, the symbol and the beat, a counter of the seconds in which
/// the symbol traded. At every price stands an endless row of orders, of which those from head to tail are in
/// the market; both only grow with the beat: head as orders are filled or cancelled, tail as new ones arrive.
class Depth
{
public:
    Depth(quint64 seed, const QString &symbol, qint64 unit);

    /// A number of 64 random bits, another one for each purpose.
    enum class Purpose : quint64 { Walk, Volume, Auction, Leave, Arrive, Size };
    quint64 random(Purpose purpose, quint64 first, quint64 second = 0) const;

    quint64 head(Micros price, quint64 beat) const;
    quint64 tail(Micros price, quint64 beat) const; ///< at least three behind the head

    /// What the order with this number brought; a multiple of the unit.
    qint64 size(Micros price, quint64 number) const;

    qint64 unit() const { return m_unit; }

private:
    quint64 passed(Purpose purpose, Micros price, quint64 beat) const;

    quint64 m_key = 0;
    qint64 m_unit = 1;
};
