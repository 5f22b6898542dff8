#include "DisplayUnits.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "RealtimeFields.h"

QString ManualT0LogicPrivate::GetRealtimePoolKey(const VariantRecord &record) const
{
    return RealtimeFields::key(record, text(record, Orvane_Fields::Security::symbol));
}

VariantRecord ManualT0LogicPrivate::GetRealtimePoolDetail(const QString &tradingAccount, const QString &traderId,
                                                          const QString &symbol, const QString &exchange) const
{
    if (tradingAccount.isEmpty() || traderId.isEmpty() || symbol.isEmpty() || exchange.isEmpty())
        return {};
    const QString key = RealtimeFields::key(tradingAccount, traderId, symbol, exchange);
    ReadLock lock(realtimePoolLock);
    return realtimePoolCache.value(key);
}

RecordList ManualT0LogicPrivate::GetRealtimePoolDetailList(const QStringList &tradingAccounts,
                                                           const QStringList &traderIds, const QString &symbol,
                                                           const QString &exchange) const
{
    RecordList records;
    ReadLock lock(realtimePoolLock);
    const QVector<QString> keys = realtimeKeys(tradingAccounts, traderIds, symbol, exchange);
    records.reserve(keys.size());
    for (const QString &key : keys)
        records.append(realtimePoolCache.value(key));
    return records;
}

RecordList ManualT0LogicPrivate::GetRealtimeSumListMergeBySymbolExchange(const QStringList &tradingAccounts,
                                                                         const QString &traderId, const QString &symbol,
                                                                         const QString &exchange) const
{
    if (traderId.isEmpty())
        return {};
    QMap<QString, VariantRecord> sums;
    ReadLock lock(realtimePoolLock);
    // By key: which record is the first of its group, and keeps its other fields, is the same every time.
    const QStringList keys = sorted(realtimeKeys(tradingAccounts, {traderId}, symbol, exchange));
    for (const QString &key : keys) {
        const VariantRecord record = realtimePoolCache.value(key);
        const QString group =
            text(record, Orvane_Fields::Security::symbol) + text(record, Orvane_Fields::UserAccount::securityExchange);
        const auto sum = sums.find(group);
        if (sum == sums.end())
            sums.insert(group, record);
        else
            RealtimeFields::add(*sum, record);
    }
    return sums.values();
}

QVector<QString> ManualT0LogicPrivate::realtimeKeys(const QStringList &tradingAccounts, const QStringList &traderIds,
                                                    const QString &symbol, const QString &exchange) const
{
    IdQuery query;
    if (symbol.isEmpty()) {
        query.anyOf(realtimeAccountIndex, tradingAccounts);
    } else {
        QVector<KeyPair> pairs;
        for (const QString &account : tradingAccounts)
            pairs.append({account, symbol});
        query.anyOf(realtimeAccountAndSymbolIndex, pairs);
    }
    if (!exchange.isEmpty())
        query.equals(realtimeExchangeIndex, exchange);
    if (!traderIds.isEmpty())
        query.anyOf(realtimeTraderIndex, traderIds);
    return query.ids();
}
