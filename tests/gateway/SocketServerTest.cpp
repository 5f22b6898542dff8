#include "SocketServer.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "SocketChannel.h"
#include "StandMsgType.h"
#include "TestBooks.h"
#include "TestClient.h"
#include "Tests.h"

#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtCore/QtEndian>
#include <QtNetwork/QLocalSocket>
#include <QtTest/QtTest>

#include <atomic>
#include <csignal>
#include <future>

namespace {

QByteArray framed(const QByteArray &bytes)
{
    QByteArray length(4, '\0');
    qToBigEndian(quint32(bytes.size()), length.data());
    return length + bytes;
}

QByteArray loginOf(const QString &user)
{
    const MessageBody body{{}, {{{Orvane_Fields::UserAccount::userID, user}}}};
    return framed(Envelope::request(Stand_MsgType::LoginRequest, user, 60000, body).encode());
}

/// Takes whole envelopes off a socket; count grows by the answers among them.
int answersOn(QLocalSocket &socket, QByteArray &buffer, int &count)
{
    buffer += socket.readAll();
    while (buffer.size() >= 4 && buffer.size() - 4 >= int(qFromBigEndian<quint32>(buffer.constData()))) {
        const int length = int(qFromBigEndian<quint32>(buffer.constData()));
        Envelope envelope;
        QString error;
        const bool good = Envelope::decode(buffer.mid(4, length), envelope, error);
        count += good && envelope.kind == Envelope::Kind::Answer ? 1 : 0;
        buffer.remove(0, 4 + length);
    }
    return count;
}

int exitCodeOf(const QStringList &arguments, QByteArray *output = nullptr)
{
    QProcess process;
    process.start(QStringLiteral(T0_GATEWAY_PROGRAM), arguments);
    if (!process.waitForFinished(120000))
        return -1;
    if (output)
        *output = process.readAllStandardOutput() + process.readAllStandardError();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
}

} // namespace

class SocketServerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void answersWhateverThePieces();
    void garbageDisconnectsItsSenderOnly_data();
    void garbageDisconnectsItsSenderOnly();
    void reconnectingRepeatsTheUsage();
    void aLivingNameIsNotTaken();
    void theProgramsExitCodes();
    void theProgramServesUntilItIsTold();

private:
    QTemporaryDir m_dir;
    QString m_name;
};

void SocketServerTest::init()
{
    m_name = m_dir.filePath(QStringLiteral("socket"));
}

void SocketServerTest::answersWhateverThePieces()
{
    SocketServer server(openGateway(TestBooks::withRows(1)));
    QCOMPARE(server.listen(m_name), QString());
    QLocalSocket socket;
    socket.connectToServer(m_name);
    const QByteArray bytes = loginOf("m") + loginOf("t1") + loginOf("m");
    QByteArray buffer;
    int answers = 0;
    for (int at = 0; at < bytes.size(); at += 7) {
        socket.write(bytes.mid(at, 7));
        socket.flush();
        QCoreApplication::processEvents();
        answersOn(socket, buffer, answers);
    }
    QTRY_COMPARE(answersOn(socket, buffer, answers), 3);
    socket.abort();
    QTRY_COMPARE(server.clientCount(), 0);
}

void SocketServerTest::garbageDisconnectsItsSenderOnly_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("no envelope") << framed("garbage");
    QTest::newRow("an answer") << framed(Envelope::request("Any", "m", 60000, {}).answer({}).encode());
    QTest::newRow("empty") << framed(QByteArray());
    QTest::newRow("too long") << QByteArray("\x7F\xFF\xFF\xFF", 4);
    QTest::newRow("negative length") << QByteArray("\xFF\xFF\xFF\xFF", 4);
}

