#include "Answers.h"
#include "ChangeRows.h"
#include "GatewayTexts.h"
#include "MasterFields.h"
#include "Service.h"
#include "StandFields.h"
#include "StandMsgType.h"

namespace {

namespace Safety_ = Stand_Fields::Safety;
using Master_Fields::ManualT0::T0TraderId;

SafetyRules readRules(ChangeRow &row, const SafetyRules &before)
{
    SafetyRules rules;
    rules.tradeSwitch = row.textOr(Safety_::tradeSwitch, SafetyRules::tradeSwitches(), before.tradeSwitch);
    rules.ordersPerSecond =
        row.numberOr(Safety_::ordersPerSecond, SafetyRules::maxOrdersPerSecond, before.ordersPerSecond);
    rules.cancelsPerMinute =
        row.numberOr(Safety_::cancelsPerMinute, SafetyRules::maxCancelsPerMinute, before.cancelsPerMinute);
    rules.duplicateMs = row.numberOr(Safety_::duplicateMs, SafetyRules::maxDuplicateMs, before.duplicateMs);
    rules.refuseSelfMatch = row.flagOr(Safety_::refuseSelfMatch, before.refuseSelfMatch);
    return rules;
}

} // namespace

VariantRecord Service::safetyRow(const QString &trader)
{
    const SafetyRules rules = m_store->safetyOf(trader);
    return {{T0TraderId, trader},
            {Safety_::tradeSwitch, rules.tradeSwitch},
            {Safety_::ordersPerSecond, rules.ordersPerSecond},
            {Safety_::cancelsPerMinute, rules.cancelsPerMinute},
            {Safety_::duplicateMs, rules.duplicateMs},
            {Safety_::refuseSelfMatch, rules.refuseSelfMatch}};
}

QVector<QString> Service::tradersSeen(const Request &request) const
{
    QVector<QString> traders;
    const QString seen = request.seenUser();
    for (const User &user : m_books.users)
        if (user.isTrader() && (seen.isEmpty() || seen == user.userID))
            traders.append(user.userID);
    return traders;
}

MessageBody Service::querySafety(const Request &request)
{
    return Answers::listPage(request.values, tradersSeen(request),
                             [this](const QString &trader) { return safetyRow(trader); });
}

MessageBody Service::alterSafety(const Request &request)
{
    QMap<QString, SafetyRules> wanted;
    const QString refusal = readSomeRows(request.rows, [&](ChangeRow &row) {
        const QString trader = row.id(T0TraderId);
        const User *user = m_books.user(trader);
        row.require(user, GatewayTexts::unknownTrader(trader));
        row.require(user && user->isTrader(), GatewayTexts::noTraderRole(trader));
        row.require(!wanted.contains(trader), GatewayTexts::repeatedTrader(trader));
        wanted.insert(trader, readRules(row, m_store->safetyOf(trader)));
    });
    if (!refusal.isEmpty())
        return Answers::refused(refusal);
    RecordList rows;
    for (auto rules = wanted.cbegin(); rules != wanted.cend(); ++rules) {
        m_changes.saveSafety(rules.key(), *rules);
        rows.append(safetyRow(rules.key()));
        push(Stand_MsgType::SafetyRulesPush, rows.constLast(), rules.key());
    }
    return Answers::success(rows);
}

QString Service::refusalOfGuards(const StoredOrder &order, const OrderGuards &guards)
{
    QString refusal = refusalOfRepetition(order, guards);
    if (refusal.isEmpty() && guards.rules.refuseSelfMatch)
        refusal = refusalOfSelfMatch(order);
    const int most = guards.rules.ordersPerSecond;
    if (!refusal.isEmpty() || most == 0)
        return refusal;
    // The last check: what counts is what goes on to the exchange.
    FlowWindow &flow = m_flows[order.user].orders;
    if (!flow.hasRoom(order.receivedMs, most))
        return GatewayTexts::tooManyOrders(most);
    flow.count(order.receivedMs);
    return QString();
}

/// Equal orders of one request are the parts of one order and no repetition.
QString Service::refusalOfRepetition(const StoredOrder &order, const OrderGuards &guards)
{
    const int withinMs = guards.rules.duplicateMs;
    if (withinMs == 0)
        return QString();
    const StoredOrder last = m_store->lastEqual(order, guards.lastBefore);
    const qint64 age = order.receivedMs - last.receivedMs;
    // Below 0: the clock was set back.
    const bool repeats = !last.id.isEmpty() && age >= 0 && age < withinMs;
    return repeats ? GatewayTexts::repeatedOrder(last.id, withinMs) : QString();
}

/// Of the whole product and not of the account alone: its accounts have one owner, who must not trade with himself.
QString Service::refusalOfSelfMatch(const StoredOrder &order)
{
    const Account &account = *m_books.account(order.holding.account);
    const QStringList accounts = m_books.accountsOf(account.productAccount);
    for (const QString &other : accounts) {
        const StoredOrder met = m_store->meeting(order, other);
        if (met.id.isEmpty())
            continue;
        return met.user == order.user ? GatewayTexts::selfMatch(met.id, other, QString::number(met.price, 'g', 12))
                                      : GatewayTexts::selfMatchOfOthers();
    }
    return QString();
}
