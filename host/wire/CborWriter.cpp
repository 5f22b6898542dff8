#include "CborWriter.h"

#include <QtCore/QtEndian>

#include <cstring>

void CborWriter::head(int major, quint64 number)
{
    char bytes[9];
    int size = 0;
    if (number < 24) {
        bytes[0] = char(major << 5 | int(number));
    } else if (number <= 0xff) {
        bytes[0] = char(major << 5 | 24);
        bytes[1] = char(number);
        size = 1;
    } else if (number <= 0xffff) {
        bytes[0] = char(major << 5 | 25);
        qToBigEndian(quint16(number), bytes + 1);
        size = 2;
    } else if (number <= 0xffffffffu) {
        bytes[0] = char(major << 5 | 26);
        qToBigEndian(quint32(number), bytes + 1);
        size = 4;
    } else {
        bytes[0] = char(major << 5 | 27);
        qToBigEndian(number, bytes + 1);
        size = 8;
    }
    m_out.append(bytes, size + 1);
}

void CborWriter::integer(qint64 number)
{
    if (number < 0)
        head(1, quint64(-1 - number));
    else
        head(0, quint64(number));
}

void CborWriter::real(double number)
{
    quint64 bits;
    std::memcpy(&bits, &number, sizeof bits);
    char bytes[9];
    bytes[0] = char(0xfb);
    qToBigEndian(bits, bytes + 1);
    m_out.append(bytes, sizeof bytes);
}

void CborWriter::text(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    head(3, quint64(utf8.size()));
    m_out.append(utf8);
}

void CborWriter::bytes(const QByteArray &bytes)
{
    head(2, quint64(bytes.size()));
    m_out.append(bytes);
}

bool CborWriter::value(const QVariant &value, int depth)
{
    switch (int(value.userType())) {
    case QMetaType::UnknownType:
        m_out.append(char(0xf6));
        return true;
    case QMetaType::Bool:
        m_out.append(char(value.toBool() ? 0xf5 : 0xf4));
        return true;
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Long:
    case QMetaType::Short:
    case QMetaType::Char:
    case QMetaType::SChar:
        integer(value.toLongLong());
        return true;
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::ULong:
    case QMetaType::UShort:
    case QMetaType::UChar:
        head(0, value.toULongLong());
        return true;
    case QMetaType::Double:
    case QMetaType::Float:
        real(value.toDouble());
        return true;
    case QMetaType::QString:
        text(value.toString());
        return true;
    case QMetaType::QByteArray:
        bytes(value.toByteArray());
        return true;
    case QMetaType::QVariantMap:
        return dictionary(value.toMap(), depth);
    default:
        break;
    }
    if (value.canConvert<QVariantMap>())
        return dictionary(value.value<QVariantMap>(), depth);
    if (value.canConvert<QVariantList>())
        return list(value, depth);
    text(value.toString());
    return true;
}

bool CborWriter::list(const QVariant &value, int depth)
{
    if (depth >= maxDepth)
        return false;
    const QVariantList items = value.value<QVariantList>();
    array(quint64(items.size()));
    for (const QVariant &item : items) {
        if (!this->value(item, depth + 1))
            return false;
    }
    return true;
}

bool CborWriter::dictionary(const QVariantMap &map, int depth)
{
    if (depth >= maxDepth)
        return false;
    this->map(quint64(map.size()));
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        text(it.key());
        if (!value(it.value(), depth + 1))
            return false;
    }
    return true;
}
