#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "SampleBooks.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "TestClient.h"
#include "TestOrders.h"
#include "Tests.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <algorithm>
#include <random>

namespace {

namespace Market_ = Stand_Fields::Market;
namespace Order_ = Stand_Fields::Order;
namespace Security_ = Orvane_Fields::Security;
namespace Side = Master_Values::SideUnion;
namespace T0_ = Master_Fields::ManualT0;
namespace UserAccount_ = Orvane_Fields::UserAccount;
using namespace TestOrders;
using Master_Fields::Security::SideUnion;
using Orvane_Fields::System::requestExeStatus;
using Orvane_Fields::System::textDescription;

/// The sample books with few securities: traders meet at each.
Books fewSecurities()
{
    Books books = SampleBooks::make(1);
    static const QStringList kept{"600001", "688002", "110003", "00001", "600003", "830002", "600002"};
    const auto keep = [](auto &list, auto idOf) {
        const auto goes = [&](const auto &item) { return !kept.contains(idOf(item)); };
        list.erase(std::remove_if(list.begin(), list.end(), goes), list.end());
    };
    const auto ofHolding = [](const auto &item) { return item.holding.securityID; };
    keep(books.instruments, [](const Instrument &instrument) { return instrument.securityID; });
    keep(books.quotes, [](const OpeningQuote &quote) { return quote.symbol.section('.', 0, 0); });
    keep(books.positions, ofHolding);
    keep(books.margin, ofHolding);
    keep(books.resources, ofHolding);
    keep(books.pools, ofHolding);
    keep(books.carried, ofHolding);
    books.buildIndexes();
    return books;
}

bool isLive(const VariantRecord &order)
{
    const QString status = textOf(order, Security_::orderStatus);
    return status == Stand_Values::OrderStatus::Accepted || status == Stand_Values::OrderStatus::PartlyFilled;
}

QStringList livePushes()
{
    return {Stand_MsgType::OrderPush, Stand_MsgType::FillPush, Stand_MsgType::PositionPush};
}

/// Random days of several traders. What happens follows from the seed alone, wherever the gateway was restarted.
class Days
{
public:
    Days(quint32 seed, const QString &stateFile)
        : m_random(seed)
        , m_file(stateFile)
        , m_books(fewSecurities())
    {
        open();
    }

    void event()
    {
        const quint32 dice = below(100);
        if (dice < 20)
            step();
        else if (dice < 70)
            order();
        else if (dice < 90)
            cancel();
        else
            change();
        look();
    }

    void restart()
    {
        const QByteArray before = picture();
        m_clients.clear();
        m_gateway.reset();
        open();
        QVERIFY2(picture() == before, "a restart changes the picture");
    }

    QByteArray transcript; ///< of all pushes
    int fills = 0;

private:
    quint32 below(quint32 end) { return m_random() % end; }
    template <typename List> auto any(const List &list) { return list.at(int(below(quint32(list.size())))); }
    TestClient &manager() { return *m_clients["manager1"]; }

    void open()
    {
        m_gateway = openGateway(m_books, m_file);
        for (const char *user : {"manager1", "lead1", "trader1", "trader2", "trader3", "trader4"})
            m_clients[user] = std::make_shared<TestClient>(m_gateway, user);
        m_seen = 0;
        for (const QString &type : livePushes())
            QVERIFY(manager().subscribe(type, QString()));
        for (const User &user : m_books.users)
            QVERIFY(manager().subscribe(Master_MsgType::ManualT0RealTimePoolUsagePush, user.userID));
    }

    MessageBody send(const QString &user, const QString &type, const VariantRecord &header, const RecordList &rows)
    {
        Envelope envelope = changeOf(type, header, rows);
        envelope.id = QStringLiteral("request%1").arg(++m_requests);
        return m_clients[user]->send(envelope);
    }

