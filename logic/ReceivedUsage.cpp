#include "ReceivedUsage.h"

#include "DisplayUnits.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "Quantity.h"
#include "RealtimeFields.h"
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

/// Two prices that are no numbers are the same.
bool isSame(const QVariant &a, const QVariant &b)
{
    return a == b || (std::isnan(Quantity::toNum(a)) && std::isnan(Quantity::toNum(b)));
}

} // namespace

const std::array<const QString *, ReceivedUsage::FieldCount> ReceivedUsage::names = {
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
    &Orvane_Fields::Security::securityID,
    &Orvane_Fields::UserAccount::tradingAccount,
    &T0TraderId,
    &Orvane_Fields::UserAccount::securityExchange,
    &Master_Fields::System::ModifyTime,
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
    &RtRealSoldAmount,
};

const std::array<ReceivedUsage::Field, ReceivedUsage::FieldCount> &ReceivedUsage::inOrder()
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

ReceivedUsage::ReceivedUsage(const VariantRecord &record)
{
    gather(record);
    const QString symbol =
        MasterBusinessDataInterface::GetSymbolBySecurityIDAndExchange(text(SecurityId), text(Exchange));
    complete(symbol, displayFactor(symbol));
}

ReceivedUsage::ReceivedUsage(const VariantRecord &record, const QString &symbol, int factor)
{
    gather(record);
    complete(symbol, factor);
}

QString ReceivedUsage::key() const
{
    return RealtimeFields::key(text(Account), text(Trader), text(Symbol), text(Exchange));
}

QString ReceivedUsage::modifyTime() const
{
    return text(ModifyTime);
}

void ReceivedUsage::complete(const QString &symbol, int factor)
{
    scale(factor);
    set(Symbol, symbol);
    derive();
}

void ReceivedUsage::writeTo(VariantRecord &record) const
{
    RecordWriter writer(record);
    for (const Entry &entry : m_entries) {
        if (entry.field == FieldCount || m_present[entry.field])
            writer.write(*entry.name, *entry.value);
    }
}

bool ReceivedUsage::isHeldIn(const VariantRecord &record) const
{
    auto held = record.cbegin();
    for (const Entry &entry : m_entries) {
        if (entry.field != FieldCount && !m_present[entry.field])
            continue;
        if (held == record.cend() || held.key() != *entry.name || !isSame(*held, *entry.value))
            return false;
        ++held;
    }
    return held == record.cend();
}

void ReceivedUsage::gather(const VariantRecord &record)
{
    auto known = inOrder().cbegin();
    const auto end = inOrder().cend();
    const auto appendKnown = [&] {
        m_entries.append({names[*known], &m_values[*known], *known});
        ++known;
    };
    for (auto value = record.cbegin(); value != record.cend(); ++value) {
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

void ReceivedUsage::scale(int factor)
{
    for (int i = 0; i <= PoolTotal; ++i) {
        const auto field = Field(i);
        if (m_present[field])
            set(field, scaled(number(field), factor));
    }
}

void ReceivedUsage::derive()
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

void ReceivedUsage::deriveOpenPosition(const Side &bought, const Side &sold)
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
ReceivedUsage::Side ReceivedUsage::realBought() const
{
    const double fee = number(BuyFee);
    const double carriedFee = text(PreSide) == SellOpen ? fee : 0.0;
    return {Quantity::satAdd(quantity(Bought), quantity(PreBought)),
            number(BoughtAmount) * (1 + fee) + number(PreBoughtAmount) * (1 + carriedFee)};
}

ReceivedUsage::Side ReceivedUsage::realSold() const
{
    const double fee = number(SellFee);
    const double carriedFee = text(PreSide) == BuyOpen ? fee : 0.0;
    return {Quantity::satAdd(quantity(Sold), quantity(PreSold)),
            number(SoldAmount) * (1 - fee) + number(PreSoldAmount) * (1 - carriedFee)};
}

/// deliberate: no guard, a zero quantity gives an infinite or not-a-number price.
double ReceivedUsage::averagePrice(const Side &side)
{
    return side.amount / double(side.quantity);
}

QString ReceivedUsage::text(Field field) const
{
    return m_values[field].toString();
}

qint64 ReceivedUsage::quantity(Field field) const
{
    return Quantity::toQty(m_values[field]);
}

double ReceivedUsage::number(Field field) const
{
    return Quantity::toNum(m_values[field]);
}

void ReceivedUsage::set(Field field, const QVariant &value)
{
    m_values[field] = value;
    m_present[field] = true;
}
