#pragma once

#include "FamilyLock.h"
#include "IntegrityCheck.h"
#include "MasterInitStateMgr.h"
#include "OrderAllocation.h"
#include "ReceivedPool.h"
#include "RefreshThrottle.h"
#include "SymbolListType.h"
#include "TradingLookup.h"
#include "VariantRecord.h"
#include "ZrObject.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>

#include <atomic>

class MasterDelayBuffer;
class QTimer;
class ReceivedUsage;
class ZrPresenterClass;

/// Milliseconds of the hub's own timers.
struct HubTiming {
    int retry = 5000;             ///< after a failed account priority query or first usage load
    int realtimeRefresh = 300000; ///< between usage queries after the first load
    int symbolDelay = 1000;       ///< from a new symbol's push to the recomputed input symbols
    int integrityCheck = 60000;   ///< from one check of caches and indexes to the next; 0: none
};

/// The data hub behind the facade: owns every cache of manual T0 trading, its locks, and the signals and
/// slots that load it. Lives on its own thread "ManualT0LogicThread", where the slots run; queries run on
/// their callers' threads under read locks. The contract of each public operation stands in ManualT0Logic.h.
///
/// One lock at a time; the only nesting is resource, pool, trader. No public operation calls another one of
/// its own family. See docs/locks.md.
class ManualT0LogicPrivate : public ZrObject
{
    Q_OBJECT

public:
    /// The single hub, made by the first call on any thread.
    static ManualT0LogicPrivate &instance();

    /// Reads the host's login, accounts, symbols and settings; asks the server nothing.
    explicit ManualT0LogicPrivate(QObject *parent = nullptr, HubTiming timing = {});
    ~ManualT0LogicPrivate() override;

    /// Ends the hub's thread and waits for it; the caches stay readable. Callable twice, not from a slot.
    void stop();

    // ManualT0LogicPrivate_Init.cpp
    void InitData();
    void RefreshData();
    void RefreshDataByType(int type);
    MasterInitStateMgr::InitState GetInitStateByType(int type) const;

    // ManualT0LogicPrivate_Products.cpp
    QMap<QString, QStringList> GetAllT0ProductAccount() const T0_EXCLUDES(productLock);
    QStringList GetAllT0TradingAccountList() const T0_EXCLUDES(productLock);
    QMap<QString, QStringList> GetCandidateT0ProductAccount() const;
    QStringList GetProductAssetPropList(const QString &productAccount) const T0_EXCLUDES(productLock);
    bool IsProductAndAssetPropInT0(const QString &productAccount, const QString &assetProp) const
        T0_EXCLUDES(productLock);
    QMap<QString, QString> GetT0ProductMap() const T0_EXCLUDES(productLock);
    QStringList GetTradingAccountListByProductAndAssetProp(const QString &productAccount,
                                                           const QString &assetProp) const T0_EXCLUDES(productLock);
    QString AlterT0ProductAccount(const QMap<QString, QStringList> &newProductMap, QString &errMsg)
        T0_EXCLUDES(productLock, resourceLock, securityPoolLock);

    // ManualT0LogicPrivate_Traders.cpp
    QMap<QString, QString> GetAllT0TraderId() const T0_EXCLUDES(traderLock);
    QString GetTraderNameByTraderId(const QString &traderId) const T0_EXCLUDES(traderLock);
    QStringList GetAllT0TradingAccountListByCurUser() const T0_EXCLUDES(accountPriorityLock);

    // ManualT0LogicPrivate_Resources.cpp
    RecordList GetAllResourceList() const T0_EXCLUDES(resourceLock, securityPoolLock, traderLock);
    VariantRecord GetResourceDetailById(const QString &resourceId) const T0_EXCLUDES(resourceLock);
    RecordList GetResourceByProductAccount(const QStringList &productAccounts, const QString &assetProp,
                                           const QString &symbol, const QString &exchange,
                                           const QStringList &traderIds) const
        T0_EXCLUDES(productLock, resourceLock, securityPoolLock, traderLock);

    // ManualT0LogicPrivate_ResourceChanges.cpp
    QString AddT0Resource(const RecordList &rows, bool cover, QString &errorText) T0_EXCLUDES(productLock);
    QString AlterT0Resource(const VariantRecord &resource, QString &errorText)
        T0_EXCLUDES(resourceLock, securityPoolLock);
    QString DeleteT0Resource(const RecordList &rows, QString &errorText) T0_EXCLUDES(resourceLock, securityPoolLock);

