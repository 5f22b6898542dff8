#include "Ticks.h"

#include <cmath>
#include <limits>

namespace {

constexpr double perUnit = 1e6;
constexpr double largestPrice = 1e7; ///< above it a double no longer tells millionths apart with certainty
constexpr double slack = 0.01;       ///< in millionths: what a double may be off

Micros multipleAtOrAbove(Micros price, Micros tick)
{
    return (price + tick - 1) / tick * tick;
}

} // namespace

Ticks Ticks::of(const Books &books, const Instrument &instrument)
{
    QVector<TickBand> bands = books.tickTables.value(instrument.tickTable);
    if (bands.isEmpty())
        bands.append({0, 0, instrument.tickTable.toDouble()});
    Ticks ticks;
    for (const TickBand &band : qAsConst(bands)) {
        const Micros end = band.to > 0 ? micros(band.to) : std::numeric_limits<Micros>::max();
        ticks.m_bands.append({micros(band.from), end, qMax<Micros>(1, micros(band.tick))});
    }
    return ticks;
}

Micros Ticks::micros(double price)
{
    if (!(price > 0) || price > largestPrice)
        return 0;
    const double scaled = price * perUnit;
    const double nearest = std::round(scaled);
    return std::abs(scaled - nearest) <= slack ? Micros(nearest) : 0;
}

double Ticks::price(Micros micros)
{
    return double(micros) / perUnit;
}

double Ticks::tickAt(double price) const
{
    if (!(price > 0) || price > largestPrice)
        return 0;
    // Down, not to the nearest: a price just below a border belongs to the lower band.
    const int band = bandOf(Micros(price * perUnit + slack));
    return band < 0 ? 0 : Ticks::price(m_bands.at(band).tick);
}

int Ticks::bandOf(Micros price) const
{
    for (int i = 0; i < m_bands.size(); ++i)
        if (price >= m_bands.at(i).from && price < m_bands.at(i).to)
            return i;
    return -1;
}

bool Ticks::onTick(Micros price) const
{
    const int band = bandOf(price);
    return price > 0 && band >= 0 && price % m_bands.at(band).tick == 0;
}

Micros Ticks::up(Micros price) const
{
    const int band = bandOf(price);
    if (band < 0)
        return 0;
    Micros next = multipleAtOrAbove(price + 1, m_bands.at(band).tick);
    for (int i = band; i < m_bands.size(); ++i) {
        const Band &at = m_bands.at(i);
        next = multipleAtOrAbove(qMax(next, at.from), at.tick);
        if (next < at.to)
            return next;
        next = at.to;
    }
    return 0;
}

Micros Ticks::down(Micros price) const
{
    Micros below = price - 1;
    for (int i = bandOf(below); i >= 0; --i) {
        const Band &at = m_bands.at(i);
        const Micros next = qMin(below, at.to - 1) / at.tick * at.tick;
        if (next >= at.from)
            return next;
        below = at.from - 1;
    }
    return 0;
}
