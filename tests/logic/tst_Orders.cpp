#include "LogicTest.h"
#include "Tests.h"

#include "MasterMsgType.h"
#include "StandMsgType.h"

#include <random>

using namespace Master_Fields::ManualT0;
using Master_MsgType::orderCancelBatchCppRequest;
using Rows::order;
using Stand_MsgType::OrderRequest;

namespace {

const QString Timeout = QStringLiteral("timeout");
const QString Partly = QStringLiteral("ParticalFail");
const QString Share = QStringLiteral("600000 SH");

const QString NoAccount = QStringLiteral("没有符合交易方向的资金账号！");
const QString NoSymbol = QStringLiteral("证券代码或者市场为空！");
const QString NoPrice = QStringLiteral("委托价格必须大于0！");
const QString OffTick = QStringLiteral("委托价格必须是[0.01]的整数倍！");
const QString NoQuantity = QStringLiteral("委托数量必须大于0");
const QString OffStep = QStringLiteral("买入时委托数量必须是[100]的整数倍！");

QString noQuota(const char *quota, const char *quantity)
{
    return QStringLiteral("所选账号可交易额度[%1]小于委托数量[%2]，请重新填写！").arg(quota, quantity);
}

ScriptedReference::Instrument instrument(const QString &id, double tick, int precision, int step)
{
    using namespace Stand_Fields::Security;
    const VariantRecord further{{tickBands, QVariantList{0, 0, tick}}, {pricePrecision, precision}, {qtyStep, step}};
    return {id + ".SH", id, "SH", 1, 0, "StockType", "MainBoardStock", further};
}

RecordList ordersOf(const QStringList &accounts)
{
    RecordList orders;
    for (const QString &account : accounts) {
        orders.append(order("- 600000.SH SH normalBuy 100 10.07"));
        orders.last().insert("tradingAccount", account);
    }
    return orders;
}

/// "mark status text" of each, the mark being what a record was given to be known by.
QStringList shown(const RecordList &results, const QString &mark)
{
    QStringList lines;
    for (const VariantRecord &result : results)
        lines.append(
            QStringList{text(result, mark), text(result, "requestExeStatus"), text(result, "textDescription")}.join(
                ' '));
    return lines;
}

VariantRecord position(int carriedBought, int carriedSold, int bought, int sold)
{
    return {{PreUnclosedBoughtQty, carriedBought},
            {PreUnclosedSoldQty, carriedSold},
            {DailyBoughtQty, bought},
            {DailySoldQty, sold}};
}

} // namespace

/// The desk: u1 may buy 1000 and sell 150 of 600000 in A1, buy 500 in A2, buy 300 and sell 70 in the credit account
/// A3. Without end he may trade 510001 (tick 0.001, no step). 900001 and 900002 have absurd reference data.
class OrdersTest : public LogicTest
{
    Q_OBJECT

private slots:
    void checks_data();
    void checks();
    void onlyMultiplesOfTheTickPass();
    void checksOrderByOrder();
    void submitsInOrderOfPriority();
    void results_data();
    void results();
    void cancels_data();
    void cancels();
    void cancelableOrders();
    void openPosition_data();
    void openPosition();
    void positionLists();

private:
    void startDesk();
    void script(const QString &type, const QString &outcome);
};

void OrdersTest::startDesk()
{
    close();
    desk.instruments = {instrument("600000", 0.01, 2, 100), instrument("510001", 0.001, 3, 0),
                        instrument("900001", 1e-11, -3, -1), instrument("900002", 0, 99, -1)};
    open(Mode::ByHand);
    const QString endless = "510001 SH";
    const VariantRecord noEnd{{DailyBuyLimit, 9e18}, {DailySellLimit, -9e18}};
    start(
        {}, {},
        {Rows::usage("A1", "u1", Share, "1", {{DailyBuyLimit, 600}, {PreUnclosedBuyLimit, 400}, {DailySellLimit, 150}}),
         Rows::usage("A1", "t2", Share, "1", {{DailyBuyLimit, 1000000}}),
         Rows::usage("A2", "u1", Share, "1", {{DailyBuyLimit, 500}}),
         Rows::usage("A3", "u1", Share, "1", {{DailyBuyLimit, 300}, {DailySellLimit, 70}}),
         Rows::usage("A1", "u1", endless, "1", noEnd), Rows::usage("A2", "u1", endless, "1", noEnd)});
}

