#pragma once

#include "VariantRecord.h"

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QStringList>

/// Records by id with an index of ids for each key, read in the obvious way: the sets of every condition are united
/// into one, and the results intersected.
class IndexedCache
{
public:
    using Ids = QSet<QString>;

    QHash<QString, VariantRecord> records;

    void add(const QString &id, const VariantRecord &record); ///< to the records and the indexes
    void rebuildIndexes();

    /// Accounts are named; an empty trader list, symbol or exchange is any.
    Ids find(const QStringList &accounts, const QStringList &traders, const QString &symbol,
             const QString &exchange) const;
    Ids ofAccount(const QString &account) const { return m_byAccount.value(account); }
    Ids ofTrader(const QString &trader) const { return m_byTrader.value(trader); }
    Ids ofResource(const QString &resource) const { return m_byResource.value(resource); }

private:
    using Index = QHash<QString, Ids>;

    static Ids united(const Index &index, const QStringList &keys);
    void index(const QString &id, const VariantRecord &record);

    Index m_byAccount;
    Index m_byTrader;
    Index m_bySymbol;
    Index m_byExchange;
    Index m_byResource;
};
