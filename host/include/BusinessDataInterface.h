#pragma once

#include "HostExport.h"
#include "VariantRecord.h"

/// Positions. Callable from any thread; results are copies.
namespace BusinessDataInterface {

/// tradingAccount, symbol, securityID, securityExchange, Stand_Fields::Position::quantity and tradeable in
/// server units; empty for an unknown account. By ascending security id and exchange.
T0_HOST_EXPORT RecordList GetPositionListByTradingAccount(const QString &tradingAccount);

} // namespace BusinessDataInterface
