#include "BusinessDataInterface.h"
#include "HostNews.h"
#include "MasterBusiUtils.h"
#include "MasterBusinessDataInterface.h"
#include "MasterTradeLogic.h"
#include "MasterUtils.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "ScriptedChannel.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "Tests.h"
#include "ZrObject.h"

#include <QtTest/QtTest>

#include <rapidcheck.h>

#include <thread>

Q_DECLARE_METATYPE(std::function<void(ScriptedChannel &)>)

namespace {

using Stand_MsgType::OrderRequest;
using Stand_MsgType::QueryRequestFateRequest;

/// The states of one order from the first to the last. The market's clock mostly stands still between them.
RecordList anyLife(const QString &id)
{
    const int quantity = *rc::gen::inRange(1, 5);
    int time = *rc::gen::inRange(10, 20);
    VariantRecord order{{"orderID", id},
                        {"tradingAccount", "T" + QString::number(*rc::gen::inRange(1, 4))},
                        {"price", double(*rc::gen::inRange(1, 4))}};
    RecordList life;
    const auto enter = [&](const QString &status, int filled) {
        order.insert("orderStatus", status);
        order.insert("filledQty", filled);
        order.insert("updateTime", QString::number(time));
        life.append(order);
        time += *rc::gen::arbitrary<bool>();
    };
    enter(Stand_Values::OrderStatus::Accepted, 0);
    ++time;
    order.insert("remark", "changed"); // only its time tells that it is newer
    enter(Stand_Values::OrderStatus::Accepted, 0);
    for (int filled = 1; filled < quantity; ++filled)
        enter(Stand_Values::OrderStatus::PartlyFilled, filled);
    const bool cancelled = *rc::gen::arbitrary<bool>();
    enter(cancelled ? Stand_Values::OrderStatus::Cancelled : Stand_Values::OrderStatus::Filled,
          quantity - int(cancelled));
    life.erase(life.begin() + *rc::gen::inRange(1, life.size() + 1), life.end());
    return life;
}

QString key(const VariantRecord &order)
{
    return order.value("orderID").toString();
}

bool passes(const VariantRecord &order, const QStringList &accounts)
{
    return accounts.contains(order.value("tradingAccount").toString()) &&
           MasterBusiUtils::GetCancelableOrderStatusList().contains(order.value("orderStatus").toString());
}

OrderRequestList threeOrders()
{
    OrderRequestList list;
    list.getOrderCommonInfo() = {"T1", "Business", "Type", true, "a remark"};
    for (int i = 0; i < 3; ++i)
        list.AddSymbol("S" + QString::number(i), 100 + i, "limit", "10.00", "normalBuy", "SH");
    return list;
}

VariantRecord accepted(const char *id)
{
    return {{"requestExeStatus", "success"}, {"orderID", id}};
}

VariantRecord refused(const char *text)
{
    return {{"requestExeStatus", "fail"}, {"textDescription", text}};
}

MessageBody fate(bool known)
{
    if (!known)
        return ScriptedChannel::success({}, {{"known", false}});
    return ScriptedChannel::success({accepted("7"), refused("no"), accepted("8")},
                                    {{"known", true}, {"fateStatus", "success"}});
}

/// "status what" of each record, what being the order's id or the text.
QStringList outcomes(const RecordList &records)
{
    QStringList out;
    for (const VariantRecord &record : records)
        out.append(record.value("requestExeStatus").toString() + " " +
                   (record.contains("orderID") ? record.value("orderID") : record.value("textDescription")).toString());
    return out;
}

bool isTold(HostSession &session, QStringList &messages)
{
    messages += session.takeBusinessMessages();
    return !messages.isEmpty();
}

QString unknown()
{
    return QStringLiteral("timeout 结果未知");
}

} // namespace

class OrdersTest : public QObject
{
    Q_OBJECT

private slots:
    void newestStateStaysWhateverComesFirst();
    void everyOutcomeGivesOneRecordAnOrder_data();
    void everyOutcomeGivesOneRecordAnOrder();
    void fateIsAskedForUntilItIsKnown();
    void whatIsUnknownAfterItsTimeWasNeverAccepted();
    void closingEndsTheAsking();
    void afterAReconnectionOrdersWaitForThePicture();
    void tickIsThatOfThePricesBand();
};

