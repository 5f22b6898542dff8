#pragma once

#include "CsvFile.h"

/// Reads the cells of one row and notes what is wrong with them. A cell that cannot be read gives a neutral
/// value and an error; ok() tells whether relations to other rows are worth checking.
class RowReader
{
public:
    RowReader(const QString &file, const QStringList &columns, const CsvRow &row, QVector<BookError> &errors);

    /// The cell as it stands; may be empty.
    QString text(const char *column) const;

    QString filledText(const char *column);

    /// Not empty and without "_", "," and spaces: ids are joined with these.
    QString id(const char *column);

    QString oneOf(const char *column, const QStringList &choices);
    QStringList list(const char *column) const;
    QStringList listOf(const char *column, const QStringList &choices);
    qint64 whole(const char *column, qint64 least);

    /// above: the number itself is not allowed.
    double atLeast(const char *column, double least);
    double above(const char *column, double bound);

    bool flag(const char *column);

    /// hh:mm:ss
    QString time(const char *column);

    void fail(const char *column, const QString &expected);
    bool ok() const { return m_ok; }

private:
    double number(const char *column, const QString &expected, bool &valid);

    const QString m_file;
    const QStringList m_columns;
    const CsvRow &m_row;
    QVector<BookError> &m_errors;
    bool m_ok = true;
};
