#include "StorePrivate.h"

#include <QtCore/QAtomicInteger>
#include <QtCore/QDateTime>
#include <QtSql/QSqlError>

QString StoreIds::id(char kind, qint64 row)
{
    return QLatin1Char(kind) + QString::number(row).rightJustified(9, QLatin1Char('0'));
}

QString StoreIds::resource(qint64 row)
{
    return id(resourceKind, row);
}

QString StoreIds::pool(qint64 row)
{
    return id(poolKind, row);
}

qint64 StoreIds::row(const QString &id, char kind)
{
    if (id.isEmpty())
        return 0;
    bool valid = false;
    const qint64 row = id.mid(1).toLongLong(&valid);
    return valid && row > 0 && id == StoreIds::id(kind, row) ? row : -1;
}

QString bound(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

ModifyTime ModifyTime::next(qint64 now) const
{
    if (now > ms)
        return {now, 0};
    return counter < 999 ? ModifyTime{ms, counter + 1} : ModifyTime{ms + 1, 0};
}

QString ModifyTime::toText() const
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC);
    return time.toString(QStringLiteral("yyyyMMddHHmmsszzz")) +
           QString::number(counter).rightJustified(3, QLatin1Char('0'));
}

Store::Private::Private()
    : connection([] {
        static QAtomicInteger<quint64> number;
        return QStringLiteral("t0store%1").arg(number.fetchAndAddRelaxed(1));
    }())
    , database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection))
{}

Store::Private::~Private()
{
    // Statements and handles have to be gone before the connection can be removed.
    prepared.clear();
    database.close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

bool Store::Private::failed(const QSqlQuery &query)
{
    error = query.lastError().text();
    return false;
}

bool Store::Private::run(const QString &sql)
{
    QSqlQuery query(database);
    return query.exec(sql) || failed(query);
}

QSqlQuery *Store::Private::execute(const QString &sql, const QVariantList &values)
{
    auto at = prepared.find(sql);
    if (at == prepared.end()) {
        QSqlQuery query(database);
        query.setForwardOnly(true);
        if (!query.prepare(sql)) {
            failed(query);
            return nullptr;
        }
        at = prepared.insert(sql, query);
    }
    for (int i = 0; i < values.size(); ++i)
        at->bindValue(i, values.at(i));
    if (at->exec())
        return &*at;
    failed(*at);
    return nullptr;
}

Store::Store()
    : d(new Private)
{}

Store::~Store() = default;

bool Store::isResourceId(const QString &text)
{
    return StoreIds::row(text, StoreIds::resourceKind) > 0;
}

bool Store::isPoolId(const QString &text)
{
    return StoreIds::row(text, StoreIds::poolKind) > 0;
}

QString Store::nextModifyTime()
{
    d->given = d->given.next(d->marketMs);
    return d->given.toText();
}

qint64 Store::marketMs() const
{
    return d->marketMs;
}

bool Store::begin()
{
    return d->run(QStringLiteral("BEGIN IMMEDIATE"));
}

bool Store::commit()
{
    const QString clock = QStringLiteral("UPDATE clock SET modify_ms = ?, modify_counter = ?");
    const bool unchanged = d->given == d->committed;
    if ((unchanged || d->execute(clock, {d->given.ms, d->given.counter})) && d->run(QStringLiteral("COMMIT"))) {
        d->committed = d->given;
        d->committedMs = d->marketMs;
        return true;
    }
    rollback();
    return false;
}

void Store::rollback()
{
    // The reason of the failure stays the one that is told. A time that was given away is never given again.
    const QString reason = d->error;
    d->run(QStringLiteral("ROLLBACK"));
    d->error = reason;
    d->marketMs = d->committedMs;
}

void Store::clearError()
{
    d->error.clear();
}

QString Store::errorText() const
{
    return d->error;
}
