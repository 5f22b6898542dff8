#pragma once

#include "VariantRecord.h"

#include <QtCore/QStringList>

class ManualT0LogicPrivate;

/// What the queries are narrowed by; each query takes what it has a parameter for.
struct HubFilter {
    QStringList products;
    QStringList assetProps;
    QStringList accounts;
    QStringList traders;
    QString symbol;
    QString exchange;
    QString side;
    QStringList resourceIds;
    QStringList poolIds;
    int poolType = 3;
    bool flag = false; ///< with public pools, with T0 symbols, all orders
};

/// Asks every query of the hub once. The sum of what came back, so that none is left out by the compiler. Any thread.
int askEverything(const ManualT0LogicPrivate &hub, const HubFilter &filter);