    // ManualT0LogicPrivate_Candidates.cpp
    RecordList GetT0ResourceCandidatesList(const QStringList &productAccounts, const QString &assetProp,
                                           bool withT0Symbols) const T0_EXCLUDES(productLock, resourceLock);
    double GetAllocatableQty2Resource(const QString &productAccount, const QString &assetProp, const QString &symbol,
                                      const QString &exchange) const
        T0_EXCLUDES(productLock, resourceLock, realtimePoolLock);
    double GetAllocatableQty2ResourceByTradingAccount(const QString &tradingAccount, const QString &symbol,
                                                      const QString &exchange) const
        T0_EXCLUDES(productLock, resourceLock, realtimePoolLock);

    // ManualT0LogicPrivate_Pools.cpp
    RecordList GetAllSecurityPoolList() const T0_EXCLUDES(securityPoolLock, traderLock);
    VariantRecord GetSecurityPoolDetailById(const QString &poolId) const T0_EXCLUDES(securityPoolLock);
    RecordList GetSecurityPoolDetailByIdList(const QStringList &poolIdList) const T0_EXCLUDES(securityPoolLock);
    RecordList GetSecurityPoolDetailByResourceId(const QString &resourceId, int poolType) const
        T0_EXCLUDES(securityPoolLock, traderLock);
    RecordList GetSecurityPoolDetailListByTradingList(const QStringList &accountList, const QStringList &traderIdList,
                                                      const QString &symbol, const QString &exchange,
                                                      bool withPublic) const T0_EXCLUDES(securityPoolLock, traderLock);
    RecordList GetSecurityPoolDetailListByTrading(const QString &tradingAccount, const QString &traderId,
                                                  const QString &symbol, const QString &exchange) const
        T0_EXCLUDES(securityPoolLock, traderLock);
    VariantRecord GetSecurityPoolDetailByTrading(const QString &tradingAccount, const QString &traderId,
                                                 const QString &symbol, const QString &exchange) const
        T0_EXCLUDES(securityPoolLock, traderLock);
    RecordList GetSecurityPoolDetail(const QString &productAccount, const QString &assetProp, const QString &traderId,
                                     const QString &symbol, const QString &exchange, bool withPublic) const
        T0_EXCLUDES(productLock, securityPoolLock, traderLock);
    RecordList GetSecurityPoolDetail(const QStringList &productAccountList, const QStringList &assetPropList,
                                     const QStringList &traderIdList, const QString &symbol, const QString &exchange,
                                     bool withPublic) const T0_EXCLUDES(productLock, securityPoolLock, traderLock);

    // ManualT0LogicPrivate_PoolChanges.cpp
    QString AllocatePublicResource(const RecordList &rows, QString &errorText)
        T0_EXCLUDES(resourceLock, securityPoolLock);
    QString AllocateResourceToTrader(const RecordList &rows, QString &errorText)
        T0_EXCLUDES(resourceLock, securityPoolLock);
    QString DeleteSecurityPoolsByIdList(const QStringList &poolIds, QString &errorText) T0_EXCLUDES(securityPoolLock);
    QString AddSecurityPoolAndResource(const RecordList &rows, bool cover, QString &errorText)
        T0_EXCLUDES(productLock, traderLock);

    // ManualT0LogicPrivate_Realtime.cpp
    QString GetRealtimePoolKey(const VariantRecord &record) const;
    VariantRecord GetRealtimePoolDetail(const QString &tradingAccount, const QString &traderId, const QString &symbol,
                                        const QString &exchange) const T0_EXCLUDES(realtimePoolLock);
    RecordList GetRealtimePoolDetailList(const QStringList &tradingAccounts, const QStringList &traderIds,
                                         const QString &symbol, const QString &exchange) const
        T0_EXCLUDES(realtimePoolLock);
    RecordList GetRealtimeSumListMergeBySymbolExchange(const QStringList &tradingAccounts, const QString &traderId,
                                                       const QString &symbol, const QString &exchange) const
        T0_EXCLUDES(realtimePoolLock);

    // ManualT0LogicPrivate_Profit.cpp
    bool CalcProfitLossByRealtimeMap(const VariantRecord &record, double lastPrice, double &floatProfit,
                                     double &realizeProfit, double &totalProfit) const;
    RecordList GetProfitLossDataList(const QStringList &tradingAccounts, const QString &traderId, const QString &symbol,
                                     const QString &exchange) const T0_EXCLUDES(realtimePoolLock);

