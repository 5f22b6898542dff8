#include "OrderSender.h"

#include "Background.h"
#include "HostSession.h"
#include "ManualT0Logic.h"
#include "MasterTradeLogic.h"
#include "MessageChannel.h"
#include "OrderResults.h"
#include "OrvaneFields.h"
#include "StandFields.h"

#include <QtCore/QDateTime>
#include <QtCore/QTimer>

#include <algorithm>
#include <memory>

namespace {

constexpr int askAgainMs = 500;
constexpr int longestWaitMs = 3000;

/// A field of the desk's own, beside the host's.
QString numberField()
{
    return QStringLiteral("DeskNumber");
}

QString accountOf(const VariantRecord &order)
{
    return order.value(Orvane_Fields::UserAccount::tradingAccount).toString();
}

/// The orders of one OrderSender::send while their answers come.
struct Sending {
    RecordList sent;
    int waitingRequests = 0;
};

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

/// A lane an account: the server answers each on its own, and an order must not wait behind the answer of another's.
int OrderSender::send(const RecordList &rows)
{
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    QMap<QString, RecordList> byAccount; // one request an account
    RecordList sent = rows;
    for (VariantRecord &order : sent) {
        order.insert(numberField(), ++m_lastNumber);
        order.insert(Stand_Fields::Order::orderTime, now);
        byAccount[accountOf(order)].append(order);
    }
    emit sentChanged(sent);
    QElapsedTimer sinceConfirmed;
    sinceConfirmed.start();
    const auto sending = std::make_shared<Sending>();
    sending->waitingRequests = byAccount.size();
    for (const RecordList &orders : qAsConst(byAccount)) {
        Background::run(
            QStringLiteral("trade.order.") + accountOf(orders.constFirst()), this,
            [orders, sinceConfirmed] { return submit(orders, sinceConfirmed); },
            [this, orders, sending, number = m_lastNumber](const RecordList &results) {
                const RecordList known =
                    OrderResults::match(orders, results, tr("未提交：账户不在您的账户优先级列表中"));
                take(known);
                sending->sent += known;
                if (--sending->waitingRequests == 0)
                    emit answered(number, sending->sent);
            });
    }
    return m_lastNumber;
}

RecordList OrderSender::submit(const RecordList &orders, const QElapsedTimer &sinceConfirmed)
{
    const QString reason = reasonNotToSend(sinceConfirmed);
    RecordList results;
    if (reason.isEmpty()) {
        ManualT0Logic::Order(orders, results, QString());
        return results;
    }
    for (const VariantRecord &order : orders)
        results.append({{Orvane_Fields::UserAccount::tradingAccount, accountOf(order)},
                        {Orvane_Fields::System::textDescription, reason}});
    return results;
}

QString OrderSender::reasonNotToSend(const QElapsedTimer &sinceConfirmed)
{
    if (sinceConfirmed.hasExpired(longestWaitMs))
        return tr("未提交：等待超过3秒");
    HostSession *session = HostSession::current();
    if (!session || session->channel().connection() != MessageChannel::Connection::Connected)
        return tr("未提交：等待期间连接已断开");
    return {};
}

void OrderSender::take(const RecordList &requestOrders)
{
    emit sentChanged(requestOrders);
    const auto unknown = std::find_if(requestOrders.cbegin(), requestOrders.cend(), OrderResults::isUnknown);
    if (unknown != requestOrders.cend())
        askFate(unknown->value(Stand_Fields::Order::requestId).toString(), requestOrders);
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
