#include "LogicTest.h"
#include "Tests.h"

#include "InitKeys.h"
#include "MasterMsgType.h"

using State = MasterInitStateMgr::InitState;

class InitTest : public LogicTest
{
    Q_OBJECT

private slots:
    void initDataStartsResourcesAndPoolsThatWereReset();
    void refreshBeforeAnythingListensDoesNothing();
    void refreshLoadsEverythingOnceInAWhile();
    void throttleCountsWholeSeconds_data();
    void throttleCountsWholeSeconds();
    void timersRunOnTheHubsThreadAndDieThere();
};

void InitTest::initDataStartsResourcesAndPoolsThatWereReset()
{
    start();
    initStates().Reset(initKey(ManualT0Logic::SecurityPools));
    hub->InitData();
    QCOMPARE(takeAsked(), QStringList({"pools A1", "pools A2", "pools A3", "pools A4"}));
}

void InitTest::refreshBeforeAnythingListensDoesNothing()
{
    ManualT0LogicPrivate unconnected(nullptr, slowTimers());
    unconnected.RefreshData();
    QCOMPARE(unconnected.GetInitStateByType(ManualT0Logic::Products), State::NotInit);
    hub->InitData();
    takeAsked();
    unconnected.RefreshDataByType(ManualT0Logic::Products);
    QCOMPARE(unconnected.GetInitStateByType(ManualT0Logic::Products), State::Initing);
}

void InitTest::refreshLoadsEverythingOnceInAWhile()
{
    start({Rows::resource("r1", "A1", "600000 SH", 100)});
    hub->RefreshData();
    QCOMPARE(takeAsked(), QStringList({"products", "traders", "priority"}));
    QCOMPARE(hub->GetAllT0TradingAccountList(), QStringList({"A1", "A2", "A3", "A4"}));
    QCOMPARE(hub->GetAllT0TraderId().keys(), QStringList({"t2", "u1"}));
    QCOMPARE(hub->GetAllResourceList().size(), 1);

    answerTraders({Rows::trader("t9", "Nine"), Rows::trader("u1", "One")}, true);
    QCOMPARE(takeAsked(), QStringList("usage t9,u1")); // the new trader is among them
    QCOMPARE(takeEvents(), QStringList("inited 1"));

    session->takeBusinessMessages();
    hub->RefreshData();
    QCOMPARE(takeAsked(), QStringList());
    QCOMPARE(takeEvents(), QStringList());
    const QStringList messages = session->takeBusinessMessages();
    QCOMPARE(messages.size(), 1);
    QVERIFY(messages.first().contains(QStringLiteral("刷新频率过高，请稍后重试！")));
    hub->stop();
    hub->stop();
    QCOMPARE(hub->GetAllResourceList().size(), 1); // stopped, it still answers
}

void InitTest::throttleCountsWholeSeconds_data()
{
    QTest::addColumn<qint64>("milliseconds");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("29.999 s count as 29") << qint64(29999) << false;
    QTest::newRow("30 s are enough") << qint64(30000) << true;
    QTest::newRow("a clock set back one hour accepts") << qint64(-3600000) << true;
}

void InitTest::throttleCountsWholeSeconds()
{
    QFETCH(qint64, milliseconds);
    const QDateTime begin(QDate(2024, 1, 2), QTime(10, 0), Qt::UTC);
    RefreshThrottle throttle;
    QVERIFY(throttle.accept(begin));
    const QDateTime second = begin.addMSecs(milliseconds);
    QTEST(throttle.accept(second), "accepted");
    // What was accepted begins a new window, what was refused does not prolong the old one.
    QCOMPARE(throttle.accept(begin.addSecs(30)), milliseconds < 30000);
}

void InitTest::timersRunOnTheHubsThreadAndDieThere()
{
    close();
    open(Mode::ByHand, {1, 1, 1, 600000});
    hub->InitData();
    answerTraders({}, false);
    answerPriority({}, Rows::Fail);
    answerUsage({}, Rows::Fail);
    QStringList asked;
    QTRY_VERIFY((asked += takeAsked()).count("priority") >= 2 && asked.count("usage u1") >= 2);
    answerUsage({});
    asked.clear();
    QTRY_VERIFY((asked += takeAsked()).count("usage u1") >= 3); // the refresh repeats
    close();                                                    // a timer that is left complains here
}

T0_REGISTER_TEST(InitTest)

#include "tst_Init.moc"