    // ManualT0LogicPrivate_Orders.cpp
    QString CheckSingleOrderData(const QStringList &tradingAccounts, const QString &symbol, const QString &exchange,
                                 const QString &sideUnion, double price, long long qty, int checkFlags) const
        T0_EXCLUDES(realtimePoolLock);
    QString CheckOrderData(const RecordList &orderList, RecordList &resultList, int checkFlags) const
        T0_EXCLUDES(realtimePoolLock);
    QString Order(const RecordList &orders, RecordList &results, const QString &extraText) const
        T0_EXCLUDES(accountPriorityLock);

    // ManualT0LogicPrivate_OrderConfirm.cpp
    RecordList GetOrderConfirmMap(const RecordList &orders) const
        T0_EXCLUDES(accountPriorityLock, realtimePoolLock, symbolTradeSettingsLock);
    RecordList GetOrderConfirmMap(const RecordList &orders, RecordList &rest) const
        T0_EXCLUDES(accountPriorityLock, realtimePoolLock, symbolTradeSettingsLock);

    // ManualT0LogicPrivate_Cancels.cpp
    RecordList GetCancelableOrderList(const QStringList &accounts, const QString &symbol, const QString &exchange,
                                      const QStringList &userIds, const QString &side, bool fetchAll) const;
    QString CancelOrderList(ZrPresenterClass *sender, const RecordList &orders, RecordList &results) const;

    // ManualT0LogicPrivate_Positions.cpp
    long long GetOpenPositionByAccountAndSymbol(const QString &symbol, const QString &exchange, const QString &side,
                                                const QStringList &accounts) const T0_EXCLUDES(realtimePoolLock);
    RecordList GetOpenPositionList(const QStringList &accounts, const QStringList &traderIds, const QString &symbol,
                                   const QString &exchange) const T0_EXCLUDES(realtimePoolLock);
    QStringList GetExchangeListByAccountAndSymbol(const QString &symbol, const QStringList &accounts) const
        T0_EXCLUDES(realtimePoolLock);

    // ManualT0LogicPrivate_Settings.cpp
    QStringList GetSupportExchangeList() const;
    QStringList GetT0Symbols() const;
    QList<SymbolListType> GetTradableSymbolListType() const;
    long long GetTradableQtyByAccountAndSymbol(const QString &tradingAccount, const QString &symbol,
                                               const QString &exchange, const QStringList &sides) const;
    VariantRecord GetSymbolTradeSettings(const QString &symbol, bool *found) const T0_EXCLUDES(symbolTradeSettingsLock);
    bool SetSymbolTradeSettings(const QString &symbol, const VariantRecord &settings)
        T0_EXCLUDES(symbolTradeSettingsLock);
    void DeleteSymbolTradeSettings(const QString &symbol) T0_EXCLUDES(symbolTradeSettingsLock);
    QStringList GetCurrentTradeAccount() const T0_EXCLUDES(currentTradeAccountLock);
    void SetCurrentTradeAccount(const QStringList &accounts)
        T0_EXCLUDES(currentTradeAccountLock, realtimePoolLock, currentInputSymbolLock);
    QStringList GetCurrentTradableSymbolList() const T0_EXCLUDES(currentInputSymbolLock);
    QStringList GetCurrentInputSymbolList() const T0_EXCLUDES(currentInputSymbolLock);

signals:
    void signalQueryT0Products(QVariantMap queryMap);
    void signalAlterT0Products(QList<QVariantMap> prdList);
    void signalQueryT0Traders();
    void signalQueryResources(QVariantMap queryMap);
    void signalQuerySecurityPool(QVariantMap queryMap);
    void signalQueryPoolRealTimeData(QVariantMap queryMap);
    void signalQueryT0AccountPriority(QVariantMap queryMap);

public slots:
    // The presenter's answers. code: Orvane_Values::RequestExeStatus::success, fail, or
    // Master_Values::RequestExeStatus::timeout. Each runs on the hub's thread, asserted;
    // slotRecvSecurityPoolChangedPush only emits and may run anywhere.
    void slotQueryT0ProductsResponse(QString code, QList<QVariantMap> prdList) T0_EXCLUDES(productLock);
    void slotQueryT0TradersResponse(QString code, QList<QVariantMap> traderIdList, bool isManager)
        T0_EXCLUDES(traderLock);
    void slotQueryResourceResponse(QString code, QVariantMap queryMap, QList<QVariantMap> resourceList,
                                   bool cover = true) T0_EXCLUDES(resourceLock);
    void slotQuerySecurityPoolResponse(QString code, QVariantMap queryMap, QList<QVariantMap> poolList)
        T0_EXCLUDES(securityPoolLock);
    void slotQueryPoolRealTimeResponse(QString code, QVariantMap queryMap, QList<QVariantMap> realTimeList)
        T0_EXCLUDES(realtimePoolLock);
    void slotRecvSecurityPoolChangedPush(QString tradingAccount);
    void slotRecvPoolRealtimeChangedPush(QVariantMap realtimeMap) T0_EXCLUDES(realtimePoolLock);
    void slotQueryT0AccountPriorityResponse(QString code, QVariantMap queryMap, QList<QVariantMap> accountMapList)
        T0_EXCLUDES(accountPriorityLock);

private:
    friend class HubProbe; // tests: compares indexes with their caches

