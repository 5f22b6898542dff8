#include "TestServer.h"

#include "MasterMsgType.h"
#include "Rows.h"
#include "StandMsgType.h"

using namespace Master_MsgType;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

RecordList with(const RecordList &rows, const QString &field, const QStringList &values)
{
    RecordList result;
    for (const VariantRecord &row : rows) {
        if (values.contains(row.value(field).toString()))
            result.append(row);
    }
    return result;
}

QStringList changeTypes()
{
    return {AlterManualT0ProductsRequest,      AddManualT0ResourceRequest,          AlterManualT0ResourceRequest,
            DeleteManualT0ResourceRequest,     AllocateManualT0SecurityPoolRequest, DeleteManualT0SecurityPoolRequest,
            AddManualT0ResourceAndPoolRequest, orderCancelBatchCppRequest,          Stand_MsgType::OrderRequest};
}

QString fieldsOf(const VariantRecord &row)
{
    QString line;
    for (auto field = row.cbegin(); field != row.cend(); ++field)
        line += ' ' + field.key() + '=' + field->toString();
    return line;
}

bool sameUsage(const VariantRecord &a, const VariantRecord &b)
{
    for (const QString &field : {Master_Fields::ManualT0::T0TraderId, tradingAccount,
                                 Orvane_Fields::Security::securityID, Orvane_Fields::UserAccount::securityExchange}) {
        if (a.value(field) != b.value(field))
            return false;
    }
    return true;
}

} // namespace

void TestServer::script(ScriptedChannel &scripted)
{
    channel = &scripted;
    for (const QString &type : {QueryManualT0ProductsRequest, QueryUserIdByUserRoleRequest,
                                QueryManualT0ResourceRequest, QueryManualT0SecurityPoolRequest,
                                QueryManualT0RealTimePoolUsageRequest, QueryManualT0TraderAccountPriorityRequest})
        channel->always(type, [this, type](const MessageBody &request) { return page(type, request); });
    for (const QString &type : changeTypes())
        channel->always(type, [](const MessageBody &) { return ScriptedChannel::success(); });
    channel->always(Stand_MsgType::SubscribeRequest, [this](const MessageBody &request) { return subscribe(request); });
}

TestServer::Books TestServer::books() const
{
    const std::lock_guard lock(m_mutex);
    return m_books;
}

void TestServer::change(const std::function<void(Books &)> &edit)
{
    const std::lock_guard lock(m_mutex);
    edit(m_books);
}

void TestServer::pushUsage(const VariantRecord &row)
{
    const std::lock_guard lock(m_mutex);
    RecordList others;
    for (const VariantRecord &held : qAsConst(m_books.usage)) {
        if (!sameUsage(held, row))
            others.append(held);
    }
    m_books.usage = others << row;
    channel->push(ManualT0RealTimePoolUsagePush, row); // under the lock: pushes leave in the order of their changes
}

void TestServer::answerNext(const QString &msgType, const QString &outcome)
{
    if (outcome == Master_Values::RequestExeStatus::timeout)
        channel->nextTimesOut(msgType);
    else
        channel->next(msgType,
                      outcome == Rows::Success ? ScriptedChannel::success() : ScriptedChannel::refusal(outcome));
}

QStringList TestServer::takeChanges()
{
    const QList<ScriptedChannel::Request> requests = channel->requests();
    QStringList lines;
    for (const ScriptedChannel::Request &request : requests.mid(std::exchange(m_requestsSeen, requests.size()))) {
        if (!changeTypes().contains(request.type))
            continue;
        lines.append(request.type + fieldsOf(request.body.rows.value(0)));
        for (const VariantRecord &row : request.body.rows.mid(1))
            lines.append(' ' + fieldsOf(row));
    }
    return lines;
}

QStringList TestServer::takeSubscribed()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_subscribed, {});
}

void TestServer::refuseSubscription(const QString &user)
{
    const std::lock_guard lock(m_mutex);
    m_refused = user;
}

RecordList TestServer::matching(const QString &msgType, const VariantRecord &query) const
{
    const std::lock_guard lock(m_mutex);
    const QString account = query.value(tradingAccount).toString();
    if (msgType == QueryManualT0ResourceRequest)
        return with(m_books.resources, tradingAccount, {account});
    if (msgType == QueryManualT0SecurityPoolRequest)
        return with(m_books.pools, tradingAccount, {account});
    if (msgType == QueryManualT0RealTimePoolUsageRequest)
        return with(m_books.usage, Master_Fields::ManualT0::T0TraderId,
                    query.value(Master_Fields::ManualT0::T0TraderId).toString().split(QLatin1Char(',')));
    if (msgType == QueryManualT0TraderAccountPriorityRequest)
        return m_books.priority;
    if (msgType == QueryManualT0ProductsRequest)
        return RecordList{query} + m_books.products; // the first row repeats the request
    const bool managers =
        query.value(Master_Fields::UserAccount::UserRoleId) == Master_Values::UserRoles::ManualT0Mangager;
    return managers ? m_books.managers : m_books.traders;
}

MessageBody TestServer::page(const QString &msgType, const MessageBody &request) const
{
    const RecordList rows = matching(msgType, request.rows.value(0));
    const int size = request.values.value(Stand_Fields::Paging::pageSize).toInt();
    return size == 0 ? ScriptedChannel::success(rows) : ScriptedChannel::page(request, rows, size);
}

MessageBody TestServer::subscribe(const MessageBody &request)
{
    if (request.values.value(Stand_Fields::Subscription::pushType) != ManualT0RealTimePoolUsagePush)
        return ScriptedChannel::success();
    const QString user = request.rows.value(0).value(Orvane_Fields::UserAccount::userID).toString();
    const std::lock_guard lock(m_mutex);
    m_subscribed.append(user);
    return user == m_refused ? ScriptedChannel::refusal(QStringLiteral("refused")) : ScriptedChannel::success();
}
