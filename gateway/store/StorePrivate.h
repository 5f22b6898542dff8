#pragma once

#include "Store.h"

#include <QtCore/QVariant>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>

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

    int usageCount(const QString &trader);

    bool failed(const QSqlQuery &query);

    const QString connection;
    QSqlDatabase database;
    QHash<QString, QSqlQuery> prepared;
    QString error;
    QString marketTime; ///< yyyy-MM-dd hh:mm:ss.zzz
    qint64 counter = 0; ///< of the last ModifyTime given
    qint64 committed = 0;
};

namespace StoreIds {
QString resource(qint64 row);
QString pool(qint64 row);

/// The row of an id made by one of the above, 0 for an empty text, -1 for any other.
qint64 row(const QString &id, QChar kind);
constexpr char resourceKind = 'R';
constexpr char poolKind = 'P';
} // namespace StoreIds
