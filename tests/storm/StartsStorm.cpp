#include "ChildProcess.h"
#include "Tests.h"

#include <QtCore/QProcess>
#include <QtTest/QtTest>

#include <random>

namespace {

constexpr int patienceMs = 60000;

int given(const char *variable, int byDefault)
{
    bool isGiven = false;
    const int value = qEnvironmentVariableIntValue(variable, &isGiven);
    return isGiven ? value : byDefault;
}

/// A console that has been told to do more than it can, and then to end; empty, or what is wrong with its end.
QByteArray faultOfEndedConsole(unsigned seed)
{
    QProcess console;
    console.start(QStringLiteral(CONSOLE_PROGRAM), {QStringLiteral("--books"), QStringLiteral(SAMPLE_BOOKS)});
    console.write("echo up\ninit\n");
    for (int i = 0; i < 200; ++i)
        console.write("GetAllResourceList\nRefreshDataByType 2\nGetAllSecurityPoolList\nRefreshDataByType 0\n");
    while (!console.canReadLine())
        if (!console.waitForReadyRead(patienceMs))
            return "no line came: " + console.readAllStandardError();
    std::mt19937 random(seed);
    QTest::qSleep(int(random() % 300)); // the moment
    console.terminate();
    const bool inTime = console.waitForFinished(patienceMs);
    const bool isClean = inTime && console.exitStatus() == QProcess::NormalExit && console.exitCode() == 0;
    const QByteArray errors = console.readAllStandardError();
    return isClean && errors.isEmpty()
               ? QByteArray()
               : errors + (inTime ? "status " + QByteArray::number(console.exitCode()) : QByteArray("it hangs"));
}

} // namespace

/// Processes that are started and ended at random moments, with load under way. Whatever one writes to its error
/// stream, a sanitizer's report or a complaint of Qt, is a fault. T0_STORM_STARTS: how many; T0_STORM_SEED: of the
/// first.
class StartsStorm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void clientsEndCleanlyAtAnyMoment();
    void consolesEndCleanlyWhenTold();
};

void StartsStorm::initTestCase()
{
    // A thread gives its data and what was still queued in it back after who waits for it goes on: at such an end that
    // may look lost. What is used after it is gone is reported all the same.
    qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":detect_leaks=0");
}

void StartsStorm::clientsEndCleanlyAtAnyMoment()
{
    const int first = given("T0_STORM_SEED", 1);
    const int starts = given("T0_STORM_STARTS", 40);
    for (int seed = first; seed < first + starts; ++seed) {
        const ChildProcess client = ChildProcess::run(
            QStringLiteral(PLUGIN_PROBE), {QStringLiteral("exit-under-load"), QString::number(seed)}, patienceMs);
        QVERIFY2(client.fault().isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(client.fault())));
    }
}

void StartsStorm::consolesEndCleanlyWhenTold()
{
    const int first = given("T0_STORM_SEED", 1);
    const int starts = given("T0_STORM_STARTS", 40) / 4;
    for (int seed = first; seed < first + starts; ++seed) {
        const QByteArray fault = faultOfEndedConsole(unsigned(seed));
        QVERIFY2(fault.isEmpty(), "seed " + QByteArray::number(seed) + ": " + fault);
    }
}

T0_REGISTER_TEST(StartsStorm)
#include "StartsStorm.moc"
