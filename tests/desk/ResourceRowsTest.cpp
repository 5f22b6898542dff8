#include "ResourceRows.h"
#include "SheetText.h"
#include "Tests.h"

#include <QtCore/QTextCodec>
#include <QtTest/QtTest>

namespace {

ResourceRows::Directory directory()
{
    return {[](const QString &account) { return account.startsWith('A') ? QString() : QStringLiteral("unknown"); },
            [](const QString &code) {
                QVector<ResourceRows::Security> found;
                if (code == QLatin1String("600001"))
                    found.append({"600001.SH", "600001", "SH", 1});
                if (code == QLatin1String("110001"))
                    found.append({"110001.SH", "110001", "SH", 10});
                if (code == QLatin1String("00001")) {
                    found.append({"00001.HK", "00001", "HHK", 1});
                    found.append({"00001.HK", "00001", "SZHK", 1});
                }
                return found;
            },
            [](const QString &trader) { return trader.startsWith('t') || trader == QLatin1String("public"); }};
}

/// "account symbol exchange quantity trader" of each good row, "line:column" of each error.
QStringList inShort(const ResourceRows &read)
{
    QStringList lines;
    for (const ResourceRow &row : read.rows) {
        if (row.problems.isEmpty())
            lines.append(QStringList{row.account, row.symbol, row.exchange, QString::number(row.quantity), row.trader}
                             .join(' ')
                             .trimmed());
    }
    for (const ResourceError &error : read.errors)
        lines.append(QStringLiteral("%1:%2").arg(QString::number(error.line), error.column));
    return lines;
}

} // namespace

class ResourceRowsTest : public QObject
{
    Q_OBJECT

private slots:
    void reads_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *name, const QString &text, const QStringList &expected) {
            QTest::newRow(name) << text << expected;
        };
        row("pasted, blank lines, no end", "A1\t600001\t1,500\n\n\r\nA2\t600001\t20.00",
            {"A1 600001.SH SH 1500", "A2 600001.SH SH 20"});
        row("blanks between", "A1  600001   5", {"A1 600001.SH SH 5"});
        row("titles in any order", "备注,数量,代码,资金账号\nx,7,600001,A1\n", {"A1 600001.SH SH 7"});
        row("a code kept as text", "A1,\"=\"\"600001\"\"\",5", {"A1 600001.SH SH 5"});
        row("a pool, named as tables do", "A1,600001,,顾 t1,30", {"A1 600001.SH SH 30 t1"});
        row("pool and resource differ", "A1,600001,40,t1,30", {"1:数量"});
        row("two markets", "资金账号,代码,市场,数量\nA1,00001,,5\nA1,00001,szhk,5\nA1,00001,SH,5",
            {"A1 00001.HK SZHK 5", "2:市场", "4:市场"});
        row("numbers that are none",
            "A1,600001,1e3\nA2,600001,-5\nA3,600001,0\nA4,600001,\nA5,600001,1.5\n"
            "A6,600001,99999999999999999999\nA7,600001,1000000001\nA8,\"600001\",\"1,50\"",
            {"1:数量", "2:数量", "3:数量", "4:数量", "5:数量", "6:数量", "7:数量", "8:数量"});
        row("units of ten; stock with a pool and without", "A1,110001,25\nA1,110001,30,t1", {"1:数量", "2:交易员"});
        row("repeated", "A1,600001,5\nA2,600001,5\nA1,600001,6", {"A1 600001.SH SH 5", "A2 600001.SH SH 5", "3:代码"});
        row("every fault of a line", "B1,700000,x,z", {"1:资金账号", "1:代码", "1:交易员", "1:数量"});
        row("a column too few", "资金账号,数量\nA1,5", {"1:代码"});
        row("an open quote", "A1,600001,5\nA2,\"600001,5\nA3,600001,5", {"A1 600001.SH SH 5", "0:"});
        row("lines in a cell are counted", "A1,600001,5,\"t1\nx\"\nB1,600001,5",
            {"A1 600001.SH SH 5 t1\nx", "3:资金账号"});
    }
    void reads()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, expected);
        QCOMPARE(inShort(ResourceRows::read(text, false, directory())), expected);
    }

    void fileWithoutTitles()
    {
        QCOMPARE(inShort(ResourceRows::read(QStringLiteral("A1,600001,5\nA2,600001,5"), true, directory())),
                 QStringList({"1:资金账号", "1:代码", "1:数量"}));
    }

    void encodings()
    {
        QString errorText;
        const QString text = QStringLiteral("资金账号,备注");
        QCOMPARE(SheetText::decoded("\xEF\xBB\xBF" + text.toUtf8(), errorText), text);
        QCOMPARE(SheetText::decoded(QTextCodec::codecForName("GB18030")->fromUnicode(text), errorText), text);
        QVERIFY(errorText.isEmpty());
        QVERIFY(SheetText::decoded("a\nb\xFF\xFF\n", errorText).isEmpty());
        QVERIFY2(errorText.contains(QStringLiteral("第2行")), qPrintable(errorText));
    }
};

T0_REGISTER_TEST(ResourceRowsTest)

#include "ResourceRowsTest.moc"
