#pragma once

#include "Store.h"

#include <QtCore/QFile>
#include <QtCore/QVariant>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

/// When a record was changed: a millisecond of the market clock, and which change of that millisecond.
struct ModifyTime {
    qint64 ms = 0;
    int counter = 0; ///< 0 to 999

    bool operator==(const ModifyTime &other) const { return ms == other.ms && counter == other.counter; }

    /// The time of the next change: the first one now, or the one behind this when now is not later.
    ModifyTime next(qint64 now) const;

    /// yyyyMMddHHmmsszzz and the counter, 20 digits: text order is time order.
    QString toText() const;
};

class Store::Private
{
public:
    Private();
    ~Private();

    /// Runs a statement without results; false: error is set.
    bool run(const QString &sql);

    /// The prepared statement of this text, made on first use, with the values bound and executed; nullptr:
    /// error is set.
    QSqlQuery *execute(const QString &sql, const QVariantList &values);

    /// Every row of a query, read by read(query); what went wrong is in error.
    template <typename Row, typename Read> QVector<Row> rows(const QString &sql, const QVariantList &values, Read read);

    /// A number of the database's own; false: error is set.
    bool readPragma(const QString &name, int &value);

    /// Whether the database is a gateway's, of this version.
    bool checkSchema();

    int usageCount(const QString &trader);

    bool failed(const QSqlQuery &query);

    /// The first row of a query, or an empty one.
    template <typename Row, typename Read> Row row(const QString &sql, const QVariantList &values, Read read)
    {
        return rows<Row>(sql, values, read).value(0);
    }

    QFile lock; ///< the last to go: until then the file is this gateway's
    const QString connection;
    QSqlDatabase database;
    QHash<QString, QSqlQuery> prepared;
    QString error;
    qint64 marketMs = 0; ///< the market clock: milliseconds since 1970 of its local time
    qint64 committedMs = 0;
    ModifyTime given; ///< the last one
    ModifyTime committed;
};

namespace StoreIds {
constexpr char resourceKind = 'R';
constexpr char poolKind = 'P';
constexpr char positionKind = 'H';
constexpr char orderKind = 'O';
constexpr char fillKind = 'F';

QString id(char kind, qint64 row);
QString resource(qint64 row);
QString pool(qint64 row);

/// The row of such an id, 0 for an empty text, -1 for any other.
qint64 row(const QString &id, char kind);
} // namespace StoreIds

/// A text to bind: a null one would be NULL, which equals nothing.
QString bound(const QString &text);

template <typename Row, typename Read>
QVector<Row> Store::Private::rows(const QString &sql, const QVariantList &values, Read read)
{
    QVector<Row> found;
    QSqlQuery *query = execute(sql, values);
    while (query && query->next())
        found.append(read(*query));
    if (query && query->lastError().isValid())
        failed(*query);
    if (query)
        query->finish();
    return found;
}