void OrdersTest::newestStateStaysWhateverComesFirst()
{
    QVERIFY(rc::check([] {
        RecordList newest;
        RecordList moments[3]; // pushed before the answer, answered, pushed after it
        for (int i = *rc::gen::inRange(0, 12); i > 0; --i) {
            const RecordList life = anyLife(QString::number(100 + i));
            newest.prepend(life.last());
            for (const VariantRecord &state : life + RecordList{life.last()}) {
                RecordList &rows = moments[*rc::gen::inRange(0, 3)];
                rows.insert(*rc::gen::inRange(0, rows.size() + 1), state);
            }
        }

        auto owned = std::make_unique<ScriptedChannel>();
        ScriptedChannel *channel = owned.get();
        ScriptedReference{}.script(*channel);
        const auto push = [channel](const RecordList &rows) {
            for (const VariantRecord &row : rows)
                channel->push(Stand_MsgType::OrderPush, row);
        };
        channel->always(Stand_MsgType::QueryOrdersRequest, [&](const MessageBody &) {
            push(moments[0]);
            return ScriptedChannel::success(moments[1]);
        });
        QString errorText;
        const auto session = HostSession::open({std::move(owned), "u1", {}}, errorText);
        RC_ASSERT(session != nullptr);
        push(moments[2]);
        RC_ASSERT(session->settle(60000));

        int total = 0;
        QStringList ids;
        for (const VariantRecord &order : BusinessDataInterface::GetOrderListByCustomKey({}, total, 0, 0, {}, {})) {
            RC_ASSERT(order == newest.value(ids.size()));
            ids.append(key(order));
        }
        RC_ASSERT(ids.size() == newest.size());

        // pages of a filtered, sorted query against plain loops
        const QStringList accounts = *rc::gen::element(QStringList{}, QStringList{"T1"}, QStringList{"T3", "T1"});
        const VariantRecord filter{{"tradingAccount", accounts},
                                   {"orderStatus", MasterBusiUtils::GetCancelableOrderStatusList()}};
        RecordList wanted;
        std::copy_if(newest.cbegin(), newest.cend(), std::back_inserter(wanted),
                     [&](const VariantRecord &order) { return passes(order, accounts); });
        std::stable_sort(wanted.begin(), wanted.end(), [](const VariantRecord &a, const VariantRecord &b) {
            return a.value("price").toDouble() > b.value("price").toDouble();
        });
        for (int start = 0; start <= wanted.size(); start += 2) {
            const RecordList page =
                BusinessDataInterface::GetOrderListByCustomKey(filter, total, start, 2, {"-price"}, {"orderID"});
            RC_ASSERT(total == wanted.size());
            RC_ASSERT(page.size() == qMin(2, wanted.size() - start));
            for (int i = 0; i < page.size(); ++i)
                RC_ASSERT(page.at(i) == VariantRecord({{"orderID", key(wanted.at(start + i))}}));
        }
    }));
}

void OrdersTest::everyOutcomeGivesOneRecordAnOrder_data()
{
    using Script = std::function<void(ScriptedChannel &)>;
    const auto answers = [](const MessageBody &body) {
        return Script([body](ScriptedChannel &channel) { channel.next(OrderRequest, body); });
    };
    QTest::addColumn<Script>("script");
    QTest::addColumn<bool>("processed");
    QTest::addColumn<QStringList>("records");
    const QString notSent = QStringLiteral("fail 请求未发送，与服务器的连接已断开");
    QTest::newRow("each order has its result")
        << answers(ScriptedChannel::success({accepted("1"), refused("太多"), accepted("2")})) << true
        << QStringList{"success 1", "fail 太多", "success 2"};
    QTest::newRow("what the answer leaves out is unknown")
        << answers(ScriptedChannel::success({accepted("1")})) << true << QStringList{"success 1", unknown(), unknown()};
    QTest::newRow("the list is refused") << answers(ScriptedChannel::refusal("无权限")) << false
                                         << QStringList{"fail 无权限", "fail 无权限", "fail 无权限"};
    QTest::newRow("an answer that says nothing")
        << answers({}) << false << QStringList{unknown(), unknown(), unknown()};
    QTest::newRow("no answer") << Script([](ScriptedChannel &channel) { channel.nextTimesOut(OrderRequest); }) << false
                               << QStringList{unknown(), unknown(), unknown()};
    QTest::newRow("not sent") << Script([](ScriptedChannel &channel) { channel.nextIsNotSent(OrderRequest); }) << false
                              << QStringList{notSent, notSent, notSent};
}

void OrdersTest::everyOutcomeGivesOneRecordAnOrder()
{
    QFETCH(std::function<void(ScriptedChannel &)>, script);
    ScriptedChannel *channel = nullptr;
    const auto session = ScriptedReference{}.open(channel);
    channel->always(QueryRequestFateRequest, [](const MessageBody &) { return fate(true); });
    script(*channel);
    QVariant answer;
    const int result = MasterTradeLogic::instance()->orders(threeOrders(), answer);
    QTEST(result == 0, "processed");
    const RecordList records = MasterTradeLogic::transOrderRsp(threeOrders(), answer);
    QTEST(outcomes(records), "records");

    const ScriptedChannel::Request sent = channel->requests(OrderRequest).first();
    QCOMPARE(sent.body.rows.size(), 4);
    for (int i = 0; i < 3; ++i) {
        const VariantRecord order = sent.body.rows.at(i + 1);
        for (const char *field : {"symbol", "securityExchange", "SideUnion", "price", "orderQty"})
            QCOMPARE(records.at(i).value(field), order.value(field));
        const bool isUnknown = records.at(i).value("requestExeStatus") == "timeout";
        QCOMPARE(records.at(i).value("requestId").toString(), isUnknown ? sent.envelope.id : QString());
    }
    QCOMPARE(MasterTradeLogic::transOrderRsp(threeOrders(), {}).size(), 3); // never handed to orders()
}

