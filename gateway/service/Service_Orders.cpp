#include "Service.h"

#include "Answers.h"
#include "GatewayTexts.h"
#include "MarketTime.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "StandMsgType.h"

namespace {

namespace Order_ = Stand_Fields::Order;
namespace Security_ = Orvane_Fields::Security;
namespace UserAccount_ = Orvane_Fields::UserAccount;
using Master_Fields::Security::SideUnion;
using Orvane_Fields::System::requestExeStatus;
using Orvane_Fields::System::textDescription;

/// What an answer says of one order; text: why not, empty: done.
VariantRecord resultRow(const QString &orderId, const QString &text)
{
    VariantRecord row;
    if (!orderId.isEmpty())
        row.insert(Security_::orderID, orderId);
    row.insert(requestExeStatus,
               text.isEmpty() ? Orvane_Values::RequestExeStatus::success : Orvane_Values::RequestExeStatus::fail);
    if (!text.isEmpty())
        row.insert(textDescription, text);
    return row;
}

/// What orders and their fills have in common.
VariantRecord commonRow(const StoredOrder &order)
{
    return {{Security_::orderID, order.id},
            {UserAccount_::tradingAccount, order.holding.account},
            {UserAccount_::loginUserId, order.user},
            {Security_::symbol, order.symbol},
            {Security_::securityID, order.holding.securityID},
            {UserAccount_::securityExchange, order.holding.exchange},
            {SideUnion, order.sideUnion},
            {Security_::side, order.buy ? Stand_Values::Side::buy : Stand_Values::Side::sell}};
}

VariantRecord orderRow(const StoredOrder &order)
{
    VariantRecord row = commonRow(order);
    row.insert(Security_::price, order.price);
    row.insert(Security_::orderQty, order.quantity);
    row.insert(Order_::filledQty, order.filled);
    row.insert(Order_::filledAmount, order.amount);
    row.insert(Security_::orderStatus, order.status);
    row.insert(Master_Fields::Security::VantaBusiType, order.businessType);
    row.insert(Order_::orderTime, MarketTime::exactText(order.placedMs));
    row.insert(Order_::updateTime, MarketTime::exactText(order.changedMs));
    row.insert(Order_::remark, order.remark);
    row.insert(Order_::requestId, order.request);
    row.insert(textDescription, order.text);
    return row;
}

VariantRecord fillRow(const StoredFill &fill)
{
    VariantRecord row = commonRow(fill.order);
    row.insert(Stand_Fields::Fill::fillID, fill.id);
    row.insert(Security_::price, fill.price);
    row.insert(Stand_Fields::Fill::fillQty, fill.quantity);
    row.insert(Stand_Fields::Fill::fillTime, MarketTime::exactText(fill.ms));
    return row;
}

} // namespace

MessageBody Service::placeOrders(const Request &request)
{
    const QString &user = request.user().userID;
    const OrderGuards guards{m_store->safetyOf(user), m_store->lastOrderId()};
    QString refusal = refusalOfList(request);
    if (refusal.isEmpty() && guards.rules.isHalted())
        refusal = GatewayTexts::halted(user);
    if (!refusal.isEmpty())
        return Answers::refused(refusal);
    RecordList rows;
    for (const VariantRecord &row : request.rows)
        rows.append(placeOrder(request, row, guards));
    return Answers::success(rows);
}

