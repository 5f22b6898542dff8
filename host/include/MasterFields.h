#pragma once

#include "HostExport.h"

#include <QtCore/QString>

// Field names of the trading business. "quantity": display units in the caches, server units in
// messages; see GetDispFactorBySymbol.

namespace Master_Fields::System {
extern T0_WIRE_EXPORT const QString addType;    ///< one of Master_Values::AddType
extern T0_WIRE_EXPORT const QString alterType;  ///< one of Master_Values::AlterType
extern T0_WIRE_EXPORT const QString ModifyTime; ///< fixed width, date first, so that text order is time order
} // namespace Master_Fields::System

namespace Master_Fields::UserAccount {
extern T0_WIRE_EXPORT const QString UserRoleType;
extern T0_WIRE_EXPORT const QString UserRoleId;
} // namespace Master_Fields::UserAccount

namespace Master_Fields::ManualT0 {
extern T0_WIRE_EXPORT const QString ResourceId;
extern T0_WIRE_EXPORT const QString ResourceQty;    ///< quantity
extern T0_WIRE_EXPORT const QString PublicPoolQty;  ///< quantity
extern T0_WIRE_EXPORT const QString PrivatePoolQty; ///< quantity
extern T0_WIRE_EXPORT const QString T0SymbolFlag;
extern T0_WIRE_EXPORT const QString PoolDetailId;
extern T0_WIRE_EXPORT const QString PoolType;           ///< 0 public, 1 private
extern T0_WIRE_EXPORT const QString PoolTotalQty;       ///< quantity
extern T0_WIRE_EXPORT const QString MaxExposureQty;     ///< quantity, -1 none
extern T0_WIRE_EXPORT const QString MaxPendExposureQty; ///< quantity, -1 none
extern T0_WIRE_EXPORT const QString T0TraderId;
extern T0_WIRE_EXPORT const QString T0TraderName;
extern T0_WIRE_EXPORT const QString RtPoolTotalQty; ///< quantity
extern T0_WIRE_EXPORT const QString DailyBuyLimit;  ///< remaining quantity
extern T0_WIRE_EXPORT const QString DailySellLimit; ///< remaining quantity
extern T0_WIRE_EXPORT const QString DailyBoughtQty;
extern T0_WIRE_EXPORT const QString DailySoldQty;
extern T0_WIRE_EXPORT const QString DailyBoughtAmount;    ///< money
extern T0_WIRE_EXPORT const QString DailySoldAmount;      ///< money
extern T0_WIRE_EXPORT const QString DailyBuyTradeFee;     ///< fraction of the amount
extern T0_WIRE_EXPORT const QString DailySellTradeFee;    ///< fraction of the amount
extern T0_WIRE_EXPORT const QString PreUnclosedBuyLimit;  ///< remaining quantity
extern T0_WIRE_EXPORT const QString PreUnclosedSellLimit; ///< remaining quantity
extern T0_WIRE_EXPORT const QString PreUnclosedBoughtQty;
extern T0_WIRE_EXPORT const QString PreUnclosedSoldQty;
extern T0_WIRE_EXPORT const QString PreUnclosedBoughtAmount; ///< money
extern T0_WIRE_EXPORT const QString PreUnclosedSoldAmount;   ///< money
extern T0_WIRE_EXPORT const QString PreUnclosedSide;         ///< one of Master_Values::OpenPositionSide
extern T0_WIRE_EXPORT const QString TransDayProfitOwner;     ///< one of Master_Values::TransDayProfitOwner
extern T0_WIRE_EXPORT const QString RtTotalBuyLimit;
extern T0_WIRE_EXPORT const QString RtTotalSellLimit;
extern T0_WIRE_EXPORT const QString PreOpenQty;
extern T0_WIRE_EXPORT const QString DailyOpenQty;
extern T0_WIRE_EXPORT const QString OpenPosQty; ///< signed: above 0 long, below 0 short
extern T0_WIRE_EXPORT const QString OpenPosSide;
extern T0_WIRE_EXPORT const QString OpenAvgPrice;
extern T0_WIRE_EXPORT const QString RtRealBoughtQty;
extern T0_WIRE_EXPORT const QString RtRealSoldQty;
extern T0_WIRE_EXPORT const QString RtRealBoughtAmount;
extern T0_WIRE_EXPORT const QString RtRealSoldAmount;
extern T0_WIRE_EXPORT const QString FloatProfit;
extern T0_WIRE_EXPORT const QString RealizeProfit;
extern T0_WIRE_EXPORT const QString TotalProfit;
} // namespace Master_Fields::ManualT0

namespace Master_Fields::Security {
extern T0_WIRE_EXPORT const QString SideUnion; ///< one of Master_Values::SideUnion
extern T0_WIRE_EXPORT const QString VantaBusiType;
} // namespace Master_Fields::Security
