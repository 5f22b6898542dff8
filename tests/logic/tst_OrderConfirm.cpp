#include "LogicTest.h"
#include "Tests.h"

#include "MasterConstants.h"

#include <random>

using namespace Master_Fields::ManualT0;
using MasterConstants::SettingFieldName::ManualT0Settings::TradeCustQty;
using Rows::order;

namespace {

constexpr qint64 Max = std::numeric_limits<qint64>::max();

ScriptedReference::Instrument instrument(const QString &id, int factor, int step, const QVariant &least)
{
    using namespace Stand_Fields::Security;
    return {id + ".SH", id, "SH", factor, 0, "StockType", "MainBoardStock", {{qtyStep, step}, {minQty, least}}};
}

/// "account quantity" of each, and the side where it is not an ordinary one.
QStringList shown(const RecordList &rows)
{
    QStringList lines;
    for (const VariantRecord &row : rows) {
        const QString side = text(row, "SideUnion");
        lines.append(text(row, "tradingAccount") + ' ' + text(row, "orderQty") +
                     (side.startsWith("normal") ? QString() : ' ' + side));
    }
    return lines;
}

/// What is left of an account in one direction of a symbol.
struct Room {
    qint64 quota = 0;
    qint64 close = 0;
};

/// Step and least quantity.
QMap<QString, QPair<int, int>> sizes()
{
    return {{"600000.SH", {100, 100}}, {"688001.SH", {1, 200}}, {"110001.SH", {10, 10}}};
}

} // namespace

/// Shares 600000 come in steps of 100, 688001 in steps of 1 from 200 on, bonds 110001 (display factor 10) in steps of
/// 10. A3 is a credit account.
class OrderConfirmTest : public LogicTest
{
    Q_OBJECT

private slots:
    void examples_data();
    void examples();
    void rowsAreCopies();
    void extremes();
    void placesWhatFitsByPriority();

private:
    int upTo(int limit) { return int(engine() % unsigned(limit)); }
    RecordList randomOrders();
    void drawRooms(const QString &time);
    void isPlacedWell(const VariantRecord &wanted, const RecordList &rows, qint64 rest);
    void startDesk(const QStringList &priority);
    void setRoom(const QString &account, const QString &symbol, const QString &time, qint64 buy, qint64 sell,
                 qint64 net);

    QStringList own; ///< the user's accounts by priority
    QMap<QString, Room> rooms;
    std::mt19937 engine{1};
};

void OrderConfirmTest::startDesk(const QStringList &priority)
{
    close();
    desk.instruments = {instrument("600000", 1, 100, 100), instrument("688001", 1, 1, 200),
                        instrument("110001", 10, 10, 10), instrument("900001", 1, 7, 1e300)};
    open(Mode::ByHand);
    start();
    answerPriority(priority);
    takeEvents();
}

/// What u1 may trade of a symbol and what he has open, display units.
void OrderConfirmTest::setRoom(const QString &account, const QString &symbol, const QString &time, qint64 buy,
                               qint64 sell, qint64 net)
{
    const double factor = symbol == "110001.SH" ? 10 : 1;
    push(Rows::usage(account, "u1", symbol.section('.', 0, 0) + " SH", time,
                     {{DailyBuyLimit, buy / factor},
                      {DailySellLimit, sell / factor},
                      {net > 0 ? DailyBoughtQty : DailySoldQty, qAbs(net) / factor}}));
}

void OrderConfirmTest::examples_data()
{
    QTest::addColumn<QString>("accounts"); // by priority, account:quota:net, the quota for each direction
    QTest::addColumn<QStringList>("orders");
    QTest::addColumn<QVariant>("custom");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<QStringList>("rest");
    const auto row = [](const char *rule, const char *accounts, const QStringList &orders, const QVariant &custom,
                        const QStringList &rows, const QStringList &rest = {}) {
        QTest::newRow(rule) << accounts << orders << custom << rows << rest;
    };
    const QString buy = "A1,A2,A3 600000.SH SH normalBuy ";
    const QString sell = "A1,A2,A3 600000.SH SH normalSell ";
    const QString noAccount = " 没有符合交易方向的资金账号！";
    row("a buy in parts, its rest in no account", "A2:1000:0 A1:400:0", {buy + "1050"}, 300,
        {"A2 300", "A2 300", "A2 300", "A2 100"}, {"50 所选账号可交易额度[1000]小于委托数量[1050]，请重新填写！"});
    row("closing comes before priority, rows by priority", "A2:1000:0 A1:1000:-200", {buy + "500"}, {},
        {"A2 300", "A1 200"});
    row("a bond in its step", "A1:1000:0", {"A1 110001.SH SH normalBuy 25"}, {}, {"A1 20"},
        {"5 所选账号可交易额度[20]小于委托数量[25]，请重新填写！"});

    row("an odd lot is not split off by closing", "A2:1000:0 A1:1000:150", {sell + "300"}, {}, {"A2 200", "A1 100"});
    row("a credit account trades collateral", "A3:200:0 A1:1000:0", {buy + "300", sell + "300"}, {},
        {"A3 200 collateralBuy", "A1 100", "A3 200 collateralSell", "A1 100"});

    row("the quantity is looked at first", "A1:1000:0", {"  SH normalBuy 0.9"}, {}, {}, {"0 委托数量必须大于0"});
    row("then the symbol", "A1:1000:0", {"  SH normalBuy 1"}, {}, {}, {"1 证券代码或者市场为空！"});
    row("and the exchange", "A1:1000:0", {" 600000.SH  normalBuy 1"}, {}, {}, {"1 证券代码或者市场为空！"});
    row("then the accounts", "A1:1000:0", {" 600000.SH SH normalBuy 1", "A1 600000.SH SH collateralBuy 1"}, {}, {},
        {"1" + noAccount, "1" + noAccount});
    row("only the user's own, each once", "A1:300:0 A1:300:0", {"A4,A1,,A1 600000.SH SH normalBuy 600.0"}, {},
        {"A1 300"}, {"300 所选账号可交易额度[300]小于委托数量[600]，请重新填写！"});

    row("parts are whole steps, for a sell too", "A1:1050:0", {sell + "1050"}, 290,
        {"A1 200", "A1 200", "A1 200", "A1 200", "A1 250"});
    row("a part is no less than may be ordered", "A1:1000:0", {"A1 688001.SH SH normalBuy 450"}, 50,
        {"A1 200", "A1 250"});
}

