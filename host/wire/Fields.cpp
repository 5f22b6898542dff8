#include "MasterFields.h"
#include "OrvaneFields.h"
#include "StandFields.h"

// QStringLiteral: the data is static, so a constant may still be read while the process ends.
#define TEXT_OF_ITS_NAME(scope, name) const QString scope::name = QStringLiteral(#name)

TEXT_OF_ITS_NAME(Orvane_Fields::UserAccount, tradingAccount);
TEXT_OF_ITS_NAME(Orvane_Fields::UserAccount, productAccount);
TEXT_OF_ITS_NAME(Orvane_Fields::UserAccount, securityExchange);
TEXT_OF_ITS_NAME(Orvane_Fields::UserAccount, loginUserId);
TEXT_OF_ITS_NAME(Orvane_Fields::UserAccount, userID);
TEXT_OF_ITS_NAME(Orvane_Fields::UserAccount, userName);
TEXT_OF_ITS_NAME(Orvane_Fields::UserAccount, organCode);

TEXT_OF_ITS_NAME(Orvane_Fields::Security, symbol);
TEXT_OF_ITS_NAME(Orvane_Fields::Security, securityID);
TEXT_OF_ITS_NAME(Orvane_Fields::Security, chineseName);
TEXT_OF_ITS_NAME(Orvane_Fields::Security, spellCode);
TEXT_OF_ITS_NAME(Orvane_Fields::Security, side);
TEXT_OF_ITS_NAME(Orvane_Fields::Security, price);
TEXT_OF_ITS_NAME(Orvane_Fields::Security, orderQty);
TEXT_OF_ITS_NAME(Orvane_Fields::Security, orderID);
TEXT_OF_ITS_NAME(Orvane_Fields::Security, orderStatus);
TEXT_OF_ITS_NAME(Orvane_Fields::Security, orderStation);
TEXT_OF_ITS_NAME(Orvane_Fields::Security, transActTime);

TEXT_OF_ITS_NAME(Orvane_Fields::System, requestExeStatus);
TEXT_OF_ITS_NAME(Orvane_Fields::System, textDescription);
TEXT_OF_ITS_NAME(Orvane_Fields::System, subGroupNumber);
TEXT_OF_ITS_NAME(Orvane_Fields::System, msgType);

TEXT_OF_ITS_NAME(Master_Fields::System, addType);
TEXT_OF_ITS_NAME(Master_Fields::System, alterType);
TEXT_OF_ITS_NAME(Master_Fields::System, ModifyTime);

TEXT_OF_ITS_NAME(Master_Fields::UserAccount, UserRoleType);
TEXT_OF_ITS_NAME(Master_Fields::UserAccount, UserRoleId);

TEXT_OF_ITS_NAME(Master_Fields::ManualT0, ResourceId);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, ResourceQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PublicPoolQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PrivatePoolQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, T0SymbolFlag);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PoolDetailId);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PoolType);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PoolTotalQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, MaxExposureQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, MaxPendExposureQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, T0TraderId);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, T0TraderName);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, RtPoolTotalQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, DailyBuyLimit);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, DailySellLimit);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, DailyBoughtQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, DailySoldQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, DailyBoughtAmount);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, DailySoldAmount);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, DailyBuyTradeFee);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, DailySellTradeFee);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PreUnclosedBuyLimit);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PreUnclosedSellLimit);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PreUnclosedBoughtQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PreUnclosedSoldQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PreUnclosedBoughtAmount);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PreUnclosedSoldAmount);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PreUnclosedSide);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, TransDayProfitOwner);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, RtTotalBuyLimit);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, RtTotalSellLimit);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, PreOpenQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, DailyOpenQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, OpenPosQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, OpenPosSide);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, OpenAvgPrice);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, RtRealBoughtQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, RtRealSoldQty);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, RtRealBoughtAmount);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, RtRealSoldAmount);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, FloatProfit);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, RealizeProfit);
TEXT_OF_ITS_NAME(Master_Fields::ManualT0, TotalProfit);

