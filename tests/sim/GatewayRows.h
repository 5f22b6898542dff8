#pragma once

#include "Rows.h"

/// How the model gateway looks at its rows.
namespace GatewayRows {

inline QString str(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

inline qint64 num(const VariantRecord &row, const QString &field)
{
    return row.value(field).toLongLong();
}

inline QString usageKey(const VariantRecord &row)
{
    return QStringList{
        str(row, Master_Fields::ManualT0::T0TraderId), str(row, Orvane_Fields::UserAccount::tradingAccount),
        str(row, Orvane_Fields::Security::securityID), str(row, Orvane_Fields::UserAccount::securityExchange)}
        .join(QLatin1Char('/'));
}

inline RecordList of(const QMap<QString, VariantRecord> &held, const QString &field, const QStringList &values)
{
    RecordList rows;
    for (const VariantRecord &row : held) {
        if (values.contains(str(row, field)))
            rows.append(row);
    }
    return rows;
}

} // namespace GatewayRows
