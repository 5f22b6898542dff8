#include "MasterFields.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "TestBooks.h"
#include "TestClient.h"
#include "Tests.h"

#include <QtCore/QThread>
#include <QtTest/QtTest>

namespace {

namespace T0_ = Master_Fields::ManualT0;

QString usagePush()
{
    return Master_MsgType::ManualT0RealTimePoolUsagePush;
}

VariantRecord usageOf(const QString &trader, int number = 0)
{
    return {{T0_::T0TraderId, trader}, {T0_::DailyBoughtQty, number}};
}

Envelope requestOf(const QString &type, const VariantRecord &row)
{
    return Envelope::request(type, QStringLiteral("m"), 60000, {{}, {row}});
}

} // namespace

class DeliveryTest : public QObject
{
    Q_OBJECT

private slots:
    void pushesFollowTheAnswersBeforeThem();
    void pushesGoToWhoSubscribed();
    void quotesReachEverySubscriber();
    void channelsShareOneGateway();
    void closingEndsEverything();
    void closesFromItsOwnHandler();
};

void DeliveryTest::pushesFollowTheAnswersBeforeThem()
{
    TestClient client(openGateway(TestBooks::withRows(300)), "m");
    QVERIFY(client.subscribe(usagePush(), "t1"));
    QMutex mutex;
    QStringList got;
    const auto note = [&](const QString &what) {
        const QMutexLocker lock(&mutex);
        got.append(what);
    };
    client.channel.setPushHandler([&](const Envelope &) { note("push"); });
    QStringList expected;
    for (int i = 0; i < 20; ++i)
        for (const QString &type : {Master_MsgType::QueryManualT0RealTimePoolUsageRequest,
                                    Stand_MsgType::PushUsageRequest, Stand_MsgType::EchoRequest}) {
            const Envelope envelope = requestOf(type, usageOf("t1"));
            expected.append(envelope.id);
            if (type == Stand_MsgType::PushUsageRequest)
                expected.append("push");
            QVERIFY(client.channel.send(envelope, 60000, [&, id = envelope.id](const auto &) { note(id); }));
        }
    client.ask(Stand_MsgType::EchoRequest);
    client.channel.close();
    QCOMPARE(got, expected);
}

void DeliveryTest::pushesGoToWhoSubscribed()
{
    const auto gateway = openGateway(TestBooks::withRows(1));
    TestClient manager(gateway, "m");
    TestClient trader(gateway, "t1");
    TestClient silent(gateway, "t2");
    for (const char *user : {"t1", "t2", "t2"})
        QVERIFY(manager.subscribe(usagePush(), user));
    QVERIFY(trader.subscribe(usagePush(), "t1"));
    for (int i = 0; i < 4; ++i)
        QVERIFY(succeeded(silent.ask(Stand_MsgType::PushUsageRequest, usageOf(i % 2 ? "t2" : "t1", i))));
    QCOMPARE(refusal(silent.ask(Stand_MsgType::PushUsageRequest)), QStringLiteral("缺少交易员"));
    for (const QString &field : {T0_::T0TraderId, Orvane_Fields::UserAccount::tradingAccount,
                                 Orvane_Fields::Security::securityID, Orvane_Fields::UserAccount::securityExchange}) {
        VariantRecord row = usageOf("t1", 9);
        row.insert(field, field.size() % 2 ? "t1,t2" : "t1_t2");
        QVERIFY(refusal(silent.ask(Stand_MsgType::PushUsageRequest, row)).startsWith(QStringLiteral("标识不能含有")));
    }
    const auto numbers = [](TestClient &client) {
        client.ask(Stand_MsgType::EchoRequest);
        QVector<int> found;
        for (const VariantRecord &row : client.pushed())
            found.append(row.value(T0_::DailyBoughtQty).toInt());
        return found;
    };
    QCOMPARE(numbers(manager), (QVector<int>{0, 1, 2, 3}));
    QCOMPARE(numbers(trader), (QVector<int>{0, 2}));
    QCOMPARE(numbers(silent), QVector<int>());
}

