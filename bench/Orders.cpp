#include "Bench.h"

#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "ReferenceUsage.h"

// CheckOrderData of orders that pass: ten accounts each, every check.

namespace {

constexpr int Orders = 1000;
constexpr int OrdersOfReference = 10; ///< one takes it as long as the library a thousand
constexpr int AccountsOfOrder = 10;
constexpr int EveryCheck = 31;

RecordList orders(BenchHub &hub, int count)
{
    QVector<Records::Keys> own;
    for (const Records::Keys &keys : hub.keys()) {
        if (keys.trader == Records::loginTrader())
            own.append(keys);
    }
    RecordList rows;
    for (int i = 0; i < count; ++i) {
        const Records::Keys &keys = own.at(i % own.size());
        QStringList accounts{keys.account};
        for (int k = 1; k < AccountsOfOrder; ++k)
            accounts.append(Records::accounts().at((i * 7 + k * 11) % Records::accounts().size()));
        rows.append({{Orvane_Fields::UserAccount::tradingAccount, accounts},
                     {Orvane_Fields::Security::symbol, keys.symbol},
                     {Orvane_Fields::UserAccount::securityExchange, keys.exchange},
                     {Master_Fields::Security::SideUnion, Master_Values::SideUnion::normalSell},
                     {Orvane_Fields::Security::price, 10.07},
                     {Orvane_Fields::Security::orderQty, qint64(100)}});
    }
    return rows;
}

/// check: rows and results to the overall code.
template <typename Check> void run(benchmark::State &state, const RecordList &rows, Check check)
{
    for (auto _ : state) {
        RecordList results;
        if (check(rows, results) != Orvane_Values::RequestExeStatus::success)
            state.SkipWithError("an order does not pass");
    }
    Bench::setItems(state, rows.size());
}

} // namespace

void Bench::registerOrders()
{
    for (const int records : {Small, Medium, Large}) {
        add("orders.check", "library", records, [records](State &state) {
            BenchHub &hub = BenchHub::of(Family::Usage, records);
            run(state, orders(hub, Orders), [&hub](const RecordList &rows, RecordList &results) {
                return hub.hub().CheckOrderData(rows, results, EveryCheck);
            });
        });
    }
    add("orders.check", "reference", Large, [](State &state) {
        const Store &store = keptStore(Side::Reference, Family::Usage, Large);
        run(state, orders(BenchHub::of(Family::Usage, Large), OrdersOfReference),
            [&store](const RecordList &rows, RecordList &results) {
                return static_cast<const ReferenceUsage &>(store).checkOrders(rows, Records::loginTrader(), results,
                                                                              EveryCheck);
            });
    });
}
