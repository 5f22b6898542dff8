#pragma once

#include "DisplayUnits.h"
#include "TradingLookup.h"

/// What the check of the caches asks an index: whether a record stands in it under its key, and which ids differ.
namespace IndexAudit {

// The key of a record in an index.

struct ByField {
    const QString &field;
    QString operator()(const VariantRecord &record) const { return text(record, field); }
};

struct ByFields {
    const QString &first;
    const QString &second;
    KeyPair operator()(const VariantRecord &record) const { return {text(record, first), text(record, second)}; }
};

struct ByTradingKey {
    const QString &trader;
    TradingKey operator()(const VariantRecord &record) const
    {
        return {text(record, Orvane_Fields::UserAccount::tradingAccount), text(record, trader),
                text(record, Orvane_Fields::Security::symbol),
                text(record, Orvane_Fields::UserAccount::securityExchange)};
    }
};

/// Exactly once, or rightly not at all.
template <typename Key, typename KeyOf> bool holds(const IdIndex<Key> &index, const KeyOf &keyOf, HeldRecord record)
{
    const IdSet *ids = index.find(keyOf(*record));
    return ids && ids->contains(record.key());
}

template <typename Key, typename KeyOf> bool holds(const NarrowIndex<Key> &index, const KeyOf &keyOf, HeldRecord record)
{
    int found = 0;
    index.forEach(keyOf(*record), [&](const QString &id) { found += id == record.key() ? 1 : 0; });
    const bool isKnown = !text(*record, Orvane_Fields::Security::symbol).isEmpty();
    return found == (isKnown ? 1 : 0);
}

/// Walks the keys only.
template <typename Key> int idCount(const IdIndex<Key> &index)
{
    int count = 0;
    for (const IdSet &ids : index.sets())
        count += ids.size();
    return count;
}

template <typename Key> int idCount(const NarrowIndex<Key> &index)
{
    return index.ids().size();
}

/// How many ids an index of so many records has.
template <typename Key> int expectedCount(const IdIndex<Key> &, int records, int)
{
    return records;
}

template <typename Key> int expectedCount(const NarrowIndex<Key> &, int records, int ofUnknownSymbol)
{
    return records - ofUnknownSymbol;
}

template <typename Key, typename Visit> void forEachId(const IdIndex<Key> &index, Visit visit)
{
    for (auto set = index.sets().cbegin(); set != index.sets().cend(); ++set) {
        for (const QString &id : *set)
            visit(set.key(), id);
    }
}

template <typename Key, typename Visit> void forEachId(const NarrowIndex<Key> &index, Visit visit)
{
    for (auto id = index.ids().cbegin(); id != index.ids().cend(); ++id)
        visit(id.key(), *id);
}

/// Ids without a record of their key, and those of records that the index does not hold. Walks everything.
template <typename Index, typename KeyOf>
IdSet differing(const Index &index, const KeyOf &keyOf, const RecordCache &cache)
{
    IdSet ids;
    forEachId(index, [&](const auto &key, const QString &id) {
        const HeldRecord record = cache.constFind(id);
        if (record == cache.cend() || !(keyOf(*record) == key))
            ids.insert(id);
    });
    for (HeldRecord record = cache.cbegin(); record != cache.cend(); ++record) {
        if (!holds(index, keyOf, record))
            ids.insert(record.key());
    }
    return ids;
}

/// Whether all visited indexes hold a record.
class RecordCheck
{
public:
    RecordCheck(HeldRecord record, bool &isHeld)
        : m_record(record)
        , m_isHeld(isHeld)
    {}

    template <typename Index, typename KeyOf> void operator()(const Index &index, const KeyOf &keyOf)
    {
        m_isHeld = m_isHeld && holds(index, keyOf, m_record);
    }

private:
    HeldRecord m_record;
    bool &m_isHeld;
};

} // namespace IndexAudit