    // ---- ManualT0LogicPrivate.cpp: wiring ----------------------------------------------------------------

    /// First statement of every slot of the hub's thread. False: the hub is stopping, the slot returns.
    bool enterSlot() const;
    void sendEvent(const QString &eventName, const QVariant &payload) const;
    void sendDataInited(int type) const;

    /// Runs again once, HubTiming::retry from now, on the hub's thread; a retry already waiting starts anew, so
    /// that refreshes during an outage do not multiply the requests.
    void retryLater(QTimer *&timer, void (ManualT0LogicPrivate::*again)());
    void deleteTimers();

    const HubTiming timing;
    std::atomic<bool> stopping{false};
    ZrPresenterClass *const presenter = nullptr; ///< sender of the events; the host accepts a null one
    QString loginUserId;                         ///< written in the constructor only

    // ---- ManualT0LogicPrivate_Init.cpp -------------------------------------------------------------------

    bool isConnected() const; ///< whether a presenter listens: before that a load would wait for ever
    RefreshThrottle refreshThrottle;

    // ---- ManualT0LogicPrivate_Products.cpp ---------------------------------------------------------------

    void buildCandidates();
    void queryT0Products() T0_EXCLUDES(productLock);
    /// The products are changing: an answer that is under way may be from before, and may come after later ones. When
    /// none is under way any more they are asked for once more. False: none is now.
    bool rereadProductsLater() T0_EXCLUDES(productLock);
    void endProductQuery() T0_EXCLUDES(productLock);
    void failT0Products() T0_EXCLUDES(productLock);
    void applyT0ProductList(const RecordList &productList) T0_EXCLUDES(productLock, resourceLock, securityPoolLock);
    QStringList candidateAccounts(const QString &productAccount, const QString &assetProp) const;

    mutable FamilyLock productLock;
    QStringList tradingAccountList T0_GUARDED_BY(productLock);
    QMap<QString, QStringList> productAccountMap T0_GUARDED_BY(productLock);
    /// Product account to asset property to trading accounts. No lock: written in the constructor only.
    QMap<QString, QMap<QString, QStringList>> candidateProductAccountMap;
    int productQueryRetries T0_GUARDED_BY(productLock) = 0;
    int productQueries T0_GUARDED_BY(productLock) = 0; ///< asked, and their answers not yet taken
    bool productsToReread T0_GUARDED_BY(productLock) = false;

    // ---- ManualT0LogicPrivate_Traders.cpp ----------------------------------------------------------------

    void queryT0AccountPriority();
    void refreshPoolRealTime();
    void queryPoolRealTime(const QStringList &traderIds);
    void subscribePoolRealTime(const QStringList &traderIds);
    QString traderName(const QString &traderId) const T0_REQUIRES_SHARED(traderLock);
    void fillTraderNames(RecordList &pools) const T0_REQUIRES_SHARED(traderLock);

    std::atomic<bool> isManager{false};
    std::atomic<bool> pushSubscribed{false};
    mutable FamilyLock traderLock T0_ACQUIRED_AFTER(securityPoolLock);
    QMap<QString, QString> traderMap T0_GUARDED_BY(traderLock);
    int traderQueryRetries T0_GUARDED_BY(traderLock) = 0;
    mutable FamilyLock accountPriorityLock;
    QStringList curUserTradingAccountList T0_GUARDED_BY(accountPriorityLock);
    QTimer *accountPriorityRetryTimer = nullptr; ///< hub's thread only

