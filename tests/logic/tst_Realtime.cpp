#include "LogicTest.h"
#include "Tests.h"

#include "RealtimeFields.h"
#include "ReceivedUsage.h"

#include <cmath>
#include <random>

using namespace Master_Fields::ManualT0;
using namespace Master_Values::OpenPositionSide;

namespace {

const char *const key = "u1_A1_600000.SH_SH";

/// bought, sold of today, then of earlier days.
VariantRecord position(double bought, double sold, double preBought, double preSold)
{
    return {{DailyBoughtQty, bought},
            {DailySoldQty, sold},
            {PreUnclosedBoughtQty, preBought},
            {PreUnclosedSoldQty, preSold}};
}

VariantRecord derived(const VariantRecord &received, int factor = 1)
{
    VariantRecord record;
    ReceivedUsage(received, "S", factor).writeTo(record);
    return record;
}

/// Any of the fields that are read, any of those that are written, and others around them.
VariantRecord someFields(std::mt19937 &random)
{
    VariantRecord record;
    const QVector<QString> fields =
        RealtimeFields::summedQty() + RealtimeFields::summedAmount() +
        QVector<QString>{DailyBuyTradeFee, PreUnclosedSide, OpenPosQty, RtRealBoughtQty, QString(), "A", "m", "zzz"};
    for (const QString &field : fields) {
        if (random() % 2)
            record.insert(field, int(random() % 1000));
    }
    return record;
}

} // namespace

class RealtimeTest : public LogicTest
{
    Q_OBJECT

private slots:
    void scalesQuantities_data();
    void scalesQuantities();
    void extremes();
    void overwrittenRecordsAreAsNewOnes();
    void newerTimeIsTaken_data();
    void newerTimeIsTaken();
    void laterAnswerAnnouncesWhatItChanged();
    void failedFirstLoadIsRepeatedAndLaterOnesAreNot();
    void newSymbolsOfTheUserAreGathered();
};

void RealtimeTest::scalesQuantities_data()
{
    QTest::addColumn<QVariant>("sent");
    QTest::addColumn<int>("factor");
    QTest::addColumn<qint64>("held");
    QTest::newRow("1.5 at 100") << QVariant(1.5) << 100 << qint64(150);
    QTest::newRow("a trace below zero is 0") << QVariant(-0.0000001) << 100 << qint64(0);
    QTest::newRow("-2.5 at 100") << QVariant(-2.5) << 100 << qint64(-250);
    QTest::newRow("a fraction is cut off at 1 too") << QVariant(1.5) << 1 << qint64(1);
    QTest::newRow("what a product lacks to a whole is made up") << QVariant(0.29) << 100 << qint64(29);
    QTest::newRow("below zero too") << QVariant(-0.29) << 100 << qint64(-29);
    QTest::newRow("not-a-number is 0") << QVariant(qQNaN()) << 100 << qint64(0);
    QTest::newRow("beyond 64 bits is clamped") << QVariant(1e19) << 10 << std::numeric_limits<qint64>::max();
}

void RealtimeTest::scalesQuantities()
{
    QFETCH(QVariant, sent);
    QFETCH(int, factor);
    QFETCH(qint64, held);
    for (const QString &field : RealtimeFields::scaledQty()) {
        const VariantRecord record = derived({{field, sent}, {DailyBoughtAmount, 3.3}}, factor);
        QCOMPARE(record.value(field), QVariant(held));
        QCOMPARE(record.value(field).type(), QVariant::LongLong);
        QCOMPARE(record.value(DailyBoughtAmount), QVariant(3.3));
        // What is absent stays absent, what is derived does not.
        QCOMPARE(record.contains(DailyBuyLimit), field == DailyBuyLimit);
        QCOMPARE(record.value(Orvane_Fields::Security::symbol).toString(), QStringLiteral("S"));
    }
}

void RealtimeTest::extremes()
{
    constexpr qint64 max = std::numeric_limits<qint64>::max();
    VariantRecord record = derived({{DailyBuyLimit, 9e18}, {PreUnclosedBuyLimit, 9e18}, {DailySellLimit, 7}});
    QCOMPARE(record.value(RtTotalBuyLimit), QVariant(max));
    QCOMPARE(record.value(RtTotalSellLimit), QVariant(qint64(7)));
    RealtimeFields::add(record, record);
    QCOMPARE(record.value(RtTotalBuyLimit), QVariant(max));
    QCOMPARE(record.value(OpenAvgPrice).type(), QVariant::LongLong);

    VariantRecord unbought = position(-5, -10, 5, 0); // open 10 with nothing bought
    unbought.insert(DailyBoughtAmount, 7);
    QVERIFY(std::isinf(derived(unbought).value(OpenAvgPrice).toDouble()));
}