VariantRecord Service::placeOrder(const Request &request, const VariantRecord &row, const OrderGuards &guards)
{
    StoredOrder order;
    order.user = request.user().userID;
    order.holding.account = request.text(UserAccount_::tradingAccount);
    order.businessType = request.text(Master_Fields::Security::VantaBusiType);
    order.remark = request.text(Order_::remark);
    order.request = request.id;
    order.status = Stand_Values::OrderStatus::Accepted;
    order.placedMs = order.changedMs = m_memory.exchange.time();
    order.receivedMs = m_clock();
    QString refusal = readOrder(row, order);
    UsageGroup group;
    if (refusal.isEmpty()) {
        group = groupOf(order.holding);
        refusal = accept(order, group, guards.rules.reducesOnly());
    }
    if (refusal.isEmpty())
        refusal = refusalOfGuards(order, guards);
    if (!refusal.isEmpty()) {
        m_changes.noteOrder(order, refusal);
        return resultRow(QString(), refusal);
    }
    order.id = m_store->saveOrder(order);
    m_changes.noteOrder(order, QString());
    pushOrder(order);
    saveGroup(group);
    touch(order.symbol);
    applyFills(m_memory.exchange.place(
        {order.id, order.holding.securityID, order.holding.exchange, order.buy, order.price, order.quantity}));
    return resultRow(order.id, QString());
}

MessageBody Service::cancelOrders(const Request &request)
{
    const SafetyRules rules = m_store->safetyOf(request.user().userID);
    RecordList rows;
    for (const VariantRecord &row : request.rows) {
        const QString id = row.value(Security_::orderID).toString();
        const StoredOrder order = m_store->order(id);
        const QString refusal = cancel(request, order, rules);
        m_changes.noteCancel(id, order, refusal);
        if (refusal.isEmpty()) {
            touch(order.symbol);
            endOrder(order, Stand_Values::OrderStatus::Cancelled, QString());
        }
        rows.append(resultRow(id, refusal));
    }
    return Answers::success(rows);
}

QString Service::cancel(const Request &request, const StoredOrder &order, const SafetyRules &rules)
{
    const bool isHis = order.user == request.user().userID;
    if (order.id.isEmpty() || !(isHis || request.user().isManager()))
        return GatewayTexts::unknownOrder();
    if (order.holding.account != request.text(UserAccount_::tradingAccount))
        return GatewayTexts::foreignOrder(order.holding.account);
    if (!order.isLive())
        return GatewayTexts::finalOrder();
    // deliberate: who was told to reduce or to stop can always take his orders back, and a manager everybody's.
    const int most = isHis && rules.isActive() ? rules.cancelsPerMinute : 0;
    FlowWindow &flow = m_flows[request.user().userID].cancels;
    if (most > 0 && !flow.hasRoom(m_clock(), most))
        return GatewayTexts::tooManyCancels(most);
    if (m_memory.exchange.cancel(order.id) != Exchange::Cancelled::Yes)
        return GatewayTexts::noCancelsNow(order.holding.exchange);
    if (most > 0)
        flow.count(m_clock());
    return QString();
}

MessageBody Service::queryRequestFate(const Request &request)
{
    const QByteArray told = m_store->answerTo(request.user().userID, request.text(Order_::requestId));
    MessageBody answer = Answers::success();
    MessageBody fate;
    QString reason;
    const bool known = !told.isEmpty() && MessageBody::decode(told, fate, reason);
    answer.values.insert(Order_::known, known);
    if (!known)
        return answer;
    answer.values.insert(Order_::fateStatus, fate.values.value(requestExeStatus));
    answer.values.insert(Order_::fateText, fate.values.value(textDescription));
    answer.rows = fate.rows;
    return answer;
}

MessageBody Service::queryOrders(const Request &request)
{
    return Answers::idPage(
        request.values, Store::isOrderId,
        [&](const QString &afterId, int limit) { return m_store->ordersOfDay(request.seenUser(), afterId, limit); },
        [](const StoredOrder &order) { return order.id; }, orderRow);
}

MessageBody Service::queryFills(const Request &request)
{
    return Answers::idPage(
        request.values, Store::isFillId,
        [&](const QString &afterId, int limit) { return m_store->fillsOfDay(request.seenUser(), afterId, limit); },
        [](const StoredFill &fill) { return fill.id; }, fillRow);
}

void Service::pushOrder(const StoredOrder &order, const ClientSession *only)
{
    push(Stand_MsgType::OrderPush, orderRow(order), order.user, only);
}

void Service::pushFill(const StoredFill &fill, const ClientSession *only)
{
    push(Stand_MsgType::FillPush, fillRow(fill), fill.order.user, only);
}
