#include "BusinessDataInterface.h"
#include "CommonQuotaHandler.h"
#include "HubClient.h"
#include "LocalChannel.h"
#include "MasterBusiUtils.h"
#include "MasterBusinessDataInterface.h"
#include "MasterConstants.h"
#include "OrvaneValues.h"
#include "RandomOrders.h"
#include "SampleBooks.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "Tests.h"
#include "UsageModel.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::orderID;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::System::requestExeStatus;
using Orvane_Fields::System::textDescription;
using Orvane_Fields::UserAccount::tradingAccount;
using Orvane_Values::RequestExeStatus::success;

namespace {

constexpr int everyCheck = 31;
const char traderId[] = "trader1";

QString text(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

bool isLive(const VariantRecord &order)
{
    return MasterBusiUtils::GetCancelableOrderStatusList().contains(text(order, Orvane_Fields::Security::orderStatus));
}

RecordList heldOrders(const VariantRecord &filter = {})
{
    int total = 0;
    const int all = std::numeric_limits<int>::max();
    return BusinessDataInterface::GetOrderListByCustomKey(filter, total, 0, all, {}, {});
}

/// Some ticks around the last price and inside the limits; seldom off the tick.
double priceOf(const Instrument &instrument, RandomOrders &random)
{
    const VariantRecord quote = CommonQuotaHandler::instance().quote(instrument.symbol);
    const double last = quote.value(Stand_Fields::Quote::lastPrice).toDouble();
    const double tick = MasterBusinessDataInterface::GetPriceUnitBySymbol(instrument.symbol, last, QString());
    const double upLimit = quote.value(Stand_Fields::Quote::upLimit).toDouble();
    double price = last + tick * (random.below(9) - 4);
    if (upLimit > 0)
        price = qBound(quote.value(Stand_Fields::Quote::downLimit).toDouble(), price, upLimit);
    price = QString::number(price, 'f', instrument.pricePrecision).toDouble();
    return random.oneIn(25) ? price + tick / 2 : price;
}

/// What the client cannot know before the server says it: what of the stock may be sold today (and with it where an
/// odd lot is) and the exposure limits; and the least quantity of a buy, which an account's share of an order may fall
/// below. That a market is closed must be true.
bool mayRefuse(const QString &refusal, const QVariantMap &phases)
{
    static const QRegularExpression closed(QStringLiteral("^市场(\\w+)当前时段不接受委托$"));
    static const QRegularExpression others(
        QStringLiteral("^账号可卖数量不足$|^成交后的敞口超过上限\\d+$|^全部委托成交后的敞口超过上限\\d+$|"
                       "^卖出数量应为\\d+的整数倍，零股应一次性卖出$|^买入数量低于单笔下限\\d+$"));
    const QRegularExpressionMatch market = closed.match(refusal);
    return market.hasMatch() ? phases.value(market.captured(1)) == QLatin1String("Closed")
                             : others.match(refusal).hasMatch();
}

/// Where a record and the row of profits of its key are not what the model says; empty: nowhere.
QString difference(const VariantRecord &record, const Usage &usage)
{
    const Traded paid = usage.paid();
    const double last = CommonQuotaHandler::instance().lastPrice(text(record, symbol), 0);
    const bool isPriced = last > 0; // else the row has no profit
    const double floating = isPriced ? usage.floating(last) : 0;
    const double realized = isPriced ? usage.realized() : 0;
    const QVector<QPair<QString, double>> expected{{OpenPosQty, double(usage.net())},
                                                   {OpenAvgPrice, usage.average()},
                                                   {RtRealBoughtQty, double(paid.bought)},
                                                   {RtRealSoldQty, double(paid.sold)},
                                                   {RtRealBoughtAmount, paid.boughtAmount},
                                                   {RtRealSoldAmount, paid.soldAmount},
                                                   {FloatProfit, floating},
                                                   {RealizeProfit, realized},
                                                   {TotalProfit, floating + realized}};
    QString differences;
    for (const auto &[field, value] : expected)
        if (!(qAbs(record.value(field).toDouble() - value) <= 1e-6 + 1e-10 * qAbs(value)))
            differences += QStringLiteral("%1 of %2 is %3, not %4\n")
                               .arg(field, UsageModel::key(QString(), record), text(record, field),
                                    QString::number(value, 'g', 17));
    for (const QString &limit : {RtTotalBuyLimit, RtTotalSellLimit})
        if (record.value(limit, -1).toLongLong() < 0)
            differences += limit + QStringLiteral(" is negative\n");
    return differences;
}

/// A trader's client at a gateway in memory, beside the model of his trading.
class Trading
{
public:
    Trading()
    {
        m_client.settle();
        for (const Instrument &instrument : m_books.instruments) // an order becomes several rows
            m_hub.SetSymbolTradeSettings(instrument.symbol,
                                         {{MasterConstants::SettingFieldName::ManualT0Settings::TradeCustQty, 1050}});
    }

    /// Orders, cancels, a day change or some seconds of the market; what went wrong, empty: nothing.
    QString step()
    {
        QString fault;
        if (m_random.oneIn(2))
            fault = order();
        else if (m_random.oneIn(8))
            cancel();
        else if (!m_random.oneIn(60))
            control(Stand_Values::MarketCommand::step, 1 + m_random.below(m_random.oneIn(30) ? 6000 : 90));
        else
            changeDay();
        m_client.settle();
        follow();
        return fault + disagreement();
    }

    QString gatewayFaults() const { return m_gateway->faults(); }

    int accepted = 0;
    int fills = 0;
    int days = 0;

private:
    static std::shared_ptr<PaperGateway> gatewayOf(const Books &books)
    {
        QString errorText;
        return PaperGateway::open(books, QString(), errorText);
    }

    RecordList request(const QString &type, const RecordList &rows)
    {
        QString errorText;
        VariantRecord values;
        RecordList answer;
        if (m_client.session->request(type, {{Stand_Fields::Paging::pageSize, 10000}}, rows, errorText, values,
                                      answer) != success)
            qFatal("%s", qPrintable(errorText));
        return answer;
    }

    void control(const QString &command, int count)
    {
        request(Stand_MsgType::ExchangeControlRequest,
                {{{Stand_Fields::Market::command, command}, {Stand_Fields::Market::count, count}}});
    }

    RecordList wanted()
    {
        RecordList orders;
        while (orders.size() < 3) {
            const bool same = !orders.isEmpty() && m_random.oneIn(2); // and there is less left for it
            VariantRecord order =
                same ? orders.last() : m_random.next([this](const Instrument &of) { return priceOf(of, m_random); });
            QStringList others = m_accounts;
            std::shuffle(others.begin(), others.end(), m_random.random);
            order.insert(tradingAccount,
                         order.value(tradingAccount).toStringList() + QStringList{"A000202"} + others.mid(1));
            orders.append(order);
        }
        return orders;
    }

    QString order()
    {
        RecordList checked;
        m_hub.CheckOrderData(wanted(), checked, everyCheck);
        RecordList good;
        for (const VariantRecord &row : qAsConst(checked))
            if (row.value(requestExeStatus) == success)
                good.append(row);
        const RecordList confirmed = m_hub.GetOrderConfirmMap(good);
        RecordList passed;
        if (!confirmed.isEmpty() && m_hub.CheckOrderData(confirmed, passed, everyCheck) != success)
            return QStringLiteral("a confirmed row does not pass the checks\n");
        RecordList results;
        m_hub.Order(confirmed, results, QString());
        m_client.settle();
        QString fault = results.size() == confirmed.size() ? QString() : QStringLiteral("results are missing\n");
        const QVariantMap phases = m_client.session->marketState().value(Stand_Fields::Market::phases).toMap();
        for (const VariantRecord &result : qAsConst(results)) {
            if (result.value(requestExeStatus) == success) {
                ++accepted;
                m_model.accept(heldOrders({{orderID, result.value(orderID)}}).value(0));
            } else if (!mayRefuse(text(result, textDescription), phases)) {
                fault += text(result, symbol) + text(result, textDescription) + QLatin1Char('\n');
            }
        }
        return fault;
    }

    void cancel()
    {
        const RecordList live = m_hub.GetCancelableOrderList(m_accounts, {}, {}, {traderId}, {}, true);
        RecordList results;
        m_hub.CancelOrderList(m_client.presenter, live.mid(m_random.below(live.size() + 1)), results);
    }

    void changeDay()
    {
        ++days;
        m_model.dayChange();
        control(Stand_Values::MarketCommand::dayChange, 1);
        m_fillsOfDay = 0; // the host keeps one day's
    }

    /// The model learns of new fills and of ended orders.
    void follow()
    {
        const RecordList all = BusinessDataInterface::GetFillList({});
        for (; m_fillsOfDay < all.size(); ++m_fillsOfDay, ++fills)
            m_model.fill(all.at(m_fillsOfDay));
        const RecordList orders = heldOrders();
        for (const VariantRecord &order : orders)
            if (!isLive(order))
                m_model.end(text(order, orderID));
    }

    QString disagreement()
    {
        QMap<QString, VariantRecord> records;
        for (const RecordList &rows : {m_hub.GetRealtimePoolDetailList(m_accounts, {}, {}, {}),
                                       m_hub.GetProfitLossDataList(m_accounts, traderId, {}, {})})
            for (const VariantRecord &row : rows)
                for (auto field = row.cbegin(); field != row.cend(); ++field)
                    records[UsageModel::key(traderId, row)].insert(field.key(), *field);
        QString found;
        for (auto record = records.cbegin(); record != records.cend(); ++record)
            found += difference(*record, m_model.usage.value(record.key()));
        for (auto usage = m_model.usage.cbegin(); usage != m_model.usage.cend(); ++usage)
            if (usage.key().startsWith(traderId) && !records.contains(usage.key()))
                found += QStringLiteral("no record of ") + usage.key();
        return found + storeDifference();
    }

    QString storeDifference()
    {
        return heldOrders() == request(Stand_MsgType::QueryOrdersRequest, {})
                   ? QString()
                   : QStringLiteral("the host's orders are not the server's\n");
    }

    const Books m_books = SampleBooks::make(1);
    const QStringList m_accounts = m_books.user(traderId)->accounts;
    UsageModel m_model{m_books};
    int m_fillsOfDay = 0;
    RandomOrders m_random{m_books, traderId};
    const std::shared_ptr<PaperGateway> m_gateway = gatewayOf(m_books);
    HubClient m_client{std::make_unique<LocalChannel>(m_gateway), traderId};
    ManualT0LogicPrivate &m_hub = *m_client.hub;
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
    const int orders = isGiven ? given : 500;
    Trading trading;
    for (int step = 0; trading.accepted < orders; ++step) {
        const QString fault = trading.step();
        QVERIFY2(fault.isEmpty(), QByteArray::number(step) + ": " + fault.toUtf8());
        if (step % 50 == 0)
            QCOMPARE(trading.gatewayFaults(), QString());
    }
    qInfo("%d orders, %d fills, %d days", trading.accepted, trading.fills, trading.days);
    QVERIFY(trading.fills > orders / 4);
    QVERIFY(trading.days > 0);
}

#include "TradingTest.moc"
