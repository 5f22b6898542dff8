#include "Lookups.h"

namespace {

void requireFields(qint64 fields, qint64 expected)
{
    if (fields != expected)
        qFatal("the lookups gave %lld fields, expected %lld", static_cast<long long>(fields),
               static_cast<long long>(expected));
}

} // namespace

void Lookups::usageRecords(const BenchHub &hub, const QVector<Records::Keys> &keys)
{
    qint64 fields = 0;
    for (const Records::Keys &key : keys)
        fields += hub.hub().GetRealtimePoolDetail(key.account, key.trader, key.symbol, key.exchange).size();
    requireFields(fields, qint64(keys.size()) * Records::FieldCount);
}

void Lookups::pools(const BenchHub &hub, const QVector<Records::Keys> &keys)
{
    qint64 fields = 0;
    for (const Records::Keys &key : keys)
        fields += hub.hub().GetSecurityPoolDetailByTrading(key.account, key.trader, key.symbol, key.exchange).size();
    requireFields(fields, qint64(keys.size()) * (Records::FieldCount + 1));
}
