#include "LogicTest.h"
#include "Tests.h"

using State = MasterInitStateMgr::InitState;

class TradersTest : public LogicTest
{
    Q_OBJECT

private slots:
    void namesOfTraders();
    void laterRowsReplaceAndOlderTradersGo();
    void usageIsAskedForWhomTheUserMaySee_data();
    void usageIsAskedForWhomTheUserMaySee();
    void retriesAreNotEarnedBack();
    void tradersAfterAFinishedUsageLoadAskNothing();
    void subscribesTheOwnPushOnly();
    void managerSubscribesEveryTrader();
    void failedSubscriptionIsTriedAgain();
    void managerWithoutTradersHasNothingToHear();
    void priorityKeepsTheServersOrder();
    void failedPriorityIsRepeatedUntilItAnswers();
    void outageWithRefreshesKeepsOneRetry();
};

void TradersTest::namesOfTraders()
{
    const QString publicTrader = ManualT0Logic::PublicTrader;
    QCOMPARE(hub->GetTraderNameByTraderId(publicTrader), QStringLiteral("public"));
    start();
    QCOMPARE(hub->GetTraderNameByTraderId("t2"), QStringLiteral("Two"));
    QCOMPARE(hub->GetTraderNameByTraderId("T2"), QString());
    QVERIFY(!hub->GetAllT0TraderId().contains(publicTrader));
}

void TradersTest::laterRowsReplaceAndOlderTradersGo()
{
    start();
    answerTraders({Rows::trader("t3", "Three"), Rows::trader("t3", "Drei")}, false);
    QCOMPARE(hub->GetAllT0TraderId(), (QMap<QString, QString>{{"t3", "Drei"}}));
    QVERIFY(!HubProbe::isManager(*hub));
    QCOMPARE(takeEvents(), QStringList("inited 1"));
}

void TradersTest::usageIsAskedForWhomTheUserMaySee_data()
{
    QTest::addColumn<bool>("isManager");
    QTest::addColumn<QStringList>("traders");
    QTest::addColumn<QString>("asked");
    QTest::newRow("a trader asks for himself") << false << QStringList({"t2", "u1"}) << "usage u1";
    QTest::newRow("a manager asks for all, ascending") << true << QStringList({"u1", "t2"}) << "usage t2,u1";
    QTest::newRow("a manager without traders asks for none") << true << QStringList() << "usage ";
}

void TradersTest::usageIsAskedForWhomTheUserMaySee()
{
    QFETCH(bool, isManager);
    QFETCH(QStringList, traders);
    QFETCH(QString, asked);
    RecordList rows;
    for (const QString &trader : qAsConst(traders))
        rows.append(Rows::trader(trader, trader));
    answerTraders(rows, isManager);
    QCOMPARE(takeAsked(), QStringList(asked));
    QCOMPARE(takeEvents(), QStringList("inited 1"));
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::RealtimeUsage), State::Initing);
}

void TradersTest::retriesAreNotEarnedBack()
{
    start();
    for (int i = 0; i < 4; ++i)
        answerTraders({}, false, "fail");
    QCOMPARE(takeAsked(), QStringList({"traders", "traders", "traders", "traders"}));
    answerTraders({}, false, "fail");
    QCOMPARE(takeEvents(), QStringList("inited 1"));
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::Traders), State::InitFailed);
    QCOMPARE(hub->GetAllT0TraderId().size(), 2);

    answerTraders({Rows::trader("t2", "Two")}, false);
    answerTraders({}, false, "fail");
    QCOMPARE(takeAsked(), QStringList());
    QCOMPARE(takeEvents(), QStringList({"inited 1", "inited 1"}));
}

void TradersTest::tradersAfterAFinishedUsageLoadAskNothing()
{
    start();
    hub->RefreshDataByType(ManualT0Logic::Traders);
    answerTraders({Rows::trader("t9", "Nine")}, true);
    QCOMPARE(takeAsked(), QStringList("traders"));
    QCOMPARE(takeEvents(), QStringList("inited 1"));
}

void TradersTest::subscribesTheOwnPushOnly()
{
    answerTraders({Rows::trader("t2", "Two"), Rows::trader("u1", "One")}, false);
    QCOMPARE(server->takeSubscribed(), QStringList("u1"));
    QVERIFY(HubProbe::pushSubscribed(*hub));
    takeAsked();
    takeEvents();
}

void TradersTest::managerSubscribesEveryTrader()
{
    answerTraders({Rows::trader("u1", "One"), Rows::trader("t2", "Two")}, true);
    QCOMPARE(server->takeSubscribed(), QStringList({"t2", "u1"}));
    // What is subscribed stays subscribed: a full refresh does not ask again, not for a new trader either.
    answerUsage({});
    hub->RefreshData();
    answerTraders({Rows::trader("t9", "Nine")}, true);
    QCOMPARE(server->takeSubscribed(), QStringList());
    takeAsked();
    takeEvents();
}

void TradersTest::failedSubscriptionIsTriedAgain()
{
    close();
    open(Mode::ByHand, {1, 600000, 600000});
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

void TradersTest::managerWithoutTradersHasNothingToHear()
{
    answerTraders({}, true);
    QCOMPARE(server->takeSubscribed(), QStringList());
    QVERIFY(HubProbe::pushSubscribed(*hub));
    takeAsked();
    takeEvents();
}

void TradersTest::priorityKeepsTheServersOrder()
{
    hub->InitData();
    answerPriority({"A2", "A1", "A2"});
    QCOMPARE(hub->GetAllT0TradingAccountListByCurUser(), QStringList({"A2", "A1", "A2"}));
    answerPriority({});
    QCOMPARE(hub->GetAllT0TradingAccountListByCurUser(), QStringList());
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::AccountPriority), State::Inited);
    QCOMPARE(takeEvents(), QStringList({"inited 5", "inited 5"}));
    takeAsked();
}

void TradersTest::failedPriorityIsRepeatedUntilItAnswers()
{
    close();
    open(Mode::ByHand, {1, 600000, 600000});
    hub->InitData();
    takeAsked();
    for (int i = 0; i < 7; ++i) {
        answerPriority({}, "timeout");
        QCOMPARE(awaitAsked(), QStringList("priority"));
        QCOMPARE(hub->GetInitStateByType(ManualT0Logic::AccountPriority), State::Initing);
    }
    answerPriority({"A1"});
    QCOMPARE(takeEvents(), QStringList("inited 5"));
}

void TradersTest::outageWithRefreshesKeepsOneRetry()
{
    close();
    open(Mode::ByHand, {30, 600000, 600000});
    hub->InitData();
    answerPriority({}, Rows::Fail);
    answerPriority({}, Rows::Fail);
    answerPriority({}, Rows::Fail);
    takeAsked();
    QCOMPARE(awaitAsked(), QStringList("priority"));
    answerPriority({"A1"});
    settle();
    QCOMPARE(takeAsked(), QStringList());
    QCOMPARE(takeEvents(), QStringList("inited 5"));
}

T0_REGISTER_TEST(TradersTest)

#include "tst_Traders.moc"
