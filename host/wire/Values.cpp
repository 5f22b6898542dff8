#include "MasterConstants.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneValues.h"
#include "StandMsgType.h"
#include "VantaKeys.h"

// QStringLiteral: the data is static, so a constant may still be read while the process ends.
#define TEXT_OF_ITS_NAME(scope, name) const QString scope::name = QStringLiteral(#name)

TEXT_OF_ITS_NAME(Orvane_Values::RequestExeStatus, success);
TEXT_OF_ITS_NAME(Orvane_Values::RequestExeStatus, fail);

const QString Orvane_Values::Exchange::sh = QStringLiteral("SH");
const QString Orvane_Values::Exchange::sz = QStringLiteral("SZ");
const QString Orvane_Values::Exchange::hhk = QStringLiteral("HHK");
const QString Orvane_Values::Exchange::szhk = QStringLiteral("SZHK");

const QString Orvane_Values::SymbolPost::sh = QStringLiteral(".SH");
const QString Orvane_Values::SymbolPost::sz = QStringLiteral(".SZ");
const QString Orvane_Values::SymbolPost::bj = QStringLiteral(".BJ");
const QString Orvane_Values::SymbolPost::hk = QStringLiteral(".HK");

TEXT_OF_ITS_NAME(Orvane_Values::MdcSecurityType, StockType);
TEXT_OF_ITS_NAME(Orvane_Values::MdcSecurityType, FundType);
TEXT_OF_ITS_NAME(Orvane_Values::MdcSecurityType, BondType);

TEXT_OF_ITS_NAME(Orvane_Values::MdcSubSecurityType, Convertiblebond);
TEXT_OF_ITS_NAME(Orvane_Values::MdcSubSecurityType, TradingopenindexfundETF);

TEXT_OF_ITS_NAME(Master_Values::RequestExeStatus, ParticalFail);
TEXT_OF_ITS_NAME(Master_Values::RequestExeStatus, timeout);

const QString Master_Values::Exchange::bj = QStringLiteral("BJ");

TEXT_OF_ITS_NAME(Master_Values::MdcSubSecurityType, BjSelectedStock);
const QStringList Master_Values::MdcSubSecurityType::CommonStockTypeList = {
    QStringLiteral("MainBoardStock"), QStringLiteral("GrowthBoardStock"), QStringLiteral("TechnologyBoardStock")};
const QStringList Master_Values::MdcSubSecurityType::HKSharesTypeList = {QStringLiteral("HKShares")};

TEXT_OF_ITS_NAME(Master_Values::InitTypeCode, ManualT0Info);

TEXT_OF_ITS_NAME(Master_Values::AddType, Cover);
TEXT_OF_ITS_NAME(Master_Values::AddType, Append);

TEXT_OF_ITS_NAME(Master_Values::AlterType, Add);
TEXT_OF_ITS_NAME(Master_Values::AlterType, Delete);

TEXT_OF_ITS_NAME(Master_Values::UserRoleType, OperRoles);

TEXT_OF_ITS_NAME(Master_Values::UserRoles, ManualT0Mangager);
TEXT_OF_ITS_NAME(Master_Values::UserRoles, ManualT0Trader);

TEXT_OF_ITS_NAME(Master_Values::FundAccountType, Credit);

TEXT_OF_ITS_NAME(Master_Values::LoanState, InUse);

TEXT_OF_ITS_NAME(Master_Values::OpenPositionSide, BuyOpen);
TEXT_OF_ITS_NAME(Master_Values::OpenPositionSide, SellOpen);
TEXT_OF_ITS_NAME(Master_Values::OpenPositionSide, NoOpenPos);

TEXT_OF_ITS_NAME(Master_Values::TransDayProfitOwner, ProfitToOrg);

TEXT_OF_ITS_NAME(Vanta_Keys::EventMsgName, ManualT0DataInited);
TEXT_OF_ITS_NAME(Vanta_Keys::EventMsgName, ManualT0ResourceUpdated);
TEXT_OF_ITS_NAME(Vanta_Keys::EventMsgName, ManualT0SecurityPoolUpdated);
TEXT_OF_ITS_NAME(Vanta_Keys::EventMsgName, ManualT0SecurityPoolDeleted);
TEXT_OF_ITS_NAME(Vanta_Keys::EventMsgName, ManualT0PoolRealTimeUpdated);
TEXT_OF_ITS_NAME(Vanta_Keys::EventMsgName, ManualT0CurTradeAccountChanged);
TEXT_OF_ITS_NAME(Vanta_Keys::EventMsgName, ManualT0CurInputSymbolChanged);

