#pragma once

#include "Store.h"

#include <benchmark/benchmark.h>

/// What the files of benchmarks share. Each registers its own under "group.operation/side/records"; a benchmark
/// counts its operations as items, and the report reads the cost of one item.
namespace Bench {

constexpr int Small = 1000;
constexpr int Medium = 10000;
constexpr int Large = 100000;
constexpr int Largest = 1000000;

using benchmark::State;

std::string name(const char *operation, const char *side, int records);

/// runs(state): one benchmark; its time is the processor time of the thread that calls it.
template <typename Runs>
benchmark::internal::Benchmark *add(const char *operation, const char *side, int records, Runs runs)
{
    return benchmark::RegisterBenchmark(name(operation, side, records).c_str(), runs)->Unit(benchmark::kMicrosecond);
}

/// As add(), but the time is what the benchmark says with setTime().
template <typename Runs>
benchmark::internal::Benchmark *addTimed(const char *operation, const char *side, int records, Runs runs)
{
    return add(operation, side, records, runs)->UseManualTime();
}

inline void setTime(State &state, qint64 nanoseconds)
{
    state.SetIterationTime(double(nanoseconds) * 1e-9);
}

inline void setItems(State &state, qint64 perIteration)
{
    state.SetItemsProcessed(qint64(state.iterations()) * perIteration);
}

void registerLookups();
void registerLists();
void registerPushes();
void registerAnswers();
void registerDecoding();
void registerLoading();
void registerOrders();
void registerResources();
void registerContention();
void registerLogging();

} // namespace Bench
