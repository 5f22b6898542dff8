#include "Books.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "Program.h"
#include "StandFields.h"
#include "Tests.h"
#include "UsageModel.h"

#include <QtTest/QtTest>

using namespace Master_Fields::ManualT0;
using namespace Program;
using Orvane_Fields::Security::orderID;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

const QStringList &traders()
{
    static const QStringList ids{"lead1", "trader1", "trader2", "trader3", "trader4"};
    return ids;
}

/// The day, and at its end the table of profits once more for each trader: its rows do not name him.
QByteArray script()
{
    QFile file(QStringLiteral(T0_DAY));
    QByteArray lines = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    for (const QString &trader : traders())
        lines += "GetProfitLossDataList [\"A000101\",\"A000102\",\"A000201\"] " + trader.toUtf8() + " \"\" \"\"\n";
    return lines;
}

QVector<VariantRecord> records(const QJsonValue &array)
{
    QVector<VariantRecord> rows;
    for (const QJsonValue &row : array.toArray())
        rows.append(row.toObject().toVariantMap());
    return rows;
}

QString text(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

/// What the day printed, by what was asked.
class Day
{
public:
    explicit Day(const Run &run)
    {
        for (const QJsonObject &line : run.lines()) {
            m_results[line.value("op").toString()].append(line.value("result"));
            for (const QJsonValue &out : line.value("out").toArray())
                m_orderRows += records(out);
        }
    }

    QVector<VariantRecord> rows(const char *operation, int index = -1) const
    {
        const QVector<QJsonValue> results = m_results.value(operation);
        return records(results.value(index < 0 ? results.size() + index : index));
    }

    QVector<VariantRecord> usageAtTheEnd() const
    {
        for (const QJsonValue &family : m_results.value("picture").last().toObject().value("families").toArray())
            if (family.toObject().value("name") == QLatin1String("RealtimeUsage"))
                return records(family.toObject().value("rows"));
        return {};
    }

    /// The texts of what did not succeed, in order, each once.
    QStringList refusals() const
    {
        QStringList texts;
        for (const VariantRecord &row : m_orderRows)
            if (row.value(Orvane_Fields::System::requestExeStatus) != "success")
                texts.append(text(row, Orvane_Fields::System::textDescription));
        texts.removeDuplicates();
        return texts;
    }

private:
    QMap<QString, QVector<QJsonValue>> m_results;
    QVector<VariantRecord> m_orderRows; ///< of orders and cancels
};

/// "account symbol exchange value" of each row, ascending.
QStringList lines(const QVector<VariantRecord> &rows, const QString &field)
{
    QStringList lines;
    for (const VariantRecord &row : rows)
        lines.append(UsageModel::key(QString(), row) +
                     QStringLiteral(" %1").arg(row.value(field).toDouble() + 0.0, 0, 'f', 4));
    lines.replaceInStrings("-0.0000", "0.0000");
    lines.sort();
    return lines;
}

/// The same of what the model says of the traders' records in some accounts.
QStringList realizedLines(const QVector<VariantRecord> &usages, const UsageModel &model)
{
    QVector<VariantRecord> rows;
    for (VariantRecord row : usages) {
        row.insert(RealizeProfit, model.usage(UsageModel::key(text(row, T0TraderId), row)).profit(0).realized);
        if (QStringList{"A000101", "A000102", "A000201"}.contains(text(row, tradingAccount)))
            rows.append(row);
    }
    return lines(rows, RealizeProfit);
}

QByteArray statuses(const QVector<VariantRecord> &orders)
{
    QByteArray all;
    for (const VariantRecord &order : orders)
        all += text(order, Orvane_Fields::Security::orderStatus).leftRef(1).toLatin1();
    return all;
}

} // namespace

class DayTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void printsTheSameBytesEveryTime();
    void ordersEndAsTheyShould();
    void theNextMorningFollowsFromTheFills();
    void profitsFollowFromTheFills();

private:
    UsageModel modelOfTheDay() const;

    const Books m_books = *Books::load(QStringLiteral(T0_SAMPLE_BOOKS)).books;
    Run m_tables[2];
    Day m_day{Run()};
};
T0_REGISTER_TEST(DayTest)

void DayTest::initTestCase()
{
    QProcess programs[3];
    for (QProcess &program : programs) {
        start(program, &program == programs ? QStringList{"--json"} : QStringList());
        program.write(script());
        program.closeWriteChannel();
    }
    const Run json = finish(programs[0]);
    QVERIFY2(json.exitCode == 0, qPrintable(json.errors));
    m_day = Day(json);
    for (int i = 0; i < 2; ++i) {
        m_tables[i] = finish(programs[i + 1]);
        QCOMPARE(m_tables[i].exitCode, 0);
    }
}

