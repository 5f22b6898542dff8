#include "Store.h"

#include "MultiIndexStore.h"
#include "ReferencePools.h"
#include "ReferenceUsage.h"
#include "ScanStore.h"
#include "SqliteStore.h"

#include <map>
#include <tuple>

namespace {

class HubUsage : public Store
{
public:
    explicit HubUsage(const ManualT0LogicPrivate &hub)
        : m_hub(hub)
    {}

    VariantRecord one(const Records::Keys &keys) const override
    {
        return m_hub.GetRealtimePoolDetail(keys.account, keys.trader, keys.symbol, keys.exchange);
    }

    RecordList list(const Records::Filter &filter) const override
    {
        return m_hub.GetRealtimePoolDetailList(filter.accounts, filter.traders, filter.symbol, filter.exchange);
    }

private:
    const ManualT0LogicPrivate &m_hub;
};

class HubPools : public Store
{
public:
    explicit HubPools(const ManualT0LogicPrivate &hub)
        : m_hub(hub)
    {}

    VariantRecord one(const Records::Keys &keys) const override
    {
        return m_hub.GetSecurityPoolDetailByTrading(keys.account, keys.trader, keys.symbol, keys.exchange);
    }

    RecordList list(const Records::Filter &filter) const override
    {
        return m_hub.GetSecurityPoolDetailListByTradingList(filter.accounts, filter.traders, filter.symbol,
                                                            filter.exchange, false);
    }

private:
    const ManualT0LogicPrivate &m_hub;
};

using Kept = std::map<std::tuple<Side, Family, int>, std::unique_ptr<Store>>;

Kept &kept()
{
    static Kept stores;
    return stores;
}

std::unique_ptr<Store> reference(Family family, BenchHub &hub)
{
    const RecordList rows = hub.records();
    if (family == Family::Usage) {
        auto usage = std::make_unique<ReferenceUsage>();
        usage->hold(rows);
        return usage;
    }
    auto pools = std::make_unique<ReferencePools>(hub.hub().GetAllT0TraderId());
    pools->hold(rows);
    return pools;
}

} // namespace

const char *nameOf(Side side)
{
    switch (side) {
    case Side::Library:
        return "library";
    case Side::Reference:
        return "reference";
    case Side::Scan:
        return "scan";
    case Side::Sqlite:
        return "sqlite";
    case Side::MultiIndex:
        return "multiindex";
    }
    return "";
}

std::unique_ptr<Store> makeStore(Side side, Family family, BenchHub &hub)
{
    const bool isUsage = family == Family::Usage;
    const TraderNames names = isUsage ? TraderNames() : TraderNames(hub.hub().GetAllT0TraderId());
    switch (side) {
    case Side::Library:
        return isUsage ? std::unique_ptr<Store>(new HubUsage(hub.hub())) : std::make_unique<HubPools>(hub.hub());
    case Side::Reference:
        return reference(family, hub);
    case Side::Scan:
        return std::make_unique<ScanStore>(hub.records(), names);
    case Side::Sqlite:
        return std::make_unique<SqliteStore>(hub.records(), names);
    case Side::MultiIndex:
        return std::make_unique<MultiIndexStore>(hub.records(), names);
    }
    return nullptr;
}

const Store &keptStore(Side side, Family family, int records)
{
    std::unique_ptr<Store> &store = kept()[{side, family, records}];
    if (!store)
        store = makeStore(side, family, BenchHub::of(family, records));
    return *store;
}

void forgetStores()
{
    kept().clear();
}
