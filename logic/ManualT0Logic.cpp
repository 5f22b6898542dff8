#include "ManualT0Logic.h"

#include "ManualT0LogicPlugin.h"
#include "ManualT0LogicPrivate.h"

const QString ManualT0Logic::PublicTrader = QStringLiteral("public");

ManualT0Logic::ManualT0Logic(QObject *parent)
    : QObject(parent)
{}

ManualT0Logic::~ManualT0Logic() = default;

namespace {

ManualT0LogicPrivate &hub()
{
    return ManualT0LogicPrivate::instance();
}

} // namespace

// ---- Start and refresh -----------------------------------------------------------------------------------

void ManualT0Logic::InitData()
{
    if (ManualT0LogicPlugin::start())
        hub().InitData();
}

void ManualT0Logic::RefreshData()
{
    hub().RefreshData();
}

void ManualT0Logic::RefreshDataByType(int type)
{
    hub().RefreshDataByType(type);
}

MasterInitStateMgr::InitState ManualT0Logic::GetInitStateByType(int type)
{
    return hub().GetInitStateByType(type);
}

// ---- Products and trading accounts -----------------------------------------------------------------------

QMap<QString, QStringList> ManualT0Logic::GetAllT0ProductAccount()
{
    return hub().GetAllT0ProductAccount();
}

QStringList ManualT0Logic::GetAllT0TradingAccountList()
{
    return hub().GetAllT0TradingAccountList();
}

QMap<QString, QStringList> ManualT0Logic::GetCandidateT0ProductAccount()
{
    return hub().GetCandidateT0ProductAccount();
}

QStringList ManualT0Logic::GetProductAssetPropList(const QString &productAccount)
{
    return hub().GetProductAssetPropList(productAccount);
}

bool ManualT0Logic::IsProductAndAssetPropInT0(const QString &productAccount, const QString &assetProp)
{
    return hub().IsProductAndAssetPropInT0(productAccount, assetProp);
}

QMap<QString, QString> ManualT0Logic::GetT0ProductMap()
{
    return hub().GetT0ProductMap();
}

QStringList ManualT0Logic::GetTradingAccountListByProductAndAssetProp(const QString &productAccount,
                                                                      const QString &assetProp)
{
    return hub().GetTradingAccountListByProductAndAssetProp(productAccount, assetProp);
}

QString ManualT0Logic::AlterT0ProductAccount(const QMap<QString, QStringList> &newProductMap, QString &errMsg)
{
    return hub().AlterT0ProductAccount(newProductMap, errMsg);
}

// ---- Traders ---------------------------------------------------------------------------------------------

QMap<QString, QString> ManualT0Logic::GetAllT0TraderId()
{
    return hub().GetAllT0TraderId();
}

QString ManualT0Logic::GetTraderNameByTraderId(const QString &traderId)
{
    return hub().GetTraderNameByTraderId(traderId);
}

QStringList ManualT0Logic::GetAllT0TradingAccountListByCurUser()
{
    return hub().GetAllT0TradingAccountListByCurUser();
}

// ---- Resources -------------------------------------------------------------------------------------------

RecordList ManualT0Logic::GetAllResourceList()
{
    return hub().GetAllResourceList();
}

VariantRecord ManualT0Logic::GetResourceDetailById(const QString &resourceId)
{
    return hub().GetResourceDetailById(resourceId);
}

RecordList ManualT0Logic::GetResourceByProductAccount(const QStringList &productAccounts, const QString &assetProp,
                                                      QString symbol, const QString &exchange,
                                                      const QStringList &traderIds)
{
    return hub().GetResourceByProductAccount(productAccounts, assetProp, symbol, exchange, traderIds);
}

RecordList ManualT0Logic::GetT0ResourceCandidatesList(const QStringList &productAccounts, const QString &assetProp,
                                                      bool withT0Symbols)
{
    return hub().GetT0ResourceCandidatesList(productAccounts, assetProp, withT0Symbols);
}

double ManualT0Logic::GetAllocatableQty2ResourceByTradingAccount(const QString &tradingAccount, const QString &symbol,
                                                                 const QString &exchange)
{
    return hub().GetAllocatableQty2ResourceByTradingAccount(tradingAccount, symbol, exchange);
}

double ManualT0Logic::GetAllocatableQty2Resource(const QString &productAccount, const QString &assetProp,
                                                 const QString &symbol, const QString &exchange)
{
    return hub().GetAllocatableQty2Resource(productAccount, assetProp, symbol, exchange);
}

QString ManualT0Logic::AddT0Resource(const RecordList &rows, bool cover, QString &errorText)
{
    return hub().AddT0Resource(rows, cover, errorText);
}

