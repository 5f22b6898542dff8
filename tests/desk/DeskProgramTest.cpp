#include "Tests.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

constexpr int longEnoughMs = 60000;

struct Run {
    int exitCode = -1; ///< -1: did not end by itself
    QString errors;
};

void start(QProcess &program, const QStringList &arguments)
{
    program.start(QStringLiteral(T0_DESK_PROGRAM), QStringList{QStringLiteral("--offscreen")} + arguments);
}

Run finish(QProcess &program)
{
    const bool ended = program.waitForFinished(longEnoughMs) && program.exitStatus() == QProcess::NormalExit;
    return {ended ? program.exitCode() : -1, QString::fromUtf8(program.readAllStandardError())};
}

QStringList playing(const QString &script)
{
    return {QStringLiteral("--plugins"), QStringLiteral(T0_TINY_PAGES), QStringLiteral("--script"), script};
}

QStringList embedded()
{
    return {QStringLiteral("--books"), QStringLiteral(T0_SAMPLE_BOOKS)};
}

Run run(const QStringList &arguments)
{
    QProcess program;
    start(program, arguments);
    return finish(program);
}

QString script(const char *name)
{
    return QStringLiteral(T0_DESK_SCRIPTS "/%1.desk").arg(QString::fromLatin1(name));
}

bool waitFor(QProcess &program, const QByteArray &text)
{
    QByteArray line;
    while (!line.contains(text)) {
        while (!program.canReadLine())
            if (!program.waitForReadyRead(longEnoughMs))
                return false;
        line = program.readLine();
    }
    return true;
}

bool serve(QProcess &gateway, const QString &name)
{
    gateway.start(QStringLiteral(T0_GATEWAY_PROGRAM), QStringList{QStringLiteral("--serve"), name} + embedded());
    return waitFor(gateway, "serving");
}

} // namespace

