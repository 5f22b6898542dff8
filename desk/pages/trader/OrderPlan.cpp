#include "OrderPlan.h"

#include "CBusinessDataBase.h"
#include "Format.h"
#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "OrderWarnings.h"
#include "OrvaneFields.h"
#include "OwnOrders.h"
#include "UsageFigures.h"

#include <cmath>
#include <numeric>

using namespace Orvane_Fields;
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
    plan.warnings += plan.aboutExposure(wish);
    return plan;
}

/// The server refuses what would open more than the trader's pool allows, once it is filled.
QStringList OrderPlan::aboutExposure(const OrderWish &wish) const
{
    QMap<QString, qint64> quantities;
    for (const VariantRecord &row : rows)
        quantities[row.value(UserAccount::tradingAccount).toString()] += row.value(Security::orderQty).toLongLong();
    QStringList warnings;
    for (auto it = quantities.cbegin(); it != quantities.cend(); ++it) {
        const VariantRecord usage = ManualT0Logic::GetRealtimePoolDetail(it.key(), CBusinessDataBase::GetLoginAccount(),
                                                                         wish.symbol, wish.exchange);
        const std::optional<double> limit = UsageFigures::limitQuantity(usage);
        const qint64 open = usage.value(Master_Fields::ManualT0::OpenPosQty).toLongLong();
        const qint64 then = open + (wish.isBuy() ? it.value() : -it.value());
        if (limit && std::abs(then) > *limit && std::abs(then) > std::abs(open))
            warnings.append(tr("账户 %1 成交后敞口 %2 超过上限 %3")
                                .arg(it.key(), Format::quantity(std::abs(then)), Format::quantity(*limit)));
    }
    return warnings;
}

qint64 OrderPlan::quantity() const
{
    return std::accumulate(rows.cbegin(), rows.cend(), qint64(0), [](qint64 sum, const VariantRecord &row) {
        return sum + row.value(Security::orderQty).toLongLong();
    });
}

double OrderPlan::amount() const
{
    return std::accumulate(rows.cbegin(), rows.cend(), 0., [](double sum, const VariantRecord &row) {
        return sum + row.value(Security::price).toDouble() * double(row.value(Security::orderQty).toLongLong());
    });
}
