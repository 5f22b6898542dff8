#include "ReferenceDerive.h"

#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "Quantity.h"

using namespace Master_Fields::ManualT0;
using namespace Master_Values::OpenPositionSide;

namespace {

const QString &prebuilt(const QString &name)
{
    return name;
}

QString concatenated(const QString &name)
{
    const int middle = name.size() / 2;
    return name.left(middle) + name.mid(middle);
}

qint64 scaled(double value, int factor)
{
    const double product = value * factor;
    return Quantity::truncToInt64(product >= -1e-10 ? product + 1e-6 : product - 1e-6);
}

template <typename NameOf> class Derivation
{
public:
    Derivation(VariantRecord &record, NameOf nameOf)
        : m_record(record)
        , m_nameOf(nameOf)
    {}

    void run(const QString &symbol, int factor)
    {
        set(Orvane_Fields::Security::symbol, symbol);
        for (const QString *field :
             {&PreUnclosedBuyLimit, &PreUnclosedSellLimit, &PreUnclosedBoughtQty, &PreUnclosedSoldQty, &DailyBuyLimit,
              &DailySellLimit, &DailyBoughtQty, &DailySoldQty, &RtPoolTotalQty}) {
            if (m_record.contains(m_nameOf(*field)))
                set(*field, scaled(number(*field), factor));
        }
        set(RtTotalBuyLimit, Quantity::satAdd(quantity(DailyBuyLimit), quantity(PreUnclosedBuyLimit)));
        set(RtTotalSellLimit, Quantity::satAdd(quantity(DailySellLimit), quantity(PreUnclosedSellLimit)));
        set(PreOpenQty, Quantity::satSub(quantity(PreUnclosedBoughtQty), quantity(PreUnclosedSoldQty)));
        set(DailyOpenQty, Quantity::satSub(quantity(DailyBoughtQty), quantity(DailySoldQty)));
        set(OpenPosQty, Quantity::satAdd(quantity(PreOpenQty), quantity(DailyOpenQty)));
        deriveReal();
        deriveOpen();
    }

private:
    qint64 quantity(const QString &field) const { return Quantity::toQty(m_record.value(m_nameOf(field))); }
    double number(const QString &field) const { return Quantity::toNum(m_record.value(m_nameOf(field))); }
    void set(const QString &field, const QVariant &value) { m_record.insert(m_nameOf(field), value); }

    void deriveReal()
    {
        const QString carried = m_record.value(m_nameOf(PreUnclosedSide)).toString();
        const double preBuyFee = carried == SellOpen ? number(DailyBuyTradeFee) : 0.0;
        const double preSellFee = carried == BuyOpen ? number(DailySellTradeFee) : 0.0;
        set(RtRealBoughtQty, Quantity::satAdd(quantity(DailyBoughtQty), quantity(PreUnclosedBoughtQty)));
        set(RtRealBoughtAmount, number(DailyBoughtAmount) * (1 + number(DailyBuyTradeFee)) +
                                    number(PreUnclosedBoughtAmount) * (1 + preBuyFee));
        set(RtRealSoldQty, Quantity::satAdd(quantity(DailySoldQty), quantity(PreUnclosedSoldQty)));
        set(RtRealSoldAmount, number(DailySoldAmount) * (1 - number(DailySellTradeFee)) +
                                  number(PreUnclosedSoldAmount) * (1 - preSellFee));
    }

    void deriveOpen()
    {
        const qint64 open = quantity(OpenPosQty);
        if (open == 0) {
            set(OpenPosSide, NoOpenPos);
            set(OpenAvgPrice, qint64(0));
            return;
        }
        set(OpenPosSide, open > 0 ? BuyOpen : SellOpen);
        set(OpenAvgPrice, open > 0 ? number(RtRealBoughtAmount) / double(quantity(RtRealBoughtQty))
                                   : number(RtRealSoldAmount) / double(quantity(RtRealSoldQty)));
    }

    VariantRecord &m_record;
    const NameOf m_nameOf;
};

} // namespace

void ReferenceDerive::derive(VariantRecord &record, const QString &symbol, int factor, Names names)
{
    if (names == Names::Prebuilt)
        Derivation(record, prebuilt).run(symbol, factor);
    else
        Derivation(record, concatenated).run(symbol, factor);
}
