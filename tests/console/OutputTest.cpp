#include "JsonText.h"
#include "Tests.h"
#include "TextTable.h"

#include <QtTest/QtTest>

#include <cmath>
#include <limits>

class OutputTest : public QObject
{
    Q_OBJECT

private slots:
    void valuesAsJson_data();
    void valuesAsJson();
    void wideCharactersCountTwo();
    void tableIsAligned();
};
T0_REGISTER_TEST(OutputTest)

void OutputTest::valuesAsJson_data()
{
    const double infinity = std::numeric_limits<double>::infinity();
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("json");
    const auto row = [](const char *name, const QVariant &value, const char *json) {
        QTest::newRow(name) << value << QString::fromUtf8(json);
    };
    row("an invalid value is null", QVariant(), "null");
    row("the largest integers", QVariantList{LLONG_MIN, LLONG_MAX, ULLONG_MAX},
        "[-9223372036854775808,9223372036854775807,18446744073709551615]");
    row("what JSON cannot count", QVariantList{infinity, -infinity, std::nan("")}, R"(["inf","-inf","nan"])");
    row("a double as short as it is exact", QVariantList{0.1, 1e300, -0.0005}, "[0.1,1e+300,-0.0005]");
    row("texts are escaped", QStringLiteral("a\"\\\n星"), R"("a\"\\\n星")");
    row("records in records", QVariantMap{{"b", QStringList{"x"}}, {"a", QVariantMap{{"c", true}}}},
        R"({"a":{"c":true},"b":["x"]})");
    row("other types by their text", QDate(2026, 1, 5), R"("2026-01-05")");
}

void OutputTest::valuesAsJson()
{
    QFETCH(QVariant, value);
    QTEST(jsonText(value), "json");
}

void OutputTest::wideCharactersCountTwo()
{
    QCOMPARE(TextTable::width(QStringLiteral("a星b")), 4);
    QCOMPARE(TextTable::width(QStringLiteral("e\u0301")), 1);             // with a combining accent
    QCOMPARE(TextTable::width(QString::fromUtf8("\xF0\xA0\x80\x8B")), 2); // outside the first plane
}

void OutputTest::tableIsAligned()
{
    const RecordList rows{{{"name", "星河"}, {"qty", 5LL}, {"list", QStringList{"a", "b"}}},
                          {{"name", "x"}, {"qty", 1200.5}},
                          {{"name", "no number"}}};
    QCOMPARE(TextTable::ofRows(rows, {"name", "qty", "list"}), QStringLiteral("name          qty  list\n"
                                                                              "星河            5  a,b\n"
                                                                              "x          1200.5\n"
                                                                              "no number"));
}

#include "OutputTest.moc"
