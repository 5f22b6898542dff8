#include "ProbeServer.h"

#include "MasterFields.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"

using namespace Master_Fields::ManualT0;
using namespace Master_MsgType;
namespace UserAccount = Orvane_Fields::UserAccount;

namespace {

constexpr int RequestTimeoutMs = 60000;
constexpr int PagesOfResources = 3;

QString user()
{
    return QStringLiteral("m1");
}

ScriptedReference reference()
{
    ScriptedReference reference;
    reference.user = user();
    for (const char *account : {"A1", "A2", "A3"})
        reference.accounts.append({QString::fromLatin1(account), QStringLiteral("P1")});
    reference.instruments = {{QStringLiteral("600001.SH"), QStringLiteral("600001"), Orvane_Values::Exchange::sh}};
    return reference;
}

QString accountOf(const MessageBody &query)
{
    return query.rows.value(0).value(UserAccount::tradingAccount).toString();
}

VariantRecord position(const QString &account)
{
    return {{UserAccount::tradingAccount, account},
            {UserAccount::securityExchange, Orvane_Values::Exchange::sh},
            {Orvane_Fields::Security::securityID, QStringLiteral("600001")}};
}

RecordList accountRows()
{
    RecordList rows;
    for (const ScriptedReference::Account &account : reference().accounts)
        rows.append({{UserAccount::tradingAccount, account.tradingAccount},
                     {UserAccount::productAccount, account.productAccount}});
    return rows;
}

/// Positions: "" is the first page, then "1", "2".
MessageBody resources(const MessageBody &query)
{
    const int page = query.values.value(Stand_Fields::Paging::position).toString().toInt();
    VariantRecord row = position(accountOf(query));
    row.insert(ResourceId, QString(accountOf(query) + QLatin1Char('R') + QString::number(page)));
    row.insert(ResourceQty, 1000);
    const QString next = page + 1 < PagesOfResources ? QString::number(page + 1) : QString();
    return ScriptedChannel::success({row}, {{Stand_Fields::Paging::position, next}});
}

MessageBody pools(const MessageBody &query)
{
    VariantRecord row = position(accountOf(query));
    row.insert(PoolDetailId, QString(QLatin1Char('D') + accountOf(query)));
    row.insert(ResourceId, QString(accountOf(query) + QLatin1String("R0")));
    row.insert(PoolType, 1);
    row.insert(PoolTotalQty, 100);
    row.insert(T0TraderId, user());
    return ScriptedChannel::success({row});
}

void script(ScriptedChannel &channel)
{
    const auto always = [&channel](const QString &type, const RecordList &rows) {
        channel.always(type, [rows](const MessageBody &) { return ScriptedChannel::success(rows); });
    };
    always(QueryManualT0ProductsRequest, RecordList{VariantRecord()} + accountRows()); // row one repeats the request
    always(QueryUserIdByUserRoleRequest, {{{UserAccount::userID, user()}, {UserAccount::userName, user()}}});
    always(QueryManualT0TraderAccountPriorityRequest, accountRows());
    always(QueryManualT0RealTimePoolUsageRequest, {ProbeServer::usage(0)});
    channel.always(QueryManualT0ResourceRequest, &resources);
    channel.always(QueryManualT0SecurityPoolRequest, &pools);
}

} // namespace

std::unique_ptr<HostSession> ProbeServer::open(ScriptedChannel *&channel)
{
    auto session = reference().open(channel, RequestTimeoutMs);
    script(*channel);
    return session;
}

VariantRecord ProbeServer::usage(qint64 time)
{
    VariantRecord row = position(QStringLiteral("A1"));
    row.insert(T0TraderId, user());
    row.insert(DailyBuyLimit, 1000);
    row.insert(Master_Fields::System::ModifyTime, QStringLiteral("20240102%1").arg(time, 12, 10, QLatin1Char('0')));
    return row;
}
