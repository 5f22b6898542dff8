#include "SymbolBook.h"

#include <QtCore/QDataStream>

#include <algorithm>

namespace {

constexpr int wholePoints = 10000;
constexpr int shownLevels = 5;

/// A unit of the depth is an order that anybody could have placed.
qint64 unitOf(const Instrument &instrument)
{
    const qint64 step = qMax<qint64>(1, instrument.qtyStep);
    return qMax<qint64>(1, (instrument.minQty + step - 1) / step) * step;
}

Micros share(Micros price, int points, Micros tick)
{
    const Micros exact = (price * points + wholePoints / 2) / wholePoints;
    return (exact + tick / 2) / tick * tick;
}

/// The percentage that a limit is of the close. Limits are rounded to the tick, so the plain ratio would
/// drift from day to day; a multiple of five per cent that gives the same limit is what was meant.
int pointsOf(Micros limit, Micros preClose, const Ticks &ticks)
{
    if (limit == 0 || preClose == 0)
        return 0;
    const int exact = int((limit * wholePoints + preClose / 2) / preClose);
    const int likely = (exact + 250) / 500 * 500;
    const Micros tick = Ticks::micros(ticks.tickAt(Ticks::price(limit)));
    return tick > 0 && share(preClose, likely, tick) == limit ? likely : exact;
}

} // namespace

SymbolBook::SymbolBook(const Books &books, const Instrument &instrument, double last, quint64 seed)
    : m_ticks(Ticks::of(books, instrument))
    , m_depth(seed, instrument.symbol, unitOf(instrument))
    , m_step(qMax<qint64>(1, instrument.qtyStep))
    , m_preClose(Ticks::micros(instrument.preClose))
    , m_upLimit(m_ticks.atOrBelow(Ticks::micros(instrument.upLimit)))
    , m_downLimit(m_ticks.atOrAbove(Ticks::micros(instrument.downLimit)))
{
    m_upPoints = pointsOf(m_upLimit, m_preClose, m_ticks);
    m_downPoints = pointsOf(m_downLimit, m_preClose, m_ticks);
    const Micros opening = m_ticks.atOrBelow(Ticks::micros(last));
    if (opening > 0)
        m_last = m_upLimit > 0 ? qBound(m_downLimit, opening, m_upLimit) : qMax(m_downLimit, opening);
}

bool SymbolBook::inside(Micros price) const
{
    return price > 0 && price >= m_downLimit && (m_upLimit == 0 || price <= m_upLimit);
}

bool SymbolBook::allows(Micros price) const
{
    return m_ticks.onTick(price) && inside(price);
}

Micros SymbolBook::next(bool bid, Micros price) const
{
    const Micros deeper = bid ? m_ticks.down(price) : m_ticks.up(price);
    return inside(deeper) ? deeper : 0;
}

Micros SymbolBook::best(bool bid) const
{
    return m_last == 0 || bid == m_lastIsBid ? m_last : next(bid, m_last);
}

void SymbolBook::place(const RestingOrder &order)
{
    const auto better = [](const RestingOrder &one, const RestingOrder &other) {
        return one.buy ? one.price > other.price : one.price < other.price;
    };
    QVector<RestingOrder> &orders = side(order.buy);
    const auto *const at = std::upper_bound(orders.cbegin(), orders.cend(), order, better);
    RestingOrder placed = order;
    placed.slot = m_depth.tail(order.price, m_beat);
    orders.insert(int(at - orders.cbegin()), placed);
}

bool SymbolBook::cancel(const QString &id)
{
    for (QVector<RestingOrder> *orders : {&m_buys, &m_sells}) {
        for (int i = 0; i < orders->size(); ++i) {
            if (orders->at(i).id != id)
                continue;
            orders->remove(i);
            return true;
        }
    }
    return false;
}