TEXT_OF_ITS_NAME(Stand_Fields::Account, assetProp);
TEXT_OF_ITS_NAME(Stand_Fields::Account, accountText);
TEXT_OF_ITS_NAME(Stand_Fields::Account, productName);
TEXT_OF_ITS_NAME(Stand_Fields::Account, exchanges);
TEXT_OF_ITS_NAME(Stand_Fields::Account, enabled);

TEXT_OF_ITS_NAME(Stand_Fields::Security, type);
TEXT_OF_ITS_NAME(Stand_Fields::Security, subType);
TEXT_OF_ITS_NAME(Stand_Fields::Security, marketSuffix);
TEXT_OF_ITS_NAME(Stand_Fields::Security, preClose);
TEXT_OF_ITS_NAME(Stand_Fields::Security, upLimit);
TEXT_OF_ITS_NAME(Stand_Fields::Security, downLimit);
TEXT_OF_ITS_NAME(Stand_Fields::Security, tickTable);
TEXT_OF_ITS_NAME(Stand_Fields::Security, pricePrecision);
TEXT_OF_ITS_NAME(Stand_Fields::Security, qtyStep);
TEXT_OF_ITS_NAME(Stand_Fields::Security, minQty);
TEXT_OF_ITS_NAME(Stand_Fields::Security, maxQty);
TEXT_OF_ITS_NAME(Stand_Fields::Security, lotSize);
TEXT_OF_ITS_NAME(Stand_Fields::Security, dispFactor);
TEXT_OF_ITS_NAME(Stand_Fields::Security, t0);
TEXT_OF_ITS_NAME(Stand_Fields::Security, marks);
TEXT_OF_ITS_NAME(Stand_Fields::Security, tickBands);

TEXT_OF_ITS_NAME(Stand_Fields::Position, quantity);
TEXT_OF_ITS_NAME(Stand_Fields::Position, tradeable);

TEXT_OF_ITS_NAME(Stand_Fields::Margin, quantity);
TEXT_OF_ITS_NAME(Stand_Fields::Margin, loanState);

TEXT_OF_ITS_NAME(Stand_Fields::Quote, lastPrice);
TEXT_OF_ITS_NAME(Stand_Fields::Quote, preClose);
TEXT_OF_ITS_NAME(Stand_Fields::Quote, upLimit);
TEXT_OF_ITS_NAME(Stand_Fields::Quote, downLimit);
TEXT_OF_ITS_NAME(Stand_Fields::Quote, volume);
TEXT_OF_ITS_NAME(Stand_Fields::Quote, bidPrices);
TEXT_OF_ITS_NAME(Stand_Fields::Quote, bidQtys);
TEXT_OF_ITS_NAME(Stand_Fields::Quote, askPrices);
TEXT_OF_ITS_NAME(Stand_Fields::Quote, askQtys);
TEXT_OF_ITS_NAME(Stand_Fields::Quote, bidQueue);
TEXT_OF_ITS_NAME(Stand_Fields::Quote, askQueue);

TEXT_OF_ITS_NAME(Stand_Fields::Order, businessName);
TEXT_OF_ITS_NAME(Stand_Fields::Order, confirmed);
TEXT_OF_ITS_NAME(Stand_Fields::Order, remark);
TEXT_OF_ITS_NAME(Stand_Fields::Order, priceType);
TEXT_OF_ITS_NAME(Stand_Fields::Order, requestId);
TEXT_OF_ITS_NAME(Stand_Fields::Order, known);
TEXT_OF_ITS_NAME(Stand_Fields::Order, fateStatus);
TEXT_OF_ITS_NAME(Stand_Fields::Order, fateText);
TEXT_OF_ITS_NAME(Stand_Fields::Order, filledQty);
TEXT_OF_ITS_NAME(Stand_Fields::Order, filledAmount);
TEXT_OF_ITS_NAME(Stand_Fields::Order, orderTime);
TEXT_OF_ITS_NAME(Stand_Fields::Order, updateTime);

