#include "ProfitRows.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "ProfitHistory.h"
#include "Tests.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>
#include <QtTest/QtTest>

using namespace Master_Fields::ManualT0;
using Group = ProfitRows::Group;

namespace {

UsageEntry entry(const QString &trader, const QString &account, const QString &symbol, double open, double average)
{
    return {{{T0TraderId, trader},
             {Orvane_Fields::UserAccount::tradingAccount, account},
             {Orvane_Fields::Security::symbol, symbol},
             {OpenPosQty, open},
             {OpenAvgPrice, average},
             {RtRealBoughtQty, open > 0 ? open : 0}},
            {}};
}

UsageEntry priced(UsageEntry entry, double profit, double exposure, std::optional<double> limit = {})
{
    entry.figures = {10., profit, 0., profit, exposure, limit};
    return entry;
}

QHash<QString, UsageEntry> records()
{
    return {{"a", priced(entry("t1", "A1", "X", 100, 9), 100, 1000, 5000)},
            {"b", priced(entry("t2", "A1", "X", -50, 11), -30, 500)},
            {"c", entry("t1", "A2", "Y", 70, 3)},
            {"d", entry("t1", "A1", "Z", 0, qQNaN())}};
}

/// The row of the records above in which a field has a value.
VariantRecord rowOf(Group group, const QString &field, const QString &value)
{
    ProfitRows rows(group, {});
    rows.replace(records());
    for (const VariantRecord &row : rows.rows()) {
        if (row.value(field) == value)
            return row;
    }
    return {};
}

QDateTime at(int marketSeconds)
{
    return QDateTime(QDate(2026, 1, 5), QTime(9, 30), Qt::UTC).addSecs(marketSeconds);
}

} // namespace

class ProfitRowsTest : public QObject
{
    Q_OBJECT

private slots:
    void rowsWithoutPriceAreCountedNotSummed()
    {
        const VariantRecord trader = rowOf(Group::Trader, T0TraderId, "t1");
        QCOMPARE(trader.value(ProfitFields::records()).toInt(), 3);
        QCOMPARE(trader.value(ProfitFields::withoutPrice()).toInt(), 2);
        QCOMPARE(trader.value(TotalProfit).toDouble(), 100.);
        QVERIFY2(!trader.contains(OpenPosQty), "shares of several securities are no quantity");
        QVERIFY(!rowOf(Group::Symbol, Orvane_Fields::Security::symbol, "Y").contains(TotalProfit));
    }

    void limitIsUsedByWhatIsLimitedOnly()
    {
        const VariantRecord account = rowOf(Group::Account, Orvane_Fields::UserAccount::tradingAccount, "A1");
        QCOMPARE(account.value(ProfitFields::exposure()).toDouble(), 1500.);
        QCOMPARE(account.value(ProfitFields::limitShare()).toDouble(), 0.2);
    }

    void longAgainstShortHasNoAverage()
    {
        const VariantRecord mixed = rowOf(Group::Symbol, Orvane_Fields::Security::symbol, "X");
        QCOMPARE(mixed.value(OpenPosQty).toDouble(), 50.);
        QVERIFY(!mixed.contains(OpenAvgPrice));
        const VariantRecord oneSided = rowOf(Group::Symbol, Orvane_Fields::Security::symbol, "Y");
        QCOMPARE(oneSided.value(OpenAvgPrice).toDouble(), 3.);
    }

    void changeCostsItsGroupAndIsNotCountedTwice()
    {
        ProfitRows rows(Group::Symbol, {{}, {}, {}, true});
        rows.replace(records());
        QCOMPARE(rows.rows().size(), 2); // nobody has traded Z
        rows.put("a", priced(entry("t1", "A1", "X", 100, 9), 250, 1000));
        rows.put("d", priced(entry("t1", "A1", "Z", 10, 3), 1, 30));
        QCOMPARE(rows.takeChanged().size(), 2);
        QVERIFY(rows.takeChanged().isEmpty());
        QCOMPARE(rows.total().totalProfit, 221.);
    }

    void curveSurvivesARestartButNotAClockThatWasSetBack()
    {
        QTemporaryDir folder;
        const QString file = folder.filePath("profit.sqlite");
        {
            ProfitHistory history(file);
            history.add({at(0), at(0), 1});
            history.add({at(5), at(5), 2});
            history.add({at(5), at(6), 3}); // the clock stood
            history.add({at(60), at(60), 4});
            history.add({at(-86400), at(-86400), 9}); // another day
        }
        for (const auto &[now, count] : {std::pair(100, 3), std::pair(30, 2), std::pair(100, 2)}) {
            ProfitHistory history(file);
            QVector<ProfitSample> samples;
            bool isLoaded = false; // a spy would listen on the history's thread
            connect(&history, &ProfitHistory::loaded, this, [&](const QVector<ProfitSample> &read) {
                samples = read;
                isLoaded = true;
            });
            history.load(at(now));
            QTRY_VERIFY(isLoaded);
            QCOMPARE(samples.size(), count);
            QCOMPARE(samples.at(1).profit, 3.);
            QCOMPARE(ProfitHistory::unbroken(samples).size(), count - 1); // the last came after a pause
        }
    }
};

T0_REGISTER_TEST(ProfitRowsTest)
#include "ProfitRowsTest.moc"
