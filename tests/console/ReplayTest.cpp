#include "Program.h"
#include "Tests.h"

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace Program;

namespace {

/// A manager's session in which the library asks, asks again, gives up and changes its picture by itself.
const char session[] = R"(login lead1
fault QueryManualT0ResourceRequest fail 1
init
wait inited 0,1,2,3,4,5 30000
settle
AddSecurityPoolAndResource [{"tradingAccount":"A000101","securityID":"600002","securityExchange":"SH","T0TraderId":"trader1","PoolTotalQty":700}] false &
push {"T0TraderId":"trader2","tradingAccount":"A000302","securityID":"600001","securityExchange":"SH","DailyBuyLimit":321}
settle
RefreshData
wait inited 0,1,2,3,4,5 30000
settle
AddT0Resource [{"tradingAccount":"A000102","securityID":"600005","securityExchange":"SH","ResourceQty":400}] true &
settle
picture hash
DeleteT0Resource [{"ResourceId":"R000000003"}] &
DeleteT0Resource [{"ResourceId":"R000000101"}] &
settle
fault AlterManualT0ProductsRequest fail 1
AlterT0ProductAccount {"P0001":["Cash"],"P0003":["Cash"]} &
AlterT0ProductAccount {"P0001":["Cash"],"P0003":["Cash"]} &
settle
fault QueryManualT0SecurityPoolRequest timeout 2
fault QueryManualT0ResourceRequest duplicate 1
RefreshDataByType 3
wait inited 3 30000
settle
RefreshDataByType 2
wait inited 2 30000
RefreshDataByType 0
settle
fault QueryManualT0TraderAccountPriorityRequest fail 1
RefreshDataByType 5
init
settle
picture
picture hash
)";

QString pathOf(const QTemporaryDir &dir)
{
    return dir.filePath(QStringLiteral("journal"));
}

/// The number of the first record whose line in the list holds a text.
QString sequenceOf(const QString &journal, const QString &text)
{
    const Run list = runConsole({}, {"--replay", journal, "--list"});
    const QStringList lines = QString::fromUtf8(list.output).split('\n').filter(text);
    return lines.value(0).trimmed().section(' ', 0, 0);
}

} // namespace

class ReplayTest : public QObject
{
    Q_OBJECT

private slots:
    void aSessionIsRepeated();
    void aReplayStopsWhereItIsTold();
    void aCrashLeavesAJournalThatIsReplayed();
    void keptJournals_data();
    void keptJournals();
    void badJournals();
};
T0_REGISTER_TEST(ReplayTest)

void ReplayTest::aSessionIsRepeated()
{
    const QTemporaryDir dir;
    const Run live = runConsole(session, {"--journal", pathOf(dir)});
    const Run replay = runConsole({}, {"--replay", pathOf(dir)});
    QVERIFY2(replay.exitCode == 0, qPrintable(replay.errors));
    QCOMPARE(replay.errors, QString()); // nothing to remark
    QCOMPARE(lastLine(replay.output), lastLine(live.output));
    QVERIFY(live.output.endsWith(replay.output));
}

void ReplayTest::aReplayStopsWhereItIsTold()
{
    const QTemporaryDir dir;
    const Run live = runConsole(session, {"--json", "--journal", pathOf(dir)});
    const QString deletion = sequenceOf(pathOf(dir), "out   DeleteManualT0ResourceRequest");
    QVERIFY(deletion.toInt() > 0);
    const QString script = dir.filePath("script");
    QFile file(script);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("as trader1 picture\npicture hash\n");
    file.close();
    const Run before = runConsole({}, {"--json", "--replay", pathOf(dir), "--until", deletion, script});
    QVERIFY2(before.errors.contains(script + ":1: other users have no gateway in a replay\n"),
             qPrintable(before.errors));
    QStringList hashes;
    for (const QJsonObject &line : live.lines() + before.lines())
        if (line.value("op") == QLatin1String("picture") && line.value("result").isString())
            hashes.append(line.value("result").toString());
    QCOMPARE(hashes.size(), 3);
    QVERIFY(hashes.at(0) != hashes.at(1));
    QCOMPARE(hashes.at(2), hashes.at(0));

    // A load that was not answered by then is still under way.
    const QString loading = sequenceOf(pathOf(dir), "Resources begins to load");
    const Run early = runConsole({}, {"--replay", pathOf(dir), "--until", loading});
    QVERIFY2(early.output.contains("\n2 Resources: loading, 0 rows\n"), early.output);
}

