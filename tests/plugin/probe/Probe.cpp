#include "Probe.h"

#include "EventBus.h"
#include "ManualT0Logic.h"
#include "MasterMsgType.h"
#include "VantaKeys.h"

#include <cstdio>

namespace {

constexpr int SettleMs = 10000;
constexpr int RequestTimeoutMs = 60000; ///< so long that a program which waits for an answer is seen to hang

std::unique_ptr<HostSession> openSession(std::unique_ptr<ProbeServer> server)
{
    HostConfig config;
    config.channel = std::move(server);
    config.user = ProbeServer::user;
    config.requestTimeoutMs = RequestTimeoutMs;
    QString errorText;
    auto session = HostSession::open(std::move(config), errorText);
    if (!session)
        qFatal("no session: %s", qPrintable(errorText));
    return session;
}

} // namespace

Probe::Probe(int &argc, char **argv)
    : m_application(std::make_unique<QCoreApplication>(argc, argv))
{
    auto server = std::make_unique<ProbeServer>();
    m_server = server.get();
    m_session = openSession(std::move(server));
    EventBus::listenToAll(m_application.get(), [this](const QString &name, const QVariant &) { ++m_events[name]; });
}

Probe::~Probe()
{
    m_application.reset();
    m_stopPushes = true;
    if (m_pusher.joinable())
        m_pusher.join();
}

void Probe::settle()
{
    if (!m_session->settle(SettleMs))
        qFatal("the process did not come to rest");
}

void Probe::startPushes()
{
    m_pusher = std::thread([this] {
        while (!m_stopPushes) {
            m_server->push();
            ++m_pushes;
            std::this_thread::yield();
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
    report("productQueries", probe.server().requests(Master_MsgType::QueryManualT0ProductsRequest));
}

void reportUpdatesOfOnePush(Probe &probe)
{
    const QString &updated = Vanta_Keys::EventMsgName::ManualT0PoolRealTimeUpdated;
    const int before = probe.events(updated);
    probe.server().push();
    probe.settle();
    report("updatesOfOnePush", probe.events(updated) - before);
}
