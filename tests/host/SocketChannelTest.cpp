#include "SocketChannel.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandMsgType.h"
#include "Tests.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMutex>
#include <QtCore/QtEndian>
#include <QtNetwork/QLocalServer>
#include <QtNetwork/QLocalSocket>
#include <QtTest/QtTest>

#include <atomic>
#include <thread>

namespace {

/// A server that answers everything with success, on the test's thread.
class Server : public QObject
{
public:
    explicit Server(const QString &name)
        : m_name(name)
    {
        connect(&m_server, &QLocalServer::newConnection, this, [this] {
            QLocalSocket *client = m_server.nextPendingConnection();
            m_clients.append(client);
            connect(client, &QLocalSocket::readyRead, this, [this, client] { read(client); });
        });
    }
    void start()
    {
        QLocalServer::removeServer(m_name);
        QVERIFY(m_server.listen(m_name));
    }
    void stop()
    {
        m_server.close();
        for (QLocalSocket *client : qAsConst(m_clients))
            client->abort();
        m_clients.clear();
        types.clear();
    }
    void write(const QByteArray &envelope, QLocalSocket *client = nullptr)
    {
        char length[4];
        qToBigEndian(quint32(envelope.size()), length);
        QLocalSocket *to = client ? client : m_clients.last();
        to->write(length, 4);
        to->write(envelope);
    }
    void writeRaw(const QByteArray &bytes) { m_clients.last()->write(bytes); }
    bool hasClient() const { return !m_clients.isEmpty(); }

    QStringList types;
    QString status = Orvane_Values::RequestExeStatus::success;

private:
    void read(QLocalSocket *client)
    {
        QByteArray &in = m_in[client];
        in += client->readAll();
        while (in.size() >= 4 && in.size() - 4 >= int(qFromBigEndian<quint32>(in.constData()))) {
            const int size = int(qFromBigEndian<quint32>(in.constData()));
            Envelope request;
            QString errorText;
            QVERIFY(Envelope::decode(in.mid(4, size), request, errorText));
            in.remove(0, 4 + size);
            types.append(request.type);
            write(request.answer({{{Orvane_Fields::System::requestExeStatus, status}}, {}}).encode(), client);
        }
    }

    const QString m_name;
    QLocalServer m_server;
    QList<QLocalSocket *> m_clients;
    QHash<QLocalSocket *, QByteArray> m_in;
};

/// Runs a blocking call beside the server, which needs this thread's events.
template <typename Call> void beside(Call call)
{
    std::atomic<bool> done{false};
    std::thread caller([&] {
        call();
        done = true;
    });
    while (!done)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    caller.join();
}

QString serverName()
{
    return QStringLiteral("t0-socket-test-%1").arg(QCoreApplication::applicationPid());
}

using Connection = MessageChannel::Connection;
using Outcome = MessageChannel::Outcome;

} // namespace

class SocketChannelTest : public QObject
{
    Q_OBJECT

private slots:
    void reconnectionRepeatsLoginAndSubscriptions();
    void hostileLengthEndsTheConnection();
    void withoutServerNothingIsSent();
};

void SocketChannelTest::reconnectionRepeatsLoginAndSubscriptions()
{
    Server server(serverName());
    server.start();
    SocketChannel channel(serverName());
    QTRY_COMPARE(int(channel.connection()), int(Connection::Connected));
    QVERIFY(channel.waitForConnected(0));
    beside([&] {
        const auto login = Envelope::request(Stand_MsgType::LoginRequest, "u1", 60000, {});
        QCOMPARE(int(channel.request(login, 60000).outcome), int(Outcome::Answered));
        QVERIFY(channel.subscribe("Usage", {}, "tradeGate", 60000));
        QVERIFY(channel.subscribe("Usage", {}, "tradeGate", 60000));
        QVERIFY(channel.subscribe("Quote", {}, {}, 60000));
    });

    server.stop();
    QTRY_COMPARE(int(channel.connection()), int(Connection::Disconnected));
    server.start();
    QTRY_COMPARE_WITH_TIMEOUT(int(channel.connection()), int(Connection::Connected), 60000);
    QTRY_COMPARE(server.types, QStringList({"LoginRequest", "SubscribeRequest", "SubscribeRequest"}));

    std::atomic<int> pushes{0};
    channel.setPushHandler([&](const Envelope &push) { pushes += push.type == "Usage"; });
    server.write(Envelope::push("Usage", {}).encode());
    QTRY_COMPARE(pushes.load(), 1);

    // while the server refuses the login, nobody gets through
    server.stop();
    server.status = Orvane_Values::RequestExeStatus::fail;
    server.start();
    QTRY_VERIFY_WITH_TIMEOUT(server.types.contains("LoginRequest"), 60000);
    QCOMPARE(int(channel.connection()), int(Connection::Disconnected));
    QVERIFY(!server.types.contains("SubscribeRequest"));
}

void SocketChannelTest::hostileLengthEndsTheConnection()
{
    Server server(serverName());
    server.start();
    SocketChannel channel(serverName());
    QTRY_COMPARE(int(channel.connection()), int(Connection::Connected));
    QTRY_VERIFY(server.hasClient()); // the client may be connected before the server has looked
    const QDateTime since = channel.connectionSince();
    QTRY_VERIFY(QDateTime::currentDateTimeUtc() > since);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("4294967295 bytes is announced"));
    server.writeRaw("\xff\xff\xff\xff");
    QTRY_VERIFY_WITH_TIMEOUT(channel.connectionSince() > since && channel.connection() == Connection::Connected, 60000);
}

void SocketChannelTest::withoutServerNothingIsSent()
{
    SocketChannel channel(QStringLiteral("t0-nobody-listens-here"));
    QVERIFY(!channel.waitForConnected(20));
    QCOMPARE(int(channel.request(Envelope::request("Any", {}, 60000, {}), 60000).outcome), int(Outcome::NotSent));
    channel.close();
    channel.close();
    QVERIFY(!channel.waitForConnected(60000));
}

T0_REGISTER_TEST(SocketChannelTest)
#include "SocketChannelTest.moc"