void ReplayTest::aCrashLeavesAJournalThatIsReplayed()
{
    const QTemporaryDir dir;
    QProcess live;
    start(live, {"--journal", pathOf(dir)});
    live.write(QByteArray(initAndWait) + "settle\npicture hash\n");
    QByteArray hash;
    QVERIFY(readUntil(live, "picture ", hash));
    const auto replayed = [&dir] { return lastLine(runConsole({}, {"--replay", pathOf(dir)}).output); };
    QTRY_COMPARE(replayed(), hash); // nothing of it waits in the program
    live.kill();
    QVERIFY(live.waitForFinished());
    const Run replay = runConsole({}, {"--replay", pathOf(dir)});
    QCOMPARE(lastLine(replay.output), hash);
    QVERIFY2(replay.errors.endsWith(", without its closing\n"), qPrintable(replay.errors));
}

/// Each journal of the folder, the commands beside it, and what they print on it.
void ReplayTest::keptJournals_data()
{
    QTest::addColumn<QString>("journal");
    const QDir dir(QStringLiteral(T0_SCRIPTS "/journals"));
    const QStringList journals = dir.entryList({"*.journal"});
    for (const QString &journal : journals)
        QTest::newRow(qPrintable(journal)) << dir.filePath(journal);
    QVERIFY(!journals.isEmpty());
}

void ReplayTest::keptJournals()
{
    QFETCH(QString, journal);
    const QString base = journal.chopped(qstrlen(".journal"));
    const Run run = runConsole({}, {"--replay", journal, base + ".t0"});
    QFile expected(base + ".expected");
    QVERIFY(expected.open(QIODevice::ReadOnly));
    QCOMPARE(run.errors, QString());
    QCOMPARE(QString::fromUtf8(run.output), QString::fromUtf8(expected.readAll()));
}

void ReplayTest::badJournals()
{
    const QTemporaryDir dir;
    runConsole("init\n", {"--journal", pathOf(dir)});
    const Run again = runConsole("init\n", {"--journal", pathOf(dir)});
    QVERIFY2(again.exitCode == 1 && again.errors.startsWith("t0-console: " + pathOf(dir)), qPrintable(again.errors));

    const Run early = runConsole({}, {"--replay", pathOf(dir), "--until", "3"});
    QCOMPARE(early.exitCode, 1);
    QVERIFY2(early.errors.contains("ends before the session was open"), qPrintable(early.errors));

    QFile file(pathOf(dir));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    file.resize(bytes.size() - 5);
    const Run cut = runConsole({}, {"--replay", pathOf(dir)});
    QCOMPARE(cut.exitCode, 0);
    QVERIFY2(cut.errors.contains(QRegularExpression("record \\d+ at byte \\d+: cut off, ")), qPrintable(cut.errors));

    bytes[bytes.size() / 2] = char(bytes.at(bytes.size() / 2) + 1);
    file.seek(0);
    file.write(bytes);
    file.close();
    for (const QStringList &options : {QStringList(), QStringList{"--list"}}) {
        const Run bad = runConsole({}, QStringList{"--replay", pathOf(dir)} + options);
        QCOMPARE(bad.exitCode, 1);
        QVERIFY2(bad.errors.contains(QRegularExpression("record \\d+ at byte \\d+: ")), qPrintable(bad.errors));
    }
}

#include "ReplayTest.moc"
