#include "Desk.h"

#include "BusinessDataInterface.h"
#include "EventBus.h"
#include "FaultChannel.h"
#include "HubProbe.h"
#include "LocalChannel.h"
#include "ManualT0Logic.h"
#include "MasterConstants.h"
#include "MasterMsgType.h"
#include "OrvaneValues.h"
#include "PictureLines.h"
#include "RandomOrders.h"
#include "SampleBooks.h"

using namespace Master_Fields::ManualT0;
using namespace Master_MsgType;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::System::requestExeStatus;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;
using Orvane_Values::RequestExeStatus::success;

namespace {

const char userId[] = "lead1";

int below(Desk::Random &random, int end)
{
    return int(random() % unsigned(qMax(1, end)));
}

bool oneIn(Desk::Random &random, int times)
{
    return below(random, times) == 0;
}

template <typename List> typename List::value_type any(Desk::Random &random, const List &list)
{
    return list.isEmpty() ? typename List::value_type() : list.at(below(random, list.size()));
}

/// None, some or all of a list, in any order; now and then something that is not in it.
QStringList some(Desk::Random &random, QStringList list)
{
    std::shuffle(list.begin(), list.end(), random);
    list = list.mid(0, below(random, list.size() + 1));
    return oneIn(random, 10) ? list << QString() << QStringLiteral("none") : list;
}

QString any(Desk::Random &random, const RecordList &rows, const QString &field)
{
    return any(random, rows).value(field).toString();
}

} // namespace

Desk::Desk()
    : m_books(SampleBooks::make(1))
{
    QString errorText;
    m_gateway = PaperGateway::open(m_books, QString(), errorText);
    auto channel = std::make_unique<FaultChannel>(std::make_unique<LocalChannel>(m_gateway));
    m_faults = channel.get();
    m_client = std::make_unique<HubClient>(std::move(channel), QString::fromLatin1(userId));
    m_hub = m_client->hub.get();
    if (!m_client->settle())
        qFatal("the client does not load");
    m_listener = std::make_unique<QObject>();
    EventBus::listenToAll(m_listener.get(), [this](const QString &, const QVariant &) {
        Random random(unsigned(++events));
        if (oneIn(random, 10)) // else this thread would fall behind the events
            read(random);
    });
}

Desk::~Desk() = default;

HubFilter Desk::filter(Random &random) const
{
    HubFilter filter;
    for (const Account &account : m_books.accounts) {
        filter.accounts.append(account.tradingAccount);
        filter.products.append(account.productAccount);
        filter.assetProps.append(account.assetProp);
    }
    for (const User &user : m_books.users)
        filter.traders.append(user.userID);
    for (QStringList *list : {&filter.accounts, &filter.products, &filter.assetProps, &filter.traders})
        *list = some(random, *list);
    const Instrument instrument = any(random, m_books.instruments);
    filter.symbol = oneIn(random, 2) ? QString() : instrument.symbol;
    filter.exchange = oneIn(random, 2) ? QString() : instrument.exchange;
    filter.side = any(random, QStringList{Master_Values::SideUnion::normalBuy, Master_Values::SideUnion::normalSell,
                                          Stand_Values::Side::sell, QString()});
    filter.poolType = below(random, 6);
    filter.flag = oneIn(random, 2);
    return filter;
}

void Desk::read(Random &random)
{
    HubFilter some = filter(random);
    some.resourceIds = QStringList(any(random, m_hub->GetAllResourceList(), ResourceId));
    const RecordList pools = m_hub->GetAllSecurityPoolList();
    some.poolIds << any(random, pools, PoolDetailId) << any(random, pools, PoolDetailId);
    answers += askEverything(*m_hub, some);
    ++rounds;
}

void Desk::refresh(Random &random)
{
    switch (below(random, 4)) {
    case 0:
        m_hub->InitData();
        break;
    case 1:
        m_hub->slotRecvSecurityPoolChangedPush(any(random, m_hub->GetAllT0TradingAccountList()));
        break;
    case 2:
        m_hub->RefreshData();
        break;
    default:
        m_hub->RefreshDataByType(below(random, 7));
    }
}

RecordList Desk::poolsOf(Random &random, const VariantRecord &resource) const
{
    RecordList rows;
    for (int i = 1 + below(random, 2); i > 0; --i) {
        VariantRecord row = resource;
        row.insert(T0TraderId, any(random, m_books.tradersOf(resource.value(tradingAccount).toString())));
        row.insert(PoolTotalQty, 100 * below(random, 12));
        rows.append(row);
    }
    return rows;
}

void Desk::change(Random &random)
{
    VariantRecord resource = any(random, m_hub->GetAllResourceList());
    QString errorText;
    QString code;
    switch (below(random, oneIn(random, 40) ? 8 : 7)) { // products seldom: without them most changes are refused
    case 0:
        resource.insert(ResourceQty, 100 * below(random, 50));
        code = m_hub->AddT0Resource({resource}, oneIn(random, 2), errorText);
        break;
    case 1:
        resource.insert(ResourceQty, 100 * below(random, 90));
        code = m_hub->AlterT0Resource(resource, errorText);
        break;
    case 2:
        code = m_hub->DeleteT0Resource({resource}, errorText);
        break;
    case 3:
        code = m_hub->AllocatePublicResource(poolsOf(random, resource).mid(0, 1), errorText);
        break;
    case 4:
        code = m_hub->AllocateResourceToTrader(poolsOf(random, resource), errorText);
        break;
    case 5:
        code = m_hub->AddSecurityPoolAndResource(poolsOf(random, any(random, m_hub->GetAllSecurityPoolList())),
                                                 oneIn(random, 2), errorText);
        break;
    case 6:
        code =
            m_hub->DeleteSecurityPoolsByIdList({any(random, m_hub->GetAllSecurityPoolList(), PoolDetailId)}, errorText);
        break;
    default:
        QMap<QString, QStringList> products = m_hub->GetCandidateT0ProductAccount();
        if (oneIn(random, 2))
            products.remove(any(random, products.keys()));
        code = m_hub->AlterT0ProductAccount(products, errorText);
    }
    changes += code == success;
}

