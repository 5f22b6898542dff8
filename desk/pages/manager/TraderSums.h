#pragma once

#include "UsageFigures.h"

#include <QtCore/QMap>

/// What a trader was given and made of it.
struct TraderSums {
    QString trader;
    int pools = 0;
    double poolQty = 0;
    double boughtQty = 0;
    double soldQty = 0;
    UsageTotals usage;
    int liveOrders = 0;

    void add(const TraderSums &other);

    /// Every trader's, read from the library and the host now.
    static QMap<QString, TraderSums> all();
};
