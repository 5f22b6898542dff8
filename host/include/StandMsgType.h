#pragma once

#include "HostExport.h"

#include <QtCore/QString>

// Message types of this stand-in: login, reference data, subscription and the console's control.

namespace Stand_MsgType {
extern T0_WIRE_EXPORT const QString LoginRequest;                 ///< row {userID}; answer: the user's detail row
extern T0_WIRE_EXPORT const QString QueryAccountsRequest;         ///< answer: one row an account of the user
extern T0_WIRE_EXPORT const QString QueryInstrumentsRequest;      ///< ByPos; answer: one row an instrument and exchange
extern T0_WIRE_EXPORT const QString QueryPositionsRequest;        ///< ByPos
extern T0_WIRE_EXPORT const QString QueryMarginSecuritiesRequest; ///< ByPos
extern T0_WIRE_EXPORT const QString QueryQuotesRequest;           ///< ByPos; answer: symbol, lastPrice
extern T0_WIRE_EXPORT const QString SubscribeRequest;             ///< values pushType, serviceName; row: the filter
extern T0_WIRE_EXPORT const QString QuotePush;                    ///< row {symbol, lastPrice}
extern T0_WIRE_EXPORT const QString SetQuoteRequest;              ///< console: row {symbol, lastPrice}
extern T0_WIRE_EXPORT const QString
    PushUsageRequest; ///< console: the row is pushed as it is to the clients that subscribed its trader
extern T0_WIRE_EXPORT const QString
    PictureRequest; ///< console, of managers: answer: what the server itself holds, see Stand_Fields::Picture
extern T0_WIRE_EXPORT const QString
    EchoRequest; ///< answered at once and in order, after every push that was due before it
} // namespace Stand_MsgType