TEXT_OF_ITS_NAME(Stand_Fields::Fill, fillID);
TEXT_OF_ITS_NAME(Stand_Fields::Fill, fillQty);
TEXT_OF_ITS_NAME(Stand_Fields::Fill, fillTime);

TEXT_OF_ITS_NAME(Stand_Fields::Safety, tradeSwitch);
TEXT_OF_ITS_NAME(Stand_Fields::Safety, ordersPerSecond);
TEXT_OF_ITS_NAME(Stand_Fields::Safety, cancelsPerMinute);
TEXT_OF_ITS_NAME(Stand_Fields::Safety, duplicateMs);
TEXT_OF_ITS_NAME(Stand_Fields::Safety, refuseSelfMatch);

TEXT_OF_ITS_NAME(Stand_Fields::Market, marketTime);
TEXT_OF_ITS_NAME(Stand_Fields::Market, phases);
TEXT_OF_ITS_NAME(Stand_Fields::Market, held);
TEXT_OF_ITS_NAME(Stand_Fields::Market, speed);
TEXT_OF_ITS_NAME(Stand_Fields::Market, command);
TEXT_OF_ITS_NAME(Stand_Fields::Market, count);

TEXT_OF_ITS_NAME(Stand_Fields::User, roles);

TEXT_OF_ITS_NAME(Stand_Fields::Paging, pageSize);
TEXT_OF_ITS_NAME(Stand_Fields::Paging, position);
TEXT_OF_ITS_NAME(Stand_Fields::Paging, pageIndex);
TEXT_OF_ITS_NAME(Stand_Fields::Paging, hasMore);

TEXT_OF_ITS_NAME(Stand_Fields::Subscription, pushType);
TEXT_OF_ITS_NAME(Stand_Fields::Subscription, serviceName);

TEXT_OF_ITS_NAME(Stand_Fields::Session, reconnected);

TEXT_OF_ITS_NAME(Stand_Fields::Picture, Products);
TEXT_OF_ITS_NAME(Stand_Fields::Picture, Resources);
TEXT_OF_ITS_NAME(Stand_Fields::Picture, SecurityPools);
TEXT_OF_ITS_NAME(Stand_Fields::Picture, RealtimeUsage);
TEXT_OF_ITS_NAME(Stand_Fields::Picture, tradingAccounts);

TEXT_OF_ITS_NAME(Master_Fields::Security, SideUnion);
TEXT_OF_ITS_NAME(Master_Fields::Security, VantaBusiType);

TEXT_OF_ITS_NAME(Stand_Values::AssetProp, Cash);

TEXT_OF_ITS_NAME(Stand_Values::Side, buy);
TEXT_OF_ITS_NAME(Stand_Values::Side, sell);

TEXT_OF_ITS_NAME(Stand_Values::OrderStatus, Accepted);
TEXT_OF_ITS_NAME(Stand_Values::OrderStatus, PartlyFilled);
TEXT_OF_ITS_NAME(Stand_Values::OrderStatus, Filled);
TEXT_OF_ITS_NAME(Stand_Values::OrderStatus, Cancelled);
TEXT_OF_ITS_NAME(Stand_Values::OrderStatus, Expired);

TEXT_OF_ITS_NAME(Stand_Values::MarketCommand, status);
TEXT_OF_ITS_NAME(Stand_Values::MarketCommand, step);
TEXT_OF_ITS_NAME(Stand_Values::MarketCommand, hold);
TEXT_OF_ITS_NAME(Stand_Values::MarketCommand, run);
TEXT_OF_ITS_NAME(Stand_Values::MarketCommand, dayChange);

TEXT_OF_ITS_NAME(Stand_Values::TradeSwitch, Active);
TEXT_OF_ITS_NAME(Stand_Values::TradeSwitch, ReduceOnly);
TEXT_OF_ITS_NAME(Stand_Values::TradeSwitch, Halted);
