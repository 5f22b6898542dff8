#pragma once

#include "ManualT0LogicExport.h"
#include "MasterInitStateMgr.h"
#include "SymbolListType.h"
#include "VariantRecord.h"

#include <QtCore/QObject>

class ZrPresenterClass;

/// The one class through which other plug-ins reach manual T0 trading. Never instantiated.
///
/// Every operation may be called from any thread and from any listener of the host's events; none waits for
/// the library's own thread. Queries answer from memory with copies; where nothing matches they return an
/// empty value. Nothing throws. Do not call from static destructors.
///
/// Rows are VariantRecords keyed by the host's field constants. Quantities are display units (shares,
/// bonds), amounts and prices money, fee rates fractions of an amount. Row lists have no fixed order unless
/// an operation names one. Ids and codes are compared case-sensitively.
///
/// Events (host's event bus; each is delivered queued on the listener's thread):
///   ManualT0DataInited            int, the family (see InitType) whose load has finished, well or not; after it
///                                 the family may be read. Also after a refresh and after changed products.
///   ManualT0ResourceUpdated       QVariantMap with tradingAccount: resources of the account were read again
///   ManualT0SecurityPoolUpdated   QStringList, ids of new and changed pools
///   ManualT0SecurityPoolDeleted   QVariantList of the records of removed pools; sent after the updated ones
///   ManualT0PoolRealTimeUpdated   QVariantList of new and changed usage records, may be empty
///   ManualT0CurTradeAccountChanged QStringList, the accounts of SetCurrentTradeAccount
///   ManualT0CurInputSymbolChanged invalid: GetCurrentInputSymbolList is to be read again
///
/// Changes block their caller until the server answers or the request times out, so a user interface calls them
/// from another thread. They return a code of requestExeStatus and explain it in a text by reference:
///
///   success      every request was carried out; the text is empty or as it was
///   fail         a row was refused by a check, then nothing was sent; or every request failed; the text says why
///   ParticalFail some of the requests, one a trading account or resource, or some of the orders failed
///   timeout      AlterT0ProductAccount, DeleteT0Resource, DeleteSecurityPoolsByIdList and CancelOrderList only: nobody
///                knows whether it was carried out. Elsewhere a request that timed out counts as failed, although it
///                may have been carried out as well: look at the picture before it is repeated
///
/// Nothing is changed in memory by what is sent: what a request may have touched is asked for again, and the events
/// above tell when it has come. Changes by others are seen with the next refresh only. (AlterT0ProductAccount and
/// DeleteT0Resource also change the picture at once.) Of several rows the first that fails a check is named,
/// "第%1行数据检查到错误：" before its text; checks of all rows together name none. A quantity that is no whole number,
/// negative or above the bounds below is refused by the server, with a text.
class MANUALT0LOGIC_EXPORT ManualT0Logic : public QObject
{
    Q_OBJECT

public:
    /// The data families. The init key of one is Master_Values::InitTypeCode::ManualT0Info and its number.
    enum InitType {
        Products = 0,
        Traders = 1,
        Resources = 2,
        SecurityPools = 3,
        RealtimeUsage = 4,
        AccountPriority = 5
    };

    static constexpr int MaxResourceQty = 1000000000;      ///< upper bound of a resource quantity, for input fields
    static constexpr int MaxPoolQty = 1000000000;          ///< upper bound of a pool quantity, for input fields
    static constexpr double MaxFundExposure = 1000000000.; ///< upper bound of a fund exposure, for input fields
    static constexpr int InvalidExposure = -1; ///< an exposure limit that is not set; test "< 0", see the pools
    static const QString PublicTrader;         ///< "public": trader id of the public pool

    ~ManualT0Logic() override;

    // ---- Start and refresh -------------------------------------------------------------------------------

    /// Starts the library on its first call (presenter, connections) and loads every family that is not
    /// loading or loaded yet; the families arrive in the background and are announced by ManualT0DataInited.
    /// Callable again at any time. Called again from inside the first call it does nothing.
    static void InitData();

