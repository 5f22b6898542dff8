#include "PoolEdit.h"

#include <algorithm>

namespace {

std::optional<qint64> quantityOf(const PoolEdit::ServerPools &pools, const QString &trader)
{
    const auto pool = pools.constFind(trader);
    return pool == pools.cend() ? std::nullopt : std::optional<qint64>(pool->figures[PoolEdit::Quantity]);
}

} // namespace

PoolEdit::PoolEdit(const QString &publicTrader, qint64 unit)
    : m_publicTrader(publicTrader)
    , m_unit(std::max<qint64>(unit, 1))
{}

QVector<PoolEdit::ServerChange> PoolEdit::takeServer(qint64 resourceQty, const ServerPools &pools)
{
    QVector<ServerChange> changes;
    if (m_resourceQty != resourceQty)
        changes.append({QString(), m_resourceQty, resourceQty});
    QMap<QString, Row> before;
    for (const QString &trader : traders())
        before.insert(trader, row(trader));
    QStringList concerned = m_server.keys() + pools.keys();
    concerned.sort();
    concerned.removeDuplicates();
    for (const QString &trader : qAsConst(concerned)) {
        const Row shown = before.value(trader);
        const bool isGone = !pools.contains(trader);
        const Figures now = pools.value(trader).figures;
        const bool asWanted = shown.state == State::Removed ? isGone : shown.shown == now;
        if (m_server.contains(trader) == isGone || serverFigures(trader) != now) {
            if (!asWanted)
                changes.append({trader, quantityOf(m_server, trader), quantityOf(pools, trader)});
        }
    }
    m_resourceQty = resourceQty;
    m_server = pools;
    dropWhatTheServerHas();
    return changes;
}

void PoolEdit::dropWhatTheServerHas()
{
    for (auto removed = m_removed.begin(); removed != m_removed.end();)
        removed = m_server.contains(removed.key()) ? removed + 1 : m_removed.erase(removed);
    for (auto typed = m_typed.begin(); typed != m_typed.end();) {
        const bool isHeld = m_server.contains(typed.key());
        const Figures held = serverFigures(typed.key());
        const std::optional<Typed> quantity = (*typed)[Quantity];
        // A pool that was to be emptied and is gone.
        bool isEmpty = !isHeld && quantity && quantity->value == 0 && quantity->base > 0;
        if (isEmpty) {
            typed = m_typed.erase(typed);
            continue;
        }
        isEmpty = true;
        for (int field = 0; field < FieldCount; ++field) {
            std::optional<Typed> &entry = (*typed)[size_t(field)];
            if (entry && isHeld && entry->value == held[size_t(field)])
                entry.reset();
            isEmpty = isEmpty && !entry;
        }
        typed = isEmpty ? m_typed.erase(typed) : typed + 1;
    }
}

void PoolEdit::type(const QString &trader, Field field, qint64 value)
{
    m_removed.remove(trader);
    std::optional<Typed> &entry = m_typed[trader][field];
    const qint64 base = serverFigures(trader)[field];
    value = std::max<qint64>(value, NoPool[field]);
    // A value typed again is typed in sight of what the server has now.
    entry = Typed{value, base};
    dropWhatTheServerHas();
}

void PoolEdit::remove(const QString &trader)
{
    m_typed.remove(trader);
    if (m_server.contains(trader))
        m_removed.insert(trader, serverFigures(trader));
}

void PoolEdit::revert(const QString &trader)
{
    m_typed.remove(trader);
    m_removed.remove(trader);
}

void PoolEdit::revertAll()
{
    m_typed.clear();
    m_removed.clear();
}

bool PoolEdit::hasRow(const QString &trader) const
{
    return m_server.contains(trader) || m_typed.contains(trader);
}

QStringList PoolEdit::traders() const
{
    QStringList traders = m_server.keys() + m_typed.keys();
    traders.sort();
    traders.removeDuplicates();
    if (traders.removeOne(m_publicTrader))
        traders.prepend(m_publicTrader);
    return traders;
}

