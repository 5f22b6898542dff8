#include "Store.h"
#include "SampleBooks.h"
#include "TestBooks.h"
#include "Tests.h"

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

QString refusalOf(const QString &file, const Books &books)
{
    QString errorText;
    return Store::open(file, books, errorText) ? QString() : errorText;
}

} // namespace

class StoreTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void beginsWithTheBooksAndKeepsItsOwn();
    void modifyTimesFollowTheClock_data();
    void modifyTimesFollowTheClock();
    void refusesOtherBooksAndASecondGateway();
    void refusesWhatIsNotItsOwn();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_file;
};

void StoreTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_file = m_dir->filePath(QStringLiteral("state"));
}

void StoreTest::beginsWithTheBooksAndKeepsItsOwn()
{
    Books books = TestBooks::withRows(3);
    books.carried = {{"t2", books.resources.at(1).holding, "SellOpen", 200, 1998}};
    books.safety = {{"t1", {Stand_Values::TradeSwitch::Halted, 5, 60, 500, true}}};
    books.buildIndexes();
    QString errorText;
    {
        const auto store = Store::open(m_file, books, errorText);
        QVERIFY2(store, qPrintable(errorText));
        QCOMPARE(store->resources("A1", QString(), 10).size(), 3);
        QCOMPARE(store->allUsage().value(0).use.leg.soldAmount, 1998.0);
    }
    // Tomorrow's books have another opening state and another security: the state is the older one.
    books.resources.clear();
    books.pools.clear();
    books.safety.clear();
    books.instruments.append(SampleBooks::make(1).instruments.at(0));
    books.buildIndexes();
    const auto store = Store::open(m_file, books, errorText);
    QVERIFY2(store, qPrintable(errorText));
    QCOMPARE(store->resources("A1", QString(), 10).size(), 3);
    QCOMPARE(store->pools("A1", QString(), 10).size(), 3);
    QVERIFY(store->allUsage().value(0).use.leg.side == Ledger::Side::SellOpen);
    const SafetyRules rules = store->safetyOf("t1");
    QVERIFY(rules.isHalted() && rules.refuseSelfMatch);
    QCOMPARE((QVector<int>{rules.ordersPerSecond, rules.cancelsPerMinute, rules.duplicateMs}),
             (QVector<int>{5, 60, 500}));
    QVERIFY(store->safetyOf("t2").isActive() && !store->safetyOf("t2").refuseSelfMatch);
}

void StoreTest::modifyTimesFollowTheClock_data()
{
    QTest::addColumn<QString>("last");
    QTest::addColumn<QString>("clock");
    QTest::addColumn<QString>("next");
    const auto row = [](const char *name, const char *last, const char *clock, const char *next) {
        QTest::newRow(name) << QString(last) << QString(clock) << QString(next);
    };
    row("a later millisecond", "20260105091500000041", "20260105091500001", "20260105091500001000");
    row("the counter is full", "20260105091500000999", "20260105091500000", "20260105091500001000");
    row("over midnight", "20260105235959999999", "20260105235959999", "20260106000000000000");
    row("the clock was set back", "20260106100000000007", "20260105091500000", "20260106100000000008");
}

void StoreTest::modifyTimesFollowTheClock()
{
    QFETCH(QString, last);
    QFETCH(QString, clock);
    const auto ms = [](const QString &text) {
        QDateTime time = QDateTime::fromString(text.left(17), QStringLiteral("yyyyMMddHHmmsszzz"));
        time.setTimeSpec(Qt::UTC);
        return time.toMSecsSinceEpoch();
    };
    QString errorText;
    Store::open(m_file, TestBooks::withRows(1), errorText).reset();
    TestBooks::runSql(m_file, QStringLiteral("UPDATE clock SET market_ms = %1, modify_ms = %2, modify_counter = %3")
                                  .arg(QString::number(ms(clock)), QString::number(ms(last)), last.right(3)));
    const auto store = Store::open(m_file, TestBooks::withRows(1), errorText);
    QVERIFY2(store, qPrintable(errorText));
    QTEST(store->nextModifyTime(), "next");
}

void StoreTest::refusesOtherBooksAndASecondGateway()
{
    QString errorText;
    {
        const auto first = Store::open(m_file, SampleBooks::make(1), errorText);
        QVERIFY(first);
        QVERIFY(refusalOf(m_file, SampleBooks::make(1)).contains(QStringLiteral("another gateway uses it")));
    }
    QVERIFY(refusalOf(m_file, SampleBooks::make(2)).contains(QStringLiteral("other books")));
    Books otherUnits = SampleBooks::make(1);
    for (Instrument &instrument : otherUnits.instruments)
        instrument.dispFactor = 1000000;
    QVERIFY(refusalOf(m_file, otherUnits).contains(QStringLiteral("other books")));
    QCOMPARE(refusalOf(m_file, SampleBooks::make(1)), QString());
}

void StoreTest::refusesWhatIsNotItsOwn()
{
    const Books books = TestBooks::withRows(1);
    QString errorText;
    Store::open(m_file, books, errorText).reset();
    TestBooks::runSql(m_file, QStringLiteral("PRAGMA user_version = 6"));
    QVERIFY(refusalOf(m_file, books).contains(QStringLiteral("a newer gateway: its version is 6")));
    TestBooks::runSql(m_file, QStringLiteral("PRAGMA user_version = 2"));
    QVERIFY(refusalOf(m_file, books).contains(QStringLiteral("an older gateway: its version is 2")));

    const QString foreign = m_dir->filePath(QStringLiteral("foreign"));
    TestBooks::runSql(foreign, QStringLiteral("CREATE TABLE t (x)"));
    QVERIFY(refusalOf(foreign, books).contains(QStringLiteral("not the state of a gateway")));

    QFile text(m_dir->filePath(QStringLiteral("text")));
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write(QByteArray(10000, 'x')) > 0);
    text.close();
    QVERIFY(refusalOf(text.fileName(), books).contains(text.fileName()));
    QVERIFY(!refusalOf(m_dir->filePath(QStringLiteral("no/such/folder")), books).isEmpty());
}

T0_REGISTER_TEST(StoreTest)
#include "StoreTest.moc"
