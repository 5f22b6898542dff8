#include "LogicTest.h"
#include "Tests.h"

using namespace Master_Fields::ManualT0;
using State = MasterInitStateMgr::InitState;

class ResourcesTest : public LogicTest
{
    Q_OBJECT

private slots:
    void quantitiesAreDisplayUnits_data();
    void quantitiesAreDisplayUnits();
    void unknownSecurityHasNoSymbol();
    void summaryOfPools();
    void summaryBeyondIntIsClamped();
    void lookupNarrows_data();
    void lookupNarrows();
    void laterAnswerReplacesItsAccount();
    void laterAnswerWithoutCoverMerges();
    void shortFormOfTheAnswerCovers();
    void movedResourceIsFoundOnceUnderItsNewAccount();
    void laterFailureChangesNothing();
    void loadFinishesWithItsLastAccount_data();
    void loadFinishesWithItsLastAccount();
    void foreignAnswerDoesNotFinishALoad();
    void secondRefreshStartsTheLoadAnew();
};

void ResourcesTest::quantitiesAreDisplayUnits_data()
{
    QTest::addColumn<QString>("security");
    QTest::addColumn<QVariant>("sent");
    QTest::addColumn<QVariant>("held");
    QTest::newRow("factor 1 leaves the value as it is") << "600000 SH" << QVariant(1.5) << QVariant(1.5);
    QTest::newRow("factor 10") << "110001 SH" << QVariant(12) << QVariant(qint64(120));
    QTest::newRow("half away from zero") << "110001 SH" << QVariant(-0.25) << QVariant(qint64(-3));
    QTest::newRow("a decimal text counts") << "110001 SH" << QVariant("1.0") << QVariant(qint64(10));
    QTest::newRow("an unknown security has factor 1") << "999999 SH" << QVariant(7) << QVariant(7);
}

void ResourcesTest::quantitiesAreDisplayUnits()
{
    QFETCH(QString, security);
    QFETCH(QVariant, sent);
    QFETCH(QVariant, held);
    const RecordList rows{Rows::resource("r1", "A1", security, sent)};
    start(rows);
    QCOMPARE(hub->GetResourceDetailById("r1").value(ResourceQty), held);
    answerResources("A1", rows); // both paths scale alike
    QCOMPARE(hub->GetResourceDetailById("r1").value(ResourceQty), held);
    takeEvents();
}

void ResourcesTest::unknownSecurityHasNoSymbol()
{
    start({Rows::resource("r1", "A1", "999999 SH", 1), Rows::resource("r2", "A1", "600000 SH", 1)});
    QCOMPARE(hub->GetResourceDetailById("r1").value(Orvane_Fields::Security::symbol), QVariant(QString()));
    QCOMPARE(Rows::texts(hub->GetResourceByProductAccount({"P1"}, "", "", "", {}), ResourceId),
             QStringList({"r1", "r2"}));
    QCOMPARE(Rows::texts(hub->GetResourceByProductAccount({"P1"}, "", "600000.SH", "", {}), ResourceId),
             QStringList("r2"));
}

void ResourcesTest::summaryOfPools()
{
    start({Rows::resource("r1", "A1", "600000 SH", 1000), Rows::resource("r2", "A1", "600000 SH", 10)},
          {Rows::pool("p2", "A1", "600000 SH", "public", 300, "r1"),
           Rows::pool("p1", "A1", "600000 SH", "t2", 200, "r1"),
           Rows::pool("p3", "A1", "600000 SH", "gone", 100, "r1")});
    const RecordList all = hub->GetAllResourceList();
    QCOMPARE(Rows::texts(all, ResourceId), QStringList({"r1", "r2"}));
    for (const VariantRecord &resource : all) {
        const bool hasPools = resource.value(ResourceId) == "r1";
        QCOMPARE(resource.value(PublicPoolQty), QVariant(hasPools ? 300 : 0));
        QCOMPARE(resource.value(PrivatePoolQty), QVariant(hasPools ? 300 : 0));
        QCOMPARE(resource.value(PublicPoolQty).type(), QVariant::Int);
        // By pool id; an unknown trader has an empty name and keeps its place.
        QCOMPARE(resource.value(T0TraderId).toString(), QString(hasPools ? "t2,public,gone" : ""));
        QCOMPARE(resource.value(T0TraderName).toString(), QString(hasPools ? "Two,public," : ""));
    }
    QVERIFY(!hub->GetResourceDetailById("r1").contains(PublicPoolQty));
    QVERIFY(hub->GetResourceDetailById("unknown").isEmpty());
}

