#include "BookFiles.h"
#include "BooksWriter.h"
#include "SampleBooks.h"
#include "TestBooks.h"
#include "Tests.h"

#include <QtCore/QTemporaryDir>
#include <QtCore/QTextCodec>
#include <QtTest/QtTest>

namespace {

Books::Loaded loaded(const TestBooks::Files &files)
{
    QTemporaryDir dir;
    TestBooks::write(files, dir.path());
    return Books::load(dir.path());
}

QString place(const QString &file, int row, const QString &column, const QString &value)
{
    return QStringLiteral("%1:%2 %3 \"%4\"").arg(file, QString::number(row), column, value);
}

QStringList places(const QVector<BookError> &errors)
{
    QStringList all;
    for (const BookError &error : errors)
        all.append(place(error.file, error.row, error.column, error.value));
    return all;
}

} // namespace

class BooksTest : public QObject
{
    Q_OBJECT

private slots:
    void namesEveryErrorAtOnce();
    void refuses_data();
    void refuses();
    void aBrokenFileIsOneError();
    void readsEveryEncoding_data();
    void readsEveryEncoding();
    void countsLinesAcrossQuotedCells();
    void sampleFilesAreWhatTheGeneratorWrites();
    void sampleBooksAreGoodAtEveryScale();
    void neverOverwritesBooks();
};

void BooksTest::namesEveryErrorAtOnce()
{
    TestBooks::Files files = TestBooks::sample();
    QStringList expected;
    const auto plant = [&](const QString &file, int row, const char *column, const char *value) {
        const int line = TestBooks::spoil(files, file, row, column, value);
        expected.append(place(file, line, column, QString::fromUtf8(value)));
    };
    // A cell that cannot be read hides no relation of the others in its row, and makes none up.
    plant(BookFiles::ticks(), 3, "tick", "none");
    plant(BookFiles::ticks(), 3, "from", "0.6");
    plant(BookFiles::ticks(), 5, "to", "x");
    plant(BookFiles::sessions(), 2, "from", "9:20:00");
    plant(BookFiles::sessions(), 3, "phase", "Lunch");
    plant(BookFiles::sessions(), 3, "to", "09:00:00");
    plant(BookFiles::instruments(), 1, "preClose", "cheap");
    plant(BookFiles::instruments(), 1, "maxQty", "99");
    plant(BookFiles::instruments(), 3, "lotSize", "x");
    plant(BookFiles::instruments(), 3, "tickTable", "XX");
    plant(BookFiles::accounts(), 2, "buyFee", "1.5");
    plant(BookFiles::users(), 2, "accounts", "A000101;A000201;A000302;A999999");
    plant(BookFiles::positions(), 1, "securityID", "6_1");
    plant(BookFiles::positions(), 1, "tradeable", "100000");
    plant(BookFiles::margin(), 1, "quantity", "-1");
    plant(BookFiles::resources(), 2, "quantity", "x");
    plant(BookFiles::pools(), 1, "maxExposure", "x");
    plant(BookFiles::pools(), 1, "quantity", "9000");
    plant(BookFiles::carried(), 1, "side", "Both");
    plant(BookFiles::safety(), 1, "tradeSwitch", "Off");
    plant(BookFiles::safety(), 1, "ordersPerSecond", "1001");
    plant(BookFiles::quotes(), 1, "last", "much");
    plant(BookFiles::quotes(), 1, "symbol", "600000.SH");

    const Books::Loaded result = loaded(files);
    QVERIFY(!result.books);
    QCOMPARE(places(result.errors), expected);
    for (const BookError &error : result.errors)
        QVERIFY2(!error.expected.isEmpty(), qPrintable(error.toText()));
}