void DayTest::printsTheSameBytesEveryTime()
{
    QVERIFY(m_tables[0].output.size() > 10000);
    QCOMPARE(m_tables[0].output, m_tables[1].output);
}

void DayTest::ordersEndAsTheyShould()
{
    QCOMPARE(m_day.refusals(),
             (QStringList{"卖出数量应为100的整数倍，零股应一次性卖出", "委托价格必须是[0.01]的整数倍！",
                          "委托价格不是最小变动价位的整数倍", "价格不是有效价位，或超出涨跌停范围11.12到13.6",
                          "买入数量应为100的整数倍", "委托数量900000超过可用额度2700", "请求超时"}));
    // The two orders of the batch that timed out are cancelled like the one that was answered.
    QCOMPARE(statuses(m_day.rows("orders")), QByteArray("FFFFFFFFFFCCC"));
}

UsageModel DayTest::modelOfTheDay() const
{
    UsageModel model(m_books);
    for (const VariantRecord &order : m_day.rows("orders"))
        model.accept(order);
    for (const VariantRecord &fill : m_day.rows("fills"))
        model.fill(fill);
    return model;
}

void DayTest::theNextMorningFollowsFromTheFills()
{
    UsageModel model = modelOfTheDay();
    model.dayChange();
    QMap<QString, Usage> open = model.openOnes();
    for (const VariantRecord &row : m_day.usageAtTheEnd()) {
        const QString key = UsageModel::key(text(row, T0TraderId), row);
        const Usage usage = model.usage(key);
        const QString side = usage.side.isEmpty() ? QStringLiteral("NoOpenPos") : usage.side;
        QVERIFY2(text(row, PreUnclosedSide) == side && text(row, OpenPosSide) == side, qPrintable(key));
        const QVector<QPair<QString, double>> expected{
            {OpenPosQty, double(usage.net())},
            {PreUnclosedBoughtQty, double(usage.leg.bought)},
            {PreUnclosedSoldQty, double(usage.leg.sold)},
            {PreUnclosedBoughtAmount, usage.leg.boughtAmount},
            {PreUnclosedSoldAmount, usage.leg.soldAmount},
            {OpenAvgPrice, usage.average()},
            {PreUnclosedBuyLimit, double(usage.leg.sold)},
            {PreUnclosedSellLimit, double(usage.leg.bought)},
            {DailyBoughtQty, 0},
            {DailySoldQty, 0}};
        for (const auto &[field, value] : expected)
            QVERIFY2(qAbs(row.value(field).toDouble() - value) < 1e-6,
                     qPrintable(QStringLiteral("%1: %2 is %3, not %4")
                                    .arg(key, field, text(row, field), QString::number(value, 'g', 15))));
        open.remove(key);
    }
    for (auto usage = open.cbegin(); usage != open.cend(); ++usage)
        QVERIFY2(usage.key().contains("A000303"), qPrintable(usage.key())); // not for T0: nobody sees it
    QCOMPARE(model.usage("trader2_A000101_600004.SH_SH").net(), 0);         // was closed
    QCOMPARE(model.usage("trader1_A000101_600002.SH_SH").net(), -300);
}

void DayTest::profitsFollowFromTheFills()
{
    UsageModel model = modelOfTheDay();
    const QVector<VariantRecord> usages = m_day.usageAtTheEnd();
    QCOMPARE(lines(m_day.rows("GetProfitLossDataList", 0), RealizeProfit), realizedLines(usages, model));
    model.dayChange();
    QVector<VariantRecord> all;
    QMap<QString, double> prices;
    for (int i = 0; i < traders().size(); ++i) {
        for (const VariantRecord &row : m_day.rows("GetProfitLossDataList", 2 + i)) {
            all.append(row);
            const Usage usage = model.usage(UsageModel::key(traders().at(i), row));
            const double profit = row.value(FloatProfit).toDouble();
            if (usage.net() == 0 || !row.contains(FloatProfit)) {
                QCOMPARE(profit, 0.0);
                continue;
            }
            // The one price that gives this profit is on the tick, and the same for all who hold the share.
            const double price = usage.average() + profit / double(usage.net());
            QVERIFY2(qAbs(price * 1000 - qRound64(price * 1000)) < 1e-5, qPrintable(text(row, symbol)));
            const auto known = prices.insert(text(row, symbol), prices.value(text(row, symbol), price));
            QVERIFY2(qAbs(*known - price) < 1e-8, qPrintable(text(row, symbol)));
            QCOMPARE(row.value(TotalProfit).toDouble(), profit);
        }
    }
    QVERIFY(prices.size() > 8);
    QCOMPARE(lines(m_day.rows("GetProfitLossDataList", 1), TotalProfit), lines(all, TotalProfit));
}

#include "DayTest.moc"