QString ManualT0Logic::AlterT0Resource(const VariantRecord &resource, QString &errorText)
{
    return hub().AlterT0Resource(resource, errorText);
}

QString ManualT0Logic::DeleteT0Resource(const RecordList &rows, QString &errorText)
{
    return hub().DeleteT0Resource(rows, errorText);
}

// ---- Security pools --------------------------------------------------------------------------------------

RecordList ManualT0Logic::GetAllSecurityPoolList()
{
    return hub().GetAllSecurityPoolList();
}

VariantRecord ManualT0Logic::GetSecurityPoolDetailById(const QString &poolId)
{
    return hub().GetSecurityPoolDetailById(poolId);
}

RecordList ManualT0Logic::GetSecurityPoolDetailByIdList(const QStringList &poolIdList)
{
    return hub().GetSecurityPoolDetailByIdList(poolIdList);
}

RecordList ManualT0Logic::GetSecurityPoolDetailByResourceId(const QString &resourceId, int poolType)
{
    return hub().GetSecurityPoolDetailByResourceId(resourceId, poolType);
}

RecordList ManualT0Logic::GetSecurityPoolDetailListByTradingList(const QStringList &accountList,
                                                                 const QStringList &traderIdList, const QString &symbol,
                                                                 const QString &exchange, bool withPublic)
{
    return hub().GetSecurityPoolDetailListByTradingList(accountList, traderIdList, symbol, exchange, withPublic);
}

RecordList ManualT0Logic::GetSecurityPoolDetailListByTrading(const QString &tradingAccount, const QString &traderId,
                                                             const QString &symbol, const QString &exchange)
{
    return hub().GetSecurityPoolDetailListByTrading(tradingAccount, traderId, symbol, exchange);
}

VariantRecord ManualT0Logic::GetSecurityPoolDetailByTrading(const QString &tradingAccount, const QString &traderId,
                                                            const QString &symbol, const QString &exchange)
{
    return hub().GetSecurityPoolDetailByTrading(tradingAccount, traderId, symbol, exchange);
}

RecordList ManualT0Logic::GetSecurityPoolDetail(const QString &productAccount, const QString &assetProp,
                                                const QString &traderId, const QString &symbol, const QString &exchange,
                                                bool withPublic)
{
    return hub().GetSecurityPoolDetail(productAccount, assetProp, traderId, symbol, exchange, withPublic);
}

RecordList ManualT0Logic::GetSecurityPoolDetail(const QStringList &productAccountList, const QStringList &assetPropList,
                                                const QStringList &traderIdList, const QString &symbol,
                                                const QString &exchange, bool withPublic)
{
    return hub().GetSecurityPoolDetail(productAccountList, assetPropList, traderIdList, symbol, exchange, withPublic);
}

QString ManualT0Logic::AllocatePublicResource(const RecordList &rows, QString &errorText)
{
    return hub().AllocatePublicResource(rows, errorText);
}

QString ManualT0Logic::AllocateResourceToTrader(const RecordList &rows, QString &errorText)
{
    return hub().AllocateResourceToTrader(rows, errorText);
}

QString ManualT0Logic::AddSecurityPoolAndResource(const RecordList &rows, bool cover, QString &errorText)
{
    return hub().AddSecurityPoolAndResource(rows, cover, errorText);
}

QString ManualT0Logic::DeleteSecurityPoolsByIdList(const QStringList &poolIds, QString &errorText)
{
    return hub().DeleteSecurityPoolsByIdList(poolIds, errorText);
}

// ---- Real-time usage and profit --------------------------------------------------------------------------

QString ManualT0Logic::GetRealtimePoolKey(const VariantRecord &record)
{
    return hub().GetRealtimePoolKey(record);
}

VariantRecord ManualT0Logic::GetRealtimePoolDetail(const QString &tradingAccount, const QString &traderId,
                                                   const QString &symbol, const QString &exchange)
{
    return hub().GetRealtimePoolDetail(tradingAccount, traderId, symbol, exchange);
}

RecordList ManualT0Logic::GetRealtimePoolDetailList(const QStringList &tradingAccounts, const QStringList &traderIds,
                                                    const QString &symbol, const QString &exchange)
{
    return hub().GetRealtimePoolDetailList(tradingAccounts, traderIds, symbol, exchange);
}

RecordList ManualT0Logic::GetRealtimeSumListMergeBySymbolExchange(const QStringList &tradingAccounts,
                                                                  const QString &traderId, const QString &symbol,
                                                                  const QString &exchange)
{
    return hub().GetRealtimeSumListMergeBySymbolExchange(tradingAccounts, traderId, symbol, exchange);
}

