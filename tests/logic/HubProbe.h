#pragma once

#include "DisplayUnits.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"

#include <QtTest/QtTest>

#include <functional>

#define T0_UNDER_LOCKS T0_THREAD_ANNOTATION(no_thread_safety_analysis)

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

    /// A whole check of caches and indexes. On the hub's thread, after data has come.
    static void check(ManualT0LogicPrivate &hub)
    {
        do
            hub.checkNextSlice();
        while (hub.integrityWalk.hasBegun() || hub.integrityWalk.family() != ManualT0Logic::Resources);
    }

    /// The first slices of a check. On the hub's thread.
    static void beginCheck(ManualT0LogicPrivate &hub, int slices)
    {
        for (int i = 0; i < slices; ++i)
            hub.checkNextSlice();
    }

    /// Breaks one thing of what the integrity test loads. On the hub's thread.
    static void damage(ManualT0LogicPrivate &hub, const QString &what)
    {
        using namespace Master_Fields::ManualT0;
        const KeyPair pair("A1", "600000.SH");
        const TradingKey key{"A1", "u1", "600000.SH", "SH"};
        const QString usage = "u1_A1_600000.SH_SH";
        WriteLock resourceLock(hub.resourceLock);
        WriteLock poolLock(hub.securityPoolLock);
        WriteLock usageLock(hub.realtimePoolLock);
        // The locks are held; clang takes a lambda for a function without them.
        const QMap<QString, std::function<void()>> damages{
            {"resource without its symbol",
             [&]() T0_UNDER_LOCKS { hub.resourceSymbolIndex.remove("600000.SH", "r1"); }},
            {"resource under another exchange",
             [&]() T0_UNDER_LOCKS {
                 hub.resourceExchangeIndex.remove("SH", "r1");
                 hub.resourceExchangeIndex.insert("SZ", "r1");
             }},
            {"resource without its account", [&]() T0_UNDER_LOCKS { hub.resourceAccountIndex.remove("A1", "r1"); }},
            {"resource that is not there", [&]() T0_UNDER_LOCKS { hub.resourceAccountIndex.insert("A2", "gone"); }},
            {"pool without its trader", [&]() T0_UNDER_LOCKS { hub.poolIdsByTrader.remove("u1", "p1"); }},
            {"pool without its trading key", [&]() T0_UNDER_LOCKS { hub.poolIdsByTradingKey.remove(key, "p1"); }},
            {"pool twice", [&]() T0_UNDER_LOCKS { hub.poolIdsByAccountAndSymbol.insert(pair, "p1"); }},
            {"pool that is not there", [&]() T0_UNDER_LOCKS { hub.poolIdsByAccountAndTrader.insert(pair, "gone"); }},
            {"usage without its exchange", [&]() T0_UNDER_LOCKS { hub.realtimeExchangeIndex.remove("SH", usage); }},
            {"usage under a symbol that nobody knows",
             [&]() T0_UNDER_LOCKS {
                 hub.realtimeAccountAndSymbolIndex.insert({"A1", ""}, usage);
             }},
            {"usage that is not there", [&]() T0_UNDER_LOCKS { hub.realtimeAccountIndex.insert("A9", "gone"); }},
            {"usage with a wrong sum",
             [&]() T0_UNDER_LOCKS { hub.realtimePoolCache[usage].insert(RtTotalBuyLimit, 7); }},
            {"usage with a part changed",
             [&]() T0_UNDER_LOCKS { hub.realtimePoolCache[usage].insert(DailyBuyLimit, 7); }},
            {"pool that its resource does not know",
             [&]() T0_UNDER_LOCKS { hub.poolIdsByResource.remove("r1", "p1"); }},
            {"resource with a pool that is not there",
             [&]() T0_UNDER_LOCKS { hub.poolIdsByResource.insert("r1", "gone"); }},
            {"pool larger than its resource",
             [&]() T0_UNDER_LOCKS { hub.securityPoolMap["p1"].insert(PoolTotalQty, 901); }},
        };
        QVERIFY2(damages.contains(what), qPrintable(what));
        damages.value(what)();
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
