#include "Changes.h"

#include "MasterFields.h"
#include "OrvaneFields.h"
#include "StandFields.h"

namespace {

namespace T0_ = Master_Fields::ManualT0;

AuditEntry thing(const QString &object, const QString &id, const Holding &holding, const QString &trader)
{
    AuditEntry entry;
    entry.object = object;
    entry.objectId = id;
    entry.holding = holding;
    entry.trader = trader;
    return entry;
}

QString flagText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

/// The number as the audit shows it; nothing for what has no id: it does not exist.
QString shown(const QString &id, qint64 number)
{
    return id.isEmpty() ? QString() : QString::number(number);
}

} // namespace

Changes::Changes(Store &store)
    : m_store(store)
{}

void Changes::clear()
{
    m_audit.clear();
    m_holdings.clear();
    m_accounts.clear();
}

void Changes::setEnabled(const QString &account, bool enabled)
{
    m_store.setEnabled(account, enabled);
    note(thing(QStringLiteral("account"), account, {account, QString(), QString()}, QString()),
         Stand_Fields::Account::enabled, flagText(!enabled), flagText(enabled));
    m_accounts.insert(account);
}

QString Changes::saveResource(const StoredResource &resource)
{
    const StoredResource before = m_store.resource(resource.id);
    const QString id = m_store.saveResource(resource);
    note(thing(QStringLiteral("resource"), id, resource.holding, QString()), T0_::ResourceQty,
         shown(before.id, before.quantity), shown(id, resource.quantity));
    m_holdings.insert(resource.holding);
    return id;
}

void Changes::removeResource(const StoredResource &resource)
{
    const QVector<StoredPool> pools = m_store.poolsOf(resource.holding);
    for (const StoredPool &pool : pools)
        removePool(pool);
    m_store.removeResource(resource.id);
    note(thing(QStringLiteral("resource"), resource.id, resource.holding, QString()), T0_::ResourceQty,
         shown(resource.id, resource.quantity), QString());
    m_holdings.insert(resource.holding);
}

QString Changes::savePool(const StoredPool &pool)
{
    const StoredPool before = m_store.pool(pool.id);
    StoredPool after = pool;
    after.id = m_store.savePool(pool);
    notePool(after, before, after);
    return after.id;
}

void Changes::removePool(const StoredPool &pool)
{
    m_store.removePool(pool.id);
    notePool(pool, pool, StoredPool());
}

void Changes::saveSafety(const QString &trader, const SafetyRules &rules)
{
    namespace Safety_ = Stand_Fields::Safety;
    const SafetyRules before = m_store.safetyOf(trader);
    m_store.saveSafety(trader, rules);
    const AuditEntry entry = thing(QStringLiteral("safety"), trader, Holding(), trader);
    const auto noteNumber = [&](const QString &field, int from, int to) {
        note(entry, field, QString::number(from), QString::number(to));
    };
    note(entry, Safety_::tradeSwitch, before.tradeSwitch, rules.tradeSwitch);
    noteNumber(Safety_::ordersPerSecond, before.ordersPerSecond, rules.ordersPerSecond);
    noteNumber(Safety_::cancelsPerMinute, before.cancelsPerMinute, rules.cancelsPerMinute);
    noteNumber(Safety_::duplicateMs, before.duplicateMs, rules.duplicateMs);
    note(entry, Safety_::refuseSelfMatch, flagText(before.refuseSelfMatch), flagText(rules.refuseSelfMatch));
}

void Changes::noteQuote(const QString &symbol, double from, double to)
{
    note(thing(QStringLiteral("quote"), symbol, Holding(), QString()), Stand_Fields::Quote::lastPrice,
         QString::number(from, 'g', 15), QString::number(to, 'g', 15));
}

void Changes::noteOrder(const StoredOrder &order, const QString &refusal)
{
    AuditEntry entry = thing(QStringLiteral("order"), order.id, order.holding, order.user);
    entry.field = Orvane_Fields::Security::orderQty;
    entry.to = QStringLiteral("%1 %2 @ %3")
                   .arg(order.sideUnion, QString::number(order.quantity), QString::number(order.price, 'g', 15));
    entry.refusal = refusal;
    m_audit.append(entry);
}

void Changes::noteCancel(const QString &id, const StoredOrder &order, const QString &refusal)
{
    AuditEntry entry = thing(QStringLiteral("order"), id, order.holding, order.user);
    entry.field = Orvane_Fields::Security::orderStatus;
    entry.from = order.status;
    entry.to = Stand_Values::OrderStatus::Cancelled;
    entry.refusal = refusal;
    m_audit.append(entry);
}

void Changes::noteMarket(const QString &command, const QString &from, const QString &to)
{
    AuditEntry entry = thing(QStringLiteral("market"), command, Holding(), QString());
    entry.field = Stand_Fields::Market::marketTime;
    entry.from = from;
    entry.to = to;
    m_audit.append(entry);
}

const QVector<AuditEntry> &Changes::audit() const
{
    return m_audit;
}

const QSet<Holding> &Changes::holdings() const
{
    return m_holdings;
}

const QSet<QString> &Changes::accounts() const
{
    return m_accounts;
}

void Changes::note(const AuditEntry &thing, const QString &field, const QString &from, const QString &to)
{
    if (from == to)
        return;
    AuditEntry entry = thing;
    entry.field = field;
    entry.from = from;
    entry.to = to;
    m_audit.append(entry);
}

void Changes::notePool(const StoredPool &pool, const StoredPool &before, const StoredPool &after)
{
    const AuditEntry entry = thing(QStringLiteral("pool"), pool.id, pool.holding, pool.trader);
    note(entry, T0_::PoolTotalQty, shown(before.id, before.quantity), shown(after.id, after.quantity));
    note(entry, T0_::MaxExposureQty, shown(before.id, before.maxExposure), shown(after.id, after.maxExposure));
    note(entry, T0_::MaxPendExposureQty, shown(before.id, before.maxPendExposure),
         shown(after.id, after.maxPendExposure));
    m_holdings.insert(pool.holding);
}
