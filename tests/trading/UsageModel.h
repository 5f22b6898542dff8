#pragma once

#include "Books.h"
#include "VariantRecord.h"

/// What was traded of one security, and for how much.
struct Traded {
    qint64 bought = 0;
    qint64 sold = 0;
    double boughtAmount = 0;
    double soldAmount = 0;

    void add(bool buy, qint64 quantity, double price);
};

/// A trader's day in one security of one account.
struct Usage {
    QString side; ///< of the carried-over leg; empty: none
    Traded leg;
    Traded day;
    qint64 closable = 0; ///< of the leg: what no live order of its closing direction closes
    double buyFee = 0;
    double sellFee = 0;
    bool gainsAreTheOrganisations = false; ///< those of the leg

    qint64 net() const { return leg.bought - leg.sold + day.bought - day.sold; }
    Traded paid() const; ///< the whole, with fees
    double average() const;
    double floating(double lastPrice) const;
    double realized() const;
};

/// What traders hold and have earned, from what they carried over and their fills. Of their orders it needs only
/// which came first, because that one closes the carried-over leg.
class UsageModel
{
public:
    explicit UsageModel(const Books &books);

    /// trader, account, symbol and exchange as usage records are keyed.
    static QString key(const QString &trader, const VariantRecord &row);

    QMap<QString, Usage> usage; ///< by key; what nobody has used is missing or empty

    void accept(const VariantRecord &order); ///< in the order of acceptance
    void fill(const VariantRecord &fill);    ///< of an accepted order, each once
    void end(const QString &orderId);        ///< cancelled or filled; what is not known is over
    void dayChange();

private:
    struct LiveOrder {
        QString key;
        bool buy = false;
        qint64 closing = 0; ///< how much of what is not filled closes the leg
    };

    Usage &usageOf(const QString &trader, const VariantRecord &row);

    Books m_books;
    QMap<QString, LiveOrder> m_orders; ///< by id
};
