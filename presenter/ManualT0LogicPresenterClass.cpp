#include "ManualT0LogicPresenterClass.h"

#include "CBusinessDataBase.h"
#include "CPackMessageCommon.h"
#include "CUnPackMessageCommon.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterUtils.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"

#include <QtCore/QSet>

#include <algorithm>
#include <memory>

namespace {

constexpr int PageSize = 1000;
constexpr int OwnThread = 15;

QString statusOf(const QString &errorText)
{
    return errorText.isEmpty() ? Orvane_Values::RequestExeStatus::success : Orvane_Values::RequestExeStatus::fail;
}

QString userId(const VariantRecord &row)
{
    return row.value(Orvane_Fields::UserAccount::userID).toString();
}

/// One row a user, the first one.
RecordList onePerUser(const RecordList &rows)
{
    QSet<QString> seen;
    RecordList result;
    for (const VariantRecord &row : rows) {
        if (seen.contains(userId(row)))
            continue;
        seen.insert(userId(row));
        result.append(row);
    }
    return result;
}

} // namespace

ManualT0LogicPresenterClass::ManualT0LogicPresenterClass(const QString &pluginInstanceId, ZrPluginBaseObject *owner)
    : ZrPresenterClass(pluginInstanceId, owner, OwnThread)
{
    Sub(pluginPid(), Master_MsgType::ManualT0RealTimePoolUsagePush, 1);
}

ManualT0LogicPresenterClass::~ManualT0LogicPresenterClass() = default;

void ManualT0LogicPresenterClass::slotInitData() {}

void ManualT0LogicPresenterClass::slotQueryT0Products(QVariantMap queryMap)
{
    CPackMessageCommon pack;
    pack.AddRowVaule(queryMap);
    pack.AddVaule(Orvane_Fields::System::msgType, Master_MsgType::QueryManualT0ProductsRequest);
    auto message = std::make_unique<CMessageCommon>();
    message->SetSrcid(pluginPid());
    message->SetType(Master_MsgType::QueryManualT0ProductsRequest);
    message->SetMsg(pack.GetPackedMsg(0));
    if (sendRequest_Async(message.get()) == 0)
        message.release(); // the host's now; not sent, it stayed ours
    else
        emit signalQueryT0ProductsResponse(Orvane_Values::RequestExeStatus::fail, {});
}

void ManualT0LogicPresenterClass::onResponse(int status, const QString &srcId, const QString &msgType,
                                             const QVariant &msg)
{
    Q_UNUSED(srcId)
    if (msgType != Master_MsgType::QueryManualT0ProductsRequest &&
        msgType != Master_MsgType::QueryManualT0ProductsResponse)
        return;
    constexpr int answered = 0;
    constexpr int timedOut = 1;
    if (status != answered) {
        emit signalQueryT0ProductsResponse(
            status == timedOut ? Master_Values::RequestExeStatus::timeout : Orvane_Values::RequestExeStatus::fail, {});
        return;
    }
    CUnPackMessageCommon unpack;
    unpack.SetUnPackMsg(msg, 0);
    RecordList rows = unpack.GetAllValue();
    if (!rows.isEmpty())
        rows.removeFirst(); // repeats the request, no product
    emit signalQueryT0ProductsResponse(unpack.GetValue(Orvane_Fields::System::requestExeStatus, QString()).toString(),
                                       rows);
}

void ManualT0LogicPresenterClass::slotQueryT0Traders()
{
    const QString loginAccount = CBusinessDataBase::GetLoginAccount();
    const RecordList managers = usersOfRole(Master_Values::UserRoles::ManualT0Mangager);
    const bool isManager = std::any_of(managers.cbegin(), managers.cend(), [&loginAccount](const VariantRecord &row) {
        return userId(row) == loginAccount;
    });
    // deliberate: success whatever the two queries reported; a failed one reads as a role that nobody has
    emit signalQueryT0TradersResponse(Orvane_Values::RequestExeStatus::success,
                                      onePerUser(usersOfRole(Master_Values::UserRoles::ManualT0Trader)), isManager);
}

void ManualT0LogicPresenterClass::slotQueryResources(QVariantMap queryMap)
{
    QString code;
    const RecordList rows = queryByPosition(Master_MsgType::QueryManualT0ResourceRequest, queryMap, code);
    emit signalQueryResourceResponse(code, queryMap, rows, true);
}

void ManualT0LogicPresenterClass::slotQuerySecurityPool(QVariantMap queryMap)
{
    QString code;
    const RecordList rows = queryByPosition(Master_MsgType::QueryManualT0SecurityPoolRequest, queryMap, code);
    emit signalQuerySecurityPoolResponse(code, queryMap, rows);
}

void ManualT0LogicPresenterClass::slotQueryPoolRealTime(QVariantMap queryMap)
{
    QString errorText;
    const RecordList rows = MasterUtils::QueryDatasFromServerByPage(
        this, Master_MsgType::QueryManualT0RealTimePoolUsageRequest, queryMap, errorText, PageSize, 0, 0, 0);
    emit signalQueryPoolRealTimeResponse(statusOf(errorText), queryMap, rows);
}

void ManualT0LogicPresenterClass::slotQueryAccountPriority(QVariantMap queryMap)
{
    QString code;
    const RecordList rows = queryByPosition(Master_MsgType::QueryManualT0TraderAccountPriorityRequest, queryMap, code);
    emit signalQueryAccountPriorityResponse(code, queryMap, rows);
}

void ManualT0LogicPresenterClass::onPush(const QString &srcId, const QString &msgType, const QVariant &msg)
{
    Q_UNUSED(srcId)
    if (msgType != Master_MsgType::ManualT0RealTimePoolUsagePush)
        return;
    CUnPackMessageCommon unpack;
    unpack.SetUnPackMsg(msg, 0);
    emit signalRecvPoolRealtimeChangedPush(unpack.GetRowValue());
}

RecordList ManualT0LogicPresenterClass::usersOfRole(const QString &roleId)
{
    const QVariantMap query{{Orvane_Fields::UserAccount::organCode,
                             CBusinessDataBase::GetLoginAccountDetail().value(Orvane_Fields::UserAccount::organCode)},
                            {Master_Fields::UserAccount::UserRoleType, Master_Values::UserRoleType::OperRoles},
                            {Master_Fields::UserAccount::UserRoleId, roleId}};
    QString errorText;
    return MasterUtils::QueryDatasFromServer(this, Master_MsgType::QueryUserIdByUserRoleRequest, query, Mode1,
                                             errorText);
}

RecordList ManualT0LogicPresenterClass::queryByPosition(const QString &msgType, const QVariantMap &queryMap,
                                                        QString &code)
{
    QString errorText;
    const RecordList rows =
        MasterUtils::QueryDatasFromServerByPos(this, msgType, queryMap, errorText, PageSize, QString(), 0);
    code = statusOf(errorText);
    return rows;
}
