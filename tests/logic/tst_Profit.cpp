#include "LogicTest.h"
#include "Tests.h"

#include "ProfitLoss.h"

#include <cmath>

using namespace Master_Fields::ManualT0;
using namespace Master_Values::OpenPositionSide;

class ProfitTest : public LogicTest
{
    Q_OBJECT

private slots:
    void valuesOneLeg_data();
    void valuesOneLeg();
    void ownerOfTheCarriedGain_data();
    void ownerOfTheCarriedGain();
    void notANumberStaysOne();
    void withoutAPriceNothingIsWritten_data();
    void withoutAPriceNothingIsWritten();
};

void ProfitTest::valuesOneLeg_data()
{
    QTest::addColumn<QVector<double>>("leg"); // bought, sold, their amounts, last price, buy fee, sell fee
    QTest::addColumn<QString>("side");
    QTest::addColumn<double>("floating");
    QTest::addColumn<double>("realized");
    using Leg = QVector<double>;
    QTest::newRow("today's long pays the buy fee") << Leg{100, 0, 1000, 0, 11, 0.001, 0.5} << "" << 99.0 << 0.0;
    QTest::newRow("today's short pays the sell fee") << Leg{0, 100, 0, 1000, 9, 0.5, 0.001} << "" << 99.0 << 0.0;
    QTest::newRow("today's closed part pays both") << Leg{100, 100, 1000, 1100, 0, 0.01, 0.01} << "" << 0.0 << 79.0;
    QTest::newRow("closed without fees") << Leg{100, 100, 1000, 1100, 11, 0, 0} << BuyOpen << 0.0 << 100.0;
    QTest::newRow("a carried remainder pays nothing") << Leg{100, 0, 1000, 0, 11, 0.1, 0.1} << BuyOpen << 100.0 << 0.0;
    QTest::newRow("a carried short remainder pays nothing")
        << Leg{0, 100, 0, 1000, 9, 0.1, 0.1} << SellOpen << 100.0 << 0.0;
    QTest::newRow("a carried long is closed by selling")
        << Leg{100, 100, 1000, 1100, 11, 0.01, 0.01} << BuyOpen << 0.0 << 89.0;
    QTest::newRow("a carried short is closed by buying")
        << Leg{100, 100, 1000, 1100, 11, 0.01, 0.01} << SellOpen << 0.0 << 90.0;
    QTest::newRow("any other side counts as closed by buying")
        << Leg{100, 100, 1000, 1100, 11, 0.01, 0.01} << NoOpenPos << 0.0 << 90.0;
    QTest::newRow("a part open, a part closed") << Leg{300, 100, 3000, 1100, 12, 0, 0} << "" << 400.0 << 100.0;
    QTest::newRow("nothing traded") << Leg{0, 0, 5, 5, 11, 0.1, 0.1} << "" << 0.0 << 0.0;
}

void ProfitTest::valuesOneLeg()
{
    QFETCH(QVector<double>, leg);
    QFETCH(QString, side);
    QFETCH(double, floating);
    QFETCH(double, realized);
    const ProfitLoss::Result result = ProfitLoss::ofLeg({qint64(leg.at(0)), qint64(leg.at(1)), leg.at(2), leg.at(3)},
                                                        leg.at(4), {leg.at(5), leg.at(6)}, side);
    QVERIFY2(std::abs(result.floating - floating) < 1e-9, qPrintable(QString::number(result.floating)));
    QVERIFY2(std::abs(result.realized - realized) < 1e-9, qPrintable(QString::number(result.realized)));
}

void ProfitTest::ownerOfTheCarriedGain_data()
{
    QTest::addColumn<QString>("owner");
    QTest::addColumn<double>("carriedSold");
    QTest::addColumn<double>("realized");
    const QString organisation = Master_Values::TransDayProfitOwner::ProfitToOrg;
    QTest::newRow("the organisation takes a gain") << organisation << 1050.0 << 10.0;
    QTest::newRow("the trader bears a loss") << organisation << 950.0 << -40.0;
    QTest::newRow("else the gain is the trader's") << "" << 1050.0 << 60.0;
}

void ProfitTest::ownerOfTheCarriedGain()
{
    QFETCH(QString, owner);
    QFETCH(double, carriedSold);
    // Carried: 150 bought, 100 of them closed; today: 100 round, 10 gained, and 50 short.
    const VariantRecord record{{TransDayProfitOwner, owner}, {PreUnclosedSide, BuyOpen},
                               {PreUnclosedBoughtQty, 150},  {PreUnclosedBoughtAmount, 1500.0},
                               {PreUnclosedSoldQty, 100},    {PreUnclosedSoldAmount, carriedSold},
                               {DailyBoughtQty, 100},        {DailyBoughtAmount, 1000.0},
                               {DailySoldQty, 150},          {DailySoldAmount, 1515.0}};
    double floating = 0;
    double realized = 0;
    double total = 0;
    QVERIFY(hub->CalcProfitLossByRealtimeMap(record, 11.0, floating, realized, total));
    QVERIFY(std::abs(floating - (50.0 - 45.0)) < 1e-9);
    QTEST(realized, "realized");
    QVERIFY(std::abs(total - (floating + realized)) < 1e-9);
}

void ProfitTest::notANumberStaysOne()
{
    const VariantRecord record{{TransDayProfitOwner, Master_Values::TransDayProfitOwner::ProfitToOrg},
                               {PreUnclosedBoughtQty, 1},
                               {PreUnclosedSoldQty, 1},
                               {PreUnclosedSoldAmount, qQNaN()}};
    double floating = 0;
    double realized = 0;
    double total = 0;
    QVERIFY(hub->CalcProfitLossByRealtimeMap(record, 11.0, floating, realized, total));
    QVERIFY(std::isnan(realized) && std::isnan(total));
}

void ProfitTest::withoutAPriceNothingIsWritten_data()
{
    QTest::addColumn<VariantRecord>("record");
    QTest::addColumn<double>("price");
    const VariantRecord record{{DailyBoughtQty, 1}};
    QTest::newRow("an empty record") << VariantRecord() << 10.0;
    QTest::newRow("no price") << record << 0.0;
    QTest::newRow("a price of 1e-10 is none") << record << 1e-10;
    QTest::newRow("not-a-number is none") << record << qQNaN();
}

void ProfitTest::withoutAPriceNothingIsWritten()
{
    QFETCH(VariantRecord, record);
    QFETCH(double, price);
    double floating = 1;
    double realized = 2;
    double total = 3;
    QVERIFY(!hub->CalcProfitLossByRealtimeMap(record, price, floating, realized, total));
    QCOMPARE((QVector<double>{floating, realized, total}), (QVector<double>{1, 2, 3}));
}

T0_REGISTER_TEST(ProfitTest)

#include "tst_Profit.moc"
