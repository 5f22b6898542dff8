#include "Books.h"
#include "Program.h"
#include "Tests.h"

#include <QtCore/QJsonDocument>
#include <QtTest/QtTest>

#include <random>

using namespace Program;

namespace {

const char traderId[] = "trader1";

QByteArray json(const QJsonArray &array)
{
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

/// Orders in what a trader may use, many of them more than he may, while the morning passes.
class RandomScript
{
public:
    explicit RandomScript(const Books &books)
        : m_books(books)
    {
        const QStringList accounts = books.user(traderId)->accounts;
        for (const OpeningPool &pool : books.pools)
            if (accounts.contains(pool.holding.account) &&
                (pool.trader == traderId || pool.trader == Books::publicTrader()))
                m_pools.append(pool);
    }

    QByteArray make(int orders)
    {
        QByteArray script = "exchange step 900\n"; // to the end of the opening auction
        for (int i = 0; i < orders; ++i) {
            script += "Order " + json({order()}) + " & \"\"\n";
            if (i % 5 == 0)
                script += "exchange step " + QByteArray::number(1 + below(40)) + '\n';
        }
        return script;
    }

private:
    int below(int end) { return int(m_random() % quint32(end)); }

    QJsonObject order()
    {
        const OpeningPool pool = m_pools.at(below(m_pools.size()));
        const Instrument &instrument = *m_books.instrument(pool.holding.securityID, pool.holding.exchange);
        const double prices[] = {instrument.preClose, instrument.preClose, instrument.upLimit, instrument.downLimit};
        const bool buys = below(2) == 0;
        return {{"tradingAccount", pool.holding.account},
                {"symbol", instrument.symbol},
                {"securityExchange", instrument.exchange},
                {"SideUnion", buys ? "normalBuy" : "normalSell"},
                {"price", prices[below(instrument.upLimit > 0 ? 4 : 1)]},
                {"orderQty", double(instrument.lotSize * (1 + below(5)))}};
    }

    const Books &m_books;
    QVector<OpeningPool> m_pools;
    std::mt19937 m_random{1};
};

/// How many orders of a run were accepted.
int accepted(const Run &run)
{
    int count = 0;
    for (const QJsonObject &line : run.lines())
        count += line.value("op") == QLatin1String("Order") && line.value("result") == QLatin1String("success");
    return count;
}

} // namespace

class TwoClientsTest : public QObject
{
    Q_OBJECT

private slots:
    void traderAndManagerSeeOneUsage();
};
T0_REGISTER_TEST(TwoClientsTest)

/// T0_CLIENT_ORDERS: how many orders.
void TwoClientsTest::traderAndManagerSeeOneUsage()
{
    bool isGiven = false;
    const int given = qEnvironmentVariableIntValue("T0_CLIENT_ORDERS", &isGiven);
    const int orders = isGiven ? given : 1000;
    const Books books = *Books::load(QStringLiteral(T0_SAMPLE_BOOKS)).books;
    const QString name = QStringLiteral("t0-clients-test-%1").arg(QCoreApplication::applicationPid());
    QProcess gateway;
    QVERIFY(serve(gateway, name));

    QProcess manager;
    QByteArray line;
    start(manager, {"--json", "--connect", name, "--user", "manager1"});
    manager.write(QByteArray(initAndWait) + "settle\necho ready\n");
    QVERIFY(readUntil(manager, "ready", line));
    const QByteArray usage = "settle\nGetRealtimePoolDetailList " +
                             json(QJsonArray::fromStringList(books.user(traderId)->accounts)) + " [\"" + traderId +
                             "\"] \"\" \"\"\n";
    const Run trader = runConsole(initAndWait + usage + "echo traded\n" + RandomScript(books).make(orders) + usage,
                                  {"--json", "--connect", name, "--user", traderId});
    QCOMPARE(trader.exitCode, 0);
    manager.write(usage); // of what was pushed to him while the other traded
    manager.closeWriteChannel();
    const Run seen = finish(manager);
    gateway.terminate();
    QCOMPARE(finish(gateway).exitCode, 0);

    const QJsonArray before = resultOf(trader, "GetRealtimePoolDetailList");
    const QJsonArray after = trader.lines().constLast().value("result").toArray();
    QVERIFY(!after.isEmpty());
    QVERIFY(before != after);
    QVERIFY2(accepted(trader) > orders / 4, QByteArray::number(accepted(trader)));
    QCOMPARE(json(resultOf(seen, "GetRealtimePoolDetailList")), json(after));
}

#include "TwoClientsTest.moc"