void ResourcesTest::summaryBeyondIntIsClamped()
{
    VariantRecord third = Rows::pool("p3", "A1", "600000 SH", "x", 5, "r1");
    third.insert(PoolType, 2); // whatever is not private is public
    start({Rows::resource("r1", "A1", "600000 SH", 1)},
          {Rows::pool("p1", "A1", "600000 SH", "t2", 2000000000, "r1"),
           Rows::pool("p2", "A1", "600000 SH", "u1", 2000000000, "r1"), third});
    const VariantRecord resource = hub->GetAllResourceList().first();
    QCOMPARE(resource.value(PrivatePoolQty), QVariant(std::numeric_limits<int>::max()));
    QCOMPARE(resource.value(PublicPoolQty), QVariant(5));
    QCOMPARE(resource.value(T0TraderId).toString(), QStringLiteral("t2,u1,public"));
}

void ResourcesTest::lookupNarrows_data()
{
    QTest::addColumn<QStringList>("products");
    QTest::addColumn<QString>("assetProp");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<QString>("exchange");
    QTest::addColumn<QStringList>("traders");
    QTest::addColumn<QStringList>("ids");
    const QStringList p1("P1");
    QTest::newRow("no product selects none") << QStringList() << ""
                                             << ""
                                             << "" << QStringList() << QStringList();
    QTest::newRow("all of a product") << p1 << ""
                                      << ""
                                      << "" << QStringList() << QStringList({"r1", "r2", "r3", "r4"});
    QTest::newRow("by asset property") << p1 << "Credit"
                                       << ""
                                       << "" << QStringList() << QStringList("r4");
    QTest::newRow("by symbol") << p1 << ""
                               << "00700.HK"
                               << "" << QStringList() << QStringList({"r2", "r3"});
    QTest::newRow("by exchange") << p1 << ""
                                 << "00700.HK"
                                 << "SZHK" << QStringList() << QStringList("r3");
    QTest::newRow("by trader") << p1 << ""
                               << ""
                               << "" << QStringList("t2") << QStringList({"r1", "r3"});
    QTest::newRow("by the public trader") << p1 << ""
                                          << ""
                                          << "" << QStringList("public") << QStringList("r2");
    QTest::newRow("any of the traders") << p1 << ""
                                        << ""
                                        << "HHK" << QStringList({"t2", "public", "t2"}) << QStringList("r2");
    QTest::newRow("a trader without pools") << p1 << ""
                                            << ""
                                            << "" << QStringList("t9") << QStringList();
    QTest::newRow("two products") << QStringList({"P2", "P1"}) << ""
                                  << "600000.SH"
                                  << "" << QStringList() << QStringList({"r1", "r4", "r5"});
}

void ResourcesTest::lookupNarrows()
{
    QFETCH(QStringList, products);
    QFETCH(QString, assetProp);
    QFETCH(QString, symbol);
    QFETCH(QString, exchange);
    QFETCH(QStringList, traders);
    start({Rows::resource("r1", "A1", "600000 SH", 1), Rows::resource("r2", "A1", "00700 HHK", 1),
           Rows::resource("r3", "A2", "00700 SZHK", 1), Rows::resource("r4", "A3", "600000 SH", 1),
           Rows::resource("r5", "A4", "600000 SH", 1)},
          {Rows::pool("p1", "A1", "600000 SH", "t2", 1, "r1"), Rows::pool("p2", "A1", "00700 HHK", "public", 1, "r2"),
           Rows::pool("p3", "A2", "00700 SZHK", "t2", 1, "r3")});
    const RecordList rows = hub->GetResourceByProductAccount(products, assetProp, symbol, exchange, traders);
    QTEST(Rows::texts(rows, ResourceId), "ids");
    for (const VariantRecord &row : rows)
        QVERIFY(row.contains(PrivatePoolQty));
}