    void step()
    {
        namespace Command = Stand_Values::MarketCommand;
        const VariantRecord market =
            send("trader1", Stand_MsgType::ExchangeControlRequest, control(Command::step, 1 + below(600)), {}).rows[0];
        if (textOf(market, Market_::marketTime).mid(11) > "15:30")
            send("trader1", Stand_MsgType::ExchangeControlRequest, control(Command::dayChange), {});
    }

    void order()
    {
        const OpeningPool pool = any(m_books.pools);
        const Holding &holding = pool.holding;
        const QString user = pool.trader == "public" ? any(m_books.tradersOf(holding.account)) : pool.trader;
        const Instrument instrument = *m_books.instrument(holding.securityID, holding.exchange);
        VariantRecord quote;
        for (const VariantRecord &row : manager().ask(Stand_MsgType::QueryQuotesRequest).rows)
            if (textOf(row, Security_::symbol) == instrument.symbol)
                quote = row;
        const QVariantList prices = quote.value(Stand_Fields::Quote::bidPrices).toList() +
                                    quote.value(Stand_Fields::Quote::askPrices).toList() + QVariantList{0.0031};
        RecordList rows;
        for (quint32 i = below(3) + 1; i > 0; --i) {
            const QString side = any(QStringList{Side::normalBuy, Side::normalSell, Side::normalBuy, Side::normalSell,
                                                 Side::collateralBuy, Side::collateralSell});
            const qint64 quantity = instrument.minQty * (1 + below(8)) + (below(12) == 0 ? below(100) : 0);
            rows.append(orderOf(instrument.symbol, instrument.exchange, side, any(prices).toString(), quantity));
        }
        send(user, Stand_MsgType::OrderRequest, headerOf(holding.account), rows);
    }

    void cancel()
    {
        QStringList live;
        for (const VariantRecord &order : qAsConst(m_orders))
            if (isLive(order) || below(20) == 0)
                live.append(textOf(order, Security_::orderID));
        if (live.isEmpty())
            return;
        const VariantRecord order = m_orders.value(any(live));
        const QString user = below(3) == 0 ? "manager1" : textOf(order, UserAccount_::loginUserId);
        send(user, Master_MsgType::orderCancelBatchCppRequest,
             {{UserAccount_::tradingAccount, order.value(UserAccount_::tradingAccount)}},
             {{{Security_::orderID, order.value(Security_::orderID)}}, {{Security_::orderID, any(live)}}});
    }

    void change()
    {
        const Account account = any(m_books.accounts);
        VariantRecord row{{UserAccount_::tradingAccount, account.tradingAccount}};
        const RecordList pools = manager().all(Master_MsgType::QueryManualT0SecurityPoolRequest, row);
        if (below(2) == 0 && !pools.isEmpty()) {
            row = any(pools);
            row.insert(T0_::PoolTotalQty, qint64(below(2500)));
            send("manager1", Master_MsgType::AlterManualT0SecurityPoolRequest, {}, {row});
            return;
        }
        using namespace Master_Values::AlterType;
        row.insert(UserAccount_::productAccount, account.productAccount);
        row.insert(Master_Fields::System::alterType, below(4) != 0 ? Add : Delete);
        send("manager1", Master_MsgType::AlterManualT0ProductsRequest, {}, {row});
    }

    /// Everything that was pushed since the last time, and whether it all fits together.
    void look()
    {
        manager().ask(Stand_MsgType::EchoRequest);
        const RecordList pushed = manager().pushed();
        const QStringList types = manager().pushedTypes();
        for (; m_seen < pushed.size(); ++m_seen) {
            const VariantRecord &row = pushed.at(m_seen);
            transcript += types.at(m_seen).toUtf8() + MessageBody{{}, {row}}.encode() + '\n';
            if (types.at(m_seen) == Stand_MsgType::OrderPush)
                m_orders.insert(textOf(row, Security_::orderID), row);
            if (types.at(m_seen) == Stand_MsgType::FillPush) {
                ++fills;
                m_filled[textOf(row, Security_::orderID)] += row.value(Stand_Fields::Fill::fillQty).toLongLong();
            }
            const QString time = textOf(row, Master_Fields::System::ModifyTime);
            QVERIFY(time.isEmpty() || time > m_lastTime);
            m_lastTime = qMax(time, m_lastTime);
        }
        QCOMPARE(m_gateway->faults(), QString());
        for (auto order = m_orders.cbegin(); order != m_orders.cend(); ++order)
            QCOMPARE(order->value(Order_::filledQty).toLongLong(), m_filled.value(order.key()));
    }

