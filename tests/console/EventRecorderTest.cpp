#include "EventRecorder.h"
#include "EventBus.h"
#include "ManualT0Logic.h"
#include "MasterUtils.h"
#include "MasterValues.h"
#include "Tests.h"
#include "VantaKeys.h"

#include <QtTest/QtTest>

class EventRecorderTest : public QObject
{
    Q_OBJECT

private slots:
    void aReloadIsAwaitedToItsEvent();
};
T0_REGISTER_TEST(EventRecorderTest)

void EventRecorderTest::aReloadIsAwaitedToItsEvent()
{
    const int family = ManualT0Logic::Resources;
    const QString key = Master_Values::InitTypeCode::ManualT0Info + QString::number(family);
    MasterInitStateMgr &states = MasterInitStateMgr::instance();
    const auto announce = [&] {
        MasterUtils::SendEventMsg(nullptr, Vanta_Keys::EventMsgName::ManualT0DataInited, family);
    };
    EventRecorder recorder;
    recorder.listen();
    recorder.startClock();
    states.FinishInit(key, true, true);
    announce();
    QCOMPARE(recorder.waitForInited({family}, 60000), QList<int>());

    states.Reset(key);
    recorder.noteLoading();
    states.FinishInit(key, false, true);
    QCOMPARE(recorder.waitForInited({family}, 1), QList<int>{family}); // its event is still to come
    announce();
    QCOMPARE(recorder.waitForInited({family}, 60000), QList<int>());
    states.clear();
}

#include "EventRecorderTest.moc"
