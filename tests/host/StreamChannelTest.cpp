#include "StreamChannel.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "Tests.h"

#include <QtCore/QMutex>
#include <QtTest/QtTest>

#include <atomic>
#include <thread>
#include <vector>

namespace {

/// A channel whose far end is the test.
class TestChannel : public StreamChannel
{
public:
    TestChannel() { setConnection(Connection::Connected); }
    ~TestChannel() override { TestChannel::close(); }

    using StreamChannel::received;
    using StreamChannel::setConnection;

    Envelope takeSent()
    {
        QMutexLocker lock(&m_mutex);
        return m_sent.isEmpty() ? Envelope() : m_sent.takeFirst();
    }
    bool hasSent()
    {
        QMutexLocker lock(&m_mutex);
        return !m_sent.isEmpty();
    }
    void answer(const Envelope &request, const VariantRecord &values = {})
    {
        received(request.answer({values, {}}).encode());
    }
    void push(int number) { received(Envelope::push("Push", {{{"n", number}}, {}}).encode()); }

    std::atomic<bool> accepts{true};

protected:
    bool transmit(const QByteArray &bytes) override
    {
        Envelope envelope;
        QString errorText;
        Envelope::decode(bytes, envelope, errorText);
        QMutexLocker lock(&m_mutex);
        m_sent.append(envelope);
        return accepts;
    }

private:
    QMutex m_mutex;
    QList<Envelope> m_sent;
};

using Outcome = MessageChannel::Outcome;

Envelope anyRequest()
{
    return Envelope::request("Any", "u1", 5000, {});
}

int numberOf(const Envelope &push)
{
    MessageBody body;
    QString errorText;
    MessageBody::decode(push.body, body, errorText);
    return body.values.value("n").toInt();
}

/// Collects the replies of asynchronous requests.
class Replies
{
public:
    MessageChannel::ReplyHandler handler()
    {
        return [this](const MessageChannel::Reply &reply) {
            QMutexLocker lock(&m_mutex);
            m_outcomes.append(int(reply.outcome));
        };
    }
    QList<int> outcomes()
    {
        QMutexLocker lock(&m_mutex);
        return m_outcomes;
    }

private:
    QMutex m_mutex;
    QList<int> m_outcomes;
};

} // namespace

class StreamChannelTest : public QObject
{
    Q_OBJECT

private slots:
    void answersReachTheirOwnWaiters();
    void lateAndForeignAnswersAreDropped();
    void asynchronousRequestTimesOutOnce();
    void whatDoesNotLeaveIsNotSent();
    void lostConnectionTimesOutWhatWasSent();
    void closeEndsEveryWait();
    void pushesKeepTheirOrder();
    void replacedHandlerIsNotRunningAnyMore();
    void subscribeTellsTypeServiceAndFilter();
};

void StreamChannelTest::answersReachTheirOwnWaiters()
{
    TestChannel channel;
    std::atomic<int> right{0};
    std::vector<std::thread> callers;
    for (int i = 0; i < 4; ++i) {
        callers.emplace_back([&] {
            for (int k = 0; k < 50; ++k) {
                const Envelope request = anyRequest();
                const auto reply = channel.request(request, 60000);
                right += reply.outcome == Outcome::Answered && reply.envelope.id == request.id;
            }
        });
    }
    for (int answered = 0; answered < 200;) {
        const Envelope request = channel.takeSent();
        if (request.id.isEmpty()) {
            std::this_thread::yield();
            continue;
        }
        channel.answer(request);
        ++answered;
    }
    for (std::thread &caller : callers)
        caller.join();
    QCOMPARE(right.load(), 200);
}

void StreamChannelTest::lateAndForeignAnswersAreDropped()
{
    TestChannel channel;
    const Envelope request = anyRequest();
    QCOMPARE(int(channel.request(request, 1).outcome), int(Outcome::TimedOut));
    channel.answer(request);
    channel.answer(anyRequest());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("dropped 4 bytes"));
    channel.received("junk");
    Replies replies;
    QVERIFY(channel.send(request, 60000, replies.handler())); // the id is free again
    channel.answer(request);
    channel.answer(request);
    QCOMPARE(replies.outcomes(), QList<int>{int(Outcome::Answered)});
}

void StreamChannelTest::asynchronousRequestTimesOutOnce()
{
    TestChannel channel;
    Replies replies;
    const Envelope request = anyRequest();
    QVERIFY(channel.send(request, 60000, replies.handler()));
    QVERIFY(channel.send(anyRequest(), 1, replies.handler())); // the earlier deadline comes second
    QTRY_COMPARE(replies.outcomes(), QList<int>{int(Outcome::TimedOut)});
    channel.answer(request);
    QCOMPARE(replies.outcomes().size(), 2);
}