void OrdersTest::fateIsAskedForUntilItIsKnown()
{
    ScriptedChannel *channel = nullptr;
    const auto session = ScriptedReference{}.open(channel, 60000);
    channel->always(OrderRequest, [](const MessageBody &) { return ScriptedChannel::success(); });
    channel->hold(OrderRequest);
    channel->always(QueryRequestFateRequest, [](const MessageBody &) { return fate(false); });
    QVariant answer;
    std::thread trader([&] { MasterTradeLogic::instance()->orders(threeOrders(), answer); });
    QTRY_COMPARE(channel->count(OrderRequest), 1);
    channel->disconnect();
    trader.join();
    QCOMPARE(outcomes(MasterTradeLogic::transOrderRsp(threeOrders(), answer)).first(), unknown());
    QVERIFY(session->settle(60000)); // waiting for the connection is not work under way
    QCOMPARE(channel->count(QueryRequestFateRequest), 0);

    channel->nextTimesOut(QueryRequestFateRequest);
    channel->next(QueryRequestFateRequest, ScriptedChannel::refusal("later"));
    channel->reconnect();
    QTRY_VERIFY(channel->count(QueryRequestFateRequest) >= 3); // unknown while the request may still arrive
    QVERIFY(session->takeBusinessMessages().isEmpty());
    const QString id = channel->requests(OrderRequest).first().envelope.id;
    QVERIFY(MasterTradeLogic::instance()->fateOfRequest(id, answer) != 0);
    QCOMPARE(outcomes(MasterTradeLogic::transOrderRsp(threeOrders(), answer)).first(), unknown());

    channel->always(QueryRequestFateRequest, [id](const MessageBody &request) {
        return request.rows.value(0).value("requestId") == id ? fate(true) : MessageBody();
    });
    QStringList messages;
    QTRY_VERIFY(isTold(*session, messages));
    QVERIFY2(messages.first().startsWith("委托结果已确认：受理2笔，拒绝1笔\t"), qUtf8Printable(messages.first()));
    QCOMPARE(MasterTradeLogic::instance()->fateOfRequest(id, answer), 0);
    QCOMPARE(outcomes(MasterTradeLogic::transOrderRsp(threeOrders(), answer)),
             QStringList({"success 7", "fail no", "success 8"}));
    QVERIFY(session->settle(60000));
    QCOMPARE(messages.size() + session->takeBusinessMessages().size(), 1);
}

void OrdersTest::whatIsUnknownAfterItsTimeWasNeverAccepted()
{
    ScriptedChannel *channel = nullptr;
    const auto session = ScriptedReference{}.open(channel, 2000);
    channel->always(QueryRequestFateRequest, [](const MessageBody &) { return fate(false); });
    channel->nextTimesOut(OrderRequest);
    QVariant answer;
    MasterTradeLogic::instance()->orders(threeOrders(), answer);
    QStringList messages;
    QTRY_VERIFY_WITH_TIMEOUT(isTold(*session, messages), 60000);
    QVERIFY2(messages.first().startsWith("委托未被服务器受理\t"), qUtf8Printable(messages.first()));
    const ScriptedChannel::Request last = channel->requests(QueryRequestFateRequest).last();
    const Envelope orders = channel->requests(OrderRequest).first().envelope;
    QVERIFY(last.envelope.sent > orders.validUntil);
    QVERIFY(MasterTradeLogic::instance()->fateOfRequest(orders.id, answer) != 0);
    const QString failed = QStringLiteral("fail 委托未被服务器受理");
    QCOMPARE(outcomes(MasterTradeLogic::transOrderRsp(threeOrders(), answer)), QStringList({failed, failed, failed}));
}

void OrdersTest::closingEndsTheAsking()
{
    ScriptedChannel *channel = nullptr;
    auto session = ScriptedReference{}.open(channel, 60000);
    channel->always(QueryRequestFateRequest, [](const MessageBody &) { return fate(true); });
    channel->hold(QueryRequestFateRequest);
    channel->nextTimesOut(OrderRequest);
    QVariant answer;
    MasterTradeLogic::instance()->orders(threeOrders(), answer);
    QTRY_COMPARE(channel->count(QueryRequestFateRequest), 1);
    QVERIFY(!session->settle(20)); // a question that is out is work under way
    session.reset();
    session = ScriptedReference{}.open(channel);
    QVERIFY(session->settle(60000));
    QCOMPARE(channel->count(QueryRequestFateRequest), 0);
    QVERIFY(session->takeBusinessMessages().isEmpty());
}