    /// Loads all families again; what is held stays readable until the answers come. A second call within 30
    /// seconds of the last accepted one only posts the business message "刷新频率过高，请稍后重试！". Does nothing
    /// before InitData.
    static void RefreshData();

    /// Loads one family again, at once: Products, Traders, Resources or SecurityPools; the family is emptied
    /// first. Any other type only becomes "not started" (RefreshData loads it). Nothing happens for a type
    /// that was never started, nor before InitData.
    static void RefreshDataByType(int type);

    /// NotInit for a type that was never started or was reset, and for a number that is no type.
    static MasterInitStateMgr::InitState GetInitStateByType(int type);

    // ---- Products and trading accounts -------------------------------------------------------------------

    /// Product account to its asset properties enabled for T0, ascending.
    static QMap<QString, QStringList> GetAllT0ProductAccount();

    /// Trading accounts enabled for T0, in the server's order; one may stand there twice.
    static QStringList GetAllT0TradingAccountList();

    /// Product account to every asset property the user could enable, ascending. Known from the start.
    static QMap<QString, QStringList> GetCandidateT0ProductAccount();

    /// Asset properties enabled for T0, ascending.
    static QStringList GetProductAssetPropList(const QString &productAccount);

    static bool IsProductAndAssetPropInT0(const QString &productAccount, const QString &assetProp);

    /// Enabled product accounts to their display texts; an empty text where the host knows none.
    static QMap<QString, QString> GetT0ProductMap();

    /// Trading accounts of an enabled product and asset property, in the host's order, also those that are not
    /// enabled themselves; an empty assetProp means every enabled asset property, in ascending order of these.
    static QStringList GetTradingAccountListByProductAndAssetProp(const QString &productAccount,
                                                                  const QString &assetProp);

    /// Enables exactly these asset properties of these products for T0, and disables every other candidate; what is
    /// no candidate is ignored. On success the new products are in force when it returns, and resources and pools
    /// are loaded again; after a time-out the products are. All codes but ParticalFail; errMsg: the host's text.
    static QString AlterT0ProductAccount(const QMap<QString, QStringList> &newProductMap, QString &errMsg);

    // ---- Traders -----------------------------------------------------------------------------------------

    /// Trader id to name. The public pool's id is not among them.
    static QMap<QString, QString> GetAllT0TraderId();

    /// "public" for PublicTrader; empty when unknown.
    static QString GetTraderNameByTraderId(const QString &traderId);

    /// The user's own T0 trading accounts, highest priority first.
    static QStringList GetAllT0TradingAccountListByCurUser();

    // ---- Resources ---------------------------------------------------------------------------------------
    // A listed resource holds what the server sends, symbol, ResourceQty in display units, and a summary of
    // its pools: PublicPoolQty and PrivatePoolQty (int), T0TraderId and T0TraderName (joined with ",", one
    // entry a pool in ascending order of pool id, "public" for a public one).

    /// Every resource, with its summary.
    static RecordList GetAllResourceList();

    /// One resource as it is held, without summary.
    static VariantRecord GetResourceDetailById(const QString &resourceId);

    /// Resources of the products' trading accounts that are enabled under assetProp (empty: under any), with
    /// their summaries. An empty productAccounts selects none; an empty symbol, exchange or traderIds does
    /// not narrow. traderIds: with a pool of any of these traders.
    static RecordList GetResourceByProductAccount(const QStringList &productAccounts, const QString &assetProp,
                                                  QString symbol, const QString &exchange,
                                                  const QStringList &traderIds);

    /// What may become a resource: holdings of the products' trading accounts under assetProp (empty: any enabled
    /// one), on the supported exchanges and of a tradable kind, what credit accounts have borrowed and use included.
    /// withT0Symbols: also the convertible bonds an account does not hold, with quantity 0. Rows, ready for
    /// AddT0Resource: productAccount, tradingAccount, securityID, securityExchange, symbol, chineseName, ResourceQty
    /// (64-bit, what can be sold today; resources that exist already are not subtracted), T0SymbolFlag (bool, a
    /// convertible bond) and ResourceId (of the resource that exists already, else empty). In the order of the
    /// products, of their accounts, of the supported exchanges and of the symbols.
    static RecordList GetT0ResourceCandidatesList(const QStringList &productAccounts, const QString &assetProp,
                                                  bool withT0Symbols);

