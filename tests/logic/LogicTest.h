#pragma once

#include "HubProbe.h"
#include "ManualT0Logic.h"
#include "Rows.h"
#include "SharedDesk.h"
#include "TestServer.h"

#include "HostSession.h"

#include <QtTest/QtTest>

#include <mutex>

class ManualT0LogicPresenterClass;

/// Base of the hub's test classes. Every test function runs with a session, a hub of its own and a listener
/// to all events. By hand, the hub's queries are recorded and the test answers them through the hub's slots;
/// behind the server, a presenter asks the scripted server. A query or a warning of Qt about objects, timers
/// or queued arguments that the test did not look at fails it, and so does a change that was sent.
class LogicTest : public QObject
{
    Q_OBJECT

protected:
    enum class Mode { ByHand, Server };

    /// Timers of the hub that a test does not wait for.
    static HubTiming slowTimers() { return {600000, 600000, 600000, 600000}; }

    /// Opens a session with the shared reference data, stored settings as JSON text, and the hub.
    void open(Mode newMode, HubTiming timing = slowTimers(), const QString &userId = Rows::user,
              const QString &storedSettings = QString());

    /// Stops the hub and the presenter, closes the session; what nobody took is forgotten.
    void close();

    /// Runs function on the hub's thread and waits for it.
    template <typename Function> void onHub(Function function)
    {
        QVERIFY(QMetaObject::invokeMethod(hub.get(), function, Qt::BlockingQueuedConnection));
    }

    void answerProducts(const RecordList &rows, const QString &code = Rows::Success);
    void answerTraders(const RecordList &rows, bool isManager, const QString &code = Rows::Success);
    void answerResources(const QString &account, const RecordList &rows, const QString &code = Rows::Success,
                         bool cover = true);
    void answerPools(const QString &account, const RecordList &rows, const QString &code = Rows::Success);
    void answerUsage(const RecordList &rows, const QString &code = Rows::Success);
    void answerPriority(const QStringList &accounts, const QString &code = Rows::Success);
    void push(const VariantRecord &row);

    /// A whole load by hand: accounts A1, A2, A3 of P1 and A4 of P2, traders u1 and t2, rows by their account.
    void start(const RecordList &resources = {}, const RecordList &pools = {}, const RecordList &usage = {},
               bool isManager = true);

    /// The hub's queries since the last call as "products", "traders", "priority", "resources A1", "pools A1",
    /// "usage u1,t2".
    QStringList takeAsked();

    /// As takeAsked(), once the hub has asked something.
    QStringList awaitAsked();

    /// The events since the last call, as eventText().
    QStringList takeEvents();

    /// All that was caused has arrived.
    void settle();

    ScriptedReference desk; ///< what open() gives the host; as in Rows.h at the start of every test
    TestServer *server = nullptr;
    std::unique_ptr<HostSession> session;
    std::unique_ptr<ManualT0LogicPrivate> hub;
    ManualT0LogicPresenterClass *presenter = nullptr;
    QList<QPair<QString, QVariant>> rawEvents; ///< not yet taken

private slots:
    void init();
    void cleanup();

private:
    void record(const QString &asked);
    void recordQueries();

    std::unique_ptr<TestServer> serverOwner;
    std::unique_ptr<QObject> listener;
    std::mutex askedMutex;
    QStringList asked;
    Mode mode = Mode::ByHand;
};
