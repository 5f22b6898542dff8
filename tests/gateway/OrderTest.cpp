#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "SampleBooks.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "TestClient.h"
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

VariantRecord headerOf(const QString &account)
{
    return {{UserAccount_::tradingAccount, account},
            {Order_::businessName, "ManualT0Trade"},
            {Master_Fields::Security::VantaBusiType, Master_Values::VantaBusiType::ManualT0Order}};
}

VariantRecord orderOf(const QString &symbol, const QString &exchange, const QString &side, const QString &price,
                      const QVariant &quantity)
{
    return {{Security_::symbol, symbol},
            {UserAccount_::securityExchange, exchange},
            {SideUnion, side},
            {Security_::price, price},
            {Security_::orderQty, quantity},
            {Order_::priceType, Orvane_Values::PriceType::limit}};
}

VariantRecord control(const QString &command, qint64 count = 1)
{
    return {{Market_::command, command}, {Market_::count, count}};
}

QString textOf(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
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
        else if (dice < 96)
            changePool();
        else
            changeProduct();
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
            send("trader1", Stand_MsgType::ExchangeControlRequest, control(Command::step, 1 + below(400)), {}).rows[0];
        if (textOf(market, Market_::marketTime).mid(11) > "16:10")
            send("trader1", Stand_MsgType::ExchangeControlRequest, control(Command::dayChange), {});
    }

    void order()
    {
        const QString user = any(QStringList{"lead1", "trader1", "trader2", "trader3", "trader4"});
        const QString account = any(m_books.user(user)->accounts);
        RecordList rows;
        for (quint32 i = below(3) + 1; i > 0; --i) {
            const Instrument instrument = any(m_books.instruments);
            const RecordList quotes = manager().ask(Stand_MsgType::QueryQuotesRequest).rows;
            VariantRecord quote;
            for (const VariantRecord &row : quotes)
                if (textOf(row, Security_::symbol) == instrument.symbol)
                    quote = row;
            QVariantList prices = quote.value(Stand_Fields::Quote::bidPrices).toList() +
                                  quote.value(Stand_Fields::Quote::askPrices).toList();
            prices.append(below(10) == 0 ? 0.0031 : quote.value(Stand_Fields::Quote::lastPrice).toDouble());
            const bool odd = below(12) == 0;
            const qint64 quantity = instrument.minQty * (1 + below(8)) + (odd ? below(100) : 0);
            const QString side = any(QStringList{Side::normalBuy, Side::normalSell, Side::normalBuy, Side::normalSell,
                                                 Side::collateralBuy, Side::collateralSell});
            rows.append(orderOf(instrument.symbol, instrument.exchange, side, any(prices).toString(), quantity));
        }
        send(user, Stand_MsgType::OrderRequest, headerOf(account), rows);
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

    void changePool()
    {
        const VariantRecord account{{UserAccount_::tradingAccount, any(m_books.accounts).tradingAccount}};
        const RecordList pools = manager().all(Master_MsgType::QueryManualT0SecurityPoolRequest, account);
        if (pools.isEmpty())
            return;
        const VariantRecord pool = any(pools);
        send("manager1", Master_MsgType::AlterManualT0SecurityPoolRequest, {},
             {{{T0_::PoolDetailId, pool.value(T0_::PoolDetailId)},
               {T0_::PoolTotalQty, pool.value(T0_::PoolTotalQty).toLongLong() * qint64(below(12)) / 10}}});
    }

    void changeProduct()
    {
        const Account account = any(m_books.accounts);
        const bool adds = below(4) != 0;
        send("manager1", Master_MsgType::AlterManualT0ProductsRequest, {},
             {{{UserAccount_::productAccount, account.productAccount},
               {UserAccount_::tradingAccount, account.tradingAccount},
               {Master_Fields::System::alterType,
                adds ? Master_Values::AlterType::Add : Master_Values::AlterType::Delete}}});
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
            else if (types.at(m_seen) == Stand_MsgType::FillPush)
                noteFill(row);
            else if (types.at(m_seen) == Master_MsgType::ManualT0RealTimePoolUsagePush)
                checkUsage(row);
        }
        QCOMPARE(m_gateway->faults(), QString());
        for (auto order = m_orders.cbegin(); order != m_orders.cend(); ++order)
            QCOMPARE(order->value(Order_::filledQty).toLongLong(), m_filled.value(order.key()));
    }

    void noteFill(const VariantRecord &fill)
    {
        ++fills;
        const qint64 quantity = fill.value(Stand_Fields::Fill::fillQty).toLongLong();
        m_filled[textOf(fill, Security_::orderID)] += quantity;
        const bool buy = textOf(fill, Security_::side) == Stand_Values::Side::buy;
        m_net[keyOf(fill, textOf(fill, UserAccount_::loginUserId))] += buy ? quantity : -quantity;
    }

    void checkUsage(const VariantRecord &row)
    {
        const QString time = textOf(row, Master_Fields::System::ModifyTime);
        QVERIFY(time > m_lastTime);
        m_lastTime = time;
        for (const QString &limit :
             {T0_::DailyBuyLimit, T0_::DailySellLimit, T0_::PreUnclosedBuyLimit, T0_::PreUnclosedSellLimit})
            QVERIFY(row.value(limit).toDouble() >= 0);
        const auto number = [&row](const QString &field) { return row.value(field).toDouble(); };
        const Instrument *instrument =
            m_books.instrument(textOf(row, Security_::securityID), textOf(row, UserAccount_::securityExchange));
        const double net = number(T0_::DailyBoughtQty) - number(T0_::DailySoldQty) +
                           number(T0_::PreUnclosedBoughtQty) - number(T0_::PreUnclosedSoldQty);
        qint64 carried = 0;
        const QString key = keyOf(row, textOf(row, T0_::T0TraderId));
        for (const CarriedLeg &leg : m_books.carried)
            if (key == leg.holding.account + leg.holding.securityID + leg.holding.exchange + leg.trader)
                carried = leg.side == Master_Values::OpenPositionSide::BuyOpen ? leg.quantity : -leg.quantity;
        QCOMPARE(qRound64(net * double(instrument->dispFactor)), carried + m_net.value(key));
    }

    static QString keyOf(const VariantRecord &row, const QString &trader)
    {
        return textOf(row, UserAccount_::tradingAccount) + textOf(row, Security_::securityID) +
               textOf(row, UserAccount_::securityExchange) + trader;
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
    QMap<QString, qint64> m_net;
    QString m_lastTime;
};

} // namespace

class OrderTest : public QObject
{
    Q_OBJECT

private slots:
    void randomDays();
};

void OrderTest::randomDays()
{
    const int events = qEnvironmentVariableIntValue("T0_LEDGER_EVENTS") > 0
                           ? qEnvironmentVariableIntValue("T0_LEDGER_EVENTS")
                           : 600;
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
    QVERIFY(straight.fills > events / 10);
}

T0_REGISTER_TEST(OrderTest)
#include "OrderTest.moc"
