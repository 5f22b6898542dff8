#include "OrderSender.h"

#include "Background.h"
#include "ManualT0Logic.h"
#include "MasterTradeLogic.h"
#include "OrderResults.h"
#include "OrvaneFields.h"
#include "StandFields.h"

#include <QtCore/QDateTime>
#include <QtCore/QTimer>

#include <algorithm>

namespace {

constexpr int askAgainMs = 500;

/// A field of the desk's own, beside the host's.
QString numberField()
{
    return QStringLiteral("DeskNumber");
}

RecordList submit(const RecordList &orders)
{
    RecordList results;
    ManualT0Logic::Order(orders, results, QString());
    return results;
}

RecordList fateOf(const QString &requestId)
{
    QVariant answer;
    MasterTradeLogic::instance()->fateOfRequest(requestId, answer);
    return MasterTradeLogic::transFate(answer);
}

} // namespace

QString OrderSender::numberOf(const VariantRecord &sent)
{
    return sent.value(numberField()).toString();
}

void OrderSender::send(const RecordList &rows)
{
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    RecordList sent = rows;
    for (VariantRecord &order : sent) {
        order.insert(numberField(), ++m_lastNumber);
        order.insert(Stand_Fields::Order::orderTime, now);
    }
    emit sentChanged(sent);
    Background::run(
        QStringLiteral("trade.order"), this, [sent] { return submit(sent); },
        [this, sent](const RecordList &results) {
            take(OrderResults::match(sent, results, tr("未提交：账户不在您的账户优先级列表中")));
        });
}

void OrderSender::take(const RecordList &sent)
{
    emit sentChanged(sent);
    emit answered(sent);
    QMap<QString, RecordList> byAccount; // one request an account
    for (const VariantRecord &order : sent)
        byAccount[order.value(Orvane_Fields::UserAccount::tradingAccount).toString()].append(order);
    for (const RecordList &requestOrders : qAsConst(byAccount)) {
        const auto unknown = std::find_if(requestOrders.cbegin(), requestOrders.cend(), OrderResults::isUnknown);
        if (unknown != requestOrders.cend())
            askFate(unknown->value(Stand_Fields::Order::requestId).toString(), requestOrders);
    }
}

/// Not in the lane of the orders: a new order does not wait for what became of an old one.
void OrderSender::askFate(const QString &requestId, const RecordList &requestOrders)
{
    Background::run(
        QStringLiteral("trade.fate"), this, [requestId] { return fateOf(requestId); },
        [this, requestId, requestOrders](const RecordList &fate) { takeFate(requestId, requestOrders, fate); });
}

void OrderSender::takeFate(const QString &requestId, const RecordList &requestOrders, const RecordList &fate)
{
    const RecordList orders = OrderResults::withFate(requestOrders, fate);
    if (orders != requestOrders)
        emit sentChanged(orders);
    if (std::none_of(orders.cbegin(), orders.cend(), OrderResults::isUnknown))
        emit fateKnown(orders);
    else
        QTimer::singleShot(askAgainMs, this, [this, requestId, orders] { askFate(requestId, orders); });
}
