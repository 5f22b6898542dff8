#include "CommonQuotaHandler.h"
#include "HostSession.h"
#include "LocalChannel.h"
#include "ManualT0LogicPlugin.h"
#include "ManualT0LogicPresenterClass.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "SampleBooks.h"

#include <QtCore/QCoreApplication>

#include <benchmark/benchmark.h>

#include <chrono>

// How long after an order a trader's client shows what the order uses of his limit: order, answer, push and merge,
// through the embedded gateway. Time on the wall, three threads take part.

namespace {

using namespace Master_Fields::ManualT0;
using Clock = std::chrono::steady_clock;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;

constexpr int TimeoutMs = 60000;
constexpr int Quantity = 200;
const char Trader[] = "trader1";

QString text(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

class Client
{
public:
    Client()
    {
        const Books books = SampleBooks::make(1);
        QString errorText;
        HostConfig config;
        config.channel = std::make_unique<LocalChannel>(PaperGateway::open(books, QString(), errorText));
        config.user = QLatin1String(Trader);
        config.requestTimeoutMs = TimeoutMs;
        m_session = HostSession::open(std::move(config), errorText);
        if (!m_session)
            qFatal("%s", qUtf8Printable(errorText));
        m_hub = std::make_unique<ManualT0LogicPrivate>(nullptr, HubTiming{TimeoutMs, TimeoutMs, TimeoutMs});
        m_presenter = new ManualT0LogicPresenterClass(ManualT0LogicPlugin::instanceId(), nullptr);
        ManualT0LogicPlugin::connectHub(m_hub.get(), m_presenter, Qt::AutoConnection);
        m_hub->InitData();
        m_session->settle(TimeoutMs);
        m_accounts = books.user(Trader)->accounts;
        m_usage = tradable();
    }

    ~Client()
    {
        m_hub->stop();
        ZrPresenterClass::release(m_presenter);
    }

    /// A buy below the market that waits in the book. Microseconds to the answer and until it shows; what went wrong,
    /// empty: nothing.
    QString order(double &answered, double &visible)
    {
        const QString before = shown(m_usage);
        const VariantRecord order = buy(m_usage);
        RecordList results;
        const auto begin = Clock::now();
        if (m_hub->Order({order}, results, QString()) != Orvane_Values::RequestExeStatus::success)
            return QStringLiteral("refused: ") + text(results.value(0), Orvane_Fields::System::textDescription);
        const auto answer = Clock::now();
        while (shown(m_usage) == before) {
            if (Clock::now() - begin > std::chrono::milliseconds(TimeoutMs))
                return QStringLiteral("it does not show");
        }
        answered = microseconds(answer - begin);
        visible = microseconds(Clock::now() - begin);
        return {};
    }

    void cancelAll()
    {
        m_session->settle(TimeoutMs); // the order itself is pushed too
        RecordList results;
        m_hub->CancelOrderList(m_presenter, m_hub->GetCancelableOrderList(m_accounts, {}, {}, {Trader}, {}, true),
                               results);
        m_session->settle(TimeoutMs);
    }

private:
    static double microseconds(Clock::duration time) { return std::chrono::duration<double, std::micro>(time).count(); }

    /// A record of the trader's of which the market takes an order and gives it back.
    VariantRecord tradable()
    {
        const RecordList all = m_hub->GetRealtimePoolDetailList(m_accounts, {Trader}, {}, {});
        for (const VariantRecord &usage : all) {
            RecordList results;
            const QString before = shown(usage);
            const QString code = m_hub->Order({buy(usage)}, results, QString());
            cancelAll();
            if (code == Orvane_Values::RequestExeStatus::success && shown(usage) == before)
                return usage;
        }
        qFatal("the sample trader can buy nothing");
    }

    VariantRecord buy(const VariantRecord &usage) const
    {
        const double last = CommonQuotaHandler::instance().lastPrice(text(usage, symbol), 0);
        return {{tradingAccount, text(usage, tradingAccount)},
                {symbol, text(usage, symbol)},
                {securityExchange, text(usage, securityExchange)},
                {Master_Fields::Security::SideUnion, Master_Values::SideUnion::normalBuy},
                {Orvane_Fields::Security::price, QString::number(last * 0.95, 'f', 1).toDouble()},
                {Orvane_Fields::Security::orderQty, Quantity}};
    }

    QString shown(const VariantRecord &usage) const
    {
        return text(m_hub->GetRealtimePoolDetail(text(usage, tradingAccount), Trader, text(usage, symbol),
                                                 text(usage, securityExchange)),
                    RtTotalBuyLimit);
    }

    std::unique_ptr<HostSession> m_session;
    std::unique_ptr<ManualT0LogicPrivate> m_hub;
    ManualT0LogicPresenterClass *m_presenter = nullptr;
    QStringList m_accounts;
    VariantRecord m_usage;
};

void run(benchmark::State &state)
{
    static Client client;
    double answered = 0;
    double visible = 0;
    for (auto _ : state) {
        double answer = 0;
        double shown = 0;
        const QString failure = client.order(answer, shown);
        if (!failure.isEmpty()) {
            state.SkipWithError(qUtf8Printable(failure));
            break;
        }
        client.cancelAll();
        state.SetIterationTime(shown * 1e-6);
        answered += answer;
        visible += shown;
    }
    state.counters["answered_us"] = answered / double(state.iterations());
    state.counters["visible_us"] = visible / double(state.iterations());
    state.SetItemsProcessed(qint64(state.iterations()));
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::RegisterBenchmark("gateway.order_to_visible/library/1", run)->UseManualTime()->Iterations(50);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
