#include "Bench.h"

#include "ReferenceUsage.h"

// Lists of records, and what is computed of lists.

namespace {

constexpr int Drawn = 64; ///< different questions

struct Shape {
    const char *name;
    int accounts;
    int traders; ///< 0: any
    bool symbol; ///< and exchange
};

constexpr Shape Shapes[] = {{"20_accounts_50_traders_symbol", 20, 50, true},
                            {"20_accounts_1_trader_symbol", 20, 1, true},
                            {"20_accounts_1_trader", 20, 1, false},
                            {"1_account", 1, 0, false}};
constexpr const Shape &ofOneTrader = Shapes[2];

QVector<Records::Filter> filters(const Shape &shape, BenchHub &hub)
{
    std::mt19937 random(7);
    const auto some = [&random](QStringList texts, int count) {
        std::shuffle(texts.begin(), texts.end(), random);
        return texts.mid(0, count);
    };
    QVector<Records::Filter> result;
    for (const Records::Keys &keys : hub.randomKeys(Drawn)) {
        result.append({some(Records::accounts(), shape.accounts), some(Records::traders(), shape.traders),
                       shape.symbol ? keys.symbol : QString(), shape.symbol ? keys.exchange : QString()});
    }
    return result;
}

/// ask: a question to the rows of its answer.
template <typename Ask> void run(benchmark::State &state, const Shape &shape, BenchHub &hub, Ask ask)
{
    const QVector<Records::Filter> questions = filters(shape, hub);
    qint64 rows = 0;
    int next = 0;
    for (auto _ : state)
        rows += ask(questions.at(next++ % Drawn)).size();
    state.counters["rows"] = double(rows) / double(state.iterations());
    Bench::setItems(state, 1);
}

void addList(const Shape &shape, Family family, Side side, int records)
{
    const std::string operation = std::string(family == Family::Usage ? "usage." : "pools.") + shape.name;
    Bench::add(operation.c_str(), nameOf(side), records, [&shape, family, side, records](benchmark::State &state) {
        const Store &store = keptStore(side, family, records);
        const auto ask = [&store](const Records::Filter &filter) { return store.list(filter); };
        run(state, shape, BenchHub::of(family, records), ask);
    });
}

void addComputed()
{
    using Records::Filter;
    const auto add = [](const char *operation, auto ofLibrary,
                        RecordList (ReferenceUsage::*ofReference)(const Filter &) const) {
        for (const int records : {Bench::Small, Bench::Large}) {
            Bench::add(operation, "library", records, [=](benchmark::State &state) {
                BenchHub &hub = BenchHub::of(Family::Usage, records);
                run(state, ofOneTrader, hub, [&](const Filter &filter) { return ofLibrary(hub.hub(), filter); });
            });
        }
        Bench::add(operation, "reference", Bench::Large, [=](benchmark::State &state) {
            const Store &store = keptStore(Side::Reference, Family::Usage, Bench::Large);
            const auto &reference = static_cast<const ReferenceUsage &>(store);
            run(state, ofOneTrader, BenchHub::of(Family::Usage, Bench::Large),
                [&](const Filter &filter) { return (reference.*ofReference)(filter); });
        });
    };
    add(
        "usage.profits",
        [](const ManualT0LogicPrivate &hub, const Filter &filter) {
            return hub.GetProfitLossDataList(filter.accounts, filter.traders.first(), filter.symbol, filter.exchange);
        },
        &ReferenceUsage::profits);
    add(
        "usage.sums",
        [](const ManualT0LogicPrivate &hub, const Filter &filter) {
            return hub.GetRealtimeSumListMergeBySymbolExchange(filter.accounts, filter.traders.first(), filter.symbol,
                                                               filter.exchange);
        },
        &ReferenceUsage::sums);
}

} // namespace

void Bench::registerLists()
{
    for (const Family family : {Family::Usage, Family::Pools}) {
        for (const Shape &shape : Shapes) {
            for (const int records : {Small, Medium})
                addList(shape, family, Side::Library, records);
            for (const Side side : AllSides)
                addList(shape, family, side, Large);
        }
    }
    addComputed();
}