    QByteArray picture()
    {
        QByteArray all;
        for (const QString &type : {Stand_MsgType::QueryOrdersRequest, Stand_MsgType::QueryFillsRequest,
                                    Stand_MsgType::QueryPositionsRequest, Stand_MsgType::QueryQuotesRequest})
            all += MessageBody{{}, manager().all(type, {}, 100)}.encode();
        const VariantRecord everybody{{T0_::T0TraderId, "lead1,trader1,trader2,trader3,trader4"}};
        return all + MessageBody{{}, manager().all(Master_MsgType::QueryManualT0RealTimePoolUsageRequest, everybody)}
                         .encode();
    }

    std::mt19937 m_random;
    const QString m_file;
    const Books m_books;
    std::shared_ptr<PaperGateway> m_gateway;
    std::map<QString, std::shared_ptr<TestClient>> m_clients;
    int m_requests = 0;
    int m_seen = 0;
    QMap<QString, VariantRecord> m_orders;
    QMap<QString, qint64> m_filled;
    QString m_lastTime;
};

} // namespace

class OrderTest : public QObject
{
    Q_OBJECT

private slots:
    void randomDays();
    void refusals_data();
    void refusals();
    void oneOrderFromItsRequestToTheNextDay();
    void cancelsAreAnsweredOneByOne();
    void liveOrdersKeepTheirPools();
    void whoComesBackIsToldWhatHeMissed();
    void theClockRunsUntilItIsHeld();
};

void OrderTest::randomDays()
{
    const int events =
        qEnvironmentVariableIntValue("T0_LEDGER_EVENTS") > 0 ? qEnvironmentVariableIntValue("T0_LEDGER_EVENTS") : 400;
    const quint32 seed = 20260105;
    QTemporaryDir dir;
    Days straight(seed, QString());
    Days restarted(seed, dir.filePath("state"));
    std::mt19937 moments(seed);
    for (int i = 0; i < events && !QTest::currentTestFailed(); ++i) {
        straight.event();
        restarted.event();
        if (moments() % 50 == 0)
            restarted.restart();
        QVERIFY2(restarted.transcript == straight.transcript, qPrintable(QString::number(i)));
        straight.transcript.clear();
        restarted.transcript.clear();
    }
    QVERIFY2(straight.fills > events / 10, qPrintable(QString::number(straight.fills)));
}