bool SymbolBook::setLast(double price)
{
    const Micros last = Ticks::micros(price);
    if (price != 0 && !allows(last))
        return false;
    m_last = last;
    m_lastIsBid = true;
    m_taken.clear();
    return true;
}

Micros SymbolBook::limitOf(int points) const
{
    if (points == 0)
        return 0;
    const Micros exact = m_preClose * points / wholePoints;
    const Micros tick = Ticks::micros(m_ticks.tickAt(Ticks::price(exact)));
    return tick > 0 ? share(m_preClose, points, tick) : 0;
}

void SymbolBook::dayChange()
{
    m_buys.clear();
    m_sells.clear();
    m_taken.clear();
    m_volume = 0;
    if (m_last == 0)
        return;
    m_preClose = m_last;
    // A price of few ticks rounds to limits on its wrong side; it stays tradeable itself.
    m_upLimit = m_upPoints > 0 ? qMax(m_last, limitOf(m_upPoints)) : 0;
    m_downLimit = qMin(m_last, limitOf(m_downPoints));
}

qint64 SymbolBook::available(Micros price) const
{
    qint64 sum = -m_taken.value(price);
    for (quint64 i = m_depth.head(price, m_beat); i < m_depth.tail(price, m_beat); ++i)
        sum += m_depth.size(price, i);
    return sum;
}

void SymbolBook::appendQueue(QuoteLevel &level, bool bid, Micros price) const
{
    QVector<RestingOrder> own;
    for (const RestingOrder &order : side(bid))
        if (order.price == price)
            own.append(order);
    const quint64 tail = m_depth.tail(price, m_beat);
    qint64 gone = m_taken.value(price);
    int at = 0;
    for (quint64 i = m_depth.head(price, m_beat); i <= tail; ++i) {
        for (; at < own.size() && own.at(at).slot <= i; ++at)
            level.queue.append({own.at(at).open, own.at(at).id});
        const qint64 size = i < tail ? m_depth.size(price, i) : 0;
        if (size > gone)
            level.queue.append({size - gone, QString()});
        gone = qMax<qint64>(0, gone - size);
    }
}

QVector<QuoteLevel> SymbolBook::levels(bool bid) const
{
    QVector<QuoteLevel> shown;
    Micros price = best(bid);
    for (int i = 0; i < shownLevels && price > 0; ++i, price = next(bid, price)) {
        QuoteLevel level;
        level.price = Ticks::price(price);
        appendQueue(level, bid, price);
        for (const QuoteLevel::Item &item : qAsConst(level.queue))
            level.quantity += item.quantity;
        if (level.quantity > 0)
            shown.append(level);
    }
    return shown;
}

Quote SymbolBook::prices() const
{
    Quote quote;
    quote.last = Ticks::price(m_last);
    quote.preClose = Ticks::price(m_preClose);
    quote.upLimit = Ticks::price(m_upLimit);
    quote.downLimit = Ticks::price(m_downLimit);
    quote.volume = m_volume;
    return quote;
}

Quote SymbolBook::quote() const
{
    Quote quote = prices();
    quote.bids = levels(true);
    quote.asks = levels(false);
    return quote;
}

QDataStream &operator<<(QDataStream &stream, const RestingOrder &order)
{
    return stream << order.id << order.market << order.buy << order.price << order.open << order.slot;
}

QDataStream &operator>>(QDataStream &stream, RestingOrder &order)
{
    return stream >> order.id >> order.market >> order.buy >> order.price >> order.open >> order.slot;
}

void SymbolBook::save(QDataStream &stream) const
{
    stream << m_last << m_lastIsBid << m_preClose << m_upLimit << m_downLimit << m_volume << m_beat << m_buys << m_sells
           << m_taken;
}

void SymbolBook::restore(QDataStream &stream)
{
    stream >> m_last >> m_lastIsBid >> m_preClose >> m_upLimit >> m_downLimit >> m_volume >> m_beat >> m_buys >>
        m_sells >> m_taken;
}
