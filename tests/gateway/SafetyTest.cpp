#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "SampleBooks.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "Store.h"
#include "TestClient.h"
#include "TestOrders.h"
#include "Tests.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <atomic>

namespace {

namespace Safety_ = Stand_Fields::Safety;
namespace Security_ = Orvane_Fields::Security;
namespace Switch = Stand_Values::TradeSwitch;
using namespace TestOrders;
using Master_Fields::ManualT0::T0TraderId;
using Orvane_Fields::System::textDescription;
using Orvane_Fields::UserAccount::tradingAccount;

/// The sample books, but only 600001 is set aside: 20000 for everybody in two accounts of one product and in one of
/// another. trader1 is 500 long in A000101 from the day before.
Books books()
{
    Books books = SampleBooks::make(1);
    books.resources.clear();
    books.pools.clear();
    books.carried.clear();
    books.margin.clear();
    books.positions.clear();
    for (const char *account : {"A000101", "A000102", "A000301"}) {
        const Holding holding{account, "600001", "SH"};
        books.positions.append({holding, 50000, 50000});
        books.resources.append({holding, 30000});
        books.pools.append({Books::publicTrader(), holding, 20000, -1, -1});
    }
    books.carried.append({"trader1", {"A000101", "600001", "SH"}, "BuyOpen", 500, 6000});
    books.buildIndexes();
    return books;
}

/// A gateway whose clock the test sets, and its users.
class Floor
{
public:
    explicit Floor(const QString &stateFile = QString())
        : m_file(stateFile)
    {
        restart();
    }

    void restart()
    {
        m_clients.clear();
        m_gateway.reset();
        GatewayOptions options;
        options.clock = [this] { return m_now.load(); };
        m_gateway = openGateway(books(), m_file, options);
    }

    TestClient &client(const QString &user)
    {
        auto &client = m_clients[user];
        if (!client)
            client = std::make_shared<TestClient>(m_gateway, user);
        return *client;
    }

    QString hold(const QString &trader, VariantRecord rules)
    {
        rules.insert(T0TraderId, trader);
        return refusal(client("manager1").change(Stand_MsgType::AlterSafetyRulesRequest, {}, {rules}));
    }

    /// One line of a story: "MS USER: sell 100 12.3, buy 100 12.4 in ACCOUNT", "MS USER: cancel O000000001, …" or
    /// "MS USER: again", the last request once more. What became of each order, "-" for a good one.
    QString play(const QString &line)
    {
        const QString user = line.section(' ', 1, 1).chopped(1);
        const QString asked = line.section(": ", 1).section(" in ", 0, 0);
        const QString account = line.contains(" in ") ? line.section(" in ", 1) : QStringLiteral("A000101");
        m_now = start + line.section(' ', 0, 0).toLongLong();
        if (asked != "again")
            m_last = requestOf(asked, account);
        const MessageBody answer = client(user).send(m_last);
        if (!succeeded(answer))
            return refusal(answer);
        QStringList texts;
        for (const VariantRecord &row : answer.rows)
            texts.append(row.contains(textDescription) ? textOf(row, textDescription) : QStringLiteral("-"));
        return texts.join('|');
    }

private:
    static constexpr qint64 start = 1'000'000;

    static Envelope requestOf(const QString &asked, const QString &account)
    {
        RecordList rows;
        for (const QString &item : asked.split(", ")) {
            const QStringList words = item.split(' ');
            using namespace Master_Values::SideUnion;
            if (words[0] == "cancel")
                rows.append({{Security_::orderID, words.value(1)}});
            else
                rows.append(orderOf("600001.SH", "SH", words[0] == "buy" ? normalBuy : normalSell, words.value(2),
                                    words.value(1).toInt()));
        }
        return asked.startsWith("cancel")
                   ? changeOf(Master_MsgType::orderCancelBatchCppRequest, {{tradingAccount, account}}, rows)
                   : changeOf(Stand_MsgType::OrderRequest, headerOf(account), rows);
    }

