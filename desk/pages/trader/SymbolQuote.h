#pragma once

#include "VariantRecord.h"

#include <QtCore/QVector>

/// The latest quote of a symbol as the page reads it; 0 and empty where there is none.
struct SymbolQuote {
    struct Level {
        double price = 0;
        qint64 quantity = 0;
    };

    double last = 0;
    double preClose = 0;
    double upLimit = 0; ///< 0: no price limits
    double downLimit = 0;
    QVector<Level> bids; ///< best first
    QVector<Level> asks;
    QList<int> bidQueue; ///< single orders at the best level, first in queue first
    QList<int> askQueue;

    static SymbolQuote of(const QString &symbol);

    /// What an order in this direction is filled at now, else the last price, else that of the day before.
    double opposite(bool isBuy) const;
};
