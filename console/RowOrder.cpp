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

QStringList usageKey(const VariantRecord &row)
{
    QStringList key;
    for (const QString &field : {T0TraderId, Orvane_Fields::UserAccount::tradingAccount,
                                 Orvane_Fields::Security::symbol, Orvane_Fields::UserAccount::securityExchange})
        key.append(row.value(field).toString());
    key.append(jsonText(row)); // rows of profit name no trader: several may share the rest of the key
    return key;
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
    return usageKey(a) < usageKey(b);
}

QVariantList RowOrder::sorted(const QVariantList &rows, Less less)
{
    QVariantList result = rows;
    std::stable_sort(result.begin(), result.end(),
                     [less](const QVariant &a, const QVariant &b) { return less(a.toMap(), b.toMap()); });
    return result;
}
