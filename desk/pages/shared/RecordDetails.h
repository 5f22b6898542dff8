#pragma once

#include <QtCore/QString>

class RecordTable;

/// Everything the library holds about the account, trader and security of a row: for whoever asks why a figure is what
/// it is.
namespace RecordDetails {

/// Offers it in the table's menu and under a key (Ctrl+I unless the user chose another). Rows hold tradingAccount,
/// symbol, securityExchange and, unless they are resources, T0TraderId. commandId: as of PageShell.
void offer(RecordTable *table, const QString &commandId);

} // namespace RecordDetails
