#include "MessageBody.h"

#include "CborReader.h"
#include "CborWriter.h"

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QVector>

#include <algorithm>

namespace {

constexpr int maxSize = 64 * 1024 * 1024;
constexpr int maxFields = 1000;
constexpr int maxRows = 1000000;

/// The field names in the order of first appearance. Rows mostly have the keys of the row before them, in
/// the same order, so the comparison by place comes before the hash.
QStringList fieldNames(const RecordList &rows)
{
    QStringList names;
    QSet<QString> known;
    for (const VariantRecord &row : rows) {
        int place = 0;
        for (auto it = row.cbegin(); it != row.cend(); ++it, ++place) {
            if (place < names.size() && names.at(place) == it.key())
                continue;
            if (known.contains(it.key()))
                continue;
            known.insert(it.key());
            names.append(it.key());
        }
    }
    return names;
}

bool writeRow(CborWriter &writer, const VariantRecord &row, const QStringList &names, bool ascending)
{
    writer.array(quint64(names.size()));
    auto next = row.cbegin();
    for (const QString &name : names) {
        const auto cell = !ascending                                 ? row.constFind(name)
                          : next != row.cend() && next.key() == name ? next++
                                                                     : row.cend();
        if (cell == row.cend())
            writer.undefined();
        else if (!writer.value(cell.value()))
            return false;
    }
    return true;
}

/// One column of the table while it is read. Neighbouring rows often repeat a text (an account, an
/// exchange): the same bytes then give the same, shared QVariant.
struct Column {
    QString name;
    QByteArray lastBytes; ///< a view into the message
    QVariant lastText;
};

bool readNames(CborReader &reader, QVector<Column> &columns)
{
    quint64 count = 0;
    if (!reader.array(count))
        return false;
    if (count > quint64(maxFields))
        return reader.fail("too many fields");
    QSet<QString> known;
    columns.resize(int(count));
    for (Column &column : columns) {
        if (!reader.text(column.name))
            return false;
        if (known.contains(column.name))
            return reader.fail("field name twice");
        known.insert(column.name);
    }
    return true;
}

bool readCell(CborReader &reader, Column &column, VariantRecord &row)
{
    if (reader.takeUndefined())
        return true;
    const QByteArray encoded = reader.peekText();
    if (!encoded.isEmpty() && encoded == column.lastBytes) {
        reader.skip(encoded.size());
        row.insert(row.constEnd(), column.name, column.lastText);
        return true;
    }
    QVariant value;
    if (!reader.value(value))
        return false;
    if (!encoded.isEmpty()) {
        column.lastBytes = encoded;
        column.lastText = value;
    }
    // names usually ascend: at the end then, without a search
    row.insert(row.constEnd(), column.name, value);
    return true;
}

bool readRows(CborReader &reader, QVector<Column> &columns, RecordList &rows)
{
    quint64 count = 0;
    if (!reader.array(count))
        return false;
    if (count > quint64(maxRows))
        return reader.fail("too many rows");
    rows.reserve(int(count));
    for (quint64 i = 0; i < count; ++i) {
        quint64 cells = 0;
        if (!reader.array(cells))
            return false;
        if (cells != quint64(columns.size()))
            return reader.fail("row of another width");
        VariantRecord row;
        for (Column &column : columns) {
            if (!readCell(reader, column, row))
                return false;
        }
        rows.append(std::move(row));
    }
    return true;
}

} // namespace

QByteArray MessageBody::encode() const
{
    const QStringList names = fieldNames(rows);
    if (names.size() > maxFields || rows.size() > maxRows)
        return {};
    const bool ascending = std::is_sorted(names.cbegin(), names.cend());

    CborWriter writer;
    writer.array(3);
    if (!writer.value(values))
        return {};
    writer.array(quint64(names.size()));
    for (const QString &name : names)
        writer.text(name);
    writer.array(quint64(rows.size()));
    for (const VariantRecord &row : rows) {
        if (!writeRow(writer, row, names, ascending) || writer.size() > maxSize)
            return {};
    }
    return writer.size() > maxSize ? QByteArray() : writer.take();
}

bool MessageBody::decode(const QByteArray &bytes, MessageBody &body, QString &errorText)
{
    CborReader reader(bytes);
    MessageBody read;
    QVector<Column> columns;
    quint64 parts = 0;
    if (bytes.size() > maxSize)
        reader.fail("message too large");
    if (reader.array(parts) && parts != 3)
        reader.fail("array of three expected");
    if (!reader.dictionary(read.values, 0) || !readNames(reader, columns) || !readRows(reader, columns, read.rows) ||
        !reader.end()) {
        errorText = reader.errorText();
        return false;
    }
    body = std::move(read);
    return true;
}
