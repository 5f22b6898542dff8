#include "OrderPlan.h"

#include "ManualT0Logic.h"
#include "OrderWarnings.h"
#include "OrvaneFields.h"
#include "OwnOrders.h"

#include <numeric>

using Orvane_Fields::System::textDescription;

OrderPlan OrderPlan::of(const OrderWish &wish)
{
    OrderPlan plan;
    RecordList checked;
    ManualT0Logic::CheckOrderData({wish.record()}, checked, OrderWish::Everything);
    plan.refusal = checked.value(0).value(textDescription).toString();
    if (!plan.refusal.isEmpty())
        return plan;
    plan.rows = ManualT0Logic::GetOrderConfirmMap({wish.record()}, plan.rest);
    if (plan.rows.isEmpty())
        plan.refusal =
            plan.rest.isEmpty() ? tr("没有可下单的数量") : plan.rest.constFirst().value(textDescription).toString();
    plan.warnings = OrderWarnings::of(wish, SymbolQuote::of(wish.symbol), OwnOrders::live(wish.symbol));
    return plan;
}

qint64 OrderPlan::quantity() const
{
    return std::accumulate(rows.cbegin(), rows.cend(), qint64(0), [](qint64 sum, const VariantRecord &row) {
        return sum + row.value(Orvane_Fields::Security::orderQty).toLongLong();
    });
}

double OrderPlan::amount() const
{
    return std::accumulate(rows.cbegin(), rows.cend(), 0., [](double sum, const VariantRecord &row) {
        return sum + row.value(Orvane_Fields::Security::price).toDouble() *
                         double(row.value(Orvane_Fields::Security::orderQty).toLongLong());
    });
}