    /// How much may still be set aside, a whole number of at least 0: what the account holds, as if nobody had
    /// traded T0 today, less its resources; at most MaxResourceQty less these; a multiple of the display factor. A
    /// convertible bond that is not held is limited by MaxResourceQty alone. 0 for an account that is not enabled
    /// and when an argument is empty. Advice for input fields: the server does not hold resources to it. Complete for
    /// managers only: others know their own usage.
    static double GetAllocatableQty2ResourceByTradingAccount(const QString &tradingAccount, const QString &symbol,
                                                             const QString &exchange);

    /// The sum of it over the product's trading accounts under assetProp (empty: any enabled one), at most
    /// MaxResourceQty.
    static double GetAllocatableQty2Resource(const QString &productAccount, const QString &assetProp,
                                             const QString &symbol, const QString &exchange);

    /// Sets stock aside, one request a trading account. Rows: tradingAccount, securityID, securityExchange,
    /// ResourceQty. cover: an existing resource gets the quantity, else it is raised by it. Rows whose quantity is
    /// not above 0, or is none, are left out. Texts: "账号数据为空", "账号数据不合法", "账号%1未选为T0产品",
    /// "证券代码不存在", "标的%1的资源数量必须是%3的整数倍，请重新填写！", "没有可添加的资源数据", or the failed
    /// requests' own with "," between. Resources of accounts whose request was carried out or timed out are asked for
    /// again.
    static QString AddT0Resource(const RecordList &rows, bool cover, QString &errorText);

    /// Changes the quantity of one resource. resource: ResourceId and ResourceQty; tradingAccount, else
    /// that of the resource held. success or fail. Texts: "修改资源数量必须传入资源ID", "未找到对应资源",
    /// "修改后的数量不能小于已分配数量%1，请重新填写或修改券池后重新尝试", the multiple's as above, or the host's.
    /// Resources are asked for again after success and time-out.
    static QString AlterT0Resource(const VariantRecord &resource, QString &errorText);

    /// Deletes resources with their pools in one request. Rows: ResourceId; tradingAccount, else that of the resource
    /// held. On success they are gone when it returns and the accounts' pools are asked for again; after a time-out
    /// the resources are, their pools are not. All codes but ParticalFail; the text is the host's.
    static QString DeleteT0Resource(const RecordList &rows, QString &errorText);

    // ---- Security pools ----------------------------------------------------------------------------------
    // A pool holds what the server sends, symbol, and PoolTotalQty, MaxExposureQty and MaxPendExposureQty in
    // display units. Every negative limit means "none": directly after a load one of a security with display
    // factor 10 reads -10.0, later -1.

    /// Every pool, with T0TraderName.
    static RecordList GetAllSecurityPoolList();

    /// One pool, without T0TraderName.
    static VariantRecord GetSecurityPoolDetailById(const QString &poolId);

    /// The known ids, in the order given, without T0TraderName.
    static RecordList GetSecurityPoolDetailByIdList(const QStringList &poolIdList);

    /// Pools of a resource, with T0TraderName. poolType: 0 public, 1 private, 3 all.
    static RecordList GetSecurityPoolDetailByResourceId(const QString &resourceId, int poolType);

    /// Pools of the trading accounts, with T0TraderName. An empty accountList selects none; an empty symbol or
    /// exchange does not narrow; an empty traderIdList means all traders, one that holds only empty texts
    /// none. withPublic: the public pools are taken out of the list and one private pool of the same account,
    /// symbol and exchange (the first by id) gets their quantity as PublicPoolQty, whatever traderIdList says; a public
    /// pool without such a partner stands at the end, by account, symbol and exchange, with PoolTotalQty 0,
    /// PublicPoolQty its quantity, and no T0TraderName. With PublicTrader in traderIdList its pools stay ordinary rows.
    static RecordList GetSecurityPoolDetailListByTradingList(const QStringList &accountList,
                                                             const QStringList &traderIdList, const QString &symbol,
                                                             const QString &exchange, bool withPublic);