void OrderTest::refusals_data()
{
    QTest::addColumn<VariantRecord>("header"); // what is otherwise than in a good request
    QTest::addColumn<VariantRecord>("row");
    QTest::addColumn<QString>("text");
    const auto header = [](const char *name, const QString &field, const QVariant &value, const char *text) {
        QTest::newRow(name) << VariantRecord{{field, value}} << VariantRecord() << QString::fromUtf8(text);
    };
    const auto row = [](const char *name, const QString &field, const QVariant &value, const char *text) {
        QTest::newRow(name) << VariantRecord() << VariantRecord{{field, value}} << QString::fromUtf8(text);
    };
    row("a good order", Security_::orderQty, 100, "");
    header("another business", Master_Fields::Security::VantaBusiType, "Other", "业务类型Other不支持委托");
    header("no such account", UserAccount_::tradingAccount, "NONE", "账号不存在：NONE");
    header("a disabled account", UserAccount_::tradingAccount, "A000303", "账号A000303未选为T0账号");
    header("not his account", UserAccount_::tradingAccount, "A000201", "交易员trader1不能交易账号A000201");
    row("no such security", Security_::symbol, "1.SH", "证券不存在：1.SH（SH）");
    row("collateral in a cash account", SideUnion, Side::collateralBuy, "账号A000101不是信用账号，不能进行担保品买卖");
    row("no such side", SideUnion, "sideways", "不支持的买卖方向：sideways");
    row("no limit order", Order_::priceType, "market", "只支持限价委托");
    row("no price", Security_::price, "0", "委托价格必须大于0");
    row("off the tick", Security_::price, "12.365", "委托价格不是最小变动价位的整数倍");
    row("above the limit up", Security_::price, "13.61", "价格不是有效价位，或超出涨跌停范围11.12到13.6");
    row("nothing", Security_::orderQty, 0, "委托数量必须大于0");
    row("a text", Security_::orderQty, "100", "委托数量应为整数");
    row("half a share", Security_::orderQty, 100.5, "委托数量应为整数");
    row("off the step", Security_::orderQty, 150, "买入数量应为100的整数倍");
    row("above the limits", Security_::orderQty, 900000, "委托数量900000超过可用额度2700");
    row("above the exposure", Security_::orderQty, 800, "成交后的敞口超过上限700");
}

void OrderTest::refusals()
{
    QFETCH(VariantRecord, header);
    QFETCH(VariantRecord, row);
    QFETCH(QString, text);
    TestClient client(openGateway(fewSecurities()), "trader1");
    VariantRecord wholeHeader = headerOf("A000101");
    VariantRecord wholeRow = orderOf("600001.SH", "SH", Side::normalBuy, "12.3", 100);
    for (auto field = header.cbegin(); field != header.cend(); ++field)
        wholeHeader.insert(field.key(), *field);
    for (auto field = row.cbegin(); field != row.cend(); ++field)
        wholeRow.insert(field.key(), *field);
    const MessageBody answer = client.change(Stand_MsgType::OrderRequest, wholeHeader, {wholeRow});
    QCOMPARE(header.isEmpty() ? textOf(answer.rows.value(0), textDescription) : refusal(answer), text);
    QCOMPARE(client.all(Stand_MsgType::QueryOrdersRequest).size(), text.isEmpty() ? 1 : 0);
}

void OrderTest::oneOrderFromItsRequestToTheNextDay()
{
    namespace Command = Stand_Values::MarketCommand;
    const auto gateway = openGateway(fewSecurities());
    TestClient client(gateway, "trader1");
    for (const QString &type : livePushes())
        QVERIFY(client.subscribe(type, QString()));
    QVERIFY(client.subscribe(Master_MsgType::ManualT0RealTimePoolUsagePush, "trader1"));
    QVERIFY(succeeded(client.ask(Stand_MsgType::ExchangeControlRequest, control(Command::step, 960))));

    const Envelope request = changeOf(Stand_MsgType::OrderRequest, headerOf("A000101"),
                                      {orderOf("600001.SH", "SH", Side::normalBuy, "13.6", 100),
                                       orderOf("600001.SH", "SH", Side::normalBuy, "11.12", 200),
                                       orderOf("830002.BJ", "BJ", Side::normalBuy, "1000", 200)});
    const MessageBody answer = client.send(request);
    QCOMPARE(answer.rows.size(), 3);
    QVERIFY(textOf(answer.rows[2], textDescription).startsWith("价格"));
    const VariantRecord asked{{Order_::requestId, request.id}};
    const MessageBody fate = client.ask(Stand_MsgType::QueryRequestFateRequest, asked);
    QVERIFY(fate.values.value(Order_::known).toBool());
    QCOMPARE(fate.rows, answer.rows);
    QVERIFY(!client.ask(Stand_MsgType::QueryRequestFateRequest, {{Order_::requestId, "other"}})
                 .values.value(Order_::known)
                 .toBool());

    client.ask(Stand_MsgType::EchoRequest);
    const QString usage = Master_MsgType::ManualT0RealTimePoolUsagePush;
    const QStringList caused{Stand_MsgType::OrderPush, usage, Stand_MsgType::OrderPush,
                             Stand_MsgType::FillPush,  usage, Stand_MsgType::PositionPush,
                             Stand_MsgType::OrderPush, usage};
    QCOMPARE(client.pushedTypes(), caused);
    QCOMPARE(client.send(request).rows, answer.rows);
    client.ask(Stand_MsgType::EchoRequest);
    QCOMPARE(client.pushedTypes(), caused);

    QVERIFY(succeeded(client.ask(Stand_MsgType::ExchangeControlRequest, control(Command::dayChange))));
    client.ask(Stand_MsgType::EchoRequest);
    const VariantRecord expired = client.pushed().value(caused.size());
    QCOMPARE(textOf(expired, Security_::orderStatus), Stand_Values::OrderStatus::Expired);
    QCOMPARE(textOf(expired, Order_::updateTime), QStringLiteral("2026-01-05 09:31:00.000"));
    QVERIFY(client.all(Stand_MsgType::QueryOrdersRequest).isEmpty());
    QCOMPARE(textOf(client.ask(Stand_MsgType::ExchangeControlRequest, control(Command::status)).rows[0],
                    Market_::marketTime),
             QStringLiteral("2026-01-06 09:15:00"));
}

