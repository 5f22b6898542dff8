#include "MasterBusinessDataInterface.h"
#include "ScriptedChannel.h"
#include "StandMsgType.h"
#include "Tests.h"
#include "ZrObject.h"

#include <QtCore/QThread>
#include <QtTest/QtTest>

class ThreadsTest : public QObject
{
    Q_OBJECT

private slots:
    void ownThreadRunsTheSlots();
    void quitEndsWaitingForTheServer();
    void withoutOwnThreadItStaysHere();
};

void ThreadsTest::ownThreadRunsTheSlots()
{
    ZrObject object(true, nullptr);
    object.setThreadName("Own");
    QThread *ranOn = nullptr;
    QMetaObject::invokeMethod(
        &object, [&] { ranOn = QThread::currentThread(); }, Qt::BlockingQueuedConnection);
    QCOMPARE(ranOn, object.thread());
    QVERIFY(ranOn != QThread::currentThread());
    QCOMPARE(ranOn->objectName(), QStringLiteral("Own"));
}

void ThreadsTest::quitEndsWaitingForTheServer()
{
    ScriptedChannel *channel = nullptr;
    const auto session = ScriptedReference{}.open(channel);
    const int subscribed = channel->count(Stand_MsgType::SubscribeRequest);
    channel->hold(Stand_MsgType::SubscribeRequest);
    channel->hold("Silent");
    channel->next("Silent", ScriptedChannel::success());
    auto outcome = MessageChannel::Outcome::Answered;
    bool accepted = true;
    ZrObject object(true, nullptr);
    QMetaObject::invokeMethod(&object, [&] {
        const Envelope request = Envelope::request("Silent", "u1", INT_MAX, {});
        outcome = session->channel().request(request, INT_MAX).outcome; // waits for weeks unless it is ended
        accepted = MasterBusinessDataInterface::SubscribePushMsgFromServer("Push", {}, {});
    });
    QTRY_COMPARE(channel->count("Silent"), 1);
    object.quitThread(); // waits for the slot, which leaves at once
    object.quitThread();
    QCOMPARE(int(outcome), int(MessageChannel::Outcome::TimedOut));
    QVERIFY(!accepted);
    QCOMPARE(channel->count(Stand_MsgType::SubscribeRequest), subscribed); // nobody was asked, let alone waited for
}

void ThreadsTest::withoutOwnThreadItStaysHere()
{
    QObject parent;
    ZrObject object(false, &parent);
    object.setThreadName("ignored");
    object.quitThread();
    QCOMPARE(object.thread(), QThread::currentThread());
    QVERIFY(QThread::currentThread()->objectName() != QStringLiteral("ignored"));
}

T0_REGISTER_TEST(ThreadsTest)
#include "ThreadsTest.moc"
