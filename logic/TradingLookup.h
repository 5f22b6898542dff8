#pragma once

#include "IdIndex.h"
#include "VariantRecord.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

using RecordCache = QHash<QString, VariantRecord>; ///< by id

/// A record where it is held, key() is its id. Valid while the lock of its cache is held.
using HeldRecord = RecordCache::const_iterator;

inline QVector<HeldRecord> recordsOf(const HeldIds &ids, const RecordCache &cache)
{
    QVector<HeldRecord> records;
    records.reserve(ids.size());
    ids.forEach([&](const QString &id) { records.append(cache.constFind(id)); });
    return records;
}

inline void sortById(QVector<HeldRecord> &records)
{
    std::sort(records.begin(), records.end(), [](HeldRecord a, HeldRecord b) { return a.key() < b.key(); });
}

/// What is looked for among pools or usage records.
struct TradingFilter {
    QStringList accounts;
    QStringList traders; ///< empty: any
    QString symbol;      ///< empty: any
    QString exchange;    ///< empty: any
};

/// Everything that a pool is traded under.
struct TradingKey {
    QString account;
    QString trader;
    QString symbol;
    QString exchange;

    bool operator==(const TradingKey &other) const
    {
        return symbol == other.symbol && account == other.account && trader == other.trader &&
               exchange == other.exchange;
    }
};

inline uint qHash(const TradingKey &key, uint seed = 0)
{
    uint hash = seed;
    for (const QString *part : {&key.account, &key.trader, &key.symbol, &key.exchange})
        hash = hash * 31 + qHash(*part, seed);
    return hash;
}

/// Finds records of a cache through its indexes. Lives as long as the lock of cache and indexes is held.
class TradingLookup
{
public:
    struct Indexes {
        const IdIndex<QString> &byAccount;
        const IdIndex<QString> &byTrader;
        const IdIndex<QString> &bySymbol;
        const IdIndex<QString> &byExchange;
        const IdIndex<KeyPair> &byAccountAndTrader;
        const NarrowIndex<KeyPair> &byAccountAndSymbol;
    };

    /// traderField: the field by which the indexes know a record's trader.
    TradingLookup(const RecordCache &cache, const Indexes &indexes, const QString &traderField)
        : m_cache(cache)
        , m_indexes(indexes)
        , m_traderField(traderField)
    {}

    /// In no particular order, each record once.
    QVector<HeldRecord> find(const TradingFilter &filter) const;

private:
    /// Ids among which are all that meet a filter, and which of its conditions all of them meet.
    struct Candidates {
        HeldIds ids;
        bool ofAccounts = false;
        bool ofTraders = false;
        bool ofSymbol = false;
        bool ofExchange = false;
    };

    Candidates candidates(const TradingFilter &filter) const;
    Candidates candidatesOfSymbol(const TradingFilter &filter) const;

    const RecordCache &m_cache;
    const Indexes m_indexes;
    const QString &m_traderField;
};
