#include "StorePrivate.h"

namespace {

QString resourceColumns()
{
    return QStringLiteral("SELECT id, account, security, exchange, quantity FROM resources ");
}

StoredResource resourceFrom(const QSqlQuery &query)
{
    return {StoreIds::resource(query.value(0).toLongLong()),
            {query.value(1).toString(), query.value(2).toString(), query.value(3).toString()},
            query.value(4).toLongLong()};
}

QString poolColumns()
{
    return QStringLiteral("SELECT p.id, p.resource, p.trader, r.account, r.security, r.exchange, p.quantity, "
                          "p.max_exposure, p.max_pend_exposure FROM pools p JOIN resources r ON r.id = p.resource ");
}

StoredPool poolFrom(const QSqlQuery &query)
{
    return {StoreIds::pool(query.value(0).toLongLong()),
            StoreIds::resource(query.value(1).toLongLong()),
            query.value(2).toString(),
            {query.value(3).toString(), query.value(4).toString(), query.value(5).toString()},
            query.value(6).toLongLong(),
            query.value(7).toLongLong(),
            query.value(8).toLongLong()};
}

} // namespace

QSet<QString> Store::enabledAccounts()
{
    const auto found = d->rows<QString>(QStringLiteral("SELECT account FROM accounts WHERE enabled = 1"), {},
                                        [](const QSqlQuery &query) { return query.value(0).toString(); });
    return QSet<QString>(found.cbegin(), found.cend());
}

bool Store::setEnabled(const QString &account, bool enabled)
{
    return d->execute(QStringLiteral("INSERT OR REPLACE INTO accounts (account, enabled) VALUES (?, ?)"),
                      {account, int(enabled)});
}

StoredResource Store::resource(const QString &id)
{
    return d->row<StoredResource>(resourceColumns() + QStringLiteral("WHERE id = ?"),
                                  {StoreIds::row(id, StoreIds::resourceKind)}, resourceFrom);
}

StoredResource Store::resourceOf(const Holding &holding)
{
    return d->row<StoredResource>(resourceColumns() +
                                      QStringLiteral("WHERE account = ? AND security = ? AND exchange = ?"),
                                  {holding.account, holding.securityID, holding.exchange}, resourceFrom);
}

QVector<StoredResource> Store::resources(const QString &account, const QString &afterId, int limit)
{
    return d->rows<StoredResource>(resourceColumns() +
                                       QStringLiteral("WHERE account = ? AND id > ? ORDER BY id LIMIT ?"),
                                   {account, StoreIds::row(afterId, StoreIds::resourceKind), limit}, resourceFrom);
}

QString Store::saveResource(const StoredResource &resource)
{
    const Holding &holding = resource.holding;
    if (!resource.id.isEmpty())
        return d->execute(QStringLiteral("UPDATE resources SET quantity = ? WHERE id = ?"),
                          {resource.quantity, StoreIds::row(resource.id, StoreIds::resourceKind)})
                   ? resource.id
                   : QString();
    const QSqlQuery *query =
        d->execute(QStringLiteral("INSERT INTO resources (account, security, exchange, quantity) VALUES (?, ?, ?, ?)"),
                   {holding.account, holding.securityID, holding.exchange, resource.quantity});
    return query ? StoreIds::resource(query->lastInsertId().toLongLong()) : QString();
}

bool Store::removeResource(const QString &id)
{
    return d->execute(QStringLiteral("DELETE FROM resources WHERE id = ?"),
                      {StoreIds::row(id, StoreIds::resourceKind)});
}

StoredPool Store::pool(const QString &id)
{
    return d->row<StoredPool>(poolColumns() + QStringLiteral("WHERE p.id = ?"), {StoreIds::row(id, StoreIds::poolKind)},
                              poolFrom);
}

QVector<StoredPool> Store::pools(const QString &account, const QString &afterId, int limit)
{
    const QString sql = poolColumns() + QStringLiteral("WHERE p.account = ? AND p.id > ? ORDER BY p.id LIMIT ?");
    return d->rows<StoredPool>(sql, {account, StoreIds::row(afterId, StoreIds::poolKind), limit}, poolFrom);
}

QVector<StoredPool> Store::poolsOf(const Holding &holding)
{
    const QString sql =
        poolColumns() + QStringLiteral("WHERE r.account = ? AND r.security = ? AND r.exchange = ? ORDER BY p.id");
    return d->rows<StoredPool>(sql, {holding.account, holding.securityID, holding.exchange}, poolFrom);
}

QVector<StoredPool> Store::allPools()
{
    return d->rows<StoredPool>(poolColumns() + QStringLiteral("ORDER BY p.id"), {}, poolFrom);
}

QString Store::savePool(const StoredPool &pool)
{
    const QVariantList values{pool.quantity, pool.maxExposure, pool.maxPendExposure};
    if (!pool.id.isEmpty())
        return d->execute(QStringLiteral("UPDATE pools SET quantity = ?, max_exposure = ?, max_pend_exposure = ? "
                                         "WHERE id = ?"),
                          values + QVariantList{StoreIds::row(pool.id, StoreIds::poolKind)})
                   ? pool.id
                   : QString();
    const QSqlQuery *query =
        d->execute(QStringLiteral("INSERT INTO pools (quantity, max_exposure, max_pend_exposure, resource, account, "
                                  "trader) VALUES (?, ?, ?, ?, ?, ?)"),
                   values + QVariantList{StoreIds::row(pool.resourceId, StoreIds::resourceKind), pool.holding.account,
                                         pool.trader});
    return query ? StoreIds::pool(query->lastInsertId().toLongLong()) : QString();
}

bool Store::removePool(const QString &id)
{
    return d->execute(QStringLiteral("DELETE FROM pools WHERE id = ?"), {StoreIds::row(id, StoreIds::poolKind)});
}