TEXT_OF_ITS_NAME(Master_MsgType, QueryManualT0ProductsRequest);
TEXT_OF_ITS_NAME(Master_MsgType, QueryManualT0ProductsResponse);
TEXT_OF_ITS_NAME(Master_MsgType, QueryUserIdByUserRoleRequest);
TEXT_OF_ITS_NAME(Master_MsgType, QueryManualT0ResourceRequest);
TEXT_OF_ITS_NAME(Master_MsgType, QueryManualT0SecurityPoolRequest);
TEXT_OF_ITS_NAME(Master_MsgType, QueryManualT0RealTimePoolUsageRequest);
TEXT_OF_ITS_NAME(Master_MsgType, QueryManualT0TraderAccountPriorityRequest);
TEXT_OF_ITS_NAME(Master_MsgType, ManualT0RealTimePoolUsagePush);
TEXT_OF_ITS_NAME(Master_MsgType, AlterManualT0ProductsRequest);
TEXT_OF_ITS_NAME(Master_MsgType, AddManualT0ResourceRequest);
TEXT_OF_ITS_NAME(Master_MsgType, AlterManualT0ResourceRequest);
TEXT_OF_ITS_NAME(Master_MsgType, DeleteManualT0ResourceRequest);
TEXT_OF_ITS_NAME(Master_MsgType, AllocateManualT0SecurityPoolRequest);
TEXT_OF_ITS_NAME(Master_MsgType, AlterManualT0SecurityPoolRequest);
TEXT_OF_ITS_NAME(Master_MsgType, DeleteManualT0SecurityPoolRequest);
TEXT_OF_ITS_NAME(Master_MsgType, AddManualT0ResourceAndPoolRequest);
TEXT_OF_ITS_NAME(Master_MsgType, orderCancelBatchCppRequest);

TEXT_OF_ITS_NAME(Stand_MsgType, LoginRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, QueryAccountsRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, QueryInstrumentsRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, QueryPositionsRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, QueryMarginSecuritiesRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, QueryQuotesRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, SubscribeRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, QuotePush);
TEXT_OF_ITS_NAME(Stand_MsgType, SetQuoteRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, PushUsageRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, PictureRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, EchoRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, OrderRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, QueryRequestFateRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, QueryOrdersRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, QueryFillsRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, OrderPush);
TEXT_OF_ITS_NAME(Stand_MsgType, FillPush);
TEXT_OF_ITS_NAME(Stand_MsgType, PositionPush);
TEXT_OF_ITS_NAME(Stand_MsgType, MarketPush);
TEXT_OF_ITS_NAME(Stand_MsgType, ExchangeControlRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, QuerySafetyRulesRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, AlterSafetyRulesRequest);
TEXT_OF_ITS_NAME(Stand_MsgType, SafetyRulesPush);

const QString Constants::SymbolSearch_Split = QStringLiteral("|");

TEXT_OF_ITS_NAME(MasterConstants::SettingFieldName::ManualT0Settings, TradeSymbolSetting);
TEXT_OF_ITS_NAME(MasterConstants::SettingFieldName::ManualT0Settings, TradeCustQty);

TEXT_OF_ITS_NAME(Orvane_Values::PriceType, limit);

TEXT_OF_ITS_NAME(Master_Values::SideUnion, normalBuy);
TEXT_OF_ITS_NAME(Master_Values::SideUnion, normalSell);
TEXT_OF_ITS_NAME(Master_Values::SideUnion, collateralBuy);
TEXT_OF_ITS_NAME(Master_Values::SideUnion, collateralSell);
const QStringList Master_Values::SideUnion::buyItemList = {normalBuy, collateralBuy};

TEXT_OF_ITS_NAME(Master_Values::VantaBusiType, ManualT0Order);

TEXT_OF_ITS_NAME(Vanta_Keys::BusinessName, ManualT0Trade);
