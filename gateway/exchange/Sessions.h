#pragma once

#include "Books.h"

enum class Phase { Closed, OpenAuction, Continuous, CloseAuction };

/// What a market does at one moment.
struct MarketPhase {
    Phase phase = Phase::Closed;
    bool orders = false;  ///< orders are taken
    bool cancels = false; ///< orders may be cancelled
};

/// The trading hours of every market; the same every day.
class Sessions
{
public:
    explicit Sessions(const Books &books);

    /// marketMs: milliseconds since 1970 of the market's own calendar and clock, without a time zone.
    MarketPhase at(const QString &market, qint64 marketMs) const;

private:
    struct Span {
        int from = 0; ///< milliseconds of the day
        int to = 0;
        MarketPhase phase;
    };

    QHash<QString, QVector<Span>> m_spans; ///< by market
};
