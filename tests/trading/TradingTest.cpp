#include "BusinessDataInterface.h"
#include "CommonQuotaHandler.h"
#include "HostSession.h"
#include "LocalChannel.h"
#include "ManualT0LogicPlugin.h"
#include "ManualT0LogicPresenterClass.h"
#include "ManualT0LogicPrivate.h"
#include "MasterBusiUtils.h"
#include "MasterBusinessDataInterface.h"
#include "MasterConstants.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "SampleBooks.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "Tests.h"
#include "UsageModel.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTextStream>
#include <QtTest/QtTest>

#include <random>

using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::orderID;
using Orvane_Fields::Security::orderQty;
using Orvane_Fields::System::requestExeStatus;
using Orvane_Fields::System::textDescription;
using Orvane_Fields::UserAccount::tradingAccount;
using Orvane_Values::RequestExeStatus::success;

namespace {

constexpr int longEnoughMs = 60000;
constexpr int everyCheck = 31;
const char traderId[] = "trader1";

QString text(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

/// The sample's accounts with few securities, each kind once; the trader has a pool and a share of a public one in
/// each, and has carried over some.
Books books()
{
    Books books = SampleBooks::make(1);
    static const QStringList kept{"600001", "300001", "688002", "513001", "110003", "123002", "00001"};
    const auto goes = [](const Instrument &instrument) { return !kept.contains(instrument.securityID); };
    books.instruments.erase(std::remove_if(books.instruments.begin(), books.instruments.end(), goes),
                            books.instruments.end());
    books.buildIndexes();
    for (auto *list : {&books.positions})
        list->clear();
    books.margin.clear();
    books.resources.clear();
    books.pools.clear();
    books.carried.clear();
    books.quotes.clear();
    int place = 0;
    for (const Instrument &instrument : qAsConst(books.instruments)) {
        books.quotes.append({instrument.symbol, instrument.preClose});
        for (const QString &account : books.user(traderId)->accounts) {
            if (!books.account(account)->exchanges.contains(instrument.exchange))
                continue;
            ++place;
            const qint64 lot = instrument.lotSize;
            const qint64 odd = instrument.dispFactor == 1 && place % 4 == 0 ? 37 : 0;
            const Holding holding{account, instrument.securityID, instrument.exchange};
            books.positions.append({holding, lot * 60 + odd, lot * 45 + odd});
            books.resources.append({holding, lot * 40});
            books.pools.append({traderId, holding, lot * 14, place % 3 ? -1 : lot * 8, place % 4 ? -1 : lot * 11});
            books.pools.append({Books::publicTrader(), holding, lot * 6, -1, -1});
            if (place % 3)
                books.carried.append({traderId, holding,
                                      place % 3 == 1 ? Master_Values::OpenPositionSide::BuyOpen
                                                     : Master_Values::OpenPositionSide::SellOpen,
                                      lot * 4, double(lot * 4) * instrument.preClose});
        }
    }
    books.buildIndexes();
    return books;
}

/// A trader's client at a gateway in memory.
class Desk
{
public:
    explicit Desk(const Books &books)
    {
        QString errorText;
        gateway = PaperGateway::open(books, QString(), errorText);
        HostConfig config;
        config.channel = std::make_unique<LocalChannel>(gateway);
        config.user = QLatin1String(traderId);
        config.requestTimeoutMs = longEnoughMs;
        session = HostSession::open(std::move(config), errorText);
        if (!session)
            qFatal("%s", qPrintable(errorText));
        hub = std::make_unique<ManualT0LogicPrivate>(nullptr, HubTiming{600000, 600000, 600000});
        presenter = new ManualT0LogicPresenterClass(ManualT0LogicPlugin::instanceId(), nullptr);
        ManualT0LogicPlugin::connectHub(hub.get(), presenter, Qt::AutoConnection);
        hub->InitData();
    }

    ~Desk()
    {
        hub->stop();
        ZrPresenterClass::release(presenter);
    }

    /// A market command.
    void control(const QString &command, int count = 1)
    {
        request(Stand_MsgType::ExchangeControlRequest,
                {{Stand_Fields::Market::command, command}, {Stand_Fields::Market::count, count}});
    }

    RecordList request(const QString &type, const VariantRecord &row)
    {
        QString errorText;
        VariantRecord values;
        RecordList rows;
        const VariantRecord paging{{Stand_Fields::Paging::pageSize, 10000}};
        if (session->request(type, paging, row.isEmpty() ? RecordList() : RecordList{row}, errorText, values, rows) !=
            success)
            qFatal("%s", qPrintable(errorText));
        return rows;
    }

    static RecordList orders(const VariantRecord &filter = {})
    {
        int total = 0;
        return BusinessDataInterface::GetOrderListByCustomKey(filter, total, 0, std::numeric_limits<int>::max(), {},
                                                              {});
    }

    std::shared_ptr<PaperGateway> gateway;
    std::unique_ptr<HostSession> session;
    std::unique_ptr<ManualT0LogicPrivate> hub;
    ManualT0LogicPresenterClass *presenter = nullptr;
};

/// What a trader might want to order, some of it wrong.
class RandomOrders
{
public:
    explicit RandomOrders(const Books &books)
        : m_books(books)
    {}

    int below(int end) { return int(m_random() % quint32(end)); }
    bool oneIn(int times) { return below(times) == 0; }

    VariantRecord next()
    {
        using namespace Master_Values::SideUnion;
        const Instrument &instrument = m_books.instruments.at(below(m_books.instruments.size()));
        QStringList accounts = m_books.user(traderId)->accounts;
        std::shuffle(accounts.begin(), accounts.end(), m_random);
        const QStringList sides{normalBuy, normalSell, normalBuy, normalSell, collateralBuy, collateralSell};
        const qint64 lots = instrument.lotSize * (1 + below(8));
        return {{tradingAccount, QStringList(accounts.mid(below(3))) << (oneIn(20) ? "A000202" : "")},
                {Orvane_Fields::Security::symbol, instrument.symbol},
                {Orvane_Fields::UserAccount::securityExchange, instrument.exchange},
                {Master_Fields::Security::SideUnion, sides.at(below(sides.size()))},
                {Orvane_Fields::Security::price, price(instrument)},
                {orderQty, oneIn(6) ? 1 + below(int(lots)) : lots}};
    }

private:
    /// Some ticks around the last price and inside the limits; seldom off the tick.
    double price(const Instrument &instrument)
    {
        const VariantRecord quote = CommonQuotaHandler::instance().quote(instrument.symbol);
        const double last = quote.value(Stand_Fields::Quote::lastPrice).toDouble();
        const double tick = MasterBusinessDataInterface::GetPriceUnitBySymbol(instrument.symbol, last, QString());
        const double upLimit = quote.value(Stand_Fields::Quote::upLimit).toDouble();
        double price = last + tick * (below(9) - 4);
        if (upLimit > 0)
            price = qBound(quote.value(Stand_Fields::Quote::downLimit).toDouble(), price, upLimit);
        price = QString::number(price, 'f', instrument.pricePrecision).toDouble();
        return oneIn(25) ? price + tick / 2 : price;
    }

    const Books &m_books;
    std::mt19937 m_random{1};
};

/// What the client cannot know before the server says it: the phase of the market, what of the stock may be sold
/// today (and with it where an odd lot is), the exposure limits; and the least quantity of a buy, which a share that an
/// account's quota allows may fall below.
bool maySayNo(const QString &refusal)
{
    static const QRegularExpression reasons(
        QStringLiteral("^市场\\w+当前时段不接受委托$|^账号可卖数量不足$|^成交后的敞口超过上限\\d+$|"
                       "^全部委托成交后的敞口超过上限\\d+$|^卖出数量应为\\d+的整数倍，零股应一次性卖出$|"
                       "^买入数量低于单笔下限\\d+$"),
        QRegularExpression::UseUnicodePropertiesOption);
    return reasons.match(refusal).hasMatch();
}

QString difference(const QString &key, const QString &field, const QVariant &is, double should)
{
    const double value = is.toDouble();
    if (is.isValid() && qAbs(value - should) <= 1e-6 + 1e-10 * qAbs(should))
        return {};
    return QStringLiteral("%1: %2 is %3, not %4\n")
        .arg(key, field, QString::number(value, 'g', 17), QString::number(should, 'g', 17));
}

QString usageDifference(const VariantRecord &record, const QString &key, const Usage &usage)
{
    const Traded paid = usage.paid();
    const QMap<QString, double> expected{{OpenPosQty, double(usage.net())},
                                         {OpenAvgPrice, usage.average()},
                                         {RtRealBoughtQty, double(paid.bought)},
                                         {RtRealSoldQty, double(paid.sold)},
                                         {RtRealBoughtAmount, paid.boughtAmount},
                                         {RtRealSoldAmount, paid.soldAmount}};
    QString differences;
    for (auto field = expected.cbegin(); field != expected.cend(); ++field)
        differences += difference(key, field.key(), record.value(field.key()), *field);
    for (const QString &limit : {RtTotalBuyLimit, RtTotalSellLimit})
        if (record.value(limit, -1).toLongLong() < 0)
            differences += key + limit + QStringLiteral(" is negative\n");
    return differences;
}

QString profitDifference(const VariantRecord &row, const QString &key, const Usage &usage)
{
    const Usage::Profit profit = usage.profit(
        CommonQuotaHandler::instance().lastPrice(text(row, Orvane_Fields::Security::symbol), 0));
    return difference(key, FloatProfit, row.value(FloatProfit), profit.floating) +
           difference(key, RealizeProfit, row.value(RealizeProfit), profit.realized) +
           difference(key, TotalProfit, row.value(TotalProfit), profit.floating + profit.realized);
}

/// One client's trading beside the model of it.
class Trading
{
public:
    explicit Trading(const Books &books)
        : desk(books)
        , m_accounts(books.user(traderId)->accounts)
        , m_model(books)
        , m_random(books)
    {
        desk.session->settle(longEnoughMs);
        // One row of a checked order becomes many.
        desk.hub->SetSymbolTradeSettings(
            QStringLiteral("600001.SH"),
            {{MasterConstants::SettingFieldName::ManualT0Settings::TradeCustQty, 250}});
    }

    /// One order, cancel, day change or some seconds of the market; what went wrong, empty: nothing.
    QString step()
    {
        QString fault;
        if (m_random.oneIn(2))
            fault = order();
        else if (m_random.oneIn(8))
            fault = cancel();
        else if (!m_random.oneIn(80))
            desk.control(Stand_Values::MarketCommand::step, 1 + m_random.below(m_random.oneIn(30) ? 6000 : 90));
        else
            fault = changeDay();
        if (!desk.session->settle(longEnoughMs))
            return QStringLiteral("does not settle");
        follow();
        return fault + disagreement();
    }

    void print() const
    {
        QTextStream out(stdout);
        for (auto count = m_tally.cbegin(); count != m_tally.cend(); ++count)
            out << QString::number(*count).rightJustified(8) << ' ' << count.key() << '\n';
    }

    int count(const QString &what) const { return m_tally.value(what); }

    Desk desk;

private:
    QString order()
    {
        const RecordList orders{m_random.next(), m_random.next()};
        RecordList checked;
        desk.hub->CheckOrderData(orders, checked, everyCheck);
        RecordList good;
        for (int i = 0; i < orders.size(); ++i)
            if (count(checked.at(i), "checks"))
                good.append(orders.at(i));
        RecordList recheck;
        const RecordList confirmed = desk.hub->GetOrderConfirmMap(good);
        if (!confirmed.isEmpty() && desk.hub->CheckOrderData(confirmed, recheck, everyCheck) != success)
            return QStringLiteral("a confirmed row does not pass the checks\n");
        RecordList results;
        desk.hub->Order(confirmed, results, QString());
        if (results.size() != confirmed.size())
            return QStringLiteral("%1 rows gave %2 results\n").arg(confirmed.size()).arg(results.size());
        desk.session->settle(longEnoughMs);
        QString fault;
        for (const VariantRecord &result : qAsConst(results)) {
            if (count(result, "orders"))
                m_model.accept(Desk::orders({{orderID, result.value(orderID)}}).value(0));
            else if (!maySayNo(text(result, textDescription)))
                fault += QStringLiteral("%1 %2 x %3: %4\n")
                             .arg(text(result, Orvane_Fields::Security::symbol),
                                  text(result, Master_Fields::Security::SideUnion), text(result, orderQty),
                                  text(result, textDescription));
        }
        return fault;
    }

    QString cancel()
    {
        RecordList live = desk.hub->GetCancelableOrderList(m_accounts, {}, {}, {traderId}, {}, true);
        RecordList some;
        for (const VariantRecord &order : qAsConst(live))
            if (m_random.oneIn(2))
                some.append(order);
        if (some.isEmpty())
            return {};
        RecordList results;
        desk.hub->CancelOrderList(desk.presenter, some, results);
        desk.session->settle(longEnoughMs);
        QString fault;
        for (const VariantRecord &result : qAsConst(results)) {
            const bool done = count(result, "cancels");
            const QString status =
                text(Desk::orders({{orderID, result.value(orderID)}}).value(0), Orvane_Fields::Security::orderStatus);
            if (done != (status == Stand_Values::OrderStatus::Cancelled))
                fault += text(result, orderID) + QStringLiteral(" is ") + status + QLatin1Char('\n');
        }
        return fault;
    }

    QString changeDay()
    {
        follow();
        m_model.dayChange();
        desk.control(Stand_Values::MarketCommand::dayChange);
        ++m_tally[QStringLiteral("day changes")];
        return {};
    }

    /// The model learns of new fills and of ended orders.
    void follow()
    {
        const RecordList fills = BusinessDataInterface::GetFillList({});
        for (; m_fills < fills.size(); ++m_fills) {
            m_model.fill(fills.at(m_fills));
            ++m_tally[QStringLiteral("fills")];
        }
        for (const VariantRecord &order : Desk::orders())
            if (!MasterBusiUtils::GetCancelableOrderStatusList().contains(
                    text(order, Orvane_Fields::Security::orderStatus)))
                m_model.end(text(order, orderID));
    }

    QString disagreement()
    {
        QString found;
        const RecordList usages = desk.hub->GetRealtimePoolDetailList(m_accounts, {}, {}, {});
        QStringList open = m_model.openOnes().keys();
        for (const VariantRecord &record : usages) {
            const QString key = UsageModel::key(text(record, T0TraderId), record);
            found += usageDifference(record, key, m_model.usage(key));
            open.removeAll(key);
        }
        const RecordList profits = desk.hub->GetProfitLossDataList(m_accounts, traderId, {}, {});
        for (const VariantRecord &row : profits) {
            const QString key = UsageModel::key(traderId, row);
            found += profitDifference(row, key, m_model.usage(key));
        }
        if (!open.isEmpty() || profits.size() != usages.size())
            found += QStringLiteral("no record of ") + open.join(QLatin1Char(' '));
        return found + storeDifference();
    }

    /// The host keeps the orders of earlier days too; the server answers with those of its day.
    QString storeDifference()
    {
        const QString day = text(desk.session->marketState(), Stand_Fields::Market::marketTime).left(10);
        RecordList held;
        for (const VariantRecord &order : Desk::orders()) {
            const bool isLive = MasterBusiUtils::GetCancelableOrderStatusList().contains(
                text(order, Orvane_Fields::Security::orderStatus));
            if (text(order, Stand_Fields::Order::orderTime).startsWith(day))
                held.append(order);
            else if (isLive)
                return text(order, orderID) + QStringLiteral(" lives on after its day\n");
        }
        const RecordList own = desk.request(Stand_MsgType::QueryOrdersRequest, {});
        return held == own ? QString() : QStringLiteral("the order store is not the server's\n");
    }

    /// Whether a row succeeded; counts what became of it.
    bool count(const VariantRecord &row, const char *what)
    {
        const bool good = text(row, requestExeStatus) == success;
        ++m_tally[QLatin1String(what) + (good ? QStringLiteral(" passed") : QStringLiteral(" refused"))];
        if (!good)
            ++m_tally[QStringLiteral("  ") + text(row, textDescription).remove(QRegularExpression("[0-9.]+"))];
        return good;
    }

    const QStringList m_accounts;
    UsageModel m_model;
    RandomOrders m_random;
    int m_fills = 0;
    QMap<QString, int> m_tally;
};

} // namespace

class TradingTest : public QObject
{
    Q_OBJECT

private slots:
    void theClientShowsWhatTheFillsSay();
};
T0_REGISTER_TEST(TradingTest)

void TradingTest::theClientShowsWhatTheFillsSay()
{
    bool isGiven = false;
    const int given = qEnvironmentVariableIntValue("T0_TRADING_ORDERS", &isGiven);
    Trading trading(books());
    const int orders = isGiven ? given : 600;
    for (int step = 0; trading.count(QStringLiteral("orders passed")) < orders; ++step) {
        const QString fault = trading.step();
        QVERIFY2(fault.isEmpty(), QByteArray::number(step) + ": " + fault.toUtf8());
        if (step % 50 == 0)
            QCOMPARE(trading.desk.gateway->faults(), QString());
    }
    QVERIFY(trading.count(QStringLiteral("fills")) > orders / 4);
    QVERIFY(trading.count(QStringLiteral("cancels passed")) > 0);
    if (isGiven)
        trading.print();
}

#include "TradingTest.moc"
