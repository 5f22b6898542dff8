#pragma once

#include "HostExport.h"

#include <QtCore/QStringList>

// Values of the trading business' fields, some spelled as the platform has always spelled them.

namespace Master_Values::RequestExeStatus {
extern T0_WIRE_EXPORT const QString ParticalFail; ///< part of a batch failed
extern T0_WIRE_EXPORT const QString timeout;
} // namespace Master_Values::RequestExeStatus

namespace Master_Values::Exchange {
extern T0_WIRE_EXPORT const QString bj;
} // namespace Master_Values::Exchange

namespace Master_Values::MdcSubSecurityType {
extern T0_WIRE_EXPORT const QString BjSelectedStock;
extern T0_WIRE_EXPORT const QStringList CommonStockTypeList;
extern T0_WIRE_EXPORT const QStringList HKSharesTypeList;
} // namespace Master_Values::MdcSubSecurityType

namespace Master_Values::InitTypeCode {
extern T0_WIRE_EXPORT const QString ManualT0Info; ///< prefix of the init keys; the family's number follows
} // namespace Master_Values::InitTypeCode

namespace Master_Values::AddType {
extern T0_WIRE_EXPORT const QString Cover;
extern T0_WIRE_EXPORT const QString Append;
} // namespace Master_Values::AddType

namespace Master_Values::AlterType {
extern T0_WIRE_EXPORT const QString Add;
extern T0_WIRE_EXPORT const QString Delete;
} // namespace Master_Values::AlterType

namespace Master_Values::UserRoleType {
extern T0_WIRE_EXPORT const QString OperRoles;
} // namespace Master_Values::UserRoleType

namespace Master_Values::UserRoles {
extern T0_WIRE_EXPORT const QString ManualT0Mangager;
extern T0_WIRE_EXPORT const QString ManualT0Trader;
} // namespace Master_Values::UserRoles

namespace Master_Values::FundAccountType {
extern T0_WIRE_EXPORT const QString Credit;
} // namespace Master_Values::FundAccountType

namespace Master_Values::LoanState {
extern T0_WIRE_EXPORT const QString InUse;
} // namespace Master_Values::LoanState

namespace Master_Values::OpenPositionSide {
extern T0_WIRE_EXPORT const QString BuyOpen;
extern T0_WIRE_EXPORT const QString SellOpen;
extern T0_WIRE_EXPORT const QString NoOpenPos;
} // namespace Master_Values::OpenPositionSide

namespace Master_Values::TransDayProfitOwner {
extern T0_WIRE_EXPORT const QString ProfitToOrg;
} // namespace Master_Values::TransDayProfitOwner

namespace Master_Values::SideUnion {
extern T0_WIRE_EXPORT const QString normalBuy;
extern T0_WIRE_EXPORT const QString normalSell;
extern T0_WIRE_EXPORT const QString collateralBuy;
extern T0_WIRE_EXPORT const QString collateralSell;
extern T0_WIRE_EXPORT const QStringList buyItemList; ///< the sides that buy
} // namespace Master_Values::SideUnion

namespace Master_Values::VantaBusiType {
extern T0_WIRE_EXPORT const QString ManualT0Order;
} // namespace Master_Values::VantaBusiType

namespace Master_Values::BusiMsgLevel {
enum Level { Normal = 0 };
} // namespace Master_Values::BusiMsgLevel

namespace Master_Values::BusiMsgType {
enum Type { SystemMsg = 0 };
} // namespace Master_Values::BusiMsgType
