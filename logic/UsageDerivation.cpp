#include "UsageDerivation.h"

#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "Quantity.h"
#include "RecordWriter.h"

#include <algorithm>

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

} // namespace

const std::array<const QString *, UsageDerivation::FieldCount> UsageDerivation::names = {
    &PreUnclosedBuyLimit,
    &PreUnclosedSellLimit,
    &PreUnclosedBoughtQty,
    &PreUnclosedSoldQty,
    &DailyBuyLimit,
    &DailySellLimit,
    &DailyBoughtQty,
    &DailySoldQty,
    &RtPoolTotalQty,
    &PreUnclosedBoughtAmount,
    &PreUnclosedSoldAmount,
    &DailyBoughtAmount,
    &DailySoldAmount,
    &DailyBuyTradeFee,
    &DailySellTradeFee,
    &PreUnclosedSide,
    &Orvane_Fields::Security::symbol,
    &RtTotalBuyLimit,
    &RtTotalSellLimit,
    &PreOpenQty,
    &DailyOpenQty,
    &OpenPosQty,
    &OpenPosSide,
    &OpenAvgPrice,
    &RtRealBoughtQty,
    &RtRealBoughtAmount,
    &RtRealSoldQty,
    &RtRealSoldAmount};

const std::array<UsageDerivation::Field, UsageDerivation::FieldCount> &UsageDerivation::inOrder()
{
    static const std::array<Field, FieldCount> fields = [] {
        std::array<Field, FieldCount> all;
        for (int i = 0; i < FieldCount; ++i)
            all[size_t(i)] = Field(i);
        std::sort(all.begin(), all.end(), [](Field a, Field b) { return *names[a] < *names[b]; });
        return all;
    }();
    return fields;
}

UsageDerivation::UsageDerivation(const VariantRecord &received, const QString &symbol, int factor)
{
    gather(received);
    scale(factor);
    set(Symbol, symbol);
    derive();
}

void UsageDerivation::writeTo(VariantRecord &record) const
{
    RecordWriter writer(record);
    for (const Entry &entry : m_entries) {
        if (entry.field == FieldCount || m_present[entry.field])
            writer.write(*entry.name, *entry.value);
    }
}

void UsageDerivation::gather(const VariantRecord &received)
{
    auto known = inOrder().cbegin();
    const auto end = inOrder().cend();
    const auto appendKnown = [&] {
        m_entries.append({names[*known], &m_values[*known], *known});
        ++known;
    };
    for (auto value = received.cbegin(); value != received.cend(); ++value) {
        int order = 1;
        while (known != end && (order = names[*known]->compare(value.key())) < 0)
            appendKnown();
        if (order == 0) {
            set(*known, *value);
            appendKnown();
        } else {
            m_entries.append({&value.key(), &*value, FieldCount});
        }
    }
    while (known != end)
        appendKnown();
}

void UsageDerivation::scale(int factor)
{
    for (int i = 0; i <= PoolTotal; ++i) {
        const auto field = Field(i);
        if (m_present[field])
            set(field, scaled(number(field), factor));
    }
}

void UsageDerivation::derive()
{
    set(TotalBuyLimit, Quantity::satAdd(quantity(BuyLimit), quantity(PreBuyLimit)));
    set(TotalSellLimit, Quantity::satAdd(quantity(SellLimit), quantity(PreSellLimit)));
    set(PreOpen, Quantity::satSub(quantity(PreBought), quantity(PreSold)));
    set(DailyOpen, Quantity::satSub(quantity(Bought), quantity(Sold)));
    set(Open, Quantity::satAdd(quantity(PreOpen), quantity(DailyOpen)));

    const Side bought = realBought();
    const Side sold = realSold();
    set(RealBought, bought.quantity);
    set(RealBoughtAmount, bought.amount);
    set(RealSold, sold.quantity);
    set(RealSoldAmount, sold.amount);
    deriveOpenPosition(bought, sold);
}

void UsageDerivation::deriveOpenPosition(const Side &bought, const Side &sold)
{
    const qint64 open = quantity(Open);
    if (open > 0) {
        set(OpenSide, BuyOpen);
        set(OpenPrice, averagePrice(bought));
    } else if (open < 0) {
        set(OpenSide, SellOpen);
        set(OpenPrice, averagePrice(sold));
    } else {
        set(OpenSide, NoOpenPos);
        set(OpenPrice, qint64(0));
    }
}

/// The carried-over part pays a fee only where it is closed: a short by buying, a long by selling.
UsageDerivation::Side UsageDerivation::realBought() const
{
    const double fee = number(BuyFee);
    const double carriedFee = m_values[PreSide].toString() == SellOpen ? fee : 0.0;
    return {Quantity::satAdd(quantity(Bought), quantity(PreBought)),
            number(BoughtAmount) * (1 + fee) + number(PreBoughtAmount) * (1 + carriedFee)};
}

UsageDerivation::Side UsageDerivation::realSold() const
{
    const double fee = number(SellFee);
    const double carriedFee = m_values[PreSide].toString() == BuyOpen ? fee : 0.0;
    return {Quantity::satAdd(quantity(Sold), quantity(PreSold)),
            number(SoldAmount) * (1 - fee) + number(PreSoldAmount) * (1 - carriedFee)};
}

/// deliberate: no guard, a zero quantity gives an infinite or not-a-number price.
double UsageDerivation::averagePrice(const Side &side)
{
    return side.amount / double(side.quantity);
}

qint64 UsageDerivation::quantity(Field field) const
{
    return Quantity::toQty(m_values[field]);
}

double UsageDerivation::number(Field field) const
{
    return Quantity::toNum(m_values[field]);
}

void UsageDerivation::set(Field field, const QVariant &value)
{
    m_values[field] = value;
    m_present[field] = true;
}