void BooksTest::refuses_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("row");
    QTest::addColumn<QByteArray>("column");
    QTest::addColumn<QByteArray>("value");
    const auto add = [](const char *rule, const QString &file, int row, const char *column, const char *value) {
        QTest::newRow(rule) << file << row << QByteArray(column) << QByteArray(value);
    };
    add("symbol is security and suffix", BookFiles::instruments(), 1, "symbol", "600001.SZ");
    add("suffix belongs to the exchange", BookFiles::instruments(), 1, "marketSuffix", ".SZ");
    add("upper limit above the close", BookFiles::instruments(), 1, "upLimit", "12.36");
    add("lower limit below the close", BookFiles::instruments(), 1, "downLimit", "13");
    add("one factor for a symbol", BookFiles::instruments(), 44, "dispFactor", "2");
    add("one row a security", BookFiles::instruments(), 2, "securityID", "600001");
    add("not a number", BookFiles::instruments(), 1, "downLimit", "nan");
    add("no text for a number", BookFiles::instruments(), 1, "lotSize", "100.0");
    add("number too large", BookFiles::instruments(), 1, "maxQty", "99999999999999999999");
    add("bands start at 0", BookFiles::ticks(), 1, "from", "0.1");
    add("phases do not overlap", BookFiles::sessions(), 3, "from", "09:24:59");
    add("a time of day", BookFiles::sessions(), 1, "to", "09:20:60");
    add("ids without underscore", BookFiles::accounts(), 7, "tradingAccount", "A_1");
    add("one product an account", BookFiles::accounts(), 7, "tradingAccount", "A000101");
    add("one name a product", BookFiles::accounts(), 2, "productName", "Other");
    add("unknown kind of account", BookFiles::accounts(), 2, "assetProp", "Futures");
    add("public is no user", BookFiles::users(), 1, "userID", "public");
    add("ids without spaces", BookFiles::users(), 1, "userID", "man ager");
    add("unknown role", BookFiles::users(), 1, "roles", "Boss");
    add("one row a user", BookFiles::users(), 2, "userID", "manager1");
    add("security not in the books", BookFiles::positions(), 1, "securityID", "699999");
    add("exchange not of the account", BookFiles::accounts(), 2, "exchanges", "SH;SH");
    add("margin on a credit account", BookFiles::margin(), 1, "tradingAccount", "A000101");
    add("account not in the books", BookFiles::resources(), 1, "tradingAccount", "A999999");
    add("resources are not negative", BookFiles::resources(), 1, "quantity", "-100");
    add("trader not in the books", BookFiles::pools(), 1, "trader", "nobody");
    add("trader without the role", BookFiles::pools(), 1, "trader", "manager1");
    add("trader without the account", BookFiles::pools(), 1, "trader", "trader4");
    add("one pool a trader", BookFiles::pools(), 2, "trader", "trader1");
    add("pool without a resource", BookFiles::pools(), 1, "securityID", "600002");
    add("exposure below none", BookFiles::pools(), 1, "maxExposure", "-2");
    add("legs are of somebody", BookFiles::carried(), 1, "trader", "public");
    add("legs are not empty", BookFiles::carried(), 1, "quantity", "0");
    add("rules are of a trader", BookFiles::safety(), 1, "trader", "manager1");
    add("one row a trader", BookFiles::safety(), 2, "trader", "lead1");
    add("prices are not negative", BookFiles::quotes(), 1, "last", "-1");
}

void BooksTest::refuses()
{
    QFETCH(QString, file);
    QFETCH(int, row);
    QFETCH(QByteArray, column);
    QFETCH(QByteArray, value);
    TestBooks::Files files = TestBooks::sample();
    const int line = TestBooks::spoil(files, file, row, column.constData(), value);
    const Books::Loaded result = loaded(files);
    QVERIFY(!result.books);
    const QStringList found = places(result.errors);
    QVERIFY2(found.join(QLatin1Char('\n')).contains(QStringLiteral("%1:%2 ").arg(file, QString::number(line))),
             qPrintable(found.join(QLatin1Char('\n'))));
}

void BooksTest::aBrokenFileIsOneError()
{
    TestBooks::Files files = TestBooks::sample();
    const int line = TestBooks::spoil(files, BookFiles::accounts(), 0, "assetProp", "assetProperty");
    QCOMPARE(places(loaded(files).errors),
             QStringList{place(BookFiles::accounts(), line, "assetProp", "assetProperty")});
    // One stray byte is an error of its line; it does not make the whole file GB18030.
    files = TestBooks::sample();
    const int before = files[BookFiles::users()].count('\n');
    files[BookFiles::users()] += "x\xff\xfe,\x80\xff,ORG1,ManualT0Trader,\n";
    QCOMPARE(loaded(files).errors.size(), 1);
    QCOMPARE(loaded(files).errors.constFirst().row, before + 1);
    files = TestBooks::sample();
    files.remove(BookFiles::instruments());
    const QVector<BookError> errors = loaded(files).errors;
    QCOMPARE(errors.size(), 1);
    QCOMPARE(errors.constFirst().file, BookFiles::instruments());
}