void ResourcesTest::laterAnswerReplacesItsAccount()
{
    start({Rows::resource("r1", "A1", "600000 SH", 1), Rows::resource("r2", "A2", "600000 SH", 1)});
    answerResources("A1", {Rows::resource("r3", "A1", "300001 SZ", 1)});
    QCOMPARE(Rows::texts(hub->GetAllResourceList(), ResourceId), QStringList({"r2", "r3"}));
    answerResources("A1", {});
    QCOMPARE(Rows::texts(hub->GetAllResourceList(), ResourceId), QStringList("r2"));
    // Announced also when nothing changed.
    answerResources("A1", {});
    QCOMPARE(takeEvents(), QStringList({"resources A1", "resources A1", "resources A1"}));
    QCOMPARE(HubProbe::indexFaults(*hub), QStringList());
}

void ResourcesTest::laterAnswerWithoutCoverMerges()
{
    start({Rows::resource("r1", "A1", "600000 SH", 1), Rows::resource("r2", "A1", "600000 SH", 1)});
    answerResources("A1", {Rows::resource("r2", "A1", "300001 SZ", 5)}, Rows::Success, false);
    QCOMPARE(Rows::texts(hub->GetAllResourceList(), ResourceId), QStringList({"r1", "r2"}));
    QCOMPARE(Rows::texts(hub->GetResourceByProductAccount({"P1"}, "", "600000.SH", "", {}), ResourceId),
             QStringList("r1"));
    QCOMPARE(takeEvents(), QStringList("resources A1"));
}

void ResourcesTest::shortFormOfTheAnswerCovers()
{
    start({Rows::resource("r1", "A1", "600000 SH", 1)});
    const QVariantMap query{{Orvane_Fields::UserAccount::tradingAccount, "A1"}};
    QVERIFY(QMetaObject::invokeMethod(hub.get(), "slotQueryResourceResponse", Qt::BlockingQueuedConnection,
                                      Q_ARG(QString, Rows::Success), Q_ARG(QVariantMap, query),
                                      Q_ARG(QList<QVariantMap>, QList<QVariantMap>())));
    QVERIFY(hub->GetAllResourceList().isEmpty());
    QCOMPARE(takeEvents(), QStringList("resources A1"));
}

void ResourcesTest::movedResourceIsFoundOnceUnderItsNewAccount()
{
    start({Rows::resource("r1", "A1", "600000 SH", 1)});
    answerResources("A3", {Rows::resource("r1", "A3", "600000 SH", 2)}, Rows::Success, false);
    QVERIFY(hub->GetResourceByProductAccount({"P1"}, "Cash", "", "", {}).isEmpty());
    QCOMPARE(hub->GetResourceByProductAccount({"P1"}, "", "", "", {}).size(), 1);
    answerResources("A1", {}); // no longer its account
    QCOMPARE(hub->GetResourceDetailById("r1").value(ResourceQty).toInt(), 2);
    QCOMPARE(takeEvents(), QStringList({"resources A3", "resources A1"}));
}

void ResourcesTest::laterFailureChangesNothing()
{
    start({Rows::resource("r1", "A1", "600000 SH", 1)});
    answerResources("A1", {}, Rows::Fail);
    QCOMPARE(hub->GetAllResourceList().size(), 1);
    QCOMPARE(takeAsked(), QStringList());
    QCOMPARE(takeEvents(), QStringList());
}