void Desk::trade(Random &random)
{
    const QStringList accounts = m_books.user(QString::fromLatin1(userId))->accounts;
    RecordList results;
    if (oneIn(random, 4)) {
        m_hub->CancelOrderList(m_client->presenter, m_hub->GetCancelableOrderList(accounts, {}, {}, {}, {}, true),
                               results);
        return;
    }
    const VariantRecord usage = any(random, m_hub->GetRealtimePoolDetailList(accounts, {}, {}, {}));
    const Instrument *instrument =
        m_books.listed(usage.value(symbol).toString(), usage.value(securityExchange).toString());
    if (!instrument)
        return;
    using namespace Master_Values::SideUnion;
    const VariantRecord order{{tradingAccount, accounts},
                              {symbol, instrument->symbol},
                              {securityExchange, instrument->exchange},
                              {Master_Fields::Security::SideUnion, oneIn(random, 2) ? normalBuy : normalSell},
                              {Orvane_Fields::Security::price, instrument->preClose},
                              {Orvane_Fields::Security::orderQty, instrument->lotSize * (1 + below(random, 3))}};
    RecordList checked;
    m_hub->CheckOrderData({order}, checked, 31);
    m_hub->Order(m_hub->GetOrderConfirmMap({order}), results, QString());
    for (const VariantRecord &result : qAsConst(results))
        orders += result.value(requestExeStatus) == success;
}

void Desk::choose(Random &random)
{
    using MasterConstants::SettingFieldName::ManualT0Settings::TradeCustQty;
    const QString chosen = any(random, m_books.instruments).symbol;
    m_hub->SetCurrentTradeAccount(some(random, m_hub->GetAllT0TradingAccountListByCurUser()));
    if (oneIn(random, 3))
        m_hub->DeleteSymbolTradeSettings(chosen);
    else
        m_hub->SetSymbolTradeSettings(chosen, {{TradeCustQty, 100 * (1 + below(random, 9))}});
}

void Desk::control(const QString &command, int count)
{
    QString errorText;
    VariantRecord values;
    RecordList rows;
    m_client->session->request(Stand_MsgType::ExchangeControlRequest, {},
                               {{{Stand_Fields::Market::command, command}, {Stand_Fields::Market::count, count}}},
                               errorText, values, rows);
}

void Desk::moveMarket(Random &random)
{
    if (oneIn(random, 100))
        control(Stand_Values::MarketCommand::dayChange, 1);
    else
        control(Stand_Values::MarketCommand::step, oneIn(random, 10) ? 3000 : 1 + below(random, 20));
}

void Desk::disturb(Random &random)
{
    using Fault = FaultChannel::Fault;
    const QString type = any(random, QStringList{QueryManualT0ProductsRequest, QueryUserIdByUserRoleRequest,
                                                 QueryManualT0ResourceRequest, QueryManualT0SecurityPoolRequest,
                                                 QueryManualT0TraderAccountPriorityRequest, AddManualT0ResourceRequest,
                                                 DeleteManualT0ResourceRequest, Stand_MsgType::OrderRequest});
    const Fault fault = any(random, QVector<Fault>{Fault::Fail, Fault::Timeout, Fault::Lose, Fault::Duplicate});
    m_faults->addFault(type, fault, 0, 1);
}

QString Desk::faultsWhenQuiet()
{
    m_faults->clearFaults();
    const bool isQuiet = m_client->settle();
    for (const int type : {ManualT0Logic::AccountPriority, ManualT0Logic::RealtimeUsage, ManualT0Logic::Traders,
                           ManualT0Logic::Products})
        m_hub->RefreshDataByType(type);
    m_hub->InitData();
    if (!isQuiet || !m_client->settle())
        return QStringLiteral("the client does not come to rest\n");
    return HubProbe::indexFaults(*m_hub).join(QLatin1Char('\n')) + m_gateway->faults() + differences();
}

QString Desk::differences()
{
    using namespace PictureLines;
    const VariantRecord held = ofGateway(*m_client->session);
    const QStringList fields{tradingAccount, symbol, T0TraderId, RtPoolTotalQty, RtTotalBuyLimit, RtTotalSellLimit};
    const auto of = [&held](const QString &family) { return recordsOf(held.value(family)); };
    QString errorText;
    VariantRecord values;
    RecordList orders;
    m_client->session->request(Stand_MsgType::QueryOrdersRequest, {{Stand_Fields::Paging::pageSize, 10000}}, {},
                               errorText, values, orders);
    int total = 0;
    const QStringList orderFields{Orvane_Fields::Security::orderID, Orvane_Fields::Security::orderStatus,
                                  Stand_Fields::Order::filledQty};
    return differenceOf("the client", lines(m_hub->GetAllResourceList(), m_hub->GetAllSecurityPoolList()),
                        lines(of(Stand_Fields::Picture::Resources), of(Stand_Fields::Picture::SecurityPools))) +
           differenceOf(
               "the client's usage",
               lines(m_hub->GetRealtimePoolDetailList(m_hub->GetAllT0TradingAccountList(), {}, {}, {}), fields),
               lines(of(Stand_Fields::Picture::RealtimeUsage), fields)) +
           differenceOf("the host's orders",
                        lines(BusinessDataInterface::GetOrderListByCustomKey({}, total, 0, 10000, {}, {}), orderFields),
                        lines(orders, orderFields));
}
