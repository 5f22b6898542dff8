#include "Bench.h"

#include "Codecs.h"

#include <malloc.h>

// A page of 1,000 usage records: to bytes and back to rows, and what the rows take.

namespace {

constexpr int PageRows = 1000;

/// Bytes that this process has allocated and not freed.
qint64 heapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks) + qint64(info.hblkhd);
}

RecordList page()
{
    RecordList rows;
    qint64 time = 0;
    for (const Records::Keys &keys : Records::keys(PageRows)) {
        ++time;
        rows.append(Records::usage(keys, 1000 + time % 100, time));
    }
    return rows;
}

void encode(benchmark::State &state, const Codec &codec)
{
    const RecordList rows = page();
    for (auto _ : state)
        benchmark::DoNotOptimize(codec.encode(rows));
    state.counters["bytes"] = codec.encode(rows).size();
    Bench::setItems(state, PageRows);
}

void decode(benchmark::State &state, const Codec &codec)
{
    const QByteArray bytes = codec.encode(page());
    for (auto _ : state)
        benchmark::DoNotOptimize(codec.decode(bytes));
    const qint64 before = heapBytes();
    const RecordList rows = codec.decode(bytes);
    state.counters["heap_per_row"] = double(heapBytes() - before) / rows.size();
    Bench::setItems(state, PageRows);
}

/// What one record takes in a hub, with its indexes.
void holdRecords(benchmark::State &state, Family family)
{
    for (auto _ : state) {
        const QVector<Records::Keys> keys = Records::keys(Bench::Large);
        const qint64 before = heapBytes();
        const BenchHub hub(family, keys);
        state.counters["bytes_per_record"] = double(heapBytes() - before) / keys.size();
    }
    Bench::setItems(state, Bench::Large);
}

} // namespace

void Bench::registerDecoding()
{
    for (const Codec *codec : {&Codecs::library, &Codecs::cborValue, &Codecs::json}) {
        add("page.encode", codec->name, PageRows, [codec](State &state) { encode(state, *codec); });
        add("page.decode", codec->name, PageRows, [codec](State &state) { decode(state, *codec); });
    }
    add("memory.usage", "library", Large, [](State &state) { holdRecords(state, Family::Usage); })
        ->Iterations(1)
        ->Repetitions(1);
    add("memory.pools", "library", Large, [](State &state) { holdRecords(state, Family::Pools); })
        ->Iterations(1)
        ->Repetitions(1);
}
