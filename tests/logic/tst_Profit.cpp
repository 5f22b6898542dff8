#include "LogicTest.h"
#include "Tests.h"

#include <cmath>

using namespace Master_Fields::ManualT0;

class ProfitTest : public LogicTest
{
    Q_OBJECT

private slots:
    void notANumberStaysOne();
    void withoutAPriceNothingIsWritten();
};

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

void ProfitTest::withoutAPriceNothingIsWritten()
{
    QVector<double> values{1, 2, 3};
    const auto isWritten = [&](const VariantRecord &record, double price) {
        return hub->CalcProfitLossByRealtimeMap(record, price, values[0], values[1], values[2]);
    };
    QVERIFY(!isWritten({}, 10));
    for (double none : {0.0, 1e-10, qQNaN()})
        QVERIFY(!isWritten({{DailyBoughtQty, 1}}, none));
    QCOMPARE(values, (QVector<double>{1, 2, 3}));
}

T0_REGISTER_TEST(ProfitTest)

#include "tst_Profit.moc"
