#pragma once

#include "VariantRecord.h"

#include <QtCore/QVector>

/// The fields of a real-time usage record: its key, what is scaled and what is summed. Pure functions.
namespace RealtimeFields {

/// Quantities the server sends in its own units. scaledQty: nine; summedQty: those and the two total limits.
const QVector<QString> &scaledQty();
const QVector<QString> &summedQty();
const QVector<QString> &summedAmount();

/// "trader_account_symbol_exchange"; an absent field gives an empty part.
QString key(const VariantRecord &record, const QString &symbol);
QString key(const QString &tradingAccount, const QString &traderId, const QString &symbol, const QString &exchange);

/// Adds another record's summed quantities and amounts to sum; nothing is derived again.
void add(VariantRecord &sum, const VariantRecord &other);

} // namespace RealtimeFields