/// outcome: "timeout", "not sent", "refused", or the rows of the answer: "7,8!late" accepts one of id 7 and refuses
/// one of id 8 with a text.
void OrdersTest::script(const QString &type, const QString &outcome)
{
    if (outcome == "not sent") {
        server->channel->nextIsNotSent(type);
    } else if (outcome == Timeout || outcome == "refused") {
        server->answerNext(type, outcome);
    } else {
        RecordList rows;
        for (const QString &row : outcome.split(',', Qt::SkipEmptyParts))
            rows.append({{"orderID", row.section('!', 0, 0)},
                         {"requestExeStatus", row.contains('!') ? Rows::Fail : Rows::Success},
                         {"textDescription", row.section('!', 1)}});
        server->channel->next(type, ScriptedChannel::success(rows));
    }
}

void OrdersTest::checks_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *rule, const char *line, int flags, const QString &text = QString()) {
        QTest::newRow(rule) << QString(line) << flags << text;
    };
    const char *const bad = "A1   collateralBuy 0 0";
    row("a good order", "A1 600000.SH SH normalBuy 1000 10.07", 31);
    row("accounts first", bad, 31, NoAccount);
    row("then symbol and exchange", bad, 2 | 4 | 8 | 16, NoSymbol);
    row("then the price", bad, 4 | 8 | 16, NoPrice);
    row("then the quantity", bad, 8 | 16, NoQuantity);
    row("then the step, before the quota", "A1 600000.SH SH normalBuy 1050 10.07", 31, OffStep);
    row("the quota last", "A1 600000.SH SH normalBuy 1100 10.07", 31, noQuota("1000", "1100"));
    row("an exchange too", "A1 600000.SH  normalBuy 100 10.07", 2, NoSymbol);
    row("an empty text is no account", ", 600000.SH SH normalBuy 100 10.07", 1, NoAccount);
    row("only a credit account trades collateral", "A1,A2 600000.SH SH collateralSell 70 10.07", 31, NoAccount);
    row("accounts that do not suit have no quota", "A1,A2 600000.SH SH collateralBuy 100 10.07", 30,
        noQuota("0", "100"));
    row("the others' quota counts", "A1,A3 600000.SH SH collateralBuy 400 10.07", 31, noQuota("300", "400"));
    row("a side in another case sells", "A3 600000.SH SH collateralbuy 71 10.07", 31, noQuota("70", "71"));

    row("a price of 1e-11 is none", "A1 600000.SH SH normalBuy 100 1e-11", 4, NoPrice);
    row("deliberate: a good price above the limit of 0.01 is refused", "A1 600000.SH SH normalBuy 100 524288.07", 4,
        OffTick);
    row("deliberate: and one of 0.001", "A1 510001.SH SH normalBuy 1 9999.998", 4, "委托价格必须是[0.001]的整数倍！");
    row("a tick that is none, without decimals", "A1 900001.SH SH normalBuy 1 10", 4, "委托价格必须是[0]的整数倍！");
    row("decimals are bounded", "A1 900002.SH SH normalBuy 1 10.001", 4, "委托价格必须是[0.0100000000]的整数倍！");

    row("an odd lot may be sold", "A1 600000.SH SH normalSell 150 10.07", 31);
    row("a step below 1 is none", "A1 900001.SH SH normalBuy 7 10", 8);
    row("the least quantity", "A1 900001.SH SH normalBuy -9223372036854775808 10", 8, NoQuantity);
    row("quotas are added up, an account's once", "A1,A2,A1 600000.SH SH normalBuy 1600 10", 31,
        noQuota("1500", "1600"));
    row("sums do not wrap", "A1,A2 510001.SH SH normalBuy 9223372036854775807 1", 31);
    row("nor below zero", "A1,A2 510001.SH SH normalSell 1 1", 31, noQuota("-9223372036854775808", "1"));
    row("no symbol has no quota", "A1  SH normalBuy 1 10", 16, noQuota("0", "1"));
    row("no exchange has none", "A1 600000.SH  normalBuy 1 10", 16, noQuota("0", "1"));
}

