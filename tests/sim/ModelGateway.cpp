#include "ModelGateway.h"

#include "GatewayRows.h"
#include "MasterMsgType.h"
#include "SharedDesk.h"
#include "StandMsgType.h"

#include <QtCore/QDateTime>

using namespace Master_MsgType;
using namespace GatewayRows;
using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::securityID;
using Orvane_Fields::UserAccount::productAccount;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

const QMap<QString, RecordList> &reference()
{
    static const QMap<QString, RecordList> answers = [] {
        ScriptedReference desk = tradingDesk();
        desk.user = Rows::user;
        return desk.answers();
    }();
    return answers;
}

QVector<ScriptedReference::Account> deskAccounts()
{
    return sharedDesk().accounts.toVector();
}

} // namespace

ModelGateway::ModelGateway(Chance &chance)
    : m_chance(chance)
    , m_pageSize(1 + chance.upTo(5))
    , m_isManager(!chance.oneIn(4))
    , m_priority(chance.some({"A1", "A2", "A3"}))
{
    for (const ScriptedReference::Account &account : deskAccounts()) {
        if (!chance.oneIn(4))
            m_enabled.insert(account.tradingAccount);
    }
    for (int i = 3 + chance.upTo(12); i > 0; --i) {
        const VariantRecord row = chance.resource(chance.account());
        if (resourceAt(row).isEmpty())
            m_resources.insert(str(row, ResourceId), row);
    }
    for (int i = chance.upTo(16); i > 0; --i) {
        const VariantRecord row = chance.pool(chance.account());
        m_pools.insert(str(row, PoolDetailId), row);
    }
    for (int i = chance.upTo(16); i > 0; --i) {
        VariantRecord row = usage();
        row.insert(Master_Fields::System::ModifyTime, nextTime());
        m_usage.insert(usageKey(row), row);
    }
}

/// Of two securities that the host does not know it could hold one only: both have no symbol. Every trader has an id.
VariantRecord ModelGateway::usage()
{
    VariantRecord row = m_chance.usage(m_chance.account());
    while (str(row, securityID) == QLatin1String("999999") || str(row, T0TraderId).isEmpty())
        row = m_chance.usage(m_chance.account());
    return row;
}

QString ModelGateway::nextTime()
{
    return QStringLiteral("%1").arg(++m_clock, 8, 10, QLatin1Char('0'));
}

// ---- Requests ---------------------------------------------------------------------------------------------

MessageBody ModelGateway::receive(const Envelope &request)
{
    if (m_answered.contains(request.id))
        return m_answered.value(request.id);
    MessageBody body;
    QString errorText;
    if (!MessageBody::decode(request.body, body, errorText))
        return ScriptedChannel::refusal(errorText);
    if (request.validUntil < QDateTime::currentMSecsSinceEpoch())
        return ScriptedChannel::refusal(QStringLiteral("too late"));
    const MessageBody answered = answer(request, body);
    m_answered.insert(request.id, answered);
    return answered;
}

MessageBody ModelGateway::answer(const Envelope &request, const MessageBody &body)
{
    const QString &type = request.type;
    const VariantRecord query = body.rows.value(0);
    if (reference().contains(type))
        return ScriptedChannel::success(reference().value(type));
    if (type == QueryManualT0ProductsRequest)
        return ScriptedChannel::success(RecordList{query} + products()); // the first row repeats the request
    if (type == QueryUserIdByUserRoleRequest) {
        const QString role = str(query, Master_Fields::UserAccount::UserRoleId);
        if (role != Master_Values::UserRoles::ManualT0Mangager)
            return ScriptedChannel::success(traders());
        return ScriptedChannel::success(m_isManager ? RecordList{Rows::trader(Rows::user, "manager")} : RecordList());
    }
    if (type == QueryManualT0ResourceRequest)
        return ScriptedChannel::page(body, resourcesOf(str(query, tradingAccount)), m_pageSize);
    if (type == QueryManualT0SecurityPoolRequest)
        return ScriptedChannel::page(body, poolsOf(str(query, tradingAccount)), m_pageSize);
    if (type == QueryManualT0RealTimePoolUsageRequest)
        return ScriptedChannel::page(body, usageOf(str(query, T0TraderId).split(QLatin1Char(','))), m_pageSize);
    if (type == QueryManualT0TraderAccountPriorityRequest)
        return ScriptedChannel::page(body, priority(), m_pageSize);
    if (type == Stand_MsgType::SubscribeRequest) {
        if (str(body.values, Stand_Fields::Subscription::pushType) == ManualT0RealTimePoolUsagePush)
            m_subscribed.insert(str(query, Orvane_Fields::UserAccount::userID));
        return ScriptedChannel::success();
    }
    if (type == Stand_MsgType::EchoRequest)
        return ScriptedChannel::success();
    if (type == Stand_MsgType::QueryRequestFateRequest)
        return fate(str(query, Stand_Fields::Order::requestId));
    ++m_executions[request.id];
    const MessageBody changed = type == Stand_MsgType::OrderRequest ? order(body.rows) : change(type, body);
    if (str(changed.values, Orvane_Fields::System::requestExeStatus) != Orvane_Values::RequestExeStatus::success)
        m_executions.remove(request.id);
    return changed;
}

MessageBody ModelGateway::fate(const QString &requestId) const
{
    using namespace Stand_Fields::Order;
    if (!m_answered.contains(requestId))
        return ScriptedChannel::success({}, {{known, false}});
    const MessageBody answered = m_answered.value(requestId);
    return ScriptedChannel::success(answered.rows,
                                    {{known, true},
                                     {fateStatus, answered.values.value(Orvane_Fields::System::requestExeStatus)},
                                     {fateText, answered.values.value(Orvane_Fields::System::textDescription)}});
}

void ModelGateway::forgetClient()
{
    m_subscribed.clear();
}

void ModelGateway::clientReturned()
{
    for (const VariantRecord &row : qAsConst(m_usage))
        tell(row);
}

bool ModelGateway::isHeardBy(const QStringList &traders) const
{
    return std::all_of(traders.cbegin(), traders.cend(),
                       [this](const QString &trader) { return m_subscribed.contains(trader); });
}

VariantRecord ModelGateway::someUsage() const
{
    return m_usage.isEmpty() ? VariantRecord() : std::next(m_usage.cbegin(), m_chance.upTo(m_usage.size())).value();
}

// ---- What is held -----------------------------------------------------------------------------------------

RecordList ModelGateway::products() const
{
    RecordList rows;
    for (const ScriptedReference::Account &account : deskAccounts()) {
        if (m_enabled.contains(account.tradingAccount))
            rows.append(Rows::product(account.productAccount, account.tradingAccount));
    }
    return rows;
}

RecordList ModelGateway::traders() const
{
    return {Rows::trader(Rows::user, "u1-name"), Rows::trader("t2", "Two"), Rows::trader("t3", "Three")};
}

RecordList ModelGateway::priority() const
{
    RecordList rows;
    for (const QString &account : m_priority)
        rows.append({{tradingAccount, account}});
    return rows;
}

RecordList ModelGateway::resourcesOf(const QString &account) const
{
    return of(m_resources, tradingAccount, {account});
}

RecordList ModelGateway::poolsOf(const QString &account) const
{
    return of(m_pools, tradingAccount, {account});
}

RecordList ModelGateway::usageOf(const QStringList &traders) const
{
    return of(m_usage, T0TraderId, traders);
}
