#include "ChildProcess.h"
#include "Tests.h"

#include <QtTest/QtTest>

namespace {

/// Requests to the probes' server time out after a minute: who waits for one at its end is killed before.
constexpr int WatchdogMs = 30000;

} // namespace

/// Starts and ends of the one hub of a process, each in a process of its own. A clean process writes no warning,
/// so the sanitizers' reports and Qt's complaints about threads and timers fail these tests too.
class TestLifecycle : public QObject
{
    Q_OBJECT

private slots:
    void everyStartLoadsAllOnce_data();
    void everyStartLoadsAllOnce();
    void processEndsCleanly_data();
    void processEndsCleanly();
};

void TestLifecycle::everyStartLoadsAllOnce_data()
{
    using Findings = QMap<QString, int>;
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<int>("runs");
    QTest::addColumn<Findings>("besides");
    QTest::newRow("a thread without event loop, then main") << "plain-thread" << 1 << Findings();
    QTest::newRow("two threads at once") << "two-threads" << 20 << Findings();
    QTest::newRow("a query before InitData") << "query-before" << 1 << Findings{{"accountsBefore", 0}};
    QTest::newRow("a refresh before InitData starts nothing")
        << "refresh-before" << 1 << Findings{{"startedByRefresh", 0}};
    QTest::newRow("InitData after the load asks nothing") << "again" << 1 << Findings{{"requestsOfSecond", 0}};
    QTest::newRow("InitData from inside InitData does nothing") << "reentered" << 1 << Findings{{"reentered", 1}};
    QTest::newRow("the host makes and deletes an object of the type") << "descriptor" << 1 << Findings();
}

void TestLifecycle::everyStartLoadsAllOnce()
{
    QFETCH(QString, scenario);
    QFETCH(int, runs);
    using Findings = QMap<QString, int>;
    QFETCH(Findings, besides);
    Findings expected = besides;
    expected.insert(QStringLiteral("loaded"), 6);
    expected.insert(QStringLiteral("productQueries"), 1);
    expected.insert(QStringLiteral("updatesOfOnePush"), 1);
    for (int i = 0; i < runs; ++i) {
        const ChildProcess probe =
            ChildProcess::run(QStringLiteral(PLUGIN_PROBE), {scenario, QString::number(i)}, WatchdogMs);
        QCOMPARE(probe.fault(), QString());
        QCOMPARE(probe.findings(), expected);
    }
}

void TestLifecycle::processEndsCleanly_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::newRow("right after InitData") << "exit-after-init";
    QTest::newRow("while a page of a query is awaited") << "exit-in-slow-query";
    QTest::newRow("with retries waiting") << "exit-with-retries";
    QTest::newRow("with the hub made before the plug-in object") << "exit-after-query-before";
    QTest::newRow("without an application object") << "exit-without-application";
}

void TestLifecycle::processEndsCleanly()
{
    QFETCH(QString, scenario);
    constexpr int runs = 8; // each at another moment
    for (int seed = 0; seed < runs; ++seed) {
        const ChildProcess probe =
            ChildProcess::run(QStringLiteral(PLUGIN_PROBE), {scenario, QString::number(seed)}, WatchdogMs);
        QVERIFY2(probe.fault().isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(probe.fault())));
    }
}

T0_REGISTER_TEST(TestLifecycle)
#include "TestLifecycle.moc"
