#include "MasterFields.h"
#include "OrvaneFields.h"
#include "Program.h"
#include "Tests.h"
#include "UsageModel.h"

#include <QtTest/QtTest>

using namespace Master_Fields::ManualT0;
using namespace Program;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::tradingAccount;
using Records = QVector<VariantRecord>;

namespace {

const char accounts[] = "[\"A000101\",\"A000102\",\"A000201\"]";
const char *const traders[] = {"lead1", "trader1", "trader2", "trader3"};

/// The day, and at its end the table of profits once more for each trader: its rows do not name him.
QByteArray script()
{
    QFile file(QStringLiteral(T0_DAY));
    QByteArray lines = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    for (const char *trader : traders)
        lines += QByteArray("GetProfitLossDataList ") + accounts + ' ' + trader + " \"\" \"\"\n";
    return lines;
}

Records records(const QJsonValue &array)
{
    Records rows;
    for (const QJsonValue &row : array.toArray())
        rows.append(row.toObject().toVariantMap());
    return rows;
}

QString text(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

/// The results of an operation, in order.
QVector<QJsonValue> results(const Run &run, const char *operation)
{
    QVector<QJsonValue> all;
    for (const QJsonObject &line : run.lines())
        if (line.value("op") == QLatin1String(operation))
            all.append(line.value("result"));
    return all;
}

Records usageOf(const QJsonValue &picture)
{
    for (const QJsonValue &family : picture.toObject().value("families").toArray())
        if (family.toObject().value("name") == QLatin1String("RealtimeUsage"))
            return records(family.toObject().value("rows"));
    return {};
}

/// The texts of orders and cancels that did not succeed, in order, each once.
QStringList refusals(const Run &run)
{
    QStringList texts;
    for (const QJsonObject &line : run.lines())
        for (const QJsonValue &out : line.value("out").toArray())
            for (const VariantRecord &row : records(out))
                if (row.value(Orvane_Fields::System::requestExeStatus) != "success")
                    texts.append(text(row, Orvane_Fields::System::textDescription));
    texts.removeDuplicates();
    return texts;
}

/// "account symbol exchange value" of each row in one of the accounts, ascending.
QStringList lines(const Records &rows, const QString &field)
{
    QStringList lines;
    for (const VariantRecord &row : rows)
        if (QByteArray(accounts).contains(text(row, tradingAccount).toLatin1()))
            lines.append(
                UsageModel::key(QString(), row) +
                QStringLiteral(" %1").arg(row.value(field).toDouble(), 0, 'f', 4).replace("-0.0000", "0.0000"));
    lines.sort();
    return lines;
}

} // namespace

class DayTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void ordersEndAsTheyShould();
    void theNextMorningFollowsFromTheFills();
    void realizedProfitsFollowFromTheFills();
    void floatProfitsFollowFromTheFills();

private:
    Run m_day;
    UsageModel m_evening{*Books::load(QStringLiteral(T0_SAMPLE_BOOKS)).books};
    UsageModel m_morning = m_evening;
};
T0_REGISTER_TEST(DayTest)

/// Its output is the same bytes in every run.
void DayTest::initTestCase()
{
    QProcess programs[3];
    for (QProcess &program : programs) {
        start(program, &program == programs ? QStringList{"--json"} : QStringList());
        program.write(script());
        program.closeWriteChannel();
    }
    m_day = finish(programs[0]);
    QVERIFY2(m_day.exitCode == 0, qPrintable(m_day.errors));
    const Run tables = finish(programs[1]);
    QVERIFY(tables.exitCode == 0 && tables.output.size() > 10000);
    QCOMPARE(finish(programs[2]).output, tables.output);

    for (const VariantRecord &order : records(results(m_day, "orders").value(0)))
        m_evening.accept(order);
    for (const VariantRecord &fill : records(results(m_day, "fills").value(0)))
        m_evening.fill(fill);
    m_morning = m_evening;
    m_morning.dayChange();
}

