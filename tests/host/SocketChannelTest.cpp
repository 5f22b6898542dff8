#include "SocketChannel.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "ScriptedChannel.h"
#include "StandMsgType.h"
#include "Tests.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QtEndian>
#include <QtNetwork/QLocalServer>
#include <QtNetwork/QLocalSocket>
#include <QtTest/QtTest>

#include <atomic>
#include <thread>

namespace {

using Connection = MessageChannel::Connection;
using Outcome = MessageChannel::Outcome;

QString socketName()
{
    return QStringLiteral("t0-socket-test-%1").arg(QCoreApplication::applicationPid());
}

/// A server on the test's thread that accepts every request, save those of one type; requests come one at a time.
class Server : public QLocalServer
{
public:
    explicit Server(const QString &refused = QString())
        : refusedType(refused)
    {
        removeServer(socketName());
        listen(socketName());
        connect(this, &QLocalServer::newConnection, this, [this] {
            client = nextPendingConnection();
            connect(client, &QLocalSocket::readyRead, this, [this, socket = client] {
                Envelope request;
                QString errorText;
                QVERIFY(Envelope::decode(socket->readAll().mid(4), request, errorText));
                types.append(request.type);
                const QString status = request.type == refusedType ? Orvane_Values::RequestExeStatus::fail
                                                                   : Orvane_Values::RequestExeStatus::success;
                const QByteArray answer =
                    request.answer({{{Orvane_Fields::System::requestExeStatus, status}}, {}}).encode();
                QByteArray length(4, '\0');
                qToBigEndian(quint32(answer.size()), length.data());
                socket->write(length + answer);
            });
        });
    }

    QString refusedType;
    QLocalSocket *client = nullptr; ///< the latest
    QStringList types;              ///< of the requests
};

} // namespace

class SocketChannelTest : public QObject
{
    Q_OBJECT

private slots:
    void comesBackWhenAllSubscriptionsAreAnswered();
    void hostileLengthEndsTheConnection();
    void withoutServerNothingIsSent();
};

void SocketChannelTest::comesBackWhenAllSubscriptionsAreAnswered()
{
    using namespace Stand_MsgType;
    auto server = std::make_unique<Server>();
    SocketChannel channel(socketName());
    QTRY_COMPARE(int(channel.connection()), int(Connection::Connected));
    QVERIFY(channel.waitForConnected(0));
    std::atomic<bool> subscribed{false};
    std::thread caller([&] {
        channel.request(Envelope::request(Stand_MsgType::LoginRequest, "u1", 60000, {}), 60000);
        subscribed = channel.subscribe("Usage", {}, "tradeGate", 60000);
    });
    QTRY_VERIFY(subscribed);
    caller.join();

    server.reset();
    server = std::make_unique<Server>(LoginRequest);
    QTRY_VERIFY_WITH_TIMEOUT(server->types.size() > 1, 60000); // it began anew
    QCOMPARE(server->types.mid(0, 2), QStringList({LoginRequest, LoginRequest}));
    QCOMPARE(int(channel.connection()), int(Connection::Disconnected));
    const auto reconnect = [&](const QString &refused) {
        server.reset();
        QTRY_COMPARE_WITH_TIMEOUT(int(channel.connection()), int(Connection::Disconnected), 60000);
        server = std::make_unique<Server>(refused);
        QTRY_COMPARE_WITH_TIMEOUT(int(channel.connection()), int(Connection::Connected), 60000);
        QCOMPARE(server->types, QStringList({LoginRequest, SubscribeRequest}));
    };
    ScriptedChannel *unused = nullptr;
    const auto session = ScriptedReference().open(unused); // the messages are its user's
    session->takeBusinessMessages();
    reconnect(SubscribeRequest); // the rest can be used
    QVERIFY(session->takeBusinessMessages().value(0).contains("不再推送"));
    server->refusedType.clear();
    QTRY_COMPARE_WITH_TIMEOUT(server->types.count(SubscribeRequest), 2, 60000);
    QStringList told;
    QTRY_VERIFY_WITH_TIMEOUT(!(told += session->takeBusinessMessages()).isEmpty(), 60000);
    QVERIFY(told.constFirst().contains("已恢复推送"));
    reconnect(QString());
    QCOMPARE(session->takeBusinessMessages(), QStringList());
}

void SocketChannelTest::hostileLengthEndsTheConnection()
{
    Server server;
    SocketChannel channel(socketName());
    QTRY_COMPARE(int(channel.connection()), int(Connection::Connected));
    QTRY_VERIFY(server.client); // the channel may be connected before the server has looked
    const QDateTime since = channel.connectionSince();
    QTRY_VERIFY(QDateTime::currentDateTimeUtc() > since);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("4294967295 bytes is announced"));
    server.client->write("\xff\xff\xff\xff");
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
