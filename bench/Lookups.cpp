#include "Bench.h"

#include "MasterFields.h"

#include <map>

// One record by account, trader, symbol and exchange, with random keys.

namespace {

constexpr int Drawn = 1 << 16; ///< keys, so that not only what the processor's caches hold is asked for

QVector<Records::Keys> heldKeys(Family family, int records)
{
    return BenchHub::of(family, records).randomKeys(Drawn);
}

/// Account, trader and symbol of three records, where nobody holds them together.
QVector<Records::Keys> missedKeys(Family family, int records)
{
    const Store &store = keptStore(Side::Library, family, records);
    const QVector<Records::Keys> drawn = heldKeys(family, records);
    QVector<Records::Keys> missed;
    for (int i = 0; missed.size() < Drawn; ++i) {
        Records::Keys keys = drawn.at(i % Drawn);
        keys.account = drawn.at((i * 3 + 1) % Drawn).account;
        keys.trader = drawn.at((i * 5 + 2) % Drawn).trader;
        if (store.one(keys).isEmpty())
            missed.append(keys);
    }
    return missed;
}

struct Lookup {
    const char *name;
    Family family;
    QVector<Records::Keys> (*keys)(Family family, int records);
    int fields; ///< of every answer
};

constexpr Lookup Lookups[] = {{"usage.record", Family::Usage, heldKeys, Records::UsageFields},
                              {"pools.hit", Family::Pools, heldKeys, Records::PoolFields + 1},
                              {"pools.miss", Family::Pools, missedKeys, 0}};

/// The same ones for every side and repetition.
const QVector<Records::Keys> &keptKeys(const Lookup &lookup, int records)
{
    static std::map<std::pair<const char *, int>, QVector<Records::Keys>> kept;
    QVector<Records::Keys> &keys = kept[{lookup.name, records}];
    if (keys.isEmpty())
        keys = lookup.keys(lookup.family, records);
    return keys;
}

void run(benchmark::State &state, const Lookup &lookup, Side side, int records)
{
    const Store &store = keptStore(side, lookup.family, records);
    const QVector<Records::Keys> &keys = keptKeys(lookup, records);
    qint64 fields = 0;
    int next = 0;
    for (auto _ : state)
        fields += store.one(keys.at(next++ % Drawn)).size();
    if (fields != qint64(state.iterations()) * lookup.fields)
        state.SkipWithError("an answer is not whole");
    Bench::setItems(state, 1);
}

/// What a held pool costs when it need not be looked up: its record is copied for the name that joins it.
void copyAlone(benchmark::State &state)
{
    const RecordList rows = BenchHub::of(Family::Pools, Bench::Large).records();
    QVector<int> drawn(Drawn);
    std::mt19937 random(3);
    for (int &row : drawn)
        row = int(random() % unsigned(rows.size()));
    const QString name = QStringLiteral("name");
    int next = 0;
    for (auto _ : state) {
        VariantRecord pool = rows.at(drawn.at(next++ % Drawn));
        pool.insert(Master_Fields::ManualT0::T0TraderName, name);
        benchmark::DoNotOptimize(pool);
    }
    Bench::setItems(state, 1);
}

void add(const Lookup &lookup, Side side, int records)
{
    Bench::add(lookup.name, nameOf(side), records,
               [&lookup, side, records](benchmark::State &state) { run(state, lookup, side, records); });
}

} // namespace

void Bench::registerLookups()
{
    for (const Lookup &lookup : Lookups) {
        for (const int records : {Small, Medium, Largest})
            add(lookup, Side::Library, records);
        for (const Side side : AllSides)
            add(lookup, side, Large);
    }
    add("pools.hit", "copy_alone", Large, copyAlone);
}
