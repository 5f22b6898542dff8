#pragma once

#include "ProbeServer.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMap>

#include <atomic>

/// One process of a client around the library: session, server and application object. The application object
/// goes first, as in a program whose main() returns without an event loop; the session closes after it.
class Probe
{
public:
    Probe(int &argc, char **argv);
    ~Probe(); ///< complains when a thread of the library outlives the application object

    ScriptedChannel &server() { return *m_server; }

    /// Until the server has seen so many requests of the type (empty: of all); false after ten seconds.
    bool waitForRequests(const QString &type, int count) const;

    /// Lets everything that was caused arrive; ends the process with a message when that takes ten seconds.
    void settle();

    void push(); ///< one usage record, newer than the ones before

    /// Pushes on and on, from a thread of its own, until the session is closed.
    void startPushes();
    int pushes() const { return m_pushes; }

    void closeSession();

    /// Events of a name since the start, heard on the main thread.
    int events(const QString &name) const { return m_events.value(name); }

private:
    ScriptedChannel *m_server = nullptr; ///< belongs to the session
    std::unique_ptr<HostSession> m_session;
    std::atomic<bool> m_stopPushes{false};
    std::atomic<int> m_pushes{0};
    std::thread m_pusher;
    std::unique_ptr<QCoreApplication> m_application;
    QMap<QString, int> m_events;
};

/// One finding for the test that started the process: a line "name=value" on the standard output.
void report(const char *name, int value);

/// Reports how many of the six families have finished well, and the product queries that the server saw.
void reportLoads(Probe &probe);

/// Reports how many update events one push causes: more than one means connections made twice.
void reportUpdatesOfOnePush(Probe &probe);

/// The scenarios by name. Arguments: those of main(); the seed chooses the moment at which a process ends.
using Scenario = int (*)(int &argc, char **argv, unsigned seed);
QMap<QString, Scenario> startScenarios();
QMap<QString, Scenario> exitScenarios();
