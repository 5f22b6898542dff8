#include "StreamChannel.h"
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
    void whatDoesNotLeaveIsNotSent();
    void anEndOfTheConnectionEndsEveryWait_data();
    void anEndOfTheConnectionEndsEveryWait();
    void replacedHandlerIsNotRunningAnyMore();
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
    Replies replies;
    TestChannel channel;
    const Envelope request = anyRequest();
    QCOMPARE(int(channel.request(request, 1).outcome), int(Outcome::TimedOut));
    channel.answer(request);
    channel.answer(anyRequest());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("dropped 4 bytes"));
    channel.received("junk");
    QVERIFY(channel.send(request, 60000, replies.handler())); // the id is free again
    channel.answer(request);
    channel.answer(request);
    QCOMPARE(replies.outcomes(), QList<int>{int(Outcome::Answered)});

    QVERIFY(channel.send(anyRequest(), 60000, replies.handler()));
    QVERIFY(channel.send(anyRequest(), 1, replies.handler())); // the earlier deadline comes second
    QTRY_COMPARE(replies.outcomes(), (QList<int>{int(Outcome::Answered), int(Outcome::TimedOut)}));
}

void StreamChannelTest::whatDoesNotLeaveIsNotSent()
{
    Replies replies;
    Replies later;
    TestChannel channel;
    channel.accepts = false;
    QCOMPARE(int(channel.request(anyRequest(), 60000).outcome), int(Outcome::NotSent));
    QVERIFY(!channel.send(anyRequest(), 1, replies.handler()));

    channel.accepts = true;
    Envelope unencodable = anyRequest();
    unencodable.body.clear();
    QCOMPARE(int(channel.request(unencodable, 60000).outcome), int(Outcome::NotSent));
    channel.setConnection(MessageChannel::Connection::Disconnected);
    QCOMPARE(int(channel.request(anyRequest(), 60000).outcome), int(Outcome::NotSent));
    channel.setConnection(MessageChannel::Connection::Connected);
    QVERIFY(channel.send(anyRequest(), 2, later.handler()));
    QTRY_COMPARE(later.outcomes(), QList<int>{int(Outcome::TimedOut)});
    QVERIFY(replies.outcomes().isEmpty());
}

void StreamChannelTest::anEndOfTheConnectionEndsEveryWait_data()
{
    QTest::addColumn<int>("connection");
    QTest::addColumn<int>("outcome");
    QTest::newRow("lost: what was sent may have been executed")
        << int(MessageChannel::Connection::Disconnected) << int(Outcome::TimedOut);
    QTest::newRow("closed for good") << int(MessageChannel::Connection::Closed) << int(Outcome::NotSent);
}

void StreamChannelTest::anEndOfTheConnectionEndsEveryWait()
{
    QFETCH(int, connection);
    QFETCH(int, outcome);
    const bool closes = MessageChannel::Connection(connection) == MessageChannel::Connection::Closed;
    Replies replies; // outlives the channel, which may end a wait when it goes
    TestChannel channel;
    const QDateTime since = channel.connectionSince();
    QVERIFY(channel.send(anyRequest(), 60000, replies.handler()));
    std::thread caller([&] { QCOMPARE(int(channel.request(anyRequest(), 60000).outcome), outcome); });
    channel.takeSent();
    while (!channel.hasSent())
        std::this_thread::yield();
    for (int i = 0; i < 2; ++i)
        closes ? channel.close() : channel.setConnection(MessageChannel::Connection::Disconnected);
    caller.join();
    QTRY_COMPARE(replies.outcomes(), QList<int>{outcome});
    QCOMPARE(int(channel.connection()), connection);
    QVERIFY(channel.connectionSince() > since);
    channel.setConnection(MessageChannel::Connection::Connected);
    QCOMPARE(channel.send(anyRequest(), 60000, replies.handler()), !closes);
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

T0_REGISTER_TEST(StreamChannelTest)
#include "StreamChannelTest.moc"
