#include "Bench.h"

#include "LockTimes.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

// A reader of single pools, alone and while one account's pools are answered every 10 ms. Time on the wall: what a
// reader waits for is the point.

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds Every(10);
constexpr std::chrono::milliseconds Lasting(600);

std::vector<double> readFor(BenchHub &hub, std::chrono::milliseconds duration)
{
    const QVector<Records::Keys> keys = hub.randomKeys(1 << 14);
    const Store &pools = keptStore(Side::Library, Family::Pools, Bench::Large);
    std::vector<double> times;
    times.reserve(1 << 20);
    const auto end = Clock::now() + duration;
    auto before = Clock::now();
    for (int i = 0; before < end; ++i) {
        benchmark::DoNotOptimize(pools.one(keys.at(i % keys.size())));
        const auto now = Clock::now();
        times.push_back(std::chrono::duration<double, std::micro>(now - before).count());
        before = now;
    }
    return times;
}

/// Answers for one account until it is stopped, a tenth of the pools changed in turn.
class Writer
{
public:
    explicit Writer(BenchHub &hub)
        : m_hub(hub)
        , m_answers{next(), next()}
        , m_thread([this] { run(); })
    {}

    double stop()
    {
        m_stops = true;
        m_thread.join();
        return double(m_longest) / 1000;
    }

private:
    RecordList next() { return m_rows.next(Records::AnsweredPools / 10); }

    void run()
    {
        auto next = Clock::now();
        for (int i = 0; !m_stops; ++i) {
            m_hub.onItsThread([&] {
                LockTimes::begin();
                m_hub.answerPools(Records::answeredAccount(), m_answers[i % 2]);
                m_longest = qMax(m_longest, LockTimes::end().longest);
            });
            next += Every;
            std::this_thread::sleep_until(next);
        }
    }

    BenchHub &m_hub;
    Records::PoolAnswers m_rows;
    const RecordList m_answers[2];
    std::atomic<bool> m_stops{false};
    qint64 m_longest = 0;
    std::thread m_thread;
};

void run(benchmark::State &state, bool written)
{
    BenchHub &hub = BenchHub::of(Family::Pools, Bench::Large);
    std::vector<double> times;
    for (auto _ : state) {
        std::unique_ptr<Writer> writer = written ? std::make_unique<Writer>(hub) : nullptr;
        times = readFor(hub, Lasting);
        if (writer)
            state.counters["longest_lock_us"] = writer->stop();
    }
    const auto p99 = times.begin() + std::ptrdiff_t(times.size() * 99 / 100);
    std::nth_element(times.begin(), p99, times.end());
    state.counters["p99_us"] = *p99;
    Bench::setItems(state, qint64(times.size()));
}

} // namespace

void Bench::registerContention()
{
    add("contention.reader", "alone", Large, [](State &state) { run(state, false); })->Iterations(1);
    add("contention.reader", "written", Large, [](State &state) { run(state, true); })->Iterations(1);
}