    // ---- ManualT0LogicPrivate_Resources.cpp --------------------------------------------------------------

    void loadResources() T0_EXCLUDES(productLock, resourceLock);
    void queryResources(const QString &tradingAccount) T0_EXCLUDES(resourceLock);
    void endResourceQuery(const QString &tradingAccount) T0_EXCLUDES(resourceLock);
    void takeFirstResources(const QString &tradingAccount, const RecordList &rows) T0_EXCLUDES(resourceLock);
    void failFirstResources(const QString &tradingAccount) T0_EXCLUDES(resourceLock);
    void takeLaterResources(const QString &tradingAccount, const RecordList &rows, bool cover)
        T0_EXCLUDES(resourceLock);
    /// Those of an account's answer, but for what was deleted since it was asked for.
    void storeResources(const QString &tradingAccount, const RecordList &rows) T0_REQUIRES(resourceLock);
    void storeResource(const VariantRecord &resource) T0_REQUIRES(resourceLock);
    void removeResource(const QString &resourceId) T0_REQUIRES(resourceLock);
    /// An empty symbol or exchange: any.
    QVector<HeldRecord> findResources(const QStringList &accounts, const QString &symbol, const QString &exchange) const
        T0_REQUIRES_SHARED(resourceLock);
    bool hasPoolOf(const QString &resourceId, const QStringList &traderIds) const T0_REQUIRES_SHARED(securityPoolLock);
    void packSecurityPoolInfoIntoResource(VariantRecord &resource) const
        T0_REQUIRES_SHARED(resourceLock, securityPoolLock, traderLock);

    mutable FamilyLock resourceLock;
    RecordCache resourceCache T0_GUARDED_BY(resourceLock);
    IdIndex<QString> resourceAccountIndex T0_GUARDED_BY(resourceLock);
    IdIndex<QString> resourceSymbolIndex T0_GUARDED_BY(resourceLock);
    IdIndex<QString> resourceExchangeIndex T0_GUARDED_BY(resourceLock);
    QMap<QString, int> pendingResourceAccounts T0_GUARDED_BY(resourceLock); ///< account to failures so far
    /// What is asked of an account and not yet answered.
    struct ResourceQueries {
        int count = 0;
        IdSet deleted; ///< meanwhile; an answer may have been made before
    };
    QHash<QString, ResourceQueries> resourceQueries T0_GUARDED_BY(resourceLock);

    // ---- ManualT0LogicPrivate_ResourceChanges.cpp --------------------------------------------------------

    /// Sends one change, header first, and blocks for its code; the login account joins the header.
    QString sendChange(const QString &msgType, VariantRecord header, const RecordList &rows, QString &errorText) const;
    QString checkAlteredResource(const VariantRecord &resource, QString &symbol) const
        T0_EXCLUDES(resourceLock, securityPoolLock);
    void forgetResources(const QStringList &resourceIds, const QStringList &tradingAccounts)
        T0_EXCLUDES(resourceLock, securityPoolLock);
    /// The trading accounts that a row names and that its resource has; usually one.
    QStringList accountsOf(const VariantRecord &row) const T0_EXCLUDES(resourceLock);
    QSet<QString> t0Accounts() const T0_EXCLUDES(productLock);

    // ---- ManualT0LogicPrivate_Candidates.cpp -------------------------------------------------------------

    QSet<QString> tradableSymbols() const;
    /// Fills T0SymbolFlag and the ids of resources that exist already.
    void markCandidates(RecordList &candidates) const T0_EXCLUDES(resourceLock);
    QVector<HeldRecord> resourcesOf(const QString &tradingAccount, const QString &symbol, const QString &exchange) const
        T0_REQUIRES_SHARED(resourceLock);
    qint64 allocatable(const QString &tradingAccount, const QString &symbol, const QString &exchange) const
        T0_EXCLUDES(productLock, resourceLock, realtimePoolLock);
    qint64 setAside(const QString &tradingAccount, const QString &symbol, const QString &exchange) const
        T0_EXCLUDES(resourceLock);
    /// What the account could sell if nobody had traded T0 today.
    qint64 heldWithoutTrading(const QString &tradingAccount, const QString &symbol, const QString &exchange,
                              bool isT0) const T0_EXCLUDES(realtimePoolLock);

    // ---- ManualT0LogicPrivate_PoolAnswers.cpp, _PoolIndex.cpp, _Pools.cpp ---------------------------------

