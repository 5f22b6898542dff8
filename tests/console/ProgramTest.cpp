#include "Program.h"
#include "Tests.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace Program;

namespace {

Run runScript(const char *script, const QStringList &arguments)
{
    QProcess program;
    program.setWorkingDirectory(QStringLiteral(T0_SCRIPTS));
    start(program, QStringList{QLatin1String(script)} + arguments);
    return finish(program);
}

/// The first line that differs; empty when none does.
QByteArray difference(const Run &run, const char *expectedFile)
{
    QFile file(QStringLiteral(T0_SCRIPTS "/") + QLatin1String(expectedFile));
    if (!file.open(QIODevice::ReadOnly))
        return "no such file";
    const QList<QByteArray> expected = file.readAll().split('\n');
    const QList<QByteArray> actual = run.output.split('\n');
    for (int i = 0; i < qMax(expected.size(), actual.size()); ++i)
        if (actual.value(i, "nothing") != expected.value(i, "nothing"))
            return "line " + QByteArray::number(i + 1) + ": " + actual.value(i, "nothing");
    return {};
}

/// The sample books with every account enabled and nothing set aside.
void writeEmptyBooks(const QDir &dir)
{
    const QDir sample(QStringLiteral(T0_SAMPLE_BOOKS));
    const QStringList emptied{"resources.csv", "pools.csv", "carried.csv"};
    for (const QString &name : sample.entryList({"*.csv"})) {
        QFile from(sample.filePath(name));
        QFile to(dir.filePath(name));
        QVERIFY(from.open(QIODevice::ReadOnly) && to.open(QIODevice::WriteOnly));
        QByteArrayList lines = from.readAll().replace(",0,ProfitToOrg,", ",1,ProfitToOrg,").split('\n');
        const auto header = std::find_if(lines.begin(), lines.end(), [](const auto &line) { return line[0] != '#'; });
        if (emptied.contains(name))
            lines.erase(header + 1, lines.end());
        to.write(lines.join('\n') + '\n');
    }
}

/// The families whose loading was announced, ascending.
QList<int> announced(const QJsonArray &events)
{
    QList<int> families;
    for (const QJsonValue &event : events)
        if (event.toObject().value("event") == QLatin1String("ManualT0DataInited"))
            families.append(event.toObject().value("payload").toInt());
    std::sort(families.begin(), families.end());
    return families;
}

} // namespace

class ProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void transcriptOfTheSampleBooks();
    void transcriptOfChanges();
    void everyCommandIsOneJsonLine();
    void badCommandsNameLineAndReason();
    void strictStopsAtTheFirstBadCommand();
    void loginOnlyBeforeTheLibraryAsks();
    void pushReachesTheSubscribedTrader();
    void waitNamesWhatIsMissing();
    void settingsAreKept();
    void badStarts_data();
    void badStarts();
    void signalEndsItCleanly();
};
T0_REGISTER_TEST(ProgramTest)

void ProgramTest::transcriptOfTheSampleBooks()
{
    const Run run = runScript("sample.t0", {});
    QCOMPARE(difference(run, "sample.expected"), QByteArray());
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.errors.count(QRegularExpression(QStringLiteral("^[0-5] \\(\\w+\\): \\d+ ms since init$"),
                                                 QRegularExpression::MultilineOption)),
             6);
}

void ProgramTest::transcriptOfChanges()
{
    const QTemporaryDir books;
    writeEmptyBooks(QDir(books.path()));
    const Run transcript = runScript("changes.t0", {"--books", books.path()});
    QCOMPARE(difference(transcript, "changes.expected"), QByteArray());
    QCOMPARE(transcript.exitCode, 0);
}

void ProgramTest::everyCommandIsOneJsonLine()
{
    const Run run = runConsole(QByteArray("\n# a comment\n") + initAndWait +
                               "GetAllResourceList\nGetRealtimePoolDetailList [\"A000101\"] [] \"\" \"\"\n"
                               "CalcProfitLossByRealtimeMap {\"a\":1} 0 &1 & &2.5\nevents\necho 1");
    QCOMPARE(run.exitCode, 0);
    const QVector<QJsonObject> lines = run.lines();
    QCOMPARE(lines.size(), 7);
    for (int i = 0; i < lines.size(); ++i)
        QCOMPARE(lines.at(i).value("line").toInt(), i + 3);
    QVERIFY(resultOf(run, "GetAllResourceList").size() > 10);
    QVERIFY(!resultOf(run, "GetRealtimePoolDetailList").isEmpty());
    QCOMPARE(lines.at(4).value("result"), QJsonValue(false));
    QCOMPARE(lines.at(4).value("out"), QJsonValue(QJsonArray{1, 0, 2.5}));
    QCOMPARE(announced(resultOf(run, "events")), (QList<int>{0, 1, 2, 3, 4, 5}));
    QCOMPARE(lines.at(6).value("result"), QJsonValue("1"));
}