    /// The list of one account and one trader, without public merging.
    static RecordList GetSecurityPoolDetailListByTrading(const QString &tradingAccount, const QString &traderId,
                                                         const QString &symbol, const QString &exchange);

    /// The first pool by id of that list.
    static VariantRecord GetSecurityPoolDetailByTrading(const QString &tradingAccount, const QString &traderId,
                                                        const QString &symbol, const QString &exchange);

    /// The list of one product's trading accounts; empty when productAccount or assetProp is. An empty traderId
    /// means all traders.
    static RecordList GetSecurityPoolDetail(const QString &productAccount, const QString &assetProp,
                                            const QString &traderId, const QString &symbol, const QString &exchange,
                                            bool withPublic);

    /// The list of several products' trading accounts. An empty productAccountList means every enabled product,
    /// an empty assetPropList each product's enabled asset properties.
    static RecordList GetSecurityPoolDetail(const QStringList &productAccountList, const QStringList &assetPropList,
                                            const QStringList &traderIdList, const QString &symbol,
                                            const QString &exchange, bool withPublic);

    /// Sets the public pool of each row's resource, one request a resource. Rows: ResourceId, tradingAccount,
    /// securityID, securityExchange, PoolTotalQty. Texts: "资源存在超配，请重新配置！" when it and the private pools
    /// exceed the resource, "标的%1的券池数量必须是%3的整数倍，请重新填写！", or that of the last request that failed.
    /// Nothing is sent for no rows: success. The pools of all rows' accounts are asked for again, whatever the results.
    static QString AllocatePublicResource(const RecordList &rows, QString &errorText);

    /// Sets the private pools of resources, one request a resource. Rows as above with T0TraderId. All private pools of
    /// a resource are replaced: traders who are not among its rows lose theirs. Texts:
    /// "账号%1标的%2下的资源存在超配，请重新配置！" when they and the public pool exceed the resource, else as above.
    static QString AllocateResourceToTrader(const RecordList &rows, QString &errorText);

    /// Sets stock aside together with its pools, one request a trading account. Rows: tradingAccount, securityID,
    /// securityExchange, T0TraderId (PublicTrader for the public pool), PoolTotalQty, MaxExposureQty and
    /// MaxPendExposureQty (server units) when they are to be set. cover: the resource's pools become exactly the rows,
    /// else resource and pools are raised by them. Texts: "没有检查到券池信息", those of a row of AddT0Resource with
    /// "券池数量", "交易员ID不存在", or "添加券池时错误：" and those of the failed requests joined with ",". Resources
    /// and pools of accounts whose request was carried out or timed out are asked for again.
    static QString AddSecurityPoolAndResource(const RecordList &rows, bool cover, QString &errorText);

    /// Deletes pools in one request. Texts: "券池不存在，请刷新界面重试", then nothing was sent, or the host's. The
    /// pools of the accounts are asked for again, whatever the result. All codes but ParticalFail.
    static QString DeleteSecurityPoolsByIdList(const QStringList &poolIds, QString &errorText);

    // ---- Real-time usage and profit ----------------------------------------------------------------------
    // A usage record holds what the server sends (quantities in display units, 64-bit), symbol, the remaining
    // limits RtTotalBuyLimit and RtTotalSellLimit, the open position (PreOpenQty, DailyOpenQty, OpenPosQty
    // signed, OpenPosSide, OpenAvgPrice, which is integer 0 when flat and may be infinite or not a number),
    // and RtRealBoughtQty, RtRealBoughtAmount, RtRealSoldQty, RtRealSoldAmount with fees.

    /// The key of a usage record, "trader_account_symbol_exchange", from its own fields.
    static QString GetRealtimePoolKey(const VariantRecord &record);

    /// One usage record; empty when any argument is.
    static VariantRecord GetRealtimePoolDetail(const QString &tradingAccount, const QString &traderId,
                                               const QString &symbol, const QString &exchange);

