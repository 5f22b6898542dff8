#pragma once

#include "Books.h"

/// A price in millionths: exact, where sums of doubles are not.
using Micros = qint64;

/// The prices at which a security may trade: in each band the multiples of the band's tick.
class Ticks
{
public:
    static Ticks of(const Books &books, const Instrument &instrument);

    /// 0: no price that an order can have (not a number, not above 0, too large, between two millionths).
    static Micros micros(double price);
    static double price(Micros micros);

    /// The tick of the band with from ≤ price < to, whichever way the price is to go; 0 outside the table.
    double tickAt(double price) const;

    bool onTick(Micros price) const;

    /// The neighbours, also across the border of a band; 0 when there is none.
    Micros up(Micros price) const;
    Micros down(Micros price) const;

    Micros atOrBelow(Micros price) const { return onTick(price) ? price : down(price); }
    Micros atOrAbove(Micros price) const { return onTick(price) ? price : up(price); }

private:
    struct Band {
        Micros from = 0;
        Micros to = 0; ///< exclusive
        Micros tick = 1;
    };

    int bandOf(Micros price) const; ///< -1: none

    QVector<Band> m_bands;
};
