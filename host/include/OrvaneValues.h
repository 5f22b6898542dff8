#pragma once

#include "HostExport.h"

#include <QtCore/QString>

// Values of the platform's fields. Result codes are texts, none of them empty.

namespace Orvane_Values::RequestExeStatus {
extern T0_WIRE_EXPORT const QString success;
extern T0_WIRE_EXPORT const QString fail;
} // namespace Orvane_Values::RequestExeStatus

namespace Orvane_Values::Exchange {
extern T0_WIRE_EXPORT const QString sh;
extern T0_WIRE_EXPORT const QString sz;
extern T0_WIRE_EXPORT const QString hhk;
extern T0_WIRE_EXPORT const QString szhk;
} // namespace Orvane_Values::Exchange

namespace Orvane_Values::SymbolPost {
extern T0_WIRE_EXPORT const QString sh;
extern T0_WIRE_EXPORT const QString sz;
extern T0_WIRE_EXPORT const QString bj;
extern T0_WIRE_EXPORT const QString hk;
} // namespace Orvane_Values::SymbolPost

namespace Orvane_Values::MdcSecurityType {
extern T0_WIRE_EXPORT const QString StockType;
extern T0_WIRE_EXPORT const QString FundType;
extern T0_WIRE_EXPORT const QString BondType;
} // namespace Orvane_Values::MdcSecurityType

namespace Orvane_Values::MdcSubSecurityType {
extern T0_WIRE_EXPORT const QString Convertiblebond;
extern T0_WIRE_EXPORT const QString TradingopenindexfundETF;
} // namespace Orvane_Values::MdcSubSecurityType

namespace Orvane_Values::PriceType {
extern T0_WIRE_EXPORT const QString limit;
} // namespace Orvane_Values::PriceType
