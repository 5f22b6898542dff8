#include "StorePrivate.h"

#include <QtCore/QFileInfo>

namespace {

AuditEntry entryFrom(const QSqlQuery &query)
{
    const auto text = [&query](int column) { return query.value(column).toString(); };
    return {query.value(0).toLongLong(),
            query.value(1).toLongLong(),
            text(2),
            text(3),
            text(4),
            text(5),
            text(6),
            {text(7), text(8), text(9)},
            text(10),
            text(11),
            text(12),
            text(13),
            text(14)};
}

QString auditColumns()
{
    return QStringLiteral("real_ms, market_ms, user, type, request, object, object_id, account, security, exchange, "
                          "trader, field, from_value, to_value, refusal");
}

} // namespace

QByteArray Store::answerTo(const QString &user, const QString &requestId)
{
    return d->row<QByteArray>(QStringLiteral("SELECT body FROM answers WHERE user = ? AND request = ?"),
                              {user, requestId}, [](const QSqlQuery &query) { return query.value(0).toByteArray(); });
}

bool Store::saveAnswer(const QString &user, const QString &requestId, qint64 validUntil, const QByteArray &answer)
{
    return d->execute(QStringLiteral("INSERT INTO answers (user, request, valid_until, body) VALUES (?, ?, ?, ?)"),
                      {user, requestId, validUntil, answer});
}

bool Store::forgetAnswers(qint64 validBefore)
{
    return d->execute(QStringLiteral("DELETE FROM answers WHERE valid_until < ?"), {validBefore});
}

bool Store::addAudit(const AuditEntry &entry)
{
    const Holding &holding = entry.holding;
    return d->execute(QStringLiteral("INSERT INTO audit (%1) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
                          .arg(auditColumns()),
                      {entry.realMs, entry.marketMs, entry.user, entry.type, entry.request, entry.object,
                       entry.objectId, holding.account, holding.securityID, holding.exchange, entry.trader, entry.field,
                       entry.from, entry.to, entry.refusal});
}

QString Store::readAudit(const QString &file, const AuditFilter &filter,
                         const std::function<void(const AuditEntry &)> &each)
{
    const auto failed = [&file](const QString &reason) { return QStringLiteral("%1: %2").arg(file, reason); };
    if (!QFileInfo(file).isFile())
        return failed(QStringLiteral("there is no such file"));
    Private d;
    d.database.setDatabaseName(file);
    d.database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=5000"));
    if (!d.database.open())
        return failed(QStringLiteral("it cannot be opened"));
    if (!d.checkSchema())
        return failed(d.error);
    QSqlQuery *query =
        d.execute(QStringLiteral("SELECT %1 FROM audit WHERE real_ms >= ? AND (? = '' OR user = ?) ORDER BY id")
                      .arg(auditColumns()),
                  {filter.sinceMs, bound(filter.user), bound(filter.user)});
    while (query && query->next())
        each(entryFrom(*query));
    if (query && query->lastError().isValid())
        d.failed(*query);
    return d.error.isEmpty() ? QString() : failed(d.error);
}
