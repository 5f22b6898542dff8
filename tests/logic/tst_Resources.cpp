#include "LogicTest.h"
#include "Tests.h"

using namespace Master_Fields::ManualT0;

class ResourcesTest : public LogicTest
{
    Q_OBJECT

private slots:
    void quantitiesAreDisplayUnits_data();
    void quantitiesAreDisplayUnits();
    void summaryBeyondIntIsClamped();
    void shortFormOfTheAnswerCovers();
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

void ResourcesTest::summaryBeyondIntIsClamped()
{
    VariantRecord third = Rows::pool("p3", "A1", "600000 SH", "x", 5, "r1");
    third.insert(PoolType, 2); // whatever is not private is public
    start({Rows::resource("r1", "A1", "600000 SH", 1)},
          {Rows::pool("p1", "A1", "600000 SH", "t2", 2000000000, "r1"),
           Rows::pool("p2", "A1", "600000 SH", "u1", 2000000000, "r1"), third});
    const VariantRecord resource = hub->GetAllResourceList().first();
    QCOMPARE(resource.value(PrivatePoolQty), QVariant(std::numeric_limits<int>::max()));
    QCOMPARE(resource.value(PublicPoolQty).type(), QVariant::Int);
    QCOMPARE(resource.value(PublicPoolQty), QVariant(5));
    QCOMPARE(resource.value(T0TraderId).toString(), QStringLiteral("t2,u1,public"));
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

T0_REGISTER_TEST(ResourcesTest)

#include "tst_Resources.moc"