    void loadSecurityPools() T0_EXCLUDES(productLock, securityPoolLock);
    void takeFirstPools(const QString &tradingAccount, RecordList &&rows) T0_EXCLUDES(securityPoolLock);
    void failFirstPools(const QString &tradingAccount) T0_EXCLUDES(securityPoolLock);
    void takeLaterPools(const QString &tradingAccount, const RecordList &rows) T0_EXCLUDES(securityPoolLock);
    using ReceivedPools = QHash<QString, ReceivedPool>; ///< by id
    /// What an answer changes in the pools of its account.
    struct PoolChanges {
        QStringList changedIds; ///< new and changed pools, ascending
        QStringList deletedIds;
        QVector<ReceivedPools::const_iterator> pools; ///< to be stored; equal ones too of other types of numbers
    };
    PoolChanges comparePools(const QString &tradingAccount, const ReceivedPools &fresh) const
        T0_REQUIRES_SHARED(securityPoolLock);
    /// The records of the deleted pools.
    QVariantList applyPools(const PoolChanges &changes) T0_REQUIRES(securityPoolLock);
    bool isInResourceIndex(HeldRecord pool) const T0_REQUIRES_SHARED(securityPoolLock);
    void clearSecurityPools() T0_REQUIRES(securityPoolLock);
    struct PoolKeys;
    void storePool(const VariantRecord &pool) T0_REQUIRES(securityPoolLock);
    void storePool(const QString &id, const ReceivedPool &pool) T0_REQUIRES(securityPoolLock);
    void reindexPool(const QString &id, const PoolKeys &held, const PoolKeys &now) T0_REQUIRES(securityPoolLock);
    VariantRecord takePool(const QString &poolId) T0_REQUIRES(securityPoolLock);
    void indexPool(const QString &id, const PoolKeys &keys) T0_REQUIRES(securityPoolLock);
    void unindexPool(const QString &id, const PoolKeys &keys) T0_REQUIRES(securityPoolLock);
    void indexTradingKey(const QString &id, const TradingKey &key) T0_REQUIRES(securityPoolLock);
    void unindexTradingKey(const QString &id, const TradingKey &key) T0_REQUIRES(securityPoolLock);
    void resetSecurityPoolIndex() T0_REQUIRES(securityPoolLock);
    void rebuildPoolIndexes() T0_REQUIRES(securityPoolLock);
    /// poolType: of PoolTypes.
    RecordList poolsOfResource(const QString &resourceId, int poolType) const T0_REQUIRES_SHARED(securityPoolLock);
    using PublicPools = QMap<QString, VariantRecord>; ///< by account, symbol and exchange
    PublicPools publicPoolsByPartner(const QStringList &accountList, const QString &symbol,
                                     const QString &exchange) const T0_REQUIRES_SHARED(securityPoolLock);
    /// Of the traders that the filter names by more than an empty text; of all when it names none.
    QVector<HeldRecord> namedPools(TradingFilter filter) const T0_REQUIRES_SHARED(securityPoolLock);
    /// The same by id, so that the first of several partners is the same one every time; a filter without
    /// traders leaves the public one out.
    QVector<HeldRecord> privatePools(const TradingFilter &filter) const T0_REQUIRES_SHARED(securityPoolLock);
    /// The one with the smallest id when there are several; the map's end when there is none.
    HeldRecord findPool(const TradingKey &key) const T0_REQUIRES_SHARED(securityPoolLock);
    TradingLookup poolLookup() const T0_REQUIRES_SHARED(securityPoolLock);
    const QString &poolTraderField() const T0_REQUIRES_SHARED(securityPoolLock);