void DeliveryTest::quotesReachEverySubscriber()
{
    const auto gateway = openGateway(TestBooks::withRows(2));
    TestClient one(gateway, "m");
    TestClient two(gateway, "t1");
    TestClient none(gateway, "t2");
    QVERIFY(one.subscribe(Stand_MsgType::QuotePush, QString()));
    QVERIFY(two.subscribe(Stand_MsgType::QuotePush, QString()));
    const VariantRecord quote{{Orvane_Fields::Security::symbol, "600001.SH"}, {Stand_Fields::Quote::lastPrice, 10.5}};
    QVERIFY(succeeded(none.ask(Stand_MsgType::SetQuoteRequest, quote)));
    for (TestClient *client : {&one, &two, &none})
        client->ask(Stand_MsgType::EchoRequest);
    const VariantRecord pushed = one.pushed().value(0);
    QCOMPARE(one.pushed().size(), 1);
    QCOMPARE(pushed.value(Stand_Fields::Quote::lastPrice).toDouble(), 10.5);
    QCOMPARE(two.pushedTypes(), QStringList{Stand_MsgType::QuotePush});
    QCOMPARE(none.pushed(), RecordList());
    QCOMPARE(none.all(Stand_MsgType::QueryQuotesRequest).value(1), pushed);

    const auto refused = [&](const QVariant &symbol, const QVariant &price) {
        return refusal(none.ask(Stand_MsgType::SetQuoteRequest,
                                {{Orvane_Fields::Security::symbol, symbol}, {Stand_Fields::Quote::lastPrice, price}}));
    };
    QCOMPARE(refused("699999.SH", 1), QStringLiteral("证券不存在：699999.SH"));
    QCOMPARE(refused("600001.SH", -1), QStringLiteral("价格应为不小于0的数"));
    QCOMPARE(refused("600001.SH", "nan"), QStringLiteral("价格应为不小于0的数"));
}

void DeliveryTest::channelsShareOneGateway()
{
    // Every push that one of the clients causes reaches both, in the same order.
    const auto gateway = openGateway(TestBooks::withRows(1));
    TestClient left(gateway, "m");
    TestClient right(gateway, "m");
    for (TestClient *client : {&left, &right})
        QVERIFY(client->subscribe(usagePush(), "t1"));
    const auto work = [](TestClient &client, int first) {
        for (int i = 0; i < 50; ++i)
            client.ask(Stand_MsgType::PushUsageRequest, usageOf("t1", first + i));
    };
    std::unique_ptr<QThread> other(QThread::create([&] { work(left, 0); }));
    other->start();
    work(right, 100);
    other->wait();
    left.ask(Stand_MsgType::EchoRequest);
    right.ask(Stand_MsgType::EchoRequest);
    QCOMPARE(left.pushed().size(), 100);
    QCOMPARE(left.pushed(), right.pushed());
}

void DeliveryTest::closingEndsEverything()
{
    auto gateway = openGateway(TestBooks::withRows(1));
    const std::weak_ptr<PaperGateway> watch = gateway;
    for (int i = 0; i < 20; ++i) {
        TestClient client(gateway, "m");
        client.subscribe(usagePush(), "t1");
        client.channel.send(requestOf(Stand_MsgType::EchoRequest, {}), 60000, [](const MessageChannel::Reply &) {});
        client.channel.send(requestOf(Stand_MsgType::PushUsageRequest, usageOf("t1")), 60000,
                            [](const MessageChannel::Reply &) {});
        client.channel.close();
        client.channel.close();
        QCOMPARE(client.channel.connection(), MessageChannel::Connection::Closed);
        QCOMPARE(client.channel.request(requestOf(Stand_MsgType::EchoRequest, {}), 60000).outcome,
                 MessageChannel::Outcome::NotSent);
    }
    gateway.reset();
    QVERIFY(watch.expired());
}

void DeliveryTest::closesFromItsOwnHandler()
{
    LocalChannel channel(openGateway(TestBooks::withRows(1)));
    QSemaphore closed;
    QVERIFY(channel.send(requestOf(Stand_MsgType::EchoRequest, {}), 60000, [&](const MessageChannel::Reply &) {
        channel.close();
        closed.release();
    }));
    QVERIFY(closed.tryAcquire(1, 60000));
    QCOMPARE(channel.connection(), MessageChannel::Connection::Closed);
}

T0_REGISTER_TEST(DeliveryTest)
#include "DeliveryTest.moc"
