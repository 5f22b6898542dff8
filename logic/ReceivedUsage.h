#pragma once

#include "VariantRecord.h"

#include <QtCore/QVarLengthArray>

#include <array>

/// A received usage record with what the library derives from it. Fields are gathered once, reckoned with by
/// number and written once: a record of names is slow to ask and to change.
class ReceivedUsage
{
public:
    /// Asks the host for symbol and display factor. The record must stay alive.
    explicit ReceivedUsage(const VariantRecord &record);
    /// factor: display units of one server unit, at least 1.
    ReceivedUsage(const VariantRecord &record, const QString &symbol, int factor);

    QString key() const;
    QString modifyTime() const;

    /// Makes a record the derived one; fields that it has already keep their place in memory.
    void writeTo(VariantRecord &record) const;
    /// Whether a record is what writeTo() makes of it.
    bool isHeldIn(const VariantRecord &record) const;

    ReceivedUsage(const ReceivedUsage &) = delete;
    ReceivedUsage &operator=(const ReceivedUsage &) = delete;

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
        SecurityId,
        Account,
        Trader,
        Exchange,
        ModifyTime,
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

    void gather(const VariantRecord &record);
    void complete(const QString &symbol, int factor);
    void scale(int factor);
    void derive();
    void deriveOpenPosition(const Side &bought, const Side &sold);
    Side realBought() const;
    Side realSold() const;
    QString text(Field field) const;
    qint64 quantity(Field field) const;
    double number(Field field) const;
    void set(Field field, const QVariant &value);

    QVarLengthArray<Entry, 64> m_entries;
    std::array<QVariant, FieldCount> m_values;
    std::array<bool, FieldCount> m_present{};
};
