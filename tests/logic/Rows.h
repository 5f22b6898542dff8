#pragma once

#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "VariantRecord.h"

/// The desk all tests of the hub share, and the rows its server sends.
///
/// User "u1" in organisation "org". Products: P1 with the cash accounts A1, A2 and the credit account A3, P2
/// with the cash account A4. Securities: 600000 on SH and 300001 on SZ (display factor 1), the convertible
/// bond 110001 on SH (10), the share 00700 on HHK and SZHK, one symbol (100). Only 600000 has a price: 10.5.
namespace Rows {

inline const QString user = QStringLiteral("u1");
inline const QString Success = QStringLiteral("success");
inline const QString Fail = QStringLiteral("fail");

inline VariantRecord product(const QString &productAccount, const QString &tradingAccount)
{
    return {{Orvane_Fields::UserAccount::productAccount, productAccount},
            {Orvane_Fields::UserAccount::tradingAccount, tradingAccount}};
}

inline VariantRecord trader(const QString &id, const QString &name)
{
    return {{Orvane_Fields::UserAccount::userID, id}, {Orvane_Fields::UserAccount::userName, name}};
}

/// security: "600000 SH", the id and the exchange.
inline VariantRecord ofSecurity(const QString &tradingAccount, const QString &security)
{
    return {{Orvane_Fields::UserAccount::tradingAccount, tradingAccount},
            {Orvane_Fields::Security::securityID, security.section(QLatin1Char(' '), 0, 0)},
            {Orvane_Fields::UserAccount::securityExchange, security.section(QLatin1Char(' '), 1)}};
}

inline VariantRecord resource(const QString &id, const QString &tradingAccount, const QString &security,
                              const QVariant &quantity)
{
    VariantRecord row = ofSecurity(tradingAccount, security);
    row.insert(Master_Fields::ManualT0::ResourceId, id);
    row.insert(Master_Fields::ManualT0::ResourceQty, quantity);
    return row;
}

/// A pool of trader, who is its user too; "public" makes it a public one. Without limits (-1).
inline VariantRecord pool(const QString &id, const QString &tradingAccount, const QString &security,
                          const QString &traderId, const QVariant &quantity, const QString &resourceId)
{
    using namespace Master_Fields::ManualT0;
    VariantRecord row = ofSecurity(tradingAccount, security);
    row.insert(PoolDetailId, id);
    row.insert(T0TraderId, traderId);
    row.insert(Orvane_Fields::UserAccount::userID, traderId);
    row.insert(PoolType, traderId == QLatin1String("public") ? 0 : 1);
    row.insert(PoolTotalQty, quantity);
    row.insert(ResourceId, resourceId);
    row.insert(MaxExposureQty, -1);
    row.insert(MaxPendExposureQty, -1);
    return row;
}

inline VariantRecord usage(const QString &tradingAccount, const QString &traderId, const QString &security,
                           const QString &time, const VariantRecord &fields = {})
{
    VariantRecord row = ofSecurity(tradingAccount, security);
    row.insert(Master_Fields::ManualT0::T0TraderId, traderId);
    if (!time.isEmpty())
        row.insert(Master_Fields::System::ModifyTime, time);
    for (auto field = fields.cbegin(); field != fields.cend(); ++field)
        row.insert(field.key(), *field);
    return row;
}

/// From "A1,A2 600000.SH SH normalBuy 100 10.07": accounts, symbol, exchange, side, quantity, price. Texts all.
inline VariantRecord order(const QString &line)
{
    const QStringList parts = line.split(QLatin1Char(' '));
    return {{Orvane_Fields::UserAccount::tradingAccount, parts.value(0).split(QLatin1Char(','))},
            {Orvane_Fields::Security::symbol, parts.value(1)},
            {Orvane_Fields::UserAccount::securityExchange, parts.value(2)},
            {Master_Fields::Security::SideUnion, parts.value(3)},
            {Orvane_Fields::Security::orderQty, parts.value(4)},
            {Orvane_Fields::Security::price, parts.value(5)}};
}

/// The texts of one field, ascending.
inline QStringList texts(const RecordList &rows, const QString &field)
{
    QStringList list;
    for (const VariantRecord &row : rows)
        list.append(row.value(field).toString());
    list.sort();
    return list;
}

} // namespace Rows
