#pragma once

#include "Store.h"
#include "TraderNames.h"

#include <QtCore/QHash>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>

/// A table in memory through Qt's driver, with a column a field, an index for every shape of question and queries that
/// are prepared once and only step forward. One thread.
class SqliteStore : public Store
{
public:
    SqliteStore(const RecordList &rows, const TraderNames &names);
    ~SqliteStore() override;

    VariantRecord one(const Records::Keys &keys) const override;
    RecordList list(const Records::Filter &filter) const override;

private:
    QSqlQuery prepared(const QString &sql) const;
    RecordList select(const QString &condition, const QStringList &values) const;
    VariantRecord row(const QSqlQuery &query) const;
    void execute(const QString &sql);
    void insert(const RecordList &rows);

    const QString m_connection;
    QSqlDatabase m_db;
    const QStringList m_names; ///< of the columns, ascending
    const TraderNames m_traderNames;
    mutable QHash<QString, QSqlQuery> m_queries;
};