void ProgramTest::badCommandsNameLineAndReason()
{
    const Run run = runConsole("echo good\n\nGetAllResourceLis\nGetT0Symbols 1\nsleep soon\nquote 1.XX 5\n"
                               "fault QueryManualT0ResourceRequest brake\nechoo [1\nwait inited 0\n"
                               "fault QuotePush truncate 0\nsafety trader1 stop\nsafety nobody\n"
                               "safety trader1 {\"tradeswitch\":\"Halted\"}\necho still here\n");
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors,
             QStringLiteral("<stdin>:3: unknown command GetAllResourceLis, did you mean "
                            "GetAllResourceList?\n"
                            "<stdin>:4: GetT0Symbols takes no arguments, not 1\n"
                            "<stdin>:5: argument 1: an integer is expected, not soon\n"
                            "<stdin>:6: fail: 证券不存在：1.XX\n"
                            "<stdin>:7: unknown fault brake\n"
                            "<stdin>:8: column 7: bad JSON, it is not closed\n"
                            "<stdin>:9: nothing is being loaded: init comes first\n"
                            "<stdin>:10: truncate strikes paged queries, QuotePush is a push\n"
                            "<stdin>:11: argument 2: active, reduce, halt or a record of rules is expected, not stop\n"
                            "<stdin>:12: there is no trader nobody whose rules you may see\n"
                            "<stdin>:13: argument 2: there is no rule tradeswitch, only tradeSwitch, ordersPerSecond, "
                            "cancelsPerMinute, duplicateMs, refuseSelfMatch\n"));
    const QVector<QJsonObject> lines = run.lines();
    QCOMPARE(lines.size(), 13);
    QCOMPARE(lines.at(3).value("line").toInt(), 5);
    QCOMPARE(lines.at(3).value("error"), QJsonValue("argument 1: an integer is expected, not soon"));
    QCOMPARE(lines.constLast().value("result"), QJsonValue("still here"));
}

void ProgramTest::strictStopsAtTheFirstBadCommand()
{
    const Run run = runConsole("echo one\nfoo\necho two\n", {QStringLiteral("--strict")});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.output, QByteArray("one\n"));
}

void ProgramTest::loginOnlyBeforeTheLibraryAsks()
{
    const Run run =
        runConsole("login nobody\nquote 600001.SH 12\nlogin trader1\nlogin trader2\ninit\n"
                   "wait inited 0,1,2,3,4,5\nlogin trader3\nGetAllT0TradingAccountListByCurUser\ngateway picture\n");
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors.count(QStringLiteral("<stdin>:1: nobody is not logged in")), 1);
    QCOMPARE(run.errors.count(QStringLiteral("<stdin>:7: login is possible only before init")), 1);
    QCOMPARE(resultOf(run, "GetAllT0TradingAccountListByCurUser"),
             (QJsonArray{"A000302", "A000201", "A000101"})); // trader2's, by priority
    QVERIFY2(run.errors.endsWith(QStringLiteral("<stdin>:9: fail: 只有管理员可以查看全部数据\n")),
             qPrintable(run.errors));
}

void ProgramTest::pushReachesTheSubscribedTrader()
{
    const Run run = runConsole(QByteArray(initAndWait) +
                               "settle\nevents\n"
                               "push {\"T0TraderId\":\"trader1\",\"tradingAccount\":\"A000101\",\"securityID\":"
                               "\"600001\",\"securityExchange\":\"SH\",\"DailyBuyLimit\":777}\n"
                               "settle\nGetRealtimePoolDetail A000101 trader1 600001.SH SH\n");
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.lines().constLast().value("result").toObject().value("DailyBuyLimit"), QJsonValue(777));
}

void ProgramTest::waitNamesWhatIsMissing()
{
    const Run run = runConsole("fault QueryManualT0TraderAccountPriorityRequest delay 20000\n"
                               "init\nwait inited 1 20000\nwait inited 1,5 1\n",
                               {QStringLiteral("--timeout"), QStringLiteral("30000")});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors, QStringLiteral("<stdin>:4: not loaded within 1 ms: 5 (AccountPriority)\n"));
}

void ProgramTest::settingsAreKept()
{
    const QTemporaryDir dir;
    const QStringList arguments{QStringLiteral("--json"), QStringLiteral("--settings"), dir.path()};
    runConsole("SetSymbolTradeSettings 600001.SH {\"qty\":100}\n", arguments);
    const Run run = runConsole("GetSymbolTradeSettings 600001.SH &\n", arguments);
    QCOMPARE(run.lines().at(0).value("result"), QJsonValue(QJsonObject{{"qty", 100}}));
    QCOMPARE(run.lines().at(0).value("out"), QJsonValue(QJsonArray{true}));
}

void ProgramTest::badStarts_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("error");
    QTest::newRow("unknown option") << QStringList{"--jsn"} << 2 << "Unknown option 'jsn'";
    QTest::newRow("no number") << QStringList{"--timeout", "soon"} << 2 << "--timeout must be a number";
    QTest::newRow("list of nothing") << QStringList{"--list"} << 2 << "--until and --list go with --replay";
    QTest::newRow("replay of a user") << QStringList{"--replay", "j", "--user", "u"} << 2 << "--replay knows";
    QTest::newRow("no such record") << QStringList{"--replay", "j", "--until", "0"} << 2 << "--until must be";
    QTest::newRow("no such journal") << QStringList{"--replay", "missing"} << 1 << "missing: ";
    QTest::newRow("two scripts") << QStringList{"a", "b"} << 2 << "one file of commands";
    QTest::newRow("no such script") << QStringList{"missing.t0"} << 1 << "missing.t0: ";
    QTest::newRow("no books there") << QStringList{"--books", T0_SCRIPTS} << 1 << "instruments.csv";
    QTest::newRow("no gateway there") << QStringList{"--connect", "t0-nobody", "--user", "u", "--timeout", "200"} << 1
                                      << "<stdin>:1: no gateway answers at t0-nobody";
}

void ProgramTest::badStarts()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const Run run = runConsole("init\n", arguments);
    QTEST(run.exitCode, "exitCode");
    QVERIFY2(run.errors.contains(error), qPrintable(run.errors));
    QCOMPARE(run.output, QByteArray());
}

void ProgramTest::signalEndsItCleanly()
{
    QProcess program;
    start(program, {});
    program.write(QByteArray(initAndWait) + "echo ready\nsleep 600000\n");
    QByteArray line;
    QVERIFY(readUntil(program, "ready", line));
    program.terminate();
    QCOMPARE(finish(program).exitCode, 0);
}

#include "ProgramTest.moc"
