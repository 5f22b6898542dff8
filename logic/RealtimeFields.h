#pragma once

#include "VariantRecord.h"

#include <QtCore/QVector>

/// The fields of a real-time usage record: what is scaled, summed and derived. Pure functions.
namespace RealtimeFields {

/// Quantities the server sends in its own units. scaledQty: nine; summedQty: those and the two total limits.
const QVector<QString> &scaledQty();
const QVector<QString> &summedQty();
const QVector<QString> &summedAmount();

/// "trader_account_symbol_exchange"; an absent field gives an empty part.
QString key(const VariantRecord &record, const QString &symbol);
QString key(const QString &tradingAccount, const QString &traderId, const QString &symbol, const QString &exchange);

/// Writes symbol, scales the quantities into display units and derives limits, open position, real amounts
/// and average price. factor: display units of one server unit, at least 1.
void derive(VariantRecord &record, const QString &symbol, int factor);

/// Adds another record's summed quantities and amounts to sum; nothing is derived again.
void add(VariantRecord &sum, const VariantRecord &other);

} // namespace RealtimeFields
