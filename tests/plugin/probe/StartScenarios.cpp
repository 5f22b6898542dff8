#include "HostLog.h"
#include "IPlugin.h"
#include "ManualT0Logic.h"
#include "PluginLoader.h"
#include "Probe.h"

#include <QtCore/QMetaType>

#include <thread>

namespace {

/// What every start must end in: all six families loaded by one set of connections.
int settleAndReport(Probe &probe)
{
    probe.settle();
    reportLoads(probe);
    reportUpdatesOfOnePush(probe);
    return 0;
}

int fromPlainThreadThenMain(int &argc, char **argv, unsigned)
{
    Probe probe(argc, argv);
    std::thread(&ManualT0Logic::InitData).join();
    ManualT0Logic::InitData();
    return settleAndReport(probe);
}

int fromTwoThreadsAtOnce(int &argc, char **argv, unsigned)
{
    Probe probe(argc, argv);
    std::atomic<int> ready{0};
    const auto start = [&ready] {
        ++ready;
        while (ready < 2) {
        }
        ManualT0Logic::InitData();
    };
    std::thread other(start);
    start();
    other.join();
    return settleAndReport(probe);
}

int queryBefore(int &argc, char **argv, unsigned)
{
    Probe probe(argc, argv);
    report("accountsBefore", ManualT0Logic::GetAllT0TradingAccountList().size());
    ManualT0Logic::InitData();
    return settleAndReport(probe);
}

int refreshBefore(int &argc, char **argv, unsigned)
{
    Probe probe(argc, argv);
    ManualT0Logic::RefreshData();
    int started = 0;
    for (int type = ManualT0Logic::Products; type <= ManualT0Logic::AccountPriority; ++type) {
        ManualT0Logic::RefreshDataByType(type);
        started += ManualT0Logic::GetInitStateByType(type) != MasterInitStateMgr::NotInit;
    }
    report("startedByRefresh", started);
    ManualT0Logic::InitData();
    return settleAndReport(probe);
}

int again(int &argc, char **argv, unsigned)
{
    Probe probe(argc, argv);
    ManualT0Logic::InitData();
    probe.settle();
    const int before = probe.server().requests().size();
    ManualT0Logic::InitData();
    probe.settle();
    report("requestsOfSecond", probe.server().requests().size() - before);
    return settleAndReport(probe);
}

/// The log line that initialize() writes is the one place where code of others runs inside the first call.
std::atomic<int> reentered{0};

void callBackIn(HostLog::Level, const QString &line)
{
    if (!line.contains(QLatin1String("ManualT0LogicPlugin::initialize")))
        return;
    ++reentered;
    ManualT0Logic::InitData();
}

int fromInsideItself(int &argc, char **argv, unsigned)
{
    Probe probe(argc, argv);
    HostLog::setLevel(HostLog::Level::Debug, true);
    HostLog::setSink(&callBackIn);
    ManualT0Logic::InitData();
    HostLog::setLevel(HostLog::Level::Debug, false);
    report("reentered", reentered);
    return settleAndReport(probe);
}

/// The host may make and delete objects of the plug-in type; the working one is another.
int fromDescriptor(int &argc, char **argv, unsigned)
{
    Probe probe(argc, argv);
    PluginLoader loader;
    const QList<PluginLoader::Plugin> plugins = loader.loadFolder(QStringLiteral(PLUGIN_FOLDER));
    if (plugins.size() != 1 || !plugins.first().plugin)
        return 1;
    ManualT0Logic::InitData();
    const int type = plugins.first().plugin->autoReleasedObjects().first()->property("metaId").toInt();
    QMetaType::destroy(type, QMetaType::create(type));
    return settleAndReport(probe);
}

} // namespace

QMap<QString, Scenario> startScenarios()
{
    return {{QStringLiteral("plain-thread"), &fromPlainThreadThenMain},
            {QStringLiteral("two-threads"), &fromTwoThreadsAtOnce},
            {QStringLiteral("query-before"), &queryBefore},
            {QStringLiteral("refresh-before"), &refreshBefore},
            {QStringLiteral("again"), &again},
            {QStringLiteral("reentered"), &fromInsideItself},
            {QStringLiteral("descriptor"), &fromDescriptor}};
}
