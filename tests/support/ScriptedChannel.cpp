#include "ScriptedChannel.h"

#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "StandMsgType.h"

#include <QtCore/QMutexLocker>

ScriptedChannel::ScriptedChannel()
    : m_thread([this] { run(); })
{
    setConnection(Connection::Connected);
}

ScriptedChannel::~ScriptedChannel()
{
    ScriptedChannel::close();
    m_thread.join();
}

void ScriptedChannel::next(const QString &type, const MessageBody &answer)
{
    QMutexLocker lock(&m_mutex);
    m_next[type].append({Kind::Answered, answer});
}

void ScriptedChannel::nextTimesOut(const QString &type)
{
    QMutexLocker lock(&m_mutex);
    m_next[type].append({Kind::TimesOut, {}});
}

void ScriptedChannel::nextIsNotSent(const QString &type)
{
    QMutexLocker lock(&m_mutex);
    m_next[type].append({Kind::NotSent, {}});
}

void ScriptedChannel::always(const QString &type, Answer answer)
{
    QMutexLocker lock(&m_mutex);
    m_always.insert(type, std::move(answer));
}

void ScriptedChannel::hold(const QString &type)
{
    QMutexLocker lock(&m_mutex);
    m_held.insert(type);
}

void ScriptedChannel::release(const QString &type)
{
    QList<QByteArray> answers;
    {
        QMutexLocker lock(&m_mutex);
        m_held.remove(type);
        answers = m_keptBack.take(type);
    }
    for (const QByteArray &answer : qAsConst(answers))
        deliver([this, answer] { received(answer); });
}

void ScriptedChannel::push(const QString &type, const VariantRecord &row)
{
    const QByteArray bytes = Envelope::push(type, {{}, {row}}).encode();
    deliver([this, bytes] { received(bytes); });
}

void ScriptedChannel::disconnect()
{
    setConnection(Connection::Disconnected);
}

void ScriptedChannel::reconnect()
{
    setConnection(Connection::Connected);
}

QList<ScriptedChannel::Request> ScriptedChannel::requests(const QString &type) const
{
    QMutexLocker lock(&m_mutex);
    QList<Request> found;
    for (const Request &request : m_requests) {
        if (type.isEmpty() || request.type == type)
            found.append(request);
    }
    return found;
}

QStringList ScriptedChannel::unexpected() const
{
    QMutexLocker lock(&m_mutex);
    return m_unexpected;
}

MessageBody ScriptedChannel::success(const RecordList &rows, const VariantRecord &values)
{
    MessageBody body{values, rows};
    body.values.insert(Orvane_Fields::System::requestExeStatus, Orvane_Values::RequestExeStatus::success);
    return body;
}

MessageBody ScriptedChannel::refusal(const QString &text)
{
    MessageBody body;
    body.values.insert(Orvane_Fields::System::requestExeStatus, Orvane_Values::RequestExeStatus::fail);
    body.values.insert(Orvane_Fields::System::textDescription, text);
    return body;
}

MessageBody ScriptedChannel::page(const MessageBody &request, const RecordList &rows, int size)
{
    using namespace Stand_Fields::Paging;
    const bool byPage = request.values.contains(pageIndex);
    const int begin = byPage ? request.values.value(pageIndex).toInt() * size : request.values.value(position).toInt();
    const bool more = begin + size < rows.size();
    return success(rows.mid(begin, size),
                   {{hasMore, more}, {position, more ? QString::number(begin + size) : QString()}});
}

ScriptedChannel::Kind ScriptedChannel::nextKind(const Envelope &envelope)
{
    Request request{envelope.type, {}, envelope};
    QString errorText;
    MessageBody::decode(envelope.body, request.body, errorText);

    QMutexLocker lock(&m_mutex);
    const auto queue = m_next.find(envelope.type);
    if (queue == m_next.end() || queue->isEmpty() || queue->first().kind == Kind::Answered)
        return Kind::Answered;
    m_requests.append(request);
    return queue->takeFirst().kind;
}

