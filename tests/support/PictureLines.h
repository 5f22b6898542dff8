#pragma once

#include "HostSession.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "VariantRecord.h"

#include <QtCore/QStringList>

/// The server's picture and a client's as texts that can be compared.
namespace PictureLines {

inline RecordList recordsOf(const QVariant &list)
{
    RecordList rows;
    for (const QVariant &row : list.toList())
        rows.append(row.toMap());
    return rows;
}

/// A line of what belongs together. Limits below 0 mean none, however they were scaled.
inline QString line(const QVariantList &values)
{
    QStringList texts;
    for (const QVariant &value : values)
        texts.append(value.type() == QVariant::String ? value.toString()
                                                      : QString::number(qMax<qint64>(-1, qRound64(value.toDouble()))));
    return texts.join(QLatin1Char(' '));
}

/// One line a row with the given fields, ascending.
inline QStringList lines(const RecordList &rows, const QStringList &fields)
{
    QStringList result;
    for (const VariantRecord &row : rows) {
        QVariantList values;
        for (const QString &field : fields)
            values.append(row.value(field));
        result.append(line(values));
    }
    result.sort();
    return result;
}

inline QStringList lines(const RecordList &resources, const RecordList &pools)
{
    using namespace Master_Fields::ManualT0;
    using Orvane_Fields::Security::symbol;
    using Orvane_Fields::UserAccount::tradingAccount;
    return lines(resources, {tradingAccount, symbol, ResourceId, ResourceQty, PublicPoolQty, PrivatePoolQty}) +
           lines(pools, {tradingAccount, symbol, T0TraderId, PoolDetailId, PoolTotalQty, MaxExposureQty});
}

/// What the gateway itself holds, asked by a manager: values of Stand_Fields::Picture.
inline VariantRecord ofGateway(HostSession &session)
{
    QString errorText;
    VariantRecord picture;
    RecordList rows;
    session.request(Stand_MsgType::PictureRequest, {}, {}, errorText, picture, rows);
    return picture;
}

/// The lines that are in one list only; empty when both are equal.
inline QString differenceOf(const char *what, QStringList are, QStringList should)
{
    if (are == should)
        return QString();
    const QStringList both = are;
    for (const QString &line : should)
        are.removeOne(line);
    for (const QString &line : both)
        should.removeOne(line);
    return QStringLiteral("%1 holds\n  %2\nand should hold\n  %3\n")
        .arg(QLatin1String(what), are.join("\n  "), should.join("\n  "));
}

} // namespace PictureLines
