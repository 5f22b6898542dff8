#pragma once

#include <QtCore/QStringList>

/// What a script does with tables, lists and trees. A condition is COLUMN=TEXT: the column by its id, its title or its
/// number from 0, the text as shown. Texts that are returned are empty or say what was expected and what is there.
namespace ScriptTables {

/// how: click, dclick or check (its tick changes).
QString cell(const QString &table, const QString &condition, const QString &how);

/// A row that meets every condition.
QString expectRow(const QString &table, const QStringList &conditions);
QString expectNoRow(const QString &table, const QStringList &conditions);
QString expectRows(const QString &table, const QString &number); ///< top level rows

void flush(); ///< what waits in the tables of records is shown

} // namespace ScriptTables
