#include "Codecs.h"

#include "MessageBody.h"

#include <QtCore/QCborValue>
#include <QtCore/QJsonDocument>

namespace {

RecordList asRecords(const QVariant &rows)
{
    RecordList records;
    const QVariantList list = rows.toList();
    records.reserve(list.size());
    for (const QVariant &row : list)
        records.append(row.toMap());
    return records;
}

QVariantList asVariants(const RecordList &rows)
{
    QVariantList list;
    for (const VariantRecord &row : rows)
        list.append(row);
    return list;
}

RecordList decodeTable(const QByteArray &bytes)
{
    MessageBody body;
    QString errorText;
    if (!MessageBody::decode(bytes, body, errorText))
        qFatal("%s", qUtf8Printable(errorText));
    return body.rows;
}

} // namespace

const Codec Codecs::library = {"library",
                               [](const RecordList &rows) {
                                   return MessageBody{{}, rows}.encode();
                               },
                               decodeTable};

const Codec Codecs::cborValue = {
    "qcborvalue", [](const RecordList &rows) { return QCborValue::fromVariant(asVariants(rows)).toCbor(); },
    [](const QByteArray &bytes) { return asRecords(QCborValue::fromCbor(bytes).toVariant()); }};

const Codec Codecs::json = {
    "json",
    [](const RecordList &rows) { return QJsonDocument::fromVariant(asVariants(rows)).toJson(QJsonDocument::Compact); },
    [](const QByteArray &bytes) { return asRecords(QJsonDocument::fromJson(bytes).toVariant()); }};
