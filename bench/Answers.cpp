#include "Bench.h"

#include "LockTimes.h"
#include "ReferencePools.h"

// A later pool answer of one account: 500 pools, of which none, one or a tenth has changed.

namespace {

struct Change {
    const char *name;
    int pools;
};

constexpr Change Changes[] = {
    {"answer.equal", 0}, {"answer.one_changed", 1}, {"answer.tenth_changed", Records::AnsweredPools / 10}};

/// take: gives the rows of one answer to the side and returns the time.
template <typename Take> void run(benchmark::State &state, BenchHub &hub, int changed, Take take)
{
    take(hub.poolAnswer(0)); // what another benchmark has left behind
    LockTimes::Held held;
    for (auto _ : state) {
        const RecordList rows = hub.poolAnswer(changed);
        LockTimes::Held now;
        Bench::setTime(state, take(rows, &now));
        held.sum += now.sum;
        held.longest = qMax(held.longest, now.longest);
    }
    state.counters["locked_us"] = double(held.sum) / 1000 / double(state.iterations());
    state.counters["longest_lock_us"] = double(held.longest) / 1000;
    Bench::setItems(state, 1);
}

template <typename Take> qint64 timed(LockTimes::Held *held, Take take)
{
    LockTimes::begin();
    const CpuTimer timer;
    take();
    const qint64 time = timer.nanoseconds();
    const LockTimes::Held times = LockTimes::end();
    if (held)
        *held = times;
    return time;
}

void ofLibrary(benchmark::State &state, int records, int changed)
{
    BenchHub &hub = BenchHub::of(Family::Pools, records);
    run(state, hub, changed, [&hub](const RecordList &rows, LockTimes::Held *held = nullptr) {
        qint64 time = 0;
        hub.onItsThread([&] { time = timed(held, [&] { hub.answerPools(Records::answeredAccount(), rows); }); });
        return time;
    });
}

void ofReference(benchmark::State &state, int changed)
{
    BenchHub &hub = BenchHub::of(Family::Pools, Bench::Large);
    static ReferencePools &reference = [&hub]() -> ReferencePools & {
        static ReferencePools pools(hub.hub().GetAllT0TraderId());
        pools.hold(hub.records());
        return pools;
    }();
    run(state, hub, changed, [](const RecordList &rows, LockTimes::Held *held = nullptr) {
        return timed(held, [&rows] { reference.takeLater(Records::answeredAccount(), rows); });
    });
}

} // namespace

void Bench::registerAnswers()
{
    for (const Change &change : Changes) {
        for (const int records : {Small, Medium, Large})
            addTimed(change.name, "library", records,
                     [records, &change](State &state) { ofLibrary(state, records, change.pools); });
        addTimed(change.name, "reference", Large, [&change](State &state) { ofReference(state, change.pools); });
    }
}
