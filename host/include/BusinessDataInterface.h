#pragma once

#include "HostExport.h"
#include "VariantRecord.h"

#include <QtCore/QStringList>

/// Positions, orders and fills. Callable from any thread; results are copies.
namespace BusinessDataInterface {

/// tradingAccount, symbol, securityID, securityExchange, Stand_Fields::Position::quantity and tradeable in
/// server units; empty for an unknown account. By ascending security id and exchange.
T0_HOST_EXPORT RecordList GetPositionListByTradingAccount(const QString &tradingAccount);

/// The orders that pass the filter: each of its fields has that text, or one of a list of texts (none of an empty
/// list). total: how many pass. Of these, count from start on; count <= 0: the default page of 100. sortKeys: fields
/// to sort by, the first counts most, "-field" descending; then, and with none, by orderID. fields: what a record
/// holds; empty: everything.
T0_HOST_EXPORT RecordList GetOrderListByCustomKey(const VariantRecord &filter, int &total, int start, int count,
                                                  const QStringList &sortKeys, const QStringList &fields);

/// The fills that pass such a filter, by Stand_Fields::Fill::fillID.
T0_HOST_EXPORT RecordList GetFillList(const VariantRecord &filter);

} // namespace BusinessDataInterface
