#include "World.h"

#include "framework/SingleThread.h"

#include <QtCore/QCoreApplication>

#include <cstdio>

extern uint qGlobalPostedEventsCount(); // QtCore's, for event dispatchers

namespace {

constexpr int lagsOneIn = 3;          ///< a party that has something to do is not always scheduled at once
constexpr int tidiesEvery = 64;       ///< steps
constexpr quint64 mostSteps = 400000; ///< a seed that goes on longer hangs

} // namespace

World::World(quint64 seed, SimDispatcher &timers, bool trace)
    : chance(unsigned(seed))
    , m_seed(seed)
    , m_timers(timers)
    , m_trace(trace)
{
    SingleThread::setTurn([this] { step(); });
}

World::~World()
{
    SingleThread::setTurn({});
}

void World::addParty(QObject *object)
{
    m_parties.append({object});
}

int World::partyOf(const QObject *object) const
{
    for (const QObject *at = object; at; at = at->parent()) {
        for (int party = 0; party < m_parties.size(); ++party) {
            if (m_parties.at(party).object == at)
                return party;
        }
    }
    return -1;
}

bool World::isRunning(const QObject *object) const
{
    const int party = partyOf(object);
    return party >= 0 && m_parties.at(party).runs;
}

void World::in(Ms delay, std::function<void()> action)
{
    at(SimClock::now() + qint64(delay * 1000), std::move(action));
}

void World::at(qint64 us, std::function<void()> action)
{
    m_actions.emplace(qMax(us, SimClock::now()), std::move(action));
}

void World::letRun(int party)
{
    if (m_parties.at(party).runs)
        return;
    m_parties[party].runs = true;
    QCoreApplication::sendPostedEvents(m_parties.at(party).object);
    m_parties[party].runs = false;
}

void World::step()
{
    if (++m_steps > mostSteps)
        qFatal("seed %llu does not end", m_seed);
    const int first = chance.upTo(qMax(1, m_parties.size()));
    for (int i = 0; i < m_parties.size(); ++i) {
        if (!chance.oneIn(lagsOneIn))
            letRun((first + i) % m_parties.size());
    }
    if (!runNext(std::numeric_limits<qint64>::max()))
        qFatal("seed %llu waits for ever", m_seed);
}

bool World::runNext(qint64 until)
{
    const int timer = m_timers.nextTimer([this](QObject *owner) { return !isRunning(owner); });
    const qint64 timerDue = timer ? m_timers.dueOf(timer) : std::numeric_limits<qint64>::max();
    const auto action = m_actions.begin();
    const qint64 due = qMin(timerDue, action == m_actions.end() ? timerDue : action->first);
    if (due > until || (!timer && action == m_actions.end()))
        return false;
    SimClock::set(qMax(SimClock::now(), due));
    if (timerDue > due) {
        const std::function<void()> run = std::move(action->second);
        m_actions.erase(action);
        run();
        return true;
    }
    const QObject *owner = m_timers.ownerOf(timer);
    const int party = partyOf(owner);
    if (party < 0) {
        m_timers.fire(timer);
        return true;
    }
    partysTimer(owner, [&] {
        m_parties[party].runs = true;
        m_timers.fire(timer);
        m_parties[party].runs = false;
    });
    return true;
}

void World::runUntil(qint64 us)
{
    do
        runAll();
    while (!hasFailed() && runNext(us));
    SimClock::set(qMax(SimClock::now(), us));
}

bool World::tidy()
{
    if (m_steps % tidiesEvery != 0)
        return false;
    runAll();
    return true;
}

void World::runAll()
{
    // Who waits meanwhile lets only the network run: the others' events are on their way already.
    for (Party &party : m_parties)
        party.runs = true;
    while (qGlobalPostedEventsCount() > 0)
        QCoreApplication::sendPostedEvents();
    for (Party &party : m_parties)
        party.runs = false;
}

void World::note(const QString &what)
{
    const QByteArray line = QByteArray::number(SimClock::now()) + ' ' + what.toUtf8() + '\n';
    for (const char byte : line)
        m_hash = (m_hash ^ uchar(byte)) * 1099511628211ULL;
    if (m_trace)
        std::fputs(line.constData(), stdout);
}

void World::fail(const QString &what)
{
    m_failures.append(QStringLiteral("at %1 us: %2").arg(QString::number(SimClock::now()), what));
}
