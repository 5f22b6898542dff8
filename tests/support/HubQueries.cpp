#include "HubQueries.h"

#include "ManualT0LogicPrivate.h"

namespace {

int askProducts(const ManualT0LogicPrivate &hub, const HubFilter &f)
{
    const QString product = f.products.value(0);
    const QString assetProp = f.assetProps.value(0);
    return hub.GetAllT0ProductAccount().size() + hub.GetAllT0TradingAccountList().size() +
           hub.GetCandidateT0ProductAccount().size() + hub.GetProductAssetPropList(product).size() +
           hub.GetT0ProductMap().size() + hub.GetTradingAccountListByProductAndAssetProp(product, assetProp).size() +
           int(hub.IsProductAndAssetPropInT0(product, assetProp)) + hub.GetAllT0TraderId().size() +
           hub.GetTraderNameByTraderId(f.traders.value(0)).size() + hub.GetAllT0TradingAccountListByCurUser().size();
}

int askResources(const ManualT0LogicPrivate &hub, const HubFilter &f)
{
    const QString product = f.products.value(0);
    const QString assetProp = f.assetProps.value(0);
    const double allocatable =
        hub.GetAllocatableQty2Resource(product, assetProp, f.symbol, f.exchange) +
        hub.GetAllocatableQty2ResourceByTradingAccount(f.accounts.value(0), f.symbol, f.exchange);
    return hub.GetAllResourceList().size() + hub.GetResourceDetailById(f.resourceIds.value(0)).size() +
           hub.GetResourceByProductAccount(f.products, assetProp, f.symbol, f.exchange, f.traders).size() +
           hub.GetT0ResourceCandidatesList(f.products, assetProp, f.flag).size() + int(allocatable > 0);
}

int askPools(const ManualT0LogicPrivate &hub, const HubFilter &f)
{
    const QString account = f.accounts.value(0);
    const QString trader = f.traders.value(0);
    return hub.GetAllSecurityPoolList().size() + hub.GetSecurityPoolDetailById(f.poolIds.value(0)).size() +
           hub.GetSecurityPoolDetailByIdList(f.poolIds).size() +
           hub.GetSecurityPoolDetailByResourceId(f.resourceIds.value(0), f.poolType).size() +
           hub.GetSecurityPoolDetailListByTradingList(f.accounts, f.traders, f.symbol, f.exchange, f.flag).size() +
           hub.GetSecurityPoolDetailListByTrading(account, trader, f.symbol, f.exchange).size() +
           hub.GetSecurityPoolDetailByTrading(account, trader, f.symbol, f.exchange).size() +
           hub.GetSecurityPoolDetail(f.products.value(0), f.assetProps.value(0), trader, f.symbol, f.exchange, f.flag)
               .size() +
           hub.GetSecurityPoolDetail(f.products, f.assetProps, f.traders, f.symbol, f.exchange, f.flag).size();
}

int askUsage(const ManualT0LogicPrivate &hub, const HubFilter &f)
{
    const QString trader = f.traders.value(0);
    const VariantRecord record = hub.GetRealtimePoolDetail(f.accounts.value(0), trader, f.symbol, f.exchange);
    double floating = 0;
    double realized = 0;
    double total = 0;
    return record.size() + hub.GetRealtimePoolKey(record).size() +
           hub.GetRealtimePoolDetailList(f.accounts, f.traders, f.symbol, f.exchange).size() +
           hub.GetRealtimeSumListMergeBySymbolExchange(f.accounts, trader, f.symbol, f.exchange).size() +
           hub.GetProfitLossDataList(f.accounts, trader, f.symbol, f.exchange).size() +
           int(hub.CalcProfitLossByRealtimeMap(record, 10, floating, realized, total)) +
           hub.GetOpenPositionList(f.accounts, f.traders, f.symbol, f.exchange).size() +
           int(hub.GetOpenPositionByAccountAndSymbol(f.symbol, f.exchange, f.side, f.accounts) != 0) +
           hub.GetExchangeListByAccountAndSymbol(f.symbol, f.accounts).size();
}

int askTheRest(const ManualT0LogicPrivate &hub, const HubFilter &f)
{
    bool found = false;
    const VariantRecord settings = hub.GetSymbolTradeSettings(f.symbol, &found);
    return hub.GetCancelableOrderList(f.accounts, f.symbol, f.exchange, f.traders, f.side, f.flag).size() +
           hub.CheckSingleOrderData(f.accounts, f.symbol, f.exchange, f.side, 10, 100, 31).size() + settings.size() +
           int(found) + hub.GetSupportExchangeList().size() + hub.GetT0Symbols().size() +
           hub.GetTradableSymbolListType().size() + hub.GetCurrentTradeAccount().size() +
           hub.GetCurrentTradableSymbolList().size() + hub.GetCurrentInputSymbolList().size() +
           int(hub.GetTradableQtyByAccountAndSymbol(f.accounts.value(0), f.symbol, f.exchange, {f.side})) +
           int(hub.GetInitStateByType(f.poolType));
}

} // namespace

int askEverything(const ManualT0LogicPrivate &hub, const HubFilter &filter)
{
    return askProducts(hub, filter) + askResources(hub, filter) + askPools(hub, filter) + askUsage(hub, filter) +
           askTheRest(hub, filter);
}