void StreamChannelTest::whatDoesNotLeaveIsNotSent()
{
    TestChannel channel;
    channel.accepts = false;
    Replies replies;
    QCOMPARE(int(channel.request(anyRequest(), 60000).outcome), int(Outcome::NotSent));
    QVERIFY(!channel.send(anyRequest(), 60000, replies.handler()));

    channel.accepts = true;
    Envelope unencodable = anyRequest();
    unencodable.body.clear();
    QCOMPARE(int(channel.request(unencodable, 60000).outcome), int(Outcome::NotSent));
    channel.setConnection(MessageChannel::Connection::Disconnected);
    QCOMPARE(int(channel.request(anyRequest(), 60000).outcome), int(Outcome::NotSent));
    QVERIFY(replies.outcomes().isEmpty());
}

void StreamChannelTest::lostConnectionTimesOutWhatWasSent()
{
    TestChannel channel;
    Replies replies;
    const QDateTime since = channel.connectionSince();
    QVERIFY(channel.send(anyRequest(), 60000, replies.handler()));
    std::thread caller([&] { QCOMPARE(int(channel.request(anyRequest(), 60000).outcome), int(Outcome::TimedOut)); });
    channel.takeSent();
    while (!channel.hasSent())
        std::this_thread::yield();
    channel.setConnection(MessageChannel::Connection::Disconnected);
    caller.join();
    QTRY_COMPARE(replies.outcomes(), QList<int>{int(Outcome::TimedOut)});
    QVERIFY(channel.connectionSince() >= since);
    channel.setConnection(MessageChannel::Connection::Connected);
    QVERIFY(channel.send(anyRequest(), 60000, replies.handler()));
}

void StreamChannelTest::closeEndsEveryWait()
{
    Replies replies;
    {
        TestChannel channel;
        QVERIFY(channel.send(anyRequest(), 60000, replies.handler()));
        std::thread caller([&] { QCOMPARE(int(channel.request(anyRequest(), 60000).outcome), int(Outcome::NotSent)); });
        channel.takeSent();
        while (!channel.hasSent())
            std::this_thread::yield();
        channel.close();
        channel.close();
        caller.join();
        channel.setConnection(MessageChannel::Connection::Connected); // closed for good
        QCOMPARE(int(channel.connection()), int(MessageChannel::Connection::Closed));
        QVERIFY(!channel.send(anyRequest(), 60000, replies.handler()));
    }
    QCOMPARE(replies.outcomes(), QList<int>{int(Outcome::NotSent)}); // at the latest when the channel is gone
}

void StreamChannelTest::pushesKeepTheirOrder()
{
    TestChannel channel;
    QList<int> seen;
    channel.push(-1); // nobody listens
    channel.setPushHandler([&](const Envelope &push) { seen.append(numberOf(push)); });
    for (int i = 0; i < 100; ++i)
        channel.push(i);
    channel.setPushHandler({});
    channel.push(100);
    QCOMPARE(seen.size(), 100);
    QVERIFY(std::is_sorted(seen.cbegin(), seen.cend()));
}

void StreamChannelTest::replacedHandlerIsNotRunningAnyMore()
{
    TestChannel channel;
    std::atomic<bool> stop{false};
    std::thread server([&] {
        while (!stop)
            channel.push(1);
    });
    for (int i = 0; i < 200; ++i) {
        auto target = std::make_unique<int>(0); // used after free if a former handler still ran
        std::atomic<bool> ran{false};
        channel.setPushHandler([&, raw = target.get()](const Envelope &) {
            ++*raw;
            ran = true;
        });
        while (!ran)
            std::this_thread::yield();
        channel.setPushHandler({});
    }
    stop = true;
    server.join();

    // from inside the handler it must not wait for itself
    channel.setPushHandler([&](const Envelope &) { channel.setPushHandler({}); });
    channel.push(1);
}

void StreamChannelTest::subscribeTellsTypeServiceAndFilter()
{
    TestChannel channel;
    const auto subscribeAnswered = [&](const QString &status) {
        std::thread server([&] {
            while (!channel.hasSent())
                std::this_thread::yield();
            const Envelope request = channel.takeSent();
            MessageBody body;
            QString errorText;
            MessageBody::decode(request.body, body, errorText);
            const bool asPromised = request.type == Stand_MsgType::SubscribeRequest &&
                                    body.values.value(Stand_Fields::Subscription::pushType) == "Usage" &&
                                    body.values.value(Stand_Fields::Subscription::serviceName) == "tradeGate" &&
                                    body.rows == RecordList{{{"userID", "u1"}}};
            channel.answer(request, {{Orvane_Fields::System::requestExeStatus, asPromised ? status : "wrong request"}});
        });
        const bool accepted = channel.subscribe("Usage", {{"userID", "u1"}}, "tradeGate", 60000);
        server.join();
        return accepted;
    };
    QVERIFY(subscribeAnswered(Orvane_Values::RequestExeStatus::success));
    QVERIFY(!subscribeAnswered(Orvane_Values::RequestExeStatus::fail));
    QVERIFY(!channel.subscribe("Usage", {}, "tradeGate", 1));
}

T0_REGISTER_TEST(StreamChannelTest)
#include "StreamChannelTest.moc"
