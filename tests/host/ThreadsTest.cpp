#include "Tests.h"
#include "ZrObject.h"

#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <atomic>

class ThreadsTest : public QObject
{
    Q_OBJECT

private slots:
    void ownThreadRunsTheSlots();
    void quitWaitsForTheRunningSlot();
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

void ThreadsTest::quitWaitsForTheRunningSlot()
{
    ZrObject object(true, nullptr);
    std::atomic<bool> entered{false};
    std::atomic<bool> left{false};
    QMetaObject::invokeMethod(&object, [&] {
        entered = true;
        while (!object.thread()->isInterruptionRequested())
            QThread::yieldCurrentThread();
        left = true;
    });
    while (!entered)
        QThread::yieldCurrentThread();
    object.thread()->requestInterruption();
    object.quitThread();
    QVERIFY(left);
    object.quitThread();
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