/// The program as a user runs it, on pages of our own.
class DeskProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void plays_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("frame") << QStringList{};
        QTest::newRow("english") << QStringList{"--lang", "en"};
        QTest::newRow("notes") << QStringList{"--immediate", "--user", "lead1"};
    }
    void plays()
    {
        QFETCH(QStringList, options);
        const Run played = run(playing(script(QTest::currentDataTag())) + embedded() + options);
        QCOMPARE(played.errors, QString());
        QCOMPARE(played.exitCode, 0);
    }

    void keysAreKept()
    {
        const QTemporaryDir settings;
        const QStringList kept = embedded() + QStringList{QStringLiteral("--settings"), settings.path()};
        for (const char *name : {"keys", "keys_kept"}) {
            const Run played = run(playing(script(name)) + kept);
            QCOMPARE(played.errors, QString());
            QCOMPARE(played.exitCode, 0);
        }
    }

    void reconnects()
    {
        const QTemporaryDir dir;
        const QString name = dir.filePath(QStringLiteral("gateway"));
        QProcess gateway;
        QVERIFY(serve(gateway, name));
        QProcess desk;
        start(desk, playing(script("reconnect")) + QStringList{QStringLiteral("--connect"), name,
                                                               QStringLiteral("--user"), QStringLiteral("lead1")});
        QVERIFY(waitFor(desk, "connected"));
        gateway.kill();
        gateway.waitForFinished(longEnoughMs);
        QVERIFY(waitFor(desk, "lost"));
        QVERIFY(serve(gateway, name));
        const Run played = finish(desk);
        gateway.terminate();
        gateway.waitForFinished(longEnoughMs);
        QCOMPARE(played.errors, QString());
        QCOMPARE(played.exitCode, 0);
    }

    void badScript_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("error");
        QTest::newRow("no command") << QByteArray("key F1\n\n# a\njump x\n") << "bad.desk:4: \"jump\" is no command\n";
        QTest::newRow("too few words") << QByteArray("set tiny.edit\n")
                                       << "bad.desk:1: \"set\" needs 2 words, there are 1\n";
        QTest::newRow("too many words") << QByteArray("page tiny other\n")
                                        << "bad.desk:1: \"other\" is too much for \"page\"\n";
        QTest::newRow("neither yes nor no")
            << QByteArray("expect-visible tiny.edit maybe\n") << "bad.desk:1: \"maybe\" is not yes or no\n";
        QTest::newRow("an open quote") << QByteArray("type \"abc\n") << "bad.desk:1: a quote is not closed\n";
        QTest::newRow("no widget") << QByteArray("click tiny.button\n")
                                   << "bad.desk:1: click: no visible widget is named \"tiny.button\"\n";
        QTest::newRow("no key") << QByteArray("key Hyper+Q+\n") << "bad.desk:1: key: \"Hyper+Q+\" is no key\n";
        QTest::newRow("no column") << QByteArray("expect tiny.table colour=red\n")
                                   << "bad.desk:1: expect: there is no column \"colour\"\n";
        QTest::newRow("another row") << QByteArray("settle\nexpect tiny.table letter=C number=0\n")
                                     << "bad.desk:2: expect: expected a row letter=C number=0 in tiny.table, there are "
                                        "2 rows: A | 0; B | 1\n";
        QTest::newRow("another text") << QByteArray("expect-text tiny.chip chop\n")
                                      << "bad.desk:1: expect-text: expected \"chop\" in tiny.chip, there is \"chip\"\n";
        QTest::newRow("the focus elsewhere") << QByteArray("expect-focus tiny.edit\n")
                                             << "bad.desk:1: expect-focus: expected the focus in tiny.edit, it is in "
                                                "tiny.table\n";
        QTest::newRow("behind a dialog") << QByteArray("key F12\nclick page.other\n")
                                         << "bad.desk:2: click: \"page.other\" is behind the dialog \"快捷键\"\n";
        QTest::newRow("the market's command")
            << QByteArray("exchange jump\n") << "bad.desk:1: exchange: \"jump\" is not hold, run, step or day-change\n";
    }
    void badScript()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, error);
        const QTemporaryDir dir;
        QFile file(dir.filePath(QStringLiteral("bad.desk")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        const Run played =
            run(playing(file.fileName()) + embedded() + QStringList{QStringLiteral("--shots"), dir.path()});
        QVERIFY2(played.errors.endsWith(error), qUtf8Printable(played.errors));
        QCOMPARE(played.exitCode, 1);
        const bool wasPlayed = !error.contains(QLatin1String("1: \"")) && !error.contains(QLatin1String("4: \"")) &&
                               !error.contains(QLatin1String("quote is not"));
        QCOMPARE(QFile::exists(dir.filePath(QStringLiteral("failed.png"))), wasPlayed);
    }

    void badOptions_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("error");
        QTest::newRow("no option") << QStringList{"--lang", "fr"} << 2 << "--lang is zh or en, not \"fr\"";
        QTest::newRow("a word") << QStringList{"word"} << 2 << "\"word\" is no option";
        QTest::newRow("books of another gateway")
            << QStringList{"--connect", "x", "--books", "y", "--user", "u"} << 2 << "--connect needs none";
        QTest::newRow("nobody") << QStringList{"--connect", "x"} << 2 << "--connect needs --user";
        QTest::newRow("no number") << QStringList{"--market", "fast"} << 2 << "--market must be a whole number";
        QTest::newRow("no books") << QStringList{"--books", "/nowhere"} << 1 << "/nowhere";
        QTest::newRow("no gateway") << QStringList{"--connect", "nobody-serves-this", "--user", "u"} << 1
                                    << "网关 nobody-serves-this 没有应答";
        QTest::newRow("no such user") << embedded() + QStringList{"--user", "nobody"} << 1 << "nobody 登录失败";
        QTest::newRow("no plug-ins") << embedded() + QStringList{"--plugins", "/nowhere"} << 1 << "/nowhere 中没有插件";
    }
    void badOptions()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, error);
        const Run ended = run(arguments);
        QVERIFY2(ended.errors.startsWith(QLatin1String("t0-desk: ")) && ended.errors.contains(error),
                 qUtf8Printable(ended.errors));
        QCOMPARE(ended.exitCode, exitCode);
    }
};

T0_REGISTER_TEST(DeskProgramTest)

#include "DeskProgramTest.moc"
