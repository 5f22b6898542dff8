#pragma once

#include "OrderRequestList.h"
#include "VariantRecord.h"

#include <QtCore/QVariant>

/// Sends orders. Callable from any thread; never calls back into the caller's library.
class T0_HOST_EXPORT MasterTradeLogic
{
public:
    static MasterTradeLogic *instance();

    /// Submits a list and blocks for the answer. 0: the server has answered, for each order; other: it has refused
    /// the list, or it could not be sent, or nobody knows (a time-out). Nothing is sent while the picture is not in
    /// step (HostSession::picture). answer: what transOrderRsp reads.
    int orders(const OrderRequestList &list, QVariant &answer);

    /// One record per order of the list, in its order, whatever orders() returned: tradingAccount, symbol,
    /// securityExchange, SideUnion, price (text), orderQty, requestExeStatus and, when that is success, orderID, else
    /// textDescription. After a time-out requestExeStatus is timeout, the text "结果未知" and
    /// Stand_Fields::Order::requestId says whom to ask with fateOfRequest.
    static RecordList transOrderRsp(const OrderRequestList &list, const QVariant &answer);

    /// Asks what became of a list that timed out and blocks for the answer. Sets answer for transOrderRsp and
    /// returns as orders(): a list that never reached the server in time has failed for good, since it would be refused
    /// now.
    int fateOfRequest(const QString &requestId, QVariant &answer);

    /// What fateOfRequest() has learnt, without the list: the server's rows (requestExeStatus, orderID or
    /// textDescription), one an order; a single one when it holds for the whole list.
    static RecordList transFate(const QVariant &answer);

private:
    MasterTradeLogic() = default;
};
