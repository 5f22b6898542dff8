#include "ManualT0Logic.h"
#include "MasterMsgType.h"
#include "Probe.h"

#include <cstdio>
#include <cstdlib>
#include <random>

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

/// What a client's threads do meanwhile: two read, one refreshes and changes. They are its own and end before it does.
class Load
{
public:
    Load()
    {
        for (int reader = 0; reader < 2; ++reader)
            repeat([] {
                ManualT0Logic::GetAllResourceList();
                ManualT0Logic::GetAllSecurityPoolList();
                ManualT0Logic::GetProfitLossDataList({QStringLiteral("A1")}, {}, {}, {});
            });
        repeat([] {
            QString errorText;
            ManualT0Logic::RefreshDataByType(ManualT0Logic::Resources);
            ManualT0Logic::SetCurrentTradeAccount({QStringLiteral("A1")});
            ManualT0Logic::DeleteT0Resource(ManualT0Logic::GetAllResourceList().mid(0, 1), errorText);
        });
    }
    ~Load() { end(); }
    Load(const Load &) = delete;
    Load &operator=(const Load &) = delete;

    void end()
    {
        m_over = true;
        for (std::thread &thread : m_threads)
            thread.join();
        m_threads.clear();
    }

private:
    template <typename Action> void repeat(Action action)
    {
        m_threads.emplace_back([this, action] {
            while (!m_over)
                action();
        });
    }

    std::atomic<bool> m_over{false};
    std::vector<std::thread> m_threads;
};

/// The end comes at a moment and in a way that the seed chooses: main() returns, with or without an event loop, before
/// or after the session is closed, or a slot calls exit() while the server goes on pushing.
int underLoad(int &argc, char **argv, unsigned seed)
{
    std::mt19937 random(seed);
    const std::chrono::microseconds moment(random() % 40000);
    const unsigned way = random() % 5;
    Probe probe(argc, argv);
    ManualT0Logic::InitData();
    probe.startPushes();
    Load load;
    if (way == 0) {
        std::this_thread::sleep_for(moment);
        return 0;
    }
    const auto leave = [&load, way] {
        if (way != 1)
            return QCoreApplication::quit();
        load.end();
        std::exit(0); // the library runs on until the destructors of statics stop it
    };
    std::thread([moment, leave] {
        std::this_thread::sleep_for(moment);
        QMetaObject::invokeMethod(qApp, leave, Qt::QueuedConnection);
    }).detach(); // exit() joins nobody
    const int status = QCoreApplication::exec();
    if (way == 2) {
        load.end();
        probe.closeSession();
    }
    return status;
}

} // namespace

QMap<QString, Scenario> exitScenarios()
{
    return {{QStringLiteral("exit-after-init"), &afterInit},
            {QStringLiteral("exit-in-slow-query"), &duringSlowQuery},
            {QStringLiteral("exit-with-retries"), &withRetriesWaiting},
            {QStringLiteral("exit-after-query-before"), &afterQueryBefore},
            {QStringLiteral("exit-without-application"), &withoutApplication},
            {QStringLiteral("exit-under-load"), &underLoad}};
}
