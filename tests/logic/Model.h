#pragma once

#include "Rows.h"

#include <QtCore/QStringList>

/// What the hub must hold and answer, in the plainest form: lists that are walked from end to end. No locks,
/// no indexes, nothing shared with the hub. Everything the hub is expected to ask and to announce is written to
/// asked and events, in the texts of LogicTest.
class Model
{
public:
    enum Family { Products, Traders, Resources, Pools, Usage };
    enum State { None, Loading, Done, Failed };

    void initData();
    void refreshType(int type);
    void answerProducts(bool success, const RecordList &rows);
    void answerTraders(bool success, const RecordList &rows, bool isManager);
    void answerResources(const QString &account, bool success, const RecordList &rows, bool cover);
    void answerPools(const QString &account, bool success, const RecordList &rows);
    void answerUsage(bool success, const RecordList &rows);
    void push(const VariantRecord &row);
    void choose(const QStringList &accounts);

    RecordList allResources() const;
    RecordList resourcesOf(const QStringList &products, const QString &assetProp, const QString &symbol,
                           const QString &exchange, const QStringList &traderIds) const;
    RecordList allPools() const;
    RecordList poolsOfResource(const QString &resourceId, int type) const;
    RecordList poolsOf(const QStringList &accounts, const QStringList &traderIds, const QString &symbol,
                       const QString &exchange, bool withPublic) const;
    QStringList accountsOf(const QStringList &products, const QStringList &properties) const;
    RecordList usageOf(const QStringList &accounts, const QStringList &traderIds, const QString &symbol,
                       const QString &exchange) const;
    RecordList sumsOf(const QStringList &accounts, const QString &trader, const QString &symbol,
                      const QString &exchange) const;
    RecordList profitOf(const QStringList &accounts, const QString &trader, const QString &symbol,
                        const QString &exchange) const;

    QStringList accounts;               ///< enabled, as the server lists them
    QMap<QString, QStringList> enabled; ///< product to its asset properties, ascending
    QMap<QString, QString> traderNames;
    QStringList chosen;
    QStringList tradableSymbols;
    State states[6] = {};
    bool known[6] = {};

    QStringList asked;
    QStringList events;

private:
    bool startLoad(int family);
    void finish(int family, bool success);
    void loadAccounts(int family, RecordList &rows, QMap<QString, int> &waiting, const QString &query);
    bool answersLoad(int family, const QString &account, bool success, QMap<QString, int> &waiting,
                     const QString &query);
    QString traderOf(const VariantRecord &pool) const;
    VariantRecord withSummary(VariantRecord resource) const;
    VariantRecord named(VariantRecord pool) const;
    bool merge(VariantRecord row);
    bool isNews(const VariantRecord &record) const;
    void announceSymbols();

    int productFailures = 0;
    int traderFailures = 0;
    bool isManager = false;
    bool poolTraderIsUser = true;
    RecordList resources;
    RecordList pools;
    RecordList usage;
    QMap<QString, int> waitingResources;
    QMap<QString, int> waitingPools;
};
