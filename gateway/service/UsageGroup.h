#pragma once

#include "Store.h"

/// What is known of one security in one account: who may trade it, and on which terms.
struct UsageGroup {
    Holding holding;
    Ledger::Terms terms;
    QMap<QString, StoredUsage> byTrader;

    StoredUsage &usageOf(const QString &trader)
    {
        StoredUsage &usage = byTrader[trader];
        usage.trader = trader;
        usage.holding = holding;
        return usage;
    }

    QVector<Ledger::TraderUse> uses() const ///< by trader
    {
        QVector<Ledger::TraderUse> all;
        for (const StoredUsage &usage : byTrader)
            all.append(usage.use);
        return all;
    }
};
