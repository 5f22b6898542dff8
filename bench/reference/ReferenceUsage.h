#pragma once

#include "IndexedCache.h"
#include "ReferenceDerive.h"
#include "Store.h"

/// What the hub does with usage records, each operation in the obvious way.
class ReferenceUsage : public Store
{
public:
    void hold(const RecordList &derived); ///< records that are derived already

    void takeFirst(const RecordList &rows);

    /// A pushed record; true: it was newer and is announced.
    bool push(const VariantRecord &received, ReferenceDerive::Names names = ReferenceDerive::Names::Prebuilt);

    VariantRecord one(const Records::Keys &keys) const override;
    RecordList list(const Records::Filter &filter) const override;
    RecordList sums(const Records::Filter &filter) const;
    RecordList profits(const Records::Filter &filter) const;

    /// checkFlags: as CheckOrderData's.
    QString checkOrders(const RecordList &orders, const QString &trader, RecordList &results, int checkFlags) const;

private:
    QString checkOrder(const VariantRecord &order, const QString &trader, int checkFlags) const;

    mutable FamilyLock m_lock;
    IndexedCache m_cache;
};
