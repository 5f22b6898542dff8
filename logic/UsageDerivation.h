#pragma once

#include "VariantRecord.h"

#include <QtCore/QVarLengthArray>

#include <array>

/// A received usage record with what the library derives from it. Fields are gathered once, reckoned with by
/// number and written once: a record of names is slow to ask and to change.
class UsageDerivation
{
public:
    /// factor: display units of one server unit, at least 1. The received record must stay alive.
    UsageDerivation(const VariantRecord &received, const QString &symbol, int factor);

    /// Makes a record the derived one; fields that it has already keep their place in memory.
    void writeTo(VariantRecord &record) const;

    UsageDerivation(const UsageDerivation &) = delete;
    UsageDerivation &operator=(const UsageDerivation &) = delete;

private:
    /// The fields that are read or written. Those up to PoolTotal are scaled.
    enum Field {
        PreBuyLimit,
        PreSellLimit,
        PreBought,
        PreSold,
        BuyLimit,
        SellLimit,
        Bought,
        Sold,
        PoolTotal,
        PreBoughtAmount,
        PreSoldAmount,
        BoughtAmount,
        SoldAmount,
        BuyFee,
        SellFee,
        PreSide,
        Symbol,
        TotalBuyLimit,
        TotalSellLimit,
        PreOpen,
        DailyOpen,
        Open,
        OpenSide,
        OpenPrice,
        RealBought,
        RealBoughtAmount,
        RealSold,
        RealSoldAmount,
        FieldCount
    };
    struct Entry {
        const QString *name;
        const QVariant *value;
        Field field; ///< FieldCount: one that is neither read nor written here
    };
    struct Side {
        qint64 quantity;
        double amount;
    };

    static const std::array<const QString *, FieldCount> names;
    static const std::array<Field, FieldCount> &inOrder();
    static double averagePrice(const Side &side);

    void gather(const VariantRecord &received);
    void scale(int factor);
    void derive();
    void deriveOpenPosition(const Side &bought, const Side &sold);
    Side realBought() const;
    Side realSold() const;
    qint64 quantity(Field field) const;
    double number(Field field) const;
    void set(Field field, const QVariant &value);

    QVarLengthArray<Entry, 64> m_entries;
    std::array<QVariant, FieldCount> m_values;
    std::array<bool, FieldCount> m_present{};
};
