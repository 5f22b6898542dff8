#pragma once

#include "OrderWish.h"

#include <QtCore/QCoreApplication>

/// What would be sent for a wish, shown to the user before it is.
struct OrderPlan {
    Q_DECLARE_TR_FUNCTIONS(OrderPlan)

public:
    QString refusal; ///< why nothing can be sent; empty: something can
    RecordList rows; ///< one an account and part, ready for ManualT0Logic::Order
    RecordList rest; ///< what could not be placed, each with its text
    QStringList warnings;

    static OrderPlan of(const OrderWish &wish);

    qint64 quantity() const; ///< of all rows
    double amount() const;   ///< of all rows, money
    bool isHarmless() const { return warnings.isEmpty() && rest.isEmpty(); }

private:
    QStringList aboutExposure(const OrderWish &wish) const;
};
