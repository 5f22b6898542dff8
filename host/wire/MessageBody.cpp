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

/// One copy of a name serves all rows that a thread reads, from whichever message: names take much memory otherwise,
/// and reading many records misses the processor's caches less.
QString sharedName(const QString &name)
{
    constexpr int most = 1000; // who invents names fills no memory
    constexpr int longest = 64;
    thread_local QSet<QString> names;
    const auto known = names.constFind(name);
    if (known != names.cend())
        return *known;
    if (names.size() < most && name.size() <= longest)
        names.insert(name);
    return name;
}

/// Texts of a table that were read, a few of them. Rows repeat accounts, traders and exchanges: the same bytes then
/// give the same, shared text.
class RecentTexts
{
public:
    explicit RecentTexts(quint64 rows)
        : m_slots(int(qBound(quint64(1), rows, quint64(512))))
    {}

    bool read(CborReader &reader, QVariant &value)
    {
        const CborReader::EncodedText next = reader.nextText();
        if (next.size == 0)
            return reader.value(value);
        Slot &slot = m_slots[int(hash(next) % quint32(m_slots.size()))];
        if (slot.bytes.size == next.size && reader.takeAgain(slot.bytes)) {
            value = slot.text;
            return true;
        }
        if (!reader.value(value))
            return false;
        slot = {next, value};
        return true;
    }

private:
    struct Slot {
        CborReader::EncodedText bytes;
        QVariant text;
    };

    static quint32 hash(const CborReader::EncodedText &text)
    {
        quint32 hash = 0;
        for (int i = 0; i < text.size; ++i)
            hash = hash * 31 + uchar(text.data[i]);
        return hash;
    }

    QVector<Slot> m_slots;
};

/// One column of the table, with its cell of the row that is being read.
struct Column {
    QString name;
    QVariant cell;
    bool absent = false; ///< from that row
};

/// Reads the names and the rows under them.
class TableReader
{
public:
    explicit TableReader(CborReader &reader)
        : m_reader(reader)
    {}

    bool read(RecordList &rows) { return readNames() && readRows(rows); }

private:
    bool readNames();
    bool readRows(RecordList &rows);
    bool readCells(RecentTexts &texts, bool &whole);
    VariantRecord wholeRow();
    VariantRecord partOfRow() const;

    CborReader &m_reader;
    QVector<Column> m_columns; ///< as they come
    QVector<Column *> m_ascending;
    VariantRecord m_blank; ///< every name, no value
};

bool TableReader::readNames()
{
    quint64 count = 0;
    if (!m_reader.array(count))
        return false;
    if (count > quint64(maxFields))
        return m_reader.fail("too many fields");
    m_columns.resize(int(count));
    for (Column &column : m_columns) {
        if (!m_reader.text(column.name))
            return false;
        if (m_blank.contains(column.name))
            return m_reader.fail("field name twice");
        column.name = sharedName(column.name);
        m_blank.insert(column.name, QVariant());
        m_ascending.append(&column);
    }
    std::sort(m_ascending.begin(), m_ascending.end(), [](Column *a, Column *b) { return a->name < b->name; });
    return true;
}

/// whole: no field is absent.
bool TableReader::readCells(RecentTexts &texts, bool &whole)
{
    quint64 cells = 0;
    if (!m_reader.array(cells))
        return false;
    if (cells != quint64(m_columns.size()))
        return m_reader.fail("row of another width");
    whole = true;
    for (Column &column : m_columns) {
        column.absent = m_reader.takeUndefined();
        if (!column.absent && !texts.read(m_reader, column.cell))
            return false;
        whole = whole && !column.absent;
    }
    return true;
}

/// Copying all names at once takes half the time of inserting them one by one, which compares and rebalances.
VariantRecord TableReader::wholeRow()
{
    VariantRecord row = m_blank;
    auto field = row.begin();
    for (Column *column : qAsConst(m_ascending))
        (field++)->swap(column->cell);
    return row;
}

VariantRecord TableReader::partOfRow() const
{
    VariantRecord row;
    for (const Column *column : m_ascending) {
        if (!column->absent)
            row.insert(row.constEnd(), column->name, column->cell);
    }
    return row;
}

bool TableReader::readRows(RecordList &rows)
{
    quint64 count = 0;
    if (!m_reader.array(count))
        return false;
    if (count > quint64(maxRows))
        return m_reader.fail("too many rows");
    rows.reserve(int(count));
    RecentTexts texts(count);
    for (quint64 i = 0; i < count; ++i) {
        bool whole = false;
        if (!readCells(texts, whole))
            return false;
        rows.append(whole ? wholeRow() : partOfRow());
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
    if (!writer.dictionary(values, 0))
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
    quint64 parts = 0;
    if (bytes.size() > maxSize)
        reader.fail("message too large");
    if (reader.array(parts) && parts != 3)
        reader.fail("array of three expected");
    if (!reader.dictionary(read.values, 0) || !TableReader(reader).read(read.rows) || !reader.end()) {
        errorText = reader.errorText();
        return false;
    }
    body = std::move(read);
    return true;
}
