#pragma once

#include "HostExport.h"

#include <QtCore/QString>

// Names of the host's events, each with the payload it carries.

namespace Vanta_Keys::EventMsgName {
extern T0_WIRE_EXPORT const QString ManualT0DataInited;             ///< int: the family whose load has finished
extern T0_WIRE_EXPORT const QString ManualT0ResourceUpdated;        ///< QVariantMap with tradingAccount
extern T0_WIRE_EXPORT const QString ManualT0SecurityPoolUpdated;    ///< QStringList of pool ids, new and changed
extern T0_WIRE_EXPORT const QString ManualT0SecurityPoolDeleted;    ///< QVariantList of the deleted records
extern T0_WIRE_EXPORT const QString ManualT0PoolRealTimeUpdated;    ///< QVariantList of the changed records
extern T0_WIRE_EXPORT const QString ManualT0CurTradeAccountChanged; ///< QStringList of trading accounts
extern T0_WIRE_EXPORT const QString ManualT0CurInputSymbolChanged;  ///< invalid QVariant
} // namespace Vanta_Keys::EventMsgName

namespace Vanta_Keys::BusinessName {
extern T0_WIRE_EXPORT const QString ManualT0Trade;
} // namespace Vanta_Keys::BusinessName
