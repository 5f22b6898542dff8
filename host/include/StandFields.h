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
extern T0_WIRE_EXPORT const QString tickBands; ///< list of doubles: from, to, tick of each band in order; to 0: no end
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
extern T0_WIRE_EXPORT const QString preClose;
extern T0_WIRE_EXPORT const QString upLimit;
extern T0_WIRE_EXPORT const QString downLimit;
extern T0_WIRE_EXPORT const QString volume;    ///< display units
extern T0_WIRE_EXPORT const QString bidPrices; ///< lists, best first, up to five levels; empty: no depth
extern T0_WIRE_EXPORT const QString bidQtys;   ///< display units
extern T0_WIRE_EXPORT const QString askPrices;
extern T0_WIRE_EXPORT const QString askQtys; ///< display units
extern T0_WIRE_EXPORT const QString
    bidQueue; ///< quantities of the single orders at the best level, first in queue first
extern T0_WIRE_EXPORT const QString askQueue;
} // namespace Stand_Fields::Quote

namespace Stand_Fields::Order {
extern T0_WIRE_EXPORT const QString businessName; ///< one of Vanta_Keys::BusinessName
extern T0_WIRE_EXPORT const QString confirmed;    ///< bool, the user has confirmed the orders
extern T0_WIRE_EXPORT const QString remark;
extern T0_WIRE_EXPORT const QString priceType;    ///< one of Orvane_Values::PriceType
extern T0_WIRE_EXPORT const QString requestId;    ///< of the request that carried the order
extern T0_WIRE_EXPORT const QString known;        ///< bool, the server has carried the request out or refused it
extern T0_WIRE_EXPORT const QString fateStatus;   ///< requestExeStatus of the answer that was given then
extern T0_WIRE_EXPORT const QString fateText;     ///< textDescription of the answer that was given then
extern T0_WIRE_EXPORT const QString filledQty;    ///< display units
extern T0_WIRE_EXPORT const QString filledAmount; ///< money
extern T0_WIRE_EXPORT const QString orderTime;    ///< text yyyy-MM-dd HH:mm:ss.zzz, the market's clock
extern T0_WIRE_EXPORT const QString updateTime;   ///< of the last change, as orderTime
} // namespace Stand_Fields::Order

namespace Stand_Fields::Fill {
extern T0_WIRE_EXPORT const QString fillID;
extern T0_WIRE_EXPORT const QString fillQty;  ///< display units
extern T0_WIRE_EXPORT const QString fillTime; ///< as Stand_Fields::Order::orderTime
} // namespace Stand_Fields::Fill

namespace Stand_Fields::Market {
extern T0_WIRE_EXPORT const QString marketTime; ///< text yyyy-MM-dd HH:mm:ss
extern T0_WIRE_EXPORT const QString phases;     ///< map of market to phase name
extern T0_WIRE_EXPORT const QString held;       ///< bool, the market's clock stands still
extern T0_WIRE_EXPORT const QString speed;      ///< seconds of the market in one real second
extern T0_WIRE_EXPORT const QString command;    ///< one of Stand_Values::MarketCommand
extern T0_WIRE_EXPORT const QString count;      ///< of steps, one second of the market each
} // namespace Stand_Fields::Market

/// What a trader is held to, beside his field Master_Fields::ManualT0::T0TraderId.
namespace Stand_Fields::Safety {
extern T0_WIRE_EXPORT const QString tradeSwitch;      ///< one of Stand_Values::TradeSwitch
extern T0_WIRE_EXPORT const QString ordersPerSecond;  ///< whole number; 0: no limit
extern T0_WIRE_EXPORT const QString cancelsPerMinute; ///< whole number; 0: no limit
extern T0_WIRE_EXPORT const QString duplicateMs;      ///< for how long an order is not taken again; 0: it is
extern T0_WIRE_EXPORT const QString refuseSelfMatch;  ///< bool, no order that would meet one of its own product
} // namespace Stand_Fields::Safety

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

namespace Stand_Values::Side {
extern T0_WIRE_EXPORT const QString buy;
extern T0_WIRE_EXPORT const QString sell;
} // namespace Stand_Values::Side

namespace Stand_Values::OrderStatus {
extern T0_WIRE_EXPORT const QString Accepted;
extern T0_WIRE_EXPORT const QString PartlyFilled;
extern T0_WIRE_EXPORT const QString Filled;
extern T0_WIRE_EXPORT const QString Cancelled;
extern T0_WIRE_EXPORT const QString Expired;
} // namespace Stand_Values::OrderStatus

namespace Stand_Values::MarketCommand {
extern T0_WIRE_EXPORT const QString status;
extern T0_WIRE_EXPORT const QString step;
extern T0_WIRE_EXPORT const QString hold;
extern T0_WIRE_EXPORT const QString run;
extern T0_WIRE_EXPORT const QString dayChange;
} // namespace Stand_Values::MarketCommand

namespace Stand_Values::TradeSwitch {
extern T0_WIRE_EXPORT const QString Active;
extern T0_WIRE_EXPORT const QString ReduceOnly; ///< only orders that bring an open position nearer to zero
extern T0_WIRE_EXPORT const QString Halted;     ///< no orders
} // namespace Stand_Values::TradeSwitch
