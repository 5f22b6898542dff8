#include "SymbolBook.h"

#include <algorithm>

namespace {

// Of 256 seconds: how many move the touch a tick up, as many down, and how many draw it back to the former
// close, so that a price without limits does not wander off either.
constexpr quint64 moves = 16;
constexpr quint64 pulls = 1;

constexpr qint64 unitsOfSecond = 8;
constexpr qint64 unitsOfAuction = 100;
constexpr qint64 endless = Q_INT64_C(1) << 60;

} // namespace

bool SymbolBook::reaches(const RestingOrder &order, Micros price) const
{
    return order.buy ? order.price >= price : order.price <= price;
}

/// Fills are whole steps; only the one that completes an order may be odd.
qint64 SymbolBook::wholeSteps(qint64 open, qint64 offered) const
{
    if (offered >= open)
        return open;
    return qMax<qint64>(0, offered) / m_step * m_step;
}

Micros SymbolBook::slipped(const RestingOrder &order, Micros price, int ticks) const
{
    for (int i = 0; i < ticks && price != order.price; ++i)
        price = order.buy ? m_ticks.up(price) : m_ticks.down(price);
    return price;
}

/// The last price changes its side of the spread at random. That alone moves nothing; eating the side it stands
/// on does.
void SymbolBook::walk()
{
    const quint64 dice = m_depth.random(Depth::Purpose::Walk, m_beat);
    const quint64 throwOfMove = dice % 256;
    bool toAsk = (dice >> 8) & 1;
    bool eats = throwOfMove < 2 * moves;
    if (eats) {
        toAsk = throwOfMove < moves;
    } else if (throwOfMove < 2 * moves + pulls && m_preClose > 0 && m_last != m_preClose) {
        eats = true;
        toAsk = m_last < m_preClose;
    }
    const Micros price = best(!toAsk);
    if (price == 0)
        return;
    m_last = price;
    m_lastIsBid = toAsk == eats;
}

/// Takes what stands against an order, the best price first.
void SymbolBook::sweep(RestingOrder &order, const MatchOptions &options, QVector<Fill> &fills)
{
    Micros price = best(!order.buy);
    while (order.open > 0 && price > 0 && reaches(order, price)) {
        const qint64 offered = options.immediate ? order.open : available(price);
        const qint64 quantity = wholeSteps(order.open, offered);
        if (quantity > 0) {
            order.open -= quantity;
            m_volume += quantity;
            fills.append({order.id, quantity, Ticks::price(slipped(order, price, options.slippage)), order.open});
            if (!options.immediate)
                m_taken[price] += quantity;
        }
        price = next(!order.buy, price);
    }
}

/// Every order that the other side can serve, until one stays open: nobody behind it may have what is left,
/// not even when it is too little for a whole step.
void SymbolBook::sweepAll(const QStringList &markets, const MatchOptions &options, QVector<Fill> &fills)
{
    for (QVector<RestingOrder> *orders : {&m_buys, &m_sells}) {
        for (RestingOrder &order : *orders) {
            if (!markets.contains(order.market))
                continue;
            sweep(order, options, fills);
            if (order.open > 0)
                break;
        }
    }
}

/// Gives an order of a volume at the last price. False: the order stays open, the volume is spent on it.
bool SymbolBook::fillAtLast(RestingOrder &order, qint64 &volume, QVector<Fill> &fills) const
{
    const qint64 quantity = wholeSteps(order.open, volume);
    order.open -= quantity;
    volume -= quantity;
    if (quantity > 0)
        fills.append({order.id, quantity, Ticks::price(m_last), order.open});
    return order.open == 0;
}

/// Somebody trades a volume at the last price: one side's orders are served, best first. Those of that very
/// price wait until the queue has come to them.
void SymbolBook::serve(bool buy, qint64 volume, quint64 head, const QStringList &markets, QVector<Fill> &fills)
{
    for (RestingOrder &order : side(buy)) {
        if (order.open == 0 || !markets.contains(order.market))
            continue;
        const bool waits = order.price == m_last && order.slot > head;
        if (waits || !reaches(order, m_last) || !fillAtLast(order, volume, fills))
            return;
    }
}

void SymbolBook::forgetFilled()
{
    const auto filled = [](const RestingOrder &order) { return order.open == 0; };
    for (QVector<RestingOrder> *orders : {&m_buys, &m_sells})
        orders->erase(std::remove_if(orders->begin(), orders->end(), filled), orders->end());
}

QVector<Fill> SymbolBook::take(const QStringList &markets, const MatchOptions &options)
{
    QVector<Fill> fills;
    sweepAll(markets, options, fills);
    forgetFilled();
    return fills;
}

QVector<Fill> SymbolBook::trade(const QStringList &markets, const MatchOptions &options)
{
    QVector<Fill> fills;
    if (m_last == 0)
        return fills;
    ++m_beat;
    m_taken.clear();
    walk();
    sweepAll(markets, options, fills);
    if (!options.immediate) {
        const quint64 dice = m_depth.random(Depth::Purpose::Volume, m_beat);
        const qint64 volume = m_depth.unit() * qint64(1 + dice % unitsOfSecond);
        m_volume += volume;
        serve(m_lastIsBid, volume, m_depth.head(m_last, m_beat), markets, fills);
    }
    forgetFilled();
    return fills;
}

QVector<Fill> SymbolBook::uncross(const QStringList &markets, const MatchOptions &options)
{
    QVector<Fill> fills;
    if (m_last == 0)
        return fills;
    ++m_beat;
    m_taken.clear();
    const quint64 dice = m_depth.random(Depth::Purpose::Auction, m_beat);
    const bool up = dice & 1;
    for (quint64 i = (dice >> 1) % 4; i > 0; --i)
        if (const Micros price = next(!up, m_last))
            m_last = price;
    m_lastIsBid = up;
    const qint64 volume = options.immediate ? endless : m_depth.unit() * qint64(1 + (dice >> 8) % unitsOfAuction);
    m_volume += options.immediate ? 0 : volume;
    // No queue has moved during the auction, so nobody waits in one.
    for (const bool buy : {true, false})
        serve(buy, volume, m_depth.tail(m_last, m_beat), markets, fills);
    forgetFilled();
    return fills;
}