void SocketServerTest::garbageDisconnectsItsSenderOnly()
{
    QFETCH(QByteArray, bytes);
    SocketServer server(openGateway(TestBooks::withRows(1)));
    QCOMPARE(server.listen(m_name), QString());
    QLocalSocket good;
    QLocalSocket bad;
    for (QLocalSocket *socket : {&good, &bad})
        socket->connectToServer(m_name);
    QTRY_COMPARE(server.clientCount(), 2);
    bad.write(bytes);
    QTRY_COMPARE(bad.state(), QLocalSocket::UnconnectedState);
    QTRY_COMPARE(server.clientCount(), 1);
    good.write(loginOf("m"));
    QByteArray buffer;
    int answers = 0;
    QTRY_COMPARE(answersOn(good, buffer, answers), 1);
}

void SocketServerTest::reconnectingRepeatsTheUsage()
{
    const auto gateway = openGateway(TestBooks::withRows(3));
    TestClient steady(gateway, "m");
    QVERIFY(steady.subscribe(Master_MsgType::ManualT0RealTimePoolUsagePush, "t1"));
    auto server = std::make_unique<SocketServer>(gateway);
    QCOMPARE(server->listen(m_name), QString());
    QMutex mutex;
    RecordList pushed;
    SocketChannel channel(m_name);
    channel.setPushHandler([&](const Envelope &push) {
        MessageBody body;
        QString error;
        const QMutexLocker lock(&mutex);
        pushed += MessageBody::decode(push.body, body, error) ? body.rows : RecordList();
    });
    const auto seen = [&] {
        const QMutexLocker lock(&mutex);
        return pushed;
    };
    // The server works on this thread, the requests block theirs.
    std::atomic<bool> subscribed{false};
    const std::unique_ptr<QThread> client(QThread::create([&] {
        const MessageBody login{{}, {{{Orvane_Fields::UserAccount::userID, "t1"}}}};
        const auto request = Envelope::request(Stand_MsgType::LoginRequest, "t1", 60000, login);
        channel.waitForConnected(60000);
        std::promise<void> answered;
        channel.send(request, 60000, [&](const MessageChannel::Reply &) { answered.set_value(); });
        answered.get_future().wait();
        subscribed = channel.subscribe(Master_MsgType::ManualT0RealTimePoolUsagePush,
                                       {{Orvane_Fields::UserAccount::userID, "t1"}}, "tradeGate", 60000) &&
                     channel.request(Envelope::request(Stand_MsgType::EchoRequest, "t1", 60000, {}), 60000).outcome ==
                         MessageChannel::Outcome::Answered;
    }));
    client->start();
    QTRY_VERIFY_WITH_TIMEOUT(client->isFinished(), 60000);
    QVERIFY(subscribed.load());
    QCOMPARE(seen(), RecordList());

    server.reset();
    server = std::make_unique<SocketServer>(gateway);
    QCOMPARE(server->listen(m_name), QString());
    QTRY_COMPARE_WITH_TIMEOUT(seen().size(), 3, 60000);
    const VariantRecord t1{{Master_Fields::ManualT0::T0TraderId, "t1"}};
    QCOMPARE(seen(), steady.all(Master_MsgType::QueryManualT0RealTimePoolUsageRequest, t1));
    QCOMPARE(steady.pushed(), RecordList());
}

void SocketServerTest::aLivingNameIsNotTaken()
{
    const auto gateway = openGateway(TestBooks::withRows(1));
    SocketServer first(gateway);
    SocketServer second(gateway);
    QCOMPARE(first.listen(m_name), QString());
    QVERIFY(!second.listen(m_name).isEmpty());
    QLocalSocket socket;
    socket.connectToServer(m_name);
    QTRY_COMPARE(first.clientCount(), 1);
    SocketServer third(gateway);
    QFile precious(m_dir.filePath(QStringLiteral("precious")));
    QVERIFY(precious.open(QIODevice::WriteOnly));
    QVERIFY(!third.listen(precious.fileName()).isEmpty());
    QVERIFY(QFileInfo(precious.fileName()).isFile());
}

