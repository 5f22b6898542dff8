#include "ReferencePools.h"

#include "DisplayUnits.h"
#include "ManualT0Logic.h"
#include "MasterUtils.h"
#include "PoolTypes.h"
#include "Quantity.h"
#include "VantaKeys.h"

using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

int scale(VariantRecord &pool)
{
    const QString symbolText = symbolOf(pool);
    const int factor = displayFactor(symbolText);
    pool.insert(symbol, symbolText);
    if (factor > 1)
        pool.insert(PoolTotalQty, Quantity::toNum(pool.value(PoolTotalQty)) * factor);
    return factor;
}

void scaleFirst(VariantRecord &pool)
{
    const int factor = scale(pool);
    for (const QString &field : {MaxExposureQty, MaxPendExposureQty}) {
        if (factor > 1)
            pool.insert(field, Quantity::toNum(pool.value(field)) * factor);
    }
}

void scaleLater(VariantRecord &pool)
{
    const int factor = scale(pool);
    for (const QString &field : {MaxExposureQty, MaxPendExposureQty}) {
        const int limit = Quantity::toIntQty(pool.value(field));
        if (factor > 1 && limit != ManualT0Logic::InvalidExposure)
            pool.insert(field, limit * factor);
    }
}

QString partnerKey(const VariantRecord &pool)
{
    return QStringLiteral("%1_%2_%3").arg(text(pool, tradingAccount), text(pool, symbol), text(pool, securityExchange));
}

const QStringList ascending(const IndexedCache::Ids &ids)
{
    QStringList list = ids.values();
    list.sort();
    return list;
}

} // namespace

void ReferencePools::hold(const RecordList &pools)
{
    WriteLock lock(m_lock);
    for (VariantRecord pool : pools) {
        pool.remove(T0TraderName);
        m_cache.records.insert(text(pool, PoolDetailId), pool);
    }
    m_cache.rebuildIndexes();
}

void ReferencePools::holdResources(const RecordList &resources)
{
    for (const VariantRecord &resource : resources)
        m_resources.insert(text(resource, ResourceId), resource);
}

void ReferencePools::takeFirst(RecordList rows)
{
    WriteLock lock(m_lock);
    for (VariantRecord &pool : rows) {
        scaleFirst(pool);
        m_cache.add(text(pool, PoolDetailId), pool);
    }
}

void ReferencePools::takeLater(const QString &account, const RecordList &rows)
{
    QHash<QString, VariantRecord> fresh;
    for (VariantRecord pool : rows) {
        scaleLater(pool);
        fresh.insert(text(pool, PoolDetailId), pool);
    }
    WriteLock lock(m_lock);
    QStringList changed = fresh.keys();
    QVariantList deleted;
    const IndexedCache::Ids held = m_cache.ofAccount(account);
    for (const QString &id : held) {
        const VariantRecord old = m_cache.records.take(id);
        if (!fresh.contains(id))
            deleted.append(old);
        else if (old == fresh.value(id))
            changed.removeAll(id);
    }
    for (auto pool = fresh.cbegin(); pool != fresh.cend(); ++pool)
        m_cache.records.insert(pool.key(), *pool);
    m_cache.rebuildIndexes();
    if (!changed.isEmpty())
        MasterUtils::SendEventMsg(nullptr, Vanta_Keys::EventMsgName::ManualT0SecurityPoolUpdated, changed);
    if (!deleted.isEmpty())
        MasterUtils::SendEventMsg(nullptr, Vanta_Keys::EventMsgName::ManualT0SecurityPoolDeleted, deleted);
}

VariantRecord ReferencePools::one(const Records::Keys &keys) const
{
    return list({{keys.account}, {keys.trader}, keys.symbol, keys.exchange}, false).value(0);
}

RecordList ReferencePools::list(const Records::Filter &filter) const
{
    return list(filter, false);
}

RecordList ReferencePools::list(const Records::Filter &filter, bool withPublic) const
{
    ReadLock lock(m_lock);
    IndexedCache::Ids ids = m_cache.find(filter.accounts, filter.traders, filter.symbol, filter.exchange);
    QMap<QString, VariantRecord> publicPools;
    if (withPublic) {
        IndexedCache::Ids publicIds = m_cache.find(filter.accounts, {}, filter.symbol, filter.exchange);
        publicIds.intersect(m_cache.ofTrader(ManualT0Logic::PublicTrader));
        for (const QString &id : ascending(publicIds))
            publicPools.insert(partnerKey(m_cache.records.value(id)), m_cache.records.value(id));
        if (filter.traders.isEmpty())
            ids.subtract(publicIds);
    }
    RecordList pools;
    // Which of several partners gets the public quantity is settled by the order.
    for (const QString &id : withPublic ? ascending(ids) : QStringList(ids.values())) {
        VariantRecord pool = m_cache.records.value(id);
        const QString key = partnerKey(pool);
        if (publicPools.contains(key))
            pool.insert(PublicPoolQty, publicPools.take(key).value(PoolTotalQty));
        m_names.fill(pool);
        pools.append(pool);
    }
    for (VariantRecord pool : qAsConst(publicPools)) {
        pool.insert(PublicPoolQty, pool.value(PoolTotalQty));
        pool.insert(PoolTotalQty, 0);
        pools.append(pool);
    }
    return pools;
}

RecordList ReferencePools::resources() const
{
    ReadLock lock(m_lock);
    RecordList rows = m_resources.values();
    for (VariantRecord &resource : rows)
        pack(resource);
    return rows;
}

void ReferencePools::pack(VariantRecord &resource) const
{
    int publicSum = 0;
    int privateSum = 0;
    QStringList traders;
    QStringList names;
    for (const QString &id : ascending(m_cache.ofResource(text(resource, ResourceId)))) {
        const VariantRecord pool = m_cache.records.value(id);
        const bool isPrivate = Quantity::toIntQty(pool.value(PoolType)) == PoolTypes::Private;
        (isPrivate ? privateSum : publicSum) += Quantity::toIntQty(pool.value(PoolTotalQty));
        traders.append(isPrivate ? text(pool, T0TraderId) : ManualT0Logic::PublicTrader);
        names.append(isPrivate ? m_traderNames.value(text(pool, T0TraderId)) : ManualT0Logic::PublicTrader);
    }
    resource.insert(PublicPoolQty, publicSum);
    resource.insert(PrivatePoolQty, privateSum);
    resource.insert(T0TraderId, traders.join(QLatin1Char(',')));
    resource.insert(T0TraderName, names.join(QLatin1Char(',')));
}
