#pragma once

#include "VariantRecord.h"

#include <QtCore/QVariant>

/// Requests about orders, as clients send them.
namespace TestOrders {

VariantRecord headerOf(const QString &account);
VariantRecord orderOf(const QString &symbol, const QString &exchange, const QString &side, const QString &price,
                      const QVariant &quantity);

/// A command to the market's clock.
VariantRecord control(const QString &command, qint64 count = 1);

QString textOf(const VariantRecord &row, const QString &field);

} // namespace TestOrders
