#include "RowOrder.h"

#include "JsonText.h"
#include "MasterFields.h"
#include "OrvaneFields.h"

#include <algorithm>

using namespace Master_Fields::ManualT0;

namespace {

bool standsForItself(const VariantRecord &pool)
{
    return pool.value(PoolType).toInt() == 0 && pool.contains(PublicPoolQty);
}

const QStringList &usageFields()
{
    static const QStringList fields{T0TraderId, Orvane_Fields::UserAccount::tradingAccount,
                                    Orvane_Fields::Security::symbol, Orvane_Fields::UserAccount::securityExchange};
    return fields;
}

} // namespace

bool RowOrder::byResourceId(const VariantRecord &a, const VariantRecord &b)
{
    return a.value(ResourceId).toString() < b.value(ResourceId).toString();
}

bool RowOrder::byPoolId(const VariantRecord &a, const VariantRecord &b)
{
    if (standsForItself(a) || standsForItself(b))
        return !standsForItself(a);
    return a.value(PoolDetailId).toString() < b.value(PoolDetailId).toString();
}

bool RowOrder::byUsageKey(const VariantRecord &a, const VariantRecord &b)
{
    for (const QString &field : usageFields()) {
        const int order = a.value(field).toString().compare(b.value(field).toString());
        if (order != 0)
            return order < 0;
    }
    return jsonText(a) < jsonText(b); // rows of profit name no trader: several may share all of these
}

QVariantList RowOrder::sorted(const QVariantList &rows, Less less)
{
    QVector<VariantRecord> records;
    records.reserve(rows.size());
    for (const QVariant &row : rows)
        records.append(row.toMap());
    std::stable_sort(records.begin(), records.end(), less);
    QVariantList result;
    for (const VariantRecord &record : qAsConst(records))
        result.append(record);
    return result;
}