void OrdersTest::checks()
{
    QFETCH(QString, line);
    QFETCH(int, flags);
    startDesk();
    const VariantRecord checked = order(line);
    QTEST(hub->CheckSingleOrderData(checked["tradingAccount"].toStringList(), text(checked, "symbol"),
                                    text(checked, "securityExchange"), text(checked, "SideUnion"),
                                    checked["price"].toDouble(), checked["orderQty"].toLongLong(), flags),
          "text");
}

void OrdersTest::onlyMultiplesOfTheTickPass()
{
    // In ten-thousandths, whole numbers tell what a multiple is. Below these limits every good price passes.
    QMap<qint64, qint64> limits{{10, 99999980}, {100, 5242880700}};
    for (qint64 tick : {50, 200, 500, 1000, 2000, 5000, 10000, 20000, 50000})
        limits[tick] = 1000000000;
    close();
    desk.instruments.clear();
    for (qint64 tick : limits.keys())
        desk.instruments.append(instrument(QString::number(tick), double(tick) / 10000, 4, 1));
    open(Mode::ByHand);

    std::mt19937_64 engine(1);
    for (auto limit = limits.cbegin(); limit != limits.cend(); ++limit) {
        const qint64 tick = limit.key();
        for (int round = 0; round < 6000; ++round) {
            const qint64 highest = round % 3 == 0 ? *limit : 10000000;
            const qint64 random = round % 3 == 1 ? *limit - round : qint64(engine() % quint64(highest));
            const qint64 price =
                random - random % tick + QVector<qint64>{0, 0, 1, tick / 2, tick - 1, random % tick}[round % 7 % 6];
            const QString refusal = hub->CheckSingleOrderData({}, QString::number(tick) + ".SH", "SH", "normalBuy",
                                                              double(price) / 10000, 0, 4);
            QVERIFY2(refusal.isEmpty() == (price > 0 && price % tick == 0),
                     qPrintable(QString::number(price) + refusal));
        }
    }
}

void OrdersTest::checksOrderByOrder()
{
    startDesk();
    RecordList checked{{{"requestExeStatus", "of before"}}};
    const auto check = [&](const RecordList &orders, int flags, const QString &code, const QStringList &texts) {
        const RecordList before = checked;
        QCOMPARE(hub->CheckOrderData(orders, checked, flags), code);
        QCOMPARE(checked.size(), before.size() + orders.size());
        for (int i = 0; i < orders.size(); ++i) {
            VariantRecord expected = orders[i];
            expected.insert("requestExeStatus", texts[i].isEmpty() ? Rows::Success : Rows::Fail);
            if (!texts[i].isEmpty())
                expected.insert("textDescription", texts[i]);
            QCOMPARE(checked[before.size() + i], expected);
        }
        QCOMPARE(checked.mid(0, before.size()), before);
    };
    const auto with = [](const QString &field, const QVariant &value) {
        VariantRecord changed = order("A1 600000.SH SH normalBuy 100 10.07");
        changed.insert(field, value);
        return changed;
    };
    const auto buys = [with](const QVariant &quantity) { return with("orderQty", quantity); };
    const auto in = [with](const QVariant &accounts) { return with("tradingAccount", accounts); };
    check({}, 31, Rows::Fail, {});
    check({buys("100.0"), buys(100.9), buys(150), buys(qint64(4294967296)), buys(0.9)}, 31, Partly,
          {"", "", OffStep, OffStep, NoQuantity});
    check({in("A1"), in(QStringList{"", "A1"}), in(QVariantList{"A9", "A1"})}, 31, Rows::Success, {"", "", ""});
    check({in(""), in(QStringList{"", ""}), in(QVariant())}, 31, Rows::Fail, {NoAccount, NoAccount, NoAccount});
    check({in(""), buys(-1)}, 0, Rows::Success, {"", ""});
    QCOMPARE(hub->CheckOrderData(checked, checked, 0), Rows::Success); // one list as both
    QCOMPARE(checked.size(), 2 * 14);
}

