#include "ManualT0Logic.h"
#include "MasterMsgType.h"
#include "Probe.h"

#include <QtCore/QTimer>

#include <cstdio>

namespace {

/// Starts the library and returns when the server has seen a number of its requests that the seed chooses, from
/// none to most of a whole start. The result is the exit status of the process.
int startAndLeaveSometime(Probe &probe, unsigned seed)
{
    const int before = probe.server().requests().size();
    ManualT0Logic::InitData();
    return probe.waitForRequests(QString(), before + int(3 * seed % 20)) ? 0 : 1;
}

int afterInit(int &argc, char **argv, unsigned seed)
{
    Probe probe(argc, argv);
    return startAndLeaveSometime(probe, seed);
}

/// The end comes while a page is awaited that never comes, or between two of the nine pages of three accounts.
int duringSlowQuery(int &argc, char **argv, unsigned seed)
{
    Probe probe(argc, argv);
    const QString &slow = Master_MsgType::QueryManualT0ResourceRequest;
    if (seed % 2)
        probe.server().hold(slow);
    ManualT0Logic::InitData();
    const bool arrived = probe.waitForRequests(slow, seed % 2 ? 1 : 1 + int(seed % 9));
    probe.server().hold(slow);
    return arrived ? 0 : 1;
}

int withRetriesWaiting(int &argc, char **argv, unsigned seed)
{
    Probe probe(argc, argv);
    const QString &usage = Master_MsgType::QueryManualT0RealTimePoolUsageRequest;
    const QString &priority = Master_MsgType::QueryManualT0TraderAccountPriorityRequest;
    for (const QString &type : {usage, priority})
        probe.server().always(type, [](const MessageBody &) { return ScriptedChannel::refusal(QStringLiteral("no")); });
    ManualT0Logic::InitData();
    const bool arrived = probe.waitForRequests(usage, 1) && probe.waitForRequests(priority, 1);
    if (seed % 3)
        probe.settle();
    return arrived ? 0 : 1;
}

int afterQueryBefore(int &argc, char **argv, unsigned seed)
{
    Probe probe(argc, argv);
    ManualT0Logic::GetAllResourceList(); // makes the hub before the plug-in object: it is destroyed after it
    return startAndLeaveSometime(probe, seed);
}

/// Qt says in each thread that comes up that it misses the application object; every other message is shown.
void showOtherThanMissing(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (text != QLatin1String("QEventLoop: Cannot be used without QApplication"))
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

int withoutApplication(int &, char **, unsigned seed)
{
    qInstallMessageHandler(&showOtherThanMissing);
    if (seed % 2)
        ManualT0Logic::GetAllResourceList();
    if (seed % 4 < 3)
        ManualT0Logic::InitData();
    return 0;
}

/// The session is closed before the application object goes, or after it.
int quitUnderPushes(int &argc, char **argv, unsigned seed)
{
    Probe probe(argc, argv);
    ManualT0Logic::InitData();
    probe.startPushes();
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, [&] {
        if (probe.pushes() > int(25 * seed))
            QCoreApplication::quit();
    });
    clock.start(0);
    const int status = QCoreApplication::exec();
    if (seed % 2)
        probe.closeSession();
    return status;
}

int returnUnderPushes(int &argc, char **argv, unsigned seed)
{
    Probe probe(argc, argv);
    ManualT0Logic::InitData();
    probe.startPushes();
    while (probe.pushes() <= int(25 * seed))
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