bool ManualT0Logic::CalcProfitLossByRealtimeMap(const VariantRecord &record, double lastPrice, double &floatProfit,
                                                double &realizeProfit, double &totalProfit)
{
    return hub().CalcProfitLossByRealtimeMap(record, lastPrice, floatProfit, realizeProfit, totalProfit);
}

RecordList ManualT0Logic::GetProfitLossDataList(const QStringList &tradingAccounts, const QString &traderId,
                                                const QString &symbol, const QString &exchange)
{
    return hub().GetProfitLossDataList(tradingAccounts, traderId, symbol, exchange);
}

// ---- Orders and open positions ---------------------------------------------------------------------------

QString ManualT0Logic::CheckSingleOrderData(const QStringList &tradingAccounts, const QString &symbol,
                                            const QString &exchange, const QString &sideUnion, double price,
                                            long long qty, int checkFlags)
{
    return hub().CheckSingleOrderData(tradingAccounts, symbol, exchange, sideUnion, price, qty, checkFlags);
}

QString ManualT0Logic::CheckOrderData(const RecordList &orderList, RecordList &resultList, int checkFlags)
{
    return hub().CheckOrderData(orderList, resultList, checkFlags);
}

RecordList ManualT0Logic::GetOrderConfirmMap(const RecordList &orders)
{
    return hub().GetOrderConfirmMap(orders);
}

RecordList ManualT0Logic::GetOrderConfirmMap(const RecordList &orders, RecordList &rest)
{
    return hub().GetOrderConfirmMap(orders, rest);
}

QString ManualT0Logic::Order(const RecordList &orders, RecordList &results, const QString &extraText)
{
    return hub().Order(orders, results, extraText);
}

RecordList ManualT0Logic::GetCancelableOrderList(const QStringList &accounts, const QString &symbol,
                                                 const QString &exchange, const QStringList &userIds,
                                                 const QString &side, bool fetchAll)
{
    return hub().GetCancelableOrderList(accounts, symbol, exchange, userIds, side, fetchAll);
}

QString ManualT0Logic::CancelOrderList(ZrPresenterClass *presenter, const RecordList &orders, RecordList &results)
{
    return hub().CancelOrderList(presenter, orders, results);
}

long long ManualT0Logic::GetOpenPositionByAccountAndSymbol(const QString &symbol, const QString &exchange,
                                                           const QString &side, const QStringList &accounts)
{
    return hub().GetOpenPositionByAccountAndSymbol(symbol, exchange, side, accounts);
}

RecordList ManualT0Logic::GetOpenPositionList(const QStringList &accounts, const QStringList &traderIds,
                                              const QString &symbol, const QString &exchange)
{
    return hub().GetOpenPositionList(accounts, traderIds, symbol, exchange);
}

QStringList ManualT0Logic::GetExchangeListByAccountAndSymbol(const QString &symbol, const QStringList &accounts)
{
    return hub().GetExchangeListByAccountAndSymbol(symbol, accounts);
}

// ---- Symbols, settings and the current selection ---------------------------------------------------------

QStringList ManualT0Logic::GetSupportExchangeList()
{
    return hub().GetSupportExchangeList();
}

QStringList ManualT0Logic::GetT0Symbols()
{
    return hub().GetT0Symbols();
}

QList<SymbolListType> ManualT0Logic::GetTradableSymbolListType()
{
    return hub().GetTradableSymbolListType();
}

long long ManualT0Logic::GetTradableQtyByAccountAndSymbol(const QString &tradingAccount, const QString &symbol,
                                                          const QString &exchange, const QStringList &sides)
{
    return hub().GetTradableQtyByAccountAndSymbol(tradingAccount, symbol, exchange, sides);
}

VariantRecord ManualT0Logic::GetSymbolTradeSettings(const QString &symbol, bool *found)
{
    return hub().GetSymbolTradeSettings(symbol, found);
}

bool ManualT0Logic::SetSymbolTradeSettings(const QString &symbol, const VariantRecord &settings)
{
    return hub().SetSymbolTradeSettings(symbol, settings);
}

void ManualT0Logic::DeleteSymbolTradeSettings(const QString &symbol)
{
    hub().DeleteSymbolTradeSettings(symbol);
}

QStringList ManualT0Logic::GetCurrentTradeAccount()
{
    return hub().GetCurrentTradeAccount();
}

void ManualT0Logic::SetCurrentTradeAccount(const QStringList &accounts)
{
    hub().SetCurrentTradeAccount(accounts);
}

QStringList ManualT0Logic::GetCurrentTradableSymbolList()
{
    return hub().GetCurrentTradableSymbolList();
}

QStringList ManualT0Logic::GetCurrentInputSymbolList()
{
    return hub().GetCurrentInputSymbolList();
}
