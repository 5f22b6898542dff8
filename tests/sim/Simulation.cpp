#include "Simulation.h"

#include "ManualT0LogicPrivate.h"
#include "Users.h"

namespace {

constexpr qint64 second = 1000000;

/// One seed.
class Simulation
{
public:
    Simulation(quint64 seed, SimDispatcher &timers, bool trace, Faults &faults)
        : m_world(begin(seed), timers, trace)
        , m_gateway(m_world.chance)
        , m_client(m_world, m_gateway, faults)
        , m_users(m_world, m_gateway, faults, m_client)
    {
        faults.note = [this](const QString &what) { m_world.note(what); };
    }

    SeedResult run()
    {
        chaos();
        calm();
        if (!m_world.hasFailed())
            heal();
        return {m_world.hash(), m_world.steps(), m_world.failures()};
    }

private:
    static quint64 begin(quint64 seed)
    {
        SimClock::set(0);
        Envelope::beginIds(QStringLiteral("seed%1").arg(seed));
        return seed;
    }

    void chaos();
    void calm();
    void heal();

    World m_world;
    ModelGateway m_gateway;
    Client m_client;
    Users m_users;
};

void Simulation::chaos()
{
    const qint64 end = second * (2 + m_world.chance.upTo(6));
    m_client.begins();
    m_client.hub().InitData();
    m_client.model.initData();
    m_client.compare("the start");
    m_users.actUntil(end);
    while (SimClock::now() < end && !m_world.hasFailed()) {
        m_world.step();
        if (!m_world.tidy())
            continue;
        m_client.compareEvents();
        if (m_client.channel().isQuiet())
            m_client.checkOwnChanges();
    }
}

/// Without faults until nothing is under way any more.
void Simulation::calm()
{
    m_client.channel().setFaults(false);
    const qint64 longest = SimClock::now() + 60 * second;
    while (!m_world.tidy() || !m_client.channel().isQuiet()) {
        m_world.step();
        if (SimClock::now() > longest) {
            m_world.fail("requests go on for ever");
            return;
        }
    }
    m_client.compareEvents();
    m_client.checkOwnChanges();
    m_users.checkClaims();
}

void Simulation::heal()
{
    m_world.runUntil(SimClock::now() + 31 * second); // two refreshes come no closer
    m_client.begins();
    m_client.hub().RefreshData();
    if (m_client.refreshAccepted())
        m_client.model.refreshAll();
    m_client.compare("the last refresh");
    m_world.runUntil(SimClock::now() + second);
    m_client.compareWithGateway();
    if (!m_gateway.isHeardBy(m_client.shownTraders()))
        return; // deliberate: traders that came later are not subscribed; the next usage query brings them
    for (int i = 0; i < 5; ++i)
        m_gateway.someoneTrades();
    m_world.runUntil(SimClock::now() + second);
    m_client.compareWithGateway();
}

} // namespace

SeedResult simulate(quint64 seed, SimDispatcher &timers, bool trace, Faults &faults)
{
    return Simulation(seed, timers, trace, faults).run();
}
