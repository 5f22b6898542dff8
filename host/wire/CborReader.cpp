#include "CborReader.h"

#include "CborWriter.h"

#include <QtCore/QtEndian>

#include <cstring>

namespace {

constexpr int firstListReserve = 64; ///< a nested list may declare much and hold nothing

bool isAscii(const char *data, int size)
{
    uchar all = 0;
    for (int i = 0; i < size; ++i)
        all |= uchar(data[i]);
    return all < 0x80;
}

/// Strict UTF-8 to UTF-16. QString::fromUtf8 would drop a byte order mark and repair what is invalid.
bool decodeUtf8(const char *data, int size, QString &text)
{
    if (isAscii(data, size)) {
        text = QString::fromLatin1(data, size);
        return true;
    }
    QString out(size, Qt::Uninitialized);
    auto *to = reinterpret_cast<ushort *>(out.data());
    const auto *from = reinterpret_cast<const uchar *>(data);
    const uchar *const end = from + size;
    while (from < end) {
        const uint first = *from++;
        if (first < 0x80) {
            *to++ = ushort(first);
            continue;
        }
        const int more = first >= 0xf0 ? 3 : first >= 0xe0 ? 2 : 1;
        if (first < 0xc2 || first > 0xf4 || end - from < more)
            return false;
        uint code = first & (0x3fu >> more);
        for (int i = 0; i < more; ++i, ++from) {
            if ((*from & 0xc0) != 0x80)
                return false;
            code = code << 6 | (*from & 0x3fu);
        }
        const bool overlong = (more == 2 && code < 0x800) || (more == 3 && code < 0x10000);
        if (overlong || code > 0x10ffff || QChar::isSurrogate(code))
            return false;
        if (code > 0xffff) {
            *to++ = QChar::highSurrogate(code);
            *to++ = QChar::lowSurrogate(code);
        } else {
            *to++ = ushort(code);
        }
    }
    out.resize(int(to - reinterpret_cast<const ushort *>(out.constData())));
    text = std::move(out);
    return true;
}

} // namespace

CborReader::CborReader(const QByteArray &bytes)
    : m_data(bytes.constData())
    , m_size(bytes.size())
{}

bool CborReader::fail(const char *what)
{
    if (m_errorText.isEmpty())
        m_errorText = QStringLiteral("%1 at byte %2").arg(QString::fromLatin1(what), QString::number(m_itemStart));
    return false;
}

inline bool CborReader::head(int &major, quint64 &number)
{
    if (failed())
        return false;
    m_itemStart = m_at;
    if (left() < 1)
        return fail("unexpected end");
    const uchar first = uchar(m_data[m_at++]);
    major = first >> 5;
    m_shortForm = first & 31;
    number = quint64(m_shortForm);
    return m_shortForm < 24 || longHead(number);
}

/// The number in the bytes after the first.
bool CborReader::longHead(quint64 &number)
{
    if (m_shortForm > 27)
        return fail(m_shortForm == 31 ? "indefinite length" : "reserved length form");
    const int size = 1 << (m_shortForm - 24);
    if (left() < size)
        return fail("unexpected end");
    const char *const data = m_data + m_at;
    m_at += size;
    switch (size) {
    case 1:
        number = uchar(*data);
        return true;
    case 2:
        number = qFromBigEndian<quint16>(data);
        return true;
    case 4:
        number = qFromBigEndian<quint32>(data);
        return true;
    default:
        number = qFromBigEndian<quint64>(data);
        return true;
    }
}

bool CborReader::expect(int major, const char *what, quint64 &number)
{
    int found = 0;
    if (!head(found, number))
        return false;
    return found == major || fail(what);
}

bool CborReader::payload(quint64 size, const char *&data)
{
    if (size > quint64(left()))
        return fail("length beyond the end");
    data = m_data + m_at;
    m_at += int(size);
    return true;
}

bool CborReader::array(quint64 &items)
{
    if (!expect(4, "array expected", items))
        return false;
    return items <= quint64(left()) || fail("length beyond the end");
}

bool CborReader::map(quint64 &pairs)
{
    if (!expect(5, "map expected", pairs))
        return false;
    return pairs <= quint64(left() / 2) || fail("length beyond the end");
}

bool CborReader::integer(qint64 &number)
{
    int major = 0;
    quint64 read = 0;
    if (!head(major, read))
        return false;
    if (major > 1)
        return fail("integer expected");
    if (read > quint64(std::numeric_limits<qint64>::max()))
        return fail("integer out of range");
    number = major == 0 ? qint64(read) : -1 - qint64(read);
    return true;
}

