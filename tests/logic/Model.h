#pragma once

#include "Rows.h"

#include <QtCore/QSet>
#include <QtCore/QStringList>

/// What the hub must hold and answer, in the plainest form: lists that are walked from end to end. No locks,
/// no indexes, nothing shared with the hub but the texts for users. Everything the hub is expected to ask and to
/// announce is written to asked and events, in the texts of LogicTest. What the host holds is that of tradingDesk().
class Model
{
public:
    enum Family { Products, Traders, Resources, Pools, Usage, Priority };
    enum State { None, Loading, Done, Failed };

    void initData();
    void refreshType(int type);
    void refreshAll();
    void answerProducts(bool success, const RecordList &rows);
    void productsAltered(const RecordList &accepted); ///< by this client; the server has accepted it
    void productsUnknown();                           ///< nobody knows whether it has
    void answerTraders(bool success, const RecordList &rows, bool isManager);
    void answerResources(const QString &account, bool success, const RecordList &rows, bool cover);
    void answerPools(const QString &account, bool success, const RecordList &rows);
    void answerUsage(bool success, const RecordList &rows);
    void answerPriority(bool success, const QStringList &priority);
    void push(const VariantRecord &row);
    void deleteResources(const QStringList &ids); ///< the server has accepted it
    void choose(const QStringList &accounts);
    void recomputeSymbols();

    bool hasOrphans() const { return !orphans.isEmpty(); } ///< pools whose resource was deleted
    void listOrphans() { orphans.clear(); }
    QString nameOf(const QString &trader) const;
    RecordList allResources() const;
    RecordList resource(const QString &id) const;
    RecordList resourcesOf(const QStringList &products, const QString &assetProp, const QString &symbol,
                           const QString &exchange, const QStringList &traderIds) const;
    RecordList allPools() const;
    RecordList poolsOfResource(const QString &resourceId, int type) const;
    RecordList poolsById(const QStringList &ids) const;
    RecordList poolsOf(const QStringList &accounts, const QStringList &traderIds, const QString &symbol,
                       const QString &exchange, bool withPublic) const;
    QStringList enabledAccounts(const QStringList &products, const QString &assetProp) const;
    QStringList accountsOf(const QStringList &products, const QStringList &properties) const;
    RecordList usageOf(const QStringList &accounts, const QStringList &traderIds, const QString &symbol,
                       const QString &exchange) const;
    RecordList openPositions(const QStringList &accounts, const QStringList &traderIds, const QString &symbol,
                             const QString &exchange) const;
    qlonglong ownPosition(const QString &symbol, const QString &exchange, const QString &side,
                          const QStringList &accounts) const;
    qlonglong quota(const QStringList &accounts, const QString &symbol, const QString &exchange, bool buys) const;
    QStringList exchangesOf(const QString &symbol, const QStringList &accounts) const;
    double allocatable(const QString &account, const QString &symbol, const QString &exchange) const;
    double allocatable(const QString &product, const QString &assetProp, const QString &symbol,
                       const QString &exchange) const;
    RecordList resourceCandidates(const QStringList &products, const QString &assetProp, bool withT0Symbols) const;
    QString check(const RecordList &orders, RecordList &results) const; ///< of all but the price; how many are right
    RecordList confirmation(const RecordList &orders, RecordList &rest) const;
    RecordList cancelable(const QStringList &accounts, const QString &symbol, const QString &exchange,
                          const QStringList &users, const QString &side) const;
    QStringList searchTexts() const; ///< of the tradable symbols
    static QMap<QString, QStringList> productsToEnable();
    VariantRecord usageDetail(const QString &account, const QString &trader, const QString &symbol,
                              const QString &exchange) const;
    RecordList sumsOf(const QStringList &accounts, const QString &trader, const QString &symbol,
                      const QString &exchange) const;
    RecordList profitOf(const QStringList &accounts, const QString &trader, const QString &symbol,
                        const QString &exchange) const;

    QStringList accounts;               ///< enabled, as the server lists them
    QMap<QString, QStringList> enabled; ///< product to its asset properties, ascending
    QMap<QString, QString> traderNames;
    QStringList ownAccounts; ///< of the user, as their priority says
    QStringList chosen;
    QStringList tradableSymbols;
    QMap<QString, VariantRecord> settings; ///< by symbol
    State states[7] = {};                  ///< one more than there are families: an unknown type
    bool known[7] = {};

    bool gathersSymbols = false; ///< a push's new symbol waits for recomputeSymbols() then; else it counts at once

    QStringList asked;
    QStringList events;

private:
    void ask(const QString &query);
    void takeProducts(const RecordList &rows);
    bool startLoad(int family);
    void finish(int family, bool success);
    void loadAccounts(int family);
    void answersLoad(int family, const QString &account, bool success);
    void failed(int family, const QString &query);
    void announceChanges(const QString &account, const RecordList &fresh);
    bool merge(const VariantRecord &row);
    bool bringsSymbol(const RecordList &taken) const;
    QString traderOf(const VariantRecord &pool) const;
    VariantRecord named(VariantRecord pool) const;
    VariantRecord withSummary(VariantRecord resource) const;
    RecordList poolsByResource(const QString &id) const;
    using Taken = QMap<QString, qlonglong>; ///< of accounts by earlier orders of a call
    /// Over what earlier orders have left of the accounts: first it closes, then it opens.
    QMap<QString, qlonglong> distributed(const VariantRecord &order, const QStringList &of, Taken &taken) const;
    RecordList confirmed(VariantRecord order, const QString &account, qlonglong quantity) const;

    int failures[2] = {};
    int productQueries = 0; ///< not answered yet
    bool rereadsProducts = false;
    bool poolTraderIsUser = true;
    QSet<QString> deleted; ///< resources; an answer from before does not bring them back
    QSet<QString> orphans; ///< pools whose resource was deleted, until an answer lists them
    RecordList resources;
    RecordList pools;
    RecordList usage;
    QMap<QString, int> waitingAccounts[4];
};
