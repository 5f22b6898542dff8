#include "Quantity.h"
#include "Tests.h"

#include <QtTest/QtTest>

namespace {

__extension__ using Wide = __int128;
constexpr qint64 Max = std::numeric_limits<qint64>::max();
constexpr qint64 Min = std::numeric_limits<qint64>::min();

} // namespace

class QuantityTest : public QObject
{
    Q_OBJECT

private slots:
    void readsWholeQuantities_data();
    void readsWholeQuantities();
    void clampsToInt_data();
    void clampsToInt();
    void roundsHalfAwayFromZero();
    void sumsSaturate();
};

void QuantityTest::readsWholeQuantities_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<qint64>("expected");
    QTest::newRow("a double is cut off") << QVariant(2.7) << qint64(2);
    QTest::newRow("a negative double is cut off towards zero") << QVariant(-2.7) << qint64(-2);
    QTest::newRow("a text with decimals counts") << QVariant(QStringLiteral("150.0")) << qint64(150);
    QTest::newRow("bytes count as text") << QVariant(QByteArray("12.0")) << qint64(12);
    QTest::newRow("no number is 0") << QVariant(QStringLiteral("1,000")) << qint64(0);
    QTest::newRow("not-a-number is 0") << QVariant(QStringLiteral("nan")) << qint64(0);
    QTest::newRow("infinity is 0") << QVariant(-qInf()) << qint64(0);
    QTest::newRow("an absent field is 0") << QVariant() << qint64(0);
    QTest::newRow("above 2^31 nothing wraps") << QVariant(5e9) << qint64(5000000000);
    QTest::newRow("integers take no detour through double")
        << QVariant(qint64(9007199254740993)) << qint64(9007199254740993);
    QTest::newRow("unsigned above the range is clamped") << QVariant(std::numeric_limits<quint64>::max()) << Max;
    QTest::newRow("a double above the range is clamped") << QVariant(1e20) << Max;
    QTest::newRow("a double below the range is clamped") << QVariant(-1e20) << Min;
    QTest::newRow("true is 1") << QVariant(true) << qint64(1);
}

void QuantityTest::readsWholeQuantities()
{
    QFETCH(QVariant, value);
    QFETCH(qint64, expected);
    QCOMPARE(Quantity::toQty(value), expected);
}

void QuantityTest::clampsToInt_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("expected");
    QTest::newRow("above") << QVariant(qint64(3000000000)) << std::numeric_limits<int>::max();
    QTest::newRow("below") << QVariant(-3e9) << std::numeric_limits<int>::min();
    QTest::newRow("a limit of -0.6 is 0, not none") << QVariant(-0.6) << 0;
    QTest::newRow("a limit of -1.4 is none") << QVariant(-1.4) << -1;
}

void QuantityTest::clampsToInt()
{
    QFETCH(QVariant, value);
    QFETCH(int, expected);
    QCOMPARE(Quantity::toIntQty(value), expected);
}

void QuantityTest::roundsHalfAwayFromZero()
{
    QCOMPARE(Quantity::roundToInt64(2.5), qint64(3));
    QCOMPARE(Quantity::roundToInt64(-2.5), qint64(-3));
    QCOMPARE(Quantity::roundToInt64(qQNaN()), qint64(0));
    QCOMPARE(Quantity::roundToInt64(1e300), Max);
}

void QuantityTest::sumsSaturate()
{
    const auto clamped = [](Wide value) { return qint64(qBound<Wide>(Min, value, Max)); };
    const QVector<qint64> values{Min, Min + 1, -7, -1, 0, 1, 5, Max - 1, Max};
    for (qint64 a : values) {
        for (qint64 b : values) {
            QCOMPARE(Quantity::satAdd(a, b), clamped(Wide(a) + b));
            QCOMPARE(Quantity::satSub(a, b), clamped(Wide(a) - b));
        }
    }
}

T0_REGISTER_TEST(QuantityTest)

#include "tst_Quantity.moc"
