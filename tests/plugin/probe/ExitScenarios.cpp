#include "ManualT0Logic.h"
#include "MasterMsgType.h"
#include "Probe.h"

#include <QtCore/QTimer>

namespace {

/// Requests of a whole start, login included: a moment is chosen among them.
constexpr unsigned RequestsOfStart = 28;

/// Returns when the server has seen a number of requests that the seed chooses; that may be at once.
void leaveSometime(Probe &probe, unsigned seed)
{
    const int before = probe.server().requests();
    probe.server().waitForRequests(qMin(before + int(seed % 8), int(RequestsOfStart)));
}

int afterInit(int &argc, char **argv, unsigned seed)
{
    Probe probe(argc, argv);
    ManualT0Logic::InitData();
    leaveSometime(probe, seed);
    return 0;
}

int duringSlowQuery(int &argc, char **argv, unsigned seed)
{
    Probe probe(argc, argv);
    // The seed chooses the page that never comes.
    const QString &slow = Master_MsgType::QueryManualT0ResourceRequest;
    if (seed % 2 == 0)
        probe.server().hold(slow);
    ManualT0Logic::InitData();
    const bool arrived = probe.server().waitForRequests(slow, 1 + int(seed % 5) * int(seed % 2));
    probe.server().hold(slow);
    return arrived ? 0 : 1;
}

int withRetriesWaiting(int &argc, char **argv, unsigned seed)
{
    Probe probe(argc, argv);
    const QString &usage = Master_MsgType::QueryManualT0RealTimePoolUsageRequest;
    const QString &priority = Master_MsgType::QueryManualT0TraderAccountPriorityRequest;
    probe.server().refuse(usage);
    probe.server().refuse(priority);
    ManualT0Logic::InitData();
    const bool arrived = probe.server().waitForRequests(seed % 2 ? usage : priority, 1);
    if (seed % 3)
        probe.settle();
    return arrived ? 0 : 1;
}

int afterQueryBefore(int &argc, char **argv, unsigned seed)
{
    Probe probe(argc, argv);
    ManualT0Logic::GetAllResourceList(); // makes the hub before the plug-in object: it is destroyed after it
    ManualT0Logic::InitData();
    leaveSometime(probe, seed);
    return 0;
}

int withoutApplication(int &, char **, unsigned seed)
{
    if (seed % 2)
        ManualT0Logic::GetAllResourceList();
    else
        ManualT0Logic::InitData();
    return 0;
}

int quitUnderPushes(int &argc, char **argv, unsigned seed)
{
    Probe probe(argc, argv);
    ManualT0Logic::InitData();
    probe.startPushes();
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, [&] {
        if (probe.pushes() > int(seed % 97))
            QCoreApplication::quit();
    });
    clock.start(0);
    return QCoreApplication::exec();
}

int returnUnderPushes(int &argc, char **argv, unsigned seed)
{
    Probe probe(argc, argv);
    ManualT0Logic::InitData();
    probe.startPushes();
    while (probe.pushes() <= int(seed % 97))
        std::this_thread::yield();
    return 0;
}

} // namespace

QMap<QString, Scenario> exitScenarios()
{
    return {{QStringLiteral("exit-after-init"), &afterInit},
            {QStringLiteral("exit-in-slow-query"), &duringSlowQuery},
            {QStringLiteral("exit-with-retries"), &withRetriesWaiting},
            {QStringLiteral("exit-after-query-before"), &afterQueryBefore},
            {QStringLiteral("exit-without-application"), &withoutApplication},
            {QStringLiteral("quit-under-pushes"), &quitUnderPushes},
            {QStringLiteral("return-under-pushes"), &returnUnderPushes}};
}
