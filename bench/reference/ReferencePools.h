#pragma once

#include "IndexedCache.h"
#include "Store.h"
#include "TraderNames.h"

/// What the hub does with security pools and resources, each operation in the obvious way.
class ReferencePools : public Store
{
public:
    explicit ReferencePools(const QMap<QString, QString> &traderNames)
        : m_traderNames(traderNames)
        , m_names(traderNames)
    {}

    void hold(const RecordList &pools); ///< as the hub gives them
    void holdResources(const RecordList &resources);

    void takeFirst(RecordList rows);                                ///< an answer while loading; rows in server units
    void takeLater(const QString &account, const RecordList &rows); ///< an answer after the load

    VariantRecord one(const Records::Keys &keys) const override;
    RecordList list(const Records::Filter &filter) const override;
    RecordList list(const Records::Filter &filter, bool withPublic) const;
    RecordList resources() const; ///< each with the summary of its pools

private:
    void pack(VariantRecord &resource) const;

    mutable FamilyLock m_lock;
    IndexedCache m_cache;
    QHash<QString, VariantRecord> m_resources;
    const QMap<QString, QString> m_traderNames;
    const TraderNames m_names;
};
