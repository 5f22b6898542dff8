#pragma once

#include "HostExport.h"

#include <QtCore/QString>

// Keys of the host's settings and search texts.

namespace Constants {
extern T0_WIRE_EXPORT const QString SymbolSearch_Split; ///< between the parts of a search text
} // namespace Constants

namespace MasterConstants::SettingFieldName::ManualT0Settings {
extern T0_WIRE_EXPORT const QString TradeSymbolSetting;
extern T0_WIRE_EXPORT const QString TradeCustQty;
} // namespace MasterConstants::SettingFieldName::ManualT0Settings
