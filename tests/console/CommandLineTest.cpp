#include "CommandLine.h"
#include "Tests.h"

#include <QtTest/QtTest>

class CommandLineTest : public QObject
{
    Q_OBJECT

private slots:
    void argumentsAreToldApart_data();
    void argumentsAreToldApart();
    void badLines_data();
    void badLines();
};
T0_REGISTER_TEST(CommandLineTest)

void CommandLineTest::argumentsAreToldApart_data()
{
    using Kind = Argument::Kind;
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *name, const char *line, const char *text, Kind kind, const QVariant &value) {
        QTest::newRow(name) << QString::fromUtf8(line) << QString::fromUtf8(text) << int(kind) << value;
    };
    row("a bare word has no value yet", "op 600001", "600001", Kind::Word, {});
    row("a quote inside a word is part of it", "op a\"b", "a\"b", Kind::Word, {});
    row("a quoted text keeps its spaces", "op \"a  b\"", "\"a  b\"", Kind::Json, "a  b");
    row("an escaped quote does not end a text", R"(op "a\"] b")", R"("a\"] b")", Kind::Json, "a\"] b");
    row("an empty text", "op \"\"", "\"\"", Kind::Json, "");
    row("brackets in a text do not count", R"(op ["]", "x"])", R"(["]", "x"])", Kind::Json, QVariantList{"]", "x"});
    row("lists in records", R"(op {"a":[1,{"b":2}]})", R"({"a":[1,{"b":2}]})", Kind::Json,
        QVariantMap{{"a", QVariantList{1LL, QVariantMap{{"b", 2LL}}}}});
    row("64 bits stay exact", "op [9007199254740993]", "[9007199254740993]", Kind::Json,
        QVariantList{9007199254740993LL});
    row("a reference that starts empty", "op &", "&", Kind::Reference, {});
    row("a reference with a record list", R"(op &[{"a":1}])", R"(&[{"a":1}])", Kind::Reference,
        QVariantList{QVariantMap{{"a", 1LL}}});
    row("a reference with a number", "op &1.5", "&1.5", Kind::Reference, 1.5);
    row("a reference with a truth", "op &true", "&true", Kind::Reference, true);
    row("spaces and tabs around", " \top\t x \r", "x", Kind::Word, {});
}

void CommandLineTest::argumentsAreToldApart()
{
    QFETCH(QString, line);
    QFETCH(QVariant, value);
    CommandLine command;
    QString errorText;
    QVERIFY2(CommandLine::parse(line, command, errorText), qPrintable(errorText));
    QCOMPARE(command.name, QStringLiteral("op"));
    QCOMPARE(command.arguments.size(), 1);
    QTEST(command.arguments.at(0).text, "text");
    QTEST(int(command.arguments.at(0).kind), "kind");
    QCOMPARE(command.arguments.at(0).value, value);
}

void CommandLineTest::badLines_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const char *line, const char *error) {
        QTest::newRow(name) << QString::fromUtf8(line) << QString::fromUtf8(error);
    };
    row("text without end", "op \"a", "column 4: bad JSON, it is not closed");
    row("text that ends in its escape", "op \"a\\", "column 4: bad JSON, it is not closed");
    row("list without end", "op x [1, 2", "column 6: bad JSON, it is not closed");
    row("brackets that do not match", "op [1}", "column 6: bad JSON, missing value separator");
    row("something missing inside", R"(op {"星":1,})", "column 11: bad JSON, object is missing after a comma");
    row("no space behind", "op [1]x", "column 7: a space is missing behind an argument");
    row("a word is no start value", "op &abc", "column 5: bad JSON, illegal number");
}

void CommandLineTest::badLines()
{
    QFETCH(QString, line);
    CommandLine command;
    QString errorText;
    QVERIFY(!CommandLine::parse(line, command, errorText));
    QTEST(errorText, "error");
}

#include "CommandLineTest.moc"