void OrderConfirmTest::examples()
{
    QFETCH(QString, accounts);
    QFETCH(QStringList, orders);
    QFETCH(QVariant, custom);
    QStringList priority;
    for (const QString &account : accounts.split(' '))
        priority.append(account.section(':', 0, 0));
    startDesk(priority);
    RecordList wanted;
    for (const QString &line : qAsConst(orders)) {
        wanted.append(order(line));
        const QString symbol = text(wanted.last(), "symbol");
        if (symbol.isEmpty())
            continue;
        if (custom.isValid())
            hub->SetSymbolTradeSettings(symbol, {{TradeCustQty, custom}});
        for (const QString &account : accounts.split(' ')) {
            const qint64 quota = account.section(':', 1, 1).toLongLong();
            setRoom(account.section(':', 0, 0), symbol, "1", quota, quota, account.section(':', 2).toLongLong());
        }
    }
    RecordList rest;
    QTEST(shown(hub->GetOrderConfirmMap(wanted, rest)), "rows");
    QStringList residuals;
    for (const VariantRecord &row : qAsConst(rest)) {
        residuals.append(text(row, "orderQty") + ' ' + text(row, "textDescription"));
        QCOMPARE(text(row, "requestExeStatus"), Rows::Fail);
    }
    QTEST(residuals, "rest");
    takeEvents();
}

void OrderConfirmTest::rowsAreCopies()
{
    startDesk({"A1"});
    setRoom("A1", "600000.SH", "1", 500, 0, 0);
    VariantRecord wanted = order("A1,A2 600000.SH SH normalBuy 650");
    wanted.insert("price", "not looked at");
    VariantRecord placed = wanted;
    placed.insert("tradingAccount", "A1");
    placed.insert("chineseName", "证券600000");
    placed.insert("orderQty", qint64(500));
    RecordList rest{{{"of", "before"}}};
    QCOMPARE(hub->GetOrderConfirmMap({wanted}, rest), RecordList{placed});
    QCOMPARE(hub->GetOrderConfirmMap({wanted}), RecordList{placed});
    QCOMPARE(rest.size(), 2);
    QCOMPARE(rest[1].take("orderQty"), QVariant(qint64(150)));
    QCOMPARE(rest[1].value("tradingAccount"), wanted.value("tradingAccount"));

    placed.insert("chineseName", "own");
    RecordList both{placed, placed}; // a text as account; one list as both
    QCOMPARE(hub->GetOrderConfirmMap(both, both), RecordList{placed});
    QCOMPARE(both.size(), 3);
    takeEvents();
}

void OrderConfirmTest::extremes()
{
    startDesk({"A1"});
    for (const QString symbol : {"600000.SH", "900001.SH"}) {
        setRoom("A1", symbol, "1", Max, Max, Max);
        hub->SetSymbolTradeSettings(symbol, {{TradeCustQty, 1}});
    }
    VariantRecord wanted = order("A1 600000.SH SH normalSell 0");
    wanted.insert("orderQty", Max);
    const RecordList rows = hub->GetOrderConfirmMap(
        {wanted, order("A1 600000.SH SH normalBuy -9223372036854775808"), order("A1 900001.SH SH normalBuy 1e300")});
    QVERIFY(rows.size() > 900 && rows.size() <= 1001);
    QCOMPARE(rows.last().value("orderQty"), QVariant(Max)); // nothing less may be ordered of it
    takeEvents();
}

RecordList OrderConfirmTest::randomOrders()
{
    RecordList orders;
    for (int i = 0; i < 5; ++i) {
        orders.append(
            order(QStringList{own.mid(upTo(3)).join(','), sizes().keys()[upTo(3)], "SH",
                              QStringList{"normalBuy", "normalSell", "collateralBuy", "collateralSell"}[upTo(4)],
                              QString::number(1 + upTo(upTo(3) > 0 ? 600 : 400000))}
                      .join(' ')));
        orders.last().insert("row", i);
    }
    return orders;
}

