#include "Bench.h"

#include "LockTimes.h"
#include "ReferencePools.h"

#include <map>

// A later pool answer of one account: 500 pools, of which none, one or a tenth has changed.

namespace {

struct Change {
    const char *name;
    int pools;
};

constexpr Change Changes[] = {
    {"answer.equal", 0}, {"answer.one_changed", 1}, {"answer.tenth_changed", Records::AnsweredPools / 10}};

/// take: gives the rows of one answer to the side and returns the time.
template <typename Take> void run(benchmark::State &state, Records::PoolAnswers &answers, int changed, Take take)
{
    LockTimes::Held held;
    for (auto _ : state) {
        const RecordList rows = answers.next(changed);
        LockTimes::Held now;
        Bench::setTime(state, take(rows, now));
        held.sum += now.sum;
        held.longest = qMax(held.longest, now.longest);
    }
    state.counters["locked_us"] = double(held.sum) / 1000 / double(state.iterations());
    state.counters["longest_lock_us"] = double(held.longest) / 1000;
    Bench::setItems(state, 1);
}

template <typename Take> qint64 timed(LockTimes::Held &held, Take take)
{
    LockTimes::begin();
    const CpuTimer timer;
    take();
    const qint64 time = timer.nanoseconds();
    held = LockTimes::end();
    return time;
}

void ofLibrary(benchmark::State &state, int records, int changed)
{
    static std::map<int, Records::PoolAnswers> answers;
    BenchHub &hub = BenchHub::of(Family::Pools, records);
    run(state, answers[records], changed, [&hub](const RecordList &rows, LockTimes::Held &held) {
        qint64 time = 0;
        hub.onItsThread([&] { time = timed(held, [&] { hub.answerPools(Records::answeredAccount(), rows); }); });
        return time;
    });
}

ReferencePools &filledReference()
{
    static ReferencePools pools({});
    RecordList rows; // its own, as the hub's are the hub's
    for (const Records::Keys &keys : Records::keys(Bench::Large))
        rows.append(Records::pool(keys, Records::LoadedQuantity));
    pools.takeFirst(Records::asReceived(rows));
    return pools;
}

void ofReference(benchmark::State &state, int changed)
{
    static ReferencePools &reference = filledReference();
    static Records::PoolAnswers answers;
    run(state, answers, changed, [](const RecordList &rows, LockTimes::Held &held) {
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
        addTimed(change.name, "reference", Large, [&change](State &state) {
            ofReference(state, change.pools);
        })->Iterations(1);
    }
}