void SocketServerTest::theProgramsExitCodes()
{
    const QString books = m_dir.filePath(QStringLiteral("books"));
    QByteArray output;
    QCOMPARE(exitCodeOf({"--init-sample", books}), 0);
    QCOMPARE(exitCodeOf({"--init-sample", books}), 1);
    QCOMPARE(exitCodeOf({"--check", books}, &output), 0);
    QVERIFY2(output.startsWith("books are good: 44 instruments, 7 accounts, 6 users"), output.constData());
    TestBooks::Files files = TestBooks::sample();
    const int first = TestBooks::spoil(files, "quotes.csv", 1, "last", "much");
    const int second = TestBooks::spoil(files, "users.csv", 1, "roles", "Boss");
    TestBooks::write(files, books);
    QCOMPARE(exitCodeOf({"--check", books}, &output), 1);
    const QList<QByteArray> lines = output.trimmed().split('\n');
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines.at(0).startsWith("users.csv:" + QByteArray::number(second) + ": roles: value \"Boss\": expected "));
    QVERIFY(lines.at(1).startsWith("quotes.csv:" + QByteArray::number(first) + ": last: value \"much\": expected "));
    QCOMPARE(exitCodeOf({"--serve", m_name, "--books", books}), 1);

    QCOMPARE(exitCodeOf({"--help"}, &output), 0);
    QVERIFY(output.contains("--init-sample"));
    for (const QStringList &wrong : {QStringList{},
                                     {"--chek", books},
                                     {"--check", books, "more"},
                                     {"--serve", m_name},
                                     {"--serve", "", "--books", books},
                                     {"--serve", m_name, "--books", books, "--state", ""},
                                     {"--check", books, "--scale", "2"},
                                     {"--audit"},
                                     {"--audit", "--state", books, "--books", books},
                                     {"--init-sample", books, "--scale", "0"}}) {
        QCOMPARE(exitCodeOf(wrong, &output), 2);
        QVERIFY2(output.contains("--init-sample"), output.constData());
    }
}

void SocketServerTest::theProgramServesUntilItIsTold()
{
    int refusals = 0;
    for (const int signal : {SIGTERM, SIGINT, SIGKILL, SIGTERM}) {
        // After the kill the name is still there: the next one has to take it over.
        QProcess program;
        program.start(QStringLiteral(T0_GATEWAY_PROGRAM), {"--serve", m_name, "--books", T0_SAMPLE_BOOKS, "--state",
                                                           m_dir.filePath(QStringLiteral("state"))});
        QTRY_VERIFY_WITH_TIMEOUT(program.canReadLine() || program.state() == QProcess::NotRunning, 60000);
        QCOMPARE(program.readLine().trimmed(), QByteArray("serving ") + m_name.toUtf8());
        QLocalSocket socket;
        socket.connectToServer(m_name);
        QVERIFY(socket.waitForConnected());
        socket.write(loginOf("trader1"));
        QByteArray buffer;
        int answers = 0;
        QTRY_COMPARE(answersOn(socket, buffer, answers), 1);
        const MessageBody quote{{}, {{{Orvane_Fields::Security::symbol, "nothing"}}}};
        socket.write(framed(Envelope::request(Stand_MsgType::SetQuoteRequest, "", 60000, quote).encode()));
        QTRY_COMPARE(answersOn(socket, buffer, answers), 2);
        const QString state = m_dir.filePath(QStringLiteral("state"));
        QByteArray output;
        QCOMPARE(exitCodeOf({"--audit", "--state", state, "--since", "2026-01-05T09:15", "--json"}, &output), 0);
        QCOMPARE(output.count("\"refusal\":\"证券不存在：nothing\""), ++refusals);
        QCOMPARE(exitCodeOf({"--audit", "--state", state, "--since", "2026-13-05"}, &output), 2);
        QCOMPARE(exitCodeOf({"--serve", m_name + "2", "--books", T0_SAMPLE_BOOKS, "--state", state}, &output), 1);
        QVERIFY2(output.contains("another gateway uses it"), output.constData());
        ::kill(pid_t(program.processId()), signal);
        QVERIFY(program.waitForFinished(60000));
        if (signal != SIGKILL)
            QVERIFY(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0);
    }
}

T0_REGISTER_TEST(SocketServerTest)
#include "SocketServerTest.moc"