void RealtimeTest::overwrittenRecordsAreAsNewOnes()
{
    std::mt19937 random(5);
    VariantRecord held;
    for (int i = 0; i < 500; ++i) {
        const VariantRecord received = someFields(random);
        const VariantRecord copy = held;
        const VariantRecord before(copy.toStdMap());
        ReceivedUsage(received, "S", 3).writeTo(held);
        QCOMPARE(held, derived(received, 3));
        QCOMPARE(held.keys(), derived(received, 3).keys()); // in order, too
        QCOMPARE(copy, before);
    }
}

void RealtimeTest::newerTimeIsTaken_data()
{
    QTest::addColumn<QString>("held");
    QTest::addColumn<QString>("pushed");
    QTest::addColumn<bool>("taken");
    QTest::newRow("one step later") << "20240102 10:00:00.001"
                                    << "20240102 10:00:00.002" << true;
    QTest::newRow("times are compared as text") << "9:00"
                                                << "10:00" << false;
    QTest::newRow("none against a time") << "1"
                                         << "" << false;
    QTest::newRow("any time against none") << ""
                                           << "1" << true;
}

void RealtimeTest::newerTimeIsTaken()
{
    QFETCH(QString, held);
    QFETCH(QString, pushed);
    QFETCH(bool, taken);
    start();
    push(Rows::usage("A1", "u1", "600000 SH", held, {{DailyBoughtQty, 1}, {DailySoldQty, 9}}));
    QCOMPARE(takeEvents(), QStringList(QString("usage ") + key));
    push(Rows::usage("A1", "u1", "600000 SH", pushed, {{DailyBoughtQty, 2}}));
    QCOMPARE(takeEvents(), taken ? QStringList(QString("usage ") + key) : QStringList());
    const VariantRecord record = hub->GetRealtimePoolDetail("A1", "u1", "600000.SH", "SH");
    QCOMPARE(record.value(DailyBoughtQty).toInt(), taken ? 2 : 1);
    QCOMPARE(record.contains(DailySoldQty), !taken); // replaced whole
    QCOMPARE(hub->GetRealtimePoolKey(record), QString(key));
}

void RealtimeTest::laterAnswerAnnouncesWhatItChanged()
{
    const VariantRecord first = Rows::usage("A1", "u1", "600000 SH", "1");
    start({}, {}, {first});
    answerUsage({first});
    QCOMPARE(takeEvents(), QStringList("usage ")); // an empty list is announced too
    answerUsage({first, Rows::usage("A1", "u1", "110001 SH", "1", {{DailyBoughtQty, 1}})});
    settle();
    QCOMPARE(rawEvents.value(0).second.type(), QVariant::List);
    const QVariantList changed = rawEvents.value(0).second.toList();
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.first().toMap(), hub->GetRealtimePoolDetail("A1", "u1", "110001.SH", "SH")); // derived
    QCOMPARE(takeEvents(), QStringList("usage u1_A1_110001.SH_SH"));
    answerUsage({}); // merging removes nothing
    QCOMPARE(HubProbe::usageKeys(*hub).size(), 2);
    takeEvents();
}

void RealtimeTest::failedFirstLoadIsRepeatedAndLaterOnesAreNot()
{
    close();
    open(Mode::ByHand, {1, 600000, 600000, 600000});
    answerTraders({Rows::trader("t2", "Two")}, true);
    takeAsked();
    for (int i = 0; i < 3; ++i) {
        answerUsage({Rows::usage("A1", "u1", "600000 SH", "1")}, Rows::Fail);
        QCOMPARE(awaitAsked(), QStringList("usage t2"));
    }
    QCOMPARE(HubProbe::usageKeys(*hub), QStringList());
    answerUsage({});
    answerUsage({}, Rows::Fail);
    QCOMPARE(takeEvents(), QStringList({"inited 1", "inited 4"}));
    QCOMPARE(takeAsked(), QStringList());
}

void RealtimeTest::newSymbolsOfTheUserAreGathered()
{
    close();
    open(Mode::ByHand, {600000, 600000, 20, 600000});
    start({}, {}, {Rows::usage("A1", "u1", "600000 SH", "1")});
    hub->SetCurrentTradeAccount({"A1"});
    takeEvents();
    for (int i = 0; i < 50; ++i)
        push(Rows::usage("A1", "u1", i % 2 == 0 ? "110001 SH" : "300001 SZ", QString::number(100 + i)));
    QStringList events;
    QTRY_VERIFY((events += takeEvents()).contains("symbols"));
    events += takeEvents();
    QCOMPARE(events.count("symbols"), 1);
    QCOMPARE(events.size(), 51);
    QCOMPARE(hub->GetCurrentTradableSymbolList(), QStringList({"110001.SH", "300001.SZ", "600000.SH"}));
    push(Rows::usage("A1", "u1", "110001 SH", "999")); // no longer new
    QCOMPARE(takeEvents(), QStringList("usage u1_A1_110001.SH_SH"));
}

T0_REGISTER_TEST(RealtimeTest)

#include "tst_Realtime.moc"
