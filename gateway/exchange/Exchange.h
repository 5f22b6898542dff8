#pragma once

#include "Sessions.h"
#include "SymbolBook.h"

#include <optional>

/// The paper market. A function of the books, the seed, the clock and the calls that change something: the
/// same gives the same, whatever was read in between. Every symbol has dice of its own, so that none depends
/// on another. Quantities are in display units.
///
/// Quotes are by symbol; a security on two exchanges under one symbol has one book for both, and an order
/// trades when its own exchange is in the phase of the symbol's first one.
class Exchange
{
public:
    using Options = MatchOptions;

    struct OrderIn {
        QString id; ///< never used before
        QString securityID;
        QString exchange;
        bool buy = false;
        double price = 0;
        qint64 quantity = 0; ///< above 0
    };

    /// In the order of the checks; the first that fails is the answer.
    enum class Refusal { None, UnknownInstrument, Closed, OffTick, OutsideLimits };
    enum class Cancelled { Yes, UnknownOrder, NotNow };

    struct Events {
        QVector<Fill> fills;   ///< in the order in which they happened
        QStringList newQuotes; ///< symbols whose last price is another one
    };

    Exchange(const Books &books, quint64 seed, const Options &options = Options());

    /// Milliseconds since 1970 of the market's own calendar and clock, without a time zone.
    qint64 time() const { return m_time; }

    /// Moves the clock and nothing else: an auction whose end is jumped over gives no fills.
    void setTime(qint64 marketMs) { m_time = marketMs; }

    /// Held: the clock stands, nothing is filled; orders and cancels are taken.
    void setHeld(bool held) { m_held = held; }
    bool isHeld() const { return m_held; }
    void setOptions(const Options &options) { m_options = options; }

    MarketPhase phase(const QString &exchange) const { return m_sessions.at(exchange, m_time); }

    /// Why an order cannot be placed now; quantities are the caller's to check.
    Refusal refusal(const OrderIn &order) const;

    /// To be called when refusal() has none. The fills may also be those of orders that waited at the same
    /// symbol while the market was held.
    QVector<Fill> place(const OrderIn &order);

    Cancelled cancel(const QString &id);

    /// One second. Its phase is the one at its start; an auction that ends with it is settled at one price.
    Events step();

    /// Empty for an unknown symbol.
    std::optional<Quote> quote(const QString &symbol) const;
    std::optional<Quote> prices(const QString &symbol) const; ///< without the depth, which takes longer

    /// 0: no price yet, nothing trades. False: no such symbol, or the price is off tick or outside the limits.
    bool setLast(const QString &symbol, double price);

    /// All orders go; last prices become former closes, with limits of the same percentages.
    void dayChange(qint64 marketMs);

    /// Everything but books, seed, options and hold, so that a gateway that starts again continues where it was.
    QByteArray save() const;

    /// False, and nothing has changed: these bytes were not saved with these symbols.
    bool restore(const QByteArray &saved);

private:
    struct Listing {
        QString symbol;
        QString exchange;
    };

    QStringList marketsIn(const QString &symbol, Phase phase) const;
    QVector<Fill> second(const QString &symbol, SymbolBook &book);
    void forget(const QVector<Fill> &fills);

    Sessions m_sessions;
    Options m_options;
    qint64 m_time = 0;
    bool m_held = false;
    QMap<QString, SymbolBook> m_books;                 ///< by symbol; sorted, for the order of fills
    QHash<QString, QStringList> m_markets;             ///< exchanges of a symbol, its first one first
    QHash<QPair<QString, QString>, QString> m_symbols; ///< by securityID and exchange
    QHash<QString, Listing> m_orders;                  ///< where an open order rests
};
