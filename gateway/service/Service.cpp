#include "Service.h"

#include "Answers.h"
#include "GatewayTexts.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "StandMsgType.h"

#include <QtCore/QDateTime>
#include <QtCore/QDebug>

QString Request::text(const QString &field) const
{
    return row.value(field).toString();
}

Service::Service(const Books &books, std::unique_ptr<Store> store)
    : m_books(books)
    , m_store(std::move(store))
{
    for (const OpeningQuote &quote : books.quotes) {
        m_quoted.append(quote.symbol);
        m_lastPrices.insert(quote.symbol, quote.last);
    }
}

const QHash<QString, Service::Handler> &Service::handlers()
{
    static const QHash<QString, Handler> table{
        {Stand_MsgType::LoginRequest, &Service::login},
        {Stand_MsgType::SubscribeRequest, &Service::subscribe},
        {Stand_MsgType::EchoRequest, &Service::echo},
        {Stand_MsgType::QueryAccountsRequest, &Service::queryAccounts},
        {Stand_MsgType::QueryInstrumentsRequest, &Service::queryInstruments},
        {Stand_MsgType::QueryPositionsRequest, &Service::queryPositions},
        {Stand_MsgType::QueryMarginSecuritiesRequest, &Service::queryMarginSecurities},
        {Stand_MsgType::QueryQuotesRequest, &Service::queryQuotes},
        {Stand_MsgType::SetQuoteRequest, &Service::setQuote},
        {Stand_MsgType::PushUsageRequest, &Service::pushUsage},
        {Stand_MsgType::PictureRequest, &Service::picture},
        {Master_MsgType::QueryManualT0ProductsRequest, &Service::queryProducts},
        {Master_MsgType::QueryUserIdByUserRoleRequest, &Service::queryUsersByRole},
        {Master_MsgType::QueryManualT0ResourceRequest, &Service::queryResources},
        {Master_MsgType::QueryManualT0SecurityPoolRequest, &Service::queryPools},
        {Master_MsgType::QueryManualT0RealTimePoolUsageRequest, &Service::queryUsage},
        {Master_MsgType::QueryManualT0TraderAccountPriorityRequest, &Service::queryAccountPriority},
    };
    return table;
}

void Service::connectClient(PaperGateway::ClientId id, PaperGateway::Client client)
{
    m_sessions.insert(id, {std::move(client), nullptr, {}, false, false});
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
    const MessageBody answer = answerTo(*session, envelope);
    session->client.deliver(envelope.answer(answer).encode());
    deliverPushes();
}

MessageBody Service::answerTo(ClientSession &session, const Envelope &envelope)
{
    // Its sender was told that it has failed, so it must not be carried out any more.
    if (envelope.validUntil < QDateTime::currentMSecsSinceEpoch())
        return Answers::refused(GatewayTexts::expired());
    MessageBody body;
    QString reason;
    if (!MessageBody::decode(envelope.body, body, reason))
        return Answers::refused(GatewayTexts::unreadable(reason));
    return answerTo(Request{session, envelope.type, body.values, body.rows.value(0)});
}

MessageBody Service::answerTo(const Request &request)
{
    const Handler handler = handlers().value(request.type, nullptr);
    if (!handler)
        return Answers::refused(GatewayTexts::unknownType(request.type));
    if (request.type != Stand_MsgType::LoginRequest) {
        if (!request.session.user)
            return Answers::refused(GatewayTexts::notLoggedIn());
        const QVariant named = request.row.value(Orvane_Fields::UserAccount::loginUserId);
        if (named.isValid() && named.toString() != request.user().userID)
            return Answers::refused(GatewayTexts::foreignUser(named.toString()));
    }
    m_store->clearError();
    const MessageBody answer = (this->*handler)(request);
    // No rows because the database failed must not look like no rows.
    return m_store->errorText().isEmpty() ? answer : Answers::refused(GatewayTexts::storeFailed(m_store->errorText()));
}

void Service::deliverPushes()
{
    const QVector<Push> pushes = std::move(m_pushes);
    m_pushes.clear();
    for (const Push &push : pushes) {
        const QByteArray bytes = push.envelope.encode();
        for (const ClientSession &session : qAsConst(m_sessions))
            if (push.only               ? push.only == &session
                : push.trader.isEmpty() ? session.quotes
                                        : session.usageOf.contains(push.trader))
                session.client.deliver(bytes);
    }
}

QString Service::errorText() const
{
    return m_store->errorText();
}