void OrdersTest::submitsInOrderOfPriority()
{
    answerPriority({"A2", "A1", "A2", "A3"});
    takeEvents();
    RecordList orders = ordersOf({"A1", "A4", "A2", "A1"});
    orders[0].insert("orderQty", "150.0");
    orders[0].insert("price", 10.07);
    orders[0].insert("priceType", "market");
    orders[3].insert("orderQty", 100.9);
    const QString header = "OrderRequest VantaBusiType=ManualT0Order businessName=ManualT0Trade confirmed=true "
                           "loginUserId=u1 remark=%1 tradingAccount=%2";
    const QString sent = "  SideUnion=normalBuy orderQty=%1 price=10.07 priceType=limit securityExchange=SH "
                         "symbol=600000.SH";
    script(OrderRequest, "1");
    script(OrderRequest, "2,3");
    RecordList results;
    QCOMPARE(hub->Order(orders, results, "why"), Rows::Success); // nothing is said of A4
    QCOMPARE(Rows::texts(results, "orderID"), QStringList({"1", "2", "3"}));
    QCOMPARE(server->takeChanges(), QStringList({header.arg("why", "A2"), sent.arg(100), header.arg("why", "A1"),
                                                 sent.arg(150), sent.arg(100)}));
    script(OrderRequest, "4");
    QCOMPARE(hub->Order(ordersOf({"A3"}), results, QString()), Rows::Success);
    QCOMPARE(server->takeChanges(), QStringList({header.arg("", "A3"), sent.arg(100)}));
}

void OrdersTest::results_data()
{
    QTest::addColumn<QStringList>("accounts");
    QTest::addColumn<QStringList>("outcomes"); // of A2, A1
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QStringList>("added");
    const auto row = [](const char *rule, const QStringList &accounts, const QStringList &outcomes,
                        const QStringList &before, const QString &code, const QStringList &added) {
        QTest::newRow(rule) << accounts << outcomes << before << code << added;
    };
    const QStringList two{"A1", "A2", "A1"};
    const QString unknown = QStringLiteral(" timeout 结果未知");
    const QString notSent = QStringLiteral(" fail 请求未发送，与服务器的连接已断开");
    row("each order by itself", two, {"7", "8!late,9"}, {}, Partly, {"A2 success ", "A1 fail late", "A1 success "});
    row("a list that is not handed over", two, {"not sent", "refused"}, {}, Rows::Fail,
        {"A2" + notSent, "A1 fail refused", "A1 fail refused"});
    row("nobody knows", two, {Timeout, "7,8"}, {}, Partly, {"A2" + unknown, "A1 success ", "A1 success "});
    row("a failure of before counts", {"A2"}, {"7"}, {"fail"}, Partly, {"A2 success "});
    row("so does a success, though nothing was sent", {"A4"}, {}, {"success"}, Rows::Success, {});
}

void OrdersTest::results()
{
    QFETCH(QStringList, accounts);
    QFETCH(QStringList, outcomes);
    QFETCH(QStringList, before);
    start();
    server->channel->always(Stand_MsgType::QueryRequestFateRequest, [](const MessageBody &) {
        return ScriptedChannel::success({}, {{"known", true}, {"fateStatus", "success"}});
    });
    for (const QString &outcome : qAsConst(outcomes))
        script(OrderRequest, outcome);
    RecordList results;
    for (const QString &status : qAsConst(before))
        results.append({{"requestExeStatus", status}});
    QTEST(hub->Order(ordersOf(accounts), results, QString()), "code");
    QTEST(shown(results.mid(before.size()), "tradingAccount"), "added");
    server->takeChanges();
}

