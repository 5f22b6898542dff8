#include "Bench.h"

#include "ReferencePools.h"

// All resources with the summaries of their pools, ten of each.

namespace {

constexpr int PoolsOfResource = 10;

std::unique_ptr<ReferencePools> reference(BenchHub &hub)
{
    auto pools = std::make_unique<ReferencePools>(hub.hub().GetAllT0TraderId());
    pools->hold(hub.records());
    RecordList resources;
    const RecordList packed = hub.hub().GetAllResourceList();
    for (const VariantRecord &row : packed)
        resources.append(hub.hub().GetResourceDetailById(row.value(Master_Fields::ManualT0::ResourceId).toString()));
    pools->holdResources(resources);
    return pools;
}

} // namespace

void Bench::registerResources()
{
    for (const int pools : {Medium, Large}) {
        add("resources.all", "library", pools, [pools](State &state) {
            const BenchHub &hub = BenchHub::of(Family::Resources, pools);
            for (auto _ : state)
                benchmark::DoNotOptimize(hub.hub().GetAllResourceList());
            setItems(state, pools / PoolsOfResource);
        });
    }
    add("resources.all", "reference", Large, [](State &state) {
        static const std::unique_ptr<ReferencePools> pools = reference(BenchHub::of(Family::Resources, Large));
        for (auto _ : state)
            benchmark::DoNotOptimize(pools->resources());
        setItems(state, Large / PoolsOfResource);
    });
}
