#include "Counted.h"

#include "Store.h"

#include <valgrind/callgrind.h>

namespace {

constexpr int Operations = 500;

/// What an answer is made of, for it must not depend on the number of records.
qint64 fieldsOf(const RecordList &rows)
{
    qint64 fields = 0;
    for (const VariantRecord &row : rows)
        fields += row.size();
    return fields;
}

/// path: does all operations and returns the fields it was given.
template <typename Path> void count(const char *name, int records, int operations, qint64 fields, Path path)
{
    path(); // everything is bound and allocated once before it counts
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    const qint64 given = path();
    const QByteArray dump = QByteArray(name) + '/' + QByteArray::number(records) + '/' + QByteArray::number(operations);
    CALLGRIND_DUMP_STATS_AT(dump.constData());
    CALLGRIND_STOP_INSTRUMENTATION;
    if (given != fields)
        qFatal("%s: %lld fields instead of %lld", name, static_cast<long long>(given), static_cast<long long>(fields));
}

void countLookups(const char *name, Family family, int records, const QVector<Records::Keys> &keys, int fields)
{
    const Store &store = keptStore(Side::Library, family, records);
    count(name, records, keys.size(), qint64(fields) * keys.size(), [&] {
        qint64 given = 0;
        for (const Records::Keys &of : keys)
            given += store.one(of).size();
        return given;
    });
}

/// Keys of an account that has the symbol, of a trader who has not.
QVector<Records::Keys> missedKeys(int records)
{
    const Store &store = keptStore(Side::Library, Family::Pools, records);
    QVector<Records::Keys> keys = BenchHub::of(Family::Pools, records).randomKeys(Operations);
    for (Records::Keys &of : keys) {
        for (int trader = 0; !store.one(of).isEmpty(); ++trader)
            of.trader = Records::traders().at(trader);
    }
    return keys;
}

void countLists(int records)
{
    constexpr int symbols = 10;
    constexpr int rowsOfEach = 20;
    const Store &store = keptStore(Side::Library, Family::Usage, records);
    count("list", records, symbols, symbols * rowsOfEach * Records::UsageFields, [&] {
        qint64 given = 0;
        for (int symbol = 0; symbol < symbols; ++symbol)
            given += fieldsOf(store.list(Records::planted(symbol)));
        return given;
    });
}

void countPushes(int records)
{
    BenchHub &hub = BenchHub::of(Family::Usage, records);
    RecordList pushes[] = {hub.newPushes(Operations), hub.newPushes(Operations)};
    int next = 0;
    count("push", records, Operations, Operations, [&] {
        const RecordList &rows = pushes[next++];
        hub.onItsThread([&] {
            for (const VariantRecord &row : rows)
                hub.push(row);
        });
        return rows.size();
    });
}

} // namespace

void runCounted(int records)
{
    countLookups("usage", Family::Usage, records, BenchHub::of(Family::Usage, records).randomKeys(Operations),
                 Records::UsageFields);
    countLookups("pool_hit", Family::Pools, records, BenchHub::of(Family::Pools, records).randomKeys(Operations),
                 Records::PoolFields + 1);
    countLookups("pool_miss", Family::Pools, records, missedKeys(records), 0);
    countLists(records);
    countPushes(records);
}
