#include "LogicTest.h"
#include "Tests.h"

using State = MasterInitStateMgr::InitState;

class TradersTest : public LogicTest
{
    Q_OBJECT

private slots:
    void subscribesThoseTheUserMaySee_data();
    void subscribesThoseTheUserMaySee();
    void failedSubscriptionIsTriedAgain();
    void failedPriorityIsRepeatedUntilItAnswers();
};

void TradersTest::subscribesThoseTheUserMaySee_data()
{
    QTest::addColumn<bool>("isManager");
    QTest::addColumn<RecordList>("traders");
    QTest::addColumn<QStringList>("subscribed");
    const RecordList both{Rows::trader("u1", "One"), Rows::trader("t2", "Two")};
    QTest::newRow("a trader hears himself") << false << both << QStringList("u1");
    QTest::newRow("a manager hears all") << true << both << QStringList({"t2", "u1"});
    QTest::newRow("a manager without traders has nothing to hear") << true << RecordList() << QStringList();
}

void TradersTest::subscribesThoseTheUserMaySee()
{
    QFETCH(bool, isManager);
    QFETCH(RecordList, traders);
    answerTraders(traders, isManager);
    QTEST(server->takeSubscribed(), "subscribed");
    QVERIFY(HubProbe::pushSubscribed(*hub));
    // What is subscribed stays subscribed: a full refresh does not ask again, not for a new trader either.
    answerUsage({});
    hub->InitData();
    hub->RefreshData();
    answerTraders({Rows::trader("t9", "Nine")}, isManager);
    QCOMPARE(server->takeSubscribed(), QStringList());
    takeAsked();
    takeEvents();
}

void TradersTest::failedSubscriptionIsTriedAgain()
{
    close();
    open(Mode::ByHand, {1, 600000, 600000, 600000});
    server->refuseSubscription("t2");
    answerTraders({Rows::trader("t1", "One"), Rows::trader("t2", "Two"), Rows::trader("t3", "Three")}, true);
    QCOMPARE(server->takeSubscribed(), QStringList({"t1", "t2", "t3"}));
    QVERIFY(!HubProbe::pushSubscribed(*hub));
    // With the next query of the usage, here the repeated one of a failed first load, all are asked again.
    server->refuseSubscription(QString());
    takeAsked();
    answerUsage({}, Rows::Fail);
    QCOMPARE(awaitAsked(), QStringList("usage t1,t2,t3"));
    QTRY_VERIFY(HubProbe::pushSubscribed(*hub));
    QCOMPARE(server->takeSubscribed(), QStringList({"t1", "t2", "t3"}));
    takeEvents();
}

void TradersTest::failedPriorityIsRepeatedUntilItAnswers()
{
    close();
    open(Mode::ByHand, {30, 600000, 600000, 600000});
    hub->InitData();
    takeAsked();
    for (int i = 0; i < 6; ++i) {
        answerPriority({}, "timeout");
        answerPriority({}, Rows::Fail); // refreshes during an outage: one retry all the same
        QCOMPARE(awaitAsked(), QStringList("priority"));
        QCOMPARE(hub->GetInitStateByType(ManualT0Logic::AccountPriority), State::Initing);
    }
    answerPriority({"A1"});
    settle();
    QCOMPARE(takeAsked(), QStringList());
    QCOMPARE(takeEvents(), QStringList("inited 5"));
}

T0_REGISTER_TEST(TradersTest)

#include "tst_Traders.moc"
