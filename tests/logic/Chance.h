#pragma once

#include "RealtimeFields.h"
#include "Rows.h"

#include <random>

/// Random answers of the server, from few ids, so that they meet.
class Chance
{
public:
    explicit Chance(unsigned seed)
        : m_engine(seed)
    {}

    int upTo(int limit) { return int(m_engine() % unsigned(limit)); }
    bool oneIn(int n) { return upTo(n) == 0; }
    QString of(const QStringList &texts) { return texts.at(upTo(texts.size())); }

    QStringList some(const QStringList &texts)
    {
        QStringList result;
        for (int i = upTo(4); i > 0; --i)
            result.append(of(texts));
        return result;
    }

    QString account() { return of({"A1", "A2", "A3", "A4"}); }
    QString security()
    {
        return of({"600000 SH", "300001 SZ", "110001 SH", "00700 HHK", "00700 SZHK", "999998 SH", "999999 SH"});
    }
    QString trader() { return of({"u1", "t2", "t3", "public", "public", ""}); }
    QVariant quantity() { return oneIn(3) ? QVariant(upTo(400) / 2.0) : QVariant(upTo(200)); }
    QVariant limit() { return oneIn(2) ? QVariant(-1) : quantity(); }

    /// Rows of an answer for one account; few of them belong to another one.
    template <typename Make> RecordList rows(const QString &account, Make make)
    {
        RecordList result;
        for (int i = upTo(7); i > 0; --i)
            result.append(make(oneIn(15) ? this->account() : account));
        return result;
    }

    VariantRecord resource(const QString &account)
    {
        return Rows::resource(QStringLiteral("r%1").arg(upTo(12)), account, security(), quantity());
    }

    VariantRecord pool(const QString &account)
    {
        using namespace Master_Fields::ManualT0;
        VariantRecord row = Rows::pool(QStringLiteral("p%1").arg(upTo(16)), account, security(), trader(), quantity(),
                                       QStringLiteral("r%1").arg(upTo(12)));
        if (oneIn(8))
            row.insert(Orvane_Fields::UserAccount::userID, trader());
        if (oneIn(8))
            row.insert(PoolType, upTo(3));
        row.insert(MaxExposureQty, limit());
        row.insert(MaxPendExposureQty, limit());
        return row;
    }

    VariantRecord usage(const QString &account)
    {
        using namespace Master_Fields::ManualT0;
        VariantRecord row = Rows::usage(account, of({"u1", "u1", "t2", "t3", ""}), security(),
                                        QStringLiteral("%1").arg(++m_clock / 8 - upTo(4), 8, 10, QLatin1Char('0')));
        for (const QString &field : RealtimeFields::scaledQty()) {
            if (!oneIn(6))
                row.insert(field, quantity());
        }
        for (const QString &field : RealtimeFields::summedAmount())
            row.insert(field, upTo(100000) / 4.0);
        row.insert(DailyBuyTradeFee, upTo(3) / 8.0);
        row.insert(DailySellTradeFee, upTo(3) / 8.0);
        row.insert(PreUnclosedSide, of({"BuyOpen", "SellOpen", "NoOpenPos", ""}));
        row.insert(TransDayProfitOwner, of({"ProfitToOrg", ""}));
        if (oneIn(4))
            row.insert(Orvane_Fields::Security::symbol, "sent"); // the host's symbol counts
        return row;
    }

private:
    std::mt19937 m_engine;
    int m_clock = 100;
};