    const QString m_file;
    std::atomic<qint64> m_now{start};
    std::shared_ptr<PaperGateway> m_gateway;
    std::map<QString, std::shared_ptr<TestClient>> m_clients;
    Envelope m_last;
};

} // namespace

class SafetyTest : public QObject
{
    Q_OBJECT

private slots:
    void holdsTraders_data();
    void holdsTraders();
    void aManagersLimitIsForHisOwnOrders();
    void everybodySeesHisOwnRules();
    void lastsOverRestartsAndDaysAndIsAudited();
};

void SafetyTest::holdsTraders_data()
{
    QTest::addColumn<VariantRecord>("rules"); // of trader1
    QTest::addColumn<QStringList>("story");   // "line => what becomes of it"
    const auto row = [](const char *name, const VariantRecord &rules, const QStringList &story) {
        QTest::newRow(name) << rules << story;
    };
    const VariantRecord reduce{{Safety_::tradeSwitch, Switch::ReduceOnly}};
    row("reduces to zero and not beyond", reduce,
        {"0 trader1: sell 600 12.3 => 已被限制为只减仓，该方向最多还可委托500", "0 trader1: sell 500 12.3 => -",
         "0 trader1: sell 100 12.3 => 已被限制为只减仓，该方向没有可减的仓位"});
    row("counts live orders until they are cancelled", reduce,
        {"0 trader1: sell 300 12.3, sell 300 12.3, sell 200 12.3 => "
         "-|已被限制为只减仓，该方向最多还可委托200|-",
         "0 trader1: cancel O000000001 => -", "0 trader1: sell 300 12.3 => -"});
    row("a position is its account's", reduce,
        {"0 trader1: buy 100 12.3 => 已被限制为只减仓，该方向没有可减的仓位",
         "0 trader1: sell 100 12.3 in A000102 => 已被限制为只减仓，该方向没有可减的仓位"});
    const VariantRecord threeOrders{{Safety_::ordersPerSecond, 3}};
    const QString tooFast = QStringLiteral("委托过于频繁：每秒最多3笔");
    row("orders a second, each of a list counts", threeOrders,
        {"0 trader1: buy 100 12.3, buy 100 12.3 => -|-", "400 trader1: buy 100 12.3, buy 100 12.3 => -|" + tooFast,
         "400 trader2: buy 100 12.3 => -", "999 trader1: buy 100 12.3 => " + tooFast, "1000 trader1: buy 100 12.3 => -",
         "1399 trader1: buy 100 12.3, buy 100 12.3 => -|" + tooFast, "1400 trader1: buy 100 12.3 => -"});
    row("what is refused otherwise is not counted, nor what is repeated", threeOrders,
        {"0 trader1: buy 100 12.305, buy 150 12.3, buy 100 12.3, buy 100 12.3 => "
         "委托价格不是最小变动价位的整数倍|买入数量应为100的整数倍|-|-",
         "0 trader1: again => 委托价格不是最小变动价位的整数倍|买入数量应为100的整数倍|-|-",
         "0 trader1: buy 100 12.3 => -", "0 trader1: buy 100 12.3 => " + tooFast});
    row("a clock that was set back locks nobody out", {{Safety_::ordersPerSecond, 1}, {Safety_::duplicateMs, 500}},
        {"5000 trader1: buy 100 12.3 => -", "0 trader1: buy 100 12.3 => -"});
    const VariantRecord twoCancels{{Safety_::cancelsPerMinute, 2}};
    const QString placed = "0 trader1: buy 100 12.3, buy 100 12.3, buy 100 12.3, buy 100 12.3 => -|-|-|-";
    const QString tooMany = QStringLiteral("撤单过于频繁：每分钟最多2笔");
    row("cancels a minute", twoCancels,
        {placed,
         "0 trader1: cancel O000000001, cancel O000000001, cancel O000000002, cancel O000000003 => "
         "-|委托已完成，不能撤单|-|" +
             tooMany,
         "59999 trader1: cancel O000000003 => " + tooMany, "59999 manager1: cancel O000000003 => -",
         "60000 trader1: cancel O000000004 => -"});
    row("who is held may always cancel", {{Safety_::cancelsPerMinute, 1}, {Safety_::tradeSwitch, Switch::ReduceOnly}},
        {"0 trader1: sell 100 12.3, sell 100 12.3, sell 100 12.3 => -|-|-",
         "0 trader1: cancel O000000001, cancel O000000002, cancel O000000003 => -|-|-"});
    const VariantRecord once{{Safety_::duplicateMs, 500}};
    row("another request may not repeat an order at once", once,
        {"0 trader1: buy 100 12.3, buy 100 12.3 => -|-", "0 trader1: again => -|-",
         "499 trader1: buy 100 12.300000000000002, buy 200 12.3, buy 100 12.31, sell 100 12.4 => "
         "与500毫秒内的委托O000000002重复，未报出|-|-|-",
         "499 trader1: buy 100 12.3 in A000102 => -", "499 trader2: buy 100 12.3 => -",
         "500 trader1: buy 100 12.3 => -"});
    row("an order that was refused is not repeated", {{Safety_::duplicateMs, 500}, {Safety_::ordersPerSecond, 1}},
        {"0 trader1: buy 100 12.3, buy 200 12.3 => -|委托过于频繁：每秒最多1笔", "1000 trader1: buy 200 12.3 => -"});
    row("no order meets one of its product", {{Safety_::refuseSelfMatch, true}},
        {"0 trader1: sell 100 12.3, buy 100 12.3, buy 100 12.29 => "
         "-|会与同一产品的委托O000000001（账号A000101，价格12.3）自成交，未报出|-",
         "0 trader2: sell 100 12.29, buy 100 12.28 => -|-",
         "0 trader1: buy 100 12.35, buy 100 12.28 => 会与同一产品其他交易员的委托自成交，未报出|-",
         "0 trader1: sell 100 12.28 in A000102 => "
         "会与同一产品的委托O000000002（账号A000101，价格12.29）自成交，未报出",
         "0 trader1: sell 100 12.28 in A000301 => -", "0 trader1: cancel O000000002 => -",
         "0 trader1: sell 100 12.29 => -"});
    row("rules are off",
        {{Safety_::tradeSwitch, Switch::Active},
         {Safety_::ordersPerSecond, 0},
         {Safety_::cancelsPerMinute, 0},
         {Safety_::duplicateMs, 0},
         {Safety_::refuseSelfMatch, false}},
        {placed, "0 trader1: buy 100 12.3, sell 900 12.3 => -|-",
         "0 trader1: cancel O000000001, cancel O000000002, cancel O000000003 => -|-|-"});
}

