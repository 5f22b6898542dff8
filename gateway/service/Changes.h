#pragma once

#include "Store.h"

/// What one change request writes: into the store, and beside it what the audit will say and which usage records
/// are to be computed anew. What a write runs into is found in the store's errorText(), once at the end: nothing of
/// a request stays when anything of it failed.
class Changes
{
public:
    explicit Changes(Store &store);

    void clear();

    void setEnabled(const QString &account, bool enabled);

    /// Without an id: a new one. Return the id.
    QString saveResource(const StoredResource &resource);
    QString savePool(const StoredPool &pool);

    void removeResource(const StoredResource &resource); ///< with its pools
    void removePool(const StoredPool &pool);

    void saveSafety(const QString &trader, const SafetyRules &rules);

    /// A price is kept by the service; here it only leaves its trace.
    void noteQuote(const QString &symbol, double from, double to);

    /// Orders and the market are the service's, too. A refusal leaves its trace as well.
    void noteOrder(const StoredOrder &order, const QString &refusal);
    void noteCancel(const QString &id, const StoredOrder &order, const QString &refusal);
    void noteMarket(const QString &command, const QString &from, const QString &to);

    const QVector<AuditEntry> &audit() const;
    const QSet<Holding> &holdings() const;
    const QSet<QString> &accounts() const;

private:
    void note(const AuditEntry &thing, const QString &field, const QString &from, const QString &to);
    void notePool(const StoredPool &pool, const StoredPool &before, const StoredPool &after);

    Store &m_store;
    QVector<AuditEntry> m_audit;
    QSet<Holding> m_holdings;
    QSet<QString> m_accounts;
};
