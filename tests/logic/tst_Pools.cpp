#include "LogicTest.h"
#include "Tests.h"

using namespace Master_Fields::ManualT0;

class PoolsTest : public LogicTest
{
    Q_OBJECT

private slots:
    void limitsOfBothLoadPaths_data();
    void limitsOfBothLoadPaths();
    void announcesWhatChanged_data();
    void announcesWhatChanged();
    void whatIsSentIsStored_data();
    void whatIsSentIsStored();
    void deletedRecordsAreSentAsTheyWere();
};

void PoolsTest::limitsOfBothLoadPaths_data()
{
    QTest::addColumn<QString>("security");
    QTest::addColumn<QVariant>("sent");
    QTest::addColumn<QVariant>("first");
    QTest::addColumn<QVariant>("later");
    QTest::newRow("a -1 limit becomes -10 in the first load and stays -1 later")
        << "110001 SH" << QVariant(-1) << QVariant(-10.0) << QVariant(-1);
    QTest::newRow("a limit is a double at first, an int later")
        << "110001 SH" << QVariant(50) << QVariant(500.0) << QVariant(500);
    QTest::newRow("a fraction is cut off later") << "110001 SH" << QVariant(2.5) << QVariant(25.0) << QVariant(20);
    QTest::newRow("-1.4 is none later") << "110001 SH" << QVariant(-1.4) << QVariant(-14.0) << QVariant(-1.4);
    QTest::newRow("a huge one is clamped later")
        << "110001 SH" << QVariant(1000000000) << QVariant(1e10) << QVariant(std::numeric_limits<int>::max());
    QTest::newRow("factor 1 touches nothing") << "600000 SH" << QVariant(-1) << QVariant(-1) << QVariant(-1);
}

void PoolsTest::limitsOfBothLoadPaths()
{
    QFETCH(QString, security);
    QFETCH(QVariant, sent);
    QFETCH(QVariant, first);
    QFETCH(QVariant, later);
    VariantRecord row = Rows::pool("p1", "A1", security, "t2", 2.5, "r1");
    row.insert(MaxExposureQty, sent);
    row.remove(MaxPendExposureQty);
    const double factor = security.startsWith("110001") ? 10 : 1;
    const auto check = [&](const QVariant &limit) {
        const VariantRecord pool = hub->GetSecurityPoolDetailById("p1");
        QCOMPARE(pool.value(MaxExposureQty), limit);
        QCOMPARE(pool.value(MaxExposureQty).type(), limit.type());
        QCOMPARE(pool.value(PoolTotalQty), QVariant(2.5 * factor));
        QVERIFY(!pool.contains(MaxPendExposureQty));
    };
    start({}, {row});
    check(first);
    answerPools("A1", {row});
    check(later);
    takeEvents();
}

void PoolsTest::announcesWhatChanged_data()
{
    QTest::addColumn<RecordList>("answer");
    QTest::addColumn<QStringList>("events");
    const VariantRecord first = Rows::pool("p1", "A1", "600000 SH", "t2", 10, "r1");
    const VariantRecord second = Rows::pool("p2", "A1", "600000 SH", "u1", 20, "r1");
    VariantRecord sameInAnotherType = second;
    sameInAnotherType.insert(PoolTotalQty, 20.0);
    VariantRecord withField = second;
    withField.insert(T0SymbolFlag, QVariant());
    VariantRecord withoutField = second;
    withoutField.remove(MaxExposureQty);
    QTest::newRow("an equal number of another type is no change")
        << RecordList{first, sameInAnotherType} << QStringList();
    QTest::newRow("an added field") << RecordList{first, withField} << QStringList("pools p2");
    QTest::newRow("a field that is gone") << RecordList{first, withoutField} << QStringList("pools p2");
}

void PoolsTest::announcesWhatChanged()
{
    QFETCH(RecordList, answer);
    start({}, {Rows::pool("p1", "A1", "600000 SH", "t2", 10, "r1"), Rows::pool("p2", "A1", "600000 SH", "u1", 20, "r1"),
               Rows::pool("p3", "A2", "600000 SH", "u1", 20, "r2")});
    answerPools("A1", answer);
    QTEST(takeEvents(), "events");
    answerPools("A1", {}, Rows::Fail); // ignored
    QCOMPARE(takeEvents(), QStringList());
    answerPools("A1", answer);
    QCOMPARE(takeEvents(), QStringList());
}

void PoolsTest::whatIsSentIsStored_data()
{
    QTest::addColumn<QVariant>("held");
    QTest::addColumn<QVariant>("sent");
    QTest::addColumn<bool>("announced");
    QTest::newRow("a whole number for a fraction") << QVariant(20.0) << QVariant(20) << false;
    QTest::newRow("a number for a text that reads otherwise") << QVariant("010") << QVariant(10) << true;
    QTest::newRow("a text for a number") << QVariant(10.0) << QVariant("10.0") << false;
    QTest::newRow("no text for a null one") << QVariant(QString()) << QVariant("") << false;
    QTest::newRow("inside a list") << QVariant(QVariantList{10}) << QVariant(QVariantList{10.0}) << false;
    QTest::newRow("another number") << QVariant(20) << QVariant(21) << true;
}

void PoolsTest::whatIsSentIsStored()
{
    QFETCH(QVariant, held);
    QFETCH(QVariant, sent);
    QFETCH(bool, announced);
    VariantRecord pool = Rows::pool("p1", "A1", "110001 SH", "t2", 10, "r1");
    pool.insert(T0SymbolFlag, held);
    start({}, {pool});
    answerPools("A1", {pool}); // the load is over: this one is compared
    takeEvents();
    pool.insert(T0SymbolFlag, sent);
    answerPools("A1", {pool});
    QCOMPARE(takeEvents(), announced ? QStringList("pools p1") : QStringList());
    const auto written = [](const QVariant &value) {
        QString text;
        QDebug(&text) << value;
        return text;
    };
    QCOMPARE(written(hub->GetSecurityPoolDetailById("p1").value(T0SymbolFlag)), written(sent));
    QCOMPARE(hub->GetSecurityPoolDetailById("p1").value(T0SymbolFlag).isNull(), sent.isNull());
}

void PoolsTest::deletedRecordsAreSentAsTheyWere()
{
    start({}, {Rows::pool("p1", "A1", "110001 SH", "t2", 10, "r1")});
    const VariantRecord before = hub->GetSecurityPoolDetailById("p1");
    answerPools("A1", {});
    settle();
    QCOMPARE(rawEvents.size(), 1);
    QCOMPARE(rawEvents.first().second.type(), QVariant::List);
    QCOMPARE(rawEvents.first().second.toList(), QVariantList{before});
    takeEvents();
}

T0_REGISTER_TEST(PoolsTest)

#include "tst_Pools.moc"
