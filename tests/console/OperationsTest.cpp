#include "Operations.h"
#include "RowOrder.h"
#include "Tests.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

namespace {

QString joined(const QString &text, const QStringList &list, const RecordList &rows, bool flag, int number,
               double &doubled, bool *found)
{
    doubled *= 2;
    *found = true;
    return QStringLiteral("%1 %2 %3 %4")
        .arg(text, list.join(QLatin1Char('+')), flag ? "yes" : "no", QString::number(number + rows.size()));
}

CommandLine parsed(const QString &line)
{
    CommandLine command;
    QString errorText;
    if (!CommandLine::parse(line, command, errorText))
        qFatal("%s", qPrintable(errorText));
    return command;
}

} // namespace

class OperationsTest : public QObject
{
    Q_OBJECT

private slots:
    void tableHoldsTheWholeFacade();
    void argumentsReachTheFunctionAndOutputsComeBack();
    void wrongKinds_data();
    void wrongKinds();
    void publicPoolsOfAMergedListKeepTheirPlace();
};
T0_REGISTER_TEST(OperationsTest)

void OperationsTest::tableHoldsTheWholeFacade()
{
    QFile header(QStringLiteral(T0_FACADE_HEADER));
    QVERIFY(header.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(header.readAll());
    const QString publicPart = text.mid(text.indexOf("public:"), text.indexOf("private:") - text.indexOf("public:"));
    QStringList declared;
    auto match =
        QRegularExpression(QStringLiteral("^    static [^=;(]*?(\\w+)\\("), QRegularExpression::MultilineOption)
            .globalMatch(publicPart);
    while (match.hasNext())
        declared.append(match.next().captured(1));
    QVERIFY(declared.size() > 40);

    QStringList inTable;
    for (const Operation &operation : facadeOperations())
        inTable.append(operation.name);
    declared.sort();
    inTable.sort();
    QCOMPARE(inTable, declared); // an overload stands twice in both
}

void OperationsTest::argumentsReachTheFunctionAndOutputsComeBack()
{
    const Operation op = operation("joined", joined);
    const CommandLine command = parsed(R"(joined 600001 ["a","b"] [{},{}] true 40 &1.5 &)");
    QCOMPARE(op.check(command.arguments), QString());
    const Outcome outcome = op.call(command.arguments);
    QCOMPARE(outcome.result, QVariant("600001 a+b yes 42"));
    QCOMPARE(outcome.out, (QVariantList{3.0, true}));
}

void OperationsTest::wrongKinds_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const char *arguments, const char *error) {
        QTest::newRow(name) << QString::fromUtf8(arguments) << QString::fromUtf8(error);
    };
    row("a list is no text", R"([] [] [] true 1 & &)", "argument 1: a text is expected, not []");
    row("a word is no list", R"(x x [] true 1 & &)", "argument 2: a list of texts is expected, not x");
    row("a number in a list of texts", R"(x ["a",1] [] true 1 & &)",
        "argument 2: a list of texts is expected, item 2 of it is none");
    row("a text in a list of records", R"(x [] ["a"] true 1 & &)",
        "argument 3: a list of records is expected, item 1 of it is none");
    row("a quoted truth is a text", R"(x [] [] "true" 1 & &)", R"(argument 4: true or false is expected, not "true")");
    row("1 is no truth", R"(x [] [] 1 1 & &)", "argument 4: true or false is expected, not 1");
    row("a fraction is no integer", R"(x [] [] true 1.5 & &)", "argument 5: an integer is expected, not 1.5");
    row("an integer of more than 32 bits", R"(x [] [] true 2147483648 & &)",
        "argument 5: an integer is expected, not 2147483648");
    row("nan is no integer", R"(x [] [] true nan & &)", "argument 5: an integer is expected, not nan");
    row("a start value of another kind", R"(x [] [] true 1 &"x" &)", R"(argument 6: a number is expected, not &"x")");
    row("a value where a reference is due", R"(x [] [] true 1 5 &)", "argument 6: & is expected, it is by reference");
    row("a reference where a value is due", R"(& [] [] true 1 & &)", "argument 1: a text is expected, not a reference");
}

void OperationsTest::wrongKinds()
{
    QFETCH(QString, arguments);
    const CommandLine command = parsed(QStringLiteral("joined ") + arguments);
    QTEST(operation("joined", joined).check(command.arguments), "error");
}

void OperationsTest::publicPoolsOfAMergedListKeepTheirPlace()
{
    const auto pool = [](const char *id, int type, bool merged) {
        VariantRecord record{{"PoolDetailId", id}, {"PoolType", type}};
        if (merged)
            record.insert("PublicPoolQty", 5);
        return QVariant(record);
    };
    const QVariantList rows{pool("P3", 1, true), pool("P2", 0, false), pool("P9", 1, false), pool("P8", 0, true),
                            pool("P1", 0, true)};
    QStringList ids;
    const QVariantList sorted = RowOrder::sorted(rows, RowOrder::byPoolId);
    for (const QVariant &row : sorted)
        ids.append(row.toMap().value("PoolDetailId").toString());
    QCOMPARE(ids, (QStringList{"P2", "P3", "P9", "P8", "P1"}));
}

#include "OperationsTest.moc"
