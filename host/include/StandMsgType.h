#pragma once

#include "HostExport.h"

#include <QtCore/QString>

// Message types of this stand-in: login, reference data, subscription, orders and the console's control.

namespace Stand_MsgType {
extern T0_WIRE_EXPORT const QString LoginRequest;                 ///< row {userID}; answer: the user's detail row
extern T0_WIRE_EXPORT const QString QueryAccountsRequest;         ///< answer: one row an account of the user
extern T0_WIRE_EXPORT const QString QueryInstrumentsRequest;      ///< ByPos; answer: one row an instrument and exchange
extern T0_WIRE_EXPORT const QString QueryPositionsRequest;        ///< ByPos
extern T0_WIRE_EXPORT const QString QueryMarginSecuritiesRequest; ///< ByPos
extern T0_WIRE_EXPORT const QString QueryQuotesRequest;           ///< ByPos; answer: the rows of QuotePush
extern T0_WIRE_EXPORT const QString SubscribeRequest;             ///< values pushType, serviceName; row: the filter
extern T0_WIRE_EXPORT const QString QuotePush;                    ///< row {symbol, the fields of Stand_Fields::Quote}
extern T0_WIRE_EXPORT const QString SetQuoteRequest;              ///< console: row {symbol, lastPrice}
extern T0_WIRE_EXPORT const QString
    PushUsageRequest; ///< console: the row is pushed as it is to the clients that subscribed its trader
extern T0_WIRE_EXPORT const QString
    PictureRequest; ///< console, of managers: answer: what the server itself holds, see Stand_Fields::Picture
extern T0_WIRE_EXPORT const QString
    EchoRequest; ///< answered at once and in order, after every push that was due before it

/// First row: what the orders have in common; then one row an order. Answer: success when the list was processed, with
/// one row per order {requestExeStatus, orderID or textDescription}; else nothing was. Carried out once per request id.
extern T0_WIRE_EXPORT const QString OrderRequest;
/// Row {Stand_Fields::Order::requestId}. Answer: the values Stand_Fields::Order::known and, when true, fateStatus and
/// fateText with the rows that answered the request. What is unknown after its time will never be carried out.
extern T0_WIRE_EXPORT const QString QueryRequestFateRequest;
extern T0_WIRE_EXPORT const QString QueryOrdersRequest; ///< ByPos; answer: the rows of OrderPush
extern T0_WIRE_EXPORT const QString QueryFillsRequest;  ///< ByPos; answer: the rows of FillPush
extern T0_WIRE_EXPORT const QString OrderPush;          ///< one whole order
extern T0_WIRE_EXPORT const QString FillPush;           ///< one fill
extern T0_WIRE_EXPORT const QString PositionPush;       ///< one row as of QueryPositionsRequest
extern T0_WIRE_EXPORT const QString MarketPush;         ///< row {marketTime, phases, held, speed}
extern T0_WIRE_EXPORT const QString
    ExchangeControlRequest; ///< row {Stand_Fields::Market::command, count, speed}; answer: the row of MarketPush

/// ByPos; answer: what each trader is held to, one row a trader; a manager sees everybody's, others their own.
extern T0_WIRE_EXPORT const QString QuerySafetyRulesRequest;
/// Of managers. First row: a header; then one row a trader {T0TraderId, the fields of Stand_Fields::Safety}; what a row
/// does not name stays. Answer: the rows as they are now.
extern T0_WIRE_EXPORT const QString AlterSafetyRulesRequest;
extern T0_WIRE_EXPORT const QString SafetyRulesPush; ///< a row of the query that has changed
} // namespace Stand_MsgType
