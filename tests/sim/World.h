#pragma once

#include "Chance.h"
#include "SimClock.h"
#include "SimDispatcher.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <functional>
#include <map>

/// What happens when. One thread plays all threads of a client: each of its parties runs when the world lets it, one
/// at a time, and while a party waits for an answer the others go on. Everything follows from the seed.
class World
{
public:
    using Ms = double;

    World(quint64 seed, SimDispatcher &timers, bool trace);
    ~World();
    World(const World &) = delete;
    World &operator=(const World &) = delete;

    Chance chance;

    /// object's posted events run only when the world lets it; its timers and those of its children too.
    void addParty(QObject *object);
    void forgetParties() { m_parties.clear(); }
    bool isRunning(const QObject *object) const; ///< also while it waits

    void in(Ms delay, std::function<void()> action);
    void at(qint64 us, std::function<void()> action);

    /// Somebody runs: parties with posted events in a chosen order, then whatever is due first.
    void step();
    void runUntil(qint64 us); ///< everything that happens until then

    /// Now and then: everybody runs, in the order of their events, so that Qt forgets what it has delivered. Not while
    /// anybody waits. True: nobody has posted events left.
    bool tidy();

    /// A line of the trace, with the time.
    void note(const QString &what);
    quint64 hash() const { return m_hash; }
    quint64 steps() const { return m_steps; }

    /// What went wrong; the seed ends with the first.
    void fail(const QString &what);
    const QStringList &failures() const { return m_failures; }
    bool hasFailed() const { return !m_failures.isEmpty(); }

    /// Called for a timer of a party that is due; fire runs it.
    std::function<void(const QObject *timer, const std::function<void()> &fire)> partysTimer;

private:
    struct Party {
        QObject *object;
        bool runs = false;
    };

    void letRun(int party);
    void runAll();
    int partyOf(const QObject *object) const; ///< -1: of none
    bool runNext(qint64 until);

    const quint64 m_seed;
    SimDispatcher &m_timers;
    const bool m_trace;
    QVector<Party> m_parties;
    std::multimap<qint64, std::function<void()>> m_actions; ///< by time; of the same time, in the order they came
    quint64 m_hash = 14695981039346656037ULL;
    quint64 m_steps = 0;
    QStringList m_failures;
};
