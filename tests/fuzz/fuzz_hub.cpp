// A client that anything may be sent to: its session opens, its hub loads, changes and trades, while answers and pushes
// of every type are made of the input. Nothing may bring it down, and its indexes must say what its caches say.
#include "FuzzedServer.h"
#include "HubProbe.h"
#include "HubQueries.h"

#include "BusinessDataInterface.h"
#include "HostNews.h"
#include "HostSession.h"
#include "ManualT0LogicPlugin.h"
#include "ManualT0LogicPresenterClass.h"
#include "MasterConstants.h"
#include "MasterMsgType.h"
#include "Rows.h"
#include "StandMsgType.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>

namespace {

constexpr int mostSteps = 40;

/// Takes an object from its own thread to this one: one input is one row of events, the same every time.
void bringHere(QObject *object)
{
    QThread *here = QThread::currentThread();
    QMetaObject::invokeMethod(
        object, [object, here] { object->moveToThread(here); }, Qt::BlockingQueuedConnection);
}

HubFilter filterOf(Input &input)
{
    HubFilter filter;
    filter.products = input.some(FuzzedRows::products());
    filter.assetProps = input.some(FuzzedRows::assetProps());
    filter.accounts = input.some(FuzzedRows::accounts());
    filter.traders = input.some(FuzzedRows::traders());
    filter.symbol = input.of(FuzzedRows::symbols());
    filter.exchange = input.of(FuzzedRows::exchanges());
    filter.side = input.of(FuzzedRows::sides());
    filter.resourceIds = input.some(FuzzedRows::resourceIds());
    filter.poolIds = input.some(FuzzedRows::poolIds());
    filter.poolType = input.below(8);
    filter.flag = input.oneIn(2);
    return filter;
}

class Client
{
public:
    explicit Client(Input &input)
        : m_input(input)
    {
        auto channel = std::make_unique<FuzzedServer>(m_input);
        m_server = channel.get();
        m_server->setGood(!m_input.oneIn(4));
        HostConfig config;
        config.channel = std::move(channel);
        config.user = Rows::user;
        QString errorText;
        m_session = HostSession::open(std::move(config), errorText);
        require(m_session || !errorText.isEmpty(), "a session was refused without a text");
        if (!m_session)
            return;
        m_server->setGood(false);
        m_hub = std::make_unique<ManualT0LogicPrivate>(nullptr, HubTiming{600000, 600000, 0, 0});
        bringHere(m_hub.get());
        m_hub->quitThread();
        m_presenter = new ManualT0LogicPresenterClass(ManualT0LogicPlugin::instanceId(), nullptr);
        bringHere(m_presenter);
        ManualT0LogicPlugin::connectHub(m_hub.get(), m_presenter, Qt::QueuedConnection);
        m_hub->InitData();
        run();
    }

    ~Client()
    {
        if (!m_session)
            return;
        m_hub->stop();
        ZrPresenterClass::release(m_presenter);
        QCoreApplication::sendPostedEvents();
    }

    bool isOpen() const { return m_session != nullptr; }

    void step()
    {
        switch (m_input.below(8)) {
        case 0:
            m_hub->InitData();
            break;
        case 1:
            m_hub->RefreshDataByType(m_input.below(7));
            break;
        case 2:
            change();
            break;
        case 3:
            trade();
            break;
        case 4:
            choose();
            break;
        case 5:
            m_hub->slotRecvSecurityPoolChangedPush(m_input.of(FuzzedRows::accounts()));
            break;
        default:
            m_server->push(m_input.of(FuzzedRows::pushTypes()));
        }
        run();
    }

