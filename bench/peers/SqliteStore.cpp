#include "SqliteStore.h"

#include "OrvaneFields.h"

#include <QtCore/QUuid>
#include <QtSql/QSqlError>

using Master_Fields::ManualT0::T0TraderId;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

QString quoted(const QString &column)
{
    return '"' + column + '"';
}

QString quoted(const QStringList &columns)
{
    return '"' + columns.join(QStringLiteral("\", \"")) + '"';
}

/// "column" IN (?, ?, …)
QString isOneOf(const QString &column, int values)
{
    return quoted(column) + QStringLiteral(" IN (") + QStringLiteral("?, ").repeated(values - 1) + QStringLiteral("?)");
}

void run(QSqlQuery &query)
{
    if (!query.exec())
        qFatal("%s: %s", qUtf8Printable(query.lastQuery()), qUtf8Printable(query.lastError().text()));
}

} // namespace

SqliteStore::SqliteStore(const RecordList &rows, const TraderNames &names)
    : m_connection(QUuid::createUuid().toString())
    , m_db(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection))
    , m_names(rows.value(0).keys())
    , m_traderNames(names)
{
    m_db.setDatabaseName(QStringLiteral(":memory:"));
    if (!m_db.open())
        qFatal("no database in memory: %s", qUtf8Printable(m_db.lastError().text()));
    // Texts are kept as the program wants them.
    execute(QStringLiteral("PRAGMA encoding = 'UTF-16le'"));
    execute(QStringLiteral("CREATE TABLE record (%1)").arg(quoted(m_names)));
    insert(rows);
    execute(QStringLiteral("CREATE UNIQUE INDEX bySymbol ON record (%1)")
                .arg(quoted(QStringList{tradingAccount, symbol, securityExchange, T0TraderId})));
    execute(
        QStringLiteral("CREATE INDEX byTrader ON record (%1)").arg(quoted(QStringList{T0TraderId, tradingAccount})));
    execute(QStringLiteral("ANALYZE"));
}

SqliteStore::~SqliteStore()
{
    m_queries.clear();
    m_db = QSqlDatabase(); // a connection that is in use is not removed
    QSqlDatabase::removeDatabase(m_connection);
}

QSqlQuery SqliteStore::prepared(const QString &sql) const
{
    QSqlQuery query(m_db);
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        qFatal("%s: %s", qUtf8Printable(sql), qUtf8Printable(query.lastError().text()));
    return query;
}

void SqliteStore::execute(const QString &sql)
{
    QSqlQuery query = prepared(sql);
    run(query);
}

void SqliteStore::insert(const RecordList &rows)
{
    QSqlQuery query = prepared(
        QStringLiteral("INSERT INTO record VALUES (%1?)").arg(QStringLiteral("?, ").repeated(m_names.size() - 1)));
    m_db.transaction();
    for (const VariantRecord &row : rows) {
        for (int i = 0; i < m_names.size(); ++i)
            query.bindValue(i, row.value(m_names.at(i)));
        run(query);
    }
    m_db.commit();
}

RecordList SqliteStore::select(const QString &condition, const QStringList &values) const
{
    auto query = m_queries.find(condition);
    if (query == m_queries.end())
        query = m_queries.insert(condition, prepared(QStringLiteral("SELECT * FROM record WHERE ") + condition));
    for (int i = 0; i < values.size(); ++i)
        query->bindValue(i, values.at(i));
    run(*query);
    RecordList found;
    while (query->next())
        found.append(row(*query));
    query->finish();
    return found;
}

VariantRecord SqliteStore::row(const QSqlQuery &query) const
{
    VariantRecord record;
    for (int i = 0; i < m_names.size(); ++i)
        record.insert(record.constEnd(), m_names.at(i), query.value(i));
    m_traderNames.fill(record);
    return record;
}

VariantRecord SqliteStore::one(const Records::Keys &keys) const
{
    static const QString condition = QStringLiteral("\"%1\" = ? AND \"%2\" = ? AND \"%3\" = ? AND \"%4\" = ?")
                                         .arg(tradingAccount, T0TraderId, symbol, securityExchange);
    return select(condition, {keys.account, keys.trader, keys.symbol, keys.exchange}).value(0);
}

RecordList SqliteStore::list(const Records::Filter &filter) const
{
    QString condition = isOneOf(tradingAccount, filter.accounts.size());
    QStringList values = filter.accounts;
    const auto narrow = [&](const QString &column, const QStringList &allowed) {
        if (allowed.isEmpty())
            return;
        condition += QStringLiteral(" AND ") + isOneOf(column, allowed.size());
        values += allowed;
    };
    narrow(T0TraderId, filter.traders);
    narrow(symbol, filter.symbol.isEmpty() ? QStringList() : QStringList(filter.symbol));
    narrow(securityExchange, filter.exchange.isEmpty() ? QStringList() : QStringList(filter.exchange));
    return select(condition, values);
}
