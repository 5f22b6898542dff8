#include "LogicTest.h"
#include "Tests.h"

using State = MasterInitStateMgr::InitState;

class ProductsTest : public LogicTest
{
    Q_OBJECT

private slots:
    void candidatesAreKnownFromTheStart();
    void answerReplacesTheEnabledState();
    void accountMayStandThereTwice();
    void emptyAnswerFinishesItsDependants();
    void accountsOfProductAndProperty_data();
    void accountsOfProductAndProperty();
    void productTexts();
    void fiveRequestsThenTheLoadIsGivenUp();
    void successRestartsTheRetries();
    void lateSuccessAfterTheGiveUpCounts();
    void failuresKeepWhatIsHeldButARefreshHasEmptiedIt();
};

void ProductsTest::candidatesAreKnownFromTheStart()
{
    const QMap<QString, QStringList> candidates{{"P1", {"Cash", "Credit"}}, {"P2", {"Cash"}}};
    QCOMPARE(hub->GetCandidateT0ProductAccount(), candidates);
    QVERIFY(hub->GetAllT0ProductAccount().isEmpty());

    // Asking for what does not exist must not make it exist.
    hub->GetProductAssetPropList("P9");
    hub->IsProductAndAssetPropInT0("P9", "Cash");
    hub->GetTradingAccountListByProductAndAssetProp("P9", "Cash");
    hub->GetSecurityPoolDetail(QStringList("P9"), QStringList("Cash"), {}, "", "", true);
    hub->GetResourceByProductAccount({"P9"}, "", "", "", {});
    QCOMPARE(hub->GetCandidateT0ProductAccount(), candidates);
}

void ProductsTest::answerReplacesTheEnabledState()
{
    start();
    QCOMPARE(hub->GetAllT0ProductAccount().value("P1"), QStringList({"Cash", "Credit"}));
    answerProducts({Rows::product("P1", "A2"), Rows::product("P1", "A1")});
    QCOMPARE(hub->GetAllT0ProductAccount(), (QMap<QString, QStringList>{{"P1", {"Cash"}}}));
    QCOMPARE(hub->GetAllT0TradingAccountList(), QStringList({"A2", "A1"}));
    QVERIFY(hub->IsProductAndAssetPropInT0("P1", "Cash"));
    QVERIFY(!hub->IsProductAndAssetPropInT0("P1", "cash"));
    QVERIFY(!hub->IsProductAndAssetPropInT0("P2", "Cash"));
    QCOMPARE(hub->GetProductAssetPropList("P2"), QStringList());
    // Other accounts, other answers: resources and pools are loaded again.
    QCOMPARE(takeAsked(), QStringList({"resources A1", "resources A2", "pools A1", "pools A2"}));
    QCOMPARE(takeEvents(), QStringList("inited 0"));
}

void ProductsTest::accountMayStandThereTwice()
{
    hub->InitData();
    answerProducts({Rows::product("P1", "A1"), Rows::product("P2", "A1"), Rows::product("P1", "A1")});
    QCOMPARE(hub->GetAllT0TradingAccountList(), QStringList({"A1", "A1", "A1"}));
    QCOMPARE(takeAsked(), QStringList({"products", "traders", "priority", "resources A1", "pools A1"}));
    answerResources("A1", {Rows::resource("r1", "A1", "600000 SH", 100)});
    QCOMPARE(takeEvents(), QStringList({"inited 0", "inited 2"}));
    QCOMPARE(hub->GetResourceByProductAccount({"P1", "P1"}, "", "", "", {}).size(), 1);
}

void ProductsTest::emptyAnswerFinishesItsDependants()
{
    hub->InitData();
    takeAsked();
    answerProducts({});
    QCOMPARE(takeAsked(), QStringList());
    QCOMPARE(takeEvents(), QStringList({"inited 0", "inited 2", "inited 3"}));
    for (int type : {0, 2, 3})
        QCOMPARE(hub->GetInitStateByType(type), State::Inited);
}