void OrdersTest::cancels_data()
{
    QTest::addColumn<QStringList>("outcomes"); // of A1, A2
    QTest::addColumn<QString>("code");
    QTest::addColumn<QStringList>("added");
    const auto row = [](const char *rule, const QStringList &outcomes, const QString &code, const QStringList &added) {
        QTest::newRow(rule) << outcomes << code << added;
    };
    const QString late = QStringLiteral(" timeout 请求超时");
    row("one id in two accounts", {"1,2", "1"}, Rows::Success, {"A1/1 success ", "A1/2 success ", "A2/1 success "});
    row("one is refused", {"1!no,2", "1"}, Partly, {"A1/1 fail no", "A1/2 success ", "A2/1 success "});
    row("what a good answer leaves out is cancelled", {"", ""}, Rows::Success, {});
    row("an id that is answered twice is told twice", {"1!no,1!no", "1"}, Partly,
        {"A1/1 fail no", "A1/1 fail no", "A2/1 success "});
    row("more refusals than orders take nothing from others", {"1!a,2!b,1!c,2!d", "1"}, Partly,
        {"A1/1 fail a", "A1/2 fail b", "A1/1 fail c", "A1/2 fail d", "A2/1 success "});
    row("an id of the other account", {"1,2", "2"}, Rows::Success, {"A1/1 success ", "A1/2 success ", "A1/2 success "});
    row("an unknown id has an empty order", {"1,2", "9!no"}, Partly, {"A1/1 success ", "A1/2 success ", " fail no"});
    row("no answer to some", {Timeout, "1"}, Partly, {"A1/1" + late, "A1/2" + late, "A2/1 success "});
    row("no answer at all", {Timeout, Timeout}, Timeout, {"A1/1" + late, "A1/2" + late, "A2/1" + late});
    row("no answer, and a refusal", {Timeout, "refused"}, Rows::Fail,
        {"A1/1" + late, "A1/2" + late, "A2/1 fail refused"});
}

void OrdersTest::cancels()
{
    QFETCH(QStringList, outcomes);
    RecordList orders;
    for (const QString mark : {"A2/1", "A1/1", "A1/2"})
        orders.append({{"mark", mark}, {"tradingAccount", mark.section('/', 0, 0)}, {"orderID", mark.section('/', 1)}});
    for (const QString &outcome : qAsConst(outcomes))
        script(orderCancelBatchCppRequest, outcome);
    RecordList results{{{"mark", "before"}}};
    QCOMPARE(hub->CancelOrderList(nullptr, {}, results), Rows::Success);
    QTEST(hub->CancelOrderList(nullptr, orders, results), "code");
    QCOMPARE(text(results.takeFirst(), "mark"), QString("before"));
    QTEST(shown(results, "mark"), "added");
    const QString header = "orderCancelBatchCppRequest loginUserId=u1 orderStation=ManualT0Trade@u1 tradingAccount=%1 "
                           "transActTime=in ms";
    QCOMPARE(server->takeChanges().replaceInStrings(QRegularExpression("transActTime=\\d{13}$"), "transActTime=in ms"),
             QStringList({header.arg("A1"), "  orderID=1", "  orderID=2", header.arg("A2"), "  orderID=1"}));
}

void OrdersTest::cancelableOrders()
{
    const VariantRecord wanted{{"tradingAccount", "A1"},    {"symbol", "600000.SH"},
                               {"securityExchange", "SH"},  {"side", "buy"},
                               {"loginUserId", "u1"},       {"VantaBusiType", "ManualT0Order"},
                               {"orderStatus", "Accepted"}, {"updateTime", "1"}};
    const auto push = [&](const QString &id, const QString &field, const QString &value) {
        VariantRecord pushed = wanted;
        pushed.insert("orderID", id);
        pushed.insert(field, value);
        server->channel->push(Stand_MsgType::OrderPush, pushed);
    };
    push("a wanted one", "", "");
    push("partly filled", "orderStatus", "PartlyFilled");
    push("filled", "orderStatus", "Filled");
    push("another business", "VantaBusiType", "other");
    for (const char *field : {"tradingAccount", "symbol", "securityExchange", "side", "loginUserId"})
        push(field, field, "other");
    settle();
    const auto ids = [&](const RecordList &orders) { return Rows::texts(orders, "orderID"); };
    QCOMPARE(ids(hub->GetCancelableOrderList({"A2", "A1"}, "600000.SH", "SH", {"u1", "t2"}, "buy", true)),
             QStringList({"a wanted one", "partly filled"}));
    QCOMPARE(ids(hub->GetCancelableOrderList({"A1"}, "", "", {}, "", false)),
             QStringList({"a wanted one", "loginUserId", "partly filled", "securityExchange", "side", "symbol"}));
    QCOMPARE(hub->GetCancelableOrderList({}, "", "", {}, "", true), RecordList());
    for (int i = 0; i < 120; ++i)
        push(QString::number(i), "tradingAccount", "A2");
    settle();
    QCOMPARE(hub->GetCancelableOrderList({"A2"}, "", "", {}, "", true).size(), 120);
    QCOMPARE(hub->GetCancelableOrderList({"A2"}, "", "", {}, "", false).size(), 100);
}

