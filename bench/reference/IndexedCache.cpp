#include "IndexedCache.h"

#include "DisplayUnits.h"
#include "MasterFields.h"
#include "OrvaneFields.h"

void IndexedCache::add(const QString &id, const VariantRecord &record)
{
    records.insert(id, record);
    index(id, record);
}

void IndexedCache::index(const QString &id, const VariantRecord &record)
{
    m_byAccount[text(record, Orvane_Fields::UserAccount::tradingAccount)].insert(id);
    m_byTrader[text(record, Master_Fields::ManualT0::T0TraderId)].insert(id);
    m_bySymbol[text(record, Orvane_Fields::Security::symbol)].insert(id);
    m_byExchange[text(record, Orvane_Fields::UserAccount::securityExchange)].insert(id);
    m_byResource[text(record, Master_Fields::ManualT0::ResourceId)].insert(id);
}

void IndexedCache::rebuildIndexes()
{
    for (Index *index : {&m_byAccount, &m_byTrader, &m_bySymbol, &m_byExchange, &m_byResource})
        index->clear();
    for (auto record = records.cbegin(); record != records.cend(); ++record)
        index(record.key(), *record);
}

IndexedCache::Ids IndexedCache::united(const Index &index, const QStringList &keys)
{
    Ids ids;
    for (const QString &key : keys)
        ids.unite(index.value(key));
    return ids;
}

IndexedCache::Ids IndexedCache::find(const QStringList &accounts, const QStringList &traders, const QString &symbol,
                                     const QString &exchange) const
{
    Ids ids = united(m_byAccount, accounts);
    if (!traders.isEmpty())
        ids.intersect(united(m_byTrader, traders));
    if (!symbol.isEmpty())
        ids.intersect(united(m_bySymbol, {symbol}));
    if (!exchange.isEmpty())
        ids.intersect(united(m_byExchange, {exchange}));
    return ids;
}
