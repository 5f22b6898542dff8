#pragma once

#include "CsvFile.h"

/// Reads the cells of one row and notes what is wrong with them. A cell that cannot be read gives a neutral
/// value and an error; a relation is worth checking when ok() says so of every cell it compares.
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
    bool ok(std::initializer_list<const char *> columns) const; ///< nothing is wrong with these cells

private:
    double number(const char *column, const QString &expected, bool &valid);

    const QString m_file;
    const QStringList m_columns;
    const CsvRow &m_row;
    QVector<BookError> &m_errors;
    QStringList m_failed;
};
