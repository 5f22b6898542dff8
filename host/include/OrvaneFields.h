#pragma once

#include "HostExport.h"

#include <QtCore/QString>

// Field names of the platform. The text of a constant is the last part of its name.

namespace Orvane_Fields::UserAccount {
extern T0_WIRE_EXPORT const QString tradingAccount;
extern T0_WIRE_EXPORT const QString productAccount;
extern T0_WIRE_EXPORT const QString securityExchange;
extern T0_WIRE_EXPORT const QString loginUserId; ///< the user who sends a request
extern T0_WIRE_EXPORT const QString userID;      ///< the user a row is about
extern T0_WIRE_EXPORT const QString userName;
extern T0_WIRE_EXPORT const QString organCode;
} // namespace Orvane_Fields::UserAccount

namespace Orvane_Fields::Security {
extern T0_WIRE_EXPORT const QString symbol;
extern T0_WIRE_EXPORT const QString securityID;
extern T0_WIRE_EXPORT const QString chineseName;
extern T0_WIRE_EXPORT const QString spellCode;
extern T0_WIRE_EXPORT const QString side; ///< in order filters
extern T0_WIRE_EXPORT const QString price;
extern T0_WIRE_EXPORT const QString orderQty; ///< display units
extern T0_WIRE_EXPORT const QString orderID;
extern T0_WIRE_EXPORT const QString orderStatus;
extern T0_WIRE_EXPORT const QString orderStation; ///< where an order or a cancel comes from
extern T0_WIRE_EXPORT const QString transActTime; ///< ms since the epoch
} // namespace Orvane_Fields::Security

namespace Orvane_Fields::System {
extern T0_WIRE_EXPORT const QString requestExeStatus;
extern T0_WIRE_EXPORT const QString textDescription;
extern T0_WIRE_EXPORT const QString subGroupNumber; ///< number of data rows in a change request
extern T0_WIRE_EXPORT const QString msgType;
} // namespace Orvane_Fields::System
