#pragma once

#include "Rows.h"

#include <QtCore/QMap>

#include <algorithm>

/// Lists of rows, walked from end to end.
namespace ModelRows {

using namespace Master_Fields::ManualT0;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;
namespace Security = Orvane_Fields::Security;

/// An account that may be enabled.
struct Candidate {
    QString product;
    QString assetProp;
    QString account;
};

inline const QList<Candidate> &candidates()
{
    static const QList<Candidate> list{
        {"P1", "Cash", "A1"}, {"P1", "Cash", "A2"}, {"P1", "Credit", "A3"}, {"P2", "Cash", "A4"}};
    return list;
}

inline QString str(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

inline double num(const VariantRecord &row, const QString &field)
{
    return row.value(field).toDouble();
}

struct Instrument {
    QString symbol;
    int factor = 1;

    explicit Instrument(const VariantRecord &row)
    {
        static const QMap<QString, QPair<QString, int>> known{{"600000 SH", {"600000.SH", 1}},
                                                              {"300001 SZ", {"300001.SZ", 1}},
                                                              {"110001 SH", {"110001.SH", 10}},
                                                              {"00700 HHK", {"00700.HK", 100}},
                                                              {"00700 SZHK", {"00700.HK", 100}}};
        const QString id = str(row, Security::securityID) + ' ' + str(row, securityExchange);
        symbol = known.value(id).first;
        factor = known.value(id, {"", 1}).second;
    }
};

using Text = QString (*)(const VariantRecord &);

template <Text keyOf> void sortBy(RecordList &rows)
{
    std::sort(rows.begin(), rows.end(), [](const auto &a, const auto &b) { return keyOf(a) < keyOf(b); });
}

/// Puts row in the place of the one with the same key, else at the end.
template <Text keyOf> void put(RecordList &rows, const VariantRecord &row)
{
    for (VariantRecord &held : rows) {
        if (keyOf(held) == keyOf(row)) {
            held = row;
            return;
        }
    }
    rows.append(row);
}

template <typename List, typename Condition> List those(const List &rows, Condition condition)
{
    List result;
    for (const auto &row : rows) {
        if (condition(row))
            result.append(row);
    }
    return result;
}

template <typename Change> RecordList each(RecordList rows, Change change)
{
    for (VariantRecord &row : rows)
        row = change(row);
    return rows;
}

inline QString resourceId(const VariantRecord &row)
{
    return str(row, ResourceId);
}

inline QString poolId(const VariantRecord &row)
{
    return str(row, PoolDetailId);
}

inline QString usageKey(const VariantRecord &row)
{
    return QStringList{str(row, T0TraderId), str(row, tradingAccount), Instrument(row).symbol,
                       str(row, securityExchange)}
        .join('_');
}

inline bool matches(const VariantRecord &row, const QStringList &accounts, const QString &symbol,
                    const QString &exchange)
{
    return accounts.contains(str(row, tradingAccount)) && (symbol.isEmpty() || str(row, Security::symbol) == symbol) &&
           (exchange.isEmpty() || str(row, securityExchange) == exchange);
}

inline QStringList ownQuantities()
{
    return {PreUnclosedBuyLimit, PreUnclosedSellLimit, PreUnclosedBoughtQty, PreUnclosedSoldQty, DailyBuyLimit,
            DailySellLimit,      DailyBoughtQty,       DailySoldQty,         RtPoolTotalQty};
}

} // namespace ModelRows
