#include "Bench.h"

#include "ReferenceUsage.h"

// One pushed usage record, newer than the one that is held: merged, derived, announced.

namespace {

constexpr int AtOnce = 500;

void ofLibrary(benchmark::State &state, int records)
{
    BenchHub &hub = BenchHub::of(Family::Usage, records);
    for (auto _ : state) {
        const RecordList pushes = hub.newPushes(AtOnce);
        Bench::setTime(state, hub.onItsThread([&] {
            for (const VariantRecord &push : pushes)
                hub.push(push);
        }));
    }
    Bench::setItems(state, AtOnce);
}

void ofReference(benchmark::State &state, ReferenceDerive::Names names)
{
    BenchHub &hub = BenchHub::of(Family::Usage, Bench::Large);
    static ReferenceUsage &reference = [&hub]() -> ReferenceUsage & {
        static ReferenceUsage usage;
        RecordList rows; // its own: a record that two hold is copied by the first push
        for (const Records::Keys &keys : hub.keys())
            rows.append(Records::usage(keys, Records::LoadedQuantity, 0));
        usage.takeFirst(Records::asReceived(rows));
        return usage;
    }();
    for (auto _ : state) {
        const RecordList pushes = hub.newPushes(AtOnce);
        // On the hub's thread as well: pushes come from another one, and out of its caches.
        Bench::setTime(state, hub.onItsThread([&] {
            for (const VariantRecord &push : pushes)
                reference.push(push, names);
        }));
    }
    Bench::setItems(state, AtOnce);
}

} // namespace

void Bench::registerPushes()
{
    for (const int records : {Small, Medium, Large})
        addTimed("push.newer", "library", records, [records](State &state) { ofLibrary(state, records); });
    addTimed("push.newer", "reference", Large,
             [](State &state) { ofReference(state, ReferenceDerive::Names::Prebuilt); });
    addTimed("push.newer", "reference_names_concatenated", Large,
             [](State &state) { ofReference(state, ReferenceDerive::Names::Concatenated); });
}