PoolEdit::Row PoolEdit::row(const QString &trader) const
{
    Row row;
    row.trader = trader;
    const Figures held = serverFigures(trader);
    if (m_server.contains(trader))
        row.server = held;
    row.shown = held;
    const TypedFields typed = m_typed.value(trader);
    for (size_t field = 0; field < FieldCount; ++field) {
        if (!typed[field])
            continue;
        row.shown[field] = typed[field]->value;
        row.isOvertaken = row.isOvertaken || typed[field]->base != held[field];
        row.isOffUnit = row.isOffUnit || (row.shown[field] > 0 && row.shown[field] % m_unit != 0);
    }
    if (m_removed.contains(trader)) {
        row.state = State::Removed;
        row.isOvertaken = m_removed.value(trader) != held;
    } else if (m_typed.contains(trader)) {
        row.state = row.server ? State::Changed : State::Added;
    }
    return row;
}

QVector<PoolEdit::Row> PoolEdit::rows() const
{
    QVector<Row> rows;
    const QStringList all = traders();
    for (const QString &trader : all)
        rows.append(row(trader));
    return rows;
}

qint64 PoolEdit::publicQty() const
{
    const Row pool = row(m_publicTrader);
    return pool.state == State::Removed ? 0 : pool.shown[Quantity];
}

qint64 PoolEdit::privateQty() const
{
    qint64 sum = 0;
    for (const Figures &figures : wantedPrivate())
        sum += figures[Quantity];
    return sum;
}

bool PoolEdit::maySend() const
{
    const QVector<Row> all = rows();
    const bool areUnits = std::none_of(all.cbegin(), all.cend(), [](const Row &row) { return row.isOffUnit; });
    return areUnits && freeQty() >= 0 && !steps().isEmpty();
}

/// A pool of nothing is no pool.
QMap<QString, PoolEdit::Figures> PoolEdit::wantedPrivate() const
{
    QMap<QString, Figures> wanted;
    const QVector<Row> all = rows();
    for (const Row &row : all) {
        if (row.trader != m_publicTrader && row.state != State::Removed && row.shown[Quantity] > 0)
            wanted.insert(row.trader, row.shown);
    }
    return wanted;
}

std::optional<PoolEdit::Step> PoolEdit::publicStep() const
{
    if (publicQty() == serverFigures(m_publicTrader)[Quantity])
        return std::nullopt;
    Figures figures = NoPool;
    figures[Quantity] = publicQty();
    return Step{Step::Public, {{m_publicTrader, figures}}, {}};
}

std::optional<PoolEdit::Step> PoolEdit::privateStep() const
{
    const QMap<QString, Figures> wanted = wantedPrivate();
    QStringList ids;
    bool isSame = true;
    int held = 0;
    for (auto pool = m_server.cbegin(); pool != m_server.cend(); ++pool) {
        if (pool.key() == m_publicTrader)
            continue;
        ++held;
        ids.append(pool->id);
        isSame = isSame && wanted.contains(pool.key()) && wanted.value(pool.key())[Quantity] == pool->figures[Quantity];
    }
    if (isSame && held == wanted.size())
        return std::nullopt;
    // An allocation of no rows at all would not be sent.
    return wanted.isEmpty() ? Step{Step::DeletePrivate, {}, ids} : Step{Step::Private, wanted, {}};
}

std::optional<PoolEdit::Step> PoolEdit::limitsStep() const
{
    Step step{Step::Limits, {}, {}};
    const QMap<QString, Figures> wanted = wantedPrivate();
    for (auto pool = wanted.cbegin(); pool != wanted.cend(); ++pool) {
        const Figures held = serverFigures(pool.key());
        if (m_server.contains(pool.key()) &&
            (held[Exposure] != (*pool)[Exposure] || held[PendExposure] != (*pool)[PendExposure]))
            step.pools.insert(pool.key(), *pool);
    }
    return step.pools.isEmpty() ? std::nullopt : std::optional<Step>(step);
}

QVector<PoolEdit::Step> PoolEdit::steps() const
{
    QVector<Step> steps;
    const std::optional<Step> first = publicStep();
    const std::optional<Step> second = privateStep();
    if (first)
        steps.append(*first);
    if (second)
        steps.append(*second);
    const bool publicGrows = publicQty() > serverFigures(m_publicTrader)[Quantity];
    if (steps.size() == 2 && publicGrows)
        std::swap(steps[0], steps[1]);
    if (const std::optional<Step> limits = limitsStep())
        steps.append(*limits);
    return steps;
}
