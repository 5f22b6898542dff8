#include "Bench.h"
#include "Counted.h"

#include <QtCore/QCoreApplication>

std::string Bench::name(const char *operation, const char *side, int records)
{
    return std::string(operation) + '/' + side + '/' + std::to_string(records);
}

/// Before the session closes and while Qt still knows its databases.
static void forgetAll()
{
    forgetStores();
    BenchHub::forgetAll();
}

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    ScriptedChannel *channel = nullptr;
    const std::unique_ptr<HostSession> session = Records::reference().open(channel);

    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--count")) {
        runCounted(arguments.value(2).toInt());
        forgetAll();
        return 0;
    }
    for (const auto add : {Bench::registerLookups, Bench::registerLists, Bench::registerPushes, Bench::registerAnswers,
                           Bench::registerDecoding, Bench::registerLoading, Bench::registerOrders,
                           Bench::registerResources, Bench::registerContention, Bench::registerLogging})
        add();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    forgetAll();
    return 0;
}
