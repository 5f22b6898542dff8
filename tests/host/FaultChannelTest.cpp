#include "FaultChannel.h"
#include "MasterUtils.h"
#include "OrvaneFields.h"
#include "ScriptedChannel.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "Tests.h"

#include <QtTest/QtTest>

#include <atomic>

namespace {

using Fault = FaultChannel::Fault;
using Outcome = MessageChannel::Outcome;

} // namespace

class FaultChannelTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void strikesAsOftenAsTold();
    void asynchronousRequestsAreStruckToo();
    void truncatedQueryFailsFromItsPage();
    void delayedAnswerComesWithinTheTimeOut();
    void pushesAreStruck_data();
    void pushesAreStruck();
    void subscriptionsAreStruck();
    void everyHandlerRunsOnceAlsoAfterClosing();

private:
    Outcome request(const QString &account, QString *status = nullptr);

    ScriptedChannel *server = nullptr;
    FaultChannel *faults = nullptr;
    std::unique_ptr<HostSession> session;
};

void FaultChannelTest::init()
{
    auto scripted = std::make_unique<ScriptedChannel>();
    server = scripted.get();
    ScriptedReference{}.script(*server);
    server->always("Query", [](const MessageBody &) { return ScriptedChannel::success(); });
    auto faulty = std::make_unique<FaultChannel>(std::move(scripted));
    faults = faulty.get();
    QString errorText;
    session = HostSession::open({std::move(faulty), "u1", {}}, errorText);
    QVERIFY2(session, qPrintable(errorText));
}

void FaultChannelTest::cleanup()
{
    session.reset();
}

Outcome FaultChannelTest::request(const QString &account, QString *status)
{
    const MessageBody body{{}, {{{Orvane_Fields::UserAccount::tradingAccount, account}}}};
    const auto reply = faults->request(Envelope::request("Query", "u1", 60000, body), 60000);
    MessageBody answer;
    QString errorText;
    MessageBody::decode(reply.envelope.body, answer, errorText);
    if (status)
        *status = answer.values.value(Orvane_Fields::System::requestExeStatus).toString();
    return reply.outcome;
}

void FaultChannelTest::strikesAsOftenAsTold()
{
    QString status;
    faults->addFault("Query", Fault::Fail, 0, 2);
    for (const char *expected : {"fail", "fail", "success"}) {
        QCOMPARE(int(request("A1", &status)), int(Outcome::Answered));
        QCOMPARE(status, QString(expected));
    }
    QCOMPARE(server->count("Query"), 1);
    faults->addFault("Query", Fault::Timeout, 0, -1);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(int(request("A1")), int(Outcome::TimedOut));
    faults->clearFaults();
    QCOMPARE(int(request("A1")), int(Outcome::Answered));
    QCOMPARE(server->count("Query"), 2);
    faults->addFault("Query", Fault::Timeout, 0, 1, "A2");
    QCOMPARE(int(request("A1")), int(Outcome::Answered)); // another account
    QCOMPARE(int(request("A2")), int(Outcome::TimedOut));
    QCOMPARE(int(request("A2")), int(Outcome::Answered));
}

void FaultChannelTest::asynchronousRequestsAreStruckToo()
{
    std::atomic<int> answered{0};
    std::atomic<int> timedOut{0};
    const auto handler = [&](const MessageChannel::Reply &reply) {
        ++(reply.outcome == Outcome::TimedOut ? timedOut : answered);
    };
    for (Fault fault : {Fault::Fail, Fault::Timeout, Fault::Delay, Fault::Duplicate}) {
        faults->addFault("Query", fault, 1, 1);
        QVERIFY(session->channel().send(Envelope::request("Query", "u1", 60000, {}), 60000, handler));
        QVERIFY(session->settle(60000));
    }
    QCOMPARE(timedOut.load(), 1);
    QCOMPARE(answered.load(), 4); // refused, late and twice
}

void FaultChannelTest::truncatedQueryFailsFromItsPage()
{
    server->always("Query", [](const MessageBody &request) {
        const int position = request.values.value(Stand_Fields::Paging::position).toInt();
        return ScriptedChannel::success(
            {{{"n", position}}},
            {{Stand_Fields::Paging::position, QString::number(position + 1)}, {Stand_Fields::Paging::hasMore, true}});
    });
    faults->addFault("Query", Fault::Truncate, 3, 2);
    QString errorText;
    QCOMPARE(MasterUtils::QueryDatasFromServerByPos(nullptr, "Query", {}, errorText, 10, {}, 0).size(), 3);
    QCOMPARE(errorText, QStringLiteral("注入的故障"));
    QCOMPARE(MasterUtils::QueryDatasFromServerByPage(nullptr, "Query", {}, errorText, 10, 0, 0, 0).size(), 3);
}

