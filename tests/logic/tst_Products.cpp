#include "LogicTest.h"
#include "Tests.h"

class ProductsTest : public LogicTest
{
    Q_OBJECT

private slots:
    void candidatesAndTheirNames();
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

T0_REGISTER_TEST(ProductsTest)

#include "tst_Products.moc"
