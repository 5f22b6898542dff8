#pragma once

#include "VariantRecord.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

/// Values for people, in aligned columns; East Asian wide characters count two. Numbers stand at the right.
namespace TextTable {

/// A line of headings and one a row. A list in a cell is joined with ",", what is missing stays empty.
QString ofRows(const RecordList &rows, const QStringList &columns);

/// The fields that occur in any of the rows: what identifies a row first, the rest ascending.
QStringList columnsOf(const RecordList &rows);

QString countOf(const RecordList &rows); ///< "1 row", "5 rows"

/// A table for a list of records and for a record, a line an item for a list of texts, else the value.
QString ofValue(const QVariant &value);

/// Columns that a text takes on a terminal.
int width(const QString &text);

} // namespace TextTable