void OrderTest::cancelsAreAnsweredOneByOne()
{
    const auto gateway = openGateway(fewSecurities());
    TestClient owner(gateway, "trader1");
    TestClient other(gateway, "trader2");
    TestClient manager(gateway, "manager1");
    const auto step = [&](qint64 count) {
        owner.ask(Stand_MsgType::ExchangeControlRequest, control(Stand_Values::MarketCommand::step, count));
    };
    const VariantRecord low = orderOf("600001.SH", "SH", Side::normalBuy, "11.12", 100);
    const RecordList placed = owner.change(Stand_MsgType::OrderRequest, headerOf("A000101"), {low, low, low}).rows;
    const auto cancel = [&](TestClient &client, const QString &account, const RecordList &rows) {
        const MessageBody answer =
            client.change(Master_MsgType::orderCancelBatchCppRequest, {{UserAccount_::tradingAccount, account}}, rows);
        QStringList texts{refusal(answer)};
        for (const VariantRecord &row : answer.rows)
            texts.append(textOf(row, textDescription));
        return texts;
    };
    const QString none;
    QCOMPARE(cancel(owner, "A000101", {placed[0], placed[0], {{Security_::orderID, "O999999999"}}}),
             (QStringList{none, none, "委托已完成，不能撤单", "委托不存在"}));
    QCOMPARE(cancel(owner, "A000102", {placed[1]}), (QStringList{none, "委托属于账号A000101"}));
    QCOMPARE(cancel(other, "A000101", {placed[1]}), (QStringList{none, "委托不存在"}));
    QCOMPARE(cancel(manager, "A000101", {placed[1]}), (QStringList{none, none}));
    step(300); // into the part of the auction that takes no cancels
    QCOMPARE(cancel(owner, "A000101", {placed[2]}), (QStringList{none, "市场SH当前时段不接受撤单"}));
    step(300);
    const RecordList closed = owner.change(Stand_MsgType::OrderRequest, headerOf("A000101"), {low}).rows;
    QCOMPARE(textOf(closed.value(0), textDescription), QStringLiteral("市场SH当前时段不接受委托"));
}

