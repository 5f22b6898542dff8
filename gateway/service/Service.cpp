#include "Service.h"

#include "Answers.h"
#include "GatewayTexts.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "StandFields.h"
#include "StandMsgType.h"

#include <QtCore/QDateTime>
#include <QtCore/QDebug>

QString Request::text(const QString &field) const
{
    return row.value(field).toString();
}

QString Request::seenUser() const
{
    return user().isManager() ? QString() : user().userID;
}

Service::Service(const Books &books, std::unique_ptr<Store> store, const GatewayOptions &options)
    : m_books(books)
    , m_store(std::move(store))
    , m_seed(m_store->market().exchange.isEmpty() ? options.seed.value_or(1) : m_store->market().seed)
    , m_changes(*m_store)
    , m_memory{m_store->enabledAccounts(), Exchange(books, m_seed, {options.immediate, options.slippage})}
    , m_clock(options.clock ? options.clock : QDateTime::currentMSecsSinceEpoch)
{
    QSet<QString> seen;
    for (const Instrument &instrument : books.instruments) {
        if (!seen.contains(instrument.symbol))
            m_symbols.append(instrument.symbol);
        seen.insert(instrument.symbol);
    }
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { tick(); });
}

bool Service::start()
{
    if (!m_store->errorText().isEmpty() || !m_store->begin())
        return false;
    const StoredMarket market = m_store->market();
    m_memory.exchange.setTime(market.ms);
    m_memory.exchange.setHeld(market.held);
    touchAll();
    // Books with other securities begin the market anew, and nobody knows where its orders would stand in it.
    if (!market.exchange.isEmpty() && !m_memory.exchange.restore(market.exchange))
        for (const StoredOrder &order : m_store->liveOrders())
            endOrder(order, Stand_Values::OrderStatus::Expired, GatewayTexts::marketBegunAnew());
    m_shownMarket = marketRow();
    if (refreshUsage({m_store->allUsage(), m_store->allPools(), m_store->liveOrders()}) && saveMarket())
        return m_store->commit();
    m_store->rollback();
    return false;
}

const QHash<QString, Service::Route> &Service::routes()
{
    static const QHash<QString, Route> table{
        {Stand_MsgType::LoginRequest, {&Service::login, Kind::Query}},
        {Stand_MsgType::SubscribeRequest, {&Service::subscribe, Kind::Query}},
        {Stand_MsgType::EchoRequest, {&Service::echo, Kind::Query}},
        {Stand_MsgType::QueryAccountsRequest, {&Service::queryAccounts, Kind::Query}},
        {Stand_MsgType::QueryInstrumentsRequest, {&Service::queryInstruments, Kind::Query}},
        {Stand_MsgType::QueryPositionsRequest, {&Service::queryPositions, Kind::Query}},
        {Stand_MsgType::QueryMarginSecuritiesRequest, {&Service::queryMarginSecurities, Kind::Query}},
        {Stand_MsgType::QueryQuotesRequest, {&Service::queryQuotes, Kind::Query}},
        {Stand_MsgType::SetQuoteRequest, {&Service::setQuote, Kind::Control}},
        {Stand_MsgType::OrderRequest, {&Service::placeOrders, Kind::Control}},
        {Master_MsgType::orderCancelBatchCppRequest, {&Service::cancelOrders, Kind::Control}},
        {Stand_MsgType::QueryRequestFateRequest, {&Service::queryRequestFate, Kind::Query}},
        {Stand_MsgType::QueryOrdersRequest, {&Service::queryOrders, Kind::Query}},
        {Stand_MsgType::QueryFillsRequest, {&Service::queryFills, Kind::Query}},
        {Stand_MsgType::ExchangeControlRequest, {&Service::controlMarket, Kind::Control}},
        {Stand_MsgType::PushUsageRequest, {&Service::pushUsage, Kind::Control}},
        {Stand_MsgType::QuerySafetyRulesRequest, {&Service::querySafety, Kind::Query}},
        {Stand_MsgType::AlterSafetyRulesRequest, {&Service::alterSafety, Kind::Change}},
        {Stand_MsgType::PictureRequest, {&Service::picture, Kind::Query}},
        {Master_MsgType::QueryManualT0ProductsRequest, {&Service::queryProducts, Kind::Query}},
        {Master_MsgType::QueryUserIdByUserRoleRequest, {&Service::queryUsersByRole, Kind::Query}},
        {Master_MsgType::QueryManualT0ResourceRequest, {&Service::queryResources, Kind::Query}},
        {Master_MsgType::QueryManualT0SecurityPoolRequest, {&Service::queryPools, Kind::Query}},
        {Master_MsgType::QueryManualT0RealTimePoolUsageRequest, {&Service::queryUsage, Kind::Query}},
        {Master_MsgType::QueryManualT0TraderAccountPriorityRequest, {&Service::queryAccountPriority, Kind::Query}},
        {Master_MsgType::AlterManualT0ProductsRequest, {&Service::alterProducts, Kind::Change}},
        {Master_MsgType::AddManualT0ResourceRequest, {&Service::addResources, Kind::Change}},
        {Master_MsgType::AlterManualT0ResourceRequest, {&Service::alterResources, Kind::Change}},
        {Master_MsgType::DeleteManualT0ResourceRequest, {&Service::deleteResources, Kind::Change}},
        {Master_MsgType::AllocateManualT0SecurityPoolRequest, {&Service::allocatePools, Kind::Change}},
        {Master_MsgType::AlterManualT0SecurityPoolRequest, {&Service::alterPools, Kind::Change}},
        {Master_MsgType::DeleteManualT0SecurityPoolRequest, {&Service::deletePools, Kind::Change}},
        {Master_MsgType::AddManualT0ResourceAndPoolRequest, {&Service::addResourcesAndPools, Kind::Change}},
    };
    return table;
}

