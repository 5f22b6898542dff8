#include "EventBus.h"
#include "MasterUtils.h"
#include "Tests.h"
#include "ZrObject.h"

#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <atomic>
#include <thread>

namespace {

class Worker : public ZrObject
{
public:
    Worker()
        : ZrObject(true, nullptr)
    {}
    ~Worker() override { quitThread(); }
};

void send(const QString &name, const QVariant &payload)
{
    MasterUtils::SendEventMsg(nullptr, name, payload);
}

} // namespace

class EventBusTest : public QObject
{
    Q_OBJECT

private slots:
    void listenersRunLaterAndOnTheirThread();
    void eventsOfOneSenderStayInOrder();
    void contextMayDieWhileEventsAreSent();
    void stoppedListenerDropsWhatIsQueued();
};

void EventBusTest::listenersRunLaterAndOnTheirThread()
{
    Worker worker;
    QObject here;
    std::atomic<bool> workerRight{false};
    QVariant heard;
    int other = 0;
    EventBus::listen("event", &worker, [&](const QVariant &payload) {
        workerRight = QThread::currentThread() == worker.thread() && payload == 7;
    });
    EventBus::listen("event", &here, [&](const QVariant &payload) { heard = payload; });
    EventBus::listen("other", &here, [&](const QVariant &) { ++other; });
    send("event", 7);
    QVERIFY(!heard.isValid()); // never inside the call, also on the sender's own thread
    QTRY_COMPARE(heard, QVariant(7));
    QTRY_VERIFY(workerRight);
    send("event", QVariant());
    QTRY_VERIFY(!heard.isValid());
    QCOMPARE(other, 0);
}

void EventBusTest::eventsOfOneSenderStayInOrder()
{
    QObject context;
    QHash<QString, QList<int>> seen;
    EventBus::listenToAll(&context,
                          [&](const QString &name, const QVariant &payload) { seen[name].append(payload.toInt()); });
    const auto sender = [](const QString &name) {
        for (int i = 0; i < 200; ++i)
            send(name, i);
    };
    std::thread first(sender, "first");
    std::thread second(sender, "second");
    QTRY_COMPARE(seen.value("first").size() + seen.value("second").size(), 400);
    first.join();
    second.join();
    QVERIFY(std::is_sorted(seen["first"].cbegin(), seen["first"].cend()));
    QVERIFY(std::is_sorted(seen["second"].cbegin(), seen["second"].cend()));
}

void EventBusTest::contextMayDieWhileEventsAreSent()
{
    std::atomic<bool> stop{false};
    std::thread sender([&] {
        for (; !stop; QThread::usleep(20)) // paced, so that the queue does not grow for ever
            send("event", 1);
    });
    for (int i = 0; i < 100; ++i) {
        QObject context;
        auto target = std::make_unique<int>(0);
        EventBus::listen("event", &context, [raw = target.get()](const QVariant &) { ++*raw; });
        QTRY_VERIFY(*target > 0);
    }
    stop = true;
    sender.join();
}

void EventBusTest::stoppedListenerDropsWhatIsQueued()
{
    QObject context;
    QObject other;
    int heard = 0;
    int after = 0;
    EventBus::listen("event", &context, [&](const QVariant &) { ++heard; });
    EventBus::listen("event", &other, [&](const QVariant &) { ++after; });
    send("event", 1);
    EventBus::stopListening(&context);
    QTRY_COMPARE(after, 1);
    QCOMPARE(heard, 0);
    EventBus::listen("event", &context, [&](const QVariant &) { ++heard; }); // and may begin again
    send("event", 1);
    QTRY_COMPARE(heard, 1);
}

T0_REGISTER_TEST(EventBusTest)
#include "EventBusTest.moc"
