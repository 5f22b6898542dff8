#include "DisplayUnits.h"
#include "InitKeys.h"
#include "ManualT0LogicPrivate.h"
#include "MasterDelayBuffer.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "RealtimeFields.h"
#include "ReceivedUsage.h"
#include "VantaKeys.h"

#include <QtCore/QTimer>

#include <algorithm>

using namespace Master_Fields::ManualT0;

namespace {

/// What the host says of a record, asked before any lock is taken.
struct Instrument {
    QString symbol;
    int factor;

    explicit Instrument(const VariantRecord &record)
        : symbol(symbolOf(record))
        , factor(displayFactor(symbol))
    {}
};

} // namespace

void ManualT0LogicPrivate::slotQueryPoolRealTimeResponse(QString code, QVariantMap queryMap,
                                                         QList<QVariantMap> realTimeList)
{
    Q_UNUSED(queryMap)
    if (!enterSlot())
        return;
    const bool success = code == Orvane_Values::RequestExeStatus::success;
    if (!isInitialLoad(ManualT0Logic::RealtimeUsage)) {
        if (success)
            takeLaterRealtime(realTimeList);
    } else if (success) {
        takeFirstRealtime(realTimeList);
    } else {
        retryLater(realtimeRetryTimer, &ManualT0LogicPrivate::refreshPoolRealTime);
    }
}

void ManualT0LogicPrivate::takeFirstRealtime(const RecordList &rows)
{
    QHash<QString, VariantRecord> fresh;
    fresh.reserve(rows.size());
    for (const VariantRecord &record : rows) {
        const ReceivedUsage received(record);
        received.writeTo(fresh[received.key()] = {});
    }

    WriteLock lock(realtimePoolLock);
    realtimePoolCache.swap(fresh);
    initStates().FinishInit(initKey(ManualT0Logic::RealtimeUsage), true, true);
    rebuildRealtimeIndexes();
    lock.unlock();

    startIntegrityChecks();
    if (!realtimeRefreshTimer) {
        realtimeRefreshTimer = new QTimer(this);
        connect(realtimeRefreshTimer, &QTimer::timeout, this, &ManualT0LogicPrivate::refreshPoolRealTime);
        realtimeRefreshTimer->start(timing.realtimeRefresh);
    }
    sendDataInited(ManualT0Logic::RealtimeUsage);
}

void ManualT0LogicPrivate::takeLaterRealtime(const RecordList &rows)
{
    QVector<Instrument> instruments;
    instruments.reserve(rows.size());
    for (const VariantRecord &record : rows)
        instruments.append(Instrument(record));

    QVariantList changed;
    WriteLock lock(realtimePoolLock);
    for (int i = 0; i < rows.size(); ++i) {
        const Instrument &instrument = instruments.at(i);
        const VariantRecord &row = rows.at(i);
        if (isNews(RealtimeFields::key(row, instrument.symbol), text(row, Master_Fields::System::ModifyTime)))
            changed.append(takeRealtimeRecord(ReceivedUsage(row, instrument.symbol, instrument.factor)));
    }
    // deliberate: sent under the lock, so that no newer push slips in between the change and its announcement;
    // the host queues events, listeners read once the lock is free
    sendEvent(Vanta_Keys::EventMsgName::ManualT0PoolRealTimeUpdated, changed);
    lock.unlock();

    const auto isNew = [this](const QVariant &record) { return bringsNewSymbol(record.toMap()); };
    if (std::any_of(changed.cbegin(), changed.cend(), isNew))
        announceNewSymbols();
}

void ManualT0LogicPrivate::slotRecvPoolRealtimeChangedPush(QVariantMap realtimeMap)
{
    if (!enterSlot())
        return;
    const ReceivedUsage received(realtimeMap);
    WriteLock lock(realtimePoolLock);
    if (!isNews(received.key(), received.modifyTime()))
        return;
    const VariantRecord merged = takeRealtimeRecord(received);
    lock.unlock();
    sendEvent(Vanta_Keys::EventMsgName::ManualT0PoolRealTimeUpdated, QVariantList{merged});

    if (!bringsNewSymbol(merged))
        return;
    // Gathered: a burst of new symbols costs one recomputation.
    if (!realtimeDelayBuffer) {
        realtimeDelayBuffer = new MasterDelayBuffer(this, timing.symbolDelay);
        connect(realtimeDelayBuffer, &MasterDelayBuffer::bufferTimeOut, this, [this] {
            realtimeDelayBuffer->GetBufferItems();
            announceNewSymbols();
        });
    }
    realtimeDelayBuffer->AppendItem(QVariant());
}

bool ManualT0LogicPrivate::isNews(const QString &key, const QString &modifyTime) const
{
    const HeldRecord held = realtimePoolCache.constFind(key);
    // deliberate: an equal time is no news
    return held == realtimePoolCache.cend() || text(*held, Master_Fields::System::ModifyTime) < modifyTime;
}

VariantRecord ManualT0LogicPrivate::takeRealtimeRecord(const ReceivedUsage &received)
{
    const QString key = received.key();
    VariantRecord &record = realtimePoolCache[key];
    const bool isNew = record.isEmpty();
    if (!record.isDetached())
        record.clear(); // somebody holds a copy: a new record costs less than one more copy to overwrite
    received.writeTo(record);
    if (isNew)
        indexRealtime(key, record);
    return record;
}

bool ManualT0LogicPrivate::bringsNewSymbol(const VariantRecord &record) const
{
    if (text(record, T0TraderId) != loginUserId)
        return false;
    // The accounts are read after the record stands: whoever chooses others meanwhile finds the record himself.
    if (!GetCurrentTradeAccount().contains(text(record, Orvane_Fields::UserAccount::tradingAccount)))
        return false;
    ReadLock lock(currentInputSymbolLock);
    return !currentInputSymbols.contains(text(record, Orvane_Fields::Security::symbol));
}

void ManualT0LogicPrivate::rebuildRealtimeIndexes()
{
    realtimeAccountIndex.clear();
    realtimeTraderIndex.clear();
    realtimeSymbolIndex.clear();
    realtimeExchangeIndex.clear();
    realtimeAccountAndTraderIndex.clear();
    realtimeAccountAndSymbolIndex.clear();
    for (auto record = realtimePoolCache.cbegin(); record != realtimePoolCache.cend(); ++record)
        indexRealtime(record.key(), *record);
}

void ManualT0LogicPrivate::indexRealtime(const QString &key, const VariantRecord &record)
{
    const QString account = text(record, Orvane_Fields::UserAccount::tradingAccount);
    const QString trader = text(record, T0TraderId);
    const QString symbol = text(record, Orvane_Fields::Security::symbol);
    realtimeAccountIndex.insert(account, key);
    realtimeTraderIndex.insert(trader, key);
    realtimeSymbolIndex.insert(symbol, key);
    realtimeExchangeIndex.insert(text(record, Orvane_Fields::UserAccount::securityExchange), key);
    realtimeAccountAndTraderIndex.insert({account, trader}, key);
    if (!symbol.isEmpty()) // of unknown ones there may be many, and nobody looks them up
        realtimeAccountAndSymbolIndex.insert({account, symbol}, key);
}

void ManualT0LogicPrivate::announceNewSymbols()
{
    refreshCurrentTradableSymbols();
    sendEvent(Vanta_Keys::EventMsgName::ManualT0CurInputSymbolChanged, QVariant());
}
