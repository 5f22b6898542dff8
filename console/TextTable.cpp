#include "TextTable.h"

#include "JsonText.h"
#include "MasterFields.h"
#include "OrvaneFields.h"

#include <QtCore/QSet>

#include <algorithm>

namespace {

constexpr int spaceBetween = 2;
constexpr int pricePlaces = 12; ///< digits of a number for people

bool isWide(uint c)
{
    static constexpr uint ranges[][2] = {{0x1100, 0x115F},   {0x2E80, 0x303E},  {0x3041, 0xA4CF}, {0xAC00, 0xD7A3},
                                         {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},  {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6},
                                         {0x1F300, 0x1FAFF}, {0x20000, 0x3FFFD}};
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [c](const auto &range) { return c >= range[0] && c <= range[1]; });
}

bool isNumber(const QVariant &value)
{
    const int type = value.userType();
    return type == QMetaType::Int || type == QMetaType::LongLong || type == QMetaType::Double;
}

QString cellText(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', pricePlaces);
    case QMetaType::QStringList:
        return value.toStringList().join(QLatin1Char(','));
    case QMetaType::QVariantList:
    case QMetaType::QVariantMap:
        return jsonText(value);
    default:
        return value.toString();
    }
}

struct Column {
    QStringList cells; ///< the heading first
    bool atRight = true;
    int width = 0;

    void add(const QString &cell)
    {
        cells.append(cell);
        width = qMax(width, TextTable::width(cell));
    }
};

Column columnOf(const RecordList &rows, const QString &field)
{
    Column column;
    column.add(field);
    for (const VariantRecord &row : rows) {
        const QVariant value = row.value(field);
        column.add(cellText(value));
        column.atRight = column.atRight && (isNumber(value) || !value.isValid());
    }
    return column;
}

QString joined(const QVector<Column> &columns, int line)
{
    QString text;
    for (const Column &column : columns) {
        const QString &cell = column.cells.at(line);
        const QString space(column.width - TextTable::width(cell), QLatin1Char(' '));
        text += column.atRight ? space + cell : cell + space;
        text += QString(spaceBetween, QLatin1Char(' '));
    }
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

bool isRecordList(const QVariantList &values)
{
    return std::all_of(values.cbegin(), values.cend(),
                       [](const QVariant &value) { return value.userType() == QMetaType::QVariantMap; });
}

RecordList fieldsAsRows(const VariantRecord &record)
{
    RecordList rows;
    for (auto field = record.cbegin(); field != record.cend(); ++field)
        rows.append({{QStringLiteral("field"), field.key()}, {QStringLiteral("value"), field.value()}});
    return rows;
}

} // namespace

QString TextTable::ofRows(const RecordList &rows, const QStringList &columns)
{
    QVector<Column> filled;
    for (const QString &field : columns)
        filled.append(columnOf(rows, field));
    QStringList lines;
    for (int line = 0; line <= rows.size(); ++line)
        lines.append(joined(filled, line));
    return lines.join(QLatin1Char('\n'));
}

QStringList TextTable::columnsOf(const RecordList &rows)
{
    QSet<QString> fields;
    for (const VariantRecord &row : rows)
        for (auto field = row.cbegin(); field != row.cend(); ++field)
            fields.insert(field.key());

    QStringList columns;
    for (const QString &field : {Master_Fields::ManualT0::ResourceId, Master_Fields::ManualT0::PoolDetailId,
                                 Master_Fields::ManualT0::T0TraderId, Master_Fields::ManualT0::T0TraderName,
                                 Orvane_Fields::UserAccount::tradingAccount, Orvane_Fields::Security::symbol,
                                 Orvane_Fields::UserAccount::securityExchange})
        if (fields.remove(field))
            columns.append(field);
    QStringList others = fields.values();
    others.sort();
    return columns + others;
}

QString TextTable::countOf(const RecordList &rows)
{
    return rows.size() == 1 ? QStringLiteral("1 row") : QStringLiteral("%1 rows").arg(rows.size());
}

QString TextTable::ofValue(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QVariantMap:
        return value.toMap().isEmpty()
                   ? QStringLiteral("nothing")
                   : ofRows(fieldsAsRows(value.toMap()), {QStringLiteral("field"), QStringLiteral("value")});
    case QMetaType::QStringList:
        return value.toStringList().isEmpty() ? QStringLiteral("nothing")
                                              : value.toStringList().join(QLatin1Char('\n'));
    case QMetaType::QVariantList:
        break;
    default:
        return cellText(value);
    }
    const QVariantList values = value.toList();
    if (!isRecordList(values))
        return jsonText(value);
    RecordList rows;
    for (const QVariant &row : values)
        rows.append(row.toMap());
    const QString count = countOf(rows);
    return rows.isEmpty() ? count : ofRows(rows, columnsOf(rows)) + QLatin1Char('\n') + count;
}

int TextTable::width(const QString &text)
{
    int columns = 0;
    const QVector<uint> characters = text.toUcs4();
    for (const uint c : characters) {
        const QChar::Category category = QChar::category(c);
        if (category != QChar::Mark_NonSpacing && category != QChar::Other_Format)
            columns += isWide(c) ? 2 : 1;
    }
    return columns;
}