void OrdersTest::afterAReconnectionOrdersWaitForThePicture()
{
    ScriptedChannel *channel = nullptr;
    const auto session = ScriptedReference{}.open(channel, 60000);
    channel->always(OrderRequest, [](const MessageBody &) {
        return ScriptedChannel::success({accepted("1"), accepted("2"), accepted("3")});
    });
    const auto sent = [] {
        QVariant answer;
        MasterTradeLogic::instance()->orders(threeOrders(), answer);
        return outcomes(MasterTradeLogic::transOrderRsp(threeOrders(), answer)).first();
    };
    QSignalSpy changed(&session->news(), &HostNews::pictureChanged);
    QCOMPARE(sent(), QStringLiteral("success 1"));
    channel->disconnect();
    QCOMPARE(sent(), QStringLiteral("fail 请求未发送，与服务器的连接已断开"));

    const QString waits = QStringLiteral("fail 数据尚未与服务器重新同步，委托未发送，请稍后重试");
    QSemaphore isBusy;
    ZrObject listener(true, nullptr); // has not taken yet what came before
    QMetaObject::invokeMethod(&listener, [&] { isBusy.acquire(); });
    const auto atEnd = qScopeGuard([&] { isBusy.release(); });
    channel->hold(Stand_MsgType::EchoRequest);
    channel->nextTimesOut(Stand_MsgType::EchoRequest);
    channel->reconnect();
    QCOMPARE(sent(), waits);
    QTRY_COMPARE(channel->count(Stand_MsgType::EchoRequest), 1); // and is asked for again
    QTRY_COMPARE(changed.size(), 1);
    QCOMPARE(sent(), waits);
    channel->release(Stand_MsgType::EchoRequest);
    QTRY_COMPARE(int(session->news().requests().last().outcome), int(MessageChannel::Outcome::Answered));
    QString errorText;
    RecordList rows;
    channel->next("Cancel", ScriptedChannel::success()); // what is no order is sent, and comes back after the echo
    QCOMPARE(MasterUtils::SendRequestListToServer(nullptr, "Cancel", {}, 0, errorText, rows, false, false),
             QStringLiteral("success"));
    QCOMPARE(sent(), waits);
    QVERIFY(!session->picture().isInStep);
    QCOMPARE(channel->count(OrderRequest), 1);

    isBusy.release();
    const QDeadlineTimer deadline(60000);
    while (sent() != "success 1" && !deadline.hasExpired()) // opens also while this thread runs no events
        QThread::yieldCurrentThread();
    QVERIFY(session->picture().isInStep);
    QTRY_COMPARE(changed.size(), 2);
    QCOMPARE(channel->count(OrderRequest), 2);
}

void OrdersTest::tickIsThatOfThePricesBand()
{
    using namespace MasterBusinessDataInterface;
    const auto instrument = [](const char *symbol, const QVariantList &bands) {
        return VariantRecord{{"symbol", symbol}, {"tickBands", bands}, {"qtyStep", 0}};
    };
    auto owned = std::make_unique<ScriptedChannel>();
    ScriptedReference{}.script(*owned);
    owned->next(Stand_MsgType::QueryInstrumentsRequest,
                ScriptedChannel::success({instrument("open", {0.0, 0.25, 0.001, 0.25, 0.5, 0.005, 0.5, 0.0, 0.01}),
                                          instrument("closed", {1.0, 2.0, 0.1, 2.0, 3.0, 0.2})}));
    QString errorText;
    const auto session = HostSession::open({std::move(owned), "u1", {}}, errorText);
    QCOMPARE(GetPriceUnitBySymbol("open", 0.2499, "normalBuy"), 0.001);
    QCOMPARE(GetPriceUnitBySymbol("open", 0.25, "normalSell"), 0.005); // an end belongs to the next band
    QCOMPARE(GetPriceUnitBySymbol("open", 1e300, {}), 0.01);
    QCOMPARE(GetPriceUnitBySymbol("open", qQNaN(), {}), 0.001);
    QCOMPARE(GetPriceUnitBySymbol("closed", -5, {}), 0.1);
    QCOMPARE(GetPriceUnitBySymbol("closed", 3, {}), 0.2);
    QCOMPARE(GetPriceUnitBySymbol("unknown", 5, {}), 0.01);
    QCOMPARE(GetQtyStepBySymbol("open"), 1);
    QCOMPARE(GetPricePrecisionBySymbol("unknown", {}), 2);
}

T0_REGISTER_TEST(OrdersTest)
#include "OrdersTest.moc"