void SafetyTest::holdsTraders()
{
    QFETCH(VariantRecord, rules);
    QFETCH(QStringList, story);
    Floor floor;
    QCOMPARE(floor.hold("trader1", rules), QString());
    for (const QString &line : story)
        QCOMPARE(line.section(" => ", 0, 0) + " => " + floor.play(line.section(" => ", 0, 0)), line);
}

void SafetyTest::aManagersLimitIsForHisOwnOrders()
{
    Floor floor;
    QCOMPARE(floor.hold("lead1", {{Safety_::cancelsPerMinute, 1}}), QString());
    QCOMPARE(floor.play("0 trader1: buy 100 12.3, buy 100 12.3"), QStringLiteral("-|-"));
    QCOMPARE(floor.play("0 lead1: buy 100 12.3, buy 100 12.3"), QStringLiteral("-|-"));
    QCOMPARE(floor.play("0 lead1: cancel O000000001, cancel O000000002, cancel O000000003, cancel O000000004"),
             QStringLiteral("-|-|-|撤单过于频繁：每分钟最多1笔"));
}

void SafetyTest::everybodySeesHisOwnRules()
{
    Floor floor;
    for (const char *user : {"manager1", "trader1", "trader2"})
        QVERIFY(floor.client(user).subscribe(Stand_MsgType::SafetyRulesPush, QString()));
    QCOMPARE(floor.hold("trader1", {{Safety_::tradeSwitch, Switch::Halted}}), QString());
    QCOMPARE(floor.client("manager1").all(Stand_MsgType::QuerySafetyRulesRequest, {}, 2).size(), 5);
    const RecordList own = floor.client("trader1").all(Stand_MsgType::QuerySafetyRulesRequest);
    QCOMPARE(own.size(), 1);
    QCOMPARE(textOf(own[0], Safety_::tradeSwitch), Switch::Halted);
    floor.client("trader2").ask(Stand_MsgType::EchoRequest);
    QCOMPARE(floor.client("trader1").pushed(), own);
    QCOMPARE(floor.client("manager1").pushed(), own);
    QCOMPARE(floor.client("trader2").pushed(), RecordList());
}