    mutable FamilyLock securityPoolLock T0_ACQUIRED_AFTER(resourceLock);
    RecordCache securityPoolMap T0_GUARDED_BY(securityPoolLock);
    IdIndex<QString> poolIdsByTradingAccount T0_GUARDED_BY(securityPoolLock);
    IdIndex<QString> poolIdsBySymbol T0_GUARDED_BY(securityPoolLock);
    IdIndex<QString> poolIdsByExchange T0_GUARDED_BY(securityPoolLock);
    IdIndex<QString> poolIdsByTrader T0_GUARDED_BY(securityPoolLock);
    IdIndex<QString> poolIdsByResource T0_GUARDED_BY(securityPoolLock);
    IdIndex<KeyPair> poolIdsByAccountAndTrader T0_GUARDED_BY(securityPoolLock);
    /// These two hold no pool whose symbol the host does not know: there may be many, and nobody looks them up.
    NarrowIndex<KeyPair> poolIdsByAccountAndSymbol T0_GUARDED_BY(securityPoolLock);
    NarrowIndex<TradingKey> poolIdsByTradingKey T0_GUARDED_BY(securityPoolLock);
    quint64 poolVersion T0_GUARDED_BY(securityPoolLock) = 0; ///< counts the changes of pools and their indexes
    /// Which field the indexes know a pool's trader by: userID from the start of a load, T0TraderId from the first
    /// later answer on (deliberate: the first answers of a load are taken as the user's).
    bool poolTradersAreUsers T0_GUARDED_BY(securityPoolLock) = true;
    QMap<QString, int> pendingSecurityPoolAccounts T0_GUARDED_BY(securityPoolLock); ///< account to failures so far

    // ---- ManualT0LogicPrivate_PoolChanges.cpp ------------------------------------------------------------

    QString checkPublicPool(const VariantRecord &row, const QString &symbol) const
        T0_EXCLUDES(resourceLock, securityPoolLock);
    /// newPrivate: resource id to the sum of its new private pools.
    QString checkPrivatePools(const QMap<QString, qint64> &newPrivate) const
        T0_EXCLUDES(resourceLock, securityPoolLock);
    /// One request a resource, then the pools of every account are asked for, whatever the results.
    QString sendAllocations(const char *operation, const QMap<QString, RecordList> &poolsByResource, int poolType,
                            const QStringList &tradingAccounts, QString &errorText);
    void queryPoolsOfEach(QStringList tradingAccounts);
    double poolQuantity(const QString &resourceId, int poolType) const T0_EXCLUDES(securityPoolLock);

    // ---- ManualT0LogicPrivate_RealtimeAnswers.cpp, ManualT0LogicPrivate_Realtime.cpp ---------------------

    void takeFirstRealtime(const RecordList &rows) T0_EXCLUDES(realtimePoolLock);
    void takeLaterRealtime(const RecordList &rows)
        T0_EXCLUDES(currentTradeAccountLock, currentInputSymbolLock, realtimePoolLock);
    /// Whether a record of that time is newer than the one held.
    bool isNews(const QString &key, const QString &modifyTime) const T0_REQUIRES_SHARED(realtimePoolLock);
    /// The record as it is held then.
    VariantRecord takeRealtimeRecord(const ReceivedUsage &received) T0_REQUIRES(realtimePoolLock);
    /// Whether a usage record brings the user a symbol that the chosen accounts could not trade before.
    bool bringsNewSymbol(const VariantRecord &record) const
        T0_EXCLUDES(currentTradeAccountLock, currentInputSymbolLock);
    void rebuildRealtimeIndexes() T0_REQUIRES(realtimePoolLock);
    void indexRealtime(const QString &key, const VariantRecord &record) T0_REQUIRES(realtimePoolLock);
    void announceNewSymbols();
    TradingLookup usageLookup() const T0_REQUIRES_SHARED(realtimePoolLock);

    mutable FamilyLock realtimePoolLock;
    RecordCache realtimePoolCache T0_GUARDED_BY(realtimePoolLock);
    IdIndex<QString> realtimeAccountIndex T0_GUARDED_BY(realtimePoolLock);
    IdIndex<QString> realtimeTraderIndex T0_GUARDED_BY(realtimePoolLock);
    IdIndex<QString> realtimeSymbolIndex T0_GUARDED_BY(realtimePoolLock);
    IdIndex<QString> realtimeExchangeIndex T0_GUARDED_BY(realtimePoolLock);
    IdIndex<KeyPair> realtimeAccountAndTraderIndex T0_GUARDED_BY(realtimePoolLock);
    NarrowIndex<KeyPair> realtimeAccountAndSymbolIndex T0_GUARDED_BY(realtimePoolLock);
    /// The login user's records of one security; none when symbol or exchange is empty.
    QVector<HeldRecord> ownUsage(const QStringList &tradingAccounts, const QString &symbol,
                                 const QString &exchange) const T0_REQUIRES_SHARED(realtimePoolLock);
    /// What the login user may still trade in these accounts.
    qint64 quota(const QStringList &tradingAccounts, const QString &symbol, const QString &exchange, bool isBuy) const
        T0_EXCLUDES(realtimePoolLock);
    /// Quota and closable position of each account.
    QVector<OrderAllocation::Account> roomOf(const QStringList &accounts, const QString &symbol,
                                             const QString &exchange, bool isBuy) const T0_EXCLUDES(realtimePoolLock);