void Service::connectClient(PaperGateway::ClientId id, PaperGateway::Client client)
{
    m_sessions.insert(id, {std::move(client), nullptr, {}, {}, false});
}

void Service::disconnectClient(PaperGateway::ClientId id)
{
    m_sessions.remove(id);
}

void Service::receive(PaperGateway::ClientId id, const QByteArray &bytes)
{
    const auto session = m_sessions.find(id);
    if (session == m_sessions.end())
        return;
    Envelope envelope;
    QString reason = QStringLiteral("not a request");
    if (!Envelope::decode(bytes, envelope, reason) || envelope.kind != Envelope::Kind::Request) {
        qWarning("gateway: client %llu dropped: %s", qulonglong(id), qPrintable(reason));
        const auto dropped = session->client.dropped;
        m_sessions.erase(session);
        dropped();
        return;
    }
    Envelope answer = envelope.answer(answerTo(*session, envelope));
    if (answer.body.isEmpty())
        answer = envelope.answer(Answers::refused(GatewayTexts::answerTooLarge()));
    session->client.deliver(answer.encode());
    deliverPushes();
}

MessageBody Service::answerTo(ClientSession &session, const Envelope &envelope)
{
    const Route route = routes().value(envelope.type);
    m_store->clearError();
    const bool isChange = route.kind != Kind::Query && session.user;
    const MessageBody answer = isChange ? changeOnce(session, envelope, route) : execute(session, envelope, route);
    // No rows because the database failed must not look like no rows.
    return m_store->errorText().isEmpty() ? answer : Answers::refused(GatewayTexts::storeFailed(m_store->errorText()));
}

MessageBody Service::execute(ClientSession &session, const Envelope &envelope, const Route &route)
{
    // Its sender was told that it has failed, so it must not be carried out any more.
    if (envelope.validUntil < m_clock())
        return Answers::refused(GatewayTexts::expired());
    MessageBody body;
    QString reason;
    if (!MessageBody::decode(envelope.body, body, reason))
        return Answers::refused(GatewayTexts::unreadable(reason));
    if (!route.handler)
        return Answers::refused(GatewayTexts::unknownType(envelope.type));
    const Request request{session, envelope.id, envelope.type, body.values, body.rows.value(0), body.rows.mid(1)};
    if (envelope.type != Stand_MsgType::LoginRequest) {
        if (!session.user)
            return Answers::refused(GatewayTexts::notLoggedIn());
        const QVariant named = request.row.value(Orvane_Fields::UserAccount::loginUserId);
        if (named.isValid() && named.toString() != request.user().userID)
            return Answers::refused(GatewayTexts::foreignUser(named.toString()));
    }
    const QString refusal = refusalOfChange(request, route.kind);
    return refusal.isEmpty() ? (this->*route.handler)(request) : Answers::refused(refusal);
}

void Service::push(const QString &type, const VariantRecord &row, const QString &about, const ClientSession *only)
{
    if (!m_sessions.isEmpty())
        m_pushes.append({Envelope::push(type, {{}, {row}}), about, only});
}

void Service::deliverPushes()
{
    pushMarket();
    const QVector<Push> pushes = std::move(m_pushes);
    m_pushes.clear();
    for (const Push &push : pushes) {
        const QByteArray bytes = push.envelope.encode();
        for (const ClientSession &session : qAsConst(m_sessions))
            if (wants(session, push))
                session.client.deliver(bytes);
    }
}

bool Service::wants(const ClientSession &session, const Push &push) const
{
    const QString &type = push.envelope.type;
    if (push.only)
        return push.only == &session;
    if (type == Master_MsgType::ManualT0RealTimePoolUsagePush)
        return session.usageOf.contains(push.about);
    if (!session.subscribed.contains(type))
        return false;
    if (type == Stand_MsgType::PositionPush)
        return mayTrade(*session.user, push.about);
    return push.about.isEmpty() || push.about == session.user->userID || session.user->isManager();
}

QString Service::errorText() const
{
    return m_store->errorText();
}
