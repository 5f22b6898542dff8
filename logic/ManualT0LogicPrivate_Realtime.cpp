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
    const QVector<HeldRecord> held = usageLookup().find({tradingAccounts, traderIds, symbol, exchange});
    records.reserve(held.size());
    for (const HeldRecord record : held)
        records.append(*record);
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
    QVector<HeldRecord> held = usageLookup().find({tradingAccounts, {traderId}, symbol, exchange});
    sortById(held);
    for (const HeldRecord record : qAsConst(held)) {
        const QString group = text(*record, Orvane_Fields::Security::symbol) +
                              text(*record, Orvane_Fields::UserAccount::securityExchange);
        const auto sum = sums.find(group);
        if (sum == sums.end())
            sums.insert(group, *record);
        else
            RealtimeFields::add(*sum, *record);
    }
    return sums.values();
}

TradingLookup ManualT0LogicPrivate::usageLookup() const
{
    return {realtimePoolCache,
            {realtimeAccountIndex, realtimeTraderIndex, realtimeSymbolIndex, realtimeExchangeIndex,
             realtimeAccountAndTraderIndex, realtimeAccountAndSymbolIndex},
            Master_Fields::ManualT0::T0TraderId};
}