void SafetyTest::lastsOverRestartsAndDaysAndIsAudited()
{
    QTemporaryDir dir;
    const QString file = dir.filePath("state");
    Floor floor(file);
    QCOMPARE(floor.hold("trader1", {{Safety_::duplicateMs, 60000}, {Safety_::tradeSwitch, Switch::ReduceOnly}}),
             QString());
    QCOMPARE(floor.play("0 trader1: sell 100 12.3"), QStringLiteral("-"));
    floor.restart();
    const QString repeated = QStringLiteral("与60000毫秒内的委托O000000001重复，未报出");
    QCOMPARE(floor.play("59999 trader1: sell 100 12.3"), repeated);
    floor.client("trader1").ask(Stand_MsgType::ExchangeControlRequest, control(Stand_Values::MarketCommand::dayChange));
    const QString nothingToReduce = QStringLiteral("已被限制为只减仓，该方向没有可减的仓位");
    QCOMPARE(floor.play("60000 trader1: buy 100 12.3"), nothingToReduce);
    QCOMPARE(floor.play("60000 trader1: sell 100 12.4"), QStringLiteral("-"));
    QCOMPARE(floor.hold("trader1", {{Safety_::tradeSwitch, Switch::Halted}}), QString());
    const QString halted = QStringLiteral("交易员trader1已被暂停交易，不能委托，只能撤单");
    QCOMPARE(floor.play("60000 trader1: sell 100 12.3"), halted);
    QCOMPARE(floor.play("60000 trader1: cancel O000000002"), QStringLiteral("-"));

    QStringList lines;
    const QString error = Store::readAudit(file, {}, [&lines](const AuditEntry &entry) {
        const QStringList cells{entry.user, entry.trader, entry.field, entry.from, entry.to, entry.refusal};
        lines.append(cells.join(' ').simplified());
    });
    QCOMPARE(error, QString());
    const QStringList expected{"manager1 trader1 tradeSwitch Active ReduceOnly",
                               "manager1 trader1 duplicateMs 0 60000",
                               "trader1 trader1 orderQty normalSell 100 @ 12.3",
                               "trader1 trader1 orderQty normalSell 100 @ 12.3 " + repeated,
                               "trader1 marketTime 2026-01-05 09:15:00 2026-01-06 09:15:00",
                               "trader1 trader1 orderQty normalBuy 100 @ 12.3 " + nothingToReduce,
                               "trader1 trader1 orderQty normalSell 100 @ 12.4",
                               "manager1 trader1 tradeSwitch ReduceOnly Halted",
                               "trader1 " + halted,
                               "trader1 trader1 orderStatus Accepted Cancelled"};
    QCOMPARE(lines, expected);
}

T0_REGISTER_TEST(SafetyTest)
#include "SafetyTest.moc"
