// t0-sim: the client under chaos, from seeds. See --help.

#include "Simulation.h"

#include "SimClock.h"
#include "SimDispatcher.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QVector>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Plan {
    quint64 first = 1;
    quint64 seeds = 100;
    int processes = 1;
    bool trace = false;
    bool hashes = false;
};

/// What some seeds brought; plain bytes, because it goes through a pipe.
struct Total {
    quint64 seeds = 0;
    quint64 steps = 0;
    quint64 failed = 0;
    quint64 hash = 0; ///< of all seeds, whatever their order
    Faults::Counts faults{};

    void add(const Total &other)
    {
        seeds += other.seeds;
        steps += other.steps;
        failed += other.failed;
        hash += other.hash;
        for (size_t i = 0; i < faults.size(); ++i)
            faults[i] += other.faults[i];
    }
};

bool wantsHash(const Plan &plan)
{
    return plan.hashes || plan.trace;
}

void quiet(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "t0-sim: %s\n", qUtf8Printable(text));
}

/// The seeds from, from + step, … of the plan.
Total runSeeds(const Plan &plan, quint64 from, quint64 step, SimDispatcher &timers)
{
    Total total;
    Faults faults;
    for (quint64 seed = from; seed < plan.first + plan.seeds; seed += step) {
        const SeedResult result = simulate(seed, timers, plan.trace, faults);
        ++total.seeds;
        total.steps += result.steps;
        total.hash += result.hash * (2 * seed + 1);
        if (wantsHash(plan))
            std::printf("seed %llu hash %016llx\n", seed, result.hash);
        if (result.failures.isEmpty())
            continue;
        ++total.failed;
        std::printf("seed %llu failed (again: ./t0 sim --seed %llu --trace)\n  %s\n", seed, seed,
                    qUtf8Printable(result.failures.join(QStringLiteral("\n  "))));
        std::fflush(stdout);
    }
    total.faults = faults.counts();
    return total;
}

/// One process an application; runs every step-th seed.
Total runProcess(const Plan &plan, quint64 from, quint64 step)
{
    qInstallMessageHandler(quiet);
    auto *timers = new SimDispatcher; // the application's
    QCoreApplication::setEventDispatcher(timers);
    int argc = 1;
    char name[] = "t0-sim";
    char *argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    return runSeeds(plan, from, step, *timers);
}

Total runInProcesses(const Plan &plan)
{
    QVector<int> ends;
    for (int i = 0; i < plan.processes; ++i) {
        int pipe[2];
        if (::pipe(pipe) != 0)
            qFatal("no pipe");
        if (fork() == 0) {
            const Total total = runProcess(plan, plan.first + quint64(i), quint64(plan.processes));
            const bool written = write(pipe[1], &total, sizeof total) == ssize_t(sizeof total);
            std::fflush(stdout);
            _exit(written ? 0 : 1);
        }
        close(pipe[1]);
        ends.append(pipe[0]);
    }
    Total sum;
    for (const int end : ends) {
        Total total;
        if (read(end, &total, sizeof total) != ssize_t(sizeof total))
            total.failed = 1; // it crashed, and has said so
        sum.add(total);
        close(end);
    }
    while (wait(nullptr) > 0)
        continue;
    return sum;
}

void print(const Total &total, double seconds)
{
    std::printf("%-42s %12s\n", "fault", "times");
    for (size_t i = 0; i < total.faults.size(); ++i)
        std::printf("%-42s %12llu\n", Faults::name(Fault(i)), total.faults[i]);
    const auto fewest = std::min_element(total.faults.cbegin(), total.faults.cend());
    std::printf("%llu seeds, %llu steps, every fault at least %llu times, %llu seeds with differences, hash %016llx, "
                "%.0f s\n",
                total.seeds, total.steps, *fewest, total.failed, total.hash, seconds);
}

/// A wrong number ends the program.
quint64 numberOf(const QCommandLineParser &parser, const QCommandLineOption &option, quint64 least, quint64 most)
{
    bool isNumber = false;
    const quint64 number = parser.value(option).toULongLong(&isNumber);
    if (isNumber && number >= least && number <= most)
        return number;
    std::fprintf(stderr, "t0-sim: --%s: a number from %llu to %llu is expected, not \"%s\"\n",
                 qUtf8Printable(option.names().constFirst()), least, most, qUtf8Printable(parser.value(option)));
    std::exit(2);
}

Plan planOf(const QStringList &arguments)
{
    constexpr quint64 lastSeed = 1'000'000'000;
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "One client, its host and a model gateway on one thread under a virtual clock, with faults, from seeds."));
    parser.addHelpOption();
    const QCommandLineOption seeds(QStringLiteral("seeds"), QStringLiteral("How many seeds (100)."), "N", "100");
    const QCommandLineOption first(QStringLiteral("first"), QStringLiteral("The first of them (1)."), "S", "1");
    const QCommandLineOption seed(QStringLiteral("seed"), QStringLiteral("This seed only."), "S");
    const QCommandLineOption jobs(QStringLiteral("jobs"), QStringLiteral("Processes (1)."), "J", "1");
    const QCommandLineOption trace(QStringLiteral("trace"), QStringLiteral("Prints everything that happens."));
    const QCommandLineOption hashes(QStringLiteral("hashes"), QStringLiteral("Prints the hash of each seed."));
    parser.addOptions({seeds, first, seed, jobs, trace, hashes});
    parser.process(arguments);
    if (!parser.positionalArguments().isEmpty()) {
        std::fprintf(stderr, "t0-sim: \"%s\" is no option\n",
                     qUtf8Printable(parser.positionalArguments().constFirst()));
        std::exit(2);
    }
    Plan plan;
    plan.first = numberOf(parser, parser.isSet(seed) ? seed : first, 0, lastSeed);
    plan.seeds = parser.isSet(seed) ? 1 : numberOf(parser, seeds, 1, lastSeed);
    plan.processes = int(numberOf(parser, jobs, 1, 64));
    plan.trace = parser.isSet(trace);
    plan.hashes = parser.isSet(hashes);
    return plan;
}

} // namespace

int main(int argc, char **argv)
{
    qunsetenv("QT_HASH_SEED"); // it would win
    qSetGlobalQHashSeed(0);    // the order of what is unordered is part of what a seed decides
    Plan plan;
    {
        const QCoreApplication application(argc, argv);
        plan = planOf(QCoreApplication::arguments());
    }
    const double begun = SimClock::realSeconds();
    const Total total = runInProcesses(plan);
    print(total, SimClock::realSeconds() - begun);
    return total.failed == 0 && total.seeds == plan.seeds ? 0 : 1;
}
