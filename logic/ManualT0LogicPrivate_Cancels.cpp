#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "ChangeRows.h"
#include "DisplayUnits.h"
#include "ManualT0LogicPrivate.h"
#include "MasterBusiUtils.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterUtils.h"
#include "MasterValues.h"
#include "OrvaneValues.h"
#include "VantaKeys.h"

#include <QtCore/QDateTime>

using Orvane_Fields::Security::orderID;
using Orvane_Fields::System::requestExeStatus;
using Orvane_Fields::System::textDescription;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

/// The orders of one account, which are cancelled in one request.
struct CancelBatch {
    QString account;
    QStringList orderIds;
};

/// Finds the orders that were given: an id is unique within its account only.
class GivenOrders
{
public:
    explicit GivenOrders(const RecordList &orders)
    {
        for (const VariantRecord &order : orders) {
            m_byAccountAndId.insert({text(order, tradingAccount), text(order, orderID)}, order);
            m_byId.insert(text(order, orderID), order);
        }
    }

    /// Empty for an id that was not given.
    VariantRecord order(const QString &account, const QString &id) const
    {
        return m_byAccountAndId.value({account, id}, m_byId.value(id));
    }

private:
    QHash<QPair<QString, QString>, VariantRecord> m_byAccountAndId;
    QHash<QString, VariantRecord> m_byId;
};

struct CancelCount {
    int succeeded = 0;
    int unanswered = 0;
};

VariantRecord withResult(VariantRecord order, const QString &status, const QString &text)
{
    order.insert(requestExeStatus, status);
    order.insert(textDescription, text);
    return order;
}

RecordList cancelRequest(const CancelBatch &batch)
{
    RecordList request{{{tradingAccount, batch.account},
                        {Orvane_Fields::UserAccount::loginUserId, CBusinessDataBase::GetInstance()->GetLoginAccount()},
                        {Orvane_Fields::Security::orderStation,
                         MasterUtils::GetMasterOrderStation(Vanta_Keys::BusinessName::ManualT0Trade)},
                        {Orvane_Fields::Security::transActTime, QDateTime::currentMSecsSinceEpoch()}}};
    for (const QString &id : batch.orderIds)
        request.append({{orderID, id}});
    return request;
}

/// Orders the answer does not name count as cancelled; what it names beyond them cannot make the count negative.
void takeAnswer(const CancelBatch &batch, const GivenOrders &orders, const RecordList &answer, RecordList &results,
                CancelCount &count)
{
    int failed = 0;
    for (const VariantRecord &row : answer) {
        const QString status = text(row, requestExeStatus);
        if (status != Orvane_Values::RequestExeStatus::success)
            ++failed;
        results.append(withResult(orders.order(batch.account, text(row, orderID)), status, text(row, textDescription)));
    }
    count.succeeded += qMax(0, batch.orderIds.size() - failed);
}

void takeFailure(const CancelBatch &batch, const GivenOrders &orders, const QString &code, const QString &errorText,
                 RecordList &results, CancelCount &count)
{
    if (code != Orvane_Values::RequestExeStatus::fail)
        count.unanswered += batch.orderIds.size();
    for (const QString &id : batch.orderIds)
        results.append(withResult(orders.order(batch.account, id), code, errorText));
}

/// As of any batch, but nobody knows what became of orders of which none was answered.
QString codeOf(const CancelCount &count, int orders)
{
    if (orders > 0 && count.unanswered == orders)
        return Master_Values::RequestExeStatus::timeout;
    return ChangeRows::overallCode(orders - count.succeeded, orders);
}

/// One batch an account, ascending.
QVector<CancelBatch> batchesOf(const RecordList &orders)
{
    QMap<QString, CancelBatch> batches;
    for (const VariantRecord &order : orders) {
        CancelBatch &batch = batches[text(order, tradingAccount)];
        batch.account = text(order, tradingAccount);
        batch.orderIds.append(text(order, orderID));
    }
    return batches.values().toVector();
}

VariantRecord cancelableFilter(const QStringList &accounts, const QString &symbol, const QString &exchange,
                               const QStringList &userIds, const QString &side)
{
    VariantRecord filter{{tradingAccount, accounts},
                         {Master_Fields::Security::VantaBusiType, Master_Values::VantaBusiType::ManualT0Order},
                         {Orvane_Fields::Security::orderStatus, MasterBusiUtils::GetCancelableOrderStatusList()}};
    if (!symbol.isEmpty())
        filter.insert(Orvane_Fields::Security::symbol, symbol);
    if (!exchange.isEmpty())
        filter.insert(Orvane_Fields::UserAccount::securityExchange, exchange);
    if (!side.isEmpty())
        filter.insert(Orvane_Fields::Security::side, side);
    if (!userIds.isEmpty())
        filter.insert(Orvane_Fields::UserAccount::loginUserId, userIds);
    return filter;
}

} // namespace

RecordList ManualT0LogicPrivate::GetCancelableOrderList(const QStringList &accounts, const QString &symbol,
                                                        const QString &exchange, const QStringList &userIds,
                                                        const QString &side, bool fetchAll) const
{
    const VariantRecord filter = cancelableFilter(accounts, symbol, exchange, userIds, side);
    int total = 0;
    if (fetchAll) // one order tells how many there are
        BusinessDataInterface::GetOrderListByCustomKey(filter, total, 0, 1, {}, {});
    const int count = total;
    return BusinessDataInterface::GetOrderListByCustomKey(filter, total, 0, count, {}, {});
}

QString ManualT0LogicPrivate::CancelOrderList(ZrPresenterClass *sender, const RecordList &orders,
                                              RecordList &results) const
{
    const GivenOrders given(orders);
    CancelCount count;
    const QVector<CancelBatch> batches = batchesOf(orders);
    for (const CancelBatch &batch : batches) {
        QString errorText;
        RecordList answer;
        const QString code =
            MasterUtils::SendRequestListToServer(sender, Master_MsgType::orderCancelBatchCppRequest,
                                                 cancelRequest(batch), 1, errorText, answer, false, false);
        if (code == Orvane_Values::RequestExeStatus::success)
            takeAnswer(batch, given, answer, results, count);
        else
            takeFailure(batch, given, code, errorText, results, count);
    }
    return codeOf(count, orders.size());
}
