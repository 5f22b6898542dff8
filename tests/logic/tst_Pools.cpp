#include "LogicTest.h"
#include "Tests.h"

using namespace Master_Fields::ManualT0;

namespace {

/// "id TraderName total public" a row, ascending; "-" for an absent field.
QStringList shown(const RecordList &pools)
{
    QStringList rows;
    for (const VariantRecord &pool : pools) {
        QStringList parts;
        for (const QString &field : {PoolDetailId, T0TraderName, PoolTotalQty, PublicPoolQty})
            parts.append(pool.contains(field) ? pool.value(field).toString() : QStringLiteral("-"));
        rows.append(parts.join(' '));
    }
    rows.sort();
    return rows;
}

} // namespace

class PoolsTest : public LogicTest
{
    Q_OBJECT

private slots:
    void limitsOfBothLoadPaths_data();
    void limitsOfBothLoadPaths();
    void hugeLimitsAreClamped();
    void announcesWhatChanged_data();
    void announcesWhatChanged();
    void minusOneLimitIsAnnouncedOnceAfterALoad();
    void deletedRecordsAreSentAsTheyWere();
    void tradersAreUsersUntilTheFirstLaterAnswer();
    void publicPoolsJoinPrivateOnes_data();
    void publicPoolsJoinPrivateOnes();
    void onePartnerGetsThePublicQuantity();
    void firstByIdOfATrader();
    void formForOneProductNeedsBoth();
    void byIdsAndByResource();
    void changedAccountIsAskedFromAnyThread();
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

void PoolsTest::hugeLimitsAreClamped()
{
    start();
    VariantRecord row = Rows::pool("p1", "A1", "110001 SH", "t2", 1, "r1");
    row.insert(MaxExposureQty, 1000000000);
    answerPools("A1", {row});
    QCOMPARE(hub->GetSecurityPoolDetailById("p1").value(MaxExposureQty), QVariant(std::numeric_limits<int>::max()));
    takeEvents();
}

void PoolsTest::announcesWhatChanged_data()
{
    QTest::addColumn<RecordList>("answer");
    QTest::addColumn<QStringList>("events");
    const VariantRecord first = Rows::pool("p1", "A1", "600000 SH", "t2", 10, "r1");
    const VariantRecord second = Rows::pool("p2", "A1", "600000 SH", "u1", 20, "r1");
    VariantRecord other = second;
    other.insert(PoolTotalQty, 21);
    VariantRecord sameInAnotherType = second;
    sameInAnotherType.insert(PoolTotalQty, 20.0);
    VariantRecord withField = second;
    withField.insert(T0SymbolFlag, QVariant());
    VariantRecord withoutField = second;
    withoutField.remove(MaxExposureQty);
    QTest::newRow("nothing changed") << RecordList{first, second} << QStringList();
    QTest::newRow("an equal number of another type is no change")
        << RecordList{first, sameInAnotherType} << QStringList();
    QTest::newRow("a changed value") << RecordList{first, other} << QStringList("pools p2");
    QTest::newRow("an added field") << RecordList{first, withField} << QStringList("pools p2");
    QTest::newRow("a field that is gone") << RecordList{first, withoutField} << QStringList("pools p2");
    QTest::newRow("of duplicates the last counts, named once")
        << RecordList{other, first, second, other} << QStringList("pools p2");
    QTest::newRow("updated before deleted") << RecordList{other, Rows::pool("p0", "A1", "600000 SH", "t2", 1, "r1")}
                                            << QStringList({"pools p0,p2", "deleted p1"});
    QTest::newRow("all gone") << RecordList() << QStringList("deleted p1,p2");
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
    QCOMPARE(takeAsked(), QStringList());
    QVERIFY(!hub->GetSecurityPoolDetailById("p3").isEmpty());
    QCOMPARE(HubProbe::indexFaults(*hub), QStringList());
}

void PoolsTest::minusOneLimitIsAnnouncedOnceAfterALoad()
{
    const RecordList rows{Rows::pool("p1", "A1", "110001 SH", "t2", 10, "r1")};
    start({}, rows);
    answerPools("A1", rows);
    QCOMPARE(takeEvents(), QStringList("pools p1"));
    answerPools("A1", rows);
    QCOMPARE(takeEvents(), QStringList());
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

void PoolsTest::tradersAreUsersUntilTheFirstLaterAnswer()
{
    VariantRecord row = Rows::pool("p1", "A1", "600000 SH", "t2", 10, "r1");
    row.insert(Orvane_Fields::UserAccount::userID, "u1");
    const RecordList rows{row, Rows::pool("p2", "A1", "300001 SZ", "public", 10, "r2")};
    const auto count = [this](const QString &trader) {
        return hub->GetSecurityPoolDetailListByTradingList({"A1"}, {trader}, "", "", false).size();
    };
    start({}, rows);
    QCOMPARE(count("u1"), 1);
    QCOMPARE(count("t2"), 0);
    QCOMPARE(shown(hub->GetSecurityPoolDetailListByTradingList({"A1"}, {}, "", "", true)),
             QStringList({"p1 Two 10 -", "p2 - 0 10"}));
    answerPools("A2", {}); // an answer of any account decides for all
    QCOMPARE(count("u1"), 0);
    QCOMPARE(count("t2"), 1);
    hub->RefreshDataByType(ManualT0Logic::SecurityPools);
    for (const char *account : {"A1", "A2", "A3", "A4"})
        answerPools(account, account == QLatin1String("A1") ? rows : RecordList());
    QCOMPARE(count("u1"), 1);
    takeAsked();
    takeEvents();
}

void PoolsTest::publicPoolsJoinPrivateOnes_data()
{
    QTest::addColumn<QStringList>("traders");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<QStringList>("rows");
    QTest::newRow("a partner gets the quantity, a pool without one stands alone with total 0")
        << QStringList() << "" << QStringList({"a1 Two 10 30", "a9 - 0 50", "b1 - 0 40"});
    QTest::newRow("a partner of another trader is none")
        << QStringList("u1") << "" << QStringList({"a9 - 0 50", "b1 - 0 40", "p1 - 0 30"});
    QTest::newRow("asked for, the public pool is a row of its own and its own partner")
        << QStringList({"public", "t2"}) << "600000.SH"
        << QStringList({"a1 Two 10 30", "b1 public 40 40", "p1 public 30 -"});
    QTest::newRow("empty texts are no traders") << QStringList("") << "300001.SZ" << QStringList("a9 - 0 50");
}

void PoolsTest::publicPoolsJoinPrivateOnes()
{
    QFETCH(QStringList, traders);
    QFETCH(QString, symbol);
    start({},
          {Rows::pool("a1", "A1", "600000 SH", "t2", 10, "r1"), Rows::pool("p1", "A1", "600000 SH", "public", 30, "r1"),
           Rows::pool("b1", "A2", "600000 SH", "public", 40, "r2"),
           Rows::pool("a9", "A1", "300001 SZ", "public", 50, "r3")});
    const RecordList pools = hub->GetSecurityPoolDetailListByTradingList({"A1", "A2"}, traders, symbol, "", true);
    QTEST(shown(pools), "rows");
    for (const VariantRecord &pool : pools) {
        if (!pool.contains(T0TraderName))
            QCOMPARE(pool.value(PoolTotalQty), QVariant(0));
    }
}

void PoolsTest::onePartnerGetsThePublicQuantity()
{
    start({}, {Rows::pool("p3", "A1", "600000 SH", "t2", 1, "r1"), Rows::pool("p2", "A1", "600000 SH", "u1", 2, "r1"),
               Rows::pool("p1", "A1", "600000 SH", "public", 3, "r1"),
               Rows::pool("p4", "A1", "600000 SH", "public", 4, "r2"),
               Rows::pool("z1", "A2", "600000 SH", "public", 5, "r3"),
               Rows::pool("y1", "A2", "300001 SZ", "public", 6, "r4")});
    const RecordList pools = hub->GetSecurityPoolDetailListByTradingList({"A1", "A2"}, {}, "", "", true);
    // The first by id of several partners, the last by id of several public pools.
    QCOMPARE(shown(pools.mid(0, 2)), QStringList({"p2 u1-name 2 4", "p3 Two 1 -"}));
    // Those left over stand at the end, by account, symbol and exchange.
    QCOMPARE(pools.value(2).value(PoolDetailId).toString(), QStringLiteral("y1"));
    QCOMPARE(pools.value(3).value(PoolDetailId).toString(), QStringLiteral("z1"));
    QCOMPARE(pools.size(), 4);
}

void PoolsTest::firstByIdOfATrader()
{
    start({}, {Rows::pool("p2", "A1", "600000 SH", "t2", 2, "r1"), Rows::pool("p1", "A1", "600000 SH", "t2", 1, "r2")});
    QCOMPARE(shown({hub->GetSecurityPoolDetailByTrading("A1", "t2", "600000.SH", "SH")}), QStringList("p1 Two 1 -"));
    QVERIFY(hub->GetSecurityPoolDetailByTrading("A1", "u1", "", "").isEmpty());
    QVERIFY(hub->GetSecurityPoolDetailByTrading("A1", "", "", "").isEmpty());
}

void PoolsTest::formForOneProductNeedsBoth()
{
    start({}, {Rows::pool("p1", "A1", "600000 SH", "t2", 1, "r1")});
    const auto count = [this](const QString &product, const QString &assetProp, const QString &trader) {
        return hub->GetSecurityPoolDetail(product, assetProp, trader, "", "", true).size();
    };
    QCOMPARE(count("", "Cash", ""), 0);
    QCOMPARE(count("P1", "", ""), 0);
    QCOMPARE(count("P1", "Cash", ""), 1); // no trader means all
    QCOMPARE(count("P1", "Cash", "u1"), 0);
}

void PoolsTest::byIdsAndByResource()
{
    start({},
          {Rows::pool("p1", "A1", "600000 SH", "t2", 1, "r1"), Rows::pool("p2", "A1", "600000 SH", "public", 2, "r1"),
           Rows::pool("p3", "A1", "600000 SH", "t9", 3, "r2")});
    QCOMPARE(shown(hub->GetAllSecurityPoolList()), QStringList({"p1 Two 1 -", "p2 public 2 -", "p3  3 -"}));
    const RecordList byId = hub->GetSecurityPoolDetailByIdList({"p3", "none", "p1", "p3"});
    QStringList order;
    for (const VariantRecord &pool : byId) {
        order.append(pool.value(PoolDetailId).toString());
        QVERIFY(!pool.contains(T0TraderName));
    }
    QCOMPARE(order, QStringList({"p3", "p1", "p3"}));
    QCOMPARE(shown(hub->GetSecurityPoolDetailByResourceId("r1", 3)), QStringList({"p1 Two 1 -", "p2 public 2 -"}));
    QCOMPARE(shown(hub->GetSecurityPoolDetailByResourceId("r1", 0)), QStringList("p2 public 2 -"));
    QCOMPARE(shown(hub->GetSecurityPoolDetailByResourceId("r1", 1)), QStringList("p1 Two 1 -"));
    QVERIFY(hub->GetSecurityPoolDetailByResourceId("r9", 3).isEmpty());
}

void PoolsTest::changedAccountIsAskedFromAnyThread()
{
    hub->slotRecvSecurityPoolChangedPush("A7");
    QCOMPARE(takeAsked(), QStringList("pools A7"));
}

T0_REGISTER_TEST(PoolsTest)

#include "tst_Pools.moc"
