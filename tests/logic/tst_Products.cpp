#include "LogicTest.h"
#include "Tests.h"

using State = MasterInitStateMgr::InitState;

class ProductsTest : public LogicTest
{
    Q_OBJECT

private slots:
    void candidatesAndTheirNames();
    void fiveRequestsThenTheLoadIsGivenUp();
};

void ProductsTest::candidatesAndTheirNames()
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

    answerProducts({Rows::product("P1", "A1"), Rows::product("P7", "A1")});
    QCOMPARE(hub->GetT0ProductMap(), (QMap<QString, QString>{{"P1", "name of P1"}, {"P7", ""}}));
    takeAsked();
    takeEvents();
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
    // A late success counts, and earns the retries back.
    answerProducts({});
    for (int i = 0; i < 4; ++i)
        answerProducts({}, "fail");
    QCOMPARE(takeAsked().count("products"), 4);
    QCOMPARE(takeEvents(), QStringList({"inited 0", "inited 2", "inited 3"}));
}

T0_REGISTER_TEST(ProductsTest)

#include "tst_Products.moc"
