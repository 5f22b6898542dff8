#pragma once

#include "Store.h"
#include "TraderNames.h"

#include <QtCore/QHash>

struct sqlite3;
struct sqlite3_stmt;

/// A table in memory with a column a field, an index for every shape of question and statements that are prepared
/// once. One thread.
class SqliteStore : public Store
{
public:
    SqliteStore(const RecordList &rows, const TraderNames &names);
    ~SqliteStore() override;

    VariantRecord one(const Records::Keys &keys) const override;
    RecordList list(const Records::Filter &filter) const override;

private:
    sqlite3_stmt *prepared(const QByteArray &condition) const;
    VariantRecord row(sqlite3_stmt *statement) const;
    void execute(const QByteArray &sql);
    void insert(const RecordList &rows);

    sqlite3 *m_db = nullptr;
    const QStringList m_names; ///< of the columns, ascending
    const TraderNames m_traderNames;
    mutable QHash<QByteArray, sqlite3_stmt *> m_statements;
};
