#pragma once

#include "HostExport.h"
#include "VariantRecord.h"

#include <QtCore/QStringList>

/// The margin data centre. Callable from any thread.
namespace MarginDC {

/// Makes the margin data of the session's accounts available; callable twice. accounts: empty for all.
T0_HOST_EXPORT void init(const QStringList &accounts);

/// The securities a credit account may borrow: tradingAccount, symbol, securityID, securityExchange,
/// Stand_Fields::Margin::quantity (server units) and loanState (Master_Values::LoanState::InUse or other).
/// Empty for an unknown account and before init.
T0_HOST_EXPORT RecordList GetMarginSecurities(const QString &tradingAccount);

} // namespace MarginDC