void ResourcesTest::loadFinishesWithItsLastAccount_data()
{
    QTest::addColumn<QStringList>("answers"); // of both families
    QTest::addColumn<int>("retries");
    QTest::addColumn<int>("state");
    QTest::newRow("both answer") << QStringList({"A1 success", "A2 success"}) << 0 << int(State::Inited);
    QTest::newRow("one failure is repeated once")
        << QStringList({"A1 fail", "A1 success", "A2 success"}) << 1 << int(State::Inited);
    QTest::newRow("given up first, then a success")
        << QStringList({"A1 fail", "A1 timeout", "A2 success"}) << 1 << int(State::Inited);
    QTest::newRow("given up last") << QStringList({"A2 success", "A1 fail", "A1 fail"}) << 1 << int(State::InitFailed);
    QTest::newRow("both given up") << QStringList({"A1 fail", "A2 fail", "A1 fail", "A2 fail"}) << 2
                                   << int(State::InitFailed);
}

void ResourcesTest::loadFinishesWithItsLastAccount()
{
    QFETCH(QStringList, answers);
    QFETCH(int, retries);
    QFETCH(int, state);
    hub->InitData();
    answerProducts({Rows::product("P1", "A1"), Rows::product("P1", "A2")});
    takeAsked();
    takeEvents();
    for (const QString &answer : qAsConst(answers)) {
        QCOMPARE(hub->GetInitStateByType(ManualT0Logic::Resources), State::Initing);
        QCOMPARE(hub->GetInitStateByType(ManualT0Logic::SecurityPools), State::Initing);
        const QString account = answer.section(' ', 0, 0);
        // Rows of a failed answer are the pages before the failure: not stored.
        answerResources(account, {Rows::resource(answer, account, "600000 SH", 1)}, answer.section(' ', 1));
        answerPools(account, {Rows::pool(answer, account, "600000 SH", "u1", 1, "r")}, answer.section(' ', 1));
    }
    QCOMPARE(takeAsked().size(), 2 * retries);
    QCOMPARE(takeEvents(), QStringList({"inited 2", "inited 3"}));
    QCOMPARE(int(hub->GetInitStateByType(ManualT0Logic::Resources)), state);
    QCOMPARE(int(hub->GetInitStateByType(ManualT0Logic::SecurityPools)), state);
    QCOMPARE(hub->GetAllResourceList().size(), answers.filter("success").size());
    QCOMPARE(hub->GetAllSecurityPoolList().size(), answers.filter("success").size());
}

void ResourcesTest::foreignAnswerDoesNotFinishALoad()
{
    hub->InitData();
    answerProducts({Rows::product("P1", "A1"), Rows::product("P1", "A2")});
    answerResources("A9", {});
    answerResources("A1", {});
    answerResources("A1", {}); // a late one of an earlier load
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::Resources), State::Initing);
    answerResources("A2", {});
    answerPools("A9", {});
    answerPools("A2", {});
    answerPools("A2", {});
    QCOMPARE(takeEvents(), QStringList({"inited 0", "inited 2"}));
    answerPools("A1", {});
    QCOMPARE(takeEvents(), QStringList("inited 3"));
    takeAsked();
}

void ResourcesTest::secondRefreshStartsTheLoadAnew()
{
    start({Rows::resource("r1", "A1", "600000 SH", 1)});
    hub->RefreshDataByType(ManualT0Logic::Resources);
    answerResources("A1", {Rows::resource("r1", "A1", "600000 SH", 1)});
    hub->RefreshDataByType(ManualT0Logic::Resources);
    QVERIFY(hub->GetAllResourceList().isEmpty());
    for (const char *account : {"A2", "A3", "A4"})
        answerResources(account, {});
    QCOMPARE(takeEvents(), QStringList());
    answerResources("A1", {Rows::resource("r1", "A1", "600000 SH", 1)});
    QCOMPARE(takeEvents(), QStringList("inited 2"));
    QCOMPARE(hub->GetAllResourceList().size(), 1);
    QCOMPARE(takeAsked().count("resources A1"), 2);
}

T0_REGISTER_TEST(ResourcesTest)

#include "tst_Resources.moc"
