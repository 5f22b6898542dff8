#include "SimChannel.h"

#include "MasterMsgType.h"
#include "ScriptedChannel.h"
#include "StandMsgType.h"

using namespace Master_MsgType;

namespace {

constexpr World::Ms afterTimeout = 500; ///< how late a request arrives that is too late

} // namespace

SimChannel::SimChannel(World &world, ModelGateway &gateway, Faults &faults)
    : m_world(world)
    , m_gateway(gateway)
    , m_faults(faults)
    , m_since(QDateTime::currentDateTimeUtc())
{}

bool SimChannel::isChange(const QString &type)
{
    static const QSet<QString> types{AlterManualT0ProductsRequest,        AddManualT0ResourceRequest,
                                     AlterManualT0ResourceRequest,        DeleteManualT0ResourceRequest,
                                     AllocateManualT0SecurityPoolRequest, DeleteManualT0SecurityPoolRequest,
                                     AddManualT0ResourceAndPoolRequest,   Stand_MsgType::OrderRequest};
    return types.contains(type);
}

bool SimChannel::happens(int oneIn)
{
    return m_hasFaults && m_world.chance.oneIn(oneIn);
}

bool SimChannel::strikes(Fault fault, int oneIn)
{
    if (!happens(oneIn))
        return false;
    m_faults.struck(fault);
    return true;
}

// ---- To the gateway ---------------------------------------------------------------------------------------

bool SimChannel::send(const Envelope &envelope, int timeoutMs, ReplyHandler handler)
{
    if (m_connection != Connection::Connected)
        return false;
    const QString id = envelope.id;
    m_world.note("sent " + envelope.type);
    m_pending.insert(id, std::move(handler));
    if (isChange(envelope.type) && changeSent)
        changeSent(id);
    m_world.in(timeoutMs, [this, id] { answered(id, {Outcome::TimedOut, {}, QStringLiteral("timed out")}); });

    World::Ms delay = 0.05 + m_world.chance.upTo(m_hasFaults ? 40 : 5) / 10.0;
    if (isChange(envelope.type) && strikes(Fault::TimeoutBeforeChange, 12))
        delay = timeoutMs + afterTimeout;
    else if (strikes(Fault::Drop, 40))
        return true;
    const auto arrival = [this, envelope, session = m_session] {
        --m_underWay;
        if (session == m_session)
            arrive(envelope);
    };
    ++m_underWay;
    m_world.in(delay, arrival);
    if (strikes(Fault::Duplicate, 30)) {
        ++m_underWay;
        m_world.in(delay + m_world.chance.upTo(300), arrival);
    }
    return true;
}

MessageChannel::Reply SimChannel::request(const Envelope &envelope, int timeoutMs)
{
    Reply result;
    bool isDone = false;
    if (!send(envelope, timeoutMs, [&](const Reply &reply) {
            result = reply;
            isDone = true;
        }))
        return result;
    while (!isDone)
        m_world.step();
    return result;
}

bool SimChannel::subscribe(const QString &pushType, const VariantRecord &filter, const QString &, int timeoutMs)
{
    const Envelope envelope = Envelope::request(Stand_MsgType::SubscribeRequest, Rows::user, timeoutMs,
                                                {{{Stand_Fields::Subscription::pushType, pushType}}, {filter}});
    MessageBody body;
    QString errorText;
    const Reply reply = request(envelope, timeoutMs);
    const bool accepted = reply.outcome == Outcome::Answered &&
                          MessageBody::decode(reply.envelope.body, body, errorText) &&
                          body.values.value(Orvane_Fields::System::requestExeStatus) == Rows::Success;
    if (accepted)
        m_subscriptions.append({pushType, filter});
    return accepted;
}

// ---- To the client ----------------------------------------------------------------------------------------

void SimChannel::arrive(const Envelope &request)
{
    MessageBody answer = m_gateway.receive(request);
    const bool wasExecuted = m_gateway.executions(request.id) > 0;
    if (wasExecuted && strikes(Fault::TimeoutAfterChange, 10))
        return;
    if (m_hasFaults && !isChange(request.type))
        spoilAnswer(request, answer);
    if (request.type != Stand_MsgType::SubscribeRequest)
        tradeNow(Fault::PushBeforeAnswer, 25);

    World::Ms delay = 0.05 + m_world.chance.upTo(m_hasFaults ? 60 : 5) / 10.0;
    if (strikes(Fault::Delay, 60))
        delay = 300 + m_world.chance.upTo(7000);
    const Reply reply{Outcome::Answered, request.answer(answer), {}};
    const QByteArray &body = reply.envelope.body;
    m_world.note(QStringLiteral("answered %1 %2")
                     .arg(request.type, QString::number(qChecksum(body.constData(), uint(body.size())))));
    const auto handOver = [this, id = request.id, reply] { answered(id, reply); };
    deliver(delay, happens(30), handOver);
    const bool pagesFollow = !answer.values.value(Stand_Fields::Paging::position).toString().isEmpty();
    if (pagesFollow)
        tradeNow(Fault::PushBetweenPages, 12);
}

