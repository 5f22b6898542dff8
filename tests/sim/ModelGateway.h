#pragma once

#include "Chance.h"

#include "Envelope.h"

#include <QtCore/QSet>

#include <functional>

/// The server of the simulation: managers' resources and pools and traders' usage in plain maps, in server units. It
/// executes a request once, refuses what comes too late, and a change is in force whole or not at all.
class ModelGateway
{
public:
    explicit ModelGateway(Chance &chance);

    std::function<void(const VariantRecord &usage)> push; ///< to the client, if it subscribed the trader

    MessageBody receive(const Envelope &request);

    int executions(const QString &requestId) const { return m_executions.value(requestId); }

    /// What others do: somebody trades; another manager changes resources or pools; other products are enabled.
    void someoneTrades();
    void anotherManagerActs();
    void alterProducts();

    void forgetClient();   ///< its connection is lost
    void clientReturned(); ///< all usage is sent once more

    bool isHeardBy(const QStringList &traders) const; ///< the client has subscribed them all
    VariantRecord someUsage() const;                  ///< a record that is held; empty when there is none

    // What a query answers, all of it.
    RecordList products() const;
    RecordList traders() const;
    RecordList priority() const;
    RecordList resourcesOf(const QString &account) const;
    RecordList poolsOf(const QString &account) const;
    RecordList usageOf(const QStringList &traders) const;
    bool hasResource(const QString &id) const { return m_resources.contains(id); }
    bool isManager() const { return m_isManager; }

private:
    MessageBody answer(const Envelope &request, const MessageBody &body);
    MessageBody change(const QString &type, const MessageBody &body);
    QString tryChange(const QString &type, const VariantRecord &header, const RecordList &rows);
    QString addResources(const VariantRecord &header, const RecordList &rows, bool withPools);
    QString alterResource(const VariantRecord &row);
    QString deleteResources(const RecordList &rows);
    QString allocate(const VariantRecord &header, const RecordList &rows);
    QString deletePools(const RecordList &rows);
    MessageBody order(const RecordList &rows);
    MessageBody fate(const QString &requestId) const;

    QString resourceAt(const VariantRecord &row) const; ///< of the row's account and security
    void putPool(const VariantRecord &resource, const QString &trader, qint64 quantity);
    qint64 allocated(const QString &resourceId, int poolType) const;
    void trade(const VariantRecord &of, bool buys, qint64 quantity, double price);
    void tell(const VariantRecord &usage);
    VariantRecord usage();
    QString nextTime();

    Chance &m_chance;
    const int m_pageSize;
    const bool m_isManager;
    const QStringList m_priority;
    QSet<QString> m_enabled;
    QMap<QString, VariantRecord> m_resources;
    QMap<QString, VariantRecord> m_pools;
    QMap<QString, VariantRecord> m_usage;  ///< by trader, account and security
    QSet<QString> m_subscribed;            ///< traders
    QMap<QString, MessageBody> m_answered; ///< by request id
    QMap<QString, int> m_executions;
    int m_lastId = 100;
    int m_clock = 1000;
};