/// Draws new quotas and open positions; time: of the records.
void OrderConfirmTest::drawRooms(const QString &time)
{
    for (const QString &symbol : sizes().keys()) {
        const int unit = symbol == "110001.SH" ? 10 : 1;
        for (const QString account : {"A1", "A2", "A3", "A4"}) {
            const int size = QVector<int>{30, 300, 200000}[upTo(3)];
            const int buy = upTo(size) * unit;
            const int sell = upTo(size) * unit;
            const int net = (upTo(3) - 1) * upTo(size) * unit;
            setRoom(account, symbol, time, buy, sell, net);
            rooms[account + symbol + "Buy"] = {buy, qMax(0, -net)};
            rooms[account + symbol + "Sell"] = {sell, qMax(0, net)};
        }
    }
}

/// rows, rest: what became of the order. Takes it from the rooms.
void OrderConfirmTest::isPlacedWell(const VariantRecord &wanted, const RecordList &rows, qint64 rest)
{
    const auto [step, least] = sizes()[text(wanted, "symbol")];
    const bool isBuy = text(wanted, "SideUnion").endsWith("Buy");
    const bool ordinary = text(wanted, "SideUnion").startsWith("normal");
    QMap<QString, QVector<qint64>> parts;
    QVector<int> ranks;
    qint64 sum = rest;
    for (const VariantRecord &row : rows) {
        const QString account = text(row, "tradingAccount");
        QVERIFY(wanted["tradingAccount"].toStringList().contains(account) && (ordinary || account == "A3"));
        parts[account].append(row["orderQty"].toLongLong());
        ranks.append(own.indexOf(account));
        sum += parts[account].last();
        QCOMPARE(hub->CheckSingleOrderData({account}, text(row, "symbol"), "SH", text(row, "SideUnion"), 0,
                                           parts[account].last(), 1 | 2 | 8 | 16),
                 QString());
    }
    QCOMPARE(sum, wanted["orderQty"].toLongLong());
    QVERIFY(std::is_sorted(ranks.cbegin(), ranks.cend()) && !ranks.contains(-1));

    const int smallest = isBuy ? step : 1;
    bool remains = rest >= smallest; // when the account's turn to open has come
    bool opens = false;
    bool closes = true;
    for (int i = own.size(); i-- > 0;) {
        if (!wanted["tradingAccount"].toStringList().contains(own[i]) || !(ordinary || own[i] == "A3"))
            continue;
        const QVector<qint64> &of = parts[own[i]];
        QVERIFY(of.size() <= 1000);
        QVERIFY(of.size() < 2 || *std::min_element(of.cbegin(), of.cend()) >= least);
        QVERIFY(of.size() < 3 || std::count(of.cbegin(), of.cend(), of.first()) >= of.size() - 1);
        Room &room = rooms[own[i] + text(wanted, "symbol") + (isBuy ? "Buy" : "Sell")];
        const qint64 placed = std::accumulate(of.cbegin(), of.cend(), 0LL);
        closes = closes && placed >= qMin(room.close, room.quota) / step * step;
        opens = opens || placed > room.close;
        room.quota -= placed;
        QVERIFY(room.quota >= 0);
        QVERIFY(!remains || room.quota < smallest);
        remains = remains || placed > room.close;
        room.close = qMax<qint64>(0, room.close - placed);
    }
    QVERIFY(closes || !opens);
}

void OrderConfirmTest::placesWhatFitsByPriority()
{
    startDesk({});
    for (int round = 0; round < 200 && !QTest::currentTestFailed(); ++round) {
        own = QStringList{"A1", "A2", "A3", "A4"};
        std::shuffle(own.begin(), own.end(), engine);
        own = own.mid(upTo(2));
        answerPriority(own);
        drawRooms(QString::number(1000 + round));
        const bool whole = round % 3 == 0;
        for (const QString &symbol : sizes().keys())
            hub->SetSymbolTradeSettings(symbol, {{TradeCustQty, whole ? 0 : QVector<int>{1, 250, 999}[upTo(3)]}});
        const RecordList orders = randomOrders();
        RecordList residuals;
        const RecordList rows = hub->GetOrderConfirmMap(orders, residuals);
        int seen = 0;
        for (const VariantRecord &wanted : orders) {
            RecordList placed;
            while (seen < rows.size() && rows[seen]["row"] == wanted["row"])
                placed.append(rows[seen++]);
            const bool remains = !residuals.isEmpty() && residuals.first()["row"] == wanted["row"];
            isPlacedWell(wanted, placed, remains ? residuals.takeFirst()["orderQty"].toLongLong() : 0);
        }
        QCOMPARE(seen, rows.size()); // in the order of the orders
        QCOMPARE(residuals, RecordList());
        if (whole) {
            QCOMPARE(hub->GetOrderConfirmMap(rows, residuals), rows);
            QCOMPARE(residuals, RecordList());
        }
    }
    takeEvents();
}

T0_REGISTER_TEST(OrderConfirmTest)

#include "tst_OrderConfirm.moc"
