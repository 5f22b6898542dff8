#include "Exchange.h"

#include <QtCore/QDataStream>

#include <algorithm>

namespace {

constexpr qint64 msOfSecond = 1000;
constexpr qint32 savedVersion = 1;

bool isAuction(Phase phase)
{
    return phase == Phase::OpenAuction || phase == Phase::CloseAuction;
}

} // namespace

Exchange::Exchange(const Books &books, quint64 seed, const Options &options)
    : m_sessions(books)
    , m_options(options)
{
    QHash<QString, double> lasts;
    for (const OpeningQuote &quote : books.quotes)
        lasts.insert(quote.symbol, quote.last);
    for (const Instrument &instrument : books.instruments) {
        const QString &symbol = instrument.symbol;
        m_symbols.insert({instrument.securityID, instrument.exchange}, symbol);
        m_markets[symbol].append(instrument.exchange);
        if (!m_books.contains(symbol))
            m_books.insert(symbol, SymbolBook(books, instrument, lasts.value(symbol), seed));
    }
}

Exchange::Refusal Exchange::refusal(const OrderIn &order) const
{
    const auto book = m_books.constFind(m_symbols.value({order.securityID, order.exchange}));
    if (book == m_books.constEnd())
        return Refusal::UnknownInstrument;
    if (!phase(order.exchange).orders)
        return Refusal::Closed;
    const Micros price = Ticks::micros(order.price);
    if (!book->onTick(price))
        return Refusal::OffTick;
    return book->allows(price) ? Refusal::None : Refusal::OutsideLimits;
}

/// The exchanges of a symbol that trade together in this second; none unless the symbol's first one is in the
/// phase.
QStringList Exchange::marketsIn(const QString &symbol, Phase phase) const
{
    QStringList markets = m_markets.value(symbol);
    if (m_sessions.at(markets.value(0), m_time).phase != phase)
        return {};
    const auto elsewhere = [this, phase](const QString &market) {
        return m_sessions.at(market, m_time).phase != phase;
    };
    markets.erase(std::remove_if(markets.begin(), markets.end(), elsewhere), markets.end());
    return markets;
}

QVector<Fill> Exchange::place(const OrderIn &order)
{
    Q_ASSERT(refusal(order) == Refusal::None && order.quantity > 0);
    const QString symbol = m_symbols.value({order.securityID, order.exchange});
    SymbolBook &book = *m_books.find(symbol);
    book.place({order.id, order.exchange, order.buy, Ticks::micros(order.price), order.quantity});
    m_orders.insert(order.id, {symbol, order.exchange});
    if (m_held)
        return {};
    const QVector<Fill> fills = book.take(marketsIn(symbol, Phase::Continuous), m_options);
    forget(fills);
    return fills;
}

void Exchange::forget(const QVector<Fill> &fills)
{
    for (const Fill &fill : fills)
        if (fill.open == 0)
            m_orders.remove(fill.id);
}

Exchange::Cancelled Exchange::cancel(const QString &id)
{
    const auto order = m_orders.constFind(id);
    if (order == m_orders.constEnd())
        return Cancelled::UnknownOrder;
    if (!phase(order->exchange).cancels)
        return Cancelled::NotNow;
    m_books.find(order->symbol)->cancel(id);
    m_orders.remove(id);
    return Cancelled::Yes;
}

QVector<Fill> Exchange::second(const QString &symbol, SymbolBook &book)
{
    const QString market = m_markets.value(symbol).constFirst();
    const Phase now = m_sessions.at(market, m_time).phase;
    if (now == Phase::Continuous)
        return book.trade(marketsIn(symbol, now), m_options);
    if (isAuction(now) && m_sessions.at(market, m_time + msOfSecond).phase != now)
        return book.uncross(marketsIn(symbol, now), m_options);
    return {};
}

Exchange::Events Exchange::step()
{
    Events events;
    if (m_held)
        return events;
    for (auto book = m_books.begin(); book != m_books.end(); ++book) {
        const Micros before = book->last();
        events.fills += second(book.key(), *book);
        if (book->last() != before)
            events.newQuotes.append(book.key());
    }
    m_time += msOfSecond;
    forget(events.fills);
    return events;
}

std::optional<Quote> Exchange::quote(const QString &symbol) const
{
    const auto book = m_books.constFind(symbol);
    if (book == m_books.constEnd())
        return {};
    return book->quote();
}

std::optional<Quote> Exchange::prices(const QString &symbol) const
{
    const auto book = m_books.constFind(symbol);
    if (book == m_books.constEnd())
        return {};
    return book->prices();
}

bool Exchange::setLast(const QString &symbol, double price)
{
    const auto book = m_books.find(symbol);
    return book != m_books.end() && book->setLast(price);
}

void Exchange::dayChange(qint64 marketMs)
{
    m_time = marketMs;
    m_orders.clear();
    for (SymbolBook &book : m_books)
        book.dayChange();
}

QByteArray Exchange::save() const
{
    QByteArray saved;
    QDataStream stream(&saved, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << savedVersion << m_time << m_books.keys();
    for (const SymbolBook &book : m_books)
        book.save(stream);
    return saved;
}

bool Exchange::restore(const QByteArray &saved)
{
    QDataStream stream(saved);
    stream.setVersion(QDataStream::Qt_5_15);
    qint32 version = 0;
    qint64 time = 0;
    QStringList symbols;
    stream >> version >> time >> symbols;
    if (version != savedVersion || symbols != m_books.keys())
        return false;
    QMap<QString, SymbolBook> books = m_books;
    for (SymbolBook &book : books)
        book.restore(stream);
    if (stream.status() != QDataStream::Ok || !stream.atEnd())
        return false;
    m_time = time;
    m_books = books;
    m_orders.clear();
    for (auto book = m_books.cbegin(); book != m_books.cend(); ++book)
        for (const RestingOrder &order : book->orders())
            m_orders.insert(order.id, {book.key(), order.market});
    return true;
}
