#include "RealtimeFields.h"

#include "DisplayUnits.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "Quantity.h"

#include <QtCore/QStringBuilder>

using namespace Master_Fields::ManualT0;
using namespace Master_Values::OpenPositionSide;

namespace {

/// Whole display units: nudged by more than the error of a product before the fraction is cut off.
qint64 scaled(double value, int factor)
{
    constexpr double nudge = 1e-6;
    const double product = value * factor;
    return Quantity::truncToInt64(product >= -Quantity::Tolerance ? product + nudge : product - nudge);
}

qint64 quantity(const VariantRecord &record, const QString &field)
{
    return Quantity::toQty(record.value(field));
}

double number(const VariantRecord &record, const QString &field)
{
    return Quantity::toNum(record.value(field));
}

struct Side {
    qint64 quantity;
    double amount;
};

/// The carried-over part pays a fee only where it is closed: a short by buying, a long by selling.
Side realBought(const VariantRecord &record, const QString &carriedSide)
{
    const double fee = number(record, DailyBuyTradeFee);
    const double carriedFee = carriedSide == SellOpen ? fee : 0.0;
    return {Quantity::satAdd(quantity(record, DailyBoughtQty), quantity(record, PreUnclosedBoughtQty)),
            number(record, DailyBoughtAmount) * (1 + fee) + number(record, PreUnclosedBoughtAmount) * (1 + carriedFee)};
}

Side realSold(const VariantRecord &record, const QString &carriedSide)
{
    const double fee = number(record, DailySellTradeFee);
    const double carriedFee = carriedSide == BuyOpen ? fee : 0.0;
    return {Quantity::satAdd(quantity(record, DailySoldQty), quantity(record, PreUnclosedSoldQty)),
            number(record, DailySoldAmount) * (1 - fee) + number(record, PreUnclosedSoldAmount) * (1 - carriedFee)};
}

/// deliberate: no guard, a zero quantity gives an infinite or not-a-number price.
double averagePrice(const Side &side)
{
    return side.amount / double(side.quantity);
}

void deriveOpenPosition(VariantRecord &record, qint64 open, const Side &bought, const Side &sold)
{
    if (open > 0) {
        record.insert(OpenPosSide, BuyOpen);
        record.insert(OpenAvgPrice, averagePrice(bought));
    } else if (open < 0) {
        record.insert(OpenPosSide, SellOpen);
        record.insert(OpenAvgPrice, averagePrice(sold));
    } else {
        record.insert(OpenPosSide, NoOpenPos);
        record.insert(OpenAvgPrice, qint64(0));
    }
}

} // namespace

const QVector<QString> &RealtimeFields::scaledQty()
{
    static const QVector<QString> fields{PreUnclosedBuyLimit, PreUnclosedSellLimit, PreUnclosedBoughtQty,
                                         PreUnclosedSoldQty,  DailyBuyLimit,        DailySellLimit,
                                         DailyBoughtQty,      DailySoldQty,         RtPoolTotalQty};
    return fields;
}

const QVector<QString> &RealtimeFields::summedQty()
{
    static const QVector<QString> fields = scaledQty() + QVector<QString>{RtTotalBuyLimit, RtTotalSellLimit};
    return fields;
}

const QVector<QString> &RealtimeFields::summedAmount()
{
    static const QVector<QString> fields{PreUnclosedBoughtAmount, PreUnclosedSoldAmount, DailyBoughtAmount,
                                         DailySoldAmount};
    return fields;
}

QString RealtimeFields::key(const VariantRecord &record, const QString &symbol)
{
    return key(text(record, Orvane_Fields::UserAccount::tradingAccount), text(record, T0TraderId), symbol,
               text(record, Orvane_Fields::UserAccount::securityExchange));
}

QString RealtimeFields::key(const QString &tradingAccount, const QString &traderId, const QString &symbol,
                            const QString &exchange)
{
    const QLatin1Char separator('_');
    return traderId % separator % tradingAccount % separator % symbol % separator % exchange;
}

void RealtimeFields::derive(VariantRecord &record, const QString &symbol, int factor)
{
    record.insert(Orvane_Fields::Security::symbol, symbol);
    for (const QString &field : scaledQty()) {
        const auto value = record.find(field);
        if (value != record.end())
            *value = scaled(Quantity::toNum(*value), factor);
    }
    record.insert(RtTotalBuyLimit,
                  Quantity::satAdd(quantity(record, DailyBuyLimit), quantity(record, PreUnclosedBuyLimit)));
    record.insert(RtTotalSellLimit,
                  Quantity::satAdd(quantity(record, DailySellLimit), quantity(record, PreUnclosedSellLimit)));

    const qint64 preOpen =
        Quantity::satSub(quantity(record, PreUnclosedBoughtQty), quantity(record, PreUnclosedSoldQty));
    const qint64 dailyOpen = Quantity::satSub(quantity(record, DailyBoughtQty), quantity(record, DailySoldQty));
    const qint64 open = Quantity::satAdd(preOpen, dailyOpen);
    record.insert(PreOpenQty, preOpen);
    record.insert(DailyOpenQty, dailyOpen);
    record.insert(OpenPosQty, open);

    const QString carriedSide = text(record, PreUnclosedSide);
    const Side bought = realBought(record, carriedSide);
    const Side sold = realSold(record, carriedSide);
    record.insert(RtRealBoughtQty, bought.quantity);
    record.insert(RtRealBoughtAmount, bought.amount);
    record.insert(RtRealSoldQty, sold.quantity);
    record.insert(RtRealSoldAmount, sold.amount);
    deriveOpenPosition(record, open, bought, sold);
}

void RealtimeFields::add(VariantRecord &sum, const VariantRecord &other)
{
    for (const QString &field : summedQty())
        sum.insert(field, Quantity::satAdd(quantity(sum, field), quantity(other, field)));
    for (const QString &field : summedAmount())
        sum.insert(field, number(sum, field) + number(other, field));
}
