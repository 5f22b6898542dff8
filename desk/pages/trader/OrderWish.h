#pragma once

#include "VariantRecord.h"

#include <QtCore/QStringList>

/// What a trader wants done, before it is known which of the accounts does it.
struct OrderWish {
    /// The checks of ManualT0Logic::CheckSingleOrderData.
    enum Check {
        Accounts = 1,
        Instrument = 2,
        Price = 4,
        Quantity = 8,
        Quota = 16,
        Everything = Accounts | Instrument | Price | Quantity | Quota
    };

    QStringList accounts;
    QString symbol;
    QString exchange;
    QString sideUnion; ///< one of Master_Values::SideUnion
    double price = 0;
    qint64 quantity = 0; ///< shares or bonds

    bool operator==(const OrderWish &other) const;
    bool isBuy() const;
    QString check(int checks) const; ///< why not, empty: all pass
    VariantRecord record() const;    ///< an order row of the facade
};
