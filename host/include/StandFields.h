#pragma once

#include "HostExport.h"

#include <QtCore/QString>

// Field names of this stand-in, for what the platform's own constants do not name.

namespace Stand_Fields::Account {
extern T0_WIRE_EXPORT const QString
    assetProp; ///< Stand_Values::AssetProp::Cash or Master_Values::FundAccountType::Credit
extern T0_WIRE_EXPORT const QString accountText;
extern T0_WIRE_EXPORT const QString productName;
extern T0_WIRE_EXPORT const QString exchanges; ///< list of exchanges
extern T0_WIRE_EXPORT const QString enabled;   ///< bool, enabled for T0
} // namespace Stand_Fields::Account

namespace Stand_Fields::Security {
extern T0_WIRE_EXPORT const QString type;
extern T0_WIRE_EXPORT const QString subType;
extern T0_WIRE_EXPORT const QString marketSuffix;
extern T0_WIRE_EXPORT const QString preClose;
extern T0_WIRE_EXPORT const QString upLimit;
extern T0_WIRE_EXPORT const QString downLimit;
extern T0_WIRE_EXPORT const QString tickTable;
extern T0_WIRE_EXPORT const QString pricePrecision;
extern T0_WIRE_EXPORT const QString qtyStep;
extern T0_WIRE_EXPORT const QString minQty;
extern T0_WIRE_EXPORT const QString maxQty;
extern T0_WIRE_EXPORT const QString lotSize;
extern T0_WIRE_EXPORT const QString dispFactor; ///< display units of one server unit
extern T0_WIRE_EXPORT const QString t0;         ///< bool, natively T+0
extern T0_WIRE_EXPORT const QString marks;
} // namespace Stand_Fields::Security

namespace Stand_Fields::Position {
extern T0_WIRE_EXPORT const QString quantity;
extern T0_WIRE_EXPORT const QString tradeable;
} // namespace Stand_Fields::Position

namespace Stand_Fields::Margin {
extern T0_WIRE_EXPORT const QString quantity; ///< securities that may be borrowed
extern T0_WIRE_EXPORT const QString loanState;
} // namespace Stand_Fields::Margin

namespace Stand_Fields::Quote {
extern T0_WIRE_EXPORT const QString lastPrice;
} // namespace Stand_Fields::Quote

namespace Stand_Fields::User {
extern T0_WIRE_EXPORT const QString roles; ///< list of Master_Values::UserRoles
} // namespace Stand_Fields::User

namespace Stand_Fields::Paging {
extern T0_WIRE_EXPORT const QString pageSize;
extern T0_WIRE_EXPORT const QString position;  ///< empty: the first page; in an answer: none follows
extern T0_WIRE_EXPORT const QString pageIndex; ///< from 0
extern T0_WIRE_EXPORT const QString hasMore;   ///< bool, another page follows
} // namespace Stand_Fields::Paging

namespace Stand_Fields::Subscription {
extern T0_WIRE_EXPORT const QString pushType;
extern T0_WIRE_EXPORT const QString serviceName;
} // namespace Stand_Fields::Subscription

namespace Stand_Fields::Session {
extern T0_WIRE_EXPORT const QString reconnected; ///< bool of a login: it repeats that of a lost connection
} // namespace Stand_Fields::Session

/// Values of the answer to a PictureRequest: rows by family, of the enabled accounts, in display units, with their
/// symbols.
namespace Stand_Fields::Picture {
extern T0_WIRE_EXPORT const QString Products;
extern T0_WIRE_EXPORT const QString Resources;
extern T0_WIRE_EXPORT const QString SecurityPools;
extern T0_WIRE_EXPORT const QString RealtimeUsage;
extern T0_WIRE_EXPORT const QString tradingAccounts; ///< field of Products: list of the enabled ones, ascending
} // namespace Stand_Fields::Picture

namespace Stand_Values::AssetProp {
extern T0_WIRE_EXPORT const QString Cash;
} // namespace Stand_Values::AssetProp
