#include "LogicTest.h"
#include "Tests.h"

#include "InitKeys.h"
#include "MasterMsgType.h"

using State = MasterInitStateMgr::InitState;

namespace {

const RecordList twoAccounts{Rows::product(QStringLiteral("P1"), QStringLiteral("A1")),
                             Rows::product(QStringLiteral("P1"), QStringLiteral("A2"))};

} // namespace

class InitTest : public LogicTest
{
    Q_OBJECT

private slots:
    void startsWhatNeedsNoAccountsFirst();
    void secondInitDataStartsNothing();
    void initDataStartsResourcesAndPoolsThatWereReset();
    void refreshBeforeAnythingListensDoesNothing();
    void refreshLoadsEverythingAndKeepsWhatIsHeld();
    void secondRefreshIsRefusedWithAMessage();
    void throttleCountsWholeSeconds_data();
    void throttleCountsWholeSeconds();
    void typeRefreshEmptiesItsFamilyOnly_data();
    void typeRefreshEmptiesItsFamilyOnly();
    void otherTypesAreOnlyReset();
    void typeThatWasNeverStartedIsLeftAlone();
    void usageAnswerAfterAResetIsALaterOne();
    void timersRunOnTheHubsThreadAndDieThere();
    void stopKeepsTheCachesReadable();
};

void InitTest::startsWhatNeedsNoAccountsFirst()
{
    hub->InitData();
    QCOMPARE(takeAsked(), QStringList({"products", "traders", "priority"}));
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::Products), State::Initing);
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::Resources), State::NotInit);
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::RealtimeUsage), State::NotInit);

    answerProducts(twoAccounts);
    QCOMPARE(takeAsked(), QStringList({"resources A1", "resources A2", "pools A1", "pools A2"}));
    QCOMPARE(takeEvents(), QStringList("inited 0"));
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::Resources), State::Initing);

    answerTraders({Rows::trader("t2", "Two")}, false);
    QCOMPARE(takeAsked(), QStringList("usage u1"));
    QCOMPARE(takeEvents(), QStringList("inited 1"));
}

void InitTest::secondInitDataStartsNothing()
{
    hub->InitData();
    takeAsked();
    hub->InitData();
    QCOMPARE(takeAsked(), QStringList());
    answerProducts(twoAccounts);
    takeAsked();
    hub->InitData();
    QCOMPARE(takeAsked(), QStringList());
    QCOMPARE(takeEvents(), QStringList("inited 0"));
}

void InitTest::initDataStartsResourcesAndPoolsThatWereReset()
{
    start();
    initStates().Reset(initKey(ManualT0Logic::SecurityPools));
    hub->InitData();
    QCOMPARE(takeAsked(), QStringList({"pools A1", "pools A2", "pools A3", "pools A4"}));
}

void InitTest::refreshBeforeAnythingListensDoesNothing()
{
    close();
    open(Mode::ByHand, slowTimers());
    ManualT0LogicPrivate unconnected(nullptr, slowTimers());
    unconnected.RefreshData();
    QCOMPARE(unconnected.GetInitStateByType(ManualT0Logic::Products), State::NotInit);
    hub->InitData();
    QCOMPARE(takeAsked(), QStringList({"products", "traders", "priority"}));
    unconnected.RefreshDataByType(ManualT0Logic::Products);
    QCOMPARE(unconnected.GetInitStateByType(ManualT0Logic::Products), State::Initing);
}

void InitTest::refreshLoadsEverythingAndKeepsWhatIsHeld()
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
}

void InitTest::secondRefreshIsRefusedWithAMessage()
{
    start();
    hub->RefreshData();
    takeAsked();
    session->takeBusinessMessages();
    hub->RefreshData();
    QCOMPARE(takeAsked(), QStringList());
    QCOMPARE(takeEvents(), QStringList());
    const QStringList messages = session->takeBusinessMessages();
    QCOMPARE(messages.size(), 1);
    QVERIFY(messages.first().contains(QStringLiteral("刷新频率过高，请稍后重试！")));
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

void InitTest::typeRefreshEmptiesItsFamilyOnly_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QStringList>("asked");
    QTest::addColumn<QVector<int>>("sizes"); // accounts, traders, resources, pools
    const QStringList accounts{"A1", "A2", "A3", "A4"};
    QStringList resources;
    QStringList pools;
    for (const QString &account : accounts) {
        resources.append(QStringLiteral("resources ") + account);
        pools.append(QStringLiteral("pools ") + account);
    }
    QTest::newRow("products") << 0 << QStringList("products") << QVector<int>{0, 2, 1, 1};
    QTest::newRow("traders") << 1 << QStringList("traders") << QVector<int>{4, 0, 1, 1};
    QTest::newRow("resources") << 2 << resources << QVector<int>{4, 2, 0, 1};
    QTest::newRow("pools") << 3 << pools << QVector<int>{4, 2, 1, 0};
}

void InitTest::typeRefreshEmptiesItsFamilyOnly()
{
    QFETCH(int, type);
    start({Rows::resource("r1", "A1", "600000 SH", 100)}, {Rows::pool("p1", "A1", "600000 SH", "u1", 50, "r1")});
    hub->RefreshDataByType(type);
    QTEST(takeAsked(), "asked");
    QCOMPARE(hub->GetInitStateByType(type), State::Initing);
    const QVector<int> sizes{hub->GetAllT0TradingAccountList().size(), hub->GetAllT0TraderId().size(),
                             hub->GetAllResourceList().size(), hub->GetAllSecurityPoolList().size()};
    QTEST(sizes, "sizes");
    QCOMPARE(HubProbe::indexFaults(*hub), QStringList());
}

void InitTest::otherTypesAreOnlyReset()
{
    start();
    for (int type : {4, 5}) {
        hub->RefreshDataByType(type);
        QCOMPARE(hub->GetInitStateByType(type), State::NotInit);
    }
    hub->RefreshDataByType(6);
    QCOMPARE(takeAsked(), QStringList());
    QCOMPARE(hub->GetAllT0TradingAccountListByCurUser(), QStringList({"A2", "A1"}));
}

void InitTest::typeThatWasNeverStartedIsLeftAlone()
{
    for (int type = 0; type <= 5; ++type)
        hub->RefreshDataByType(type);
    QCOMPARE(takeAsked(), QStringList());
    answerProducts(twoAccounts); // nobody asked, taken all the same
    takeAsked();
    hub->RefreshDataByType(ManualT0Logic::Traders);
    QCOMPARE(takeAsked(), QStringList());
    takeEvents();
}

void InitTest::usageAnswerAfterAResetIsALaterOne()
{
    hub->InitData();
    answerTraders({}, false);
    hub->RefreshDataByType(ManualT0Logic::RealtimeUsage);
    takeEvents();
    answerUsage({Rows::usage("A1", "u1", "600000 SH", "1")});
    QCOMPARE(takeEvents(), QStringList("usage u1_A1_600000.SH_SH"));
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::RealtimeUsage), State::NotInit);
    takeAsked();
}

void InitTest::timersRunOnTheHubsThreadAndDieThere()
{
    close();
    open(Mode::ByHand, {1, 1, 1});
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

void InitTest::stopKeepsTheCachesReadable()
{
    start({Rows::resource("r1", "A1", "600000 SH", 100)});
    hub->stop();
    hub->stop();
    QCOMPARE(hub->GetAllResourceList().size(), 1);
    QCOMPARE(hub->GetResourceDetailById("r1").value(Master_Fields::ManualT0::ResourceQty).toInt(), 100);
}

T0_REGISTER_TEST(InitTest)

#include "tst_Init.moc"