void ProductsTest::accountsOfProductAndProperty_data()
{
    QTest::addColumn<QString>("product");
    QTest::addColumn<QString>("assetProp");
    QTest::addColumn<QStringList>("accounts");
    QTest::newRow("an enabled property") << "P1"
                                         << "Cash" << QStringList({"A1", "A2"});
    QTest::newRow("a candidate that is not enabled") << "P1"
                                                     << "Credit" << QStringList();
    QTest::newRow("another case of letters") << "P1"
                                             << "CASH" << QStringList();
    QTest::newRow("no property means every enabled one") << "P1"
                                                         << "" << QStringList({"A1", "A2"});
    QTest::newRow("a product that is not enabled") << "P2"
                                                   << "" << QStringList();
}

void ProductsTest::accountsOfProductAndProperty()
{
    QFETCH(QString, product);
    QFETCH(QString, assetProp);
    answerProducts({Rows::product("P1", "A1")}); // the candidates' accounts count, not the enabled rows
    takeAsked();
    takeEvents();
    QTEST(hub->GetTradingAccountListByProductAndAssetProp(product, assetProp), "accounts");
}

void ProductsTest::productTexts()
{
    answerProducts({Rows::product("P1", "A1"), Rows::product("P7", "A1")});
    takeAsked();
    takeEvents();
    QCOMPARE(hub->GetT0ProductMap(), (QMap<QString, QString>{{"P1", "name of P1"}, {"P7", ""}}));
}

void ProductsTest::fiveRequestsThenTheLoadIsGivenUp()
{
    hub->InitData();
    QStringList asked = takeAsked();
    for (int i = 0; i < 5; ++i)
        answerProducts({}, i == 2 ? "timeout" : "fail");
    asked += takeAsked();
    QCOMPARE(asked.count("products"), 5);
    QCOMPARE(takeEvents(), QStringList("inited 0"));
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::Products), State::InitFailed);

    answerProducts({}, "fail"); // the sixth gives up at once
    QCOMPARE(takeAsked(), QStringList());
    QCOMPARE(takeEvents(), QStringList("inited 0"));
    // An answer without a code is no success.
    answerProducts({}, "");
    QCOMPARE(takeEvents(), QStringList("inited 0"));
}

void ProductsTest::successRestartsTheRetries()
{
    hub->InitData();
    for (const char *code : {"fail", "fail", "success"})
        answerProducts({}, code);
    takeAsked();
    takeEvents();
    for (int i = 0; i < 4; ++i)
        answerProducts({}, "fail");
    QCOMPARE(takeAsked(), QStringList({"products", "products", "products", "products"}));
    QCOMPARE(takeEvents(), QStringList());
    answerProducts({}, "fail");
    QCOMPARE(takeAsked(), QStringList());
    QCOMPARE(takeEvents(), QStringList("inited 0"));
}

void ProductsTest::lateSuccessAfterTheGiveUpCounts()
{
    hub->InitData();
    for (int i = 0; i < 5; ++i)
        answerProducts({}, "fail");
    takeAsked();
    takeEvents();
    answerProducts({Rows::product("P1", "A1")});
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::Products), State::Inited);
    QCOMPARE(takeAsked(), QStringList({"resources A1", "pools A1"}));
    QCOMPARE(takeEvents(), QStringList("inited 0"));
}

void ProductsTest::failuresKeepWhatIsHeldButARefreshHasEmptiedIt()
{
    start();
    for (int i = 0; i < 5; ++i)
        answerProducts({}, "fail");
    QCOMPARE(hub->GetAllT0TradingAccountList().size(), 4);
    hub->RefreshDataByType(ManualT0Logic::Products);
    answerProducts({}, "fail");
    QCOMPARE(hub->GetAllT0TradingAccountList(), QStringList());
    QVERIFY(hub->GetAllT0ProductAccount().isEmpty());
    takeAsked();
    takeEvents();
}

T0_REGISTER_TEST(ProductsTest)

#include "tst_Products.moc"