    /// Usage records of the accounts. An empty tradingAccounts selects none; an empty traderIds, symbol or
    /// exchange does not narrow (a list of one empty text selects records without a trader).
    static RecordList GetRealtimePoolDetailList(const QStringList &tradingAccounts, const QStringList &traderIds,
                                                const QString &symbol, const QString &exchange);

    /// One trader's usage summed by symbol and exchange, ascending by symbol and exchange. The server's
    /// quantities and amounts, RtTotalBuyLimit and RtTotalSellLimit are sums; every other field, the open
    /// position among them, is that of the first record (by key) and must not be relied on. Empty without an
    /// account or trader.
    static RecordList GetRealtimeSumListMergeBySymbolExchange(const QStringList &tradingAccounts,
                                                              const QString &traderId, const QString &symbol,
                                                              const QString &exchange);

    /// Profit and loss of one usage record at a price. False, the outputs untouched, when the record is empty
    /// or lastPrice is not above 1e-10. A realised gain on the carried-over leg counts as 0 when it belongs to
    /// the organisation; its float profit counts.
    static bool CalcProfitLossByRealtimeMap(const VariantRecord &record, double lastPrice, double &floatProfit,
                                            double &realizeProfit, double &totalProfit);

    /// One row a usage record of the accounts: tradingAccount, symbol, securityExchange and, when the symbol
    /// has a latest price, FloatProfit, RealizeProfit and TotalProfit. An empty traderId means all traders.
    static RecordList GetProfitLossDataList(const QStringList &tradingAccounts, const QString &traderId,
                                            const QString &symbol, const QString &exchange);

    // ---- Orders and open positions -----------------------------------------------------------------------
    // An order row holds tradingAccount (a text; a list of texts where an operation chooses among several), symbol,
    // securityExchange, SideUnion, price and orderQty (shares or bonds).

    /// Checks one order; the text of the first check that fails, empty when all pass. price in the security's
    /// currency, qty in shares or bonds. checkFlags selects checks by the sum of their values, in this order:
    ///
    ///   1  an account suits the direction. Any does for the ordinary sides, credit accounts for every other; those
    ///      that do not are left out of what follows. "没有符合交易方向的资金账号！"
    ///   2  symbol and exchange are there. "证券代码或者市场为空！"
    ///   4  the price is above 0 and a multiple of the price unit. "委托价格必须大于0！",
    ///      "委托价格必须是[%1]的整数倍！"
    ///   8  the quantity is above 0 and, when buying, a multiple of the step. "委托数量必须大于0",
    ///      "买入时委托数量必须是[%1]的整数倍！"
    ///   16 the user's remaining quota in these accounts covers the quantity.
    ///      "所选账号可交易额度[%1]小于委托数量[%2]，请重新填写！"
    static QString CheckSingleOrderData(const QStringList &tradingAccounts, const QString &symbol,
                                        const QString &exchange, const QString &sideUnion, double price, long long qty,
                                        int checkFlags);

    /// Checks every order, each alone: two that share a quota both pass. Appends a copy of each to resultList with
    /// requestExeStatus success or fail and, then, textDescription. success, ParticalFail or fail; fail for no orders.
    static QString CheckOrderData(const RecordList &orderList, RecordList &resultList, int checkFlags);

    /// From wishes over several accounts to rows that Order submits: one row an account and part, with tradingAccount
    /// a text, orderQty 64-bit, chineseName, and the collateral side in a credit account. Only the user's own accounts
    /// are used, in their order of priority; first to close open positions, then up to their quotas, over the whole
    /// call. Buys are placed in whole steps, and odd lots are sold whole. A quantity is cut into parts of the symbol's
    /// setting TradeCustQty, 1000 at most. In the order of the orders, accounts and parts.
    static RecordList GetOrderConfirmMap(const RecordList &orders);

    /// Also appends to rest what could not be placed: a copy of the row with orderQty, requestExeStatus fail and
    /// textDescription, one of the texts of CheckSingleOrderData.
    static RecordList GetOrderConfirmMap(const RecordList &orders, RecordList &rest);