void OrderTest::liveOrdersKeepTheirPools()
{
    const auto gateway = openGateway(fewSecurities());
    TestClient trader(gateway, "trader1");
    TestClient manager(gateway, "manager1");
    trader.change(Stand_MsgType::OrderRequest, headerOf("A000101"),
                  {orderOf("600001.SH", "SH", Side::normalBuy, "11.12", 100)});
    const VariantRecord account{{UserAccount_::tradingAccount, "A000101"}};
    int kept = 0;
    for (const VariantRecord &pool : manager.all(Master_MsgType::QueryManualT0SecurityPoolRequest, account))
        kept += refusal(manager.change(Master_MsgType::DeleteManualT0SecurityPoolRequest, {}, {pool})) ==
                QStringLiteral("第1行：交易员trader1有未完成委托O000000001");
    QCOMPARE(kept, 2); // his own and the public one
    for (const VariantRecord &resource : manager.all(Master_MsgType::QueryManualT0ResourceRequest, account))
        if (textOf(resource, Security_::securityID) == "600001")
            QVERIFY(!succeeded(manager.change(Master_MsgType::DeleteManualT0ResourceRequest, {}, {resource})));
}

void OrderTest::whoComesBackIsToldWhatHeMissed()
{
    const auto gateway = openGateway(fewSecurities());
    TestClient trader(gateway, "trader1");
    trader.change(Stand_MsgType::OrderRequest, headerOf("A000101"),
                  {orderOf("600001.SH", "SH", Side::normalBuy, "11.12", 100)});
    TestClient back(gateway, QString());
    back.ask(Stand_MsgType::LoginRequest, {{UserAccount_::userID, "trader1"}},
             {{Stand_Fields::Session::reconnected, true}});
    for (const QString &type : QStringList{Stand_MsgType::QuotePush, Stand_MsgType::MarketPush} + livePushes())
        QVERIFY(back.subscribe(type, QString()));
    back.ask(Stand_MsgType::EchoRequest);
    QCOMPARE(back.pushedTypes().count(Stand_MsgType::OrderPush), 1);
    QCOMPARE(back.pushedTypes().count(Stand_MsgType::MarketPush), 1);
    QVERIFY(back.pushedTypes().contains(Stand_MsgType::PositionPush));
}

void OrderTest::theClockRunsUntilItIsHeld()
{
    namespace Command = Stand_Values::MarketCommand;
    TestClient client(openGateway(fewSecurities()), "trader1");
    const auto timeAfter = [&](const VariantRecord &row) {
        return textOf(client.ask(Stand_MsgType::ExchangeControlRequest, row).rows.value(0), Market_::marketTime);
    };
    QVERIFY(client.subscribe(Stand_MsgType::MarketPush, QString()));
    VariantRecord run = control(Command::run);
    run.insert(Market_::speed, 1000.0);
    timeAfter(run);
    QTRY_VERIFY(timeAfter(control(Command::status)) > "2026-01-05 09:31");
    const QString held = timeAfter(control(Command::hold));
    client.change(Stand_MsgType::OrderRequest, headerOf("A000101"),
                  {orderOf("600001.SH", "SH", Side::normalBuy, "13.6", 100)});
    QVERIFY(client.all(Stand_MsgType::QueryFillsRequest).isEmpty());
    QCOMPARE(timeAfter(control(Command::status)), held);
    QCOMPARE(refusal(client.ask(Stand_MsgType::ExchangeControlRequest, control(Command::step))),
             QStringLiteral("市场已暂停，时钟不动"));
    run.insert(Market_::speed, 0);
    QCOMPARE(timeAfter(run), held);
    QVERIFY(timeAfter(control(Command::step)) > held);
    QCOMPARE(client.all(Stand_MsgType::QueryFillsRequest).size(), 1);
    QCOMPARE(textOf(client.pushed().constLast(), Market_::marketTime), timeAfter(control(Command::status)));
    for (int i = 0; i < 2; ++i) // without a day change no other date comes
        QCOMPARE(timeAfter(control(Command::step, 86400)), QStringLiteral("2026-01-05 23:59:59"));
    QCOMPARE(timeAfter(control(Command::dayChange)), QStringLiteral("2026-01-06 09:15:00"));
}

T0_REGISTER_TEST(OrderTest)
#include "OrderTest.moc"
