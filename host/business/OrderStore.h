#pragma once

#include "VariantRecord.h"

#include <QtCore/QStringList>

/// The orders and fills of the session, from pushes and from the queries at its opening, which may come in any
/// order: of one order's states the newest stays. Thread-safe; empty without a session.
namespace OrderStore {

/// Whole records; those without an id are ignored. Returns those that are new or newer than what was held.
RecordList enterOrders(const RecordList &rows);
RecordList enterFills(const RecordList &rows);

/// A day of the market begins, yyyy-MM-dd: what is of an earlier one has expired or is history, and goes.
void beginDay(const QString &day);

/// As BusinessDataInterface::GetOrderListByCustomKey and GetFillList.
RecordList orders(const VariantRecord &filter, int &total, int start, int count, const QStringList &sortKeys,
                  const QStringList &fields);
RecordList fills(const VariantRecord &filter);

void clear();

} // namespace OrderStore