void OrdersTest::openPosition_data()
{
    QTest::addColumn<QString>("line"); // accounts, symbol, exchange, side
    QTest::addColumn<qint64>("expected");
    const auto row = [](const char *rule, const char *line, qint64 expected) {
        QTest::newRow(rule) << QString(line) << expected;
    };
    row("of earlier days and today, of this user, symbol and exchange", "A1 600000.SH SH ", -300);
    row("a buy closes a short one", "A1 600000.SH SH normalBuy", 300);
    row("a sell closes a long one", "A3 600000.SH SH normalSell", 120);
    row("cash accounts hold no collateral", "A1,A3 600000.SH SH collateralSell", 120);
    row("nor have any alone", "A1,A2 600000.SH SH collateralBuy", 0);
    row("nothing wraps", "A2 300001.SZ SZ normalBuy", std::numeric_limits<qint64>::max());
    row("no symbol", "A1  SH ", 0);
    row("no exchange", "A1 600000.SH  ", 0);
}

void OrdersTest::openPosition()
{
    QFETCH(QString, line);
    start({}, {},
          {Rows::usage("A1", "u1", Share, "1", position(100, 200, 50, 250)),
           Rows::usage("A1", "t2", Share, "1", position(7000, 0, 0, 0)),
           Rows::usage("A1", "u1", "300001 SZ", "1", position(0, 9000, 0, 0)),
           Rows::usage("A3", "u1", Share, "1", position(0, 0, 120, 0)),
           Rows::usage("A2", "u1", "300001 SZ", "1", {{DailyBoughtQty, -9e18}, {DailySoldQty, 9e18}})});
    QTEST(qint64(hub->GetOpenPositionByAccountAndSymbol(line.section(' ', 1, 1), line.section(' ', 2, 2),
                                                        line.section(' ', 3), line.section(' ', 0, 0).split(','))),
          "expected");
    QCOMPARE(hub->GetOpenPositionByAccountAndSymbol("600000.SH", "SH", "normalBuy", {}), 0LL);
}

void OrdersTest::positionLists()
{
    start({}, {},
          {Rows::usage("A1", "u1", Share, "1", position(100, 100, 50, 50)),
           Rows::usage("A2", "u1", Share, "1", position(100, 0, 0, 50)),
           Rows::usage("A3", "t2", Share, "1", position(0, 100, 50, 0)), Rows::usage("A1", "u1", "00700 SZHK", "1"),
           Rows::usage("A2", "u1", "00700 HHK", "1"), Rows::usage("A2", "u1", "00700 SZHK", "1"),
           Rows::usage("A3", "t2", "00700 HHK", "1")});
    const auto openIn = [&](const QStringList &traders) {
        return Rows::texts(hub->GetOpenPositionList({"A1", "A2", "A3"}, traders, "600000.SH", ""), "tradingAccount");
    };
    QCOMPARE(openIn({}), QStringList({"A2", "A3"}));
    QCOMPARE(openIn({"u1"}), QStringList({"A2"}));
    QCOMPARE(hub->GetExchangeListByAccountAndSymbol("00700.HK", {"A2", "A1", "A3"}), QStringList({"SZHK", "HHK"}));
    QCOMPARE(hub->GetExchangeListByAccountAndSymbol("00700.HK", {"A3"}), QStringList());
    QCOMPARE(hub->GetExchangeListByAccountAndSymbol("", {"A1"}), QStringList());
    QCOMPARE(hub->GetExchangeListByAccountAndSymbol("00700.HK", {}), QStringList());
}

T0_REGISTER_TEST(OrdersTest)

#include "tst_Orders.moc"
