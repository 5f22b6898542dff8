#include "RowReader.h"

#include "BookFiles.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QTime>

#include <algorithm>
#include <cmath>

RowReader::RowReader(const QString &file, const QStringList &columns, const CsvRow &row, QVector<BookError> &errors)
    : m_file(file)
    , m_columns(columns)
    , m_row(row)
    , m_errors(errors)
{}

QString RowReader::text(const char *column) const
{
    return m_row.cells.at(m_columns.indexOf(QLatin1String(column)));
}

void RowReader::fail(const char *column, const QString &expected)
{
    m_failed.append(QString::fromLatin1(column));
    m_errors.append({m_file, m_row.line, m_failed.constLast(), text(column), expected});
}

bool RowReader::ok(std::initializer_list<const char *> columns) const
{
    return std::none_of(columns.begin(), columns.end(),
                        [this](const char *column) { return m_failed.contains(QLatin1String(column)); });
}

QString RowReader::filledText(const char *column)
{
    if (text(column).isEmpty())
        fail(column, QStringLiteral("a text"));
    return text(column);
}

QString RowReader::id(const char *column)
{
    static const QRegularExpression pattern(QStringLiteral("^[^_,;\\s]+$"));
    if (!pattern.match(text(column)).hasMatch())
        fail(column, QStringLiteral("an id without \"_\", \",\", \";\" and spaces"));
    return text(column);
}

QString RowReader::oneOf(const char *column, const QStringList &choices)
{
    if (!choices.contains(text(column)))
        fail(column, QStringLiteral("one of ") + choices.join(QStringLiteral(", ")));
    return text(column);
}

QStringList RowReader::list(const char *column) const
{
    return text(column).split(QLatin1Char(BookFiles::listSeparator), Qt::SkipEmptyParts);
}

QStringList RowReader::listOf(const char *column, const QStringList &choices)
{
    const QStringList items = list(column);
    QSet<QString> seen;
    for (const QString &item : items) {
        if (!choices.contains(item) || seen.contains(item)) {
            fail(column, QStringLiteral("a list, separated by \";\", of different items of ") +
                             choices.join(QStringLiteral(", ")));
            break;
        }
        seen.insert(item);
    }
    if (items.isEmpty())
        fail(column, QStringLiteral("at least one of ") + choices.join(QStringLiteral(", ")));
    return items;
}

qint64 RowReader::whole(const char *column, qint64 least)
{
    bool valid = false;
    const qint64 value = text(column).toLongLong(&valid);
    if (valid && value >= least && value <= 1'000'000'000'000)
        return value;
    fail(column, QStringLiteral("a whole number from %1 to 1000000000000").arg(least));
    return least;
}

double RowReader::number(const char *column, const QString &expected, bool &valid)
{
    const double value = text(column).toDouble(&valid);
    valid = valid && std::isfinite(value);
    if (!valid)
        fail(column, expected);
    return valid ? value : 0;
}

double RowReader::atLeast(const char *column, double least)
{
    const QString expected = QStringLiteral("a number of at least %1").arg(least);
    bool valid = false;
    const double value = number(column, expected, valid);
    if (valid && value < least)
        fail(column, expected);
    return value;
}

double RowReader::above(const char *column, double bound)
{
    const QString expected = QStringLiteral("a number above %1").arg(bound);
    bool valid = false;
    const double value = number(column, expected, valid);
    if (valid && value <= bound)
        fail(column, expected);
    return value;
}

bool RowReader::flag(const char *column)
{
    static const QStringList yes{QStringLiteral("1"), QStringLiteral("true")};
    static const QStringList no{QStringLiteral("0"), QStringLiteral("false")};
    return yes.contains(oneOf(column, yes + no));
}

QString RowReader::time(const char *column)
{
    const QString value = text(column);
    if (value.size() != 8 || !QTime::fromString(value, QStringLiteral("hh:mm:ss")).isValid())
        fail(column, QStringLiteral("a time hh:mm:ss"));
    return value;
}