void DayTest::ordersEndAsTheyShould()
{
    QCOMPARE(refusals(m_day),
             (QStringList{"卖出数量应为100的整数倍，零股应一次性卖出", "委托价格必须是[0.01]的整数倍！",
                          "委托价格不是最小变动价位的整数倍", "价格不是有效价位，或超出涨跌停范围11.12到13.6",
                          "买入数量应为100的整数倍", "委托数量900000超过可用额度2700", "请求超时"}));
    QString statuses;
    for (const VariantRecord &order : records(results(m_day, "orders").value(0)))
        statuses += text(order, Orvane_Fields::Security::orderStatus).at(0);
    // The two orders of the batch that timed out are cancelled, like the one whose batch was answered.
    QCOMPARE(statuses, QStringLiteral("FFFFFFFFFFCCC"));
}

void DayTest::theNextMorningFollowsFromTheFills()
{
    QMap<QString, Usage> missing = m_morning.usage;
    for (const VariantRecord &row : usageOf(results(m_day, "picture").last())) {
        const QString key = UsageModel::key(text(row, T0TraderId), row);
        const Usage usage = missing.take(key);
        QCOMPARE(text(row, PreUnclosedSide), usage.side.isEmpty() ? QStringLiteral("NoOpenPos") : usage.side);
        const QVector<QPair<QString, double>> expected{{OpenPosQty, double(usage.net())},
                                                       {OpenAvgPrice, usage.average()},
                                                       {PreUnclosedBoughtQty, double(usage.leg.bought)},
                                                       {PreUnclosedSoldQty, double(usage.leg.sold)},
                                                       {PreUnclosedBoughtAmount, usage.leg.boughtAmount},
                                                       {PreUnclosedSoldAmount, usage.leg.soldAmount},
                                                       {PreUnclosedBuyLimit, double(usage.leg.sold)},
                                                       {PreUnclosedSellLimit, double(usage.leg.bought)},
                                                       {DailyBoughtQty, 0},
                                                       {DailySoldQty, 0}};
        for (const auto &[field, value] : expected)
            QVERIFY2(qAbs(row.value(field).toDouble() - value) < 1e-6,
                     qPrintable(key + ' ' + field + ' ' + text(row, field)));
    }
    for (auto usage = missing.cbegin(); usage != missing.cend(); ++usage)
        QVERIFY2(usage.key().contains("A000303"), qPrintable(usage.key())); // not for T0: nobody sees it
}

void DayTest::realizedProfitsFollowFromTheFills()
{
    Records expected = usageOf(results(m_day, "picture").last());
    for (VariantRecord &row : expected)
        row.insert(RealizeProfit, m_evening.usage.value(UsageModel::key(text(row, T0TraderId), row)).realized());
    QCOMPARE(lines(records(results(m_day, "GetProfitLossDataList").value(0)), RealizeProfit),
             lines(expected, RealizeProfit));
}

void DayTest::floatProfitsFollowFromTheFills()
{
    const QVector<QJsonValue> tables = results(m_day, "GetProfitLossDataList");
    Records all;
    QMap<QString, double> prices;
    for (int i = 0; i < int(std::size(traders)); ++i) {
        for (const VariantRecord &row : records(tables.value(2 + i))) {
            all.append(row);
            const Usage usage = m_morning.usage.value(UsageModel::key(traders[i], row));
            const double profit = row.value(FloatProfit).toDouble();
            if (usage.net() == 0 || !row.contains(FloatProfit)) {
                QCOMPARE(profit, 0.0);
                continue;
            }
            // The one price that gives this profit is on the tick, and the same for all who hold the share.
            const double price = usage.average() + profit / double(usage.net());
            const auto known = prices.insert(text(row, symbol), prices.value(text(row, symbol), price));
            QVERIFY2(qAbs(price * 1000 - qRound64(price * 1000)) < 1e-5 && qAbs(*known - price) < 1e-8,
                     qPrintable(text(row, symbol)));
        }
    }
    QVERIFY(prices.size() > 8);
    QCOMPARE(lines(records(tables.value(1)), TotalProfit), lines(all, FloatProfit));
}

#include "DayTest.moc"
