#include "Program.h"
#include "RandomOrders.h"
#include "Tests.h"

#include <QtCore/QJsonDocument>
#include <QtTest/QtTest>

using namespace Program;

namespace {

const char traderId[] = "trader1";

QByteArray json(const QJsonArray &array)
{
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

/// Orders while the morning passes: some are filled at once, some later, some never.
QByteArray tradingScript(const Books &books, int orders)
{
    RandomOrders random(books, traderId);
    const auto price = [&](const Instrument &instrument) {
        const double prices[] = {instrument.preClose, instrument.upLimit, instrument.downLimit};
        return prices[random.below(instrument.upLimit > 0 ? 3 : 1)];
    };
    QByteArray script = "exchange step 900\n"; // the opening auction is over
    for (int i = 0; i < orders; ++i) {
        script += "Order " + json({QJsonObject::fromVariantMap(random.next(price))}) + " & \"\"\n";
        if (i % 5 == 0)
            script += "exchange step " + QByteArray::number(1 + random.below(40)) + '\n';
    }
    return script;
}

} // namespace

class TwoClientsTest : public QObject
{
    Q_OBJECT

private slots:
    void traderAndManagerSeeOneUsage();
};
T0_REGISTER_TEST(TwoClientsTest)

/// T0_CLIENT_ORDERS: how many.
void TwoClientsTest::traderAndManagerSeeOneUsage()
{
    bool isGiven = false;
    const int given = qEnvironmentVariableIntValue("T0_CLIENT_ORDERS", &isGiven);
    const int orders = isGiven ? given : 1000;
    const Books books = *Books::load(QStringLiteral(T0_SAMPLE_BOOKS)).books;
    const QByteArray usage = "settle\nGetRealtimePoolDetailList " +
                             json(QJsonArray::fromStringList(books.user(traderId)->accounts)) + " [\"" + traderId +
                             "\"] \"\" \"\"\n";
    const QString name = QStringLiteral("t0-clients-test-%1").arg(QCoreApplication::applicationPid());
    QProcess gateway;
    QVERIFY(serve(gateway, name));

    QProcess manager;
    QByteArray line;
    start(manager, {"--json", "--connect", name, "--user", "manager1"});
    manager.write(QByteArray(initAndWait) + "settle\necho ready\n");
    QVERIFY(readUntil(manager, "ready", line));
    const Run trader = runConsole(initAndWait + usage + tradingScript(books, orders) + usage,
                                  {"--json", "--connect", name, "--user", traderId});
    manager.write(usage); // of what was pushed to him while the other traded
    manager.closeWriteChannel();
    const Run seen = finish(manager);
    gateway.terminate();
    QCOMPARE(finish(gateway).exitCode, 0);

    const QVector<QJsonObject> lines = trader.lines();
    const QJsonArray after = lines.constLast().value("result").toArray();
    const auto accepted = std::count_if(lines.cbegin(), lines.cend(), [](const QJsonObject &answer) {
        return answer.value("op") == QLatin1String("Order") && answer.value("result") == QLatin1String("success");
    });
    QVERIFY2(accepted > orders / 5, QByteArray::number(qint64(accepted)));
    QVERIFY(resultOf(trader, "GetRealtimePoolDetailList") != after);
    QCOMPARE(json(resultOf(seen, "GetRealtimePoolDetailList")), json(after));
}

#include "TwoClientsTest.moc"
