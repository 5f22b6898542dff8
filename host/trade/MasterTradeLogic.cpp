#include "MasterTradeLogic.h"

#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "business/PictureStep.h"
#include "message/AnswerStatus.h"
#include "message/Ask.h"
#include "message/RequestTexts.h"
#include "message/Server.h"
#include "trade/RequestFates.h"

using Orvane_Fields::System::requestExeStatus;
using Orvane_Fields::System::textDescription;

namespace {

enum Result { Processed = 0, NotProcessed = 1 };

/// The fields of one order, in the request and in its result.
VariantRecord orderRow(const MasterLogic::OrderSymbolInfo &order)
{
    return {{Orvane_Fields::Security::symbol, order.symbol},
            {Orvane_Fields::UserAccount::securityExchange, order.exchange},
            {Master_Fields::Security::SideUnion, order.sideUnion},
            {Orvane_Fields::Security::price, order.price},
            {Orvane_Fields::Security::orderQty, order.quantity}};
}

RecordList requestRows(const OrderRequestList &list, const QString &user)
{
    const MasterLogic::OrderCommonInfo &common = list.getOrderCommonInfo();
    RecordList rows{{{Orvane_Fields::UserAccount::loginUserId, user},
                     {Orvane_Fields::UserAccount::tradingAccount, common.tradingAccount},
                     {Stand_Fields::Order::businessName, common.businessName},
                     {Master_Fields::Security::VantaBusiType, common.businessType},
                     {Stand_Fields::Order::confirmed, common.confirmed},
                     {Stand_Fields::Order::remark, common.remark}}};
    for (const MasterLogic::OrderSymbolInfo &order : list.symbols()) {
        VariantRecord row = orderRow(order);
        row.insert(Stand_Fields::Order::priceType, order.priceType);
        rows.append(row);
    }
    return rows;
}

/// What was traded while nobody heard of it may forbid the orders: they are decided upon again.
OrderAnswer outOfStep(const MessageChannel &channel)
{
    const bool isConnected = channel.connection() == MessageChannel::Connection::Connected;
    return {{},
            Orvane_Values::RequestExeStatus::fail,
            isConnected ? RequestTexts::notInStep() : RequestTexts::notSent(),
            {}};
}

OrderAnswer answerOf(const Asked &asked)
{
    OrderAnswer answer{asked.request.id, Orvane_Values::RequestExeStatus::fail, RequestTexts::notSent(), {}};
    if (!asked.sent)
        return answer;
    MessageBody body;
    QString unreadable;
    // Whatever ended the wait, and whatever the answer was meant to say: the orders may stand.
    if (asked.reply.outcome != MessageChannel::Outcome::Answered ||
        !MessageBody::decode(asked.reply.envelope.body, body, unreadable) || !body.values.contains(requestExeStatus))
        return OrderAnswer::unknown(asked.request.id);
    answer.text.clear();
    answer.status = statusOfAnswer(body, answer.text);
    answer.rows = body.rows;
    return answer;
}

int resultOf(const OrderAnswer &answer)
{
    return answer.status == Orvane_Values::RequestExeStatus::success ? Processed : NotProcessed;
}

bool isUnknown(const OrderAnswer &answer)
{
    return answer.status == Master_Values::RequestExeStatus::timeout;
}

void setUnknown(VariantRecord &record, const QString &requestId)
{
    record.insert(requestExeStatus, Master_Values::RequestExeStatus::timeout);
    record.insert(textDescription, RequestTexts::resultUnknown());
    record.insert(Stand_Fields::Order::requestId, requestId);
}

void setFailed(VariantRecord &record, const QString &text)
{
    record.insert(requestExeStatus, Orvane_Values::RequestExeStatus::fail);
    record.insert(textDescription, text.isEmpty() ? RequestTexts::refusedWithoutText() : text);
}

/// row: what the server says of the order; empty when it says nothing.
void setResult(VariantRecord &record, const VariantRecord &row, const QString &requestId)
{
    const QString status = row.value(requestExeStatus).toString();
    if (status == Orvane_Values::RequestExeStatus::success) {
        record.insert(requestExeStatus, status);
        record.insert(Orvane_Fields::Security::orderID, row.value(Orvane_Fields::Security::orderID));
    } else if (status.isEmpty()) {
        setUnknown(record, requestId);
    } else {
        setFailed(record, row.value(textDescription).toString());
    }
}

} // namespace

MasterTradeLogic *MasterTradeLogic::instance()
{
    static auto *instance = new MasterTradeLogic; // never deleted: asked for while the process ends
    return instance;
}

int MasterTradeLogic::orders(const OrderRequestList &list, QVariant &answer)
{
    const Server::Lease server; // while it lasts the session's requests may still be followed
    if (server && !PictureStep::state().isInStep) {
        PictureStep::synchronise(); // the thread that does it by a timer may be the caller's
        answer = QVariant::fromValue(outOfStep(*server->channel));
        return NotProcessed;
    }
    const QString user = server ? server->user : QString();
    const Asked asked = ask(nullptr, Stand_MsgType::OrderRequest, {{}, requestRows(list, user)});
    const OrderAnswer result = answerOf(asked);
    if (isUnknown(result))
        RequestFates::follow(asked.request, list.symbols().size());
    answer = QVariant::fromValue(result);
    return resultOf(result);
}

RecordList MasterTradeLogic::transOrderRsp(const OrderRequestList &list, const QVariant &answer)
{
    OrderAnswer result = answer.value<OrderAnswer>();
    if (!answer.canConvert<OrderAnswer>())
        result.text = RequestTexts::notSent();
    RecordList records;
    const QString &account = list.getOrderCommonInfo().tradingAccount;
    for (const MasterLogic::OrderSymbolInfo &order : list.symbols()) {
        VariantRecord record = orderRow(order);
        record.insert(Orvane_Fields::UserAccount::tradingAccount, account);
        if (isUnknown(result))
            setUnknown(record, result.requestId);
        else if (resultOf(result) == Processed)
            setResult(record, result.rows.value(records.size()), result.requestId);
        else
            setFailed(record, result.text);
        records.append(record);
    }
    return records;
}

RecordList MasterTradeLogic::transFate(const QVariant &answer)
{
    const OrderAnswer result = answer.value<OrderAnswer>();
    if (resultOf(result) == Processed)
        return result.rows;
    return {{{requestExeStatus, result.status}, {textDescription, result.text}}};
}

int MasterTradeLogic::fateOfRequest(const QString &requestId, QVariant &answer)
{
    const OrderAnswer result = RequestFates::ask(requestId);
    answer = QVariant::fromValue(result);
    return resultOf(result);
}