void FaultChannelTest::delayedAnswerComesWithinTheTimeOut()
{
    QElapsedTimer timer;
    timer.start();
    faults->addFault("Query", Fault::Delay, 30, 1);
    QCOMPARE(int(request("A1")), int(Outcome::Answered));
    QVERIFY(timer.elapsed() >= 30);
    faults->addFault("Query", Fault::Delay, 60000, 1);
    QCOMPARE(int(faults->request(Envelope::request("Query", "u1", 10, {}), 10).outcome), int(Outcome::TimedOut));
}

void FaultChannelTest::pushesAreStruck_data()
{
    QTest::addColumn<int>("fault");
    QTest::addColumn<QString>("received");
    QTest::newRow("dropped by fail") << int(Fault::Fail) << "1 2 3";
    QTest::newRow("dropped by timeout") << int(Fault::Timeout) << "1 2 3";
    QTest::newRow("the later ones wait behind it") << int(Fault::Delay) << "0 1 2 3";
    QTest::newRow("doubled") << int(Fault::Duplicate) << "0 0 1 2 3";
    QTest::newRow("never truncated") << int(Fault::Truncate) << "0 1 2 3";
}

void FaultChannelTest::pushesAreStruck()
{
    QFETCH(int, fault);
    QMutex mutex;
    QStringList received;
    faults->setPushHandler([&](const Envelope &envelope) {
        MessageBody body;
        QString errorText;
        MessageBody::decode(envelope.body, body, errorText);
        const QMutexLocker lock(&mutex);
        received.append(body.rows.value(0).value("n").toString());
    });
    faults->addFault("Push", Fault(fault), Fault(fault) == Fault::Delay ? 20 : 0, 1);
    for (int i = 0; i < 4; ++i)
        server->push("Push", {{"n", i}});
    QVERIFY(session->settle(60000)); // what is delayed counts as under way
    faults->setPushHandler({});
    QTEST(received.join(' '), "received");
}

void FaultChannelTest::subscriptionsAreStruck()
{
    const auto subscribe = [this](int timeoutMs) { return faults->subscribe("Push", {}, {}, timeoutMs); };
    const int before = server->count(Stand_MsgType::SubscribeRequest);
    for (Fault fault : {Fault::Fail, Fault::Timeout}) {
        faults->addFault(Stand_MsgType::SubscribeRequest, fault, 0, 1);
        QVERIFY(!subscribe(60000));
    }
    QCOMPARE(server->count(Stand_MsgType::SubscribeRequest), before);
    faults->addFault(Stand_MsgType::SubscribeRequest, Fault::Delay, 60000, 1);
    QVERIFY(!subscribe(10)); // later than its time-out
    faults->addFault(Stand_MsgType::SubscribeRequest, Fault::Delay, 1, 1);
    QVERIFY(subscribe(60000));
    QCOMPARE(server->count(Stand_MsgType::SubscribeRequest), before + 2);
}

void FaultChannelTest::everyHandlerRunsOnceAlsoAfterClosing()
{
    session.reset();
    auto scripted = std::make_unique<ScriptedChannel>();
    scripted->always("Query", [](const MessageBody &) { return ScriptedChannel::success(); });
    scripted->hold("Query");
    auto channel = std::make_unique<FaultChannel>(std::move(scripted));
    channel->addFault("Query", Fault::Timeout, 0, 1);
    channel->addFault("Query", Fault::Delay, 60000, 1);
    channel->addFault("Query", Fault::Timeout, 0, 1);
    std::atomic<int> ran{0};
    const auto send = [&] {
        return channel->send(Envelope::request("Query", "u1", 60000, {}), 60000,
                             [&](const MessageChannel::Reply &) { ++ran; });
    };
    QVERIFY(send());
    QTRY_COMPARE(ran.load(), 1); // the thread that hands over has something to end with
    QVERIFY(send());
    channel->close();
    QTRY_COMPARE(ran.load(), 2);
    QVERIFY(!send());
    channel.reset();
    QCOMPARE(ran.load(), 2);
}

T0_REGISTER_TEST(FaultChannelTest)
#include "FaultChannelTest.moc"
