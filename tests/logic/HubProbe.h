#pragma once

#include "DisplayUnits.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"

/// Reads what the hub hides: whether its indexes say exactly what its caches say, and its private flags.
class HubProbe
{
public:
    /// One line an index that differs from its cache; empty when all agree. Any thread.
    static QStringList indexFaults(const ManualT0LogicPrivate &hub)
    {
        using namespace Orvane_Fields;
        using Master_Fields::ManualT0::T0TraderId;
        QStringList faults;
        {
            ReadLock lock(hub.resourceLock);
            const Cache &cache = hub.resourceCache;
            compare(faults, "resource account", hub.resourceAccountIndex, cache, by(UserAccount::tradingAccount));
            compare(faults, "resource symbol", hub.resourceSymbolIndex, cache, by(Security::symbol));
            compare(faults, "resource exchange", hub.resourceExchangeIndex, cache, by(UserAccount::securityExchange));
        }
        {
            ReadLock lock(hub.securityPoolLock);
            const Cache &cache = hub.securityPoolMap;
            const QString trader = hub.poolTradersAreUsers ? UserAccount::userID : T0TraderId;
            compare(faults, "pool account", hub.poolIdsByTradingAccount, cache, by(UserAccount::tradingAccount));
            compare(faults, "pool symbol", hub.poolIdsBySymbol, cache, by(Security::symbol));
            compare(faults, "pool exchange", hub.poolIdsByExchange, cache, by(UserAccount::securityExchange));
            compare(faults, "pool trader", hub.poolIdsByTrader, cache, by(trader));
            compare(faults, "pool resource", hub.poolIdsByResource, cache, by(Master_Fields::ManualT0::ResourceId));
            compare(faults, "pool trading key", hub.poolIdsByTradingKey, cache, [&trader](const VariantRecord &pool) {
                return TradingKey{text(pool, UserAccount::tradingAccount), text(pool, trader),
                                  text(pool, Security::symbol), text(pool, UserAccount::securityExchange)};
            });
            compare(faults, "pool account and trader", hub.poolIdsByAccountAndTrader, cache, byAccountAnd(trader));
            compare(faults, "pool account and symbol", hub.poolIdsByAccountAndSymbol, cache,
                    byAccountAnd(Security::symbol));
        }
        ReadLock lock(hub.realtimePoolLock);
        const Cache &cache = hub.realtimePoolCache;
        compare(faults, "usage account", hub.realtimeAccountIndex, cache, by(UserAccount::tradingAccount));
        compare(faults, "usage trader", hub.realtimeTraderIndex, cache, by(T0TraderId));
        compare(faults, "usage symbol", hub.realtimeSymbolIndex, cache, by(Security::symbol));
        compare(faults, "usage exchange", hub.realtimeExchangeIndex, cache, by(UserAccount::securityExchange));
        compare(faults, "usage account and trader", hub.realtimeAccountAndTraderIndex, cache, byAccountAnd(T0TraderId));
        compare(faults, "usage account and symbol", hub.realtimeAccountAndSymbolIndex, cache,
                byAccountAnd(Security::symbol));
        return faults;
    }

    static bool isManager(const ManualT0LogicPrivate &hub) { return hub.isManager; }
    static bool pushSubscribed(const ManualT0LogicPrivate &hub) { return hub.pushSubscribed; }

    static QStringList usageKeys(const ManualT0LogicPrivate &hub)
    {
        ReadLock lock(hub.realtimePoolLock);
        QStringList keys = hub.realtimePoolCache.keys();
        keys.sort();
        return keys;
    }

private:
    using Cache = QHash<QString, VariantRecord>;

    template <typename Key> static QHash<Key, IdSet> held(const IdIndex<Key> &index) { return index.sets(); }

    template <typename Key> static QHash<Key, IdSet> held(const NarrowIndex<Key> &index)
    {
        QHash<Key, IdSet> sets;
        for (auto id = index.ids().cbegin(); id != index.ids().cend(); ++id)
            sets[id.key()].insert(sets[id.key()].contains(*id) ? QStringLiteral("twice: ") + *id : *id);
        return sets;
    }

    template <typename Key> static bool holds(const IdIndex<Key> &, const VariantRecord &) { return true; }

    template <typename Key> static bool holds(const NarrowIndex<Key> &, const VariantRecord &record)
    {
        return !text(record, Orvane_Fields::Security::symbol).isEmpty();
    }

    template <typename Index, typename KeyOf>
    static void compare(QStringList &faults, const char *name, const Index &index, const Cache &cache, KeyOf keyOf)
    {
        decltype(held(index)) expected;
        for (auto record = cache.cbegin(); record != cache.cend(); ++record) {
            if (holds(index, *record))
                expected[keyOf(*record)].insert(record.key());
        }
        if (held(index) != expected)
            faults.append(QStringLiteral("the %1 index differs from its cache").arg(QLatin1String(name)));
    }

    static std::function<QString(const VariantRecord &)> by(const QString &field)
    {
        return [field](const VariantRecord &record) { return text(record, field); };
    }

    static std::function<KeyPair(const VariantRecord &)> byAccountAnd(const QString &field)
    {
        return [field](const VariantRecord &record) {
            return KeyPair(text(record, Orvane_Fields::UserAccount::tradingAccount), text(record, field));
        };
    }
};
