#include "JsonText.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QLocale>
#include <QtCore/QStringList>
#include <QtCore/QtMath>

namespace {

QString quoted(const QString &text)
{
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(1, list.size() - 2));
}

QString numberText(double value)
{
    if (qIsNaN(value))
        return quoted(QStringLiteral("nan"));
    if (qIsInf(value))
        return quoted(value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf"));
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

QString listText(const QVariantList &values)
{
    QStringList items;
    for (const QVariant &value : values)
        items.append(jsonText(value));
    return QLatin1Char('[') + items.join(QLatin1Char(',')) + QLatin1Char(']');
}

QString recordText(const QVariantMap &record)
{
    QStringList items;
    for (auto field = record.cbegin(); field != record.cend(); ++field)
        items.append(quoted(field.key()) + QLatin1Char(':') + jsonText(field.value()));
    return QLatin1Char('{') + items.join(QLatin1Char(',')) + QLatin1Char('}');
}

} // namespace

QString jsonText(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return QStringLiteral("null");
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toString();
    case QMetaType::Double:
    case QMetaType::Float:
        return numberText(value.toDouble());
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return listText(value.toList());
    case QMetaType::QVariantMap:
        return recordText(value.toMap());
    default:
        return quoted(value.toString());
    }
}
