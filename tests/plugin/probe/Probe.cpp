#include "Probe.h"

#include "EventBus.h"
#include "ManualT0Logic.h"
#include "MasterMsgType.h"
#include "VantaKeys.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>

#include <cstdio>

namespace {

constexpr int PatienceMs = 10000;

/// Threads of this process that are not plain ones, by the names the system shows, cut at 15 characters.
QStringList qtThreads()
{
    QStringList names;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    const QStringList ids = tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &id : ids) {
        QFile comm(tasks.filePath(id + QStringLiteral("/comm")));
        const QString name = comm.open(QIODevice::ReadOnly) ? QString::fromLatin1(comm.readAll()).trimmed() : QString();
        if (name == QLatin1String("ManualT0LogicTh") || name == QLatin1String("PresenterThread") ||
            name == QLatin1String("QThread"))
            names.append(name);
    }
    return names;
}

} // namespace

Probe::Probe(int &argc, char **argv)
    : m_application(std::make_unique<QCoreApplication>(argc, argv))
{
    m_session = ProbeServer::open(m_server);
    EventBus::listenToAll(m_application.get(), [this](const QString &name, const QVariant &) { ++m_events[name]; });
}

Probe::~Probe()
{
    m_application.reset();
    // Qt calls a thread finished a moment before the system does.
    const QDeadlineTimer deadline(PatienceMs);
    QStringList running = qtThreads();
    while (!running.isEmpty() && !deadline.hasExpired())
        running = qtThreads();
    if (!running.isEmpty())
        qCritical("the application object is gone, but %s still runs", qPrintable(running.join(QLatin1Char(' '))));
    closeSession();
}

void Probe::closeSession()
{
    m_stopPushes = true;
    if (m_pusher.joinable())
        m_pusher.join();
    m_session.reset();
}

bool Probe::waitForRequests(const QString &type, int count) const
{
    const QDeadlineTimer deadline(PatienceMs);
    while (m_server->count(type) < count) {
        if (deadline.hasExpired())
            return false;
        std::this_thread::yield();
    }
    return true;
}

void Probe::settle()
{
    if (!m_session->settle(PatienceMs))
        qFatal("the process did not come to rest");
}

void Probe::push()
{
    m_server->push(Master_MsgType::ManualT0RealTimePoolUsagePush, ProbeServer::usage(++m_pushes));
}

void Probe::startPushes()
{
    m_pusher = std::thread([this] {
        while (!m_stopPushes) {
            push();
            std::this_thread::sleep_for(std::chrono::microseconds(100)); // a busy server, not a flood
        }
    });
}

void report(const char *name, int value)
{
    std::printf("%s=%d\n", name, value);
}

void reportLoads(Probe &probe)
{
    int loaded = 0;
    for (int type = ManualT0Logic::Products; type <= ManualT0Logic::AccountPriority; ++type)
        loaded += ManualT0Logic::GetInitStateByType(type) == MasterInitStateMgr::Inited;
    report("loaded", loaded);
    report("productQueries", probe.server().count(Master_MsgType::QueryManualT0ProductsRequest));
}

void reportUpdatesOfOnePush(Probe &probe)
{
    const QString &updated = Vanta_Keys::EventMsgName::ManualT0PoolRealTimeUpdated;
    const int before = probe.events(updated);
    probe.push();
    probe.settle();
    report("updatesOfOnePush", probe.events(updated) - before);
}
