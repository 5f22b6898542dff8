#include "ProfitLoss.h"

#include "MasterFields.h"
#include "MasterValues.h"
#include "Quantity.h"

#include <algorithm>

using namespace Master_Fields::ManualT0;

namespace {

double ofOpen(const ProfitLoss::Leg &leg, double lastPrice, const ProfitLoss::Fees &fees)
{
    if (leg.bought > leg.sold) {
        const double cost = (1 + fees.buy) * leg.boughtAmount / double(leg.bought);
        return (lastPrice - cost) * double(leg.bought - leg.sold);
    }
    if (leg.bought < leg.sold) {
        const double proceeds = (1 - fees.sell) * leg.soldAmount / double(leg.sold);
        return (proceeds - lastPrice) * double(leg.sold - leg.bought);
    }
    return 0;
}

double ofClosed(const ProfitLoss::Leg &leg, const ProfitLoss::Fees &fees)
{
    const qint64 closed = std::min(leg.bought, leg.sold);
    if (closed == 0)
        return 0;
    const double averageBuy = leg.boughtAmount / double(leg.bought);
    const double averageSell = leg.soldAmount / double(leg.sold);
    return ((averageSell - averageSell * fees.sell) - (averageBuy + averageBuy * fees.buy)) * double(closed);
}

} // namespace

ProfitLoss::Result ProfitLoss::ofLeg(const Leg &leg, double lastPrice, const Fees &fees, const QString &carriedSide)
{
    if (leg.bought == 0 && leg.sold == 0)
        return {};
    if (carriedSide.isEmpty())
        return {ofOpen(leg, lastPrice, fees), ofClosed(leg, fees)};
    // deliberate: the opening side's fee is in the carried-over amount already. A long is closed by selling;
    // anything else counts as closed by buying.
    const bool closedBySelling = carriedSide == Master_Values::OpenPositionSide::BuyOpen;
    const Fees closing = closedBySelling ? Fees{0, fees.sell} : Fees{fees.buy, 0};
    return {ofOpen(leg, lastPrice, {}), ofClosed(leg, closing)};
}

ProfitLoss::Legs ProfitLoss::ofRecord(const VariantRecord &record, double lastPrice)
{
    const auto quantity = [&record](const QString &field) { return Quantity::toQty(record.value(field)); };
    const auto number = [&record](const QString &field) { return Quantity::toNum(record.value(field)); };
    const Fees fees{number(DailyBuyTradeFee), number(DailySellTradeFee)};
    const Leg carried{quantity(PreUnclosedBoughtQty), quantity(PreUnclosedSoldQty), number(PreUnclosedBoughtAmount),
                      number(PreUnclosedSoldAmount)};
    const Leg today{quantity(DailyBoughtQty), quantity(DailySoldQty), number(DailyBoughtAmount),
                    number(DailySoldAmount)};

    Legs legs;
    legs.carried = ofLeg(carried, lastPrice, fees, record.value(PreUnclosedSide).toString());
    legs.today = ofLeg(today, lastPrice, fees, QString());
    // A gain on the carried-over leg is the organisation's, a loss is the trader's. std::min in this order
    // keeps not-a-number.
    if (record.value(TransDayProfitOwner).toString() == Master_Values::TransDayProfitOwner::ProfitToOrg)
        legs.carried.realized = std::min(legs.carried.realized, 0.0);
    return legs;
}