bool CborReader::text(QString &text)
{
    quint64 size = 0;
    const char *data = nullptr;
    if (!expect(3, "text expected", size) || !payload(size, data))
        return false;
    return decodeUtf8(data, int(size), text) || fail("invalid UTF-8");
}

bool CborReader::bytes(QByteArray &bytes)
{
    quint64 size = 0;
    const char *data = nullptr;
    if (!expect(2, "bytes expected", size) || !payload(size, data))
        return false;
    bytes = QByteArray(data, int(size));
    return true;
}

bool CborReader::takeUndefined()
{
    if (failed() || left() < 1 || uchar(m_data[m_at]) != 0xf7)
        return false;
    ++m_at;
    return true;
}

bool CborReader::countValue()
{
    return ++m_values <= CborWriter::maxValues || fail("too many values");
}

CborReader::EncodedText CborReader::nextText() const
{
    if (failed() || left() < 1)
        return {};
    const uchar first = uchar(m_data[m_at]);
    const int size = 1 + (first & 31);
    const bool isShortText = first >> 5 == 3 && size <= 24 && size <= left();
    return isShortText ? EncodedText{m_data + m_at, size} : EncodedText();
}

bool CborReader::takeAgain(const EncodedText &text)
{
    // No encoded item is the beginning of another one.
    if (text.size == 0 || text.size > left() || std::memcmp(m_data + m_at, text.data, size_t(text.size)) != 0)
        return false;
    m_itemStart = m_at;
    m_at += text.size;
    return countValue();
}

bool CborReader::end()
{
    if (failed())
        return false;
    m_itemStart = m_at;
    return left() == 0 || fail("trailing bytes");
}

bool CborReader::simple(quint64 number, QVariant &value)
{
    if (m_shortForm == 27) {
        double real;
        std::memcpy(&real, &number, sizeof real);
        value = real;
        return true;
    }
    switch (m_shortForm) {
    case 20:
    case 21:
        value = m_shortForm == 21;
        return true;
    case 22:
        value = QVariant();
        return true;
    default:
        return fail("unsupported value");
    }
}

bool CborReader::value(QVariant &value, int depth)
{
    int major = 0;
    quint64 number = 0;
    if (!head(major, number))
        return false;
    if (!countValue())
        return false;
    const char *data = nullptr;
    switch (major) {
    case 0:
        value = number > quint64(std::numeric_limits<qint64>::max()) ? QVariant(number) : QVariant(qint64(number));
        return true;
    case 1:
        if (number > quint64(std::numeric_limits<qint64>::max()))
            return fail("integer out of range");
        value = -1 - qint64(number);
        return true;
    case 2:
        if (!payload(number, data))
            return false;
        value = QByteArray(data, int(number));
        return true;
    case 3: {
        QString text;
        if (!payload(number, data))
            return false;
        if (!decodeUtf8(data, int(number), text))
            return fail("invalid UTF-8");
        value = text;
        return true;
    }
    case 4: {
        QVariantList items;
        if (!list(number, items, depth))
            return false;
        value = items;
        return true;
    }
    case 5: {
        QVariantMap map;
        if (!pairs(number, map, depth))
            return false;
        value = map;
        return true;
    }
    case 7:
        return simple(number, value);
    default:
        return fail("unsupported tag");
    }
}

bool CborReader::list(quint64 items, QVariantList &list, int depth)
{
    if (depth >= CborWriter::maxDepth)
        return fail("nested too deeply");
    if (items > quint64(left()))
        return fail("length beyond the end");
    list.reserve(int(qMin(items, quint64(firstListReserve))));
    for (quint64 i = 0; i < items; ++i) {
        QVariant item;
        if (!value(item, depth + 1))
            return false;
        list.append(std::move(item));
    }
    return true;
}

bool CborReader::pairs(quint64 count, QVariantMap &map, int depth)
{
    if (depth >= CborWriter::maxDepth)
        return fail("nested too deeply");
    if (count > quint64(left() / 2))
        return fail("length beyond the end");
    for (quint64 i = 0; i < count; ++i) {
        QString key;
        QVariant item;
        if (!text(key))
            return false;
        if (map.contains(key))
            return fail("key twice");
        if (!value(item, depth + 1))
            return false;
        map.insert(map.constEnd(), key, item);
    }
    return true;
}

bool CborReader::dictionary(QVariantMap &map, int depth)
{
    quint64 count = 0;
    return this->map(count) && pairs(count, map, depth);
}