    void check()
    {
        QStringList faults = HubProbe::indexFaults(*m_hub);
        if (m_hasDeleted) // a deleted resource takes its pools' keys along before they are answered for
            faults.removeOne(QStringLiteral("the pool resource index differs from its cache"));
        require(faults.isEmpty(), "after a step:", faults.join(QLatin1Char(';')));
        int total = 0;
        const HubFilter filter = filterOf(m_input);
        askEverything(*m_hub, filter);
        BusinessDataInterface::GetOrderListByCustomKey({}, total, 0, 0, {filter.symbol}, {});
        BusinessDataInterface::GetPositionListByTradingAccount(filter.accounts.value(0));
        m_session->news().deliver();
    }

private:
    /// Until nothing is queued any more.
    static void run()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents();
    }

    RecordList rows(const QString &msgType)
    {
        RecordList rows;
        for (int i = m_input.below(4); i > 0; --i)
            rows.append(FuzzedRows::row(m_input, msgType));
        return rows;
    }

    void change()
    {
        using namespace Master_MsgType;
        QString errorText;
        switch (m_input.below(8)) {
        case 0:
            m_hub->AddT0Resource(rows(QueryManualT0ResourceRequest), m_input.oneIn(2), errorText);
            break;
        case 1:
            m_hub->AlterT0Resource(FuzzedRows::row(m_input, QueryManualT0ResourceRequest), errorText);
            break;
        case 2:
            m_hub->DeleteT0Resource(rows(QueryManualT0ResourceRequest), errorText);
            m_hasDeleted = true;
            break;
        case 3:
            m_hub->AllocatePublicResource(rows(QueryManualT0SecurityPoolRequest), errorText);
            break;
        case 4:
            m_hub->AllocateResourceToTrader(rows(QueryManualT0SecurityPoolRequest), errorText);
            break;
        case 5:
            m_hub->AddSecurityPoolAndResource(rows(QueryManualT0SecurityPoolRequest), m_input.oneIn(2), errorText);
            break;
        case 6:
            m_hub->DeleteSecurityPoolsByIdList(m_input.some(FuzzedRows::poolIds()), errorText);
            break;
        default:
            m_hub->AlterT0ProductAccount({{m_input.of(FuzzedRows::products()), m_input.some(FuzzedRows::assetProps())}},
                                         errorText);
        }
    }

    void trade()
    {
        const RecordList orders = rows(Stand_MsgType::OrderPush);
        RecordList checked;
        RecordList rest;
        RecordList results;
        switch (m_input.below(3)) {
        case 0:
            m_hub->CheckOrderData(orders, checked, m_input.byte());
            require(checked.size() == orders.size(), "an order was not checked");
            break;
        case 1:
            m_hub->Order(m_input.oneIn(2) ? orders : m_hub->GetOrderConfirmMap(orders, rest), results, QString());
            break;
        default:
            m_hub->CancelOrderList(m_presenter, orders, results);
        }
    }

    void choose()
    {
        using MasterConstants::SettingFieldName::ManualT0Settings::TradeCustQty;
        const QString symbol = m_input.of(FuzzedRows::symbols());
        switch (m_input.below(3)) {
        case 0:
            m_hub->SetCurrentTradeAccount(m_input.some(FuzzedRows::accounts()));
            break;
        case 1:
            m_hub->SetSymbolTradeSettings(symbol, {{TradeCustQty, FuzzedRows::value(m_input)}});
            break;
        default:
            m_hub->DeleteSymbolTradeSettings(symbol);
        }
    }

    Input &m_input;
    FuzzedServer *m_server = nullptr; ///< of the session
    std::unique_ptr<HostSession> m_session;
    std::unique_ptr<ManualT0LogicPrivate> m_hub;
    ManualT0LogicPresenterClass *m_presenter = nullptr;
    bool m_hasDeleted = false;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_NO_GLIB", "1");
    static QCoreApplication application(*argc, *argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}); // of odd values
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    Input input(QByteArray(reinterpret_cast<const char *>(data), int(size)));
    Client client(input);
    for (int step = 0; client.isOpen() && step < mostSteps; ++step) {
        if (input.atEnd())
            break;
        client.step();
        client.check();
    }
    return 0;
}