    /// Submits limit orders, one request a trading account in the order of the user's priority, and blocks for the
    /// answers. Checks nothing. Appends one record an order to results: its fields, requestExeStatus and orderID or
    /// textDescription; timeout and "结果未知" when nobody knows. Orders of accounts that are not the user's are not
    /// submitted and leave no record, so compare the counts. extraText: a remark that goes with every order. success,
    /// ParticalFail or fail over all of results, what it held before included.
    static QString Order(const RecordList &orders, RecordList &results, const QString &extraText);

    /// Orders that may still be cancelled, from the host's order store. Accounts always narrow; an empty symbol,
    /// exchange, userIds or side (buy or sell) does not. fetchAll: all of them, else the host's first page.
    static RecordList GetCancelableOrderList(const QStringList &accounts, const QString &symbol,
                                             const QString &exchange, const QStringList &userIds, const QString &side,
                                             bool fetchAll);

    /// Cancels orders (rows: tradingAccount, orderID), one request an account, ascending, and blocks for the answers.
    /// presenter: the sender; may be null. Appends a copy of each order with requestExeStatus and textDescription: one
    /// an answered row; an order that a good answer leaves out has none and counts as cancelled. success, ParticalFail,
    /// fail, or timeout when nothing was answered. A cancel that is accepted takes effect with the order's next state.
    static QString CancelOrderList(ZrPresenterClass *presenter, const RecordList &orders, RecordList &results);

    /// The user's own open quantity in the accounts: negative for short with an empty side; else what the side can
    /// close, at least 0. A side that only credit accounts have leaves out the others. 0 when an argument is empty.
    static long long GetOpenPositionByAccountAndSymbol(const QString &symbol, const QString &exchange,
                                                       const QString &side, const QStringList &accounts);

    /// Usage records with an open position; arguments as of GetRealtimePoolDetailList.
    static RecordList GetOpenPositionList(const QStringList &accounts, const QStringList &traderIds,
                                          const QString &symbol, const QString &exchange);

    /// The exchanges on which the user has usage records of a symbol in the accounts, by account.
    static QStringList GetExchangeListByAccountAndSymbol(const QString &symbol, const QStringList &accounts);

    // ---- Symbols, settings and the current selection -----------------------------------------------------

    /// SH, SZ, BJ, HHK, SZHK, in this order.
    static QStringList GetSupportExchangeList();

    /// The symbols of the convertible bonds.
    static QStringList GetT0Symbols();

    /// The four filters of tradable symbols: stocks, ETFs, Hong Kong shares, convertible bonds.
    static QList<SymbolListType> GetTradableSymbolListType();

    /// Always 0, deliberately: kept for callers of the interface, says nothing about a quantity.
    static long long GetTradableQtyByAccountAndSymbol(const QString &tradingAccount, const QString &symbol,
                                                      const QString &exchange, const QStringList &sides);

    /// The settings of a symbol. found (may be null): whether it has any.
    static VariantRecord GetSymbolTradeSettings(const QString &symbol, bool *found);

    /// Keeps and stores the settings of a symbol. Values must be JSON types. False, nothing changed, when the
    /// symbol or the settings are empty. Equal settings are not stored again.
    static bool SetSymbolTradeSettings(const QString &symbol, const VariantRecord &settings);

    /// Nothing happens for an empty or unknown symbol.
    static void DeleteSymbolTradeSettings(const QString &symbol);

    /// The accounts of the last SetCurrentTradeAccount.
    static QStringList GetCurrentTradeAccount();

    /// Chooses the accounts the user trades with, recomputes the symbols that may be traded with them and
    /// sends ManualT0CurTradeAccountChanged, also when nothing changed. The first load of RealtimeUsage recomputes
    /// nothing: whoever has chosen before calls it again after ManualT0DataInited with that family.
    static void SetCurrentTradeAccount(const QStringList &accounts);

    /// Symbols of the user's usage records in the chosen accounts, ascending.
    static QStringList GetCurrentTradableSymbolList();

    /// The same symbols' search texts: symbol, Chinese name and spell code with Constants::SymbolSearch_Split between.
    static QStringList GetCurrentInputSymbolList();

private:
    explicit ManualT0Logic(QObject *parent);
};