void BooksTest::readsEveryEncoding_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<QByteArray>("lineEnd");
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << QByteArray() << QByteArray("\n");
    QTest::newRow("UTF-8 with a mark") << QByteArray("UTF-8") << QByteArray("\xEF\xBB\xBF") << QByteArray("\n");
    QTest::newRow("GB18030") << QByteArray("GB18030") << QByteArray() << QByteArray("\n");
    QTest::newRow("carriage returns") << QByteArray("GB18030") << QByteArray() << QByteArray("\r\n");
}

void BooksTest::readsEveryEncoding()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, mark);
    QFETCH(QByteArray, lineEnd);
    TestBooks::Files files = TestBooks::sample();
    for (QByteArray &text : files) {
        text = mark + QTextCodec::codecForName(codec)->fromUnicode(QString::fromUtf8(text));
        text.replace("\n", lineEnd);
    }
    const Books::Loaded result = loaded(files);
    QVERIFY2(result.books, qPrintable(places(result.errors).join(QLatin1Char('\n'))));
    QCOMPARE(result.books->instruments.constFirst().chineseName, QStringLiteral("星澜科技"));
    QCOMPARE(BooksWriter::files(*result.books), TestBooks::sample());
}

void BooksTest::countsLinesAcrossQuotedCells()
{
    TestBooks::Files files = TestBooks::sample();
    TestBooks::spoil(files, BookFiles::users(), 1, "userName", "\"Su,\n\n#1 \"\"Wang\"\"\"");
    QByteArray &users = files[BookFiles::users()];
    users.replace("\nlead1,", "\n\n# a leader\nlead1,");
    const int line = users.left(users.indexOf("\ntrader1,")).count('\n') + 2;
    users.replace("\ntrader1,", "\ntr_1,");
    QVERIFY(places(loaded(files).errors).contains(place(BookFiles::users(), line, "userID", "tr_1")));

    users.replace("\ntr_1,", "\ntrader1,");
    const Books::Loaded result = loaded(files);
    QVERIFY(result.books);
    QCOMPARE(result.books->users.constFirst().userName, QStringLiteral("Su,\n\n#1 \"Wang\""));
    const Books::Loaded again = loaded(BooksWriter::files(*result.books));
    QVERIFY(again.books);
    QCOMPARE(again.books->users.constFirst().userName, result.books->users.constFirst().userName);

    users += "\"open";
    QCOMPARE(loaded(files).errors.size(), 1);
    users.append("\n\xFF\xFF");
    QCOMPARE(loaded(files).errors.size(), 1);
}

void BooksTest::sampleFilesAreWhatTheGeneratorWrites()
{
    const TestBooks::Files files = TestBooks::sample();
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        QFile input(QStringLiteral(T0_SAMPLE_BOOKS "/") + file.key());
        QVERIFY2(input.open(QIODevice::ReadOnly), qPrintable(input.fileName()));
        QCOMPARE(input.readAll(), *file);
    }
}

void BooksTest::sampleBooksAreGoodAtEveryScale()
{
    for (const int scale : {1, 3, 40}) {
        const Books::Loaded result = loaded(BooksWriter::files(SampleBooks::make(scale)));
        QVERIFY2(result.books, qPrintable(places(result.errors).join(QLatin1Char('\n'))));
        QCOMPARE(result.books->instruments.size(), 44 * scale);
        QCOMPARE(result.books->accounts.size(), 7 * scale);
        QCOMPARE(result.books->users.size(), 6);
    }
}

void BooksTest::neverOverwritesBooks()
{
    QTemporaryDir dir;
    const Books books = SampleBooks::make(1);
    QCOMPARE(BooksWriter::write(books, dir.path()), QString());
    QVERIFY(!BooksWriter::write(SampleBooks::make(2), dir.path()).isEmpty());
    QCOMPARE(Books::load(dir.path()).books->accounts.size(), books.accounts.size());
}

T0_REGISTER_TEST(BooksTest)
#include "BooksTest.moc"