    QTimer *realtimeRefreshTimer = nullptr;           ///< hub's thread only
    QTimer *realtimeRetryTimer = nullptr;             ///< hub's thread only
    MasterDelayBuffer *realtimeDelayBuffer = nullptr; ///< hub's thread only

    // ---- ManualT0LogicPrivate_Integrity.cpp ---------------------------------------------------------------

    void startIntegrityChecks(); ///< when there is something to check; does nothing the next times
    void checkNextSlice() T0_EXCLUDES(productLock, resourceLock, securityPoolLock, traderLock, realtimePoolLock);
    void checkResources() T0_EXCLUDES(resourceLock, securityPoolLock);
    void checkPools() T0_EXCLUDES(securityPoolLock);
    void checkUsage() T0_EXCLUDES(realtimePoolLock);
    void finishIntegrityCheck() T0_EXCLUDES(productLock, resourceLock, securityPoolLock, traderLock, realtimePoolLock);
    void repair(const QVector<IntegrityFault> &faults) T0_EXCLUDES(resourceLock, securityPoolLock, realtimePoolLock);
    void rebuildResourceIndexes() T0_REQUIRES(resourceLock);
    void deriveAgain(const QString &usageKey) T0_EXCLUDES(realtimePoolLock);
    /// Those of the faults; all that are enabled where a fault has none.
    QStringList accountsOf(const QVector<IntegrityFault> &faults) const T0_EXCLUDES(productLock);
    void checkPoolsOf(HeldRecord resource) T0_REQUIRES_SHARED(securityPoolLock);
    // visit(index, keyOf) for every index of a family, except poolIdsByResource.
    template <typename Visit> void visitResourceIndexes(Visit visit) const T0_REQUIRES_SHARED(resourceLock);
    template <typename Visit> void visitPoolIndexes(Visit visit) const T0_REQUIRES_SHARED(securityPoolLock);
    template <typename Visit> void visitUsageIndexes(Visit visit) const T0_REQUIRES_SHARED(realtimePoolLock);

    QTimer *integrityTimer = nullptr; ///< hub's thread only
    IntegrityWalk integrityWalk;      ///< hub's thread only
    IntegrityBook integrityBook;      ///< hub's thread only
    /// Whose last answer was a failure: what is held may be old. Hub's thread only.
    struct UnreadAccounts {
        QSet<QString> accounts;
        QSet<QString> asked; ///< again, and not answered yet: a silent server gets one question an account
        void answered(const QString &account, bool success);
        /// Those of them to ask for now: enabled, and not being asked for.
        QSet<QString> takeOpen(const QSet<QString> &enabled, const QSet<QString> &underWay);
    };
    UnreadAccounts unreadResources;
    UnreadAccounts unreadPools;
    void readUnreadAgain() T0_EXCLUDES(productLock, resourceLock, securityPoolLock);

    // ---- ManualT0LogicPrivate_Settings.cpp ---------------------------------------------------------------

    void loadSymbolLists();
    void loadSymbolTradeSettings();
    /// The size of the parts a user has his orders of a symbol cut into; 0 for none.
    qint64 customQuantity(const QString &symbol) const T0_EXCLUDES(symbolTradeSettingsLock);
    void saveSymbolTradeSettings() const T0_REQUIRES(symbolTradeSettingsLock);
    void refreshCurrentTradableSymbols() T0_EXCLUDES(currentTradeAccountLock, realtimePoolLock, currentInputSymbolLock);

    QStringList t0SymbolList;                  ///< no lock: written in the constructor only
    QList<SymbolListType> tradableSymbolTypes; ///< no lock: written in the constructor only
    mutable FamilyLock currentTradeAccountLock;
    QStringList currentTradeAccount T0_GUARDED_BY(currentTradeAccountLock);
    QMutex refreshSymbolsMutex; ///< around a whole recomputation, so that an older one cannot end last
    mutable FamilyLock currentInputSymbolLock;
    QMap<QString, QString> currentInputSymbols T0_GUARDED_BY(currentInputSymbolLock); ///< symbol to search text
    mutable FamilyLock symbolTradeSettingsLock;
    QMap<QString, VariantRecord> symbolTradeSettings T0_GUARDED_BY(symbolTradeSettingsLock);
};
