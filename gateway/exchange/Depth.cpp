#include "Depth.h"

namespace {

constexpr quint64 beatsOfBlock = 16;
constexpr quint64 ordersOfBlock = 6;
constexpr quint64 meanLength = ordersOfBlock + 3; // head and tail drift apart by a block's orders at most
constexpr quint64 largestSize = 12;               // in units

/// Scatters neighbouring numbers over all 64 bits. Written out because generators of standard libraries differ.
quint64 scatter(quint64 value)
{
    value += 0x9e3779b97f4a7c15ULL;
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9ULL;
    value = (value ^ (value >> 27)) * 0x94d049bb133111ebULL;
    return value ^ (value >> 31);
}

} // namespace

Depth::Depth(quint64 seed, const QString &symbol, qint64 unit)
    : m_key(scatter(seed))
    , m_unit(unit)
{
    for (const QChar letter : symbol)
        m_key = scatter(m_key ^ letter.unicode());
}

quint64 Depth::random(Purpose purpose, quint64 first, quint64 second) const
{
    return scatter(scatter(scatter(m_key ^ quint64(purpose)) ^ first) ^ second);
}

quint64 Depth::head(Micros price, quint64 beat) const
{
    return passed(Purpose::Leave, price, beat);
}

quint64 Depth::tail(Micros price, quint64 beat) const
{
    return passed(Purpose::Arrive, price, beat) + meanLength;
}

qint64 Depth::size(Micros price, quint64 number) const
{
    return m_unit * qint64(1 + random(Purpose::Size, quint64(price), number) % largestSize);
}

/// How many orders have left, or have come, until a beat: the same number in every block, at random beats of it.
quint64 Depth::passed(Purpose purpose, Micros price, quint64 beat) const
{
    const quint64 block = beat / beatsOfBlock;
    quint64 count = block * ordersOfBlock;
    for (quint64 i = 0; i < ordersOfBlock; ++i)
        if (random(purpose, quint64(price), block * ordersOfBlock + i) % beatsOfBlock <= beat % beatsOfBlock)
            ++count;
    return count;
}