MessageChannel::Reply ScriptedChannel::request(const Envelope &envelope, int timeoutMs)
{
    switch (nextKind(envelope)) {
    case Kind::TimesOut:
        return {Outcome::TimedOut, {}, QStringLiteral("timed out")};
    case Kind::NotSent:
        return {Outcome::NotSent, {}, QStringLiteral("not sent")};
    case Kind::Answered:
        break;
    }
    return StreamChannel::request(envelope, timeoutMs);
}

bool ScriptedChannel::send(const Envelope &envelope, int timeoutMs, ReplyHandler handler)
{
    switch (nextKind(envelope)) {
    case Kind::TimesOut:
        deliver([handler = std::move(handler)] { handler({Outcome::TimedOut, {}, QStringLiteral("timed out")}); });
        return true;
    case Kind::NotSent:
        return false;
    case Kind::Answered:
        break;
    }
    return StreamChannel::send(envelope, timeoutMs, std::move(handler));
}

void ScriptedChannel::close()
{
    StreamChannel::close();
    QMutexLocker lock(&m_mutex);
    m_stops = true;
    m_woken.wakeAll();
}

bool ScriptedChannel::transmit(const QByteArray &bytes)
{
    Request request;
    QString errorText;
    if (!Envelope::decode(bytes, request.envelope, errorText) ||
        !MessageBody::decode(request.envelope.body, request.body, errorText))
        qFatal("a request that cannot be decoded: %s", qUtf8Printable(errorText));
    request.type = request.envelope.type;

    const QByteArray answer = request.envelope.answer(answerTo(request)).encode();
    {
        QMutexLocker lock(&m_mutex);
        if (m_held.contains(request.type)) {
            m_keptBack[request.type].append(answer);
            return true;
        }
    }
    deliver([this, answer] { received(answer); });
    return true;
}

MessageBody ScriptedChannel::answerTo(const Request &request)
{
    if (request.type == Stand_MsgType::EchoRequest)
        return success();
    QMutexLocker lock(&m_mutex);
    m_requests.append(request);
    const auto queue = m_next.find(request.type);
    if (queue != m_next.end() && !queue->isEmpty())
        return queue->takeFirst().body;
    const Answer answer = m_always.value(request.type);
    if (!answer) {
        m_unexpected.append(request.type);
        return refusal(QStringLiteral("nobody scripted ") + request.type);
    }
    lock.unlock();
    return answer(request.body);
}

void ScriptedChannel::deliver(std::function<void()> delivery)
{
    QMutexLocker lock(&m_mutex);
    m_deliveries.push_back(std::move(delivery));
    m_woken.wakeAll();
}

void ScriptedChannel::run()
{
    QMutexLocker lock(&m_mutex);
    for (;;) {
        while (m_deliveries.empty() && !m_stops)
            m_woken.wait(&m_mutex);
        if (m_deliveries.empty())
            return;
        const std::function<void()> delivery = std::move(m_deliveries.front());
        m_deliveries.pop_front();
        lock.unlock();
        delivery();
        lock.relock();
    }
}

