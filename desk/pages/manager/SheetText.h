#pragma once

#include <QtCore/QStringList>
#include <QtCore/QVector>

/// Text of a spreadsheet, from the clipboard or a file.
namespace SheetText {

struct Row {
    int line = 0; ///< where it begins, from 1
    QStringList cells;
};

/// UTF-8, with or without a byte order mark, else GB18030; errorText names the first line that is neither.
QString decoded(QByteArray bytes, QString &errorText);

/// Rows without the blank ones. Cells are separated by tabs, when the first line has one, else by commas, else by
/// semicolons, else by blanks; quotes as in CSV, and ="…" is what is in the quotes. errorText names a line that
/// cannot be read; the rows before it are returned.
QVector<Row> rows(const QString &text, QString &errorText);

} // namespace SheetText