/// Strikes when it is told to the client.
void SimChannel::tradeNow(Fault fault, int oneIn)
{
    if (!happens(oneIn))
        return;
    const int pushed = m_pushed;
    m_gateway.someoneTrades();
    if (m_pushed > pushed)
        m_faults.struck(fault);
}

void SimChannel::spoilAnswer(const Envelope &request, MessageBody &answer)
{
    if (request.type == Stand_MsgType::SubscribeRequest) {
        if (strikes(Fault::SubscriptionRefused, 5))
            answer = ScriptedChannel::refusal(QStringLiteral("not now"));
        return;
    }
    if (!m_world.chance.oneIn(8))
        return;
    static const QVector<Fault> faults{Fault::OtherStatus,   Fault::TruncatedPage, Fault::EmptyPage,
                                       Fault::RepeatedPage,  Fault::WrongFirstRow, Fault::ErrorTextWithRows,
                                       Fault::MissingFields, Fault::WrongTypes,    Fault::WrongTypes};
    const Fault fault = faults.at(m_world.chance.upTo(faults.size()));
    if (fault == Fault::WrongFirstRow && request.type != QueryManualT0ProductsRequest)
        return;
    if (request.type == QueryManualT0ProductsRequest)
        spoiltProducts = true;
    m_faults.spoil(fault, answer, m_world.chance);
}

void SimChannel::deliver(World::Ms delay, bool overtakes, std::function<void()> handOver)
{
    qint64 due = SimClock::now() + qint64(delay * 1000);
    if (!overtakes)
        m_linkFree = due = qMax(due, m_linkFree);
    else if (due < m_linkFree)
        m_faults.struck(Fault::Reorder);
    ++m_underWay;
    m_world.at(due, [this, session = m_session, handOver = std::move(handOver)] {
        --m_underWay;
        if (session == m_session)
            handOver();
    });
}

void SimChannel::answered(const QString &requestId, const Reply &reply)
{
    const ReplyHandler handler = m_pending.take(requestId);
    if (!handler)
        return;
    if (reply.outcome != Outcome::Answered)
        m_unanswered.insert(requestId);
    handler(reply);
}

bool SimChannel::push(const VariantRecord &usage)
{
    if (m_connection != Connection::Connected || !m_pushHandler || strikes(Fault::Drop, 40))
        return false;
    ++m_pushed;
    const Envelope envelope = Envelope::push(ManualT0RealTimePoolUsagePush, {{}, {usage}});
    const auto handOver = [this, envelope] {
        m_world.note(QStringLiteral("push"));
        if (m_pushHandler)
            m_pushHandler(envelope);
    };
    const World::Ms delay = 0.05 + m_world.chance.upTo(20) / 10.0;
    deliver(delay, happens(30), handOver);
    if (strikes(Fault::Duplicate, 30))
        deliver(delay, false, handOver);
    return true;
}

// ---- The connection ---------------------------------------------------------------------------------------

bool SimChannel::cut()
{
    if (m_connection != Connection::Connected)
        return false;
    m_world.note(QStringLiteral("connection lost"));
    m_connection = Connection::Disconnected;
    m_since = QDateTime::currentDateTimeUtc();
    ++m_session;
    m_linkFree = 0;
    m_gateway.forgetClient();
    m_world.in(100 + m_world.chance.upTo(3000), [this] { connect(); });
    endAll(Outcome::TimedOut, true);
    return true;
}

void SimChannel::connect()
{
    if (m_connection != Connection::Disconnected)
        return;
    m_world.note(QStringLiteral("connected"));
    m_connection = Connection::Connected;
    m_since = QDateTime::currentDateTimeUtc();
    for (const Subscription &subscription : qAsConst(m_subscriptions))
        m_gateway.receive(Envelope::request(
            Stand_MsgType::SubscribeRequest, Rows::user, 1000,
            {{{Stand_Fields::Subscription::pushType, subscription.pushType}}, {subscription.filter}}));
    m_gateway.clientReturned();
}

void SimChannel::setFaults(bool on)
{
    m_hasFaults = on;
    if (!on)
        connect();
}

void SimChannel::endAll(Outcome outcome, bool cut)
{
    const QStringList ids = m_pending.keys();
    for (const QString &id : ids)
        answered(id, {outcome, {}, QStringLiteral("connection lost"), cut});
}

void SimChannel::close()
{
    m_connection = Connection::Closed;
    endAll(Outcome::NotSent, false);
}
