#include "SqliteStore.h"

#include "OrvaneFields.h"

#include <sqlite3.h>

using Master_Fields::ManualT0::T0TraderId;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

QByteArray quoted(const QString &column)
{
    return '"' + column.toUtf8() + '"';
}

QByteArray quoted(const QStringList &columns)
{
    QByteArray list;
    for (const QString &column : columns)
        list += (list.isEmpty() ? "" : ", ") + quoted(column);
    return list;
}

/// "column" IN (?, ?, …)
QByteArray isOneOf(const QString &column, int values)
{
    return quoted(column) + " IN (" + QByteArray("?, ").repeated(values - 1) + "?)";
}

void bind(sqlite3_stmt *statement, int place, const QVariant &value)
{
    switch (int(value.type())) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Bool:
        sqlite3_bind_int64(statement, place, value.toLongLong());
        return;
    case QMetaType::Double:
        sqlite3_bind_double(statement, place, value.toDouble());
        return;
    default:
        const QString text = value.toString();
        sqlite3_bind_text16(statement, place, text.utf16(), text.size() * 2, SQLITE_TRANSIENT);
    }
}

QVariant cell(sqlite3_stmt *statement, int column)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return qlonglong(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement, column);
    default:
        const auto *text = static_cast<const QChar *>(sqlite3_column_text16(statement, column));
        return QString(text, sqlite3_column_bytes16(statement, column) / 2);
    }
}

} // namespace

SqliteStore::SqliteStore(const RecordList &rows, const TraderNames &names)
    : m_names(rows.value(0).keys())
    , m_traderNames(names)
{
    if (sqlite3_open_v2(":memory:", &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr) != SQLITE_OK)
        qFatal("no database in memory");
    // Texts are kept as the program wants them.
    execute("PRAGMA encoding = 'UTF-16le'");
    execute("CREATE TABLE record (" + quoted(m_names) + ")");
    insert(rows);
    execute("CREATE UNIQUE INDEX bySymbol ON record (" +
            quoted(QStringList{tradingAccount, symbol, securityExchange, T0TraderId}) + ")");
    execute("CREATE INDEX byTrader ON record (" + quoted(QStringList{T0TraderId, tradingAccount}) + ")");
    execute("ANALYZE");
}

SqliteStore::~SqliteStore()
{
    for (sqlite3_stmt *statement : qAsConst(m_statements))
        sqlite3_finalize(statement);
    sqlite3_close(m_db);
}

void SqliteStore::execute(const QByteArray &sql)
{
    if (sqlite3_exec(m_db, sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("%s: %s", sql.constData(), sqlite3_errmsg(m_db));
}

void SqliteStore::insert(const RecordList &rows)
{
    sqlite3_stmt *statement = nullptr;
    const QByteArray sql = "INSERT INTO record VALUES (" + QByteArray("?, ").repeated(m_names.size() - 1) + "?)";
    sqlite3_prepare_v2(m_db, sql.constData(), -1, &statement, nullptr);
    execute("BEGIN");
    for (const VariantRecord &row : rows) {
        for (int i = 0; i < m_names.size(); ++i)
            bind(statement, i + 1, row.value(m_names.at(i)));
        if (sqlite3_step(statement) != SQLITE_DONE)
            qFatal("%s", sqlite3_errmsg(m_db));
        sqlite3_reset(statement);
    }
    sqlite3_finalize(statement);
    execute("COMMIT");
}

sqlite3_stmt *SqliteStore::prepared(const QByteArray &condition) const
{
    sqlite3_stmt *&statement = m_statements[condition];
    const QByteArray sql = "SELECT * FROM record WHERE " + condition;
    if (!statement && sqlite3_prepare_v2(m_db, sql.constData(), -1, &statement, nullptr) != SQLITE_OK)
        qFatal("%s: %s", sql.constData(), sqlite3_errmsg(m_db));
    return statement;
}

VariantRecord SqliteStore::row(sqlite3_stmt *statement) const
{
    VariantRecord record;
    for (int i = 0; i < m_names.size(); ++i)
        record.insert(record.constEnd(), m_names.at(i), cell(statement, i));
    m_traderNames.fill(record);
    return record;
}

VariantRecord SqliteStore::one(const Records::Keys &keys) const
{
    static const QByteArray condition = quoted(tradingAccount) + "=? AND " + quoted(T0TraderId) + "=? AND " +
                                        quoted(symbol) + "=? AND " + quoted(securityExchange) + "=?";
    sqlite3_stmt *statement = prepared(condition);
    int place = 0;
    for (const QString *key : {&keys.account, &keys.trader, &keys.symbol, &keys.exchange})
        sqlite3_bind_text16(statement, ++place, key->utf16(), key->size() * 2, SQLITE_STATIC);
    const VariantRecord found = sqlite3_step(statement) == SQLITE_ROW ? row(statement) : VariantRecord();
    sqlite3_reset(statement);
    return found;
}

RecordList SqliteStore::list(const Records::Filter &filter) const
{
    QByteArray condition = isOneOf(tradingAccount, filter.accounts.size());
    QStringList values = filter.accounts;
    const auto narrow = [&](const QString &column, const QStringList &allowed) {
        if (allowed.isEmpty())
            return;
        condition += " AND " + isOneOf(column, allowed.size());
        values += allowed;
    };
    narrow(T0TraderId, filter.traders);
    narrow(symbol, filter.symbol.isEmpty() ? QStringList() : QStringList(filter.symbol));
    narrow(securityExchange, filter.exchange.isEmpty() ? QStringList() : QStringList(filter.exchange));

    sqlite3_stmt *statement = prepared(condition);
    for (int i = 0; i < values.size(); ++i)
        sqlite3_bind_text16(statement, i + 1, values.at(i).utf16(), values.at(i).size() * 2, SQLITE_STATIC);
    RecordList found;
    while (sqlite3_step(statement) == SQLITE_ROW)
        found.append(row(statement));
    sqlite3_reset(statement);
    return found;
}
