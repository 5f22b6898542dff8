#pragma once

#include "OrderWish.h"
#include "SymbolQuote.h"

#include <QtCore/QCoreApplication>

/// What is wrong with a wish although it may be sent: a price far from the last one or at a limit, own live orders that
/// it would trade with.
class OrderWarnings
{
    Q_DECLARE_TR_FUNCTIONS(OrderWarnings)

public:
    static QStringList of(const OrderWish &wish, const SymbolQuote &quote, const RecordList &ownLiveOrders);

private:
    static QString aboutLast(const OrderWish &wish, const SymbolQuote &quote);
    static QString aboutLimits(const OrderWish &wish, const SymbolQuote &quote);
    static QString aboutOwnOrder(const OrderWish &wish, const VariantRecord &order);
};