namespace {

VariantRecord holdingRow(const ScriptedReference::Holding &holding)
{
    return {{Orvane_Fields::UserAccount::tradingAccount, holding.tradingAccount},
            {Orvane_Fields::Security::securityID, holding.securityID},
            {Orvane_Fields::UserAccount::securityExchange, holding.exchange}};
}

RecordList accountRows(const ScriptedReference &reference)
{
    RecordList rows;
    for (const ScriptedReference::Account &account : reference.accounts) {
        rows.append({{Orvane_Fields::UserAccount::tradingAccount, account.tradingAccount},
                     {Orvane_Fields::UserAccount::productAccount, account.productAccount},
                     {Stand_Fields::Account::productName, QStringLiteral("name of ") + account.productAccount},
                     {Stand_Fields::Account::accountText, QStringLiteral("text of ") + account.tradingAccount},
                     {Stand_Fields::Account::assetProp, account.assetProp},
                     {Stand_Fields::Account::exchanges, account.exchanges},
                     {Stand_Fields::Account::enabled, true}});
    }
    return rows;
}

RecordList instrumentRows(const ScriptedReference &reference)
{
    RecordList rows;
    for (const ScriptedReference::Instrument &instrument : reference.instruments) {
        VariantRecord row{{Orvane_Fields::Security::symbol, instrument.symbol},
                          {Orvane_Fields::Security::securityID, instrument.securityID},
                          {Orvane_Fields::UserAccount::securityExchange, instrument.exchange},
                          {Orvane_Fields::Security::chineseName, QStringLiteral("证券") + instrument.securityID},
                          {Orvane_Fields::Security::spellCode, QStringLiteral("ZQ") + instrument.securityID},
                          {Stand_Fields::Security::type, instrument.type},
                          {Stand_Fields::Security::subType, instrument.subType},
                          {Stand_Fields::Security::marketSuffix, instrument.symbol.mid(instrument.symbol.indexOf('.'))},
                          {Stand_Fields::Security::dispFactor, instrument.dispFactor}};
        for (auto field = instrument.further.cbegin(); field != instrument.further.cend(); ++field)
            row.insert(field.key(), *field);
        rows.append(row);
    }
    return rows;
}

RecordList quoteRows(const ScriptedReference &reference)
{
    RecordList rows;
    for (const ScriptedReference::Instrument &instrument : reference.instruments) {
        if (instrument.lastPrice > 0)
            rows.append({{Orvane_Fields::Security::symbol, instrument.symbol},
                         {Stand_Fields::Quote::lastPrice, instrument.lastPrice}});
    }
    return rows;
}

RecordList positionRows(const ScriptedReference &reference)
{
    RecordList rows;
    for (const ScriptedReference::Holding &holding : reference.positions) {
        VariantRecord row = holdingRow(holding);
        row.insert(Stand_Fields::Position::quantity, holding.quantity);
        row.insert(Stand_Fields::Position::tradeable, holding.quantity);
        rows.append(row);
    }
    return rows;
}

RecordList marginRows(const ScriptedReference &reference)
{
    RecordList rows;
    for (const ScriptedReference::Holding &holding : reference.marginSecurities) {
        VariantRecord row = holdingRow(holding);
        row.insert(Stand_Fields::Margin::quantity, holding.quantity);
        row.insert(Stand_Fields::Margin::loanState, holding.loanState);
        rows.append(row);
    }
    return rows;
}

} // namespace

QMap<QString, RecordList> ScriptedReference::answers() const
{
    return {{Stand_MsgType::LoginRequest,
             {{{Orvane_Fields::UserAccount::userID, user},
               {Orvane_Fields::UserAccount::userName, QStringLiteral("name of ") + user},
               {Orvane_Fields::UserAccount::organCode, organCode},
               {Stand_Fields::User::roles, roles}}}},
            {Stand_MsgType::QueryAccountsRequest, accountRows(*this)},
            {Stand_MsgType::QueryInstrumentsRequest, instrumentRows(*this)},
            {Stand_MsgType::QueryPositionsRequest, positionRows(*this)},
            {Stand_MsgType::QueryMarginSecuritiesRequest, marginRows(*this)},
            {Stand_MsgType::QueryQuotesRequest, quoteRows(*this)},
            {Stand_MsgType::QueryOrdersRequest, orders},
            {Stand_MsgType::QueryFillsRequest, {}},
            {Stand_MsgType::ExchangeControlRequest, {}}};
}

void ScriptedReference::script(ScriptedChannel &channel) const
{
    const QMap<QString, RecordList> rows = answers();
    for (auto answer = rows.cbegin(); answer != rows.cend(); ++answer)
        channel.always(answer.key(), [rows = *answer](const MessageBody &) { return ScriptedChannel::success(rows); });
    channel.always(Stand_MsgType::SubscribeRequest, [](const MessageBody &) { return ScriptedChannel::success(); });
}

std::unique_ptr<HostSession> ScriptedReference::open(ScriptedChannel *&channel, int requestTimeoutMs) const
{
    auto scripted = std::make_unique<ScriptedChannel>();
    channel = scripted.get();
    script(*scripted);
    QString errorText;
    auto session = HostSession::open({std::move(scripted), user, {}, requestTimeoutMs}, errorText);
    if (!session)
        qFatal("the scripted session does not open: %s", qUtf8Printable(errorText));
    return session;
}
